// Taking a panel to its target without a key.
#include "navigation/accessible_walk.h"

#include <gmock/gmock.h>

#include "dialog/hand_built_panel.h"
#include "navigation/moving_panel.h"
#include "support/transcript.h"

namespace tessarine::test::accessible_walk {
namespace {

using Node = simulator::Element;
using ::testing::Contains;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;
namespace ax = simulator::ax;
using Verb = simulator::AccessibilityRequest::Verb;

constexpr const char* hidden = ": what is hidden is reached through the go-to sheet alone";

std::string proofAfter(MovingPanel& moving) {
  const auto proof = proofWithin(moving.choice, 1);
  if (!proof) return "none";
  return *proof == Proof::folderShown ? "folder shown" : "entry selected";
}

// What a walk never does: keys, clicks, a choice.
void expectUndisturbed(const MovingPanel& moving) {
  EXPECT_THAT(moving.keys(), IsEmpty());
  EXPECT_EQ(disturbance(moving.folders.world.record()), noDisturbance);
  EXPECT_EQ(moving.folders.world.panelOutcomes(), "open");
}

// --- Folders. ---

TEST(WalkToTarget, LeadsToAFolderInTheFolderShown) {
  for (const char* view : {"list", "icons"}) {
    MovingPanel moving("chromium-english", {{"/panels/0/view", view}});
    moving.choice.isFolderPanel = true;
    EXPECT_EQ(walkToTarget(moving.choice), "") << view;
    EXPECT_NE(proofAfter(moving), "none") << view;
    expectUndisturbed(moving);
  }
}

TEST(WalkToTarget, LeadsDownThroughFolders) {
  for (const char* view : {"list", "icons"}) {
    MovingPanel moving("chromium-chinese", {{"/panels/0/view", view}});
    moving.choice.isFolderPanel = true;
    moving.folders.files.makeFolder("start/target/inner/a/b/c");
    moving.aimAt(moving.folders.target + "/inner/a/b");
    EXPECT_EQ(walkToTarget(moving.choice), "") << view;
    EXPECT_NE(proofAfter(moving), "none") << view;
    expectUndisturbed(moving);
  }
}

TEST(WalkToTarget, LeadsUpThroughTheLocationPopUp) {
  for (const char* view : {"list", "columns", "icons"}) {
    MovingPanel moving("chromium-english", {{"/panels/0/view", view}});
    moving.choice.isFolderPanel = true;
    moving.aimAt(moving.folders.files.path());
    EXPECT_EQ(walkToTarget(moving.choice), "") << view;
    EXPECT_EQ(moving.folderShown(), moving.folders.files.path()) << view;
    EXPECT_EQ(proofAfter(moving), "folder shown") << view;
    expectUndisturbed(moving);
  }
}

TEST(WalkToTarget, LeadsUpAndDownAgain) {
  MovingPanel moving("chromium-english");
  moving.choice.isFolderPanel = true;
  const std::string aside = moving.folders.files.makeFolder("aside/deep");
  moving.aimAt(aside);
  EXPECT_EQ(walkToTarget(moving.choice), "");
  EXPECT_NE(proofAfter(moving), "none");
  expectUndisturbed(moving);
}

// The folder shown is called like one on the way, and is another one.
TEST(WalkToTarget, TakesNoItemOfTheMenuThatIsCalledSoByChance) {
  TemporaryFolder files;
  files.makeFolder("aside/twin/x");
  const std::string wanted = files.makeFolder("twin/wanted");
  MovingPanel moving("chromium-english", {{"/panels/0/folder", files.path() + "/aside/twin"},
                                          {"/places", nlohmann::ordered_json::array()}});
  moving.choice.isFolderPanel = true;
  moving.aimAt(wanted);
  EXPECT_EQ(walkToTarget(moving.choice), "");
  EXPECT_NE(proofAfter(moving), "none");
}

TEST(WalkToTarget, BeginsAtAPlaceOfTheSidebar) {
  TemporaryFolder files;
  const std::string place = files.makeFolder("place");
  const std::string wanted = files.makeFolder("place/wanted");
  MovingPanel moving("chromium-english",
                     {{"/places", {{{"label", "Place"}, {"path", place}, {"urlKnown", true}}}},
                      {"/panels/0/faults/showMenuRefused", -25204}});
  moving.choice.isFolderPanel = true;
  moving.aimAt(wanted);
  EXPECT_EQ(walkToTarget(moving.choice), "");
  EXPECT_NE(proofAfter(moving), "none");
  expectUndisturbed(moving);
}

TEST(WalkToTarget, WorksByTheItemsOfTheMenuHoweverTheyAreChosen) {
  for (const char* without : {"menuItemsWithoutPress", "menuItemsWithoutPick"}) {
    MovingPanel moving("chromium-english", {{std::string("/panels/0/faults/") + without, true}});
    moving.choice.isFolderPanel = true;
    moving.aimAt(moving.folders.files.path());
    EXPECT_EQ(walkToTarget(moving.choice), "") << without;
    EXPECT_EQ(moving.folderShown(), moving.folders.files.path()) << without;
  }
}

TEST(WalkToTarget, LeadsToAnEmptyFolder) {
  for (const char* view : {"list", "icons"}) {
    MovingPanel moving("chromium-english", {{"/panels/0/view", view}});
    moving.choice.isFolderPanel = true;
    moving.aimAt(moving.folders.files.makeFolder("start/empty"));
    const std::string reason = walkToTarget(moving.choice);
    // Icons cannot be selected, and an empty folder names no location once it is shown.
    if (std::string(view) == "list") {
      EXPECT_EQ(reason, "");
      EXPECT_EQ(proofAfter(moving), "entry selected");
    } else {
      EXPECT_NE(reason, "");
      EXPECT_EQ(proofAfter(moving), "none");
    }
    expectUndisturbed(moving);
  }
}

// --- Why it does not get there. ---

TEST(WalkToTarget, SaysThatSomethingIsHidden) {
  MovingPanel moving("chromium-english");
  moving.choice.isFolderPanel = true;
  const std::string wanted = moving.folders.files.makeFolder("start/.hidden/inner");
  moving.aimAt(wanted);
  EXPECT_EQ(walkToTarget(moving.choice),
            moving.folders.start + "/.hidden is not listed in " + moving.folders.start + hidden);
  expectUndisturbed(moving);
}

TEST(WalkToTarget, SaysThatAFolderDoesNotOpen) {
  MovingPanel moving("chromium-english", {{"/panels/0/view", "columns"},
                                          {"/panels/0/faults/showMenuRefused", -25204},
                                          {"/places", nlohmann::ordered_json::array()}});
  moving.choice.isFolderPanel = true;
  const std::string wanted = moving.folders.target + "/inner";
  moving.aimAt(wanted);
  EXPECT_EQ(walkToTarget(moving.choice), moving.folders.target + " does not open");
  expectUndisturbed(moving);
}

TEST(WalkToTarget, SaysThatAFileCannotBeSelected) {
  for (const char* view : {"list", "icons", "columns"}) {
    MovingPanel moving("file-panel-english",
                       {{"/panels/0/view", view}, {"/panels/0/faults/ignoresSelection", true}});
    const std::string file = moving.folders.files.makeFile("start/report.txt", "text");
    moving.aimAt(file);
    EXPECT_EQ(walkToTarget(moving.choice), file + " cannot be selected") << view;
    expectUndisturbed(moving);
  }
}

TEST(WalkToTarget, SaysThatNothingLeadsThere) {
  TemporaryFolder elsewhere;
  const std::string wanted = elsewhere.makeFolder("wanted");
  MovingPanel moving("chromium-english", {{"/panels/0/faults/showMenuRefused", -25204},
                                          {"/places", nlohmann::ordered_json::array()}});
  moving.choice.isFolderPanel = true;
  moving.aimAt(wanted);
  EXPECT_EQ(walkToTarget(moving.choice), "nothing in the panel leads to " + wanted);
  expectUndisturbed(moving);
}

// Its rows stay those of the folder before, among them one of the target's name.
TEST(WalkToTarget, DoesNotTakeAnEntryOfThatNameInAnotherFolder) {
  MovingPanel moving("chromium-english", {{"/panels/0/faults/staleListing", true}});
  moving.choice.isFolderPanel = true;
  const std::string wanted = moving.folders.files.makeFolder("start/target/target");
  moving.aimAt(wanted);
  EXPECT_NE(walkToTarget(moving.choice), "");
  EXPECT_EQ(proofAfter(moving), "none");
}

// --- Files. ---

TEST(WalkToTarget, SelectsAFileAndOpensItNever) {
  MovingPanel moving("file-panel-english");
  const std::string file = moving.folders.files.makeFile("start/target/report.txt", "text");
  moving.aimAt(file);
  EXPECT_EQ(walkToTarget(moving.choice), "");
  EXPECT_EQ(proofAfter(moving), "entry selected");
  expectUndisturbed(moving);
}

TEST(WalkToTarget, NeverOpensAFileThatCannotBeSelected) {
  for (const char* view : {"list", "icons"}) {
    for (const bool folderPanel : {true, false}) {
      MovingPanel moving("file-panel-english",
                         {{"/panels/0/view", view}, {"/panels/0/faults/ignoresSelection", true}});
      moving.choice.isFolderPanel = folderPanel;
      moving.aimAt(moving.folders.files.makeFile("start/report.txt", "text"));
      EXPECT_NE(walkToTarget(moving.choice), "");
      moving.folders.world.desktop().advanceTo(moving.folders.world.desktop().now() + 3);
      EXPECT_EQ(moving.folders.world.panelOutcomes(), "open") << view;
    }
  }
}

// --- Panels built by hand. ---

// A list whose rows can be selected, over real folders: "wanted" with "inner".
struct ByHand {
  ByHand() {
    panel.list->makeSettable("AXSelectedRows", [this](const simulator::Value& value) {
      panel.list->set("AXSelectedRows", value);
      return ax::success;
    });
  }
  PanelChoice choice() {
    return choiceOf({panel.rootHandle(), {panel.appHandle(), browserPid, "x"}, true}, wanted);
  }
  // What counts the actions that an entry is asked for.
  void count(Node& entry) {
    for (Node* at = &entry; at != nullptr;
         at = at->children().empty() ? nullptr : at->children().front().get()) {
      at->addAction("AXOpen", [this] { return ++opened, ax::success; });
      at->addAction("AXPress", [this] { return ++opened, ax::success; });
    }
  }

  TemporaryFolder files;
  std::string folder = files.makeFolder("folder");
  std::string wanted = files.makeFolder("folder/wanted");
  std::string inner = files.makeFolder("folder/wanted/inner");
  HandBuiltPanel panel;
  int opened = 0;
};

TEST(TakeTargetEntry, SelectsTheEntryOfThatLocation) {
  ByHand world;
  world.panel.addEntry(world.files.makeFolder("folder/another") + "/");
  const Node& entry = world.panel.addEntry(world.wanted + "/");
  PanelChoice choice = world.choice();
  EXPECT_EQ(takeTargetEntry(choice), "");
  EXPECT_EQ(*world.panel.list->get("AXSelectedRows"),
            simulator::Value(simulator::List{entry.id()}));
}

// Names are translated, or written otherwise than the target's.
TEST(TakeTargetEntry, KnowsItUnderAnyName) {
  for (const char* shown : {"下载", "Wanted", "wanted\xCC\x81", ""}) {
    ByHand world;
    Node& entry = world.panel.addEntry(world.wanted + "/");
    entry.children().front()->children().back()->set("AXValue", std::string(shown));
    PanelChoice choice = world.choice();
    EXPECT_EQ(takeTargetEntry(choice), "") << shown;
  }
}

TEST(TakeTargetEntry, TakesNoEntryOfThatNameThatLiesElsewhere) {
  ByHand world;
  Node& impostor = world.panel.addEntry(world.files.makeFolder("elsewhere/wanted") + "/");
  world.count(impostor);
  PanelChoice choice = world.choice();
  choice.isFolderPanel = true;
  EXPECT_THAT(takeTargetEntry(choice), HasSubstr("is not listed in"));
  EXPECT_EQ(*world.panel.list->get("AXSelectedRows"), simulator::Value(simulator::List{}));
  EXPECT_EQ(world.opened, 0);
}

TEST(TakeTargetEntry, TakesNoEntryWithoutALocation) {
  ByHand world;
  Node& nameless = world.panel.addEntry("");
  nameless.children().front()->children().back()->set("AXValue", std::string("wanted"));
  world.count(nameless);
  PanelChoice choice = world.choice();
  choice.isFolderPanel = true;
  EXPECT_NE(takeTargetEntry(choice), "");
  EXPECT_EQ(*world.panel.list->get("AXSelectedRows"), simulator::Value(simulator::List{}));
  EXPECT_EQ(world.opened, 0);
}

TEST(TakeTargetEntry, FindsItAmongHundreds) {
  ByHand world;
  for (int i = 0; i < 300; ++i) world.panel.addEntry(world.folder + "/" + std::to_string(i));
  world.panel.addEntry(world.wanted + "/");
  PanelChoice choice = world.choice();
  EXPECT_EQ(takeTargetEntry(choice), "");
}

TEST(TakeTargetEntry, SelectsByTheEntryWhereTheListIgnoresIt) {
  ByHand world;
  world.panel.list->makeSettable("AXSelectedRows",
                                 [](const simulator::Value&) { return ax::success; });
  Node& entry = world.panel.addEntry(world.wanted + "/");
  entry.makeSettable("AXSelected", [&](const simulator::Value& value) {
    entry.set("AXSelected", value);
    world.panel.list->set("AXSelectedRows", simulator::List{entry.id()});
    return ax::success;
  });
  PanelChoice choice = world.choice();
  EXPECT_EQ(takeTargetEntry(choice), "");
}

// What an action or a write answers says nothing.
TEST(TakeTargetEntry, BelievesWhatItSeesAndNotWhatItIsAnswered) {
  ByHand world;
  world.panel.list->makeSettable("AXSelectedRows", [&](const simulator::Value& value) {
    world.panel.list->set("AXSelectedRows", value);
    return ax::failure;
  });
  world.panel.addEntry(world.wanted + "/");
  PanelChoice choice = world.choice();
  EXPECT_EQ(takeTargetEntry(choice), "");
}

TEST(TakeTargetEntry, OpensAFolderInAFolderPanelAlone) {
  for (const bool folderPanel : {true, false}) {
    ByHand world;
    world.panel.list->makeSettable("AXSelectedRows",
                                   [](const simulator::Value&) { return ax::success; });
    Node& entry = world.panel.addEntry(world.wanted + "/");
    world.count(entry);
    PanelChoice choice = world.choice();
    choice.isFolderPanel = folderPanel;
    EXPECT_EQ(takeTargetEntry(choice), world.wanted + " cannot be selected");
    EXPECT_EQ(world.opened > 0, folderPanel);
  }
}

// On the way there, too.
TEST(WalkToTarget, OpensNothingWhoseLocationIsNotTheWays) {
  ByHand world;
  Node& impostor = world.panel.addEntry(world.files.makeFolder("folder/sub/wanted") + "/");
  Node& nameless = world.panel.addEntry("");
  nameless.children().front()->children().back()->set("AXValue", std::string("wanted"));
  Node& sibling = world.panel.addEntry(world.files.makeFile("folder/file", "x"));
  for (Node* each : {&impostor, &nameless, &sibling}) world.count(*each);
  PanelChoice choice = choiceOf(
      {world.panel.rootHandle(), {world.panel.appHandle(), browserPid, "x"}, true}, world.inner);
  choice.isFolderPanel = true;
  EXPECT_NE(walkToTarget(choice), "");
  EXPECT_EQ(world.opened, 0);
}

TEST(WalkToTarget, ThrowsWhenThePanelIsGone) {
  ByHand world;
  world.panel.addEntry(world.wanted + "/");
  PanelChoice choice = world.choice();
  world.panel.window.removeChild(world.panel.root);
  EXPECT_THROW(walkToTarget(choice), PanelGone);
}

TEST(WalkToTarget, EndsAtTheDeadline) {
  MovingPanel moving("chromium-english", {{"/panels/0/view", "columns"}});
  moving.choice.deadline = currentTime() + 0.5;
  const double before = currentTime();
  EXPECT_THROW(walkToTarget(moving.choice), TimeIsUp);
  EXPECT_LE(currentTime() - before, 1.0);
}

}  // namespace
}  // namespace tessarine::test::accessible_walk
