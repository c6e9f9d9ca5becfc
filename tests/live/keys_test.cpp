// Keys on a panel: in its list, with a menu open, and in the background.
#include <gmock/gmock.h>

#include "live/by_hand.h"
#include "live/desktop.h"
#include "platform/files.h"

namespace tessarine::test {
namespace {

using ::testing::IsEmpty;

using Names = std::vector<std::string>;

TEST_F(Live, DownArrowSelectsTheFirstRow) {
  for (const char* name : {"first", "second", "third"}) folder().makeFolder(name);
  show({});
  press(keyTaker(), key_down);
  EXPECT_TRUE(soon([&] { return selectedNames(panel()) == Names{"first"}; }));
}

TEST_F(Live, UpArrowSelectsTheLastRow) {
  for (const char* name : {"first", "second", "third"}) folder().makeFolder(name);
  show({});
  press(keyTaker(), key_up);
  EXPECT_TRUE(soon([&] { return selectedNames(panel()) == Names{"third"}; }));
}

TEST_F(Live, ArrowsPassOverWhatCannotBeSelected) {
  for (const char* name : {"first", "third"}) folder().makeFolder(name);
  folder().makeFile("second.txt");
  show({});
  press(keyTaker(), key_down);
  press(keyTaker(), key_down);
  EXPECT_TRUE(soon([&] { return selectedNames(panel()) == Names{"third"}; }));
}

TEST_F(Live, KeysPostedToAPanelAreNotCounted) {
  folder().makeFolder("first");
  show({});
  const std::uint64_t before = pressesByPeople();
  press(keyTaker(), key_down);
  ASSERT_TRUE(soon([&] { return selectedNames(panel()) == Names{"first"}; }));
  EXPECT_EQ(pressesByPeople(), before);
}

TEST_F(Live, DownArrowStaysAtTheLastRow) {
  for (const char* name : {"first", "second"}) folder().makeFolder(name);
  show({});
  for (int i = 0; i < 3; ++i) press(keyTaker(), key_down);
  letThingsSettle();
  EXPECT_EQ(selectedNames(panel()), Names{"second"});
}

TEST_F(Live, ABackgroundPanelHasNoKeyboardUntilItIsClicked) {
  folder().makeFolder("inner");
  show({.inFront = false});
  press(keyTaker(), key_down);
  letThingsSettle();
  EXPECT_THAT(selectedNames(panel()), IsEmpty());
  // Keys do reach the panel.
  press(keyTaker(), key_escape);
  EXPECT_EQ(end(), "cancelled");
}

TEST_F(Live, TheFirstClickInABackgroundPanelGivesItsListTheKeyboard) {
  folder().makeFolder("inner");
  show({.inFront = false});
  const Point blank = blankPoint(panel());
  if (!uncovered(panel(), {application(), keyTaker()}, blank)) GTEST_SKIP() << "it is covered";
  click(blank);
  press(keyTaker(), key_down);
  EXPECT_TRUE(soon([&] { return selectedNames(panel()) == Names{"inner"}; }));
}

TEST_F(Live, FocusingTheListGivesABackgroundPanelTheKeyboard) {
  folder().makeFolder("inner");
  show({.inFront = false});
  setTrue(byIdentifier(panel(), "ListView"), "AXFocused");
  press(keyTaker(), key_down);
  EXPECT_TRUE(soon([&] { return selectedNames(panel()) == Names{"inner"}; }));
}

TEST_F(Live, ReturnConfirmsABackgroundPanelThatNobodyClicked) {
  show({.inFront = false});
  press(keyTaker(), key_return);
  EXPECT_EQ(end(), "chosen " + folder().path());
}

TEST_F(Live, CommandDownOpensASelectedFolder) {
  folder().makeFolder("inner/deep");
  show({});
  selectName(panel(), "inner");
  press(keyTaker(), key_down, command_key);
  EXPECT_TRUE(soon([&] { return listedNames(panel()) == Names{"deep"}; }));
  EXPECT_EQ(outcome(), "open");
}

// Unfolded or not, the folder shown and what is selected in it are what they were.
TEST_F(Live, RightArrowOnAFolderLeadsNowhere) {
  folder().makeFolder("inner/deep");
  show({});
  const std::string before = folderShown(panel());
  selectName(panel(), "inner");
  press(keyTaker(), key_right);
  letThingsSettle();
  EXPECT_EQ(folderShown(panel()), before);
  EXPECT_EQ(selectedNames(panel()), Names{"inner"});
  EXPECT_EQ(outcome(), "open");
  EXPECT_TRUE(stillTakesKeys(keyTaker(), [this] { return end(); }));
}

TEST_F(Live, CommandAInTheListSelectsNothingMore) {
  for (const char* name : {"one.txt", "two.txt"}) folder().makeFile(name);
  show({.files = true});
  selectName(panel(), "two.txt");
  press(keyTaker(), key_a, command_key);
  letThingsSettle();
  EXPECT_EQ(selectedNames(panel()), Names{"two.txt"});
  EXPECT_TRUE(stillTakesKeys(keyTaker(), [this] { return end(); }));
}

TEST_F(Live, DeleteInTheListRemovesNothing) {
  const std::string file = folder().makeFile("one.txt");
  show({.files = true});
  selectName(panel(), "one.txt");
  press(keyTaker(), key_backspace);
  letThingsSettle();
  EXPECT_TRUE(fileExists(file));
  EXPECT_EQ(selectedNames(panel()), Names{"one.txt"});
  EXPECT_TRUE(stillTakesKeys(keyTaker(), [this] { return end(); }));
}

TEST_F(Live, EscapeInAnOpenMenuClosesTheMenuAlone) {
  show({});
  openedMenu(panel());
  press(keyTaker(), key_escape);
  EXPECT_TRUE(soon([&] { return openMenus(panel()).empty(); }));
  letThingsSettle();
  EXPECT_EQ(outcome(), "open");
}

TEST_F(Live, AnOpenMenuTakesReturnFromThePanel) {
  show({});
  openedMenu(panel());
  press(keyTaker(), key_return);
  letThingsSettle();
  EXPECT_EQ(outcome(), "open");
  press(keyTaker(), key_escape);  // closes the menu, if it is still open
  EXPECT_TRUE(stillTakesKeys(keyTaker(), [this] { return end(); }));
}

TEST_F(Live, AnOpenMenuTakesTheGoToChordFromThePanel) {
  show({});
  openedMenu(panel());
  press(keyTaker(), key_g, command_and_shift);
  letThingsSettle();
  EXPECT_FALSE(goToSheet());
  press(keyTaker(), key_escape);  // closes the menu, if it is still open
  EXPECT_TRUE(stillTakesKeys(keyTaker(), [this] { return end(); }));
}

TEST_F(Live, AKeyOfTheSessionReachesThePanelInFront) {
  show({});
  tapGlobalKey(key_escape);
  EXPECT_EQ(end(), "cancelled");
}

}  // namespace
}  // namespace tessarine::test
