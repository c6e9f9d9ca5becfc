#include "capture-helper/window_line.h"

#include <algorithm>

#include "core/numbers.h"

namespace tessarine {
namespace {

bool isControl(char byte) {
  const auto value = static_cast<unsigned char>(byte);
  return value < 0x20 || value == 0x7f;
}

}  // namespace

std::string onOneLine(std::string text) {
  std::replace_if(text.begin(), text.end(), isControl, ' ');
  return text;
}

std::string windowLine(const ListedWindow& window) {
  const Rect& frame = window.frame;
  return std::to_string(window.number) + "\tpid=" + std::to_string(window.pid) +
         "\tapp=" + onOneLine(window.app) + "\ttitle=" + onOneLine(window.title.value_or("")) +
         "\tframe=" + formatDouble(frame.x) + "," + formatDouble(frame.y) + "," +
         formatDouble(frame.width) + "," + formatDouble(frame.height) + "\n";
}

}  // namespace tessarine
