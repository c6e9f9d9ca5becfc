// What became of a desktop, for people and for programs.
#pragma once

#include <string>

#include "simulator/judge/call_log.h"
#include "simulator/scenario/scene.h"

namespace simulator {

// Lines: what each panel ended with, the events that the tool posted, and which applications were
// frontmost, in order.
std::string outcomeLines(const Scene& scene);

// The processes, the windows, the panels, the calls of the tool, what they are worth and the
// record, as JSON.
std::string stateJson(const Scene& scene, const CallLog& log);

}  // namespace simulator
