#include "navigation/hierarchy.h"

#include <gmock/gmock.h>

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
  void walk(const std::string& path, double seconds) {
    navigateByHierarchy(world.appHandle(), servicePid, path, seconds, true);
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
  EXPECT_EQ(anchorPathFromSidebar(chooser.world.appHandle(), servicePid, "/usr/lib", 1, true),
            std::nullopt);
  EXPECT_THAT(chooser.deeds(), IsEmpty());
}

TEST(NavigateByHierarchy, FailsAfterTheCapOfEachWait) {
  for (const auto& [seconds, row, open, select] :
       {std::tuple{10.0, "2.5", "2.0", "1.5"}, {1.0, "1.0", "1.0", "1.0"}}) {
    Chooser withoutRow;
    withoutRow.addPlace("usr", "/usr", 0);
    EXPECT_EQ(withoutRow.failure("/usr/lib", seconds), "timed out after " + std::string(row) + "s");

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
