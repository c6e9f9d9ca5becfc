// What the stand-in frameworks fail at in this process itself, before any desktop is asked.
// Nothing, by default; what a desktop fails at is its own (simulator/desktop/desktop.h).
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <string>

#include "simulator/desktop/value.h"

namespace simulator {

struct FrameworkFaults {
  // Whether this call of the function, one that may answer NULL, does so. Asked on each call.
  std::function<bool(const std::string& function)> answers_null = {};
  // The answer of AXUIElementSetMessagingTimeout, which then sets nothing.
  std::int32_t messaging_timeout_error = 0;
  // The answer of AECreateDesc, which then makes nothing.
  std::int32_t descriptor_error = 0;
  // The answer of AEDeterminePermissionToAutomateTarget, in place of the truth.
  std::int32_t automation_error = 0;
  // What every window's description says under these keys, its bounds under theirs ("X"), in place
  // of the truth. No value: the key is missing.
  std::map<std::u16string, Value> window_descriptions = {};
};

// Puts the faults in force for as long as it lives.
class FaultyFrameworks {
 public:
  explicit FaultyFrameworks(FrameworkFaults faults);
  ~FaultyFrameworks();
  FaultyFrameworks(const FaultyFrameworks&) = delete;
  FaultyFrameworks& operator=(const FaultyFrameworks&) = delete;
};

// Those in force.
const FrameworkFaults& frameworkFaults();

// Whether the function is to answer NULL now.
bool answersNull(const char* function);

}  // namespace simulator
