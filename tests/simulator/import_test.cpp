// A scenario made from what the tool printed is like the desktop on which it was printed, and tells
// nothing of its user.
#include "simulator/scenario/import.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <vector>

#include "simulator/scenario/scenario.h"
#include "support/temporary_folder.h"
#include "support/world.h"

namespace tessarine::test {
namespace {

using Json = nlohmann::ordered_json;
using simulator::ImportedScenario;
using simulator::importScenario;
using simulator::Printout;
using simulator::readPrintout;
using simulator::ScenarioError;
using Lines = std::vector<std::string>;

// What the two commands print on a desktop.
struct Printed {
  Printout dialogs;
  Printout windows;

  ImportedScenario imported() const { return importScenario(dialogs, windows, true); }
  Json allDialogs() const { return Json::parse(dialogs.text)["dialogs"]; }
  Json browsersWindows() const { return Json::parse(windows.text)["apps"][0]; }
};

Printed printed(const std::string& scenario, const World::Patches& patches = {}) {
  World world(scenario, patches);
  return {{"panel.json", world.run({"inspect-open-dialog", "--pid", "812"}).output},
          {"windows.json", world.run({"list-windows", "--pid", "812"}).output}};
}

Printed printed(const ImportedScenario& imported) {
  return printed("no-panel", {{"", imported.document}});
}

// What comes of a strict choice: the tool's own account, and the panels'.
std::string choice(const std::string& scenario, const World::Patches& patches,
                   const std::string& path) {
  World world(scenario, patches);
  const Outcome outcome =
      world.run({"choose-folder", "--strict-background", "--pid", "812", "--path", path});
  return ::testing::PrintToString(outcome) + world.panelOutcomes();
}

// --- There and back: the scenarios that come with the desktop. ---

const std::string noPanel = "a panel, as there is no dialog";

// In these the tool finds no dialog.
const std::map<std::string, Lines> withoutDialog{
    {"english-host-sheet", {noPanel, "the window at /apps/0/windows/1"}},
    {"german-service-window", {noPanel, "the window at /apps/1/windows/0"}},
    {"late-panel", {noPanel}},
    {"no-panel", {noPanel}},
    {"slow-panel", {noPanel}},
    {"unseen-folders", {noPanel}},
    {"unseen-tmp-host-chinese", {noPanel}},
    {"unseen-tmp-service-chinese", {noPanel}}};

std::string guess(const std::string& mode) {
  return "whether /dialogs/0 chooses files or folders, which its buttons do not tell; taken for " +
         mode;
}

// All that is left out of the others.
const std::map<std::string, Lines> omissions{{"edge-chinese", {guess("folders")}},
                                             {"file-panel-chinese", {guess("files")}},
                                             {"file-panel-english", {guess("files")}},
                                             {"tmp-files-chinese", {guess("files")}},
                                             {"two-panels", {"the window at /apps/1/windows/1"}}};

// Scenarios whose peculiarity no printout shows.
const std::map<std::string, std::string> otherwiseChosen{
    {"chinese-old-generation", "the kind of a go-to sheet that is not open"},
    {"half-off-screen-panel", "where the screens end"},
    {"keys-reach-host", "which process takes the keys"},
    {"off-screen-panel", "where the screens end"},
    {"two-panels", "the panel behind"}};

// A printout names the entries of the folder shown and not the folder, which becomes the usual one.
const std::map<std::string, World::Patches> usualFolder{
    {"tmp-files-chinese", {{"/panels/0/folder", "/usr"}, {"/panels/0/sort", "name"}}},
    {"two-panels", {{"/panels/1/folder", "/usr"}}}};

template <class Value>
Value valueFor(const std::string& name, const std::map<std::string, Value>& values) {
  const auto found = values.find(name);
  return found == values.end() ? Value() : found->second;
}

std::vector<std::string> withDialog() {
  auto names = simulator::bundledScenarioNames();
  std::erase_if(names, [](const auto& name) { return withoutDialog.contains(name); });
  return names;
}

TEST(Import, NoDialogMakesAScenarioWithoutPanels) {
  for (const auto& [name, lines] : withoutDialog) {
    const ImportedScenario imported = printed(name).imported();
    EXPECT_EQ(imported.document["panels"], Json::array()) << name;
    EXPECT_EQ(imported.omissions, lines) << name;
    EXPECT_EQ(printed(imported).allDialogs(), Json::array()) << name;
  }
}

class RoundTrip : public ::testing::TestWithParam<std::string> {};

TEST_P(RoundTrip, KeepsEveryNodeOfTheDialogsAndTheBrowsersWindows) {
  const Printed before = printed(GetParam(), valueFor(GetParam(), usualFolder));
  const ImportedScenario imported = before.imported();
  const Printed after = printed(imported);
  EXPECT_NE(before.allDialogs(), Json::array());
  EXPECT_EQ(after.allDialogs(), before.allDialogs());
  EXPECT_EQ(after.browsersWindows(), before.browsersWindows());
  EXPECT_EQ(imported.omissions, valueFor(GetParam(), omissions));
}

TEST_P(RoundTrip, KeepsWhatComesOfAChoice) {
  const TemporaryFolder folder;
  const Printed before = printed(GetParam());
  const Json redacted = importScenario(before.dialogs, before.windows, false).document;
  const bool same =
      choice("no-panel", {{"", redacted}}, folder.path()) == choice(GetParam(), {}, folder.path());
  EXPECT_EQ(same, !otherwiseChosen.contains(GetParam()));
}

INSTANTIATE_TEST_SUITE_P(Bundled, RoundTrip, ::testing::ValuesIn(withDialog()), [](auto& instance) {
  std::string name = instance.param;
  std::replace(name.begin(), name.end(), '-', '_');
  return name;
});

// --- There and back: one peculiarity each. ---

struct Variant {
  const char* scenario;
  World::Patches patches;
  Lines omissions;
};

const Json layout{{"confirmButton", {{"x", 10}, {"y", 380}, {"width", 90}, {"height", 30}}},
                  {"list", {{"x", 200}, {"y", 60}, {"width", 300}, {"height", 200}}}};
const Json openSheet{{"openAtStart", true}};
const Json openComboBox{{"openAtStart", true}, {"generation", "old"}, {"comboBox", true}};
const Json openWithoutConfirm{{"openAtStart", true}, {"withoutConfirm", true}};
const Json twoWindows = Json::parse(R"([
    {"title": "Front", "frame": {"x": 900, "y": 0, "width": 500, "height": 400}},
    {"title": "Back", "frame": {"x": 0, "y": 0, "width": 1200, "height": 800}}])");

const std::vector<Variant> variants{
    {"english-service-window", {{"/panels/0/layout", layout}}, {}},
    {"chinese-host-sheet", {{"/panels/0/layout", layout}}, {}},
    {"english-host-window", {{"/panels/0/modal", false}}, {}},
    {"english-host-window", {{"/panels/0/title", "Pick one"}}, {}},
    {"chinese-service-window", {{"/panels/0/title", ""}}, {}},
    {"chinese-host-sheet", {{"/panels/0/title", "Pick one"}}, {}},
    {"chinese-host-sheet", {{"/panels/0/message", "Pick one"}}, {}},
    {"english-service-window", {{"/panels/0/message", "Pick one"}}, {}},
    {"english-service-window", {{"/panels/0/prompt", "Pick"}}, {guess("folders")}},
    {"english-service-window", {{"/panels/0/faults/noCancelButton", true}}, {}},
    {"english-service-window", {{"/panels/0/faults/noConfirmButton", true}}, {guess("folders")}},
    {"german-service-window", {{"/panels/0/title", "Open"}}, {}},
    {"german-service-window", {{"/panels/0/title", "Open"}, {"/panels/0/prompt", "Choose"}}, {}},
    {"english-host-sheet", {{"/panels/0/prompt", "Choose"}}, {}},
    {"english-host-sheet", {{"/panels/0/prompt", "Choose"}, {"/panels/0/goTo", openSheet}}, {}},
    {"chinese-host-sheet", {{"/panels/0/goTo", openSheet}}, {}},
    {"chinese-embedded", {{"/panels/0/goTo", openSheet}}, {}},
    {"chinese-embedded", {{"/panels/0/message", ""}}, {}},
    {"chinese-embedded", {{"/language", "en"}, {"/panels/0/prompt", "Choose"}}, {}},
    {"chinese-service-window", {{"/panels/0/goTo", openComboBox}}, {}},
    {"english-service-window", {{"/panels/0/goTo", openWithoutConfirm}}, {}},
    {"edge-chinese", {{"/processes/2/windows", twoWindows}}, {guess("folders")}},
};

TEST(Import, KeepsEveryNodeOfAPeculiarPanel) {
  for (const auto& [scenario, patches, lines] : variants) {
    SCOPED_TRACE(scenario + Json(patches).dump());
    const Printed before = printed(scenario, patches);
    const ImportedScenario imported = before.imported();
    const Printed after = printed(imported);
    EXPECT_NE(before.allDialogs(), Json::array());
    EXPECT_EQ(after.allDialogs(), before.allDialogs());
    EXPECT_EQ(after.browsersWindows(), before.browsersWindows());
    EXPECT_EQ(imported.omissions, lines);
  }
}

TEST(Import, WithoutItsWindowsTheBrowserHasOne) {
  for (const char* scenario : {"chinese-embedded", "chinese-host-sheet", "chinese-host-window"}) {
    const Printed before = printed(scenario);
    const auto imported = importScenario(before.dialogs, std::nullopt, true);
    EXPECT_EQ(printed(imported).allDialogs(), before.allDialogs()) << scenario;
    EXPECT_EQ(imported.document["processes"][2]["windows"].size(), 1U) << scenario;
  }
}

// --- A panel as it may look in the field. ---

Json frame(double x, double y, double width, double height) {
  return {{"x", x}, {"y", y}, {"width", width}, {"height", height}};
}

struct Words {
  std::string title;
  std::string description;
  std::string value;
};

Json node(const std::string& role, const Json& place, const Words& words = {}) {
  return {{"role", role},         {"title", words.title}, {"description", words.description},
          {"value", words.value}, {"frame", place},       {"actions", Json::array()}};
}

// A sheet with a sidebar, a list that is longer than the panel, and a prompt of its own.
Json fieldDialogs() {
  const Json area = frame(400, 130, 800, 500);
  const Json bar = frame(400, 190, 150, 380);
  const Json list = frame(551, 190, 649, 380);
  const Json nodes{node("AXSheet", area, {"", "打开", ""}),
                   node("AXStaticText", frame(420, 140, 760, 20), {"", "", "给 jane 上传"}),
                   node("AXSplitGroup", area),
                   node("AXScrollArea", bar),
                   node("AXScrollArea", list),
                   node("AXPopUpButton", frame(700, 160, 200, 24), {"位置：", "", "jane-secret"}),
                   node("AXCheckBox", frame(420, 600, 90, 24), {"jane", "", ""}),
                   node("AXButton", frame(980, 590, 90, 24), {"取消", "", ""}),
                   node("AXButton", frame(1090, 590, 90, 24), {"上传 jane", "", ""}),
                   node("AXOutline", bar, {"", "边栏", ""}),
                   node("AXOutline", frame(551, 190, 649, 4800), {"", "列表视图", ""}),
                   node("AXStaticText", frame(410, 194, 120, 16), {"", "", "位置"}),
                   node("AXImage", frame(404, 222, 16, 16)),
                   node("AXStaticText", frame(424, 222, 120, 16), {"", "", "jane"}),
                   node("AXImage", frame(404, 246, 16, 16)),
                   node("AXStaticText", frame(424, 246, 120, 16), {"", "", "/Users/jane"}),
                   node("AXTextField", frame(575, 218, 600, 16), {"", "", "jane-secret"})};
  return {
      {"ok", true},
      {"command", "inspect-open-dialog"},
      {"primaryPid", 300},
      {"dialogs",
       {{{"pid", 300},
         {"label", "primary-browser"},
         {"root", {{"role", "AXSheet"}, {"title", ""}, {"description", "打开"}, {"frame", area}}},
         {"nodes", nodes},
         {"chooserControlsAvailable", false}}}}};
}

Json window(const std::string& role, const std::string& title, const Json& place) {
  return {{"role", role},
          {"subrole", "AXStandardWindow"},
          {"title", title},
          {"description", ""},
          {"frame", place}};
}

// The sheet hangs from the second of three windows.
Json fieldWindows() {
  const Json windows{window("AXWindow", "给 jane 上传", frame(1700, 0, 900, 900)),
                     window("AXWindow", "Bank of jane", frame(300, 60, 1000, 900)),
                     window("AXWindow", "", frame(-200, -50, 400, 300)),
                     window("AXSheet", "", frame(400, 130, 800, 500))};
  return {{"ok", true},
          {"command", "list-windows"},
          {"primaryPid", 300},
          {"apps",
           {{{"pid", 300}, {"label", "primary-browser"}, {"windows", windows}},
            {{"pid", 250}, {"label", "open-save-panel-service"}, {"windows", Json::array()}}}}};
}

ImportedScenario importField(const Json& dialogs, const Json& windows, bool keepNames) {
  return importScenario({"panel.json", dialogs.dump()}, Printout{"windows.json", windows.dump()},
                        keepNames);
}

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

// --- What is not in the scenario. ---

using Patches = std::vector<std::pair<std::string, Json>>;

Json patchedWith(Json document, const Patches& patches) {
  for (const auto& [pointer, value] : patches) document[Json::json_pointer(pointer)] = value;
  return document;
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
      {{{"/dialogs/0/nodes/5/role", "Menu\nbar"}}, "1 of the role \"Menu\\nbar\" in /dialogs/0"},
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

// --- Mistakes. ---

std::string mistake(const std::string& dialogs, const std::string& windows) {
  try {
    importScenario({"panel.json", dialogs}, Printout{"windows.json", windows}, false);
  } catch (const ScenarioError& error) {
    return error.what();
  }
  return "none";
}

TEST(Import, TextThatIsNotTheJsonOfAResultIsRefused) {
  const std::vector<std::pair<std::string, std::string>> rows{
      {"{", "line 1, column 2: expected JSON"},
      {"{\n  \"ok\": NaN}", "line 2, column 9: expected JSON"},
      {R"(["\ud800"])", "line 1, column 9: expected JSON"},
      {R"({"ok": 1e999})", "/: expected numbers of a size that can be held"},
      {std::string(100000, '[') + std::string(100000, ']'), "/: expected an object"},
      {"{}", "/: expected the key \"ok\", which is required"}};
  for (const auto& [text, expected] : rows) {
    EXPECT_EQ(mistake(text, "{}"), "panel.json: " + expected);
  }
}

TEST(Import, WhatTheCommandDoesNotPrintIsRefusedAtItsPlace) {
  const std::vector<std::pair<std::pair<std::string, Json>, std::string>> rows{
      {{"/ok", false}, "/ok: expected true"},
      {{"/command", "list-windows"}, "/command: expected \"inspect-open-dialog\""},
      {{"/primaryPid", 0}, "/primaryPid: expected a whole number from 1 to 99999"},
      {{"/dialogs", 1}, "/dialogs: expected a list"},
      {{"/dialogs", Json(101, 0)}, "/dialogs: expected at most 100 dialogs"},
      {{"/more", 1}, "/more: no such key; expected one of ok, command, primaryPid, dialogs"},
      {{"/dialogs/0/pid", 7}, "/dialogs/0/pid: expected 300"},
      {{"/dialogs/0/label", "open-save-panel-service"},
       "/dialogs/0/pid: expected another pid than the browser's"},
      {{"/dialogs/0/label", "other"},
       "/dialogs/0/label: expected one of \"primary-browser\", \"open-save-panel-service\""},
      {{"/dialogs/0/root/title", nullptr}, "/dialogs/0/root/title: expected a text"},
      {{"/dialogs/0/chooserControlsAvailable", 1},
       "/dialogs/0/chooserControlsAvailable: expected true or false"},
      {{"/dialogs/0/nodes", Json::array()}, "/dialogs/0/nodes: expected 1 to 700 nodes"},
      {{"/dialogs/0/nodes", Json(701, 0)}, "/dialogs/0/nodes: expected 1 to 700 nodes"},
      {{"/dialogs/0/nodes/3", Json::array()}, "/dialogs/0/nodes/3: expected an object"},
      {{"/dialogs/0/nodes/3/frame/x", 1e300},
       "/dialogs/0/nodes/3/frame/x: expected a number from -1e+09 to 1e+09"},
      {{"/dialogs/0/nodes/3/frame/width", -1},
       "/dialogs/0/nodes/3/frame/width: expected a number from 0 to 1e+09"},
      {{"/dialogs/0/nodes/3/actions", {7}}, "/dialogs/0/nodes/3/actions/0: expected a text"}};
  for (const auto& [patch, expected] : rows) {
    EXPECT_EQ(mistake(patchedWith(fieldDialogs(), {patch}).dump(), fieldWindows().dump()),
              "panel.json: " + expected);
  }
}

TEST(Import, WindowsOfAnotherBrowserAreRefused) {
  const std::vector<std::pair<std::pair<std::string, Json>, std::string>> rows{
      {{"/primaryPid", 812}, "/primaryPid: expected 300"},
      {{"/command", "list"}, "/command: expected \"list-windows\""},
      {{"/apps/0/windows/1/subrole", 1}, "/apps/0/windows/1/subrole: expected a text"}};
  for (const auto& [patch, expected] : rows) {
    EXPECT_EQ(mistake(fieldDialogs().dump(), patchedWith(fieldWindows(), {patch}).dump()),
              "windows.json: " + expected);
  }
}

TEST(Import, FilesThatAreNoPrintoutsAreRefused) {
  const auto refusal = [](const std::string& path) {
    try {
      return readPrintout(path).text;
    } catch (const ScenarioError& error) {
      return std::string(error.what());
    }
  };
  const TemporaryFolder folder;
  const std::string missing = folder.path() + "/missing";
  const std::string large = folder.makeFile("large", std::string((4 << 20) + 1, ' '));
  const std::string largest = std::string(4 << 20, ' ');
  EXPECT_EQ(refusal(missing), missing + ": /: expected a file that can be read");
  EXPECT_EQ(refusal(folder.path()), folder.path() + ": /: expected a file that can be read");
  EXPECT_EQ(refusal(large), large + ": /: expected at most 4 MiB");
  EXPECT_EQ(refusal(folder.makeFile("largest", largest)), largest);
}

}  // namespace
}  // namespace tessarine::test
