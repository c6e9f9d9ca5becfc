// Whether the chooser shows, or has selected, the target folder. A folder counts under its name in
// the file system or the name that the file browser displays for it. Nothing here fails: a missing
// element makes the answer false. How a folder's name is displayed is looked up without a time
// limit (navigation/path_analysis.h).
#pragma once

#include <string>

#include "platform/element.h"

namespace tessarine {

// A name field shows the folder's name, or the location pop-up shows its name or display name.
bool chooserCurrentFolderMatches(const Element& dialog, const std::string& targetPath);

// The selected rows of the file list carry the folder's name or display name.
bool selectedFileListEntryMatches(const Element& dialog, const std::string& targetPath);

// Either of them.
bool chooserReached(const Element& dialog, const std::string& targetPath);

}  // namespace tessarine
