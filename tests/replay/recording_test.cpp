// Records as they are read back.
#include "simulator/replay/recording.h"

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "replay/recorded_run.h"

namespace simulator::recording {
namespace {

using tessarine::test::TemporaryFolder;
using Json = nlohmann::ordered_json;

template <typename Entry>
std::vector<Entry> entriesOf(const std::vector<RecordLine>& lines) {
  std::vector<Entry> found;
  for (const RecordLine& line : lines) {
    if (const auto* entry = std::get_if<Entry>(&line.entry)) found.push_back(*entry);
  }
  return found;
}

TEST(Recording, IsReadBackAsItWasWritten) {
  RecordedRun run(R"({"panels": [{"shape": "service-window", "folder": "/usr"}]})");
  const std::size_t call = run.calls.begin({"close", "--pid", "812"}, "/", 0.5);
  run.wait(1);
  run.press(900, 5, 0x120000);
  run.wait(1);
  run.type(900, u"/é");
  run.scene->desktop.answer(PostEvent{MouseEvent{1, {400.5, 300}, 1}, {}});
  run.press(900, 53);
  run.wait(1);
  run.scene->desktop.startProgram("/bin/ps", {"-axo", "pid=,command="});
  run.wait(1);
  run.calls.end(call, 1, "text", 3);
  const Recording read = run.recording();
  const auto& lines = run.scene->desktop.record().lines();

  EXPECT_EQ(read.scenario, "scenario.json");
  EXPECT_EQ(read.verdict, "true");
  EXPECT_EQ(read.screens, (std::vector<Rect>{{0, 0, 1440, 900}}));
  EXPECT_EQ(read.processes.at(812), "Google Chrome");
  EXPECT_EQ(read.panels, std::vector<std::string>{"neither chosen nor cancelled"});
  ASSERT_EQ(read.calls.size(), 1U);
  EXPECT_EQ(read.calls[0].arguments, (std::vector<std::string>{"close", "--pid", "812"}));
  EXPECT_EQ(read.calls[0].endedAt, 3);
  EXPECT_EQ(read.calls[0].status, 1);
  EXPECT_EQ(read.calls[0].verdict, "true");
  EXPECT_EQ(entriesOf<PanelShown>(read.lines), entriesOf<PanelShown>(lines));
  EXPECT_EQ(entriesOf<ScreenShown>(read.lines), entriesOf<ScreenShown>(lines));
  EXPECT_GT(entriesOf<PanelShown>(read.lines).size(), 3U);
  const auto keys = entriesOf<PostedKey>(read.lines);
  ASSERT_EQ(keys.size(), 3U);
  EXPECT_EQ(keys[0].target, 900);
  EXPECT_EQ(keys[0].event.flags, 0x120000U);
  EXPECT_EQ(keys[1].event.text, u"/é");
  const auto mouse = entriesOf<PostedMouse>(read.lines);
  ASSERT_EQ(mouse.size(), 1U);
  EXPECT_EQ(mouse[0].target, std::nullopt);
  EXPECT_EQ(mouse[0].event.at, (Point{400.5, 300}));
  EXPECT_EQ(entriesOf<ProgramStarted>(read.lines).at(0).arguments,
            (std::vector<std::string>{"-axo", "pid=,command="}));
  EXPECT_EQ(entriesOf<ProgramEnded>(read.lines).at(0).status, 0);
  EXPECT_EQ(entriesOf<Milestone>(read.lines).at(0).panel, 1);
}

// The document with one change, as it is refused.
std::string refusalOf(const std::function<void(Json&)>& change) {
  const TemporaryFolder folder;
  Json document = Json::parse(RecordedRun(R"({"panels": [{}]})").json());
  change(document);
  const std::string file = folder.makeFile("record.json", document.dump());
  try {
    readRecording(file);
  } catch (const ScenarioError& error) {
    return std::string(error.what()).substr(file.size());
  }
  return "read";
}

TEST(Recording, WhatItDoesNotKnowIsPassedOver) {
  EXPECT_EQ(refusalOf([](Json& record) {
              record["colour"] = "red";
              record["entries"].push_back({{"at", 9}, {"what", "earthquake"}, {"strength", 3}});
              record["entries"][0]["more"] = 1;
            }),
            "read");
}

TEST(Recording, AMistakeIsNamedWithItsPlace) {
  EXPECT_EQ(refusalOf([](Json& record) { record["version"] = 2; }), ": /version: expected 1");
  EXPECT_EQ(refusalOf([](Json& record) { record.erase("version"); }),
            ": /: expected the key \"version\", which is required");
  EXPECT_EQ(refusalOf([](Json& record) { record["screens"] = Json::array(); }),
            ": /screens: expected at least one screen");
  EXPECT_EQ(refusalOf([](Json& record) { record["entries"] = 3; }), ": /entries: expected a list");
  EXPECT_EQ(refusalOf([](Json& record) {
              record["entries"] = {{{"at", 2}, {"what", "x"}}, {{"at", 1}, {"what", "x"}}};
            }),
            ": /entries/1/at: expected a time that is not before the last");
  EXPECT_EQ(refusalOf([](Json& record) {
              record["entries"] = {{{"at", 0}, {"what", "milestone"}}};
            }),
            ": /entries/0: expected the key \"text\", which is required");
  EXPECT_EQ(
      refusalOf([](Json& record) {
        record["entries"] = {{{"at", 0}, {"what", "key"}, {"to", "everybody"}, {"keyCode", 1}}};
      }),
      ": /entries/0/to: expected a whole number from -2147483647 to 2147483647");
  EXPECT_THROW(readRecording("/no/such/file"), ScenarioError);
}

}  // namespace
}  // namespace simulator::recording
