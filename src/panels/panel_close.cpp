#include "panels/panel_close.h"

#include <algorithm>
#include <string>

#include "panels/capture.h"
#include "platform/files.h"
#include "platform/own_process.h"
#include "platform/processes.h"
#include "platform/wait.h"
#include "platform/workspace.h"

namespace tessarine {
namespace {

constexpr double panelClosePollSeconds = 0.12;

std::string snapshotPath(const PanelWindowRef& window) {
  return appendingComponent(temporaryDirectory(), "zorvilet-panel-" + std::to_string(ownPid()) +
                                                      "-" + std::to_string(window.windowID) + "-" +
                                                      freshUuid() + ".png");
}

bool anyMatches(const std::vector<PanelWindowRef>& tracked, const PanelWindowRef& window) {
  return std::ranges::any_of(tracked, [&](const PanelWindowRef& candidate) {
    return panelWindowMatches(window, candidate);
  });
}

}  // namespace

bool panelCaptureAvailable(const PanelWindowRef& window) {
  if (window.windowID == 0) return false;
  const std::string path = snapshotPath(window);
  const bool captured =
      commandSucceeded(helperExecutable(captureHelperName),
                       {"capture", "--window-id", std::to_string(window.windowID), "--out", path});
  removeFile(path);
  return captured;
}

bool waitForTrackedPanelClose(std::int32_t primaryPid,
                              const std::vector<PanelWindowRef>& trackedWindows,
                              double timeoutSeconds) {
  if (trackedWindows.empty()) return false;
  return pollUntil(timeoutSeconds, panelClosePollSeconds, [&] {
    const auto windows = orderedBackgroundPanelWindows(primaryPid);
    return std::ranges::none_of(
        windows, [&](const PanelWindowRef& window) { return anyMatches(trackedWindows, window); });
  });
}

bool waitForCapturedPanelClose(std::int32_t primaryPid, double timeoutSeconds) {
  return pollUntil(timeoutSeconds, panelClosePollSeconds, [&] {
    auto windows = orderedBackgroundPanelWindows(primaryPid);
    std::erase_if(windows, [&](const PanelWindowRef& window) { return window.pid != primaryPid; });
    return std::ranges::none_of(windows, panelCaptureAvailable);
  });
}

bool waitForPanelClose(std::int32_t primaryPid, double timeoutSeconds) {
  return pollUntil(timeoutSeconds, defaultPollSeconds,
                   [&] { return orderedBackgroundPanelWindows(primaryPid).empty(); });
}

}  // namespace tessarine
