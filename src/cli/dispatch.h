// Which function carries out which command.
#pragma once

#include "cli/options.h"
#include "core/result.h"

namespace tessarine {

// Carries out the command and returns its result, or throws its ToolError. Expects options that
// parseArgs returned.
//
// With --verify choose-folder and choose-path run their verified strategy alone, whatever the other
// flags say. close and choose-folder with --strict-background leave the application frontmost that
// was; given together with --temporary-foreground, --strict-background has no effect.
Result run(const Options& options);

}  // namespace tessarine
