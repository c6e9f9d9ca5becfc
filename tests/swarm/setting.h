// What is drawn first, and what everything else is drawn for.
#pragma once

#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "swarm/draw.h"
#include "swarm/folders.h"

namespace tessarine::test {

struct Browser {
  int pid = 0;
  std::string name;
};

struct Setting {
  const FolderTree& folders;
  std::vector<Browser> browsers;  // the first one is the tool's
  std::string command;            // choose-folder or choose-path
  std::string target;
  bool targetIsFolder = false;
  // Half of all desktops are without anything that is wrong with a panel or with the machine.
  bool sound = false;
  // Of all panels: what the system's version and the user's settings decide.
  bool identifiers = true;
  bool oldSheets = false;
  std::string view;
};

// The browsers that run and, for each of them, its process and its windows.
std::vector<Browser> drawBrowsers(Draw draw);
nlohmann::ordered_json drawProcesses(Draw draw, const std::vector<Browser>& browsers);

// All panels of the desktop, the one that is meant first unless another opens before it.
nlohmann::ordered_json drawPanels(Draw draw, const Setting& setting);

// What is wrong with the machine, and what a person does meanwhile. Empty when nothing.
nlohmann::ordered_json drawDesktopFaults(Draw draw, const Setting& setting);
nlohmann::ordered_json drawPerson(Draw draw, const Setting& setting,
                                  const nlohmann::ordered_json& panels);

}  // namespace tessarine::test
