// Work on another thread, and waiting for it.
#pragma once

#include <functional>

namespace tessarine {

// Runs the work, which must not throw, on a worker of the global user-initiated queue and waits for
// it for so many seconds, for ever when there are more than 292 years of them. Whether it has
// ended; otherwise it is abandoned, not stopped, and keeps whatever it was given.
bool endsWithin(double seconds, std::function<void()> work);

}  // namespace tessarine
