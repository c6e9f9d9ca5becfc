// The panel's go-to-folder sheet, which Command-Shift-G opens and into which a whole path can be
// written.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "platform/element.h"

namespace tessarine {

// Command-Shift-G to the process, then 0.15 s.
void openGoToFolderSheet(std::int32_t pid);

// Drives the sheet by keys alone, posted to the process: opens it, replaces its text by the path
// and presses Return. Reports nothing.
void navigateByGoToFolder(std::int32_t pid, const std::string& path);

// Opens the sheet by Command-Shift-G to the process and sends it to the path as setGoToFolderPathAX
// does, then presses Return once more, which opens the folder that the sheet selected. When the
// sheet does not take the path and the process `foregroundOwnerPid` is frontmost, tries once more
// with a Command-Shift-G through the session and 2.5 s for the sheet's field. Throws what the last
// setGoToFolderPathAX throws.
void navigateByGoToFolderAX(const Element& root, std::int32_t pid,
                            std::optional<std::int32_t> foregroundOwnerPid,
                            const std::string& path);

inline constexpr double defaultGoToFieldSeconds = 1.5;

// Finds the sheet's text field below the root (every 0.1 s, for at most `timeoutSeconds`), writes
// the path into it, reads it back, and confirms it: by "AXConfirm" where the field offers it, by
// Return to the process otherwise. A write that does not read back is made once more. Throws
// ToolError
// - timedOut "timed out after " + timeoutSeconds + "s" when no field appears,
// - actionFailed "failed to set go-to-folder value via AX (got: " + the field's value + ")",
// - the error of the action "AXConfirm".
void setGoToFolderPathAX(const Element& root, std::int32_t pid, const std::string& path,
                         double timeoutSeconds = defaultGoToFieldSeconds);

}  // namespace tessarine
