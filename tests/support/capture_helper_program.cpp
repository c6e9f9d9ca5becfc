#include "support/capture_helper_program.h"

#include <sstream>

#include "capture-helper/helper.h"
#include "simulator/frameworks/messaging_timeout.h"

namespace tessarine::test {
namespace {

constexpr simulator::Seconds startSeconds = 0.03;  // assumed

}  // namespace

void installCaptureHelper(simulator::Desktop& desktop) {
  desktop.installProgram("background-window-capture", [](simulator::ProgramRun& run) {
    run.after(startSeconds, [&run] {
      if (run.desktop().faults().window_list_hangs && run.arguments().front() == "list") return;
      // A process of its own, which leaves the time-out of its caller alone.
      const float callersTimeout = simulator::messagingTimeout();
      simulator::setMessagingTimeout(0);
      std::ostringstream output;
      std::ostringstream errors;
      const int status = runCaptureHelper(run.arguments(), output, errors);
      simulator::setMessagingTimeout(callersTimeout);
      run.print(output.str());
      run.complain(errors.str());
      run.end(status);
    });
  });
}

}  // namespace tessarine::test
