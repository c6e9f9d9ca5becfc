// Waiting for a condition by polling it.
#pragma once

#include <functional>

namespace tessarine {

using Condition = std::function<bool()>;

inline constexpr double defaultPollSeconds = 0.15;

// Polls until the condition holds and answers true, or answers false once `timeoutSeconds` have
// passed. The clock is read before each evaluation, so a time-out that is not above zero evaluates
// nothing, and the last evaluation may come up to one interval before the deadline. An error of the
// condition passes through.
bool pollUntil(double timeoutSeconds, double intervalSeconds, const Condition& condition);

// The same, but looks at once, whatever the time-out.
bool seenWithin(double timeoutSeconds, double intervalSeconds, const Condition& condition);

// Like pollUntil, except that it throws ToolError timedOut "timed out after " + timeoutSeconds +
// "s" when the time is up.
void waitUntil(double timeoutSeconds, const Condition& condition);
void waitUntil(double timeoutSeconds, double intervalSeconds, const Condition& condition);

// What a search that answers an optional finds; waits and throws as waitUntil does.
template <class Search>
auto waitForValue(double timeoutSeconds, double intervalSeconds, const Search& search) {
  decltype(search()) value;
  waitUntil(timeoutSeconds, intervalSeconds, [&] {
    value = search();
    return value.has_value();
  });
  return *value;
}

}  // namespace tessarine
