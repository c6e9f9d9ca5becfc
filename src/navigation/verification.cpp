#include "navigation/verification.h"

#include <algorithm>

#include "dialog/controls.h"
#include "dialog/file_list.h"
#include "navigation/path_analysis.h"
#include "platform/files.h"

namespace tessarine {

bool chooserCurrentFolderMatches(const Element& dialog, const std::string& targetPath) {
  const std::string path = standardizedPath(targetPath);
  const std::string basename = lastPathComponent(path);
  const std::string shownName = displayName(path);
  if (findChooserNameField(dialog, basename)) return true;
  const auto popup = findLocationPopup(dialog);
  if (!popup) return false;
  const std::string shown = popupValue(popup->element);
  return shown == basename || shown == shownName;
}

bool selectedFileListEntryMatches(const Element& dialog, const std::string& targetPath) {
  const std::string path = standardizedPath(targetPath);
  const std::string basename = lastPathComponent(path);
  const std::string shownName = displayName(path);
  const auto labels = selectedRowLabels(dialog);
  return std::any_of(labels.begin(), labels.end(), [&](const std::string& label) {
    return label == basename || label == shownName;
  });
}

bool chooserReached(const Element& dialog, const std::string& targetPath) {
  return chooserCurrentFolderMatches(dialog, targetPath) ||
         selectedFileListEntryMatches(dialog, targetPath);
}

}  // namespace tessarine
