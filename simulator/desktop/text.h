// Text: its letters, and the two encodings that meet at the keyboard: attributes are UTF-8, typed
// text is UTF-16.
#pragma once

#include <string>

namespace simulator {

// What is not valid in one encoding becomes U+FFFD in the other.
std::u16string utf16FromUtf8(const std::string& text);
std::string utf8FromUtf16(const std::u16string& text);

// With "%" and two digits for each byte but ASCII letters and digits and those of `unescaped`.
std::string percentEncoded(const std::string& bytes, const std::string& unescaped);

inline bool isDigit(char letter) {
  return letter >= '0' && letter <= '9';
}

}  // namespace simulator
