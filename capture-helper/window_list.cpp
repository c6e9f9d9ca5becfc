#include "capture-helper/window_list.h"

#include <ApplicationServices/ApplicationServices.h>

#include "platform/cf_ref.h"
#include "platform/cf_values.h"

namespace tessarine {
namespace {

// Every value may be missing and none need be of the kind that it should be.

std::int32_t number(CFDictionaryRef window, CFStringRef key) {
  const CFTypeRef value = CFDictionaryGetValue(window, key);
  if (value == nullptr || CFGetTypeID(value) != CFNumberGetTypeID()) return 0;
  std::int32_t held = 0;
  return CFNumberGetValue(static_cast<CFNumberRef>(value), kCFNumberSInt32Type, &held) ? held : 0;
}

std::optional<std::string> text(CFDictionaryRef window, CFStringRef key) {
  return textValue(CFDictionaryGetValue(window, key));
}

Rect rectangle(CFDictionaryRef window, CFStringRef key) {
  const CFTypeRef value = CFDictionaryGetValue(window, key);
  if (value == nullptr || CFGetTypeID(value) != CFDictionaryGetTypeID()) return {};
  CGRect rect{};
  if (!CGRectMakeWithDictionaryRepresentation(static_cast<CFDictionaryRef>(value), &rect)) {
    return {};
  }
  return {rect.origin.x, rect.origin.y, rect.size.width, rect.size.height};
}

ListedWindow listedWindow(CFDictionaryRef window) {
  return {.number = static_cast<std::uint32_t>(number(window, kCGWindowNumber)),
          .pid = number(window, kCGWindowOwnerPID),
          .app = text(window, kCGWindowOwnerName).value_or(""),
          .title = text(window, kCGWindowName),
          .layer = number(window, kCGWindowLayer),
          .frame = rectangle(window, kCGWindowBounds)};
}

}  // namespace

std::vector<ListedWindow> onScreenWindows() {
  const auto descriptions = CfRef<CFArrayRef>::adopt(
      CGWindowListCopyWindowInfo(kCGWindowListOptionOnScreenOnly, kCGNullWindowID));
  std::vector<ListedWindow> windows;
  if (!descriptions) return windows;
  const CFIndex count = CFArrayGetCount(descriptions.get());
  for (CFIndex i = 0; i < count; ++i) {
    const CFTypeRef description = CFArrayGetValueAtIndex(descriptions.get(), i);
    if (CFGetTypeID(description) != CFDictionaryGetTypeID()) continue;
    windows.push_back(listedWindow(static_cast<CFDictionaryRef>(description)));
  }
  return windows;
}

}  // namespace tessarine
