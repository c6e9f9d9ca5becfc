// choose-folder through the controls of the dialog, as a whole. A folder that is clicked or opened
// is shown 0.1 s later, when the first look at the list still goes on; a menu 0.4 s later, and what
// the pop-up shows 0.15 s, so that the first look comes too early and the next finds it.
#include <gmock/gmock.h>

#include <algorithm>

#include "scenarios/folder_routes.h"
#include "support/foreground_story.h"
#include "support/transcript.h"

namespace tessarine::test::choose_folder_by_controls_routes {
namespace {

using ::testing::Contains;
using ::testing::ElementsAreArray;
using ::testing::EndsWith;
using ::testing::Not;
using Json = nlohmann::ordered_json;

const Patch targetIsShown{"/panels/0/folder", "~/target"};
const Patch usrIsShown{"/showsSystemFolders", true};
const Patch oldSheet{"/panels/0/goTo", {{"generation", "old"}}};

// From the click on the first place to the selected row, and the press that confirms.
const Deeds walkFromPlace{
    "0.000 mouse down 1 (410, 288) -> 900", "0.050 mouse up 1 (410, 288) -> 900",
    "0.100 set AXSelectedRows of AXOutline in 900", "0.000 set AXFocused of AXOutline in 900"};
const Deeds press{"0.000 AXPress of AXButton in 900"};

// The walk by rows given up and the path written to the sheet.
Deeds throughSheet(const std::string& path) {
  return {"0.000 AXShowMenu of AXPopUpButton in 900",
          "0.000 key 5+120000 down -> 900",
          "0.020 key 5+120000 up -> 900",
          "0.400 set AXFocused of AXTextField in 900",
          "0.000 set AXValue of AXTextField in 900: " + path,
          "0.120 AXConfirm of AXTextField in 900",
          "0.200 key 36 down -> 900",
          "0.020 key 36 up -> 900"};
}

// A row opened: by its action, a double click and the keys.
Deeds opening(const std::string& pause, const std::string& point) {
  return {pause + " AXOpen of AXTextField in 900",
          "0.060 set AXSelectedRows of AXOutline in 900",
          "0.000 set AXFocused of AXOutline in 900",
          "0.000 mouse down 1 " + point + " -> 900",
          "0.050 mouse up 1 " + point + " -> 900",
          "0.060 mouse down 2 " + point + " -> 900",
          "0.050 mouse up 2 " + point + " -> 900",
          "0.120 key 124 down -> 900",
          "0.020 key 124 up -> 900",
          "0.080 key 125+100000 down -> 900",
          "0.020 key 125+100000 up -> 900",
          "0.080 key 36 down -> 900",
          "0.020 key 36 up -> 900"};
}

FolderRun chosen(const std::string& path, const std::string& strategy,
                 const std::string& disturbed = noDisturbance,
                 std::int32_t dialogPid = servicePid) {
  return {controlled(path, strategy, dialogPid), "chosen " + path, disturbed};
}

constexpr const char* oneClick = "mouse 2, session 0, foreground 0";

// --- The walk by rows. ---

TEST(ChooseFolderControlsRoutes, WalksFromAPlaceInTheSidebar) {
  FolderWorld world("chinese-service-window", {startIsAPlace, targetIsShown});
  EXPECT_EQ(choose(world), chosen(world.target, "hierarchy", oneClick));
  EXPECT_EQ(transcript(world.world.record()), joined({walkFromPlace, press}));
}

TEST(ChooseFolderControlsRoutes, WalksInADialogOfTheBrowser) {
  FolderWorld world("chinese-host-window", {startIsAPlace, targetIsShown});
  EXPECT_EQ(choose(world), chosen(world.target, "hierarchy", oneClick, browserPid));
  EXPECT_THAT(postedEventKinds(world.world.record()),
              ElementsAreArray({"mouse down 1 (410, 288) -> 812", "mouse up 1 (410, 288) -> 812"}));
}

TEST(ChooseFolderControlsRoutes, WalksInAChooserInsideTheBrowsersWindow) {
  FolderWorld world("chinese-embedded", {startIsAPlace, targetIsShown});
  EXPECT_EQ(choose(world), chosen(world.target, "hierarchy", oneClick, browserPid));
}

// The second place, a row of 24 points further down, holds the folder itself.
TEST(ChooseFolderControlsRoutes, WalksFromTheDeepestOfSeveralPlaces) {
  FolderWorld world("chinese-service-window",
                    {{"/places",
                      {{{"label", "start"}, {"path", "~"}, {"urlKnown", true}},
                       {{"label", "target"}, {"path", "~/target"}, {"urlKnown", true}}}}});
  world.target += "/inner";
  EXPECT_EQ(choose(world), chosen(world.target, "hierarchy", oneClick));
  EXPECT_EQ(transcript(world.world.record()).front(), "0.000 mouse down 1 (410, 312) -> 900");
  EXPECT_EQ(transcript(world.world.record()).size(), walkFromPlace.size() + press.size());
}

// The menu is found at the fourth look. The volume is shown at the second and given 0.15 s.
TEST(ChooseFolderControlsRoutes, WalksFromTheVolumeInThePopUp) {
  FolderWorld world("chinese-service-window", {usrIsShown, {"/listsOnly", {"/usr"}}});
  EXPECT_EQ(runChooseFolder(world.world, "/usr"), chosen("/usr", "hierarchy"));
  EXPECT_EQ(
      transcript(world.world.record()),
      joined({{"0.000 AXShowMenu of AXPopUpButton in 900", "0.450 AXPick of AXMenuItem in 900",
               "0.300 set AXSelectedRows of AXOutline in 900",
               "0.000 set AXFocused of AXOutline in 900"},
              press}));
}

TEST(ChooseFolderControlsRoutes, OpensNoMenuWhereTheVolumeIsShownAlready) {
  World world("chinese-service-window", {{"/panels/0/folder", "/"}, usrIsShown});
  EXPECT_EQ(runChooseFolder(world, "/usr"), chosen("/usr", "hierarchy"));
  EXPECT_EQ(transcript(world.record()), joined({{"0.150 set AXSelectedRows of AXOutline in 900",
                                                 "0.000 set AXFocused of AXOutline in 900"},
                                                press}));
}

// The folder stands below others in the list, so that the second half of the double click meets no
// row of its own. What is opened is given 0.2 s.
struct FolderOnTheWay : FolderWorld {
  explicit FolderOnTheWay(World::Patches patches)
      : FolderWorld("chinese-service-window", withPlaces(std::move(patches))) {
    for (const char* name : {"start/a", "start/b", "start/c"}) files.makeFolder(name);
    target += "/inner";
  }
  static World::Patches withPlaces(World::Patches patches) {
    patches.insert(patches.end(), {startIsAPlace, targetIsShown});
    return patches;
  }
};

TEST(ChooseFolderControlsRoutes, OpensTheFolderOnTheWay) {
  FolderOnTheWay world({deaf});
  EXPECT_EQ(choose(world), chosen(world.target, "hierarchy", "mouse 6, session 0, foreground 0"));
  EXPECT_EQ(transcript(world.world.record()),
            joined({{walkFromPlace[0], walkFromPlace[1]},
                    opening("0.100", "(650.75, 360)"),
                    {"0.280 set AXSelectedRows of AXOutline in 900",
                     "0.000 set AXFocused of AXOutline in 900"},
                    press}));
}

// The keys that follow the double click confirm what it opened.
TEST(ChooseFolderControlsRoutes, ConfirmsTheFolderOnTheWayByTheKeysThatOpenIt) {
  FolderOnTheWay world({});
  EXPECT_EQ(choose(world, {"--timeout", "5"}),
            (FolderRun{failed("timed out after 5.0s"), "chosen " + world.start + "/target",
                       "mouse 6, session 0, foreground 0"}));
}

// --- The go-to sheet. ---

TEST(ChooseFolderControlsRoutes, GoesThroughTheSheetWhereTheListsAreNotKnown) {
  FolderWorld world("english-service-window");
  EXPECT_EQ(choose(world), chosen(world.target, "go-to-folder-ax"));
  EXPECT_THAT(transcript(world.world.record()), Contains("0.020 key 36 up -> 900").Times(1));
}

// The folder shown holds no row of its own name, which is looked for in vain.
TEST(ChooseFolderControlsRoutes, ConfirmsWithoutARowOfTheFolder) {
  FolderWorld world("chinese-service-window", {noMenu});
  EXPECT_EQ(choose(world), chosen(world.target, "go-to-folder-ax"));
  const auto deeds = transcript(world.world.record());
  EXPECT_EQ(Deeds(deeds.begin(), deeds.end() - 1), throughSheet(world.target));
  EXPECT_THAT(deeds.back(), EndsWith(" AXPress of AXButton in 900"));
}

// The rows of before are still listed, so the folder's own is found 0.25 s and 0.3 s after the
// Return. Opened, it is confirmed by the keys; 0.08 s and 0.15 s later there is no button.
TEST(ChooseFolderControlsRoutes, OpensTheRowOfTheFolder) {
  FolderWorld world("chinese-service-window", {noMenu, {"/panels/0/faults/staleListing", true}});
  EXPECT_EQ(choose(world),
            chosen(world.target, "go-to-folder-ax", "mouse 4, session 0, foreground 0"));
  EXPECT_EQ(transcript(world.world.record()),
            joined({throughSheet(world.target),
                    opening("0.550", "(650.75, 288)"),
                    {"0.230 key 36 down -> 900", "0.020 key 36 up -> 900"}}));
}

// A person clicks a place while the tool waits for the volume's list, and the last look at where
// the dialog is expires.
const World::Patches goesElsewhere{{"/panels/0/folder", "/"},
                                   {"/panels/0/listColumns", 1},
                                   {"/places", {{{"label", "usr"}, {"path", "/usr"}}}}};

World::Patches clickingAt(double seconds) {
  World::Patches patches = goesElsewhere;
  patches.push_back({"/person", {{{"atSeconds", seconds}, {"clicks", {{"x", 410}, {"y", 288}}}}}});
  return patches;
}

TEST(ChooseFolderControlsRoutes, GoesThroughTheSheetWhenTheFolderIsLeftAgain) {
  World world("chinese-service-window", clickingAt(0.3));
  EXPECT_EQ(runChooseFolder(world, "/").outcome, controlled("/", "go-to-folder-ax"));
  EXPECT_EQ(world.panelOutcomes(), "chosen /");
  EXPECT_THAT(transcript(world.record()), Not(Contains(EndsWith("AXShowMenu of AXPopUpButton"))));
}

TEST(ChooseFolderControlsRoutes, ConfirmsNothingWhenTheFolderIsLeftAfterTheWalk) {
  World world("chinese-service-window", clickingAt(0.333));
  EXPECT_EQ(runChooseFolder(world, "/").outcome,
            closedByEvents("/", servicePid, servicesWindow,
                           "chooser did not reach target folder before pressing choose: /",
                           {{"choosePoint", {{"x", 1052.0}, {"y", 587.0}}}}));
  EXPECT_EQ(world.panelOutcomes(), "chosen /");
}

// The old sheet takes AXConfirm, so that the Return may be lost.
TEST(ChooseFolderControlsRoutes, AsksTheSessionForTheSheetWhenTheBrowserIsInFront) {
  FolderWorld world("browser-frontmost", {noMenu, keysReachHost, oldSheet});
  EXPECT_EQ(choose(world),
            chosen(world.target, "go-to-folder-ax", "mouse 0, session 2, foreground 0"));
  EXPECT_THAT(foregroundStory(world.world.record()), Contains("frontmost?").Times(1));
  const auto deeds = transcript(world.world.record());
  ASSERT_EQ(deeds.size(), 11U);
  EXPECT_THAT(deeds[3], EndsWith(" key 5+120000 down -> session"));
  EXPECT_EQ(Deeds(deeds.begin() + 4, deeds.end() - 1),
            (Deeds{"0.020 key 5+120000 up -> session", "0.350 set AXFocused of AXTextField in 900",
                   "0.000 set AXValue of AXTextField in 900: " + world.target,
                   "0.120 AXConfirm of AXTextField in 900", "0.200 key 36 down -> 900",
                   "0.020 key 36 up -> 900"}));
}

TEST(ChooseFolderControlsRoutes, AsksTheSessionForNothingWhileAnotherApplicationIsInFront) {
  FolderWorld world("english-service-window", {noMenu, keysReachHost, oldSheet, noButton});
  EXPECT_EQ(
      choose(world, {"--timeout", "60"}),
      (FolderRun{closedByEvents(world.target, browserPid, servicesWindow, "timed out after 1.5s"),
                 "chosen " + world.target, "mouse 20, session 0, foreground 0"}));
}

TEST(ChooseFolderControlsRoutes, TellsThatTheSheetDidNotTakeThePath) {
  FolderWorld world("english-service-window", {noMenu,
                                               deaf,
                                               deadButton,
                                               {"/lastGoToPath", "/usr/share"},
                                               {"/panels/0/goTo/openAtStart", true},
                                               {"/panels/0/faults/fieldWriteRefused", -25204}});
  EXPECT_EQ(
      choose(world, {"--timeout", "60"}).outcome,
      failed(notClosed(everyAttempt, "failed to set go-to-folder value via AX (got: /usr/share)")));
}

// The sheet is open and holds the path, and nothing but its field's AXConfirm would send it off.
World::Patches unconfirmable() {
  return {noMenu, deaf, deadButton, {"/panels/0/goTo/openAtStart", true}};
}

void refuseConfirmation(World& world, std::int32_t code) {
  world.desktop().faults().refused_requests = {
      {simulator::AccessibilityRequest::Verb::perform, code, "AXConfirm"}};
}

long confirmations(const simulator::Record& record) {
  const auto deeds = transcript(record);
  return std::count_if(deeds.begin(), deeds.end(), [](const std::string& deed) {
    return deed.ends_with(" AXConfirm of AXTextField in 900");
  });
}

TEST(ChooseFolderControlsRoutes, TellsThatTheSheetWasNotConfirmed) {
  FolderWorld world("english-service-window", unconfirmable());
  refuseConfirmation(world.world, simulator::ax::cannotComplete);
  EXPECT_EQ(choose(world, {"--timeout", "60"}).outcome,
            failed(notClosed(everyAttempt, "AX action AXConfirm failed: -25204")));
  EXPECT_EQ(world.world.panelOutcomes(), "open");
  EXPECT_EQ(confirmations(world.world.record()), 1);
  EXPECT_EQ(world.world.record().sessionEvents(), 0U);
}

// The chord through the session finds the sheet as it was, and its field refuses once more.
TEST(ChooseFolderControlsRoutes, TellsThatTheSheetWasNotConfirmedTheSecondTime) {
  FolderWorld world("browser-frontmost", unconfirmable());
  refuseConfirmation(world.world, simulator::ax::actionUnsupported);
  EXPECT_EQ(choose(world, {"--timeout", "60"}).outcome,
            failed(notClosed(everyAttempt, "AX action AXConfirm failed: -25206")));
  EXPECT_EQ(confirmations(world.world.record()), 2);
  EXPECT_EQ(world.world.record().sessionEvents(), 2U);
}

// --- Confirmation. ---

TEST(ChooseFolderControlsRoutes, PressesReturnWhereThereIsNoChooseButton) {
  FolderWorld world("chinese-service-window", {startIsAPlace, targetIsShown, noButton});
  EXPECT_EQ(choose(world), chosen(world.target, "hierarchy", oneClick));
  EXPECT_EQ(transcript(world.world.record()),
            joined({walkFromPlace, {"0.000 key 36 down -> 900", "0.020 key 36 up -> 900"}}));
}

// The field of an open sheet takes the path, and the Return that would send it off is lost.
TEST(ChooseFolderControlsRoutes, PressesNoButtonWhereTheFolderWasNotReached) {
  FolderWorld world("english-service-window", {noMenu, deaf, {"/panels/0/goTo/openAtStart", true}});
  EXPECT_EQ(choose(world, {"--timeout", "60"}),
            (FolderRun{failed(notClosed(everyAttempt,
                                        "chooser did not reach target folder before pressing "
                                        "choose: " +
                                            world.target)),
                       "open", "mouse 30, session 0, foreground 0"}));
  EXPECT_THAT(transcript(world.world.record()),
              Not(Contains(EndsWith("AXPress of AXButton in 900"))));
}

TEST(ChooseFolderControlsRoutes, LetsTheCloseWaitJudgeARefusedPress) {
  FolderWorld world("chinese-service-window",
                    {startIsAPlace, targetIsShown, {"/panels/0/faults/confirmAnswers", -25204}});
  EXPECT_EQ(choose(world), chosen(world.target, "hierarchy", oneClick));
}

// When the button was pressed first and last, and when the key that followed was.
struct Retry {
  std::vector<double> presses;
  double key = 0;
};

Retry retryIn(const simulator::Record& record) {
  Retry retry;
  for (const auto& line : record.lines()) {
    const auto* request = std::get_if<simulator::AccessibilityRequest>(&line.entry);
    if (request != nullptr && request->name == "AXPress") retry.presses.push_back(line.time);
    const auto* key = std::get_if<simulator::PostedKey>(&line.entry);
    if (key != nullptr && key->event.keyCode == 36 && retry.key == 0) retry.key = line.time;
  }
  return retry;
}

// A look at the dialog takes less than 0.05 s, with a pause of 0.15 s after each.
constexpr double lookAndPause = 0.2;

TEST(ChooseFolderControlsRoutes, PressesReturnOnceMoreWhenThePanelStays) {
  for (const auto& [timeout, wait] : {std::pair{"10", 4.0}, {"4.5", 4.0}, {"1.5", 1.5}}) {
    FolderWorld world("chinese-service-window", {startIsAPlace, targetIsShown, deadButton});
    EXPECT_EQ(choose(world, {"--timeout", timeout}), chosen(world.target, "hierarchy", oneClick));
    const Retry retry = retryIn(world.world.record());
    EXPECT_EQ(retry.presses.size(), 1U);
    EXPECT_GE(retry.key - retry.presses.at(0), wait);
    EXPECT_LE(retry.key - retry.presses.at(0), wait + lookAndPause);
    EXPECT_EQ(transcript(world.world.record()).back(), "0.020 key 36 up -> 900");
  }
}

TEST(ChooseFolderControlsRoutes, GivesUpAfterTwoCloseWaits) {
  FolderWorld world("chinese-service-window",
                    {startIsAPlace, targetIsShown, deaf, deadButton, {"/panels/0/listed", "host"}});
  const std::string attempt = R"("window=103,pid=812,frame=320.0,180.0,800.0,450.0")";
  EXPECT_EQ(choose(world, {"--timeout", "30"}).outcome,
            failed(notClosed(attempt, "timed out after 4.0s")));
  const auto deeds = transcript(world.world.record());
  const std::size_t walked = walkFromPlace.size();
  ASSERT_GT(deeds.size(), walked + 4);
  EXPECT_EQ(Deeds(deeds.begin(), deeds.begin() + 5), joined({walkFromPlace, press}));
  EXPECT_THAT(deeds[walked + 1], EndsWith(" key 36 down -> 900"));
  EXPECT_EQ(deeds[walked + 2], "0.020 key 36 up -> 900");
  EXPECT_EQ(deeds[walked + 3], "0.150 AXPress of AXButton in 900");
  EXPECT_THAT(deeds[walked + 4], EndsWith(" mouse down 1 (720, 405) -> 812"));
  EXPECT_EQ(retryIn(world.world.record()).presses.size(), 2U);
}

// With windows that no list names, nothing is left to try.
TEST(ChooseFolderControlsRoutes, WaitsTwiceAsLongAsTheTimeoutWhereThatIsLess) {
  FolderWorld world("chinese-service-window",
                    {startIsAPlace, targetIsShown, deaf, deadButton, {"/panels/0/listed", "none"}});
  EXPECT_EQ(choose(world, {"--timeout", "1.5"}).outcome, failed("timed out after 1.5s"));
  const Retry retry = retryIn(world.world.record());
  ASSERT_EQ(retry.presses.size(), 2U);
  EXPECT_GE(retry.key - retry.presses[0], 1.5);
  EXPECT_LE(retry.key - retry.presses[0], 1.5 + lookAndPause);
  const double end = world.world.desktop().now();  // after the wait for a listed window
  EXPECT_GE(end - retry.presses[1], 1.5 + 1.5);
  EXPECT_LE(end - retry.presses[1], 1.5 + 1.5 + 2 * lookAndPause);
}

}  // namespace
}  // namespace tessarine::test::choose_folder_by_controls_routes
