// What the optimised program costs a machine: libraries, memory.
#include <gtest/gtest.h>

#include <fstream>

#include "end_to_end/program_run.h"
#include "support/temporary_folder.h"

namespace tessarine::test {
namespace {

constexpr long mostKilobytes = 8 * 1024;

TEST(Footprint, TheProgramLoadsNoLibrary) {
  const ProgramRun run = runProgram({"/usr/bin/ldd", toolPath()});
  EXPECT_NE((run.output + run.errors).find("not a dynamic executable"), std::string::npos)
      << run.output << run.errors;
}

long peakKilobytesOnDesktop(const std::string& scenario, const std::vector<std::string>& arguments,
                            const std::string& report) {
  std::vector<std::string> commandLine{desktopPath(),    "run",  scenario,  "--",
                                       peakMemoryPath(), report, toolPath()};
  commandLine.insert(commandLine.end(), arguments.begin(), arguments.end());
  const ProgramRun run = runProgram(commandLine);
  EXPECT_EQ(run.exitStatus, 0) << run.errors;
  long kilobytes = mostKilobytes + 1;
  std::ifstream(report) >> kilobytes;
  return kilobytes;
}

TEST(Footprint, EveryCommandStaysBelowEightMebibytes) {
  const TemporaryFolder folder;
  const std::string target = folder.makeFolder("target");
  const std::vector<std::vector<std::string>> commands{
      {"list-windows"},
      {"list-background-panels"},
      {"inspect-open-dialog"},
      {"press-key", "--key", "escape"},
      {"type-text", "--text", "文件"},
      {"click-point", "--x", "10", "--y", "10"},
      {"choose-folder", "--strict-background", "--path", target}};
  for (const std::vector<std::string>& command : commands) {
    std::vector<std::string> arguments = command;
    arguments.insert(arguments.end(), {"--pid", "812"});
    for (const char* scenario : {"english-service-window", "chinese-host-sheet", "two-panels"}) {
      EXPECT_LE(peakKilobytesOnDesktop(scenario, arguments, folder.path() + "/peak"), mostKilobytes)
          << command.front() << " on " << scenario;
    }
  }
}

}  // namespace
}  // namespace tessarine::test
