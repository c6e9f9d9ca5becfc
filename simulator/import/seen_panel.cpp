#include "simulator/import/seen_panel.h"

#include <algorithm>

#include "simulator/import/frames.h"
#include "simulator/import/panel_words.h"

namespace simulator::importing {

bool isWindow(const Node& node) {
  return node.role == "AXWindow" || node.role == "AXDialog";
}

namespace {

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
void findShape(SeenPanel& panel) {
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
std::optional<Rect> visibleList(const SeenPanel& panel) {
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
bool belongsTo(const SeenPanel& panel, const Node& node) {
  if (&node == panel.element) return false;
  if (panel.goTo != nullptr && isWithin(node.frame, panel.goTo->frame)) return false;
  if (isEmpty(panel.frame())) return true;
  return node.role == "AXOutline" ? overlap(node.frame, panel.frame())
                                  : isWithin(node.frame, panel.frame());
}

}  // namespace

SeenPanel analyse(const Dialog& dialog) {
  SeenPanel panel;
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

}  // namespace simulator::importing
