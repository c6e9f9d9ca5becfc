#include "end_to_end/program_run.h"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <chrono>
#include <cstdlib>
#include <stdexcept>

#include "support/result_log.h"

namespace tessarine::test {
namespace {

using Clock = std::chrono::steady_clock;

[[noreturn]] void becomeProgram(const std::vector<std::string>& commandLine,
                                const Environment& environment, int output, int errors) {
  dup2(output, STDOUT_FILENO);
  dup2(errors, STDERR_FILENO);
  for (const auto& [name, value] : environment) setenv(name.c_str(), value.c_str(), 1);
  std::vector<char*> argv;
  for (const std::string& word : commandLine) argv.push_back(const_cast<char*>(word.c_str()));
  argv.push_back(nullptr);
  execv(argv.front(), argv.data());
  _exit(127);
}

// Appends what can be read; closes the descriptor at its end.
void readSome(int& descriptor, std::string& text) {
  std::array<char, 4096> buffer{};
  const ssize_t count = read(descriptor, buffer.data(), buffer.size());
  if (count > 0) {
    text.append(buffer.data(), static_cast<std::size_t>(count));
  } else {
    close(descriptor);
    descriptor = -1;
  }
}

}  // namespace

struct RunningProgram::State {
  pid_t pid = -1;
  int output = -1;
  int errors = -1;
  std::string outputText;
  std::string errorText;
  Clock::time_point started = Clock::now();

  // Waits for either stream and reads from it; false once both have ended.
  bool readStreams() {
    std::array<pollfd, 2> streams{{{output, POLLIN, 0}, {errors, POLLIN, 0}}};
    if (output < 0 && errors < 0) return false;
    poll(streams.data(), streams.size(), -1);
    if (streams[0].revents != 0) readSome(output, outputText);
    if (streams[1].revents != 0) readSome(errors, errorText);
    return true;
  }
};

void PrintTo(const ProgramRun& run, std::ostream* stream) {
  *stream << "exit status " << run.exitStatus << "\noutput: " << run.output
          << "\nerrors: " << run.errors;
}

std::string toolPath() {
  return TESSARINE_PROGRAM;
}

std::string desktopPath() {
  return DESKTOP_PROGRAM;
}

std::string capturePath() {
  return CAPTURE_PROGRAM;
}

std::string peakMemoryPath() {
  return PEAK_MEMORY_PROGRAM;
}

RunningProgram::RunningProgram(const std::vector<std::string>& commandLine,
                               const Environment& environment)
    : state_(std::make_unique<State>()) {
  std::array<int, 2> output{};
  std::array<int, 2> errors{};
  if (pipe2(output.data(), O_CLOEXEC) != 0 || pipe2(errors.data(), O_CLOEXEC) != 0) {
    throw std::runtime_error("no pipe");
  }
  state_->pid = fork();
  if (state_->pid == 0) becomeProgram(commandLine, environment, output[1], errors[1]);
  close(output[1]);
  close(errors[1]);
  state_->output = output[0];
  state_->errors = errors[0];
}

RunningProgram::~RunningProgram() {
  if (state_->pid < 0) return;
  kill(state_->pid, SIGKILL);
  finish();
}

void RunningProgram::sendSignal(int signal) const {
  kill(state_->pid, signal);
}

std::string RunningProgram::readLine() {
  std::size_t end = std::string::npos;
  while ((end = state_->outputText.find('\n')) == std::string::npos && state_->readStreams()) {
  }
  const std::string line = state_->outputText.substr(0, end);
  state_->outputText.erase(0, end == std::string::npos ? end : end + 1);
  return line;
}

ProgramRun RunningProgram::finish() {
  while (state_->readStreams()) {
  }
  int status = 0;
  waitpid(state_->pid, &status, 0);
  state_->pid = -1;
  const std::chrono::duration<double> lasted = Clock::now() - state_->started;
  keepResult(state_->outputText);
  return {WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status), state_->outputText,
          state_->errorText, lasted.count()};
}

ProgramRun runProgram(const std::vector<std::string>& commandLine, const Environment& environment) {
  return RunningProgram(commandLine, environment).finish();
}

ProgramRun runTessarine(const std::vector<std::string>& arguments, const Environment& environment) {
  std::vector<std::string> commandLine{toolPath()};
  commandLine.insert(commandLine.end(), arguments.begin(), arguments.end());
  return runProgram(commandLine, environment);
}

ProgramRun runOnDesktop(const std::string& scenario, const std::vector<std::string>& arguments) {
  std::vector<std::string> commandLine{desktopPath(), "run", scenario, "--", toolPath()};
  commandLine.insert(commandLine.end(), arguments.begin(), arguments.end());
  return runProgram(commandLine);
}

}  // namespace tessarine::test
