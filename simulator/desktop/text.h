// Text: its letters, and the two encodings that meet at the keyboard: attributes are UTF-8, typed
// text is UTF-16.
#pragma once

#include <string>

namespace simulator {

// What is not valid in one encoding becomes U+FFFD in the other.
std::u16string utf16FromUtf8(const std::string& text);
std::string utf8FromUtf16(const std::u16string& text);

inline bool isDigit(char letter) {
  return letter >= '0' && letter <= '9';
}

}  // namespace simulator
