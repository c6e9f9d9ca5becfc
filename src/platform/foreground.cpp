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

TemporaryForeground::TemporaryForeground(std::int32_t targetPid) : targetPid_(targetPid) {
  if (applicationState(targetPid) != ApplicationState::unknown) activateApplication(targetPid);
  setProcessFrontmost(targetPid);
  sleepSeconds(foregroundSettleSeconds);
}

TemporaryForeground::~TemporaryForeground() {
  if (!previousPid_ || previousPid_ == targetPid_) return;
  if (applicationState(*previousPid_) != ApplicationState::unknown) {
    activateApplication(*previousPid_);
  } else {
    setProcessFrontmost(*previousPid_);
  }
}

}  // namespace tessarine
