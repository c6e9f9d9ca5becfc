#include "commands/choose_path_by_staging.h"

#include <algorithm>
#include <nlohmann/json.hpp>
#include <optional>

#include "commands/choice_results.h"
#include "core/tool_error.h"
#include "panels/capture.h"
#include "panels/panel_close.h"
#include "platform/clock.h"
#include "platform/events.h"
#include "platform/files.h"
#include "platform/own_process.h"

namespace tessarine {
namespace {

constexpr double longestStagingPanelSeconds = 2.0;
constexpr double longestStagingCloseSeconds = 3.0;
constexpr double afterStagingSeconds = 0.25;
constexpr double afterRowClickSeconds = 0.22;
constexpr double secondsAhead = 3600;
// Where the first row is expected: shares of the panel's extents, within bounds (points).
constexpr double rowRightShare = 0.26;
constexpr double leastRowRight = 360;
constexpr double mostRowRight = 520;
constexpr double rowDownShare = 0.155;
constexpr double leastRowDown = 128;
constexpr double mostRowDown = 180;
constexpr double openButtonBelow = 80;    // from the panel's bottom edge
constexpr double firstButtonOffset = 68;  // from its right edge
constexpr double secondButtonOffset = 86;

// What is staged for which panel, and why.
struct Staging {
  std::int32_t primaryPid;
  std::string targetPath;
  std::string waitError;
  std::string stagedPath;
  PanelWindowRef panel;
  std::int32_t clickPid;
  Point row;
  double secondsToClose;
};

Point openButtonPoint(const Rect& frame, double offset) {
  return {frame.x + frame.width - offset, frame.y + frame.height - openButtonBelow};
}

bool closes(const Staging& staging) {
  return waitForPanelClose(staging.primaryPid, staging.secondsToClose);
}

// The point of the Open button whose click closed the panel.
std::optional<Point> closeByOpenButton(const Staging& staging) {
  postMouseClick(staging.clickPid, staging.row, 1, false);
  sleepSeconds(afterRowClickSeconds);
  for (const double offset : {firstButtonOffset, secondButtonOffset}) {
    const Point button = openButtonPoint(staging.panel.frame, offset);
    postMouseClick(staging.clickPid, button, 1, false);
    if (closes(staging)) return button;
  }
  return {};
}

bool closeByDoubleClick(const Staging& staging) {
  doubleClickPoint(staging.clickPid, staging.row);
  return closes(staging);
}

Result stagingResult(const Staging& staging, const std::string& strategy) {
  Result result = withOwner(pathResult(staging.targetPath, "file", strategy), staging.clickPid,
                            staging.panel.app);
  result["axWaitError"] = staging.waitError;
  result["stagedPath"] = staging.stagedPath;
  result["panelFrame"] = frameObject(staging.panel.frame);
  result["rowPoint"] = pointObject(staging.row);
  return result;
}

std::string fileExtension(const std::string& path) {
  const std::string name = lastPathComponent(path);
  const auto dot = name.rfind('.');
  if (dot == std::string::npos || dot == 0 || dot + 1 == name.size()) return {};
  return name.substr(dot);
}

}  // namespace

Result choosePathByTmpStagingMouse(std::int32_t primaryPid, const std::string& targetPath,
                                   double timeoutSeconds, const std::string& waitError) {
  waitForBackgroundOpenPanel(primaryPid, std::min(timeoutSeconds, longestStagingPanelSeconds));
  const std::string stagedPath = stagedTmpCopy(targetPath);
  sleepSeconds(afterStagingSeconds);
  const auto panel = largestPanelWindow(primaryPid);
  if (!panel) {
    throw ToolError::notFound("background open panel window not found after staging tmp file");
  }
  const Staging staging{.primaryPid = primaryPid,
                        .targetPath = targetPath,
                        .waitError = waitError,
                        .stagedPath = stagedPath,
                        .panel = *panel,
                        .clickPid = panel->pid > 0 ? panel->pid : primaryPid,
                        .row = firstRowPoint(panel->frame),
                        .secondsToClose = std::min(timeoutSeconds, longestStagingCloseSeconds)};
  if (const auto button = closeByOpenButton(staging)) {
    Result result = stagingResult(staging, "tmp-staging-first-row-mouse");
    result["openButtonPoint"] = pointObject(*button);
    return result;
  }
  if (closeByDoubleClick(staging)) {
    return stagingResult(staging, "tmp-staging-first-row-double-click");
  }
  throw ToolError::actionFailed(
      "tmp staging mouse fallback did not close open panel; staged path: " + stagedPath);
}

std::string stagedTmpCopy(const std::string& path) {
  if (!fileExists(path)) throw ToolError::notFound("path does not exist: " + path);
  if (isDirectory(path)) {
    throw ToolError::actionFailed("tmp staging mouse fallback only supports files: " + path);
  }
  const std::string staged = "/tmp/zorvilet-upload-" + freshUuid() + fileExtension(path);
  copyFile(path, staged);
  setModificationDate(staged, currentTime() + secondsAhead);
  return staged;
}

Point firstRowPoint(const Rect& panelFrame) {
  return {panelFrame.x + std::clamp(panelFrame.width * rowRightShare, leastRowRight, mostRowRight),
          panelFrame.y + std::clamp(panelFrame.height * rowDownShare, leastRowDown, mostRowDown)};
}

}  // namespace tessarine
