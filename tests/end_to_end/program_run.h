// Running built programs as separate processes, in real time.
#pragma once

#include <map>
#include <memory>
#include <ostream>
#include <string>
#include <vector>

namespace tessarine::test {

// What a process left behind.
struct ProgramRun {
  int exitStatus = 0;  // 128 + the signal's number when a signal ended it
  std::string output;
  std::string errors;
  double seconds = 0;
  bool operator==(const ProgramRun& other) const {
    return exitStatus == other.exitStatus && output == other.output && errors == other.errors;
  }
};
void PrintTo(const ProgramRun& run, std::ostream* stream);

using Environment = std::map<std::string, std::string>;

// Paths of the programs under test.
std::string toolPath();     // tessarine
std::string desktopPath();  // tessarine-desktop
std::string capturePath();  // background-window-capture
std::string peakMemoryPath();

// A started process. Destroying it ends it with SIGKILL if it is still running.
class RunningProgram {
 public:
  // `environment` is added to this process's own.
  explicit RunningProgram(const std::vector<std::string>& commandLine,
                          const Environment& environment = {});
  ~RunningProgram();
  RunningProgram(const RunningProgram&) = delete;
  RunningProgram& operator=(const RunningProgram&) = delete;

  void sendSignal(int signal) const;
  // Blocks until one line has been written to standard output, and returns it without its end.
  std::string readLine();
  // Blocks until the process has ended.
  ProgramRun finish();

 private:
  struct State;
  std::unique_ptr<State> state_;
};

ProgramRun runProgram(const std::vector<std::string>& commandLine,
                      const Environment& environment = {});

// tessarine with these arguments, without a desktop.
ProgramRun runTessarine(const std::vector<std::string>& arguments,
                        const Environment& environment = {});

// `tessarine-desktop run SCENARIO -- tessarine ARGUMENTS`.
ProgramRun runOnDesktop(const std::string& scenario, const std::vector<std::string>& arguments);

}  // namespace tessarine::test
