// What --verify says when it fails.
#pragma once

#include <string>

#include "core/tool_error.h"
#include "navigation/panel_choice.h"

namespace tessarine {

// actionFailed "not verified: " + text, on one line: control characters, which file names may hold,
// become blanks.
ToolError notVerified(const std::string& text);

// "the panel shows /a, not /b (no go-to sheet opened; /b is not listed in /)"
std::string mismatchText(const PanelChoice& choice);

// ": what it will choose is unknown" while a Return is under way of which nothing was seen, which
// may still come to something.
std::string afterReturnText(const PanelChoice& choice);

}  // namespace tessarine
