// The plain values that cross the border between a program and the simulated desktop: what an
// attribute holds, what an action is performed on, where a click lands.
//
// Coordinates are Quartz screen points unless a name says otherwise: origin at the top left of the
// main display, y growing downwards.
#pragma once

#include <cstdint>
#include <string>
#include <variant>
#include <vector>

namespace simulator {

using Pid = std::int32_t;
using Seconds = double;  // since the desktop was created

struct Point {
  double x = 0;
  double y = 0;
  bool operator==(const Point&) const = default;
};

struct Size {
  double width = 0;
  double height = 0;
  bool operator==(const Size&) const = default;
};

struct Rect {
  double x = 0;
  double y = 0;
  double width = 0;
  double height = 0;
  bool operator==(const Rect&) const = default;
};

// Names one element of one process's accessibility tree. Number 0 is the application element.
// Numbers are never used again: an element that was rebuilt has a new one, and the old one is
// stale.
struct ElementId {
  Pid pid = 0;
  std::uint64_t number = 0;
  bool operator==(const ElementId&) const = default;
};

// A location in its encoded form, for example "file:///Users/me/My%20Folder/".
struct Url {
  std::string text;
  bool operator==(const Url&) const = default;
};

// In the place of a value that could not be read, in the answer to a request for several.
struct AttributeError {
  std::int32_t code = 0;  // an accessibility error code
  bool operator==(const AttributeError&) const = default;
};

struct Value;
using List = std::vector<Value>;

// What an attribute can hold. std::monostate is the absence of a value.
struct Value : std::variant<std::monostate, std::string, bool, double, Point, Size, ElementId, Url,
                            List, AttributeError> {
  using variant::variant;
};

}  // namespace simulator
