#include "commands/choose_folder_strict.h"

#include <algorithm>
#include <nlohmann/json.hpp>

#include "commands/choice_results.h"
#include "core/tool_error.h"
#include "dialog/controls.h"
#include "dialog/detection.h"
#include "dialog/dialog_wait.h"
#include "navigation/go_to_folder.h"
#include "navigation/verification.h"
#include "panels/candidates.h"
#include "panels/capture.h"
#include "panels/panel_owners.h"
#include "platform/accessibility.h"
#include "platform/clock.h"
#include "platform/events.h"
#include "platform/wait.h"

namespace tessarine {
namespace {

constexpr double shortestStrictSearchSeconds = 0.5;
constexpr double longestStrictSearchSeconds = 4.0;
constexpr double longestStepSeconds = 2.0;
constexpr double strictSheetSeconds = 0.25;
constexpr double afterStrictReturnSeconds = 0.25;
constexpr double verifyPollSeconds = 0.1;
constexpr double strictClosePollSeconds = 0.12;

// What every step after the search works with.
struct StrictChoice {
  std::int32_t primaryPid;
  std::vector<std::int32_t> eventPIDs;
  DialogRef dialog;
  std::string targetPath;
  double stepSeconds;
};

// The owners of panel windows, the panel services, the browser: where a panel may take keys.
std::vector<std::int32_t> eventPIDsFor(std::int32_t primaryPid) {
  auto pids = backgroundOpenPanelWindowPIDs(primaryPid);
  const auto services = panelServicePIDs(primaryPid);
  pids.insert(pids.end(), services.begin(), services.end());
  pids.push_back(primaryPid);
  return uniquePIDs(pids);
}

void goToFolder(const StrictChoice& choice) {
  const DialogRef& dialog = choice.dialog;
  if (findGoToFolderField(dialog.app)) {
    setGoToFolderPathAX(dialog.app, dialog.pid, choice.targetPath, choice.stepSeconds);
  } else if (chooserCurrentFolderMatches(dialog.node.element, choice.targetPath)) {
    return;
  } else {
    openGoToFolderSheet(dialog.pid);
    sleepSeconds(strictSheetSeconds);
    setGoToFolderPathAX(dialog.app, dialog.pid, choice.targetPath);
  }
  pressReturn(dialog.pid, afterStrictReturnSeconds);
}

void verifyFolderShown(const StrictChoice& choice) {
  waitUntil(choice.stepSeconds, verifyPollSeconds,
            [&] { return chooserReached(choice.dialog.node.element, choice.targetPath); });
}

void pressChoose(const StrictChoice& choice) {
  const Element& root = choice.dialog.node.element;
  const auto button = findChooseButton(root);
  if (!button) {
    throw ToolError::actionFailed(
        "background-only native folder panel has no AXPress Choose control");
  }
  if (!chooserReached(root, choice.targetPath)) {
    throw ToolError::actionFailed(
        "background-only AX navigation did not verify target folder before pressing Choose: " +
        choice.targetPath);
  }
  perform("AXPress", button->element);
}

void waitForClose(const StrictChoice& choice) {
  waitUntil(choice.stepSeconds, strictClosePollSeconds, [&] {
    return dialogNodes(choice.dialog.app).empty() &&
           !preferredDialog(choice.primaryPid, true, choice.eventPIDs);
  });
}

void chooseInPanel(const StrictChoice& choice) {
  goToFolder(choice);
  // A panel that has closed, as after a Return of the sheet that confirmed it too, leaves nothing
  // to press. One whose windows nothing lists looks the same.
  if (backgroundOpenPanelWindowPIDs(choice.primaryPid).empty()) return;
  verifyFolderShown(choice);
  pressChoose(choice);
  waitForClose(choice);
}

}  // namespace

Result chooseFolderByStrictAX(std::int32_t primaryPid, const std::string& targetPath,
                              double timeoutSeconds, const std::string& volumeRoot,
                              const std::string& volumeDisplayName,
                              const std::vector<std::string>& components,
                              const std::string& basename) {
  const double searchSeconds =
      std::min(std::max(shortestStrictSearchSeconds, timeoutSeconds), longestStrictSearchSeconds);
  const auto eventPIDs = eventPIDsFor(primaryPid);
  const DialogRef dialog = waitForStrictOpenDialog(primaryPid, eventPIDs, searchSeconds);
  const StrictChoice choice{primaryPid, eventPIDs, dialog, targetPath,
                            std::min(searchSeconds, longestStepSeconds)};
  try {
    chooseInPanel(choice);
  } catch (const ToolError& failure) {
    throw ToolError::actionFailed(
        "background-only native folder panel key+AX selection failed: " + failure.message() +
        "; mouse CGEvent fallback is disabled in strict background mode");
  }
  Result result = folderResult(targetPath, volumeRoot, volumeDisplayName, components, basename,
                               "embedded-chooser-ax-goto-folder-strict-background");
  result["backgroundOnly"] = true;
  return withOwner(std::move(result), dialog.pid, dialog.label);
}

}  // namespace tessarine
