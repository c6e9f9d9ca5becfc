// What the tool did on a desktop, and how long it slept in between.
#pragma once

#include <initializer_list>
#include <string>
#include <vector>

#include "simulator/desktop/record.h"

namespace tessarine::test {

// One line for each posted event, written attribute and performed action of the tool, in order,
// after the seconds that it slept since the one before: "0.020 key 36 up -> 900", "0.400 set
// AXFocused of AXTextField in 900", "0.120 set AXValue of AXTextField in 900: /usr", "0.100 AXPress
// of AXButton in 900". Time that passed in requests and in programs is no sleep.
std::vector<std::string> transcript(const simulator::Record& record);

// Lines of a transcript, and several pieces of one as a whole.
using Deeds = std::vector<std::string>;

inline Deeds joined(std::initializer_list<Deeds> parts) {
  Deeds all;
  for (const Deeds& part : parts) all.insert(all.end(), part.begin(), part.end());
  return all;
}

// The different lengths of the tool's sleeps in ascending order, to the microsecond: "0.15".
std::vector<std::string> sleepLengths(const simulator::Record& record);

}  // namespace tessarine::test
