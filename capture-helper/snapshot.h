// An image of one window, by the system's own snapshot program.
#pragma once

#include <cstdint>
#include <string>

namespace tessarine {

inline constexpr const char* snapshotProgram = "/usr/sbin/screencapture";

// Writes the window as a PNG, without its shadow and without a sound, to `file`, which is replaced
// as a whole or not touched; a link is followed. Throws ToolError actionFailed when there is no
// image: "cannot write " + file + ": " + "not a regular file" or the system's reason, "failed to
// start screencapture: " + the start error, "screencapture exceeded 5.0s" (it is told to end and
// has 1 s for that), or "cannot capture window " + number. No unfinished file is left behind,
// whether this program fails or a signal ends it, unless screencapture goes on after that 1 s.
void snapshotWindow(std::uint32_t number, const std::string& file);

}  // namespace tessarine
