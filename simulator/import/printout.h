// What "inspect-open-dialog" and "list-windows" of the tool printed, read strictly.
#pragma once

#include <string>
#include <vector>

#include "simulator/desktop/value.h"
#include "simulator/import/import.h"
#include "simulator/panel/printed_tree.h"

namespace simulator::importing {

struct Dialog {
  std::string place;  // its JSON pointer
  Pid pid = 0;
  bool inService = false;
  PrintedElement root;  // as it was read first: without a value and actions
  PrintedTree tree;

  const Rect& frame() const { return tree.front().frame; }
};

struct AppWindow {
  std::string place;
  Pid pid = 0;
  std::string role;
  std::string subrole;
  std::string title;
  std::string description;
  Rect frame;
};

// What inspect-open-dialog printed.
struct Inspection {
  Pid browser = 0;
  std::vector<Dialog> dialogs;
};

// What list-windows printed.
struct Listing {
  std::vector<AppWindow> windows;
  std::vector<Pid> services;
};

// These throw ScenarioError when it is not what the command prints; a listing also when it is
// another browser's.
Inspection readInspection(const Printout& printout);
Listing readListing(const Printout& printout, Pid browser);

}  // namespace simulator::importing
