// What the helper prints about permissions.
#pragma once

#include <string>
#include <vector>

#include "capture-helper/permissions.h"

namespace tessarine {

bool allGranted(const std::vector<Permission>& permissions);

// A line for each, ended by a line feed: "Accessibility: granted",
// "Accessibility: denied; open System Settings > Privacy & Security > Accessibility", or
// "Automation of the Finder: unknown (nobody was asked); the first script makes macOS ask, later
// open ...".
std::string permissionLines(const std::vector<Permission>& permissions);

// The text of a JSON object, ended by a line feed: "ok" (whether all are granted), "command"
// ("permissions") and, under the key of each permission, its "state", the "reason" of one that is
// unknown, and the "setting" of one that is not granted.
std::string permissionsJson(const std::vector<Permission>& permissions);

}  // namespace tessarine
