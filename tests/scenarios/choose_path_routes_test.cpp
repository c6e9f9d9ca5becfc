// The command choose-path as a whole: each route to a choice, and what is said when none leads
// there. Long time-outs are given where the watchdog would end the run before its last route does.
#include <gmock/gmock.h>

#include <algorithm>

#include "commands/staging_world.h"
#include "support/folder_world.h"
#include "support/transcript.h"

namespace tessarine::test {
namespace {

using ::testing::IsEmpty;
using Json = nlohmann::ordered_json;

Outcome chosen(const Json& result) {
  return {0, result.dump(2) + "\n", ""};
}
Outcome failed(const std::string& message) {
  return {1, "", message + "\n"};
}

std::vector<std::string> choosePath(const std::string& path,
                                    const std::vector<std::string>& options = {}) {
  std::vector<std::string> arguments{"choose-path", "--pid", "812", "--path", path};
  arguments.insert(arguments.end(), options.begin(), options.end());
  return arguments;
}

Json common(const std::string& path, const std::string& kind, const std::string& strategy) {
  return {{"ok", true},
          {"command", "choose-path"},
          {"path", path},
          {"kind", kind},
          {"basename", path.substr(path.rfind('/') + 1)},
          {"strategy", strategy}};
}

Json folderResult(const std::string& path, std::int32_t pid = servicePid,
                  const std::string& app = "open-save-panel-service") {
  Json result = common(path, "directory", "go-to-folder");
  result["dialogPid"] = pid;
  result["dialogApp"] = app;
  return result;
}

Json sheetResult(const std::string& path, const std::string& commit) {
  Json result = common(path, "file", "go-to-folder-ax");
  result["commit"] = commit;
  result["dialogPid"] = servicePid;
  result["dialogApp"] = "open-save-panel-service";
  return result;
}

Json keyboardResult(const std::string& path, const std::vector<std::int32_t>& attempted,
                    const std::string& waitError, const std::string& mouseError) {
  Json result = common(path, "file", "go-to-folder-keyboard-fallback");
  result["dialogPid"] = attempted.back();
  result["dialogApp"] =
      attempted.back() == browserPid ? "primary-browser" : "open-save-panel-service";
  result["axWaitError"] = waitError;
  result["mouseFallbackError"] = mouseError;
  result["attemptedPids"] = attempted;
  return result;
}

// --- A folder, through the dialog. ---

// The sheet, the path and Return, after the seconds slept before each.
std::vector<std::string> typedInto(const std::string& pid, const std::string& path) {
  std::vector<std::string> deeds{
      "0.000 key 5+120000 down -> " + pid, "0.020 key 5+120000 up -> " + pid,
      "0.350 key 0+100000 down -> " + pid, "0.020 key 0+100000 up -> " + pid,
      "0.050 key 51 down -> " + pid,       "0.020 key 51 up -> " + pid,
  };
  std::string pause = "0.050";
  for (const char letter : path) {
    const std::string key = std::string("key 0 text=") + letter;
    deeds.push_back(pause + " " + key + " down -> " + pid);
    deeds.push_back("0.020 " + key + " up -> " + pid);
    pause = "0.020";
  }
  deeds.push_back("0.020 key 36 down -> " + pid);
  deeds.push_back("0.020 key 36 up -> " + pid);
  return deeds;
}

std::vector<std::string> followedBy(std::vector<std::string> deeds,
                                    std::initializer_list<std::string> more) {
  deeds.insert(deeds.end(), more);
  return deeds;
}

TEST(ChoosePathOfAFolder, TypesThePathAndPressesChoose) {
  FolderWorld world("english-service-window");
  EXPECT_EQ(world.world.run(choosePath(world.target)), chosen(folderResult(world.target)));
  EXPECT_EQ(world.world.panelOutcomes(), "chosen " + world.target);
  EXPECT_EQ(transcript(world.world.record()),
            followedBy(typedInto("900", world.target), {"0.550 AXPress of AXButton in 900"}));
}

TEST(ChoosePathOfAFolder, WorksInTheBrowserToo) {
  FolderWorld world("chinese-host-sheet", {{"/panels/0/keysReach", "host"}});
  EXPECT_EQ(world.world.run(choosePath(world.target)),
            chosen(folderResult(world.target, browserPid, "primary-browser")));
  EXPECT_EQ(world.world.panelOutcomes(), "chosen " + world.target);
}

TEST(ChoosePathOfAFolder, StandardizesThePath) {
  FolderWorld world("english-service-window");
  EXPECT_EQ(world.world.run(choosePath(world.start + "/./other/../target/")),
            chosen(folderResult(world.target)));
}

double secondsFromLastKeyToNextRequest(const simulator::Record& record) {
  const auto& lines = record.lines();
  const auto key = std::find_if(lines.rbegin(), lines.rend(), [](const auto& line) {
    return std::holds_alternative<simulator::PostedKey>(line.entry);
  });
  const auto request = std::find_if(key.base(), lines.end(), [](const auto& line) {
    return std::holds_alternative<simulator::AccessibilityRequest>(line.entry);
  });
  return request == lines.end() ? -1 : request->time - key->time;
}

TEST(ChoosePathOfAFolder, PressesReturnWhereThereIsNoChooseButton) {
  FolderWorld world("english-service-window", {{"/panels/0/faults/noConfirmButton", true}});
  EXPECT_EQ(world.world.run(choosePath(world.target)), chosen(folderResult(world.target)));
  EXPECT_EQ(transcript(world.world.record()),
            followedBy(typedInto("900", world.target),
                       {"0.550 key 36 down -> 900", "0.020 key 36 up -> 900"}));
  EXPECT_NEAR(secondsFromLastKeyToNextRequest(world.world.record()), 0.1, 0.001);
}

TEST(ChoosePathOfAFolder, PressesReturnWhenThePressWasInVain) {
  for (const World::Patches& patches :
       {World::Patches{{"/panels/0/faults/confirmDoesNothing", true}},
        World::Patches{{"/panels/0/faults/pressRefused", -25204}}}) {
    FolderWorld world("english-service-window", patches);
    EXPECT_EQ(world.world.run(choosePath(world.target)), chosen(folderResult(world.target)));
    EXPECT_EQ(world.world.panelOutcomes(), "chosen " + world.target);
    const auto events = postedEventKinds(world.world.record());
    EXPECT_EQ(events.size(), typedInto("900", world.target).size() + 2);
    EXPECT_EQ(events.back(), "key 36 up -> 900");
  }
}

TEST(ChoosePathOfAFolder, FailsWhenTheDialogStays) {
  const World::Patches dead{{"/panels/0/faults/confirmDoesNothing", true},
                            {"/panels/0/faults/ignoresKeys", true}};
  FolderWorld world("english-service-window", dead);
  EXPECT_EQ(world.world.run(choosePath(world.target)), failed("timed out after 4.0s"));
  EXPECT_EQ(world.world.panelOutcomes(), "open");
  FolderWorld shorter("english-service-window", dead);
  EXPECT_EQ(shorter.world.run(choosePath(shorter.target, {"--timeout", "1.5"})),
            failed("timed out after 1.5s"));
}

// An embedded chooser is no dialog for a folder, so the keys are tried.
TEST(ChoosePathOfAFolder, LooksForNoEmbeddedChooser) {
  World world("chinese-embedded", {{"/panels/0/listed", "service"}});
  EXPECT_EQ(world.run(choosePath("/usr/share", {"--timeout", "2"})),
            chosen(keyboardResult("/usr/share", {812, 900}, "timed out after 2.0s",
                                  "tmp staging mouse fallback only supports files: /usr/share")));
}

// --- A folder, by keys alone. ---

TEST(ChoosePathOfAFolder, TypesThePathIntoAPanelThatCannotBeSeen) {
  const std::string refused = "tmp staging mouse fallback only supports files: /usr/share";
  World browser("unseen-folders", {{"/panels/0/keysReach", "host"}});
  EXPECT_EQ(browser.run(choosePath("/usr/share", {"--timeout", "3"})),
            chosen(keyboardResult("/usr/share", {812}, "timed out after 3.0s", refused)));
  EXPECT_EQ(browser.panelOutcomes(), "chosen /usr/share");

  World service("unseen-folders");
  EXPECT_EQ(service.run(choosePath("/usr/share", {"--timeout", "2"})),
            chosen(keyboardResult("/usr/share", {812, 900}, "timed out after 2.0s", refused)));
  EXPECT_EQ(service.panelOutcomes(), "chosen /usr/share");
}

TEST(ChoosePathOfAFolder, TellsTheWholeHistoryWhenNoKeyHelps) {
  World world("unseen-folders", {{"/panels/0/faults/ignoresKeys", true}});
  EXPECT_EQ(world.run(choosePath("/usr/share", {"--timeout", "2"})),
            failed("tmp staging mouse fallback failed: tmp staging mouse fallback only supports "
                   "files: /usr/share; keyboard fallback did not close open panel; attempted pids: "
                   "[812, 900]; wait error: timed out after 2.0s"));
}

// --- A file, through the go-to-folder sheet. ---

struct FilePanel {
  explicit FilePanel(const std::string& scenario, World::Patches patches = {})
      : world(scenario, withFolder(std::move(patches), file.folder())) {}
  static World::Patches withFolder(World::Patches patches, const std::string& folder) {
    patches.insert(patches.begin(), {{"/panels/0/mode", "files"}, {"/panels/0/folder", folder}});
    return patches;
  }
  Outcome choose(const std::vector<std::string>& options = {}) {
    return world.run(choosePath(file.path(), options));
  }

  StagedFile file;
  World world;
};

TEST(ChoosePathOfAFile, GoesThereByTheSheetAndPressesOpen) {
  for (const char* scenario : {"file-panel-english", "tmp-files-chinese"}) {
    FilePanel panel(scenario);
    EXPECT_EQ(panel.choose(), chosen(sheetResult(panel.file.path(), "open-button"))) << scenario;
    EXPECT_EQ(panel.world.panelOutcomes(), "chosen " + panel.file.path());
    EXPECT_THAT(panel.file.copies(), IsEmpty());
  }
}

TEST(ChoosePathOfAFile, IsDoneWhenTheSheetsReturnClosesThePanel) {
  FilePanel panel("file-panel-english", {{"/panels/0/faults/goToReturnConfirms", true}});
  EXPECT_EQ(panel.choose(), chosen(sheetResult(panel.file.path(), "confirm")));
  EXPECT_EQ(panel.world.panelOutcomes(), "chosen " + panel.file.path());
}

// --- A file, by staging. ---

constexpr const char* unseenDialog = "AX go-to-folder path failed: timed out after 3.0s";

TEST(ChoosePathOfAFile, ClicksTheStagedCopyAndTheOpenButton) {
  for (const double x : {1052.0, 1034.0}) {
    ClickedPanel panel({x, 550}, 1);
    const StagedFile file;
    const Outcome outcome = panel.run(choosePath(file.path()));
    EXPECT_EQ(outcome, chosen(rowAndButtonResult(file, x, unseenDialog)));
  }
}

TEST(ChoosePathOfAFile, DoubleClicksTheStagedCopy) {
  ClickedPanel panel({680, 308}, 2);
  const StagedFile file;
  const Outcome outcome = panel.run(choosePath(file.path()));
  EXPECT_EQ(outcome, chosen(doubleClickResult(file, unseenDialog)));
}

TEST(ChoosePathOfAFile, StagesAfterASheetThatRefusesThePath) {
  FilePanel panel("file-panel-english", {{"/panels/0/faults/fieldWriteRefused", -25204},
                                         {"/lastGoToPath", "/usr/share"}});
  const Outcome outcome = panel.choose({"--timeout", "60"});
  EXPECT_EQ(outcome,
            chosen(keyboardResult(
                panel.file.path(), {812, 900},
                "AX go-to-folder failed: AX go-to-folder path failed: failed to set go-to-folder "
                "value via AX (got: /usr/share); mouse path failed: tmp staging mouse fallback did "
                "not close open panel; staged path: " +
                    panel.file.copies().at(0),
                "")));
}

// --- A file, by keys alone. ---

std::string unstaged(const std::string& stagedPath) {
  return std::string("AX go-to-folder failed: ") + unseenDialog +
         "; mouse path failed: tmp staging mouse fallback did not close open panel; staged path: " +
         stagedPath;
}

TEST(ChoosePathOfAFile, TypesThePathAtTheBrowserOrTheService) {
  const std::vector<std::pair<std::string, std::vector<std::int32_t>>> rows{
      {"host", {812}}, {"both", {812}}, {"service", {812, 900}}};
  for (const auto& [keysReach, attempted] : rows) {
    FilePanel panel("unseen-folders", {{"/panels/0/keysReach", keysReach}});
    const Outcome outcome = panel.choose({"--timeout", "60"});
    EXPECT_EQ(outcome, chosen(keyboardResult(panel.file.path(), attempted,
                                             unstaged(panel.file.copies().at(0)), "")));
    EXPECT_EQ(panel.world.panelOutcomes(), "chosen " + panel.file.path());
  }
}

TEST(ChoosePathOfAFile, TellsTheWholeHistoryWhenNoKeyHelps) {
  FilePanel panel("unseen-folders", {{"/panels/0/faults/ignoresKeys", true}});
  const Outcome outcome = panel.choose({"--timeout", "60"});
  EXPECT_EQ(outcome, failed("tmp staging mouse fallback failed: ; keyboard fallback did not close "
                            "open panel; attempted pids: [812, 900]; wait error: " +
                            unstaged(panel.file.copies().at(0))));
}

TEST(ChoosePathOfAFile, EndsWithTheWatchdogWhenAllRoutesTakeTooLong) {
  FilePanel panel("unseen-folders", {{"/panels/0/faults/ignoresKeys", true}});
  EXPECT_EQ(panel.choose(), failed("timed out after 18.0s (global watchdog)"));
}

TEST(ChoosePathOfAFile, FindsThePanelGoneAfterStaging) {
  ClickedPanel panel({1052, 550}, 1);
  const StagedFile file;
  std::function<void()> watch = [&] {
    if (file.copies().empty()) return panel.desktop.schedule(0.05, watch);
    panel.windows.clear();
  };
  panel.desktop.schedule(3, watch);
  EXPECT_EQ(panel.run(choosePath(file.path())), failed("timed out after 2.0s"));
  EXPECT_THAT(postedEventKinds(panel.desktop.record()), IsEmpty());
}

// --- Neither. ---

TEST(ChoosePath, FailsWithTheLastWaitWhenThereIsNoPanel) {
  const StagedFile file;
  for (const std::string& path : {file.path(), std::string("/usr/share")}) {
    World world("no-panel");
    EXPECT_EQ(world.run(choosePath(path, {"--timeout", "4"})), failed("timed out after 2.0s"));
    EXPECT_THAT(transcript(world.record()), IsEmpty());
  }
  EXPECT_THAT(file.copies(), IsEmpty());
}

TEST(ChoosePath, FailsBeforeAnythingForWhatDoesNotExist) {
  World world("english-service-window");
  EXPECT_EQ(world.run(choosePath("/usr/./no such file/")),
            failed("path does not exist: /usr/no such file"));
  EXPECT_EQ(world.record().accessibilityRequests(), 0U);
  EXPECT_THAT(postedEventKinds(world.record()), IsEmpty());
}

}  // namespace
}  // namespace tessarine::test
