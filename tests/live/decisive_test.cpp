// What decides whether the tool works on a Mac at all; these tests run before the others. The panel
// is a sheet, as browsers show theirs, wherever that could matter, and each failure says what the
// panel did instead.
#include <gmock/gmock.h>

#include <algorithm>
#include <filesystem>

#include "live/by_hand.h"
#include "live/desktop.h"
#include "platform/processes.h"

namespace tessarine::test {
namespace {

using ::testing::Contains;
using ::testing::Each;
using ::testing::IsEmpty;
using ::testing::Not;

using Names = std::vector<std::string>;

constexpr const char* no_service = "no process of its own draws the panel";
constexpr const char* no_titles = "this program may not see other programs' windows";

// What was seen of a panel that is still open.
std::string stateOf(const Element& panel, pid_t application) {
  std::string state = isInFront(application) ? "open, in front" : "open, in the background";
  if (isThere(panel, "GoToWindow")) state += ", with a go-to sheet";
  for (const std::string& name : selectedNames(panel)) state += ", \"" + name + "\" selected";
  return state + ", shows " + folderShown(panel);
}

// The texts of each cell; a cell without a text is empty.
std::vector<Names> cells(const Element& row) {
  std::vector<Names> all;
  for (const Element& cell : axChildren(row)) {
    EXPECT_EQ(axRole(cell), "AXCell");
    all.push_back(textsBelow(cell, "AXStaticText"));
  }
  return all;
}

// The names under which the window list shows a process.
std::set<std::string> ownersNames(pid_t owner) {
  std::set<std::string> names;
  for (const ListedWindow& window : ordinaryWindows()) {
    if (window.pid == owner) names.insert(window.app);
  }
  return names;
}

bool titlesAreTold() {
  return std::ranges::any_of(ordinaryWindows(),
                             [](const ListedWindow& each) { return each.title.has_value(); });
}

// Of the process's windows at this frame; a window without a title has an empty one.
Names titlesAt(pid_t owner, const Rect& frame) {
  Names titles;
  for (const ListedWindow& window : ordinaryWindows()) {
    if (window.pid == owner && window.frame == frame) titles.push_back(window.title.value_or(""));
  }
  return titles;
}

// A click that is posted to a process, and time for what must not come of it.
void clickPosted(pid_t taker, const Point& at) {
  postMouseClick(taker, at, 1, false);
  letThingsSettle();
}

// --- Keys. ---

TEST_F(Live, AKeyPostedToTheServiceReachesThePanel) {
  show({.sheet = true});
  if (!stage().service()) GTEST_SKIP() << no_service;
  press(*stage().service(), key_escape);
  EXPECT_EQ(end(), "cancelled") << stateOf(panel(), application());
}

TEST_F(Live, AKeyPostedToTheServiceReachesAPanelInTheBackground) {
  show({.sheet = true, .inFront = false});
  if (!stage().service()) GTEST_SKIP() << no_service;
  press(*stage().service(), key_escape);
  EXPECT_EQ(end(), "cancelled") << stateOf(panel(), application());
}

TEST_F(Live, TheGoToChordPostedToTheServiceOpensTheSheetInTheBackground) {
  const std::string inner = folder().makeFolder("inner");
  show({.sheet = true, .inFront = false});
  if (!stage().service()) GTEST_SKIP() << no_service;
  press(*stage().service(), key_g, command_and_shift);
  ASSERT_TRUE(soon([&] { return isThere(panel(), "PathTextField"); }))
      << stateOf(panel(), application());
  setText(byIdentifier(panel(), "PathTextField"), "AXValue", inner);
  press(*stage().service(), key_return);
  EXPECT_TRUE(soon([&] { return folderShown(panel()) == "inner"; }))
      << stateOf(panel(), application());
  EXPECT_FALSE(isInFront(application()));
}

TEST_F(Live, AKeyPostedToTheApplicationIsDropped) {
  show({.sheet = true});
  if (!stage().service()) GTEST_SKIP() << no_service;
  press(application(), key_g, command_and_shift);
  letThingsSettle();
  EXPECT_FALSE(goToSheet()) << "the go-to chord arrived";
  press(application(), key_escape);
  letThingsSettle();
  EXPECT_EQ(outcome(), "open") << "Escape arrived";
}

TEST_F(Live, AKeyPostedToAnApplicationInTheBackgroundIsDropped) {
  show({.sheet = true, .inFront = false});
  if (!stage().service()) GTEST_SKIP() << no_service;
  press(application(), key_g, command_and_shift);
  letThingsSettle();
  EXPECT_FALSE(goToSheet()) << "the go-to chord arrived";
  press(application(), key_escape);
  letThingsSettle();
  EXPECT_EQ(outcome(), "open") << "Escape arrived";
}

// --- Clicks that are posted to a process; a person's arrive at the same place. ---

TEST_F(Live, AClickPostedToTheApplicationIsLost) {
  show({.sheet = true});
  const Point cancel = axFrame(byIdentifier(panel(), "CancelButton")).center();
  const std::string before = stateOf(panel(), application());
  clickPosted(application(), cancel);
  ASSERT_EQ(outcome(), "open") << "it arrived";
  EXPECT_EQ(stateOf(panel(), application()), before) << "it did something";
  click(cancel);
  EXPECT_EQ(end(), "cancelled") << "a person's click does not arrive there either";
}

TEST_F(Live, AClickPostedToTheServiceIsLost) {
  show({.sheet = true});
  if (!stage().service()) GTEST_SKIP() << no_service;
  const Point cancel = axFrame(byIdentifier(panel(), "CancelButton")).center();
  const std::string before = stateOf(panel(), application());
  clickPosted(*stage().service(), cancel);
  ASSERT_EQ(outcome(), "open") << "it arrived";
  EXPECT_EQ(stateOf(panel(), application()), before) << "it did something";
  click(cancel);
  EXPECT_EQ(end(), "cancelled") << "a person's click does not arrive there either";
}

// In the background any click that arrives anywhere in the panel lets an arrow key select.
TEST_F(Live, AClickPostedToAnApplicationInTheBackgroundIsLost) {
  folder().makeFolder("inner");
  show({.sheet = true, .inFront = false});
  const std::string before = stateOf(panel(), application());
  clickPosted(application(), axFrame(byIdentifier(panel(), "CancelButton")).center());
  ASSERT_EQ(outcome(), "open") << "it arrived";
  press(keyTaker(), key_down);
  EXPECT_EQ(stateOf(panel(), application()), before) << "it did something";
}

TEST_F(Live, AClickPostedToAServiceInTheBackgroundIsLost) {
  folder().makeFolder("inner");
  show({.sheet = true, .inFront = false});
  if (!stage().service()) GTEST_SKIP() << no_service;
  const std::string before = stateOf(panel(), application());
  clickPosted(*stage().service(), axFrame(byIdentifier(panel(), "CancelButton")).center());
  ASSERT_EQ(outcome(), "open") << "it arrived";
  press(keyTaker(), key_down);
  EXPECT_EQ(stateOf(panel(), application()), before) << "it did something";
}

// --- The process that draws the panel. ---

TEST_F(Live, PsShowsThePathOfTheServicesProgram) {
  show({.sheet = true});
  if (!stage().service()) GTEST_SKIP() << no_service;
  EXPECT_EQ(processCommand(*stage().service()),
            "/System/Library/Frameworks/AppKit.framework/Versions/C/XPCServices/"
            "com.apple.appkit.xpc.openAndSavePanelService.xpc/Contents/MacOS/"
            "com.apple.appkit.xpc.openAndSavePanelService");
}

TEST_F(Live, TheWindowListCallsTheServiceByItsApplication) {
  show({.sheet = true});
  if (!stage().service()) GTEST_SKIP() << no_service;
  const auto names = ownersNames(*stage().service());
  ASSERT_FALSE(names.empty()) << "the window list shows no window of the service";
  for (const std::string& name : ownersNames(application())) {
    EXPECT_THAT(names, Each("Open and Save Panel Service (" + name + ")"));
  }
}

TEST_F(Live, TheServiceOutlivesItsLastPanel) {
  show({.sheet = true});
  const auto service = stage().service();
  if (!service) GTEST_SKIP() << no_service;
  tryAction("AXPress", byIdentifier(panel(), "CancelButton"));
  ASSERT_EQ(end(), "cancelled");
  EXPECT_FALSE(pollUntil(3, 0.1, [&] { return processCommand(*service).empty(); }));
}

TEST_F(Live, WhatStandsInThePanelBelongsToTheService) {
  show({.sheet = true});
  if (!stage().service()) GTEST_SKIP() << no_service;
  EXPECT_EQ(stage().processOf(panel()), application());
  for (const char* identifier : {"OKButton", "CancelButton", "where popup", "ListView"}) {
    EXPECT_EQ(stage().processOf(byIdentifier(panel(), identifier)), *stage().service())
        << identifier << "; the application is " << application();
  }
}

TEST_F(Live, TheServicesOwnTreeDoesNotShowThePanel) {
  show({.sheet = true});
  if (!stage().service()) GTEST_SKIP() << no_service;
  EXPECT_FALSE(isThere(Element::application(*stage().service()), "open-panel"));
}

// --- The titles in the window list, which a Mac tells with the Screen Recording permission. ---

TEST_F(Live, TheWindowListNamesASheetAsItsTitleSays) {
  show({.sheet = true});
  if (!titlesAreTold()) GTEST_SKIP() << no_titles;
  EXPECT_EQ(titlesAt(application(), axFrame(panel())), Names{axTitle(panel())});
}

TEST_F(Live, TheWindowListNamesAPanelsWindowAsItsTitleSays) {
  show({});
  if (!titlesAreTold()) GTEST_SKIP() << no_titles;
  EXPECT_EQ(titlesAt(application(), axFrame(panel())), Names{axTitle(panel())});
}

TEST_F(Live, TheServicesWindowHasNoTitle) {
  show({.sheet = true});
  if (!stage().service()) GTEST_SKIP() << no_service;
  if (!titlesAreTold()) GTEST_SKIP() << no_titles;
  EXPECT_EQ(titlesAt(*stage().service(), axFrame(panel())), Names{""});
}

TEST_F(Live, TheServicesWindowOfAPanelWithATitleHasNone) {
  show({});
  if (!stage().service()) GTEST_SKIP() << no_service;
  if (!titlesAreTold()) GTEST_SKIP() << no_titles;
  ASSERT_EQ(axTitle(panel()), "Open");
  EXPECT_EQ(titlesAt(*stage().service(), axFrame(panel())), Names{""});
}

// --- How its elements are told from others. ---

TEST_F(Live, AnEnglishPanelIsDescribedAsOpen) {
  show({.sheet = true});
  EXPECT_EQ(axDescription(panel()), "open");
}

TEST_F(Live, AChinesePanelHasNoDescription) {
  show({.sheet = true, .language = "zh-Hans"});
  EXPECT_EQ(axDescription(panel()), "");
}

TEST_F(Live, AGermanPanelHasNoDescription) {
  show({.sheet = true, .language = "de"});
  EXPECT_EQ(axDescription(panel()), "");
}

TEST_F(Live, IdentifiersAreTheSameInEveryLanguage) {
  for (const char* language : {"en", "zh-Hans", "de"}) {
    show({.sheet = true, .language = language});
    for (const char* identifier :
         {"OKButton", "CancelButton", "NewFolderButton", "where popup", "Search", "ListView"}) {
      EXPECT_TRUE(isThere(panel(), identifier)) << identifier << " in " << language;
    }
    openedPathField(panel(), keyTaker());
    EXPECT_TRUE(goToSheet()) << language;
  }
}

// --- What confirms, and what does not. ---

TEST_F(Live, AConfirmationOfTheGoToFieldSucceedsAndDoesNothing) {
  const std::string inner = folder().makeFolder("inner");
  show({.sheet = true});
  const Element field = openedPathField(panel(), keyTaker());
  setText(field, "AXValue", inner);
  EXPECT_EQ(answerTo("AXConfirm", field), 0);
  letThingsSettle();
  EXPECT_TRUE(goToSheet()) << stateOf(panel(), application());
  EXPECT_NE(folderShown(panel()), "inner");
}

TEST_F(Live, TheSearchFieldOffersNoConfirmation) {
  show({.sheet = true});
  EXPECT_THAT(axActions(byIdentifier(panel(), "Search")), Not(Contains("AXConfirm")));
}

TEST_F(Live, OpenOnARowLeadsToItsFolderAndAnswersAnError) {
  folder().makeFolder("inner/deep");
  show({});
  EXPECT_EQ(answerTo("AXOpen", fieldOf(rowNamed(panel(), "inner"))), -25205);
  EXPECT_TRUE(soon([&] { return listedNames(panel()) == Names{"deep"}; }));
  EXPECT_EQ(outcome(), "open");
}

TEST_F(Live, OpenOnAFilesRowChoosesIt) {
  const std::string file = folder().makeFile("file.txt");
  show({.files = true});
  tryAction("AXOpen", fieldOf(rowNamed(panel(), "file.txt")));
  EXPECT_EQ(end(), "chosen " + file);
}

// --- What is listed. ---

TEST_F(Live, EachRowHasACellForEachColumnAndOnlyTheFirstNamesTheFile) {
  folder().makeFile("file.txt");
  folder().makeFolder("inner");
  show({});
  for (const char* name : {"file.txt", "inner"}) {
    const Element row = rowNamed(panel(), name);
    const std::vector<Names> texts = cells(row);
    ASSERT_GT(texts.size(), 1U);
    EXPECT_THAT(texts.front(), IsEmpty());
    for (std::size_t i = 1; i < texts.size(); ++i) EXPECT_EQ(texts[i].size(), 1U) << i;
    EXPECT_EQ(namingFiles(row).size(), 1U);
    EXPECT_EQ(axChildren(axChildren(row).front()).size(), 2U) << "the image and the name";
  }
}

TEST_F(Live, ARowsFieldTellsTheFilesNameAndUrl) {
  const std::string file = folder().makeFile("a file.txt");
  const std::string inner = folder().makeFolder("inner");
  show({});
  EXPECT_EQ(fileNameAttribute(fieldOf(rowNamed(panel(), "a file.txt"))), "a file.txt");
  EXPECT_EQ(fileNameAttribute(fieldOf(rowNamed(panel(), "inner"))), "inner");
  EXPECT_TRUE(leadsTo(fieldOf(rowNamed(panel(), "a file.txt")), file));
  EXPECT_TRUE(leadsTo(fieldOf(rowNamed(panel(), "inner")), inner));
}

TEST_F(Live, TheFoldersOfTheSystemAreHidden) {
  show({});
  goTo(panel(), keyTaker(), "/");
  ASSERT_TRUE(soon([&] { return !listedNames(panel()).empty(); }));
  const Names names = listedNames(panel());
  for (const char* hidden :
       {"bin", "cores", "dev", "etc", "opt", "private", "sbin", "tmp", "usr", "var", "Volumes"}) {
    EXPECT_THAT(names, Not(Contains(hidden)));
  }
}

// The identifiers of the views that the panel shows.
Names viewsShown(const Element& panel) {
  Names shown;
  for (const char* view : {"ListView", "ColumnView", "IconView"}) {
    if (isThere(panel, view)) shown.emplace_back(view);
  }
  return shown;
}

TEST_F(Live, AListIsAnOutlineAndTheOnlyView) {
  if (!showAs({.sheet = true, .view = "list"})) GTEST_SKIP() << no_such_view;
  EXPECT_EQ(viewsShown(panel()), Names{"ListView"});
  EXPECT_EQ(axRole(byIdentifier(panel(), "ListView")), "AXOutline");
}

TEST_F(Live, ColumnsAreABrowserAndTheOnlyView) {
  if (!showAs({.sheet = true, .view = "columns"})) GTEST_SKIP() << no_such_view;
  EXPECT_EQ(viewsShown(panel()), Names{"ColumnView"});
  EXPECT_EQ(axRole(byIdentifier(panel(), "ColumnView")), "AXBrowser");
}

TEST_F(Live, IconsAreAListAndTheOnlyView) {
  if (!showAs({.sheet = true, .view = "icons"})) GTEST_SKIP() << no_such_view;
  EXPECT_EQ(viewsShown(panel()), Names{"IconView"});
  EXPECT_EQ(axRole(byIdentifier(panel(), "IconView")), "AXList");
}

// --- The tool, on a panel whose words it knows. ---

// As a Chinese browser shows it for an extension.
const PanelSpec known_sheet{.sheet = true,
                            .inFront = false,
                            .language = "zh-Hans",
                            .prompt = "选择",
                            .message = "选择扩展程序目录。"};

// It posts its keys to the application, which drops them. Where this test fails because the panel
// chose the folder, the tool works better than it is said to.
TEST_F(Live, TheToolFailsInTheBackgroundAndLeavesThePanelOpen) {
  const std::string wanted = folder().makeFolder("wanted");
  show(known_sheet);
  const ProgramEnd run = stage().runTool({"choose-folder", "--strict-background", "--pid",
                                          std::to_string(application()), "--path", wanted});
  EXPECT_EQ(run.exitStatus, 1) << run.output << outcome();
  EXPECT_EQ(outcome(), "open") << run.output;
}

// This file is the first of the program's tests, also where each is a process of its own.
TEST_F(Live, WhatDecidesIsAskedFirst) {
  const auto& first = *::testing::UnitTest::GetInstance()->GetTestSuite(0)->GetTestInfo(0);
  EXPECT_EQ(std::filesystem::path(first.file()).filename(), "decisive_test.cpp");
}

}  // namespace
}  // namespace tessarine::test
