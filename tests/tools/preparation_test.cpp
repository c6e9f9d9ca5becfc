// `tools/prepare` and the lines that tell people what a script is doing.
#include <gtest/gtest.h>

#include "end_to_end/program_run.h"

namespace tessarine::test {
namespace {

TEST(Prepare, TakesNothingOrTests) {
  for (const std::vector<std::string>& words :
       {std::vector<std::string>{"everything"}, {"tests", "tests"}, {"--help"}}) {
    std::vector<std::string> command{SOURCE_TREE "/tools/prepare"};
    command.insert(command.end(), words.begin(), words.end());
    const ProgramRun run = runProgram(command);
    EXPECT_EQ(run.exitStatus, 64);
    EXPECT_EQ(run.output, "");
    EXPECT_EQ(run.errors, "usage: tools/prepare [tests]\n");
  }
}

TEST(Stages, AreToldToATerminalAlone) {
  const ProgramRun run = runProgram({"/bin/bash", "-euc",
                                     "source " SOURCE_TREE "/tools/stages.bash; stages=2\n"
                                     "stage building; stage testing; echo $stage_number"});
  EXPECT_EQ(run.exitStatus, 0);
  EXPECT_EQ(run.output, "2\n");
  EXPECT_EQ(run.errors, "");
}

}  // namespace
}  // namespace tessarine::test
