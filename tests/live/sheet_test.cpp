// A panel that is attached to a window, as browsers attach theirs.
#include <algorithm>

#include "live/by_hand.h"
#include "live/desktop.h"

namespace tessarine::test {
namespace {

TEST_F(Live, ASheetHasThePanelsIdentifierAndNoTitle) {
  show({.sheet = true});
  EXPECT_EQ(axRole(panel()), "AXSheet");
  EXPECT_EQ(axSubrole(panel()), "");
  EXPECT_EQ(axTitle(panel()), "");
}

// A Mac tells the titles of other programs' windows with the Screen Recording permission alone.
TEST_F(Live, TheWindowListNamesASheetAsItNamesAWindow) {
  show({.sheet = true});
  const Rect frame = axFrame(panel());
  const std::vector<ListedWindow> windows = ordinaryWindows();
  if (std::ranges::none_of(windows,
                           [](const ListedWindow& each) { return each.title.has_value(); })) {
    GTEST_SKIP() << "this program may not see other programs' windows";
  }
  const auto sheet = std::ranges::find_if(windows, [&](const ListedWindow& each) {
    return each.pid == application() && each.frame == frame;
  });
  ASSERT_NE(sheet, windows.end()) << "the window list does not show the sheet";
  EXPECT_EQ(sheet->title, "Open");
}

TEST_F(Live, TheConfirmButtonOfASheetChoosesTheFolderShown) {
  show({.sheet = true});
  tryAction("AXPress", byIdentifier(panel(), "OKButton"));
  EXPECT_EQ(end(), "chosen " + folder().path());
}

TEST_F(Live, ASheetCarriesTheGoToSheet) {
  const std::string inner = folder().makeFolder("inner");
  show({.sheet = true});
  goTo(panel(), keyTaker(), inner);
  EXPECT_TRUE(soon([&] { return folderShown(panel()) == "inner"; }));
}

}  // namespace
}  // namespace tessarine::test
