#include "navigation/row_opening.h"

#include <array>
#include <optional>
#include <vector>

#include "core/lists.h"
#include "core/tables.h"
#include "core/tool_error.h"
#include "dialog/file_list.h"
#include "dialog/traversal.h"
#include "platform/accessibility.h"
#include "platform/clock.h"
#include "platform/events.h"

namespace tessarine {
namespace {

constexpr std::array<const char*, 5> openActions{"AXOpen", "AXShowDefaultUI", "AXShowAlternateUI",
                                                 "AXConfirm", "AXPress"};
constexpr double cellOpenSeconds = 0.12;
constexpr double showInterfaceSeconds = 0.08;
constexpr double openActionSeconds = 0.06;
constexpr double beforeOpenKeysSeconds = 0.12;
constexpr double openKeySeconds = 0.08;

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
    if (!isAmong(offered, action)) continue;
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
  pressReturn(pid, openKeySeconds);
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

}  // namespace tessarine
