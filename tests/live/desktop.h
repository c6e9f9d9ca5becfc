// What several tests ask of the desktop around the panel.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <string>
#include <vector>

#include "capture-helper/window_list.h"
#include "live/live.h"
#include "platform/accessibility.h"
#include "platform/clock.h"
#include "platform/wait.h"

namespace tessarine::test {

// Asked of the application itself: the workspace of a program without an event loop may be late.
inline bool isInFront(pid_t application) {
  return axIsTrue(Element::application(application), "AXFrontmost");
}

// The windows on the screen, front to back, without what floats above ordinary windows.
inline std::vector<ListedWindow> ordinaryWindows() {
  std::vector<ListedWindow> windows = onScreenWindows();
  std::erase_if(windows, [](const ListedWindow& window) { return window.layer != 0; });
  return windows;
}

// The processes that a panel's windows may belong to.
using Owners = std::set<pid_t>;

inline bool belongsTo(const Owners& owners, const ListedWindow& window) {
  return owners.contains(window.pid);
}

// Whether a click at the point meets these processes, once the panel is raised where need be.
inline bool uncovered(const Element& panel, const Owners& owners, const Point& point) {
  const auto topmostIsOurs = [&] {
    const std::vector<ListedWindow> windows = ordinaryWindows();
    const auto topmost = std::ranges::find_if(windows, [&](const ListedWindow& window) {
      const Rect& frame = window.frame;
      return point.x >= frame.x && point.x < frame.x + frame.width && point.y >= frame.y &&
             point.y < frame.y + frame.height;
    });
    return topmost != windows.end() && belongsTo(owners, *topmost);
  };
  if (topmostIsOurs()) return true;
  tryAction("AXRaise", panel);
  return pollUntil(1, 0.05, topmostIsOurs);
}

template <class Deed>
double secondsOf(const Deed& deed) {
  const double start = currentTime();
  deed();
  return currentTime() - start;
}

}  // namespace tessarine::test
