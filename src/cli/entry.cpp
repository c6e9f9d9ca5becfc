#include "cli/entry.h"

#include <nlohmann/json.hpp>
#include <ostream>

#include "cli/dispatch.h"
#include "cli/options.h"
#include "cli/watchdog.h"
#include "core/tables.h"
#include "core/time_budget.h"
#include "core/tool_error.h"
#include "platform/processes.h"

namespace tessarine {
namespace {

std::string resultText(const std::vector<std::string>& arguments) {
  initializeTables();
  setProgramPath(arguments.empty() ? std::string() : arguments.front());
  const std::vector<std::string> words(arguments.begin() + (arguments.empty() ? 0 : 1),
                                       arguments.end());
  const Options options = parseArgs(words);
  tables().excludedPanelWindowIDs = options.excludedWindowIDs;
  return serialize(runUnderWatchdog(watchdogSeconds(options.timeoutSeconds),
                                    [options] { return run(options); }));
}

ExitStatus reportUsageError(const ToolError& error, std::ostream& output, std::ostream& errors) {
  printUsage(output);
  if (error.message().empty()) return ExitStatus::success;
  errors << error.message() << '\n';
  return ExitStatus::badCommandLine;
}

}  // namespace

ExitStatus runTool(const std::vector<std::string>& arguments, std::ostream& output,
                   std::ostream& errors) {
  try {
    output << resultText(arguments) << '\n';
    return ExitStatus::success;
  } catch (const ToolError& error) {
    if (error.errorCase() == ToolError::Case::usage) {
      return reportUsageError(error, output, errors);
    }
    errors << error.message() << '\n';
  } catch (const std::exception& error) {
    errors << error.what() << '\n';
  } catch (...) {
    errors << "unknown error\n";
  }
  return ExitStatus::failure;
}

}  // namespace tessarine
