#include "navigation/accessible_walk.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <vector>

#include "platform/accessibility.h"
#include "platform/clock.h"
#include "platform/files.h"
#include "platform/wait.h"

namespace tessarine {
namespace {

constexpr double walkPollSeconds = 0.1;
constexpr double entryListedSeconds = 1.0;
constexpr double folderOpensSeconds = 2.0;
constexpr double entrySelectedSeconds = 0.6;
constexpr double placeShownSeconds = 1.5;
// Measured: the menu of the pop-up takes about 0.4 s.
constexpr double menuOpensSeconds = 1.5;
constexpr std::size_t mostPlaces = 60;
constexpr std::size_t mostActingElements = 12;

// The writes that may select an entry, of the list that holds it or of the entry itself.
struct SelectionWrite {
  const char* attribute;
  bool ofList;
};
constexpr std::array<SelectionWrite, 3> selectionWrites{
    {{"AXSelectedRows", true}, {"AXSelected", false}, {"AXSelectedChildren", true}}};

constexpr std::array<const char*, 2> openingActions{"AXOpen", "AXPress"};

using Elements = std::vector<Element>;
using Paths = std::vector<std::string>;

// The path itself last, the folders around it before it, "/" first.
Paths pathsTo(const std::string& path) {
  Paths paths;
  std::string current;
  for (const std::string& component : pathComponents(path)) {
    current = current.empty() ? component : appendingComponent(current, component);
    paths.push_back(current);
  }
  return paths;
}

// The innermost of the paths that the location is.
std::optional<std::size_t> depthOf(const Paths& paths, const std::string& location) {
  for (std::size_t depth = paths.size(); depth-- > 0;) {
    if (sameFile(location, paths[depth])) return depth;
  }
  return {};
}

// The element and what stands below it, parents first, no more than a dozen.
void collectActing(const Element& element, Elements& elements) {
  if (elements.size() >= mostActingElements) return;
  elements.push_back(element);
  for (const Element& child : axChildren(element)) collectActing(child, elements);
}

Elements actingElements(const Element& entry) {
  Elements elements;
  collectActing(entry, elements);
  return elements;
}

// --- Entries. ---

// The entry of that very name, or else one that leads to the same file.
std::optional<Element> entryAt(const PanelSight& sight, const std::string& path, double deadline) {
  const std::string name = lastPathComponent(path);
  std::optional<Element> other;
  std::vector<std::size_t> way;
  for (const Element& entry : sight.entries) {
    if (currentTime() > deadline) break;
    const auto location = entryLocation(entry, way);
    if (!location || !sameFile(*location, path)) continue;
    if (lastPathComponent(*location) == name) return entry;
    if (!other) other = entry;
  }
  return other;
}

std::optional<Element> waitForEntry(PanelChoice& choice, const std::string& path) {
  std::optional<Element> entry;
  const Condition look = [&] {
    const auto sight = glance(choice);
    if (!sight) return false;
    holds(choice, [&] { return (entry = entryAt(*sight, path, choice.deadline)).has_value(); });
    return entry.has_value();
  };
  seenWithin(withinDeadline(choice, entryListedSeconds), walkPollSeconds, look);
  return entry;
}

// A directory that may be shown as a file: opening it would choose it where files are chosen.
bool mayBePackage(const std::string& path) {
  const std::string name = lastPathComponent(path);
  const auto dot = name.rfind('.');
  if (dot == std::string::npos || dot + 1 == name.size()) return false;
  return std::all_of(name.begin() + static_cast<std::ptrdiff_t>(dot) + 1, name.end(),
                     [](unsigned char byte) { return std::isalpha(byte) != 0; });
}

bool mayOpen(const PanelChoice& choice, const std::string& folder) {
  return isDirectory(folder) && (choice.isFolderPanel || !mayBePackage(folder));
}

// Whether the entry still names the folder.
bool entryNames(const PanelChoice& choice, const Element& entry, const std::string& folder) {
  return holds(choice, [&] {
    const auto location = entryLocation(entry);
    return location && sameFile(*location, folder);
  });
}

void writeSelection(const SelectionWrite& write, const std::optional<Element>& list,
                    const Element& entry) {
  if (!write.ofList) {
    setTrue(entry, write.attribute);
  } else if (list) {
    setElements(*list, write.attribute, {entry});
  }
}

// Selects the entry in one way after the other, until it is seen to have worked.
bool selectEntry(PanelChoice& choice, const Element& entry, const Condition& worked) {
  const auto sight = glance(choice);
  const auto list = sight ? sight->list : std::nullopt;
  for (const SelectionWrite& write : selectionWrites) {
    if (!mayActOn(choice, entry)) return false;
    writeSelection(write, list, entry);
    const double seconds = withinDeadline(choice, entrySelectedSeconds);
    if (seenWithin(seconds, walkPollSeconds, worked)) return true;
  }
  return false;
}

// Performs what opens the element, on each of those in it that offer it, until the folder is shown,
// as long as the element still leads there.
bool performOpening(PanelChoice& choice, const Element& opened, const std::string& folder,
                    double seconds, const Condition& stillLeadsThere) {
  for (const char* action : openingActions) {
    for (const Element& element : actingElements(opened)) {
      if (!mayActOn(choice, element) || !axOffers(element, action)) continue;
      if (!stillLeadsThere()) return showsWithin(choice, folder, 0);
      performAction(action, element);
      if (showsWithin(choice, folder, seconds)) return true;
    }
  }
  return false;
}

bool openEntry(PanelChoice& choice, const Element& entry, const std::string& folder) {
  if (!mayOpen(choice, folder)) return false;
  const Condition namesFolder = [&] { return entryNames(choice, entry, folder); };
  if (performOpening(choice, entry, folder, folderOpensSeconds, namesFolder)) return true;
  // In columns a folder that is selected is shown.
  return choice.parts.view == ListingView::columns &&
         selectEntry(choice, entry, [&] { return showsWithin(choice, folder, 0); });
}

// --- The sidebar. ---

// Shows a place of the sidebar in every way that there is, until it is seen.
bool showPlace(PanelChoice& choice, const Element& row, const std::string& folder) {
  const Condition shown = [&] { return showsWithin(choice, folder, placeShownSeconds); };
  if (!mayActOn(choice, row)) return false;
  setTrue(row, "AXSelected");
  if (shown()) return true;
  if (choice.parts.sidebar) setElements(*choice.parts.sidebar, "AXSelectedRows", {row});
  if (shown()) return true;
  return performOpening(choice, row, folder, placeShownSeconds, [] { return true; });
}

Elements placeRows(const PanelChoice& choice) {
  Elements rows;
  if (!choice.parts.sidebar) return rows;
  holds(choice, [&] {
    const Element& sidebar = *choice.parts.sidebar;
    rows = readList(sidebar, "AXRows");
    if (rows.empty()) rows = readList(sidebar);
    return true;
  });
  if (rows.size() > mostPlaces) rows.erase(rows.begin() + mostPlaces, rows.end());
  return rows;
}

// How deep on the way a row of the sidebar leads, as its location has it.
std::optional<std::size_t> depthByLocation(const Element& row, const Paths& paths) {
  const auto location = entryLocation(row);
  return location ? depthOf(paths, *location) : std::nullopt;
}

// The same of a row without a location, by the text that names it.
std::optional<std::size_t> depthByLabel(const Element& row, const Paths& paths) {
  if (entryLocation(row)) return {};
  std::string label;
  for (const Element& element : actingElements(row)) {
    label = axInputValue(element);
    if (!label.empty()) break;
  }
  for (std::size_t depth = paths.size(); depth-- > 1;) {
    if (isNameOf(label, paths[depth])) return depth;
  }
  return {};
}

// --- The location pop-up. ---

std::optional<Element> openMenuOf(const PanelChoice& choice, const Element& popup) {
  std::optional<Element> menu;
  const Condition look = [&] {
    return holds(choice, [&] {
      for (const Element& child : readList(popup)) {
        if (readText(child, "AXRole") == "AXMenu") menu = child;
      }
      return menu.has_value();
    });
  };
  if (look()) return menu;
  if (!mayActOn(choice, popup)) return {};
  performAction(axOffers(popup, "AXShowMenu") ? "AXShowMenu" : "AXPress", popup);
  pollUntil(withinDeadline(choice, menuOpensSeconds), walkPollSeconds, look);
  return menu;
}

// The folder shown and those around it, as the menu may lead to them.
Paths foldersAround(const std::optional<std::string>& shown) {
  return shown ? pathsTo(canonicalPath(*shown).value_or(*shown)) : Paths{};
}

// A folder of the way that the menu has.
struct MenuItem {
  Element element;
  std::size_t depth;
};

// The innermost of them, not deeper than `depth`. The items of the menu lead to the folder shown
// and those around it, innermost first, and then to other volumes.
std::optional<MenuItem> menuItemFor(const Element& menu, const Paths& around, const Paths& paths,
                                    std::size_t depth) {
  const Elements items = readList(menu);
  for (std::size_t wanted = depth + 1; wanted-- > 0;) {
    for (std::size_t i = 0; i < items.size(); ++i) {
      const std::string title = readText(items[i], "AXTitle").value_or("");
      if (!isNameOf(title, paths[wanted])) continue;
      const bool known = i < around.size();
      if (known && !sameFile(around[around.size() - 1 - i], paths[wanted])) continue;
      return MenuItem{items[i], wanted};
    }
  }
  return {};
}

std::optional<std::string> folderSeen(PanelChoice& choice) {
  const auto sight = glance(choice);
  return sight ? sight->folder : std::nullopt;
}

// Picks the innermost folder of the way; how deep it lies, once it is shown.
std::optional<std::size_t> showByMenu(PanelChoice& choice, const Paths& paths) {
  if (!choice.parts.locationPopup) return {};
  const Paths around = foldersAround(folderSeen(choice));
  const auto menu = openMenuOf(choice, *choice.parts.locationPopup);
  if (!menu) return {};
  const std::size_t deepest = paths.size() - (choice.target.isFolder ? 1 : 2);
  std::optional<MenuItem> item;
  holds(choice, [&] { return (item = menuItemFor(*menu, around, paths, deepest)).has_value(); });
  if (!item) {
    performAction("AXCancel", *menu);
    return {};
  }
  performAction(axOffers(item->element, "AXPick") ? "AXPick" : "AXPress", item->element);
  if (!showsWithin(choice, paths[item->depth], placeShownSeconds)) return {};
  return item->depth;
}

// From the folder shown the menu leads no nearer than where both ways part.
std::size_t commonDepth(const Paths& paths, const std::optional<std::string>& shown) {
  std::size_t common = 0;
  for (const std::string& folder : foldersAround(shown)) {
    common = std::max(common, depthOf(paths, folder).value_or(0));
  }
  return common;
}

// --- Places to begin from. ---

// How deep it lies on the way, and what shows it: a row of the sidebar, the menu, which tells only
// then how deep; what is shown already needs neither.
struct StartingPlace {
  std::size_t depth;
  std::optional<Element> row = {};
  bool byMenu = false;
};

using RowDepth = std::optional<std::size_t> (*)(const Element& row, const Paths& paths);

std::vector<StartingPlace> sidebarPlaces(const PanelChoice& choice, const Paths& paths,
                                         RowDepth depthOfRow) {
  std::vector<StartingPlace> places;
  for (const Element& row : placeRows(choice)) {
    std::optional<std::size_t> depth;
    holds(choice, [&] { return (depth = depthOfRow(row, paths)).has_value(); });
    // A file is no place.
    if (!depth || (*depth + 1 == paths.size() && !choice.target.isFolder)) continue;
    places.push_back({*depth, row});
  }
  return places;
}

std::vector<StartingPlace> labelledPlaces(PanelChoice& choice, const Paths& paths) {
  return sidebarPlaces(choice, paths, depthByLabel);
}

// The folder shown, the places of the sidebar that say where they lead, the menu.
std::vector<StartingPlace> surePlaces(PanelChoice& choice, const Paths& paths) {
  const auto shown = folderSeen(choice);
  auto places = sidebarPlaces(choice, paths, depthByLocation);
  const auto here = shown ? depthOf(paths, *shown) : std::nullopt;
  if (here && *here + 1 < paths.size()) places.insert(places.begin(), {*here});
  places.push_back({.depth = commonDepth(paths, shown), .byMenu = true});
  return places;
}

std::optional<std::size_t> showStart(PanelChoice& choice, const Paths& paths,
                                     const StartingPlace& place) {
  if (place.byMenu) return showByMenu(choice, paths);
  const std::string& folder = paths[place.depth];
  const bool shown =
      place.row ? showPlace(choice, *place.row, folder) : showsWithin(choice, folder, 0);
  return shown ? std::optional(place.depth) : std::nullopt;
}

// --- The way. ---

std::string notListed(const std::string& path) {
  return path + " is not listed in " + parentDirectory(path) +
         ": what is hidden is reached through the go-to sheet alone";
}

std::string walkFrom(PanelChoice& choice, const Paths& paths, const StartingPlace& place) {
  const auto depth = showStart(choice, paths, place);
  if (!depth) {
    return "nothing in the panel leads to " + (place.byMenu ? paths.back() : paths[place.depth]);
  }
  if (proofWithin(choice, 0)) return {};
  if (*depth + 1 == paths.size()) {
    return proofWithin(choice, placeShownSeconds) ? "" : paths.back() + " cannot be told";
  }
  for (std::size_t next = *depth + 1; next + 1 < paths.size(); ++next) {
    const auto entry = waitForEntry(choice, paths[next]);
    if (!entry) return notListed(paths[next]);
    if (!openEntry(choice, *entry, paths[next])) return paths[next] + " does not open";
  }
  return takeTargetEntry(choice);
}

// Only the last step failed, which no other place makes easier.
bool isBesideTarget(const PanelChoice& choice, const Paths& paths) {
  const auto& last = choice.lastSight;
  return paths.size() > 1 && last && last->folder &&
         sameFile(*last->folder, paths[paths.size() - 2]);
}

}  // namespace

std::string takeTargetEntry(PanelChoice& choice) {
  const std::string& path = choice.target.path;
  const auto entry = waitForEntry(choice, path);
  if (!entry) return notListed(path);
  if (selectEntry(choice, *entry, [&] { return proofWithin(choice, 0).has_value(); })) return {};
  if (!choice.target.isFolder || !choice.isFolderPanel) return path + " cannot be selected";
  const auto again = waitForEntry(choice, path);
  if (!again) return notListed(path);
  openEntry(choice, *again, path);
  return proofWithin(choice, entrySelectedSeconds) ? "" : path + " cannot be selected";
}

std::string walkToTarget(PanelChoice& choice) {
  const Paths paths = pathsTo(choice.target.path);
  std::string problem;  // from the nearest place
  for (const auto placesIn : {surePlaces, labelledPlaces}) {
    auto places = placesIn(choice, paths);
    std::ranges::stable_sort(
        places, [](const auto& left, const auto& right) { return left.depth > right.depth; });
    for (const StartingPlace& place : places) {
      const std::string result = walkFrom(choice, paths, place);
      if (result.empty()) return {};
      if (problem.empty()) problem = result;
      if (isBesideTarget(choice, paths)) return problem;
    }
  }
  return problem;
}

}  // namespace tessarine
