// Points and rectangles in screen points. Which coordinate space they live in is said wherever one
// is handed over.
#pragma once

namespace tessarine {

struct Point {
  double x = 0;
  double y = 0;
  bool operator==(const Point&) const = default;
};

// Width and height are stored as they were read: they may be zero, negative or not a number.
struct Rect {
  double x = 0;
  double y = 0;
  double width = 0;
  double height = 0;
  bool operator==(const Rect&) const = default;

  double midX() const { return x + width / 2; }
  double midY() const { return y + height / 2; }
  Point center() const { return {midX(), midY()}; }
  bool hasArea() const { return width > 0 && height > 0; }
};

}  // namespace tessarine
