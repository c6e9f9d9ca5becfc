// The panels of a scenario in the making.
#include <algorithm>

#include "simulator/import/draft.h"
#include "simulator/import/frames.h"
#include "simulator/import/panel_words.h"

namespace simulator::importing {
namespace {

using Json = nlohmann::ordered_json;

bool hasWindowRole(const PrintedElement& element) {
  return element.role == "AXWindow" || element.role == "AXDialog";
}

PanelShape shapeOf(const Dialog& dialog) {
  if (dialog.inService) return PanelShape::serviceWindow;
  if (dialog.tree.front().role == "AXSheet") return PanelShape::hostSheet;
  return hasWindowRole(dialog.tree.front()) ? PanelShape::hostWindow : PanelShape::embedded;
}

const char* nameOf(PanelShape shape) {
  switch (shape) {
    case PanelShape::serviceWindow:
      return "service-window";
    case PanelShape::hostWindow:
      return "host-window";
    case PanelShape::hostSheet:
      return "host-sheet";
    case PanelShape::embedded:
    case PanelShape::unseen:
      break;
  }
  return "embedded";
}

// A window of the browser's that is not called Open: it only holds a panel.
bool isBrowsersOwn(const Dialog& dialog) {
  const PrintedElement& root = dialog.tree.front();
  return shapeOf(dialog) == PanelShape::hostWindow && !says(root.title, &PanelTexts::open) &&
         !says(root.description, &PanelTexts::open);
}

// Whether the browser's dialog is, or holds as a sheet, the panel that the service's dialog is.
bool showsTheSame(const Dialog& browsers, const Dialog& services) {
  if (browsers.inService || !services.inService || !isUsable(services.frame())) return false;
  return browsers.frame() == services.frame() ||
         std::ranges::any_of(browsers.tree, [&](const PrintedElement& element) {
           return element.role == "AXSheet" && element.frame == services.frame();
         });
}

bool sameElement(const PrintedElement& root, const PrintedElement& first) {
  return root.role == first.role && root.title == first.title &&
         root.description == first.description && root.frame == first.frame;
}

}  // namespace

// Of one process the tool lists the dialog in front first, and only while none of its dialogs has
// the focus does it list several.
void Draft::addPanels() {
  if (inspection_.dialogs.empty()) omit("a panel, as there is no dialog");
  for (const Dialog& dialog : inspection_.dialogs) addPanel(dialog);
}

void Draft::addPanel(const Dialog& dialog) {
  SeenPanel panel{&dialog, shapeOf(dialog), {}};
  panel.json = {{"shape", nameOf(panel.shape)}, {"host", inspection_.browser}};
  describeProcesses(panel);
  describeModality(panel);
  if (isUsable(dialog.frame())) {
    panel.json["frame"] = toJson(dialog.frame());
  } else {
    omit("the frame of " + dialog.place);
  }
  panel.json["tree"] = treeOf(dialog);
  omitWhatIsNotPrinted(panel);
  const auto behind = std::ranges::find_if(
      panels_, [&](const SeenPanel& other) { return other.dialog->pid == dialog.pid; });
  if (behind != panels_.end()) omit("that no dialog beside " + dialog.place + " has the focus");
  panels_.insert(behind, std::move(panel));
}

// Which process draws the panel and which windows it has. A panel that both processes show stands
// in the scenario twice, each time with the window of that process.
void Draft::describeProcesses(SeenPanel& panel) {
  const Dialog& dialog = *panel.dialog;
  const auto twin = std::ranges::find_if(inspection_.dialogs, [&](const Dialog& other) {
    return showsTheSame(dialog, other) || showsTheSame(other, dialog);
  });
  const bool twice = twin != inspection_.dialogs.end();
  if (dialog.inService) {
    panel.json["service"] = dialog.pid;
  } else if (twice) {
    panel.json["service"] = twin->pid;
  } else if (listing_ && !listing_->services.empty()) {
    panel.json["service"] = listing_->services.front();
  }
  if (panel.shape == PanelShape::embedded) return;
  if (twice || isBrowsersOwn(dialog)) {
    panel.json["listed"] = dialog.inService ? "service" : "host";
  }
}

// Only a list of the windows tells it.
void Draft::describeModality(SeenPanel& panel) {
  const PrintedElement& root = panel.dialog->tree.front();
  if (!listing_ || !hasWindowRole(root)) return;
  const auto listed = std::ranges::find_if(listing_->windows, [&](const AppWindow& window) {
    return window.pid == panel.dialog->pid && window.role == root.role &&
           window.frame == root.frame && window.title == root.title;
  });
  if (listed == listing_->windows.end()) return;
  if (listed->subrole == "AXStandardWindow") {
    panel.json["modal"] = false;
  } else if (listed->subrole != "AXDialog") {
    omit("the subrole of " + panel.dialog->place);
  }
}

Json Draft::treeOf(const Dialog& dialog) {
  Json nodes = Json::array();
  for (const PrintedElement& element : dialog.tree) {
    Json actions = Json::array();
    for (const auto& action : element.actions) actions.push_back(names_.ofTerm(action, "action"));
    nodes.push_back({{"role", names_.ofTerm(element.role, "role")},
                     {"title", names_.of(element.title)},
                     {"description", names_.of(element.description)},
                     {"value", names_.of(element.value)},
                     {"frame", toJson(element.frame)},
                     {"actions", actions}});
  }
  return nodes;
}

void Draft::omitWhatIsNotPrinted(const SeenPanel& panel) {
  const Dialog& dialog = *panel.dialog;
  if (!sameElement(dialog.root, dialog.tree.front())) {
    omit("the root of " + dialog.place + ", as its first node tells otherwise");
  }
  if (dialog.tree.size() == most_printed_elements) {
    omit("what " + dialog.place + " holds beyond the " + std::to_string(most_printed_elements) +
         " nodes listed");
  }
  if (panel.shape == PanelShape::embedded) {
    omit("what stands between " + dialog.place + " and the browser's window");
  }
}

}  // namespace simulator::importing
