// Keyboard layouts: which key types what.
#pragma once

#include <cstdint>
#include <optional>

namespace simulator {

// `azerty` is the French one of a Mac, without its accented letters and dead keys, which type
// nothing here.
enum class KeyboardLayout { us, azerty };

struct TypingKey {
  std::uint16_t code = 0;  // virtual key code: a place on the keyboard, whatever the layout
  bool shifted = false;
};

// What the key types, '\r' and '\t' included; nothing for a key that types nothing.
std::optional<char> typedByKey(TypingKey key, KeyboardLayout layout);

// The key that types the character, nothing without one.
std::optional<TypingKey> keyTyping(char character, KeyboardLayout layout);

}  // namespace simulator
