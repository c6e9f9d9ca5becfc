#include "support/capture_helper_program.h"

#include <sstream>

#include "capture-helper/helper.h"

namespace tessarine::test {
namespace {

constexpr simulator::Seconds startSeconds = 0.03;  // assumed

}  // namespace

void installCaptureHelper(simulator::Desktop& desktop) {
  desktop.installProgram("background-window-capture", [](simulator::ProgramRun& run) {
    run.after(startSeconds, [&run] {
      std::ostringstream output;
      std::ostringstream errors;
      const int status = runCaptureHelper(run.arguments(), output, errors);
      run.print(output.str());
      run.complain(errors.str());
      run.end(status);
    });
  });
}

}  // namespace tessarine::test
