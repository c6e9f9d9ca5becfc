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
  for (std::size_t i = 0; i < signals_.size(); ++i) {
    before_[i] = std::signal(signals_[i], noteSignal);
    if (before_[i] == SIG_IGN) std::signal(signals_[i], SIG_IGN);
  }
}

EndSignals::~EndSignals() {
  for (std::size_t i = 0; i < signals_.size(); ++i) std::signal(signals_[i], before_[i]);
  if (received()) std::raise(noted);
}

bool EndSignals::received() const {
  return noted != 0;
}

}  // namespace tessarine
