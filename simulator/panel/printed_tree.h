// The accessibility tree of a panel as a listing of its elements: level by level, each element's
// children in their order, without a word on what stands below what.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "simulator/desktop/value.h"

namespace simulator {

// What was empty in the listing is empty here; a frame of zeros is none.
struct PrintedElement {
  std::string role;
  std::string title;
  std::string description;
  std::string value;
  Rect frame;
  std::vector<std::string> actions;
};

using PrintedTree = std::vector<PrintedElement>;  // the root first

// A listing holds no more elements, and none that stands deeper below the root.
inline constexpr std::size_t most_printed_elements = 700;
inline constexpr std::size_t deepest_printed_level = 8;

// The place of each element's parent in the listing; 0 for the root itself. Whatever is recovered,
// a walk level by level meets the elements in the order of the listing.
//
// The rule: parents come in the order of their children, so no element's parent stands before the
// parent of the element before it. Of all trees like that and not too deep, the one is taken in
// which the elements stand best, all together: first by their roles (a row in a list, a cell in a
// row, nothing in a text), then by their frames (within the parent's), then in the tightest
// element around them, and of elements with the same frame in the later one.
std::vector<std::size_t> recoverParents(const PrintedTree& tree);

}  // namespace simulator
