// The browser's Open panel windows as the capture helper sees them on screen, whether the
// accessibility tree shows them or not.
//
// The helper "background-window-capture" is run with the argument "list" on every call; nothing is
// cached, and a helper that does not end is waited for without a limit. It prints one window a
// line, fields separated by tabs: the bare window number, then "pid=", "app=", "title=" and
// "frame=x,y,width,height". A helper that is missing, fails or prints something else means that
// there are no windows.
//
// Frames are in screen points, origin at the top left of the main display.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "platform/element.h"

namespace tessarine {

// Four numbers, each in any form that parseDouble reads ("inf" and "nan" too), separated by commas;
// empty pieces are ignored. Absent for anything else, blanks included.
std::optional<Rect> parseCaptureFrame(const std::string& text);

// One line of the helper; what it does not say or cannot be read stays as in a new record.
PanelWindowRef parseCaptureLine(const std::string& line);

// The windows that are an Open panel of the browser or of its panel service: the title is an Open
// title, the number is not excluded, the owner fits, the frame is larger than 10 by 10. Repeats
// (the same number, or the same process and frame) are dropped. In the helper's order.
std::vector<PanelWindowRef> backgroundOpenPanelWindows(std::int32_t primaryPid);

// Those of them that panelWindowIsVisible, preferred first: windows of the panel service, then the
// larger, then the smaller number.
std::vector<PanelWindowRef> orderedBackgroundPanelWindows(std::int32_t primaryPid);

// The owners of the ordered windows, each once.
std::vector<std::int32_t> backgroundOpenPanelWindowPIDs(std::int32_t primaryPid);

bool backgroundOpenPanelVisible(std::int32_t primaryPid);

// Polls every 0.15 s until a panel window is visible; returns the owners. Throws ToolError timedOut
// "timed out after " + timeoutSeconds + "s". A look that began in time is finished and counts.
std::vector<std::int32_t> waitForBackgroundOpenPanel(std::int32_t primaryPid,
                                                     double timeoutSeconds);

// The first window of the process, or else the first of all, of which there must be one.
const PanelWindowRef& windowOfOrFirst(const std::vector<PanelWindowRef>& windows, std::int32_t pid);

// Negative extents count as 0.
double panelWindowArea(const PanelWindowRef& window);

// Whether the frame's centre is on some screen, as pointIsOnScreen has it (platform/screens.h).
bool panelWindowIsVisible(const PanelWindowRef& window);

// Whether a window of a fresh list is the tracked one: by number when both have one, otherwise by
// process and frame.
bool panelWindowMatches(const PanelWindowRef& window, const PanelWindowRef& tracked);

// The largest of the panel windows, on a screen or not.
std::optional<PanelWindowRef> largestPanelWindow(std::int32_t primaryPid);

}  // namespace tessarine
