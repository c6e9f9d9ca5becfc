#include "dialog/file_list.h"

#include <algorithm>

#include "core/tables.h"
#include "core/text.h"
#include "dialog/traversal.h"
#include "platform/accessibility.h"
#include "platform/files.h"

namespace tessarine {
namespace {

bool isOutlineMarked(const Element& element, std::string_view marker) {
  return axRole(element) == "AXOutline" && contains(axDescription(element), marker);
}

bool isTextCell(const Element& element) {
  const std::string role = axRole(element);
  return role == "AXTextField" || role == "AXStaticText";
}

bool pointsAt(const Element& element, const std::string& standardized) {
  const auto path = axURLPath(element);
  // An empty path names nothing; standardized it would be the current directory.
  return path && !path->empty() && standardizedPath(*path) == standardized;
}

std::string rowName(const Element& element) {
  std::string name = fileNameAttribute(element);
  return name.empty() ? displayLabel(element) : name;
}

}  // namespace

std::optional<NodeRef> findFileList(const Element& dialog) {
  auto outlines = breadthFirstNodes(dialog, 8, 260);
  std::erase_if(outlines, [](const NodeRef& node) { return axRole(node.element) != "AXOutline"; });
  if (outlines.empty()) return {};
  const auto listView = std::find_if(outlines.begin(), outlines.end(), [](const NodeRef& outline) {
    return contains(axDescription(outline.element), listViewMarker);
  });
  if (listView != outlines.end()) return *listView;
  const auto other = std::find_if(outlines.begin(), outlines.end(), [](const NodeRef& outline) {
    return !contains(axDescription(outline.element), sidebarMarker);
  });
  return other != outlines.end() ? *other : outlines.front();
}

std::vector<NodeRef> fileListCandidates(const Element& dialog) {
  const auto list = findFileList(dialog);
  if (!list) return {};
  auto candidates = breadthFirstNodes(list->element, 5, 700);
  std::erase_if(candidates, [](const NodeRef& node) { return !isTextCell(node.element); });
  return candidates;
}

std::optional<NodeRef> findOutline(const Element& root, std::string_view marker) {
  for (const NodeRef& node : breadthFirstNodes(root, 8, 260)) {
    if (isOutlineMarked(node.element, marker)) return node;
  }
  return {};
}

bool nodeBelongsToOutline(const NodeRef& node, std::string_view marker) {
  const auto chain = ancestorChain(node);
  return std::any_of(chain.begin(), chain.end(),
                     [&](const NodeRef& entry) { return isOutlineMarked(entry.element, marker); });
}

std::string fileListFingerprint(const Element& dialog) {
  std::string fingerprint;
  for (const NodeRef& candidate : fileListCandidates(dialog)) {
    const std::string label = displayLabel(candidate.element);
    if (label.empty()) continue;
    if (!fingerprint.empty()) fingerprint += '|';
    fingerprint += label;
  }
  return fingerprint;
}

void selectContainingRow(const std::vector<NodeRef>& chain) {
  const auto row = std::find_if(chain.begin(), chain.end(), [](const NodeRef& entry) {
    return axRole(entry.element) == "AXRow";
  });
  if (row == chain.end()) return;
  const auto outline = std::find_if(row + 1, chain.end(), [](const NodeRef& entry) {
    return isOutlineMarked(entry.element, listViewMarker);
  });
  if (outline == chain.end()) return;
  setElements(outline->element, "AXSelectedRows", {row->element});
  setTrue(outline->element, "AXFocused");
}

std::vector<std::string> selectedRowLabels(const Element& dialog) {
  const auto outline = findOutline(dialog, listViewMarker);
  if (!outline) return {};
  std::vector<std::string> labels;
  for (const Element& row : axElements(outline->element, "AXSelectedRows")) {
    for (const NodeRef& node : descendants(row)) {
      std::string label = displayLabel(node.element);
      if (!label.empty()) labels.push_back(std::move(label));
    }
  }
  return labels;
}

std::optional<NodeRef> findFolderRow(const Element& dialog, const std::string& childPath,
                                     const std::string& componentName) {
  const std::string standardized = standardizedPath(childPath);
  for (const NodeRef& candidate : fileListCandidates(dialog)) {
    if (pointsAt(candidate.element, standardized)) return candidate;
    const std::string name = rowName(candidate.element);
    if (!name.empty() && name == componentName) return candidate;
  }
  return {};
}

std::optional<NodeRef> findSidebarItem(const Element& dialog, const std::string& label,
                                       const std::string& expectedPath) {
  const auto sidebar = findOutline(dialog, sidebarMarker);
  if (!sidebar) return {};
  const std::string standardized = standardizedPath(expectedPath);
  return findFirst(sidebar->element, [&](const Element& element, const auto&) {
    return isTextCell(element) && displayLabel(element) == label && pointsAt(element, standardized);
  });
}

}  // namespace tessarine
