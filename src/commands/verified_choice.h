// The strategy of --verify, which choose-folder and choose-path share: the panel is found by
// identity, taken to the target, seen to be there, confirmed and seen to close. Success is proof.
//
// No mouse event is ever posted, nothing to the session, and nothing is activated. Keys go only to
// processes that may own the panel: Command-Shift-G, Return and Escape for its go-to sheet.
#pragma once

#include <cstdint>
#include <string>

#include "core/result.h"

namespace tessarine {

struct VerifiedChoice {
  std::int32_t dialogPid = 0;  // the process in whose tree the panel was found
  std::string dialogApp;       // its label: primaryBrowserLabel or panelServiceLabel
  std::string verified;        // "folder shown" or "entry selected": what was seen last
  std::string verifiedPath;    // the target's canonical path
};

// Makes the browser's panel choose the file or folder, which exists. Waits up to `timeoutSeconds`
// for the panel and its controls, at least one look; the whole ends 4 s before the watchdog would.
// The application that was frontmost is frontmost again afterwards, if one of the panel's processes
// has come to the front meanwhile.
//
// Throws ToolError actionFailed, one line that begins with "not verified: " and says what was seen
// and where; the panel stays open unless it closed itself, and a go-to sheet that was opened is
// closed again:
//   "no process has the pid " + pid
//   "no open panel of " + browser + " was found within " + seconds + "s"
//   browser + " does not answer"
//   count + " panels are open (" + browser and pid + ": " + count + ", ...)"
//   "the panel (" + browser and pid + ") shows no list of entries" / "has no confirm button"
//   "a folder for a file panel: " + path, "a file for a folder panel: " + path
//   "the panel shows " + what + ", not " + path + " (" + why it did not get there + ")"
//   "the panel shows " + path + ", but its confirm button is disabled"
//   "the panel closed before it was verified: what it chose is unknown"
//   "the panel was gone before its confirm button was pressed: what it chose is unknown"
//   "the panel showed " + what + ", not " + path + ", when it was confirmed: what it chose is ..."
//   "the panel did not close within " + seconds + "s after it was confirmed"
//   "the panel is gone, but its window " + number + " is still listed"
//   browser + " ended with its panel: what it chose is unknown"
VerifiedChoice chooseVerified(std::int32_t primaryPid, const std::string& targetPath,
                              double timeoutSeconds);

// choose-folder and choose-path with --verify. Before anything is touched they throw ToolError
// - actionFailed "not verified: the path is empty", "not verified: the path is not UTF-8",
// - choose-folder: notFound "folder does not exist: " + path, usage "path is not a directory: " +
//   path; choose-path: notFound "path does not exist: " + path,
// then what chooseVerified throws. The results have the keys of the command, "strategy" "verified",
// "dialogPid", "dialogApp", "verified" and "verifiedPath".
Result chooseFolderVerified(std::int32_t primaryPid, const std::string& targetPath,
                            double timeoutSeconds);
Result choosePathVerified(std::int32_t primaryPid, const std::string& targetPath,
                          double timeoutSeconds);

}  // namespace tessarine
