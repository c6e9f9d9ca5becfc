#include "platform/workspace.h"

#import <AppKit/AppKit.h>

namespace tessarine {
namespace {

NSRunningApplication* runningApplication(std::int32_t pid) {
  return [NSRunningApplication runningApplicationWithProcessIdentifier:pid];
}

}  // namespace

std::optional<std::int32_t> frontmostApplicationPid() {
  @autoreleasepool {
    NSRunningApplication* application = NSWorkspace.sharedWorkspace.frontmostApplication;
    if (application == nil) return {};
    return application.processIdentifier;
  }
}

ApplicationState applicationState(std::int32_t pid) {
  @autoreleasepool {
    NSRunningApplication* application = runningApplication(pid);
    if (application == nil) return ApplicationState::unknown;
    return application.terminated ? ApplicationState::terminated : ApplicationState::running;
  }
}

void activateApplication(std::int32_t pid) {
  @autoreleasepool {
    [runningApplication(pid) activateWithOptions:NSApplicationActivateAllWindows];
  }
}

std::vector<Rect> screenFrames() {
  @autoreleasepool {
    std::vector<Rect> frames;
    for (NSScreen* screen in NSScreen.screens) {
      const NSRect frame = screen.frame;
      frames.push_back({frame.origin.x, frame.origin.y, frame.size.width, frame.size.height});
    }
    return frames;
  }
}

std::string fileManagerDisplayName(const std::string& path) {
  @autoreleasepool {
    NSString* text = [NSString stringWithUTF8String:path.c_str()];
    if (text == nil) return path;
    const char* name = [NSFileManager.defaultManager displayNameAtPath:text].UTF8String;
    return name == nullptr ? path : std::string(name);
  }
}

std::string temporaryDirectory() {
  @autoreleasepool {
    return NSTemporaryDirectory().UTF8String;
  }
}

}  // namespace tessarine
