// Element trees written down briefly, and what was found in them as names.
#pragma once

#include <algorithm>
#include <functional>
#include <iterator>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "platform/accessibility.h"
#include "support/world.h"

namespace tessarine::test {

using Attributes = std::vector<std::pair<std::string, simulator::Value>>;

// Adds an element that is known by its name, its "AXIdentifier".
inline simulator::Element& add(simulator::Element& parent, const std::string& name,
                               const std::string& role = "AXGroup",
                               const Attributes& attributes = {}) {
  simulator::Element& element = parent.addChild(role);
  element.set("AXIdentifier", name);
  for (const auto& [attribute, value] : attributes) element.set(attribute, value);
  return element;
}

// Adds elements below each other; answers the last one.
inline simulator::Element& addChain(simulator::Element& parent, int length) {
  simulator::Element* last = &parent;
  for (int i = 1; i <= length; ++i) last = &add(*last, std::to_string(i));
  return *last;
}

inline void addSiblings(simulator::Element& parent, int count) {
  for (int i = 1; i <= count; ++i) add(parent, std::to_string(i));
}

inline std::string nameOf(const Element& element) {
  return axString(element, "AXIdentifier").value_or("unnamed");
}

// "ok in window"; for a node without a parent just its name.
inline std::string nameOf(const NodeRef& node) {
  return nameOf(node.element) + (node.parent ? " in " + nameOf(*node.parent) : "");
}

template <class Found>
std::string nameOf(const std::optional<Found>& found) {
  return found ? nameOf(*found) : "nothing";
}

inline std::vector<std::string> namesOf(const std::vector<NodeRef>& nodes) {
  std::vector<std::string> names;
  for (const NodeRef& node : nodes) names.push_back(nameOf(node));
  return names;
}

// How many requests of this verb for this attribute or action, alone or among others, were made
// since the record had `from` lines.
inline long requestsFor(
    const simulator::Record& record, const std::string& name, std::size_t from = 0,
    simulator::AccessibilityRequest::Verb verb = simulator::AccessibilityRequest::Verb::copy) {
  using Verb = simulator::AccessibilityRequest::Verb;
  const auto first = record.lines().begin() + static_cast<std::ptrdiff_t>(from);
  return std::count_if(first, record.lines().end(), [&](const simulator::RecordLine& line) {
    const auto* request = std::get_if<simulator::AccessibilityRequest>(&line.entry);
    if (request == nullptr) return false;
    if (verb == Verb::copy && request->verb == Verb::copySeveral) {
      return std::ranges::count(request->names, name) > 0;
    }
    return request->verb == verb && request->name == name;
  });
}

// How far a finder reaches, as "depth 8, nodes 700": the greatest depth at which it finds what
// `plant` adds to its parent, and the greatest of the caps in use such that it finds that as the
// node of this number in visiting order and not as the next one.
inline std::string reachOf(const std::function<void(simulator::Element& parent)>& plant,
                           const std::function<bool(const Element& root)>& finds) {
  const auto isFoundAt = [&](int depth) {
    BareDesktop world;
    plant(addChain(world.app(), depth - 1));
    return finds(world.appHandle());
  };
  const auto isFoundAs = [&](int number) {
    BareDesktop world;
    addSiblings(world.app(), number - 2);
    plant(world.app());
    return finds(world.appHandle());
  };
  int depth = 0;
  while (depth < 12 && isFoundAt(depth + 1)) ++depth;
  std::string reach = "depth " + std::to_string(depth);
  for (const int cap : {220, 260, 700, 1800}) {
    if (isFoundAs(cap) && !isFoundAs(cap + 1)) reach += ", nodes " + std::to_string(cap);
  }
  return reach;
}

}  // namespace tessarine::test
