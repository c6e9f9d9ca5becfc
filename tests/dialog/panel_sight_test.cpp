// What is seen of an Open panel, and what is proof that its confirm button would take the target.
#include "dialog/panel_sight.h"

#include <gmock/gmock.h>

#include <filesystem>

#include "dialog/hand_built_panel.h"
#include "platform/workspace.h"
#include "support/temporary_folder.h"

namespace tessarine::test::panel_sight {
namespace {

using Node = simulator::Element;
namespace ax = simulator::ax;

const std::vector<const char*> everyView{"ListView", "ColumnView", "IconView"};

// A panel over real folders: "shown" with "target" and "other" in it; the columns, where it shows
// some, are those of the folder above and of "shown".
struct Shown {
  explicit Shown(const std::string& view = "ListView") : panel(view) {
    if (view == "ColumnView") {
      panel.addColumn();
      above = &panel.addEntry(folder + "/");
      panel.select({above});
      panel.addColumn();
      panel.popup.set("AXValue", std::string("shown"));
    }
    // The first locations end in a slash, as those of folders do.
    targetEntry = &panel.addEntry(target + "/");
    otherEntry = &panel.addEntry(other + "/");
    fileEntry = &panel.addEntry(file);
  }
  PanelSight look() const { return lookAt(panel.parts()); }
  std::string proof(const Target& wanted) const { return proofText(proofOf(look(), wanted)); }
  static std::string proofText(const std::optional<Proof>& proof) {
    if (!proof) return "none";
    return *proof == Proof::folderShown ? "folder shown" : "entry selected";
  }
  Target wants(const std::string& path, bool isFolder = true) const { return {path, isFolder}; }

  TemporaryFolder files;
  std::string folder = files.makeFolder("shown");
  std::string target = files.makeFolder("shown/target");
  std::string other = files.makeFolder("shown/other");
  std::string file = files.makeFile("shown/report.txt", "text");
  HandBuiltPanel panel;
  Node* above = nullptr;
  Node* targetEntry = nullptr;
  Node* otherEntry = nullptr;
  Node* fileEntry = nullptr;
};

// --- The folder shown. ---

TEST(LookAt, SeesTheFolderInWhichTheEntriesStand) {
  for (const char* view : everyView) {
    Shown shown(view);
    const PanelSight sight = shown.look();
    EXPECT_EQ(sight.folder, shown.folder) << view;
    EXPECT_TRUE(sight.hasLocatedEntries) << view;
    EXPECT_EQ(sight.entries.size(), 3U) << view;
    EXPECT_TRUE(sight.witness.has_value()) << view;
    EXPECT_FALSE(sight.searching) << view;
    EXPECT_EQ(shown.proof(shown.wants(shown.folder)), "folder shown") << view;
  }
}

TEST(LookAt, SeesNoFolderInAnEmptyListing) {
  for (const char* view : everyView) {
    HandBuiltPanel panel(view);
    const PanelSight sight = lookAt(panel.parts());
    EXPECT_EQ(sight.folder, std::nullopt) << view;
    EXPECT_FALSE(sight.hasLocatedEntries) << view;
    EXPECT_TRUE(sight.entries.empty()) << view;
  }
}

TEST(LookAt, SeesNoFolderThroughEntriesThatNameNoLocation) {
  for (const char* view : everyView) {
    HandBuiltPanel panel(view);
    if (std::string(view) == "ColumnView") panel.addColumn();
    panel.addEntry("");
    panel.addEntry("");
    const PanelSight sight = lookAt(panel.parts());
    EXPECT_EQ(sight.folder, std::nullopt) << view;
    EXPECT_FALSE(sight.hasLocatedEntries) << view;
    EXPECT_EQ(sight.witness, std::nullopt) << view;
  }
}

TEST(LookAt, LeavesOutEntriesThatNameNoLocation) {
  Shown shown;
  shown.panel.addEntry("");
  EXPECT_EQ(shown.look().folder, shown.folder);
}

TEST(LookAt, SeesNoFolderThroughEntriesOfDifferentParents) {
  for (const char* view : everyView) {
    Shown shown(view);
    shown.panel.addEntry(shown.files.makeFolder("elsewhere/target") + "/");
    EXPECT_EQ(shown.look().folder, std::nullopt) << view;
    EXPECT_EQ(shown.proof(shown.wants(shown.folder)), "none") << view;
    EXPECT_EQ(shown.proof(shown.wants(shown.files.path() + "/elsewhere")), "none") << view;
  }
}

// The same names stand in another folder.
TEST(LookAt, TellsFoldersWithTheSameEntriesApart) {
  Shown shown;
  const std::string twin = shown.files.makeFolder("twin");
  for (const char* name : {"target", "other"}) shown.files.makeFolder(std::string("twin/") + name);
  EXPECT_EQ(shown.proof(shown.wants(twin)), "none");
}

TEST(LookAt, TakesParentsThatAreTheSameFolderForOne) {
  Shown shown;
  const std::string link = shown.files.path() + "/link";
  std::filesystem::create_directory_symlink(shown.folder, link);
  shown.panel.addEntry(link + "/report.txt");
  ASSERT_TRUE(shown.look().folder);
  EXPECT_EQ(shown.proof(shown.wants(shown.folder)), "folder shown");
}

// What stands in a link's folder stands in the folder itself, and not beside the link.
TEST(LookAt, SeesTheFolderThatALinkLeadsTo) {
  TemporaryFolder files;
  const std::string real = files.makeFolder("real");
  files.makeFolder("real/inner");
  std::filesystem::create_directory_symlink(real, files.path() + "/link");
  HandBuiltPanel panel;
  panel.addEntry(files.path() + "/link/inner/");
  const PanelSight sight = lookAt(panel.parts());
  EXPECT_TRUE(proofOf(sight, {real, true}));
  EXPECT_FALSE(proofOf(sight, {files.path(), true}));
}

TEST(LookAt, LeavesOutTheEntriesOfUnfoldedFolders) {
  Shown shown;
  const std::string inner = shown.files.makeFolder("shown/target/inner");
  shown.panel.addEntry(inner + "/").set("AXDisclosedByRow", shown.targetEntry->id());
  EXPECT_EQ(shown.look().folder, shown.folder);
  EXPECT_EQ(shown.proof(shown.wants(shown.target)), "none");
}

// A folder may have been removed meanwhile: that its entries stand in one place is seen all the
// same.
TEST(LookAt, SeesAFolderThatIsNoMore) {
  HandBuiltPanel panel;
  panel.addEntry("/nowhere/a");
  panel.addEntry("/nowhere/b");
  EXPECT_EQ(lookAt(panel.parts()).folder, "/nowhere");
}

TEST(LookAt, AsksNineEntriesForTheirLocations) {
  const auto folderAfter = [](int nameless) {
    HandBuiltPanel panel;
    for (int i = 0; i < nameless; ++i) panel.addEntry("");
    panel.addEntry("/usr/lib/");
    return lookAt(panel.parts()).folder;
  };
  EXPECT_EQ(folderAfter(8), "/usr");
  EXPECT_EQ(folderAfter(9), std::nullopt);
}

TEST(LookAt, SeesRowsAloneInAList) {
  Shown shown;
  shown.panel.list->addChild("AXColumn");
  shown.panel.list->addChild("AXGroup");
  EXPECT_EQ(shown.look().entries.size(), 3U);
}

// Lists answer for attributes of other views, too.
TEST(LookAt, SeesTheChildrenOfIconsAndColumns) {
  for (const char* view : {"ColumnView", "IconView"}) {
    Shown shown(view);
    shown.panel.list->set("AXRows", simulator::List{});
    EXPECT_EQ(shown.look().entries.size(), 3U) << view;
  }
}

// Only an outline's rows can be unfolded.
TEST(LookAt, AsksIconsForNoUnfoldedFolder) {
  Shown shown("IconView");
  shown.look();
  EXPECT_EQ(requestsFor(shown.panel.desktop.record(), "AXDisclosedByRow"), 0);
}

// Most of what is listed stands in the unfolded folder, which is not shown for that.
TEST(LookAt, IsNotMisledByAnUnfoldedFolderWithManyEntries) {
  TemporaryFolder files;
  const std::string shown = files.makeFolder("shown");
  const std::string unfolded = files.makeFolder("shown/target");
  for (const bool told : {true, false}) {
    HandBuiltPanel panel;
    const Node& row = panel.addEntry(unfolded + "/");
    for (int i = 0; i < 200; ++i) {
      Node& inner = panel.addEntry(files.makeFolder("shown/target/" + std::to_string(i)) + "/");
      if (told) inner.set("AXDisclosedByRow", row.id());
    }
    const PanelSight sight = lookAt(panel.parts());
    EXPECT_FALSE(proofOf(sight, {unfolded, true})) << told;
    EXPECT_NE(sight.folder, unfolded) << told;
  }
}

TEST(LookAt, CostsTheSameHoweverLargeTheFolderIs) {
  for (const char* view : everyView) {
    const auto cost = [&](int entries) {
      HandBuiltPanel panel(view);
      if (std::string(view) == "ColumnView") panel.addColumn();
      for (int i = 0; i < entries; ++i) panel.addEntry("/usr/" + std::to_string(i));
      const PanelParts parts = panel.parts();
      const auto before = panel.desktop.record().accessibilityRequests();
      lookAt(parts);
      return panel.desktop.record().accessibilityRequests() - before;
    };
    EXPECT_LE(cost(400), 60U) << view;
    EXPECT_LE(cost(400), cost(100) + 5) << view;
  }
}

TEST(LookAt, SeesWhatTheLocationPopUpSays) {
  Shown shown;
  EXPECT_EQ(shown.look().folderName, "");
  shown.panel.popup.set("AXValue", std::string("shown"));
  EXPECT_EQ(shown.look().folderName, "shown");
}

TEST(LookAt, SeesASearch) {
  Shown shown;
  shown.panel.search.set("AXValue", std::string("rep"));
  EXPECT_TRUE(shown.look().searching);
  EXPECT_EQ(shown.proof(shown.wants(shown.folder)), "none");
}

// --- Columns. ---

TEST(LookAt, TakesTheDeepestColumnForTheFolderShown) {
  Shown shown("ColumnView");
  EXPECT_EQ(shown.look().folder, shown.folder);
  EXPECT_EQ(shown.proof(shown.wants(shown.files.path())), "none");
}

TEST(LookAt, SeesColumnsThatAreListsThemselves) {
  HandBuiltPanel panel("ColumnView");
  Node& column = panel.listing->addChild("AXList");
  panel.listing->set("AXColumns", simulator::List{column.id()});
  column.addChild("AXGroup").set("AXURL", simulator::Url{"file:///usr/lib"});
  EXPECT_EQ(lookAt(panel.parts()).folder, "/usr");
}

TEST(LookAt, SeesTheListOfAColumnBehindItsScrollBar) {
  HandBuiltPanel panel("ColumnView");
  Node& area = panel.listing->addChild("AXScrollArea");
  area.addChild("AXScrollBar").addChild("AXButton");
  area.addChild("AXList").addChild("AXGroup").set("AXURL", simulator::Url{"file:///usr/lib"});
  panel.listing->set("AXColumns", simulator::List{area.id()});
  EXPECT_EQ(lookAt(panel.parts()).folder, "/usr");
}

TEST(LookAt, SeesColumnsThatOnlyTheChildrenTellOf) {
  Shown shown("ColumnView");
  shown.panel.listing->clear("AXColumns");
  EXPECT_EQ(shown.look().folder, shown.folder);
}

TEST(LookAt, TakesNoOtherListOfTheBrowserForAColumn) {
  Shown shown("ColumnView");
  Node& preview = shown.panel.listing->addChild("AXScrollArea").addChild("AXList");
  preview.addChild("AXGroup").set("AXURL", simulator::Url{"file:///usr/lib"});
  EXPECT_EQ(shown.look().folder, shown.folder);
}

// A folder without entries has no column of its own: it is selected in the last one there is.
TEST(LookAt, SeesAnEmptyFolderSelectedInTheDeepestColumn) {
  Shown shown("ColumnView");
  shown.panel.select({shown.targetEntry});
  shown.panel.popup.set("AXValue", std::string("target"));
  EXPECT_EQ(shown.proof(shown.wants(shown.target)), "entry selected");
  EXPECT_EQ(shown.proof(shown.wants(shown.folder)), "none");
}

TEST(LookAt, DoesNotBelieveASelectedColumnEntryThatThePopUpCallsOtherwise) {
  Shown shown("ColumnView");
  shown.panel.select({shown.targetEntry});
  shown.panel.popup.set("AXValue", std::string(".hidden"));
  EXPECT_EQ(shown.proof(shown.wants(shown.target)), "none");
}

TEST(LookAt, PassesOverAnEmptyColumnAtTheEnd) {
  Shown shown("ColumnView");
  shown.panel.addColumn();
  EXPECT_EQ(shown.look().folder, shown.folder);
}

// What leads from an earlier column to the next is no selection of the folder shown.
TEST(LookAt, DoesNotTakeTheWayThereForASelection) {
  Shown shown("ColumnView");
  const PanelSight sight = shown.look();
  EXPECT_TRUE(sight.selectionKnown);
  EXPECT_TRUE(sight.selection.empty());
}

// --- The selection. ---

TEST(LookAt, SeesTheLocationOfTheOnlySelectedEntry) {
  for (const char* view : everyView) {
    Shown shown(view);
    shown.panel.popup.set("AXValue", std::string());
    shown.panel.select({shown.fileEntry});
    const PanelSight sight = shown.look();
    EXPECT_TRUE(sight.selectionKnown) << view;
    EXPECT_EQ(sight.selection.size(), 1U) << view;
    EXPECT_EQ(sight.selected, shown.file) << view;
    EXPECT_EQ(shown.proof(shown.wants(shown.file, false)), "entry selected") << view;
  }
}

TEST(LookAt, ASelectedEntryProvesNothingForTheFolderAroundIt) {
  for (const char* view : everyView) {
    Shown shown(view);
    shown.panel.select({shown.otherEntry});
    EXPECT_EQ(shown.proof(shown.wants(shown.folder)), "none") << view;
    EXPECT_EQ(shown.proof(shown.wants(shown.target)), "none") << view;
  }
}

TEST(LookAt, TwoSelectedEntriesProveNothing) {
  for (const char* view : everyView) {
    Shown shown(view);
    shown.panel.select({shown.targetEntry, shown.otherEntry});
    const PanelSight sight = shown.look();
    EXPECT_EQ(sight.selection.size(), 2U) << view;
    EXPECT_EQ(sight.selected, std::nullopt) << view;
    for (const auto& wanted : {shown.target, shown.other, shown.folder}) {
      EXPECT_EQ(shown.proof(shown.wants(wanted)), "none") << view;
    }
  }
}

TEST(LookAt, ASelectedEntryWithoutALocationProvesNothing) {
  for (const char* view : everyView) {
    Shown shown(view);
    const Node& nameless = shown.panel.addEntry("");
    shown.panel.select({&nameless});
    const PanelSight sight = shown.look();
    EXPECT_EQ(sight.selection.size(), 1U) << view;
    EXPECT_EQ(sight.selected, std::nullopt) << view;
    EXPECT_EQ(shown.proof(shown.wants(shown.folder)), "none") << view;
  }
}

TEST(LookAt, SeesASelectionThatOnlyTheEntriesTellOf) {
  Shown shown("IconView");
  shown.panel.list->clear("AXSelectedChildren");
  shown.fileEntry->set("AXSelected", true);
  const PanelSight sight = shown.look();
  EXPECT_FALSE(proofOf(sight, shown.wants(shown.folder)));
  EXPECT_TRUE(!sight.selectionKnown || sight.selected == shown.file);
}

// Lists answer for attributes of other views, too, and say nothing by them.
TEST(LookAt, BelievesTheAttributeOfItsView) {
  for (const char* view : everyView) {
    Shown shown(view);
    const bool rows = shown.panel.selectionAttribute() == "AXSelectedRows";
    shown.panel.list->set(rows ? "AXSelectedChildren" : "AXSelectedRows", simulator::List{});
    shown.panel.select({shown.otherEntry});
    EXPECT_EQ(shown.look().selected, shown.other) << view;
    EXPECT_EQ(shown.proof(shown.wants(shown.folder)), "none") << view;
  }
}

// Nor is another attribute asked in its place.
TEST(LookAt, TakesASelectionThatCannotBeReadForNone) {
  Shown shown;
  shown.panel.list->set("AXSelectedChildren", simulator::List{});
  shown.panel.desktop.faults().refused_requests.push_back(
      {.error = ax::failure, .name = "AXSelectedRows", .role = "AXOutline"});
  EXPECT_THROW(shown.look(), Unanswered);
}

TEST(LookAt, DoesNotKnowTheSelectionWhenAnEntryDoesNotTell) {
  Shown shown("IconView");
  shown.panel.list->clear("AXSelectedChildren");
  EXPECT_TRUE(shown.look().selectionKnown);
  shown.otherEntry->clear("AXSelected");
  EXPECT_FALSE(shown.look().selectionKnown);
  EXPECT_EQ(shown.proof(shown.wants(shown.folder)), "none");
}

TEST(LookAt, AsksTwoHundredEntriesWhetherTheyAreSelected) {
  const auto known = [](int entries) {
    HandBuiltPanel panel("IconView");
    panel.list->clear("AXSelectedChildren");
    for (int i = 0; i < entries; ++i) panel.addEntry("/usr/" + std::to_string(i));
    return lookAt(panel.parts()).selectionKnown;
  };
  EXPECT_TRUE(known(200));
  EXPECT_FALSE(known(201));
}

TEST(LookAt, ResolvesLinksOfASelectedEntry) {
  Shown shown;
  const std::string link = shown.folder + "/link";
  std::filesystem::create_directory_symlink(shown.target, link);
  shown.panel.select({&shown.panel.addEntry(link + "/")});
  EXPECT_EQ(shown.proof(shown.wants(shown.target)), "entry selected");
}

TEST(LookAt, ResolvesFileReferences) {
  Shown shown;
  std::string reference = "file:///.file/id=";
  for (const char c : shown.target) {
    constexpr const char* digits = "0123456789ABCDEF";
    reference += {digits[(c >> 4) & 15], digits[c & 15]};
  }
  shown.targetEntry->children().front()->children().back()->set("AXURL",
                                                                simulator::Url{reference + "/"});
  shown.panel.select({shown.targetEntry});
  EXPECT_EQ(shown.proof(shown.wants(shown.target)), "entry selected");
}

// --- What does not answer. ---

std::string failureOf(const PanelParts& parts) {
  try {
    lookAt(parts);
  } catch (const Unanswered& unanswered) {
    return unanswered.gone() ? "gone" : "silent";
  }
  return "none";
}

TEST(LookAt, ThrowsWhenAnythingThatItNeedsDoesNotAnswer) {
  struct Case {
    std::string name;
    std::string role;
  };
  for (const Case& each : {Case{"AXURL", "AXTextField"}, Case{"AXSelectedRows", "AXOutline"},
                           Case{"AXValue", "AXPopUpButton"}, Case{"AXValue", "AXTextField"}}) {
    Shown shown;
    const PanelParts parts = shown.panel.parts();
    EXPECT_EQ(failureOf(parts), "none");
    shown.panel.desktop.faults().refused_requests.push_back(
        {.error = ax::cannotComplete, .name = each.name, .role = each.role});
    EXPECT_EQ(failureOf(parts), "silent") << each.name << " of " << each.role;
  }
}

TEST(LookAt, ThrowsWhenTheListingIsGone) {
  Shown shown;
  const PanelParts parts = shown.panel.parts();
  shown.panel.split.removeChildren();
  EXPECT_EQ(failureOf(parts), "gone");
}

// --- Looking again. ---

TEST(StillAsSeen, HoldsWhileNothingChanges) {
  for (const char* view : everyView) {
    Shown shown(view);
    const PanelParts parts = shown.panel.parts();
    const PanelSight sight = lookAt(parts);
    const auto before = shown.panel.desktop.record().accessibilityRequests();
    EXPECT_TRUE(stillAsSeen(sight, parts)) << view;
    EXPECT_EQ(shown.panel.desktop.record().accessibilityRequests() - before, 3U) << view;
  }
}

TEST(StillAsSeen, AsksForTheSelectionLast) {
  Shown shown;
  const PanelParts parts = shown.panel.parts();
  const PanelSight sight = lookAt(parts);
  stillAsSeen(sight, parts);
  const auto& last = shown.panel.desktop.record().lines().back();
  EXPECT_EQ(std::get<simulator::AccessibilityRequest>(last.entry).name, "AXSelectedRows");
}

TEST(StillAsSeen, DoesNotHoldWhenAnotherEntryIsSelected) {
  for (const char* view : everyView) {
    Shown shown(view);
    shown.panel.select({shown.targetEntry});
    const PanelParts parts = shown.panel.parts();
    const PanelSight sight = lookAt(parts);
    EXPECT_TRUE(stillAsSeen(sight, parts)) << view;
    shown.panel.select({shown.otherEntry});
    EXPECT_FALSE(stillAsSeen(sight, parts)) << view;
    shown.panel.select({});
    EXPECT_FALSE(stillAsSeen(sight, parts)) << view;
    shown.panel.select({shown.targetEntry, shown.otherEntry});
    EXPECT_FALSE(stillAsSeen(sight, parts)) << view;
  }
}

TEST(StillAsSeen, DoesNotHoldWhenSomethingIsSelectedThatWasNot) {
  Shown shown;
  const PanelParts parts = shown.panel.parts();
  const PanelSight sight = lookAt(parts);
  shown.panel.select({shown.otherEntry});
  EXPECT_FALSE(stillAsSeen(sight, parts));
}

TEST(StillAsSeen, DoesNotHoldWhenTheFolderIsCalledOtherwise) {
  Shown shown;
  const PanelParts parts = shown.panel.parts();
  const PanelSight sight = lookAt(parts);
  shown.panel.popup.set("AXValue", std::string("elsewhere"));
  EXPECT_FALSE(stillAsSeen(sight, parts));
}

TEST(StillAsSeen, ThrowsWhenTheListingWasBuiltAnew) {
  Shown shown;
  const PanelParts parts = shown.panel.parts();
  const PanelSight sight = lookAt(parts);
  shown.panel.removeEntries();
  shown.panel.addEntry(shown.other);
  try {
    EXPECT_FALSE(stillAsSeen(sight, parts));
    ADD_FAILURE() << "nothing was thrown";
  } catch (const Unanswered& unanswered) {
    EXPECT_TRUE(unanswered.gone());
  }
}

TEST(StillAsSeen, DoesNotHoldForALookThatCannotBeRepeatedSo) {
  Shown shown;
  const PanelParts parts = shown.panel.parts();
  PanelSight withoutList = lookAt(parts);
  withoutList.list.reset();
  EXPECT_FALSE(stillAsSeen(withoutList, parts));
}

// --- Looking while it may be closing. ---

// What a panel shows otherwise than it did when its target, the folder or an entry of it, was
// proven.
struct Closing : Shown {
  explicit Closing(const std::string& view = "ListView") : Shown(view) {
    panel.popup.set("AXValue", std::string("shown"));
  }
  void proveFolder() { prove(folder); }
  void proveEntry() {
    panel.select({targetEntry});
    prove(target);
  }
  bool showsOtherwise() const { return tessarine::showsOtherwise(before, parts, wanted); }
  // The listing is built anew with these entries; the last one is answered.
  Node* relist(const std::vector<std::string>& locations) {
    panel.removeEntries();
    Node* last = nullptr;
    for (const std::string& location : locations) last = &panel.addEntry(location);
    return last;
  }

  PanelParts parts;
  PanelSight before;
  Target wanted;

 private:
  void prove(const std::string& path) {
    wanted = wants(path);
    parts = panel.parts();
    before = lookAt(parts);
    ASSERT_TRUE(proofOf(before, wanted));
    ASSERT_FALSE(showsOtherwise());
  }
};

TEST(ShowsOtherwise, HoldsWhenTheFolderShownIsCalledOtherwise) {
  Closing closing;
  closing.proveFolder();
  closing.panel.popup.set("AXValue", std::string("elsewhere"));
  EXPECT_TRUE(closing.showsOtherwise());
}

// It is taken, whatever folder is shown.
TEST(ShowsOtherwise, DoesNotMindTheFolderAroundASelectedEntry) {
  Closing closing;
  closing.proveEntry();
  closing.panel.popup.set("AXValue", std::string("elsewhere"));
  EXPECT_FALSE(closing.showsOtherwise());
}

TEST(ShowsOtherwise, HoldsWhenTheSelectionIsAnother) {
  for (const char* view : {"ListView", "IconView"}) {
    Closing closing(view);
    closing.proveEntry();
    closing.panel.select({closing.otherEntry});
    EXPECT_TRUE(closing.showsOtherwise()) << view;
    closing.panel.select({});
    EXPECT_TRUE(closing.showsOtherwise()) << view;
    closing.panel.select({closing.targetEntry, closing.otherEntry});
    EXPECT_TRUE(closing.showsOtherwise()) << view;
  }
}

// The columns are built anew, and the deepest one is another.
TEST(ShowsOtherwise, HoldsWhenAnotherColumnIsTheDeepest) {
  Closing closing("ColumnView");
  closing.panel.popup.set("AXValue", std::string("target"));
  closing.proveEntry();
  closing.panel.addColumn();
  closing.panel.addEntry(closing.files.makeFile("shown/other/inner.txt", "text"));
  EXPECT_TRUE(closing.showsOtherwise());
}

TEST(ShowsOtherwise, HoldsWhenSomethingIsSelectedThatWasNot) {
  Closing closing;
  closing.proveFolder();
  closing.panel.select({closing.otherEntry});
  EXPECT_TRUE(closing.showsOtherwise());
}

TEST(ShowsOtherwise, DoesNotHoldWhenAListingBuiltAnewSelectsTheTarget) {
  Closing closing;
  closing.proveEntry();
  Node* again = closing.relist({closing.other + "/", closing.target + "/"});
  closing.panel.select({again});
  EXPECT_FALSE(closing.showsOtherwise());
  closing.panel.select({closing.relist({closing.target + "/", closing.other + "/"})});
  EXPECT_TRUE(closing.showsOtherwise());
}

TEST(ShowsOtherwise, HoldsWhenAListingBuiltAnewListsAnotherFolder) {
  Closing closing;
  closing.proveFolder();
  closing.relist({closing.target + "/", closing.file});
  EXPECT_FALSE(closing.showsOtherwise());
  closing.relist({"", closing.files.makeFolder("elsewhere/target") + "/"});
  EXPECT_TRUE(closing.showsOtherwise());
  closing.relist({});
  EXPECT_FALSE(closing.showsOtherwise());
}

TEST(ShowsOtherwise, DoesNotMindAFolderThatIsUnfolded) {
  Closing closing;
  closing.proveFolder();
  closing.panel.addEntry(closing.files.makeFolder("shown/other/inner") + "/");
  EXPECT_FALSE(closing.showsOtherwise());
}

TEST(ShowsOtherwise, DoesNotHoldWhenNothingAnswers) {
  Closing closing;
  closing.proveFolder();
  closing.panel.popup.set("AXValue", std::string("elsewhere"));
  closing.panel.window.removeChild(closing.panel.root);
  EXPECT_FALSE(closing.showsOtherwise());
}

// --- Names. ---

TEST(IsNameOf, HoldsForTheLastComponentAndForTheNameThatPeopleSee) {
  BareDesktop world;
  EXPECT_TRUE(isNameOf("lib", "/usr/lib"));
  EXPECT_TRUE(isNameOf("/", "/"));
  EXPECT_TRUE(isNameOf(fileManagerDisplayName("/"), "/"));
  EXPECT_FALSE(isNameOf("usr", "/usr/lib"));
  EXPECT_FALSE(isNameOf("", "/usr/lib"));
}

// --- Proof. ---

// A sight of real folders: "a" with the folder "b" and the file "c".
struct Seen {
  TemporaryFolder files;
  std::string folder = files.makeFolder("a");
  std::string inner = files.makeFolder("a/b");
  std::string file = files.makeFile("a/c", "text");
  BareDesktop desktop;
  PanelSight sight = withFolder();

  PanelSight withFolder() const {
    PanelSight seen;
    seen.folder = folder;
    seen.hasLocatedEntries = true;
    seen.selectionKnown = true;
    return seen;
  }
  void select(const std::string& path) {
    sight.selection.assign(1, desktop.appHandle());
    sight.selected = path;
  }
  std::string proofOfFolder(const std::string& path) const {
    return Shown::proofText(proofOf(sight, {path, true}));
  }
  std::string proofOfFile(const std::string& path) const {
    return Shown::proofText(proofOf(sight, {path, false}));
  }
};

TEST(ProofOf, AFolderIsShown) {
  Seen seen;
  EXPECT_EQ(seen.proofOfFolder(seen.folder), "folder shown");
  EXPECT_EQ(seen.proofOfFolder(seen.inner), "none");
  EXPECT_EQ(seen.proofOfFolder(seen.files.path()), "none");
}

TEST(ProofOf, AnEntryIsSelected) {
  Seen seen;
  seen.select(seen.inner);
  EXPECT_EQ(seen.proofOfFolder(seen.inner), "entry selected");
  EXPECT_EQ(seen.proofOfFolder(seen.folder), "none");
  seen.select(seen.file);
  EXPECT_EQ(seen.proofOfFile(seen.file), "entry selected");
  EXPECT_EQ(seen.proofOfFolder(seen.folder), "none");
}

TEST(ProofOf, AFileIsNeverShown) {
  Seen seen;
  seen.sight.folder = seen.file;
  EXPECT_EQ(seen.proofOfFile(seen.file), "none");
}

TEST(ProofOf, NothingIsProvenWhileTheSelectionIsUnknown) {
  Seen seen;
  seen.sight.selectionKnown = false;
  EXPECT_EQ(seen.proofOfFolder(seen.folder), "none");
}

TEST(ProofOf, NothingIsProvenWithoutAFolder) {
  Seen seen;
  seen.sight.folder.reset();
  EXPECT_EQ(seen.proofOfFolder(seen.folder), "none");
}

TEST(ProofOf, NothingIsProvenByASelectionWithoutALocation) {
  Seen seen;
  seen.sight.selection.assign(1, seen.desktop.appHandle());
  EXPECT_EQ(seen.proofOfFolder(seen.folder), "none");
}

TEST(ProofOf, ASearchShowsNoFolder) {
  Seen seen;
  seen.sight.searching = true;
  EXPECT_EQ(seen.proofOfFolder(seen.folder), "none");
}

TEST(ProofOf, ThePopUpMayDisproveTheFolderAndNotProveIt) {
  Seen seen;
  seen.sight.folderName = "a";
  EXPECT_EQ(seen.proofOfFolder(seen.folder), "folder shown");
  EXPECT_EQ(seen.proofOfFolder(seen.inner), "none");
  seen.sight.folderName = "b";
  EXPECT_EQ(seen.proofOfFolder(seen.folder), "none");
  seen.sight.folder = "/";
  EXPECT_EQ(seen.proofOfFolder("/"), "none");
  seen.sight.folderName = fileManagerDisplayName("/");
  EXPECT_EQ(seen.proofOfFolder("/"), "folder shown") << "as the file browser calls it";
}

TEST(ProofOf, AFolderSelectedInAColumnMustBeCalledSo) {
  Seen seen;
  seen.sight.view = ListingView::columns;
  seen.select(seen.inner);
  seen.sight.folderName = "b";
  EXPECT_EQ(seen.proofOfFolder(seen.inner), "entry selected");
  seen.sight.folderName = "c";
  EXPECT_EQ(seen.proofOfFolder(seen.inner), "none");
}

TEST(ProofOf, ColumnsWithoutANameProveNoFolder) {
  Seen seen;
  EXPECT_EQ(seen.proofOfFolder(seen.folder), "folder shown");
  seen.sight.view = ListingView::columns;
  EXPECT_EQ(seen.proofOfFolder(seen.folder), "none");
  seen.select(seen.inner);
  EXPECT_EQ(seen.proofOfFolder(seen.inner), "none");
}

TEST(ProofOf, AFileSelectedInAColumnNeedNot) {
  Seen seen;
  seen.sight.view = ListingView::columns;
  seen.select(seen.file);
  seen.sight.folderName = "a";
  EXPECT_EQ(seen.proofOfFile(seen.file), "entry selected");
}

TEST(ProofOf, TheSameFileUnderAnotherPathIsTheSame) {
  Seen seen;
  const std::string link = seen.files.path() + "/link";
  std::filesystem::create_directory_symlink(seen.folder, link);
  seen.sight.folder = link;
  EXPECT_EQ(seen.proofOfFolder(seen.folder), "folder shown");
  seen.select(link + "/c");
  EXPECT_EQ(seen.proofOfFile(seen.file), "entry selected");
  seen.select(link + "/../a/b");
  EXPECT_EQ(seen.proofOfFolder(seen.inner), "entry selected");
}

// The target's own spelling is another one than that of the entries' locations.
TEST(ProofOf, TheFolderMayBeCalledAsInEitherSpelling) {
  Seen seen;
  const std::string link = seen.files.path() + "/link";
  std::filesystem::create_directory_symlink(seen.folder, link);
  seen.sight.folder = link;
  for (const char* name : {"link", "a"}) {
    seen.sight.folderName = name;
    EXPECT_EQ(seen.proofOfFolder(seen.folder), "folder shown") << name;
  }
  seen.sight.folderName = "b";
  EXPECT_EQ(seen.proofOfFolder(seen.folder), "none");
}

TEST(ProofOf, WhatDoesNotExistIsNeverProven) {
  Seen seen;
  const std::string missing = seen.files.path() + "/missing";
  seen.sight.folder = missing;
  EXPECT_EQ(seen.proofOfFolder(missing), "none");
  seen.select(missing);
  EXPECT_EQ(seen.proofOfFolder(missing), "none");
}

// --- Where an entry is. ---

TEST(EntryLocation, IsThatOfTheEntryItselfBeforeThatOfItsParts) {
  Shown shown;
  shown.fileEntry->set("AXURL", simulator::Url{"file:///usr/lib"});
  EXPECT_EQ(entryLocation(shown.panel.handle(*shown.fileEntry)), "/usr/lib");
  EXPECT_EQ(entryLocation(shown.panel.handle(*shown.otherEntry)), shown.other);
}

TEST(EntryLocation, IsAbsentForAnEntryThatNamesNone) {
  HandBuiltPanel panel;
  EXPECT_EQ(entryLocation(panel.handle(panel.addEntry(""))), std::nullopt);
}

TEST(EntryLocation, IsLookedForInTwelveElements) {
  const auto found = [](int before) {
    HandBuiltPanel panel;
    Node& row = panel.list->addChild("AXRow");
    for (int i = 0; i < before; ++i) row.addChild("AXStaticText");
    row.addChild("AXTextField").set("AXURL", simulator::Url{"file:///usr"});
    return entryLocation(panel.handle(row)).has_value();
  };
  EXPECT_TRUE(found(3));
  EXPECT_TRUE(found(10));
  EXPECT_FALSE(found(11));
}

TEST(EntryLocation, IsLookedForThreeLevelsBelowTheEntry) {
  const auto foundAt = [](int level) {
    HandBuiltPanel panel;
    Node& row = panel.list->addChild("AXRow");
    addChain(row, level).set("AXURL", simulator::Url{"file:///usr"});
    return entryLocation(panel.handle(row)).has_value();
  };
  EXPECT_TRUE(foundAt(3));
  EXPECT_FALSE(foundAt(4));
}

TEST(EntryLocation, ThrowsWhenAnElementDoesNotAnswer) {
  Shown shown;
  const Element entry = shown.panel.handle(*shown.otherEntry);
  shown.panel.desktop.faults().silent_processes.insert(browserPid);
  EXPECT_THROW(entryLocation(entry), Unanswered);
  std::vector<std::size_t> way;
  EXPECT_THROW(entryLocation(entry, way), Unanswered);
}

TEST(EntryLocation, LearnsTheWayFromTheFirstEntry) {
  Shown shown;
  const auto& record = shown.panel.desktop.record();
  const Element first = shown.panel.handle(*shown.targetEntry);
  const Element second = shown.panel.handle(*shown.otherEntry);
  std::vector<std::size_t> way;
  EXPECT_EQ(entryLocation(first, way), shown.target);
  EXPECT_EQ(way, (std::vector<std::size_t>{0, 1}));
  const auto before = record.accessibilityRequests();
  EXPECT_EQ(entryLocation(second, way), shown.other);
  EXPECT_LE(record.accessibilityRequests() - before, 3U);
}

TEST(EntryLocation, LearnsTheWayAnewWhereItLeadsNowhere) {
  Shown shown;
  std::vector<std::size_t> way{5, 2};
  EXPECT_EQ(entryLocation(shown.panel.handle(*shown.otherEntry), way), shown.other);
  EXPECT_EQ(way, (std::vector<std::size_t>{0, 1}));
  way = {0, 0};  // the image, which has no location
  EXPECT_EQ(entryLocation(shown.panel.handle(*shown.otherEntry), way), shown.other);
  EXPECT_EQ(entryLocation(shown.panel.handle(shown.panel.addEntry("")), way), std::nullopt);
}

// --- For people. ---

TEST(Describe, SaysWhatThePanelShows) {
  Seen seen;
  EXPECT_EQ(describe(seen.sight), seen.folder);
  seen.select(seen.file);
  EXPECT_EQ(describe(seen.sight), seen.folder + " with " + seen.file + " selected");
  seen.sight.selection.push_back(seen.desktop.appHandle());
  seen.sight.selected.reset();
  EXPECT_EQ(describe(seen.sight), seen.folder + " with several entries selected");
  seen.sight.selection.pop_back();
  EXPECT_EQ(describe(seen.sight), seen.folder + " with an entry without a location selected");
  seen.sight.selectionKnown = false;
  EXPECT_EQ(describe(seen.sight), seen.folder + " and does not say what is selected");
  PanelSight nothing;
  nothing.selectionKnown = true;
  EXPECT_EQ(describe(nothing), "a folder that it does not name");
  nothing.folderName = "Pictures";
  EXPECT_EQ(describe(nothing), "Pictures");
}

}  // namespace
}  // namespace tessarine::test::panel_sight
