// What a panel lists and in which order, how it follows the disk, and where its parts lie.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <chrono>
#include <ctime>

#include "simulator/panel/folder.h"
#include "simulator/panel/list_columns.h"
#include "tests/simulator/panel_world.h"

namespace simulator {
namespace {

// Makes a file that was modified so many seconds before (negative) or after now.
void writeFile(const std::string& path, int seconds) {
  std::ofstream(path) << "x";
  const auto now = fs::file_time_type::clock::now();
  fs::last_write_time(path, now + std::chrono::seconds(seconds));
}

std::time_t localTime(int year, int month, int day, int hour, int minute) {
  std::tm date{};
  date.tm_year = year - 1900;
  date.tm_mon = month - 1;
  date.tm_mday = day;
  date.tm_hour = hour;
  date.tm_min = minute;
  date.tm_isdst = -1;
  return std::mktime(&date);
}

TEST(PanelListing, ListsTheNewestFirstWhenSortedByDate) {
  const Sample folder;
  for (const char* name : {"Alpha", "beta", "file 9.txt"}) {
    fs::last_write_time(folder.path(name), fs::file_time_type::clock::now() - std::chrono::days(2));
  }
  writeFile(folder.path("beta.txt"), 500);
  writeFile(folder.path("alpha.txt"), -500);
  fs::last_write_time(folder.path("Alpha"), fs::last_write_time(folder.path("beta")));
  fs::create_symlink("nowhere", folder.path("broken"));
  PanelWorld world(Json{{"sort", "date"}, {"folder", folder.path()}});
  const Texts names = world.shownNames();
  ASSERT_EQ(names.size(), 7U);
  EXPECT_EQ(names.front(), "beta.txt");
  EXPECT_EQ(names[1], "file10.txt");
  EXPECT_EQ(names[2], "alpha.txt");
  EXPECT_EQ(names.back(), "broken");
}

TEST(PanelListing, FollowsTheFolderOnceItIsLookedAtAgain) {
  PanelWorld world(Json{{"mode", "files"}});
  world.pass(0.1);
  writeFile(world.sample.path("new.txt"), 0);
  world.read(world.identified("open-panel").id(), "AXRole");
  EXPECT_EQ(world.all("AXFilename", "new.txt").size(), 0U) << "it takes a while";
  world.pass(0.1);
  world.read(world.identified("open-panel").id(), "AXRole");
  EXPECT_EQ(world.shownNames(), (Texts{"Alpha", "beta", "file 9.txt", "file10.txt", "new.txt"}));
  fs::remove(world.sample.path("file 9.txt"));
  world.pass(0.2);
  world.key(key::right);
  EXPECT_EQ(world.shownNames(), (Texts{"Alpha", "beta", "file10.txt", "new.txt"}));
}

TEST(PanelListing, KeepsTheSelectionAndTheRowsThatNothingChanged) {
  PanelWorld world(Json{{"mode", "files"}});
  world.click(world.rowOf("file10.txt"));
  const ElementId row = world.rowOf("file10.txt").id();
  writeFile(world.sample.path(".DS_Store"), 0);
  world.pass(1);
  EXPECT_EQ(world.read(row, "AXSelected").value, Value(true)) << "hidden files change nothing";
  writeFile(world.sample.path("Beginning"), 0);
  world.pass(1);
  EXPECT_EQ(world.read(row, "AXSelected").error, ax::invalidElement);
  EXPECT_EQ(world.read(world.rowOf("file10.txt").id(), "AXSelected").value, Value(true));
  world.key(key::returnKey);
  EXPECT_EQ(world.panel().outcome().path, world.sample.path("file10.txt"));
}

TEST(PanelListing, LosesTheSelectionWithItsFile) {
  PanelWorld world(Json{{"mode", "files"}});
  world.click(world.rowOf("file10.txt"));
  fs::remove(world.sample.path("file10.txt"));
  world.pass(0.2);
  world.key(key::returnKey);
  EXPECT_EQ(world.panel().outcome(), PanelOutcome{});
  EXPECT_FALSE(world.enabled(world.identified("OKButton")));
}

TEST(PanelListing, PutsANewlyStagedFileFirstWhenSortedByDate) {
  const Sample folder;
  PanelWorld world(Json{{"mode", "files"}, {"sort", "date"}, {"folder", folder.path()}});
  writeFile(folder.path("staged.zip"), 10);
  world.pass(1);
  const Rect list = *world.identified("ListView").frame();
  const Point firstRow{list.x + list.width / 2, list.y + 24 + 12};
  for (const std::uint32_t type : {1U, 2U}) {
    world.desktop().answer(PostEvent{MouseEvent{type, firstRow, 1}, service});
  }
  world.key(key::returnKey);
  EXPECT_EQ(world.panel().outcome().path, folder.path("staged.zip"));
}

// The texts of the cells beside the first.
Texts furtherCells(PanelWorld& world, const Element& row) {
  Texts texts;
  for (std::size_t i = 1; i < row.children().size(); ++i) {
    const auto& cell = *row.children()[i];
    EXPECT_EQ(cell.role(), "AXCell");
    EXPECT_EQ(cell.children().size(), 1U);
    EXPECT_EQ(cell.children().front()->role(), "AXStaticText");
    texts.push_back(world.text(*cell.children().front()));
  }
  return texts;
}

TEST(PanelListing, ARowHasACellForEachColumn) {
  const Sample folder;
  fs::create_directory(folder.path("Tool.app"));
  const std::time_t morning = localTime(2024, 1, 2, 9, 5);
  for (const char* name : {"Alpha", "file10.txt", "Tool.app"}) {
    const timespec time{morning, 0};
    const timespec times[]{time, time};
    ASSERT_EQ(utimensat(AT_FDCWD, folder.path(name).c_str(), times, 0), 0);
  }
  PanelWorld world(Json{{"folder", folder.path()}});
  const std::string date = "1/2/2024, 9:05 AM";
  EXPECT_EQ(furtherCells(world, world.rowOf("Alpha")), (Texts{date, "--", "Folder"}));
  EXPECT_EQ(furtherCells(world, world.rowOf("file10.txt")), (Texts{date, "1 byte", "Document"}));
  EXPECT_EQ(furtherCells(world, world.rowOf("Tool.app")), (Texts{date, "--", "Application"}));
  const Element& header = *world.identified("ListView").children().front();
  EXPECT_EQ(furtherCells(world, header), (Texts{"Date Modified", "Size", "Kind"}));
}

TEST(PanelListing, TheCellsOfARowStandSideBySide) {
  for (const int columns : {1, 4, 8}) {
    PanelWorld world(Json{{"listColumns", columns}});
    const Element& row = world.rowOf("Alpha");
    const Rect whole = *row.frame();
    ASSERT_EQ(row.children().size(), static_cast<std::size_t>(columns));
    double x = whole.x;
    for (const auto& cell : row.children()) {
      EXPECT_DOUBLE_EQ(cell->frame()->x, x);
      EXPECT_EQ(cell->frame()->height, whole.height);
      x += cell->frame()->width;
      EXPECT_TRUE(contains(*cell->frame(), {cell->children().back()->frame()->x, whole.y + 5}));
    }
    EXPECT_DOUBLE_EQ(x, whole.x + whole.width);
    EXPECT_GE(row.children().front()->frame()->width, whole.width / 2 - 0.001);
    EXPECT_EQ(world.identified("ListView").children().front()->children().size(),
              row.children().size());
  }
}

TEST(PanelListing, AClickOnAnyCellSelectsItsRow) {
  PanelWorld world;
  world.click(*world.rowOf("beta").children().back());
  EXPECT_EQ(world.read(world.rowOf("beta").id(), "AXSelected").value, Value(true));
}

TEST(ListColumns, WriteDatesAsTheLanguageDoes) {
  const auto at = [](int hour) { return localTime(2025, 12, 3, hour, 7); };
  EXPECT_EQ(dateText(at(0), Language::english), "12/3/2025, 12:07 AM");
  EXPECT_EQ(dateText(at(12), Language::english), "12/3/2025, 12:07 PM");
  EXPECT_EQ(dateText(at(23), Language::english), "12/3/2025, 11:07 PM");
  EXPECT_EQ(dateText(at(9), Language::simplifiedChinese), "2025/12/3 9:07");
  EXPECT_EQ(dateText(at(9), Language::german), "03.12.2025, 09:07");
}

TEST(ListColumns, WriteSizesInThousands) {
  EXPECT_EQ(sizeText(0, Language::english), "0 bytes");
  EXPECT_EQ(sizeText(1, Language::english), "1 byte");
  EXPECT_EQ(sizeText(999, Language::simplifiedChinese), "999字节");
  EXPECT_EQ(sizeText(1000, Language::english), "1 KB");
  EXPECT_EQ(sizeText(12'345, Language::german), "12 KB");
  EXPECT_EQ(sizeText(3'400'000, Language::german), "3,4 MB");
  EXPECT_EQ(sizeText(5'670'000'000, Language::english), "5.67 GB");
  EXPECT_EQ(sizeText(7'000'000'000'000'000, Language::english), "7000.00 TB");
}

TEST(ListColumns, HaveTitlesInEachLanguageAndDashesForWhatIsNotKnown) {
  EXPECT_EQ(columnTitle(0, Language::german), "Name");
  EXPECT_EQ(columnTitle(3, Language::simplifiedChinese), "种类");
  EXPECT_EQ(columnTitle(7, Language::english), "Tags");
  const EntryTexts missing("/no/such", false, false);
  EXPECT_EQ(missing.in(1, Language::english), "--");
  EXPECT_EQ(missing.in(2, Language::english), "--");
  EXPECT_EQ(missing.in(3, Language::german), "Dokument");
  EXPECT_EQ(missing.in(7, Language::english), "--");
}

const Texts system_folders{"bin",  "cores", "dev", "etc", "opt",    "private",
                           "sbin", "tmp",   "usr", "var", "Volumes"};

TEST(PanelListing, TheFoldersOfTheSystemAreHiddenInTheRootAlone) {
  PanelWorld world(Json{{"folder", "/"}, {"listColumns", 1}});
  const Texts names = world.shownNames();
  EXPECT_FALSE(names.empty());
  for (const std::string& name : system_folders) {
    EXPECT_EQ(std::count(names.begin(), names.end(), name), 0) << name;
  }
  const Sample folder;
  fs::create_directory(folder.path("usr"));
  PanelWorld elsewhere(Json{{"folder", folder.path()}});
  EXPECT_EQ(elsewhere.shownNames(), (Texts{"Alpha", "beta", "file 9.txt", "file10.txt", "usr"}));
}

TEST(PanelListing, TheFoldersOfTheSystemAreShownOnRequest) {
  PanelWorld world(Json{{"folder", "/"}, {"listColumns", 1}}, {{"showsSystemFolders", true}});
  const Texts names = world.shownNames();
  for (const std::string& name : system_folders) {
    EXPECT_EQ(std::count(names.begin(), names.end(), name), fs::exists("/" + name) ? 1 : 0) << name;
  }
  EXPECT_EQ(std::count(names.begin(), names.end(), "usr"), 1);
}

TEST(PanelListing, OnlyWhatTheScenarioNamesIsListedWithWhatLeadsThereAndLiesBelow) {
  const Sample folder;
  for (const char* name : {"way/there/below", "way/aside", "copy-1", "copy-2", "other"}) {
    fs::create_directories(folder.path(name));
  }
  const Json only{folder.path("way/there/"), folder.path("copy-*")};
  const auto shown = [&](const std::string& name) {
    return PanelWorld(Json{{"folder", folder.path(name)}}, {{"listsOnly", only}}).shownNames();
  };
  EXPECT_EQ(shown(""), (Texts{"copy-1", "copy-2", "way"}));
  EXPECT_EQ(shown("way"), (Texts{"there"}));
  EXPECT_EQ(shown("way/there"), (Texts{"below"}));
  EXPECT_EQ(shown("other"), Texts{});
}

TEST(PanelListing, AHiddenFolderIsReachedByItsPath) {
  PanelWorld world(Json{{"folder", "/"}});
  world.key(key::g, command | shift);
  world.pass(0.5);
  world.type("/usr");
  world.key(key::returnKey);
  world.pass(0.5);
  EXPECT_EQ(world.panel().folderShown(), "/usr");
  EXPECT_EQ(world.all("AXFilename", "share").size(), 1U) << "nothing in it is hidden";
}

// The sample folder with a package in it.
class Packages : public PanelWorld {
 public:
  explicit Packages(const std::string& mode) : PanelWorld(Json{{"mode", mode}}) {
    fs::create_directories(sample.path("Tool.app/Contents"));
    pass(1);
    read(identified("open-panel").id(), "AXRole");
  }
};

TEST(PanelPackages, AreChosenAndNotEnteredInAFilePanel) {
  Packages world("files");
  const Element& name = world.named("Tool.app");
  EXPECT_EQ(std::get<Url>(*name.get("AXURL")).text, "file://" + world.sample.path("Tool.app/"));
  EXPECT_TRUE(world.enabled(name));
  EXPECT_EQ(world.perform(name, "AXOpen"), ax::attributeUnsupported);
  world.pass(0.2);
  EXPECT_EQ(world.panel().outcome().path, world.sample.path("Tool.app"));
  Packages clicked("files");
  clicked.click(clicked.rowOf("Tool.app"));
  clicked.click(clicked.rowOf("Tool.app"), 2);
  EXPECT_EQ(clicked.panel().outcome().path, clicked.sample.path("Tool.app"));
  Packages key("files");
  key.click(key.rowOf("Tool.app"));
  key.key(key::down, command);
  EXPECT_EQ(key.panel().outcome().path, key.sample.path("Tool.app"));
}

TEST(PanelPackages, AreNeitherSelectedNorEnteredInAFolderPanel) {
  Packages world("folders");
  EXPECT_FALSE(world.enabled(world.named("Tool.app")));
  world.click(world.rowOf("Tool.app"));
  world.click(world.rowOf("Tool.app"), 2);
  world.perform(world.named("Tool.app"), "AXOpen");
  world.pass(0.2);
  EXPECT_EQ(world.panel().folderShown(), world.sample.path());
  EXPECT_EQ(world.read(world.identified("ListView").id(), "AXSelectedRows").value, Value(List{}));
  EXPECT_EQ(world.panel().outcome(), PanelOutcome{});
}

TEST(PanelPackages, ATypedPathSelectsThePackageInItsFolder) {
  Packages world("files");
  world.key(key::g, command | shift);
  world.pass(0.5);
  world.type("~/Tool.app");
  world.key(key::returnKey);
  world.pass(0.5);
  EXPECT_EQ(world.panel().folderShown(), world.sample.path());
  world.key(key::returnKey);
  EXPECT_EQ(world.panel().outcome().path, world.sample.path("Tool.app"));
}

TEST(PanelPackages, AreDirectoriesWithOneOfTheirEndings) {
  const Sample folder;
  for (const char* name : {"A.app", "B.PrefPane", "C.photoslibrary", "app", "D.apps", ".E.app"}) {
    fs::create_directory(folder.path(name));
  }
  std::ofstream(folder.path("F.pkg")) << "x";
  Texts packages;
  for (const auto& entry : visibleEntries(folder.path(), SortOrder::name, {})) {
    if (entry.package) packages.push_back(entry.name);
  }
  EXPECT_EQ(packages, (Texts{"A.app", "B.PrefPane", "C.photoslibrary"}));
  EXPECT_TRUE(isPackage(folder.path("A.app")));
  EXPECT_FALSE(isPackage(folder.path("F.pkg"))) << "a file is one anyway";
  EXPECT_FALSE(isPackage(folder.path("D.apps")));
  EXPECT_FALSE(isPackage(folder.path("Alpha")));
}

TEST(PanelLayout, MovesTheListAndTheConfirmButton) {
  PanelWorld world(
      Json{{"frame", {{"x", 100}, {"y", 50}, {"width", 700}, {"height", 400}}},
           {"layout",
            {{"list", {{"x", 200}, {"y", 90}, {"width", 400}, {"height", 200}}},
             {"confirmButton", {{"x", 300}, {"y", 360}, {"width", 90}, {"height", 30}}}}}});
  EXPECT_EQ(*world.identified("ListView").frame(), (Rect{300, 140, 400, 200}));
  EXPECT_EQ(*world.rowOf("Alpha").frame(), (Rect{300, 164, 400, 24}));
  EXPECT_EQ(*world.identified("OKButton").frame(), (Rect{400, 410, 90, 30}));
  world.click(world.rowOf("beta"));
  const auto click = [&](Point at) {
    for (const std::uint32_t type : {1U, 2U}) {
      world.desktop().answer(PostEvent{MouseEvent{type, at, 1}, service});
    }
  };
  click({740, 420});  // where the button usually is
  EXPECT_EQ(world.panel().outcome(), PanelOutcome{});
  click({440, 420});
  EXPECT_EQ(world.panel().outcome().path, world.sample.path("beta"));
}

}  // namespace
}  // namespace simulator
