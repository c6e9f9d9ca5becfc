// choose-path through the go-to-folder sheet and the accessibility tree.
#pragma once

#include <cstdint>
#include <string>

#include "core/result.h"
#include "platform/element.h"

namespace tessarine {

// Finds the dialog (for at most 3.0 s), sends it to the path, and presses its Choose button unless
// the sheet already closed the panel; then waits for the panel to go, for at most 4.0 s. Throws
// what waitForOpenDialog and navigateByGoToFolderAX throw, or ToolError timedOut with the time of
// the last wait.
Result choosePathByGoToFolderAX(std::int32_t primaryPid, const std::string& targetPath,
                                double timeoutSeconds);

// The result: "kind" is always "file"; "commit" tells what closed the panel, "confirm" or
// "open-button".
Result goToFolderAXResult(const std::string& targetPath, const DialogRef& dialog,
                          const std::string& via);

}  // namespace tessarine
