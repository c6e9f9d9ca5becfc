#include "navigation/hierarchy.h"

#include <algorithm>
#include <vector>

#include "core/lists.h"
#include "core/tool_error.h"
#include "dialog/controls.h"
#include "dialog/file_list.h"
#include "dialog/traversal.h"
#include "navigation/path_analysis.h"
#include "navigation/row_opening.h"
#include "navigation/verification.h"
#include "platform/accessibility.h"
#include "platform/clock.h"
#include "platform/files.h"
#include "platform/wait.h"

namespace tessarine {
namespace {

constexpr double longestRowSeconds = 2.5;
constexpr double longestOpenSeconds = 2.0;
constexpr double longestSelectSeconds = 1.5;
constexpr double pollSeconds = 0.1;
constexpr double menuPollSeconds = 0.15;
constexpr double volumeShownSeconds = 0.15;
constexpr double folderShownSeconds = 0.2;

// One walk: the chooser, and what each step needs.
struct Walk {
  Element dialog;
  std::int32_t pid;
  double timeoutSeconds;
  bool allowProcessEvents;
};

// Where a walk begins, and the components to open from there.
struct Start {
  std::string folder;
  std::vector<std::string> components;
};

// The proper ancestors of a standardized path below "/", innermost first, each under the name that
// the file browser displays for it.
std::vector<Place> properAncestors(const std::string& path) {
  const auto components = pathComponents(path);
  std::vector<Place> ancestors;
  std::string ancestor = "/";
  for (std::size_t i = 1; i + 1 < components.size(); ++i) {
    ancestor = standardizedPath(appendingComponent(ancestor, components[i]));
    ancestors.push_back({ancestor, displayName(ancestor)});
  }
  std::reverse(ancestors.begin(), ancestors.end());
  return ancestors;
}

void performPick(const Element& item) {
  const auto actions = axActions(item);
  for (const char* action : {"AXPick", "AXPress"}) {
    if (isAmong(actions, action)) return perform(action, item);
  }
  throw ToolError::actionFailed("menu item does not support AXPick/AXPress");
}

Start startOf(const Walk& walk, const std::string& target) {
  const auto anchor = anchorPathFromSidebar(walk.dialog, walk.pid, target, walk.timeoutSeconds,
                                            walk.allowProcessEvents);
  if (anchor) return {*anchor, relativeComponents(*anchor, target)};
  const auto volume = volumeRootAndComponents(target);
  navigateToVolume(walk.dialog, displayName(volume.volumeRoot), walk.timeoutSeconds);
  sleepSeconds(volumeShownSeconds);
  return {standardizedPath(volume.volumeRoot), volume.components};
}

NodeRef waitForRow(const Walk& walk, const std::string& childPath, const std::string& component) {
  return waitForValue(std::min(walk.timeoutSeconds, longestRowSeconds), pollSeconds,
                      [&] { return findFolderRow(walk.dialog, childPath, component); });
}

void openFolder(const Walk& walk, const NodeRef& row, const std::string& childPath) {
  const std::string fingerprint = fileListFingerprint(walk.dialog);
  openRow(walk.pid, row, walk.allowProcessEvents);
  waitUntil(std::min(walk.timeoutSeconds, longestOpenSeconds), pollSeconds, [&] {
    return chooserCurrentFolderMatches(walk.dialog, childPath) ||
           fileListFingerprint(walk.dialog) != fingerprint;
  });
  sleepSeconds(folderShownSeconds);
}

void selectFolder(const Walk& walk, const NodeRef& row, const std::string& childPath) {
  selectContainingRow(ancestorChain(row));
  waitUntil(std::min(walk.timeoutSeconds, longestSelectSeconds), pollSeconds,
            [&] { return chooserReached(walk.dialog, childPath); });
}

}  // namespace

void navigateByHierarchy(const Element& dialog, std::int32_t pid, const std::string& targetPath,
                         double timeoutSeconds, bool allowProcessEvents) {
  const Walk walk{dialog, pid, timeoutSeconds, allowProcessEvents};
  const std::string target = standardizedPath(targetPath);
  auto [folder, components] = startOf(walk, target);
  for (const std::string& component : components) {
    folder = standardizedPath(appendingComponent(folder, component));
    const NodeRef row = waitForRow(walk, folder, component);
    if (&component == &components.back()) {
      selectFolder(walk, row, folder);
    } else {
      openFolder(walk, row, folder);
    }
  }
  waitUntil(std::min(timeoutSeconds, longestOpenSeconds), pollSeconds,
            [&] { return chooserReached(dialog, target); });
}

std::optional<std::string> anchorPathFromSidebar(const Element& dialog, std::int32_t pid,
                                                 const std::string& targetPath,
                                                 double timeoutSeconds, bool allowProcessEvents) {
  const auto ancestors = properAncestors(standardizedPath(targetPath));
  const auto place = findSidebarPlace(dialog, ancestors);
  if (!place) return {};
  const std::string fingerprint = fileListFingerprint(dialog);
  openRow(pid, place->item, allowProcessEvents);
  pollUntil(std::min(timeoutSeconds, longestSelectSeconds), pollSeconds,
            [&] { return fileListFingerprint(dialog) != fingerprint; });
  return ancestors[place->number].path;
}

void navigateToVolume(const Element& dialog, const std::string& volumeDisplayName,
                      double timeoutSeconds) {
  const auto popup = findLocationPopup(dialog);
  if (!popup) throw ToolError::notFound("location popup not found in open dialog");
  if (popupValue(popup->element) == volumeDisplayName) return;
  perform("AXShowMenu", popup->element);
  const NodeRef item = waitForValue(timeoutSeconds, menuPollSeconds,
                                    [&] { return findMenuItem(dialog, volumeDisplayName); });
  performPick(item.element);
  waitForPopupValue(dialog, volumeDisplayName, timeoutSeconds);
}

void waitForPopupValue(const Element& dialog, const std::string& expectedValue,
                       double timeoutSeconds) {
  waitUntil(timeoutSeconds, [&] { return shownLocation(dialog) == expectedValue; });
}

}  // namespace tessarine
