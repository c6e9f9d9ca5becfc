// choose-path by staging: a fresh copy of the file, dated ahead of everything else, heads a list
// that is sorted by date, where the first row can be clicked blind.
#pragma once

#include <cstdint>
#include <string>

#include "core/result.h"
#include "platform/element.h"

namespace tessarine {

// Stages a copy of the file and, in the largest captured panel window, clicks the first row and the
// Open button, then the button at another point, then double-clicks the row; waits for the panel to
// close after each, for at most 3.0 s. Throws ToolError
// - timedOut when no panel window appears within the time-out, at most 2.0 s,
// - what stagedTmpCopy throws,
// - notFound "background open panel window not found after staging tmp file",
// - actionFailed "tmp staging mouse fallback did not close open panel; staged path: " + path.
Result choosePathByTmpStagingMouse(std::int32_t primaryPid, const std::string& targetPath,
                                   double timeoutSeconds, const std::string& waitError);

// Copies the file to "/tmp/zorvilet-upload-" + a UUID (and its extension), modified an hour from
// now. The copy stays. Throws ToolError notFound "path does not exist: " + path, actionFailed "tmp
// staging mouse fallback only supports files: " + path, or the file system's error.
std::string stagedTmpCopy(const std::string& path);

// Where the first row of a panel's file list is expected (screen points).
Point firstRowPoint(const Rect& panelFrame);

}  // namespace tessarine
