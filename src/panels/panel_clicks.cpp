#include "panels/panel_clicks.h"

#include <algorithm>
#include <array>

#include "panels/capture.h"
#include "panels/panel_owners.h"
#include "platform/clock.h"
#include "platform/events.h"
#include "platform/screens.h"
#include "platform/workspace.h"

namespace tessarine {
namespace {

constexpr std::array<Point, 4> chooseOffsets{{{68, 43}, {88, 43}, {68, 60}, {96, 60}}};
constexpr double smallestVisibleHeight = 30;
constexpr double edgeMargin = 4;
constexpr double topMargin = 24;
// The panel takes the keyboard only after it has handled the click.
constexpr double afterClickSeconds = 0.18;

// The first screen that shows part of the frame, or else the main display.
Rect screenShowing(const Rect& frame) {
  const auto screens = screenFrames();
  const auto screen = std::ranges::find_if(
      screens, [&](const Rect& candidate) { return rectsIntersect(candidate, frame); });
  return screen != screens.end() ? *screen : mainDisplayBounds();
}

}  // namespace

std::vector<Point> panelChoosePoints(const PanelWindowRef& window) {
  const double maxX = window.frame.x + window.frame.width;
  const double maxY = window.frame.y + window.frame.height;
  std::vector<Point> points;
  for (const Point& offset : chooseOffsets) {
    const Point point{maxX - offset.x, maxY - offset.y};
    if (pointIsOnScreen(point)) points.push_back(point);
  }
  return points;
}

Point panelContentPoint(const PanelWindowRef& window) {
  const auto visible = rectIntersection(window.frame, screenShowing(window.frame));
  if (!visible || visible->height < smallestVisibleHeight) return window.frame.center();
  const double leftmost = visible->x + edgeMargin;
  const double rightmost = visible->x + visible->width - edgeMargin;
  const double below =
      std::min(visible->height - edgeMargin, std::max(visible->height * 0.5, topMargin));
  return {std::min(std::max(window.frame.midX(), leftmost), rightmost), visible->y + below};
}

std::vector<std::int32_t> panelEventPIDs(const PanelWindowRef& window, std::int32_t primaryPid) {
  return uniquePIDs({window.pid, primaryPid});
}

void clickPanelContent(const PanelWindowRef& window, std::int32_t eventPid, bool global) {
  postMouseClick(eventPid, panelContentPoint(window), 1, global);
  sleepSeconds(afterClickSeconds);
}

void clickBackgroundPanelWindow(std::int32_t primaryPid, std::int32_t eventPid) {
  const auto windows = orderedBackgroundPanelWindows(primaryPid);
  if (windows.empty()) return;
  postMouseClick(eventPid, windowOfOrFirst(windows, eventPid).frame.center(), 1, false);
  sleepSeconds(afterClickSeconds);
}

}  // namespace tessarine
