// The keys that the result of choose-folder has whatever strategy succeeded.
#pragma once

#include <string>
#include <vector>

#include "core/result.h"

namespace tessarine {

// {"ok", "command", "path", "volumeRoot", "volumeDisplayName", "components", "searchQuery",
// "strategy"}
Result folderResult(const std::string& targetPath, const std::string& volumeRoot,
                    const std::string& volumeDisplayName,
                    const std::vector<std::string>& components, const std::string& basename,
                    const std::string& strategy);

}  // namespace tessarine
