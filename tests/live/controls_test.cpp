// The panel's controls: the title bar's buttons, the search field, the menu of locations.
#include <gmock/gmock.h>

#include <algorithm>

#include "live/live.h"
#include "platform/accessibility.h"
#include "platform/files.h"
#include "platform/wait.h"

namespace tessarine::test {
namespace {

constexpr double menuSeconds = 3;

Element titleBarButton(const Element& panel, const std::string& subrole) {
  for (const Element& child : axChildren(panel)) {
    if (axSubrole(child) == subrole) return child;
  }
  throw std::runtime_error("the title bar has no " + subrole);
}

// Opens the menu of locations, reads its items, closes it.
std::vector<std::string> locationMenu(const Element& panel) {
  const Element where = byIdentifier(panel, "where popup");
  const auto items = [&] {
    return elementsBelow(where, [](const Element& each) { return axRole(each) == "AXMenuItem"; });
  };
  tryAction("AXShowMenu", where);
  if (!pollUntil(menuSeconds, 0.1, [&] { return !items().empty(); })) {
    throw std::runtime_error("no menu opened");
  }
  std::vector<std::string> titles;
  for (const Element& item : items()) titles.push_back(axTitle(item));
  tryAction("AXCancel", byRole(where, "AXMenu"));
  return titles;
}

std::ptrdiff_t position(const std::vector<std::string>& titles, const std::string& title) {
  return std::ranges::find(titles, title) - titles.begin();
}

TEST_F(Live, AWindowPanelCanBeClosedAndNeitherMinimisedNorZoomed) {
  show({});
  EXPECT_TRUE(axIsTrue(titleBarButton(panel(), "AXCloseButton"), "AXEnabled"));
  EXPECT_FALSE(axIsTrue(titleBarButton(panel(), "AXMinimizeButton"), "AXEnabled"));
  EXPECT_FALSE(axIsTrue(titleBarButton(panel(), "AXZoomButton"), "AXEnabled"));
}

TEST_F(Live, ClosingThePanelCancelsIt) {
  show({});
  tryAction("AXPress", titleBarButton(panel(), "AXCloseButton"));
  EXPECT_EQ(end(), "cancelled");
}

TEST_F(Live, APressOfTheDisabledBackButtonSucceedsAndHasNoEffect) {
  show({});
  const auto buttons = elementsBelow(panel(), [](const Element& each) {
    return axRole(each) == "AXButton" && axDescription(each) == "back";
  });
  ASSERT_THAT(buttons, ::testing::SizeIs(1));
  EXPECT_FALSE(axIsTrue(buttons.front(), "AXEnabled"));
  EXPECT_TRUE(tryAction("AXPress", buttons.front()));
  EXPECT_FALSE(pollUntil(1, 0.1, [&] {
    return axInputValue(byIdentifier(panel(), "where popup")) != lastPathComponent(folder().path());
  }));
}

TEST_F(Live, SearchResultsAppearWithinNineTenthsOfASecond) {
  folder().makeFile("apple.txt");
  folder().makeFile("pear.txt");
  show({.files = true});
  ASSERT_TRUE(pollUntil(5, 0.1, [&] { return listedNames(panel()).size() == 2; }));
  setText(byIdentifier(panel(), "Search"), "AXValue", "apple");
  EXPECT_TRUE(pollUntil(0.9, 0.05, [&] { return listedNames(panel()).size() == 1; }));
  EXPECT_EQ(listedNames(panel()), std::vector<std::string>{"apple.txt"});
}

TEST_F(Live, OtherVolumesFollowTheFoldersInTheLocationMenuByTheirPaths) {
  show({.volumes = {"Tessarine B", "Tessarine A"}});
  const std::vector<std::string> titles = locationMenu(panel());
  const auto folders = static_cast<std::ptrdiff_t>(pathComponents(folder().path()).size());
  EXPECT_EQ(position(titles, lastPathComponent(folder().path())), 0);
  EXPECT_THAT(titles, ::testing::IsSupersetOf({"Tessarine A", "Tessarine B"}));
  EXPECT_GE(position(titles, "Tessarine A"), folders);
  EXPECT_LT(position(titles, "Tessarine A"), position(titles, "Tessarine B"));
}

}  // namespace
}  // namespace tessarine::test
