#include "capture-helper/helper.h"

#include <ostream>

#include "capture-helper/command_line.h"
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

struct Performer {
  std::ostream& output;

  void operator()(const ListCommand&) const {
    auto windows = onScreenWindows();
    readWithheldTitles(windows);
    for (const ListedWindow& window : windows) output << windowLine(window);
  }
  void operator()(const CaptureCommand& command) const {
    snapshotWindow(command.window, command.file);
  }
  void operator()(const HelpCommand&) const { output << helperUsage; }
};

void report(const std::string& message, std::ostream& errors) {
  errors << "background-window-capture: " << onOneLine(message) << '\n';
}

}  // namespace

int runCaptureHelper(const std::vector<std::string>& arguments, std::ostream& output,
                     std::ostream& errors) {
  int status = statusNotDone;
  try {
    std::visit(Performer{output}, parseHelperCommand(arguments));
    if (output.flush()) return statusDone;
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
