// What the helper takes for granted about the platform's declarations besides what its libraries
// do: see platform/signatures.cpp.
#include <ApplicationServices/ApplicationServices.h>

#include <cstdint>
#include <type_traits>

#include "platform/signature.h"

namespace tessarine {
namespace {

static_assert(std::is_pointer_v<CFDictionaryRef> && std::is_pointer_v<CFNumberRef>);
static_assert(std::is_same_v<CGWindowID, std::uint32_t>);
static_assert(std::is_same_v<CGWindowListOption, std::uint32_t>);
static_assert(std::is_same_v<std::underlying_type_t<CFNumberType>, CFIndex>);
static_assert(kCGWindowListOptionOnScreenOnly == 1 && kCGNullWindowID == 0);
static_assert(kCFNumberSInt32Type == 3);

static_assert(std::is_same_v<decltype(kCGWindowNumber), const CFStringRef>);
static_assert(std::is_same_v<decltype(kCGWindowOwnerPID), const CFStringRef>);
static_assert(std::is_same_v<decltype(kCGWindowOwnerName), const CFStringRef>);
static_assert(std::is_same_v<decltype(kCGWindowName), const CFStringRef>);
static_assert(std::is_same_v<decltype(kCGWindowLayer), const CFStringRef>);
static_assert(std::is_same_v<decltype(kCGWindowBounds), const CFStringRef>);

static_assert(hasSignature<decltype(CFDictionaryGetTypeID), CFTypeID()>);
static_assert(
    hasSignature<decltype(CFDictionaryGetValue), const void*(CFDictionaryRef, const void*)>);
static_assert(hasSignature<decltype(CFNumberGetTypeID), CFTypeID()>);
static_assert(hasSignature<decltype(CFNumberGetValue), Boolean(CFNumberRef, CFNumberType, void*)>);
static_assert(
    hasSignature<decltype(CGWindowListCopyWindowInfo), CFArrayRef(CGWindowListOption, CGWindowID)>);
static_assert(
    hasSignature<decltype(CGRectMakeWithDictionaryRepresentation), bool(CFDictionaryRef, CGRect*)>);

}  // namespace
}  // namespace tessarine
