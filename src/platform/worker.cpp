#include "platform/worker.h"

#include <dispatch/dispatch.h>

#include <cstdint>
#include <memory>
#include <utility>

namespace tessarine {
namespace {

// About what a signed 64-bit count of them holds.
constexpr double mostNanoseconds = 9.2e18;

dispatch_time_t deadlineAfter(double seconds) {
  const double nanoseconds = seconds * static_cast<double>(NSEC_PER_SEC);
  if (!(nanoseconds < mostNanoseconds)) return DISPATCH_TIME_FOREVER;
  return dispatch_time(DISPATCH_TIME_NOW, static_cast<std::int64_t>(nanoseconds));
}

// A piece of work and the group that is empty when it has been done.
class Task {
 public:
  explicit Task(std::function<void()> work) : work_(std::move(work)) {
    dispatch_group_enter(group_);
    dispatch_async_f(dispatch_get_global_queue(QOS_CLASS_USER_INITIATED, 0), this, run);
  }
  ~Task() { dispatch_release(group_); }
  Task(const Task&) = delete;
  Task& operator=(const Task&) = delete;

  bool endsBy(dispatch_time_t deadline) const { return dispatch_group_wait(group_, deadline) == 0; }

 private:
  static void run(void* context) {
    const auto* task = static_cast<Task*>(context);
    task->work_();
    dispatch_group_leave(task->group_);
  }

  std::function<void()> work_;
  dispatch_group_t group_ = dispatch_group_create();
};

}  // namespace

bool endsWithin(double seconds, std::function<void()> work) {
  auto task = std::make_unique<Task>(std::move(work));
  const bool ended = task->endsBy(deadlineAfter(seconds));
  // Its worker may still be at it: it is left to the worker.
  if (!ended) static_cast<void>(task.release());
  return ended;
}

}  // namespace tessarine
