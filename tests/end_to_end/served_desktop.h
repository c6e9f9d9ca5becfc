// A desktop that is being served, as a process of its own, for as long as this lives.
#pragma once

#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "end_to_end/program_run.h"
#include "support/temporary_folder.h"

namespace tessarine::test {

class ServedDesktop {
 public:
  // Of a scenario that comes with the desktop, or of a scenario file.
  explicit ServedDesktop(const std::string& scenario, const std::vector<std::string>& options = {});

  // What programs need in their environment to find this desktop.
  const Environment& environment() const { return environment_; }

  // Runs tessarine; its result. The test fails when it does not succeed.
  nlohmann::ordered_json run(const std::vector<std::string>& arguments) const;
  // What the desktop looks like.
  nlohmann::ordered_json state() const;

  // Ends the service.
  ProgramRun stop();
  // The same with SIGKILL: it has no time for anything.
  void kill();

 private:
  std::string socketPath() const { return folder_.path() + "/desktop"; }

  TemporaryFolder folder_;
  RunningProgram service_;
  Environment environment_;
};

}  // namespace tessarine::test
