#include "core/tables.h"

#include <gtest/gtest.h>

namespace tessarine::test {
namespace {

TEST(Tables, BeginWithTheTitlesInBothLanguagesAndNothingElse) {
  initializeTables();
  EXPECT_EQ(tables().openDialogTitles, (TitleSet{"Open", "打开"}));
  EXPECT_EQ(tables().cancelButtonTitles, (TitleSet{"Cancel", "取消"}));
  EXPECT_EQ(tables().chooseButtonTitles, (TitleSet{"Choose", "选择", "Open", "打开"}));
  EXPECT_TRUE(tables().localizedDisplayNameCache.empty());
  EXPECT_TRUE(tables().excludedPanelWindowIDs.empty());
}

TEST(Tables, AreOneForTheWholeProcessAndCanBeginAnew) {
  tables().localizedDisplayNameCache["/"] = "Macintosh HD";
  tables().excludedPanelWindowIDs = {7};
  tables().openDialogTitles.clear();
  EXPECT_EQ(tables().localizedDisplayNameCache.size(), 1U);
  initializeTables();
  EXPECT_EQ(tables().openDialogTitles, (TitleSet{"Open", "打开"}));
  EXPECT_TRUE(tables().localizedDisplayNameCache.empty());
  EXPECT_TRUE(tables().excludedPanelWindowIDs.empty());
}

TEST(Tables, HoldTheMarkersOfAChineseChooser) {
  EXPECT_EQ(locationMarker, "位置");
  EXPECT_EQ(listViewMarker, "列表视图");
  EXPECT_EQ(sidebarMarker, "边栏");
  EXPECT_EQ(extensionFolderMarker, "选择扩展程序目录");
}

TEST(Tables, HoldThePlatformsKeyCodesAndFlags) {
  EXPECT_EQ(keyCodeA, 0);
  EXPECT_EQ(keyCodeG, 5);
  EXPECT_EQ(keyCodeReturn, 36);
  EXPECT_EQ(keyCodeDelete, 51);
  EXPECT_EQ(keyCodeEscape, 53);
  EXPECT_EQ(keyCodeArrowDown, 125);
  EXPECT_EQ(keyCodeArrowRight, 124);
  EXPECT_EQ(noModifiers, 0U);
  EXPECT_EQ(commandFlag, 0x100000U);
  EXPECT_EQ(commandShiftFlags, 0x120000U);
}

}  // namespace
}  // namespace tessarine::test
