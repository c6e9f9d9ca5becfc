// What is installed beside the programs says what they take: completions in real shells, and the
// man pages.
#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <sstream>

#include "capture-helper/command_line.h"
#include "cli/options.h"
#include "commands/direct_input.h"
#include "end_to_end/program_run.h"
#include "support/world.h"

namespace tessarine::test {
namespace {

using Words = std::vector<std::string>;
using WordSet = std::set<std::string>;

const std::string packaging = SOURCE_TREE "/packaging/";
const std::string harness = SOURCE_TREE "/tests/packaging/";

struct Shell {
  std::string name;
  Words start;
  std::string completions;
};

// The first word of the name of a test.
void PrintTo(const Shell& shell, std::ostream* stream) {
  *stream << shell.name;
}

const std::vector<Shell> shells{
    {"bash", {"/bin/bash", "--norc", harness + "offered.bash"}, "tessarine.bash"},
    {"zsh", {"/bin/zsh", "-f", harness + "offered.zsh"}, "_tessarine"},
    {"fish", {"/usr/bin/fish", "--no-config", harness + "offered.fish"}, "tessarine.fish"}};

class Completions : public ::testing::TestWithParam<Shell> {
 protected:
  // The candidates in the place of the last word.
  static WordSet offered(const Words& line) {
    Words command = GetParam().start;
    command.push_back(packaging + "completions/" + GetParam().completions);
    command.insert(command.end(), line.begin(), line.end());
    const ProgramRun run = runProgram(command);
    EXPECT_EQ(run.exitStatus, 0) << run.errors;
    WordSet words;
    std::istringstream lines(run.output);
    for (std::string word; std::getline(lines, word);) words.insert(word);
    return words;
  }
};

// The usage text's line of each command: its options.
std::map<std::string, WordSet> usageOptions() {
  std::ostringstream usage;
  printUsage(usage);
  std::istringstream lines(usage.str());
  std::map<std::string, WordSet> options;
  for (std::string line; std::getline(lines, line);) {
    if (line.rfind("  tessarine ", 0) != 0) continue;
    std::istringstream words(line);
    std::string word;
    words >> word >> word;
    WordSet& found = options[word];
    while (words >> word) {
      const std::size_t dashes = word.find("--");
      if (dashes == std::string::npos) continue;
      word = word.substr(dashes, word.find(']') - dashes);
      found.insert(word);
    }
  }
  return options;
}

bool isTaken(const std::string& command, const std::string& option) {
  try {
    parseArgs({command, option, "1"});
  } catch (const ToolError& error) {
    return error.message() != "unknown arg: " + option;
  }
  return true;
}

TEST_P(Completions, NameEveryCommandAndNothingElse) {
  WordSet commands{"--help"};
  for (const auto& [command, options] : usageOptions()) commands.insert(command);
  EXPECT_EQ(commands.size(), 10U);
  WordSet found = offered({"tessarine", ""});
  found.insert("--help");  // some shells offer options only after a dash
  EXPECT_EQ(found, commands);
  EXPECT_EQ(offered({"tessarine", "list-w"}), WordSet{"list-windows"});
}

TEST_P(Completions, NameEveryOptionOfTheUsageAndNoneThatIsNotTaken) {
  for (const auto& [command, options] : usageOptions()) {
    SCOPED_TRACE(command);
    const WordSet found = offered({"tessarine", command, "--"});
    EXPECT_TRUE(std::includes(found.begin(), found.end(), options.begin(), options.end()));
    EXPECT_TRUE(found.contains("--pid") && found.contains("--timeout"));
    for (const std::string& option : found) EXPECT_TRUE(isTaken(command, option)) << option;
  }
}

TEST_P(Completions, NameKeysThatCanBePressed) {
  const BareDesktop desktop;
  const WordSet keys = offered({"tessarine", "press-key", "--key", ""});
  EXPECT_EQ(keys.size(), 10U);
  for (const std::string& key : keys) EXPECT_NO_THROW(pressKeyCommand(browserPid, key)) << key;
}

TEST_P(Completions, NameWhatTheCaptureHelperTakes) {
  WordSet commands = offered({"background-window-capture", ""});
  commands.insert("--help");
  EXPECT_EQ(commands, (WordSet{"list", "capture", "--help"}));
  for (const char* command : {"list", "--help"}) parseHelperCommand({command});
  WordSet options = offered({"background-window-capture", "capture", "--"});
  options.erase("--help");
  EXPECT_EQ(options, (WordSet{"--window-id", "--out"}));
  parseHelperCommand({"capture", "--window-id", "1", "--out", "x"});
}

INSTANTIATE_TEST_SUITE_P(Shells, Completions, ::testing::ValuesIn(shells),
                         [](const auto& instance) { return instance.param.name; });

// --- Man pages. ---

// The page as it is read, and what the formatter complained of.
ProgramRun manPage(const std::string& program) {
  return runProgram(
      {"/usr/bin/man", "--warnings", "--encoding=ASCII", "-l", packaging + "man/" + program + ".1"},
      {{"MANWIDTH", "200"}, {"MANPAGER", "cat"}, {"GROFF_NO_SGR", "1"}});
}

TEST(ManPages, AreWellFormed) {
  for (const char* program : {"tessarine", "background-window-capture", "tessarine-desktop"}) {
    const ProgramRun page = manPage(program);
    EXPECT_EQ(page.exitStatus, 0) << program;
    EXPECT_EQ(page.errors, "") << program;
    for (const char* section : {"NAME", "SYNOPSIS", "DESCRIPTION", "EXIT STATUS", "SEE ALSO"}) {
      EXPECT_NE(page.output.find(section), std::string::npos) << program << ' ' << section;
    }
  }
}

TEST(ManPages, NameEveryCommandAndOption) {
  const std::string page = manPage("tessarine").output;
  for (const auto& [command, options] : usageOptions()) {
    EXPECT_NE(page.find(command), std::string::npos) << command;
    for (const std::string& option : options) {
      EXPECT_NE(page.find(option), std::string::npos) << option;
    }
  }
  for (const char* option : {"--quiet", "--help", "ZORVILET_BIN"}) {
    EXPECT_NE(page.find(option), std::string::npos) << option;
  }
  const std::string helper = manPage("background-window-capture").output;
  for (const char* word : {"list", "capture", "--window-id", "--out", "--help"}) {
    EXPECT_NE(helper.find(word), std::string::npos) << word;
  }
  const std::string desktop = manPage("tessarine-desktop").output;
  for (const char* word : {"run", "serve", "state", "list", "--record", "--socket"}) {
    EXPECT_NE(desktop.find(word), std::string::npos) << word;
  }
}

}  // namespace
}  // namespace tessarine::test
