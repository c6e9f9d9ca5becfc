// Choosing and cancelling, by buttons, keys and clicks.
#include "live/by_hand.h"

namespace tessarine::test {
namespace {

TEST_F(Live, TheConfirmButtonChoosesTheFolderShown) {
  show({});
  tryAction("AXPress", byIdentifier(panel(), "OKButton"));
  EXPECT_EQ(end(), "chosen " + folder().path());
}

TEST_F(Live, ASelectedFolderIsChosenInsteadOfTheFolderShown) {
  const std::string inner = folder().makeFolder("inner");
  show({});
  selectName(panel(), "inner");
  tryAction("AXPress", byIdentifier(panel(), "OKButton"));
  EXPECT_EQ(end(), "chosen " + inner);
}

TEST_F(Live, AFilePanelConfirmsNothingWhileNothingIsSelected) {
  folder().makeFile("one.txt");
  show({.files = true});
  EXPECT_FALSE(axIsTrue(byIdentifier(panel(), "OKButton"), "AXEnabled"));
  tapKey(keyTaker(), key_return, 0, {}, 0.5);
  EXPECT_EQ(outcome(), "open");
  EXPECT_TRUE(stillTakesKeys(keyTaker(), [this] { return end(); }));
}

TEST_F(Live, APressOfADisabledButtonHasNoEffect) {
  folder().makeFile("one.txt");
  show({.files = true});
  EXPECT_TRUE(tryAction("AXPress", byIdentifier(panel(), "OKButton")));
  tapKey(keyTaker(), key_escape, 0, {}, 0);
  EXPECT_EQ(end(), "cancelled");
}

}  // namespace
}  // namespace tessarine::test
