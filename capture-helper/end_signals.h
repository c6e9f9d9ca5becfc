// Signals that ask this program to end, held back while something is left to clean up.
#pragma once

#include <array>
#include <csignal>

namespace tessarine {

// At most one at a time.
class EndSignals {
 public:
  // From now on SIGHUP, SIGINT, SIGQUIT and SIGTERM are only noted, except those that are ignored.
  EndSignals();
  // Puts everything back as it was: a noted signal acts now.
  ~EndSignals();
  EndSignals(const EndSignals&) = delete;
  EndSignals& operator=(const EndSignals&) = delete;

  // Whether one was noted.
  bool received() const;

 private:
  static constexpr std::array signals_{SIGHUP, SIGINT, SIGQUIT, SIGTERM};
  std::array<struct sigaction, signals_.size()> before_{};
};

}  // namespace tessarine
