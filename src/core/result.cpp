#include "core/result.h"

#include <cmath>
#include <nlohmann/json.hpp>
#include <stdexcept>

#include "core/numbers.h"
#include "core/text.h"

namespace tessarine {
namespace {

// nlohmann::json writes numbers that are not finite as null; here they are an error.
void requireWritable(const Result& value, const std::string& place) {
  if (value.is_number_float() && !std::isfinite(value.get<double>())) {
    throw std::runtime_error("the number " + formatDouble(value.get<double>()) + " at " + place +
                             " cannot be written as JSON");
  }
  if (value.is_string() && !isUtf8(value.get_ref<const std::string&>())) {
    throw std::runtime_error("the text at " + place +
                             " is not UTF-8 and cannot be written as JSON");
  }
  if (!value.is_structured()) return;
  for (const auto& [key, member] : value.items()) requireWritable(member, place + "/" + key);
}

}  // namespace

Result pointObject(const Point& point) {
  return {{"x", point.x}, {"y", point.y}};
}

Result frameObject(const Rect& frame) {
  return {{"x", frame.x},
          {"y", frame.y},
          {"width", std::fabs(frame.width)},
          {"height", std::fabs(frame.height)}};
}

std::string serialize(const Result& result) {
  requireWritable(result, "");
  return result.dump(2);
}

}  // namespace tessarine
