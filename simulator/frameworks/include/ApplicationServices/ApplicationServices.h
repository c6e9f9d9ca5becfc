// The accessibility functions that this program calls, answered by a simulated desktop.
#pragma once

#include <sys/types.h>

#include <cstdint>

#include "CoreFoundation/CoreFoundation.h"
#include "CoreGraphics/CoreGraphics.h"
#include "CoreServices/CoreServices.h"

enum AXError : std::int32_t {
  kAXErrorSuccess = 0,
  kAXErrorInvalidUIElement = -25202,
  kAXErrorCannotComplete = -25204,
  kAXErrorAttributeUnsupported = -25205,
  kAXErrorAPIDisabled = -25211,
  kAXErrorNoValue = -25212,
};
enum AXValueType : std::uint32_t {
  kAXValueTypeCGPoint = 1,
  kAXValueTypeCGSize = 2,
  kAXValueTypeAXError = 5,
};
using AXCopyMultipleAttributeOptions = std::uint32_t;  // none is known: 0

extern "C" {

using AXUIElementRef = const struct __AXUIElement*;
using AXValueRef = const struct __AXValue*;

// Whether requests of this process are answered. Asks nobody for the permission.
Boolean AXIsProcessTrusted();

CFTypeID AXUIElementGetTypeID();
AXUIElementRef AXUIElementCreateApplication(pid_t pid);
AXError AXUIElementGetPid(AXUIElementRef element, pid_t* pid);
AXUIElementRef AXUIElementCreateSystemWide();
// Only for the system-wide element: how long every request of this process waits. 0: the default.
AXError AXUIElementSetMessagingTimeout(AXUIElementRef element, float seconds);
AXError AXUIElementCopyAttributeValue(AXUIElementRef element, CFStringRef attribute,
                                      CFTypeRef* value);
// Hands out an array of as many members as there are attributes, each at its attribute's position:
// the value, an AXValue of the type kAXValueTypeAXError, or a CFNull.
AXError AXUIElementCopyMultipleAttributeValues(AXUIElementRef element, CFArrayRef attributes,
                                               AXCopyMultipleAttributeOptions options,
                                               CFArrayRef* values);
AXError AXUIElementSetAttributeValue(AXUIElementRef element, CFStringRef attribute,
                                     CFTypeRef value);
AXError AXUIElementCopyActionNames(AXUIElementRef element, CFArrayRef* names);
AXError AXUIElementPerformAction(AXUIElementRef element, CFStringRef action);

CFTypeID AXValueGetTypeID();
AXValueType AXValueGetType(AXValueRef value);
Boolean AXValueGetValue(AXValueRef value, AXValueType type, void* out);

}  // extern "C"
