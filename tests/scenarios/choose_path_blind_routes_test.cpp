// The command choose-path on panels that accessibility does not show or that refuse the path: a
// staged copy that is clicked, then keys alone. Long time-outs are given where the watchdog would
// end the run before its last route does.
#include <gmock/gmock.h>

#include <cerrno>
#include <cstring>

#include "commands/choose_path_deeds.h"
#include "scenarios/path_routes.h"

namespace tessarine::test::choose_path_blind_routes {
namespace {

using ::testing::AllOf;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::StartsWith;

constexpr const char* unseenDialog = "AX go-to-folder path failed: timed out after 3.0s";

// --- A staged copy, clicked. ---

// A panel over the temporary folder, the newest first, that lists a window of this process only.
struct TmpPanel {
  std::string scenario;
  PanelOwner owner;
};
const std::vector<TmpPanel> tmpPanels{{"unseen-tmp-service-chinese", {}},
                                      {"unseen-tmp-host-chinese", {browserPid, "Google Chrome"}}};

// The list's first entry lies 24 points below its top, so 116 to 140 below that of the panel.
const std::pair<std::string, Json> rowUnderTheClick{
    "/panels/0/layout/list", {{"x", 160}, {"y", 92}, {"width", 640}, {"height", 250}}};

std::pair<std::string, Json> openButtonAround(double x) {
  return {"/panels/0/layout/confirmButton",
          {{"x", x - 320 - 8}, {"y", 550 - 180 - 8}, {"width", 16}, {"height", 16}}};
}

std::string realPath(const std::string& path) {
  return std::filesystem::canonical(path);
}

TEST(ChoosePathOfAFile, ClicksTheStagedCopyAndTheOpenButton) {
  for (const auto& [scenario, owner] : tmpPanels) {
    for (const auto& [x, clicks] : {std::pair{1052.0, 2}, {1034.0, 3}}) {
      SCOPED_TRACE(scenario);
      const StagedFile file;
      World world(scenario, {rowUnderTheClick, openButtonAround(x)});
      const Outcome outcome = world.run(choosePath(file.path()));
      EXPECT_EQ(outcome, chosen(rowAndButtonResult(file, x, unseenDialog, owner)));
      EXPECT_EQ(world.panelOutcomes(), "chosen " + realPath(file.copies().at(0)));
      EXPECT_EQ(deedsAfterSearch(world.record()), stagingClicks(std::to_string(owner.pid), clicks));
    }
  }
}

TEST(ChoosePathOfAFile, TouchesNoPanelWhoseWindowsAreExcluded) {
  for (const auto& [scenario, owner] : tmpPanels) {
    SCOPED_TRACE(scenario);
    const StagedFile file;
    World world(scenario, {rowUnderTheClick, openButtonAround(1052)});
    auto words = choosePath(file.path());
    words.insert(words.end(), {"--exclude-window-id", "103", "--exclude-window-id", "104"});
    EXPECT_EQ(world.run(words), (Outcome{1, "", "timed out after 2.0s\n"}));
    EXPECT_EQ(world.panelOutcomes(), "open");
    EXPECT_THAT(transcript(world.record()), IsEmpty());
    EXPECT_THAT(file.copies(), IsEmpty());
  }
}

// The Open button lies where it usually does, below both clicks.
TEST(ChoosePathOfAFile, DoubleClicksTheStagedCopy) {
  for (const auto& [scenario, owner] : tmpPanels) {
    SCOPED_TRACE(scenario);
    const StagedFile file;
    World world(scenario, {rowUnderTheClick});
    const Outcome outcome = world.run(choosePath(file.path()));
    EXPECT_EQ(outcome, chosen(doubleClickResult(file, unseenDialog, owner)));
    EXPECT_EQ(world.panelOutcomes(), "chosen " + realPath(file.copies().at(0)));
    EXPECT_EQ(deedsAfterSearch(world.record()), stagingClicks(std::to_string(owner.pid), 5));
    EXPECT_THAT(sleepLengths(world.record()), ElementsAre("0.05", "0.06", "0.15", "0.22", "0.25"));
  }
}

// Eight looks in 1.5 s, each followed by 0.15 s.
TEST(ChoosePathOfAFile, WatchesAClickedPanelForAShorterTimeoutOnly) {
  const StagedFile file;
  World world("unseen-tmp-service-chinese", {rowUnderTheClick});
  const Outcome outcome = world.run(choosePath(file.path(), {"--timeout", "1.5"}));
  EXPECT_EQ(outcome,
            chosen(doubleClickResult(file, "AX go-to-folder path failed: timed out after 1.5s")));
  EXPECT_EQ(deedsAfterSearch(world.record()), stagingClicks("900", 5, "1.200 "));
}

// --- Keys alone, after staging. ---

Json keyboardResult(const std::string& path, const std::vector<std::int32_t>& attempted,
                    const std::string& waitError, const std::string& mouseError = "") {
  Json result = common(path, "file", "go-to-folder-keyboard-fallback");
  result["dialogPid"] = attempted.back();
  result["dialogApp"] =
      attempted.back() == browserPid ? "primary-browser" : "open-save-panel-service";
  result["axWaitError"] = waitError;
  result["mouseFallbackError"] = mouseError;
  result["attemptedPids"] = attempted;
  return result;
}

std::string keyboardFailure(const std::string& attempted, const std::string& waitError,
                            const std::string& mouseError = "") {
  return "tmp staging mouse fallback failed: " + mouseError +
         "; keyboard fallback did not close open panel; attempted pids: " + attempted +
         "; wait error: " + waitError;
}

// What is known when a file's first two routes have failed.
std::string bothFailed(const std::string& sheetError, const std::string& stagingError) {
  return "AX go-to-folder failed: AX go-to-folder path failed: " + sheetError +
         "; mouse path failed: " + stagingError;
}

std::string stillOpen(const StagedFile& file) {
  return "tmp staging mouse fallback did not close open panel; staged path: " + file.copies().at(0);
}

const std::pair<std::string, Json> deaf{"/panels/0/faults/ignoresKeys", true};
const std::pair<std::string, Json> reachHost{"/panels/0/keysReach", "host"};

// Of the two windows, which have one extent, the service's is listed first, so it is clicked. After
// the last click the panel is watched for 3 s; after the last Return 0.2 s pass, then it is
// watched for 4 s, in twenty looks.
TEST(ChoosePathOfAFile, TypesThePathAtTheBrowserOrTheService) {
  for (const std::string keysReach : {"host", "both", "service"}) {
    SCOPED_TRACE(keysReach);
    FilePanel panel("unseen-folders", {{"/panels/0/keysReach", keysReach}});
    const std::string& path = panel.file.path();
    const Outcome outcome = panel.choose({"--timeout", "60"});
    auto deeds = joined({stagingClicks("900", 5), keyboardAttempt("812", path, "2.250 ")});
    std::vector<std::int32_t> attempted{812};
    if (keysReach == "service") {
      deeds = joined({deeds, keyboardAttempt("900", path, "3.200 ")});
      attempted.push_back(900);
    }
    EXPECT_EQ(outcome,
              chosen(keyboardResult(path, attempted,
                                    bothFailed("timed out after 3.0s", stillOpen(panel.file)))));
    EXPECT_EQ(panel.world.panelOutcomes(), "chosen " + path);
    EXPECT_EQ(deedsAfterSearch(panel.world.record()), deeds);
    EXPECT_THAT(
        sleepLengths(panel.world.record()),
        ElementsAre("0.02", "0.05", "0.06", "0.15", "0.18", "0.2", "0.22", "0.25", "0.35", "0.6"));
  }
}

TEST(ChoosePathOfAFile, TellsTheWholeHistoryWhenNoKeyHelps) {
  FilePanel panel("unseen-folders", {deaf});
  const Outcome outcome = panel.choose({"--timeout", "60"});
  EXPECT_EQ(outcome, failed(keyboardFailure(
                         "[812, 900]", bothFailed("timed out after 3.0s", stillOpen(panel.file)))));
}

TEST(ChoosePathOfAFile, EndsWithTheWatchdogWhenAllRoutesTakeTooLong) {
  FilePanel panel("unseen-folders", {deaf});
  EXPECT_EQ(panel.choose(), failed("timed out after 18.0s (global watchdog)"));
}

TEST(ChoosePathOfAFile, TellsThatNoSheetOpened) {
  for (const auto& [frontmost, error] :
       {std::pair{terminalPid, "timed out after 1.5s"}, {browserPid, "timed out after 2.5s"}}) {
    FilePanel panel("file-panel-english",
                    {{"/panels/0/goTo/neverOpens", true}, {"/frontmost", frontmost}});
    const Outcome outcome = panel.choose({"--timeout", "60"});
    EXPECT_EQ(outcome,
              failed(keyboardFailure("[812, 900]", bothFailed(error, stillOpen(panel.file)))));
  }
}

TEST(ChoosePathOfAFile, TypesThePathWhereTheSheetOrTheOpenButtonFailed) {
  const std::vector<std::pair<World::Patches, std::string>> rows{
      {{{"/panels/0/faults/fieldWriteRefused", -25204}, {"/lastGoToPath", "/usr/share"}},
       "failed to set go-to-folder value via AX (got: /usr/share)"},
      {{{"/panels/0/faults/confirmDoesNothing", true}}, "timed out after 4.0s"},
      {{{"/panels/0/faults/pressRefused", -25204}}, "timed out after 4.0s"},
  };
  for (const auto& [patches, error] : rows) {
    FilePanel panel("file-panel-english", patches);
    const Outcome outcome = panel.choose({"--timeout", "60"});
    EXPECT_EQ(outcome, chosen(keyboardResult(panel.file.path(), {812, 900},
                                             bothFailed(error, stillOpen(panel.file)))));
    EXPECT_EQ(panel.world.panelOutcomes(), "chosen " + panel.file.path());
  }
}

// --- Keys alone, after staging that did not come to a click. ---

// The panel is listed 3 s after the search for a dialog and 1 s after that for its window ended.
TEST(ChoosePathOfAFile, TypesThePathIntoAPanelThatIsListedLate) {
  FilePanel panel("unseen-folders", {reachHost,
                                     {"/panels/0/listed", "host"},
                                     {"/panels/0/windowList/hostListedAfterSeconds", 6}});
  EXPECT_EQ(panel.choose(),
            chosen(keyboardResult(panel.file.path(), {812},
                                  bothFailed("timed out after 3.0s", "timed out after 2.0s"))));
  EXPECT_THAT(panel.file.copies(), IsEmpty());
}

// One panel leaves the list while the file is staged, another joins it half a second later.
TEST(ChoosePathOfAFile, TypesThePathIntoAPanelThatComesAfterStaging) {
  const Json second{{"shape", "unseen"},
                    {"mode", "files"},
                    {"listed", "host"},
                    {"keysReach", "host"},
                    {"windowList", {{"hostListedAfterSeconds", 4}}}};
  FilePanel panel("unseen-folders",
                  {{"/panels/0/windowList/leavesAfterSeconds", 3.4}, {"/panels/1", second}});
  EXPECT_EQ(panel.choose(),
            chosen(keyboardResult(
                panel.file.path(), {812},
                bothFailed("timed out after 3.0s",
                           "background open panel window not found after staging tmp file"))));
  EXPECT_EQ(panel.world.panelOutcomes(), "open, chosen " + panel.file.path());
}

TEST(ChoosePathOfAFile, FindsThePanelGoneAfterStaging) {
  FilePanel panel("unseen-folders", {{"/panels/0/windowList/leavesAfterSeconds", 3.4}});
  EXPECT_EQ(panel.choose(), failed("timed out after 2.0s"));
  EXPECT_EQ(panel.file.copies().size(), 1U);
  EXPECT_THAT(postedEventKinds(panel.world.record()), IsEmpty());
}

TEST(ChoosePathOfAFile, FindsTheFileGoneBeforeStaging) {
  FilePanel panel("unseen-folders", {deaf});
  panel.world.desktop().schedule(1, [&] { std::filesystem::remove(panel.file.path()); });
  EXPECT_EQ(panel.choose({"--timeout", "60"}),
            failed(keyboardFailure(
                "[812, 900]",
                bothFailed("timed out after 3.0s", "path does not exist: " + panel.file.path()))));
}

// The copy's name would be longer than file systems allow.
TEST(ChoosePathOfAFile, TellsWhyTheFileCouldNotBeCopied) {
  const StagedFile file("a." + std::string(250, 'x'));
  World world("unseen-folders", {{"/panels/0/mode", "files"}, deaf});
  const Outcome outcome = world.run(choosePath(file.path(), {"--timeout", "60"}));
  EXPECT_THAT(
      outcome.errors,
      AllOf(StartsWith(keyboardFailure("[812, 900]", bothFailed("timed out after 3.0s", ""))),
            HasSubstr(std::strerror(ENAMETOOLONG)), HasSubstr(file.path())));
  EXPECT_THAT(file.copies(), IsEmpty());
}

// --- A folder, by keys alone. ---

const std::string refused = "tmp staging mouse fallback only supports files: /usr/share";

// Ten looks in 2 s, fifteen in 3 s, after the 0.2 s that follow the last Return.
TEST(ChoosePathOfAFolder, TypesThePathIntoAPanelThatCannotBeSeen) {
  for (const auto& [timeout, watch] : {std::pair{"2", "1.700 "}, {"3", "2.450 "}}) {
    const std::string waitError = "timed out after " + std::string(timeout) + ".0s";
    World browser("unseen-folders", {reachHost});
    EXPECT_EQ(browser.run(choosePath("/usr/share", {"--timeout", timeout})),
              chosen(keyboardResult("/usr/share", {812}, waitError, refused)));
    EXPECT_EQ(browser.panelOutcomes(), "chosen /usr/share");
    EXPECT_EQ(deedsAfterSearch(browser.record()), keyboardAttempt("812", "/usr/share"));

    World service("unseen-folders");
    EXPECT_EQ(service.run(choosePath("/usr/share", {"--timeout", timeout})),
              chosen(keyboardResult("/usr/share", {812, 900}, waitError, refused)));
    EXPECT_EQ(service.panelOutcomes(), "chosen /usr/share");
    EXPECT_EQ(deedsAfterSearch(service.record()),
              joined({keyboardAttempt("812", "/usr/share"),
                      keyboardAttempt("900", "/usr/share", watch)}));
  }
}

TEST(ChoosePathOfAFolder, TellsTheWholeHistoryWhenNoKeyHelps) {
  World world("unseen-folders", {deaf});
  EXPECT_EQ(world.run(choosePath("/usr/share", {"--timeout", "2"})),
            failed(keyboardFailure("[812, 900]", "timed out after 2.0s", refused)));
}

// Listed 2 s after the search for a dialog and 1 s after that for its window ended.
TEST(ChoosePathOfAFolder, TellsThatStagingFoundNoPanelYet) {
  const World::Patches late{
      reachHost, {"/panels/0/listed", "host"}, {"/panels/0/windowList/hostListedAfterSeconds", 5}};
  const std::string error = "timed out after 2.0s";
  World world("unseen-folders", late);
  EXPECT_EQ(world.run(choosePath("/usr/share", {"--timeout", "2"})),
            chosen(keyboardResult("/usr/share", {812}, error, error)));

  World dead("unseen-folders", {late[0], late[1], late[2], deaf});
  EXPECT_EQ(dead.run(choosePath("/usr/share", {"--timeout", "2"})),
            failed(keyboardFailure("[812]", error, error)));
}

// An embedded chooser is no dialog for a folder, so the keys are tried.
TEST(ChoosePathOfAFolder, LooksForNoEmbeddedChooser) {
  World world("chinese-embedded",
              {{"/panels/0/listed", "service"}, {"/panels/0/serviceTitle", "打开"}});
  EXPECT_EQ(world.run(choosePath("/usr/share", {"--timeout", "2"})),
            chosen(keyboardResult("/usr/share", {812, 900}, "timed out after 2.0s", refused)));
}

}  // namespace
}  // namespace tessarine::test::choose_path_blind_routes
