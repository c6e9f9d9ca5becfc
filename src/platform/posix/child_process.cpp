#include "platform/child_process.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <optional>
#include <utility>

extern char** environ;

namespace tessarine {

// A file descriptor that is open for as long as this lives.
class Descriptor {
 public:
  explicit Descriptor(int number) : number_(number) {}
  Descriptor(Descriptor&& other) noexcept : number_(std::exchange(other.number_, -1)) {}
  ~Descriptor() {
    if (number_ >= 0) close(number_);
  }
  int get() const { return number_; }

 private:
  int number_;
};

class ChildProcess {
 public:
  pid_t pid = 0;
  Descriptor standardOutput;
  Descriptor standardError;
  std::optional<int> exitStatus = {};
};

namespace {

// Both ends of a pipe; neither is inherited by children unless it is handed to them.
struct Pipe {
  Descriptor readEnd;
  Descriptor writeEnd;
};

std::optional<Pipe> openPipe() {
  std::array<int, 2> ends{};
  if (pipe(ends.data()) != 0) return {};
  for (const int end : ends) fcntl(end, F_SETFD, FD_CLOEXEC);
  return Pipe{Descriptor(ends[0]), Descriptor(ends[1])};
}

// Children begin with no signal blocked or ignored, whatever this thread and its parents do: the
// threads of the global queues block nearly all, and a child that blocks SIGTERM cannot be ended.
void resetSignals(posix_spawnattr_t& attributes) {
  sigset_t none{};
  sigemptyset(&none);
  sigset_t all{};
  sigfillset(&all);
  posix_spawnattr_setsigmask(&attributes, &none);
  posix_spawnattr_setsigdefault(&attributes, &all);
  posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF);
}

int spawn(pid_t& pid, const std::string& path, const std::vector<std::string>& arguments,
          const Descriptor& output, const Descriptor& errors) {
  std::vector<char*> argv{const_cast<char*>(path.c_str())};
  for (const std::string& argument : arguments) argv.push_back(const_cast<char*>(argument.c_str()));
  argv.push_back(nullptr);
  posix_spawn_file_actions_t actions{};
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_adddup2(&actions, output.get(), STDOUT_FILENO);
  posix_spawn_file_actions_adddup2(&actions, errors.get(), STDERR_FILENO);
  posix_spawnattr_t attributes{};
  posix_spawnattr_init(&attributes);
  resetSignals(attributes);
  const int failure = posix_spawn(&pid, path.c_str(), &actions, &attributes, argv.data(), environ);
  posix_spawnattr_destroy(&attributes);
  posix_spawn_file_actions_destroy(&actions);
  return failure;
}

int statusOf(int waited) {
  return WIFEXITED(waited) ? WEXITSTATUS(waited) : WTERMSIG(waited);
}

// Collects the exit status; with WNOHANG only if the child has exited. A child that somebody else
// collected counts as failed.
void collect(ChildProcess& child, int flags) {
  if (child.exitStatus) return;
  int waited = 0;
  pid_t collected = 0;
  do {
    collected = waitpid(child.pid, &waited, flags);
  } while (collected < 0 && errno == EINTR);
  if (collected > 0) child.exitStatus = statusOf(waited);
  if (collected < 0) child.exitStatus = EXIT_FAILURE;
}

std::string readToEnd(const Descriptor& descriptor) {
  std::string text;
  std::array<char, 16384> buffer{};
  for (;;) {
    const ssize_t count = read(descriptor.get(), buffer.data(), buffer.size());
    if (count < 0 && errno == EINTR) continue;
    if (count <= 0) return text;
    text.append(buffer.data(), static_cast<std::size_t>(count));
  }
}

}  // namespace

void ChildProcessDeleter::operator()(ChildProcess* child) const {
  // Its pipes go first, so that one that still writes ends.
  {
    const auto pipes = std::pair(std::move(child->standardOutput), std::move(child->standardError));
  }
  collect(*child, WNOHANG);
  delete child;
}

StartedChild startChild(const std::string& path, const std::vector<std::string>& arguments) {
  auto output = openPipe();
  auto errors = output ? openPipe() : std::nullopt;
  if (!errors) return {nullptr, std::strerror(errno)};
  pid_t pid = 0;
  const int failure = spawn(pid, path, arguments, output->writeEnd, errors->writeEnd);
  if (failure != 0) return {nullptr, std::strerror(failure)};
  return {ChildProcessPtr(
              new ChildProcess{pid, std::move(output->readEnd), std::move(errors->readEnd)}),
          {}};
}

bool isRunning(ChildProcess& child) {
  collect(child, WNOHANG);
  return !child.exitStatus;
}

int waitForExit(ChildProcess& child) {
  collect(child, 0);
  return *child.exitStatus;
}

void terminate(ChildProcess& child) {
  if (!child.exitStatus) kill(child.pid, SIGTERM);
}

std::string readStandardOutput(ChildProcess& child) {
  return readToEnd(child.standardOutput);
}

std::string readStandardError(ChildProcess& child) {
  return readToEnd(child.standardError);
}

}  // namespace tessarine
