#include "simulator/scenario/scene.h"

#include <cstdlib>

#include "simulator/panel/panel_tree.h"
#include "simulator/panel/printed_panel.h"
#include "simulator/programs/programs.h"

namespace simulator {
namespace {

constexpr double window_bar_height = 28;
constexpr double browser_bar_height = 52;

void addTitleBar(Element& window, const Rect& frame) {
  int position = 0;
  for (const char* subrole : {"AXCloseButton", "AXMinimizeButton", "AXZoomButton"}) {
    addElement(window, "AXButton", {frame.x + 8 + 20 * position++, frame.y + 7, 14, 14},
               {{"AXSubrole", std::string(subrole)}, {"AXEnabled", true}});
  }
}

// With buttons and the address bar, which is the result.
Element& addToolBar(Element& window, const ScenarioWindow& options) {
  const Rect& frame = options.frame;
  const Rect bar{frame.x, frame.y + window_bar_height, frame.width, browser_bar_height};
  Element& toolbar = addElement(window, "AXToolbar", bar);
  double x = bar.x + 8;
  for (const char* description : {"Back", "Forward", "Reload"}) {
    addElement(toolbar, "AXButton", {x, bar.y + 12, 28, 28},
               {{"AXDescription", std::string(description)}, {"AXEnabled", true}});
    x += 36;
  }
  return addElement(toolbar, "AXTextField", {x, bar.y + 12, bar.width - 140, 28},
                    {{"AXDescription", std::string("Address and search bar")},
                     {"AXValue", options.address},
                     {"AXFocused", options.addressFocused},
                     {"AXEnabled", true}});
}

// A page of `count` elements: a heading for each card, with a text, a link and a button below it.
void addPage(Element& window, const Rect& frame, const std::string& title, int count) {
  const double bars = window_bar_height + browser_bar_height;
  const Rect area{frame.x, frame.y + bars, frame.width, frame.height - bars};
  Element& page = addElement(addElement(addElement(window, "AXGroup", area), "AXScrollArea", area),
                             "AXWebArea", area, {{"AXTitle", title}});
  Element* card = nullptr;
  constexpr int kinds = 4;
  for (int i = 0; i < count; ++i) {
    const Rect line{area.x + 24 + 250 * (i % kinds), area.y + 24 + 32 * (i / kinds), 240, 24};
    const Rect whole{line.x, line.y, 250 * kinds - 10, line.height};
    const std::string text = "Item " + std::to_string(i + 1);
    if (i % kinds == 0) card = &addElement(page, "AXGroup", whole);
    if (i % kinds == 1) addElement(*card, "AXStaticText", line, {{"AXValue", text}});
    if (i % kinds == 2) addElement(*card, "AXLink", line, {{"AXTitle", text}});
    if (i % kinds == 3) addElement(*card, "AXButton", line, {{"AXTitle", text}});
  }
}

void openWindow(Desktop& desktop, Process& process, const ScenarioWindow& options) {
  Element& element = addElement(process.root, "AXWindow", options.frame,
                                {{"AXSubrole", std::string("AXStandardWindow")},
                                 {"AXTitle", options.title},
                                 {"AXModal", false}});
  addTitleBar(element, options.frame);
  if (options.webElements > 0) {
    const Element& address = addToolBar(element, options);
    if (options.addressFocused) process.root.set("AXFocusedUIElement", address.id());
    addPage(element, options.frame, options.title, options.webElements);
  }
  Window window;
  window.owner = process.pid;
  window.title = options.title;
  window.frame = options.frame;
  window.listed = options.listed;
  window.element = &element;
  desktop.addWindow(std::move(window));
}

void fillDesktop(Desktop& desktop, const Scenario& scenario) {
  installPrograms(desktop);
  desktop.setLanguage(scenario.language);
  desktop.setKeyboardLayout(scenario.keyboardLayout);
  desktop.setRequestTimeout(scenario.requestTimeoutSeconds);
  desktop.prices() = scenario.prices;
  desktop.addVolume("/", scenario.volume);
  for (const auto& [path, name] : scenario.volumes) desktop.addVolume(path, name);
  desktop.setScreens(scenario.screens);
  for (const auto& options : scenario.processes) {
    Process& process = desktop.addProcess({.pid = options.pid,
                                           .name = options.name,
                                           .command = options.command,
                                           .application = options.application,
                                           .host = {},
                                           .onOtherSpace = options.onOtherSpace});
    process.root.set("AXFocusedUIElement", Value{});
  }
  desktop.setFrontmost(scenario.frontmost);
  for (const auto& options : scenario.processes) {
    Process& process = *desktop.findProcess(options.pid);
    // A window opens in front of its fellows.
    for (auto window = options.windows.rbegin(); window != options.windows.rend(); ++window) {
      openWindow(desktop, process, *window);
    }
  }
}

void click(Desktop& desktop, Point at) {
  for (const std::uint32_t type : {left_down, left_up}) {
    desktop.postMouse({type, at, 1}, std::nullopt, Origin::person);
  }
}

void schedulePerson(Desktop& desktop, const PersonAct& act) {
  desktop.schedule(act.atSeconds, [&desktop, act] {
    if (act.activates) desktop.activate(*act.activates, Origin::person);
    if (act.clicks) click(desktop, *act.clicks);
    if (act.quits) quitApplication(desktop, *act.quits, act.remembered);
  });
}

}  // namespace

// Assumed (Live.TheServiceEndsWithItsApplication): the services that draw for an application end
// with it.
void quitApplication(Desktop& desktop, Pid pid, bool remembered) {
  for (const auto& process : desktop.processes()) {
    if (process->host == pid && !process->terminated) {
      desktop.terminateProcess(process->pid, false);
    }
  }
  if (!desktop.findProcess(pid)->terminated) desktop.terminateProcess(pid, remembered);
}

std::vector<PanelOutcome> Scene::outcomes() const {
  std::vector<PanelOutcome> result;
  for (const auto& panel : panels) result.push_back(panel->outcome());
  return result;
}

namespace {

std::unique_ptr<Panel> makePanel(Scene& scene, const PanelOptions& options) {
  if (options.tree.empty()) {
    return std::make_unique<OpenPanel>(scene.desktop, scene.surroundings, options);
  }
  return std::make_unique<PrintedPanel>(scene.desktop, scene.surroundings, options);
}

}  // namespace

std::unique_ptr<Scene> makeScene(const Scenario& scenario) {
  auto scene = std::make_unique<Scene>();
  const char* home = std::getenv("HOME");
  scene->surroundings.home = scenario.home.value_or(home != nullptr ? home : "/");
  scene->surroundings.lastGoToPath = scenario.lastGoToPath;
  scene->surroundings.places = scenario.places;
  scene->surroundings.listed = scenario.listed;
  fillDesktop(scene->desktop, scenario);
  for (const auto& options : scenario.panels) scene->panels.push_back(makePanel(*scene, options));
  for (const auto& act : scenario.person) schedulePerson(scene->desktop, act);
  scene->desktop.faults() = scenario.faults;
  return scene;
}

}  // namespace simulator
