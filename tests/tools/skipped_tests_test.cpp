// What `tools/skipped-tests` reads out of what test programs printed.
#include <gtest/gtest.h>

#include "end_to_end/program_run.h"
#include "support/temporary_folder.h"

namespace tessarine::test {
namespace {

constexpr const char* tool = SOURCE_TREE "/tools/skipped-tests";

// As GoogleTest 1.12 prints it.
constexpr const char* printed = R"([ RUN      ] Live.OfNobody
live.cpp:40: Skipped
nobody is logged in

[  SKIPPED ] Live.OfNobody (0 ms)
[ RUN      ] Live.Runs
[       OK ] Live.Runs (12 ms)
[ RUN      ] Live.OfTwoLines
list.cpp:4: Skipped
one line
and another

[  SKIPPED ] Live.OfTwoLines (3 ms)
[ RUN      ] Live.WithoutAReason
list.cpp:5: Skipped

[  SKIPPED ] Live.WithoutAReason (0 ms)
[  PASSED  ] 1 test.
[  SKIPPED ] 3 tests, listed below:
[  SKIPPED ] Live.OfNobody
[  SKIPPED ] Live.OfTwoLines
[  SKIPPED ] Live.WithoutAReason
)";

constexpr const char* listed =
    "Live.OfNobody: nobody is logged in\n"
    "Live.OfTwoLines: one line and another\n"
    "Live.WithoutAReason: no reason given\n";

// Every line after the number of its test, as `ctest --verbose` prints it.
std::string asCtestPrints(const std::string& text) {
  std::string numbered = "7: ";
  for (std::size_t i = 0; i < text.size(); ++i) {
    numbered += text[i];
    if (text[i] == '\n' && i + 1 < text.size()) numbered += "7: ";
  }
  return numbered + "1/1 Test #7: Live.OfNobody ............***Skipped   0.01 sec\n";
}

TEST(SkippedTests, AreListedWithTheirReasons) {
  const TemporaryFolder folder;
  const std::string file = folder.makeFile("log", printed);
  EXPECT_EQ(runProgram({tool, file}), (ProgramRun{0, listed, "", 0}));
}

TEST(SkippedTests, AreReadFromWhatCtestPrints) {
  const TemporaryFolder folder;
  const std::string file = folder.makeFile("log", asCtestPrints(printed));
  EXPECT_EQ(runProgram({tool, file}), (ProgramRun{0, listed, "", 0}));
}

TEST(SkippedTests, AFileWithoutAnySaysSo) {
  const TemporaryFolder folder;
  const std::string file = folder.makeFile("log", "[       OK ] Live.Runs (12 ms)\n");
  EXPECT_EQ(runProgram({tool, file}), (ProgramRun{0, file + ": no test was skipped\n", "", 0}));
}

TEST(SkippedTests, AMissingFileSaysThatNoTestHasRunAndTheOthersAreRead) {
  const TemporaryFolder folder;
  const std::string missing = folder.path() + "/missing";
  const std::string file = folder.makeFile("log", printed);
  EXPECT_EQ(runProgram({tool, missing, file}),
            (ProgramRun{0, missing + ": no test has run\n" + listed, "", 0}));
}

}  // namespace
}  // namespace tessarine::test
