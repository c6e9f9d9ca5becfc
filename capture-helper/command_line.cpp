#include "capture-helper/command_line.h"

#include "core/numbers.h"
#include "core/tool_error.h"

namespace tessarine {
namespace {

std::uint32_t windowNumber(const std::string& value) {
  const auto number = parseUInt32(value);
  if (!number || *number == 0) {
    throw ToolError::usage("--window-id requires a positive window number");
  }
  return *number;
}

CaptureCommand parseCapture(const std::vector<std::string>& arguments) {
  CaptureCommand command;
  for (std::size_t i = 1; i < arguments.size(); ++i) {
    const std::string& option = arguments[i];
    if (option != "--window-id" && option != "--out") {
      throw ToolError::usage("unexpected argument: " + option);
    }
    if (++i == arguments.size() || arguments[i].empty()) {
      throw ToolError::usage(option + " requires a value");
    }
    if (option == "--out") {
      command.file = arguments[i];
    } else {
      command.window = windowNumber(arguments[i]);
    }
  }
  if (command.window == 0) throw ToolError::usage("--window-id is required");
  if (command.file.empty()) throw ToolError::usage("--out is required");
  return command;
}

PermissionsCommand parsePermissions(const std::vector<std::string>& arguments) {
  for (std::size_t i = 1; i < arguments.size(); ++i) {
    if (arguments[i] != "--json") throw ToolError::usage("unexpected argument: " + arguments[i]);
  }
  return {.json = arguments.size() > 1};
}

}  // namespace

HelperCommand parseHelperCommand(const std::vector<std::string>& arguments) {
  if (arguments.empty()) throw ToolError::usage("missing command: list, capture or permissions");
  const std::string& word = arguments.front();
  if (word == "capture") return parseCapture(arguments);
  if (word == "permissions") return parsePermissions(arguments);
  if (word != "list" && word != "--help" && word != "-h") {
    throw ToolError::usage("unknown command: " + word);
  }
  if (arguments.size() > 1) throw ToolError::usage("unexpected argument: " + arguments[1]);
  if (word == "list") return ListCommand{};
  return HelpCommand{};
}

}  // namespace tessarine
