// What must hold after every run, whatever was drawn.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "support/world.h"
#include "swarm/world.h"

namespace tessarine::test {

// What a run left behind, before anything is tidied.
struct FinishedRun {
  const DrawnWorld& drawn;
  World& world;
  const Outcome& outcome;
  const std::string& verdict;
  double seconds;  // that it took
  std::optional<std::int32_t> frontmostBefore;
  std::optional<std::int32_t> frontmostAfter;
};

// The rules of every command line that are broken, each with what broke it.
std::vector<std::string> brokenRules(const FinishedRun& run);

// Those of --verify.
std::vector<std::string> brokenPromises(const FinishedRun& run);

}  // namespace tessarine::test
