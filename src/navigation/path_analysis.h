// Facts about a target folder: the volume it lies on, its components, the names under which the
// file browser shows it. Paths are standardized first. Nothing here fails.
#pragma once

#include <string>
#include <vector>

namespace tessarine {

struct VolumePath {
  std::string volumeRoot;               // "/" or "/Volumes/" and one component
  std::vector<std::string> components;  // below the volume root, outermost first
};

VolumePath volumeRootAndComponents(const std::string& path);

// The name that the Finder displays for the path, or the file manager's when the Finder does not
// answer. Asked once for each path; a script run, without a time limit, the first time.
std::string displayName(const std::string& path);

// The same; the Finder has so long to answer.
std::string displayNameWithin(const std::string& path, double timeoutSeconds);

// The components of `to` below `from`; empty when `to` is not below it, or is the same.
std::vector<std::string> relativeComponents(const std::string& from, const std::string& to);

}  // namespace tessarine
