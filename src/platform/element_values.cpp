#include "platform/element_values.h"

#include <algorithm>
#include <cassert>

#include "platform/accessibility.h"
#include "platform/ax_values.h"
#include "platform/cf_values.h"

namespace tessarine {
namespace {

constexpr AXCopyMultipleAttributeOptions goOnAfterErrors{};

CfRef<CFArrayRef> listOfTexts(const std::vector<std::string>& texts) {
  std::vector<CfRef<CFStringRef>> strings;
  for (const std::string& text : texts) strings.push_back(makeCfString(text));
  std::vector<const void*> members;
  for (const auto& string : strings) members.push_back(string.get());
  return makeCfArray(members);
}

}  // namespace

AttributeNames::AttributeNames(std::vector<std::string> names)
    : names_(std::move(names)), list_(listOfTexts(names_)) {}

ElementValues::ElementValues(const Element& element, const AttributeNames& attributes)
    : element_(element), attributes_(attributes), values_(attributes.names().size()) {
  if (values_.empty()) return;
  CFArrayRef answer = nullptr;
  const AXError error = AXUIElementCopyMultipleAttributeValues(element.get(), attributes.list(),
                                                               goOnAfterErrors, &answer);
  if (error == kAXErrorInvalidUIElement) values_.assign(values_.size(), CfRef<CFTypeRef>());
  if (error != kAXErrorSuccess) return;
  const auto owned = CfRef<CFArrayRef>::adopt(answer);
  const auto members = listMembers(owned.get());
  if (members.size() != values_.size()) return;
  for (std::size_t i = 0; i < members.size(); ++i) {
    values_[i] = CfRef<CFTypeRef>::share(standsForNoValue(members[i]) ? nullptr : members[i]);
  }
}

CFTypeRef ElementValues::value(const std::string& attribute) const {
  const auto& names = attributes_.names();
  const auto name = std::ranges::find(names, attribute);
  assert(name != names.end());
  auto& value = values_[static_cast<std::size_t>(name - names.begin())];
  if (!value) value = axValue(element_, attribute);
  return value->get();
}

std::string ElementValues::text(const std::string& attribute) const {
  return textValue(value(attribute)).value_or("");
}

std::string ElementValues::label() const {
  for (const char* attribute : labelAttributes) {
    std::string found = text(attribute);
    if (!found.empty()) return found;
  }
  return {};
}

bool ElementValues::isTrue(const std::string& attribute) const {
  return tessarine::isTrue(value(attribute));
}

Rect ElementValues::frame() const {
  return frameOf(value("AXPosition"), value("AXSize")).value_or(Rect{});
}

std::optional<std::string> ElementValues::urlPath() const {
  return locationIn(value("AXURL"));
}

std::vector<Element> ElementValues::children() const {
  return elementsIn(value("AXChildren")).value_or(std::vector<Element>{});
}

std::optional<Element> ElementValues::parent() const {
  CFTypeRef parent = value("AXParent");
  if (parent == nullptr) return {};
  return sharedElement(parent);
}

}  // namespace tessarine
