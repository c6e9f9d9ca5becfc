// Posted keys in words.
#pragma once

#include <string>

#include "simulator/desktop/request.h"

namespace simulator {

// What the key types by itself, or empty: chords and keys such as Return type nothing.
std::string typedBy(const KeyEvent& event);

// "⌘⇧G", "Return", "key 99".
std::string keyWords(const KeyEvent& event);

}  // namespace simulator
