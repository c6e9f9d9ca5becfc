// Confirming a found dialog and watching it go: what choose-folder and choose-path share.
#pragma once

#include "platform/element.h"

namespace tessarine {

// Presses the dialog's Choose button by "AXPress", a failure of which is ignored. Whether there was
// such a button.
bool pressChooseButton(const Element& root);

// How long a confirmed dialog may take to go: the time-out, but at most 4.0 s.
double dialogCloseSeconds(double timeoutSeconds);

// Waits for the dialog's application to show no chooser any more, for dialogCloseSeconds; when it
// still does, presses Return and the Choose button once more and waits as long again. Throws
// ToolError timedOut with that time.
void closeWithOneRetry(const DialogRef& dialog, double timeoutSeconds);

}  // namespace tessarine
