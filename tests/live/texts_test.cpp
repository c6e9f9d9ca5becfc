// The words on the panel in each language.
#include <gmock/gmock.h>

#include "core/tables.h"
#include "live/live.h"
#include "platform/accessibility.h"
#include "platform/events.h"
#include "platform/wait.h"

namespace tessarine::test {
namespace {

using ::testing::Contains;
using ::testing::IsSupersetOf;
using Texts = std::vector<std::string>;

constexpr std::uint64_t commandShift = commandFlag | 0x20000;
constexpr double sheetSeconds = 3;

// What the elements of a role say of themselves.
Texts descriptions(const Element& root, const std::string& role) {
  Texts found;
  for (const Element& each :
       elementsBelow(root, [&](const Element& element) { return axRole(element) == role; })) {
    found.push_back(axDescription(each));
  }
  return found;
}

Texts texts(const Element& root) {
  Texts found;
  for (const Element& each : elementsBelow(
           root, [](const Element& element) { return axRole(element) == "AXStaticText"; })) {
    found.push_back(axInputValue(each));
  }
  return found;
}

struct Words {
  std::string title;  // of the panel
  std::string confirm;
  std::string cancel;
  std::string newFolder;
  std::string where;
  std::string search;
};

void expectWords(const Element& panel, const Words& words) {
  const auto titleOf = [&](const char* identifier) {
    return axTitle(byIdentifier(panel, identifier));
  };
  EXPECT_EQ(axTitle(panel), words.title);
  EXPECT_EQ(titleOf("OKButton"), words.confirm);
  EXPECT_EQ(titleOf("CancelButton"), words.cancel);
  EXPECT_EQ(titleOf("NewFolderButton"), words.newFolder);
  EXPECT_EQ(titleOf("where popup"), words.where);
  EXPECT_EQ(axString(byIdentifier(panel, "Search"), "AXPlaceholderValue"), words.search);
}

// The headers of the two lists and what the lists are called.
struct ListWords {
  std::string sidebar;
  std::string list;
  std::string favourites;
  std::string name;
};

void expectListWords(const Element& panel, const ListWords& words) {
  EXPECT_THAT(descriptions(panel, "AXOutline"), IsSupersetOf({words.sidebar, words.list}));
  EXPECT_THAT(texts(panel), IsSupersetOf({words.favourites, words.name}));
}

Texts textsOfGoToSheet(const std::function<std::optional<Element>()>& goToSheet, pid_t keyTaker) {
  tapKey(keyTaker, keyCodeG, commandShift, {}, 0);
  Texts found;
  pollUntil(sheetSeconds, 0.1, [&] {
    const auto sheet = goToSheet();
    if (sheet) found = texts(*sheet);
    return !found.empty();
  });
  tapKey(keyTaker, keyCodeEscape, noModifiers, {}, 0.5);
  return found;
}

TEST_F(Live, AnEnglishPanelNamesItsControlsInEnglish) {
  show({});
  expectWords(panel(), {.title = "Open",
                        .confirm = "Open",
                        .cancel = "Cancel",
                        .newFolder = "New Folder",
                        .where = "Where:",
                        .search = "Search"});
  EXPECT_THAT(descriptions(panel(), "AXButton"), IsSupersetOf({"back", "forward"}));
}

TEST_F(Live, AnEnglishPanelHeadsItsListsInEnglish) {
  show({});
  expectListWords(
      panel(),
      {.sidebar = "sidebar", .list = "list view", .favourites = "Favorites", .name = "Name"});
}

TEST_F(Live, AnEnglishGoToSheetAsksInEnglish) {
  show({});
  EXPECT_THAT(textsOfGoToSheet([this] { return goToSheet(); }, keyTaker()),
              Contains("Go to the folder:"));
}

TEST_F(Live, AChinesePanelNamesItsControlsInChinese) {
  show({.language = "zh-Hans"});
  expectWords(panel(), {.title = "打开",
                        .confirm = "打开",
                        .cancel = "取消",
                        .newFolder = "新建文件夹",
                        .where = "位置：",
                        .search = "搜索"});
  EXPECT_THAT(descriptions(panel(), "AXButton"), IsSupersetOf({"后退", "前进"}));
  EXPECT_THAT(descriptions(panel(), "AXMenuButton"), IsSupersetOf({"显示选项", "分组或排序方式"}));
}

TEST_F(Live, AChinesePanelHeadsItsListsInChinese) {
  show({.language = "zh-Hans"});
  expectListWords(
      panel(), {.sidebar = "边栏", .list = "列表视图", .favourites = "个人收藏", .name = "名称"});
}

TEST_F(Live, AGermanPanelNamesItsControlsInGerman) {
  show({.language = "de"});
  expectWords(panel(), {.title = "Öffnen",
                        .confirm = "Öffnen",
                        .cancel = "Abbrechen",
                        .newFolder = "Neuer Ordner",
                        .where = "Ort:",
                        .search = "Suchen"});
  EXPECT_THAT(descriptions(panel(), "AXButton"), IsSupersetOf({"zurück", "vorwärts"}));
  EXPECT_THAT(descriptions(panel(), "AXMenuButton"),
              IsSupersetOf({"Darstellungsoptionen", "Gruppieren oder sortieren nach"}));
}

TEST_F(Live, AGermanPanelHeadsItsListsInGerman) {
  show({.language = "de"});
  expectListWords(panel(), {.sidebar = "Seitenleiste",
                            .list = "Listenansicht",
                            .favourites = "Favoriten",
                            .name = "Name"});
}

TEST_F(Live, AChinesePanelNamesItsColumnsInChinese) {
  if (!showAs({.language = "zh-Hans", .view = "columns"})) GTEST_SKIP() << no_such_view;
  EXPECT_EQ(axDescription(byIdentifier(panel(), "ColumnView")), "分栏视图");
}

TEST_F(Live, AChinesePanelNamesItsIconsInChinese) {
  if (!showAs({.language = "zh-Hans", .view = "icons"})) GTEST_SKIP() << no_such_view;
  EXPECT_EQ(axDescription(byIdentifier(panel(), "IconView")), "图标视图");
}

TEST_F(Live, AGermanPanelNamesItsColumnsInGerman) {
  if (!showAs({.language = "de", .view = "columns"})) GTEST_SKIP() << no_such_view;
  EXPECT_EQ(axDescription(byIdentifier(panel(), "ColumnView")), "Spaltenansicht");
}

TEST_F(Live, AGermanPanelNamesItsIconsInGerman) {
  if (!showAs({.language = "de", .view = "icons"})) GTEST_SKIP() << no_such_view;
  EXPECT_EQ(axDescription(byIdentifier(panel(), "IconView")), "Symbolansicht");
}

TEST_F(Live, WhatTheApplicationWritesStandsOnThePanel) {
  show({.sheet = true, .prompt = "Take", .message = "Take a folder."});
  EXPECT_EQ(axTitle(byIdentifier(panel(), "OKButton")), "Take");
  EXPECT_THAT(texts(panel()), Contains("Take a folder."));
}

TEST_F(Live, AGermanFilePanelOpens) {
  show({.files = true, .language = "de"});
  EXPECT_EQ(axTitle(byIdentifier(panel(), "OKButton")), "Öffnen");
}

TEST_F(Live, AGermanGoToSheetAsksInGerman) {
  show({.language = "de"});
  EXPECT_THAT(textsOfGoToSheet([this] { return goToSheet(); }, keyTaker()),
              Contains("Gehe zum Ordner:"));
}

}  // namespace
}  // namespace tessarine::test
