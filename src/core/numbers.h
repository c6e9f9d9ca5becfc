// Reading and printing numbers in the C locale, the program's own as long as nobody calls
// setlocale.
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

// The shortest decimal that reads back as the same double: from 1e-4 to below 1e16, and for zero,
// with at least one digit after the point ("4.0", "0.15", "10.5"); for smaller and larger
// magnitudes in exponent form, with a point only between digits ("1e+16", "1.5e-05"). Numbers that
// are not finite are "nan", "inf" and "-inf".
std::string formatDouble(double value);

}  // namespace tessarine
