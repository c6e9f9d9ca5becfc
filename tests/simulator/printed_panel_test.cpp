// A panel that stands there with the tree that was printed of a real one.
#include "simulator/panel/printed_panel.h"

#include <gtest/gtest.h>

#include "simulator/panel/keystroke.h"
#include "simulator/scenario/scenario.h"
#include "tests/simulator/panel_world.h"

namespace simulator {
namespace {

Json rectangle(double x, double y, double width, double height) {
  return {{"x", x}, {"y", y}, {"width", width}, {"height", height}};
}

Json element(const std::string& role, const std::string& title, const Json& frame,
             const Texts& actions = {}) {
  return {{"role", role}, {"title", title}, {"description", ""},
          {"value", ""},  {"frame", frame}, {"actions", actions}};
}

const Json panelFrame = rectangle(320, 180, 800, 450);
const Json sheetFrame = rectangle(400, 200, 300, 100);

// A window with a button, a sheet with a field, and something without a frame.
Json dialog() {
  Json field = element("AXTextField", "", rectangle(410, 210, 200, 20), {"AXPick", "AXConfirm"});
  field["value"] = "/usr";
  Json back = element("AXButton", "", rectangle(340, 190, 20, 20), {"AXPress"});
  back["description"] = "back";
  return {element("AXWindow", "Upload", panelFrame, {"AXShowMenu"}),
          element("AXButton", "Choose", rectangle(1000, 600, 80, 20), {"AXPress"}),
          back,
          element("AXUnknown", "", rectangle(0, 0, 0, 0)),
          element("AXSheet", "Go to", sheetFrame),
          field};
}

class PrintedWorld : public PanelWorld {
 public:
  explicit PrintedWorld(const std::string& shape = "service-window", Json panel = Json::object(),
                        Json scenario = Json::object())
      : PanelWorld(withTree(shape, std::move(panel)), std::move(scenario)) {}

  Element& choose() { return one("AXTitle", "Choose"); }
  Element& root() { return *choose().parent(); }
  Texts milestones() {
    Texts texts;
    for (const auto& milestone : panel().milestones()) texts.push_back(milestone.text);
    return texts;
  }
  // "OWNER TITLE FRAME" of those that the window list names and whose title it is.
  Texts listed() {
    Texts lines;
    for (const auto& window : desktop().windows()) {
      if (!window->listed || window->title == "Terminal") continue;
      lines.push_back(std::to_string(window->owner) + " " + window->title + " " +
                      std::to_string(static_cast<int>(window->frame.x)));
    }
    return lines;
  }

 private:
  static Json withTree(const std::string& shape, Json panel) {
    panel["shape"] = shape;
    if (!panel.contains("tree")) panel["tree"] = dialog();
    return panel;
  }
};

std::string mistake(const Json& panel) {
  try {
    scenarioFromJson({{"panels", {panel}}}, "wrong.json");
  } catch (const ScenarioError& error) {
    return error.what();
  }
  return "none";
}

TEST(PrintedPanel, ElementsHaveWhatWasPrintedAndNothingElse) {
  PrintedWorld world;
  Element& field = world.one("AXValue", "/usr");
  EXPECT_EQ(field.role(), "AXTextField");
  EXPECT_EQ(field.frame(), (Rect{410, 210, 200, 20}));
  EXPECT_EQ(field.parent()->role(), "AXSheet");
  EXPECT_EQ(field.actionNames(), (List{Value("AXPick"), Value("AXConfirm")}));
  for (const char* name : {"AXTitle", "AXDescription", "AXSubrole", "AXIdentifier", "AXFocused"}) {
    EXPECT_EQ(world.read(field.id(), name).error, ax::attributeUnsupported) << name;
  }
  const Element& unknown = *world.root().children()[2];
  for (const char* name : {"AXPosition", "AXSize", "AXTitle", "AXValue", "AXURL"}) {
    EXPECT_EQ(world.read(unknown.id(), name).error, ax::attributeUnsupported) << name;
  }
}

TEST(PrintedPanel, ThePanelsOwnElementHasNoActionThatWasNotPrinted) {
  PrintedWorld world;
  EXPECT_EQ(world.root().actionNames(), List{Value("AXShowMenu")});
}

TEST(PrintedPanel, ItsPrintedActionsSucceedAndAreMilestones) {
  PrintedWorld world;
  EXPECT_EQ(world.perform(world.choose(), "AXPress"), ax::success);
  EXPECT_EQ(world.perform(world.one("AXValue", "/usr"), "AXConfirm"), ax::success);
  EXPECT_EQ(world.perform(world.one("AXDescription", "back"), "AXPress"), ax::success);
  EXPECT_EQ(world.perform(world.choose(), "AXPick"), ax::actionUnsupported);
  const Texts expected{"panel opened", "AXPress of AXButton Choose",
                       "AXConfirm of AXTextField /usr", "AXPress of AXButton back"};
  EXPECT_EQ(world.milestones(), expected);
  EXPECT_EQ(world.desktop().record().milestones(), expected);
  EXPECT_EQ(world.panel().milestones()[1].at, 0.1);
}

TEST(PrintedPanel, NothingThatIsDoneToItHasAnEffect) {
  for (const char* shape : {"service-window", "host-window", "host-sheet", "embedded"}) {
    PrintedWorld world(shape);
    const Texts before = world.listed();
    for (const Pid pid : {service, host}) {
      world.key(key::returnKey, 0, pid);
      world.key(key::escape, 0, pid);
      world.key(key::g, command | shift, pid);
      world.click(world.choose(), 1, pid);
    }
    EXPECT_EQ(world.write(world.one("AXValue", "/usr"), "AXValue", std::string("/tmp")),
              ax::attributeUnsupported);
    EXPECT_EQ(world.perform(world.choose(), "AXPress"), ax::success);
    world.pass(100);
    EXPECT_EQ(world.all("AXValue", "/usr").size(), 1U) << shape;
    EXPECT_EQ(world.milestones(), (Texts{"panel opened", "AXPress of AXButton Choose"})) << shape;
    EXPECT_EQ(world.listed(), before) << shape;
    EXPECT_TRUE(world.panel().alive()) << shape;
    EXPECT_TRUE(world.panel().hasOpened()) << shape;
    EXPECT_EQ(world.panel().outcome(), PanelOutcome{}) << shape;
  }
}

TEST(PrintedPanel, ItsShapeSaysWhereItStands) {
  const auto parentIn = [](const std::string& shape) {
    PrintedWorld world(shape);
    const Element& parent = *world.root().parent();
    return std::to_string(parent.id().pid) + " " + parent.role();
  };
  EXPECT_EQ(parentIn("service-window"), "900 AXApplication");
  EXPECT_EQ(parentIn("host-window"), "812 AXApplication");
  EXPECT_EQ(parentIn("host-sheet"), "812 AXWindow");
  EXPECT_EQ(parentIn("embedded"), "812 AXWindow");
}

TEST(PrintedPanel, TheWindowListNamesItsWindowsAndTheSheetInIt) {
  using Case = std::pair<std::pair<std::string, Json>, Texts>;
  const Texts page{"812 Extensions 80"};
  const Json titled{{"title", "A"}, {"serviceTitle", "B"}, {"frame", rectangle(7, 0, 9, 9)}};
  const std::vector<Case> cases{
      {{"service-window", {}}, {"900 Go to 400", "900 Upload 320", "812 Upload 320"}},
      {{"host-window", {}}, {"812 Go to 400", "900  320", "812 Upload 320"}},
      {{"host-sheet", {}}, {"812 Go to 400", "900  320", "812 Upload 320"}},
      {{"host-window", {{"listed", "host"}}}, {"812 Go to 400", "812 Upload 320"}},
      {{"host-window", {{"listed", "service"}}}, {"900  320"}},
      {{"host-window", {{"listed", "none"}}}, {}},
      {{"embedded", {}}, {}},
      {{"host-window", titled}, {"812 Go to 400", "900 B 7", "812 A 7"}},
      {{"service-window", {{"hostTitle", "C"}}}, {"900 Go to 400", "900 Upload 320", "812 C 320"}}};
  for (const auto& [panel, expected] : cases) {
    PrintedWorld world(panel.first, panel.second.is_null() ? Json::object() : panel.second);
    Texts all = expected;
    all.insert(all.end(), page.begin(), page.end());
    EXPECT_EQ(world.listed(), all) << panel.first << panel.second;
  }
}

TEST(PrintedPanel, TheLastSheetHasTheFocusOrElseThePanel) {
  PrintedWorld world("host-window");
  EXPECT_EQ(world.focusedWindow(host), Value(world.one("AXTitle", "Go to").id()));
  PrintedWorld alone("host-window", {{"tree", {dialog()[0], dialog()[1]}}});
  EXPECT_EQ(alone.focusedWindow(host), Value(alone.root().id()));
}

TEST(PrintedPanel, AWindowIsModalOrNot) {
  const auto subrole = [](Json panel) {
    PrintedWorld world("host-window", std::move(panel));
    return world.text(world.root(), "AXSubrole");
  };
  EXPECT_EQ(subrole(Json::object()), "AXDialog");
  EXPECT_EQ(subrole({{"modal", false}}), "AXStandardWindow");
}

TEST(PrintedPanel, ItTakesTheKeysFromAPanelBehindIt) {
  const Json behind{{"shape", "service-window"}, {"folder", "/usr"}};
  const Json front{{"shape", "service-window"}, {"tree", dialog()}};
  const auto outcomeWith = [](const Json& panels) {
    const auto scene = makeScene(scenarioFromJson({{"panels", panels}}, "world"));
    scene->desktop.postKey({key::escape, true, 0, {}}, service, Origin::tool);
    return scene->outcomes().front().end;
  };
  EXPECT_EQ(outcomeWith({behind, front}), PanelOutcome::End::none);
  EXPECT_EQ(outcomeWith(Json::array({behind})), PanelOutcome::End::cancelled);
}

TEST(PrintedPanel, ItsServiceOutlivesAnotherPanelOfIt) {
  const Json front{{"shape", "service-window"}, {"serviceEnds", true}};
  const Json behind{{"shape", "service-window"}, {"tree", dialog()}};
  const auto scene = makeScene(scenarioFromJson({{"panels", {behind, front}}}, "world"));
  scene->desktop.postKey({key::escape, true, 0, {}}, service, Origin::tool);
  scene->desktop.advanceTo(1);
  EXPECT_FALSE(scene->panels[1]->alive());
  EXPECT_TRUE(scene->panels[0]->alive());
  EXPECT_FALSE(scene->desktop.findProcess(service)->terminated);
}

TEST(PrintedPanel, ItEndsWithItsApplication) {
  for (const char* shape : {"service-window", "host-sheet"}) {
    PrintedWorld world(shape);
    quitApplication(world.desktop(), host, false);
    EXPECT_FALSE(world.panel().alive()) << shape;
    EXPECT_EQ(world.panel().outcome(), PanelOutcome{}) << shape;
  }
}

TEST(ScenarioMistake, OfATreeIsNamedAtItsPlace) {
  const Json panel{{"shape", "host-window"}, {"tree", dialog()}};
  EXPECT_EQ(mistake(panel), "none");
  const auto with = [&](const std::string& place, const Json& value) {
    Json wrong = panel;
    wrong[Json::json_pointer(place)] = value;
    return mistake(wrong);
  };
  const std::string panels = "wrong.json: /panels/0/";
  EXPECT_EQ(with("/tree", Json::object()), panels + "tree: expected a list");
  EXPECT_EQ(with("/tree", Json::array()), panels + "tree: expected 1 to 700 nodes");
  EXPECT_EQ(with("/tree", Json(701, dialog()[0])), panels + "tree: expected 1 to 700 nodes");
  EXPECT_EQ(with("/tree/1/title", 7), panels + "tree/1/title: expected a text");
  EXPECT_EQ(with("/tree/1", Json::object()),
            panels + "tree/1: expected the key \"role\", which is required");
  EXPECT_EQ(with("/tree/1/frame/width", -1),
            panels + "tree/1/frame/width: expected a number from 0 to 1e+09");
  EXPECT_EQ(with("/tree/1/actions/1", "AXPress"),
            panels + "tree/1/actions/1: expected each action once");
  EXPECT_EQ(with("/tree/1/subrole", "AXCloseButton"),
            panels +
                "tree/1/subrole: no such key; expected one of role, title, description, "
                "value, frame, actions");
  EXPECT_EQ(with("/shape", "unseen"),
            panels + "shape: expected a shape that accessibility shows, as the panel has a tree");
  for (const char* key : {"mode", "prompt", "folder", "faults", "goTo", "slow", "keysReach"}) {
    EXPECT_EQ(with(std::string("/") + key, nullptr),
              panels + key +
                  ": no such key; expected one of shape, host, service, serviceName, "
                  "serviceCommand, serviceTitle, serviceEnds, listed, title, hostTitle, modal, "
                  "frame, tree")
        << key;
  }
}

}  // namespace
}  // namespace simulator
