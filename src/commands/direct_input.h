// Commands that drive a panel step by step. They post events to the process, look for no dialog and
// verify nothing; a process that does not exist still yields a result.
#pragma once

#include <cstdint>
#include <string>

#include "core/result.h"

namespace tessarine {

// One left click at a screen point (origin top left): {"ok", "command", "point"}.
Result clickPoint(std::int32_t pid, double x, double y);

// Types the text: {"ok", "command", "textLength"}, the length in user-perceived characters.
Result typeTextCommand(std::int32_t pid, const std::string& text);

// Presses a named key: {"ok", "command", "key"}. The names are return/enter, delete/backspace,
// escape/esc, cmd-a/command-a and cmd-shift-g/command-shift-g. Throws ToolError usage
// "unsupported --key: " + name for any other.
Result pressKeyCommand(std::int32_t pid, const std::string& key);

}  // namespace tessarine
