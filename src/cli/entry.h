// The whole program but for the process around it.
#pragma once

#include <iosfwd>
#include <string>
#include <vector>

namespace tessarine {

enum class ExitStatus { success = 0, failure = 1, badCommandLine = 2 };

// Runs one command line. `arguments` begins with the program's own path (and may be empty). Writes
// the result as one JSON object and a newline, or the usage text, to `output`, and an error's
// message and a newline to `errors`:
//   success: the object; status success          help: the usage text; status success
//   usage error: usage text and message; status badCommandLine
//   any other error, the watchdog's included: the message alone; status failure
// After a failure the command's worker may still be running: end the process without unwinding.
ExitStatus runTool(const std::vector<std::string>& arguments, std::ostream& output,
                   std::ostream& errors);

}  // namespace tessarine
