// choose-path through the go-to-folder sheet and the accessibility tree.
#pragma once

#include <cstdint>
#include <string>

#include "core/result.h"
#include "platform/element.h"

namespace tessarine {

// Finds the dialog (for at most 3.0 s), sends it to the path and waits for the captured panel
// windows to go, for 1.0 s. It is done when they went or the dialog's application shows no chooser
// any more; otherwise it presses the Choose button and waits for both, for at most 4.0 s. The path
// is expected to be standardized. Throws what waitForOpenDialog and navigateByGoToFolderAX throw,
// or ToolError timedOut with the time of the last wait.
Result choosePathByGoToFolderAX(std::int32_t primaryPid, const std::string& targetPath,
                                double timeoutSeconds);

// The result: "kind" is always "file"; "commit" tells after which step the panel was gone:
// "confirm", the sheet's own, or "open-button".
Result goToFolderAXResult(const std::string& targetPath, const DialogRef& dialog,
                          const std::string& via);

}  // namespace tessarine
