#include "commands/direct_input.h"

#include <algorithm>
#include <array>
#include <nlohmann/json.hpp>
#include <string_view>

#include "core/tables.h"
#include "core/text.h"
#include "core/tool_error.h"
#include "platform/events.h"

namespace tessarine {
namespace {

struct NamedKey {
  std::string_view name;
  std::string_view otherName;
  std::uint16_t keyCode;
  std::uint64_t flags;
  double pauseSeconds;
};

constexpr std::array<NamedKey, 5> namedKeys{{
    {"return", "enter", keyCodeReturn, noModifiers, 0.1},
    {"delete", "backspace", keyCodeDelete, noModifiers, 0.1},
    {"escape", "esc", keyCodeEscape, noModifiers, 0.1},
    {"cmd-a", "command-a", keyCodeA, commandFlag, 0.1},
    // Longer: the go-to-folder sheet opens after it.
    {"cmd-shift-g", "command-shift-g", keyCodeG, commandShiftFlags, 0.15},
}};

constexpr double directTypingPauseSeconds = 0.02;

}  // namespace

Result clickPoint(std::int32_t pid, double x, double y) {
  const Point point{x, y};
  postMouseClick(pid, point, 1, false);
  return {{"ok", true}, {"command", "click-point"}, {"point", pointObject(point)}};
}

Result typeTextCommand(std::int32_t pid, const std::string& text) {
  typeUnicodeText(pid, text, directTypingPauseSeconds);
  return {{"ok", true}, {"command", "type-text"}, {"textLength", characterCount(text)}};
}

Result pressKeyCommand(std::int32_t pid, const std::string& key) {
  const auto named = std::ranges::find_if(namedKeys, [&](const NamedKey& entry) {
    return entry.name == key || entry.otherName == key;
  });
  if (named == namedKeys.end()) throw ToolError::usage("unsupported --key: " + key);
  tapKey(pid, named->keyCode, named->flags, {}, named->pauseSeconds);
  return {{"ok", true}, {"command", "press-key"}, {"key", key}};
}

}  // namespace tessarine
