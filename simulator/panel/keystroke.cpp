#include "simulator/panel/keystroke.h"

#include <utf8proc.h>

#include "simulator/desktop/text.h"

namespace simulator {
namespace {

// Assumed (Live.ControlCharactersTypeNothing): control characters type nothing.
std::string withoutControls(std::string text) {
  std::erase_if(text, [](unsigned char byte) { return byte < 0x20 || byte == 0x7F; });
  return text;
}

// What a chord means follows from the letter that its key types, not from the key's place.
std::uint16_t usualCode(std::uint16_t code, KeyboardLayout layout) {
  const auto letter = typedByKey({code, false}, layout);
  const auto usual = letter ? keyTyping(*letter, KeyboardLayout::us) : std::nullopt;
  return usual ? usual->code : code;
}

// Where the last character that a reader sees begins: letters with their combining marks are one.
std::size_t lastCharacter(const std::string& text) {
  const auto* bytes = reinterpret_cast<const utf8proc_uint8_t*>(text.data());
  std::size_t last = 0;
  utf8proc_int32_t before = -1;
  utf8proc_int32_t state = 0;
  for (std::size_t at = 0; at < text.size();) {
    utf8proc_int32_t point = 0;
    const auto length =
        utf8proc_iterate(bytes + at, static_cast<utf8proc_ssize_t>(text.size() - at), &point);
    const bool valid = length > 0;
    if (!valid || before < 0 || utf8proc_grapheme_break_stateful(before, point, &state)) last = at;
    before = valid ? point : -1;
    at += valid ? static_cast<std::size_t>(length) : 1;
  }
  return last;
}

}  // namespace

bool Keystroke::is(std::uint16_t code, bool withCommand, bool withShift) const {
  return text.empty() && keyCode == code && command == withCommand && shift == withShift &&
         !option && !control;
}

Keystroke keystroke(const KeyEvent& event, KeyboardLayout layout) {
  Keystroke stroke;
  stroke.keyCode = event.keyCode;
  stroke.command = (event.flags & command_flag) != 0;
  stroke.shift = (event.flags & shift_flag) != 0;
  stroke.option = (event.flags & option_flag) != 0;
  stroke.control = (event.flags & control_flag) != 0;
  if (stroke.command || stroke.control) {
    stroke.keyCode = usualCode(event.keyCode, layout);
    return stroke;
  }
  if (event.text && !event.text->empty()) {
    stroke.text = withoutControls(utf8FromUtf16(event.text->substr(0, longest_event_text)));
  } else {
    const auto typed = typedByKey({event.keyCode, stroke.shift}, layout);
    if (typed) stroke.text = withoutControls(std::string(1, *typed));
  }
  return stroke;
}

void EditedText::insert(const std::string& addition) {
  if (allSelected) text.clear();
  allSelected = false;
  text += addition;
}

// Assumed (Live.DeleteTakesWhatAReaderSeesAsOneCharacter): what a reader sees as one character is
// deleted as one.
void EditedText::deleteBackward() {
  text.erase(allSelected ? 0 : lastCharacter(text));
  allSelected = false;
}

}  // namespace simulator
