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
long peakKilobytesOnDesktop(const std::string& scenario, const std::vector<std::string>& command,
                            const TemporaryFolder& folder) {
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

TEST(Footprint, EveryCommandStaysBelowEightMebibytes) {
  const TemporaryFolder folder;
  const std::string target = folder.makeFolder("target");
  const std::string file = folder.makeFile("file.txt");
  const std::string chinese = "chinese-service-window";
  const std::string english = "english-service-window";
  const std::vector<std::pair<std::string, std::vector<std::string>>> runs{
      {chinese, {"list-windows"}},
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
  for (const auto& [scenario, command] : runs) {
    EXPECT_LE(peakKilobytesOnDesktop(scenario, command, folder), mostKilobytes)
        << command.front() << " on " << scenario;
  }
}

TEST(Footprint, TheLargestTreeOfEveryScenarioStaysBelowEightMebibytes) {
  std::istringstream listing(runProgram({desktopPath(), "list"}).output);
  std::vector<std::pair<std::string, std::future<long>>> peaks;
  for (std::string line; std::getline(listing, line);) {
    const std::string scenario = line.substr(0, line.find(' '));
    // All at once: they spend most of their time waiting for their desktops.
    peaks.emplace_back(scenario, std::async(std::launch::async, [scenario] {
                         const TemporaryFolder folder;
                         return peakKilobytesOnDesktop(scenario, {"inspect-open-dialog"}, folder);
                       }));
  }
  EXPECT_GE(peaks.size(), 12U);
  for (auto& [scenario, peak] : peaks) EXPECT_LE(peak.get(), mostKilobytes) << scenario;
}

}  // namespace
}  // namespace tessarine::test
