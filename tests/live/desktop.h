// What several tests ask of the desktop around the panel.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "capture-helper/window_list.h"
#include "live/live.h"
#include "platform/accessibility.h"
#include "platform/clock.h"

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

template <class Deed>
double secondsOf(const Deed& deed) {
  const double start = currentTime();
  deed();
  return currentTime() - start;
}

}  // namespace tessarine::test
