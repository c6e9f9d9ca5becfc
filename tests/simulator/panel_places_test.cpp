// Where a panel's sidebar and its pop-up lead.
#include <gtest/gtest.h>

#include "simulator/panel/folder.h"
#include "tests/simulator/panel_world.h"

namespace simulator {
namespace {

Texts menuTitles(PanelWorld& world) {
  Element& popUp = world.identified("where popup");
  EXPECT_EQ(world.perform(popUp, "AXShowMenu"), ax::success);
  world.pass(0.41);
  Texts titles;
  for (const auto& item : popUp.children().at(0)->children()) {
    titles.push_back(world.text(*item, "AXTitle"));
  }
  return titles;
}

TEST(PanelPlaces, SidebarShowsTheScenariosPlacesAndTheirLocationWhereItIsKnown) {
  const Sample disk;
  PanelWorld world({}, {{"home", disk.path()},
                        {"places",
                         {{{"label", "Work"}, {"path", "~/beta"}, {"urlKnown", true}},
                          {{"label", "All"}, {"path", "/usr"}},
                          {{"label", "Gone"}, {"path", "~/gone"}}}}});
  const Element& work = world.one("AXValue", "Work");
  const Element& all = world.one("AXValue", "All");
  EXPECT_EQ(world.read(work.id(), "AXURL").value, Value(Url{fileUrl(disk.path("beta"), true)}));
  EXPECT_EQ(world.read(all.id(), "AXURL").error, ax::attributeUnsupported);
  EXPECT_EQ(world.all("AXValue", "Gone").size(), 0U) << "nothing is there";
  EXPECT_EQ(work.parent()->parent()->parent()->children().size(), 3U) << "with the header";
  world.write(*work.parent()->parent(), "AXSelected", true);
  world.pass(0.11);
  EXPECT_EQ(world.panel().folderShown(), disk.path("beta"));
  world.click(all);
  world.pass(0.11);
  EXPECT_EQ(world.panel().folderShown(), "/usr");
}

TEST(PanelPlaces, PlacesDoNotDependOnWhatAppearsLater) {
  PanelWorld world;
  fs::create_directory(world.sample.path("Desktop"));
  const Element& home = *world.all("AXValue", fs::path(world.sample.path()).filename()).front();
  world.click(home);
  world.key(key::g, command | shift);
  world.pass(0.5);
  world.key(key::a, command);
  world.type("/usr");
  world.key(key::returnKey);
  world.pass(1);
  world.click(home);
  world.pass(0.11);
  EXPECT_EQ(world.panel().folderShown(), world.sample.path());
}

TEST(PanelVolumes, PopUpEndsAtTheVolumeAndNamesTheOthers) {
  const Sample disk;
  const Json scenario{{"volumes", {{{"name", "Backup"}, {"path", disk.path()}}}}};
  PanelWorld inside(Json{{"folder", disk.path("Alpha/inner")}}, scenario);
  EXPECT_EQ(menuTitles(inside), (Texts{"inner", "Alpha", "Backup", "Macintosh HD"}));
  inside.perform(inside.one("AXTitle", "Macintosh HD"), "AXPick");
  inside.pass(0.11);
  EXPECT_EQ(inside.panel().folderShown(), "/");

  PanelWorld outside(Json{{"folder", "/usr"}}, scenario);
  EXPECT_EQ(menuTitles(outside), (Texts{"usr", "Macintosh HD", "Backup"}));
  outside.perform(outside.one("AXTitle", "Backup"), "AXPress");
  outside.pass(0.11);
  EXPECT_EQ(outside.text(outside.identified("where popup")), "Backup");
  EXPECT_EQ(outside.read(outside.named("beta").id(), "AXURL").value,
            Value(Url{fileUrl(disk.path("beta"), true)}));
  outside.key(key::returnKey);
  EXPECT_EQ(outside.panel().outcome().path, disk.path());
}

TEST(PanelVolumes, EachMenuItemTakesAClick) {
  const Sample disk;
  PanelWorld world(Json{{"folder", "/usr"}},
                   {{"volumes", {{{"name", "Backup"}, {"path", disk.path()}}}}});
  menuTitles(world);
  world.click(world.one("AXTitle", "Backup"));
  world.pass(0.11);
  EXPECT_EQ(world.panel().folderShown(), disk.path());
}

}  // namespace
}  // namespace simulator
