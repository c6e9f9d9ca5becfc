#include "cli/options.h"

#include <algorithm>
#include <array>
#include <ostream>

#include "core/numbers.h"
#include "core/tool_error.h"

namespace tessarine {
namespace {

struct CommandName {
  CommandKind kind;
  std::string_view name;
};

constexpr std::array<CommandName, 9> commandNames{{
    {CommandKind::close, "close"},
    {CommandKind::chooseFolder, "choose-folder"},
    {CommandKind::choosePath, "choose-path"},
    {CommandKind::clickPoint, "click-point"},
    {CommandKind::typeText, "type-text"},
    {CommandKind::pressKey, "press-key"},
    {CommandKind::listWindows, "list-windows"},
    {CommandKind::listBackgroundPanels, "list-background-panels"},
    {CommandKind::inspectOpenDialog, "inspect-open-dialog"},
}};

void excludeWindow(Options& options, const std::string& value) {
  const auto windowID = parseUInt32(value);
  if (!windowID || *windowID == 0) {
    throw ToolError::usage("--exclude-window-id requires a positive window ID");
  }
  options.excludedWindowIDs.insert(*windowID);
}

struct ValueOption {
  std::string_view name;
  void (*apply)(Options& options, const std::string& value);
};

constexpr std::array<ValueOption, 8> valueOptions{{
    {"--pid", [](Options& o, const std::string& v) { o.pid = parseInt32(v).value_or(0); }},
    {"--path", [](Options& o, const std::string& v) { o.path = v; }},
    {"--timeout",
     [](Options& o, const std::string& v) {
       o.timeoutSeconds = parseDouble(v).value_or(defaultTimeoutSeconds);
     }},
    {"--x", [](Options& o, const std::string& v) { o.x = parseDouble(v); }},
    {"--y", [](Options& o, const std::string& v) { o.y = parseDouble(v); }},
    {"--text", [](Options& o, const std::string& v) { o.text = v; }},
    {"--key", [](Options& o, const std::string& v) { o.key = v; }},
    {"--exclude-window-id", excludeWindow},
}};

struct FlagOption {
  std::string_view name;
  bool Options::*flag;
};

constexpr std::array<FlagOption, 5> flagOptions{{
    {"--quiet", &Options::quiet},
    {"--prefer-background-panel", &Options::preferBackgroundPanel},
    {"--strict-background", &Options::strictBackground},
    {"--temporary-foreground", &Options::temporaryForeground},
    {"--verify", &Options::verify},
}};

template <class Table>
auto entryNamed(const Table& table, std::string_view name) {
  const auto entry =
      std::ranges::find_if(table, [&](const auto& candidate) { return candidate.name == name; });
  return entry == table.end() ? nullptr : &*entry;
}

bool asksForHelp(std::string_view argument) {
  return argument == "-h" || argument == "--help";
}

void readOptions(const std::vector<std::string>& arguments, Options& options) {
  for (std::size_t i = 1; i < arguments.size(); ++i) {
    const std::string& argument = arguments[i];
    if (const auto* option = entryNamed(valueOptions, argument)) {
      if (++i == arguments.size()) throw ToolError::usage(argument + " requires a value");
      option->apply(options, arguments[i]);
    } else if (const auto* flag = entryNamed(flagOptions, argument)) {
      options.*(flag->flag) = true;
    } else if (asksForHelp(argument)) {
      throw ToolError::usage("");
    } else {
      throw ToolError::usage("unknown arg: " + argument);
    }
  }
}

void require(bool present, const char* message) {
  if (!present) throw ToolError::usage(message);
}

void requireOptionsOf(CommandKind command, const Options& options) {
  switch (command) {
    case CommandKind::chooseFolder:
    case CommandKind::choosePath:
      return require(options.path.has_value(), "--path is required for choose-folder/choose-path");
    case CommandKind::clickPoint:
      return require(options.x && options.y, "--x and --y are required for click-point");
    case CommandKind::typeText:
      return require(options.text.has_value(), "--text is required for type-text");
    case CommandKind::pressKey:
      return require(options.key.has_value(), "--key is required for press-key");
    case CommandKind::close:
    case CommandKind::listWindows:
    case CommandKind::listBackgroundPanels:
    case CommandKind::inspectOpenDialog:
      return;
  }
}

constexpr std::string_view usageText =
    "tessarine — operate macOS Open panels inside a background browser process\n"
    "Usage:\n"
    "\n"
    "  tessarine close --pid PID\n"
    "  tessarine choose-folder --pid PID --path /absolute/folder/path [--timeout 10]"
    " [--prefer-background-panel] [--strict-background] [--temporary-foreground]"
    " [--exclude-window-id ID ...]\n"
    "  tessarine choose-path --pid PID --path /absolute/file/or/folder [--timeout 10]\n"
    "  tessarine click-point --pid PID --x 3205 --y 987\n"
    "  tessarine type-text --pid PID --text \"filename.png\"\n"
    "  tessarine press-key --pid PID --key return|delete|escape|cmd-a|cmd-shift-g\n"
    "  tessarine list-windows --pid PID\n"
    "  tessarine list-background-panels --pid PID\n"
    "  tessarine inspect-open-dialog --pid PID\n";

}  // namespace

std::optional<CommandKind> commandKind(std::string_view name) {
  const auto* entry = entryNamed(commandNames, name);
  if (entry == nullptr) return {};
  return entry->kind;
}

Options parseArgs(const std::vector<std::string>& arguments) {
  require(!arguments.empty(), "missing command");
  const std::string& word = arguments.front();
  if (asksForHelp(word) || word == "help") throw ToolError::usage("");

  Options options;
  options.command = commandKind(word);
  if (!options.command) throw ToolError::usage("unknown command: " + word);
  require(arguments.size() > 1, "--pid is required");
  readOptions(arguments, options);
  require(options.pid >= 1, "--pid is required");
  requireOptionsOf(*options.command, options);
  return options;
}

void printUsage(std::ostream& output) {
  output << usageText;
}

}  // namespace tessarine
