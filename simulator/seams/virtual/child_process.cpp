#include "platform/child_process.h"

#include <cerrno>
#include <cstring>

#include "simulator/frameworks/object.h"
#include "simulator/seams/virtual/virtual_world.h"

namespace tessarine {

class ChildProcess {
 public:
  explicit ChildProcess(simulator::ProgramId program) : program_(program) {}

  simulator::ProgramId program() const { return program_; }
  std::optional<simulator::ProgramResult> result() const {
    return simulator::attachedDesktop("a child process").programResult(program_);
  }

 private:
  simulator::ProgramId program_;
};

namespace {

// Time jumps to whatever happens next until the program has ended.
simulator::ProgramResult resultOf(const ChildProcess& child, const char* user) {
  while (true) {
    if (auto result = child.result()) return *result;
    const auto deadline = simulator::attachedDesktop(user).nextDeadline();
    simulator::passTimeUntil(deadline.value_or(simulator::never_answered_price), user);
    if (!deadline && !child.result()) {
      simulator::refuse(user, "waits for ever for a program that does not end");
    }
  }
}

}  // namespace

void ChildProcessDeleter::operator()(ChildProcess* child) const {
  delete child;
}

StartedChild startChild(const std::string& path, const std::vector<std::string>& arguments) {
  simulator::Desktop& desktop = simulator::attachedDesktop(__func__);
  if (!desktop.hasProgram(path)) return {nullptr, std::strerror(ENOENT)};
  return {ChildProcessPtr(new ChildProcess(desktop.startProgram(path, arguments))), ""};
}

bool isRunning(ChildProcess& child) {
  return !child.result();
}

int waitForExit(ChildProcess& child) {
  return resultOf(child, __func__).exitStatus;
}

void terminate(ChildProcess& child) {
  simulator::attachedDesktop(__func__).terminateProgram(child.program());
}

std::string readStandardOutput(ChildProcess& child) {
  return resultOf(child, __func__).standardOutput;
}

std::string readStandardError(ChildProcess& child) {
  return resultOf(child, __func__).standardError;
}

}  // namespace tessarine
