// Read-only commands that show what the tool can see, for finding out why a panel is not found.
// They never wait and never fail: a process that does not answer yields empty lists.
#pragma once

#include <cstdint>

#include "core/result.h"
#include "platform/element.h"

namespace tessarine {

// {"role", "subrole", "title", "description", "frame"} of a window.
Result windowSummary(const Element& window);

// {"ok", "command", "primaryPid", "apps"}: every candidate application's windows.
Result listWindows(std::int32_t primaryPid);

// {"ok", "command", "primaryPid", "windows"}: the captured panel windows, on a screen or not.
Result listBackgroundPanels(std::int32_t primaryPid);

// {"ok", "command", "primaryPid", "dialogs"}: every Open dialog found, with the first 700 nodes of
// its tree down to depth 8.
Result inspectOpenDialog(std::int32_t primaryPid);

}  // namespace tessarine
