#include "dialog/controls.h"

#include <vector>

#include "core/text.h"
#include "platform/accessibility.h"

namespace tessarine {
namespace {

// A text field narrower than this (points) is not one for names or paths.
constexpr double narrowestPathField = 120;

constexpr WalkLimits buttonLimits{8, 1800};
constexpr WalkLimits popupLimits{6, 220};
constexpr WalkLimits menuItemLimits{8, 700};
constexpr WalkLimits fieldLimits{7, 260};
constexpr WalkLimits goToFieldLimits{8, 700};

bool isTextField(const ElementValues& node) {
  return node.role() == "AXTextField";
}

bool isSearchField(const ElementValues& node) {
  return node.subrole() == "AXSearchField";
}

bool isWide(const ElementValues& field) {
  return field.frame().width >= narrowestPathField;
}

std::optional<Element> elementOf(const std::optional<NodeRef>& node) {
  if (!node) return {};
  return node->element;
}

LocationPopupSearch locationPopupBelow(const Element& root) {
  LocationPopupSearch search;
  walk(root, popupLimits, locationPopupAttributes, [&](const VisitedNode& node) {
    search.visit(node);
    return search.certain;
  });
  return search;
}

bool looksLikePathField(const ElementValues& field) {
  if (!isWide(field)) return false;
  const std::string value = field.inputValue();
  return value.empty() || value.starts_with('/') || value.starts_with('~');
}

}  // namespace

std::optional<NodeRef> findButton(const Element& root, const TitleSet& titles) {
  return firstNode(root, buttonLimits, {"AXRole", "AXTitle"}, [&](const VisitedNode& node) {
    return node.role() == "AXButton" && titles.contains(node.title());
  });
}

std::optional<NodeRef> findChooseButton(const Element& root) {
  return findButton(root, tables().chooseButtonTitles);
}

std::string popupValue(const Element& popup) {
  std::string value = axInputValue(popup);
  return value.empty() ? axTitle(popup) : value;
}

bool isMarkedLocationPopup(const ElementValues& node) {
  return node.role() == "AXPopUpButton" &&
         (contains(node.title(), locationMarker) || contains(node.inputValue(), locationMarker));
}

void LocationPopupSearch::visit(const VisitedNode& node) {
  if (certain || !node.isWithin(popupLimits) || node.role() != "AXPopUpButton") return;
  certain = isMarkedLocationPopup(node);
  if (popup && !certain) return;
  popup = node.reference();
  shown = node.inputValue();
  if (shown.empty()) shown = node.title();
}

std::optional<NodeRef> findLocationPopup(const Element& root) {
  return locationPopupBelow(root).popup;
}

std::optional<std::string> shownLocation(const Element& root) {
  const LocationPopupSearch search = locationPopupBelow(root);
  if (!search.popup) return {};
  return search.shown;
}

std::optional<NodeRef> findMenuItem(const Element& root, const std::string& title) {
  return firstNode(root, menuItemLimits, {"AXRole", "AXTitle"}, [&](const VisitedNode& node) {
    return node.role() == "AXMenuItem" && node.title() == title;
  });
}

std::optional<Element> findSearchField(const Element& root) {
  return elementOf(
      firstNode(root, fieldLimits, {"AXRole", "AXSubrole"},
                [](const VisitedNode& node) { return isTextField(node) && isSearchField(node); }));
}

bool isWideConfirmableField(const ElementValues& node) {
  return isTextField(node) && isWide(node) && axOffers(node.element(), "AXConfirm");
}

bool isChooserNameField(const VisitedNode& node, const std::string& expectedValue) {
  return node.isWithin(fieldLimits) && isTextField(node) && node.inputValue() == expectedValue &&
         isWideConfirmableField(node);
}

std::optional<Element> findChooserNameField(const Element& root, const std::string& expectedValue) {
  return elementOf(
      firstNode(root, fieldLimits, {"AXRole", "AXValue", "AXPosition", "AXSize"},
                [&](const VisitedNode& node) { return isChooserNameField(node, expectedValue); }));
}

std::optional<Element> findGoToFolderField(const Element& root) {
  std::optional<Element> field;
  walk(root, goToFieldLimits,
       {"AXRole", "AXSubrole", "AXFocused", "AXValue", "AXPosition", "AXSize"},
       [&](const VisitedNode& node) {
         if (!isTextField(node) || isSearchField(node)) return false;
         const bool focused = node.isTrue("AXFocused");
         if (focused || (!field && looksLikePathField(node))) field = node.element();
         return focused;
       });
  return field;
}

}  // namespace tessarine
