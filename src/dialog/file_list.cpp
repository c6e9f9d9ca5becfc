#include "dialog/file_list.h"

#include <algorithm>

#include "core/tables.h"
#include "core/text.h"
#include "dialog/traversal.h"
#include "platform/accessibility.h"
#include "platform/files.h"

namespace tessarine {
namespace {

constexpr WalkLimits outlineLimits{8, 260};
constexpr WalkLimits listLimits{5, 700};
constexpr WalkLimits rowLimits{8, 700};

bool isTextCell(const ElementValues& node) {
  const std::string role = node.role();
  return role == "AXTextField" || role == "AXStaticText";
}

bool pointsAt(const ElementValues& node, const std::string& standardized) {
  const auto path = node.urlPath();
  // An empty path names nothing; standardized it would be the current directory.
  return path && !path->empty() && standardizedPath(*path) == standardized;
}

std::string rowName(const ElementValues& node) {
  std::string name = node.fileName();
  return name.empty() ? node.label() : name;
}

// Visits the name cells of the file list.
void walkCandidates(const Element& dialog, std::vector<std::string> attributes,
                    const NodeVisitor& visit) {
  const auto list = findFileList(dialog);
  if (!list) return;
  attributes.push_back("AXRole");
  walk(list->element, listLimits, attributes,
       [&](const VisitedNode& node) { return isTextCell(node) && visit(node); });
}

}  // namespace

bool isOutlineMarked(const ElementValues& values, std::string_view marker) {
  return values.role() == "AXOutline" && contains(values.description(), marker);
}

std::optional<NodeRef> findFileList(const Element& dialog) {
  std::optional<NodeRef> first;
  std::optional<NodeRef> notSidebar;
  const auto listView =
      firstNode(dialog, outlineLimits, {"AXRole", "AXDescription"}, [&](const VisitedNode& node) {
        if (node.role() != "AXOutline") return false;
        const std::string description = node.description();
        if (!first) first = node.reference();
        if (!notSidebar && !contains(description, sidebarMarker)) notSidebar = node.reference();
        return contains(description, listViewMarker);
      });
  if (listView) return listView;
  return notSidebar ? notSidebar : first;
}

std::vector<NodeRef> fileListCandidates(const Element& dialog) {
  std::vector<NodeRef> candidates;
  walkCandidates(dialog, {}, [&](const VisitedNode& node) {
    candidates.push_back(node.reference());
    return false;
  });
  return candidates;
}

bool isListView(const VisitedNode& node) {
  return node.isWithin(outlineLimits) && isOutlineMarked(node, listViewMarker);
}

std::optional<NodeRef> findOutline(const Element& root, std::string_view marker) {
  return firstNode(root, outlineLimits, {"AXRole", "AXDescription"},
                   [&](const VisitedNode& node) { return isOutlineMarked(node, marker); });
}

bool nodeBelongsToOutline(const NodeRef& node, std::string_view marker) {
  bool belongs = false;
  climb(node, {"AXRole", "AXDescription"}, [&](const ElementValues& values) {
    belongs = isOutlineMarked(values, marker);
    return belongs;
  });
  return belongs;
}

std::string fileListFingerprint(const Element& dialog) {
  std::string fingerprint;
  walkCandidates(dialog, {"AXTitle", "AXValue", "AXDescription"}, [&](const VisitedNode& node) {
    const std::string label = node.label();
    if (!label.empty() && !fingerprint.empty()) fingerprint += '|';
    fingerprint += label;
    return false;
  });
  return fingerprint;
}

void selectContainingRow(const std::vector<NodeRef>& chain) {
  const auto row = std::ranges::find_if(
      chain, [](const NodeRef& entry) { return axRole(entry.element) == "AXRow"; });
  if (row == chain.end()) return;
  const AttributeNames asked({"AXRole", "AXDescription"});
  const auto outline = std::find_if(row + 1, chain.end(), [&](const NodeRef& entry) {
    return isOutlineMarked(ElementValues(entry.element, asked), listViewMarker);
  });
  if (outline == chain.end()) return;
  setElements(outline->element, "AXSelectedRows", {row->element});
  setTrue(outline->element, "AXFocused");
}

std::vector<std::string> selectedRowLabels(const Element& dialog) {
  const auto outline = findOutline(dialog, listViewMarker);
  if (!outline) return {};
  return labelsOfSelectedRows(outline->element);
}

std::vector<std::string> labelsOfSelectedRows(const Element& list) {
  std::vector<std::string> labels;
  for (const Element& row : axElements(list, "AXSelectedRows")) {
    walk(row, rowLimits, {"AXTitle", "AXValue", "AXDescription"}, [&](const VisitedNode& node) {
      std::string label = node.label();
      if (!label.empty()) labels.push_back(std::move(label));
      return false;
    });
  }
  return labels;
}

std::optional<NodeRef> findFolderRow(const Element& dialog, const std::string& childPath,
                                     const std::string& componentName) {
  const std::string standardized = standardizedPath(childPath);
  std::optional<NodeRef> row;
  walkCandidates(dialog, {"AXURL", "AXFilename", "AXTitle", "AXValue", "AXDescription"},
                 [&](const VisitedNode& node) {
                   const bool fits = pointsAt(node, standardized) ||
                                     (!componentName.empty() && rowName(node) == componentName);
                   if (fits) row = node.reference();
                   return fits;
                 });
  return row;
}

std::optional<NodeRef> findSidebarItem(const Element& dialog, const std::string& label,
                                       const std::string& expectedPath) {
  const auto place = findSidebarPlace(dialog, {{expectedPath, label}});
  if (!place) return {};
  return place->item;
}

std::optional<FoundPlace> findSidebarPlace(const Element& dialog,
                                           const std::vector<Place>& places) {
  if (places.empty()) return {};
  const auto sidebar = findOutline(dialog, sidebarMarker);
  if (!sidebar) return {};
  std::optional<FoundPlace> best;
  const std::vector<std::string> attributes{"AXRole", "AXTitle", "AXValue", "AXDescription",
                                            "AXURL"};
  walk(sidebar->element, rowLimits, attributes, [&](const VisitedNode& node) {
    if (!isTextCell(node)) return false;
    const std::string label = node.label();
    const std::size_t wanted = best ? best->number : places.size();
    for (std::size_t i = 0; i < wanted; ++i) {
      if (places[i].label != label || !pointsAt(node, standardizedPath(places[i].path))) continue;
      best = FoundPlace{i, node.reference()};
      break;
    }
    return best && best->number == 0;
  });
  return best;
}

}  // namespace tessarine
