// The icon view. Nobody has seen whether a panel on a Mac takes it from the user's defaults.
#include <gmock/gmock.h>

#include "live/by_hand.h"
#include "platform/files.h"

namespace tessarine::test {
namespace {

using ::testing::IsEmpty;

using Names = std::vector<std::string>;

const PanelSpec folders_as_icons{.view = "icons"};
const PanelSpec files_as_icons{.files = true, .view = "icons"};

Element iconList(const Element& panel) {
  return byIdentifier(panel, "IconView");
}

Element iconNamed(const Element& panel, const std::string& name) {
  for (const Element& icon : axChildren(iconList(panel))) {
    if (textsBelow(icon, "AXTextField") == Names{name}) return icon;
  }
  throw std::runtime_error("no icon shows \"" + name + "\"");
}

Names selectedIcons(const Element& panel) {
  Names names;
  for (const Element& icon : axElements(iconList(panel), "AXSelectedChildren")) {
    for (const auto& name : textsBelow(icon, "AXTextField")) names.push_back(name);
  }
  return names;
}

TEST_F(Live, AnIconsFieldTellsTheFilesNameAndUrl) {
  const std::string file = folder().makeFile("a file.txt");
  if (!showAs(files_as_icons)) GTEST_SKIP() << no_such_view;
  const Element icon = iconNamed(panel(), "a file.txt");
  EXPECT_EQ(axRole(icon), "AXGroup");
  EXPECT_EQ(axChildren(icon).size(), 2U) << "an image and a name";
  EXPECT_EQ(fileNameAttribute(fieldOf(icon)), "a file.txt");
  EXPECT_TRUE(leadsTo(fieldOf(icon), file));
}

TEST_F(Live, OpenOnAnIconLeadsToItsFolderAndAnswersAnError) {
  folder().makeFolder("inner");
  if (!showAs(folders_as_icons)) GTEST_SKIP() << no_such_view;
  EXPECT_EQ(answerTo("AXOpen", fieldOf(iconNamed(panel(), "inner"))), -25205);
  EXPECT_TRUE(soon([&] { return folderShown(panel()) == "inner"; }));
}

TEST_F(Live, AnIconIsNotSelectedByAccessibility) {
  folder().makeFolder("inner");
  if (!showAs(folders_as_icons)) GTEST_SKIP() << no_such_view;
  const Element icon = iconNamed(panel(), "inner");
  setElements(iconList(panel()), "AXSelectedChildren", {icon});
  setTrue(icon, "AXSelected");
  letThingsSettle();
  EXPECT_THAT(selectedIcons(panel()), IsEmpty());
}

TEST_F(Live, DownArrowSelectsTheFirstIcon) {
  for (const char* name : {"first", "second"}) folder().makeFolder(name);
  if (!showAs(folders_as_icons)) GTEST_SKIP() << no_such_view;
  press(keyTaker(), key_down);
  EXPECT_TRUE(soon([&] { return selectedIcons(panel()) == Names{"first"}; }));
}

TEST_F(Live, ArrowsLeadToTheIconsBeside) {
  for (const char* name : {"first", "second"}) folder().makeFolder(name);
  if (!showAs(folders_as_icons)) GTEST_SKIP() << no_such_view;
  click(axFrame(iconNamed(panel(), "first")).center());
  ASSERT_TRUE(soon([&] { return selectedIcons(panel()) == Names{"first"}; }));
  press(keyTaker(), key_right);
  EXPECT_TRUE(soon([&] { return selectedIcons(panel()) == Names{"second"}; }));
}

TEST_F(Live, ArrowsLeadToTheNextLineOfIcons) {
  for (char name = 'a'; name < 'u'; ++name) folder().makeFolder({name});
  if (!showAs(folders_as_icons)) GTEST_SKIP() << no_such_view;
  // The last icon of the first line.
  char last = 'a';
  while (axFrame(iconNamed(panel(), {char(last + 1)})).y == axFrame(iconNamed(panel(), "a")).y) {
    ++last;
  }
  click(axFrame(iconNamed(panel(), {last})).center());
  ASSERT_TRUE(soon([&] { return selectedIcons(panel()) == Names{{last}}; }));
  press(keyTaker(), key_right);
  EXPECT_TRUE(soon([&] { return selectedIcons(panel()) == Names{{char(last + 1)}}; }));
}

TEST_F(Live, DownArrowSelectsTheIconBelow) {
  for (char name = 'a'; name < 'u'; ++name) folder().makeFolder({name});
  if (!showAs(folders_as_icons)) GTEST_SKIP() << no_such_view;
  const Rect first = axFrame(iconNamed(panel(), "a"));
  click(first.center());
  ASSERT_TRUE(soon([&] { return selectedIcons(panel()) == Names{"a"}; }));
  press(keyTaker(), key_down);
  ASSERT_TRUE(soon([&] { return selectedIcons(panel()) != Names{"a"}; }));
  const Rect below = axFrame(iconNamed(panel(), selectedIcons(panel()).at(0)));
  EXPECT_EQ(below.x, first.x);
  EXPECT_GT(below.y, first.y);
}

}  // namespace
}  // namespace tessarine::test
