#include "dialog/panel_parts.h"

#include <algorithm>
#include <array>
#include <string>

#include "core/lists.h"
#include "core/tables.h"
#include "core/text.h"
#include "dialog/traversal.h"
#include "platform/accessibility.h"

namespace tessarine {
namespace {

constexpr WalkLimits partLimits{6, 250};

constexpr std::array<std::string_view, 8> partContainers{
    "AXWindow",     "AXSheet",      "AXDialog",     "AXGroup",
    "AXSplitGroup", "AXScrollArea", "AXLayoutArea", "AXUnknown"};
constexpr std::array<std::string_view, 5> listingRoles{"AXOutline", "AXTable", "AXBrowser",
                                                       "AXList", "AXCollection"};

// Descriptions of the two lists where the panel has no identifiers.
constexpr std::array<std::string_view, 2> knownListings{"list view", listViewMarker};
constexpr std::array<std::string_view, 2> knownSidebars{"sidebar", sidebarMarker};

struct PartNode {
  Element element;
  std::string role;
  std::string identifier;
};

// The elements below the root, itself left out, level by level.
std::vector<PartNode> partNodes(const Element& root) {
  std::vector<PartNode> nodes;
  walkAnswered(readList(root), partLimits, [&](const Element& element, const std::string& role) {
    nodes.push_back({element, role, readText(element, "AXIdentifier").value_or("")});
    return isContainerRole(role) && role != "AXSheet" ? Step::into : Step::past;
  });
  return nodes;
}

void keepFirst(std::optional<Element>& part, const Element& element) {
  if (!part) part = element;
}

void takeIdentified(const PartNode& node, PanelParts& parts) {
  const std::string& name = node.identifier;
  if (name == "OKButton") keepFirst(parts.confirmButton, node.element);
  if (name == "CancelButton") keepFirst(parts.cancelButton, node.element);
  if (name == "NewFolderButton") keepFirst(parts.newFolderButton, node.element);
  if (name == "where popup") keepFirst(parts.locationPopup, node.element);
  if (name == "Search") keepFirst(parts.searchField, node.element);
  const bool list = name == "ListView";
  const bool columns = name == "ColumnView";
  if ((!list && !columns && name != "IconView") || parts.listing) return;
  parts.listing = node.element;
  parts.view = list ? ListingView::list : columns ? ListingView::columns : ListingView::icons;
}

// What has no identifier of its own, or of which the title is enough.
void takeByRole(const PartNode& node, PanelParts& parts) {
  if (node.role == "AXPopUpButton") keepFirst(parts.locationPopup, node.element);
  if (node.role != "AXTextField") return;
  if (readText(node.element, "AXSubrole") == "AXSearchField") {
    keepFirst(parts.searchField, node.element);
  }
}

void takeTitledButton(const PartNode& node, PanelParts& parts) {
  if (node.role != "AXButton") return;
  const std::string title = readText(node.element, "AXTitle").value_or("");
  if (tables().chooseButtonTitles.contains(title)) keepFirst(parts.confirmButton, node.element);
  if (tables().cancelButtonTitles.contains(title)) keepFirst(parts.cancelButton, node.element);
}

ListingView viewOfRole(std::string_view role) {
  if (role == "AXBrowser") return ListingView::columns;
  return role == "AXList" || role == "AXCollection" ? ListingView::icons : ListingView::list;
}

bool isDescribed(const PartNode& node, const auto& known) {
  const std::string description = readText(node.element, "AXDescription").value_or("");
  return std::ranges::any_of(known,
                             [&](std::string_view text) { return contains(description, text); });
}

double leftEdge(const PartNode& node) {
  return readFrame(node.element).value_or(Rect{}).x;
}

// Of two lists of an unknown language the left one is the sidebar. A single one is nothing.
void takeListsByPlace(std::vector<PartNode> lists, PanelParts& parts) {
  if (lists.size() < 2) return;
  const auto byPlace = [](const PartNode& left, const PartNode& right) {
    return leftEdge(left) < leftEdge(right);
  };
  const auto leftmost = std::ranges::min_element(lists, byPlace);
  const auto rightmost = std::ranges::max_element(lists, byPlace);
  if (leftEdge(*leftmost) == leftEdge(*rightmost)) return;
  parts.sidebar = leftmost->element;
  parts.listing = rightmost->element;
  parts.view = viewOfRole(rightmost->role);
}

void takeUnidentifiedLists(const std::vector<PartNode>& nodes, PanelParts& parts) {
  std::vector<PartNode> unknown;
  for (const PartNode& node : nodes) {
    if (!isAmong(listingRoles, node.role)) continue;
    if (isDescribed(node, knownSidebars)) {
      keepFirst(parts.sidebar, node.element);
    } else if (isDescribed(node, knownListings) && !parts.listing) {
      parts.listing = node.element;
      parts.view = viewOfRole(node.role);
    } else {
      unknown.push_back(node);
    }
  }
  if (parts.listing) return;
  if (!parts.sidebar) return takeListsByPlace(unknown, parts);
  if (unknown.empty()) return;
  parts.listing = unknown.front().element;
  parts.view = viewOfRole(unknown.front().role);
}

// The sidebar has no identifier: it is the outline that is not the listing.
void takeSidebar(const std::vector<PartNode>& nodes, PanelParts& parts) {
  for (const PartNode& node : nodes) {
    const bool listing = parts.listing && node.element == *parts.listing;
    if (node.role == "AXOutline" && !listing) return keepFirst(parts.sidebar, node.element);
  }
}

}  // namespace

PanelParts panelParts(const Element& root) {
  const auto nodes = partNodes(root);
  PanelParts parts;
  for (const PartNode& node : nodes) takeIdentified(node, parts);
  const bool identified = parts.confirmButton || parts.cancelButton || parts.listing;
  if (identified) {
    takeSidebar(nodes, parts);
    return parts;
  }
  for (const PartNode& node : nodes) {
    takeByRole(node, parts);
    takeTitledButton(node, parts);
  }
  takeUnidentifiedLists(nodes, parts);
  return parts;
}

bool isContainerRole(std::string_view role) {
  return isAmong(partContainers, role);
}

}  // namespace tessarine
