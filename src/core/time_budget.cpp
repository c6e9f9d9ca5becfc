#include "core/time_budget.h"

namespace tessarine {
namespace {

constexpr double watchdogMarginSeconds = 8.0;
constexpr double shortestWatchdogSeconds = 12.0;

}  // namespace

double watchdogSeconds(double timeoutSeconds) {
  const double seconds = timeoutSeconds + watchdogMarginSeconds;
  return seconds > shortestWatchdogSeconds ? seconds : shortestWatchdogSeconds;
}

}  // namespace tessarine
