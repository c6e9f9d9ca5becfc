// Work that runs on a thread of its own while another thread waits for it. Only one of the two ever
// runs: the waiter stands still until the worker is done or would outlast the waiter's patience.
#pragma once

#include <optional>

#include "simulator/desktop/value.h"

namespace simulator {

// On a worker's thread: when its waiter gives up. Absent on every other thread.
std::optional<Seconds> waitersPatience();

// On a worker's thread: lets the waiter go on and never runs again.
[[noreturn]] void stopForGood();

// Drops the work that no waiter has run yet.
void forgetPendingWork();

}  // namespace simulator
