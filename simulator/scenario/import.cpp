#include "simulator/scenario/import.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <fstream>
#include <map>
#include <string_view>

#include "simulator/panel/panel_texts.h"
#include "simulator/scenario/json_object.h"
#include "simulator/scenario/scenario.h"

namespace simulator {
namespace {

using Json = nlohmann::ordered_json;

constexpr std::streamsize most_bytes = 4 << 20;
constexpr Pid largest_pid = 99999;
constexpr double largest_number = 1e9;   // points, in a printout: listings may be very long
constexpr double farthest = 50000;       // points, in the scenario
constexpr std::size_t most_nodes = 700;  // the tool prints no more of a dialog
constexpr std::size_t most_dialogs = 100;
constexpr Rect usual_screen{0, 0, 1440, 900};
constexpr Rect usual_window{80, 60, 1100, 740};
constexpr int page_elements = 40;
constexpr const char* folder_for_paths = "/usr/share";

// --- What was printed. ---

struct Node {
  std::string role;
  std::string title;
  std::string description;
  std::string value;
  Rect frame;
  std::vector<std::string> actions;
};

struct Dialog {
  std::string place;  // its JSON pointer
  Pid pid = 0;
  bool inService = false;
  bool recognised = false;
  Node root;
  std::vector<Node> nodes;  // without the root
  bool complete = true;
};

struct AppWindow {
  std::string place;
  Pid pid = 0;
  std::string role;
  std::string subrole;
  std::string title;
  Rect frame;
};

Json parse(const Printout& printout) {
  try {
    return Json::parse(printout.text);
  } catch (const Json::parse_error&) {
    scenarioFromText(printout.text, printout.file);  // names the line and the column
    throw;
  } catch (const Json::out_of_range&) {
    throw ScenarioError(printout.file + ": /: expected numbers of a size that can be held");
  }
}

// Reads what every result begins with; the browser's pid.
Pid readHeader(JsonObject& object, const char* command) {
  const JsonPlace ok = object.require("ok");
  if (!ok.flag()) ok.refuse("expected true");
  const JsonPlace name = object.require("command");
  if (name.text() != command) name.refuse("expected \"" + std::string(command) + "\"");
  return object.require("primaryPid").integer(1, largest_pid);
}

// Reads "pid" and "label"; whether it is a service's label.
bool readOwner(JsonObject& object, Pid browser, Pid& pid) {
  const JsonPlace place = object.require("pid");
  pid = place.integer(1, largest_pid);
  bool service = false;
  object.require("label");
  object.read(
      "label", service,
      JsonObject::Choices<bool>{{"primary-browser", false}, {"open-save-panel-service", true}});
  if (service && pid == browser) place.refuse("expected another pid than the browser's");
  if (!service && pid != browser) place.refuse("expected " + std::to_string(browser));
  return service;
}

// A frame without position and size is printed as zeros.
Rect readFrame(const JsonPlace& place) {
  JsonObject object(place);
  const Rect frame{object.require("x").number(-largest_number, largest_number),
                   object.require("y").number(-largest_number, largest_number),
                   object.require("width").number(0, largest_number),
                   object.require("height").number(0, largest_number)};
  object.refuseOthers();
  return frame;
}

// What a root and the nodes have in common.
Node readElement(JsonObject& object) {
  Node node;
  node.role = object.require("role").text();
  node.title = object.require("title").text();
  node.description = object.require("description").text();
  node.frame = readFrame(object.require("frame"));
  return node;
}

Node readNode(const JsonPlace& place) {
  JsonObject object(place);
  Node node = readElement(object);
  node.value = object.require("value").text();
  for (const auto& action : object.require("actions").items()) {
    node.actions.push_back(action.text());
  }
  object.refuseOthers();
  return node;
}

Dialog readDialog(const JsonPlace& place, Pid browser) {
  JsonObject object(place);
  Dialog dialog;
  dialog.place = place.pointer;
  dialog.inService = readOwner(object, browser, dialog.pid);
  JsonObject root(object.require("root"));
  dialog.root = readElement(root);
  root.refuseOthers();
  dialog.recognised = object.require("chooserControlsAvailable").flag();
  const JsonPlace nodes = object.require("nodes");
  const auto items = nodes.items();
  if (items.empty() || items.size() > most_nodes) {
    nodes.refuse("expected 1 to " + std::to_string(most_nodes) + " nodes");
  }
  for (const auto& item : items) dialog.nodes.push_back(readNode(item));
  dialog.nodes.erase(dialog.nodes.begin());
  dialog.complete = items.size() < most_nodes;
  object.refuseOthers();
  return dialog;
}

std::vector<Dialog> readDialogs(const Printout& printout, Pid& browser) {
  const Json document = parse(printout);
  JsonObject object({document, printout.file, ""});
  browser = readHeader(object, "inspect-open-dialog");
  std::vector<Dialog> dialogs;
  const JsonPlace list = object.require("dialogs");
  const auto items = list.items();
  if (items.size() > most_dialogs) {
    list.refuse("expected at most " + std::to_string(most_dialogs) + " dialogs");
  }
  for (const auto& item : items) {
    dialogs.push_back(readDialog(item, browser));
  }
  object.refuseOthers();
  return dialogs;
}

AppWindow readWindow(const JsonPlace& place) {
  JsonObject object(place);
  AppWindow window;
  window.place = place.pointer;
  window.role = object.require("role").text();
  window.subrole = object.require("subrole").text();
  window.title = object.require("title").text();
  object.require("description").text();
  window.frame = readFrame(object.require("frame"));
  object.refuseOthers();
  return window;
}

// What list-windows printed.
struct Listing {
  std::vector<AppWindow> windows;
  std::vector<Pid> services;
};

Listing readListing(const Printout& printout, Pid browser) {
  const Json document = parse(printout);
  JsonObject object({document, printout.file, ""});
  if (readHeader(object, "list-windows") != browser) {
    object.require("primaryPid").refuse("expected " + std::to_string(browser));
  }
  Listing listing;
  for (const auto& item : object.require("apps").items()) {
    JsonObject app(item);
    Pid pid = 0;
    if (readOwner(app, browser, pid)) listing.services.push_back(pid);
    for (const auto& place : app.require("windows").items()) {
      listing.windows.push_back(readWindow(place));
      listing.windows.back().pid = pid;
    }
    app.refuseOthers();
  }
  object.refuseOthers();
  return listing;
}

// --- Frames. ---

bool isEmpty(const Rect& frame) {
  return frame.width <= 0 || frame.height <= 0;
}

bool isWithin(const Rect& inner, const Rect& outer) {
  constexpr double slack = 1;  // frames are rounded one by one
  return !isEmpty(inner) && inner.x >= outer.x - slack && inner.y >= outer.y - slack &&
         inner.x + inner.width <= outer.x + outer.width + slack &&
         inner.y + inner.height <= outer.y + outer.height + slack;
}

bool overlap(const Rect& left, const Rect& right) {
  return left.x < right.x + right.width && right.x < left.x + left.width &&
         left.y < right.y + right.height && right.y < left.y + left.height;
}

// Whether a scenario can hold it.
bool isUsable(const Rect& frame) {
  return frame.width >= 1 && frame.height >= 1 && frame.x >= -farthest && frame.y >= -farthest &&
         frame.x + frame.width <= farthest && frame.y + frame.height <= farthest;
}

bool onOneRow(const Rect& left, const Rect& right) {
  const double apart = left.y + left.height / 2 - right.y - right.height / 2;
  return std::abs(apart) < std::max(left.height, right.height) / 2;
}

Rect around(const Rect& left, const Rect& right) {
  const double x = std::min(left.x, right.x);
  const double y = std::min(left.y, right.y);
  return {x, y, std::max(left.x + left.width, right.x + right.width) - x,
          std::max(left.y + left.height, right.y + right.height) - y};
}

Json toJson(const Rect& frame) {
  return {{"x", frame.x}, {"y", frame.y}, {"width", frame.width}, {"height", frame.height}};
}

// --- Texts. ---

using Text = std::string PanelTexts::*;

constexpr std::array languages{Language::english, Language::simplifiedChinese, Language::german};

// These tell the languages apart.
constexpr std::array markers{&PanelTexts::cancel,  &PanelTexts::choose,   &PanelTexts::newFolder,
                             &PanelTexts::sidebar, &PanelTexts::listView, &PanelTexts::viewOptions,
                             &PanelTexts::groupBy, &PanelTexts::where,    &PanelTexts::goToFolder};
constexpr std::array others{&PanelTexts::open, &PanelTexts::description, &PanelTexts::search,
                            &PanelTexts::back, &PanelTexts::forward,     &PanelTexts::name,
                            &PanelTexts::go,   &PanelTexts::favourites,  &PanelTexts::message};

bool says(const std::string& text, Text which) {
  return std::ranges::any_of(languages,
                             [&](Language each) { return text == panelTexts(each).*which; });
}

bool mentions(const std::string& text, Text which) {
  return std::ranges::any_of(languages, [&](Language each) {
    return text.find(panelTexts(each).*which) != std::string::npos;
  });
}

bool isThePanelsOwn(const std::string& text) {
  const auto isIt = [&](Text which) { return says(text, which); };
  return std::ranges::any_of(markers, isIt) || std::ranges::any_of(others, isIt);
}

// The language of most of the markers; nothing without any.
std::optional<Language> languageOf(const std::vector<Node>& nodes) {
  std::optional<Language> best;
  std::ptrdiff_t most = 0;
  for (const Language language : languages) {
    const PanelTexts& texts = panelTexts(language);
    const auto count = std::ranges::count_if(nodes, [&](const Node& node) {
      return std::ranges::any_of(markers, [&](Text which) {
        const std::string& text = texts.*which;
        return node.title == text || node.description == text || node.value == text;
      });
    });
    if (count > most) best = language;
    most = std::max(most, count);
  }
  return best;
}

// On one line, whatever it holds.
std::string inQuotes(const std::string& text) {
  return Json(text).dump(-1, ' ', true);
}

// Puts placeholders in the place of texts, the same one for the same text.
class Names {
 public:
  explicit Names(bool keep) : keep_(keep) {}

  std::string of(const std::string& text, const std::string& kind = "name") {
    const bool mayBePath = text.find('/') != std::string::npos || text.starts_with("~");
    if (text.empty() || isThePanelsOwn(text) || (keep_ && !mayBePath)) return text;
    const auto [entry, isNew] = placeholders_.try_emplace(text);
    if (isNew) entry->second = kind + "-" + std::to_string(++counts_[kind]);
    return entry->second;
  }

 private:
  bool keep_;
  std::map<std::string, std::string> placeholders_;
  std::map<std::string, int> counts_;
};

// --- The parts of a panel. ---

using Nodes = std::vector<const Node*>;

template <typename Test>
const Node* first(const Nodes& nodes, const Test& test) {
  const auto found = std::ranges::find_if(nodes, [&](const Node* node) { return test(*node); });
  return found == nodes.end() ? nullptr : *found;
}

bool isTitledButton(const Node& node) {
  return node.role == "AXButton" && !node.title.empty();
}

const Node* cancelButton(const Nodes& nodes) {
  return first(nodes, [](const Node& node) {
    return isTitledButton(node) && says(node.title, &PanelTexts::cancel);
  });
}

const Node* sidebar(const Nodes& nodes) {
  return first(nodes, [](const Node& node) {
    return node.role == "AXOutline" && mentions(node.description, &PanelTexts::sidebar);
  });
}

const Node* fileList(const Nodes& nodes) {
  const Node* marked = first(nodes, [](const Node& node) {
    return node.role == "AXOutline" && mentions(node.description, &PanelTexts::listView);
  });
  if (marked != nullptr) return marked;
  return first(nodes, [](const Node& node) {
    return node.role == "AXOutline" && !mentions(node.description, &PanelTexts::sidebar);
  });
}

double bottom(const Rect& frame) {
  return frame.y + frame.height;
}

// A prompt that an application made up is that of the rightmost button beside Cancel or, without
// Cancel, below the list.
const Node* confirmButton(const Nodes& nodes, const Node* cancel, const std::optional<Rect>& list) {
  const Node* known = first(nodes, [](const Node& node) {
    return node.role == "AXButton" &&
           (says(node.title, &PanelTexts::choose) || says(node.title, &PanelTexts::open));
  });
  if (known != nullptr) return known;
  const Node* rightmost = nullptr;
  for (const Node* node : nodes) {
    if (!isTitledButton(*node) || node == cancel) continue;
    if (says(node->title, &PanelTexts::newFolder)) continue;
    const bool fits = cancel != nullptr ? onOneRow(node->frame, cancel->frame)
                                        : !list || node->frame.y >= bottom(*list);
    if (fits && (rightmost == nullptr || node->frame.x > rightmost->frame.x)) rightmost = node;
  }
  return rightmost;
}

// What an application says above the lists. Elements of a web page come later in the walk.
const Node* message(const Nodes& nodes, const std::string& title) {
  for (const Node* node : nodes) {
    if (node->role == "AXOutline") break;
    if (node->role == "AXStaticText" && !node->value.empty() && node->value != title) return node;
  }
  return nullptr;
}

// The texts of the sidebar that have an image beside them; the others are headings.
std::vector<std::string> placeLabels(const Nodes& nodes, const Rect& sidebarFrame) {
  std::vector<std::string> labels;
  for (const Node* text : nodes) {
    const bool isText = text->role == "AXStaticText" || text->role == "AXTextField";
    if (!isText || !isWithin(text->frame, sidebarFrame)) continue;
    const Node* image = first(nodes, [&](const Node& node) {
      return node.role == "AXImage" && isWithin(node.frame, sidebarFrame) &&
             onOneRow(node.frame, text->frame);
    });
    const std::string& label = text->title.empty() ? text->value : text->title;
    if (image != nullptr && !label.empty()) labels.push_back(label);
  }
  return labels;
}

// --- A panel. ---

struct Panel {
  const Dialog* dialog = nullptr;
  PanelShape shape = PanelShape::serviceWindow;
  std::optional<Language> knownLanguage;
  const Node* element = nullptr;  // its own; of an embedded one the nearest around its controls
  const Node* goTo = nullptr;
  Nodes nodes;  // within it, without those of its go-to sheet
  const Node* cancel = nullptr;
  const Node* confirm = nullptr;
  const Node* sidebar = nullptr;
  std::optional<Rect> list;  // as far as it can be seen
  Json json;

  const Rect& frame() const { return element->frame; }
  Language language() const { return knownLanguage.value_or(Language::english); }
  bool isWindow() const {
    return shape == PanelShape::serviceWindow || shape == PanelShape::hostWindow;
  }
};

bool isWindow(const Node& node) {
  return node.role == "AXWindow" || node.role == "AXDialog";
}

// A sheet with lists is a panel, one without is where a path is typed.
bool isPanelSheet(const Node& sheet, const std::vector<Node>& nodes) {
  return sheet.role == "AXSheet" && std::ranges::any_of(nodes, [&](const Node& node) {
           return node.role == "AXOutline" && isWithin(node.frame, sheet.frame);
         });
}

// The smallest container around the list and the buttons.
const Node* chooserIn(const Dialog& dialog) {
  Nodes all;
  for (const Node& node : dialog.nodes) all.push_back(&node);
  const Node* cancel = cancelButton(all);
  const Node* list = fileList(all);
  const auto listFrame = list != nullptr ? std::optional(list->frame) : std::nullopt;
  const Nodes parts{cancel, list, confirmButton(all, cancel, listFrame)};
  const Node* smallest = &dialog.root;
  for (const Node* node : all) {
    const bool container = node->role == "AXGroup" || node->role == "AXSplitGroup";
    const bool holdsAll = std::ranges::all_of(parts, [&](const Node* part) {
      return part == nullptr || isWithin(part->frame, node->frame);
    });
    const bool smaller =
        node->frame.width * node->frame.height < smallest->frame.width * smallest->frame.height;
    if (container && holdsAll && smaller) smallest = node;
  }
  return smallest;
}

// Sets the shape and the element. A root of the browser's that is neither a sheet nor called Open
// is the browser's window, or something in it.
void findShape(Panel& panel) {
  const Node& root = panel.dialog->root;
  const auto& nodes = panel.dialog->nodes;
  panel.element = &root;
  if (panel.dialog->inService) return;
  const bool named = says(root.title, &PanelTexts::open) ||
                     says(root.description, &PanelTexts::open) ||
                     says(root.description, &PanelTexts::description);
  const auto sheet =
      std::ranges::find_if(nodes, [&](const Node& node) { return isPanelSheet(node, nodes); });
  if (root.role == "AXSheet") {
    panel.shape = PanelShape::hostSheet;
  } else if (isWindow(root) && named) {
    panel.shape = PanelShape::hostWindow;
  } else if (isWindow(root) && sheet != nodes.end()) {
    panel.shape = PanelShape::hostSheet;
    panel.element = &*sheet;
  } else {
    panel.element = chooserIn(*panel.dialog);
    // A container as wide as the window is that of a panel with a title of its own.
    const bool whole = isWindow(root) && panel.frame().width >= root.frame.width;
    panel.shape = whole ? PanelShape::hostWindow : PanelShape::embedded;
    if (whole) panel.element = &root;
  }
}

// A list that is longer than the panel is seen through a scroll area.
std::optional<Rect> visibleList(const Panel& panel) {
  const Node* list = fileList(panel.nodes);
  if (list == nullptr) return {};
  if (isWithin(list->frame, panel.frame())) return list->frame;
  const Node* area = first(panel.nodes, [&](const Node& node) {
    return node.role == "AXScrollArea" && overlap(node.frame, list->frame) &&
           (panel.sidebar == nullptr || !overlap(node.frame, panel.sidebar->frame));
  });
  return area != nullptr ? area->frame : list->frame;
}

// Lists may reach beyond the panel.
bool belongsTo(const Panel& panel, const Node& node) {
  if (&node == panel.element) return false;
  if (panel.goTo != nullptr && isWithin(node.frame, panel.goTo->frame)) return false;
  if (isEmpty(panel.frame())) return true;
  return node.role == "AXOutline" ? overlap(node.frame, panel.frame())
                                  : isWithin(node.frame, panel.frame());
}

Panel analyse(const Dialog& dialog) {
  Panel panel;
  panel.dialog = &dialog;
  panel.knownLanguage = languageOf(dialog.nodes);
  findShape(panel);
  for (const Node& node : dialog.nodes) {
    const bool sheet = node.role == "AXSheet" && &node != panel.element;
    if (sheet && !isPanelSheet(node, dialog.nodes)) panel.goTo = &node;
  }
  for (const Node& node : dialog.nodes) {
    if (belongsTo(panel, node)) panel.nodes.push_back(&node);
  }
  panel.sidebar = sidebar(panel.nodes);
  panel.list = visibleList(panel);
  panel.cancel = cancelButton(panel.nodes);
  panel.confirm = confirmButton(panel.nodes, panel.cancel, panel.list);
  return panel;
}

// --- The scenario. ---

const char* nameOf(PanelShape shape) {
  switch (shape) {
    case PanelShape::serviceWindow:
      return "service-window";
    case PanelShape::hostWindow:
      return "host-window";
    case PanelShape::hostSheet:
      return "host-sheet";
    case PanelShape::embedded:
      return "embedded";
    case PanelShape::unseen:
      break;
  }
  return "unseen";
}

// The roles of which the simulated panel has elements, too.
constexpr std::array<std::string_view, 16> modelled_roles{
    "AXButton",   "AXCell",        "AXComboBox", "AXGroup",      "AXImage", "AXMenuButton",
    "AXOutline",  "AXPopUpButton", "AXRow",      "AXScrollArea", "AXSheet", "AXSplitGroup",
    "AXSplitter", "AXStaticText",  "AXTable",    "AXTextField"};

class Import {
 public:
  Import(Pid browser, Listing listing, bool keepNames)
      : browser_(browser), listing_(std::move(listing)), names_(keepNames) {}

  void add(const std::vector<Dialog>& dialogs);
  ImportedScenario finish();

 private:
  void omit(const std::string& what) { omissions_.push_back(what); }

  void addPanel(Panel panel, std::optional<Pid> service);
  void describeWords(Panel& panel);
  void describeModality(Panel& panel);
  void describeFrames(Panel& panel);
  void describeGoTo(Panel& panel);
  void describeMissingButtons(Panel& panel);
  void describePlaces(const Panel& panel);
  void checkRecognition(const Panel& panel);
  void omitWhatIsNotModelled(const Panel& panel);

  bool isPanels(const AppWindow& window) const;
  void addBrowserWindows();
  void putOwnerLast(const Panel& panel);
  Pid freePid(Pid wanted) const;
  Json processes(Pid finder, Pid terminal) const;
  Json screens() const;

  Pid browser_;
  Listing listing_;
  Names names_;
  std::vector<std::string> omissions_;
  std::vector<Panel> panels_;  // the one in front last
  std::optional<Json> places_;
  bool path_typed_ = false;
  std::vector<std::pair<std::string, Rect>> windows_;  // of the browser, front to back
};

// The service's dialog that is the same panel as one of the browser's.
const Dialog* twin(const Dialog& dialog, const std::vector<Dialog>& dialogs) {
  const auto found = std::ranges::find_if(dialogs, [&](const Dialog& other) {
    return other.inService != dialog.inService && other.root.frame == dialog.root.frame &&
           !isEmpty(dialog.root.frame);
  });
  return found == dialogs.end() ? nullptr : &*found;
}

void Import::add(const std::vector<Dialog>& dialogs) {
  if (dialogs.empty()) omit("a panel, as there is no dialog");
  for (const Dialog& dialog : dialogs) {
    const Dialog* same = twin(dialog, dialogs);
    if (dialog.inService && same != nullptr) {
      omit(dialog.place + ", which is " + same->place + " in the tree of its service");
      continue;
    }
    std::optional<Pid> service;
    if (!listing_.services.empty()) service = listing_.services.front();
    if (same != nullptr) service = same->pid;
    if (dialog.inService) service = dialog.pid;
    addPanel(analyse(dialog), service);
  }
}

void Import::addPanel(Panel panel, std::optional<Pid> service) {
  const std::string& place = panel.dialog->place;
  if (!panel.knownLanguage) omit("the language of " + place + ", which is taken for English");
  panel.json = {{"shape", nameOf(panel.shape)}, {"host", browser_}};
  if (service) panel.json["service"] = *service;
  panel.json["language"] = languageTag(panel.language());
  describeWords(panel);
  describeModality(panel);
  describeFrames(panel);
  describeGoTo(panel);
  describeMissingButtons(panel);
  describePlaces(panel);
  checkRecognition(panel);
  omitWhatIsNotModelled(panel);
  // Of one process the tool lists the dialog in front first.
  const auto behind = std::ranges::find_if(
      panels_, [&](const Panel& other) { return other.dialog->pid == panel.dialog->pid; });
  if (behind != panels_.end()) omit("that no dialog beside " + place + " has the focus");
  panels_.insert(behind, std::move(panel));
}

void Import::describeWords(Panel& panel) {
  const PanelTexts& texts = panelTexts(panel.language());
  const std::string& place = panel.dialog->place;
  const std::string prompt = panel.confirm != nullptr ? panel.confirm->title : texts.choose;
  const bool files = says(prompt, &PanelTexts::open);
  if (files) panel.json["mode"] = "files";
  if (panel.confirm == nullptr || !says(prompt, &PanelTexts::choose)) {
    omit("whether " + place +
         " chooses files or folders, which its buttons do not tell; taken for " +
         (files ? "files" : "folders"));
  }
  const std::string& title = panel.element->title;
  const bool titled = panel.isWindow() ? title != texts.open : !title.empty();
  if (titled && panel.shape != PanelShape::embedded) panel.json["title"] = names_.of(title);
  if (prompt != (files ? texts.open : texts.choose)) panel.json["prompt"] = names_.of(prompt);
  const Node* said = message(panel.nodes, title);
  const std::string usual = panel.shape == PanelShape::embedded ? texts.message : "";
  const std::string found = said != nullptr ? said->value : "";
  if (found != usual) panel.json["message"] = names_.of(found);
}

// Only a list of the windows tells it.
void Import::describeModality(Panel& panel) {
  const Node& root = panel.dialog->root;
  const auto listed = std::ranges::find_if(listing_.windows, [&](const AppWindow& window) {
    return window.pid == panel.dialog->pid && window.frame == root.frame &&
           window.title == root.title;
  });
  if (!panel.isWindow() || listed == listing_.windows.end()) return;
  if (listed->subrole == "AXStandardWindow") {
    panel.json["modal"] = false;
  } else if (listed->subrole != "AXDialog") {
    omit("the subrole of " + panel.dialog->place + ", " + inQuotes(listed->subrole));
  }
}

void Import::describeFrames(Panel& panel) {
  const Rect frame = panel.frame();
  if (!isUsable(frame)) return omit("the frame of " + panel.dialog->place);
  panel.json["frame"] = toJson(frame);
  const auto describe = [&](const char* key, const std::optional<Rect>& found) {
    if (!found) return;
    const Rect within{found->x - frame.x, found->y - frame.y, found->width, found->height};
    const bool fits = within.x >= 0 && within.y >= 0 && within.width >= 1 && within.height >= 1 &&
                      within.x + within.width <= frame.width &&
                      within.y + within.height <= frame.height;
    if (fits) {
      panel.json["layout"][key] = toJson(within);
    } else {
      omit("the layout's " + std::string(key) + " of " + panel.dialog->place +
           ", which reaches beyond the panel");
    }
  };
  describe("confirmButton",
           panel.confirm != nullptr ? std::optional(panel.confirm->frame) : std::nullopt);
  describe("list", panel.list);
}

void Import::describeGoTo(Panel& panel) {
  if (panel.goTo == nullptr) return;
  Nodes nodes;
  for (const Node& node : panel.dialog->nodes) {
    if (isWithin(node.frame, panel.goTo->frame)) nodes.push_back(&node);
  }
  Json& json = panel.json["goTo"];
  json["openAtStart"] = true;
  if (first(nodes, isTitledButton) != nullptr) json["generation"] = "old";
  const Node* field = first(nodes, [](const Node& node) {
    return node.role == "AXComboBox" || node.role == "AXTextField";
  });
  if (field == nullptr) return;
  if (field->role == "AXComboBox") json["comboBox"] = true;
  if (!std::ranges::count(field->actions, "AXConfirm")) json["withoutConfirm"] = true;
  path_typed_ = path_typed_ || !field->value.empty();
}

void Import::describeMissingButtons(Panel& panel) {
  const std::string& place = panel.dialog->place;
  if (panel.cancel == nullptr && panel.confirm == nullptr && !panel.list) {
    return omit("that " + place + " has no controls yet");
  }
  if (panel.confirm == nullptr) panel.json["faults"]["noConfirmButton"] = true;
  if (panel.cancel == nullptr && panel.knownLanguage) {
    panel.json["faults"]["noCancelButton"] = true;
  }
  if (panel.cancel != nullptr && panel.cancel->title != panelTexts(panel.language()).cancel) {
    omit("the text of the Cancel button of " + place);
  }
}

// A scenario has one sidebar for all its panels.
void Import::describePlaces(const Panel& panel) {
  if (panel.sidebar == nullptr) return;
  Json places = Json::array();
  for (const auto& label : placeLabels(panel.nodes, panel.sidebar->frame)) {
    places.push_back({{"label", names_.of(label)}, {"path", folder_for_paths}});
  }
  if (!places_) places_ = places;
  if (places_ != places) omit("the sidebar of " + panel.dialog->place + ", as it differs");
}

// In the simulated panel the search field is one that the tool takes for a name field, so that the
// two buttons alone decide.
void Import::checkRecognition(const Panel& panel) {
  const PanelTexts& texts = panelTexts(panel.language());
  const Json& json = panel.json;
  const std::string prompt =
      json.value("prompt", json.contains("mode") ? texts.open : texts.choose);
  const bool knownPrompt = std::ranges::any_of(
      std::array{Language::english, Language::simplifiedChinese}, [&](Language each) {
        return prompt == panelTexts(each).open || prompt == panelTexts(each).choose;
      });
  const bool recognisable =
      knownPrompt && !json.contains("faults") && panel.language() != Language::german;
  if (recognisable == panel.dialog->recognised) return;
  omit("that the controls of " + panel.dialog->place + " are " + (recognisable ? "not " : "") +
       "known to the tool");
}

void Import::omitWhatIsNotModelled(const Panel& panel) {
  const std::string& place = panel.dialog->place;
  const Node& element = *panel.element;
  if (!panel.dialog->complete) {
    omit("what " + place + " holds beyond the " + std::to_string(most_nodes) + " nodes listed");
  }
  if (panel.shape == PanelShape::embedded) return;
  const std::string role = panel.isWindow() ? "AXWindow" : "AXSheet";
  if (element.role != role) omit("the role of " + place + ", " + inQuotes(element.role));
  if (element.description != panelTexts(panel.language()).description) {
    omit("the description of " + place);
  }
  if (panel.element != &panel.dialog->root) return;  // the page behind it cannot be told apart
  std::map<std::string, int> counts;
  for (const Node* node : panel.nodes) {
    const bool spare = isTitledButton(*node) && node != panel.cancel && node != panel.confirm &&
                       !says(node->title, &PanelTexts::newFolder);
    if (spare || !std::ranges::count(modelled_roles, node->role)) ++counts[node->role];
  }
  for (const auto& [unknown, count] : counts) {
    omit(std::to_string(count) + " of the role " + inQuotes(unknown) + " in " + place);
  }
}

// --- What stands around the panels. ---

// Whether the window is a panel's or that of its go-to sheet.
bool Import::isPanels(const AppWindow& window) const {
  const auto is = [&](const Node* node) {
    return node != nullptr && node->frame == window.frame && node->title == window.title;
  };
  return std::ranges::any_of(panels_, [&](const Panel& panel) {
    return is(panel.goTo) || (is(panel.element) && panel.shape != PanelShape::embedded);
  });
}

void Import::addBrowserWindows() {
  for (const AppWindow& window : listing_.windows) {
    if (isPanels(window)) continue;
    if (window.pid == browser_ && window.role == "AXWindow" && isUsable(window.frame)) {
      windows_.emplace_back(names_.of(window.title, "window"), window.frame);
    } else {
      omit("the window at " + window.place);
    }
  }
  const auto inWindow = [](const Panel& panel) { return !panel.isWindow(); };
  const auto standing = std::ranges::find_if(panels_, inWindow);
  if (standing != panels_.end()) putOwnerLast(*standing);
  if (std::ranges::count_if(panels_, inWindow) > 1) omit("which panel stands in which window");
  if (windows_.empty()) windows_.emplace_back("", usual_window);
}

// Sheets hang from the oldest window, which is the last.
void Import::putOwnerLast(const Panel& panel) {
  const Node& root = panel.dialog->root;
  const bool rootOwns = panel.element != &root && isWindow(root);
  const Rect& frame = panel.frame();
  const Rect top{frame.x + frame.width / 2, frame.y, 1, 1};
  const auto owner = std::ranges::find_if(windows_, [&](const auto& window) {
    return rootOwns ? window.second == root.frame : isWithin(top, window.second);
  });
  if (owner == windows_.end()) {
    const Rect shown = rootOwns ? root.frame : around(usual_window, frame);
    const std::string title = rootOwns ? names_.of(root.title, "window") : "";
    windows_.emplace_back(title, isUsable(shown) ? shown : usual_window);
  } else if (owner + 1 != windows_.end()) {
    omit("the order of the browser's windows");
    std::rotate(owner, owner + 1, windows_.end());
  }
}

Pid Import::freePid(Pid wanted) const {
  const auto taken = [&](Pid pid) {
    return pid == browser_ || std::ranges::any_of(panels_, [&](const Panel& panel) {
             return panel.json.value("service", 0) == pid;
           });
  };
  while (taken(wanted)) ++wanted;
  return wanted;
}

Json Import::processes(Pid finder, Pid terminal) const {
  Json windows = Json::array();
  for (const auto& [title, frame] : windows_) {
    windows.push_back({{"title", title}, {"frame", toJson(frame)}, {"webElements", page_elements}});
  }
  const Json shell = {{"title", "Terminal"}, {"frame", toJson({700, 400, 640, 420})}};
  return {{{"pid", finder},
           {"name", "Finder"},
           {"command", "/System/Library/CoreServices/Finder.app/Contents/MacOS/Finder"}},
          {{"pid", terminal},
           {"name", "Terminal"},
           {"command", "/System/Applications/Utilities/Terminal.app/Contents/MacOS/Terminal"},
           {"windows", {shell}}},
          {{"pid", browser_},
           {"name", "Google Chrome"},
           {"command", "/Applications/Google Chrome.app/Contents/MacOS/Google Chrome"},
           {"windows", windows}}};
}

// The main screen begins at the origin; what lies to its left and above it gets screens of its own.
Json Import::screens() const {
  Rect all = usual_screen;
  for (const Panel& panel : panels_) {
    if (isUsable(panel.frame())) all = around(all, panel.frame());
  }
  for (const auto& [title, frame] : windows_) all = around(all, frame);
  const double right = all.x + all.width;
  Json screens = Json::array({toJson({0, 0, right, bottom(all)})});
  if (all.x < 0) screens.push_back(toJson({all.x, all.y, -all.x, all.height}));
  if (all.y < 0) screens.push_back(toJson({0, all.y, right, -all.y}));
  return screens;
}

ImportedScenario Import::finish() {
  addBrowserWindows();
  const Pid finder = freePid(250);
  const Pid terminal = freePid(std::max(300, finder + 1));
  Json document{{"description", "What stood on a Mac, as the tool printed it."}};
  if (!panels_.empty()) document["language"] = panels_.front().json["language"];
  if (places_) document["places"] = *places_;
  if (path_typed_) document["lastGoToPath"] = folder_for_paths;
  document["screens"] = screens();
  document["processes"] = processes(finder, terminal);
  document["frontmost"] = terminal;
  document["panels"] = Json::array();
  for (Panel& panel : panels_) {
    if (panel.json["language"] == document["language"]) panel.json.erase("language");
    document["panels"].push_back(std::move(panel.json));
  }
  return {document, omissions_};
}

}  // namespace

Printout readPrintout(const std::string& file) {
  Printout printout{file, std::string(most_bytes + 1, '\0')};
  std::ifstream stream(file, std::ios::binary);
  stream.read(printout.text.data(), most_bytes + 1);
  const std::streamsize count = stream.gcount();
  if (!stream.is_open() || stream.bad()) {
    throw ScenarioError(file + ": /: expected a file that can be read");
  }
  if (count > most_bytes) throw ScenarioError(file + ": /: expected at most 4 MiB");
  printout.text.resize(static_cast<std::size_t>(count));
  return printout;
}

ImportedScenario importScenario(const Printout& dialogs, const std::optional<Printout>& windows,
                                bool keepNames) {
  Pid browser = 0;
  const std::vector<Dialog> found = readDialogs(dialogs, browser);
  Import draft(browser, windows ? readListing(*windows, browser) : Listing(), keepNames);
  draft.add(found);
  return draft.finish();
}

}  // namespace simulator
