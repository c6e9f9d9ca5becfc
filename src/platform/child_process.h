// Child processes: started directly, never through a shell, with the parent's environment, one pipe
// on standard output and another on standard error.
#pragma once

#include <memory>
#include <string>
#include <vector>

namespace tessarine {

class ChildProcess;  // completed by the implementation that is linked

// Closes the pipes and lets go of the child without waiting for it.
struct ChildProcessDeleter {
  void operator()(ChildProcess* child) const;
};
using ChildProcessPtr = std::unique_ptr<ChildProcess, ChildProcessDeleter>;

// A started child, or, when `child` is empty, the system's description of why it did not start.
struct StartedChild {
  ChildProcessPtr child;
  std::string startError;
};

StartedChild startChild(const std::string& path, const std::vector<std::string>& arguments);

bool isRunning(ChildProcess& child);

// Blocks until the child has exited and returns its exit status; for a child that a signal ended,
// the signal's number (so never 0).
int waitForExit(ChildProcess& child);

// Asks the child to end (SIGTERM); returns at once.
void terminate(ChildProcess& child);

// Each blocks until the child, and every process that inherited the stream from it, has closed that
// stream, and returns all that was written to it.
std::string readStandardOutput(ChildProcess& child);
std::string readStandardError(ChildProcess& child);

}  // namespace tessarine
