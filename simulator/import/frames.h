// Where things lie, in points.
#pragma once

#include <nlohmann/json.hpp>

#include "simulator/desktop/value.h"

namespace simulator::importing {

bool isEmpty(const Rect& frame);

// As far as frames that were rounded one by one can tell; an empty one is within nothing.
bool isWithin(const Rect& inner, const Rect& outer);

bool overlap(const Rect& left, const Rect& right);

// Whether a scenario can hold it.
bool isUsable(const Rect& frame);

// Whether the middles lie at about the same height.
bool onOneRow(const Rect& left, const Rect& right);

double bottom(const Rect& frame);

// The smallest that holds both.
Rect around(const Rect& left, const Rect& right);

nlohmann::ordered_json toJson(const Rect& frame);

}  // namespace simulator::importing
