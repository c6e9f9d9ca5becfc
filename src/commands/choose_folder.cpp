#include "commands/choose_folder.h"

#include <nlohmann/json.hpp>
#include <optional>

#include "commands/choose_folder_by_controls.h"
#include "commands/choose_folder_by_events.h"
#include "commands/choose_folder_strict.h"
#include "core/tool_error.h"
#include "navigation/path_analysis.h"
#include "platform/files.h"

namespace tessarine {
namespace {

std::string existingFolder(const std::string& targetPath) {
  const std::string path = standardizedPath(targetPath);
  if (!fileExists(path)) throw ToolError::notFound("folder does not exist: " + path);
  if (!isDirectory(path)) throw ToolError::usage("path is not a directory: " + path);
  return path;
}

}  // namespace

Result chooseFolder(std::int32_t primaryPid, const std::string& targetPath, double timeoutSeconds,
                    bool preferBackgroundPanel, bool globalMouseEvents, bool strictBackground) {
  const std::string path = existingFolder(targetPath);
  const auto [volumeRoot, components] = volumeRootAndComponents(path);
  const std::string volumeName = displayName(volumeRoot);
  const std::string basename = lastPathComponent(path);

  if (strictBackground) {
    return chooseFolderByStrictAX(primaryPid, path, timeoutSeconds, volumeRoot, volumeName,
                                  components, basename);
  }
  const auto byEvents = [&, &root = volumeRoot, &parts = components](const std::string& waitError) {
    return chooseFolderByBackgroundEvents(primaryPid, path, timeoutSeconds, waitError, root,
                                          volumeName, parts, basename, globalMouseEvents);
  };
  std::optional<std::string> preferredError;
  if (preferBackgroundPanel) {
    try {
      return byEvents("preferred fresh background panel");
    } catch (const ToolError& error) {
      preferredError = error.message();
    }
  }
  std::string waitError;
  try {
    return chooseFolderByControls(primaryPid, path, timeoutSeconds, volumeRoot, volumeName,
                                  components, basename);
  } catch (const ToolError& error) {
    waitError = error.message();
  }
  if (preferredError) {
    waitError =
        "preferred background panel failed: " + *preferredError + "; AX path failed: " + waitError;
  }
  return byEvents(waitError);
}

}  // namespace tessarine
