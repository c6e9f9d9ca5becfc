// The US keyboard layout: which key types what.
#pragma once

#include <cstdint>
#include <optional>

namespace simulator {

struct TypingKey {
  std::uint16_t code = 0;  // virtual key code
  bool shifted = false;
};

// What the key types, '\r' and '\t' included; nothing for a key that types nothing.
std::optional<char> typedByKey(TypingKey key);

// The key that types the character, nothing without one.
std::optional<TypingKey> keyTyping(char character);

}  // namespace simulator
