// Which panel a dialog is, and what stands where in it.
#pragma once

#include <nlohmann/json.hpp>
#include <optional>

#include "simulator/import/panel_parts.h"
#include "simulator/import/printout.h"
#include "simulator/panel/panel_options.h"
#include "simulator/panel/panel_tree.h"

namespace simulator::importing {

// Points into the dialog, which must outlive it.
struct SeenPanel {
  const Dialog* dialog = nullptr;
  PanelShape shape = PanelShape::serviceWindow;
  std::optional<Language> knownLanguage;
  const Node* element = nullptr;  // its own; of an embedded one the nearest around its controls
  const Node* goTo = nullptr;
  Nodes nodes;  // within it, without those of its go-to sheet
  const Node* cancel = nullptr;
  const Node* confirm = nullptr;
  const Node* sidebar = nullptr;
  std::optional<Rect> list;     // as far as it can be seen
  nlohmann::ordered_json json;  // what the scenario says of it

  const Rect& frame() const { return element->frame; }
  Language language() const { return knownLanguage.value_or(Language::english); }
  bool isWindow() const {
    return shape == PanelShape::serviceWindow || shape == PanelShape::hostWindow;
  }
};

// Whether the element is a window of its own.
bool isWindow(const Node& node);

SeenPanel analyse(const Dialog& dialog);

}  // namespace simulator::importing
