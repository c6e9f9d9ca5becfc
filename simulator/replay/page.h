// The page that replays a recording.
#pragma once

#include <string>

#include "simulator/replay/recording.h"

namespace simulator {

// HTML that holds everything it needs and fetches nothing. It shows the screen after each step, the
// steps in words, and on a time line the calls, programs, applications in front and what was
// posted; its script plays them.
std::string replayPage(const Recording& recording);

}  // namespace simulator
