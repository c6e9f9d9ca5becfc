#include "commands/choose_path.h"

#include <nlohmann/json.hpp>
#include <optional>

#include "commands/choice_results.h"
#include "commands/choose_path_by_go_to_folder.h"
#include "commands/choose_path_by_keyboard.h"
#include "commands/choose_path_by_staging.h"
#include "commands/dialog_confirmation.h"
#include "core/tool_error.h"
#include "dialog/dialog_wait.h"
#include "navigation/go_to_folder.h"
#include "platform/clock.h"
#include "platform/events.h"
#include "platform/files.h"

namespace tessarine {
namespace {

constexpr double beforeFolderReturnSeconds = 0.3;
constexpr double afterFolderReturnSeconds = 0.1;

Result chooseFolderInDialog(const DialogRef& dialog, const std::string& path,
                            double timeoutSeconds) {
  navigateByGoToFolder(dialog.pid, path);
  sleepSeconds(beforeFolderReturnSeconds);
  if (!pressChooseButton(dialog.node.element)) pressReturn(dialog.pid, afterFolderReturnSeconds);
  closeWithOneRetry(dialog, timeoutSeconds);
  return withOwner(pathResult(path, "directory", "go-to-folder"), dialog.pid, dialog.label);
}

Result chooseFolderPath(std::int32_t primaryPid, const std::string& path, double timeoutSeconds) {
  std::optional<DialogRef> dialog;
  try {
    dialog = waitForOpenDialog(primaryPid, timeoutSeconds, false, {});
  } catch (const ToolError& error) {
    return choosePathByKeyboardFallback(primaryPid, path, timeoutSeconds, error.message(), true);
  }
  return chooseFolderInDialog(*dialog, path, timeoutSeconds);
}

Result chooseFilePath(std::int32_t primaryPid, const std::string& path, double timeoutSeconds) {
  std::string firstError;
  try {
    return choosePathByGoToFolderAX(primaryPid, path, timeoutSeconds);
  } catch (const ToolError& error) {
    firstError = "AX go-to-folder path failed: " + error.message();
  }
  std::string stagingError;
  try {
    return choosePathByTmpStagingMouse(primaryPid, path, timeoutSeconds, firstError);
  } catch (const std::exception& error) {  // the file system's too
    stagingError = error.what();
  }
  return choosePathByKeyboardFallback(
      primaryPid, path, timeoutSeconds,
      "AX go-to-folder failed: " + firstError + "; mouse path failed: " + stagingError, false);
}

}  // namespace

Result choosePath(std::int32_t primaryPid, const std::string& targetPath, double timeoutSeconds) {
  const std::string path = standardizedPath(targetPath);
  if (!fileExists(path)) throw ToolError::notFound("path does not exist: " + path);
  return isDirectory(path) ? chooseFolderPath(primaryPid, path, timeoutSeconds)
                           : chooseFilePath(primaryPid, path, timeoutSeconds);
}

}  // namespace tessarine
