#include "navigation/go_to_folder.h"

#include <optional>

#include "core/tables.h"
#include "core/tool_error.h"
#include "dialog/controls.h"
#include "platform/accessibility.h"
#include "platform/clock.h"
#include "platform/events.h"
#include "platform/wait.h"
#include "platform/workspace.h"

namespace tessarine {
namespace {

constexpr double fieldPollSeconds = 0.1;
// A written value is readable only after the sheet's process has run its event loop.
constexpr double valueSettleSeconds = 0.12;
constexpr double returnPauseSeconds = 0.2;
constexpr double confirmPauseSeconds = 0.2;
constexpr double sheetOpeningSeconds = 0.15;
// The sheet's field takes keys only after it has slid in.
constexpr double beforeTypingSeconds = 0.2;
constexpr double pathTypingPauseSeconds = 0.02;
constexpr double afterTypedPathSeconds = 0.25;
constexpr double beforeWritingSeconds = 0.25;
constexpr double globalAttemptSeconds = 2.5;

// Writes the path and answers whether the field then holds exactly that.
bool writeVerified(const Element& field, const std::string& path) {
  const bool written = setText(field, "AXValue", path) == kAXErrorSuccess;
  sleepSeconds(valueSettleSeconds);
  return written && axInputValue(field) == path;
}

void confirmField(const Element& field, std::int32_t pid) {
  if (axOffers(field, "AXConfirm")) {
    perform("AXConfirm", field);
  } else {
    pressReturn(pid, returnPauseSeconds);
  }
  sleepSeconds(confirmPauseSeconds);
}

// Once more, by a key press that reaches whatever application is frontmost.
void retryThroughSession(const Element& root, std::int32_t pid, const std::string& path) {
  tapGlobalKey(keyCodeG, commandShiftFlags, beforeWritingSeconds);
  setGoToFolderPathAX(root, pid, path, globalAttemptSeconds);
}

}  // namespace

void openGoToFolderSheet(std::int32_t pid) {
  tapKey(pid, keyCodeG, commandShiftFlags, {}, sheetOpeningSeconds);
}

void navigateByGoToFolder(std::int32_t pid, const std::string& path) {
  openGoToFolderSheet(pid);
  sleepSeconds(beforeTypingSeconds);
  selectAllAndDelete(pid);
  typeUnicodeText(pid, path, pathTypingPauseSeconds);
  pressReturn(pid, afterTypedPathSeconds);
}

void navigateByGoToFolderAX(const Element& root, std::int32_t pid,
                            std::optional<std::int32_t> foregroundOwnerPid,
                            const std::string& path) {
  openGoToFolderSheet(pid);
  sleepSeconds(beforeWritingSeconds);
  try {
    setGoToFolderPathAX(root, pid, path);
  } catch (const ToolError&) {
    const auto frontmostPid = frontmostApplicationPid();
    if (!foregroundOwnerPid || frontmostPid != foregroundOwnerPid) throw;
    retryThroughSession(root, pid, path);
  }
  pressReturn(pid, afterTypedPathSeconds);
}

void setGoToFolderPathAX(const Element& root, std::int32_t pid, const std::string& path,
                         double timeoutSeconds) {
  const Element field =
      waitForValue(timeoutSeconds, fieldPollSeconds, [&] { return findGoToFolderField(root); });
  setTrue(field, "AXFocused");
  if (!writeVerified(field, path) && !writeVerified(field, path)) {
    throw ToolError::actionFailed(
        "failed to set go-to-folder value via AX (got: " + axInputValue(field) + ")");
  }
  confirmField(field, pid);
}

}  // namespace tessarine
