// Finds the parts of a panel among the elements of a dialog.
#pragma once

#include <algorithm>
#include <optional>
#include <string>
#include <vector>

#include "simulator/import/printout.h"

namespace simulator::importing {

// In the order of the walk that printed them.
using Nodes = std::vector<const Node*>;

template <typename Test>
const Node* first(const Nodes& nodes, const Test& test) {
  const auto found = std::ranges::find_if(nodes, [&](const Node* node) { return test(*node); });
  return found == nodes.end() ? nullptr : *found;
}

bool isTitledButton(const Node& node);

// Each of these is null when there is none.
const Node* cancelButton(const Nodes& nodes);
const Node* sidebar(const Nodes& nodes);
const Node* fileList(const Nodes& nodes);

// A prompt that an application made up is that of the rightmost button beside Cancel or, without
// Cancel, below the list.
const Node* confirmButton(const Nodes& nodes, const Node* cancel, const std::optional<Rect>& list);

// What an application says above the lists. Elements of a web page come later in the walk.
const Node* message(const Nodes& nodes, const std::string& title);

// The texts of the sidebar that have an image beside them; the others are headings.
std::vector<std::string> placeLabels(const Nodes& nodes, const Rect& sidebarFrame);

}  // namespace simulator::importing
