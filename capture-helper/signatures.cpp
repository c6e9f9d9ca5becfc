// What the helper takes for granted about the platform's declarations besides what its libraries
// do: see platform/signatures.cpp.
#include <ApplicationServices/ApplicationServices.h>

#include <cstddef>
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

// --- Permissions. ---

static_assert(std::is_same_v<OSErr, std::int16_t> && std::is_same_v<OSStatus, std::int32_t>);
static_assert(std::is_same_v<DescType, std::uint32_t>);
static_assert(std::is_same_v<AEEventClass, std::uint32_t>);
static_assert(std::is_same_v<AEEventID, std::uint32_t>);
static_assert(std::is_same_v<AEAddressDesc, AEDesc>);
static_assert(sizeof(AEDesc) == 12 && offsetof(AEDesc, dataHandle) == 4);
static_assert(typeApplicationBundleID == 0x62756E64 && typeWildCard == 0x2A2A2A2A);
static_assert(noErr == 0 && procNotFound == -600);
static_assert(errAEEventNotPermitted == -1743 && errAEEventWouldRequireUserConsent == -1744);

static_assert(hasSignature<decltype(AXIsProcessTrusted), Boolean()>);
static_assert(hasSignature<decltype(CGPreflightScreenCaptureAccess), bool()>);
static_assert(hasSignature<decltype(AECreateDesc), OSErr(DescType, const void*, long, AEDesc*)>);
static_assert(hasSignature<decltype(AEDisposeDesc), OSErr(AEDesc*)>);
static_assert(hasSignature<decltype(AEDeterminePermissionToAutomateTarget),
                           OSStatus(const AEAddressDesc*, AEEventClass, AEEventID, Boolean)>);

}  // namespace
}  // namespace tessarine
