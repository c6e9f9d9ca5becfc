// The desktops on which every way of calling the tool is tried: one for each fact, or combination
// of facts, that decides something.
#pragma once

#include <nlohmann/json.hpp>
#include <string>
#include <vector>

namespace tessarine::test {

struct Fact {
  std::string name;
  // What differs from the panel of an English Chromium browser as it was measured: keys of the
  // panel, and of the scenario.
  nlohmann::ordered_json panel = nlohmann::ordered_json::object();
  nlohmann::ordered_json scenario = nlohmann::ordered_json::object();
  // Below the folder of the whole trial: what the panel shows first, and what is asked for.
  std::string begin = "start";
  std::string folder = "start/target";
  std::string file = "start/report.txt";
};

struct FactGroup {
  std::string title;
  std::vector<Fact> facts;
};

// Where it runs, the last of the processes, there is a panel of its own, which shows other/target.
inline constexpr int secondBrowserPid = 813;

const std::vector<FactGroup>& factGroups();

}  // namespace tessarine::test
