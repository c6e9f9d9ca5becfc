#include "commands/dialog_confirmation.h"

#include <algorithm>

#include "dialog/controls.h"
#include "dialog/detection.h"
#include "platform/accessibility.h"
#include "platform/events.h"
#include "platform/wait.h"

namespace tessarine {
namespace {

constexpr double longestDialogCloseSeconds = 4.0;
constexpr double retryPauseSeconds = 0.15;

}  // namespace

bool pressChooseButton(const Element& root) {
  const auto button = findChooseButton(root);
  if (button) tryAction("AXPress", button->element);
  return button.has_value();
}

double dialogCloseSeconds(double timeoutSeconds) {
  return std::min(timeoutSeconds, longestDialogCloseSeconds);
}

void closeWithOneRetry(const DialogRef& dialog, double timeoutSeconds) {
  const double seconds = dialogCloseSeconds(timeoutSeconds);
  const Condition isGone = [&] { return chooserIsGone(dialog.app); };
  if (pollUntil(seconds, defaultPollSeconds, isGone)) return;
  pressReturn(dialog.pid, retryPauseSeconds);
  pressChooseButton(dialog.node.element);
  waitUntil(seconds, isGone);
}

}  // namespace tessarine
