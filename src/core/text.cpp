#include "core/text.h"

#include <utf8proc.h>

#include <algorithm>
#include <array>
#include <optional>

namespace tessarine {
namespace {

constexpr char32_t replacementCharacter = 0xFFFD;

// Takes the first scalar off the text; absent for a byte that begins none, which is taken alone.
std::optional<char32_t> takeScalar(std::string_view& text) {
  utf8proc_int32_t scalar = 0;
  const auto length = utf8proc_iterate(reinterpret_cast<const utf8proc_uint8_t*>(text.data()),
                                       static_cast<utf8proc_ssize_t>(text.size()), &scalar);
  text.remove_prefix(length > 0 ? static_cast<std::size_t>(length) : 1);
  if (length <= 0) return {};
  return static_cast<char32_t>(scalar);
}

void appendUtf8(std::string& text, char32_t scalar) {
  std::array<utf8proc_uint8_t, 4> bytes{};
  const auto length = utf8proc_encode_char(static_cast<utf8proc_int32_t>(scalar), bytes.data());
  text.append(bytes.begin(), bytes.begin() + length);
}

bool isHighSurrogate(char16_t unit) {
  return unit >= 0xD800 && unit <= 0xDBFF;
}
bool isLowSurrogate(char16_t unit) {
  return unit >= 0xDC00 && unit <= 0xDFFF;
}

bool isWhiteSpace(std::optional<char32_t> scalar) {
  if (!scalar) return false;
  if ((scalar >= 0x09 && scalar <= 0x0D) || scalar == 0x85) return true;
  const auto category = utf8proc_category(static_cast<utf8proc_int32_t>(*scalar));
  return category == UTF8PROC_CATEGORY_ZS || category == UTF8PROC_CATEGORY_ZL ||
         category == UTF8PROC_CATEGORY_ZP;
}

}  // namespace

bool isUtf8(std::string_view text) {
  while (!text.empty()) {
    if (!takeScalar(text)) return false;
  }
  return true;
}

std::u32string toScalars(std::string_view text) {
  std::u32string scalars;
  while (!text.empty()) scalars.push_back(takeScalar(text).value_or(replacementCharacter));
  return scalars;
}

std::u16string toUtf16(std::string_view text) {
  std::u16string units;
  for (const char32_t scalar : toScalars(text)) units += toUtf16(scalar);
  return units;
}

std::u16string toUtf16(char32_t scalar) {
  if (scalar < 0x10000) return {static_cast<char16_t>(scalar)};
  const char32_t offset = scalar - 0x10000;
  return {static_cast<char16_t>(0xD800 + (offset >> 10)),
          static_cast<char16_t>(0xDC00 + (offset & 0x3FF))};
}

std::string fromUtf16(std::u16string_view text) {
  std::string result;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const char16_t unit = text[i];
    if (isHighSurrogate(unit) && i + 1 < text.size() && isLowSurrogate(text[i + 1])) {
      const auto high = static_cast<char32_t>(unit - 0xD800);
      const auto low = static_cast<char32_t>(text[++i] - 0xDC00);
      appendUtf8(result, 0x10000 + (high << 10) + low);
    } else {
      appendUtf8(result,
                 isHighSurrogate(unit) || isLowSurrogate(unit) ? replacementCharacter : unit);
    }
  }
  return result;
}

std::size_t characterCount(std::string_view text) {
  std::size_t count = 0;
  utf8proc_int32_t state = 0;
  char32_t previous = 0;
  for (const char32_t scalar : toScalars(text)) {
    const bool breaks = utf8proc_grapheme_break_stateful(
        static_cast<utf8proc_int32_t>(previous), static_cast<utf8proc_int32_t>(scalar), &state);
    if (count == 0 || breaks) ++count;
    previous = scalar;
  }
  return count;
}

std::string trimmed(std::string_view text) {
  std::string_view rest = text;
  while (!rest.empty() && isWhiteSpace(takeScalar(rest))) text = rest;
  std::size_t length = 0;  // up to the end of the last scalar that is not white space
  for (rest = text; !rest.empty();) {
    if (!isWhiteSpace(takeScalar(rest))) length = text.size() - rest.size();
  }
  return std::string(text.substr(0, length));
}

std::string lowercased(std::string text) {
  for (char& character : text) {
    if (character >= 'A' && character <= 'Z') character = static_cast<char>(character - 'A' + 'a');
  }
  return text;
}

std::string onOneLine(std::string text) {
  std::ranges::replace_if(
      text, [](unsigned char byte) { return byte < 0x20 || byte == 0x7F; }, ' ');
  return text;
}

std::vector<std::string> splitDroppingEmpty(std::string_view text, char separator) {
  std::vector<std::string> pieces;
  while (!text.empty()) {
    const auto end = text.find(separator);
    const std::string_view piece = text.substr(0, end);
    if (!piece.empty()) pieces.emplace_back(piece);
    text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
  }
  return pieces;
}

std::string joined(const std::vector<std::string>& pieces, std::string_view separator) {
  std::string text;
  for (const std::string& piece : pieces) {
    if (&piece != &pieces.front()) text += separator;
    text += piece;
  }
  return text;
}

bool contains(std::string_view text, std::string_view piece) {
  return text.find(piece) != std::string_view::npos;
}

}  // namespace tessarine
