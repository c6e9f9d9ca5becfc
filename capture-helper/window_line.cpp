#include "capture-helper/window_line.h"

#include "core/numbers.h"
#include "core/text.h"

namespace tessarine {

std::string windowLine(const ListedWindow& window) {
  const Rect& frame = window.frame;
  return std::to_string(window.number) + "\tpid=" + std::to_string(window.pid) +
         "\tapp=" + onOneLine(window.app) + "\ttitle=" + onOneLine(window.title.value_or("")) +
         "\tframe=" + formatDouble(frame.x) + "," + formatDouble(frame.y) + "," +
         formatDouble(frame.width) + "," + formatDouble(frame.height) + "\n";
}

}  // namespace tessarine
