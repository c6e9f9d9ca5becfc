// Taking a panel to its target without a key.
#include "navigation/accessible_walk.h"

#include <gmock/gmock.h>

#include <filesystem>

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
                                          {"/listsOnly", {files.path()}},
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
                      {"/listsOnly", {files.path()}},
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
    return choiceOf({panel.rootHandle(), {panel.appHandle(), browserPid, "x"}}, wanted);
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
  PanelChoice choice =
      choiceOf({world.panel.rootHandle(), {world.panel.appHandle(), browserPid, "x"}}, world.inner);
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

// --- Which entry, and what may be opened. ---

TEST(TakeTargetEntry, PrefersTheEntryOfThatVeryName) {
  ByHand world;
  for (const char* name : {"first", "second"}) {
    std::filesystem::create_directory_symlink(world.wanted, world.folder + "/" + name);
  }
  const Node& first = world.panel.addEntry(world.folder + "/first");
  world.panel.addEntry(world.folder + "/second");
  PanelChoice choice = world.choice();
  EXPECT_EQ(takeTargetEntry(choice), "");
  EXPECT_EQ(*world.panel.list->get("AXSelectedRows"),
            simulator::Value(simulator::List{first.id()}));
  const Node& entry = world.panel.addEntry(world.wanted + "/");
  EXPECT_EQ(takeTargetEntry(choice), "");
  EXPECT_EQ(*world.panel.list->get("AXSelectedRows"),
            simulator::Value(simulator::List{entry.id()}));
}

TEST(TakeTargetEntry, EndsAtTheDeadlineAmongHundreds) {
  ByHand world;
  for (int i = 0; i < 300; ++i) world.panel.addEntry(world.folder + "/" + std::to_string(i));
  PanelChoice choice = world.choice();
  world.panel.desktop.prices().request = 0.01;
  choice.deadline = currentTime() + 1;
  const double before = currentTime();
  EXPECT_NE(takeTargetEntry(choice), "");
  EXPECT_LE(currentTime() - before, 1.5);
}

TEST(TakeTargetEntry, WaitsASecondForTheEntry) {
  ByHand world;
  world.panel.addEntry(world.files.makeFolder("folder/another") + "/");
  PanelChoice choice = world.choice();
  const double before = currentTime();
  EXPECT_THAT(takeTargetEntry(choice), HasSubstr("is not listed in"));
  EXPECT_NEAR(currentTime() - before, 1, 0.3);
}

TEST(WalkToTarget, KnowsTheFolderShownByAnotherPath) {
  ByHand world;
  const std::string link = world.files.path() + "/link";
  std::filesystem::create_directory_symlink(world.folder, link);
  world.panel.addEntry(link + "/wanted/");
  PanelChoice choice = world.choice();
  EXPECT_EQ(walkToTarget(choice), "");
}

TEST(WalkToTarget, BeginsAtTheRootWhereThatIsShown) {
  ByHand world;
  world.panel.addEntry("/var/");
  const Node& entry = world.panel.addEntry("/usr/");
  PanelChoice choice = world.choice();
  choice.target = {"/usr", true};
  EXPECT_EQ(walkToTarget(choice), "");
  EXPECT_EQ(*world.panel.list->get("AXSelectedRows"),
            simulator::Value(simulator::List{entry.id()}));
}

// What opens a folder between the one shown and the target, in a panel that may choose files.
int openings(const std::string& name, bool isFolderPanel) {
  ByHand world;
  Node& entry = world.panel.addEntry(world.files.makeFolder("folder/" + name) + "/");
  world.count(entry);
  PanelChoice choice = world.choice();
  choice.target = {world.files.makeFolder("folder/" + name + "/inner"), true};
  choice.isFolderPanel = isFolderPanel;
  EXPECT_EQ(walkToTarget(choice), world.folder + "/" + name + " does not open");
  return world.opened;
}

TEST(WalkToTarget, OpensNoPackageWhereFilesAreChosen) {
  EXPECT_EQ(openings("Tool.app", false), 0);
  EXPECT_GT(openings("Tool.app", true), 0);
  for (const char* name : {"plain", "v1.2", "ends.", "a.b-c"}) {
    EXPECT_GT(openings(name, false), 0) << name;
  }
}

// Rows are used again for other entries.
TEST(WalkToTarget, PerformsNothingOnAnEntryThatNamesAnotherFolderNow) {
  ByHand world;
  Node& entry = world.panel.addEntry(world.wanted + "/");
  const std::string another = world.files.makeFolder("folder/another");
  int late = 0;
  entry.addAction("AXOpen", [&] {
    entry.children().front()->children().back()->set("AXURL",
                                                     simulator::Url{"file://" + another + "/"});
    return ax::success;
  });
  entry.children().front()->addAction("AXOpen", [&] { return ++late, ax::success; });
  PanelChoice choice = world.choice();
  choice.target = {world.inner, true};
  EXPECT_EQ(walkToTarget(choice), world.wanted + " does not open");
  EXPECT_EQ(late, 0);
}

TEST(WalkToTarget, OpensAFolderByEitherActionOfAnyOfItsElements) {
  for (const char* action : {"AXOpen", "AXPress"}) {
    for (const bool ofCell : {true, false}) {
      ByHand world;
      Node& entry = world.panel.addEntry(world.wanted + "/");
      (ofCell ? *entry.children().front() : entry).addAction(action, [&] {
        world.panel.removeEntries();
        world.panel.addEntry(world.inner + "/");
        return ax::success;
      });
      PanelChoice choice = world.choice();
      choice.target = {world.inner, true};
      EXPECT_EQ(walkToTarget(choice), "") << action << ofCell;
    }
  }
}

TEST(WalkToTarget, OpensAFolderInColumnsBySelectingIt) {
  TemporaryFolder files;
  const std::string wanted = files.makeFolder("folder/wanted");
  const std::string inner = files.makeFolder("folder/wanted/inner");
  HandBuiltPanel panel("ColumnView");
  panel.addColumn();
  Node& entry = panel.addEntry(wanted + "/");
  entry.makeSettable("AXSelected", [&](const simulator::Value&) {
    panel.select({&entry});
    panel.popup.set("AXValue", std::string("inner"));
    Node& column = panel.addColumn();
    Node& listed = panel.addEntry(inner + "/");
    column.makeSettable("AXSelectedChildren", [&](const simulator::Value&) {
      panel.select({&listed});
      return ax::success;
    });
    return ax::success;
  });
  PanelChoice choice = choiceOf({panel.rootHandle(), {panel.appHandle(), browserPid, "x"}}, inner);
  EXPECT_EQ(walkToTarget(choice), "");
}

TEST(WalkToTarget, SelectsNoFolderOnTheWayInAList) {
  ByHand world;
  world.panel.addEntry(world.wanted + "/");
  PanelChoice choice = world.choice();
  choice.target = {world.inner, true};
  EXPECT_EQ(walkToTarget(choice), world.wanted + " does not open");
  EXPECT_EQ(*world.panel.list->get("AXSelectedRows"), simulator::Value(simulator::List{}));
}

// --- Sidebars and menus built by hand. ---

// A list that shows a folder of no use, with a sidebar beside it and a menu in its pop-up: what
// they do a test says.
struct Surroundings : ByHand {
  Surroundings() { panel.addEntry(files.makeFolder("far/away") + "/"); }
  void show(const std::vector<std::string>& locations) {
    panel.removeEntries();
    for (const std::string& location : locations) panel.addEntry(location);
  }
  // A row of the sidebar, with its label two levels down.
  Node& addPlace(const std::string& label, const std::string& location) {
    Node& row = add(sidebar, label, "AXRow");
    row.addChild("AXCell").addChild("AXStaticText").set("AXValue", label);
    if (!location.empty()) row.set("AXURL", simulator::Url{"file://" + location + "/"});
    return row;
  }
  void whenSelected(Node& row, std::function<void()> effect) {
    row.makeSettable("AXSelected", [effect = std::move(effect)](const simulator::Value&) {
      return effect(), ax::success;
    });
  }
  // A menu that the pop-up shows for the action, with items that do this when they are pressed.
  using Items = std::vector<std::pair<std::string, std::function<void()>>>;
  void addMenu(const Items& items, const std::string& action = "AXShowMenu") {
    panel.popup.addAction(action, [this, items] {
      ++menusShown;
      Node& menu = panel.popup.addChild("AXMenu");
      menu.addAction("AXCancel", [this, &menu] { return closeMenu(menu), ax::success; });
      for (const auto& [title, effect] : items) {
        Node& item = menu.addChild("AXMenuItem");
        item.set("AXTitle", title);
        item.addAction("AXPress", [this, &menu, chosen = effect] {
          chosen();
          return closeMenu(menu), ax::success;
        });
      }
      return ax::success;
    });
  }
  void closeMenu(Node& menu) { panel.popup.removeChild(menu); }
  std::string walk() {
    choice = this->ByHand::choice();
    choice->isFolderPanel = true;
    if (!target.empty()) choice->target = {target, isDirectory(target)};
    return walkToTarget(*choice);
  }

  Node& sidebar = add(add(panel.split, "left", "AXScrollArea"), "its outline", "AXOutline");
  std::string target;
  std::optional<PanelChoice> choice;
  int menusShown = 0;
};

TEST(WalkToTarget, ShowsAPlaceOfTheSidebarInAnyWay) {
  for (const std::string way : {"row", "sidebar", "AXOpen", "AXPress"}) {
    Surroundings world;
    Node& row = world.addPlace("Folder", world.folder);
    const auto shows = [&] { return world.show({world.wanted + "/"}), ax::success; };
    if (way == "row") world.whenSelected(row, shows);
    if (way == "sidebar") {
      world.sidebar.makeSettable("AXSelectedRows", [&](const simulator::Value& value) {
        EXPECT_EQ(value, simulator::Value(simulator::List{row.id()}));
        return shows();
      });
    }
    if (way.starts_with("AX")) row.children().front()->addAction(way, shows);
    EXPECT_EQ(world.walk(), "") << way;
  }
}

TEST(WalkToTarget, AsksTheSidebarForItsRows) {
  Surroundings world;
  Node& group = world.sidebar.addChild("AXGroup");
  Node& row = group.addChild("AXRow");
  row.set("AXURL", simulator::Url{"file://" + world.folder + "/"});
  world.sidebar.set("AXRows", simulator::List{row.id()});
  world.whenSelected(row, [&] { world.show({world.wanted + "/"}); });
  EXPECT_EQ(world.walk(), "");
}

TEST(WalkToTarget, KnowsAPlaceWithoutALocationByItsLabel) {
  Surroundings world;
  world.whenSelected(world.addPlace("folder", ""), [&] { world.show({world.wanted + "/"}); });
  EXPECT_EQ(world.walk(), "");
}

TEST(WalkToTarget, KnowsAPlaceByItsLocationAndNotByItsLabel) {
  Surroundings world;
  int selected = 0;
  world.whenSelected(world.addPlace("folder", world.files.makeFolder("far/folder")),
                     [&] { ++selected; });
  EXPECT_NE(world.walk(), "");
  EXPECT_EQ(selected, 0);
}

TEST(WalkToTarget, BeginsAtTheNearestPlace) {
  for (const bool labelled : {true, false}) {
    Surroundings world;
    world.target = world.inner;
    int others = 0;
    world.whenSelected(world.addPlace("folder", labelled ? "" : world.folder), [&] { ++others; });
    world.whenSelected(world.addPlace("wanted", labelled ? "" : world.wanted),
                       [&] { world.show({world.inner + "/"}); });
    EXPECT_EQ(world.walk(), "") << labelled;
    EXPECT_EQ(others, 0) << labelled;
  }
}

TEST(WalkToTarget, GoesOnWhereAPlaceLeadsNowhere) {
  Surroundings world;
  world.target = world.inner;
  world.addPlace("wanted", world.wanted);
  world.whenSelected(world.addPlace("folder", world.folder), [&] {
    world.show({world.wanted + "/"});
    world.panel.list->children().front()->addAction(
        "AXOpen", [&] { return world.show({world.inner + "/"}), ax::success; });
  });
  EXPECT_EQ(world.walk(), "");
}

TEST(WalkToTarget, EndsAtAPlaceThatIsTheTarget) {
  Surroundings world;
  int others = 0;
  world.whenSelected(world.addPlace("wanted", world.wanted),
                     [&] { world.show({world.inner + "/"}); });
  world.whenSelected(world.addPlace("folder", world.folder), [&] { ++others; });
  EXPECT_EQ(world.walk(), "");
  EXPECT_EQ(others, 0);
}

TEST(WalkToTarget, ShowsNoPlaceThatIsAFile) {
  Surroundings world;
  world.target = world.files.makeFile("folder/report", "text");
  int selected = 0;
  world.whenSelected(world.addPlace("report", world.target), [&] { ++selected; });
  EXPECT_NE(world.walk(), "");
  EXPECT_EQ(selected, 0);
}

// Another way to the folder makes its last step no easier.
TEST(WalkToTarget, TriesNoOtherPlaceWhenOnlyTheLastStepFails) {
  Surroundings world;
  int others = 0;
  world.show({world.files.makeFolder("folder/another") + "/"});
  world.whenSelected(world.addPlace("above", world.files.path()), [&] { ++others; });
  EXPECT_EQ(world.walk(), world.wanted + " is not listed in " + world.folder + hidden);
  EXPECT_EQ(others, 0);
  EXPECT_EQ(world.menusShown, 0);
}

TEST(WalkToTarget, AsksSixtyRowsOfTheSidebar) {
  const auto found = [](int others) {
    Surroundings world;
    for (int i = 0; i < others; ++i) world.addPlace("place", "/usr");
    world.whenSelected(world.addPlace("Folder", world.folder),
                       [&] { world.show({world.wanted + "/"}); });
    return world.walk().empty();
  };
  EXPECT_TRUE(found(59));
  EXPECT_FALSE(found(60));
}

TEST(WalkToTarget, AsksADozenElementsOfARowForActions) {
  const auto found = [](int others) {
    Surroundings world;
    Node& row = world.addPlace("Folder", world.folder);  // three elements
    for (int i = 0; i < others; ++i) row.addChild("AXImage");
    row.addChild("AXButton").addAction("AXPress", [&] {
      return world.show({world.wanted + "/"}), ax::success;
    });
    return world.walk().empty();
  };
  EXPECT_TRUE(found(8));
  EXPECT_FALSE(found(9));
}

TEST(WalkToTarget, PicksTheInnermostFolderOfTheMenu) {
  for (const char* action : {"AXShowMenu", "AXPress"}) {
    Surroundings world;
    world.panel.popup.addChild("AXImage");
    const std::string above = lastPathComponent(world.files.path());
    int others = 0;
    world.addMenu({{"far", [&] { ++others; }},
                   {above, [&] { world.show({world.folder + "/"}); }},
                   {"tmp", [&] { ++others; }},
                   {"Macintosh HD", [&] { ++others; }},
                   {"Disk", [&] { ++others; }}},
                  action);
    // The menu led to the folder around: from there it is walked as if that were shown.
    world.target = world.files.makeFolder("wanted");
    const std::string wanted = world.target;
    EXPECT_EQ(world.walk(), wanted + " is not listed in " + world.files.path() + hidden) << action;
    EXPECT_EQ(others, 0) << action;
    EXPECT_EQ(world.menusShown, 1) << action;
  }
}

TEST(WalkToTarget, ClosesAMenuWithoutAnItemOfTheWay) {
  Surroundings world;
  int others = 0;
  world.addMenu({{"far", [&] { ++others; }}, {"Disk", [&] { ++others; }}});
  EXPECT_EQ(world.walk(), "nothing in the panel leads to " + world.wanted);
  EXPECT_EQ(others, 0);
  EXPECT_EQ(world.menusShown, 1);
  EXPECT_EQ(world.panel.popup.children().size(), 0U) << "its menu";
}

TEST(WalkToTarget, DoesNotBelieveAnItemOfTheMenu) {
  Surroundings world;
  world.addMenu({{"far", [] {}}, {lastPathComponent(world.files.path()), [] {}}});
  EXPECT_EQ(world.walk(), "nothing in the panel leads to " + world.wanted);
}

// The menu leads nearer than the place, and is tried once.
TEST(WalkToTarget, TriesTheMenuOnceBeforePlacesFartherAway) {
  Surroundings world;
  std::vector<int> menusAtPlace;
  world.addMenu({{"far", [] {}}});
  for (const char* name : {"first", "second"}) {
    world.whenSelected(world.addPlace(name, "/"),
                       [&] { menusAtPlace.push_back(world.menusShown); });
  }
  EXPECT_NE(world.walk(), "");
  EXPECT_EQ(menusAtPlace, (std::vector<int>{1, 1}));
  EXPECT_EQ(world.menusShown, 1);
}

// --- How attempts end. ---

TEST(WalkToTarget, SaysWhichPlaceIsNotShown) {
  Surroundings world;
  world.addPlace("Folder", world.folder);
  EXPECT_EQ(world.walk(), "nothing in the panel leads to " + world.folder);
}

// Two folders are listed at once, as after a search.
TEST(WalkToTarget, TakesNothingFromAPlaceThatIsNotShown) {
  Surroundings world;
  world.show({world.files.makeFolder("far/away") + "/", world.wanted + "/"});
  world.addPlace("Folder", world.folder);
  EXPECT_NE(world.walk(), "");
  EXPECT_EQ(*world.panel.list->get("AXSelectedRows"), simulator::Value(simulator::List{}));
}

TEST(WalkToTarget, SelectsNothingWhereAPlaceShowsTheTargetSelected) {
  Surroundings world;
  int writes = 0;
  world.whenSelected(world.addPlace("Folder", world.folder), [&] {
    world.show({world.wanted + "/"});
    world.panel.select({world.panel.list->children().front().get()});
    world.panel.list->makeSettable("AXSelectedRows",
                                   [&](const simulator::Value&) { return ++writes, ax::success; });
  });
  EXPECT_EQ(world.walk(), "");
  EXPECT_EQ(writes, 0);
}

// The pop-up names the folder a moment after it is listed.
TEST(WalkToTarget, WaitsUntilAPlaceThatIsTheTargetCanBeTold) {
  for (const double seconds : {0.8, 10.0}) {
    Surroundings world;
    world.panel.popup.set("AXValue", std::string("far"));
    world.whenSelected(world.addPlace("wanted", world.wanted), [&] {
      world.show({world.inner + "/"});
      world.panel.desktop.schedule(
          seconds, [&] { world.panel.popup.set("AXValue", std::string("wanted")); });
    });
    EXPECT_EQ(world.walk(), seconds < 1 ? "" : world.wanted + " cannot be told");
  }
}

// The link leads to a folder beside the target: from there the menu leads to the one around both.
TEST(WalkToTarget, LooksForTheMenusItemsWhereALinkLeads) {
  Surroundings world;
  const std::string link = world.files.path() + "/link";
  std::filesystem::create_directory_symlink(world.files.makeFolder("folder/deep"), link);
  world.show({link + "/x"});
  int others = 0;
  world.whenSelected(world.addPlace("above", world.files.path()), [&] { ++others; });
  world.addMenu(
      {{"deep", [&] { ++others; }}, {"folder", [&] { world.show({world.wanted + "/"}); }}});
  EXPECT_EQ(world.walk(), "");
  EXPECT_EQ(others, 0);
}

TEST(WalkToTarget, TriesPlacesFirstWhereTheFolderShownIsUnknown) {
  Surroundings world;
  world.show({});
  world.addMenu({});
  world.whenSelected(world.addPlace("Folder", world.folder),
                     [&] { world.show({world.wanted + "/"}); });
  EXPECT_EQ(world.walk(), "");
  EXPECT_EQ(world.menusShown, 0);
}

TEST(WalkToTarget, PicksTheRootOfTheMenu) {
  Surroundings world;
  world.target = "/dev";
  world.show({"/usr/lib/"});
  world.addMenu({{"usr", [] {}}, {"Macintosh HD", [&] { world.show({"/usr/", "/dev/"}); }}});
  EXPECT_EQ(world.walk(), "");
}

// No folder is around it.
TEST(WalkToTarget, SaysThatNothingLeadsToTheRoot) {
  Surroundings world;
  world.target = "/";
  EXPECT_EQ(world.walk(), "nothing in the panel leads to /");
}

// A volume may be called like the file.
TEST(WalkToTarget, PicksNoItemOfTheMenuForAFile) {
  Surroundings world;
  world.target = world.files.makeFile("folder/report", "text");
  world.show({"/usr/lib/"});
  int others = 0;
  world.addMenu({{"usr", [] {}}, {"Macintosh HD", [] {}}, {"report", [&] { ++others; }}});
  EXPECT_NE(world.walk(), "");
  EXPECT_EQ(others, 0);
}

// Something is selected in it, which no way there changes.
TEST(WalkToTarget, DoesNotBeginAtTheTargetItself) {
  Surroundings world;
  world.show({world.inner + "/"});
  world.panel.select({world.panel.list->children().front().get()});
  EXPECT_EQ(world.walk(), "nothing in the panel leads to " + world.wanted);
}

TEST(WalkToTarget, ShowsNoPlaceAfterTheMenuLedThere) {
  Surroundings world;
  const std::string above = lastPathComponent(world.files.path());
  world.target = world.files.makeFolder("near");
  int others = 0;
  world.whenSelected(world.addPlace(above, ""), [&] { ++others; });
  world.addMenu({{"far", [] {}}, {above, [&] { world.show({world.target + "/"}); }}});
  EXPECT_EQ(world.walk(), "");
  EXPECT_EQ(others, 0);
}

TEST(TakeTargetEntry, SaysThatAnEntryIsListedNoMoreWhenItCannotBeSelected) {
  ByHand world;
  world.panel.addEntry(world.wanted + "/");
  world.panel.list->makeSettable("AXSelectedRows", [&](const simulator::Value&) {
    world.panel.removeEntries();
    world.panel.addEntry(world.folder + "/another");
    return ax::success;
  });
  PanelChoice choice = world.choice();
  choice.isFolderPanel = true;
  EXPECT_EQ(takeTargetEntry(choice), world.wanted + " is not listed in " + world.folder + hidden);
}

// Whether the last request was for what actions an element of that role offers.
bool asksForActions(const simulator::Record& record, const std::string& role) {
  const auto* request = std::get_if<simulator::AccessibilityRequest>(&record.lines().back().entry);
  return request != nullptr && request->verb == Verb::actionNames && request->role == role;
}

// It is shown between the last look and the next action, when its entry has gone.
TEST(WalkToTarget, SeesAFolderThatOpenedWhileItsEntryWasAskedForItsActions) {
  ByHand world;
  Node& entry = world.panel.addEntry(world.wanted + "/");
  bool performed = false;
  entry.addAction("AXOpen", [&] { return performed = true, ax::success; });
  entry.children().front()->addAction("AXOpen", [] { return ax::success; });
  world.panel.desktop.watch([&] {
    if (!performed || !asksForActions(world.panel.desktop.record(), "AXCell")) return;
    performed = false;
    world.panel.removeEntries();
    world.panel.addEntry(world.inner + "/");
  });
  PanelChoice choice = world.choice();
  choice.target = {world.inner, true};
  EXPECT_EQ(walkToTarget(choice), "");
}

}  // namespace
}  // namespace tessarine::test::accessible_walk
