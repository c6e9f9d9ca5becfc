// Where things lie, in points.
#pragma once

#include <nlohmann/json.hpp>

#include "simulator/desktop/value.h"

namespace simulator::importing {

// Whether a scenario can hold it.
bool isUsable(const Rect& frame);

// The smallest that holds both.
Rect around(const Rect& left, const Rect& right);

nlohmann::ordered_json toJson(const Rect& frame);

}  // namespace simulator::importing
