// choose-folder without disturbing anyone: no mouse events, keyboard events only to processes that
// may own the panel, everything else through accessibility.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "core/result.h"

namespace tessarine {

// Finds the panel, sends it to the folder through its go-to-folder sheet (unless it shows the
// folder already), verifies that it shows the folder, presses its Choose button and watches it
// close. When by then no panel window is captured any more, or none ever was, that is taken for
// success, without verification and without a press. The path is standardized; the values after
// the time-out describe it (navigation/path_analysis.h). Works with `timeoutSeconds`, but at least
// 0.5 s and at most 4.0 s for finding the panel, and at most 2.0 s for each later wait.
//
// Throws what waitForStrictOpenDialog throws when there is no panel. Every later failure X is
// thrown as ToolError actionFailed:
//   "background-only native folder panel key+AX selection failed: " + X +
//   "; mouse CGEvent fallback is disabled in strict background mode"
// X being
// - a message of setGoToFolderPathAX (navigation/go_to_folder.h),
// - "timed out after " + seconds + "s" when the folder is not shown or the panel does not close,
// - "background-only native folder panel has no AXPress Choose control",
// - "background-only AX navigation did not verify target folder before pressing Choose: " + path,
// - the error of the action "AXPress".
Result chooseFolderByStrictAX(std::int32_t primaryPid, const std::string& targetPath,
                              double timeoutSeconds, const std::string& volumeRoot,
                              const std::string& volumeDisplayName,
                              const std::vector<std::string>& components,
                              const std::string& basename);

}  // namespace tessarine
