#include "simulator/programs/programs.h"

namespace simulator {

void installPrograms(Desktop& desktop) {
  desktop.installProgram("/bin/ps", runProcessList);
  desktop.installProgram("/usr/bin/osascript", runScript);
  desktop.installProgram("/usr/sbin/screencapture", runSnapshot);
}

}  // namespace simulator
