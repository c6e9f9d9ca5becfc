// The go-to sheet: who gets which keys, and what counts as having gone through it.
#include "navigation/go_to_sheet.h"

#include <gmock/gmock.h>

#include "navigation/moving_panel.h"
#include "navigation/panel_with_sheet.h"
#include "support/transcript.h"

namespace tessarine::test::go_to_sheet {
namespace {

using Node = simulator::Element;
using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;
namespace ax = simulator::ax;

const std::vector<std::string> onlySuch{"chord -> 900", "return -> 900"};

// --- Finding it. ---

TEST(GoToSheetOf, IsFoundByItsIdentifier) {
  HandBuiltPanel panel;
  EXPECT_EQ(nameOf(goToSheetOf(panel.rootHandle())), "nothing");
  add(panel.root, "GoToWindow", "AXSheet");
  EXPECT_EQ(nameOf(goToSheetOf(panel.rootHandle())), "GoToWindow");
}

TEST(GoToSheetOf, IsAnOldSheetWithAFieldForAPath) {
  for (const char* role : {"AXTextField", "AXComboBox"}) {
    HandBuiltPanel panel;
    Node& sheet = panel.root.addChild("AXSheet");
    sheet.set("AXIdentifier", std::string("old sheet"));
    Node& field = sheet.addChild(role);
    field.setFrame({0, 0, 300, 24});
    field.set("AXFocused", true);
    field.addAction("AXConfirm", [] { return ax::success; });
    EXPECT_EQ(nameOf(goToSheetOf(panel.rootHandle())), "old sheet") << role;
  }
}

TEST(GoToSheetOf, IsNoSheetThatOnlyAsks) {
  HandBuiltPanel panel;
  Node& alert = add(panel.root, "alert", "AXSheet");
  add(alert, "text", "AXStaticText");
  add(alert, "ok", "AXButton");
  EXPECT_EQ(nameOf(goToSheetOf(panel.rootHandle())), "nothing");
}

TEST(GoToSheetOf, IsNoSheetThatAsksForTheNameOfANewFolder) {
  HandBuiltPanel panel;
  Node& field = add(panel.root, "sheet", "AXSheet").addChild("AXTextField");
  for (const char* text : {"", "/usr", "~/Desktop"}) {
    field.set("AXValue", std::string(text));
    EXPECT_EQ(nameOf(goToSheetOf(panel.rootHandle())), "sheet") << text;
  }
  field.set("AXValue", std::string("untitled folder"));
  EXPECT_EQ(nameOf(goToSheetOf(panel.rootHandle())), "nothing");
}

TEST(GoToSheetOf, IsNotThePanelsOwnSearchField) {
  HandBuiltPanel panel;
  panel.search.setFrame({0, 0, 300, 24});
  panel.search.set("AXFocused", true);
  EXPECT_EQ(nameOf(goToSheetOf(panel.rootHandle())), "nothing");
}

TEST(GoToSheetOf, HangsFromTheWindowOfAChooserThatIsAPartOfOne) {
  BareDesktop world;
  Node& window = world.addWindow("Extensions");
  Node& root = add(window, "open-panel", "AXGroup");
  add(window, "GoToWindow", "AXSheet");
  EXPECT_EQ(nameOf(goToSheetOf(world.handle(root))), "GoToWindow");
}

TEST(GoToSheetOf, IsNoOtherPanelOfThatWindow) {
  BareDesktop world;
  Node& window = world.addWindow("Extensions");
  Node& root = add(window, "chooser", "AXGroup");
  add(add(window, "open-panel", "AXSheet"), "field", "AXTextField");
  EXPECT_EQ(nameOf(goToSheetOf(world.handle(root))), "nothing");
}

TEST(GoToSheetOf, IsNoOldSheetThatSearches) {
  HandBuiltPanel panel;
  add(add(panel.root, "finder", "AXSheet"), "field", "AXTextField",
      {{"AXSubrole", "AXSearchField"}});
  EXPECT_EQ(nameOf(goToSheetOf(panel.rootHandle())), "nothing");
}

TEST(GoToSheetOf, HasItsFieldThreeLevelsDownAtMost) {
  const auto found = [](int groups, const char* role) {
    HandBuiltPanel panel;
    Node* at = &add(panel.root, "old sheet", "AXSheet");
    for (int i = 0; i < groups; ++i) at = &at->addChild(role);
    at->addChild("AXTextField");
    return nameOf(goToSheetOf(panel.rootHandle()));
  };
  for (const char* role : {"AXGroup", "AXSplitGroup"}) {
    EXPECT_EQ(found(2, role), "old sheet") << role;
    EXPECT_EQ(found(3, role), "nothing") << role;
  }
  EXPECT_EQ(found(1, "AXTable"), "nothing");
}

TEST(GoToSheetOf, HasItsFieldAmongFortyElements) {
  const auto found = [](int others) {
    HandBuiltPanel panel;
    Node& sheet = add(panel.root, "old sheet", "AXSheet");
    for (int i = 0; i < others; ++i) sheet.addChild("AXStaticText");
    sheet.addChild("AXTextField");
    return nameOf(goToSheetOf(panel.rootHandle()));
  };
  EXPECT_EQ(found(39), "old sheet");
  EXPECT_EQ(found(40), "nothing");
}

TEST(GoToSheetOf, HangsFromTheWindowFarAroundAChooser) {
  BareDesktop world;
  Node& window = world.addWindow("Extensions");
  Node& root = add(addChain(window, 5), "chooser", "AXGroup");
  add(window, "GoToWindow", "AXSheet");
  EXPECT_EQ(nameOf(goToSheetOf(world.handle(root))), "GoToWindow");
}

// What hangs from the element around a window, a sheet or a dialog is not its own.
TEST(GoToSheetOf, IsNoneOfWhatStandsAroundThePanel) {
  for (const char* role : {"AXWindow", "AXSheet", "AXDialog"}) {
    BareDesktop world;
    Node& window = world.addWindow("Extensions");
    Node& root = add(window, "panel", role);
    add(window, "GoToWindow", "AXSheet");
    EXPECT_EQ(nameOf(goToSheetOf(world.handle(root))), "nothing") << role;
  }
}

TEST(GoToSheetOf, ThrowsWhenThePanelDoesNotAnswer) {
  HandBuiltPanel panel;
  const Element root = panel.rootHandle();
  panel.desktop.faults().silent_processes.insert(browserPid);
  EXPECT_THROW(goToSheetOf(root), Unanswered);
  panel.desktop.faults().silent_processes.clear();
  panel.window.removeChild(panel.root);
  EXPECT_THROW(goToSheetOf(root), Unanswered);
}

// --- Going through it. ---

TEST(GoThroughSheet, LeadsToAFolder) {
  for (const char* scenario : {"chromium-english", "chromium-chinese", "english-old-generation",
                               "english-service-window", "chinese-embedded"}) {
    MovingPanel moving(scenario);
    EXPECT_EQ(goThroughSheet(moving.choice, moving.folders.target), "") << scenario;
    EXPECT_TRUE(showsWithin(moving.choice, moving.folders.target, 2)) << scenario;
    EXPECT_EQ(moving.folderShown(), moving.folders.target) << scenario;
    EXPECT_EQ(moving.folders.world.panelOutcomes(), "open") << scenario;
  }
}

TEST(GoThroughSheet, WritesThePathAndPressesTheChordAndReturnAlone) {
  MovingPanel moving("chromium-english");
  goThroughSheet(moving.choice, moving.folders.target);
  EXPECT_EQ(moving.keys(), onlySuch);
  EXPECT_THAT(transcript(moving.folders.world.record()),
              Contains(HasSubstr("set AXValue of AXTextField in 900: " + moving.folders.target)));
  EXPECT_EQ(disturbance(moving.folders.world.record()), noDisturbance);
  EXPECT_THAT(moving.choice.sheetTakers, ElementsAre(servicePid));
}

TEST(GoThroughSheet, WorksWithACombinedField) {
  MovingPanel moving("english-old-generation", {{"/panels/0/goTo/comboBox", true}});
  EXPECT_EQ(goThroughSheet(moving.choice, moving.folders.target), "");
  EXPECT_TRUE(showsWithin(moving.choice, moving.folders.target, 2));
}

TEST(GoThroughSheet, WorksWithoutIdentifiers) {
  MovingPanel moving("english-old-generation", {{"/panels/0/identifiers", false}});
  EXPECT_EQ(goThroughSheet(moving.choice, moving.folders.target), "");
  EXPECT_TRUE(showsWithin(moving.choice, moving.folders.target, 2));
}

TEST(GoThroughSheet, SelectsAFile) {
  MovingPanel moving("file-panel-english");
  const std::string file = moving.folders.files.makeFile("start/target/report.txt", "text");
  moving.aimAt(file);
  EXPECT_EQ(goThroughSheet(moving.choice, file), "");
  EXPECT_EQ(proofWithin(moving.choice, 2), Proof::entrySelected);
  EXPECT_EQ(moving.folders.world.panelOutcomes(), "open");
}

// --- Who gets the keys. ---

TEST(GoThroughSheet, TriesTheProcessesInTheOrderOfTheChoice) {
  MovingPanel moving("chromium-english", {{"/panels/0/keysReach", "host"}});
  EXPECT_EQ(goThroughSheet(moving.choice, moving.folders.target), "");
  EXPECT_THAT(moving.keys(), ElementsAre("chord -> 900", "chord -> 812", "return -> 812"));
  EXPECT_THAT(moving.choice.sheetTakers, ElementsAre(servicePid, browserPid));
}

TEST(GoThroughSheet, AsksNoFurtherProcessOnceTheSheetIsSeen) {
  MovingPanel moving("chromium-english", {{"/panels/0/keysReach", "both"}});
  moving.choice.keyPids = {browserPid, servicePid};
  EXPECT_EQ(goThroughSheet(moving.choice, moving.folders.target), "");
  EXPECT_THAT(moving.keys(), ElementsAre("chord -> 812", "return -> 812"));
}

TEST(GoThroughSheet, SaysThatNoSheetOpened) {
  MovingPanel moving("chromium-english", {{"/panels/0/keysReach", "nobody"}});
  EXPECT_EQ(goThroughSheet(moving.choice, moving.folders.target), "no go-to sheet opened");
  EXPECT_THAT(moving.keys(), ElementsAre("chord -> 900", "chord -> 812"));
  EXPECT_THAT(moving.choice.sheetTakers, ElementsAre(servicePid, browserPid))
      << "one that opens late is known to be one of theirs";
}

TEST(GoThroughSheet, WaitsForASheetForAboutASecond) {
  MovingPanel moving("chromium-english", {{"/panels/0/goTo/neverOpens", true}});
  const double before = currentTime();
  EXPECT_EQ(goThroughSheet(moving.choice, moving.folders.target), "no go-to sheet opened");
  EXPECT_NEAR(currentTime() - before, 2 * 1.3, 0.6);
}

TEST(GoThroughSheet, TakesASlowSheet) {
  MovingPanel moving("chromium-english", {{"/panels/0/slow", 5}});
  EXPECT_EQ(goThroughSheet(moving.choice, moving.folders.target), "");
  EXPECT_TRUE(showsWithin(moving.choice, moving.folders.target, 5));
}

TEST(GoThroughSheet, PressesNothingWhenKeysMayReachAnotherPanel) {
  MovingPanel moving("chromium-english");
  moving.choice.isAlone = [] { return false; };
  EXPECT_EQ(goThroughSheet(moving.choice, moving.folders.target), "no go-to sheet opened");
  EXPECT_THAT(moving.keys(), IsEmpty());
}

TEST(GoThroughSheet, AsksBeforeEachKeyWhetherItIsSafe) {
  MovingPanel moving("chromium-english");
  int questions = 0;
  moving.choice.isAlone = [&] { return ++questions == 1; };
  EXPECT_NE(goThroughSheet(moving.choice, moving.folders.target), "");
  EXPECT_THAT(moving.keys(), Not(Contains(HasSubstr("return"))));
  EXPECT_EQ(moving.folderShown(), moving.folders.start);
}

TEST(GoThroughSheet, PressesNothingToAProcessThatDoesNotAnswer) {
  MovingPanel moving("chromium-english",
                     {{"/panels/0/keysReach", "both"}, {"/panels/0/elementsBelongTo", "host"}});
  setMessagingTimeout(0.5);
  moving.folders.world.desktop().faults().silent_processes.insert(servicePid);
  goThroughSheet(moving.choice, moving.folders.target);
  EXPECT_THAT(moving.keys(), Not(Contains(HasSubstr("-> 900"))));
  EXPECT_THAT(moving.keys(), Contains("chord -> 812"));
  setMessagingTimeout(0);
}

TEST(GoThroughSheet, PressesNothingOnceThePanelIsGone) {
  MovingPanel moving("chromium-english");
  const double quits = currentTime() + 0.25;
  moving.folders.world.desktop().schedule(
      0.25, [&] { moving.folders.world.desktop().terminateProcess(browserPid, true); });
  EXPECT_THROW(goThroughSheet(moving.choice, moving.folders.target), PanelGone);
  EXPECT_LE(currentTime(), quits + 1.5);
  EXPECT_THAT(moving.keys(), ElementsAre("chord -> 900"));
}

TEST(GoThroughSheet, PressesNothingToAPanelThatIsGoneBefore) {
  MovingPanel moving("chromium-english");
  moving.folders.world.desktop().terminateProcess(browserPid, true);
  EXPECT_THROW(goThroughSheet(moving.choice, moving.folders.target), PanelGone);
  EXPECT_THAT(moving.keys(), IsEmpty());
}

// --- A sheet that is open already. ---

TEST(GoThroughSheet, OpensASheetThatIsOpenAfresh) {
  MovingPanel moving("goto-sheet-open");
  EXPECT_EQ(goThroughSheet(moving.choice, moving.folders.target), "");
  EXPECT_THAT(moving.keys(), ElementsAre("chord -> 900", "return -> 900"));
  EXPECT_TRUE(showsWithin(moving.choice, moving.folders.target, 2));
}

TEST(GoThroughSheet, SendsTheReturnForASheetThatWasOpenToWhoTookTheChord) {
  MovingPanel moving("goto-sheet-open", {{"/panels/0/keysReach", "host"}});
  EXPECT_EQ(goThroughSheet(moving.choice, moving.folders.target), "");
  EXPECT_THAT(moving.keys(), ElementsAre("chord -> 900", "chord -> 812", "return -> 812"));
  EXPECT_TRUE(showsWithin(moving.choice, moving.folders.target, 2));
}

// --- Sheets that do not do what they are told. ---

TEST(GoThroughSheet, ClosesASheetThatDoesNotTakeThePath) {
  for (const char* scenario : {"chromium-english", "english-old-generation"}) {
    MovingPanel moving(scenario, {{"/panels/0/faults/fieldWriteRefused", -25200}});
    EXPECT_EQ(goThroughSheet(moving.choice, moving.folders.target),
              "the go-to sheet did not take the path");
    EXPECT_EQ(nameOf(goToSheetOf(moving.choice.panel.element)), "nothing") << scenario;
    EXPECT_THAT(moving.keys(), Not(Contains(HasSubstr("return")))) << scenario;
    EXPECT_EQ(moving.folders.world.panelOutcomes(), "open") << scenario;
  }
}

TEST(GoThroughSheet, DoesNotBelieveAWriteThatSucceedsWithoutEffect) {
  MovingPanel moving("chromium-english", {{"/panels/0/faults/fieldWriteRefused", 0}});
  moving.folders.world.desktop().faults().refused_requests.push_back(
      {.verb = simulator::AccessibilityRequest::Verb::set,
       .error = ax::success,
       .name = "AXValue",
       .role = "AXTextField"});
  EXPECT_EQ(goThroughSheet(moving.choice, moving.folders.target),
            "the go-to sheet did not take the path");
  EXPECT_THAT(moving.keys(), Not(Contains(HasSubstr("return"))));
  const auto writes = requestsFor(moving.folders.world.record(), "AXValue", 0,
                                  simulator::AccessibilityRequest::Verb::set);
  EXPECT_EQ(writes, 2);
}

TEST(GoThroughSheet, TakesAPathThatTheFieldHoldsWithoutItsTrailingSlash) {
  MovingPanel moving("chromium-english", {{"/panels/0/goTo/normalisesField", true}});
  EXPECT_EQ(goThroughSheet(moving.choice, moving.folders.target), "");
}

TEST(GoThroughSheet, ClosesASheetThatDoesNotGo) {
  for (const char* scenario : {"chromium-english", "english-old-generation"}) {
    MovingPanel moving(scenario);
    EXPECT_EQ(goThroughSheet(moving.choice, "/nowhere/at/all"), "the go-to sheet did not go");
    EXPECT_EQ(nameOf(goToSheetOf(moving.choice.panel.element)), "nothing") << scenario;
    EXPECT_EQ(moving.folderShown(), moving.folders.start) << scenario;
    EXPECT_EQ(moving.folders.world.panelOutcomes(), "open") << scenario;
  }
}

TEST(GoThroughSheet, PressesReturnOnceForASheetThatItOpened) {
  MovingPanel moving("chromium-english");
  goThroughSheet(moving.choice, "/nowhere/at/all");
  const auto keys = moving.keys();
  EXPECT_EQ(std::count(keys.begin(), keys.end(), "return -> 900"), 1);
}

TEST(GoThroughSheet, DoesNotLookWhereASuggestionLed) {
  MovingPanel moving("chromium-english", {{"/panels/0/goTo/suggestion", "/usr"}});
  EXPECT_EQ(goThroughSheet(moving.choice, moving.folders.target), "");
  EXPECT_FALSE(showsWithin(moving.choice, moving.folders.target, 1));
  EXPECT_EQ(moving.folders.world.panelOutcomes(), "open");
}

// The panel closes a moment after its sheet.
TEST(GoThroughSheet, PressesNothingMoreWhenItsReturnConfirmsThePanel) {
  MovingPanel moving("chromium-english", {{"/panels/0/faults/goToReturnConfirms", true}});
  EXPECT_EQ(goThroughSheet(moving.choice, moving.folders.target), "");
  sleepSeconds(2);
  EXPECT_THROW(goThroughSheet(moving.choice, moving.folders.start), PanelGone);
  EXPECT_THROW(glance(moving.choice), PanelGone);
  EXPECT_EQ(moving.keys(), onlySuch);
}

TEST(GoThroughSheet, DoesNotWaitBeyondTheDeadline) {
  MovingPanel moving("chromium-english", {{"/panels/0/goTo/neverOpens", true}});
  moving.choice.deadline = currentTime() + 1.8;
  const double before = currentTime();
  EXPECT_THROW(goThroughSheet(moving.choice, moving.folders.target), TimeIsUp);
  EXPECT_THAT(moving.keys(), ElementsAre("chord -> 900"));
  EXPECT_LE(currentTime() - before, 2.0);
}

TEST(GoThroughSheet, PostsNoChordThatLeavesNoTimeForClosingTheSheet) {
  MovingPanel moving("chromium-english");
  moving.choice.deadline = currentTime() + 1.0;
  EXPECT_THROW(goThroughSheet(moving.choice, moving.folders.target), TimeIsUp);
  EXPECT_THAT(moving.keys(), IsEmpty());
}

// Each key that follows is made sure of for as long as the chord was.
TEST(GoThroughSheet, PostsNoChordThatSlowAnswersLeaveNoTimeToUndo) {
  const auto keysWithin = [](double seconds) {
    MovingPanel moving("chromium-english");
    moving.choice.isAlone = [] { return sleepSeconds(1), true; };
    moving.choice.deadline = currentTime() + seconds;
    try {
      goThroughSheet(moving.choice, moving.folders.target);
    } catch (const TimeIsUp&) {
    }
    return moving.keys();
  };
  EXPECT_THAT(keysWithin(1 + 1.3 + 2 * 1 - 0.1), IsEmpty());
  EXPECT_EQ(keysWithin(1 + 1.3 + 2 * 1 + 0.1), onlySuch);
}

// --- Sheets built by hand. ---

struct SheetByHand : PanelWithSheet {
  SheetByHand() {
    panel.addEntry("/usr/lib/");
    choice.keyPids = {browserPid};
  }
  void confirmsByField() {
    opened = [this] {
      field->addAction("AXConfirm", [this] {
        ++confirms;
        closeSheet();
        return ax::success;
      });
    };
  }
  void closesByReturn() {
    returnTaken = [this] { closeSheet(); };
  }
  std::string go() { return goThroughSheet(choice, "/usr/lib"); }

  PanelChoice choice =
      choiceOf({panel.rootHandle(), {panel.appHandle(), browserPid, "x"}}, "/usr/lib");
  int confirms = 0;
};

// Keys that arrive before are lost.
TEST(GoThroughSheet, WaitsUntilTheFieldHasTheKeyboard) {
  SheetByHand world;
  world.closesByReturn();
  bool focused = false;
  world.opened = [&] {
    world.field->set("AXFocused", false);
    world.field->makeSettable("AXFocused", [&](const simulator::Value&) {
      world.panel.desktop.schedule(0.2, [&] { world.field->set("AXFocused", true); });
      return ax::success;
    });
  };
  world.written = [&] { focused = *world.field->get("AXFocused") == simulator::Value(true); };
  EXPECT_EQ(world.go(), "");
  EXPECT_TRUE(focused);
}

TEST(GoThroughSheet, DoesNotWaitForAFieldThatDoesNotTellOfTheKeyboard) {
  SheetByHand world;
  double writtenAt = 0;
  double openedAt = 0;
  world.opened = [&] {
    world.field->clear("AXFocused");
    openedAt = world.panel.now();
  };
  world.written = [&] { writtenAt = world.panel.now(); };
  world.closesByReturn();
  EXPECT_EQ(world.go(), "");
  EXPECT_NEAR(writtenAt, openedAt, 0.35);
}

TEST(GoThroughSheet, KnowsThatNoReturnIsUnderWayOnceTheSheetHasGone) {
  SheetByHand world;
  world.closesByReturn();
  EXPECT_EQ(world.go(), "");
  EXPECT_FALSE(world.choice.returnUnderWay);
}

TEST(GoThroughSheet, KnowsThatAReturnIsUnderWayOfWhichNothingWasSeen) {
  SheetByHand world;
  EXPECT_EQ(world.go(), "the go-to sheet did not go");
  EXPECT_EQ(world.returns, 1);
  EXPECT_TRUE(world.choice.returnUnderWay);
}

TEST(GoThroughSheet, ConfirmsByTheFieldWhereReturnDoesNothing) {
  SheetByHand world;
  world.confirmsByField();
  EXPECT_EQ(world.go(), "");
  EXPECT_EQ(world.returns, 1);
  EXPECT_EQ(world.confirms, 1);
}

// A suggestion may be completed between the write and the Return.
TEST(GoThroughSheet, ConfirmsNothingOnceTheFieldHoldsAnotherPath) {
  SheetByHand world;
  world.confirmsByField();
  world.choice.hasNoNewWindow = [&](const std::optional<Rect>&) {
    world.field->set("AXValue", std::string("/usr/share"));
    return true;
  };
  EXPECT_EQ(world.go(), "the go-to sheet did not go");
  EXPECT_EQ(world.returns, 0);
  EXPECT_EQ(world.confirms, 0);
}

TEST(GoThroughSheet, PressesNoReturnAndNoEscapeWhileThereIsANewWindow) {
  SheetByHand world;
  std::vector<std::optional<Rect>> asked;
  world.choice.hasNoNewWindow = [&](const std::optional<Rect>& sheetFrame) {
    asked.push_back(sheetFrame);
    return false;
  };
  EXPECT_EQ(world.go(), "the go-to sheet did not go");
  EXPECT_EQ(world.returns + world.escapes, 0);
  EXPECT_THAT(asked, ElementsAre(Rect{150, 120, 300, 100}, Rect{150, 120, 300, 100}));
}

TEST(GoThroughSheet, PressesNoReturnForASheetThatHasGone) {
  SheetByHand world;
  world.choice.hasNoNewWindow = [&](const std::optional<Rect>&) {
    world.closeSheet();
    return true;
  };
  world.go();
  EXPECT_EQ(world.returns, 0);
}

TEST(GoThroughSheet, TakesNoLongerThanTheHeaderSays) {
  const auto seconds = [](const std::function<void(SheetByHand&)>& change) {
    SheetByHand world;
    world.opened = [&] { change(world); };
    const double before = world.panel.now();
    EXPECT_NE(world.go(), "");
    return world.panel.now() - before;
  };
  // No field; one that does not take the path, twice; one whose Return and AXConfirm do nothing.
  // Each time Escape, which does nothing either, is waited for at last.
  EXPECT_NEAR(seconds([](SheetByHand& world) { world.sheet->removeChildren(); }), 2 + 1.5, 0.6);
  EXPECT_NEAR(seconds([](SheetByHand& world) {
                world.field->makeSettable("AXValue",
                                          [](const simulator::Value&) { return ax::success; });
              }),
              2 * 0.5 + 1.5, 0.6);
  EXPECT_NEAR(seconds([](SheetByHand&) {}), 3 + 1.5 + 1.5, 0.6);
}

// --- Closing it. ---

TEST(CloseGoToSheet, IsDoneWhenNoneIsOpen) {
  MovingPanel moving("chromium-english");
  EXPECT_TRUE(closeGoToSheet(moving.choice));
  EXPECT_THAT(moving.keys(), IsEmpty());
}

TEST(CloseGoToSheet, UsesTheSheetsOwnButton) {
  for (const bool old : {false, true}) {
    MovingPanel moving("goto-sheet-open", {{"/panels/0/goTo/generation", old ? "old" : "new"}});
    EXPECT_TRUE(closeGoToSheet(moving.choice)) << old;
    EXPECT_EQ(nameOf(goToSheetOf(moving.choice.panel.element)), "nothing") << old;
    EXPECT_THAT(moving.keys(), IsEmpty()) << old;
    EXPECT_EQ(moving.folderShown(), moving.folders.start) << old;
    EXPECT_EQ(moving.folders.world.panelOutcomes(), "open") << old;
  }
}

TEST(CloseGoToSheet, PressesEscapeToTheProcessThatTookTheChord) {
  MovingPanel moving("goto-sheet-open",
                     {{"/panels/0/faults/pressRefused", -25200}, {"/panels/0/keysReach", "both"}});
  moving.choice.sheetTakers = {browserPid};
  EXPECT_TRUE(closeGoToSheet(moving.choice));
  EXPECT_THAT(moving.keys(), ElementsAre("escape -> 812"));
  EXPECT_EQ(moving.folders.world.panelOutcomes(), "open");
}

TEST(CloseGoToSheet, PressesEscapeToEachProcessThatWasSentTheChordTheLastFirst) {
  MovingPanel moving("goto-sheet-open", {{"/panels/0/faults/pressRefused", -25200},
                                         {"/panels/0/keysReach", "service"}});
  moving.choice.sheetTakers = {servicePid, browserPid};
  EXPECT_TRUE(closeGoToSheet(moving.choice));
  EXPECT_THAT(moving.keys(), ElementsAre("escape -> 812", "escape -> 900"));
}

// The last one has ended since.
TEST(CloseGoToSheet, PressesEscapeToAnEarlierProcessWhereTheLastOneTakesNoKey) {
  SheetByHand world;
  world.openSheet();
  world.escapeTaken = [&] { world.closeSheet(); };
  world.choice.sheetTakers = {browserPid, servicePid};
  EXPECT_TRUE(closeGoToSheet(world.choice));
  EXPECT_EQ(world.escapes, 1);
  EXPECT_EQ(world.sheet, nullptr);
}

// Without an identifier it is known by its field.
TEST(CloseGoToSheet, WaitsForTheFieldOfASheetThatIsKnownByIt) {
  SheetByHand world;
  world.openSheet();
  world.sheet->clear("AXIdentifier");
  world.sheet->removeChildren();
  world.addButton("Cancel", [&] { world.closeSheet(); });
  world.panel.desktop.schedule(1.5, [&] { world.sheet->addChild("AXTextField"); });
  EXPECT_TRUE(closeGoToSheet(world.choice));
  EXPECT_EQ(world.sheet, nullptr);
}

TEST(CloseGoToSheet, SaysThatItIsStillOpen) {
  MovingPanel moving("goto-sheet-open", {{"/panels/0/faults/pressRefused", -25200},
                                         {"/panels/0/keysReach", "nobody"}});
  moving.choice.sheetTakers = {servicePid};
  EXPECT_FALSE(closeGoToSheet(moving.choice));
}

TEST(CloseGoToSheet, PressesNoKeyThatMayReachAnotherPanel) {
  MovingPanel moving("goto-sheet-open", {{"/panels/0/faults/pressRefused", -25200}});
  moving.choice.sheetTakers = {servicePid};
  moving.choice.isAlone = [] { return false; };
  EXPECT_FALSE(closeGoToSheet(moving.choice));
  EXPECT_THAT(moving.keys(), IsEmpty());
}

TEST(CloseGoToSheet, PressesTheButtonThatClosesItAndNoOther) {
  for (const char* cancels : {"Cancel", "取消", "Annuler"}) {
    SheetByHand world;
    world.panel.cancel.set("AXTitle", std::string("Annuler"));
    world.openSheet();
    int others = 0;
    world.sheet->addChild("AXStaticText").set("AXTitle", std::string("Cancel"));
    world.addButton("Aller", [&] { ++others; });
    world.addButton("", [&] { ++others; });
    world.addButton(cancels, [&] { world.closeSheet(); });
    EXPECT_TRUE(closeGoToSheet(world.choice)) << cancels;
    EXPECT_EQ(others, 0) << cancels;
    EXPECT_EQ(world.escapes, 0) << cancels;
  }
}

TEST(CloseGoToSheet, PressesNoButtonWithoutATitleAsThePanelsOwnHasNone) {
  SheetByHand world;
  world.panel.cancel.set("AXTitle", std::string());
  world.openSheet();
  int presses = 0;
  world.addButton("", [&] { ++presses; });
  EXPECT_FALSE(closeGoToSheet(world.choice));
  EXPECT_EQ(presses, 0);
}

TEST(CloseGoToSheet, IsNotDoneWhileAnotherSheetIsOpen) {
  SheetByHand world;
  world.openSheet();
  world.addButton("Cancel", [&] {
    world.closeSheet();
    world.openSheet();
  });
  EXPECT_FALSE(closeGoToSheet(world.choice));
}

// While it closes, its elements leave it before it goes itself.
TEST(CloseGoToSheet, IsNotDoneWhileTheSheetIsStillThere) {
  SheetByHand world;
  world.openSheet();
  world.addButton("Cancel", [&] { world.sheet->clear("AXIdentifier"); });
  world.sheet->removeChild(*world.field);
  EXPECT_FALSE(closeGoToSheet(world.choice));
}

TEST(CloseGoToSheet, ThrowsWhenThePanelIsGone) {
  MovingPanel moving("goto-sheet-open");
  moving.folders.world.desktop().terminateProcess(browserPid, true);
  moving.folders.world.desktop().terminateProcess(servicePid, true);
  EXPECT_THROW(closeGoToSheet(moving.choice), PanelGone);
}

}  // namespace
}  // namespace tessarine::test::go_to_sheet
