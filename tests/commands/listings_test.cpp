#include "commands/listings.h"

#include <algorithm>
#include <nlohmann/json.hpp>
#include <stdexcept>

#include "core/tables.h"
#include "support/world.h"

namespace tessarine::test::listings {
namespace {

using Node = simulator::Element;
using Texts = std::vector<std::pair<std::string, std::string>>;

const Result noFrame{{"x", 0.0}, {"y", 0.0}, {"width", 0.0}, {"height", 0.0}};

Node& add(Node& parent, const std::string& role, const Texts& texts = {}) {
  Node& node = parent.addChild(role);
  for (const auto& [name, text] : texts) node.set(name, text);
  return node;
}

// A service that "/bin/ps" lists.
Node& addService(BareDesktop& world) {
  world.desktop.installProgram("/bin/ps", [](simulator::ProgramRun& run) {
    run.print("  900 Open and Save Panel Service (Google Chrome)\n");
    run.end(0);
  });
  return world.desktop
      .addProcess({.pid = servicePid,
                   .name = "Service",
                   .command = "Service",
                   .application = false,
                   .host = browserPid})
      .root;
}

Node& addServiceWindow(BareDesktop& world, const std::string& title) {
  Node& element =
      add(world.desktop.findProcess(servicePid)->root, "AXWindow", {{"AXTitle", title}});
  world.desktop.addWindow({.owner = servicePid, .title = title, .frame = {}, .element = &element});
  return element;
}

void addChooser(Node& parent) {
  add(parent, "AXButton", {{"AXTitle", "Cancel"}});
  add(parent, "AXButton", {{"AXTitle", "Choose"}});
  add(parent, "AXStaticText", {{"AXValue", "选择扩展程序目录"}});
}

// --- list-windows. ---

TEST(WindowSummary, IsRoleSubroleTextsAndFrame) {
  BareDesktop world;
  Node& window = add(world.app(), "AXWindow",
                     {{"AXSubrole", "AXDialog"}, {"AXTitle", "Öffnen"}, {"AXDescription", "open"}});
  window.setFrame({-20.5, 40, 800, 450});
  const Result expected{
      {"role", "AXWindow"},
      {"subrole", "AXDialog"},
      {"title", "Öffnen"},
      {"description", "open"},
      {"frame", {{"x", -20.5}, {"y", 40.0}, {"width", 800.0}, {"height", 450.0}}}};
  EXPECT_EQ(windowSummary(world.handle(window)), expected);
}

TEST(WindowSummary, IsEmptyTextsAndZerosForWhatIsMissing) {
  BareDesktop world;
  const Result expected{{"role", "AXWindow"},
                        {"subrole", ""},
                        {"title", ""},
                        {"description", ""},
                        {"frame", noFrame}};
  const Result summary = windowSummary(world.handle(add(world.app(), "AXWindow")));
  EXPECT_EQ(summary, expected);
  for (const auto& [key, number] : summary["frame"].items()) {
    EXPECT_TRUE(number.is_number_float()) << key;
  }
}

TEST(WindowSummary, ReportsExtentsAsMagnitudes) {
  BareDesktop world;
  Node& window = add(world.app(), "AXWindow");
  window.setFrame({-5, -6, -30, -40});
  const Result expected{{"x", -5.0}, {"y", -6.0}, {"width", 30.0}, {"height", 40.0}};
  EXPECT_EQ(windowSummary(world.handle(window))["frame"], expected);
}

TEST(ListWindows, ListsTheWindowsOfEveryCandidateInOrder) {
  BareDesktop world;
  addService(world);
  addServiceWindow(world, "Open");
  world.addWindow("second");
  world.addWindow("first");
  const auto window = [](const std::string& title, const Result& frame) {
    return Result{{"role", "AXWindow"},
                  {"subrole", ""},
                  {"title", title},
                  {"description", ""},
                  {"frame", frame}};
  };
  const Result frame{{"x", 100.0}, {"y", 100.0}, {"width", 800.0}, {"height", 600.0}};
  const Result expected{{"ok", true},
                        {"command", "list-windows"},
                        {"primaryPid", browserPid},
                        {"apps",
                         {{{"pid", browserPid},
                           {"label", "primary-browser"},
                           {"windows", {window("first", frame), window("second", frame)}}},
                          {{"pid", servicePid},
                           {"label", "open-save-panel-service"},
                           {"windows", Result::array({window("Open", noFrame)})}}}}};
  EXPECT_EQ(listWindows(browserPid), expected);
}

// A sheet is no window of its own for accessibility, but it may have the focus.
TEST(ListWindows, ListsAFocusedWindowThatIsNotAmongTheWindows) {
  BareDesktop world;
  Node& sheet = add(world.addWindow("Page"), "AXSheet", {{"AXTitle", "Open"}});
  world.process().focused_window =
      world.desktop.addWindow({.owner = browserPid, .title = "", .frame = {}, .element = &sheet})
          .number;
  const Result windows = listWindows(browserPid)["apps"][0]["windows"];
  ASSERT_EQ(windows.size(), 2U);
  EXPECT_EQ(windows[0]["title"], "Page");
  EXPECT_EQ(windows[1]["role"], "AXSheet");
}

TEST(ListWindows, ListsAProcessThatDoesNotRunWithoutWindows) {
  World world("no-panel");
  const Result expected{
      {"ok", true},
      {"command", "list-windows"},
      {"primaryPid", 4711},
      {"apps", Result::array(
                   {{{"pid", 4711}, {"label", "primary-browser"}, {"windows", Result::array()}}})}};
  EXPECT_EQ(world.run({"list-windows", "--pid", "4711"}),
            (Outcome{0, expected.dump(2) + "\n", ""}));
}

// --- list-background-panels. ---

// A desktop whose helper prints these lines.
struct HelperDesktop : BareDesktop {
  explicit HelperDesktop(const std::string& lines) {
    desktop.setScreens({{0, 0, 1440, 900}});
    desktop.installProgram("background-window-capture", [lines](simulator::ProgramRun& run) {
      run.print(lines);
      run.end(0);
    });
  }
};

Result panel(std::uint32_t number, std::int32_t pid, const std::string& app,
             const std::string& title, bool visible, const Result& frame) {
  return {{"windowID", number}, {"pid", pid},         {"app", app},
          {"title", title},     {"visible", visible}, {"frame", frame}};
}

const std::string twoPanels =
    "31\tpid=812\tapp=Google Chrome\ttitle=打开\tframe=5000,0,800,450\n"
    "30\tpid=900\tapp=Open and Save Panel Service (Google Chrome)\ttitle=Open\t"
    "frame=320,180.5,800,450\n";

TEST(ListBackgroundPanels, ListsPanelWindowsOnAndOffTheScreensInTheHelpersOrder) {
  HelperDesktop world(twoPanels);
  const Result expected{
      {"ok", true},
      {"command", "list-background-panels"},
      {"primaryPid", browserPid},
      {"windows",
       {panel(31, 812, "Google Chrome", "打开", false,
              {{"x", 5000.0}, {"y", 0.0}, {"width", 800.0}, {"height", 450.0}}),
        panel(30, 900, "Open and Save Panel Service (Google Chrome)", "Open", true,
              {{"x", 320.0}, {"y", 180.5}, {"width", 800.0}, {"height", 450.0}})}}};
  const Result result = listBackgroundPanels(browserPid);
  EXPECT_EQ(result, expected);
  EXPECT_TRUE(result["windows"][0]["windowID"].is_number_integer());
  EXPECT_TRUE(result["windows"][0]["frame"]["y"].is_number_float());
}

TEST(ListBackgroundPanels, LeavesOutExcludedWindows) {
  HelperDesktop world(twoPanels);
  tables().excludedPanelWindowIDs = {31};
  const Result result = listBackgroundPanels(browserPid);
  ASSERT_EQ(result["windows"].size(), 1U);
  EXPECT_EQ(result["windows"][0]["windowID"], 30);
}

TEST(ListBackgroundPanels, CannotBePrintedWithAFrameThatIsNotFinite) {
  HelperDesktop world("31\tpid=812\tapp=Google Chrome\ttitle=Open\tframe=nan,0,800,450\n");
  const Result result = listBackgroundPanels(browserPid);
  try {
    serialize(result);
    ADD_FAILURE() << "nothing was thrown";
  } catch (const std::runtime_error& error) {
    EXPECT_STREQ(error.what(), "the number nan at /windows/0/frame/x cannot be written as JSON");
  }
}

TEST(ListBackgroundPanels, RunsTheHelperOnce) {
  HelperDesktop world(twoPanels);
  listBackgroundPanels(browserPid);
  const auto& lines = world.desktop.record().lines();
  EXPECT_EQ(std::count_if(lines.begin(), lines.end(),
                          [](const auto& line) {
                            const auto* run = std::get_if<simulator::ProgramStarted>(&line.entry);
                            return run != nullptr && run->path.ends_with("capture");
                          }),
            1);
}

TEST(ListBackgroundPanels, ListsNothingWithoutAHelper) {
  World world("english-service-window",
              {{"/faults/missingPrograms", {"background-window-capture"}}});
  const Result expected{{"ok", true},
                        {"command", "list-background-panels"},
                        {"primaryPid", browserPid},
                        {"windows", Result::array()}};
  EXPECT_EQ(world.run({"list-background-panels", "--pid", "812"}),
            (Outcome{0, expected.dump(2) + "\n", ""}));
}

// --- inspect-open-dialog. ---

Result node(const std::string& role, const std::string& title, const std::string& value,
            const std::vector<std::string>& actions = {}) {
  return {{"role", role},   {"title", title},   {"description", ""},
          {"value", value}, {"frame", noFrame}, {"actions", actions}};
}

TEST(InspectOpenDialog, DumpsTheTreeOfEachDialog) {
  BareDesktop world;
  addService(world);
  Node& window = addServiceWindow(world, "Open");
  window.set("AXDescription", std::string("panel"));
  window.setFrame({320, 180, -800, 450});
  Node& slider = add(window, "AXSlider", {{"AXTitle", "Zoom"}});
  slider.set("AXValue", 0.5);
  Node& field = add(window, "AXTextField", {{"AXValue", "/usr"}});
  field.addAction("AXConfirm", [] { return 0; });
  field.addAction("AXShowMenu", [] { return 0; });
  add(slider, "AXValueIndicator");

  const Result frame{{"x", 320.0}, {"y", 180.0}, {"width", 800.0}, {"height", 450.0}};
  const Result root{
      {"role", "AXWindow"}, {"title", "Open"}, {"description", "panel"}, {"frame", frame}};
  Result rootNode = node("AXWindow", "Open", "", {"AXRaise"});
  rootNode["description"] = "panel";
  rootNode["frame"] = frame;
  const Result dialog{{"pid", servicePid},
                      {"label", "open-save-panel-service"},
                      {"root", root},
                      {"chooserControlsAvailable", false},
                      {"nodes",
                       {rootNode, node("AXSlider", "Zoom", ""),
                        node("AXTextField", "", "/usr", {"AXConfirm", "AXShowMenu"}),
                        node("AXValueIndicator", "", "")}}};
  const Result expected{{"ok", true},
                        {"command", "inspect-open-dialog"},
                        {"primaryPid", browserPid},
                        {"dialogs", Result::array({dialog})}};
  EXPECT_EQ(inspectOpenDialog(browserPid), expected);
}

TEST(InspectOpenDialog, SaysWhetherTheControlsOfAChooserAreThere) {
  BareDesktop world;
  addChooser(world.addWindow("Open"));
  EXPECT_EQ(inspectOpenDialog(browserPid)["dialogs"][0]["chooserControlsAvailable"], true);
}

TEST(InspectOpenDialog, ListsNothingForAProcessThatDoesNotRun) {
  World world("no-panel");
  const Result expected{{"ok", true},
                        {"command", "inspect-open-dialog"},
                        {"primaryPid", 4711},
                        {"dialogs", Result::array()}};
  EXPECT_EQ(world.run({"inspect-open-dialog", "--pid", "4711"}),
            (Outcome{0, expected.dump(2) + "\n", ""}));
}

// "812 AXWindow Page" for each dialog.
std::vector<std::string> rootsOfDialogs() {
  std::vector<std::string> texts;
  const Result result = inspectOpenDialog(browserPid);
  for (const Result& dialog : result["dialogs"]) {
    texts.push_back(dialog["pid"].dump() + " " + dialog["root"]["role"].get<std::string>() + " " +
                    dialog["root"]["title"].get<std::string>());
  }
  return texts;
}

using Roots = std::vector<std::string>;

TEST(InspectOpenDialog, FindsAnEmbeddedChooserOfTheBrowserBesideADialogOfTheService) {
  BareDesktop world;
  addService(world);
  addServiceWindow(world, "打开");
  addChooser(world.addWindow("Page"));
  EXPECT_EQ(rootsOfDialogs(), (Roots{"812 AXWindow Page", "900 AXWindow 打开"}));
}

TEST(InspectOpenDialog, LooksForNoEmbeddedChooserBesideADialogOfTheBrowser) {
  BareDesktop world;
  addChooser(world.addWindow("Page"));
  world.addWindow("Open");
  EXPECT_EQ(rootsOfDialogs(), Roots{"812 AXWindow Open"});
}

TEST(InspectOpenDialog, LooksForNoEmbeddedChooserInAService) {
  BareDesktop world;
  addService(world);
  addChooser(addServiceWindow(world, "Panel"));
  EXPECT_EQ(rootsOfDialogs(), Roots{});
}

TEST(InspectOpenDialog, DumpsNoMoreThanSevenHundredNodes) {
  BareDesktop world;
  Node& window = world.addWindow("Open");
  for (int i = 0; i < 800; ++i) add(window, "AXImage", {{"AXTitle", std::to_string(i)}});
  const Result nodes = inspectOpenDialog(browserPid)["dialogs"][0]["nodes"];
  EXPECT_EQ(nodes.size(), 700U);
  EXPECT_EQ(nodes.front()["title"], "Open");
  EXPECT_EQ(nodes.back()["title"], "698");
}

TEST(InspectOpenDialog, DumpsNoDeeperThanEightLevels) {
  BareDesktop world;
  Node* at = &world.addWindow("Open");
  for (int level = 1; level <= 10; ++level) {
    at = &add(*at, "AXGroup", {{"AXTitle", std::to_string(level)}});
  }
  const Result nodes = inspectOpenDialog(browserPid)["dialogs"][0]["nodes"];
  EXPECT_EQ(nodes.size(), 9U);
  EXPECT_EQ(nodes.back()["title"], "8");
}

TEST(Listings, LeaveTheDesktopAsItIs) {
  World world("two-panels");
  for (const char* command : {"list-windows", "list-background-panels", "inspect-open-dialog"}) {
    EXPECT_EQ(world.run({command, "--pid", "812"}).exitStatus, 0) << command;
  }
  for (const auto& line : world.record().lines()) {
    const auto* request = std::get_if<simulator::AccessibilityRequest>(&line.entry);
    if (request == nullptr) continue;
    EXPECT_NE(request->verb, simulator::AccessibilityRequest::Verb::set);
    EXPECT_NE(request->verb, simulator::AccessibilityRequest::Verb::perform);
  }
  EXPECT_TRUE(postedEvents(world.record()).empty());
  EXPECT_EQ(world.panelOutcomes(), "open, open");
}

}  // namespace
}  // namespace tessarine::test::listings
