#include "commands/choose_folder_by_controls.h"

#include <nlohmann/json.hpp>

#include "commands/choice_results.h"
#include "commands/dialog_confirmation.h"
#include "core/tool_error.h"
#include "dialog/controls.h"
#include "dialog/dialog_wait.h"
#include "navigation/folder_selection.h"
#include "navigation/go_to_folder.h"
#include "navigation/hierarchy.h"
#include "navigation/verification.h"
#include "platform/accessibility.h"
#include "platform/clock.h"
#include "platform/events.h"

namespace tessarine {
namespace {

constexpr double beforeStabilizingSeconds = 0.3;
constexpr double afterConfirmingReturnSeconds = 0.1;

// Best effort: the verification that follows decides.
void stabilize(const DialogRef& dialog, const std::string& targetPath, double timeoutSeconds) {
  sleepSeconds(beforeStabilizingSeconds);
  try {
    stabilizeFolderSelection(dialog.node.element, dialog.pid, targetPath, timeoutSeconds);
  } catch (const ToolError&) {
  }
}

// Brings the dialog to the folder and answers the name of the way that led there.
std::string navigate(const DialogRef& dialog, std::int32_t primaryPid,
                     const std::string& targetPath, double timeoutSeconds) {
  try {
    navigateByHierarchy(dialog.node.element, dialog.pid, targetPath, timeoutSeconds, true);
    return "hierarchy";
  } catch (const ToolError&) {
    navigateByGoToFolderAX(dialog.app, dialog.pid, primaryPid, targetPath);
  }
  stabilize(dialog, targetPath, timeoutSeconds);
  return "go-to-folder-ax";
}

void confirm(const DialogRef& dialog, const std::string& targetPath) {
  const Element& root = dialog.node.element;
  const auto button = findChooseButton(root);
  if (!button) return pressReturn(dialog.pid, afterConfirmingReturnSeconds);
  if (!chooserReached(root, targetPath)) {
    throw ToolError::actionFailed("chooser did not reach target folder before pressing choose: " +
                                  targetPath);
  }
  tryAction("AXPress", button->element);
}

}  // namespace

Result chooseFolderByControls(std::int32_t primaryPid, const std::string& targetPath,
                              double timeoutSeconds, const std::string& volumeRoot,
                              const std::string& volumeDisplayName,
                              const std::vector<std::string>& components,
                              const std::string& basename) {
  const DialogRef dialog = waitForOpenDialog(primaryPid, timeoutSeconds, true, {});
  const std::string strategy = navigate(dialog, primaryPid, targetPath, timeoutSeconds);
  confirm(dialog, targetPath);
  closeWithOneRetry(dialog, timeoutSeconds);
  return withOwner(
      folderResult(targetPath, volumeRoot, volumeDisplayName, components, basename, strategy),
      dialog.pid, dialog.label);
}

}  // namespace tessarine
