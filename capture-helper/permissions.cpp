#include "capture-helper/permissions.h"

#include <ApplicationServices/ApplicationServices.h>

#include <string_view>

namespace tessarine {
namespace {

using State = Permission::State;

const std::string settings = "System Settings > Privacy & Security > ";

struct Scriptable {
  const char* key;
  const char* name;
  const char* bundle;
};
constexpr Scriptable scriptables[]{
    {"automationOfSystemEvents", "System Events", "com.apple.systemevents"},
    {"automationOfFinder", "the Finder", "com.apple.finder"}};

// Whether every event may be sent to the application that has this bundle identifier.
OSStatus automationStatus(std::string_view bundle) {
  AEDesc address{};
  const OSErr failure = AECreateDesc(typeApplicationBundleID, bundle.data(),
                                     static_cast<long>(bundle.size()), &address);
  if (failure != noErr) return failure;
  constexpr Boolean askPerson = 0;
  const OSStatus status =
      AEDeterminePermissionToAutomateTarget(&address, typeWildCard, typeWildCard, askPerson);
  AEDisposeDesc(&address);
  return status;
}

Permission automation(const Scriptable& application) {
  const std::string name = application.name;
  Permission permission{application.key, "Automation of " + name, State::unknown, "",
                        settings + "Automation"};
  switch (const OSStatus status = automationStatus(application.bundle)) {
    case noErr:
      permission.state = State::granted;
      break;
    case errAEEventNotPermitted:
      permission.state = State::denied;
      break;
    case errAEEventWouldRequireUserConsent:
      permission.reason = "nobody was asked";
      break;
    case procNotFound:
      permission.reason = name + " does not run";
      break;
    default:
      permission.reason = "error " + std::to_string(status);
  }
  return permission;
}

State stateOf(bool granted) {
  return granted ? State::granted : State::denied;
}

}  // namespace

std::vector<Permission> readPermissions() {
  std::vector<Permission> permissions{
      {"accessibility", "Accessibility", stateOf(AXIsProcessTrusted() != 0), "",
       settings + "Accessibility"},
      {"screenRecording", "Screen Recording", stateOf(CGPreflightScreenCaptureAccess()), "",
       settings + "Screen & System Audio Recording (before macOS 15: Screen Recording)"}};
  for (const Scriptable& application : scriptables) permissions.push_back(automation(application));
  return permissions;
}

}  // namespace tessarine
