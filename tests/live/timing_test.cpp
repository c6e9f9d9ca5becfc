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

TEST_F(Live, ADoubleClickedFolderIsShownWithinHalfASecond) {
  folder().makeFolder("inner");
  show({});
  const Point row = axFrame(rowNamed(panel(), "inner")).center();
  doubleClick(row);
  EXPECT_TRUE(pollUntil(0.5, 0.02, [&] { return folderShown(panel()) == "inner"; }));
}

TEST_F(Live, ThePanelsWindowIsGoneWithinHalfASecondOfTheConfirmation) {
  show({});
  const int before = listedWindows(application());
  tryAction("AXPress", byIdentifier(panel(), "OKButton"));
  ASSERT_NE(end(), "open");
  EXPECT_TRUE(pollUntil(0.5, 0.02, [&] { return listedWindows(application()) == before - 1; }));
}

}  // namespace
}  // namespace tessarine::test
