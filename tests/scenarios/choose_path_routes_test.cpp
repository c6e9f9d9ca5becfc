// The command choose-path as a whole on panels that accessibility shows, and without a panel.
#include <gmock/gmock.h>

#include <algorithm>
#include <tuple>

#include "commands/choose_path_deeds.h"
#include "scenarios/path_routes.h"
#include "support/folder_world.h"

namespace tessarine::test::choose_path_routes {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

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

// --- A folder, through the dialog. ---

TEST(ChoosePathOfAFolder, TypesThePathAndPressesChoose) {
  FolderWorld world("english-service-window");
  EXPECT_EQ(world.world.run(choosePath(world.target)), chosen(folderResult(world.target)));
  EXPECT_EQ(world.world.panelOutcomes(), "chosen " + world.target);
  EXPECT_EQ(transcript(world.world.record()),
            joined({typedInto("900", world.target), {"0.550 AXPress of AXButton in 900"}}));
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
            joined({typedInto("900", world.target),
                    {"0.550 key 36 down -> 900", "0.020 key 36 up -> 900"}}));
  EXPECT_NEAR(secondsFromLastKeyToNextRequest(world.world.record()), 0.1, 0.001);
}

// A press in vain and Return, without the pause between them.
Deeds pressedInVain(const std::string& path) {
  return joined(
      {typedInto("900", path),
       {"0.550 AXPress of AXButton in 900", "key 36 down -> 900", "0.020 key 36 up -> 900"}});
}

// The transcript of that. How many pauses the watch of the dialog has depends on how much there is
// to look at, so its length is checked instead: a look that begins in time takes up to 0.06 s here,
// the pause after it 0.15 s.
Deeds deedsOfRetry(const simulator::Record& record, double watchSeconds) {
  Deeds deeds = transcript(record);
  const auto isPress = [](const std::string& deed) { return deed.find("AXPress") != deed.npos; };
  const auto press = std::find_if(deeds.begin(), deeds.end(), isPress);
  std::string& retry = *std::next(press);
  retry.erase(0, retry.find(' ') + 1);

  const auto& lines = record.lines();
  const auto pressed = std::find_if(lines.begin(), lines.end(), [](const auto& line) {
    const auto* request = std::get_if<simulator::AccessibilityRequest>(&line.entry);
    return request != nullptr && request->name == "AXPress";
  });
  const auto key = std::find_if(pressed, lines.end(), [](const auto& line) {
    return std::holds_alternative<simulator::PostedKey>(line.entry);
  });
  EXPECT_NEAR(key->time - pressed->time, watchSeconds + 0.105, 0.1051);
  return deeds;
}

TEST(ChoosePathOfAFolder, PressesReturnWhenThePressWasInVain) {
  for (const World::Patches& patches :
       {World::Patches{{"/panels/0/faults/confirmDoesNothing", true}},
        World::Patches{{"/panels/0/faults/pressRefused", -25204}}}) {
    FolderWorld world("english-service-window", patches);
    EXPECT_EQ(world.world.run(choosePath(world.target)), chosen(folderResult(world.target)));
    EXPECT_EQ(world.world.panelOutcomes(), "chosen " + world.target);
    EXPECT_EQ(deedsOfRetry(world.world.record(), 4), pressedInVain(world.target));
  }
}

TEST(ChoosePathOfAFolder, FailsWhenTheDialogStays) {
  for (const auto& [timeout, message, watch] :
       {std::tuple{"10", "timed out after 4.0s", 4.0}, {"1.5", "timed out after 1.5s", 1.5}}) {
    FolderWorld world("english-service-window", {{"/panels/0/faults/confirmDoesNothing", true},
                                                 {"/panels/0/faults/ignoresKeys", true}});
    EXPECT_EQ(world.world.run(choosePath(world.target, {"--timeout", timeout})), failed(message));
    EXPECT_EQ(world.world.panelOutcomes(), "open");
    EXPECT_EQ(deedsOfRetry(world.world.record(), watch),
              joined({pressedInVain(world.target), {"0.150 AXPress of AXButton in 900"}}));
    EXPECT_THAT(sleepLengths(world.world.record()),
                ElementsAre("0.02", "0.05", "0.15", "0.35", "0.55"));
  }
}

// --- A file, through the go-to-folder sheet. ---

// After its last Return 0.25 s pass, then the panel is watched for 1 s in five looks.
TEST(ChoosePathOfAFile, GoesThereByTheSheetAndPressesOpen) {
  for (const char* scenario : {"file-panel-english", "tmp-files-chinese"}) {
    FilePanel panel(scenario);
    EXPECT_EQ(panel.choose(), chosen(sheetResult(panel.file.path(), "open-button"))) << scenario;
    EXPECT_EQ(panel.world.panelOutcomes(), "chosen " + panel.file.path());
    EXPECT_EQ(transcript(panel.world.record()),
              joined({writtenIntoSheet(panel.file.path()), {"1.000 AXPress of AXButton in 900"}}));
    EXPECT_THAT(panel.file.copies(), IsEmpty());
  }
}

TEST(ChoosePathOfAFile, IsDoneWhenTheSheetsReturnClosesThePanel) {
  FilePanel panel("file-panel-english", {{"/panels/0/faults/goToReturnConfirms", true}});
  EXPECT_EQ(panel.choose(), chosen(sheetResult(panel.file.path(), "confirm")));
  EXPECT_EQ(panel.world.panelOutcomes(), "chosen " + panel.file.path());
  EXPECT_EQ(transcript(panel.world.record()), writtenIntoSheet(panel.file.path()));
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
}  // namespace tessarine::test::choose_path_routes
