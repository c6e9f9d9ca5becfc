// A panel as it may look in the field: what of it comes into the scenario, what is left out, and
// that nothing tells of its user.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "simulator/scenario/scenario.h"
#include "tests/simulator/printouts.h"

namespace tessarine::test {
namespace {

TEST(Import, APanelOfTheFieldLosesItsNamesAndPaths) {
  const ImportedScenario imported = importField(fieldDialogs(), fieldWindows(), false);
  const Json expected = Json::parse(R"({
    "description": "What stood on a Mac, as the tool printed it.",
    "language": "zh-Hans",
    "places": [{"label": "name-3", "path": "/usr/share"},
               {"label": "name-4", "path": "/usr/share"}],
    "screens": [{"x": 0.0, "y": 0.0, "width": 2600.0, "height": 960.0},
                {"x": -200.0, "y": -50.0, "width": 200.0, "height": 1010.0},
                {"x": 0.0, "y": -50.0, "width": 2600.0, "height": 50.0}],
    "processes": [
      {"pid": 251, "name": "Finder",
       "command": "/System/Library/CoreServices/Finder.app/Contents/MacOS/Finder"},
      {"pid": 301, "name": "Terminal",
       "command": "/System/Applications/Utilities/Terminal.app/Contents/MacOS/Terminal",
       "windows": [{"title": "Terminal",
                    "frame": {"x": 700.0, "y": 400.0, "width": 640.0, "height": 420.0}}]},
      {"pid": 300, "name": "Google Chrome",
       "command": "/Applications/Google Chrome.app/Contents/MacOS/Google Chrome",
       "windows": [
         {"title": "name-2", "frame": {"x": 1700.0, "y": 0.0, "width": 900.0, "height": 900.0},
          "webElements": 40},
         {"title": "", "frame": {"x": -200.0, "y": -50.0, "width": 400.0, "height": 300.0},
          "webElements": 40},
         {"title": "window-1", "frame": {"x": 300.0, "y": 60.0, "width": 1000.0, "height": 900.0},
          "webElements": 40}]}],
    "frontmost": 301,
    "panels": [{
      "shape": "host-sheet", "host": 300, "service": 250,
      "prompt": "name-1", "message": "name-2",
      "frame": {"x": 400.0, "y": 130.0, "width": 800.0, "height": 500.0},
      "layout": {"confirmButton": {"x": 690.0, "y": 460.0, "width": 90.0, "height": 24.0},
                 "list": {"x": 151.0, "y": 60.0, "width": 649.0, "height": 380.0}}}]
  })");
  EXPECT_EQ(imported.document, expected) << imported.document.dump(2);
  EXPECT_EQ(imported.omissions,
            (Lines{guess("folders"), "1 of the role \"AXCheckBox\" in /dialogs/0",
                   "the order of the browser's windows"}));
  EXPECT_NO_THROW(simulator::scenarioFromText(imported.document.dump(), "imported"));
}

TEST(Import, NamesAreKeptOnRequestAndPathsAreNot) {
  const Json kept = importField(fieldDialogs(), fieldWindows(), true).document;
  EXPECT_EQ(kept["panels"][0]["prompt"], "上传 jane");
  EXPECT_EQ(kept["panels"][0]["message"], "给 jane 上传");
  EXPECT_EQ(kept["places"][0]["label"], "jane");
  EXPECT_EQ(kept["places"][1]["label"], "name-1") << "it was a path";
  EXPECT_EQ(kept["processes"][2]["windows"][2]["title"], "Bank of jane");
}

// A path may be encoded for a URL, or be that of another system or of the Finder.
TEST(Import, WhatMayHoldAPathIsNotKept) {
  const auto keptTitle = [](const std::string& title) {
    const Json windows = patchedWith(fieldWindows(), {{"/apps/0/windows/1/title", title}});
    return importField(fieldDialogs(), windows, true)
        .document["processes"][2]["windows"][2]["title"];
  };
  for (const char* title :
       {"Index of /Users/jane", "~jane", "jane@mac: ~", "file:%2F%2FUsers%2Fjane",
        "%2fUsers%2fjane", "%252FUsers", "Macintosh HD:Users:jane", "C:\\Users\\jane",
        "Users ▸ jane", "Users › jane", "Users／jane", "Users∕jane", "Users⁄jane"}) {
    EXPECT_EQ(keptTitle(title), "window-1") << title;
  }
  for (const char* title : {"Bank: jane", "10 % off", "100%", "jane - 2", "简：扩展程序"}) {
    EXPECT_EQ(keptTitle(title), title);
  }
}

// The places of all texts.
std::vector<std::string> textsIn(const Json& printout) {
  std::vector<std::string> places;
  const Json flat = printout.flatten();
  for (const auto& [place, value] : flat.items()) {
    if (value.is_string()) places.push_back(place);
  }
  return places;
}

// "command" and "label" can only be what they are.
bool isFree(const std::string& place) {
  return place != "/command" && !place.ends_with("/label");
}

TEST(Import, NoTextThatWasPrintedIsRepeated) {
  std::size_t tried = 0;
  const auto expectSilence = [&](const Json& dialogs, const Json& windows,
                                 const std::string& place) {
    ++tried;
    const ImportedScenario imported = importField(dialogs, windows, false);
    EXPECT_EQ(imported.document.dump().find("jane"), std::string::npos) << place;
    for (const auto& line : imported.omissions) {
      EXPECT_EQ(line.find("jane"), std::string::npos) << place << ": " << line;
    }
    simulator::scenarioFromText(imported.document.dump(), "imported");
  };
  for (const auto& place : textsIn(fieldDialogs())) {
    if (!isFree(place)) continue;
    expectSilence(patchedWith(fieldDialogs(), {{place, "jane"}}), fieldWindows(), place);
  }
  for (const auto& place : textsIn(fieldWindows())) {
    if (!isFree(place)) continue;
    expectSilence(fieldDialogs(), patchedWith(fieldWindows(), {{place, "jane"}}), place);
  }
  EXPECT_EQ(tried, 3 + 17 * 4 + 4 * 4U);
}

TEST(Import, SaysWhatAScenarioDoesNotExpress) {
  const Json emptySheet = Json::array({node("AXSheet", frame(400, 130, 800, 500))});
  const Json dialog = fieldDialogs()["dialogs"][0];
  const Json twin = patchedWith(dialog, {{"/pid", 250}, {"/label", "open-save-panel-service"}});
  const Json other = patchedWith(dialog, {{"/root/frame", frame(0, 0, 800, 500)}});
  const std::vector<std::pair<Patches, std::string>> rows{
      {{{"/dialogs/0/root/frame", frame(0, 0, 0, 0)}}, "the frame of /dialogs/0"},
      {{{"/dialogs/0/root/frame", frame(0, 0, 8e8, 500)}}, "the frame of /dialogs/0"},
      {{{"/dialogs/1", twin}}, "/dialogs/1, which is /dialogs/0 in the tree of its service"},
      {{{"/dialogs/1", other}}, "that no dialog beside /dialogs/1 has the focus"},
      {{{"/dialogs/1", other}}, "which panel stands in which window"},
      {{{"/dialogs/1", other}, {"/dialogs/1/nodes/13/value", "mary"}},
       "the sidebar of /dialogs/1, as it differs"},
      {{{"/dialogs/0/root/role", "AXDialog"}}, "the role of /dialogs/0, \"AXDialog\""},
      {{{"/dialogs/0/root/description", "Jane"}}, "the description of /dialogs/0"},
      {{{"/dialogs/0/nodes/8/frame", frame(1120, 590, 80.5, 24)}},
       "the layout's confirmButton of /dialogs/0, which reaches beyond the panel"},
      {{{"/dialogs/0/nodes/7/title", "Cancel"}}, "the text of the Cancel button of /dialogs/0"},
      {{{"/dialogs/0/nodes/8/title", "选择"}},
       "that the controls of /dialogs/0 are not known to the tool"},
      {{{"/dialogs/0/chooserControlsAvailable", true}},
       "that the controls of /dialogs/0 are known to the tool"},
      {{{"/dialogs/0/nodes/5/role", "Menu\nbar"}}, "1 of the role \"?\" in /dialogs/0"},
      {{{"/dialogs/0/nodes", emptySheet}},
       "the language of /dialogs/0, which is taken for English"},
      {{{"/dialogs/0/nodes", emptySheet}}, "that /dialogs/0 has no controls yet"},
      {{{"/dialogs/0/nodes", Json(700, emptySheet[0])}},
       "what /dialogs/0 holds beyond the 700 nodes listed"}};
  for (const auto& [patches, line] : rows) {
    const auto imported = importField(patchedWith(fieldDialogs(), patches), fieldWindows(), false);
    EXPECT_THAT(imported.omissions, ::testing::Contains(line));
    simulator::scenarioFromText(imported.document.dump(), "imported");
  }
}

TEST(Import, ASecondDialogIsThePanelBehindOrTheServicesViewOfTheFirst) {
  const auto panelsWith = [](const Patches& patches) {
    Json dialogs = patchedWith(fieldDialogs(), {{"/dialogs/0/root/title", "jane"}});
    dialogs["dialogs"].push_back(patchedWith(dialogs["dialogs"][0], patches));
    return importScenario({"panel.json", dialogs.dump()}, {}, false).document["panels"];
  };
  const Json behind = panelsWith({{"/root/frame", frame(0, 0, 800, 500)}, {"/root/title", "joe"}});
  EXPECT_EQ(behind[0]["title"], "name-5") << "after the first panel's title, words and places";
  EXPECT_EQ(behind[1]["title"], "name-1");
  const Json seenTwice = panelsWith({{"/pid", 250}, {"/label", "open-save-panel-service"}});
  EXPECT_EQ(seenTwice.size(), 1U);
  EXPECT_EQ(seenTwice[0]["service"], 250);
}

TEST(Import, AWindowOfAKindOfItsOwnIsNotInTheScenario) {
  const Printed before = printed("english-host-window");
  const auto modality = [&](const std::string& subrole) {
    const Patches patch{{"/apps/0/windows/0/subrole", subrole}};
    const Json windows = patchedWith(Json::parse(before.windows.text), patch);
    return importScenario(before.dialogs, Printout{"windows.json", windows.dump()}, true).omissions;
  };
  EXPECT_EQ(modality("AXDialog"), Lines{});
  EXPECT_EQ(modality("AXSystemDialog"), Lines{"the subrole of /dialogs/0, \"AXSystemDialog\""});
}

}  // namespace
}  // namespace tessarine::test
