// The programs that the simulated desktop has.
#pragma once

#include "simulator/desktop/desktop.h"

namespace simulator {

// Installs "/bin/ps", "/usr/bin/osascript" and, in whatever folder, "background-window-capture".
void installPrograms(Desktop& desktop);

// "/bin/ps", in two forms: `-axo pid=,command=` prints a line for each process of the desktop, the
// pid right-aligned in five columns; `-p PID -o command=` prints the command line of one, or ends
// with status 1 without it.
void runProcessList(ProgramRun& run);

// "/usr/bin/osascript" with `-e LINE` repeated: see script.h for the statements. Status 1 and one
// line on standard error for a script that cannot be compiled or carried out.
void runScript(ProgramRun& run);

// The window snapshot helper. `list` prints the listed windows on the screen, front to back, one on
// each line with tabs between NUMBER, pid=, app=, title= and frame=X,Y,WIDTH,HEIGHT.
// `capture --window-id NUMBER --out FILE` writes an image of one window, or ends with status 1.
// Anything else is status 2.
void runCaptureHelper(ProgramRun& run);

}  // namespace simulator
