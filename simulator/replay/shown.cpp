#include "simulator/replay/shown.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>

namespace simulator {
namespace {

Rect intersectionOf(const Rect& left, const Rect& right) {
  const double x = std::max(left.x, right.x);
  const double y = std::max(left.y, right.y);
  return {x, y, std::min(left.x + left.width, right.x + right.width) - x,
          std::min(left.y + left.height, right.y + right.height) - y};
}

bool isVoid(const Rect& rect) {
  return rect.width <= 0 || rect.height <= 0;
}

template <std::size_t count>
bool isAmong(const std::string& role, const std::array<std::string_view, count>& roles) {
  return std::ranges::find(roles, role) != roles.end();
}

constexpr std::array<std::string_view, 6> clipping_roles{"AXScrollArea", "AXOutline", "AXList",
                                                         "AXBrowser",    "AXTable",   "AXSheet"};
constexpr std::array<std::string_view, 3> lists_of_entries{"AXOutline", "AXList", "AXTable"};
// What shows nothing by itself, unless it carries a text or a selection.
constexpr std::array<std::string_view, 5> holding_roles{"AXCell", "AXScrollArea", "AXSplitGroup",
                                                        "AXGroup", "AXUnknown"};

bool attributeFlag(const Element& element, const char* attribute, bool otherwise) {
  const Value* value = element.get(attribute);
  const bool* truth = value == nullptr ? nullptr : std::get_if<bool>(value);
  return truth == nullptr ? otherwise : *truth;
}

std::string attributeText(const Element& element, const char* attribute) {
  const Value* value = element.get(attribute);
  const auto* text = value == nullptr ? nullptr : std::get_if<std::string>(value);
  return text == nullptr ? "" : *text;
}

ShownElement describeShown(const Element& element) {
  ShownElement shown;
  shown.role = element.role();
  shown.frame = *element.frame();
  shown.text = element.text();
  shown.placeholder = attributeText(element, "AXPlaceholderValue");
  // A field shows what is in it, and nothing about it.
  if (!shown.placeholder.empty()) shown.text = attributeText(element, "AXValue");
  shown.identifier = attributeText(element, "AXIdentifier");
  shown.selected = attributeFlag(element, "AXSelected", false);
  shown.focused = attributeFlag(element, "AXFocused", false);
  shown.disabled = !attributeFlag(element, "AXEnabled", true);
  if (const Value* url = element.get("AXURL"))
    shown.folder = std::get<Url>(*url).text.ends_with('/');
  return shown;
}

// The first row of a list has no subrole where it is the header, under which the others scroll.
bool isHeader(const Element& row) {
  return row.role() == "AXRow" && row.get("AXSubrole") == nullptr;
}

class Look {
 public:
  Look(PanelShown& shown, const std::vector<PanelPart>& others) : shown_(shown), others_(others) {}

  void at(const Element& element, const Rect& sight) {
    for (const PanelPart& other : others_) {
      if (other.root == &element) return;
    }
    Rect below = sight;
    if (element.frame()) {
      if (isVoid(intersectionOf(*element.frame(), sight))) {
        if (isEntry(element)) ++shown_.leftOut;
        return;
      }
      add(element);
      if (isAmong(element.role(), clipping_roles)) below = intersectionOf(*element.frame(), sight);
    }
    for (const auto& child : element.children()) {
      at(*child, below);
      if (isHeader(*child) && isEntry(*child) && child == element.children().front()) {
        const double bottom = child->frame()->y + child->frame()->height;
        below = intersectionOf(below, {below.x, bottom, below.width, below.height});
      }
    }
  }

 private:
  static bool isEntry(const Element& element) {
    return element.frame() && element.parent() != nullptr &&
           isAmong(element.parent()->role(), lists_of_entries);
  }

  void add(const Element& element) {
    ShownElement described = describeShown(element);
    const bool holds = isAmong(described.role, holding_roles);
    if (holds && described.text.empty() && !described.selected) return;
    shown_.elements.push_back(std::move(described));
  }

  PanelShown& shown_;
  const std::vector<PanelPart>& others_;
};

}  // namespace

PanelShown shownPart(int panel, const PanelPart& part, const std::vector<PanelPart>& others) {
  PanelShown shown;
  shown.panel = panel;
  shown.part = part.name;
  std::vector<PanelPart> apart;
  for (const PanelPart& other : others) {
    if (other.root != part.root) apart.push_back(other);
  }
  const std::optional<Rect>& frame = part.root->frame();
  Look(shown, apart).at(*part.root, frame.value_or(Rect{}));
  return shown;
}

}  // namespace simulator
