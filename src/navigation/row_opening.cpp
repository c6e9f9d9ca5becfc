#include "navigation/row_opening.h"

#include <algorithm>
#include <array>
#include <optional>
#include <vector>

#include "core/tables.h"
#include "core/tool_error.h"
#include "dialog/controls.h"
#include "dialog/file_list.h"
#include "dialog/traversal.h"
#include "platform/accessibility.h"
#include "platform/clock.h"
#include "platform/events.h"
#include "platform/files.h"
#include "platform/wait.h"

namespace tessarine {
namespace {

constexpr std::array<const char*, 5> openActions{"AXOpen", "AXShowDefaultUI", "AXShowAlternateUI",
                                                 "AXConfirm", "AXPress"};
constexpr double cellOpenSeconds = 0.12;
constexpr double showInterfaceSeconds = 0.08;
constexpr double openActionSeconds = 0.06;
constexpr double beforeOpenKeysSeconds = 0.12;
constexpr double openKeySeconds = 0.08;
constexpr double confirmSeconds = 0.1;
constexpr double longestStabilizeSeconds = 2.0;
constexpr double stabilizePollSeconds = 0.1;
constexpr double stabilizedSeconds = 0.15;

// The parts of an entry, found on one way up from the node: of each kind the first.
struct Entry {
  std::vector<NodeRef> chain;
  Element label;  // the node itself when it is in none
  std::optional<Element> row = {};
  std::optional<Element> cell = {};
  bool inSidebar = false;
  bool inListView = false;
};

Entry entryAround(const NodeRef& node) {
  std::optional<Element> label;
  Entry entry{{}, node.element};
  entry.chain = climb(node, {"AXRole", "AXDescription"}, [&](const ElementValues& values) {
    const std::string role = values.role();
    const bool isLabel = role == "AXTextField" || role == "AXStaticText";
    if (!label && isLabel) label = values.element();
    if (!entry.row && role == "AXRow") entry.row = values.element();
    if (!entry.cell && role == "AXCell") entry.cell = values.element();
    entry.inSidebar = entry.inSidebar || isOutlineMarked(values, sidebarMarker);
    entry.inListView = entry.inListView || isOutlineMarked(values, listViewMarker);
    return false;
  });
  if (label) entry.label = *label;
  return entry;
}

// Performs the action if the element offers it, whatever comes of it, and then sleeps.
void performIfOffered(const std::string& action, const Element& element, double pauseSeconds) {
  if (!axOffers(element, action)) return;
  tryAction(action, element);
  sleepSeconds(pauseSeconds);
}

void openSidebarEntry(std::int32_t pid, const Entry& entry, bool allowProcessEvents) {
  if (entry.cell) performIfOffered("AXOpen", *entry.cell, cellOpenSeconds);
  if (entry.row) {
    performIfOffered("AXShowDefaultUI", *entry.row, showInterfaceSeconds);
    performIfOffered("AXShowAlternateUI", *entry.row, showInterfaceSeconds);
  }
  if (!allowProcessEvents) return;
  const Rect frame = axFrame(entry.label);
  if (frame.hasArea()) postMouseClick(pid, frame.center(), 1, false);
}

// Performs every open action that the element offers; whether any succeeded.
bool tryOpenActions(const Element& element) {
  const auto offered = axActions(element);
  bool succeeded = false;
  for (const char* action : openActions) {
    if (std::find(offered.begin(), offered.end(), action) == offered.end()) continue;
    succeeded = tryAction(action, element) || succeeded;
    sleepSeconds(openActionSeconds);
  }
  return succeeded;
}

bool tryOpenActions(const Entry& entry) {
  bool succeeded = tryOpenActions(entry.label);
  if (entry.row) succeeded = tryOpenActions(*entry.row) || succeeded;
  if (entry.cell) succeeded = tryOpenActions(*entry.cell) || succeeded;
  return succeeded;
}

void openListViewEntryByEvents(std::int32_t pid, const Entry& entry) {
  const Rect frame = axFrame(entry.label);
  if (frame.hasArea()) doubleClickPoint(pid, frame.center());
  sleepSeconds(beforeOpenKeysSeconds);
  tapKey(pid, keyCodeArrowRight, noModifiers, {}, openKeySeconds);
  tapKey(pid, keyCodeArrowDown, commandFlag, {}, openKeySeconds);
  tapKey(pid, keyCodeReturn, noModifiers, {}, openKeySeconds);
}

}  // namespace

void openRow(std::int32_t pid, const NodeRef& node, bool allowProcessEvents) {
  const Entry entry = entryAround(node);
  if (entry.inSidebar) return openSidebarEntry(pid, entry, allowProcessEvents);
  const bool opened = tryOpenActions(entry);
  if (entry.inListView) selectContainingRow(entry.chain);
  if (!allowProcessEvents) {
    if (opened) return;
    throw ToolError::actionFailed(
        std::string(entry.inListView ? "folder row" : "dialog item") +
        " exposes no successful AX navigation action in strict background mode");
  }
  if (entry.inListView) {
    openListViewEntryByEvents(pid, entry);
  } else {
    doubleClickElement(pid, entry.label);
  }
}

void waitForPopupValue(const Element& dialog, const std::string& expectedValue,
                       double timeoutSeconds) {
  waitUntil(timeoutSeconds, [&] { return shownLocation(dialog) == expectedValue; });
}

void setSearchQuery(const Element& dialog, const std::string& query) {
  const auto field = findSearchField(dialog);
  if (!field) throw ToolError::notFound("search field not found in open dialog");
  const int code = setText(*field, "AXValue", query);
  if (code != 0) {
    throw ToolError::actionFailed("failed to write search field: " + std::to_string(code));
  }
}

void stabilizeFolderSelection(const Element& dialog, std::int32_t pid,
                              const std::string& targetPath, double timeoutSeconds) {
  const std::string path = standardizedPath(targetPath);
  const std::string basename = lastPathComponent(path);
  if (const auto field = findChooserNameField(dialog, basename)) {
    tryAction("AXConfirm", *field);
    sleepSeconds(confirmSeconds);
  }
  const NodeRef row =
      waitForValue(std::min(timeoutSeconds, longestStabilizeSeconds), stabilizePollSeconds,
                   [&] { return findFolderRow(dialog, path, basename); });
  openRow(pid, row, true);
  sleepSeconds(stabilizedSeconds);
}

}  // namespace tessarine
