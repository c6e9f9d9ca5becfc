#include "simulator/import/frames.h"

#include <algorithm>

namespace simulator::importing {
namespace {

constexpr double farthest = 50000;  // points, in a scenario

}  // namespace

bool isUsable(const Rect& frame) {
  return frame.width >= 1 && frame.height >= 1 && frame.x >= -farthest && frame.y >= -farthest &&
         frame.x + frame.width <= farthest && frame.y + frame.height <= farthest;
}

Rect around(const Rect& left, const Rect& right) {
  const double x = std::min(left.x, right.x);
  const double y = std::min(left.y, right.y);
  return {x, y, std::max(left.x + left.width, right.x + right.width) - x,
          std::max(left.y + left.height, right.y + right.height) - y};
}

nlohmann::ordered_json toJson(const Rect& frame) {
  return {{"x", frame.x}, {"y", frame.y}, {"width", frame.width}, {"height", frame.height}};
}

}  // namespace simulator::importing
