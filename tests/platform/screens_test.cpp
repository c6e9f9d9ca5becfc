// Rectangles by the platform's rules, and which points are on a screen.
#include "platform/screens.h"

#include "support/world.h"

namespace tessarine::test {
namespace {

TEST(Screens, ARectangleContainsItsLeftAndTopEdgesButNotTheOthers) {
  const Rect rect{10, 20, 30, 40};
  EXPECT_TRUE(rectContains(rect, {10, 20}));
  EXPECT_TRUE(rectContains(rect, {39.9, 59.9}));
  EXPECT_FALSE(rectContains(rect, {40, 30}));
  EXPECT_FALSE(rectContains(rect, {20, 60}));
  EXPECT_FALSE(rectContains(rect, {9.9, 30}));
}

TEST(Screens, AnEmptyRectangleContainsNothing) {
  EXPECT_FALSE(rectContains({10, 20, 0, 40}, {10, 20}));
}

TEST(Screens, RectanglesAreEqualInAllFourNumbers) {
  const Rect rect{1, 2, 3, 4};
  EXPECT_TRUE(rectsEqual(rect, {1, 2, 3, 4}));
  for (const Rect& other : {Rect{0, 2, 3, 4}, {1, 0, 3, 4}, {1, 2, 0, 4}, {1, 2, 3, 0}}) {
    EXPECT_FALSE(rectsEqual(rect, other));
  }
}

TEST(Screens, OverlappingRectanglesHaveACommonPart) {
  const Rect first{0, 0, 100, 100};
  const Rect second{80, -10, 100, 50};
  EXPECT_TRUE(rectsIntersect(first, second));
  EXPECT_EQ(rectIntersection(first, second), (Rect{80, 0, 20, 40}));
}

TEST(Screens, RectanglesApartHaveNone) {
  const Rect first{0, 0, 100, 100};
  const Rect second{101, 0, 100, 100};
  EXPECT_FALSE(rectsIntersect(first, second));
  EXPECT_EQ(rectIntersection(first, second), std::nullopt);
}

TEST(Screens, APointIsOnAnyOfTheScreens) {
  BareDesktop world;
  world.desktop.setScreens({{0, 0, 1440, 900}, {-1280, 0, 1280, 900}});
  EXPECT_TRUE(pointIsOnScreen({0, 0}));
  EXPECT_TRUE(pointIsOnScreen({-1280, 899}));
  EXPECT_FALSE(pointIsOnScreen({1440, 0}));
  EXPECT_FALSE(pointIsOnScreen({0, 900}));
}

// The second screen's top edge is the first one's: counted from the bottom it spans 180 to 900.
TEST(Screens, APointIsComparedWithScreensCountedFromTheBottom) {
  BareDesktop world;
  world.desktop.setScreens({{0, 0, 1440, 900}, {1440, 0, 1280, 720}});
  EXPECT_FALSE(pointIsOnScreen({1500, 100}));
  EXPECT_TRUE(pointIsOnScreen({1500, 800}));
}

TEST(Screens, TheMainDisplayIsTheFirstScreen) {
  BareDesktop world;
  world.desktop.setScreens({{0, 0, 1680, 1050}, {1680, 0, 1280, 720}});
  EXPECT_EQ(mainDisplayBounds(), (Rect{0, 0, 1680, 1050}));
}

}  // namespace
}  // namespace tessarine::test
