// Where this program's own file is.
#pragma once

#include <filesystem>

namespace simulator {

// Absolute, links followed. Throws std::filesystem::filesystem_error when it cannot be found out.
std::filesystem::path ownPath();

}  // namespace simulator
