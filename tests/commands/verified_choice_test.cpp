#include "commands/verified_choice.h"

#include <gmock/gmock.h>

#include "support/folder_world.h"

namespace tessarine::test {
namespace {

using ::testing::IsEmpty;

Outcome choose(FolderWorld& folder, const std::string& command, const std::string& path) {
  return folder.world.run(
      {command, "--verify", "--pid", std::to_string(browserPid), "--path", path});
}

TEST(VerifiedChoice, ChoosesInTheMeasuredSheetsWhateverKeysTheyTake) {
  for (const char* language : {"en", "zh-Hans", "de"}) {
    for (const char* keys : {"service", "host", "both", "nobody"}) {
      SCOPED_TRACE(std::string(language) + ", keys reach " + keys);
      FolderWorld folder("chromium-english",
                         {{"/language", language}, {"/panels/0/keysReach", keys}});
      const Outcome outcome = choose(folder, "choose-folder", folder.target);
      EXPECT_EQ(outcome.exitStatus, 0) << outcome.errors;
      EXPECT_EQ(folder.world.panelOutcomes(), "chosen " + folder.target);
      EXPECT_EQ(disturbance(folder.world.record()), noDisturbance);
    }
  }
}

TEST(VerifiedChoice, SaysWhatItSaw) {
  FolderWorld folder("chromium-english");
  const Outcome outcome = choose(folder, "choose-folder", folder.target);
  const auto result = nlohmann::ordered_json::parse(outcome.output);
  EXPECT_EQ(result["command"], "choose-folder");
  EXPECT_EQ(result["strategy"], "verified");
  EXPECT_EQ(result["dialogPid"], browserPid);
  EXPECT_EQ(result["dialogApp"], "primary-browser");
  EXPECT_EQ(result["verified"], "folder shown");
  EXPECT_EQ(result["verifiedPath"], folder.target);
  EXPECT_EQ(result["volumeRoot"], "/");
}

TEST(VerifiedChoice, SelectsAFileInAFilePanel) {
  FolderWorld folder("file-panel-english");
  const std::string file = folder.files.makeFile("start/report.txt");
  const Outcome outcome = choose(folder, "choose-path", file);
  const auto result = nlohmann::ordered_json::parse(outcome.output);
  EXPECT_EQ(result["kind"], "file");
  EXPECT_EQ(result["verified"], "entry selected");
  EXPECT_EQ(folder.world.panelOutcomes(), "chosen " + file);
}

TEST(VerifiedChoice, RefusesTheOtherKindBeforeAnythingMoves) {
  FolderWorld folder("file-panel-english");
  const Outcome outcome = choose(folder, "choose-folder", folder.target);
  EXPECT_EQ(outcome.errors, "not verified: a folder for a file panel: " + folder.target + "\n");
  EXPECT_THAT(postedEvents(folder.world.record()), IsEmpty());
  EXPECT_EQ(folder.world.panelOutcomes(), "open");
}

TEST(VerifiedChoice, CountsTwoPanelsAndTouchesNeither) {
  FolderWorld folder("two-panels");
  const Outcome outcome = choose(folder, "choose-folder", folder.target);
  EXPECT_EQ(outcome.errors, "not verified: 2 panels are open (panel service 900: 2)\n");
  EXPECT_THAT(postedEvents(folder.world.record()), IsEmpty());
  EXPECT_EQ(folder.world.panelOutcomes(), "open, open");
}

TEST(VerifiedChoice, RefusesAnEmptyPathAndAProcessThatIsNotThere) {
  FolderWorld folder("chromium-english");
  EXPECT_EQ(choose(folder, "choose-folder", ""),
            (Outcome{1, "", "not verified: the path is empty\n"}));
  EXPECT_EQ(folder.world.run({"choose-path", "--verify", "--pid", "4711", "--path", folder.target}),
            (Outcome{1, "", "not verified: no process has the pid 4711\n"}));
}

}  // namespace
}  // namespace tessarine::test
