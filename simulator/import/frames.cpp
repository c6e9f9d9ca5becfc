#include "simulator/import/frames.h"

#include <algorithm>
#include <cmath>

namespace simulator::importing {
namespace {

constexpr double farthest = 50000;  // points, in a scenario

}  // namespace

bool isEmpty(const Rect& frame) {
  return frame.width <= 0 || frame.height <= 0;
}

bool isWithin(const Rect& inner, const Rect& outer) {
  constexpr double slack = 1;  // frames are rounded one by one
  return !isEmpty(inner) && inner.x >= outer.x - slack && inner.y >= outer.y - slack &&
         inner.x + inner.width <= outer.x + outer.width + slack &&
         inner.y + inner.height <= outer.y + outer.height + slack;
}

bool overlap(const Rect& left, const Rect& right) {
  return left.x < right.x + right.width && right.x < left.x + left.width &&
         left.y < right.y + right.height && right.y < left.y + left.height;
}

bool isUsable(const Rect& frame) {
  return frame.width >= 1 && frame.height >= 1 && frame.x >= -farthest && frame.y >= -farthest &&
         frame.x + frame.width <= farthest && frame.y + frame.height <= farthest;
}

bool onOneRow(const Rect& left, const Rect& right) {
  const double apart = left.y + left.height / 2 - right.y - right.height / 2;
  return std::abs(apart) < std::max(left.height, right.height) / 2;
}

double bottom(const Rect& frame) {
  return frame.y + frame.height;
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
