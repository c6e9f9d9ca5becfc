#include "cli/entry.h"

#include <nlohmann/json.hpp>
#include <ostream>

#include "cli/dispatch.h"
#include "cli/options.h"
#include "cli/watchdog.h"
#include "core/tables.h"
#include "core/time_budget.h"
#include "core/tool_error.h"

namespace tessarine {
namespace {

// The options of this run, for which it fills the tables.
Options prepareRun(const std::vector<std::string>& arguments) {
  initializeTables();
  const auto program = arguments.begin();
  const bool named = !arguments.empty();
  if (named) tables().programPath = *program;
  const Options options = parseArgs({program + (named ? 1 : 0), arguments.end()});
  tables().excludedPanelWindowIDs = options.excludedWindowIDs;
  return options;
}

Result carryOut(const Options& options) {
  return runUnderWatchdog(watchdogSeconds(options.timeoutSeconds),
                          [options] { return run(options); });
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
    output << serialize(carryOut(prepareRun(arguments))) << '\n';
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
