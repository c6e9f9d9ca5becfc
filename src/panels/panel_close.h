// Watching captured panel windows go away. A time-out is the answer false, never an error. A look
// that began in time is finished and counts, so the answer may come after the time; a capture
// helper that does not end is waited for without a limit.
#pragma once

#include <cstdint>
#include <vector>

#include "platform/element.h"

namespace tessarine {

// Whether the capture helper can still snapshot the window. Never for a window without a number.
bool panelCaptureAvailable(const PanelWindowRef& window);

// Whether every tracked window has left the ordered list within the time; looks every 0.12 s. False
// at once when nothing is tracked.
bool waitForTrackedPanelClose(std::int32_t primaryPid,
                              const std::vector<PanelWindowRef>& trackedWindows,
                              double timeoutSeconds);

// Whether within the time no panel window of the browser process itself can be captured any more;
// looks every 0.12 s. Windows of the panel service are left out of account.
bool waitForCapturedPanelClose(std::int32_t primaryPid, double timeoutSeconds);

// Whether the ordered list becomes empty within the time; looks every 0.15 s.
bool waitForPanelClose(std::int32_t primaryPid, double timeoutSeconds);

}  // namespace tessarine
