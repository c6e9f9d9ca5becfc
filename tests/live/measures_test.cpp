// Where the parts of a panel stand, roughly: whoever clicks into a panel that cannot be read counts
// on it.
#include "live/live.h"
#include "platform/accessibility.h"

namespace tessarine::test {
namespace {

struct Sides {
  double left;
  double top;
  double right;
  double bottom;
};

Sides sidesOf(const Element& element) {
  const Rect frame = axFrame(element);
  return {frame.x, frame.y, frame.x + frame.width, frame.y + frame.height};
}

// The list of places: the first outline.
Element sidebar(const Element& panel) {
  return byRole(panel, "AXOutline");
}

TEST_F(Live, TheTwoButtonsStandAtTheLowerRight) {
  show({});
  const Sides whole = sidesOf(panel());
  const Sides confirm = sidesOf(byIdentifier(panel(), "OKButton"));
  const Sides cancel = sidesOf(byIdentifier(panel(), "CancelButton"));
  EXPECT_NEAR(whole.right - confirm.right, 20, 8);
  EXPECT_NEAR(whole.bottom - confirm.bottom, 20, 8);
  EXPECT_NEAR(confirm.right - confirm.left, 84, 28);
  EXPECT_NEAR(confirm.bottom - confirm.top, 24, 8);
  EXPECT_NEAR(confirm.left - cancel.right, 12, 8);
  EXPECT_EQ(cancel.top, confirm.top);
}

TEST_F(Live, TheSidebarTakesAbout160PointsAtTheLeft) {
  show({});
  const Sides whole = sidesOf(panel());
  const Sides places = sidesOf(sidebar(panel()));
  EXPECT_NEAR(places.left - whole.left, 0, 12);
  EXPECT_NEAR(places.right - whole.left, 160, 50);
  EXPECT_NEAR(sidesOf(byIdentifier(panel(), "ListView")).left - places.right, 0, 20);
}

TEST_F(Live, TheListStandsBetweenTheBars) {
  show({});
  const Sides whole = sidesOf(panel());
  // The list itself may be longer than what is shown of it.
  const auto parent = axParent(byIdentifier(panel(), "ListView"));
  ASSERT_TRUE(parent);
  const Sides list = sidesOf(*parent);
  EXPECT_NEAR(list.top - whole.top, 28 + 44, 20);
  EXPECT_NEAR(whole.bottom - list.bottom, 56, 16);
  EXPECT_NEAR(whole.right - list.right, 0, 12);
}

TEST_F(Live, TheSearchFieldEndsTheToolBar) {
  show({});
  const Sides whole = sidesOf(panel());
  const Sides search = sidesOf(byIdentifier(panel(), "Search"));
  EXPECT_NEAR(whole.right - search.right, 20, 12);
  EXPECT_NEAR(search.right - search.left, 180, 60);
  EXPECT_NEAR((search.top + search.bottom) / 2 - whole.top, 28 + 22, 16);
}

TEST_F(Live, ThePlacesOfTheSidebarAreAbout24PointsHigh) {
  show({});
  const auto rows = elementsBelow(
      sidebar(panel()), [](const Element& element) { return axRole(element) == "AXRow"; });
  ASSERT_FALSE(rows.empty());
  for (const Element& row : rows) EXPECT_NEAR(axFrame(row).height, 24, 6);
}

}  // namespace
}  // namespace tessarine::test
