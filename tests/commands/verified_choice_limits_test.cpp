// --verify where something takes longer than usual: it succeeds all the same, or says honestly and
// before the watchdog that it did not.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/folder_world.h"

namespace tessarine::test::verified_choice_limits {
namespace {

using Json = nlohmann::ordered_json;

Outcome chooseVerifiedFolder(FolderWorld& folders, const std::string& timeout = "10") {
  return folders.world.run({"choose-folder", "--verify", "--pid", std::to_string(browserPid),
                            "--path", folders.target, "--timeout", timeout});
}

Json chrome(const Json& windows) {
  return {{"pid", browserPid},
          {"name", "Google Chrome"},
          {"command", "/Applications/Google Chrome.app/Contents/MacOS/Google Chrome"},
          {"windows", windows}};
}

// A browser with two pages, and requests that take 5 ms.
World::Patches slowPages(int elements, const Json& panel) {
  const Json page{{"title", "Extensions"}, {"webElements", elements}};
  const Json terminal{{"pid", terminalPid}, {"name", "Terminal"}};
  return {{"/processes", Json::array({terminal, chrome(Json::array({page, page}))})},
          {"/prices", {{"request", 0.005}}},
          {"/panels/0", panel}};
}

// Scripts do not end while a person is asked whether they may talk to the Finder.
TEST(VerifiedChoiceLimits, AFinderThatDoesNotAnswerIsAskedForThreeSeconds) {
  FolderWorld folders("chinese-service-window", {{"/faults", {{"scriptHangs", true}}}});
  const Outcome outcome = chooseVerifiedFolder(folders);
  EXPECT_EQ(outcome.exitStatus, 0) << outcome.errors;
  EXPECT_EQ(Json::parse(outcome.output)["volumeDisplayName"], "Macintosh HD");
  EXPECT_LT(folders.world.desktop().now(), 8);
  EXPECT_EQ(folders.world.verdict(), "true");
}

TEST(VerifiedChoiceLimits, LargePagesAreNotWalkedWhereThePanelHasItsIdentifier) {
  FolderWorld large("chinese-service-window", slowPages(300, {{"shape", "service-window"}}));
  const Outcome outcome = chooseVerifiedFolder(large);
  EXPECT_EQ(outcome.exitStatus, 0) << outcome.errors;
  EXPECT_EQ(large.world.verdict(), "true");
}

// An English panel without identifiers is not recognised, and each look takes seconds.
TEST(VerifiedChoiceLimits, NoLookBeginsThatWouldNotEndInTime) {
  FolderWorld folders(
      "chinese-service-window",
      slowPages(20, {{"language", "en"}, {"identifiers", false}, {"prompt", "Open"}}));
  EXPECT_EQ(chooseVerifiedFolder(folders, "14"),
            failed("not verified: no open panel of Google Chrome 812 was found within 14.0s"));
  EXPECT_LT(folders.world.desktop().now(), 22);
}

// The sheet opens after the time that a chord has, so that the browser got one as well.
TEST(VerifiedChoiceLimits, ALateSheetIsClosedThroughTheProcessThatOpenedIt) {
  const Json panel{{"shape", "service-window"},
                   {"folder", "/usr"},
                   {"slow", 14},
                   {"faults", {{"pressRefused", -25205}}}};
  FolderWorld folders("chinese-service-window", {{"/panels/0", panel}});
  const Outcome outcome = chooseVerifiedFolder(folders);
  EXPECT_EQ(outcome.exitStatus, 1);
  EXPECT_EQ(folders.world.verdict(), "true");
  std::vector<std::string> sheet;
  for (const auto& milestone : folders.world.panel().milestones()) {
    if (milestone.text.starts_with("go-to sheet")) sheet.push_back(milestone.text);
  }
  EXPECT_THAT(sheet, testing::Contains("go-to sheet opened"));
  EXPECT_EQ(sheet.back(), "go-to sheet closed");
}

}  // namespace
}  // namespace tessarine::test::verified_choice_limits
