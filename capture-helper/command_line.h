// The helper's command line.
#pragma once

#include <cstdint>
#include <string>
#include <variant>
#include <vector>

namespace tessarine {

struct ListCommand {};
struct CaptureCommand {
  std::uint32_t window = 0;
  std::string file;
};
struct PermissionsCommand {
  bool json = false;
};
struct HelpCommand {};
using HelperCommand = std::variant<ListCommand, CaptureCommand, PermissionsCommand, HelpCommand>;

inline constexpr const char* helperUsage =
    R"(usage: background-window-capture list
       background-window-capture capture --window-id NUMBER --out FILE
       background-window-capture permissions [--json]

  list         prints a line for each window on the screen, front to back, with tabs between
               NUMBER, pid=PID, app=NAME, title=TITLE and frame=X,Y,WIDTH,HEIGHT
  capture      writes the window as a PNG to FILE
  permissions  says which permissions the calling program has, and asks nobody for one

Exit status: 0 done, 1 not done or not every permission granted, 2 a bad command line.
)";

// Reads the arguments that follow the program's own name. Throws ToolError usage with one line:
//   "missing command: list, capture or permissions", "unknown command: " + word,
//   "unexpected argument: " + argument, option + " requires a value",
//   "--window-id requires a positive window number", "--window-id is required",
//   "--out is required".
HelperCommand parseHelperCommand(const std::vector<std::string>& arguments);

}  // namespace tessarine
