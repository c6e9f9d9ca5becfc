// The command close: dismisses the browser's Open panel without choosing anything.
#pragma once

#include <cstdint>

namespace tessarine {

// Without `strictBackground`: how many panels were dismissed by their Cancel buttons, or 1 when a
// captured panel went away; 0 when there was none or it stayed. With it: 1, or 0 when there was
// none. `temporaryForeground` brings the browser to the front meanwhile.
//
// Without `strictBackground` captured panels come first: Escape, then a click and Escape; Cancel
// buttons are used only when no panel is captured. With it Cancel buttons come first.
//
// Throws ToolError actionFailed: the error of the action "AXPress" on a Cancel button; with
// `strictBackground`, when a captured panel stays,
// - "background-only AXPress was accepted but the captured native folder panel remained open",
// - "background-only native folder panel exposes no verified AX close control and targeted process
//   events did not close it".
int closeDialogs(std::int32_t primaryPid, bool temporaryForeground, bool strictBackground);

}  // namespace tessarine
