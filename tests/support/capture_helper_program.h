// The capture helper as a program of a desktop in this process.
#pragma once

#include "simulator/desktop/desktop.h"

namespace tessarine::test {

// Installs "background-window-capture", in whatever folder. It meets the attached desktop, as the
// tool does.
void installCaptureHelper(simulator::Desktop& desktop);

}  // namespace tessarine::test
