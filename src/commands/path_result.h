// The keys that the result of choose-path has whatever route succeeded.
#pragma once

#include <cstdint>
#include <string>

#include "core/result.h"

namespace tessarine {

// {"ok", "command", "path", "kind", "basename", "strategy"}
Result pathResult(const std::string& targetPath, const std::string& kind,
                  const std::string& strategy);

// Adds "dialogPid" and "dialogApp".
Result withOwner(Result result, std::int32_t dialogPid, const std::string& dialogApp);

}  // namespace tessarine
