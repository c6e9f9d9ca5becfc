// The AppleScript that the simulated "osascript" understands.
//
// One statement on each line, words in any case, "--" before a comment:
//   tell application "System Events"            ...  end tell
//   tell application "System Events" to STATEMENT
// Statements to "System Events" (modifiers: command, shift, option and control down):
//   keystroke "TEXT" [using {command down, shift down}]
//   key code NUMBER [using {...}]
//   delay SECONDS
//   set frontmost of first process whose unix id is PID to true
// Statements to "Finder":
//   get displayed name of (POSIX file "PATH" as alias)
#pragma once

#include <cstddef>
#include <cstdint>
#include <stdexcept>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "simulator/desktop/value.h"

namespace simulator {

// The applications that understand it.
inline constexpr std::string_view system_events_application = "System Events";
inline constexpr std::string_view finder_application = "Finder";

struct TypeText {
  std::string text;  // UTF-8
  std::uint64_t flags = 0;
};
struct PressKey {
  std::uint16_t keyCode = 0;
  std::uint64_t flags = 0;
};
struct Delay {
  Seconds seconds = 0;
};
struct BringForward {
  Pid pid = 0;
};
struct ShowDisplayedName {
  std::string path;
};

using Statement = std::variant<TypeText, PressKey, Delay, BringForward, ShowDisplayedName>;

// What "osascript" prints when a script does not compile; `what()` is the whole line.
class SyntaxError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// The statements of a script in order. Throws SyntaxError; aborts on a statement or an application
// that is not listed above.
std::vector<Statement> parseScript(const std::string& source);

}  // namespace simulator
