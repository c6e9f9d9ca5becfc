// What "inspect-open-dialog" and "list-windows" of the tool printed, read strictly.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "simulator/desktop/value.h"
#include "simulator/import/import.h"

namespace simulator::importing {

// The tool prints no more of a dialog.
inline constexpr std::size_t most_nodes = 700;

struct Node {
  std::string role;
  std::string title;
  std::string description;
  std::string value;
  Rect frame;
  std::vector<std::string> actions;
};

struct Dialog {
  std::string place;  // its JSON pointer
  Pid pid = 0;
  bool inService = false;
  bool recognised = false;
  Node root;
  std::vector<Node> nodes;  // without the root
  bool complete = true;
};

struct AppWindow {
  std::string place;
  Pid pid = 0;
  std::string role;
  std::string subrole;
  std::string title;
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
