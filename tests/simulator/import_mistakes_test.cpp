// What the tool did not print is refused, with one line that says where it is wrong.
#include <gtest/gtest.h>

#include "simulator/scenario/scenario.h"
#include "support/temporary_folder.h"
#include "tests/simulator/printouts.h"

namespace tessarine::test {
namespace {

using simulator::readPrintout;
using simulator::ScenarioError;

std::string mistake(const std::string& dialogs, const std::string& windows) {
  try {
    importScenario({"panel.json", dialogs}, Printout{"windows.json", windows}, false);
  } catch (const ScenarioError& error) {
    return error.what();
  }
  return "none";
}

// The place so many lists deep.
std::string zeros(int depth) {
  std::string place = "0";
  while (--depth > 0) place += "/0";
  return place;
}

TEST(Import, TextThatIsNotTheJsonOfAResultIsRefused) {
  const std::vector<std::pair<std::string, std::string>> rows{
      {"{", "line 1, column 2: expected JSON"},
      {"{\n  \"ok\": NaN}", "line 2, column 9: expected JSON"},
      {R"(["\ud800"])", "line 1, column 9: expected JSON"},
      {"", "line 1, column 1: expected JSON"},
      {"{\"ok\": \"\xff\"}", "line 1, column 9: expected JSON"},
      {std::string("{}\0{}", 5), "line 1, column 3: expected JSON"},
      {R"({"ok": 1e999})", "/: expected JSON whose numbers are within the range of a double"},
      {std::string(101, '['), "/" + zeros(100) + ": expected no more than 100 levels"},
      {std::string(100, '[') + std::string(100, ']'), "/: expected an object"},
      {std::string(4 << 20, '['), "/" + zeros(100) + ": expected no more than 100 levels"},
      {R"({"ok": true, "ok": true})", "/ok: expected each key once"},
      {R"({"a": [0, {"b": 1}, {"b": [{}], "c/d": 1, "c/d": 2}]})",
       "/a/2/c~1d: expected each key once"},
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
      {{"/one\ntwo\x1b", 1},
       "/one\\u000atwo\\u001b: no such key; expected one of ok, command, primaryPid, dialogs"},
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
      {{"/dialogs/0/nodes/3/actions", {7}}, "/dialogs/0/nodes/3/actions/0: expected a text"},
      {{"/dialogs/0/nodes/3/actions", {"AXPress", "AXPick", "AXPress"}},
       "/dialogs/0/nodes/3/actions/2: expected each action once"}};
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

// Whatever stands in the place of anything that is printed.
TEST(Import, EveryValueIsReadOrRefusedAtItsPlace) {
  const Json values =
      Json::parse(R"([null, true, 0, -1, 1e308, "", "\u0000\n", [], {}, [[]], {"x": 0}])");
  const std::string nodes = "/dialogs/0/nodes/";
  std::size_t refusals = 0;
  const Json flat = fieldDialogs().flatten();
  for (const auto& [place, old] : flat.items()) {
    // The root and the confirm button stand for all the nodes.
    if (place.starts_with(nodes) && !place.starts_with(nodes + "0/") &&
        !place.starts_with(nodes + "8/")) {
      continue;
    }
    for (const Json& value : values) {
      const Json dialogs = patchedWith(fieldDialogs(), {{place, value}});
      try {
        const Json scenario = importField(dialogs, fieldWindows(), false).document;
        EXPECT_NO_THROW(simulator::scenarioFromText(scenario.dump(), "imported")) << place << value;
      } catch (const ScenarioError& error) {
        ++refusals;
        EXPECT_EQ(std::string(error.what()).rfind("panel.json: " + place, 0), 0U) << error.what();
      }
    }
  }
  EXPECT_GT(refusals, 200U);
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
