#include "capture-helper/permission_lines.h"

#include <algorithm>
#include <nlohmann/json.hpp>

#include "core/result.h"

namespace tessarine {
namespace {

using State = Permission::State;

bool isGranted(const Permission& permission) {
  return permission.state == State::granted;
}

const char* stateText(State state) {
  switch (state) {
    case State::granted:
      return "granted";
    case State::denied:
      return "denied";
    case State::unknown:
      break;
  }
  return "unknown";
}

}  // namespace

bool allGranted(const std::vector<Permission>& permissions) {
  return std::ranges::all_of(permissions, isGranted);
}

std::string permissionLines(const std::vector<Permission>& permissions) {
  std::string lines;
  for (const Permission& permission : permissions) {
    lines += permission.name + ": " + stateText(permission.state);
    if (!permission.reason.empty()) lines += " (" + permission.reason + ")";
    if (permission.state == State::denied) lines += "; open " + permission.setting;
    if (permission.state == State::unknown) {
      lines += "; the first script makes macOS ask, later open " + permission.setting;
    }
    lines += "\n";
  }
  return lines;
}

std::string permissionsJson(const std::vector<Permission>& permissions) {
  Result object{{"ok", allGranted(permissions)}, {"command", "permissions"}};
  for (const Permission& permission : permissions) {
    Result& member = object[permission.key];
    member["state"] = stateText(permission.state);
    if (!permission.reason.empty()) member["reason"] = permission.reason;
    if (!isGranted(permission)) member["setting"] = permission.setting;
  }
  return serialize(object) + "\n";
}

}  // namespace tessarine
