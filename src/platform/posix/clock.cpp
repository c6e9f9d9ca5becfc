#include "platform/clock.h"

#include <chrono>
#include <thread>

namespace tessarine {
namespace {

// What a sleep is capped to: a duration that chrono still holds in nanoseconds (ten years).
constexpr double longestSleepSeconds = 3.15e8;

}  // namespace

double currentTime() {
  const auto sinceEpoch = std::chrono::system_clock::now().time_since_epoch();
  return std::chrono::duration<double>(sinceEpoch).count();
}

void sleepSeconds(double seconds) {
  if (!(seconds > 0)) return;
  const double capped = seconds < longestSleepSeconds ? seconds : longestSleepSeconds;
  std::this_thread::sleep_for(std::chrono::duration<double>(capped));
}

}  // namespace tessarine
