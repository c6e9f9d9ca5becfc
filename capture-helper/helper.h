// `background-window-capture`: lists the windows on the screen and takes snapshots of them.
#pragma once

#include <iosfwd>
#include <string>
#include <vector>

namespace tessarine {

// Carries out the arguments that follow the program's own name. Output of a command goes to
// `output`; a failure is one line on `errors`. Answers the exit status: 0 done, 1 not done, 2 a bad
// command line.
int runCaptureHelper(const std::vector<std::string>& arguments, std::ostream& output,
                     std::ostream& errors);

}  // namespace tessarine
