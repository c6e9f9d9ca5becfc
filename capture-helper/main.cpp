#include <csignal>
#include <iostream>

#include "capture-helper/helper.h"
#include "platform/standard_streams.h"

int main(int argc, char** argv) {
  tessarine::openMissingStandardStreams();
  // A caller that ignores SIGCHLD hands that down, and the snapshot could not be waited for.
  std::signal(SIGCHLD, SIG_DFL);
  const std::vector<std::string> words(argv, argv + argc);
  return tessarine::runCaptureHelper({words.begin() + (words.empty() ? 0 : 1), words.end()},
                                     std::cout, std::cerr);
}
