#include "navigation/go_to_sheet.h"

#include <algorithm>
#include <vector>

#include "core/tables.h"
#include "dialog/traversal.h"
#include "navigation/go_to_folder.h"
#include "platform/accessibility.h"
#include "platform/clock.h"
#include "platform/events.h"
#include "platform/wait.h"

namespace tessarine {
namespace {

constexpr const char* sheetIdentifier = "GoToWindow";
// Measured: 0.13 s; under load about six times as much.
constexpr double sheetOpensSeconds = 1.3;
// Measured: about 0.2 s after the sheet.
constexpr double sheetFieldSeconds = 2.0;
constexpr double fieldFocusSeconds = 0.3;
constexpr double fieldTakesSeconds = 0.5;
// Measured: 0.38 s at most.
constexpr double sheetGoesSeconds = 3.0;
constexpr double sheetClosesSeconds = 1.5;
constexpr double sheetPollSeconds = 0.05;
constexpr double sheetKeySeconds = 0.05;
constexpr int mostSheetAncestors = 8;
constexpr WalkLimits sheetLimits{2, 40};

using Elements = std::vector<Element>;

// A sheet that asks for the name of a new folder has a text field, too.
bool isPathField(const Element& element, const std::string& role) {
  if (role == "AXComboBox") return true;
  if (role != "AXTextField" || readText(element, "AXSubrole") == "AXSearchField") return false;
  const std::string text = readText(element, "AXValue").value_or("");
  return text.empty() || text.starts_with('/') || text.starts_with('~');
}

// The field of a sheet, three levels down at most, not in its table of suggestions.
std::optional<Element> pathFieldOf(const Element& sheet) {
  std::optional<Element> field;
  walkAnswered(readList(sheet), sheetLimits, [&](const Element& element, const std::string& role) {
    if (isPathField(element, role)) field = element;
    if (field) return Step::end;
    return role == "AXGroup" || role == "AXSplitGroup" ? Step::into : Step::past;
  });
  return field;
}

// A sheet that is no panel.
bool isSubordinateSheet(const Element& element) {
  return readText(element, "AXRole") == "AXSheet" &&
         readText(element, "AXIdentifier") != panelIdentifier;
}

bool isGoToSheet(const Element& element) {
  return isSubordinateSheet(element) &&
         (readText(element, "AXIdentifier") == sheetIdentifier || pathFieldOf(element).has_value());
}

// What a sheet of the panel may hang from: the root, and around a chooser that is neither a window
// nor a sheet everything up to its window.
Elements carriersOf(const Element& root) {
  Elements carriers{root};
  for (int i = 0; i < mostSheetAncestors; ++i) {
    const std::string role = readText(carriers.back(), "AXRole").value_or("");
    if (role == "AXWindow" || role == "AXSheet" || role == "AXDialog") break;
    const auto parent = readElement(carriers.back(), "AXParent");
    if (!parent) break;
    carriers.push_back(*parent);
  }
  return carriers;
}

// The first sheet of the panel that is such a one.
std::optional<Element> sheetOf(const Element& root, bool (*isSuch)(const Element&)) {
  for (const Element& carrier : carriersOf(root)) {
    for (const Element& child : readList(carrier)) {
      if (isSuch(child)) return child;
    }
  }
  return {};
}

bool sheetIsOpen(const PanelChoice& choice) {
  return holds(choice, [&] { return goToSheetOf(choice.panel.element).has_value(); });
}

// Whether a key may go to the process now.
bool mayPostKeyTo(const PanelChoice& choice, std::int32_t pid) {
  return holds(choice, choice.isAlone) && answersNow(Element::application(pid)) &&
         mayActOn(choice, choice.panel.element);
}

// What is opened must be closed in time: Return and Escape are made sure of like the chord.
void requireTimeForKeys(const PanelChoice& choice, double seconds) {
  const double needed = sheetOpensSeconds + 2 * seconds;
  if (withinDeadline(choice, needed) < needed) throw TimeIsUp();
}

// The process whose chord opened the sheet.
std::optional<std::int32_t> openSheet(PanelChoice& choice) {
  for (const std::int32_t pid : choice.keyPids) {
    const double start = currentTime();
    if (!mayPostKeyTo(choice, pid)) continue;
    requireTimeForKeys(choice, currentTime() - start);
    openGoToFolderSheet(pid);
    choice.sheetTakers.push_back(pid);
    const bool opened = pollUntil(withinDeadline(choice, sheetOpensSeconds), sheetPollSeconds,
                                  [&] { return sheetIsOpen(choice); });
    if (opened) return pid;
  }
  return {};
}

// The sheet and its field, once both are there.
struct OpenSheet {
  Element sheet;
  Element field;
};

std::optional<OpenSheet> waitForSheetField(const PanelChoice& choice) {
  std::optional<OpenSheet> open;
  pollUntil(withinDeadline(choice, sheetFieldSeconds), sheetPollSeconds, [&] {
    return holds(choice, [&] {
      const auto sheet = goToSheetOf(choice.panel.element);
      const auto field = sheet ? pathFieldOf(*sheet) : std::nullopt;
      if (field) open = OpenSheet{*sheet, *field};
      return open.has_value();
    });
  });
  return open;
}

bool fieldHolds(const PanelChoice& choice, const Element& field, const std::string& path) {
  return holds(choice, [&] { return readText(field, "AXValue") == path; });
}

// Keys that arrive before the field has the keyboard are lost.
void focusField(const PanelChoice& choice, const Element& field) {
  setTrue(field, "AXFocused");
  pollUntil(withinDeadline(choice, fieldFocusSeconds), sheetPollSeconds, [&] {
    return holds(choice, [&] { return readFlag(field, "AXFocused").value_or(true); });
  });
}

bool writePath(const PanelChoice& choice, const Element& field, const std::string& path) {
  focusField(choice, field);
  for (int attempt = 0; attempt < 2; ++attempt) {
    setText(field, "AXValue", path);
    const bool taken = pollUntil(withinDeadline(choice, fieldTakesSeconds), sheetPollSeconds,
                                 [&] { return fieldHolds(choice, field, path); });
    if (taken) return true;
  }
  return false;
}

bool sheetGoesWithin(const PanelChoice& choice, const Element& sheet, double seconds) {
  const bool went = pollUntil(withinDeadline(choice, seconds), sheetPollSeconds,
                              [&] { return isGone(sheet) && !sheetIsOpen(choice); });
  if (went && isGone(choice.panel.element)) throw PanelGone();
  return went;
}

// Whether a key that would do harm in another panel may go to the process that took the chord.
bool mayPostKeyInto(const PanelChoice& choice, const Element& sheet, std::int32_t pid) {
  std::optional<Rect> frame;
  holds(choice, [&] { return (frame = readFrame(sheet)).has_value(); });
  return choice.hasNoNewWindow(frame) && mayPostKeyTo(choice, pid) && !isGone(sheet);
}

// On old systems the field's own action confirms; on others it does nothing.
bool confirmByField(PanelChoice& choice, const OpenSheet& open) {
  choice.returnUnderWay = true;
  performAction("AXConfirm", open.field);
  return sheetGoesWithin(choice, open.sheet, sheetClosesSeconds);
}

bool confirmByReturn(PanelChoice& choice, const OpenSheet& open, std::int32_t taker) {
  choice.returnUnderWay = true;
  pressReturn(taker, sheetKeySeconds);
  return sheetGoesWithin(choice, open.sheet, sheetGoesSeconds);
}

bool confirmSheet(PanelChoice& choice, const OpenSheet& open, const std::string& path,
                  std::int32_t taker) {
  const auto holdsPath = [&] { return fieldHolds(choice, open.field, path); };
  const bool went = (mayPostKeyInto(choice, open.sheet, taker) && holdsPath() &&
                     confirmByReturn(choice, open, taker)) ||
                    (holdsPath() && confirmByField(choice, open));
  if (went) choice.returnUnderWay = false;
  return went;
}

// Whether a button of the sheet closes it without going anywhere: the new sheet's has a subrole,
// the old one's is called as the panel's own Cancel button, in any language.
bool closesSheet(const PanelChoice& choice, const Element& button) {
  if (readText(button, "AXSubrole") == "AXCloseButton") return true;
  const std::string title = readText(button, "AXTitle").value_or("");
  const auto& cancel = choice.parts.cancelButton;
  return tables().cancelButtonTitles.contains(title) ||
         (cancel && !title.empty() && readText(*cancel, "AXTitle") == title);
}

std::optional<Element> closingButtonOf(const PanelChoice& choice, const Element& sheet) {
  for (const Element& child : readList(sheet)) {
    if (readText(child, "AXRole") == "AXButton" && closesSheet(choice, child)) return child;
  }
  return {};
}

// The sheet that is open, if any, once it can be told: one without an identifier is known when its
// field has come.
std::optional<Element> openSheetOf(const PanelChoice& choice) {
  std::optional<Element> sheet;
  const Condition isKnown = [&] {
    return holds(choice, [&] {
      sheet = goToSheetOf(choice.panel.element);
      return sheet || !sheetOf(choice.panel.element, isSubordinateSheet);
    });
  };
  seenWithin(withinDeadline(choice, sheetFieldSeconds), sheetPollSeconds, isKnown);
  return sheet;
}

bool closeByButton(const PanelChoice& choice, const Element& sheet) {
  std::optional<Element> button;
  holds(choice, [&] { return (button = closingButtonOf(choice, sheet)).has_value(); });
  if (!button) return false;
  performAction("AXPress", *button);
  return sheetGoesWithin(choice, sheet, sheetClosesSeconds);
}

// A slow sheet may have opened after the time of its chord: then an earlier one's process has it.
bool closeByEscape(const PanelChoice& choice, const Element& sheet) {
  for (auto pid = choice.sheetTakers.rbegin(); pid != choice.sheetTakers.rend(); ++pid) {
    if (!mayPostKeyInto(choice, sheet, *pid)) continue;
    tapKey(*pid, keyCodeEscape, noModifiers, {}, sheetKeySeconds);
    if (sheetGoesWithin(choice, sheet, sheetClosesSeconds)) return true;
  }
  return false;
}

}  // namespace

std::optional<Element> goToSheetOf(const Element& root) {
  return sheetOf(root, isGoToSheet);
}

std::string goThroughSheet(PanelChoice& choice, const std::string& path) {
  // One that is open already tells nothing about who takes keys.
  if (sheetIsOpen(choice) && !closeGoToSheet(choice)) return "the go-to sheet does not close";
  const auto taker = openSheet(choice);
  if (!taker) return "no go-to sheet opened";
  const auto open = waitForSheetField(choice);
  if (!open || !writePath(choice, open->field, path)) {
    closeGoToSheet(choice);
    return "the go-to sheet did not take the path";
  }
  if (confirmSheet(choice, *open, path, *taker)) return {};
  closeGoToSheet(choice);
  return "the go-to sheet did not go";
}

bool closeGoToSheet(PanelChoice& choice) {
  const auto sheet = openSheetOf(choice);
  if (!sheet) return true;
  return closeByButton(choice, *sheet) || closeByEscape(choice, *sheet);
}

}  // namespace tessarine
