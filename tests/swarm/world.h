// What one seed stands for: a whole desktop with its panels and folders, and one call of the tool.
#pragma once

#include <cstdint>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "swarm/folders.h"

namespace tessarine::test {

struct DrawnWorld {
  // The folders are there as long as it lives. With `verify` the call has --verify.
  DrawnWorld(std::uint64_t seed, bool verify);

  std::uint64_t seed;
  FolderTree folders;
  nlohmann::ordered_json scenario;
  std::vector<std::string> arguments;  // without the program's name
  std::int32_t browser = 0;            // its --pid
  std::string target;                  // its --path, written plainly
  double timeoutSeconds = 10;
};

}  // namespace tessarine::test
