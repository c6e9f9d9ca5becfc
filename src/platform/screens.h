// Rectangle geometry with the platform's own rules (half-open containment, null intersections), and
// the displays.
#pragma once

#include <optional>

#include "core/geometry.h"

namespace tessarine {

bool rectContains(const Rect& rect, const Point& point);
bool rectsIntersect(const Rect& first, const Rect& second);
bool rectsEqual(const Rect& first, const Rect& second);

// The common part; absent when there is none.
std::optional<Rect> rectIntersection(const Rect& first, const Rect& second);

// Whether the point lies inside the frame of some screen. The point is compared with the frames of
// NSScreen as they stand, without a conversion between coordinate spaces.
bool pointIsOnScreen(const Point& point);

// The main display's bounds in screen points, origin at its top left.
Rect mainDisplayBounds();

}  // namespace tessarine
