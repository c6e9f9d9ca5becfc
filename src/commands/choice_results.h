// The keys that results of choose-folder and choose-path have whatever strategy succeeded.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "core/result.h"

namespace tessarine {

// Of choose-folder: {"ok", "command", "path", "volumeRoot", "volumeDisplayName", "components",
// "searchQuery", "strategy"}
Result folderResult(const std::string& targetPath, const std::string& volumeRoot,
                    const std::string& volumeDisplayName,
                    const std::vector<std::string>& components, const std::string& basename,
                    const std::string& strategy);

// Of choose-path: {"ok", "command", "path", "kind", "basename", "strategy"}
Result pathResult(const std::string& targetPath, const std::string& kind,
                  const std::string& strategy);

// Adds "dialogPid" and "dialogApp".
Result withOwner(Result result, std::int32_t dialogPid, const std::string& dialogApp);

}  // namespace tessarine
