// Read-only commands that show what the tool can see, for finding out why a panel is not found.
// They never wait and never fail: a process that does not answer yields empty lists. Only a frame
// with a number that is not finite cannot be printed: "the number nan at /windows/0/frame/x cannot
// be written as JSON".
//
// "frame" is {"x", "y", "width", "height"} in screen points, origin at the top left of the main
// display, the extents as magnitudes; all zeros for an element that has none.
#pragma once

#include <cstdint>

#include "core/result.h"
#include "platform/element.h"

namespace tessarine {

// {"role", "subrole", "title", "description", "frame"} of a window.
Result windowSummary(const Element& window);

// {"ok", "command", "primaryPid", "apps"}: {"pid", "label", "windows"} of every candidate
// application, each window as above.
Result listWindows(std::int32_t primaryPid);

// {"ok", "command", "primaryPid", "windows"}: {"windowID", "pid", "app", "title", "visible",
// "frame"} of every captured panel window, on a screen (visible) or not.
Result listBackgroundPanels(std::int32_t primaryPid);

// {"ok", "command", "primaryPid", "dialogs"}: {"pid", "label", "root", "chooserControlsAvailable",
// "nodes"} of every Open dialog found. The root is {"role", "title", "description", "frame"}; the
// nodes are the first 700 of its tree down to depth 8, itself included, each {"role", "title",
// "description", "value", "frame", "actions"}.
Result inspectOpenDialog(std::int32_t primaryPid);

}  // namespace tessarine
