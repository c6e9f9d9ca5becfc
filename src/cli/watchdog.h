// The global watchdog: a command runs on a worker, and the process does not wait for it for ever,
// unless its time-out is infinite.
#pragma once

#include <functional>

#include "core/result.h"

namespace tessarine {

// Runs the work on one worker of the global user-initiated queue and waits for it. Returns its
// result or throws its error. When `budgetSeconds` pass first, throws ToolError timedOut "timed out
// after " + budgetSeconds + "s (global watchdog)"; the worker is then abandoned, not stopped, and
// the caller is expected to end the process.
Result runUnderWatchdog(double budgetSeconds, std::function<Result()> work);

}  // namespace tessarine
