// What tests of choose-path as a whole share: what is asked for, and what comes of it.
#pragma once

#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "commands/staging_world.h"

namespace tessarine::test {

using Json = nlohmann::ordered_json;

inline Outcome chosen(const Json& result) {
  return {0, result.dump(2) + "\n", ""};
}

inline std::vector<std::string> choosePath(const std::string& path,
                                           const std::vector<std::string>& options = {}) {
  std::vector<std::string> arguments{"choose-path", "--pid", "812", "--path", path};
  arguments.insert(arguments.end(), options.begin(), options.end());
  return arguments;
}

inline Json common(const std::string& path, const std::string& kind, const std::string& strategy) {
  return {{"ok", true},
          {"command", "choose-path"},
          {"path", path},
          {"kind", kind},
          {"basename", path.substr(path.rfind('/') + 1)},
          {"strategy", strategy}};
}

// A panel that chooses a file, over the folder of the file to choose.
struct FilePanel {
  explicit FilePanel(const std::string& scenario, World::Patches patches = {})
      : world(scenario, withFolder(std::move(patches), file.folder())) {}
  static World::Patches withFolder(World::Patches patches, const std::string& folder) {
    patches.insert(patches.begin(), {{"/panels/0/mode", "files"}, {"/panels/0/folder", folder}});
    return patches;
  }
  Outcome choose(const std::vector<std::string>& options = {}) {
    return world.run(choosePath(file.path(), options));
  }

  StagedFile file;
  World world;
};

}  // namespace tessarine::test
