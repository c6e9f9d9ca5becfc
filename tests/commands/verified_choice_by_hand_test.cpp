// --verify on a panel built by hand, whose sheet, list and buttons do what no scenario says.
#include <gmock/gmock.h>

#include <nlohmann/json.hpp>

#include "commands/verified_choice.h"
#include "core/time_budget.h"
#include "navigation/panel_with_sheet.h"
#include "support/temporary_folder.h"

namespace tessarine::test::verified_choice_by_hand {
namespace {

using Node = simulator::Element;
using ::testing::HasSubstr;
using ::testing::StartsWith;
namespace ax = simulator::ax;

// A panel of the browser that shows nothing of use, of an unknown kind as its button does not say
// whether it is enabled. A press of it closes the panel.
struct PanelByHand : PanelWithSheet {
  PanelByHand() {
    show({elsewhere + "/x"});
    panel.confirm.clear("AXEnabled");
    panel.confirm.addAction("AXPress", [this] { return pressed(), answer; });
    listIsSelectable();
  }
  void listIsSelectable() {
    panel.list->makeSettable("AXSelectedRows", [this](const simulator::Value& value) {
      panel.list->set("AXSelectedRows", value);
      return selected(), ax::success;
    });
  }
  void show(const std::vector<std::string>& locations) {
    panel.removeEntries();
    for (const std::string& location : locations) panel.addEntry(location);
  }
  void showTarget() { show({inner + "/"}); }
  void enable(bool enabled) { panel.confirm.set("AXEnabled", enabled); }
  void closesAfter(double seconds) {
    panel.desktop.schedule(seconds, [this] { panel.window.removeChild(panel.root); });
  }
  // The sheet goes by its Return, after which this happens.
  void leadsTo(std::function<void()> effect) {
    returnTaken = [this, effect = std::move(effect)] { closeSheet(), effect(); };
  }
  // Nothing happens for this long.
  void pause(double seconds) { panel.desktop.advanceTo(panel.now() + seconds); }
  // Calls `act` once, before the first request of which `isTime` holds.
  void before(std::function<bool()> isTime, std::function<void()> act) {
    panel.desktop.watch([isTime = std::move(isTime), act = std::move(act), done = false]() mutable {
      if (done || !isTime()) return;
      done = true;
      act();
    });
  }
  long reads(const std::string& attribute) const {
    return requestsFor(panel.desktop.record(), attribute);
  }
  // Why nothing was chosen, or how it was verified.
  std::string choose() {
    start = panel.now();
    try {
      return choosePathVerified(browserPid, target, 10)["verified"];
    } catch (const ToolError& error) {
      return error.message();
    }
  }
  double seconds() const { return panel.now() - start; }

  TemporaryFolder files;
  std::string folder = files.makeFolder("folder");
  std::string wanted = files.makeFolder("folder/wanted");
  std::string inner = files.makeFolder("folder/wanted/inner");
  std::string elsewhere = files.makeFolder("elsewhere");
  std::string target = wanted;
  std::function<void()> pressed = [this] { closesAfter(0.05); };
  std::function<void()> selected = [] {};
  int answer = ax::success;
  double start = 0;
};

// --- When the time is up. ---

constexpr double longPause = 60;

TEST(VerifiedTime, ThatIsUpLeavesAPanelThatShowsTheTargetUnconfirmed) {
  PanelByHand world;
  world.showTarget();
  world.before([&] { return world.reads("AXEnabled") >= 2; }, [&] { world.pause(longPause); });
  EXPECT_EQ(world.choose(), "not verified: the time is up, and the panel, which shows " +
                                world.wanted + ", is not confirmed");
}

TEST(VerifiedTime, ThatIsUpAfterAReturnSaysThatItMayStillComeToSomething) {
  PanelByHand world;
  world.opened = [&] { world.addButton("Cancel", [&] { world.closeSheet(); }); };
  world.returnTaken = [&] { world.pause(longPause); };
  EXPECT_EQ(world.choose(), "not verified: the time is up, and the panel shows " + world.elsewhere +
                                ", not " + world.wanted + ": what it will choose is unknown");
  EXPECT_EQ(world.sheet, nullptr) << "which is closed after the time";
}

// Its button does nothing, so that Escape is what closes it, 1.5 s later.
TEST(VerifiedTime, ForClosingTheSheetIsTwoSeconds) {
  for (const bool escapes : {true, false}) {
    PanelByHand world;
    world.opened = [&] { world.addButton("Cancel", [] {}); };
    world.returnTaken = [&] { world.pause(longPause); };
    if (escapes) world.escapeTaken = [&] { world.closeSheet(); };
    world.panel.desktop.prices().request = 0.002;
    EXPECT_THAT(world.choose(), StartsWith("not verified: the time is up"));
    EXPECT_EQ(world.sheet == nullptr, escapes);
    EXPECT_LE(world.seconds(), longPause + 2 + 0.7);
  }
}

// The press of its button alone takes longer.
TEST(VerifiedTime, ThatIsUpForClosingTheSheetAsWellIsToldAsBefore) {
  PanelByHand world;
  world.opened = [&] { world.addButton("Cancel", [&] { world.pause(3); }); };
  world.returnTaken = [&] { world.pause(longPause); };
  EXPECT_THAT(world.choose(), StartsWith("not verified: the time is up"));
  EXPECT_EQ(world.escapes, 0);
}

// --- Sheets that open when nobody waits for them. ---

TEST(VerifiedSheet, ThatOpensDuringTheWalkIsClosedWhenItFails) {
  PanelByHand world;
  world.chordTaken = [&] {
    world.panel.desktop.schedule(2.5, [&] {
      world.openSheet();
      world.addButton("Cancel", [&] { world.closeSheet(); });
    });
  };
  EXPECT_THAT(world.choose(), HasSubstr("(no go-to sheet opened; "));
  EXPECT_GT(world.seconds(), 2.5);
  EXPECT_EQ(world.sheet, nullptr);
}

TEST(VerifiedSheet, ThatAPersonOpenedStaysOpenWhenTheTargetIsRefused) {
  PanelByHand world;
  world.target = world.files.makeFile("folder/report", "text");
  add(world.panel.split, "NewFolderButton", "AXButton");
  world.openSheet();
  world.addButton("Cancel", [&] { world.closeSheet(); });
  EXPECT_THAT(world.choose(), HasSubstr("a file for a folder panel"));
  EXPECT_NE(world.sheet, nullptr);
}

TEST(VerifiedSheet, ThatIsOpenWhereTheTargetIsShownIsClosedBeforeThePress) {
  PanelByHand world;
  world.showTarget();
  world.openSheet();
  world.addButton("Cancel", [&] { world.closeSheet(); });
  bool open = false;
  world.pressed = [&] { open = world.sheet != nullptr, world.closesAfter(0.05); };
  EXPECT_EQ(world.choose(), "folder shown");
  EXPECT_FALSE(open);
}

// It disables the button.
TEST(VerifiedSheet, ThatOpensAtTheLastLookIsClosed) {
  PanelByHand world;
  world.showTarget();
  world.before([&] { return world.reads("AXEnabled") == 2; },
               [&] {
                 world.enable(false);
                 world.openSheet();
                 world.addButton("Cancel", [&] { world.closeSheet(), world.enable(true); });
               });
  EXPECT_EQ(world.choose(), "folder shown");
}

// --- Where the sheet led. ---

TEST(VerifiedLanding, IsWaitedForBeforeAnythingElseIsTried) {
  PanelByHand world;
  int others = 0;
  world.panel.popup.addAction("AXPress", [&] { return ++others, ax::success; });
  world.leadsTo([&] { world.panel.desktop.schedule(0.9, [&] { world.showTarget(); }); });
  EXPECT_EQ(world.choose(), "folder shown");
  EXPECT_EQ(others, 0);
}

// The sheet leads to an empty folder, and then, a second later, to the one around it.
TEST(VerifiedLanding, InAnEmptyFolderIsFollowedByThatInTheFolderAroundIt) {
  PanelByHand world;
  world.leadsTo([&] {
    if (world.returns == 1) return world.show({});
    world.panel.desktop.schedule(1.1, [&] { world.show({world.wanted + "/"}); });
  });
  EXPECT_EQ(world.choose(), "entry selected");
  EXPECT_EQ(world.chords, 2);
}

TEST(VerifiedLanding, ThatIsNotTheTargetsIsToldThoughItsEntryIsListedAfterwards) {
  PanelByHand world;
  world.panel.list->makeSettable("AXSelectedRows",
                                 [](const simulator::Value&) { return ax::success; });
  world.leadsTo([&] {
    world.show(world.returns == 1 ? std::vector<std::string>{}
                                  : std::vector<std::string>{world.wanted + "/"});
  });
  EXPECT_THAT(world.choose(), HasSubstr(" (the go-to sheet led elsewhere; "));
}

using Change = std::function<void(PanelByHand&)>;

// How often the sheet is opened when this happens as it goes.
int sheetsOpened(
    const Change& landing, const Change& aim = [](PanelByHand&) {}) {
  PanelByHand world;
  aim(world);
  world.leadsTo([&] { landing(world); });
  EXPECT_THAT(world.choose(), HasSubstr("the go-to sheet led elsewhere"));
  return world.chords;
}

TEST(VerifiedLanding, IsFollowedByNoOtherUnlessTheTargetMayBeAnEmptyFolder) {
  const Change empties = [](PanelByHand& world) { world.show({}); };
  const Change selects = [](PanelByHand& world) {
    world.show({""});
    world.panel.select({world.panel.list->children().front().get()});
  };
  const Change aimsAtFile = [](PanelByHand& world) {
    world.target = world.files.makeFile("folder/report", "text");
  };
  EXPECT_EQ(sheetsOpened(empties), 2);
  EXPECT_EQ(sheetsOpened([](PanelByHand&) {}), 1) << "entries are listed";
  EXPECT_EQ(sheetsOpened(selects), 1) << "an entry is selected";
  EXPECT_EQ(sheetsOpened(empties, aimsAtFile), 1) << "a file";
  EXPECT_EQ(sheetsOpened(empties, [](PanelByHand& world) { world.target = "/"; }), 1)
      << "nothing is around it";
}

// --- Kind. ---

TEST(VerifiedKind, IsNotToldByAButtonThatDoesNotSayWhetherItIsEnabled) {
  PanelByHand world;
  world.showTarget();
  EXPECT_EQ(world.choose(), "folder shown");
}

TEST(VerifiedKind, IsNotToldByADisabledButtonWhileAnEntryIsSelected) {
  PanelByHand world;
  world.show({world.folder + "/another", world.wanted + "/"});
  world.panel.select({world.panel.list->children().front().get()});
  world.enable(false);
  world.selected = [&] { world.enable(true); };
  EXPECT_EQ(world.choose(), "entry selected");
}

TEST(VerifiedKind, IsNotToldByADisabledButtonWhileNobodySaysWhatIsSelected) {
  PanelByHand world;
  world.panel.list->clear("AXSelectedRows");
  world.panel.list->children().front()->clear("AXSelected");
  world.enable(false);
  EXPECT_THAT(world.choose(), HasSubstr(" and does not say what is selected, not "));
}

// Then the button tells nothing any more.
TEST(VerifiedKind, IsUnknownOnceSomethingIsSelectedWhileTheButtonIsAwaited) {
  PanelByHand world;
  world.show({world.folder + "/another", world.wanted + "/"});
  world.enable(false);
  world.selected = [&] { world.enable(true); };
  world.panel.desktop.schedule(
      0.5, [&] { world.panel.select({world.panel.list->children().front().get()}); });
  EXPECT_EQ(world.choose(), "entry selected");
}

TEST(VerifiedKind, ThatIsUnknownLetsNoTargetBeOpened) {
  PanelByHand world;
  int opened = 0;
  world.show({world.wanted + "/"});
  world.panel.list->makeSettable("AXSelectedRows",
                                 [](const simulator::Value&) { return ax::success; });
  world.panel.list->children().front()->addAction("AXOpen", [&] { return ++opened, ax::success; });
  EXPECT_THAT(world.choose(), HasSubstr(world.wanted + " cannot be selected"));
  EXPECT_EQ(opened, 0);
}

TEST(VerifiedKind, OfAFilePanelIsNoReasonToWaitWithAFile) {
  PanelByHand world;
  world.target = world.files.makeFile("folder/report", "text");
  world.show({world.target});
  world.enable(false);
  world.selected = [&] { world.enable(true); };
  EXPECT_EQ(world.choose(), "entry selected");
}

// --- The last look and the press. ---

TEST(VerifiedPress, NeedsNoListThatNamesItsSelection) {
  PanelByHand world;
  world.showTarget();
  world.panel.list->clear("AXSelectedRows");
  EXPECT_EQ(world.choose(), "folder shown");
}

TEST(VerifiedPress, WaitsForTheButtonAfterAWalkThatLedThere) {
  PanelByHand world;
  world.chordTaken = [] {};
  world.show({world.wanted + "/"});
  world.enable(false);
  add(world.panel.split, "NewFolderButton", "AXButton");
  world.selected = [&] { world.panel.desktop.schedule(1, [&] { world.enable(true); }); };
  EXPECT_EQ(world.choose(), "entry selected");
}

TEST(VerifiedPress, IsNotWaitedForAfterAWalkThatDidNot) {
  PanelByHand world;
  world.chordTaken = [] {};
  world.enable(true);
  EXPECT_THAT(world.choose(), HasSubstr("(no go-to sheet opened; "));
  EXPECT_LE(world.reads("AXEnabled"), 2);
}

TEST(VerifiedPress, OfADisabledButtonAfterAReturnMayStillComeToSomething) {
  PanelByHand world;
  world.returnTaken = [&] { world.showTarget(), world.enable(false); };
  world.opened = [&] { world.addButton("Cancel", [&] { world.closeSheet(); }); };
  EXPECT_EQ(world.choose(), "not verified: the panel shows " + world.wanted +
                                ", but its confirm button is disabled: what it will choose is "
                                "unknown");
}

// --- The end. ---

// Little more than a second before the time is up; the panel takes two.
TEST(VerifiedClosing, OfWhatWasPressedIsAwaitedAtTheEndOfTheTime) {
  PanelByHand world;
  world.showTarget();
  world.pressed = [&] { world.closesAfter(2); };
  world.before(
      [&] { return world.reads("AXEnabled") >= 2; },
      [&] { world.pause(world.start + watchdogSeconds(10) - 4 - 1.3 - world.panel.now()); });
  EXPECT_EQ(world.choose(), "folder shown");
}

TEST(VerifiedClosing, WhatCannotBeAwaitedIsNotPressed) {
  PanelByHand world;
  world.showTarget();
  int pressed = 0;
  world.pressed = [&] { ++pressed; };
  world.before(
      [&] { return world.reads("AXEnabled") >= 2; },
      [&] { world.pause(world.start + watchdogSeconds(10) - 4 - 0.5 - world.panel.now()); });
  EXPECT_EQ(world.choose(), "not verified: the time is up, and the panel, which shows " +
                                world.wanted + ", is not confirmed");
  EXPECT_EQ(pressed, 0);
}

// What is asked of it meanwhile goes unanswered for 1.5 s each time.
TEST(VerifiedClosing, OfAPanelWhoseProcessIsBusyWithItIsAwaited) {
  constexpr double busySeconds = 12.5;
  PanelByHand world;
  world.showTarget();
  world.answer = ax::cannotComplete;
  auto& silent = world.panel.desktop.faults().silent_processes;
  world.pressed = [&] {
    silent.insert(browserPid);
    world.panel.desktop.schedule(busySeconds, [&] { silent.clear(); });
    world.closesAfter(busySeconds);
  };
  EXPECT_EQ(world.choose(), "folder shown");
}

}  // namespace
}  // namespace tessarine::test::verified_choice_by_hand
