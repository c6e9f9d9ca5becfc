// The sheet into which a path is typed, and typing itself.
#include <gmock/gmock.h>

#include "live/by_hand.h"

namespace tessarine::test {
namespace {

using ::testing::Contains;
using ::testing::EndsWith;

using Names = std::vector<std::string>;

TEST_F(Live, TheGoToSheetLiesOnThePanel) {
  show({});
  const Rect frame = axFrame(panel());
  openedPathField(panel(), keyTaker());
  const Rect sheet = axFrame(*goToSheet());
  EXPECT_TRUE(sheet.hasArea());
  EXPECT_GT(sheet.x, frame.x);
  EXPECT_GT(sheet.y, frame.y);
  EXPECT_LT(sheet.x + sheet.width, frame.x + frame.width);
  EXPECT_LT(sheet.y + sheet.height, frame.y + frame.height);
}

TEST_F(Live, TypingReplacesThePathOfBefore) {
  const std::string inner = folder().makeFolder("inner");
  show({});
  goTo(panel(), keyTaker(), inner);
  const Element field = openedPathField(panel(), keyTaker());
  ASSERT_NE(axInputValue(field), "");
  typeUnicodeText(keyTaker(), "/zz");
  EXPECT_TRUE(soon([&] { return axInputValue(field) == "/zz"; })) << axInputValue(field);
}

TEST_F(Live, TheWindowListShowsTheGoToSheetWhereItShowsThePanel) {
  show({});
  const int before = listedWindows(application());
  openedPathField(panel(), keyTaker());
  EXPECT_TRUE(soon([&] { return listedWindows(application()) == before + 1; }));
}

TEST_F(Live, TheOnlySuggestionIsThePathUsedLast) {
  const std::string inner = folder().makeFolder("inner");
  show({});
  for (const std::string& path : {folder().path(), inner}) goTo(panel(), keyTaker(), path);
  openedPathField(panel(), keyTaker());
  const Element table = byRole(*goToSheet(), "AXTable");
  EXPECT_TRUE(soon([&] { return axElements(table, "AXChildren").size() == 1; }));
  EXPECT_THAT(textsBelow(table, "AXStaticText"), Contains(EndsWith("inner")));
}

TEST_F(Live, APathThatDoesNotExistLeavesTheSheetAndItsText) {
  const std::string missing = folder().path() + "/missing";
  show({});
  const Element field = openedPathField(panel(), keyTaker());
  setText(field, "AXValue", missing);
  press(keyTaker(), key_return);
  letThingsSettle();
  ASSERT_TRUE(goToSheet());
  EXPECT_EQ(axInputValue(byIdentifier(*goToSheet(), "PathTextField")), missing);
}

TEST_F(Live, AFilesPathLeadsToItsFolderWithTheFileSelected) {
  const std::string inner = folder().makeFolder("inner");
  for (const char* name : {"inner/one.txt", "inner/two.txt"}) folder().makeFile(name);
  show({.files = true});
  goTo(panel(), keyTaker(), inner + "/two.txt");
  EXPECT_TRUE(soon([&] { return selectedNames(panel()) == Names{"two.txt"}; }));
  EXPECT_EQ(folderShown(panel()), "inner");
}

TEST_F(Live, APackagesPathLeadsToItsFolderWithThePackageSelected) {
  const std::string package = folder().makeFolder("inner/Some.bundle");
  folder().makeFolder("inner/Some.bundle/Contents");
  show({.files = true});
  goTo(panel(), keyTaker(), package);
  EXPECT_TRUE(soon([&] { return selectedNames(panel()) == Names{"Some.bundle"}; }));
  EXPECT_EQ(folderShown(panel()), "inner");
}

TEST_F(Live, AnEventTypesAtMostTwentyUnits) {
  show({});
  const Element field = openedPathField(panel(), keyTaker());
  selectAllAndDelete(keyTaker());
  tapKey(keyTaker(), 0, 0, u"/abcdefghijklmnopqrstuvwxyz", 0.3);
  EXPECT_TRUE(soon([&] { return axInputValue(field) == "/abcdefghijklmnopqrs"; }))
      << axInputValue(field);
}

TEST_F(Live, ControlCharactersTypeNothing) {
  show({});
  const Element field = openedPathField(panel(), keyTaker());
  selectAllAndDelete(keyTaker());
  tapKey(keyTaker(), 0, 0, u"zz\ayy", 0.3);
  EXPECT_TRUE(soon([&] { return axInputValue(field) == "zzyy"; })) << axInputValue(field);
}

TEST_F(Live, DeleteTakesWhatAReaderSeesAsOneCharacter) {
  show({});
  const Element field = openedPathField(panel(), keyTaker());
  // A letter with a combining accent, and a family of three joined people.
  for (const std::u16string character :
       {u"e\u0301", u"\U0001F468\u200D\U0001F469\u200D\U0001F467"}) {
    selectAllAndDelete(keyTaker());
    tapKey(keyTaker(), 0, 0, u"zz" + character, 0.3);
    ASSERT_TRUE(soon([&] { return axInputValue(field).size() > 2; }));
    press(keyTaker(), key_backspace);
    EXPECT_TRUE(soon([&] { return axInputValue(field) == "zz"; })) << axInputValue(field);
  }
}

}  // namespace
}  // namespace tessarine::test
