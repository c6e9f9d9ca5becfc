// What the routes of choose-path do to a panel, as lines of a transcript.
#pragma once

#include <initializer_list>
#include <string>
#include <vector>

#include "support/transcript.h"

namespace tessarine::test {

// The transcript without the pause before its first line, which is part of the search for a panel.
inline Deeds deedsAfterSearch(const simulator::Record& record) {
  Deeds deeds = transcript(record);
  if (!deeds.empty()) deeds.front().erase(0, deeds.front().find(' ') + 1);
  return deeds;
}

// The go-to sheet, the path and Return. A pause ends in a space.
inline Deeds typedInto(const std::string& pid, const std::string& path,
                       const std::string& pauseBefore = "0.000 ") {
  Deeds deeds{
      pauseBefore + "key 5+120000 down -> " + pid,
      "0.020 key 5+120000 up -> " + pid,
      "0.350 key 0+100000 down -> " + pid,
      "0.020 key 0+100000 up -> " + pid,
      "0.050 key 51 down -> " + pid,
      "0.020 key 51 up -> " + pid,
  };
  std::string pause = "0.050";
  for (const char letter : path) {
    const std::string key = std::string("key 0 text=") + letter;
    deeds.push_back(pause + " " + key + " down -> " + pid);
    deeds.push_back("0.020 " + key + " up -> " + pid);
    pause = "0.020";
  }
  return joined({deeds, {"0.020 key 36 down -> " + pid, "0.020 key 36 up -> " + pid}});
}

// One attempt by keyboard at a panel whose centre is (720, 405): a click, the path, two Returns.
inline Deeds keyboardAttempt(const std::string& pid, const std::string& path,
                             const std::string& pauseBefore = "") {
  return joined(
      {{pauseBefore + "mouse down 1 (720, 405) -> " + pid, "0.050 mouse up 1 (720, 405) -> " + pid},
       typedInto(pid, path, "0.180 "),
       {"0.600 key 36 down -> " + pid, "0.020 key 36 up -> " + pid, "0.200 key 36 down -> " + pid,
        "0.020 key 36 up -> " + pid}});
}

// The path written into the go-to sheet, its confirmation and one Return.
inline Deeds writtenIntoSheet(const std::string& path) {
  return {"0.000 key 5+120000 down -> 900",
          "0.020 key 5+120000 up -> 900",
          "0.400 set AXFocused of AXTextField in 900",
          "0.000 set AXValue of AXTextField in 900: " + path,
          "0.120 AXConfirm of AXTextField in 900",
          "0.200 key 36 down -> 900",
          "0.020 key 36 up -> 900"};
}

// The first `clicks` of the five at a panel of 800 x 450 at (320, 180): the row, 360 and 128 from
// its top left corner; the Open button, 68 and 80 from its bottom right corner, then 86 and 80; the
// row twice. After each button the panel is watched for 3 s, every 0.15 s by looks of 0.05 s.
inline Deeds stagingClicks(const std::string& pid, int clicks,
                           const std::string& watch = "2.250 ") {
  Deeds deeds{"mouse down 1 (680, 308)",          "0.050 mouse up 1 (680, 308)",
              "0.220 mouse down 1 (1052, 550)",   "0.050 mouse up 1 (1052, 550)",
              watch + "mouse down 1 (1034, 550)", "0.050 mouse up 1 (1034, 550)",
              watch + "mouse down 1 (680, 308)",  "0.050 mouse up 1 (680, 308)",
              "0.060 mouse down 2 (680, 308)",    "0.050 mouse up 2 (680, 308)"};
  deeds.resize(2 * static_cast<std::size_t>(clicks));
  for (std::string& deed : deeds) deed += " -> " + pid;
  return deeds;
}

}  // namespace tessarine::test
