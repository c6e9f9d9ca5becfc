// Work on threads of its own, in real time.
#include "dispatch/dispatch.h"

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <thread>

#include "simulator/frameworks/object.h"

namespace {

using Clock = std::chrono::steady_clock;

// One for all groups. Never destroyed: threads may outlive the end of main.
struct Groups {
  std::mutex mutex;
  std::condition_variable emptied;
};

Groups& groups() {
  static Groups& only = *new Groups;
  return only;
}

long& entered(dispatch_group_t group, const char* user) {
  return simulator::payload<simulator::DispatchGroup>(group, user).entered;
}

}  // namespace

dispatch_time_t dispatch_time(dispatch_time_t when, std::int64_t nanoseconds) {
  if (when == DISPATCH_TIME_FOREVER) return when;
  if (when == DISPATCH_TIME_NOW) {
    const std::chrono::nanoseconds now = Clock::now().time_since_epoch();
    when = static_cast<dispatch_time_t>(now.count());
  }
  if (nanoseconds < 0) simulator::refuse(__func__, "a time in the past is not modelled");
  const auto later = when + static_cast<dispatch_time_t>(nanoseconds);
  return later < when ? DISPATCH_TIME_FOREVER : later;
}

void dispatch_async_f(dispatch_queue_t, void* context, dispatch_function_t work) {
  std::thread(work, context).detach();
}

void dispatch_group_enter(dispatch_group_t group) {
  const std::lock_guard lock(groups().mutex);
  ++entered(group, __func__);
}

void dispatch_group_leave(dispatch_group_t group) {
  const std::lock_guard lock(groups().mutex);
  if (--entered(group, __func__) < 0) {
    simulator::refuse(__func__, "the group was left more often than entered");
  }
  groups().emptied.notify_all();
}

std::intptr_t dispatch_group_wait(dispatch_group_t group, dispatch_time_t timeout) {
  std::unique_lock lock(groups().mutex);
  const long& inside = entered(group, __func__);
  const auto empty = [&] { return inside == 0; };
  if (timeout == DISPATCH_TIME_FOREVER) {
    groups().emptied.wait(lock, empty);
    return 0;
  }
  const std::chrono::nanoseconds since(static_cast<std::int64_t>(timeout));
  const Clock::time_point deadline(std::chrono::duration_cast<Clock::duration>(since));
  return groups().emptied.wait_until(lock, deadline, empty) ? 0 : 1;
}
