#include "commands/choice_results.h"

#include <nlohmann/json.hpp>

#include "platform/files.h"

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

Result pathResult(const std::string& targetPath, const std::string& kind,
                  const std::string& strategy) {
  return {{"ok", true},
          {"command", "choose-path"},
          {"path", targetPath},
          {"kind", kind},
          {"basename", lastPathComponent(targetPath)},
          {"strategy", strategy}};
}

Result withOwner(Result result, std::int32_t dialogPid, const std::string& dialogApp) {
  result["dialogPid"] = dialogPid;
  result["dialogApp"] = dialogApp;
  return result;
}

}  // namespace tessarine
