// What a successful command answers: an object whose keys keep the order in which they were added.
#pragma once

#include <nlohmann/json_fwd.hpp>
#include <string>

#include "core/geometry.h"

namespace tessarine {

using Result = nlohmann::ordered_json;

// {"x", "y"} as they stand.
Result pointObject(const Point& point);

// {"x", "y", "width", "height"}: the origin as it stands, the extent as magnitudes.
Result frameObject(const Rect& frame);

// Pretty-printed, two blanks for each level, without a final newline. Throws std::runtime_error
// with one line of text when a value cannot be expressed in JSON: a number that is not finite, or
// text that is not UTF-8.
std::string serialize(const Result& result);

}  // namespace tessarine
