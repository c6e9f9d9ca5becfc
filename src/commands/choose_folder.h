// The command choose-folder: validates the path, then tries the strategies in their order.
#pragma once

#include <cstdint>
#include <string>

#include "core/result.h"

namespace tessarine {

// Makes the browser's folder chooser select the folder and confirm it.
//
// With `strictBackground` only chooseFolderByStrictAX is tried. Otherwise: with
// `preferBackgroundPanel` the captured panel first; then the dialog's controls through
// accessibility; last the captured panel, whose error carries the earlier ones unless no panel
// window was captured at all. `globalMouseEvents` lets the captured-panel strategy use System
// Events and session-wide clicks.
//
// Throws ToolError notFound "folder does not exist: " + path or usage "path is not a directory: " +
// path before anything touches the screen; after that the error of the last strategy tried.
Result chooseFolder(std::int32_t primaryPid, const std::string& targetPath, double timeoutSeconds,
                    bool preferBackgroundPanel, bool globalMouseEvents, bool strictBackground);

}  // namespace tessarine
