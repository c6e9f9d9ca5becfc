// What the simulated desktop does with a case that nobody modelled.
#pragma once

#include <string>

namespace simulator {

// Names the case on standard error and aborts: an answer would be an invention.
[[noreturn]] void abortUnmodelled(const std::string& what);

}  // namespace simulator
