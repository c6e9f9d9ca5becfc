// choose-path by keys alone, sent to one process after the other.
#pragma once

#include <cstdint>
#include <string>

#include "core/result.h"

namespace tessarine {

// With `tryMouseFirst`, choosePathByTmpStagingMouse first. Then, for the browser and each process
// that owns a captured panel window: clicks its panel, types the path into the go-to-folder sheet
// with its Return, presses Return twice more and watches the panel close, for at most 4.0 s. Throws
// ToolError timedOut when no panel window appears within the time-out, at most 2.0 s, or
// actionFailed "tmp staging mouse fallback failed: " + the staging error (empty when staging was
// not tried) + "; keyboard fallback did not close open panel; attempted pids: " + list + "; wait
// error: " + waitError.
Result choosePathByKeyboardFallback(std::int32_t primaryPid, const std::string& targetPath,
                                    double timeoutSeconds, const std::string& waitError,
                                    bool tryMouseFirst);

}  // namespace tessarine
