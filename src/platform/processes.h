// Other programs: where the capture helper is, running programs and reading their output, process
// command lines, and AppleScript.
//
// Programs are started directly, never through a shell. Every call blocks until its child has
// exited, without a time limit, except runAppleScript, which at its limit sends the script SIGTERM
// and throws, and commandOutputWithin; nobody waits for what they ended.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace tessarine {

inline constexpr const char* osascriptPath = "/usr/bin/osascript";
inline constexpr const char* psPath = "/bin/ps";
inline constexpr const char* captureHelperName = "background-window-capture";

// The first executable file of that name in the program's own directory, then in the directory that
// the environment variable ZORVILET_BIN names; the path in the program's own directory when neither
// exists, so that starting it fails.
std::string helperExecutable(const std::string& name);

// Standard output as it stands; empty when the program does not start or its output is not UTF-8.
// The exit status is ignored.
std::string commandOutput(const std::string& path, const std::vector<std::string>& arguments);

// Standard output of a program that has exited with status 0 within the time; absent for any other,
// and when its output is not UTF-8. At the limit it is sent SIGTERM. One that prints more than a
// pipe holds (64 KiB) does not end.
std::optional<std::string> commandOutputWithin(const std::string& path,
                                               const std::vector<std::string>& arguments,
                                               double timeoutSeconds);

// Whether the program started and exited with status 0. Its output is not read.
bool commandSucceeded(const std::string& path, const std::vector<std::string>& arguments);

// The command line of a process; empty when there is no such process.
std::string processCommand(std::int32_t pid);

// The text as it stands between double quotes in AppleScript; the quotes are not added.
std::string appleScriptStringLiteral(const std::string& text);

// Backslashes and double quotes escaped; no quotes added.
std::string shellQuoted(const std::string& text);

inline constexpr double defaultScriptSeconds = 3.0;

// Runs a script, one argument for each line, and returns when it succeeded. Throws ToolError
// - actionFailed "failed to start osascript: " + the start error,
// - timedOut "osascript exceeded " + timeoutSeconds + "s" (the script was sent SIGTERM),
// - actionFailed with the script's trimmed standard error (which may be empty) when it failed, or
//   "osascript failed" when that is not UTF-8. Standard error is read to its end, however long
//   that takes.
void runAppleScript(const std::vector<std::string>& lines,
                    double timeoutSeconds = defaultScriptSeconds);

// Chooses a folder in the panel of whatever application is frontmost, by keystrokes through System
// Events: opens the go-to-folder sheet, replaces its text by the path, and presses Return for the
// sheet and again for the panel. Throws what runAppleScript throws.
void chooseFolderWithSystemEvents(const std::string& path);

}  // namespace tessarine
