#include "simulator/desktop/keyboard_layout.h"

#include <string_view>

namespace simulator {
namespace {

using namespace std::string_view_literals;

// By virtual key code, from 0 on; NUL where a key types nothing.
struct Keys {
  std::string_view plain;
  std::string_view shifted;
};

constexpr Keys us_keys{"asdfhgzxcv\0bqweryt123465=97-80]ou[ip\rlj'k;\\,/nm.\t `"sv,
                       "ASDFHGZXCV\0BQWERYT!@#$^%+(&_*)}OU{IP\rLJ\"K:|<?NM>\t ~"sv};
constexpr Keys azerty_keys{"qsdfhgwxcv@bazeryt&\0\"'\0(-\0\0)!\0$ou\0ip\rlj\0km`;=n,:\t <"sv,
                           "QSDFHGWXCV#BAZERYT123465_97\08\060*OU\0IP\rLJ%KM\0.+N?/\t >"sv};
static_assert(us_keys.plain.size() == us_keys.shifted.size());
static_assert(azerty_keys.plain.size() == us_keys.plain.size());
static_assert(azerty_keys.shifted.size() == us_keys.plain.size());

constexpr const Keys& keysOf(KeyboardLayout layout) {
  return layout == KeyboardLayout::us ? us_keys : azerty_keys;
}

}  // namespace

std::optional<char> typedByKey(TypingKey key, KeyboardLayout layout) {
  const std::string_view keys = key.shifted ? keysOf(layout).shifted : keysOf(layout).plain;
  if (key.code >= keys.size() || keys[key.code] == '\0') return std::nullopt;
  return keys[key.code];
}

std::optional<TypingKey> keyTyping(char character, KeyboardLayout layout) {
  if (character == '\0') return std::nullopt;
  for (const bool shifted : {false, true}) {
    const std::string_view keys = shifted ? keysOf(layout).shifted : keysOf(layout).plain;
    const std::size_t code = keys.find(character);
    if (code != std::string_view::npos) return TypingKey{static_cast<std::uint16_t>(code), shifted};
  }
  return std::nullopt;
}

}  // namespace simulator
