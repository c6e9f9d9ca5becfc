// URLs as text, after RFC 2396, which CFURL follows.
#include <utf8proc.h>

#include <algorithm>
#include <cstring>
#include <optional>
#include <string>
#include <string_view>

#include "CoreFoundation/CoreFoundation.h"
#include "simulator/desktop/text.h"
#include "simulator/frameworks/faults.h"
#include "simulator/frameworks/object.h"

using simulator::answersNull;
using simulator::refuse;
using simulator::Url;

namespace {

// A file reference URL: this prefix of its path, then a number. What the number means is the
// system's secret; here it is the file's path, two hexadecimal digits for each byte.
constexpr std::string_view reference_prefix = "/.file/id=";

constexpr const char* unreserved_marks = "-_.!~*'()";

bool isLetter(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}
bool isDigit(char c) {
  return c >= '0' && c <= '9';
}
bool isUnreserved(char c) {
  return isLetter(c) || isDigit(c) || (c != '\0' && std::strchr(unreserved_marks, c));
}
bool mayStand(char c) {
  return isUnreserved(c) || (c != '\0' && std::strchr(";/?:@&=+$,#%[]", c));
}

std::optional<int> hexDigit(char c) {
  if (isDigit(c)) return c - '0';
  if (c >= 'a' && c <= 'f') return c - 'a' + 10;
  if (c >= 'A' && c <= 'F') return c - 'A' + 10;
  return {};
}

// The byte that two hexadecimal digits at `at` stand for.
std::optional<char> hexByte(std::string_view text, std::size_t at) {
  if (at + 1 >= text.size()) return {};
  const auto high = hexDigit(text[at]);
  const auto low = hexDigit(text[at + 1]);
  if (!high || !low) return {};
  return static_cast<char>(*high * 16 + *low);
}

bool isValid(std::string_view text) {
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (!mayStand(text[i]) || (text[i] == '%' && !hexByte(text, i + 1))) return false;
  }
  return !text.empty() && std::ranges::count(text, '#') < 2;
}

struct UrlParts {
  std::optional<std::string_view> scheme;
  std::optional<std::string_view> path;  // still encoded; absent where the scheme has no paths
};

UrlParts parse(std::string_view text) {
  UrlParts parts;
  const auto schemeEnd = std::ranges::find_if_not(
      text, [](char c) { return isLetter(c) || isDigit(c) || c == '+' || c == '-' || c == '.'; });
  if (schemeEnd != text.end() && *schemeEnd == ':' && isLetter(text.front())) {
    parts.scheme = text.substr(0, static_cast<std::size_t>(schemeEnd - text.begin()));
    text.remove_prefix(parts.scheme->size() + 1);
    if (!text.starts_with('/')) return parts;
  }
  if (text.starts_with("//")) {
    text.remove_prefix(2);
    text.remove_prefix(std::min(text.find_first_of("/?#"), text.size()));
  }
  parts.path = text.substr(0, text.find_first_of("?#"));
  return parts;
}

bool isFileScheme(std::string_view scheme) {
  return std::ranges::equal(scheme, std::string_view("file"),
                            [](char a, char b) { return (a | 0x20) == b; });
}

bool isUtf8(std::string_view bytes) {
  while (!bytes.empty()) {
    utf8proc_int32_t point = 0;
    const auto used = utf8proc_iterate(reinterpret_cast<const utf8proc_uint8_t*>(bytes.data()),
                                       static_cast<utf8proc_ssize_t>(bytes.size()), &point);
    if (used < 1) return false;
    bytes.remove_prefix(static_cast<std::size_t>(used));
  }
  return true;
}

std::string decode(std::string_view encoded) {
  std::string bytes;
  for (std::size_t i = 0; i < encoded.size(); ++i) {
    const bool escape = encoded[i] == '%';
    bytes += escape ? *hexByte(encoded, i + 1) : encoded[i];
    if (escape) i += 2;
  }
  return bytes;
}

// The path that a file reference stands for, absent when it stands for none.
std::optional<std::string> referredPath(std::string_view reference) {
  std::string path;
  for (std::size_t i = 0; i < reference.size() && reference[i] != '/'; i += 2) {
    const auto byte = hexByte(reference, i);
    if (!byte) return {};
    path += *byte;
  }
  if (!path.starts_with('/')) return {};
  return path;
}

}  // namespace

CFURLRef CFURLCreateWithString(CFAllocatorRef allocator, CFStringRef text, CFURLRef base) {
  if (allocator) refuse(__func__, "only the default allocator is modelled");
  if (base) refuse(__func__, "a base URL is not modelled");
  std::string url = simulator::utf8FromUtf16(simulator::payload<std::u16string>(text, __func__));
  if (!isValid(url) || answersNull(__func__)) return nullptr;
  return simulator::make<CFURLRef>(Url{std::move(url)}, __func__);
}

CFURLRef CFURLCreateFilePathURL(CFAllocatorRef allocator, CFURLRef url, CFErrorRef* error) {
  if (allocator) refuse(__func__, "only the default allocator is modelled");
  if (error) refuse(__func__, "an error object is not modelled");
  const UrlParts parts = parse(simulator::payload<Url>(url, __func__).text);
  if (!parts.scheme || !isFileScheme(*parts.scheme) || answersNull(__func__)) return nullptr;
  if (!parts.path || !parts.path->starts_with(reference_prefix)) {
    simulator::retain(simulator::object(url, __func__));
    return url;
  }
  const auto path = referredPath(parts.path->substr(reference_prefix.size()));
  if (!path) return nullptr;
  return simulator::make<CFURLRef>(
      Url{"file://" + simulator::percentEncoded(*path, std::string(unreserved_marks) + "/")},
      __func__);
}

CFStringRef CFURLCopyFileSystemPath(CFURLRef url, CFURLPathStyle style) {
  if (style != kCFURLPOSIXPathStyle) refuse(__func__, "only POSIX paths are modelled");
  const UrlParts parts = parse(simulator::payload<Url>(url, __func__).text);
  if (!parts.path || answersNull(__func__)) return nullptr;
  std::string path = decode(*parts.path);
  if (!isUtf8(path)) return nullptr;
  if (path.size() > 1 && path.ends_with('/')) path.pop_back();
  return simulator::make<CFStringRef>(simulator::utf16FromUtf8(path), __func__);
}

CFStringRef CFURLCopyScheme(CFURLRef url) {
  const UrlParts parts = parse(simulator::payload<Url>(url, __func__).text);
  if (!parts.scheme || answersNull(__func__)) return nullptr;
  return simulator::make<CFStringRef>(simulator::utf16FromUtf8(std::string(*parts.scheme)),
                                      __func__);
}
