// What an Open panel shows and what its confirm button would take, seen by the locations ("AXURL")
// of entries alone. Names and titles prove nothing; that the location pop-up calls the folder by
// another name disproves.
//
// A look costs about 40 requests, however large the folder is.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "dialog/panel_parts.h"
#include "platform/element.h"

namespace tessarine {

// What is to be chosen.
struct Target {
  std::string path;  // canonical
  bool isFolder = false;
};

// What one look saw.
struct PanelSight {
  ListingView view = ListingView::list;
  // The rows or items of the listing; in the column view those of the deepest column that has some.
  std::vector<Element> entries;
  // One of the entries told its location.
  bool hasLocatedEntries = false;
  // The folder that the entries stand in: the one parent of all locations that were read, entries
  // of unfolded subfolders left out. Absent when they name none, or more than one.
  std::optional<std::string> folder;
  std::string folderName;  // as the location pop-up shows it; empty when it shows nothing
  bool searching = false;  // the search field is not empty: the listing is no folder's

  // Whether the panel says what is selected.
  bool selectionKnown = false;
  std::vector<Element> selection;
  std::optional<std::string> selected;  // the location of the only entry that is selected

  // For looking again at the decisive points alone.
  std::optional<Element> witness;  // an entry that told its location
  std::optional<Element> list;     // the element that named the selection, and how
  std::string selectionAttribute;
};

// A full look. Throws Unanswered when anything that it needs does not answer, so that what is half
// read is never taken for what is there.
PanelSight lookAt(const PanelParts& parts);

// Whether an entry is still there, and the folder's name and the selection are those of the look:
// three requests, the selection last. False also when the look cannot be repeated so. Throws
// Unanswered, gone when the listing was built anew meanwhile.
bool stillAsSeen(const PanelSight& sight, const PanelParts& parts);

// Whether a panel may show the name for what stands at the path: its last component, or what the
// file browser calls it.
bool isNameOf(const std::string& name, const std::string& path);

enum class Proof { folderShown, entrySelected };

// Whether the panel, as far as it can still be read, shows something else than it did in a look
// that proved the target: another name of the folder, another selection than the target, other
// entries. For a panel that may be closing: what does not answer says nothing, and few requests are
// made.
bool showsOtherwise(const PanelSight& before, const PanelParts& parts, const Target& target);

// Why the confirm button would take the target, if it is seen that it would: the target is the only
// entry selected, or it is a folder, nothing is selected, and the panel shows it. In the column
// view a folder that is selected is shown, too, and the pop-up must call it so: what is hidden has
// neither an entry nor, when it is empty, a column.
std::optional<Proof> proofOf(const PanelSight& sight, const Target& target);

// The location that the entry names: that of the first of its elements that has one, itself first;
// no more than 12 of them are asked. Throws Unanswered.
std::optional<std::string> entryLocation(const Element& entry);

// The same for one entry after the other of a listing: `way` leads from an entry to the element
// that names its location, child by child; it is tried first and learnt anew where it leads
// nowhere.
std::optional<std::string> entryLocation(const Element& entry, std::vector<std::size_t>& way);

// What the panel shows, for people: "/a/b", "/a/b with /a/b/c selected", "a folder that it does not
// name".
std::string describe(const PanelSight& sight);

}  // namespace tessarine
