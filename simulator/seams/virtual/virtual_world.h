// The world of tests: one desktop in this process, whose time moves only while the program waits
// for something. Only one thread runs at a time, so the same run gives the same record.
#pragma once

#include "simulator/desktop/desktop.h"

namespace simulator {

// Wall-clock time at the desktop's time 0.
inline constexpr double epoch_seconds = 1'700'000'000;

// Makes `desktop` the one that the program meets; null for none. Work that was handed over to
// dispatch and never ran is forgotten. The desktop must stay until another one is attached.
void attachDesktop(Desktop* desktop);

// The attached desktop; without one the program ends with a line that names `user`.
Desktop& attachedDesktop(const char* user);

// Moves the desktop's time to `time`. On a thread whose waiter gives up before that, time moves to
// the moment of giving up, the waiter goes on, and the call never returns.
void passTimeUntil(Seconds time, const char* user);

}  // namespace simulator
