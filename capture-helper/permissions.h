// What the machine's owner lets the program do that calls this one.
#pragma once

#include <string>
#include <vector>

namespace tessarine {

struct Permission {
  enum class State { granted, denied, unknown };

  std::string key;   // in JSON: "automationOfFinder"
  std::string name;  // "Automation of the Finder"
  State state = State::unknown;
  std::string reason;  // why the state is unknown: "nobody was asked"; else empty
  // Where the person at the machine grants it; Automation stands there once macOS has asked.
  std::string setting;
};

// Accessibility, Screen Recording, Automation of System Events, Automation of the Finder, in this
// order. Nobody at the machine is asked for any of them, and no answer of theirs is waited for.
//
// Whether somebody refused the first two or was never asked the platform does not tell: both are
// denied. Automation is unknown as long as nobody was asked ("nobody was asked"), when the
// application does not run ("System Events does not run") and when the platform answers otherwise
// ("error -1701").
std::vector<Permission> readPermissions();

}  // namespace tessarine
