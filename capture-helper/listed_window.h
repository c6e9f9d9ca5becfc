// A window as the helper prints it.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "core/geometry.h"

namespace tessarine {

struct ListedWindow {
  std::uint32_t number = 0;          // the window server's
  std::int32_t pid = 0;              // owning process
  std::string app;                   // the owning process's name
  std::optional<std::string> title;  // absent when the platform withholds it
  int layer = 0;                     // 0 for ordinary windows, higher for what floats above them
  Rect frame;                        // screen points, origin at the top left of the main display
};

}  // namespace tessarine
