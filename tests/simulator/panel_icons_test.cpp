// The icon view: where its icons stand, and how they are selected and opened.
#include <gtest/gtest.h>

#include "tests/simulator/panel_world.h"

namespace simulator {
namespace {

class Icons : public PanelWorld {
 public:
  explicit Icons(Json panel = Json::object(), Json scenario = Json::object())
      : PanelWorld(asIcons(std::move(panel)), std::move(scenario)) {}

  Element& list() { return identified("IconView"); }
  Element& item(const std::string& file) { return *named(file).parent(); }

  std::string selectedName() {
    const Value selected = read(list().id(), "AXSelectedChildren").value;
    for (const auto& item : list().children()) {
      if (selected == Value(List{item->id()})) return text(*item->children().at(1));
    }
    return selected == Value(List{}) ? "" : "?";
  }
  std::string selectedAfter(std::uint16_t code) {
    key(code);
    return selectedName();
  }

 private:
  static Json asIcons(Json panel) {
    panel["view"] = "icons";
    return panel;
  }
};

TEST(PanelIcons, AreGroupsOfAnImageAndANameInOneList) {
  Icons world;
  EXPECT_EQ(world.list().role(), "AXList");
  EXPECT_EQ(world.text(world.list(), "AXDescription"), "icon view");
  EXPECT_EQ(world.list().parent()->role(), "AXScrollArea");
  EXPECT_EQ(world.list().children().size(), 4U);
  const Element& item = world.item("Alpha");
  EXPECT_EQ(item.role(), "AXGroup");
  EXPECT_EQ(item.children()[0]->role(), "AXImage");
  EXPECT_EQ(item.children()[1]->role(), "AXTextField");
  EXPECT_EQ(std::get<Url>(*world.named("Alpha").get("AXURL")).text,
            "file://" + world.sample.path("Alpha/"));
  EXPECT_EQ(world.all("AXIdentifier", "ListView").size(), 0U) << "there is exactly one listing";
}

TEST(PanelIcons, OpenAFolderAndChooseAFileAlthoughTheAnswerIsAnError) {
  Icons world(Json{{"mode", "files"}});
  EXPECT_EQ(world.perform(world.named("Alpha"), "AXOpen"), ax::attributeUnsupported);
  world.pass(0.2);
  EXPECT_EQ(world.panel().folderShown(), world.sample.path("Alpha"));
  Icons file(Json{{"mode", "files"}});
  EXPECT_EQ(file.perform(*file.item("file10.txt").children()[0], "AXOpen"),
            ax::attributeUnsupported);
  EXPECT_EQ(file.panel().outcome().path, file.sample.path("file10.txt"));
}

TEST(PanelIcons, AreNotSelectedByAccessibility) {
  Icons world;
  const List wanted{world.item("Alpha").id()};
  EXPECT_EQ(world.write(world.list(), "AXSelectedChildren", wanted), ax::attributeUnsupported);
  EXPECT_EQ(world.write(world.list(), "AXSelectedRows", wanted), ax::attributeUnsupported);
  EXPECT_EQ(world.write(world.item("Alpha"), "AXSelected", true), ax::attributeUnsupported);
  EXPECT_EQ(world.selectedName(), "");
}

TEST(PanelIcons, StandInLinesAndAreClicked) {
  const Sample other;
  for (char name = 'a'; name < 'k'; ++name) fs::create_directory(other.path({name}));
  Icons world(
      Json{{"folder", other.path()},
           {"layout", {{"list", {{"x", 200}, {"y", 90}, {"width", 330}, {"height", 250}}}}}});
  const Rect list = *world.list().frame();
  EXPECT_EQ(*world.item("a").frame(), (Rect{list.x, list.y, 104, 96}));
  EXPECT_EQ(*world.item("b").frame(), (Rect{list.x + 208, list.y, 104, 96}));
  EXPECT_EQ(*world.item("c").frame(), (Rect{list.x + 104, list.y + 96, 104, 96}));
  world.click(world.item("c"));
  EXPECT_EQ(world.selectedName(), "c");
  for (const std::uint32_t type : {1U, 2U}) {
    const Point beside{list.x + list.width - 5, list.y + 5};
    world.desktop().answer(PostEvent{MouseEvent{type, beside, 1}, service});
  }
  EXPECT_EQ(world.selectedName(), "");
  world.click(world.item("c"), 2);
  world.pass(0.2);
  EXPECT_EQ(world.panel().folderShown(), other.path("c"));
}

TEST(PanelIcons, ArrowsLeadByOneIconAndByALine) {
  const Sample other;
  for (const char* name : {"c", "d", "e", "f", "g"}) fs::create_directory(other.path(name));
  // Three in a line: Alpha beta c, d e f, file 9.txt file10.txt g.
  Icons world(
      Json{{"folder", other.path()},
           {"layout", {{"list", {{"x", 200}, {"y", 90}, {"width", 330}, {"height", 150}}}}}},
      {{"frontmost", 812}});
  EXPECT_EQ(world.selectedAfter(key::down), "Alpha");
  EXPECT_EQ(world.selectedAfter(key::right), "beta");
  EXPECT_EQ(world.selectedAfter(key::down), "e");
  EXPECT_EQ(world.selectedAfter(key::down), "e") << "the file below cannot be selected";
  EXPECT_EQ(world.selectedAfter(key::right), "f");
  EXPECT_EQ(world.selectedAfter(key::right), "g") << "over what cannot be selected";
  const Rect list = *world.list().frame();
  const Rect last = *world.item("g").frame();
  EXPECT_EQ(last.y + last.height, list.y + list.height) << "it is scrolled into view";
  EXPECT_EQ(world.selectedAfter(key::down), "g");
  EXPECT_EQ(world.selectedAfter(key::left), "f");
  EXPECT_EQ(world.selectedAfter(key::up), "c");
  EXPECT_EQ(world.item("c").frame()->y, list.y);
  world.key(key::returnKey);
  EXPECT_EQ(world.panel().outcome().path, other.path("c"));
}

TEST(PanelIcons, FollowTheDiskAndKeepTheSelection) {
  Icons world(Json{{"mode", "files"}});
  world.click(world.item("file10.txt"));
  std::ofstream(world.sample.path("Beginning")) << "x";
  world.pass(1);
  EXPECT_EQ(std::get<List>(world.read(world.list().id(), "AXChildren").value).size(), 5U);
  EXPECT_EQ(world.selectedName(), "file10.txt");
  world.write(world.identified("Search"), "AXValue", std::string("file"));
  world.pass(0.5);
  EXPECT_EQ(world.list().children().size(), 2U);
}

TEST(PanelIcons, TakeTheKeyboardAsTheListDoes) {
  Icons world;
  EXPECT_EQ(world.write(world.list(), "AXFocused", true), ax::success);
  EXPECT_EQ(world.read({service, 0}, "AXFocusedUIElement").value, Value(world.list().id()));
  EXPECT_EQ(world.read(world.list().id(), "AXFocused").value, Value(true));
  EXPECT_EQ(world.write(world.list(), "AXFocused", std::string("x")), ax::illegalArgument);
}

}  // namespace
}  // namespace simulator
