#include "capture-helper/helper.h"

#include <ostream>

#include "capture-helper/command_line.h"
#include "capture-helper/permission_lines.h"
#include "capture-helper/permissions.h"
#include "capture-helper/snapshot.h"
#include "capture-helper/window_line.h"
#include "capture-helper/window_list.h"
#include "capture-helper/withheld_titles.h"
#include "core/text.h"
#include "core/tool_error.h"

namespace tessarine {
namespace {

constexpr int statusDone = 0;
constexpr int statusNotDone = 1;
constexpr int statusBadCommandLine = 2;

// Each answers the exit status.
struct Performer {
  std::ostream& output;

  int operator()(const ListCommand&) const {
    auto windows = onScreenWindows();
    readWithheldTitles(windows);
    for (const ListedWindow& window : windows) output << windowLine(window);
    return statusDone;
  }
  int operator()(const CaptureCommand& command) const {
    snapshotWindow(command.window, command.file);
    return statusDone;
  }
  int operator()(const PermissionsCommand& command) const {
    const auto permissions = readPermissions();
    output << (command.json ? permissionsJson(permissions) : permissionLines(permissions));
    return allGranted(permissions) ? statusDone : statusNotDone;
  }
  int operator()(const HelpCommand&) const {
    output << helperUsage;
    return statusDone;
  }
};

void report(const std::string& message, std::ostream& errors) {
  errors << "background-window-capture: " << onOneLine(message) << '\n';
}

}  // namespace

int runCaptureHelper(const std::vector<std::string>& arguments, std::ostream& output,
                     std::ostream& errors) {
  int status = statusNotDone;
  try {
    const int performed = std::visit(Performer{output}, parseHelperCommand(arguments));
    if (output.flush()) return performed;
    report("cannot write to standard output", errors);
  } catch (const ToolError& error) {
    report(error.message(), errors);
    if (error.errorCase() == ToolError::Case::usage) status = statusBadCommandLine;
  } catch (const std::exception& error) {
    report(error.what(), errors);
  }
  return status;
}

}  // namespace tessarine
