#include "simulator/desktop/keyboard_layout.h"

#include <string_view>

namespace simulator {
namespace {

using namespace std::string_view_literals;

// By virtual key code, from 0 on; NUL where a key types nothing.
constexpr std::string_view plain_keys = "asdfhgzxcv\0bqweryt123465=97-80]ou[ip\rlj'k;\\,/nm.\t `"sv;
constexpr std::string_view shifted_keys =
    "ASDFHGZXCV\0BQWERYT!@#$^%+(&_*)}OU{IP\rLJ\"K:|<?NM>\t ~"sv;
static_assert(plain_keys.size() == shifted_keys.size());

}  // namespace

std::optional<char> typedByKey(TypingKey key) {
  const std::string_view keys = key.shifted ? shifted_keys : plain_keys;
  if (key.code >= keys.size() || keys[key.code] == '\0') return std::nullopt;
  return keys[key.code];
}

std::optional<TypingKey> keyTyping(char character) {
  if (character == '\0') return std::nullopt;
  for (const bool shifted : {false, true}) {
    const std::size_t code = (shifted ? shifted_keys : plain_keys).find(character);
    if (code != std::string_view::npos) return TypingKey{static_cast<std::uint16_t>(code), shifted};
  }
  return std::nullopt;
}

}  // namespace simulator
