// What a run did about the foreground, read from the record.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "simulator/desktop/record.h"

namespace tessarine::test {

// One line for each of these, in order: "frontmost?" (the workspace was asked), "activate 812"
// (it was asked to bring that application forward), "osascript LINE" (a script was started), and
// "operation" (a milestone of that text).
std::vector<std::string> foregroundStory(const simulator::Record& record);

// The story's line for the script that makes a process frontmost.
std::string frontmostScript(std::int32_t pid);

}  // namespace tessarine::test
