#include "simulator/panel/keystroke.h"

#include <string_view>

#include "simulator/desktop/text.h"

namespace simulator {
namespace {

constexpr std::uint64_t shift_flag = 0x20000;
constexpr std::uint64_t control_flag = 0x40000;
constexpr std::uint64_t option_flag = 0x80000;
constexpr std::uint64_t command_flag = 0x100000;

// The US layout by key code, from 0 on; a blank is a key that types nothing, but for the space bar.
constexpr std::string_view plain_layout = "asdfhgzxcv bqweryt123465=97-80]ou[ip lj'k;\\,/nm.";
constexpr std::string_view shifted_layout = "ASDFHGZXCV BQWERYT!@#$^%+(&_*)}OU{IP LJ\"K:|<?NM>";
constexpr std::uint16_t space_bar = 49;

std::string typedByLayout(std::uint16_t keyCode, bool shifted) {
  if (keyCode == space_bar) return " ";
  const auto& layout = shifted ? shifted_layout : plain_layout;
  if (keyCode >= layout.size() || layout[keyCode] == ' ') return "";
  return std::string(1, layout[keyCode]);
}

// Control characters type nothing.
std::string withoutControls(std::string text) {
  std::erase_if(text, [](unsigned char byte) { return byte < 0x20 || byte == 0x7F; });
  return text;
}

}  // namespace

bool Keystroke::is(std::uint16_t code, bool withCommand, bool withShift) const {
  return text.empty() && keyCode == code && command == withCommand && shift == withShift &&
         !option && !control;
}

Keystroke keystroke(const KeyEvent& event) {
  Keystroke stroke;
  stroke.keyCode = event.keyCode;
  stroke.command = (event.flags & command_flag) != 0;
  stroke.shift = (event.flags & shift_flag) != 0;
  stroke.option = (event.flags & option_flag) != 0;
  stroke.control = (event.flags & control_flag) != 0;
  if (stroke.command || stroke.control) return stroke;
  if (event.text && !event.text->empty()) {
    stroke.text = withoutControls(utf8FromUtf16(event.text->substr(0, longest_event_text)));
  } else {
    stroke.text = typedByLayout(event.keyCode, stroke.shift);
  }
  return stroke;
}

void EditedText::insert(const std::string& addition) {
  if (allSelected) text.clear();
  allSelected = false;
  text += addition;
}

void EditedText::deleteBackward() {
  if (allSelected) text.clear();
  allSelected = false;
  const auto isContinuation = [](char c) { return (c & 0xC0) == 0x80; };
  while (!text.empty() && isContinuation(text.back())) text.pop_back();
  if (!text.empty()) text.pop_back();
}

}  // namespace simulator
