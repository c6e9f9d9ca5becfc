// What a run left: its outcome, and everything that happened on the desktop.
#pragma once

#include <string>
#include <vector>

#include "support/world.h"

namespace tessarine::test {

struct Trace {
  Outcome outcome;
  std::string record;
  bool operator==(const Trace&) const = default;
};

inline Trace traceOf(const std::string& scenario, const std::vector<std::string>& arguments) {
  World world(scenario);
  const Outcome outcome = world.run(arguments);
  return {outcome, world.record().toText()};
}

}  // namespace tessarine::test
