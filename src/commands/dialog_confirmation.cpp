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

void pressReturn(std::int32_t pid, double pauseSeconds) {
  tapKey(pid, keyCodeReturn, noModifiers, {}, pauseSeconds);
}

bool pressChooseButton(const Element& root) {
  const auto button = findChooseButton(root);
  if (button) tryAction("AXPress", button->element);
  return button.has_value();
}

double closeSeconds(double timeoutSeconds) {
  return std::min(timeoutSeconds, longestDialogCloseSeconds);
}

void waitForDialogClose(const DialogRef& dialog, double timeoutSeconds) {
  const double seconds = closeSeconds(timeoutSeconds);
  const Condition isGone = [&] { return chooserIsGone(dialog.app); };
  if (pollUntil(seconds, defaultPollSeconds, isGone)) return;
  pressReturn(dialog.pid, retryPauseSeconds);
  pressChooseButton(dialog.node.element);
  waitUntil(seconds, isGone);
}

}  // namespace tessarine
