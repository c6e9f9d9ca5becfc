// A window as the window server knows it.
#pragma once

#include <cstdint>
#include <string>

#include "simulator/desktop/element.h"
#include "simulator/desktop/value.h"

namespace simulator {

struct Window {
  std::uint32_t number = 0;  // handed out by Desktop::addWindow, unique on the desktop
  Pid owner = 0;
  std::string title;           // as the window server knows it; the element has its own "AXTitle"
  int layer = 0;               // 0 for ordinary windows, higher for what floats above them
  Rect frame;                  // Quartz screen points
  bool listed = true;          // false: left out of the window list, though on the screen
  bool capturable = true;      // false: no image can be made of it
  bool ghost = false;          // it has closed and only the window list still has it
  bool on_screen = true;       // false: on another space; not listed, not hit, not in "AXWindows"
  Element* element = nullptr;  // null: a window that the accessibility tree does not show
};

}  // namespace simulator
