// The geometry, display and event functions that this program calls. Events are posted to a
// simulated desktop, exactly as they were given.
#pragma once

#include <sys/types.h>

#include <cstdint>

#include "CoreFoundation/CoreFoundation.h"

extern "C" {

using CGFloat = double;

struct CGPoint {
  CGFloat x;
  CGFloat y;
};
struct CGSize {
  CGFloat width;
  CGFloat height;
};
struct CGRect {
  CGPoint origin;
  CGSize size;
};

inline CGPoint CGPointMake(CGFloat x, CGFloat y) {
  return {x, y};
}
inline CGRect CGRectMake(CGFloat x, CGFloat y, CGFloat width, CGFloat height) {
  return {{x, y}, {width, height}};
}
bool CGRectIsNull(CGRect rect);
bool CGRectEqualToRect(CGRect one, CGRect other);
bool CGRectContainsPoint(CGRect rect, CGPoint point);
bool CGRectIntersectsRect(CGRect one, CGRect other);
CGRect CGRectIntersection(CGRect one, CGRect other);

using CGDirectDisplayID = std::uint32_t;
CGDirectDisplayID CGMainDisplayID();
CGRect CGDisplayBounds(CGDirectDisplayID display);

using CGEventRef = struct __CGEvent*;
using CGEventSourceRef = struct __CGEventSource*;
using CGKeyCode = std::uint16_t;
using CGEventFlags = std::uint64_t;

enum CGEventTapLocation : std::uint32_t { kCGHIDEventTap = 0 };
enum CGEventType : std::uint32_t {
  kCGEventLeftMouseDown = 1,
  kCGEventLeftMouseUp = 2,
  kCGEventRightMouseDown = 3,
  kCGEventKeyDown = 10,
  kCGEventOtherMouseDown = 25,
};
enum CGMouseButton : std::uint32_t { kCGMouseButtonLeft = 0 };
enum CGEventField : std::uint32_t { kCGMouseEventClickState = 1 };
enum CGEventSourceStateID : std::int32_t { kCGEventSourceStateHIDSystemState = 1 };

CGEventRef CGEventCreateKeyboardEvent(CGEventSourceRef source, CGKeyCode key, bool down);
CGEventRef CGEventCreateMouseEvent(CGEventSourceRef source, CGEventType type, CGPoint at,
                                   CGMouseButton button);
void CGEventKeyboardSetUnicodeString(CGEventRef event, unsigned long length,
                                     const unsigned short* text);
void CGEventSetFlags(CGEventRef event, CGEventFlags flags);
void CGEventSetIntegerValueField(CGEventRef event, CGEventField field, std::int64_t value);
void CGEventPost(CGEventTapLocation tap, CGEventRef event);
void CGEventPostToPid(pid_t pid, CGEventRef event);

// How many events of the type were seen since the window server started; a key's repetitions are
// not counted.
std::uint32_t CGEventSourceCounterForEventType(CGEventSourceStateID state, CGEventType type);

// Whether this process may see the windows of others. Asks nobody for the permission.
bool CGPreflightScreenCaptureAccess();

using CGWindowID = std::uint32_t;
using CGWindowListOption = std::uint32_t;
enum : CGWindowListOption { kCGWindowListOptionOnScreenOnly = 1 };
#define kCGNullWindowID ((CGWindowID)0)

extern const CFStringRef kCGWindowNumber;
extern const CFStringRef kCGWindowOwnerPID;
extern const CFStringRef kCGWindowOwnerName;
extern const CFStringRef kCGWindowName;
extern const CFStringRef kCGWindowLayer;
extern const CFStringRef kCGWindowBounds;

// Null for a caller outside a login session.
CFArrayRef CGWindowListCopyWindowInfo(CGWindowListOption option, CGWindowID relativeTo);
bool CGRectMakeWithDictionaryRepresentation(CFDictionaryRef dictionary, CGRect* rect);

}  // extern "C"
