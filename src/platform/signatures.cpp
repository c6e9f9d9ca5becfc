// What this program takes for granted about the platform's declarations, compiled against whichever
// headers the build uses, the platform's own or others in their place. A difference between them is
// an error in one of the builds.
//
// Functions are compared by the platform's names for types; what the names stand for comes first.
#include "platform/signature.h"

#include <ApplicationServices/ApplicationServices.h>
#include <dispatch/dispatch.h>
#include <sys/types.h>

#include <cstddef>
#include <cstdint>

namespace tessarine {
namespace {

// --- Types. ---

template <class Type, class Expected>
constexpr bool is = std::is_same_v<Type, Expected>;
template <class Enumeration>
using Underlying = std::underlying_type_t<Enumeration>;
template <class Reference>
constexpr bool isOpaque = std::is_pointer_v<Reference> && !std::is_same_v<Reference, void*>;

static_assert(is<Boolean, unsigned char>);
static_assert(is<UniChar, unsigned short>);
static_assert(is<UniCharCount, unsigned long>);
static_assert(is<CFIndex, long>);
static_assert(is<CFTypeID, unsigned long>);
static_assert(is<CFTypeRef, const void*>);
static_assert(isOpaque<CFAllocatorRef> && isOpaque<CFStringRef> && isOpaque<CFArrayRef> &&
              isOpaque<CFBooleanRef> && isOpaque<CFURLRef> && isOpaque<CFErrorRef>);
static_assert(isOpaque<AXUIElementRef> && isOpaque<AXValueRef>);
static_assert(isOpaque<CGEventRef> && isOpaque<CGEventSourceRef>);

static_assert(is<pid_t, std::int32_t>);
static_assert(is<CGFloat, double>);
static_assert(is<CGKeyCode, std::uint16_t>);
static_assert(is<CGDirectDisplayID, std::uint32_t>);
static_assert(sizeof(CGEventFlags) == 8 && sizeof(dispatch_time_t) == 8);
static_assert(is<dispatch_function_t, void (*)(void*)>);

static_assert(is<Underlying<AXError>, std::int32_t>);
static_assert(is<Underlying<AXValueType>, std::uint32_t>);
static_assert(sizeof(AXCopyMultipleAttributeOptions) == 4);
static_assert(is<Underlying<CFURLPathStyle>, CFIndex>);
static_assert(is<Underlying<CGEventTapLocation>, std::uint32_t>);
static_assert(is<Underlying<CGEventType>, std::uint32_t>);
static_assert(is<Underlying<CGEventSourceStateID>, std::int32_t>);
static_assert(is<Underlying<CGMouseButton>, std::uint32_t>);
static_assert(is<Underlying<CGEventField>, std::uint32_t>);

static_assert(sizeof(CGPoint) == 16 && offsetof(CGPoint, y) == 8);
static_assert(sizeof(CGSize) == 16 && offsetof(CGSize, height) == 8);
static_assert(sizeof(CGRect) == 32 && offsetof(CGRect, size) == 16);
static_assert(sizeof(CFRange) == 16 && offsetof(CFRange, length) == 8);

// --- Constants. ---

static_assert(kAXErrorSuccess == 0);
static_assert(kAXErrorInvalidUIElement == -25202 && kAXErrorCannotComplete == -25204);
static_assert(kAXErrorAttributeUnsupported == -25205);
static_assert(kAXErrorAPIDisabled == -25211 && kAXErrorNoValue == -25212);
static_assert(kAXValueTypeCGPoint == 1 && kAXValueTypeCGSize == 2 && kAXValueTypeAXError == 5);
static_assert(kCFURLPOSIXPathStyle == 0);
static_assert(kCGHIDEventTap == 0);
static_assert(kCGEventLeftMouseDown == 1 && kCGEventLeftMouseUp == 2);
static_assert(kCGEventRightMouseDown == 3 && kCGEventOtherMouseDown == 25);
static_assert(kCGEventKeyDown == 10);
static_assert(kCGEventSourceStateHIDSystemState == 1);
static_assert(kCGMouseButtonLeft == 0);
static_assert(kCGMouseEventClickState == 1);
static_assert(QOS_CLASS_USER_INITIATED == 0x19);
static_assert(DISPATCH_TIME_NOW == 0 && DISPATCH_TIME_FOREVER == ~std::uint64_t{0});
static_assert(NSEC_PER_SEC == 1'000'000'000);
static_assert(is<decltype(kCFAllocatorDefault), const CFAllocatorRef>);
static_assert(is<decltype(kCFBooleanTrue), const CFBooleanRef>);
static_assert(is<decltype(kCFTypeArrayCallBacks), const CFArrayCallBacks>);

// --- Values. ---

static_assert(hasSignature<decltype(CFRetain), CFTypeRef(CFTypeRef)>);
static_assert(hasSignature<decltype(CFRelease), void(CFTypeRef)>);
static_assert(hasSignature<decltype(CFEqual), Boolean(CFTypeRef, CFTypeRef)>);
static_assert(hasSignature<decltype(CFGetTypeID), CFTypeID(CFTypeRef)>);
static_assert(hasSignature<decltype(CFStringGetTypeID), CFTypeID()>);
static_assert(hasSignature<decltype(CFStringCreateWithCharacters),
                           CFStringRef(CFAllocatorRef, const UniChar*, CFIndex)>);
static_assert(hasSignature<decltype(CFStringGetLength), CFIndex(CFStringRef)>);
static_assert(hasSignature<decltype(CFStringGetCharacters), void(CFStringRef, CFRange, UniChar*)>);
static_assert(hasSignature<decltype(CFRangeMake), CFRange(CFIndex, CFIndex)>);
static_assert(hasSignature<decltype(CFArrayGetTypeID), CFTypeID()>);
static_assert(hasSignature<decltype(CFArrayCreate), CFArrayRef(CFAllocatorRef, const void**,
                                                               CFIndex, const CFArrayCallBacks*)>);
static_assert(hasSignature<decltype(CFArrayGetCount), CFIndex(CFArrayRef)>);
static_assert(hasSignature<decltype(CFArrayGetValueAtIndex), const void*(CFArrayRef, CFIndex)>);
static_assert(hasSignature<decltype(CFBooleanGetTypeID), CFTypeID()>);
static_assert(hasSignature<decltype(CFBooleanGetValue), Boolean(CFBooleanRef)>);
static_assert(hasSignature<decltype(CFNullGetTypeID), CFTypeID()>);
static_assert(hasSignature<decltype(CFURLGetTypeID), CFTypeID()>);
static_assert(
    hasSignature<decltype(CFURLCreateWithString), CFURLRef(CFAllocatorRef, CFStringRef, CFURLRef)>);
static_assert(hasSignature<decltype(CFURLCreateFilePathURL),
                           CFURLRef(CFAllocatorRef, CFURLRef, CFErrorRef*)>);
static_assert(
    hasSignature<decltype(CFURLCopyFileSystemPath), CFStringRef(CFURLRef, CFURLPathStyle)>);
static_assert(hasSignature<decltype(CFURLCopyScheme), CFStringRef(CFURLRef)>);

// --- Accessibility. ---

static_assert(hasSignature<decltype(AXUIElementGetTypeID), CFTypeID()>);
static_assert(hasSignature<decltype(AXUIElementCreateApplication), AXUIElementRef(pid_t)>);
static_assert(hasSignature<decltype(AXUIElementCreateSystemWide), AXUIElementRef()>);
static_assert(
    hasSignature<decltype(AXUIElementSetMessagingTimeout), AXError(AXUIElementRef, float)>);
static_assert(hasSignature<decltype(AXUIElementGetPid), AXError(AXUIElementRef, pid_t*)>);
static_assert(hasSignature<decltype(AXUIElementCopyAttributeValue),
                           AXError(AXUIElementRef, CFStringRef, CFTypeRef*)>);
static_assert(
    hasSignature<decltype(AXUIElementCopyMultipleAttributeValues),
                 AXError(AXUIElementRef, CFArrayRef, AXCopyMultipleAttributeOptions, CFArrayRef*)>);
static_assert(hasSignature<decltype(AXUIElementSetAttributeValue),
                           AXError(AXUIElementRef, CFStringRef, CFTypeRef)>);
static_assert(
    hasSignature<decltype(AXUIElementCopyActionNames), AXError(AXUIElementRef, CFArrayRef*)>);
static_assert(
    hasSignature<decltype(AXUIElementPerformAction), AXError(AXUIElementRef, CFStringRef)>);
static_assert(hasSignature<decltype(AXValueGetTypeID), CFTypeID()>);
static_assert(hasSignature<decltype(AXValueGetType), AXValueType(AXValueRef)>);
static_assert(hasSignature<decltype(AXValueGetValue), Boolean(AXValueRef, AXValueType, void*)>);

// --- Geometry, displays and events. ---

static_assert(hasSignature<decltype(CGPointMake), CGPoint(CGFloat, CGFloat)>);
static_assert(hasSignature<decltype(CGRectMake), CGRect(CGFloat, CGFloat, CGFloat, CGFloat)>);
static_assert(hasSignature<decltype(CGRectIsNull), bool(CGRect)>);
static_assert(hasSignature<decltype(CGRectEqualToRect), bool(CGRect, CGRect)>);
static_assert(hasSignature<decltype(CGRectContainsPoint), bool(CGRect, CGPoint)>);
static_assert(hasSignature<decltype(CGRectIntersectsRect), bool(CGRect, CGRect)>);
static_assert(hasSignature<decltype(CGRectIntersection), CGRect(CGRect, CGRect)>);
static_assert(hasSignature<decltype(CGMainDisplayID), CGDirectDisplayID()>);
static_assert(hasSignature<decltype(CGDisplayBounds), CGRect(CGDirectDisplayID)>);
static_assert(hasSignature<decltype(CGEventCreateKeyboardEvent),
                           CGEventRef(CGEventSourceRef, CGKeyCode, bool)>);
static_assert(hasSignature<decltype(CGEventCreateMouseEvent),
                           CGEventRef(CGEventSourceRef, CGEventType, CGPoint, CGMouseButton)>);
static_assert(hasSignature<decltype(CGEventKeyboardSetUnicodeString),
                           void(CGEventRef, UniCharCount, const UniChar*)>);
static_assert(hasSignature<decltype(CGEventSetFlags), void(CGEventRef, CGEventFlags)>);
static_assert(hasSignature<decltype(CGEventSetIntegerValueField),
                           void(CGEventRef, CGEventField, std::int64_t)>);
static_assert(hasSignature<decltype(CGEventPost), void(CGEventTapLocation, CGEventRef)>);
static_assert(hasSignature<decltype(CGEventPostToPid), void(pid_t, CGEventRef)>);
static_assert(hasSignature<decltype(CGEventSourceCounterForEventType),
                           std::uint32_t(CGEventSourceStateID, CGEventType)>);

// --- Dispatch. ---

static_assert(
    hasSignature<decltype(dispatch_time), dispatch_time_t(dispatch_time_t, std::int64_t)>);
static_assert(hasSignature<decltype(dispatch_release), void(dispatch_object_t)>);
static_assert(hasSignature<decltype(dispatch_get_global_queue),
                           dispatch_queue_global_t(std::intptr_t, std::uintptr_t)>);
static_assert(
    hasSignature<decltype(dispatch_async_f), void(dispatch_queue_t, void*, dispatch_function_t)>);
static_assert(hasSignature<decltype(dispatch_group_create), dispatch_group_t()>);
static_assert(hasSignature<decltype(dispatch_group_enter), void(dispatch_group_t)>);
static_assert(hasSignature<decltype(dispatch_group_leave), void(dispatch_group_t)>);
static_assert(
    hasSignature<decltype(dispatch_group_wait), std::intptr_t(dispatch_group_t, dispatch_time_t)>);

}  // namespace
}  // namespace tessarine
