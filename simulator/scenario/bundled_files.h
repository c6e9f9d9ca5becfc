// The files of simulator/scenarios, built into the program by embed.cmake.
#pragma once

#include <string_view>
#include <vector>

namespace simulator {

struct BundledFile {
  std::string_view name;  // without ".json"
  std::string_view text;
};

// In alphabetical order.
const std::vector<BundledFile>& bundledFiles();

}  // namespace simulator
