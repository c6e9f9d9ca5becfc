// What a panel lists and in which order, how it follows the disk, and where its parts lie.
#include <gtest/gtest.h>

#include <chrono>

#include "simulator/panel/folder.h"
#include "tests/simulator/panel_world.h"

namespace simulator {
namespace {

// Makes a file that was modified so many seconds before (negative) or after now.
void writeFile(const std::string& path, int seconds) {
  std::ofstream(path) << "x";
  const auto now = fs::file_time_type::clock::now();
  fs::last_write_time(path, now + std::chrono::seconds(seconds));
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
