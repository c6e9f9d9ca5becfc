// Several attributes of an element, read in one request.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "core/geometry.h"
#include "platform/cf_ref.h"
#include "platform/element.h"

namespace tessarine {

// Attributes by their platform names, to be asked for together.
class AttributeNames {
 public:
  explicit AttributeNames(std::vector<std::string> names);

  const std::vector<std::string>& names() const { return names_; }
  CFArrayRef list() const { return list_.get(); }

 private:
  std::vector<std::string> names_;
  CfRef<CFArrayRef> list_;
};

// What an element holds at one moment, for a decision of that moment: it can be neither copied nor
// returned, so that whoever comes later asks afresh. The element is asked when this is made; one
// that is there but does not answer a request for several attributes is asked for each, once, when
// it is needed. Only the attributes named may be read, by the rules of platform/accessibility.h:
// what is missing, or cannot be read, or is of another type reads as empty.
class ElementValues {
 public:
  // Both must outlive this.
  ElementValues(const Element& element, const AttributeNames& attributes);
  ElementValues(const ElementValues&) = delete;
  ElementValues& operator=(const ElementValues&) = delete;

  const Element& element() const { return element_; }

  std::string text(const std::string& attribute) const;
  std::string role() const { return text("AXRole"); }
  std::string title() const { return text("AXTitle"); }
  std::string subrole() const { return text("AXSubrole"); }
  std::string description() const { return text("AXDescription"); }
  std::string inputValue() const { return text("AXValue"); }
  std::string fileName() const { return text("AXFilename"); }
  // As displayLabel has it.
  std::string label() const;
  bool isTrue(const std::string& attribute) const;
  Rect frame() const;                          // of "AXPosition" and "AXSize"
  std::optional<std::string> urlPath() const;  // "AXURL"
  std::vector<Element> children() const;       // "AXChildren"
  std::optional<Element> parent() const;       // "AXParent", whatever its type

 private:
  // Null for none.
  CFTypeRef value(const std::string& attribute) const;

  const Element& element_;
  const AttributeNames& attributes_;
  // In the order of the names; absent until they are known.
  mutable std::vector<std::optional<CfRef<CFTypeRef>>> values_;
};

}  // namespace tessarine
