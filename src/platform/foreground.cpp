#include "platform/foreground.h"

#include <string>

#include "platform/clock.h"
#include "platform/processes.h"

namespace tessarine {
namespace {

// Long enough for the window server to finish the change of foreground.
constexpr double foregroundSettleSeconds = 0.55;

}  // namespace

bool setProcessFrontmost(std::int32_t pid) {
  return commandSucceeded(
      osascriptPath,
      {"-e",
       "tell application \"System Events\" to set frontmost of first process whose unix id is " +
           std::to_string(pid) + " to true"});
}

void restoreFrontmostApplication(std::int32_t pid) {
  if (pid < 1 || frontmostApplicationPid() == pid) return;
  if (applicationState(pid) == ApplicationState::running) {
    activateApplication(pid);
  } else {
    setProcessFrontmost(pid);
  }
}

void takeForeground(std::int32_t pid) {
  if (applicationState(pid) != ApplicationState::unknown) activateApplication(pid);
  setProcessFrontmost(pid);
  sleepSeconds(foregroundSettleSeconds);
}

void giveForegroundBack(std::optional<std::int32_t> previousPid, std::int32_t targetPid) {
  if (!previousPid || previousPid == targetPid) return;
  if (applicationState(*previousPid) != ApplicationState::unknown) {
    activateApplication(*previousPid);
  } else {
    setProcessFrontmost(*previousPid);
  }
}

}  // namespace tessarine
