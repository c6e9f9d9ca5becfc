#include "capture-helper/end_signals.h"

namespace tessarine {
namespace {

volatile std::sig_atomic_t noted = 0;

void noteSignal(int signal) {
  noted = signal;
}

}  // namespace

EndSignals::EndSignals() {
  noted = 0;
  struct sigaction note {};
  note.sa_handler = noteSignal;
  note.sa_flags = SA_RESTART;
  for (std::size_t i = 0; i < signals_.size(); ++i) {
    sigaction(signals_[i], nullptr, &before_[i]);
    if (before_[i].sa_handler != SIG_IGN) sigaction(signals_[i], &note, nullptr);
  }
}

EndSignals::~EndSignals() {
  for (std::size_t i = 0; i < signals_.size(); ++i) sigaction(signals_[i], &before_[i], nullptr);
  if (received()) std::raise(noted);
}

bool EndSignals::received() const {
  return noted != 0;
}

}  // namespace tessarine
