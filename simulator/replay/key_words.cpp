#include "simulator/replay/key_words.h"

#include <map>

#include "simulator/desktop/keyboard_layout.h"
#include "simulator/desktop/text.h"

namespace simulator {
namespace {

const std::map<std::uint16_t, const char*>& keyNames() {
  static const std::map<std::uint16_t, const char*> names{
      {36, "Return"},       {48, "Tab"},         {49, "Space"},      {51, "Backspace"},
      {53, "Escape"},       {76, "Enter"},       {117, "Delete"},    {115, "Home"},
      {119, "End"},         {116, "Page Up"},    {121, "Page Down"}, {123, "Left Arrow"},
      {124, "Right Arrow"}, {125, "Down Arrow"}, {126, "Up Arrow"}};
  return names;
}

}  // namespace

std::string typedBy(const KeyEvent& event) {
  if ((event.flags & (command_flag | control_flag)) != 0) return "";
  if (event.text && !event.text->empty()) {
    const std::string text = utf8FromUtf16(*event.text);
    const bool control = text.size() == 1 && static_cast<unsigned char>(text.front()) < 0x20;
    return control ? "" : text;
  }
  if (keyNames().contains(event.keyCode) && event.keyCode != 49) return "";
  const auto typed =
      typedByKey({event.keyCode, (event.flags & shift_flag) != 0}, KeyboardLayout::us);
  return typed && *typed >= 0x20 ? std::string(1, *typed) : "";
}

std::string keyWords(const KeyEvent& event) {
  std::string words;
  if ((event.flags & control_flag) != 0) words += "⌃";
  if ((event.flags & option_flag) != 0) words += "⌥";
  if ((event.flags & shift_flag) != 0) words += "⇧";
  if ((event.flags & command_flag) != 0) words += "⌘";
  const auto name = keyNames().find(event.keyCode);
  if (name != keyNames().end()) return words + name->second;
  const auto typed = typedByKey({event.keyCode, false}, KeyboardLayout::us);
  if (!typed || *typed < 0x20) return words + "key " + std::to_string(event.keyCode);
  const bool letter = *typed >= 'a' && *typed <= 'z';
  return words + static_cast<char>(letter ? *typed - 'a' + 'A' : *typed);
}

}  // namespace simulator
