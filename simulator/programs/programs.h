// The programs that the simulated desktop has.
#pragma once

#include "simulator/desktop/desktop.h"

namespace simulator {

// Installs "/bin/ps", "/usr/bin/osascript" and "/usr/sbin/screencapture".
void installPrograms(Desktop& desktop);

// "/bin/ps", in two forms: `-axo pid=,command=` prints a line for each process of the desktop, the
// pid right-aligned in five columns; `-p PID -o command=` prints the command line of one, or ends
// with status 1 without it.
void runProcessList(ProgramRun& run);

// "/usr/bin/osascript" with `-e LINE` repeated: see script.h for the statements. Status 1 and one
// line on standard error for a script that cannot be compiled or carried out.
void runScript(ProgramRun& run);

// "/usr/sbin/screencapture" as `-x -o -t png -lNUMBER FILE`: writes an image of one window.
// Assumed (Live.ASnapshotOfAWindowThatIsNotThereFailsWithOneLine): status 1 and one line on
// standard error without that window. Assumed (no test can tell: it would need a permission both
// given and refused): the same without the permission to see other programs' windows.
void runSnapshot(ProgramRun& run);

}  // namespace simulator
