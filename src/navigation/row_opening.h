// Moving the chooser by its own controls: opening an entry of the sidebar or the file list, waiting
// for the location pop-up, writing the search field, selecting a folder again after a jump.
#pragma once

#include <cstdint>
#include <string>

#include "platform/element.h"

namespace tessarine {

// Opens an entry: by accessibility actions first and, when process events are allowed, by clicks
// and keys posted to the process. Throws ToolError actionFailed
// - "folder row exposes no successful AX navigation action in strict background mode" (an entry of
//   the list view, without process events),
// - "dialog item exposes no successful AX navigation action in strict background mode" (another
//   entry, without process events),
// - "target element has no visible frame" (another entry, with process events).
// An entry of the sidebar never fails. Pauses 0.06 to 0.12 s after each action, and as long after
// each click and key.
void openRow(std::int32_t pid, const NodeRef& node, bool allowProcessEvents);

// Polls every 0.15 s until the location pop-up shows the value. Throws ToolError timedOut "timed
// out after " + timeoutSeconds + "s".
void waitForPopupValue(const Element& dialog, const std::string& expectedValue,
                       double timeoutSeconds);

// Throws ToolError notFound "search field not found in open dialog", or actionFailed "failed to
// write search field: " + the platform's error code.
void setSearchQuery(const Element& dialog, const std::string& query);

// Selects the folder again after a go-to-folder jump: confirms a name field that shows its name,
// then opens its row, if the list shows one within the time-out, at most 2.0 s. Throws ToolError
// timedOut with that time, or what openRow throws.
void stabilizeFolderSelection(const Element& dialog, std::int32_t pid,
                              const std::string& targetPath, double timeoutSeconds);

}  // namespace tessarine
