#include "end_to_end/served_desktop.h"

#include <gtest/gtest.h>
#include <signal.h>

namespace tessarine::test {

using nlohmann::ordered_json;

namespace {

std::vector<std::string> serving(const std::string& scenario, const std::string& socket,
                                 const std::vector<std::string>& options) {
  std::vector<std::string> line{desktopPath(), "serve", scenario, "--socket", socket};
  line.insert(line.end(), options.begin(), options.end());
  return line;
}

}  // namespace

ServedDesktop::ServedDesktop(const std::string& scenario, const std::vector<std::string>& options)
    : service_(serving(scenario, socketPath(), options)) {
  for (const char* name : {"TESSARINE_DESKTOP", "TESSARINE_DESKTOP_PROGRAMS", "ZORVILET_BIN"}) {
    const std::string line = service_.readLine();
    const std::string beginning = std::string("export ") + name + "='";
    EXPECT_EQ(line.substr(0, beginning.size()), beginning);
    EXPECT_EQ(line.back(), '\'');
    environment_[name] = line.substr(beginning.size(), line.size() - beginning.size() - 1);
  }
}

ordered_json ServedDesktop::run(const std::vector<std::string>& arguments) const {
  const ProgramRun run = runTessarine(arguments, environment_);
  EXPECT_EQ(run.exitStatus, 0) << run.errors;
  return ordered_json::parse(run.output);
}

ordered_json ServedDesktop::state() const {
  const ProgramRun run = runProgram({desktopPath(), "state", "--socket", socketPath()});
  EXPECT_EQ(run.exitStatus, 0) << run.errors;
  return ordered_json::parse(run.output);
}

ProgramRun ServedDesktop::stop() {
  service_.sendSignal(SIGTERM);
  return service_.finish();
}

void ServedDesktop::kill() {
  service_.sendSignal(SIGKILL);
  service_.finish();
}

}  // namespace tessarine::test
