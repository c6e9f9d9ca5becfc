// The column view. Nobody has seen whether a panel on a Mac takes it from the user's defaults.
#include <gmock/gmock.h>

#include "live/by_hand.h"
#include "platform/files.h"

namespace tessarine::test {
namespace {

using ::testing::IsEmpty;

using Names = std::vector<std::string>;

const PanelSpec folders_in_columns{.view = "columns"};
const PanelSpec files_in_columns{.files = true, .view = "columns"};

std::vector<Element> columns(const Element& panel) {
  return axElements(byIdentifier(panel, "ColumnView"), "AXColumns");
}

// The lists of the columns that have one, and their entries.
Element listOf(const Element& column) {
  return byRole(column, "AXList");
}

Element itemNamed(const Element& panel, const std::string& name) {
  for (const Element& column : columns(panel)) {
    for (const Element& item : axChildren(listOf(column))) {
      if (textsBelow(item, "AXTextField") == Names{name}) return item;
    }
  }
  throw std::runtime_error("no column shows \"" + name + "\"");
}

// The names that are selected, column by column.
std::vector<Names> selectedInColumns(const Element& panel) {
  std::vector<Names> all;
  for (const Element& column : columns(panel)) {
    all.emplace_back();
    for (const Element& item : axElements(listOf(column), "AXSelectedChildren")) {
      for (const auto& name : textsBelow(item, "AXTextField")) all.back().push_back(name);
    }
  }
  return all;
}

void clickItem(const Element& panel, const std::string& name) {
  click(axFrame(itemNamed(panel, name)).center());
}

// The names in the last column.
Names lastColumn(const Element& panel) {
  return textsBelow(columns(panel).back(), "AXTextField");
}

TEST_F(Live, ABrowsersChildrenAreItsColumns) {
  folder().makeFolder("inner");
  if (!showAs(folders_in_columns)) GTEST_SKIP() << no_such_view;
  const std::vector<Element> all = columns(panel());
  ASSERT_FALSE(all.empty());
  EXPECT_EQ(axChildren(byIdentifier(panel(), "ColumnView")), all);
  for (const Element& column : all) EXPECT_EQ(axRole(column), "AXScrollArea");
}

TEST_F(Live, AColumnsFieldTellsTheFilesNameAndUrl) {
  const std::string file = folder().makeFile("a file.txt");
  if (!showAs(files_in_columns)) GTEST_SKIP() << no_such_view;
  const Element item = itemNamed(panel(), "a file.txt");
  EXPECT_EQ(axRole(item), "AXGroup");
  EXPECT_EQ(axChildren(item).size(), 2U) << "an image and a name";
  EXPECT_EQ(fileNameAttribute(fieldOf(item)), "a file.txt");
  EXPECT_TRUE(leadsTo(fieldOf(item), file));
}

TEST_F(Live, AColumnsEntryHasNoOpen) {
  folder().makeFile("file.txt");
  if (!showAs(files_in_columns)) GTEST_SKIP() << no_such_view;
  EXPECT_EQ(answerTo("AXOpen", fieldOf(itemNamed(panel(), "file.txt"))), -25206);
  letThingsSettle();
  EXPECT_EQ(outcome(), "open");
}

TEST_F(Live, AColumnIsNotSelectedInByAccessibility) {
  folder().makeFile("file.txt");
  if (!showAs(files_in_columns)) GTEST_SKIP() << no_such_view;
  const Element list = listOf(columns(panel()).back());
  const Element item = itemNamed(panel(), "file.txt");
  setElements(list, "AXSelectedRows", {item});
  setElements(list, "AXSelectedChildren", {item});
  setTrue(item, "AXSelected");
  letThingsSettle();
  EXPECT_THAT(selectedInColumns(panel()).back(), IsEmpty());
  EXPECT_THAT(axElements(list, "AXSelectedRows"), IsEmpty());
}

TEST_F(Live, AFolderSelectedInAColumnIsShown) {
  folder().makeFolder("inner/deep");
  if (!showAs(folders_in_columns)) GTEST_SKIP() << no_such_view;
  const std::size_t before = columns(panel()).size();
  clickItem(panel(), "inner");
  EXPECT_TRUE(soon([&] { return folderShown(panel()) == "inner"; }));
  EXPECT_TRUE(soon([&] { return columns(panel()).size() == before + 1; }));
  EXPECT_EQ(lastColumn(panel()), Names{"deep"});
}

TEST_F(Live, OnlyTheFoldersOfTheColumnsAreSelectedInThem) {
  folder().makeFolder("inner/deep");
  folder().makeFolder("other");
  if (!showAs(folders_in_columns)) GTEST_SKIP() << no_such_view;
  clickItem(panel(), "inner");
  ASSERT_TRUE(soon([&] { return lastColumn(panel()) == Names{"deep"}; }));
  const std::vector<Names> selected = selectedInColumns(panel());
  ASSERT_GE(selected.size(), 2U);
  EXPECT_EQ(selected[selected.size() - 2], Names{"inner"});
  EXPECT_THAT(selected.back(), IsEmpty());
}

TEST_F(Live, AFileSelectedInAnEarlierColumnShowsItsFolder) {
  folder().makeFolder("inner/deep");
  folder().makeFile("z.txt");
  if (!showAs(files_in_columns)) GTEST_SKIP() << no_such_view;
  const std::string before = folderShown(panel());
  clickItem(panel(), "inner");
  ASSERT_TRUE(soon([&] { return lastColumn(panel()) == Names{"deep"}; }));
  clickItem(panel(), "z.txt");
  EXPECT_TRUE(soon([&] { return folderShown(panel()) == before; }));
  EXPECT_TRUE(soon([&] { return selectedInColumns(panel()).back() == Names{"z.txt"}; }));
}

TEST_F(Live, AClickBelowAColumnsEntriesShowsItsFolder) {
  folder().makeFolder("inner/deep");
  if (!showAs(folders_in_columns)) GTEST_SKIP() << no_such_view;
  const std::string before = folderShown(panel());
  clickItem(panel(), "inner");
  ASSERT_TRUE(soon([&] { return folderShown(panel()) == "inner"; }));
  const Rect item = axFrame(itemNamed(panel(), "inner"));
  click({item.midX(), item.y + 3 * item.height});
  EXPECT_TRUE(soon([&] { return folderShown(panel()) == before; }));
}

TEST_F(Live, AColumnHasTheKeyboard) {
  folder().makeFolder("inner");
  if (!showAs(folders_in_columns)) GTEST_SKIP() << no_such_view;
  clickItem(panel(), "inner");
  EXPECT_TRUE(soon([&] { return folderShown(panel()) == "inner"; }));
  EXPECT_TRUE(soon([&] { return axIsTrue(listOf(columns(panel()).back()), "AXFocused"); }));
}

TEST_F(Live, DownArrowShowsTheNextFolderOfTheColumn) {
  for (const char* name : {"first/deep", "second"}) folder().makeFolder(name);
  if (!showAs(folders_in_columns)) GTEST_SKIP() << no_such_view;
  press(keyTaker(), key_down);
  EXPECT_TRUE(soon([&] { return folderShown(panel()) == "first"; }));
  press(keyTaker(), key_down);
  EXPECT_TRUE(soon([&] { return folderShown(panel()) == "second"; }));
}

TEST_F(Live, RightArrowSelectsTheFirstOfTheNextColumn) {
  folder().makeFolder("first/deep");
  if (!showAs(folders_in_columns)) GTEST_SKIP() << no_such_view;
  press(keyTaker(), key_down);
  ASSERT_TRUE(soon([&] { return folderShown(panel()) == "first"; }));
  press(keyTaker(), key_right);
  EXPECT_TRUE(soon([&] { return folderShown(panel()) == "deep"; }));
}

TEST_F(Live, LeftArrowLeadsBackToTheColumnBefore) {
  for (const char* name : {"first/deep", "second"}) folder().makeFolder(name);
  if (!showAs(folders_in_columns)) GTEST_SKIP() << no_such_view;
  press(keyTaker(), key_down);
  ASSERT_TRUE(soon([&] { return folderShown(panel()) == "first"; }));
  press(keyTaker(), key_right);
  ASSERT_TRUE(soon([&] { return folderShown(panel()) == "deep"; }));
  press(keyTaker(), key_left);
  EXPECT_TRUE(soon([&] { return folderShown(panel()) == "first"; }));
  press(keyTaker(), key_down);
  EXPECT_TRUE(soon([&] { return folderShown(panel()) == "second"; }));
}

TEST_F(Live, TheFirstColumnIsThatOfTheNearestPlace) {
  if (!showAs(folders_in_columns)) GTEST_SKIP() << no_such_view;
  goTo(panel(), keyTaker(), "/usr/share");
  ASSERT_TRUE(soon([&] { return folderShown(panel()) == "share"; }));
  EXPECT_EQ(columns(panel()).size(), 3U) << "the volume's, of \"usr\" and of \"share\"";
}

TEST_F(Live, ASelectedFolderKeepsTheFirstColumn) {
  if (!showAs(folders_in_columns)) GTEST_SKIP() << no_such_view;
  goTo(panel(), keyTaker(), "/");
  ASSERT_TRUE(soon([&] { return columns(panel()).size() == 1; }));
  const Names before = textsBelow(columns(panel()).front(), "AXTextField");
  press(keyTaker(), key_down);
  ASSERT_TRUE(soon([&] { return !selectedInColumns(panel()).front().empty(); }));
  letThingsSettle();
  EXPECT_EQ(textsBelow(columns(panel()).front(), "AXTextField"), before);
}

}  // namespace
}  // namespace tessarine::test
