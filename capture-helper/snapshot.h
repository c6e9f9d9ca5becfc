// An image of one window, by the system's own snapshot program.
#pragma once

#include <cstdint>
#include <string>

namespace tessarine {

inline constexpr const char* snapshotProgram = "/usr/sbin/screencapture";

// Writes the window as a PNG, without its shadow and without a sound, to `file`, which is replaced
// as a whole or not touched. Throws ToolError actionFailed when there is no image: "failed to start
// screencapture: " + the start error, "screencapture exceeded 5.0s" (it is ended), "cannot capture
// window " + number, or "cannot write " + file.
void snapshotWindow(std::uint32_t number, const std::string& file);

}  // namespace tessarine
