// What is installed beside the programs says what they take: completions in real shells, and the
// man pages.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <map>
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

// The programs, and how many commands each of them takes.
const std::map<std::string, std::size_t> programs{
    {"background-window-capture", 3}, {"tessarine", 9}, {"tessarine-desktop", 6}};

std::string helpOf(const std::string& program) {
  if (program == "tessarine-desktop") return runProgram({desktopPath(), "--help"}).output;
  if (program == "background-window-capture") return helperUsage;
  std::ostringstream usage;
  printUsage(usage);
  return usage.str();
}

class Completions : public ::testing::TestWithParam<Shell> {
 protected:
  // The candidates in the place of the last word.
  static WordSet offered(const Words& line) {
    Words command = GetParam().start;
    command.push_back(packaging + "completions/" + GetParam().completions);
    command.insert(command.end(), line.begin(), line.end());
    // Some completions ask the program itself.
    const std::string folder = std::filesystem::path(desktopPath()).parent_path();
    const ProgramRun run = runProgram(command, {{"PATH", folder + ":" + std::getenv("PATH")}});
    EXPECT_EQ(run.exitStatus, 0) << run.errors;
    WordSet words;
    std::istringstream lines(run.output);
    for (std::string word; std::getline(lines, word);) words.insert(word);
    words.erase("");
    return words;
  }
};

// The options of each command that a program's help names.
std::map<std::string, WordSet> usageOptions(const std::string& program) {
  std::istringstream lines(helpOf(program));
  std::map<std::string, WordSet> options;
  for (std::string line; std::getline(lines, line);) {
    const bool isCall = line.starts_with("usage: ") || line.starts_with("  ");
    std::istringstream words(line);
    std::string word;
    words >> word;
    if (word == "usage:") words >> word;
    if (!isCall || word != program || !(words >> word)) continue;
    WordSet& found = options[word];
    while (words >> word) {
      const std::size_t dashes = word.find("--");
      if (dashes == std::string::npos || word == "--") continue;
      found.insert(word.substr(dashes, word.find(']') - dashes));
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
  for (const auto& [program, count] : programs) {
    WordSet commands{"--help"};
    for (const auto& [command, options] : usageOptions(program)) commands.insert(command);
    EXPECT_EQ(commands.size(), count + 1) << program;
    WordSet found = offered({program, ""});
    found.insert("--help");  // some shells offer options only after a dash
    EXPECT_EQ(found, commands) << program;
  }
  EXPECT_EQ(offered({"tessarine", "list-w"}), WordSet{"list-windows"});
}

TEST_P(Completions, NameEveryOptionOfTheUsageAndNoneThatIsNotTaken) {
  for (const auto& [command, options] : usageOptions("tessarine")) {
    SCOPED_TRACE(command);
    const WordSet found = offered({"tessarine", command, "--"});
    EXPECT_TRUE(std::includes(found.begin(), found.end(), options.begin(), options.end()));
    EXPECT_TRUE(found.contains("--pid") && found.contains("--timeout"));
    for (const std::string& option : found) EXPECT_TRUE(isTaken(command, option)) << option;
  }
}

TEST_P(Completions, NameTheOptionsOfTheOtherPrograms) {
  for (const char* program : {"background-window-capture", "tessarine-desktop"}) {
    for (const auto& [command, options] : usageOptions(program)) {
      WordSet found = offered({program, command, "--"});
      found.erase("--help");
      EXPECT_EQ(found, options) << program << ' ' << command;
    }
  }
}

TEST_P(Completions, NameScenariosAndFiles) {
  for (const char* command : {"run", "serve"}) {
    EXPECT_EQ(offered({"tessarine-desktop", command, "chinese-s"}),
              WordSet{"chinese-service-window"});
  }
  const std::string readme = SOURCE_TREE "/README.md";
  for (const char* command : {"import", "replay"}) {
    const WordSet found =
        offered({"tessarine-desktop", command, readme.substr(0, readme.size() - 4)});
    // zsh names the folders on the way to it, too.
    EXPECT_TRUE(std::any_of(found.begin(), found.end(), [](const std::string& word) {
      return word.ends_with("README.md");
    })) << ::testing::PrintToString(found);
  }
}

TEST_P(Completions, NameKeysThatCanBePressed) {
  const BareDesktop desktop;
  const WordSet keys = offered({"tessarine", "press-key", "--key", ""});
  EXPECT_EQ(keys.size(), 10U);
  for (const std::string& key : keys) EXPECT_NO_THROW(pressKeyCommand(browserPid, key)) << key;
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
  for (const auto& [program, count] : programs) {
    const ProgramRun page = manPage(program);
    EXPECT_EQ(page.exitStatus, 0) << program;
    EXPECT_EQ(page.errors, "") << program;
    for (const char* section : {"NAME", "SYNOPSIS", "DESCRIPTION", "EXIT STATUS", "SEE ALSO"}) {
      EXPECT_NE(page.output.find(section), std::string::npos) << program << ' ' << section;
    }
  }
}

TEST(ManPages, NameEveryCommandAndOption) {
  for (const auto& [program, count] : programs) {
    const std::string page = manPage(program).output;
    const auto commands = usageOptions(program);
    EXPECT_EQ(commands.size(), count) << program;
    for (const auto& [command, options] : commands) {
      // The tool's page names several commands in one line of its synopsis.
      const std::string call = program == "tessarine" ? command : program + " " + command;
      EXPECT_NE(page.find(call), std::string::npos) << call;
      for (const std::string& option : options) {
        EXPECT_NE(page.find(option), std::string::npos) << program << ' ' << option;
      }
    }
  }
  const std::string page = manPage("tessarine").output;
  for (const char* option : {"--quiet", "--help", "ZORVILET_BIN"}) {
    EXPECT_NE(page.find(option), std::string::npos) << option;
  }
  EXPECT_NE(manPage("background-window-capture").output.find("--help"), std::string::npos);
}

}  // namespace
}  // namespace tessarine::test
