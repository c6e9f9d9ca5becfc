// A desktop on which the capture helper runs, and what it said.
#pragma once

#include <sstream>
#include <string>
#include <vector>

#include "capture-helper/helper.h"
#include "simulator/programs/programs.h"
#include "support/world.h"

namespace tessarine::test {

inline Outcome runHelper(const std::vector<std::string>& arguments) {
  std::ostringstream output;
  std::ostringstream errors;
  const int status = runCaptureHelper(arguments, output, errors);
  return {status, output.str(), errors.str()};
}

class HelperDesktop : public BareDesktop {
 public:
  // With one application of this name.
  explicit HelperDesktop(const std::string& name = "Google Chrome")
      : BareDesktop(browserPid, name) {
    simulator::installPrograms(desktop);
  }

  // A window of the browser that accessibility does not show. Its number is 101 and up.
  simulator::Window& addListed(const std::string& title, const simulator::Rect& frame) {
    simulator::Window window;
    window.owner = browserPid;
    window.title = title;
    window.frame = frame;
    return desktop.addWindow(window);
  }
};

}  // namespace tessarine::test
