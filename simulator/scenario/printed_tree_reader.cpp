#include "simulator/scenario/printed_tree_reader.h"

#include <algorithm>

namespace simulator {
namespace {

constexpr double largest_number = 1e9;  // points: listings may be very long

PrintedElement readPrintedElement(const JsonPlace& place) {
  JsonObject object(place);
  PrintedElement element;
  element.role = object.require("role").text();
  element.title = object.require("title").text();
  element.description = object.require("description").text();
  element.value = object.require("value").text();
  element.frame = readPrintedFrame(object.require("frame"));
  for (const auto& action : object.require("actions").items()) {
    if (std::ranges::count(element.actions, action.text()) > 0) {
      action.refuse("expected each action once");
    }
    element.actions.push_back(action.text());
  }
  object.refuseOthers();
  return element;
}

}  // namespace

Rect readPrintedFrame(const JsonPlace& place) {
  JsonObject object(place);
  const Rect frame{object.require("x").number(-largest_number, largest_number),
                   object.require("y").number(-largest_number, largest_number),
                   object.require("width").number(0, largest_number),
                   object.require("height").number(0, largest_number)};
  object.refuseOthers();
  return frame;
}

PrintedTree readPrintedTree(const JsonPlace& place) {
  const auto items = place.items();
  if (items.empty() || items.size() > most_printed_elements) {
    place.refuse("expected 1 to " + std::to_string(most_printed_elements) + " nodes");
  }
  PrintedTree tree;
  for (const auto& item : items) tree.push_back(readPrintedElement(item));
  return tree;
}

}  // namespace simulator
