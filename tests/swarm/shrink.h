// Makes a desktop that fails smaller.
#pragma once

#include <functional>

#include "swarm/run.h"

namespace tessarine::test {

// Leaves everything out of the scenario without which the run still ends the same; what remains is
// what matters. The folders and the command line stay. The result is the last run's.
RunReport shrinkWorld(DrawnWorld& drawn, bool verify, const RunReport& report,
                      const std::function<bool(const RunReport&)>& isTheSame);

}  // namespace tessarine::test
