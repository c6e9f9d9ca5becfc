#include "simulator/desktop/element.h"

#include <algorithm>

#include "simulator/desktop/request.h"

namespace simulator {
namespace {

template <typename Pairs>
auto findByName(Pairs& pairs, const std::string& name) {
  return std::find_if(pairs.begin(), pairs.end(), [&](auto& pair) { return pair.first == name; });
}

template <typename Actions>
auto findAction(Actions& actions, const std::string& name) {
  return std::find_if(actions.begin(), actions.end(),
                      [&](auto& action) { return action.name == name; });
}

}  // namespace

Element::Element(ElementTable& table, std::string role)
    : table_(table), number_(table.next_number++), role_(std::move(role)) {
  table_.living.emplace(number_, this);
}

Element::~Element() {
  table_.living.erase(number_);
}

Element& Element::addChild(const std::string& role) {
  return addChild(role, table_);
}

Element& Element::addChild(const std::string& role, ElementTable& table) {
  children_.push_back(std::make_unique<Element>(table, role));
  children_.back()->parent_ = this;
  return *children_.back();
}

void Element::removeChild(Element& child) {
  std::erase_if(children_, [&](const auto& candidate) { return candidate.get() == &child; });
}

void Element::removeChildren() {
  children_.clear();
}

void Element::set(const std::string& attribute, Value value) {
  const auto found = findByName(attributes_, attribute);
  if (found != attributes_.end()) {
    found->second = std::move(value);
  } else {
    attributes_.emplace_back(attribute, std::move(value));
  }
}

void Element::clear(const std::string& attribute) {
  const auto found = findByName(attributes_, attribute);
  if (found != attributes_.end()) attributes_.erase(found);
}

const Value* Element::get(const std::string& attribute) const {
  const auto found = findByName(attributes_, attribute);
  return found == attributes_.end() ? nullptr : &found->second;
}

std::string Element::text() const {
  for (const char* attribute : {"AXValue", "AXTitle", "AXDescription"}) {
    const Value* value = get(attribute);
    const auto* text = value == nullptr ? nullptr : std::get_if<std::string>(value);
    if (text != nullptr && !text->empty()) return *text;
  }
  return "";
}

void Element::addAction(const std::string& name, Effect effect) {
  std::erase_if(actions_, [&](const Action& action) { return action.name == name; });
  actions_.push_back({name, std::move(effect)});
}

bool Element::offers(const std::string& action) const {
  return findAction(actions_, action) != actions_.end();
}

void Element::makeSettable(const std::string& attribute, Setter setter) {
  const auto found = findByName(setters_, attribute);
  if (found != setters_.end()) {
    found->second = std::move(setter);
  } else {
    setters_.emplace_back(attribute, std::move(setter));
  }
}

std::int32_t Element::copyAttribute(const std::string& name, Value& value) const {
  if (name == "AXRole") {
    value = role_;
  } else if (name == "AXChildren") {
    List list;
    list.reserve(children_.size());
    for (const auto& child : children_) list.emplace_back(child->id());
    if (shared_ != nullptr) {
      for (const auto& child : shared_->children_) list.emplace_back(child->id());
    }
    value = std::move(list);
  } else if (name == "AXParent" && parent_ != nullptr) {
    value = parent_->id();
  } else if (name == "AXPosition" && frame_) {
    value = Point{frame_->x, frame_->y};
  } else if (name == "AXSize" && frame_) {
    value = Size{frame_->width, frame_->height};
  } else {
    const Value* stored = get(name);
    if (stored == nullptr) return ax::attributeUnsupported;
    if (std::holds_alternative<std::monostate>(*stored)) return ax::noValue;
    value = *stored;
  }
  return ax::success;
}

std::int32_t Element::setAttribute(const std::string& name, const Value& value) {
  const auto found = findByName(setters_, name);
  if (found == setters_.end()) return ax::attributeUnsupported;
  const Setter setter = found->second;  // a copy, as it may remove this element
  return setter(value);
}

std::int32_t Element::performAction(const std::string& name) {
  const auto found = findAction(actions_, name);
  if (found == actions_.end()) return ax::actionUnsupported;
  const Effect effect = found->effect;  // a copy, as it may remove this element
  return effect();
}

List Element::actionNames() const {
  List names;
  for (const Action& action : actions_) names.emplace_back(action.name);
  return names;
}

bool contains(const Rect& frame, Point point) {
  return point.x >= frame.x && point.x < frame.x + frame.width && point.y >= frame.y &&
         point.y < frame.y + frame.height;
}

}  // namespace simulator
