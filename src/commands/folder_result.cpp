#include "commands/folder_result.h"

#include <nlohmann/json.hpp>

namespace tessarine {

Result folderResult(const std::string& targetPath, const std::string& volumeRoot,
                    const std::string& volumeDisplayName,
                    const std::vector<std::string>& components, const std::string& basename,
                    const std::string& strategy) {
  return {{"ok", true},
          {"command", "choose-folder"},
          {"path", targetPath},
          {"volumeRoot", volumeRoot},
          {"volumeDisplayName", volumeDisplayName},
          {"components", components},
          {"searchQuery", basename},
          {"strategy", strategy}};
}

}  // namespace tessarine
