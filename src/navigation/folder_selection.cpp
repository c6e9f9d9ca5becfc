#include "navigation/folder_selection.h"

#include <algorithm>

#include "core/tool_error.h"
#include "dialog/controls.h"
#include "dialog/file_list.h"
#include "navigation/row_opening.h"
#include "platform/accessibility.h"
#include "platform/clock.h"
#include "platform/files.h"
#include "platform/wait.h"

namespace tessarine {
namespace {

constexpr double confirmSeconds = 0.1;
constexpr double longestStabilizeSeconds = 2.0;
constexpr double stabilizePollSeconds = 0.1;
constexpr double stabilizedSeconds = 0.15;

}  // namespace

void setSearchQuery(const Element& dialog, const std::string& query) {
  const auto field = findSearchField(dialog);
  if (!field) throw ToolError::notFound("search field not found in open dialog");
  const int code = setText(*field, "AXValue", query);
  if (code != kAXErrorSuccess) {
    throw ToolError::actionFailed("failed to write search field: " + std::to_string(code));
  }
}

void stabilizeFolderSelection(const Element& dialog, std::int32_t pid,
                              const std::string& targetPath, double timeoutSeconds) {
  const std::string path = standardizedPath(targetPath);
  const std::string basename = lastPathComponent(path);
  if (const auto field = findChooserNameField(dialog, basename)) {
    tryAction("AXConfirm", *field);
    sleepSeconds(confirmSeconds);
  }
  const NodeRef row =
      waitForValue(std::min(timeoutSeconds, longestStabilizeSeconds), stabilizePollSeconds,
                   [&] { return findFolderRow(dialog, path, basename); });
  openRow(pid, row, true);
  sleepSeconds(stabilizedSeconds);
}

}  // namespace tessarine
