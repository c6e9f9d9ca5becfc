#include "platform/screens.h"

#include <ApplicationServices/ApplicationServices.h>

#include <algorithm>

#include "platform/workspace.h"

namespace tessarine {
namespace {

CGRect platformRect(const Rect& rect) {
  return CGRectMake(rect.x, rect.y, rect.width, rect.height);
}

Rect ownRect(const CGRect& rect) {
  return {rect.origin.x, rect.origin.y, rect.size.width, rect.size.height};
}

}  // namespace

bool rectContains(const Rect& rect, const Point& point) {
  return CGRectContainsPoint(platformRect(rect), CGPointMake(point.x, point.y));
}

bool rectsIntersect(const Rect& first, const Rect& second) {
  return CGRectIntersectsRect(platformRect(first), platformRect(second));
}

bool rectsEqual(const Rect& first, const Rect& second) {
  return CGRectEqualToRect(platformRect(first), platformRect(second));
}

std::optional<Rect> rectIntersection(const Rect& first, const Rect& second) {
  const CGRect common = CGRectIntersection(platformRect(first), platformRect(second));
  if (CGRectIsNull(common)) return {};
  return ownRect(common);
}

bool pointIsOnScreen(const Point& point) {
  const auto screens = screenFrames();
  return std::ranges::any_of(screens,
                             [&](const Rect& screen) { return rectContains(screen, point); });
}

Rect mainDisplayBounds() {
  return ownRect(CGDisplayBounds(CGMainDisplayID()));
}

}  // namespace tessarine
