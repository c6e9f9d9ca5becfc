#include "simulator/desktop/text.h"

#include <utf8proc.h>

#include <cstddef>

namespace simulator {
namespace {

constexpr utf8proc_int32_t replacement_character = 0xFFFD;

bool isHighSurrogate(char32_t unit) {
  return unit >= 0xD800 && unit < 0xDC00;
}
bool isLowSurrogate(char32_t unit) {
  return unit >= 0xDC00 && unit < 0xE000;
}

}  // namespace

std::u16string utf16FromUtf8(const std::string& text) {
  std::u16string units;
  const auto* bytes = reinterpret_cast<const utf8proc_uint8_t*>(text.data());
  for (std::size_t at = 0; at < text.size();) {
    utf8proc_int32_t point = replacement_character;
    const utf8proc_ssize_t length =
        utf8proc_iterate(bytes + at, static_cast<utf8proc_ssize_t>(text.size() - at), &point);
    if (length < 0) point = replacement_character;
    at += length > 0 ? static_cast<std::size_t>(length) : 1;
    if (point > 0xFFFF) {
      units += static_cast<char16_t>(0xD800 + ((point - 0x10000) >> 10));
      units += static_cast<char16_t>(0xDC00 + ((point - 0x10000) & 0x3FF));
    } else {
      units += static_cast<char16_t>(point);
    }
  }
  return units;
}

std::string utf8FromUtf16(const std::u16string& text) {
  std::string bytes;
  for (std::size_t at = 0; at < text.size(); ++at) {
    char32_t point = text[at];
    if (isHighSurrogate(point) && at + 1 < text.size() && isLowSurrogate(text[at + 1])) {
      point = 0x10000 + ((point - 0xD800) << 10) + (char32_t{text[++at]} - 0xDC00);
    } else if (isHighSurrogate(point) || isLowSurrogate(point)) {
      point = replacement_character;
    }
    utf8proc_uint8_t encoded[4];
    const utf8proc_ssize_t length =
        utf8proc_encode_char(static_cast<utf8proc_int32_t>(point), encoded);
    bytes.append(reinterpret_cast<const char*>(encoded), static_cast<std::size_t>(length));
  }
  return bytes;
}

std::string percentEncoded(const std::string& bytes, const std::string& unescaped) {
  constexpr const char* digits = "0123456789ABCDEF";
  std::string text;
  for (const char c : bytes) {
    const bool letter = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
    if (letter || isDigit(c) || unescaped.find(c) != std::string::npos) {
      text += c;
    } else {
      const auto byte = static_cast<unsigned char>(c);
      text += {'%', digits[byte / 16], digits[byte % 16]};
    }
  }
  return text;
}

}  // namespace simulator
