// The documentation of the record names the fields that are written, and no others.
#include <gtest/gtest.h>

#include <fstream>
#include <map>
#include <nlohmann/json.hpp>
#include <regex>
#include <set>

#include "simulator/scenario/scene.h"
#include "simulator/service/server_report.h"

namespace simulator::record_document {
namespace {

using Json = nlohmann::ordered_json;
using Fields = std::set<std::string>;

// The fields of each section of the page, by the section's title without its marks: the first cell
// of each row of its table.
std::map<std::string, Fields> documented() {
  std::ifstream page(SOURCE_TREE "/docs/desktop-record.md");
  const std::regex field("`([a-zA-Z]+)`");
  std::map<std::string, Fields> sections;
  std::string section;
  for (std::string line; std::getline(page, line);) {
    if (line.starts_with("#")) {
      section = line.substr(line.find(' ') + 1);
      std::erase(section, '`');
    }
    if (!line.starts_with("| `")) continue;
    const std::string cell = line.substr(0, line.find('|', 1));
    for (std::sregex_iterator found(cell.begin(), cell.end(), field), end; found != end; ++found) {
      sections[section].insert((*found)[1]);
    }
  }
  return sections;
}

void addFields(const Json& object, Fields& fields) {
  for (const auto& [key, value] : object.items()) fields.insert(key);
}

// An entry of every kind, with all that it can hold.
void addEveryEntry(Record& record) {
  using Verb = AccessibilityRequest::Verb;
  AccessibilityRequest copy;
  copy.name = "AXRole";
  AccessibilityRequest several;
  several.verb = Verb::copySeveral;
  several.names = {"AXRole"};
  AccessibilityRequest set;
  set.verb = Verb::set;
  set.name = "AXValue";
  set.text = "before";
  set.frame = Rect{1, 2, 3, 4};
  const RecordEntry entries[] = {
      copy,
      several,
      set,
      WorkspaceRequest{"screens"},
      PostedKey{812, {36, true, 0, u"a"}, {}},
      PostedMouse{},
      ProgramStarted{1, "/bin/ps", {"-a"}},
      ProgramEnded{1, "/bin/ps", 0},
      ActivationAsked{},
      FrontmostChanged{},
      WindowOpened{},
      WindowClosed{},
      Milestone{"panel opened", 1},
      ScreenShown{{ShownWindow{}}},
      PanelShown{
          1, "panel", {{"AXTextField", {}, "a", "Search", "Search", true, true, true, true}}, 0}};
  static_assert(std::variant_size_v<RecordEntry> == 13, "an entry of each kind is written here");
  for (const RecordEntry& entry : entries) record.add(0, entry);
}

// What a panel that was chosen and one that was not, a call and every entry come to.
std::map<std::string, Fields> written() {
  const auto scene =
      makeScene(scenarioFromText(R"({"panels": [{"folder": "/"}, {"service": 950}]})", "text"));
  scene->desktop.answer(PostEvent{KeyEvent{36, true, 0, {}}, 900});
  scene->desktop.advanceTo(1);
  addEveryEntry(scene->desktop.record());
  CallLog calls;
  calls.begin({"close"}, "/", 1);
  const Json state = Json::parse(stateJson(*scene, calls, true));
  const Json record = Json::parse(recordJson(*scene, calls, "text", true));
  std::map<std::string, Fields> sections;
  addFields(state, sections["The whole"]);
  addFields(record, sections["The whole"]);
  for (const Json& each : state["processes"]) addFields(each, sections["Processes"]);
  for (const Json& each : state["calls"]) addFields(each, sections["Calls"]);
  for (const Json& each : state["windows"]) addFields(each, sections["Windows"]);
  for (const Json& panel : state["panels"]) {
    addFields(panel, sections["Panels"]);
    for (const Json& each : panel["milestones"]) addFields(each, sections["Panels"]);
  }
  for (const Json& entry : record["entries"]) {
    Fields& fields = sections[entry["what"]];
    addFields(entry, fields);
    for (const char* parts : {"windows", "elements"}) {
      if (entry.contains(parts)) {
        for (const Json& part : entry[parts]) addFields(part, fields);
      }
    }
    fields.erase("at");
    fields.erase("what");
  }
  return sections;
}

TEST(RecordDocument, NamesTheFieldsThatAreWrittenAndNoOthers) {
  const auto expected = documented();
  const auto found = written();
  EXPECT_EQ(found.size(), 18U);
  for (const auto& [section, fields] : found) {
    EXPECT_TRUE(expected.contains(section)) << section << " is not documented";
    if (!expected.contains(section)) continue;
    EXPECT_EQ(fields, expected.at(section)) << section;
  }
  for (const auto& [section, fields] : expected) EXPECT_TRUE(found.contains(section)) << section;
}

TEST(RecordDocument, StatesAndRecordsHaveTheDocumentedVersion) {
  const auto scene = makeScene(scenarioFromText("{}", "text"));
  const Json state = Json::parse(stateJson(*scene, CallLog(), false));
  const Json record = Json::parse(recordJson(*scene, CallLog(), "text", false));
  EXPECT_EQ(state["version"], 1);
  EXPECT_EQ(record["version"], 1);
  EXPECT_EQ(record["entries"], state["record"]);
}

TEST(RecordDocument, WhatIsOnlyAskedIsLeftOutUnlessItIsWanted) {
  const auto scene = makeScene(scenarioFromText("{}", "text"));
  scene->desktop.answer(CopyAttribute{{812, 0}, "AXTitle"});
  scene->desktop.answer(AskScreens{});
  scene->desktop.answer(SetAttribute{{812, 0}, "AXFrontmost", true});
  const auto kinds = [&](bool withRequests) {
    std::vector<std::string> found;
    const Json record = Json::parse(recordJson(*scene, CallLog(), "text", withRequests));
    for (const Json& entry : record["entries"]) {
      found.push_back(entry.value("verb", entry["what"].get<std::string>()));
    }
    return found;
  };
  const std::vector<std::string> start{"frontmost", "window opened", "window opened"};
  auto all = start;
  all.insert(all.end(), {"copy", "workspace", "set", "activation"});
  EXPECT_EQ(kinds(true), all);
  auto some = start;
  some.insert(some.end(), {"set", "activation"});
  EXPECT_EQ(kinds(false), some);
}

}  // namespace
}  // namespace simulator::record_document
