// How long a command may take in all.
#pragma once

namespace tessarine {

// After so many seconds the watchdog ends a command: its time-out and 8 s, but at least 12 s.
double watchdogSeconds(double timeoutSeconds);

}  // namespace tessarine
