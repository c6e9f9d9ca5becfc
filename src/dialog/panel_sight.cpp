#include "dialog/panel_sight.h"

#include <algorithm>
#include <array>

#include "platform/accessibility.h"
#include "platform/files.h"
#include "platform/workspace.h"

namespace tessarine {
namespace {

// Enough to find that entries of several folders are shown, few enough for large ones.
constexpr std::size_t mostLocatedEntries = 5;
constexpr std::size_t mostAskedEntries = 9;
constexpr int mostEntryElements = 12;
constexpr std::size_t deepestEntryElement = 3;
// Where only the entries themselves say whether they are selected.
constexpr std::size_t mostSelfTelling = 200;

using Elements = std::vector<Element>;

// The list of a column: the column itself or what it scrolls.
std::optional<Element> listOfColumn(const Element& column) {
  if (readText(column, "AXRole") == "AXList") return column;
  for (const Element& child : readList(column)) {
    if (readText(child, "AXRole") == "AXList") return child;
  }
  return {};
}

// The deepest column with something in it. An empty folder has no column.
std::optional<Element> decisiveColumn(const Element& browser) {
  auto columns = readElements(browser, "AXColumns");
  if (!columns) columns = readList(browser);
  for (auto column = columns->rbegin(); column != columns->rend(); ++column) {
    const auto list = listOfColumn(*column);
    if (list && !readList(*list).empty()) return list;
  }
  return {};
}

// The list whose entries and whose selection count.
std::optional<Element> decisiveList(const PanelParts& parts) {
  const bool columns = parts.listing && parts.view == ListingView::columns;
  return columns ? decisiveColumn(*parts.listing) : parts.listing;
}

Elements entriesOf(const Element& list, ListingView view) {
  if (view == ListingView::list) {
    if (auto rows = readElements(list, "AXRows")) return *rows;
  }
  return readList(list);
}

// `way` is the way to the element, and then to the one that has a location.
std::optional<std::string> locationBelow(const Element& element, std::vector<std::size_t>& way,
                                         int& asked) {
  if (++asked > mostEntryElements) return {};
  if (auto location = readLocation(element)) return location;
  if (way.size() == deepestEntryElement) return {};
  const Elements children = readList(element);
  for (std::size_t i = 0; i < children.size(); ++i) {
    way.push_back(i);
    if (auto location = locationBelow(children[i], way, asked)) return location;
    way.pop_back();
  }
  return {};
}

std::optional<std::string> locationAlong(Element element, const std::vector<std::size_t>& way) {
  for (const std::size_t index : way) {
    const Elements children = readList(element);
    if (index >= children.size()) return {};
    element = children[index];
  }
  return readLocation(element);
}

// A row of an unfolded subfolder.
bool isDisclosed(const Element& row, ListingView view) {
  return view == ListingView::list && readElement(row, "AXDisclosedByRow");
}

void seeFolder(ListingView view, PanelSight& sight) {
  std::vector<std::string> parents;
  const std::size_t most = std::min(sight.entries.size(), mostAskedEntries);
  for (std::size_t i = 0; i < most && parents.size() < mostLocatedEntries; ++i) {
    const Element& entry = sight.entries[i];
    const auto location = entryLocation(entry);
    if (!location || isDisclosed(entry, view)) continue;
    parents.push_back(parentDirectory(*location));
    if (!sight.witness) sight.witness = entry;
  }
  sight.hasLocatedEntries = !parents.empty();
  if (parents.empty()) return;
  const bool one = std::ranges::all_of(parents, [&](const std::string& parent) {
    return parent == parents.front() || sameFile(parent, parents.front());
  });
  if (one) sight.folder = parents.front();
}

void seeSelf(const Element& entry, PanelSight& sight) {
  const auto selected = readFlag(entry, "AXSelected");
  sight.selectionKnown = sight.selectionKnown && selected;
  if (selected.value_or(false)) sight.selection.push_back(entry);
}

void seeSelection(const Element& list, ListingView view, PanelSight& sight) {
  std::array<const char*, 2> attributes{"AXSelectedRows", "AXSelectedChildren"};
  if (view != ListingView::list) std::swap(attributes[0], attributes[1]);
  for (const char* attribute : attributes) {
    const auto selection = readDecisive(list, attribute);
    if (!selection) continue;
    sight.selectionKnown = true;
    sight.selection = *selection;
    sight.list = list;
    sight.selectionAttribute = attribute;
    break;
  }
  if (!sight.selectionKnown && sight.entries.size() <= mostSelfTelling) {
    sight.selectionKnown = true;
    for (const Element& entry : sight.entries) seeSelf(entry, sight);
  }
  if (sight.selection.size() == 1) sight.selected = entryLocation(sight.selection.front());
}

std::string textOf(const std::optional<Element>& element) {
  return element ? readText(*element, "AXValue").value_or("") : std::string();
}

// Whether the pop-up calls what is shown by the name of the path, which is one spelling of the
// target's. A list tells without a name, too; columns do not, where the last may be hidden.
bool isCalledSo(const PanelSight& sight, const std::string& path, const Target& target) {
  const std::string& name = sight.folderName;
  if (name.empty()) return sight.view != ListingView::columns;
  return isNameOf(name, path) || isNameOf(name, target.path);
}

bool showsFolder(const PanelSight& sight, const Target& target) {
  if (!target.isFolder || !sight.folder || sight.searching) return false;
  return sameFile(*sight.folder, target.path) && isCalledSo(sight, *sight.folder, target);
}

bool hasSelected(const PanelSight& sight, const Target& target) {
  if (!sight.selected || !sameFile(*sight.selected, target.path)) return false;
  const bool alsoShown = target.isFolder && sight.view == ListingView::columns;
  return !alsoShown || isCalledSo(sight, *sight.selected, target);
}

// What is read, unless it does not answer.
template <class Read>
auto unlessUnanswered(const Read& read) -> std::optional<decltype(read())> {
  try {
    return read();
  } catch (const Unanswered&) {
    return {};
  }
}

bool isSelectionOf(const Elements& selection, const Target& target) {
  if (selection.size() != 1) return false;
  const auto location = unlessUnanswered([&] { return entryLocation(selection.front()); });
  return location && *location && sameFile(**location, target.path);
}

bool selectsOtherwise(const PanelSight& before, const Element& list, const Target& target) {
  if (!before.list) return false;
  const auto selection =
      unlessUnanswered([&] { return readList(list, before.selectionAttribute); });
  if (!selection || *selection == before.selection) return false;
  // A listing that was built anew selects the same by another element.
  return before.selection.empty() || !isSelectionOf(*selection, target);
}

// The listing was built anew, and its last entry, which is no header, stands in another folder.
bool listsOtherwise(const PanelSight& before, const Element& list) {
  if (!before.witness || !before.folder) return false;
  const bool rebuilt = unlessUnanswered([&] { return isGone(*before.witness); }).value_or(false);
  if (!rebuilt) return false;
  const auto entries = unlessUnanswered([&] { return entriesOf(list, before.view); });
  if (!entries || entries->empty()) return false;
  const auto location = unlessUnanswered([&] { return entryLocation(entries->back()); });
  return location && *location && !sameFile(parentDirectory(**location), *before.folder);
}

}  // namespace

PanelSight lookAt(const PanelParts& parts) {
  PanelSight sight;
  sight.view = parts.view;
  sight.folderName = textOf(parts.locationPopup);
  sight.searching = !textOf(parts.searchField).empty();
  const auto list = decisiveList(parts);
  if (!list) return sight;
  sight.entries = entriesOf(*list, parts.view);
  seeFolder(parts.view, sight);
  seeSelection(*list, parts.view, sight);
  return sight;
}

bool stillAsSeen(const PanelSight& sight, const PanelParts& parts) {
  if (!sight.list) return false;
  if (sight.witness) readText(*sight.witness, "AXRole");
  if (textOf(parts.locationPopup) != sight.folderName) return false;
  return readElements(*sight.list, sight.selectionAttribute) == sight.selection;
}

bool isNameOf(const std::string& name, const std::string& path) {
  return name == lastPathComponent(path) || name == fileManagerDisplayName(path);
}

bool showsOtherwise(const PanelSight& before, const PanelParts& parts, const Target& target) {
  const auto name = unlessUnanswered([&] { return textOf(parts.locationPopup); });
  const bool renamed = name && *name != before.folderName;
  // Where an entry is selected it is taken, whatever folder is shown.
  if (renamed && before.selection.empty()) return true;
  const auto answer = unlessUnanswered([&] { return decisiveList(parts); });
  const auto list = answer.value_or(std::nullopt);
  return list && (selectsOtherwise(before, *list, target) || listsOtherwise(before, *list));
}

std::optional<Proof> proofOf(const PanelSight& sight, const Target& target) {
  if (!sight.selectionKnown) return {};
  if (sight.selection.empty()) {
    return showsFolder(sight, target) ? std::optional(Proof::folderShown) : std::nullopt;
  }
  return hasSelected(sight, target) ? std::optional(Proof::entrySelected) : std::nullopt;
}

std::optional<std::string> entryLocation(const Element& entry) {
  std::vector<std::size_t> way;
  int asked = 0;
  return locationBelow(entry, way, asked);
}

std::optional<std::string> entryLocation(const Element& entry, std::vector<std::size_t>& way) {
  if (!way.empty()) {
    if (auto location = locationAlong(entry, way)) return location;
  }
  std::vector<std::size_t> found;
  int asked = 0;
  auto location = locationBelow(entry, found, asked);
  if (location) way = std::move(found);
  return location;
}

std::string describe(const PanelSight& sight) {
  const std::string folder = sight.folder.value_or(
      sight.folderName.empty() ? "a folder that it does not name" : sight.folderName);
  if (!sight.selectionKnown) return folder + " and does not say what is selected";
  if (sight.selection.empty()) return folder;
  if (sight.selection.size() > 1) return folder + " with several entries selected";
  return folder + " with " + sight.selected.value_or("an entry without a location") + " selected";
}

}  // namespace tessarine
