// A scenario whose panel first shows a folder of its own with one folder in it to choose.
#pragma once

#include <nlohmann/json.hpp>
#include <string>

#include "support/temporary_folder.h"
#include "support/world.h"

namespace tessarine::test {

struct FolderWorld {
  explicit FolderWorld(const std::string& scenario, const World::Patches& patches = {},
                       const std::string& name = "target");

  TemporaryFolder files;
  std::string start;   // what the panel shows first
  std::string target;  // in it, with two folders
  World world;

  Outcome chooseStrictly(const std::vector<std::string>& options = {});
};

// What a failure after the search for the panel is wrapped into.
std::string strictFailure(const std::string& cause);

// The result of a strict choice as the program prints it.
std::string strictResultText(const std::string& path, std::int32_t dialogPid);

// "mouse 0, session 0, foreground 0": what a strict choice never does to the desktop.
std::string disturbance(const simulator::Record& record);
inline constexpr const char* noDisturbance = "mouse 0, session 0, foreground 0";

}  // namespace tessarine::test
