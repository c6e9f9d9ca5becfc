#include "navigation/verification.h"

#include <algorithm>
#include <optional>
#include <vector>

#include "dialog/controls.h"
#include "dialog/file_list.h"
#include "dialog/traversal.h"
#include "navigation/path_analysis.h"
#include "platform/files.h"

namespace tessarine {
namespace {

// Far enough for the name field and the location pop-up, and for the list view, too.
constexpr WalkLimits currentFolderLimits{7, 260};
constexpr WalkLimits chooserLimits{8, 260};

struct FolderNames {
  std::string basename;
  std::string shown;  // by the file browser
};

FolderNames namesOf(const std::string& targetPath) {
  const std::string path = standardizedPath(targetPath);
  return {lastPathComponent(path), displayName(path)};
}

bool isOneOf(const std::string& text, const FolderNames& names) {
  return text == names.basename || text == names.shown;
}

bool anyIsOneOf(const std::vector<std::string>& texts, const FolderNames& names) {
  return std::ranges::any_of(texts, [&](const std::string& text) { return isOneOf(text, names); });
}

// Whether one walk below the dialog meets a name field or the location pop-up with one of the
// names, each as its own finder would find it, or what else tells.
bool showsFolder(const Element& dialog, const WalkLimits& limits, const FolderNames& names,
                 const NodeVisitor& tellsOtherwise) {
  bool shown = false;
  LocationPopupSearch location;
  walk(dialog, limits, {"AXRole", "AXTitle", "AXValue", "AXDescription", "AXPosition", "AXSize"},
       [&](const VisitedNode& node) {
         location.visit(node);
         shown = (location.certain && isOneOf(location.shown, names)) ||
                 isChooserNameField(node, names.basename) || tellsOtherwise(node);
         return shown;
       });
  return shown || (location.popup && isOneOf(location.shown, names));
}

}  // namespace

bool chooserCurrentFolderMatches(const Element& dialog, const std::string& targetPath) {
  const FolderNames names = namesOf(targetPath);
  return showsFolder(dialog, currentFolderLimits, names, [](const VisitedNode&) { return false; });
}

bool selectedFileListEntryMatches(const Element& dialog, const std::string& targetPath) {
  return anyIsOneOf(selectedRowLabels(dialog), namesOf(targetPath));
}

bool chooserReached(const Element& dialog, const std::string& targetPath) {
  const FolderNames names = namesOf(targetPath);
  bool listSeen = false;
  return showsFolder(dialog, chooserLimits, names, [&](const VisitedNode& node) {
    if (listSeen || !isListView(node)) return false;
    listSeen = true;
    return anyIsOneOf(labelsOfSelectedRows(node.element()), names);
  });
}

}  // namespace tessarine
