// The command line, read into one record.
#pragma once

#include <cstdint>
#include <iosfwd>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace tessarine {

enum class CommandKind {
  close,
  chooseFolder,
  choosePath,
  clickPoint,
  typeText,
  pressKey,
  listWindows,
  listBackgroundPanels,
  inspectOpenDialog,
};

// The command of that name, an exact match; absent for anything else.
std::optional<CommandKind> commandKind(std::string_view name);

inline constexpr double defaultTimeoutSeconds = 10.0;

struct Options {
  std::optional<CommandKind> command;  // present after a successful parse
  std::int32_t pid = 0;                // the browser's process
  std::optional<std::string> path;     // target folder or file, as given
  std::optional<double> x;             // click-point, screen points from the top left
  std::optional<double> y;
  std::optional<std::string> text;                // type-text
  std::optional<std::string> key;                 // press-key
  double timeoutSeconds = defaultTimeoutSeconds;  // may be zero, negative or not finite
  bool quiet = false;                             // accepted; no command reads it
  bool preferBackgroundPanel = false;
  bool strictBackground = false;
  bool temporaryForeground = false;
  bool verify = false;
  std::set<std::uint32_t> excludedWindowIDs;
};

// Reads the arguments that follow the program's own name. Every option is accepted with every
// command; an option that takes a value takes the next argument, whatever it looks like. Throws
// ToolError usage with the message of the first check that fails, or with an empty message when
// help was asked for:
//   "missing command", "unknown command: " + word, "--pid is required",
//   option + " requires a value", "--exclude-window-id requires a positive window ID",
//   "unknown arg: " + argument,
//   "--path is required for choose-folder/choose-path",
//   "--x and --y are required for click-point", "--text is required for type-text",
//   "--key is required for press-key".
// A pid, time-out or coordinate that cannot be read does not fail by itself: the pid becomes 0, the
// time-out 10, the coordinate absent.
Options parseArgs(const std::vector<std::string>& arguments);

// Writes the usage text and a newline.
void printUsage(std::ostream& output);

}  // namespace tessarine
