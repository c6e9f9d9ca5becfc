// The cases of docs/limits.md: ways in which a result can be wrong, a run can disturb, or an error
// can hide that something happened. Each is run without --verify and with it.
#pragma once

#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "limits/process_cases.h"

namespace tessarine::test {

struct LimitCase {
  std::string heading;  // as it stands in the page
  // The panels, each as it differs from the folder panel of an English Chromium browser that shows
  // `start`, and what differs in the scenario. A panel's "folder" lies below that of the trial.
  nlohmann::ordered_json panels;
  nlohmann::ordered_json scenario;
  // As the page shows it. A --path that is not empty lies below the folder of the trial; --pid is
  // added where it is not given.
  std::vector<std::string> command;
  Seen without;
  Seen with;
  std::string currentFolder = {};  // below the folder of the trial
};

inline void PrintTo(const LimitCase& limit, std::ostream* stream) {
  *stream << limit.heading;
}

// All that one desktop can show.
const std::vector<LimitCase>& limitCases();

}  // namespace tessarine::test
