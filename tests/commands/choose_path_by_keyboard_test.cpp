#include "commands/choose_path_by_keyboard.h"

#include <gmock/gmock.h>

#include "commands/choose_path_deeds.h"
#include "commands/staging_world.h"

namespace tessarine::test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

// A file panel in no accessibility tree, over a folder with one file.
struct UnseenPanel {
  explicit UnseenPanel(const std::string& keysReach, World::Patches patches = {})
      : world("unseen-folders", extended(std::move(patches), keysReach, file.folder())) {}

  static World::Patches extended(World::Patches patches, const std::string& keysReach,
                                 const std::string& folder) {
    patches.push_back({"/panels/0/mode", "files"});
    patches.push_back({"/panels/0/keysReach", keysReach});
    patches.push_back({"/panels/0/folder", folder});
    return patches;
  }
  std::string choose(double timeoutSeconds = 10, bool tryMouseFirst = false) {
    return choosePathByKeyboardFallback(browserPid, file.path(), timeoutSeconds, "no dialog",
                                        tryMouseFirst)
        .dump();
  }
  std::string failure(double timeoutSeconds = 10, bool tryMouseFirst = false) {
    return messageOf([&] { choose(timeoutSeconds, tryMouseFirst); });
  }

  StagedFile file;
  World world;
};

std::string resultText(const std::string& path, const std::string& basename, std::int32_t pid,
                       const std::string& app, const std::string& mouseError,
                       const std::vector<std::int32_t>& attempted) {
  return nlohmann::ordered_json{{"ok", true},
                                {"command", "choose-path"},
                                {"path", path},
                                {"kind", "file"},
                                {"basename", basename},
                                {"strategy", "go-to-folder-keyboard-fallback"},
                                {"dialogPid", pid},
                                {"dialogApp", app},
                                {"axWaitError", "no dialog"},
                                {"mouseFallbackError", mouseError},
                                {"attemptedPids", attempted}}
      .dump();
}

// After the last Return 0.2 s pass, then twenty looks of 0.05 s, each with a pause of 0.15 s.
constexpr const char* fourSecondWatch = "3.200 ";

TEST(ChoosePathByKeyboardFallback, SucceedsAtTheBrowser) {
  UnseenPanel panel("host");
  EXPECT_EQ(panel.choose(),
            resultText(panel.file.path(), "notes.txt", 812, "primary-browser", "", {812}));
  EXPECT_EQ(panel.world.panelOutcomes(), "chosen " + panel.file.path());
  EXPECT_EQ(transcript(panel.world.record()), keyboardAttempt("812", panel.file.path(), "0.000 "));
}

TEST(ChoosePathByKeyboardFallback, SucceedsAtTheService) {
  UnseenPanel panel("service");
  EXPECT_EQ(panel.choose(), resultText(panel.file.path(), "notes.txt", 900,
                                       "open-save-panel-service", "", {812, 900}));
  EXPECT_EQ(panel.world.panelOutcomes(), "chosen " + panel.file.path());
  EXPECT_EQ(transcript(panel.world.record()),
            joined({keyboardAttempt("812", panel.file.path(), "0.000 "),
                    keyboardAttempt("900", panel.file.path(), fourSecondWatch)}));
}

// The first Return, which could confirm the panel, is lost.
TEST(ChoosePathByKeyboardFallback, PressesReturnTwice) {
  UnseenPanel panel("host", {{"/panels/0/faults/confirmsOnSecondReturn", true}});
  EXPECT_EQ(panel.choose(),
            resultText(panel.file.path(), "notes.txt", 812, "primary-browser", "", {812}));
  EXPECT_EQ(panel.world.panelOutcomes(), "chosen " + panel.file.path());
}

TEST(ChoosePathByKeyboardFallback, TellsWhyStagingFailedBefore) {
  UnseenPanel panel("host");
  const std::string result = panel.choose(10, true);
  EXPECT_EQ(result,
            resultText(panel.file.path(), "notes.txt", 812, "primary-browser",
                       "tmp staging mouse fallback did not close open panel; staged path: " +
                           panel.file.copies().at(0),
                       {812}));
}

TEST(ChoosePathByKeyboardFallback, CallsAFolderAFileToo) {
  World world("unseen-folders", {{"/panels/0/keysReach", "host"}});
  const std::string result =
      choosePathByKeyboardFallback(browserPid, "/usr/share", 10, "no dialog", true).dump();
  EXPECT_EQ(result,
            resultText("/usr/share", "share", 812, "primary-browser",
                       "tmp staging mouse fallback only supports files: /usr/share", {812}));
  EXPECT_EQ(world.panelOutcomes(), "chosen /usr/share");
}

TEST(ChoosePathByKeyboardFallback, ReturnsTheRecordOfSuccessfulStaging) {
  ClickedPanel panel({1052, 550}, 1);
  const StagedFile file;
  const auto result = choosePathByKeyboardFallback(browserPid, file.path(), 10, "no dialog", true);
  EXPECT_EQ(result.dump(), rowAndButtonResult(file, 1052, "no dialog").dump());
}

TEST(ChoosePathByKeyboardFallback, FailsWhenEveryProcessHasBeenTried) {
  UnseenPanel panel("both", {{"/panels/0/faults/ignoresKeys", true}});
  EXPECT_EQ(panel.failure(),
            "tmp staging mouse fallback failed: ; keyboard fallback did not close open panel; "
            "attempted pids: [812, 900]; wait error: no dialog");
  EXPECT_EQ(panel.world.panelOutcomes(), "open");
}

TEST(ChoosePathByKeyboardFallback, NamesTheBrowserOnceThoughItOwnsAPanelWindow) {
  UnseenPanel panel("both", {{"/panels/0/faults/ignoresKeys", true}, {"/panels/0/listed", "host"}});
  EXPECT_EQ(panel.failure(),
            "tmp staging mouse fallback failed: ; keyboard fallback did not close open panel; "
            "attempted pids: [812]; wait error: no dialog");
}

TEST(ChoosePathByKeyboardFallback, FoldsInWhyStagingFailed) {
  UnseenPanel panel("both", {{"/panels/0/faults/ignoresKeys", true}});
  EXPECT_EQ(messageOf([] {
              choosePathByKeyboardFallback(browserPid, "/usr/share", 10, "no dialog", true);
            }),
            "tmp staging mouse fallback failed: tmp staging mouse fallback only supports files: "
            "/usr/share; keyboard fallback did not close open panel; attempted pids: [812, 900]; "
            "wait error: no dialog");
}

// From the last key of an attempt to the click of the next one or the end.
TEST(ChoosePathByKeyboardFallback, WatchesThePanelForAtMostFourSeconds) {
  for (const auto& [timeout, wait] : {std::pair{10.0, 4.0}, {1.5, 1.5}}) {
    UnseenPanel panel("both",
                      {{"/panels/0/faults/ignoresKeys", true}, {"/panels/0/listed", "host"}});
    panel.failure(timeout);
    double lastKey = 0;
    for (const auto& line : panel.world.record().lines()) {
      if (std::holds_alternative<simulator::PostedKey>(line.entry)) lastKey = line.time;
    }
    const double waited = panel.world.desktop().now() - lastKey - 0.2;
    EXPECT_GE(waited, wait - 1e-6);
    EXPECT_LE(waited, wait + 0.2 + 1e-6);
  }
}

TEST(ChoosePathByKeyboardFallback, WaitsForAPanelForAtMostTwoSeconds) {
  for (const auto& [timeout, message] :
       {std::pair{10.0, "timed out after 2.0s"}, {0.5, "timed out after 0.5s"}}) {
    World world("no-panel");
    EXPECT_EQ(messageOf([&, seconds = timeout] {
                choosePathByKeyboardFallback(browserPid, "/usr", seconds, "no dialog", false);
              }),
              message);
    EXPECT_THAT(transcript(world.record()), IsEmpty());
    EXPECT_THAT(sleepLengths(world.record()), ElementsAre("0.15"));
  }
}

}  // namespace
}  // namespace tessarine::test
