// Makes a scenario out of what the tool printed on a Mac, so that a panel seen there becomes one to
// test with. docs/scenarios.md says what is recovered and what is left out on purpose.
#pragma once

#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <vector>

namespace simulator {

// What a command of the tool printed, and the name that messages give it.
struct Printout {
  std::string file;
  std::string text;
};

// Throws ScenarioError when the file cannot be read or is too large to be a printout.
Printout readPrintout(const std::string& file);

struct ImportedScenario {
  nlohmann::ordered_json document;
  std::vector<std::string> omissions;  // what the scenario does not express, one line each
};

// `dialogs` is what "inspect-open-dialog" printed, `windows` what "list-windows" printed at the
// time. Texts that are not a panel's own become placeholders unless `keepNames`; what may be a path
// always does.
// Throws ScenarioError when one of the two is not what that command prints.
ImportedScenario importScenario(const Printout& dialogs, const std::optional<Printout>& windows,
                                bool keepNames);

}  // namespace simulator
