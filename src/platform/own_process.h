// This process: its number, its environment, and names for what it makes.
#pragma once

#include <cstdint>
#include <string>

namespace tessarine {

std::int32_t ownPid();

// A new random UUID in its canonical upper-case form.
std::string freshUuid();

// Empty when the variable is not set.
std::string environmentVariable(const std::string& name);

}  // namespace tessarine
