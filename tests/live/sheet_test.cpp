// A panel that is attached to a window, as browsers attach theirs.
#include "live/by_hand.h"

namespace tessarine::test {
namespace {

TEST_F(Live, ASheetHasThePanelsIdentifierAndNoTitle) {
  show({.sheet = true});
  EXPECT_EQ(axRole(panel()), "AXSheet");
  EXPECT_EQ(axSubrole(panel()), "");
  EXPECT_EQ(axTitle(panel()), "");
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
