// Time, as everything in this program sees it. Nothing else reads a clock or sleeps.
#pragma once

namespace tessarine {

// Wall-clock time in seconds since 1970.
double currentTime();

// Blocks the calling thread. Zero, negative and not-a-number durations return at once.
void sleepSeconds(double seconds);

}  // namespace tessarine
