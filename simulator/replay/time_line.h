// What happened when, as bars and marks in lanes.
#pragma once

#include <string>
#include <vector>

#include "simulator/replay/recording.h"
#include "simulator/replay/steps.h"

namespace simulator {

// The lanes as HTML; places are shares of the time until `end`, in seconds.
std::string timeLineLanes(const Recording& recording, const std::vector<ReplayStep>& steps,
                          Seconds end);

}  // namespace simulator
