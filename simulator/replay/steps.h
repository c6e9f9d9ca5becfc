// A recording as steps that can be told in words, each with what is seen once it has been taken.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "simulator/replay/recording.h"

namespace simulator {

// What is seen of the desktop at one moment.
struct Sight {
  std::vector<ShownWindow> windows;                         // front first
  std::map<std::pair<int, std::string>, PanelShown> parts;  // by panel and part; none is gone
  std::optional<Pid> frontmost;
};

struct ReplayStep {
  enum class Kind { start, call, input, request, program, foreground, panel, sight };

  Seconds at = 0;
  Kind kind = Kind::start;
  std::string words;
  Sight sight;
  // What was posted, drawn on the screen: keys as they are told, a pointer, the element acted upon.
  std::string keys;
  std::optional<Point> pointer;
  bool pressed = false;  // the pointer's button
  std::optional<Rect> mark;
};

// In the order of their times; the first is the desktop at its start. Keys that type are one step
// as long as nothing comes between them, and keys that are let go are none. What changes on the
// screen by itself is a step of its own, which says what has changed.
std::vector<ReplayStep> stepsOf(const Recording& recording);

// "Google Chrome (812)", "the session" for none.
std::string processWords(const Recording& recording, const std::optional<Pid>& pid);

}  // namespace simulator
