// The column view: which columns there are, and what selecting in them does.
#include <gtest/gtest.h>

#include "tests/simulator/panel_world.h"

namespace simulator::panel_columns {
namespace {

// A panel of columns over the sample folder, which is a place of the sidebar.
class Columns : public PanelWorld {
 public:
  explicit Columns(Json panel = Json::object(), Json scenario = Json::object())
      : PanelWorld(inColumns(std::move(panel)), std::move(scenario)) {}

  Element& browser() { return identified("ColumnView"); }
  // The list of a column.
  Element& list(std::size_t column) { return *browser().children().at(column)->children().front(); }

  // The names in each column; one that is selected stands in brackets.
  std::vector<Texts> columns() {
    std::vector<Texts> all;
    for (const auto& area : browser().children()) {
      all.emplace_back();
      for (const auto& item : area->children().front()->children()) {
        const std::string name = text(*item->children().at(1));
        const bool marked = *item->get("AXSelected") == Value(true);
        all.back().push_back(marked ? "[" + name + "]" : name);
      }
    }
    return all;
  }

  Element& item(const std::string& file) { return *named(file).parent(); }

  // The steps that follow a key or a click have been taken.
  void settle() { pass(0.2); }
  void clickItem(const std::string& file) {
    click(item(file));
    settle();
  }
  void press(std::uint16_t code) {
    key(code);
    settle();
  }
  void clickAt(Point at) {
    for (const std::uint32_t type : {1U, 2U}) {
      desktop().answer(PostEvent{MouseEvent{type, at, 1}, service});
    }
    settle();
  }
  void goTo(const std::string& path) {
    key(key::g, command | shift);
    pass(0.5);
    write(identified("PathTextField"), "AXValue", path);
    key(key::returnKey);
    pass(0.5);
  }
  // Long enough for a change of the disk to be seen by the request that follows.
  void look() {
    pass(1);
    read(identified("open-panel").id(), "AXRole");
  }

 private:
  static Json inColumns(Json panel) {
    panel["view"] = "columns";
    return panel;
  }
};

const Texts sample_column{"Alpha", "beta", "file 9.txt", "file10.txt"};

TEST(PanelColumns, AreListsInScrollAreasOfOneBrowser) {
  Columns world;
  Element& browser = world.browser();
  EXPECT_EQ(browser.role(), "AXBrowser");
  EXPECT_EQ(world.text(browser, "AXDescription"), "column view");
  EXPECT_EQ(browser.parent()->role(), "AXSplitGroup");
  ASSERT_EQ(browser.children().size(), 1U);
  const Element& area = *browser.children().front();
  EXPECT_EQ(area.role(), "AXScrollArea");
  EXPECT_EQ(world.read(browser.id(), "AXColumns").value, Value(List{area.id()}));
  EXPECT_EQ(world.list(0).role(), "AXList");
  EXPECT_EQ(world.columns(), std::vector<Texts>{sample_column});
  const Element& name = world.named("file 9.txt");
  EXPECT_EQ(name.role(), "AXTextField");
  const Url url = std::get<Url>(*name.get("AXURL"));
  EXPECT_EQ(url.text, "file://" + world.sample.path("file%209.txt"));
  EXPECT_EQ(world.all("AXIdentifier", "ListView").size(), 0U) << "there is exactly one listing";
}

TEST(PanelColumns, SelectingAFolderShowsItInTheNextColumn) {
  Columns world;
  world.clickItem("Alpha");
  EXPECT_EQ(world.panel().folderShown(), world.sample.path("Alpha"));
  EXPECT_EQ(world.columns(),
            (std::vector<Texts>{{"[Alpha]", "beta", "file 9.txt", "file10.txt"}, {"inner"}}));
  world.clickItem("beta");
  EXPECT_EQ(world.panel().folderShown(), world.sample.path("beta"));
  EXPECT_EQ(world.columns(), (std::vector<Texts>{{"Alpha", "[beta]", "file 9.txt", "file10.txt"}}))
      << "an empty folder has no column";
  world.key(key::returnKey);
  EXPECT_EQ(world.panel().outcome().path, world.sample.path("beta"));
}

TEST(PanelColumns, SelectedRowsAreIgnoredWithSuccess) {
  Columns world(Json{{"mode", "files"}});
  const List rows{world.item("file10.txt").id()};
  EXPECT_EQ(world.write(world.list(0), "AXSelectedRows", rows), ax::success);
  EXPECT_EQ(world.write(world.list(0), "AXSelectedRows", true), ax::illegalArgument);
  EXPECT_EQ(world.write(world.list(0), "AXSelectedChildren", rows), ax::attributeUnsupported);
  EXPECT_EQ(world.write(world.item("file10.txt"), "AXSelected", true), ax::attributeUnsupported);
  world.settle();
  EXPECT_EQ(world.columns(), std::vector<Texts>{sample_column});
  EXPECT_FALSE(world.enabled(world.identified("OKButton")));
  EXPECT_EQ(world.perform(world.named("file10.txt"), "AXOpen"), ax::actionUnsupported);
  EXPECT_EQ(world.panel().outcome(), PanelOutcome{});
}

TEST(PanelColumns, AFileIsSelectedAndChosen) {
  Columns world(Json{{"mode", "files"}});
  world.clickItem("file10.txt");
  EXPECT_EQ(world.read(world.list(0).id(), "AXSelectedChildren").value,
            Value(List{world.item("file10.txt").id()}));
  EXPECT_TRUE(world.enabled(world.identified("OKButton")));
  world.click(world.item("file10.txt"), 2);
  EXPECT_EQ(world.panel().outcome().path, world.sample.path("file10.txt"));
}

TEST(PanelColumns, AFileOfAnEarlierColumnShowsItsFolderAgain) {
  Columns world(Json{{"mode", "files"}});
  world.clickItem("Alpha");
  world.clickItem("file10.txt");
  EXPECT_EQ(world.panel().folderShown(), world.sample.path());
  EXPECT_EQ(world.columns(), (std::vector<Texts>{{"Alpha", "beta", "file 9.txt", "[file10.txt]"}}));
  world.key(key::returnKey);
  EXPECT_EQ(world.panel().outcome().path, world.sample.path("file10.txt"));
}

TEST(PanelColumns, AClickBelowTheEntriesShowsTheColumnsFolder) {
  Columns world;
  world.clickItem("Alpha");
  const Rect first = *world.list(0).frame();
  world.clickAt({first.x + 10, first.y + first.height - 10});
  EXPECT_EQ(world.panel().folderShown(), world.sample.path());
  EXPECT_EQ(world.columns(), std::vector<Texts>{sample_column});
  const Rect browser = *world.browser().frame();
  world.clickItem("Alpha");
  world.clickAt({browser.x + browser.width - 10, browser.y + 10});
  EXPECT_EQ(world.panel().folderShown(), world.sample.path("Alpha")) << "beside the columns";
}

TEST(PanelColumns, ArrowsLeadThroughTheColumns) {
  Columns world(Json{{"mode", "files"}}, {{"frontmost", 812}});
  const auto shown = [&] { return world.panel().folderShown(); };
  std::ofstream(world.sample.path("Alpha/leaf.txt")) << "x";
  world.press(key::down);
  EXPECT_EQ(shown(), world.sample.path("Alpha"));
  world.press(key::right);
  EXPECT_EQ(shown(), world.sample.path("Alpha/inner"));
  world.press(key::down);
  EXPECT_EQ(world.columns(), (std::vector<Texts>{{"[Alpha]", "beta", "file 9.txt", "file10.txt"},
                                                 {"inner", "[leaf.txt]"}}));
  EXPECT_EQ(shown(), world.sample.path("Alpha"));
  world.press(key::right);
  EXPECT_EQ(shown(), world.sample.path("Alpha")) << "there is no column beside a file";
  world.press(key::left);
  EXPECT_EQ(world.columns(), (std::vector<Texts>{{"[Alpha]", "beta", "file 9.txt", "file10.txt"},
                                                 {"inner", "leaf.txt"}}));
  world.press(key::left);
  world.press(key::down);
  EXPECT_EQ(shown(), world.sample.path("beta")) << "the first column has the keyboard";
  world.press(key::up);
  EXPECT_EQ(shown(), world.sample.path("Alpha"));
}

TEST(PanelColumns, TheColumnWithTheSelectionHasTheKeyboard) {
  Columns world;
  const auto focused = [&] { return world.read({service, 0}, "AXFocusedUIElement").value; };
  EXPECT_EQ(world.read(world.list(0).id(), "AXFocused").value, Value(false));
  world.clickItem("Alpha");
  EXPECT_EQ(focused(), Value(world.list(0).id()));
  EXPECT_EQ(world.write(world.list(1), "AXFocused", true), ax::success);
  EXPECT_EQ(focused(), Value(world.list(1).id()));
  EXPECT_EQ(world.read(world.list(0).id(), "AXFocused").value, Value(false));
  EXPECT_EQ(world.read(world.list(1).id(), "AXFocused").value, Value(true));
  world.press(key::down);
  EXPECT_EQ(world.panel().folderShown(), world.sample.path("Alpha/inner"));
}

TEST(PanelColumns, TheBrowserHasTheKeyboardWhereThereIsNoColumn) {
  Columns world(Json::object(), {{"places", Json::array()}});
  fs::create_directories(world.sample.path("beta/only"));
  Columns empty(Json{{"folder", world.sample.path("beta/only")}},
                {{"frontmost", 812},
                 {"places", {{{"label", "Only"}, {"path", world.sample.path("beta/only")}}}}});
  EXPECT_EQ(empty.columns(), std::vector<Texts>{});
  EXPECT_EQ(empty.read(empty.browser().id(), "AXColumns").value, Value(List{}));
  EXPECT_EQ(empty.read(empty.browser().id(), "AXFocused").value, Value(true));
  EXPECT_EQ(empty.read({service, 0}, "AXFocusedUIElement").value, Value(empty.browser().id()));
  empty.press(key::down);
  EXPECT_EQ(empty.panel().folderShown(), world.sample.path("beta/only"));
}

TEST(PanelColumns, BeginAtTheNearestPlaceOrAtTheVolume) {
  Columns world(Json{{"folder", "/usr/share"}}, {{"showsSystemFolders", true}});
  const std::vector<Texts> columns = world.columns();
  ASSERT_EQ(columns.size(), 3U);
  EXPECT_EQ(std::count(columns[0].begin(), columns[0].end(), "[usr]"), 1);
  EXPECT_EQ(std::count(columns[1].begin(), columns[1].end(), "[share]"), 1);
  world.goTo(world.sample.path("Alpha"));
  EXPECT_EQ(world.columns().size(), 2U) << "the home folder's and its own";
  world.goTo("/usr");
  EXPECT_EQ(world.columns().size(), 2U);
}

TEST(PanelColumns, SelectingAPlaceWithinTheColumnsKeepsTheFirst) {
  const Sample other;
  Columns world(Json{{"folder", other.path()}},
                {{"places",
                  {{{"label", "Outer"}, {"path", other.path()}},
                   {{"label", "Inner"}, {"path", other.path("Alpha")}}}}});
  world.clickItem("Alpha");
  EXPECT_EQ(world.columns().size(), 2U);
  world.goTo(other.path());
  world.goTo(other.path("Alpha"));
  EXPECT_EQ(world.columns(), std::vector<Texts>{{"inner"}});
}

TEST(PanelColumns, AHiddenFolderIsNotSelectedInTheColumnBefore) {
  Columns world(Json{{"folder", "/usr"}});
  const std::vector<Texts> columns = world.columns();
  ASSERT_EQ(columns.size(), 2U);
  for (const std::string& name : columns[0]) {
    EXPECT_NE(name, "usr");
    EXPECT_FALSE(name.starts_with("[")) << name;
  }
}

TEST(PanelColumns, TheLastOneIsSeenWhereTheyDoNotFit) {
  const Sample other;
  fs::create_directories(other.path("Alpha/inner/a/b/c"));
  Columns world(Json{{"folder", other.path("Alpha/inner/a/b")}},
                {{"places", {{{"label", "Outer"}, {"path", other.path()}}}}});
  ASSERT_EQ(world.columns().size(), 5U);
  const Rect browser = *world.browser().frame();
  const Rect last = *world.list(4).frame();
  EXPECT_EQ(last.x + last.width, browser.x + browser.width);
  EXPECT_LT(world.list(0).frame()->x, browser.x);
  const Rect hidden = *world.item("beta").frame();
  world.clickAt({hidden.x + 10, hidden.y + 10});
  EXPECT_EQ(world.panel().folderShown(), other.path("Alpha/inner/a/b"));
  world.clickItem("c");
  EXPECT_EQ(world.panel().folderShown(), other.path("Alpha/inner/a/b/c"));
}

TEST(PanelColumns, FollowTheDiskInEveryColumnAndKeepTheirPlace) {
  Columns world;
  world.clickItem("Alpha");
  const ElementId before = world.list(0).id();
  fs::create_directory(world.sample.path("gamma"));
  world.look();
  EXPECT_EQ(
      world.columns(),
      (std::vector<Texts>{{"[Alpha]", "beta", "file 9.txt", "file10.txt", "gamma"}, {"inner"}}));
  EXPECT_EQ(world.read(before, "AXRole").error, ax::invalidElement);
  world.press(key::down);
  EXPECT_EQ(world.panel().folderShown(), world.sample.path("beta"));
  std::ofstream(world.sample.path("beta/first.txt")) << "x";
  world.look();
  EXPECT_EQ(world.columns().size(), 2U) << "what was empty has a column now";
}

TEST(PanelColumns, TheSearchConcernsTheLastColumn) {
  Columns world;
  world.clickItem("Alpha");
  world.write(world.identified("Search"), "AXValue", std::string("x"));
  world.pass(0.5);
  EXPECT_EQ(world.columns(), (std::vector<Texts>{{"[Alpha]", "beta", "file 9.txt", "file10.txt"}}));
  world.write(world.identified("Search"), "AXValue", std::string("in"));
  world.pass(0.5);
  EXPECT_EQ(world.columns().at(1), Texts{"inner"});
}

TEST(PanelColumns, TheGoToSheetSelectsAFile) {
  Columns world(Json{{"mode", "files"}, {"folder", "/usr"}});
  world.goTo(world.sample.path("file10.txt"));
  EXPECT_EQ(world.columns(), (std::vector<Texts>{{"Alpha", "beta", "file 9.txt", "[file10.txt]"}}));
  world.key(key::returnKey);
  EXPECT_EQ(world.panel().outcome().path, world.sample.path("file10.txt"));
}

TEST(PanelColumns, FilesOfAFolderPanelCannotBeSelected) {
  Columns world;
  world.clickItem("file10.txt");
  EXPECT_EQ(world.columns(), std::vector<Texts>{sample_column});
  for (int i = 0; i < 3; ++i) world.press(key::down);
  EXPECT_EQ(world.columns(), (std::vector<Texts>{{"Alpha", "[beta]", "file 9.txt", "file10.txt"}}));
}

}  // namespace
}  // namespace simulator::panel_columns
