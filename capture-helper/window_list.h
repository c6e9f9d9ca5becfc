// The windows on the screen, from the window server.
#pragma once

#include <vector>

#include "capture-helper/listed_window.h"

namespace tessarine {

// Every on-screen window of the login session, front to back; none outside one. The owners' names
// are there in any case; other processes' titles only with the Screen Recording permission (since
// macOS 10.15).
std::vector<ListedWindow> onScreenWindows();

}  // namespace tessarine
