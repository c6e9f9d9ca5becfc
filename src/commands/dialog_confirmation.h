// Confirming a found dialog and watching it go: what choose-folder and choose-path share.
#pragma once

#include <cstdint>

#include "platform/element.h"

namespace tessarine {

// Return to the process: down, 0.02 s, up, then `pauseSeconds`.
void pressReturn(std::int32_t pid, double pauseSeconds);

// Presses the dialog's Choose button by "AXPress", a failure of which is ignored. Whether there was
// such a button.
bool pressChooseButton(const Element& root);

// How long a confirmed dialog may take to go: the time-out, but at most 4.0 s.
double closeSeconds(double timeoutSeconds);

// Waits for the dialog's application to show no chooser any more, for closeSeconds; then presses
// Return and the Choose button once more and waits again. Throws ToolError timedOut with that time.
void waitForDialogClose(const DialogRef& dialog, double timeoutSeconds);

}  // namespace tessarine
