#include "commands/verified_confirmation.h"

#include <algorithm>
#include <string>

#include "commands/verified_error.h"
#include "core/lists.h"
#include "core/numbers.h"
#include "navigation/go_to_sheet.h"
#include "panels/process_survey.h"
#include "platform/accessibility.h"
#include "platform/clock.h"
#include "platform/events.h"
#include "platform/processes.h"
#include "platform/wait.h"
#include "platform/workspace.h"

namespace tessarine {
namespace {

// Measured: 0.41 s after the go-to sheet's Return; a process may be busy for longer.
constexpr double enabledSeconds = 4.0;
constexpr double confirmPollSeconds = 0.05;
// What a person did may take so long to be seen.
constexpr double settledSeconds = 1.0;
constexpr double leastPressSeconds = 1.0;
constexpr double verifiedClosePollSeconds = 0.1;
constexpr double verifiedCloseSeconds = 6.0;
// A press that failed hardly lands later; one that went unanswered does so before its process
// answers anything else.
constexpr double failedCloseSeconds = 1.0;
constexpr double answersAgainSeconds = 6.0;
constexpr double windowLeavesSeconds = 4.0;
// What was pressed is awaited for so long after the deadline.
constexpr double afterDeadlineSeconds = 2.0;

using Windows = std::vector<PanelWindowRef>;

// --- The moment. ---

// What people press reaches the panel while its application is in front, where a click brings it.
bool personActedSince(const PanelChoice& choice, Quiet& quiet, double time) {
  const bool pressed = quiet.since() > time;
  const auto inFront = frontmostApplicationPid();
  return pressed && inFront && isAmong(choice.keyPids, *inFront);
}

// What was seen, and that it was so still when the button was about to be pressed.
struct ProvenMoment {
  double time;  // at which the look began
  PanelSight sight;
  Proof proof;
};

// A look; without a result, why not.
struct LastLook {
  std::optional<ProvenMoment> proven;
  std::string obstacle;
};

// Absent when nobody answers.
std::optional<bool> isEnabled(const PanelChoice& choice) {
  std::optional<bool> enabled;
  holds(choice, [&] {
    enabled = readFlag(*choice.parts.confirmButton, "AXEnabled").value_or(true);
    return true;
  });
  return enabled;
}

LastLook lookForTheLastTime(PanelChoice& choice, Quiet& quiet) {
  const double time = currentTime();
  if (!choice.parts.confirmButton) return {{}, "its confirm button is gone"};
  const auto enabled = isEnabled(choice);
  if (!enabled) return {{}, "its confirm button does not answer"};
  if (!*enabled) {
    closeGoToSheet(choice);  // one that opened late, while nobody waited for it
    return {{}, "its confirm button is disabled"};
  }
  const auto sight = glance(choice);
  const auto proof = sight ? proofOf(*sight, choice.target) : std::nullopt;
  // Without a list that names its selection there is nothing to look at again.
  const bool same =
      proof && isEnabled(choice).value_or(false) &&
      (!sight->list || holds(choice, [&] { return stillAsSeen(*sight, choice.parts); }));
  if (!same) return {{}, "it changes"};
  if (personActedSince(choice, quiet, time - settledSeconds)) {
    return {{}, "somebody is at work in it"};
  }
  return {ProvenMoment{time, *sight, *proof}, {}};
}

ProvenMoment waitForProvenMoment(PanelChoice& choice, Quiet& quiet) {
  LastLook last;
  const Condition look = [&] {
    return (last = lookForTheLastTime(choice, quiet)).proven.has_value();
  };
  const double seconds = choice.problem.empty() ? enabledSeconds : 0;
  if (seenWithin(withinDeadline(choice, seconds), confirmPollSeconds, look)) return *last.proven;
  const std::string end = afterReturnText(choice);
  if (!proofWithin(choice, 0)) throw notVerified(mismatchText(choice) + end);
  throw notVerified("the panel shows " + choice.target.path + ", but " + last.obstacle + end);
}

// --- The press. ---

int press(const PanelChoice& choice) {
  if (withinDeadline(choice, leastPressSeconds) < leastPressSeconds) throw TimeIsUp();
  return performAction("AXPress", *choice.parts.confirmButton);
}

void awaitAnswer(const PanelChoice& choice) {
  seenWithin(withinDeadline(choice, answersAgainSeconds), verifiedClosePollSeconds,
             [&] { return answersNow(choice.panel.element); });
}

// The panel may still be read for a moment after the press landed, which took a while: whoever
// changed what it shows meanwhile has changed what it chose.
void refuseOtherSight(const PanelChoice& choice, const PanelSight& before) {
  if (!showsOtherwise(before, choice.parts, choice.target)) return;
  throw notVerified("the panel did not show " + choice.target.path +
                    " any more when it was confirmed: what it chose is unknown");
}

// --- The close. ---

// Those at the panel's place, of which some are expected when some were listed before.
Windows windowsOfPanel(const PanelChoice& choice, const std::optional<Windows>& before) {
  if (!before) return {};
  std::optional<Rect> frame;
  holds(choice, [&] { return (frame = readFrame(choice.panel.element)).has_value(); });
  if (!frame) return {};
  return windowsAt(listedWindows().value_or(*before), choice.keyPids, *frame);
}

bool isListedIn(const Windows& windows, std::uint32_t number) {
  return std::ranges::any_of(
      windows, [&](const PanelWindowRef& window) { return window.windowID == number; });
}

// The panel's window that is listed still: one of a process none of whose windows at the panel's
// place has left, as another panel of it may stand there, too. A list that cannot be had lists all.
std::optional<std::uint32_t> listedStill(const Windows& before) {
  if (before.empty()) return {};
  const auto now = listedWindows().value_or(before);
  for (const PanelWindowRef& window : before) {
    const bool stays = std::ranges::all_of(before, [&](const PanelWindowRef& other) {
      return other.pid != window.pid || isListedIn(now, other.windowID);
    });
    if (stays) return window.windowID;
  }
  return {};
}

void waitUntilGone(const PanelChoice& choice, double seconds) {
  const Condition gone = [&] { return isGone(choice.panel.element); };
  if (seenWithin(withinDeadline(choice, seconds), verifiedClosePollSeconds, gone)) return;
  throw notVerified("the panel did not close within " + formatDouble(seconds) +
                    "s after its button was pressed: what it will choose is unknown");
}

void waitUntilUnlisted(const PanelChoice& choice, const Windows& windows) {
  std::optional<std::uint32_t> listed;
  const Condition left = [&] { return !(listed = listedStill(windows)); };
  if (seenWithin(withinDeadline(choice, windowLeavesSeconds), verifiedClosePollSeconds, left))
    return;
  throw notVerified("the panel is gone, but its window " + std::to_string(*listed) +
                    " is still listed: what it chose is unknown");
}

}  // namespace

double Quiet::since() {
  const std::uint64_t presses = pressesByPeople();
  if (presses != presses_) since_ = currentTime();
  presses_ = presses;
  return since_;
}

Proof confirmPanel(PanelChoice& choice, std::int32_t primaryPid,
                   const std::optional<Windows>& windows, Quiet& quiet) {
  const Windows before = windowsOfPanel(choice, windows);
  const ProvenMoment proven = waitForProvenMoment(choice, quiet);
  const int answer = press(choice);
  if (answer == kAXErrorInvalidUIElement) {
    throw notVerified(isGone(choice.panel.element)
                          ? "the panel was gone before its confirm button was pressed: what it "
                            "chose is unknown"
                          : "the confirm button was gone before it was pressed: what the panel "
                            "will choose is unknown");
  }
  choice.deadline += afterDeadlineSeconds;
  if (answer == kAXErrorCannotComplete) awaitAnswer(choice);
  refuseOtherSight(choice, proven.sight);
  const bool refused = answer != kAXErrorSuccess && answer != kAXErrorCannotComplete;
  waitUntilGone(choice, refused ? failedCloseSeconds : verifiedCloseSeconds);
  if (personActedSince(choice, quiet, proven.time)) {
    throw notVerified("somebody pressed a key or a button in " + std::to_string(primaryPid) +
                      " while it was confirmed: what it chose is unknown");
  }
  waitUntilUnlisted(choice, before);
  if (!isRunningProcess(primaryPid)) {
    throw notVerified("the browser " + std::to_string(primaryPid) +
                      " ended with its panel: what it chose is unknown");
  }
  return proven.proof;
}

}  // namespace tessarine
