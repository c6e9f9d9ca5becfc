// What the window manager's workspace knows: applications, which of them is frontmost, the screens,
// the names under which the file browser shows files, and the folder for temporary ones. On macOS
// these are NSWorkspace, NSRunningApplication, NSScreen, NSFileManager and NSTemporaryDirectory,
// which have no C interface.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "core/geometry.h"

namespace tessarine {

// The process that is frontmost, absent when no application is.
std::optional<std::int32_t> frontmostApplicationPid();

enum class ApplicationState { unknown, running, terminated };

// `unknown` when no application with that pid is registered (a background-only helper, for
// example).
ApplicationState applicationState(std::int32_t pid);

// Asks the application to come to the front with all its windows; does nothing when it is unknown.
void activateApplication(std::int32_t pid);

// Every screen's frame in the space of NSScreen: points, origin at the bottom left of the main
// display, y growing upwards. The main display comes first.
std::vector<Rect> screenFrames();

// NSFileManager's display name for the path; never empty for a path that is not empty.
std::string fileManagerDisplayName(const std::string& path);

// The user's folder for temporary files.
std::string temporaryDirectory();

}  // namespace tessarine
