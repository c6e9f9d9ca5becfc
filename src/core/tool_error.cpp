#include "core/tool_error.h"

#include "core/numbers.h"

namespace tessarine {

ToolError ToolError::timedOutAfter(double seconds) {
  return timedOut("timed out after " + formatDouble(seconds) + "s");
}

}  // namespace tessarine
