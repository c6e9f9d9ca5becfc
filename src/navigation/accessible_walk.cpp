#include "navigation/accessible_walk.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <functional>
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

// Performs what opens the entry, on each of its elements that offers it, until the folder is shown.
bool performOpening(PanelChoice& choice, const Element& entry, const std::string& folder) {
  for (const char* action : openingActions) {
    for (const Element& element : actingElements(entry)) {
      if (!mayActOn(choice, element) || !axOffers(element, action)) continue;
      if (!entryNames(choice, entry, folder)) return showsWithin(choice, folder, 0);
      performAction(action, element);
      if (showsWithin(choice, folder, folderOpensSeconds)) return true;
    }
  }
  return false;
}

bool openEntry(PanelChoice& choice, const Element& entry, const std::string& folder) {
  if (!mayOpen(choice, folder)) return false;
  if (performOpening(choice, entry, folder)) return true;
  // In columns a folder that is selected is shown.
  return choice.parts.view == ListingView::columns &&
         selectEntry(choice, entry, [&] { return showsWithin(choice, folder, 0); });
}

// --- The way. ---

std::string notListed(const std::string& path) {
  return path + " is not listed in " + parentDirectory(path) +
         ": what is hidden is reached through the go-to sheet alone";
}

// From paths[depth], which is shown.
std::string walkFrom(PanelChoice& choice, const Paths& paths, std::size_t depth) {
  for (std::size_t next = depth + 1; next + 1 < paths.size(); ++next) {
    const auto entry = waitForEntry(choice, paths[next]);
    if (!entry) return notListed(paths[next]);
    if (!openEntry(choice, *entry, paths[next])) return paths[next] + " does not open";
  }
  return takeTargetEntry(choice);
}

// A place from which to walk: how deep on the way to the target it lies, and how to get there.
struct StartingPlace {
  std::size_t depth;
  std::function<bool()> go;
};

std::string walkFromPlace(PanelChoice& choice, const Paths& paths, const StartingPlace& place) {
  if (!place.go()) return "nothing in the panel leads to " + paths[place.depth];
  if (proofWithin(choice, 0)) return {};
  if (place.depth + 1 == paths.size()) {
    return proofWithin(choice, placeShownSeconds) ? "" : paths.back() + " cannot be told";
  }
  return walkFrom(choice, paths, place.depth);
}

// Shows a place of the sidebar in every way that there is, until it is seen.
bool showPlace(PanelChoice& choice, const Element& row, const std::string& folder) {
  const Condition shown = [&] { return showsWithin(choice, folder, placeShownSeconds); };
  if (!mayActOn(choice, row)) return false;
  setTrue(row, "AXSelected");
  if (shown()) return true;
  if (choice.parts.sidebar) setElements(*choice.parts.sidebar, "AXSelectedRows", {row});
  if (shown()) return true;
  for (const char* action : openingActions) {
    for (const Element& element : actingElements(row)) {
      if (!mayActOn(choice, element) || !axOffers(element, action)) continue;
      performAction(action, element);
      if (shown()) return true;
    }
  }
  return false;
}

// The rows of the sidebar, and the text that names each.
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

std::string placeLabel(const Element& row) {
  for (const Element& element : actingElements(row)) {
    std::string text = axInputValue(element);
    if (!text.empty()) return text;
  }
  return {};
}

// How deep a row of the sidebar leads by its location or, without one, by its label.
std::optional<std::size_t> placeDepth(const PanelChoice& choice, const Element& row,
                                      const Paths& paths, bool byLabel) {
  std::optional<std::size_t> depth;
  holds(choice, [&] {
    const auto location = entryLocation(row);
    if (location && !byLabel) depth = depthOf(paths, *location);
    if (location || !byLabel) return true;
    const std::string label = placeLabel(row);
    for (std::size_t i = paths.size(); i-- > 1 && !depth;) {
      if (isNameOf(label, paths[i])) depth = i;
    }
    return true;
  });
  // A file is no place.
  if (depth && *depth + 1 == paths.size() && !choice.target.isFolder) return {};
  return depth;
}

void addSidebarPlaces(PanelChoice& choice, const Paths& paths, bool byLabel,
                      std::vector<StartingPlace>& places) {
  for (const Element& row : placeRows(choice)) {
    const auto depth = placeDepth(choice, row, paths, byLabel);
    if (!depth) continue;
    places.push_back(
        {*depth, [&choice, row, path = paths[*depth]] { return showPlace(choice, row, path); }});
  }
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

// The items of the menu lead to the folder shown and those around it, innermost first, and then to
// other volumes.
std::optional<Element> menuItemFor(const Element& menu, const std::optional<std::string>& shown,
                                   const Paths& paths, std::size_t& depth) {
  const Elements items = readList(menu);
  const Paths around = shown ? pathsTo(canonicalPath(*shown).value_or(*shown)) : Paths{};
  for (std::size_t wanted = depth + 1; wanted-- > 0;) {
    for (std::size_t i = 0; i < items.size(); ++i) {
      const std::string title = readText(items[i], "AXTitle").value_or("");
      if (!isNameOf(title, paths[wanted])) continue;
      const bool known = i < around.size();
      if (known && !sameFile(around[around.size() - 1 - i], paths[wanted])) continue;
      depth = wanted;
      return items[i];
    }
  }
  return {};
}

// Picks the innermost folder of the way, not deeper than `depth`, which then says how deep it lies.
bool showByMenu(PanelChoice& choice, const Paths& paths, std::size_t& depth) {
  if (!choice.parts.locationPopup) return false;
  const auto sight = glance(choice);
  const auto menu = openMenuOf(choice, *choice.parts.locationPopup);
  if (!menu) return false;
  std::optional<Element> item;
  holds(choice, [&] {
    const auto shown = sight ? sight->folder : std::nullopt;
    return (item = menuItemFor(*menu, shown, paths, depth)).has_value();
  });
  if (!item) {
    performAction("AXCancel", *menu);
    return false;
  }
  performAction(axOffers(*item, "AXPick") ? "AXPick" : "AXPress", *item);
  return showsWithin(choice, paths[depth], placeShownSeconds);
}

// From the folder shown the menu leads no nearer than where both ways part.
std::size_t commonDepth(const Paths& paths, const std::optional<std::string>& shown) {
  if (!shown) return 0;
  std::size_t common = 0;
  for (const std::string& folder : pathsTo(canonicalPath(*shown).value_or(*shown))) {
    common = std::max(common, depthOf(paths, folder).value_or(0));
  }
  return common;
}

std::string walkFromMenu(PanelChoice& choice, const Paths& paths) {
  std::size_t depth = paths.size() - (choice.target.isFolder ? 1 : 2);
  if (!showByMenu(choice, paths, depth)) return "nothing in the panel leads to " + paths.back();
  return walkFromPlace(choice, paths, {depth, [] { return true; }});
}

// --- All places. ---

void sortNearestFirst(std::vector<StartingPlace>& places) {
  std::stable_sort(places.begin(), places.end(),
                   [](const auto& left, const auto& right) { return left.depth > right.depth; });
}

// The folder shown, and the places of the sidebar that say where they lead.
std::vector<StartingPlace> startingPlaces(PanelChoice& choice, const Paths& paths) {
  std::vector<StartingPlace> places;
  const auto sight = glance(choice);
  const auto shown = sight ? sight->folder : std::nullopt;
  const auto here = shown ? depthOf(paths, *shown) : std::nullopt;
  if (here && *here + 1 < paths.size()) {
    places.push_back(
        {*here, [&choice, &folder = paths[*here]] { return showsWithin(choice, folder, 0); }});
  }
  addSidebarPlaces(choice, paths, false, places);
  return places;
}

// The attempts so far, of which the first one's problem is told.
struct WalkAttempts {
  const PanelChoice& choice;
  const Paths& paths;
  std::string problem;

  // Whether no other place is tried: the target is proven, or only the last step failed, which no
  // other place makes easier.
  bool end(const std::string& result) {
    if (problem.empty()) problem = result;
    if (result.empty()) problem.clear();
    const auto& last = choice.lastSight;
    const bool lastStep = paths.size() > 1 && last && last->folder &&
                          sameFile(*last->folder, paths[paths.size() - 2]);
    return result.empty() || lastStep;
  }
};

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
  const auto sight = glance(choice);
  const std::size_t byMenu = commonDepth(paths, sight ? sight->folder : std::nullopt);
  WalkAttempts attempts{choice, paths, {}};
  auto places = startingPlaces(choice, paths);
  sortNearestFirst(places);
  bool menuTried = false;
  for (const StartingPlace& place : places) {
    if (!menuTried && place.depth < byMenu) {
      menuTried = true;
      if (attempts.end(walkFromMenu(choice, paths))) return attempts.problem;
    }
    if (attempts.end(walkFromPlace(choice, paths, place))) return attempts.problem;
  }
  if (!menuTried && attempts.end(walkFromMenu(choice, paths))) return attempts.problem;
  std::vector<StartingPlace> labelled;
  addSidebarPlaces(choice, paths, true, labelled);
  sortNearestFirst(labelled);
  for (const StartingPlace& place : labelled) {
    if (attempts.end(walkFromPlace(choice, paths, place))) return attempts.problem;
  }
  return attempts.problem;
}

}  // namespace tessarine
