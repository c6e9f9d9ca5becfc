#include "simulator/import/panel_parts.h"

#include "simulator/import/frames.h"
#include "simulator/import/panel_words.h"

namespace simulator::importing {

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
  // A page behind the panel may have lists, too.
  const Node* other = first(nodes, [](const Node& node) {
    return node.role == "AXBrowser" ||
           (node.role == "AXList" && says(node.description, &PanelTexts::iconView));
  });
  if (other != nullptr) return other;
  const Node* marked = first(nodes, [](const Node& node) {
    return node.role == "AXOutline" && mentions(node.description, &PanelTexts::listView);
  });
  if (marked != nullptr) return marked;
  return first(nodes, [](const Node& node) {
    return node.role == "AXOutline" && !mentions(node.description, &PanelTexts::sidebar);
  });
}

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

const Node* message(const Nodes& nodes, const std::string& title) {
  for (const Node* node : nodes) {
    if (node->role == "AXOutline") break;
    if (node->role == "AXStaticText" && !node->value.empty() && node->value != title) return node;
  }
  return nullptr;
}

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

}  // namespace simulator::importing
