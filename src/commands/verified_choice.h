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

// choose-folder and choose-path with --verify: make the browser's panel choose the file or folder.
// They wait up to `timeoutSeconds` for the panel and its controls, at least one look; nothing is
// begun later than 4 s before the watchdog. The application that was frontmost is frontmost again
// afterwards, if one of the panel's processes has come to the front meanwhile.
//
// The results have the keys of the command, "strategy" "verified", "dialogPid" and "dialogApp" of
// the process in whose tree the panel was found, "verified": "folder shown" or "entry selected",
// what was seen last, and "verifiedPath", the target's canonical path.
//
// Before anything is touched they throw ToolError
// - actionFailed "not verified: the path is empty", "not verified: the path is not UTF-8",
// - choose-folder: notFound "folder does not exist: " + path, usage "path is not a directory: " +
//   path; choose-path: notFound "path does not exist: " + path,
// then ToolError actionFailed, always one line (line breaks in paths become blanks), which begins
// with "not verified: " and goes on with one of these; BROWSER is its name and pid ("Google Chrome
// 812"), WHAT a folder that is seen, and what is selected in it ("/a with /a/b selected"), WHY how
// the ways there failed ("no go-to sheet opened; /a/b is not listed in /a: ..."):
//   "no process has the pid PID"
//   "no open panel of BROWSER was found within SECONDSs", "BROWSER does not answer"
//   "COUNT panels are open (BROWSER: COUNT, panel service PID: COUNT)"
//   "the panel (BROWSER) shows no list of entries", "the panel (BROWSER) has no confirm button",
//   with the service's name and pid for a panel that it alone shows
//   "a folder for a file panel: PATH", "a file for a folder panel: PATH"
//   "the panel shows WHAT, not PATH (WHY)"
//   "the panel shows PATH, but its confirm button is disabled", "... is gone", "... does not
//   answer", "the panel shows PATH, but it changes", "... but somebody is at work in it"
//   "the time is up, and the panel shows WHAT, not PATH (WHY)",
//   "the time is up, and the panel, which shows PATH, is not confirmed"; all these followed by
//   ": what it will choose is unknown" when the go-to sheet's Return may still come to something
//   "the panel closed before it was verified: what it chose is unknown"
//   "the panel was gone before its confirm button was pressed: what it chose is unknown"
//   "the panel did not show PATH any more when it was confirmed: what it chose is unknown"
//   "the confirm button was gone before it was pressed: what the panel will choose is unknown"
//   "the panel did not close within SECONDSs after its button was pressed: what it will choose " +
//   "is unknown"
//   "somebody pressed a key or a button in PID while it was confirmed: what it chose is unknown"
//   "the panel is gone, but its window NUMBER is still listed: what it chose is unknown"
//   "the browser PID ended with its panel: what it chose is unknown"
// The panel stays open unless it closed itself; a go-to sheet that was opened is closed again, or
// the message ends in "; its go-to sheet is still open". When the panel goes while it is tidied the
// message ends in "; it has closed since: what it chose is unknown".
Result chooseFolderVerified(std::int32_t primaryPid, const std::string& targetPath,
                            double timeoutSeconds);
Result choosePathVerified(std::int32_t primaryPid, const std::string& targetPath,
                          double timeoutSeconds);

}  // namespace tessarine
