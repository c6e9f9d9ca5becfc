#include "platform/processes.h"

#include <gmock/gmock.h>

#include <cstdlib>
#include <filesystem>

#include "core/tables.h"
#include "simulator/programs/programs.h"
#include "support/world.h"

namespace tessarine::test {
namespace {

using testing::ElementsAre;
using Words = std::vector<std::string>;

// --- helperExecutable, with the real file system. ---

// A program folder and another one that ZORVILET_BIN may name.
class HelperExecutable : public testing::Test {
 protected:
  HelperExecutable() {
    unsetenv("ZORVILET_BIN");
    tables().programPath = programFolder.path() + "/tessarine";
  }
  ~HelperExecutable() override {
    unsetenv("ZORVILET_BIN");
    tables().programPath = "";
    std::filesystem::current_path(startFolder);
  }
  void nameHelperFolder(const std::string& path) { setenv("ZORVILET_BIN", path.c_str(), 1); }

  const std::filesystem::path startFolder = std::filesystem::current_path();
  TemporaryFolder programFolder;
  TemporaryFolder helperFolder;
};

TEST_F(HelperExecutable, IsTheOneThatTheEnvironmentNames) {
  const std::string helper = helperFolder.makeScript("helper", "exit 0");
  nameHelperFolder(helperFolder.path());
  EXPECT_EQ(helperExecutable("helper"), helper);
  nameHelperFolder(helperFolder.path() + "/");
  EXPECT_EQ(helperExecutable("helper"), helper);
}

TEST_F(HelperExecutable, IsTheOneBesideTheProgramWhenThereAreTwo) {
  const std::string helper = programFolder.makeScript("helper", "exit 0");
  helperFolder.makeScript("helper", "exit 0");
  nameHelperFolder(helperFolder.path());
  EXPECT_EQ(helperExecutable("helper"), helper);
}

TEST_F(HelperExecutable, IsThePathBesideTheProgramWhenThereIsNone) {
  EXPECT_EQ(helperExecutable("helper"), programFolder.path() + "/helper");
  nameHelperFolder(helperFolder.path());
  EXPECT_EQ(helperExecutable("helper"), programFolder.path() + "/helper");
}

TEST_F(HelperExecutable, MustBeExecutable) {
  programFolder.makeFile("helper", "text");
  const std::string helper = helperFolder.makeScript("helper", "exit 0");
  nameHelperFolder(helperFolder.path());
  EXPECT_EQ(helperExecutable("helper"), helper);
  helperFolder.makeFile("other", "text");
  EXPECT_EQ(helperExecutable("other"), programFolder.path() + "/other");
}

TEST_F(HelperExecutable, IgnoresAnEmptyEnvironmentVariable) {
  nameHelperFolder("");
  EXPECT_EQ(helperExecutable("helper"), programFolder.path() + "/helper");
}

// With an empty value taken as a directory, the current one would be searched.
TEST_F(HelperExecutable, DoesNotTakeAnEmptyEnvironmentVariableForTheCurrentDirectory) {
  helperFolder.makeScript("helper", "exit 0");
  std::filesystem::current_path(helperFolder.path());
  nameHelperFolder("");
  EXPECT_EQ(helperExecutable("helper"), programFolder.path() + "/helper");
}

TEST_F(HelperExecutable, TakesARelativeFolderFromTheCurrentDirectory) {
  const std::string helper = helperFolder.makeScript("helper", "exit 0");
  std::filesystem::current_path(helperFolder.makeFolder("bin"));
  nameHelperFolder("../bin/..");
  EXPECT_EQ(helperExecutable("helper"), helper);
}

TEST_F(HelperExecutable, IsLookedForInTheCurrentDirectoryForABareProgramName) {
  tables().programPath = "tessarine";
  EXPECT_EQ(helperExecutable("helper"), (std::filesystem::current_path() / "helper").string());
  tables().programPath = "bin/../tools/tessarine";
  EXPECT_EQ(helperExecutable("helper"),
            (std::filesystem::current_path() / "tools/helper").string());
}

TEST_F(HelperExecutable, HasNoFolderWhenTheProgramHasNoFirstArgument) {
  tables().programPath = "";
  EXPECT_EQ(helperExecutable("helper"), "helper");
}

// --- Running programs of the desktop. ---

// A desktop with one program at that path, which prints, complains and ends after 0.07 s.
struct Programs : BareDesktop {
  Programs(const std::string& path, const simulator::ProgramResult& result) {
    desktop.installProgram(path, [result](simulator::ProgramRun& run) {
      run.after(0.07, [&run, result] {
        run.print(result.standardOutput);
        run.complain(result.standardError);
        run.end(result.exitStatus);
      });
    });
  }
  // Path and arguments of every program that was started.
  std::vector<Words> started() const {
    std::vector<Words> runs;
    for (const auto& line : desktop.record().lines()) {
      const auto* start = std::get_if<simulator::ProgramStarted>(&line.entry);
      if (start == nullptr) continue;
      runs.push_back({start->path});
      runs.back().insert(runs.back().end(), start->arguments.begin(), start->arguments.end());
    }
    return runs;
  }
};

TEST(CommandOutput, IsStandardOutputAsItStands) {
  Programs world("/bin/tool", {3, " 打开\n\n", "a complaint"});
  EXPECT_EQ(commandOutput("/bin/tool", {"a b", "$HOME", ""}), " 打开\n\n");
  EXPECT_THAT(world.started(), ElementsAre(Words{"/bin/tool", "a b", "$HOME", ""}));
  EXPECT_NEAR(world.now(), 0.07, 1e-9);
}

TEST(CommandOutput, IsEmptyWhenItCannotBeHad) {
  Programs world("/bin/tool", {0, "fine\xFF", ""});
  EXPECT_EQ(commandOutput("/bin/tool", {}), "");
  EXPECT_EQ(commandOutput("/bin/missing", {}), "");
}

// --- commandOutputWithin ---

std::string outputWithin(double seconds) {
  return commandOutputWithin("/bin/tool", {}, seconds).value_or("absent");
}

TEST(CommandOutputWithin, IsTheOutputOfAProgramThatSucceeds) {
  Programs world("/bin/tool", {0, " 打开\n\n", "a complaint"});
  EXPECT_EQ(commandOutputWithin("/bin/tool", {"a b"}, 1), " 打开\n\n");
  EXPECT_THAT(world.started(), ElementsAre(Words{"/bin/tool", "a b"}));
  EXPECT_LT(world.now(), 0.2);
}

TEST(CommandOutputWithin, MayBeEmptyAndIsNotAbsentThen) {
  Programs world("/bin/tool", {0, "", ""});
  EXPECT_EQ(outputWithin(1), "");
}

TEST(CommandOutputWithin, IsAbsentForAProgramThatFails) {
  Programs world("/bin/tool", {3, "text", ""});
  EXPECT_EQ(outputWithin(1), "absent");
}

TEST(CommandOutputWithin, IsAbsentForOutputThatIsNoText) {
  Programs world("/bin/tool", {0, "fine\xFF", ""});
  EXPECT_EQ(outputWithin(1), "absent");
}

TEST(CommandOutputWithin, IsAbsentForAProgramThatDoesNotStart) {
  BareDesktop world;
  EXPECT_EQ(outputWithin(1), "absent");
  EXPECT_EQ(world.now(), 0.0);
}

TEST(CommandOutputWithin, EndsAProgramThatTakesLonger) {
  BareDesktop world;
  bool asked = false;
  world.desktop.installProgram("/bin/tool", [&](simulator::ProgramRun& run) {
    run.print("half of it");
    run.catchTermination([&asked] { asked = true; });
    run.after(10, [&run] { run.end(0); });
  });
  EXPECT_EQ(outputWithin(0.5), "absent");
  EXPECT_TRUE(asked);
  EXPECT_NEAR(world.now(), 0.5, 0.1);
}

TEST(CommandOutputWithin, LetsAProgramFinishThatTakesLess) {
  Programs world("/bin/tool", {0, "all of it", ""});
  EXPECT_EQ(outputWithin(0.05), "absent");
  EXPECT_EQ(outputWithin(0.12), "all of it");
}

TEST(CommandSucceeded, IsAMatterOfTheExitStatus) {
  Programs good("/bin/tool", {0, "\xFF", "a complaint"});
  EXPECT_TRUE(commandSucceeded("/bin/tool", {"-v"}));
  EXPECT_THAT(good.started(), ElementsAre(Words{"/bin/tool", "-v"}));
  EXPECT_FALSE(commandSucceeded("/bin/missing", {}));
  Programs bad("/bin/tool", {1, "fine", ""});
  EXPECT_FALSE(commandSucceeded("/bin/tool", {}));
}

TEST(ProcessCommand, AsksPsForOneProcessAndTrims) {
  Programs world("/bin/ps", {0, " \t/usr/bin/a b \n\n", ""});
  EXPECT_EQ(processCommand(812), "/usr/bin/a b");
  EXPECT_THAT(world.started(), ElementsAre(Words{"/bin/ps", "-p", "812", "-o", "command="}));
}

TEST(ProcessCommand, IsEmptyForAProcessThatDoesNotExist) {
  BareDesktop bare;
  simulator::installPrograms(bare.desktop);
  EXPECT_EQ(processCommand(812), "/Applications/Google Chrome.app/Contents/MacOS/Google Chrome");
  EXPECT_EQ(processCommand(4711), "");
}

TEST(ProcessCommand, IsEmptyWithoutPs) {
  BareDesktop bare;
  EXPECT_EQ(processCommand(812), "");
}

// --- Quoting. ---

TEST(Quoting, EscapesBackslashesBeforeTheRest) {
  EXPECT_EQ(appleScriptStringLiteral(R"(a "b" \c)"), R"(a \"b\" \\c)");
  EXPECT_EQ(appleScriptStringLiteral(R"(\")"), R"(\\\")");
  EXPECT_EQ(appleScriptStringLiteral("\r\n"), R"(\r\n)");
  EXPECT_EQ(appleScriptStringLiteral("\\n\n"), R"(\\n\n)");
  EXPECT_EQ(appleScriptStringLiteral("/tmp/打开 it's\t$HOME"), "/tmp/打开 it's\t$HOME");
  EXPECT_EQ(appleScriptStringLiteral(""), "");
}

TEST(Quoting, LeavesLineEndsAloneForTheShell) {
  EXPECT_EQ(shellQuoted(R"(\")"), R"(\\\")");
  EXPECT_EQ(shellQuoted("a\r\nb"), "a\r\nb");
}

// --- AppleScript. ---

// The case and the message with which the action fails.
template <class Action>
std::pair<ToolError::Case, std::string> failureOf(const Action& action) {
  try {
    action();
  } catch (const ToolError& error) {
    return {error.errorCase(), error.message()};
  }
  ADD_FAILURE() << "nothing was thrown";
  return {};
}

constexpr const char* osascript = "/usr/bin/osascript";

TEST(RunAppleScript, HandsEachLineOverAsAnArgument) {
  Programs world(osascript, {0, "ignored", "ignored"});
  runAppleScript({"tell application \"Finder\"", "activate", "end tell"});
  EXPECT_THAT(world.started(), ElementsAre(Words{osascript, "-e", "tell application \"Finder\"",
                                                 "-e", "activate", "-e", "end tell"}));
}

TEST(RunAppleScript, LooksEvery20MillisecondsWhetherTheScriptHasEnded) {
  Programs world(osascript, {0, "", ""});
  runAppleScript({"beep"});
  EXPECT_NEAR(world.now(), 0.08, 1e-6);
}

TEST(RunAppleScript, FailsWithWhatTheScriptComplainedAbout) {
  const auto failureWith = [](const simulator::ProgramResult& result) {
    Programs world(osascript, result);
    return failureOf([] { runAppleScript({"beep"}); });
  };
  using Case = ToolError::Case;
  EXPECT_EQ(failureWith({1, "out", " \n0:4: syntax error. (-2741)\n"}),
            std::pair(Case::actionFailed, std::string("0:4: syntax error. (-2741)")));
  EXPECT_EQ(failureWith({1, "out", ""}), std::pair(Case::actionFailed, std::string()));
  EXPECT_EQ(failureWith({2, "", " \n"}), std::pair(Case::actionFailed, std::string()));
  EXPECT_EQ(failureWith({1, "", "caf\xE9"}),
            std::pair(Case::actionFailed, std::string("osascript failed")));
}

TEST(RunAppleScript, SaysWhyTheScriptCouldNotBeStarted) {
  BareDesktop bare;
  EXPECT_EQ(failureOf([] { runAppleScript({"beep"}); }),
            std::pair(ToolError::Case::actionFailed,
                      std::string("failed to start osascript: No such file or directory")));
}

// How the script of a hanging desktop ended: what was thrown, when, and the program's status.
struct HangingEnd {
  std::pair<ToolError::Case, std::string> failure;
  double seconds = 0;
  std::vector<int> statuses;
};

template <class Action>
HangingEnd endWithHangingScript(const Action& action) {
  BareDesktop bare;
  bare.desktop.installProgram(osascript, [](simulator::ProgramRun&) {});
  HangingEnd end{failureOf(action), bare.now(), {}};
  for (const auto& line : bare.desktop.record().lines()) {
    const auto* ended = std::get_if<simulator::ProgramEnded>(&line.entry);
    if (ended != nullptr) end.statuses.push_back(ended->status);
  }
  return end;
}

TEST(RunAppleScript, EndsAScriptThatHangsAfterThreeSeconds) {
  const HangingEnd end = endWithHangingScript([] { runAppleScript({"beep"}); });
  EXPECT_EQ(end.failure,
            std::pair(ToolError::Case::timedOut, std::string("osascript exceeded 3.0s")));
  // At the deadline or at the first look after it.
  EXPECT_GE(end.seconds, 3.0 - 1e-6);
  EXPECT_LE(end.seconds, 3.02 + 1e-6);
  EXPECT_THAT(end.statuses, ElementsAre(15));
}

TEST(RunAppleScript, TakesAnotherTimeLimit) {
  const HangingEnd end = endWithHangingScript([] { runAppleScript({"beep"}, 0.33); });
  EXPECT_EQ(end.failure.second, "osascript exceeded 0.33s");
  EXPECT_NEAR(end.seconds, 0.34, 1e-6);
  const HangingEnd atOnce = endWithHangingScript([] { runAppleScript({"beep"}, 0); });
  EXPECT_EQ(atOnce.failure.second, "osascript exceeded 0.0s");
  EXPECT_EQ(atOnce.seconds, 0.0);
}

TEST(ChooseFolderWithSystemEvents, TypesThePathIntoTheGoToSheet) {
  Programs world(osascript, {0, "", ""});
  chooseFolderWithSystemEvents("/tmp/a \"b\" \\c");
  EXPECT_THAT(world.started(), ElementsAre(Words{osascript,
                                                 "-e",
                                                 "tell application \"System Events\"",
                                                 "-e",
                                                 "keystroke \"g\" using {command down, shift down}",
                                                 "-e",
                                                 "delay 0.25",
                                                 "-e",
                                                 "keystroke \"a\" using {command down}",
                                                 "-e",
                                                 R"(keystroke "/tmp/a \"b\" \\c")",
                                                 "-e",
                                                 "delay 0.45",
                                                 "-e",
                                                 "key code 36",
                                                 "-e",
                                                 "delay 0.70",
                                                 "-e",
                                                 "key code 36",
                                                 "-e",
                                                 "end tell"}));
}

TEST(ChooseFolderWithSystemEvents, HasThreeSecondsAndPassesFailuresOn) {
  const HangingEnd end = endWithHangingScript([] { chooseFolderWithSystemEvents("/tmp"); });
  EXPECT_EQ(end.failure.second, "osascript exceeded 3.0s");
  Programs failing(osascript, {1, "", "not allowed\n"});
  EXPECT_EQ(messageOf([] { chooseFolderWithSystemEvents("/tmp"); }), "not allowed");
}

// The script's delays suit a panel that reacts quickly.
TEST(ChooseFolderWithSystemEvents, ChoosesTheFolderOfThePanelInFront) {
  TemporaryFolder folder;
  World world("english-host-window", {{"/frontmost", browserPid}, {"/panels/0/slow", 0.5}});
  chooseFolderWithSystemEvents(folder.path());
  world.desktop().advanceTo(world.desktop().now() + 1);
  EXPECT_EQ(world.panelOutcomes(), "chosen " + folder.path());
}

}  // namespace
}  // namespace tessarine::test
