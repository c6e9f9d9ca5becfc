// choose-folder on the captured panel windows alone, by synthetic input.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "core/result.h"

namespace tessarine {

// Waits for a captured panel window, then drives it blind: through System Events when
// `globalMouseEvents` allows it, otherwise and after that with keys and clicks for each window and
// each process that may take its input, watching after each step whether the window has gone.
// A window has 1.2 s to go after the script, 0.7 s after the typed path, and 0.8 s after each click
// and the last Return. `waitError` is the error that led here; the messages and the results of
// events carry it. Throws ToolError timedOut when no panel window appears within the time-out, or
// actionFailed
//   "AX open dialog failed and no captured background panel was found; AX error: " + waitError,
//   "background CGEvent folder selection did not close the captured panel; attempted: " +
//   the attempts + "; AX error: " + waitError.
Result chooseFolderByBackgroundEvents(std::int32_t primaryPid, const std::string& targetPath,
                                      double timeoutSeconds, const std::string& waitError,
                                      const std::string& volumeRoot,
                                      const std::string& volumeDisplayName,
                                      const std::vector<std::string>& components,
                                      const std::string& basename, bool globalMouseEvents);

}  // namespace tessarine
