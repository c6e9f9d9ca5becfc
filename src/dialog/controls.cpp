#include "dialog/controls.h"

#include <algorithm>
#include <vector>

#include "core/text.h"
#include "dialog/traversal.h"
#include "platform/accessibility.h"

namespace tessarine {
namespace {

// A text field narrower than this (points) is not one for names or paths.
constexpr double narrowestPathField = 120;

bool isTextField(const Element& element) {
  return axRole(element) == "AXTextField";
}

bool isSearchField(const Element& element) {
  return axSubrole(element) == "AXSearchField";
}

bool isWide(const Element& field) {
  return axFrame(field).width >= narrowestPathField;
}

bool looksLikePathField(const Element& field) {
  if (!isWide(field)) return false;
  const std::string value = axInputValue(field);
  return value.empty() || value.starts_with('/') || value.starts_with('~');
}

}  // namespace

std::optional<NodeRef> findButton(const Element& root, const TitleSet& titles) {
  for (const NodeRef& node : breadthFirstNodes(root, 8, 1800)) {
    if (axRole(node.element) == "AXButton" && titles.contains(axTitle(node.element))) return node;
  }
  return {};
}

std::string popupValue(const Element& popup) {
  std::string value = axInputValue(popup);
  return value.empty() ? axTitle(popup) : value;
}

bool isMarkedLocationPopup(const Element& popup) {
  return contains(axTitle(popup), locationMarker) || contains(popupValue(popup), locationMarker);
}

std::optional<NodeRef> findLocationPopup(const Element& root) {
  auto popups = breadthFirstNodes(root, 6, 220);
  std::erase_if(popups,
                [](const NodeRef& node) { return axRole(node.element) != "AXPopUpButton"; });
  if (popups.empty()) return {};
  const auto marked = std::find_if(popups.begin(), popups.end(), [](const NodeRef& popup) {
    return isMarkedLocationPopup(popup.element);
  });
  return marked != popups.end() ? *marked : popups.front();
}

std::optional<NodeRef> findMenuItem(const Element& root, const std::string& title) {
  return findFirst(root, [&](const Element& element, const auto&) {
    return axRole(element) == "AXMenuItem" && axTitle(element) == title;
  });
}

std::optional<Element> findSearchField(const Element& root) {
  for (const NodeRef& node : breadthFirstNodes(root, 7, 260)) {
    if (isTextField(node.element) && isSearchField(node.element)) return node.element;
  }
  return {};
}

bool isWideConfirmableField(const Element& field) {
  if (!isWide(field)) return false;
  const auto actions = axActions(field);
  return std::find(actions.begin(), actions.end(), "AXConfirm") != actions.end();
}

std::optional<Element> findChooserNameField(const Element& root, const std::string& expectedValue) {
  for (const NodeRef& node : breadthFirstNodes(root, 7, 260)) {
    if (isTextField(node.element) && axInputValue(node.element) == expectedValue &&
        isWideConfirmableField(node.element)) {
      return node.element;
    }
  }
  return {};
}

std::optional<Element> findGoToFolderField(const Element& root) {
  std::vector<Element> fields;
  for (const NodeRef& node : breadthFirstNodes(root, 8, 700)) {
    if (isTextField(node.element) && !isSearchField(node.element)) fields.push_back(node.element);
  }
  const auto focused = std::find_if(fields.begin(), fields.end(), [](const Element& field) {
    return axIsTrue(field, "AXFocused");
  });
  if (focused != fields.end()) return *focused;
  const auto likely = std::find_if(fields.begin(), fields.end(), looksLikePathField);
  if (likely != fields.end()) return *likely;
  return {};
}

}  // namespace tessarine
