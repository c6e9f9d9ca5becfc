// Which application is frontmost: taking the foreground for a while and giving it back. Nothing
// here fails of its own: an activation that does not work is ignored.
#pragma once

#include <cstdint>
#include <optional>
#include <utility>

#include "platform/workspace.h"

namespace tessarine {

// Makes a process frontmost through System Events. Whether the script ran and succeeded; waits for
// it without a time limit.
bool setProcessFrontmost(std::int32_t pid);

// Gives the foreground back to the application, unless it has it: by activating it when it is
// running, through System Events otherwise. A pid below 1 is left alone.
void restoreFrontmostApplication(std::int32_t pid);

// Brings the process to the front by activation and by System Events, then waits 0.55 s.
void takeForeground(std::int32_t pid);

// Gives the foreground back to the application that had it before the target took it. Does nothing
// when there was none or when it was the target itself. Unlike restoreFrontmostApplication it does
// not ask whether the application has terminated.
void giveForegroundBack(std::optional<std::int32_t> previousPid, std::int32_t targetPid);

// Calls a function when it goes out of scope, whether by return or by exception.
template <class Function>
class Finally {
 public:
  explicit Finally(Function function) : function_(std::move(function)) {}
  ~Finally() { function_(); }
  Finally(const Finally&) = delete;
  Finally& operator=(const Finally&) = delete;

 private:
  Function function_;
};

// Runs the operation with the target frontmost, and gives the foreground back whether it returned
// or threw. Without `enabled` it only runs the operation.
template <class Operation>
auto withTemporaryForeground(std::int32_t pid, bool enabled, const Operation& operation) {
  if (!enabled) return operation();
  const auto previousPid = frontmostApplicationPid();
  takeForeground(pid);
  const Finally restore([&] { giveForegroundBack(previousPid, pid); });
  return operation();
}

// Runs the operation; afterwards, whether it returned or threw, the application that was frontmost
// before is frontmost again. Without `enabled` it only runs the operation.
template <class Operation>
auto withBackgroundFrontmostPreserved(bool enabled, const Operation& operation) {
  if (!enabled) return operation();
  const auto previousPid = frontmostApplicationPid();
  const Finally restore([&] {
    if (previousPid) restoreFrontmostApplication(*previousPid);
  });
  return operation();
}

}  // namespace tessarine
