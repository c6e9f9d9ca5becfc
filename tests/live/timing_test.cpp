// How long a panel takes.
#include "live/by_hand.h"

namespace tessarine::test {
namespace {

TEST_F(Live, TheListComesWithinASecondOfThePanel) {
  show({.untilComplete = false});
  const Element root = Element::application(application());
  ASSERT_TRUE(pollUntil(15, 0.02, [&] { return isThere(root, "open-panel"); }));
  EXPECT_TRUE(pollUntil(1, 0.02, [&] { return isThere(root, "ListView"); }));
}

TEST_F(Live, ADoubleClickedFolderIsShownWithinThreeTenthsOfASecond) {
  folder().makeFolder("inner");
  show({});
  const Point row = axFrame(rowNamed(panel(), "inner")).center();
  const Element where = byIdentifier(panel(), "where popup");
  doubleClick(row);
  EXPECT_TRUE(pollUntil(0.3, 0.01, [&] { return axInputValue(where) == "inner"; }));
}

TEST_F(Live, ThePanelsWindowIsGoneWithin60MillisecondsOfTheConfirmation) {
  show({});
  const int before = listedWindows(application());
  tryAction("AXPress", byIdentifier(panel(), "OKButton"));
  EXPECT_TRUE(pollUntil(0.06, 0.005, [&] { return listedWindows(application()) == before - 1; }));
  EXPECT_NE(end(), "open");
}

}  // namespace
}  // namespace tessarine::test
