// Lists of any kind.
#pragma once

#include <algorithm>

namespace tessarine {

// Whether the value is one of them.
template <class Values, class Value>
bool isAmong(const Values& values, const Value& value) {
  return std::ranges::find(values, value) != values.end();
}

}  // namespace tessarine
