// Between the platform's CoreFoundation values and this program's own.
#pragma once

#include <CoreFoundation/CoreFoundation.h>

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/cf_ref.h"

namespace tessarine {

// Bytes that are not UTF-8 become U+FFFD.
CfRef<CFStringRef> makeCfString(std::string_view text);

// A list of these objects.
CfRef<CFArrayRef> makeCfArray(std::vector<const void*> members);

// The text, if the value is one; absent for any other value and for none.
std::optional<std::string> textValue(CFTypeRef value);

// The members of a list, which lends them; none for any other value.
std::vector<CFTypeRef> listMembers(CFTypeRef value);

// The texts of a list; none when a member is no text, or for any other value.
std::vector<std::string> textList(CFTypeRef value);

// True exactly for the boolean true.
bool isTrue(CFTypeRef value);

// The path of a location object, percent escapes decoded, without a trailing slash; a
// file-reference location is resolved to the file that it names. Empty when the location has no
// path, absent when the value is no location.
std::optional<std::string> locationPath(CFTypeRef value);

// The path of a text that is a location of the file scheme; absent for any other text.
std::optional<std::string> fileLocationPath(const std::string& text);

}  // namespace tessarine
