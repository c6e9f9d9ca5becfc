// A desktop whose "/bin/ps" and capture helper print what a test wrote down.
#pragma once

#include <string>
#include <vector>

#include "support/world.h"

namespace tessarine::test {

class ReportedDesktop : public BareDesktop {
 public:
  ReportedDesktop() {
    desktop.installProgram("/bin/ps", [this](simulator::ProgramRun& run) {
      run.after(0.02, [this, &run] {
        const bool lists = run.arguments() == std::vector<std::string>{"-axo", "pid=,command="};
        run.print(lists ? processes : command + "\n");
        run.end(0);
      });
    });
    desktop.installProgram("background-window-capture", [this](simulator::ProgramRun& run) {
      run.after(0.03, [this, &run] {
        run.print(windows);
        run.end(captureStatus);
      });
    });
  }

  // The times at which a program was started with these arguments.
  std::vector<double> startsOf(const std::vector<std::string>& arguments) const {
    std::vector<double> times;
    for (const auto& line : desktop.record().lines()) {
      const auto* started = std::get_if<simulator::ProgramStarted>(&line.entry);
      if (started != nullptr && started->arguments == arguments) times.push_back(line.time);
    }
    return times;
  }

  std::string command = "/Applications/Google Chrome.app/Contents/MacOS/Google Chrome";
  std::string processes;  // the list of all processes
  std::string windows;    // the list of windows on the screen
  int captureStatus = 0;
};

// One line of the capture helper.
inline std::string windowLine(const std::string& number, int pid, const std::string& app,
                              const std::string& title, const std::string& frame) {
  return number + "\tpid=" + std::to_string(pid) + "\tapp=" + app + "\ttitle=" + title +
         "\tframe=" + frame + "\n";
}

inline constexpr const char* chromeService = "Open and Save Panel Service (Google Chrome)";

}  // namespace tessarine::test
