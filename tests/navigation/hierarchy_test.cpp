#include "navigation/hierarchy.h"

#include <gmock/gmock.h>

#include <functional>

#include "dialog/tree.h"
#include "support/transcript.h"

namespace tessarine::test {
namespace {

namespace ax = simulator::ax;
using simulator::Rect;
using simulator::Url;
using simulator::Value;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using Node = simulator::Element;

// A chooser with a location pop-up that shows "Disk", an empty sidebar and an empty list.
struct Chooser {
  BareDesktop world;
  Node& popup = add(world.app(), "popup", "AXPopUpButton", {{"AXValue", std::string("Disk")}});
  Node& sidebar =
      add(world.app(), "sidebar", "AXOutline", {{"AXDescription", std::string("边栏")}});
  Node& list = add(world.app(), "list", "AXOutline", {{"AXDescription", std::string("列表视图")}});

  Chooser() {
    list.makeSettable("AXSelectedRows", [this](const Value& rows) {
      list.set("AXSelectedRows", rows);
      return ax::success;
    });
  }
  void addPlace(const std::string& label, const std::string& path, double y) {
    Node& text = add(sidebar, label, "AXStaticText", {{"AXValue", label}});
    text.set("AXURL", Url{"file://" + path});
    text.setFrame(Rect{0, y, 100, 20});
  }
  Node& addFolder(const std::string& name) {
    Node& row = add(list, name + " row", "AXRow");
    return add(row, name, "AXTextField", {{"AXValue", name}});
  }
  void walk(const std::string& path, double seconds = 10, bool allowProcessEvents = true) {
    navigateByHierarchy(world.appHandle(), servicePid, path, seconds, allowProcessEvents);
  }
  std::optional<std::string> anchorFor(const std::string& path) {
    return anchorPathFromSidebar(world.appHandle(), servicePid, path, 1, true);
  }
  std::string failure(const std::string& path, double seconds) {
    return messageOf([&] { walk(path, seconds); });
  }
  void toVolume(const std::string& name, double seconds = 1) {
    navigateToVolume(world.appHandle(), name, seconds);
  }
  std::vector<std::string> deeds() const { return transcript(world.desktop.record()); }
};

// The list does not change, so the anchor is waited for in vain and the last folder selected.
TEST(NavigateByHierarchy, StartsAtTheDeepestOfSeveralPlacesAndOnlySelectsTheLastFolder) {
  Chooser chooser;
  chooser.addPlace("usr", "/usr", 0);
  chooser.addPlace("share", "/usr/share/", 40);
  chooser.addFolder("doc");
  chooser.walk("/usr/share/doc", 10);
  const auto deeds = chooser.deeds();
  ASSERT_EQ(deeds.size(), 4U);
  EXPECT_EQ(deeds[0], "0.000 mouse down 1 (50, 50) -> 900");
  EXPECT_EQ(deeds[1], "0.050 mouse up 1 (50, 50) -> 900");
  EXPECT_THAT(deeds[2], ::testing::EndsWith(" set AXSelectedRows of AXOutline in 812"));
  EXPECT_EQ(deeds[3], "0.000 set AXFocused of AXOutline in 812");
}

TEST(NavigateByHierarchy, TakesNeitherTheTargetNorAPlaceOfThatNameElsewhereForAnAnchor) {
  Chooser chooser;
  chooser.addPlace("lib", "/usr/lib", 0);
  chooser.addPlace("usr", "/srv/usr", 40);
  chooser.addPlace("Macintosh HD", "/", 80);
  EXPECT_EQ(chooser.anchorFor("/usr/lib"), std::nullopt);
  EXPECT_THAT(chooser.deeds(), IsEmpty());
}

TEST(NavigateByHierarchy, KnowsAPlaceByTheNameThatIsDisplayed) {
  Chooser chooser;
  chooser.world.desktop.setLanguage(simulator::Language::simplifiedChinese);
  chooser.addPlace("用户", "/Users", 0);
  EXPECT_EQ(chooser.anchorFor("/Users/me"), "/Users");
}

TEST(NavigateByHierarchy, LeavesThePlaceAsSoonAsTheListHasChangedOrAfterOneAndAHalfSeconds) {
  Chooser unchanged;
  unchanged.addPlace("usr", "/usr", 0);
  unchanged.addFolder("lib");
  unchanged.walk("/usr/lib");
  EXPECT_GE(unchanged.world.now(), 1.5);
  EXPECT_LT(unchanged.world.now(), 1.7);

  Chooser shortOfTime;
  shortOfTime.addPlace("usr", "/usr", 0);
  shortOfTime.addFolder("lib");
  shortOfTime.walk("/usr/lib", 1);
  EXPECT_GE(shortOfTime.world.now(), 1.0);
  EXPECT_LT(shortOfTime.world.now(), 1.2);

  Chooser changed;
  changed.addPlace("usr", "/usr", 0);
  changed.world.desktop.schedule(0.5, [&] { changed.addFolder("lib"); });
  changed.walk("/usr/lib");
  EXPECT_LT(changed.world.now(), 0.7);
}

// The volume's name is shown already.
TEST(NavigateByHierarchy, StartsAtTheVolumeWhereNoPlaceHoldsTheFolder) {
  Chooser chooser;
  chooser.world.desktop.addVolume("/", "Disk");
  chooser.addFolder("usr");
  chooser.walk("/usr");
  EXPECT_THAT(chooser.deeds(), ElementsAre("0.150 set AXSelectedRows of AXOutline in 812",
                                           "0.000 set AXFocused of AXOutline in 812"));
}

TEST(NavigateByHierarchy, OnlyVerifiesTheVolumeItself) {
  Chooser chooser;
  chooser.world.desktop.addVolume("/", "Disk");
  chooser.walk("/");
  EXPECT_THAT(chooser.deeds(), IsEmpty());

  for (const auto& [seconds, waited] : {std::pair{10.0, "2.0"}, {1.0, "1.0"}}) {
    Chooser left;
    left.world.desktop.addVolume("/", "Disk");
    left.world.desktop.schedule(0.1, [&] { left.popup.set("AXValue", std::string("Backup")); });
    EXPECT_EQ(left.failure("/", seconds), "timed out after " + std::string(waited) + "s");
  }
}

// --- Another volume than the boot volume. ---

// A chooser that shows "Disk", the boot volume, with a menu that leads to "My Backup". There the
// folder "a", listed under another name, holds "b".
struct TwoVolumes : Chooser {
  TwoVolumes() {
    world.desktop.addVolume("/", "Disk");
    world.desktop.addVolume("/Volumes/Backup", "My Backup");
    popup.addAction("AXShowMenu", [] { return ax::success; });
    Node& item = add(popup, "item", "AXMenuItem", {{"AXTitle", std::string("My Backup")}});
    item.addAction("AXPick", [this] { return showBackup(), ax::success; });
  }
  void showBackup() {
    popup.set("AXValue", std::string("My Backup"));
    Node& folder = addFolder("Anna");
    folder.set("AXURL", Url{"file:///Volumes/Backup/a/"});
    folder.addAction("AXOpen", [this] {
      popup.set("AXValue", std::string("a"));
      addFolder("b");
      return ax::success;
    });
  }
};

const std::vector<std::string> menuToBackup{"0.000 AXShowMenu of AXPopUpButton in 812",
                                            "0.000 AXPick of AXMenuItem in 812"};

TEST(NavigateByHierarchy, WalksFromAnotherVolumeAndFromNoFolderAboveIt) {
  TwoVolumes chooser;
  chooser.walk("/Volumes/Backup/a/b", 10, false);
  EXPECT_THAT(chooser.deeds(),
              ElementsAre(menuToBackup[0], menuToBackup[1], "0.150 AXOpen of AXTextField in 812",
                          "0.060 set AXSelectedRows of AXOutline in 812",
                          "0.000 set AXFocused of AXOutline in 812",
                          "0.200 set AXSelectedRows of AXOutline in 812",
                          "0.000 set AXFocused of AXOutline in 812"));
}

TEST(NavigateByHierarchy, OpensNoMenuWhereTheOtherVolumeIsShownAlready) {
  TwoVolumes chooser;
  chooser.showBackup();
  chooser.addFolder("notes");
  chooser.walk("/Volumes/Backup/notes");
  EXPECT_THAT(chooser.deeds(), ElementsAre("0.150 set AXSelectedRows of AXOutline in 812",
                                           "0.000 set AXFocused of AXOutline in 812"));
}

TEST(NavigateByHierarchy, PicksAndVerifiesTheOtherVolumeItself) {
  TwoVolumes chooser;
  chooser.walk("/Volumes/Backup/");
  EXPECT_EQ(chooser.deeds(), menuToBackup);
}

// The folder of the volumes lies on the boot volume, which is shown.
TEST(NavigateByHierarchy, TakesTheFolderOfTheVolumesForOneOfTheBootVolume) {
  TwoVolumes chooser;
  chooser.addFolder("Volumes");
  chooser.walk("/Volumes");
  EXPECT_THAT(chooser.deeds(), ElementsAre("0.150 set AXSelectedRows of AXOutline in 812",
                                           "0.000 set AXFocused of AXOutline in 812"));
}

// Two rows of the sidebar, the second with the volume at its height.
struct VolumePlaces : TwoVolumes {
  VolumePlaces() {
    addPlace("Volumes", "/Volumes", 0);
    addPlace("My Backup", "/Volumes/Backup", 40);
  }
};

TEST(NavigateByHierarchy, StartsAtAnotherVolumeInTheSidebar) {
  VolumePlaces chooser;
  chooser.addFolder("notes");
  chooser.walk("/Volumes/Backup/notes");
  EXPECT_THAT(chooser.deeds(),
              ElementsAre("0.000 mouse down 1 (50, 50) -> 900", "0.050 mouse up 1 (50, 50) -> 900",
                          ::testing::EndsWith(" set AXSelectedRows of AXOutline in 812"),
                          "0.000 set AXFocused of AXOutline in 812"));
}

TEST(NavigateByHierarchy, FindsTheDeepestPlaceAboveAFolderOfAnotherVolume) {
  VolumePlaces chooser;
  EXPECT_EQ(chooser.anchorFor("/Volumes/Backup/a/b"), "/Volumes/Backup");
  EXPECT_EQ(chooser.anchorFor("/Volumes/Backup"), "/Volumes");
  EXPECT_EQ(chooser.anchorFor("/Volumes/Other/a"), "/Volumes");
  EXPECT_EQ(chooser.anchorFor("/Volumes"), std::nullopt);
}

TEST(NavigateByHierarchy, DoesNotLookForAnotherVolumesFoldersOnTheBootVolume) {
  TwoVolumes chooser;
  chooser.showBackup();
  chooser.list.removeChildren();
  for (const char* name : {"Volumes", "Backup"}) chooser.addFolder(name);
  EXPECT_EQ(chooser.failure("/Volumes/Backup/a", 1), "timed out after 1.0s");
  EXPECT_THAT(chooser.deeds(), IsEmpty());
}

// --- Folders on the way. ---

// A chooser with the place "/usr" whose folder "share" does something when it is opened.
struct OnTheWay : Chooser {
  explicit OnTheWay(const std::function<void()>& opened) {
    addPlace("usr", "/usr", 0);
    addFolder("share").addAction("AXOpen", [opened] {
      opened();
      return ax::success;
    });
  }
};

TEST(NavigateByHierarchy, GoesOnWhenThePopupShowsTheOpenedFolder) {
  OnTheWay chooser([&] { chooser.popup.set("AXValue", std::string("share")); });
  chooser.addFolder("doc");
  chooser.walk("/usr/share/doc");
  // Return is followed by 0.08 s, the folder's arrival by 0.2 s.
  const auto deeds = chooser.deeds();
  ASSERT_GE(deeds.size(), 2U);
  EXPECT_EQ(deeds[deeds.size() - 2], "0.280 set AXSelectedRows of AXOutline in 812");
}

TEST(NavigateByHierarchy, GoesOnWhenTheListHasChanged) {
  OnTheWay chooser([&] { chooser.addFolder("doc"); });
  chooser.walk("/usr/share/doc");
  EXPECT_EQ(chooser.deeds().back(), "0.000 set AXFocused of AXOutline in 812");
}

TEST(NavigateByHierarchy, PostsNothingWhereThatIsNotAllowed) {
  OnTheWay chooser([&] { chooser.addFolder("doc"); });
  chooser.walk("/usr/share/doc", 10, false);
  EXPECT_THAT(postedEventKinds(chooser.world.desktop.record()), IsEmpty());
}

// --- The last folder. ---

TEST(NavigateByHierarchy, IsDoneWhenThePopupShowsTheFolderThoughNothingIsSelected) {
  Chooser chooser;
  chooser.addPlace("usr", "/usr", 0);
  chooser.addFolder("lib");
  chooser.list.makeSettable("AXSelectedRows", [](const Value&) { return ax::success; });
  chooser.popup.set("AXValue", std::string("lib"));
  EXPECT_NO_THROW(chooser.walk("/usr/lib"));
}

TEST(NavigateByHierarchy, KnowsTheRowByItsLocationUnderAnotherName) {
  Chooser chooser;
  chooser.addPlace("usr", "/usr", 0);
  chooser.addFolder("Bibliothek").set("AXURL", Url{"file:///usr/lib/"});
  chooser.popup.set("AXValue", std::string("lib"));
  chooser.walk("/usr/lib");
  EXPECT_EQ(chooser.deeds().back(), "0.000 set AXFocused of AXOutline in 812");
}

TEST(NavigateByHierarchy, FailsAfterTheCapOfEachWait) {
  for (const auto& [seconds, row, open, select] :
       {std::tuple{10.0, "2.5", "2.0", "1.5"}, {1.0, "1.0", "1.0", "1.0"}}) {
    Chooser withoutRow;
    withoutRow.addPlace("usr", "/usr", 0);
    EXPECT_EQ(withoutRow.failure("/usr/lib", seconds), "timed out after " + std::string(row) + "s");
    EXPECT_THAT(sleepLengths(withoutRow.world.desktop.record()), ElementsAre("0.05", "0.1"));

    Chooser staysShut;
    staysShut.addPlace("usr", "/usr", 0);
    staysShut.addFolder("share");
    EXPECT_EQ(staysShut.failure("/usr/share/doc", seconds),
              "timed out after " + std::string(open) + "s");

    Chooser unselectable;
    unselectable.addPlace("usr", "/usr", 0);
    unselectable.addFolder("lib");
    unselectable.list.makeSettable("AXSelectedRows", [](const Value&) { return ax::success; });
    EXPECT_EQ(unselectable.failure("/usr/lib", seconds),
              "timed out after " + std::string(select) + "s");
  }
}

TEST(NavigateToVolume, NeedsALocationPopup) {
  BareDesktop world;
  EXPECT_EQ(messageOf([&] { navigateToVolume(world.appHandle(), "Disk", 1); }),
            "location popup not found in open dialog");
}

TEST(NavigateToVolume, OpensNoMenuWhenTheVolumeIsShownAlready) {
  Chooser chooser;
  chooser.toVolume("Disk");
  EXPECT_THAT(chooser.deeds(), IsEmpty());
}

TEST(NavigateToVolume, PassesOnThatTheMenuIsRefused) {
  Chooser chooser;
  chooser.popup.addAction("AXShowMenu", [] { return ax::cannotComplete; });
  EXPECT_EQ(messageOf([&] { chooser.toVolume("Backup"); }), "AX action AXShowMenu failed: -25204");
}

TEST(NavigateToVolume, PicksTheItemOrPressesIt) {
  for (const std::vector<std::string>& actions :
       {std::vector<std::string>{"AXPress", "AXPick"}, {"AXPress"}}) {
    Chooser chooser;
    chooser.popup.addAction("AXShowMenu", [] { return ax::success; });
    Node& item = add(chooser.popup, "item", "AXMenuItem", {{"AXTitle", std::string("Backup")}});
    for (const auto& action : actions) {
      item.addAction(action, [&chooser] {
        chooser.popup.set("AXValue", std::string("Backup"));
        return ax::success;
      });
    }
    chooser.toVolume("Backup");
    EXPECT_THAT(chooser.deeds(), ElementsAre("0.000 AXShowMenu of AXPopUpButton in 812",
                                             "0.000 " + actions.back() + " of AXMenuItem in 812"));
  }
}

TEST(NavigateToVolume, FailsWithoutAnItemWithAnItemWithoutActionsAndWithOneThatDoesNothing) {
  Chooser chooser;
  chooser.popup.addAction("AXShowMenu", [] { return ax::success; });
  EXPECT_EQ(messageOf([&] { chooser.toVolume("Backup", 0.5); }), "timed out after 0.5s");
  Node& item = add(chooser.popup, "item", "AXMenuItem", {{"AXTitle", std::string("Backup")}});
  EXPECT_EQ(messageOf([&] { chooser.toVolume("Backup"); }),
            "menu item does not support AXPick/AXPress");
  item.addAction("AXPress", [] { return ax::success; });
  EXPECT_EQ(messageOf([&] { chooser.toVolume("Backup"); }), "timed out after 1.0s");
  EXPECT_THAT(sleepLengths(chooser.world.desktop.record()), ElementsAre("0.15"));
}

}  // namespace
}  // namespace tessarine::test
