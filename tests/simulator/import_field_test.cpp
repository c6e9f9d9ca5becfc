// A panel as it may look in the field: that it comes into the scenario as it was, what around it is
// left out, and that nothing tells of its user.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "simulator/scenario/scenario.h"
#include "tests/simulator/printouts.h"

namespace tessarine::test {
namespace {

TEST(Import, APanelOfTheFieldLosesItsNamesAndPaths) {
  const ImportedScenario imported = importField(fieldDialogs(), fieldWindows(), false);
  Json expected = Json::parse(R"({
    "description": "What stood on a Mac, as the tool printed it.",
    "language": "zh-Hans",
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
         {"title": "name-1", "frame": {"x": 1700.0, "y": 0.0, "width": 900.0, "height": 900.0},
          "webElements": 40},
         {"title": "", "frame": {"x": -200.0, "y": -50.0, "width": 400.0, "height": 300.0},
          "webElements": 40},
         {"title": "window-1", "frame": {"x": 300.0, "y": 60.0, "width": 1000.0, "height": 900.0},
          "webElements": 40}]}],
    "frontmost": 301,
    "panels": [{"shape": "host-sheet", "host": 300, "service": 250,
                "frame": {"x": 400.0, "y": 130.0, "width": 800.0, "height": 500.0}}]
  })");
  expected["panels"][0]["tree"] =
      patchedWith(fieldDialogs()["dialogs"][0]["nodes"], {{"/1/value", "name-1"},
                                                          {"/5/value", "name-2"},
                                                          {"/6/title", "name-3"},
                                                          {"/8/title", "name-4"},
                                                          {"/8/actions/1", "action-1"},
                                                          {"/11/value", "name-5"},
                                                          {"/13/value", "name-3"},
                                                          {"/15/value", "/name-6"},
                                                          {"/16/value", "name-2"}});
  EXPECT_EQ(imported.document, expected) << imported.document.dump(2);
  EXPECT_EQ(imported.omissions, Lines{"the order of the browser's windows"});
  EXPECT_NO_THROW(simulator::scenarioFromText(imported.document.dump(), "imported"));
}

TEST(Import, NamesAreKeptOnRequestAndPathsAreNot) {
  const Json kept = importField(fieldDialogs(), fieldWindows(), true).document;
  EXPECT_EQ(kept["panels"][0]["tree"],
            patchedWith(fieldDialogs()["dialogs"][0]["nodes"],
                        {{"/8/actions/1", "action-1"}, {"/15/value", "/name-1"}}))
      << "the action's colon may be one of a path";
  EXPECT_EQ(kept["processes"][2]["windows"][2]["title"], "Bank of jane");
}

// The dialogs that the tool prints on the scenario, with names.
Json printedAgain(const Json& dialogs) {
  return printed(importField(dialogs, fieldWindows(), true), "300").allDialogs();
}

TEST(Import, APanelOfTheFieldIsPrintedTheSame) {
  const Json expected =
      patchedWith(fieldDialogs()["dialogs"],
                  {{"/0/nodes/8/actions/1", "action-1"}, {"/0/nodes/15/value", "/name-1"}});
  EXPECT_EQ(printedAgain(fieldDialogs()), expected);
}

TEST(Import, WhatTheModelDoesNotKnowIsPrintedTheSame) {
  const Json area = frame(400, 130, 800, 500);
  const Json cell = frame(600, 200, 100, 20);
  const Json nodes{node("AXSheet", area, {"", "打开", "value of a sheet"}, {"AXCancel", "AXRaise"}),
                   node("AXSplitGroup", area),
                   node("AXSplitGroup", frame(551, 130, 649, 500)),
                   node("", frame(0, 0, 0, 0)),
                   node("AXBusyIndicator", frame(410, 140, 16, 16), {"Wait", "", "0.5"}),
                   node("AXBrowser", frame(551, 190, 649, 380), {"", "列视图", ""}),
                   node("AXCheckBox", frame(420.5, 600, 90, 24), {"Options", "", ""}, {"AXPress"}),
                   node("AXScrollArea", frame(551, 190, 200, 380)),
                   node("AXList", frame(551, -4000, 200, 9000)),
                   node("AXGroup", cell),
                   node("AXTextField", cell, {"", "", "10 MB"}, {"AXOpen", "AXShowMenu"}),
                   node("AXImage", frame(700, 900, 16, 16))};
  const Json dialogs = patchedWith(fieldDialogs(), {{"/dialogs/0/nodes", nodes}});
  EXPECT_EQ(printedAgain(dialogs), dialogs["dialogs"]);
}

// A path may be encoded for a URL, or be that of another system or of the Finder.
TEST(Import, WhatMayHoldAPathIsNotKept) {
  const auto keptTitle = [](const std::string& title) {
    const Json windows = patchedWith(fieldWindows(), {{"/apps/0/windows/1/title", title}});
    return importField(fieldDialogs(), windows, true)
        .document["processes"][2]["windows"][2]["title"];
  };
  for (const char* title :
       {"Index of /Users/jane", "jane@mac: ~", "file:%2F%2FUsers%2Fjane", "%2fUsers%2fjane",
        "%252FUsers", "Macintosh HD:Users:jane", "C:\\Users\\jane", "Users ▸ jane", "Users › jane",
        "Users／jane", "Users∕jane", "Users⁄jane"}) {
    EXPECT_EQ(keptTitle(title), "window-1") << title;
  }
  for (const char* title : {"~jane", "/Users/joe"}) EXPECT_EQ(keptTitle(title), "/window-1");
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
  EXPECT_EQ(tried, 3 + 17 * 4 + 3 + 4 * 4U);
}

TEST(Import, SaysWhatAScenarioDoesNotExpress) {
  const Json emptySheet =
      Json::array({node("AXSheet", frame(400, 130, 800, 500), {"", "打开", ""})});
  const Json other =
      patchedWith(fieldDialogs()["dialogs"][0], {{"/nodes/0/frame", frame(0, 0, 800, 500)}});
  const std::vector<std::pair<Patches, std::string>> rows{
      {{{"/dialogs/0/nodes/0/frame", frame(0, 0, 0, 0)}}, "the frame of /dialogs/0"},
      {{{"/dialogs/0/nodes/0/frame", frame(0, 0, 8e8, 500)}}, "the frame of /dialogs/0"},
      {{{"/dialogs/0/root/title", "jane"}},
       "the root of /dialogs/0, as its first node tells otherwise"},
      {{{"/dialogs/1", other}}, "that no dialog beside /dialogs/1 has the focus"},
      {{{"/dialogs/1", other}}, "which panel stands in which window"},
      {{{"/dialogs/0/nodes/0/role", "AXGroup"}},
       "what stands between /dialogs/0 and the browser's window"},
      {{{"/dialogs/0/nodes", emptySheet}}, "the language, which is taken for English"},
      {{{"/dialogs/0/nodes", Json(700, emptySheet[0])}},
       "what /dialogs/0 holds beyond the 700 nodes listed"}};
  for (const auto& [patches, line] : rows) {
    const auto imported = importField(patchedWith(fieldDialogs(), patches), fieldWindows(), false);
    EXPECT_THAT(imported.omissions, ::testing::Contains(line));
    simulator::scenarioFromText(imported.document.dump(), "imported");
  }
}

TEST(Import, SaysWhichWindowsAreNotAsTheyWere) {
  const Printed before = printed("english-host-window");
  const Json front = window("AXWindow", "Front", frame(0, 0, 500, 400));
  const auto omitted = [&](const Patches& patches) {
    const Json windows = patchedWith(Json::parse(before.windows.text), patches);
    return importScenario(before.dialogs, Printout{"windows.json", windows.dump()}, true).omissions;
  };
  EXPECT_EQ(omitted({}), Lines{});
  EXPECT_EQ(omitted({{"/apps/0/windows/0/subrole", "AXSystemDialog"}}),
            Lines{"the subrole of /dialogs/0"});
  EXPECT_EQ(omitted({{"/apps/0/windows/1/subrole", "AXDialog"}}),
            Lines{"the subrole and the description of the window at /apps/0/windows/1"});
  EXPECT_EQ(omitted({{"/apps/0/windows/1/description", "jane"}}),
            Lines{"the subrole and the description of the window at /apps/0/windows/1"});
  EXPECT_EQ(omitted({{"/apps/0/windows/1/role", "AXDrawer"}}),
            Lines{"the window at /apps/0/windows/1"});
  const Json listed = Json::parse(before.windows.text)["apps"][0]["windows"];
  EXPECT_EQ(omitted({{"/apps/0/windows", {front, listed[0], listed[1]}}}),
            Lines{"the order of the browser's windows"});
}

TEST(Import, ADialogBehindAnotherStandsBeforeItInTheScenario) {
  Json dialogs = patchedWith(fieldDialogs(), {{"/dialogs/0/nodes/0/title", "jane"}});
  dialogs["dialogs"].push_back(
      patchedWith(dialogs["dialogs"][0],
                  {{"/nodes/0/frame", frame(0, 0, 800, 500)}, {"/nodes/0/title", "joe"}}));
  const Json panels = importField(dialogs, fieldWindows(), true).document["panels"];
  EXPECT_EQ(panels[0]["tree"][0]["title"], "joe");
  EXPECT_EQ(panels[1]["tree"][0]["title"], "jane");
}

// The service's dialog stands where the browser's does, or where a sheet in it does.
TEST(Import, APanelThatBothProcessesShowStandsInBothTrees) {
  const Json windowOfService = node("AXWindow", frame(400, 130, 800, 500), {"打开", "", ""});
  const Json windowOfBrowser = node("AXWindow", frame(0, 0, 1300, 800), {"Upload", "", ""});
  Json dialogs = patchedWith(fieldDialogs(), {{"/dialogs/0/nodes/8/title", "打开"}});
  dialogs["dialogs"].push_back(patchedWith(
      dialogs["dialogs"][0],
      {{"/pid", 250}, {"/label", "open-save-panel-service"}, {"/nodes/0", windowOfService}}));
  const auto expectBoth = [](const Json& seen, const char* shape) {
    const auto imported = importField(seen, fieldWindows(), true);
    const Json& panels = imported.document["panels"];
    EXPECT_EQ(panels[0]["shape"], shape);
    EXPECT_EQ(panels[0]["service"], 250);
    EXPECT_EQ(panels[0].value("listed", ""), "host");
    EXPECT_EQ(panels[1]["shape"], "service-window");
    EXPECT_EQ(panels[1]["service"], 250);
    EXPECT_EQ(panels[1].value("listed", ""), "service");
    EXPECT_EQ(printed(imported, "300").allDialogs().size(), 2U);
  };
  expectBoth(dialogs, "host-sheet");
  Json& nodes = dialogs["dialogs"][0]["nodes"];
  nodes.insert(nodes.begin(), windowOfBrowser);
  expectBoth(dialogs, "host-window");
}

}  // namespace
}  // namespace tessarine::test
