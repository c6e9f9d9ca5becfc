// What a key event means to the control that has the keyboard.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include "simulator/desktop/keyboard_layout.h"
#include "simulator/desktop/request.h"

namespace simulator {

// Virtual key codes, from the platform's Events.h.
namespace key {
inline constexpr std::uint16_t a = 0;
inline constexpr std::uint16_t g = 5;
inline constexpr std::uint16_t o = 31;
inline constexpr std::uint16_t returnKey = 36;
inline constexpr std::uint16_t period = 47;
inline constexpr std::uint16_t backspace = 51;
inline constexpr std::uint16_t escape = 53;
inline constexpr std::uint16_t keypadEnter = 76;
inline constexpr std::uint16_t left = 123;
inline constexpr std::uint16_t right = 124;
inline constexpr std::uint16_t down = 125;
inline constexpr std::uint16_t up = 126;
}  // namespace key

// Assumed (Live.AnEventTypesAtMostTwentyUnits): an event carries at most this many UTF-16 units of
// text, as authors of input tools report; the rest is lost.
inline constexpr std::size_t longest_event_text = 20;

struct Keystroke {
  std::uint16_t keyCode = 0;  // of a chord: of the key that types its letter on a US keyboard
  bool command = false;
  bool shift = false;
  bool option = false;
  bool control = false;
  std::string text;  // UTF-8 of what it types; empty for keys that type nothing and for chords

  // The key with exactly these modifiers held, not typing attached text.
  bool is(std::uint16_t code, bool withCommand = false, bool withShift = false) const;
};

// Attached text wins over the key code; without it the layout decides.
Keystroke keystroke(const KeyEvent& event, KeyboardLayout layout);

// The text of a field being edited, its insertion point at the end.
struct EditedText {
  std::string text;
  bool allSelected = false;  // the next insertion or deletion replaces everything

  void insert(const std::string& addition);
  void deleteBackward();
};

}  // namespace simulator
