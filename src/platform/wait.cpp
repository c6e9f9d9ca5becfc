#include "platform/wait.h"

#include "core/tool_error.h"
#include "platform/clock.h"

namespace tessarine {

bool pollUntil(double timeoutSeconds, double intervalSeconds, const Condition& condition) {
  const double start = currentTime();
  while (currentTime() < start + timeoutSeconds) {
    if (condition()) return true;
    sleepSeconds(intervalSeconds);
  }
  return false;
}

bool seenWithin(double timeoutSeconds, double intervalSeconds, const Condition& condition) {
  const double end = currentTime() + timeoutSeconds;
  if (condition()) return true;
  if (!(currentTime() < end)) return false;
  sleepSeconds(intervalSeconds);
  return pollUntil(end - currentTime(), intervalSeconds, condition);
}

void waitUntil(double timeoutSeconds, const Condition& condition) {
  waitUntil(timeoutSeconds, defaultPollSeconds, condition);
}

void waitUntil(double timeoutSeconds, double intervalSeconds, const Condition& condition) {
  if (!pollUntil(timeoutSeconds, intervalSeconds, condition)) {
    throw ToolError::timedOutAfter(timeoutSeconds);
  }
}

}  // namespace tessarine
