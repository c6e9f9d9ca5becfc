// The capture helper's command line.
#include "capture-helper/command_line.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "capture-helper/helper_desktop.h"

namespace tessarine::test {
namespace {

TEST(HelperCommandLine, EveryMistakeIsOneLineAndStatusTwo) {
  const HelperDesktop world;
  const std::vector<std::pair<std::vector<std::string>, std::string>> rows{
      {{}, "missing command: list, capture or permissions"},
      {{""}, "unknown command: "},
      {{"LIST"}, "unknown command: LIST"},
      {{"list", "--all"}, "unexpected argument: --all"},
      {{"--help", "list"}, "unexpected argument: list"},
      {{"capture"}, "--window-id is required"},
      {{"capture", "--out", "a.png"}, "--window-id is required"},
      {{"capture", "--window-id", "7"}, "--out is required"},
      {{"capture", "--window-id"}, "--window-id requires a value"},
      {{"capture", "--window-id", "7", "--out"}, "--out requires a value"},
      {{"capture", "--window-id", "7", "--out", ""}, "--out requires a value"},
      {{"capture", "--window-id", "0", "--out", "a"},
       "--window-id requires a positive window number"},
      {{"capture", "--window-id", "-1", "--out", "a"},
       "--window-id requires a positive window number"},
      {{"capture", "--window-id", "4294967296", "--out", "a"},
       "--window-id requires a positive window number"},
      {{"capture", "--window-id", "7x", "--out", "a"},
       "--window-id requires a positive window number"},
      {{"capture", "a.png"}, "unexpected argument: a.png"},
      {{"permissions", "--all"}, "unexpected argument: --all"},
      {{"permissions", "--json", "list"}, "unexpected argument: list"},
      {{"permissions", "--json="}, "unexpected argument: --json="},
      {{"permissions", ""}, "unexpected argument: "},
      {{"--json", "permissions"}, "unknown command: --json"},
      {{"list\n"}, "unknown command: list "},
      {{"capture", "--a\r\n\tb"}, "unexpected argument: --a   b"}};
  for (const auto& [arguments, message] : rows) {
    EXPECT_EQ(runHelper(arguments),
              (Outcome{2, "", "background-window-capture: " + message + "\n"}))
        << message;
  }
}

TEST(HelperCommandLine, HelpIsNoMistake) {
  const HelperDesktop world;
  for (const char* word : {"--help", "-h"}) {
    const Outcome outcome = runHelper({word});
    EXPECT_EQ(outcome, (Outcome{0, helperUsage, ""}));
  }
  const std::string usage = helperUsage;
  for (const char* word : {"list", "capture", "--window-id", "--out", "permissions", "--json"}) {
    EXPECT_NE(usage.find(word), std::string::npos) << word;
  }
}

TEST(HelperCommandLine, OutputThatCannotBeWrittenIsAFailure) {
  const HelperDesktop world;
  std::ostringstream output;
  output.setstate(std::ios::badbit);
  std::ostringstream errors;
  for (const char* command : {"list", "permissions", "--help"}) {
    errors.str("");
    EXPECT_EQ(runCaptureHelper({command}, output, errors), 1) << command;
    EXPECT_EQ(errors.str(), "background-window-capture: cannot write to standard output\n");
  }
}

}  // namespace
}  // namespace tessarine::test
