#include "simulator/replay/changes.h"

#include <algorithm>
#include <vector>

namespace simulator {
namespace {

constexpr std::size_t most_told = 3;
// As when rows have moved.
constexpr std::size_t most_changes = 6;

std::string quotedText(const std::string& text) {
  return "“" + text + "”";
}

// What is read on the element or, for one that only holds others, on the first that stands in it.
std::string nameIn(const PanelShown& shown, const ShownElement& element) {
  if (!element.text.empty()) return quotedText(element.text);
  for (const ShownElement& other : shown.elements) {
    const double x = other.frame.x + other.frame.width / 2 - element.frame.x;
    const double y = other.frame.y + other.frame.height / 2 - element.frame.y;
    const bool inside = x >= 0 && y >= 0 && x < element.frame.width && y < element.frame.height;
    if (inside && !other.text.empty()) return quotedText(other.text);
  }
  return element.role;
}

std::vector<std::string> changesOf(const PanelShown& shown, const ShownElement& before,
                                   const ShownElement& after) {
  std::vector<std::string> told;
  if (before.text != after.text) {
    told.push_back(after.role + " says " + quotedText(after.text));
  }
  const std::string name = nameIn(shown, after);
  if (before.selected != after.selected) {
    told.push_back(name + (after.selected ? " is selected" : " is no longer selected"));
  }
  if (before.focused != after.focused) {
    told.push_back(after.role + (after.focused ? " has the keyboard" : " has lost the keyboard"));
  }
  if (before.disabled != after.disabled) {
    told.push_back(name + (after.disabled ? " is disabled" : " is enabled"));
  }
  return told;
}

}  // namespace

std::string changeWords(const PanelShown& before, const PanelShown& after) {
  const std::string part = "the " + after.part + " of panel " + std::to_string(after.panel);
  const std::string whole = after.part == "panel" ? "panel " + std::to_string(after.panel) : part;
  if (after.elements.empty()) return whole + " is gone";
  if (before.elements.empty()) return whole + " is there";
  const bool same = std::ranges::equal(before.elements, after.elements, {}, &ShownElement::role,
                                       &ShownElement::role);
  if (!same) return whole + " shows something else";
  std::vector<std::string> told;
  for (std::size_t i = 0; i < after.elements.size(); ++i) {
    for (std::string& change : changesOf(after, before.elements[i], after.elements[i])) {
      told.push_back(std::move(change));
    }
  }
  if (told.empty()) return whole + " is drawn anew";
  if (told.size() > most_changes) return whole + " shows something else";
  std::string words = "in " + whole + ": ";
  for (std::size_t i = 0; i < std::min(told.size(), most_told); ++i) {
    words += (i == 0 ? "" : ", ") + told[i];
  }
  return words + (told.size() > most_told ? " and more" : "");
}

}  // namespace simulator
