// `background-window-capture`: lists the windows on the screen, takes snapshots of them and says
// which permissions there are.
#pragma once

#include <iosfwd>
#include <string>
#include <vector>

namespace tessarine {

// Carries out the arguments that follow the program's own name. Output of a command goes to
// `output`; a failure is one line on `errors`. Answers the exit status: 0 done, 1 not done or not
// every permission granted, 2 a bad command line.
int runCaptureHelper(const std::vector<std::string>& arguments, std::ostream& output,
                     std::ostream& errors);

}  // namespace tessarine
