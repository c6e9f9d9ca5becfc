// Events: what the platform counts as pressed.
#include <gtest/gtest.h>

#include <vector>

#include "contract/contract.h"
#include "platform/clock.h"
#include "platform/events.h"

namespace tessarine::test {
namespace {

using Counts = std::vector<std::uint32_t>;

Counts pressesOfHardware() {
  Counts counts;
  for (const CGEventType type :
       {kCGEventKeyDown, kCGEventLeftMouseDown, kCGEventRightMouseDown, kCGEventOtherMouseDown}) {
    counts.push_back(CGEventSourceCounterForEventType(kCGEventSourceStateHIDSystemState, type));
  }
  return counts;
}

// "Return a count of events of a given type seen since the Window Server started", in the table
// that "reflects the combined state of all hardware event sources posting from the HID system".
TEST_F(Contract, WhatAProgramPostsToAProcessIsNotCountedAsPressed) {
  constexpr std::uint16_t key_a = 0;
  const Counts before = pressesOfHardware();
  tapKey(ownProcess(), key_a, 0, {}, 0);
  postMouseClick(ownProcess(), {1, 1}, 1, false);
  sleepSeconds(0.2);
  EXPECT_EQ(pressesOfHardware(), before) << "or somebody pressed something meanwhile";
}

}  // namespace
}  // namespace tessarine::test
