// What became of a desktop, for people and for programs.
#pragma once

#include <string>

#include "simulator/judge/call_log.h"
#include "simulator/scenario/scene.h"

namespace simulator {

// Lines: what each panel ended with, the events that the tool posted, and which applications were
// frontmost, in order.
std::string outcomeLines(const Scene& scene);

// What the desktop looks like, as JSON. `withRequests`: its record holds what was only asked, too.
std::string stateJson(const Scene& scene, const CallLog& log, bool withRequests);

// What happened on the desktop that was made from that scenario, as JSON, each entry on a line of
// its own.
std::string recordJson(const Scene& scene, const CallLog& log, const std::string& scenario,
                       bool withRequests);

}  // namespace simulator
