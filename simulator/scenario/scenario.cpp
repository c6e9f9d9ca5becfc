#include "simulator/scenario/scenario.h"

#include <algorithm>
#include <fstream>
#include <sstream>

#include "simulator/panel/folder.h"
#include "simulator/panel/list_columns.h"
#include "simulator/panel/panel_texts.h"
#include "simulator/scenario/bundled_files.h"
#include "simulator/scenario/json_object.h"
#include "simulator/scenario/json_text.h"
#include "simulator/scenario/printed_tree_reader.h"

namespace simulator {
namespace {

constexpr Pid largest_pid = 99999;
constexpr Pid first_service_pid = 900;
constexpr double longest_seconds = 3600;

const JsonObject::Choices<Language> languages{
    {"en", Language::english}, {"zh-Hans", Language::simplifiedChinese}, {"de", Language::german}};
const JsonObject::Choices<PanelShape> shapes{{"service-window", PanelShape::serviceWindow},
                                             {"host-window", PanelShape::hostWindow},
                                             {"host-sheet", PanelShape::hostSheet},
                                             {"embedded", PanelShape::embedded},
                                             {"unseen", PanelShape::unseen}};
const JsonObject::Choices<PanelMode> modes{
    {"folders", PanelMode::folders}, {"files", PanelMode::files}, {"upload", PanelMode::upload}};
const JsonObject::Choices<ListedWindows> listings{
    {"host-and-service", ListedWindows::hostAndService},
    {"host", ListedWindows::host},
    {"service", ListedWindows::service},
    {"none", ListedWindows::none}};
const JsonObject::Choices<KeysReach> reaches{
    {"service", KeysReach::service},
    {"host", KeysReach::host},
    {"both", KeysReach::both},
    {"nobody", KeysReach::nobody},
    {"service-while-host-frontmost", KeysReach::serviceWhileHostFrontmost}};
const JsonObject::Choices<ClicksReach> clickReaches{{"service", ClicksReach::service},
                                                    {"host", ClicksReach::host},
                                                    {"both", ClicksReach::both},
                                                    {"none", ClicksReach::none},
                                                    {"window-corner", ClicksReach::windowCorner}};
const JsonObject::Choices<bool> elementOwners{{"service", false}, {"host", true}};
const JsonObject::Choices<KeyboardLayout> layouts{{"us", KeyboardLayout::us},
                                                  {"azerty", KeyboardLayout::azerty}};
const JsonObject::Choices<SortOrder> sortOrders{{"name", SortOrder::name},
                                                {"date", SortOrder::date}};
const JsonObject::Choices<PanelView> views{
    {"list", PanelView::list}, {"columns", PanelView::columns}, {"icons", PanelView::icons}};
const JsonObject::Choices<bool> generations{{"new", false}, {"old", true}};

// What runs on a desktop unless the scenario says otherwise.
std::vector<ScenarioProcess> usualProcesses(Language language) {
  const std::string page = language == Language::simplifiedChinese ? "扩展程序"
                           : language == Language::german          ? "Erweiterungen"
                                                                   : "Extensions";
  const std::string bundle = "/Applications/Google Chrome.app/Contents/";
  const std::string helper = "Google Chrome Helper (Renderer)";
  return {
      {1, "launchd", "/sbin/launchd", false, {}},
      {250, "Finder", "/System/Library/CoreServices/Finder.app/Contents/MacOS/Finder", true, {}},
      {300,
       "Terminal",
       "/System/Applications/Utilities/Terminal.app/Contents/MacOS/Terminal",
       true,
       {{"Terminal", {700, 400, 640, 420}, true, 0}}},
      {812,
       "Google Chrome",
       bundle + "MacOS/Google Chrome",
       true,
       {{page, {80, 60, 1100, 740}, true, 40}}},
      {830, helper, bundle + "Helpers/" + helper + ".app/Contents/MacOS/" + helper, false, {}},
  };
}

const ScenarioProcess* processWith(const Scenario& scenario, Pid pid) {
  const auto found = std::find_if(scenario.processes.begin(), scenario.processes.end(),
                                  [pid](const ScenarioProcess& each) { return each.pid == pid; });
  return found == scenario.processes.end() ? nullptr : &*found;
}

// The pid at the place, which must be an application's.
Pid readApplication(const JsonPlace& place, const Scenario& scenario) {
  const Pid pid = place.integer(1, largest_pid);
  const ScenarioProcess* process = processWith(scenario, pid);
  if (process == nullptr || !process->application) {
    place.refuse("expected the pid of an application among the processes");
  }
  return pid;
}

ScenarioWindow readWindow(const JsonPlace& place) {
  JsonObject object(place);
  ScenarioWindow window;
  window.title = object.require("title").text();
  object.read("frame", window.frame);
  object.read("listed", window.listed);
  object.read("webElements", window.webElements, 0, 10000);
  object.read("address", window.address);
  object.read("addressFocused", window.addressFocused);
  object.refuseOthers();
  return window;
}

ScenarioProcess readProcess(const JsonPlace& place, const Scenario& scenario) {
  JsonObject object(place);
  ScenarioProcess process;
  const JsonPlace pid = object.require("pid");
  process.pid = pid.integer(1, largest_pid);
  if (processWith(scenario, process.pid) != nullptr) {
    pid.refuse("expected a pid that no other process has");
  }
  process.name = object.require("name").text();
  process.command = process.name;
  object.read("command", process.command);
  object.read("application", process.application);
  object.read("onOtherSpace", process.onOtherSpace);
  if (const auto windows = object.find("windows")) {
    for (const auto& item : windows->items()) process.windows.push_back(readWindow(item));
  }
  object.refuseOthers();
  return process;
}

GoToOptions readGoTo(const JsonPlace& place) {
  JsonObject object(place);
  GoToOptions goTo;
  object.read("generation", goTo.oldGeneration, generations);
  object.read("comboBox", goTo.comboBox);
  object.read("normalisesField", goTo.normalisesField);
  object.read("withoutConfirm", goTo.withoutConfirm);
  object.read("neverOpens", goTo.neverOpens);
  object.read("openAtStart", goTo.openAtStart);
  object.read("suggestion", goTo.suggestion);
  object.refuseOthers();
  return goTo;
}

WindowListOptions readWindowList(const JsonPlace& place) {
  JsonObject object(place);
  WindowListOptions list;
  object.read("leavesAfterSeconds", list.leavesAfterSeconds, 0, longest_seconds);
  object.read("changesNumberAfterSeconds", list.changesNumberAfterSeconds, 0, longest_seconds);
  object.read("hostListedAfterSeconds", list.hostListedAfterSeconds, 0, longest_seconds);
  object.read("listedTwice", list.listedTwice);
  object.read("staysAfterClosingSeconds", list.staysAfterClosingSeconds, 0, longest_seconds);
  object.read("staysUncapturable", list.staysUncapturable);
  object.refuseOthers();
  return list;
}

PanelLayout readLayout(const JsonPlace& place, const Rect& panel) {
  JsonObject object(place);
  PanelLayout layout;
  const auto read = [&](const std::string& key, std::optional<Rect>& target) {
    const auto member = object.find(key);
    if (!member) return;
    const Rect frame = readRect(*member);
    const bool fits = frame.x >= 0 && frame.y >= 0 && frame.x + frame.width <= panel.width &&
                      frame.y + frame.height <= panel.height;
    if (!fits) member->refuse("expected a rectangle within the panel, from its top left corner");
    target = frame;
  };
  read("confirmButton", layout.confirmButton);
  read("list", layout.list);
  object.refuseOthers();
  return layout;
}

PanelFaults readPanelFaults(const JsonPlace& place) {
  constexpr std::int32_t lowest_error = -25214;
  JsonObject object(place);
  PanelFaults faults;
  object.read("confirmDoesNothing", faults.confirmDoesNothing);
  object.read("confirmAnswers", faults.confirmAnswers, lowest_error, 0);
  object.read("pressRefused", faults.pressRefused, lowest_error, 0);
  object.read("fieldWriteRefused", faults.fieldWriteRefused, lowest_error, 0);
  object.read("ignoresKeys", faults.ignoresKeys);
  object.read("ignoresSelection", faults.ignoresSelection);
  object.read("staleListing", faults.staleListing);
  object.read("noConfirmButton", faults.noConfirmButton);
  object.read("noCancelButton", faults.noCancelButton);
  object.read("cancelDoesNothing", faults.cancelDoesNothing);
  object.read("confirmsOnSecondReturn", faults.confirmsOnSecondReturn);
  object.read("keysNeedClick", faults.keysNeedClick);
  object.read("escapeNeedsClick", faults.escapeNeedsClick);
  object.read("showMenuRefused", faults.showMenuRefused, lowest_error, 0);
  object.read("menuItemsWithoutPress", faults.menuItemsWithoutPress);
  object.read("menuItemsWithoutPick", faults.menuItemsWithoutPick);
  object.read("goToReturnConfirms", faults.goToReturnConfirms);
  object.read("closesLateBySeconds", faults.closesLateBySeconds, 0, longest_seconds);
  object.refuseOthers();
  return faults;
}

// A folder of the machine, or a path in the home folder, which is not known yet.
std::string readFolder(const JsonPlace& place) {
  const std::string path = place.text();
  if (!path.starts_with("~") && (!path.starts_with("/") || !isDirectory(path))) {
    place.refuse("expected the absolute path of a folder of this machine");
  }
  return path;
}

// The service of an earlier panel of the same host, or the next free pid.
Pid usualService(const Scenario& scenario, Pid host) {
  Pid pid = first_service_pid;
  for (const auto& panel : scenario.panels) {
    if (panel.host == host) return panel.service;
    pid = std::max(pid, panel.service + 1);
  }
  while (processWith(scenario, pid) != nullptr) ++pid;
  return pid;
}

void readService(JsonObject& object, PanelOptions& panel, const Scenario& scenario) {
  panel.service = usualService(scenario, panel.host);
  object.read("service", panel.service, 1, largest_pid);
  const bool taken =
      std::any_of(scenario.panels.begin(), scenario.panels.end(), [&](const PanelOptions& other) {
        return other.service == panel.service && other.host != panel.host;
      });
  if (taken || processWith(scenario, panel.service) != nullptr) {
    object.require("service").refuse("expected a pid that no other process has");
  }
  // Measured in English.
  // Assumed (Live.TheWindowListCallsTheServiceByItsApplication): in other languages, too.
  panel.serviceName =
      "Open and Save Panel Service (" + processWith(scenario, panel.host)->name + ")";
  object.read("serviceName", panel.serviceName);
  object.read("serviceCommand", panel.serviceCommand);
  object.read("serviceTitle", panel.serviceTitle);
  object.read("serviceEnds", panel.serviceEnds);
}

// The browsers whose panels are Chromium's.
// Assumed (no test can tell: it takes that browser): Microsoft Edge has the same texts.
bool isChromium(const std::string& name) {
  const auto& names = {"Chromium", "Google Chrome", "Google Chrome Dev", "Microsoft Edge"};
  return std::find(names.begin(), names.end(), name) != names.end();
}

// What the host puts on its panels itself.
void takeBrowsersTexts(PanelOptions& panel) {
  const BrowserTexts& texts = browserTexts(panel.language);
  if (panel.mode == PanelMode::folders) {
    panel.message = texts.message;
    panel.prompt = texts.select;
  }
  if (panel.mode == PanelMode::upload) {
    panel.prompt = texts.upload;
    panel.asksAfterUpload = true;
  }
}

void readLook(JsonObject& object, PanelOptions& panel) {
  object.read("description", panel.description);
  object.read("prompt", panel.prompt);
  object.read("message", panel.message);
  object.read("identifiers", panel.identifiers);
  object.read("searchConfirms", panel.searchConfirms);
  object.read("searchWidth", panel.searchWidth, 1, panel.frame.width);
  object.read("asksAfterUpload", panel.asksAfterUpload);
}

// Where the panel stands and which windows it has.
void readPanelWindows(JsonObject& object, PanelOptions& panel) {
  if (panel.shape == PanelShape::embedded) panel.listed = ListedWindows::none;
  object.read("listed", panel.listed, listings);
  object.read("title", panel.title);
  object.read("hostTitle", panel.hostTitle);
  object.read("modal", panel.modal);
  object.read("frame", panel.frame);
}

// What only stands there has nothing to say of what it does and how it looks.
void readTree(JsonObject& object, const JsonPlace& tree, PanelOptions& panel) {
  if (panel.shape == PanelShape::unseen) {
    object.place().at("shape").refuse(
        "expected a shape that accessibility shows, as the panel has a tree");
  }
  panel.tree = readPrintedTree(tree);
  object.refuseOthers();
}

// A twin needs a root in another tree.
void readInBothTrees(JsonObject& object, PanelOptions& panel) {
  object.read("inBothTrees", panel.inBothTrees);
  const bool inHost = panel.shape != PanelShape::serviceWindow && panel.shape != PanelShape::unseen;
  if (panel.inBothTrees && !inHost) {
    object.require("inBothTrees").refuse("expected a shape that stands in the host's tree");
  }
}

PanelOptions readPanel(const JsonPlace& place, const Scenario& scenario) {
  JsonObject object(place);
  PanelOptions panel;
  object.read("shape", panel.shape, shapes);
  const JsonPlace host = object.find("host").value_or(place);
  if (place.value.contains("host")) panel.host = readApplication(host, scenario);
  const ScenarioProcess* process = processWith(scenario, panel.host);
  if (process == nullptr) place.refuse("expected the key \"host\", as no process has the pid 812");
  const bool inWindow = panel.shape == PanelShape::hostSheet || panel.shape == PanelShape::embedded;
  if (inWindow && process->windows.empty()) {
    object.find("shape").value_or(place).refuse(
        "expected a shape that needs no window of the host, which has none");
  }
  readService(object, panel, scenario);
  readPanelWindows(object, panel);
  if (const auto tree = object.find("tree")) {
    readTree(object, *tree, panel);
    return panel;
  }
  panel.language = scenario.language;
  object.read("language", panel.language, languages);
  object.read("mode", panel.mode, modes);
  object.read("keysReach", panel.keysReach, reaches);
  object.read("clicksReach", panel.clicksReach, clickReaches);
  object.read("elementsBelongTo", panel.elementsBelongToHost, elementOwners);
  readInBothTrees(object, panel);
  if (isChromium(process->name)) takeBrowsersTexts(panel);
  readLook(object, panel);
  object.read("opensAtSeconds", panel.opensAtSeconds, 0, longest_seconds);
  object.read("slow", panel.slow, 0.01, 100);
  object.read("sort", panel.sort, sortOrders);
  if (const auto folder = object.find("folder")) panel.folder = readFolder(*folder);
  object.read("view", panel.view, views);
  object.read("listColumns", panel.listColumns, 1, most_list_columns);
  if (const auto layout = object.find("layout")) panel.layout = readLayout(*layout, panel.frame);
  if (const auto list = object.find("windowList")) panel.windowList = readWindowList(*list);
  if (const auto goTo = object.find("goTo")) panel.goTo = readGoTo(*goTo);
  if (const auto faults = object.find("faults")) panel.faults = readPanelFaults(*faults);
  object.refuseOthers();
  return panel;
}

Prices readPrices(const JsonPlace& place) {
  JsonObject object(place);
  Prices prices;
  const std::pair<const char*, Seconds*> keys[] = {
      {"request", &prices.request},         {"press", &prices.press},
      {"windowList", &prices.windowList},   {"event", &prices.event},
      {"activation", &prices.activation},   {"comingForward", &prices.comingForward},
      {"processList", &prices.processList}, {"script", &prices.script},
      {"scriptKey", &prices.scriptKey},     {"finder", &prices.finder},
      {"snapshot", &prices.snapshot},
  };
  for (const auto& [key, price] : keys) object.read(key, *price, 0, longest_seconds);
  object.refuseOthers();
  return prices;
}

PersonAct readPersonAct(const JsonPlace& place, const Scenario& scenario) {
  JsonObject object(place);
  PersonAct act;
  act.atSeconds = object.require("atSeconds").number(0, longest_seconds);
  if (const auto activated = object.find("activates")) {
    act.activates = readApplication(*activated, scenario);
  }
  if (const auto clicked = object.find("clicks")) act.clicks = readPoint(*clicked);
  if (const auto quitting = object.find("quits")) {
    act.quits = readApplication(*quitting, scenario);
    object.read("remembered", act.remembered);
  }
  object.refuseOthers();
  if (act.activates.has_value() + act.clicks.has_value() + act.quits.has_value() != 1) {
    place.refuse("expected one of the keys \"activates\", \"clicks\" and \"quits\"");
  }
  return act;
}

BusyTime readBusyTime(const JsonPlace& place) {
  JsonObject object(place);
  BusyTime busy;
  busy.pid = object.require("pid").integer(1, largest_pid);
  object.read("fromSeconds", busy.from, 0, longest_seconds);
  const JsonPlace end = object.require("toSeconds");
  busy.to = end.number(0, longest_seconds);
  if (busy.to <= busy.from) end.refuse("expected a later time than fromSeconds");
  object.refuseOthers();
  return busy;
}

std::set<std::string> readScriptable(const JsonPlace& place) {
  std::set<std::string> applications;
  for (const auto& item : place.items()) {
    if (item.value != "System Events" && item.value != "Finder") {
      item.refuse("expected one of \"System Events\", \"Finder\"");
    }
    applications.insert(item.text());
  }
  return applications;
}

Faults readFaults(const JsonPlace& place) {
  JsonObject object(place);
  Faults faults;
  object.read("untrusted", faults.untrusted);
  if (const auto silent = object.find("silentProcesses")) {
    for (const auto& item : silent->items()) {
      faults.silent_processes.insert(item.integer(1, largest_pid));
    }
  }
  if (const auto missing = object.find("missingPrograms")) {
    for (const auto& item : missing->items()) faults.missing_programs.insert(item.text());
  }
  object.read("scriptHangs", faults.script_hangs);
  object.read("captureHelperHangs", faults.window_list_hangs);
  object.read("psPrintsNothing", faults.ps_prints_nothing);
  object.read("screenRecordingDenied", faults.screen_recording_denied);
  if (const auto busy = object.find("busy")) {
    for (const auto& item : busy->items()) faults.busy.push_back(readBusyTime(item));
  }
  object.read("activationRefused", faults.activation_refused);
  if (const auto denied = object.find("automationDenied")) {
    faults.automation_denied = readScriptable(*denied);
  }
  if (const auto unasked = object.find("automationUnasked")) {
    faults.automation_unasked = readScriptable(*unasked);
  }
  object.refuseOthers();
  return faults;
}

void readProcesses(JsonObject& object, Scenario& scenario) {
  if (const auto processes = object.find("processes")) {
    for (const auto& item : processes->items()) {
      scenario.processes.push_back(readProcess(item, scenario));
    }
  } else {
    scenario.processes = usualProcesses(scenario.language);
  }
  const auto frontmost = object.find("frontmost");
  if (frontmost && frontmost->value.is_null()) {
    scenario.frontmost.reset();
  } else if (frontmost) {
    scenario.frontmost = readApplication(*frontmost, scenario);
  } else if (processWith(scenario, *scenario.frontmost) == nullptr) {
    object.place().refuse("expected the key \"frontmost\", as no process has the pid 300");
  }
}

void readScreens(const JsonPlace& place, Scenario& scenario) {
  scenario.screens.clear();
  for (const auto& item : place.items()) scenario.screens.push_back(readRect(item));
  if (scenario.screens.empty()) place.refuse("expected at least one screen");
}

void readVolume(const JsonPlace& place, Scenario& scenario) {
  JsonObject object(place);
  const std::string name = object.require("name").text();
  const auto given = object.find("path");
  const std::string path = given ? given->text() : "/Volumes/" + name;
  const auto real = path.starts_with("/") ? typedPath(path, "/", "/") : std::nullopt;
  if (!real || !isDirectory(*real)) {
    (given ? *given : place.at("name"))
        .refuse("expected a folder of this machine at " + (path.empty() ? "the path" : path));
  }
  if (*real == "/" || scenario.volumes.contains(*real)) {
    (given ? *given : place.at("name")).refuse("expected a folder that is no other volume");
  }
  scenario.volumes[*real] = name;
  object.refuseOthers();
}

std::string readPattern(const JsonPlace& place) {
  const std::string path = place.text();
  if (!path.starts_with("/")) place.refuse("expected a path from / on");
  return path;
}

SidebarPlace readSidebarPlace(const JsonPlace& place) {
  JsonObject object(place);
  SidebarPlace result;
  result.name = object.require("label").text();
  result.path = readFolder(object.require("path"));
  object.read("urlKnown", result.urlKnown);
  object.refuseOthers();
  return result;
}

}  // namespace

Scenario scenarioFromJson(const nlohmann::ordered_json& document, const std::string& name) {
  Scenario scenario;
  scenario.name = std::filesystem::path(name).stem().string();
  scenario.document = document;
  JsonObject object({document, name, ""});
  object.read("description", scenario.description);
  object.read("language", scenario.language, languages);
  object.read("home", scenario.home);
  object.read("volume", scenario.volume);
  if (const auto volumes = object.find("volumes")) {
    for (const auto& item : volumes->items()) readVolume(item, scenario);
  }
  if (const auto places = object.find("places")) {
    scenario.places.emplace();
    for (const auto& item : places->items()) scenario.places->push_back(readSidebarPlace(item));
  }
  object.read("lastGoToPath", scenario.lastGoToPath);
  object.read("showsSystemFolders", scenario.listed.systemFolders);
  if (const auto only = object.find("listsOnly")) {
    scenario.listed.only.emplace();
    for (const auto& item : only->items()) scenario.listed.only->push_back(readPattern(item));
  }
  object.read("keyboardLayout", scenario.keyboardLayout, layouts);
  object.read("requestTimeoutSeconds", scenario.requestTimeoutSeconds, 0.01, longest_seconds);
  if (const auto prices = object.find("prices")) scenario.prices = readPrices(*prices);
  if (const auto screens = object.find("screens")) readScreens(*screens, scenario);
  readProcesses(object, scenario);
  if (const auto panels = object.find("panels")) {
    for (const auto& item : panels->items()) scenario.panels.push_back(readPanel(item, scenario));
  }
  if (const auto person = object.find("person")) {
    for (const auto& item : person->items()) {
      scenario.person.push_back(readPersonAct(item, scenario));
    }
  }
  if (const auto faults = object.find("faults")) scenario.faults = readFaults(*faults);
  object.refuseOthers();
  return scenario;
}

Scenario scenarioFromText(const std::string& text, const std::string& name) {
  return scenarioFromJson(parseJson(text, name), name);
}

Scenario readScenarioFile(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  std::ostringstream text;
  text << file.rdbuf();
  if (!file) throw ScenarioError(path.string() + ": /: expected a file that can be read");
  return scenarioFromText(text.str(), path.string());
}

Scenario patched(const Scenario& scenario, const std::string& pointer,
                 const nlohmann::ordered_json& value) {
  nlohmann::ordered_json document = scenario.document;
  document[nlohmann::ordered_json::json_pointer(pointer)] = value;
  return scenarioFromJson(document, scenario.name);
}

std::vector<std::string> bundledScenarioNames() {
  std::vector<std::string> names;
  for (const auto& file : bundledFiles()) names.emplace_back(file.name);
  std::sort(names.begin(), names.end());
  return names;
}

Scenario bundledScenario(const std::string& name) {
  for (const auto& file : bundledFiles()) {
    if (file.name == name) return scenarioFromText(std::string(file.text), name);
  }
  throw ScenarioError(name + ": /: expected the name of a bundled scenario");
}

}  // namespace simulator
