// The command choose-path: a folder through the dialog's go-to-folder sheet, a file by one route
// after the other.
#pragma once

#include <cstdint>
#include <string>

#include "core/result.h"

namespace tessarine {

// Makes the browser's Open panel accept the file or folder. Throws ToolError notFound "path does
// not exist: " + path before anything touches the screen; timedOut "timed out after " + seconds +
// "s" when a folder's dialog stays after the retry; otherwise the error of the last route: a bare
// timedOut when it finds no captured panel window, else one that carries the texts of the earlier
// routes.
Result choosePath(std::int32_t primaryPid, const std::string& targetPath, double timeoutSeconds);

}  // namespace tessarine
