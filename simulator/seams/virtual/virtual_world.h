// The world of tests: one desktop in this process, whose time moves only while the program waits
// for something. Only one thread runs at a time, so the same run gives the same record.
#pragma once

#include "simulator/desktop/desktop.h"

namespace simulator {

// Wall-clock time at the desktop's time 0: the beginning of 2038. Panels that show the newest first
// show the machine's real files, so what a program dates by this clock has to be newer than they
// are. Some file systems have only 31 bits for a date, which end in the same month.
inline constexpr double epoch_seconds = 2'145'916'800;

// Makes `desktop` the one that the program meets; null for none. Work that was handed over to
// dispatch and never ran is forgotten. The desktop must stay until another one is attached.
void attachDesktop(Desktop* desktop);

// The attached desktop; without one the program ends with a line that names `user`.
Desktop& attachedDesktop(const char* user);

// Moves the desktop's time to `time`. On a thread whose waiter gives up before that, time moves to
// the moment of giving up, the waiter goes on, and the call never returns.
void passTimeUntil(Seconds time, const char* user);

}  // namespace simulator
