// A person's clicks into a panel, and what lies over it.
#include "live/by_hand.h"

namespace tessarine::test {
namespace {

using Names = std::vector<std::string>;

TEST_F(Live, AClickOnARowSelectsIt) {
  for (const char* name : {"first", "second"}) folder().makeFolder(name);
  show({});
  click(axFrame(rowNamed(panel(), "second")).center());
  EXPECT_TRUE(soon([&] { return selectedNames(panel()) == Names{"second"}; }));
}

TEST_F(Live, AClickBelowTheRowsLeavesNothingSelected) {
  folder().makeFolder("inner");
  show({});
  selectName(panel(), "inner");
  const Rect row = axFrame(rowNamed(panel(), "inner"));
  click({row.midX(), row.y + 3 * row.height});
  EXPECT_TRUE(soon([&] { return selectedNames(panel()).empty(); }));
}

TEST_F(Live, WhatIsPostedToTheSessionIsNotCounted) {
  for (const char* name : {"first", "second"}) folder().makeFolder(name);
  show({});
  const std::uint64_t before = pressesByPeople();
  click(axFrame(rowNamed(panel(), "first")).center());
  ASSERT_TRUE(soon([&] { return selectedNames(panel()) == Names{"first"}; }));
  EXPECT_EQ(pressesByPeople(), before) << "the click";
  tapGlobalKey(key_down);
  ASSERT_TRUE(soon([&] { return selectedNames(panel()) == Names{"second"}; }));
  EXPECT_EQ(pressesByPeople(), before) << "the key";
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
