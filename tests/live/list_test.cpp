// The list of the folder shown: its rows, what can be selected, and how it follows the disk.
#include <gmock/gmock.h>

#include "live/by_hand.h"
#include "platform/files.h"

namespace tessarine::test {
namespace {

using ::testing::Contains;
using ::testing::IsEmpty;
using ::testing::Not;

using Names = std::vector<std::string>;

std::vector<Element> rows(const Element& panel) {
  return axElements(byIdentifier(panel, "ListView"), "AXRows");
}

// Rows that show no entry of the folder.
std::vector<Element> headerRows(const Element& panel) {
  std::vector<Element> headers = rows(panel);
  std::erase_if(headers,
                [](const Element& row) { return !textsBelow(row, "AXTextField").empty(); });
  return headers;
}

TEST_F(Live, TheHeaderRowHoldsATextForEachColumnAndNamesNoFile) {
  folder().makeFolder("inner");
  show({});
  const std::vector<Element> headers = headerRows(panel());
  ASSERT_EQ(headers.size(), 1U);
  EXPECT_EQ(textsBelow(headers.front(), "AXStaticText").size(),
            axChildren(rowNamed(panel(), "inner")).size());
  EXPECT_THAT(namingFiles(headers.front()), IsEmpty());
}

TEST_F(Live, AHiddenFolderIsShownWhenItsPathIsTyped) {
  show({});
  goTo(panel(), keyTaker(), "/usr");
  EXPECT_TRUE(soon([&] { return folderShown(panel()) == "usr"; }));
  EXPECT_THAT(listedNames(panel()), Contains("share"));
}

TEST_F(Live, AnApplicationIsShownAsAFile) {
  const std::string path = folder().makeFolder("Tool.app");
  folder().makeFolder("Tool.app/Contents");
  show({.files = true});
  // A Mac may leave the ending of an application's name out.
  const Names names = listedNames(panel());
  ASSERT_EQ(names.size(), 1U);
  const Element field = fieldOf(rowNamed(panel(), names.front()));
  EXPECT_TRUE(leadsTo(field, path));
  tryAction("AXOpen", field);
  EXPECT_EQ(end(), "chosen " + path);
}

TEST_F(Live, APhotoLibraryIsShownAsAFile) {
  const std::string path = folder().makeFolder("All.photoslibrary");
  folder().makeFolder("All.photoslibrary/database");
  show({.files = true});
  const Names names = listedNames(panel());
  ASSERT_EQ(names.size(), 1U);
  tryAction("AXOpen", fieldOf(rowNamed(panel(), names.front())));
  EXPECT_EQ(end(), "chosen " + path);
}

TEST_F(Live, AFolderPanelSelectsNoPackage) {
  folder().makeFolder("Some.bundle/Contents");
  show({});
  selectNames(panel(), listedNames(panel()));
  letThingsSettle();
  EXPECT_THAT(selectedNames(panel()), IsEmpty());
}

TEST_F(Live, OfSeveralRowsTheFirstIsSelected) {
  for (const char* name : {"one.txt", "three.txt", "two.txt"}) folder().makeFile(name);
  show({.files = true});
  selectNames(panel(), {"two.txt", "three.txt"});
  EXPECT_TRUE(soon([&] { return !selectedNames(panel()).empty(); }));
  EXPECT_EQ(selectedNames(panel()), Names{"three.txt"});
}

TEST_F(Live, AFolderPanelShowsFiles) {
  folder().makeFile("file.txt");
  folder().makeFolder("inner");
  show({});
  EXPECT_EQ(listedNames(panel()), (Names{"file.txt", "inner"}));
}

TEST_F(Live, AFolderPanelSelectsNoFile) {
  folder().makeFile("file.txt");
  show({});
  selectNames(panel(), {"file.txt"});
  letThingsSettle();
  EXPECT_THAT(selectedNames(panel()), IsEmpty());
}

TEST_F(Live, ANewEntryIsListedWithinSixTenthsOfASecond) {
  folder().makeFolder("first");
  show({});
  folder().makeFolder("second");
  EXPECT_TRUE(pollUntil(0.6, 0.05, [&] {
    return listedNames(panel()) == Names{"first", "second"};
  }));
}

TEST_F(Live, AllRowsAreMadeAnewForANewEntry) {
  folder().makeFolder("first");
  show({});
  const Element before = rowNamed(panel(), "first");
  ASSERT_THAT(rows(panel()), Contains(before));
  folder().makeFolder("second");
  ASSERT_TRUE(soon([&] { return listedNames(panel()) == Names{"first", "second"}; }));
  EXPECT_THAT(rows(panel()), Not(Contains(before)));
}

TEST_F(Live, TheSelectionStaysWhenThereIsANewEntry) {
  for (const char* name : {"one.txt", "two.txt"}) folder().makeFile(name);
  show({.files = true});
  selectName(panel(), "two.txt");
  folder().makeFile("three.txt");
  ASSERT_TRUE(soon([&] { return listedNames(panel()).size() == 3; }));
  EXPECT_EQ(selectedNames(panel()), Names{"two.txt"});
}

TEST_F(Live, TheSelectionStaysWhenAnEntryVanishes) {
  for (const char* name : {"one.txt", "two.txt"}) folder().makeFile(name);
  const std::string vanishing = folder().makeFile("three.txt");
  show({.files = true});
  selectName(panel(), "two.txt");
  removeFile(vanishing);
  ASSERT_TRUE(soon([&] { return listedNames(panel()).size() == 2; }));
  EXPECT_EQ(selectedNames(panel()), Names{"two.txt"});
}

}  // namespace
}  // namespace tessarine::test
