#include "simulator/frameworks/faults.h"

#include <utility>

namespace simulator {
namespace {

FrameworkFaults& inForce() {
  static FrameworkFaults only;
  return only;
}

}  // namespace

FaultyFrameworks::FaultyFrameworks(FrameworkFaults faults) {
  inForce() = std::move(faults);
}

FaultyFrameworks::~FaultyFrameworks() {
  inForce() = {};
}

const FrameworkFaults& frameworkFaults() {
  return inForce();
}

bool answersNull(const char* function) {
  const auto& fault = inForce().answers_null;
  return fault && fault(function);
}

}  // namespace simulator
