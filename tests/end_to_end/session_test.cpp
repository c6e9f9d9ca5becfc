// The commands one after another on one desktop, each a process of its own: as a person uses them
// who drives a panel by hand, and each of the routes that choose and close.
#include <gtest/gtest.h>

#include <functional>

#include "end_to_end/served_desktop.h"

namespace tessarine::test {
namespace {

using nlohmann::ordered_json;

// A file panel of the service, whose go-to sheet still holds what was typed last.
std::string filePanelScenario(const TemporaryFolder& folder) {
  return folder.makeFile("file-panel.json",
                         R"({"lastGoToPath": "/usr/share/doc",
                             "panels": [{"shape": "service-window", "mode": "files",
                                         "clicksReach": "service"}]})");
}

// The nodes of the only dialog.
ordered_json dialogNodes(const ServedDesktop& desktop) {
  const ordered_json result = desktop.run({"inspect-open-dialog", "--pid", "812"});
  EXPECT_EQ(result["dialogs"].size(), 1U);
  return result["dialogs"].at(0)["nodes"];
}

using NodeTest = std::function<bool(const ordered_json&)>;

// Looks at the dialog until it has such a node, at most twenty times; the node, null without one.
ordered_json waitForNode(const ServedDesktop& desktop, const NodeTest& wanted) {
  for (int looks = 0; looks < 20; ++looks) {
    for (const ordered_json& node : dialogNodes(desktop)) {
      if (wanted(node)) return node;
    }
  }
  ADD_FAILURE() << "no such node";
  return nullptr;
}

NodeTest fieldHolding(const std::string& value) {
  return [value](const ordered_json& node) {
    return node["role"] == "AXTextField" && node["value"] == value;
  };
}

// The titles of the windows that list-windows shows of each application, by its label.
ordered_json windowTitles(const ServedDesktop& desktop) {
  ordered_json titles = ordered_json::object();
  const ordered_json result = desktop.run({"list-windows", "--pid", "812"});
  for (const auto& app : result["apps"]) {
    for (const auto& window : app["windows"]) {
      titles[app["label"].get<std::string>()].push_back(window["title"]);
    }
  }
  return titles;
}

void pressKey(const ServedDesktop& desktop, const std::string& key) {
  EXPECT_EQ(desktop.run({"press-key", "--pid", "900", "--key", key}),
            (ordered_json{{"ok", true}, {"command", "press-key"}, {"key", key}}));
}

void clickMiddle(const ServedDesktop& desktop, const ordered_json& frame) {
  const double x = frame["x"].get<double>() + frame["width"].get<double>() / 2;
  const double y = frame["y"].get<double>() + frame["height"].get<double>() / 2;
  EXPECT_EQ(
      desktop.run(
          {"click-point", "--pid", "900", "--x", std::to_string(x), "--y", std::to_string(y)}),
      (ordered_json{{"ok", true}, {"command", "click-point"}, {"point", {{"x", x}, {"y", y}}}}));
}

TEST(Session, APersonChoosesAFileStepByStep) {
  const TemporaryFolder folder;
  const std::string file = folder.makeFile("a letter – 信 📄.txt");
  const ServedDesktop desktop(filePanelScenario(folder));
  EXPECT_EQ(windowTitles(desktop), ordered_json::parse(R"({
      "primary-browser": ["Extensions"], "open-save-panel-service": ["Open"]})"));

  pressKey(desktop, "cmd-shift-g");
  waitForNode(desktop, fieldHolding("/usr/share/doc"));
  pressKey(desktop, "cmd-a");
  pressKey(desktop, "delete");
  waitForNode(desktop, fieldHolding(""));
  EXPECT_EQ(desktop.run({"type-text", "--pid", "900", "--text", file})["textLength"],
            folder.path().size() + std::string("/a letter - x y.txt").size());
  waitForNode(desktop, fieldHolding(file));
  pressKey(desktop, "return");
  waitForNode(desktop, fieldHolding("a letter – 信 📄.txt"));
  const ordered_json button = waitForNode(desktop, [](const ordered_json& node) {
    return node["role"] == "AXButton" && node["title"] == "Open";
  });
  clickMiddle(desktop, button["frame"]);

  EXPECT_EQ(windowTitles(desktop), ordered_json::parse(R"({"primary-browser": ["Extensions"]})"));
  const ordered_json panel = desktop.state()["panels"][0];
  EXPECT_EQ(panel["outcome"], "chosen");
  EXPECT_EQ(panel["path"], file);
}

TEST(Session, ChooseFolderWalksFromThePlaceThatHoldsTheFolder) {
  const TemporaryFolder folder;
  const std::string target = folder.makeFolder("projects/target");
  const ordered_json place{
      {"label", "projects"}, {"path", folder.path() + "/projects"}, {"urlKnown", true}};
  const ordered_json scenario{{"language", "zh-Hans"},
                              {"places", {place}},
                              {"panels", {{{"shape", "service-window"}, {"clicksReach", "both"}}}}};
  const ServedDesktop desktop(folder.makeFile("places.json", scenario.dump()));
  const ordered_json result = desktop.run({"choose-folder", "--pid", "812", "--path", target});
  EXPECT_EQ(result["strategy"], "hierarchy");
  EXPECT_EQ(result["dialogPid"], 900);
  EXPECT_EQ(desktop.state()["panels"][0]["path"], target);
}

TEST(Session, ChooseFolderUsesTheGoToSheetWhereRowsAreNotRecognised) {
  const TemporaryFolder folder;
  const std::string target = folder.makeFolder("target");
  const ServedDesktop desktop("english-service-window");
  const ordered_json result = desktop.run({"choose-folder", "--pid", "812", "--path", target});
  EXPECT_EQ(result["strategy"], "go-to-folder-ax");
  EXPECT_EQ(desktop.state()["panels"][0]["path"], target);
}

TEST(Session, ChoosePathChoosesAFile) {
  const TemporaryFolder folder;
  const std::string file = folder.makeFile("upload.pdf");
  const ServedDesktop desktop("file-panel-english");
  EXPECT_EQ(desktop.run({"choose-path", "--pid", "812", "--path", file}),
            (ordered_json{{"ok", true},
                          {"command", "choose-path"},
                          {"path", file},
                          {"kind", "file"},
                          {"basename", "upload.pdf"},
                          {"strategy", "go-to-folder-ax"},
                          {"commit", "open-button"},
                          {"dialogPid", 900},
                          {"dialogApp", "open-save-panel-service"}}));
  EXPECT_EQ(desktop.state()["panels"][0]["path"], file);
}

TEST(Session, ClosingEndsThePanelAndThenThereIsNothingToClose) {
  const ServedDesktop desktop("chinese-service-window");
  const std::vector<std::string> close{"close", "--pid", "812"};
  const auto closed = [](int count) {
    return ordered_json{{"ok", true}, {"command", "close"}, {"closed", count}};
  };
  EXPECT_EQ(desktop.run({"list-background-panels", "--pid", "812"})["windows"].size(), 2U);
  EXPECT_EQ(desktop.run(close), closed(1));
  EXPECT_EQ(desktop.state()["panels"][0]["outcome"], "cancelled");
  EXPECT_EQ(desktop.run({"list-background-panels", "--pid", "812"})["windows"].size(), 0U);
  EXPECT_EQ(desktop.run(close), closed(0));
}

}  // namespace
}  // namespace tessarine::test
