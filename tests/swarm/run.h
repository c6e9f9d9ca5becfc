// One seed, run and judged.
#pragma once

#include <string>
#include <vector>

#include "support/world.h"
#include "swarm/world.h"

namespace tessarine::test {

struct RunReport {
  Outcome outcome;
  std::string verdict;
  std::vector<std::string> broken;  // rules, with what broke them
  double seconds = 0;               // of the desktop's time
  std::string record;               // as JSON lines, when asked for
};

// Every run must end in an answer and leave no reference behind; with `verify` it must keep all
// that
// --verify promises.
RunReport runWorld(const DrawnWorld& drawn, bool verify, bool withRecord);

}  // namespace tessarine::test
