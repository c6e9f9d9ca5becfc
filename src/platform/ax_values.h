// What the values of accessibility attributes stand for. Each is absent for any other value and for
// none.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "core/geometry.h"
#include "platform/element.h"

namespace tessarine {

// Takes the value for an element, whatever its type.
Element sharedElement(CFTypeRef value);
std::optional<Element> elementIn(CFTypeRef value);
// Absent when a member is no element.
std::optional<std::vector<Element>> elementsIn(CFTypeRef value);
// Of a position and a size.
std::optional<Rect> frameOf(CFTypeRef position, CFTypeRef size);
// The path that "AXURL" names, as axURLPath has it.
std::optional<std::string> locationIn(CFTypeRef value);
// Whether a member of the answer to a request for several attributes says that there is no value.
bool standsForNoValue(CFTypeRef member);

}  // namespace tessarine
