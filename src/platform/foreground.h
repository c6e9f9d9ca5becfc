// Which application is frontmost: taking the foreground for a while and giving it back. Nothing
// here fails of its own: an activation that does not work is ignored.
#pragma once

#include <cstdint>
#include <optional>

#include "core/finally.h"
#include "platform/workspace.h"

namespace tessarine {

// Makes a process frontmost through System Events. Whether the script ran and succeeded; waits for
// it without a time limit.
bool setProcessFrontmost(std::int32_t pid);

// Gives the foreground back to the application, unless it has it: by activating it when it is
// running, through System Events otherwise. A pid below 1 is left alone.
void restoreFrontmostApplication(std::int32_t pid);

// For as long as this lives the target is frontmost: brought to the front by activation and by
// System Events, with 0.55 s after that. Then the application that was frontmost before is
// activated, unless there was none or it was the target itself. Unlike restoreFrontmostApplication
// this does not ask whether it has terminated.
class TemporaryForeground {
 public:
  explicit TemporaryForeground(std::int32_t targetPid);
  ~TemporaryForeground();
  TemporaryForeground(const TemporaryForeground&) = delete;
  TemporaryForeground& operator=(const TemporaryForeground&) = delete;

 private:
  std::optional<std::int32_t> previousPid_ = frontmostApplicationPid();
  std::int32_t targetPid_;
};

// Runs the operation with the target frontmost, and gives the foreground back whether it returned
// or threw. Without `enabled` it only runs the operation.
template <class Operation>
auto withTemporaryForeground(std::int32_t pid, bool enabled, const Operation& operation) {
  if (!enabled) return operation();
  const TemporaryForeground taken(pid);
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
