// Waiting for an Open dialog to appear.
#pragma once

#include <cstdint>
#include <vector>

#include "platform/element.h"

namespace tessarine {

// Polls every 0.15 s for a dialog: the browser's first one, or else the last one found. Throws
// ToolError timedOut "timed out after " + timeoutSeconds + "s"; a time-out of 0 does so at once.
DialogRef waitForOpenDialog(std::int32_t primaryPid, double timeoutSeconds, bool includeEmbedded,
                            const std::vector<std::int32_t>& additionalPIDs);

// Waits for a dialog that may sit in a background process which has not yet built its accessibility
// tree: looks for it, then prompts each process in turn with Command-Shift-G, which makes it build
// the tree. Works for `timeoutSeconds`, but at least 0.5 s and at most 4.0 s. Throws ToolError
// notFound "open dialog not found after process-directed AX priming", or what the last
// waitForOpenDialog throws.
DialogRef waitForStrictOpenDialog(std::int32_t primaryPid,
                                  const std::vector<std::int32_t>& eventPIDs,
                                  double timeoutSeconds);

}  // namespace tessarine
