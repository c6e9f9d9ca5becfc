// A scenario: what stands on a simulated desktop and which Open panels appear there. It is written
// as a JSON file; docs/scenarios.md describes every key.
#pragma once

#include <filesystem>
#include <map>
#include <nlohmann/json.hpp>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

#include "simulator/desktop/desktop.h"
#include "simulator/panel/panel_options.h"
#include "simulator/panel/panel_tree.h"

namespace simulator {

// What is wrong with a scenario, on one line: "FILE: PLACE: WHAT IS EXPECTED". PLACE is a JSON
// pointer ("/" for the whole file), or "line L, column C" where the text is not JSON.
class ScenarioError : public std::runtime_error {
  using std::runtime_error::runtime_error;
};

struct ScenarioWindow {
  std::string title;
  Rect frame{80, 60, 1100, 740};
  bool listed = true;
  int webElements = 0;                          // elements of the page that the window shows
  std::string address = "chrome://extensions";  // in the address bar of such a window
  bool addressFocused = false;                  // the address bar has the keyboard
};

struct ScenarioProcess {
  Pid pid = 0;
  std::string name;
  std::string command;
  bool application = true;
  std::vector<ScenarioWindow> windows;  // front to back
  bool onOtherSpace = false;
};

// Something that a person at the machine does meanwhile: exactly one of the three.
struct PersonAct {
  Seconds atSeconds = 0;
  std::optional<Pid> quits;
  bool remembered = true;  // what quits is still known to the workspace
  std::optional<Pid> activates;
  std::optional<Point> clicks;
};

struct Scenario {
  std::string name;
  nlohmann::ordered_json document;  // what it was read from

  std::string description;
  Language language = Language::english;
  std::optional<std::string> home;  // absent: the home folder of this machine
  std::string volume = "Macintosh HD";
  std::map<std::string, std::string> volumes;       // names by path, without "/"
  std::optional<std::vector<SidebarPlace>> places;  // of the sidebars; absent: the usual ones
  std::string lastGoToPath;
  KeyboardLayout keyboardLayout = KeyboardLayout::us;
  Seconds requestTimeoutSeconds = 6;
  Prices prices;
  ListedEntries listed;
  std::vector<Rect> screens{{0, 0, 1440, 900}};
  std::optional<Pid> frontmost = 300;
  std::vector<ScenarioProcess> processes;
  std::vector<PanelOptions> panels;
  std::vector<PersonAct> person;
  Faults faults;
};

// All of these throw ScenarioError. `name` stands for FILE in the message and becomes the
// scenario's name, without its folders and ".json".
Scenario readScenarioFile(const std::filesystem::path& path);
Scenario scenarioFromText(const std::string& text, const std::string& name);
Scenario scenarioFromJson(const nlohmann::ordered_json& document, const std::string& name);

// The scenario with the value at a JSON pointer replaced or added, and checked again.
Scenario patched(const Scenario& scenario, const std::string& pointer,
                 const nlohmann::ordered_json& value);

// The scenarios that are built in, by name in alphabetical order.
std::vector<std::string> bundledScenarioNames();
Scenario bundledScenario(const std::string& name);

}  // namespace simulator
