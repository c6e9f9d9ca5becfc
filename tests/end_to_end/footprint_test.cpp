// What the optimised program costs a machine: libraries, memory.
#include <gtest/gtest.h>

#include <fstream>
#include <future>
#include <sstream>

#include "end_to_end/program_run.h"
#include "support/temporary_folder.h"

namespace tessarine::test {
namespace {

constexpr long mostKilobytes = 8 * 1024;

TEST(Footprint, TheProgramLoadsNoLibrary) {
  const ProgramRun run = runProgram({"/usr/bin/ldd", toolPath()});
  EXPECT_NE((run.output + run.errors).find("statically linked"), std::string::npos)
      << run.output << run.errors;
}

// Of a command that succeeds on the scenario's browser.
long peakKilobytesOnDesktop(const std::string& scenario, const std::vector<std::string>& command) {
  const TemporaryFolder folder;
  const std::string report = folder.path() + "/peak";
  std::vector<std::string> commandLine{desktopPath(),    "run",  scenario,  "--",
                                       peakMemoryPath(), report, toolPath()};
  commandLine.insert(commandLine.end(), command.begin(), command.end());
  commandLine.insert(commandLine.end(), {"--pid", "812"});
  const ProgramRun run = runProgram(commandLine);
  EXPECT_EQ(run.exitStatus, 0) << run.errors;
  long kilobytes = mostKilobytes + 1;
  std::ifstream(report) >> kilobytes;
  return kilobytes;
}

// Commands, each with its scenario.
using Runs = std::vector<std::pair<std::string, std::vector<std::string>>>;

// All at once: they spend most of their time waiting for their desktops.
void expectSmallPeaks(const Runs& runs) {
  std::vector<std::future<long>> peaks;
  for (const auto& [scenario, command] : runs) {
    peaks.push_back(std::async(std::launch::async, peakKilobytesOnDesktop, scenario, command));
  }
  for (std::size_t i = 0; i < runs.size(); ++i) {
    EXPECT_LE(peaks[i].get(), mostKilobytes) << runs[i].second.front() << " on " << runs[i].first;
  }
}

TEST(Footprint, EveryCommandStaysBelowEightMebibytes) {
  const TemporaryFolder folder;
  const std::string target = folder.makeFolder("target");
  const std::string file = folder.makeFile("file.txt");
  const std::string chinese = "chinese-service-window";
  const std::string english = "english-service-window";
  const Runs runs{{chinese, {"list-windows"}},
                  {chinese, {"list-background-panels"}},
                  {chinese, {"press-key", "--key", "escape"}},
                  {chinese, {"type-text", "--text", "文件"}},
                  {chinese, {"click-point", "--x", "10", "--y", "10"}},
                  {chinese, {"close"}},
                  {chinese, {"close", "--strict-background"}},
                  {english, {"choose-folder", "--path", target}},
                  {chinese, {"choose-folder", "--strict-background", "--path", target}},
                  {english, {"choose-path", "--path", target}},
                  {"file-panel-english", {"choose-path", "--path", file}}};
  expectSmallPeaks(runs);
}

TEST(Footprint, TheLargestTreeOfEveryScenarioStaysBelowEightMebibytes) {
  std::istringstream listing(runProgram({desktopPath(), "list"}).output);
  Runs runs;
  for (std::string line; std::getline(listing, line);) {
    runs.push_back({line.substr(0, line.find(' ')), {"inspect-open-dialog"}});
  }
  EXPECT_GE(runs.size(), 12U);
  expectSmallPeaks(runs);
}

}  // namespace
}  // namespace tessarine::test
