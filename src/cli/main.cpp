#include <csignal>
#include <cstdlib>
#include <iostream>

#include "cli/entry.h"
#include "platform/standard_streams.h"

int main(int argc, char** argv) {
  using tessarine::ExitStatus;
  tessarine::openMissingStandardStreams();
  // A caller that ignores SIGCHLD hands that down, and children could not be waited for.
  std::signal(SIGCHLD, SIG_DFL);
  ExitStatus status = tessarine::runTool({argv, argv + argc}, std::cout, std::cerr);
  if (!std::cout.flush()) {
    std::cerr << "cannot write to standard output\n";
    if (status == ExitStatus::success) status = ExitStatus::failure;
  }
  if (status == ExitStatus::success) return EXIT_SUCCESS;
  // An abandoned worker may still be running: nothing may be destroyed under it.
  std::_Exit(static_cast<int>(status));
}
