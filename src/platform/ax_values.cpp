#include "platform/ax_values.h"

#include "platform/cf_values.h"
#include "platform/files.h"

namespace tessarine {
namespace {

// Reads a point or a size; false when the value is no such thing.
bool readGeometry(CFTypeRef value, AXValueType type, void* target) {
  return CFGetTypeID(value) == AXValueGetTypeID() &&
         AXValueGetValue(static_cast<AXValueRef>(value), type, target);
}

// The empty path of a location without one names no file to resolve.
std::string standardizedLocationPath(const std::string& path) {
  return path.empty() ? path : standardizedPath(path);
}

}  // namespace

Element sharedElement(CFTypeRef value) {
  return Element(CfRef<AXUIElementRef>::share(static_cast<AXUIElementRef>(value)));
}

std::optional<Element> elementIn(CFTypeRef value) {
  if (value == nullptr || CFGetTypeID(value) != AXUIElementGetTypeID()) return {};
  return sharedElement(value);
}

std::optional<std::vector<Element>> elementsIn(CFTypeRef value) {
  if (value == nullptr || CFGetTypeID(value) != CFArrayGetTypeID()) return {};
  std::vector<Element> elements;
  for (CFTypeRef member : listMembers(value)) {
    const auto element = elementIn(member);
    if (!element) return {};
    elements.push_back(*element);
  }
  return elements;
}

std::optional<Rect> frameOf(CFTypeRef position, CFTypeRef size) {
  if (position == nullptr || size == nullptr) return {};
  CGPoint origin{};
  CGSize extent{};
  const bool readable = readGeometry(position, kAXValueTypeCGPoint, &origin) &&
                        readGeometry(size, kAXValueTypeCGSize, &extent);
  if (!readable) return {};
  return Rect{origin.x, origin.y, extent.width, extent.height};
}

std::optional<std::string> locationIn(CFTypeRef value) {
  if (const auto path = locationPath(value)) return standardizedLocationPath(*path);
  const auto text = textValue(value);
  if (!text) return {};
  const auto path = fileLocationPath(*text);
  return path ? standardizedLocationPath(*path) : *text;
}

bool standsForNoValue(CFTypeRef member) {
  const CFTypeID type = CFGetTypeID(member);
  return type == CFNullGetTypeID() ||
         (type == AXValueGetTypeID() &&
          AXValueGetType(static_cast<AXValueRef>(member)) == kAXValueTypeAXError);
}

}  // namespace tessarine
