#include "platform/cf_values.h"

#include "core/text.h"

namespace tessarine {

CfRef<CFStringRef> makeCfString(std::string_view text) {
  const std::u16string units = toUtf16(text);
  return CfRef<CFStringRef>::adopt(CFStringCreateWithCharacters(
      kCFAllocatorDefault, reinterpret_cast<const UniChar*>(units.data()),
      static_cast<CFIndex>(units.size())));
}

CfRef<CFArrayRef> makeCfArray(std::vector<const void*> members) {
  return CfRef<CFArrayRef>::adopt(CFArrayCreate(kCFAllocatorDefault, members.data(),
                                                static_cast<CFIndex>(members.size()),
                                                &kCFTypeArrayCallBacks));
}

std::optional<std::string> textValue(CFTypeRef value) {
  if (value == nullptr || CFGetTypeID(value) != CFStringGetTypeID()) return {};
  const auto string = static_cast<CFStringRef>(value);
  const CFIndex length = CFStringGetLength(string);
  std::u16string units(static_cast<std::size_t>(length), u'\0');
  CFStringGetCharacters(string, CFRangeMake(0, length), reinterpret_cast<UniChar*>(units.data()));
  return fromUtf16(units);
}

std::vector<CFTypeRef> listMembers(CFTypeRef value) {
  if (value == nullptr || CFGetTypeID(value) != CFArrayGetTypeID()) return {};
  const auto list = static_cast<CFArrayRef>(value);
  std::vector<CFTypeRef> members(static_cast<std::size_t>(CFArrayGetCount(list)));
  for (std::size_t i = 0; i < members.size(); ++i) {
    members[i] = CFArrayGetValueAtIndex(list, static_cast<CFIndex>(i));
  }
  return members;
}

std::vector<std::string> textList(CFTypeRef value) {
  std::vector<std::string> texts;
  for (CFTypeRef member : listMembers(value)) {
    const auto text = textValue(member);
    if (!text) return {};
    texts.push_back(*text);
  }
  return texts;
}

bool isTrue(CFTypeRef value) {
  return value != nullptr && CFGetTypeID(value) == CFBooleanGetTypeID() &&
         CFBooleanGetValue(static_cast<CFBooleanRef>(value));
}

std::optional<std::string> locationPath(CFTypeRef value) {
  if (value == nullptr || CFGetTypeID(value) != CFURLGetTypeID()) return {};
  const auto location = static_cast<CFURLRef>(value);
  // Items of a file dialog may carry file-reference locations (file:///.file/id=...), whose own
  // path says nothing.
  const auto file =
      CfRef<CFURLRef>::adopt(CFURLCreateFilePathURL(kCFAllocatorDefault, location, nullptr));
  const auto path = CfRef<CFStringRef>::adopt(
      CFURLCopyFileSystemPath(file ? file.get() : location, kCFURLPOSIXPathStyle));
  return textValue(path.get()).value_or("");
}

std::optional<std::string> fileLocationPath(const std::string& text) {
  const auto location = CfRef<CFURLRef>::adopt(
      CFURLCreateWithString(kCFAllocatorDefault, makeCfString(text).get(), nullptr));
  if (!location) return {};
  const auto scheme = CfRef<CFStringRef>::adopt(CFURLCopyScheme(location.get()));
  if (lowercased(textValue(scheme.get()).value_or("")) != "file") return {};
  return locationPath(location.get());
}

}  // namespace tessarine
