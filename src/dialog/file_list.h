// The file list and the sidebar of a dialog: outlines, rows, selection.
//
// Outlines are recognised by a marker contained in their description. Nothing here reports an
// error: what is missing reads as nothing, an empty list or an empty text.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "dialog/traversal.h"
#include "platform/element.h"

namespace tessarine {

// The outline marked as a list view; or else the first one not marked as the sidebar; or else the
// first outline of all, so that a dialog with a single outline always yields it.
std::optional<NodeRef> findFileList(const Element& dialog);

// The name cells of the file list: its text fields and static texts.
std::vector<NodeRef> fileListCandidates(const Element& dialog);

// Whether this is an outline whose description contains the marker; of "AXRole" and
// "AXDescription".
bool isOutlineMarked(const ElementValues& values, std::string_view marker);

// Whether this is an outline marked as a list view, and a node that findOutline would visit; of
// "AXRole" and "AXDescription".
bool isListView(const VisitedNode& node);

// The first outline whose description contains the marker.
std::optional<NodeRef> findOutline(const Element& root, std::string_view marker);

// Whether the node or one of its ancestors is an outline whose description contains the marker.
bool nodeBelongsToOutline(const NodeRef& node, std::string_view marker);

// The labels of the file list's candidates that are not empty, joined by "|": two that differ mean
// that the list was filled anew.
std::string fileListFingerprint(const Element& dialog);

// Selects the first row of the chain in the list-view outline above it and gives that outline the
// focus. Does nothing when either is missing.
void selectContainingRow(const std::vector<NodeRef>& chain);

// Every label found in the selected rows of the list-view outline, in order, repeats included.
std::vector<std::string> selectedRowLabels(const Element& dialog);
// The same of an outline that is known.
std::vector<std::string> labelsOfSelectedRows(const Element& list);

// The first candidate of the file list that points at the path or carries the name.
std::optional<NodeRef> findFolderRow(const Element& dialog, const std::string& childPath,
                                     const std::string& componentName);

struct Place {
  std::string path;
  std::string label;
};
struct FoundPlace {
  std::size_t number;  // of the place in its list
  NodeRef item;
};
// The first of the places that the sidebar has, each with its label and pointing at its path.
std::optional<FoundPlace> findSidebarPlace(const Element& dialog, const std::vector<Place>& places);

// The sidebar's place with that label, if it points at the path.
std::optional<NodeRef> findSidebarItem(const Element& dialog, const std::string& label,
                                       const std::string& expectedPath);

}  // namespace tessarine
