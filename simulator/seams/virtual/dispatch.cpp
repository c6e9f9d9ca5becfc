#include "dispatch/dispatch.h"

#include <cmath>
#include <condition_variable>
#include <deque>
#include <limits>
#include <memory>
#include <mutex>
#include <thread>

#include "simulator/frameworks/ledger.h"
#include "simulator/frameworks/object.h"
#include "simulator/seams/virtual/virtual_world.h"
#include "simulator/seams/virtual/worker.h"

namespace simulator {
namespace {

struct Work {
  dispatch_function_t function;
  void* context;
};

enum class Outcome { running, done, stopped };

// Shared by a worker and its waiter. A worker that was stopped keeps its share for ever.
struct Handover {
  Seconds patience;
  std::mutex mutex;
  std::condition_variable changed;
  Outcome outcome = Outcome::running;
};

std::deque<Work>& pendingWork() {
  static std::deque<Work> only;
  return only;
}

thread_local Handover* handover = nullptr;

void handBack(Handover& shared, Outcome outcome) {
  const std::lock_guard lock(shared.mutex);
  shared.outcome = outcome;
  shared.changed.notify_all();
}

Outcome run(const Work& work, Seconds patience) {
  const auto shared = std::make_shared<Handover>();
  shared->patience = patience;
  std::thread worker([shared, work] {
    handover = shared.get();
    work.function(work.context);
    handBack(*shared, Outcome::done);
  });
  std::unique_lock lock(shared->mutex);
  shared->changed.wait(lock, [&] { return shared->outcome != Outcome::running; });
  if (shared->outcome == Outcome::done) {
    lock.unlock();
    worker.join();
    return Outcome::done;
  }
  worker.detach();
  return Outcome::stopped;
}

long& entered(dispatch_group_t group, const char* user) {
  return payload<DispatchGroup>(group, user).entered;
}

// Points in time as dispatch counts them: nanoseconds, never 0.
constexpr double nanoseconds_per_second = 1e9;

dispatch_time_t fromSeconds(Seconds time) {
  return static_cast<dispatch_time_t>(std::llround(time * nanoseconds_per_second)) + 1;
}

Seconds toSeconds(dispatch_time_t time) {
  if (time == DISPATCH_TIME_FOREVER) return std::numeric_limits<double>::infinity();
  if (time == DISPATCH_TIME_NOW) return attachedDesktop("dispatch_group_wait").now();
  return static_cast<double>(time - 1) / nanoseconds_per_second;
}

}  // namespace

std::optional<Seconds> waitersPatience() {
  return handover ? std::optional(handover->patience) : std::nullopt;
}

void stopForGood() {
  handBack(*handover, Outcome::stopped);
  std::unique_lock lock(handover->mutex);
  while (true) handover->changed.wait(lock);
}

void forgetPendingWork() {
  pendingWork().clear();
}

}  // namespace simulator

dispatch_time_t dispatch_time(dispatch_time_t when, std::int64_t nanoseconds) {
  if (when == DISPATCH_TIME_FOREVER) return when;
  if (when == DISPATCH_TIME_NOW) {
    when = simulator::fromSeconds(simulator::attachedDesktop(__func__).now());
  }
  if (nanoseconds < 0) simulator::refuse(__func__, "a time in the past is not modelled");
  const auto later = when + static_cast<dispatch_time_t>(nanoseconds);
  return later < when ? DISPATCH_TIME_FOREVER : later;
}

void dispatch_async_f(dispatch_queue_t, void* context, dispatch_function_t work) {
  simulator::pendingWork().push_back({work, context});
}

void dispatch_group_enter(dispatch_group_t group) {
  ++simulator::entered(group, __func__);
}

void dispatch_group_leave(dispatch_group_t group) {
  if (--simulator::entered(group, __func__) < 0) {
    simulator::refuse(__func__, "the group was left more often than entered");
  }
}

std::intptr_t dispatch_group_wait(dispatch_group_t group, dispatch_time_t timeout) {
  const simulator::Seconds patience = simulator::toSeconds(timeout);
  auto& pending = simulator::pendingWork();
  while (simulator::entered(group, __func__) > 0 && !pending.empty()) {
    const simulator::Work work = pending.front();
    pending.pop_front();
    if (simulator::run(work, patience) == simulator::Outcome::stopped) {
      simulator::ledger::abandon();
      return 1;
    }
  }
  if (simulator::entered(group, __func__) == 0) return 0;
  if (timeout == DISPATCH_TIME_FOREVER) {
    simulator::refuse(__func__, "waits for ever for work that nobody does");
  }
  simulator::passTimeUntil(patience, __func__);
  return 1;
}
