#include "commands/choose_path_by_keyboard.h"

#include <algorithm>
#include <nlohmann/json.hpp>
#include <vector>

#include "commands/choice_results.h"
#include "commands/choose_path_by_staging.h"
#include "commands/dialog_confirmation.h"
#include "core/text.h"
#include "core/tool_error.h"
#include "navigation/go_to_folder.h"
#include "panels/capture.h"
#include "panels/panel_clicks.h"
#include "panels/panel_close.h"
#include "panels/panel_owners.h"
#include "platform/clock.h"
#include "platform/events.h"

namespace tessarine {
namespace {

constexpr double longestKeyboardPanelSeconds = 2.0;
constexpr double beforeFileReturnSeconds = 0.35;
constexpr double afterFileReturnSeconds = 0.2;

// The browser, then the owners of captured panel windows, once one is on screen.
std::vector<std::int32_t> waitForEventPIDs(std::int32_t primaryPid, double timeoutSeconds) {
  const auto owners =
      waitForBackgroundOpenPanel(primaryPid, std::min(timeoutSeconds, longestKeyboardPanelSeconds));
  std::vector<std::int32_t> pids{primaryPid};
  pids.insert(pids.end(), owners.begin(), owners.end());
  return uniquePIDs(pids);
}

void typePathAt(std::int32_t pid, std::int32_t primaryPid, const std::string& path) {
  clickBackgroundPanelWindow(primaryPid, pid);
  navigateByGoToFolder(pid, path);
  sleepSeconds(beforeFileReturnSeconds);
  pressReturn(pid, afterFileReturnSeconds);
  pressReturn(pid, afterFileReturnSeconds);
}

// [812, 913]
std::string pidsText(const std::vector<std::int32_t>& pids) {
  std::vector<std::string> texts;
  for (const std::int32_t pid : pids) texts.push_back(std::to_string(pid));
  return "[" + joined(texts, ", ") + "]";
}

}  // namespace

Result choosePathByKeyboardFallback(std::int32_t primaryPid, const std::string& targetPath,
                                    double timeoutSeconds, const std::string& waitError,
                                    bool tryMouseFirst) {
  std::string mouseError;
  if (tryMouseFirst) {
    try {
      return choosePathByTmpStagingMouse(primaryPid, targetPath, timeoutSeconds, waitError);
    } catch (const std::exception& error) {  // the file system's too
      mouseError = error.what();
    }
  }
  std::vector<std::int32_t> attempted;
  for (const std::int32_t pid : waitForEventPIDs(primaryPid, timeoutSeconds)) {
    attempted.push_back(pid);
    typePathAt(pid, primaryPid, targetPath);
    if (!waitForPanelClose(primaryPid, dialogCloseSeconds(timeoutSeconds))) continue;
    Result result = withOwner(pathResult(targetPath, "file", "go-to-folder-keyboard-fallback"), pid,
                              pid == primaryPid ? primaryBrowserLabel : panelServiceLabel);
    result["axWaitError"] = waitError;
    result["mouseFallbackError"] = mouseError;
    result["attemptedPids"] = attempted;
    return result;
  }
  throw ToolError::actionFailed("tmp staging mouse fallback failed: " + mouseError +
                                "; keyboard fallback did not close open panel; attempted pids: " +
                                pidsText(attempted) + "; wait error: " + waitError);
}

}  // namespace tessarine
