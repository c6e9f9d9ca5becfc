// Commands that drive a panel step by step. They post events to the process, look for no dialog and
// verify nothing; a process that does not exist still yields a result. They wait for their pauses
// alone.
#pragma once

#include <cstdint>
#include <string>

#include "core/result.h"

namespace tessarine {

// One left click, held for 0.05 s, at a screen point (origin top left): {"ok", "command", "point"}.
Result clickPoint(std::int32_t pid, double x, double y);

// Types the text, 0.02 s down and 0.02 s up for each Unicode scalar: {"ok", "command",
// "textLength"}, the length in user-perceived characters.
Result typeTextCommand(std::int32_t pid, const std::string& text);

// Presses a named key for 0.02 s and pauses for 0.1 s (0.15 s after cmd-shift-g): {"ok", "command",
// "key"}. The names are return/enter, delete/backspace, escape/esc, cmd-a/command-a and
// cmd-shift-g/command-shift-g. Throws ToolError usage "unsupported --key: " + name for any other.
Result pressKeyCommand(std::int32_t pid, const std::string& key);

}  // namespace tessarine
