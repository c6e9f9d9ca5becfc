#include "cli/watchdog.h"

#include <dispatch/dispatch.h>

#include <cstdint>
#include <exception>
#include <memory>
#include <nlohmann/json.hpp>
#include <optional>
#include <utility>

#include "core/numbers.h"
#include "core/tool_error.h"

namespace tessarine {
namespace {

// Shared by the worker, which writes the result or the error once, and the waiting thread, which
// reads them only after the group wait succeeded. The enter/leave pair orders the two.
struct Task {
  std::function<Result()> work;
  dispatch_group_t group = nullptr;
  std::optional<Result> result;
  std::exception_ptr error;
};

using TaskPtr = std::shared_ptr<Task>;

void runTask(void* context) {
  const std::unique_ptr<TaskPtr> task(static_cast<TaskPtr*>(context));
  try {
    (*task)->result = (*task)->work();
  } catch (...) {
    (*task)->error = std::current_exception();
  }
  dispatch_group_leave((*task)->group);
}

dispatch_time_t deadlineAfter(double seconds) {
  const double nanoseconds = seconds * static_cast<double>(NSEC_PER_SEC);
  // Beyond what a signed 64-bit count of nanoseconds holds (292 years).
  if (!(nanoseconds < 9.2e18)) return DISPATCH_TIME_FOREVER;
  return dispatch_time(DISPATCH_TIME_NOW, static_cast<std::int64_t>(nanoseconds));
}

}  // namespace

Result runUnderWatchdog(double budgetSeconds, std::function<Result()> work) {
  const auto task = std::make_shared<Task>();
  task->work = std::move(work);
  task->group = dispatch_group_create();
  dispatch_group_enter(task->group);
  dispatch_async_f(dispatch_get_global_queue(QOS_CLASS_USER_INITIATED, 0), new TaskPtr(task),
                   runTask);
  if (dispatch_group_wait(task->group, deadlineAfter(budgetSeconds)) != 0) {
    throw ToolError::timedOut("timed out after " + formatDouble(budgetSeconds) +
                              "s (global watchdog)");
  }
  dispatch_release(task->group);
  if (task->error) std::rethrow_exception(task->error);
  return std::move(*task->result);
}

}  // namespace tessarine
