#include "commands/choose_path_by_go_to_folder.h"

#include <gmock/gmock.h>

#include <nlohmann/json.hpp>
#include <tuple>

#include "commands/choose_path_deeds.h"
#include "support/folder_world.h"

namespace tessarine::test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

const World::Patches confirmedByReturn{{"/panels/0/faults/goToReturnConfirms", true}};

// A panel with one file to choose; the folder world's target stays beside it.
struct FileWorld : FolderWorld {
  explicit FileWorld(const std::string& scenario, const World::Patches& patches = {})
      : FolderWorld(scenario, patches), file(files.makeFile("start/target/notes.txt")) {}

  nlohmann::ordered_json choose(double timeoutSeconds = 10) {
    return choosePathByGoToFolderAX(browserPid, file, timeoutSeconds);
  }
  std::string failure(double timeoutSeconds = 10) {
    return messageOf([&] { choose(timeoutSeconds); });
  }
  std::vector<std::string> deeds() const { return transcript(world.record()); }

  std::string file;
};

std::string resultText(const std::string& path, const std::string& basename,
                       const std::string& commit, std::int32_t pid = servicePid,
                       const std::string& app = "open-save-panel-service") {
  return nlohmann::ordered_json{
      {"ok", true},       {"command", "choose-path"}, {"path", path},
      {"kind", "file"},   {"basename", basename},     {"strategy", "go-to-folder-ax"},
      {"commit", commit}, {"dialogPid", pid},         {"dialogApp", app}}
      .dump();
}

double lastKeyTime(const simulator::Record& record) {
  double time = 0;
  for (const auto& line : record.lines()) {
    if (std::holds_alternative<simulator::PostedKey>(line.entry)) time = line.time;
  }
  return time;
}

TEST(GoToFolderAXResult, HasNineEntriesAndAlwaysTheKindFile) {
  const BareDesktop world;
  const DialogRef dialog{{world.appHandle(), {}}, world.appHandle(), 4711, "some label"};
  EXPECT_EQ(goToFolderAXResult("/usr/lib", dialog, "open-button").dump(),
            R"({"ok":true,"command":"choose-path","path":"/usr/lib","kind":"file",)"
            R"("basename":"lib","strategy":"go-to-folder-ax","commit":"open-button",)"
            R"("dialogPid":4711,"dialogApp":"some label"})");
}

// --- What closes the panel. ---

TEST(ChoosePathByGoToFolderAX, IsDoneWhenTheSheetsReturnClosesThePanel) {
  FileWorld world("file-panel-english", confirmedByReturn);
  EXPECT_EQ(world.choose().dump(), resultText(world.file, "notes.txt", "confirm"));
  EXPECT_EQ(world.deeds(), writtenIntoSheet(world.file));
  EXPECT_EQ(world.world.panelOutcomes(), "chosen " + world.file);
}

// The second Return, 0.42 s after the one that sent the sheet off, opens the file.
TEST(ChoosePathByGoToFolderAX, IsDoneWhenTheSecondReturnClosesThePanel) {
  FileWorld world("file-panel-english", {{"/panels/0/goTo/withoutConfirm", true}});
  EXPECT_EQ(world.choose().dump(), resultText(world.file, "notes.txt", "confirm"));
  EXPECT_EQ(world.world.panelOutcomes(), "chosen " + world.file);
}

TEST(ChoosePathByGoToFolderAX, IsDoneWhenOnlyTheWindowListStillHasThePanel) {
  FileWorld world("file-panel-english", {{"/panels/0/faults/goToReturnConfirms", true},
                                         {"/panels/0/windowList/staysUncapturable", true}});
  EXPECT_EQ(world.choose().dump(), resultText(world.file, "notes.txt", "confirm"));
  EXPECT_EQ(world.deeds(), writtenIntoSheet(world.file));
  EXPECT_THAT(sleepLengths(world.world.record()),
              ElementsAre("0.02", "0.12", "0.15", "0.2", "0.25", "0.4"));
  // A second's wait, whose last look may begin just before its end, follows the last pause.
  const double waited = world.world.desktop().now() - lastKeyTime(world.world.record()) - 0.25;
  EXPECT_GE(waited, 1.0);
  EXPECT_LE(waited, 1.25);
}

// What is not listed counts as gone, whatever the tree shows.
TEST(ChoosePathByGoToFolderAX, IsDoneAtOnceWhenNoPanelWindowIsListed) {
  FileWorld world("file-panel-english", {{"/panels/0/listed", "none"}});
  EXPECT_EQ(world.choose().dump(), resultText(world.file, "notes.txt", "confirm"));
  EXPECT_EQ(world.deeds(), writtenIntoSheet(world.file));
  EXPECT_EQ(world.world.panelOutcomes(), "open");
}

TEST(ChoosePathByGoToFolderAX, PressesTheOpenButtonOfAPanelThatStays) {
  FileWorld world("file-panel-english");
  EXPECT_EQ(world.choose().dump(), resultText(world.file, "notes.txt", "open-button"));
  EXPECT_EQ(world.world.panelOutcomes(), "chosen " + world.file);
  // After the Return 0.25 s pass, then five looks of 0.05 s, each with a pause of 0.15 s.
  EXPECT_EQ(world.deeds(),
            joined({writtenIntoSheet(world.file), {"1.000 AXPress of AXButton in 900"}}));
}

TEST(ChoosePathByGoToFolderAX, CallsAFolderAFileToo) {
  FileWorld world("chinese-service-window");
  EXPECT_EQ(choosePathByGoToFolderAX(browserPid, world.target, 10).dump(),
            resultText(world.target, "target", "open-button"));
  EXPECT_EQ(world.world.panelOutcomes(), "chosen " + world.target);
}

TEST(ChoosePathByGoToFolderAX, FindsAChooserInsideTheBrowsersWindow) {
  FileWorld world("chinese-embedded", {{"/panels/0/keysReach", "both"},
                                       {"/panels/0/listed", "service"},
                                       {"/panels/0/serviceTitle", "打开"}});
  EXPECT_EQ(choosePathByGoToFolderAX(browserPid, world.target, 10).dump(),
            resultText(world.target, "target", "open-button", browserPid, "primary-browser"));
  EXPECT_EQ(world.world.panelOutcomes(), "chosen " + world.target);
}

TEST(ChoosePathByGoToFolderAX, WaitsUntilTheWindowListHasLostThePanelToo) {
  FileWorld world("file-panel-english", {{"/panels/0/windowList/staysAfterClosingSeconds", 2}});
  EXPECT_EQ(world.choose().dump(), resultText(world.file, "notes.txt", "open-button"));
  EXPECT_GE(world.world.desktop().now(), world.world.panel().outcome().at + 2);
  FileWorld tooLong("file-panel-english", {{"/panels/0/windowList/staysAfterClosingSeconds", 5}});
  EXPECT_EQ(tooLong.failure(), "timed out after 4.0s");
}

// --- Failures. ---

TEST(ChoosePathByGoToFolderAX, WaitsForADialogForAtMostThreeSeconds) {
  for (const auto& [timeout, message] :
       {std::pair{10.0, "timed out after 3.0s"}, {2.0, "timed out after 2.0s"}}) {
    World world("no-panel");
    EXPECT_EQ(messageOf([&, seconds = timeout] {
                choosePathByGoToFolderAX(browserPid, "/usr/lib", seconds);
              }),
              message);
    EXPECT_THAT(transcript(world.record()), IsEmpty());
  }
}

TEST(ChoosePathByGoToFolderAX, PassesOnThatNoGoToFieldAppears) {
  FileWorld world("file-panel-english", {{"/panels/0/goTo/neverOpens", true}});
  EXPECT_EQ(world.failure(), "timed out after 1.5s");
  EXPECT_THAT(world.deeds(),
              ElementsAre("0.000 key 5+120000 down -> 900", "0.020 key 5+120000 up -> 900"));
}

// The browser owns the panel, so a key press through the session reaches it too.
TEST(ChoosePathByGoToFolderAX, TriesThroughTheSessionWhileTheBrowserIsInFront) {
  FileWorld world("file-panel-english",
                  {{"/panels/0/goTo/neverOpens", true}, {"/frontmost", browserPid}});
  EXPECT_EQ(world.failure(), "timed out after 2.5s");
  EXPECT_THAT(postedEventKinds(world.world.record()),
              ElementsAre("key 5+120000 down -> 900", "key 5+120000 up -> 900",
                          "key 5+120000 down -> session", "key 5+120000 up -> session"));
}

TEST(ChoosePathByGoToFolderAX, PassesOnThatTheFieldRefusesThePath) {
  FileWorld world("file-panel-english", {{"/panels/0/faults/fieldWriteRefused", -25204},
                                         {"/lastGoToPath", "/usr/share"}});
  EXPECT_EQ(world.failure(), "failed to set go-to-folder value via AX (got: /usr/share)");
}

// How often the windows were listed once the button had been pressed.
int looksAfterPress(const simulator::Record& record) {
  int looks = 0;
  bool pressed = false;
  for (const auto& line : record.lines()) {
    const auto* request = std::get_if<simulator::AccessibilityRequest>(&line.entry);
    const auto* started = std::get_if<simulator::ProgramStarted>(&line.entry);
    if (request != nullptr && request->name == "AXPress") pressed = true;
    if (pressed && started != nullptr && started->arguments.front() == "list") ++looks;
  }
  return looks;
}

TEST(ChoosePathByGoToFolderAX, WaitsForTheCloseForAtMostFourSeconds) {
  for (const World::Patches& patches :
       {World::Patches{{"/panels/0/faults/confirmDoesNothing", true}},
        World::Patches{{"/panels/0/faults/pressRefused", -25204}},
        World::Patches{{"/panels/0/faults/noConfirmButton", true}},
        // The button is pressed between 2 s and 3 s; then only the window list loses the panel.
        World::Patches{{"/panels/0/faults/confirmDoesNothing", true},
                       {"/panels/0/windowList/leavesAfterSeconds", 3}}}) {
    FileWorld world("file-panel-english", patches);
    EXPECT_EQ(world.failure(), "timed out after 4.0s");
    EXPECT_EQ(world.world.panelOutcomes(), "open");
  }
  // A look takes 0.05 s, the pause after it 0.15 s.
  for (const auto& [timeout, message, looks] :
       {std::tuple{30.0, "timed out after 4.0s", 20}, {0.75, "timed out after 0.75s", 4}}) {
    FileWorld world("file-panel-english", {{"/panels/0/faults/confirmDoesNothing", true}});
    EXPECT_EQ(world.failure(timeout), message);
    EXPECT_EQ(looksAfterPress(world.world.record()), looks);
  }
}

}  // namespace
}  // namespace tessarine::test
