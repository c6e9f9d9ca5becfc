#include "platform/clock.h"

#include "simulator/seams/virtual/virtual_world.h"

namespace tessarine {

double currentTime() {
  return simulator::epoch_seconds + simulator::attachedDesktop("currentTime").now();
}

void sleepSeconds(double seconds) {
  if (!(seconds > 0)) return;
  const double now = simulator::attachedDesktop("sleepSeconds").now();
  simulator::passTimeUntil(now + seconds, "sleepSeconds");
}

}  // namespace tessarine
