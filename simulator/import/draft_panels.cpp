// The panels of a scenario in the making.
#include <algorithm>
#include <array>
#include <map>
#include <string_view>

#include "simulator/import/draft.h"
#include "simulator/import/frames.h"
#include "simulator/import/panel_words.h"

namespace simulator::importing {
namespace {

using Json = nlohmann::ordered_json;

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
constexpr std::array<std::string_view, 18> modelled_roles{
    "AXBrowser", "AXList",       "AXButton",   "AXCell",        "AXComboBox", "AXGroup",
    "AXImage",   "AXMenuButton", "AXOutline",  "AXPopUpButton", "AXRow",      "AXScrollArea",
    "AXSheet",   "AXSplitGroup", "AXSplitter", "AXStaticText",  "AXTable",    "AXTextField"};

// A role or a subrole. What does not look like one may be anything, also a name: it is not
// repeated.
std::string inQuotes(const std::string& role) {
  const bool isLetters = std::ranges::all_of(
      role, [](char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); });
  return isLetters && (role.empty() || role.starts_with("AX")) ? '"' + role + '"' : "\"?\"";
}

// The service's dialog that is the same panel as one of the browser's.
const Dialog* twin(const Dialog& dialog, const std::vector<Dialog>& dialogs) {
  const auto found = std::ranges::find_if(dialogs, [&](const Dialog& other) {
    return other.inService != dialog.inService && other.root.frame == dialog.root.frame &&
           !isEmpty(dialog.root.frame);
  });
  return found == dialogs.end() ? nullptr : &*found;
}

}  // namespace

void Draft::add(const std::vector<Dialog>& dialogs) {
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

void Draft::addPanel(SeenPanel panel, std::optional<Pid> service) {
  const std::string& place = panel.dialog->place;
  if (!panel.knownLanguage) omit("the language of " + place + ", which is taken for English");
  panel.json = {{"shape", nameOf(panel.shape)}, {"host", browser_}};
  if (service) panel.json["service"] = *service;
  panel.json["language"] = languageTag(panel.language());
  describeWords(panel);
  describeModality(panel);
  describeView(panel);
  describeFrames(panel);
  describeGoTo(panel);
  describeMissingButtons(panel);
  describePlaces(panel);
  checkRecognition(panel);
  omitWhatIsNotModelled(panel);
  // Of one process the tool lists the dialog in front first.
  const auto behind = std::ranges::find_if(
      panels_, [&](const SeenPanel& other) { return other.dialog->pid == panel.dialog->pid; });
  if (behind != panels_.end()) omit("that no dialog beside " + place + " has the focus");
  panels_.insert(behind, std::move(panel));
}

void Draft::describeWords(SeenPanel& panel) {
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
  const std::string found = said != nullptr ? said->value : "";
  if (!found.empty()) panel.json["message"] = names_.of(found);
}

// Only a list of the windows tells it.
void Draft::describeModality(SeenPanel& panel) {
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

void Draft::describeView(SeenPanel& panel) {
  const Node* list = fileList(panel.nodes);
  if (list == nullptr || list->role == "AXOutline") return;
  panel.json["view"] = list->role == "AXBrowser" ? "columns" : "icons";
}

void Draft::describeFrames(SeenPanel& panel) {
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

void Draft::describeGoTo(SeenPanel& panel) {
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

void Draft::describeMissingButtons(SeenPanel& panel) {
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
void Draft::describePlaces(const SeenPanel& panel) {
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
void Draft::checkRecognition(const SeenPanel& panel) {
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

void Draft::omitWhatIsNotModelled(const SeenPanel& panel) {
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
    if (spare || !std::ranges::count(modelled_roles, node->role)) ++counts[inQuotes(node->role)];
  }
  for (const auto& [unknown, count] : counts) {
    omit(std::to_string(count) + " of the role " + unknown + " in " + place);
  }
}

}  // namespace simulator::importing
