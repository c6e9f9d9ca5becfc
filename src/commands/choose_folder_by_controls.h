// choose-folder through the controls of a found dialog.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "core/result.h"

namespace tessarine {

// Finds the dialog, walks it to the folder (or sends it there through the go-to-folder sheet),
// verifies that it shows the folder, presses its Choose button (or Return where there is none) and
// watches it go, for at most 4.0 s, with one retry. The path is standardized; the values after the
// time-out describe it. Throws ToolError
// - what waitForOpenDialog throws when there is no dialog,
// - what navigateByGoToFolderAX throws when neither way leads to the folder,
// - actionFailed "chooser did not reach target folder before pressing choose: " + path,
// - timedOut "timed out after " + seconds + "s" when the dialog stays after the retry.
Result chooseFolderByControls(std::int32_t primaryPid, const std::string& targetPath,
                              double timeoutSeconds, const std::string& volumeRoot,
                              const std::string& volumeDisplayName,
                              const std::vector<std::string>& components,
                              const std::string& basename);

}  // namespace tessarine
