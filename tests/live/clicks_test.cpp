// Clicks into a panel: whom they are posted to, and what lies over it.
#include "live/by_hand.h"

namespace tessarine::test {
namespace {

TEST_F(Live, AClickPostedToTheApplicationReachesThePanel) {
  show({});
  clickElement(application(), byIdentifier(panel(), "CancelButton"));
  EXPECT_EQ(end(), "cancelled");
}

TEST_F(Live, AClickPostedToTheServiceReachesThePanel) {
  show({});
  if (!stage().service()) GTEST_SKIP() << "no service draws the panel";
  clickElement(*stage().service(), byIdentifier(panel(), "CancelButton"));
  EXPECT_EQ(end(), "cancelled");
}

TEST_F(Live, AClickBesideAnOpenMenuClosesIt) {
  show({});
  const Point beside = blankPoint(panel());
  const Element menu = openedMenu(panel());
  ASSERT_FALSE(covers(menu, beside));
  click(beside);
  EXPECT_TRUE(soon([&] { return openMenus(panel()).empty(); }));
}

TEST_F(Live, AClickBesideTheGoToSheetDoesNothing) {
  show({});
  openedPathField(panel(), keyTaker());
  const Point cancel = axFrame(byIdentifier(panel(), "CancelButton")).center();
  ASSERT_FALSE(covers(*goToSheet(), cancel));
  click(cancel);
  letThingsSettle();
  EXPECT_EQ(outcome(), "open");
  EXPECT_TRUE(goToSheet());
}

}  // namespace
}  // namespace tessarine::test
