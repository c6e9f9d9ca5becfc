#include "dialog/detection.h"

#include <algorithm>
#include <array>
#include <string>
#include <string_view>

#include "core/tables.h"
#include "core/text.h"
#include "core/tool_error.h"
#include "dialog/controls.h"
#include "dialog/traversal.h"
#include "panels/candidates.h"
#include "platform/accessibility.h"
#include "platform/clock.h"
#include "platform/events.h"
#include "platform/wait.h"

namespace tessarine {
namespace {

constexpr std::array<std::string_view, 3> dialogRoles{"AXWindow", "AXSheet", "AXDialog"};
constexpr std::array<std::string_view, 6> containerRoles{
    "AXGroup", "AXSheet", "AXWindow", "AXSplitGroup", "AXSplitterGroup", "AXScrollArea"};
constexpr int mostClimbedElements = 24;

template <class Names>
bool isAmong(const Names& names, std::string_view name) {
  return std::find(names.begin(), names.end(), name) != names.end();
}

// The signs of a chooser among the nodes of one walk.
struct ChooserSigns {
  bool cancel = false;
  bool choose = false;
  bool location = false;
  bool list = false;
  bool extensionTitle = false;
  bool nameField = false;

  bool makeASignature() const {
    return cancel && choose && (nameField || location || list || extensionTitle);
  }
};

void noteSigns(const Element& element, ChooserSigns& signs) {
  const std::string role = axRole(element);
  if (role == "AXButton") {
    const std::string title = axTitle(element);
    signs.cancel = signs.cancel || tables().cancelButtonTitles.contains(title);
    signs.choose = signs.choose || tables().chooseButtonTitles.contains(title);
  } else if (role == "AXPopUpButton") {
    signs.location = signs.location || isMarkedLocationPopup(element);
  } else if (role == "AXOutline") {
    signs.list = signs.list || contains(axDescription(element), listViewMarker);
  } else if (role == "AXTextField") {
    signs.nameField = signs.nameField || isWideConfirmableField(element);
  }
  signs.extensionTitle =
      signs.extensionTitle || contains(axInputValue(element), extensionFolderMarker);
}

// The first location pop-up below a window that carries the location marker.
std::optional<NodeRef> markedPopupIn(const Element& window) {
  for (const NodeRef& node : breadthFirstNodes(window, 8, 700)) {
    if (axRole(node.element) == "AXPopUpButton" && isMarkedLocationPopup(node.element)) return node;
  }
  return {};
}

// The first container above the pop-up with the chooser signature; when none has it, the highest
// container that was examined.
std::optional<NodeRef> chooserContainerAround(const NodeRef& popup) {
  std::optional<NodeRef> highest;
  std::optional<Element> current = popup.element;
  for (int i = 0; i < mostClimbedElements && current; ++i) {
    const std::optional<Element> parent = axParent(*current);
    if (isAmong(containerRoles, axRole(*current))) {
      highest = NodeRef{*current, parent};
      if (subtreeHasChooserSignature(*current)) return highest;
    }
    current = parent;
  }
  return highest;
}

// The dialogs of one candidate application.
std::vector<DialogRef> dialogsOf(const AppRef& candidate, bool includeEmbedded) {
  auto nodes = dialogNodes(candidate.app);
  if (nodes.empty() && includeEmbedded && candidate.label == primaryBrowserLabel) {
    if (const auto root = findEmbeddedChooserRoot(candidate.app)) nodes.push_back(*root);
  }
  std::vector<DialogRef> dialogs;
  for (const NodeRef& node : nodes) {
    dialogs.push_back({node, candidate.app, candidate.pid, candidate.label});
  }
  return dialogs;
}

// The browser's first dialog, or else the last of all.
std::optional<DialogRef> preferredDialog(const std::vector<DialogRef>& dialogs) {
  if (dialogs.empty()) return {};
  const auto browsers = std::find_if(dialogs.begin(), dialogs.end(), [](const DialogRef& dialog) {
    return dialog.label == primaryBrowserLabel;
  });
  return browsers != dialogs.end() ? *browsers : dialogs.back();
}

// --- The strict wait: one budget for all its steps. ---

constexpr double shortestStrictSeconds = 0.5;
constexpr double longestStrictSeconds = 4.0;
constexpr double firstTrySeconds = 0.55;
constexpr double beforePrimingSeconds = 0.75;
constexpr double firstPrimedLookSeconds = 1.15;
constexpr double laterPrimedLookSeconds = 0.85;
constexpr double leastPrimingSeconds = 0.15;
constexpr double leastFinalSeconds = 0.1;

struct StrictSearch {
  std::int32_t primaryPid;
  std::vector<std::int32_t> pids;
  double startTime;
  double budgetSeconds;
};

double remainingSeconds(const StrictSearch& search) {
  return std::max(0.0, search.budgetSeconds - (currentTime() - search.startTime));
}

std::optional<DialogRef> firstTry(const StrictSearch& search) {
  try {
    const double seconds = std::min(remainingSeconds(search), firstTrySeconds);
    return waitForOpenDialog(search.primaryPid, seconds, true, search.pids);
  } catch (const ToolError&) {
    return {};
  }
}

std::optional<DialogRef> lookFor(const StrictSearch& search, double seconds) {
  std::optional<DialogRef> dialog;
  pollUntil(seconds, defaultPollSeconds, [&] {
    dialog = preferredDialog(openDialogs(search.primaryPid, true, search.pids));
    return dialog.has_value();
  });
  return dialog;
}

// Sends Command-Shift-G to each process in turn and looks for a dialog after each.
std::optional<DialogRef> primeProcesses(const StrictSearch& search) {
  double lookSeconds = firstPrimedLookSeconds;
  for (const std::int32_t pid : search.pids) {
    if (!(remainingSeconds(search) > leastPrimingSeconds)) return {};
    tapKey(pid, keyCodeG, commandShiftFlags, {}, 0.15);
    const double seconds = std::min(lookSeconds, remainingSeconds(search));
    if (seconds == 0) return {};
    if (auto dialog = lookFor(search, seconds)) return dialog;
    lookSeconds = laterPrimedLookSeconds;
  }
  return {};
}

}  // namespace

bool isOpenDialogRoot(const Element& element) {
  const TitleSet& titles = tables().openDialogTitles;
  return isAmong(dialogRoles, axRole(element)) &&
         (titles.contains(axTitle(element)) || titles.contains(axDescription(element)));
}

std::optional<NodeRef> fastDialogNodes(const Element& app) {
  const auto windows = focusedAndMainWindows(app);
  for (const Element& window : windows) {
    if (isOpenDialogRoot(window)) return NodeRef{window, {}};
  }
  for (const Element& window : windows) {
    for (const NodeRef& node : breadthFirstNodes(window, 4, 300)) {
      if (isOpenDialogRoot(node.element)) return node;
    }
  }
  return {};
}

std::vector<NodeRef> dialogNodes(const Element& app) {
  if (const auto node = fastDialogNodes(app)) return {*node};
  std::vector<NodeRef> nodes;
  for (const Element& window : topLevelWindows(app)) {
    if (isOpenDialogRoot(window)) nodes.push_back({window, {}});
  }
  return nodes;
}

std::optional<NodeRef> findEmbeddedChooserRoot(const Element& app) {
  const auto windows = topLevelWindows(app);
  for (auto window = windows.rbegin(); window != windows.rend(); ++window) {
    if (subtreeHasChooserSignature(*window)) return NodeRef{*window, {}};
    const auto popup = markedPopupIn(*window);
    if (!popup) continue;
    if (const auto container = chooserContainerAround(*popup)) return container;
  }
  return {};
}

bool subtreeHasChooserSignature(const Element& element) {
  ChooserSigns signs;
  for (const NodeRef& node : breadthFirstNodes(element, 8, 360)) noteSigns(node.element, signs);
  return signs.makeASignature();
}

std::vector<DialogRef> openDialogs(std::int32_t primaryPid, bool includeEmbedded,
                                   const std::vector<std::int32_t>& additionalPIDs) {
  std::vector<DialogRef> dialogs;
  for (const AppRef& candidate : candidateApps(primaryPid, additionalPIDs)) {
    const auto found = dialogsOf(candidate, includeEmbedded);
    dialogs.insert(dialogs.end(), found.begin(), found.end());
  }
  return dialogs;
}

DialogRef waitForOpenDialog(std::int32_t primaryPid, double timeoutSeconds, bool includeEmbedded,
                            const std::vector<std::int32_t>& additionalPIDs) {
  std::optional<DialogRef> dialog;
  waitUntil(timeoutSeconds, [&] {
    dialog = preferredDialog(openDialogs(primaryPid, includeEmbedded, additionalPIDs));
    return dialog.has_value();
  });
  if (!dialog) throw ToolError::notFound("open dialog not found");
  return *dialog;
}

DialogRef waitForStrictOpenDialog(std::int32_t primaryPid,
                                  const std::vector<std::int32_t>& eventPIDs,
                                  double timeoutSeconds) {
  std::vector<std::int32_t> pids{primaryPid};
  pids.insert(pids.end(), eventPIDs.begin(), eventPIDs.end());
  const double budgetSeconds = timeoutSeconds > shortestStrictSeconds
                                   ? std::min(timeoutSeconds, longestStrictSeconds)
                                   : shortestStrictSeconds;
  const StrictSearch search{primaryPid, uniquePIDs(pids), currentTime(), budgetSeconds};

  if (auto dialog = firstTry(search)) return *dialog;
  sleepSeconds(std::min(remainingSeconds(search), beforePrimingSeconds));
  if (auto dialog = primeProcesses(search)) return *dialog;
  if (remainingSeconds(search) <= leastFinalSeconds) {
    throw ToolError::notFound("open dialog not found after process-directed AX priming");
  }
  return waitForOpenDialog(primaryPid, remainingSeconds(search), true, search.pids);
}

bool dialogIsOpen(std::int32_t primaryPid) {
  return !openDialogs(primaryPid, true, {}).empty();
}

bool chooserIsGone(const Element& app) {
  return !findEmbeddedChooserRoot(app) && dialogNodes(app).empty();
}

}  // namespace tessarine
