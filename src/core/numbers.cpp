#include "core/numbers.h"

#include <array>
#include <charconv>
#include <cmath>
#include <cstdlib>
#include <limits>

namespace tessarine {
namespace {

template <class Integer>
std::optional<Integer> parseInteger(std::string_view text) {
  const bool negative = text.starts_with('-');
  if (negative || text.starts_with('+')) text.remove_prefix(1);
  if (text.empty() || text.find_first_not_of("0123456789") != std::string_view::npos) return {};
  std::int64_t magnitude = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), magnitude, 10);
  if (error != std::errc() || end != text.data() + text.size()) return {};
  const std::int64_t value = negative ? -magnitude : magnitude;
  if (value < std::numeric_limits<Integer>::min() || value > std::numeric_limits<Integer>::max()) {
    return {};
  }
  return static_cast<Integer>(value);
}

bool isAsciiSpace(char character) {
  return character == ' ' || (character >= '\t' && character <= '\r');
}

}  // namespace

std::optional<std::int32_t> parseInt32(std::string_view text) {
  return parseInteger<std::int32_t>(text);
}

std::optional<std::uint32_t> parseUInt32(std::string_view text) {
  return parseInteger<std::uint32_t>(text);
}

std::optional<double> parseDouble(std::string_view text) {
  if (text.empty() || isAsciiSpace(text.front())) return {};
  const std::string terminated(text);
  char* end = nullptr;
  const double value = std::strtod(terminated.c_str(), &end);
  if (end != terminated.c_str() + terminated.size()) return {};
  return value;
}

std::string formatDouble(double value) {
  if (std::isnan(value)) return "nan";
  const double magnitude = std::fabs(value);
  const bool plain = magnitude == 0 || (magnitude >= 1e-4 && magnitude < 1e16);
  std::array<char, 64> buffer{};
  const auto format = plain ? std::chars_format::fixed : std::chars_format::scientific;
  const auto end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value, format).ptr;
  std::string text(buffer.data(), end);
  if (plain && text.find('.') == std::string::npos) text += ".0";
  return text;
}

}  // namespace tessarine
