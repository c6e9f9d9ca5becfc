// Reading and printing numbers, always in the C locale.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace tessarine {

// A decimal integer: an optional "+" or "-", then digits only, within the type's range. Anything
// else, blanks included, is absent.
std::optional<std::int32_t> parseInt32(std::string_view text);
std::optional<std::uint32_t> parseUInt32(std::string_view text);

// A floating-point number in the forms that strtod reads (decimal, exponent, hexadecimal, "inf",
// "nan"), the whole text being the number. Leading or trailing white space makes it absent.
std::optional<double> parseDouble(std::string_view text);

// The shortest decimal that reads back as the same double, with at least one digit after the point:
// "4.0", "0.15", "10.5". From 1e16 up and below 1e-4 in exponent form: "1e+16", "1.5e-05".
std::string formatDouble(double value);

}  // namespace tessarine
