#include "commands/choose_path_by_go_to_folder.h"

#include <algorithm>
#include <nlohmann/json.hpp>

#include "commands/choice_results.h"
#include "commands/dialog_confirmation.h"
#include "dialog/detection.h"
#include "dialog/dialog_wait.h"
#include "navigation/go_to_folder.h"
#include "panels/capture.h"
#include "panels/panel_close.h"
#include "platform/wait.h"

namespace tessarine {
namespace {

constexpr double longestDialogSearchSeconds = 3.0;
constexpr double confirmCloseSeconds = 1.0;

}  // namespace

Result choosePathByGoToFolderAX(std::int32_t primaryPid, const std::string& targetPath,
                                double timeoutSeconds) {
  const DialogRef dialog =
      waitForOpenDialog(primaryPid, std::min(timeoutSeconds, longestDialogSearchSeconds), true, {});
  navigateByGoToFolderAX(dialog.app, dialog.pid, primaryPid, targetPath);
  if (waitForPanelClose(primaryPid, confirmCloseSeconds) || chooserIsGone(dialog.app)) {
    return goToFolderAXResult(targetPath, dialog, "confirm");
  }
  pressChooseButton(dialog.app);
  waitUntil(dialogCloseSeconds(timeoutSeconds), [&] {
    return orderedBackgroundPanelWindows(primaryPid).empty() && chooserIsGone(dialog.app);
  });
  return goToFolderAXResult(targetPath, dialog, "open-button");
}

Result goToFolderAXResult(const std::string& targetPath, const DialogRef& dialog,
                          const std::string& via) {
  Result result = pathResult(targetPath, "file", "go-to-folder-ax");
  result["commit"] = via;
  return withOwner(std::move(result), dialog.pid, dialog.label);
}

}  // namespace tessarine
