#include "platform/processes.h"

#include "core/numbers.h"
#include "core/tables.h"
#include "core/text.h"
#include "core/tool_error.h"
#include "platform/child_process.h"
#include "platform/clock.h"
#include "platform/files.h"
#include "platform/own_process.h"

namespace tessarine {
namespace {

constexpr double scriptPollSeconds = 0.02;
constexpr double programPollSeconds = 0.005;

std::string replacingAll(std::string text, const std::string& piece, const std::string& by) {
  for (auto at = text.find(piece); at != std::string::npos; at = text.find(piece, at + by.size())) {
    text.replace(at, piece.size(), by);
  }
  return text;
}

// Waits for the script; at the deadline ends it and throws.
int exitStatusWithin(ChildProcess& script, double timeoutSeconds) {
  const double deadline = currentTime() + timeoutSeconds;
  while (isRunning(script)) {
    if (!(currentTime() < deadline)) {
      terminate(script);
      throw ToolError::timedOut("osascript exceeded " + formatDouble(timeoutSeconds) + "s");
    }
    sleepSeconds(scriptPollSeconds);
  }
  return waitForExit(script);
}

}  // namespace

std::string helperExecutable(const std::string& name) {
  const std::string& program = tables().programPath;
  const std::string ownDirectory =
      program.empty() ? "" : parentDirectory(standardizedPath(program));
  const std::string besideProgram = appendingComponent(ownDirectory, name);
  if (isExecutableFile(besideProgram)) return besideProgram;
  const std::string helperDirectory = environmentVariable("ZORVILET_BIN");
  if (!helperDirectory.empty()) {
    const std::string named = appendingComponent(standardizedPath(helperDirectory), name);
    if (isExecutableFile(named)) return named;
  }
  return besideProgram;
}

std::string commandOutput(const std::string& path, const std::vector<std::string>& arguments) {
  const StartedChild started = startChild(path, arguments);
  if (!started.child) return {};
  const std::string output = readStandardOutput(*started.child);
  waitForExit(*started.child);
  return isUtf8(output) ? output : std::string();
}

std::optional<std::string> commandOutputWithin(const std::string& path,
                                               const std::vector<std::string>& arguments,
                                               double timeoutSeconds) {
  const StartedChild started = startChild(path, arguments);
  if (!started.child) return {};
  const double deadline = currentTime() + timeoutSeconds;
  while (isRunning(*started.child)) {
    if (!(currentTime() < deadline)) {
      terminate(*started.child);
      return {};
    }
    sleepSeconds(programPollSeconds);
  }
  if (waitForExit(*started.child) != 0) return {};
  std::string output = readStandardOutput(*started.child);
  if (!isUtf8(output)) return {};
  return output;
}

bool commandSucceeded(const std::string& path, const std::vector<std::string>& arguments) {
  const StartedChild started = startChild(path, arguments);
  return started.child && waitForExit(*started.child) == 0;
}

std::string processCommand(std::int32_t pid) {
  return trimmed(commandOutput(psPath, {"-p", std::to_string(pid), "-o", "command="}));
}

std::string appleScriptStringLiteral(const std::string& text) {
  return replacingAll(replacingAll(shellQuoted(text), "\r", "\\r"), "\n", "\\n");
}

std::string shellQuoted(const std::string& text) {
  return replacingAll(replacingAll(text, "\\", "\\\\"), "\"", "\\\"");
}

void runAppleScript(const std::vector<std::string>& lines, double timeoutSeconds) {
  std::vector<std::string> arguments;
  for (const std::string& line : lines) {
    arguments.insert(arguments.end(), {"-e", line});
  }
  const StartedChild script = startChild(osascriptPath, arguments);
  if (!script.child) {
    throw ToolError::actionFailed("failed to start osascript: " + script.startError);
  }
  if (exitStatusWithin(*script.child, timeoutSeconds) == 0) return;
  const std::string complaint = readStandardError(*script.child);
  throw ToolError::actionFailed(isUtf8(complaint) ? trimmed(complaint) : "osascript failed");
}

void chooseFolderWithSystemEvents(const std::string& path) {
  runAppleScript({
      "tell application \"System Events\"",
      "keystroke \"g\" using {command down, shift down}",
      "delay 0.25",
      "keystroke \"a\" using {command down}",
      "keystroke \"" + appleScriptStringLiteral(path) + "\"",
      "delay 0.45",
      "key code 36",
      "delay 0.70",
      "key code 36",
      "end tell",
  });
}

}  // namespace tessarine
