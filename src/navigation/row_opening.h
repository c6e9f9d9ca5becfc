// Opening an entry of the chooser's sidebar or file list.
#pragma once

#include <cstdint>

#include "platform/element.h"

namespace tessarine {

// Opens an entry: by accessibility actions first and, when process events are allowed, by clicks
// and keys posted to the process. Throws ToolError actionFailed
// - "folder row exposes no successful AX navigation action in strict background mode" (an entry of
//   the list view, without process events),
// - "dialog item exposes no successful AX navigation action in strict background mode" (another
//   entry, without process events),
// - "target element has no visible frame" (another entry, with process events).
// An entry of the sidebar never fails. Pauses 0.06 to 0.12 s after each action, each key and the
// double click of the list view; nothing waits after the click elsewhere.
void openRow(std::int32_t pid, const NodeRef& node, bool allowProcessEvents);

}  // namespace tessarine
