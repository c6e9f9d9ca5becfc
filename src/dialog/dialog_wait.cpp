#include "dialog/dialog_wait.h"

#include <algorithm>
#include <optional>

#include "core/tables.h"
#include "core/tool_error.h"
#include "dialog/detection.h"
#include "panels/panel_owners.h"
#include "platform/clock.h"
#include "platform/events.h"
#include "platform/wait.h"

namespace tessarine {
namespace {

// --- The strict wait: one budget for all its steps. ---

constexpr double shortestStrictSeconds = 0.5;
constexpr double longestStrictSeconds = 4.0;
constexpr double firstLookSeconds = 0.55;
constexpr double beforePrimingSeconds = 0.75;
constexpr double firstPrimedLookSeconds = 1.15;
constexpr double laterPrimedLookSeconds = 0.85;
constexpr double leastPrimingSeconds = 0.15;
constexpr double leastFinalSeconds = 0.1;
constexpr double primingPauseSeconds = 0.15;

struct StrictSearch {
  std::int32_t primaryPid;
  std::vector<std::int32_t> pids;
  double startTime;
  double budgetSeconds;
};

double remainingSeconds(const StrictSearch& search) {
  return std::max(0.0, search.budgetSeconds - (currentTime() - search.startTime));
}

// For so long, or for what is left of the budget.
std::optional<DialogRef> lookFor(const StrictSearch& search, double seconds) {
  std::optional<DialogRef> dialog;
  pollUntil(std::min(remainingSeconds(search), seconds), defaultPollSeconds, [&] {
    dialog = preferredDialog(search.primaryPid, true, search.pids);
    return dialog.has_value();
  });
  return dialog;
}

// Sends Command-Shift-G to each process in turn and looks for a dialog after each.
std::optional<DialogRef> primeProcesses(const StrictSearch& search) {
  double lookSeconds = firstPrimedLookSeconds;
  for (const std::int32_t pid : search.pids) {
    if (!(remainingSeconds(search) > leastPrimingSeconds)) return {};
    tapKey(pid, keyCodeG, commandShiftFlags, {}, primingPauseSeconds);
    if (auto dialog = lookFor(search, lookSeconds)) return dialog;
    lookSeconds = laterPrimedLookSeconds;
  }
  return {};
}

}  // namespace

DialogRef waitForOpenDialog(std::int32_t primaryPid, double timeoutSeconds, bool includeEmbedded,
                            const std::vector<std::int32_t>& additionalPIDs) {
  return waitForValue(timeoutSeconds, defaultPollSeconds,
                      [&] { return preferredDialog(primaryPid, includeEmbedded, additionalPIDs); });
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

  if (auto dialog = lookFor(search, firstLookSeconds)) return *dialog;
  sleepSeconds(std::min(remainingSeconds(search), beforePrimingSeconds));
  if (auto dialog = primeProcesses(search)) return *dialog;
  if (remainingSeconds(search) <= leastFinalSeconds) {
    throw ToolError::notFound("open dialog not found after process-directed AX priming");
  }
  return waitForOpenDialog(primaryPid, remainingSeconds(search), true, search.pids);
}

}  // namespace tessarine
