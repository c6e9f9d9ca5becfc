// What hangs is ended in real time: the program by its watchdog, a script at its time limit.
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <future>
#include <iterator>
#include <thread>

#include "end_to_end/program_run.h"
#include "end_to_end/served_desktop.h"
#include "support/temporary_folder.h"

namespace tessarine::test {
namespace {

namespace fs = std::filesystem;

constexpr double toleranceSeconds = 2.0;  // of a machine that has other work
constexpr const char* markName = "TESSARINE_TEST_RUN";

// The command lines of the running processes that were started with the mark in their environment.
std::vector<std::string> processesMarked(const std::string& mark) {
  const auto contents = [](const fs::path& path) {
    std::ifstream file(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(file), {});
  };
  std::vector<std::string> found;
  for (const auto& entry : fs::directory_iterator("/proc")) {
    const std::string environment = contents(entry.path() / "environ");
    if (environment.find(markName + ("=" + mark)) != std::string::npos) {
      found.push_back(contents(entry.path() / "cmdline"));
    }
  }
  return found;
}

// Runs the tool on a desktop with these faults; `mark` is in the environment of all that it starts.
ProgramRun runWithFaults(const std::string& faults, const std::vector<std::string>& arguments,
                         const std::string& mark) {
  const TemporaryFolder folder;
  const std::string scenario = folder.makeFile(
      "hanging.json", R"({"panels": [{"shape": "service-window"}], "requestTimeoutSeconds": 3600,
                          "faults": )" +
                          faults + "}");
  std::vector<std::string> commandLine{desktopPath(), "run", scenario, "--", toolPath()};
  commandLine.insert(commandLine.end(), arguments.begin(), arguments.end());
  commandLine.insert(commandLine.end(), {"--pid", "812"});
  return runProgram(commandLine, {{markName, mark}});
}

TEST(Watchdog, AProcessWithTheMarkIsFound) {
  const TemporaryFolder folder;
  RunningProgram waiting({"/bin/sh", "-c", "echo started; exec sleep 30"},
                         {{markName, folder.path()}});
  waiting.readLine();
  EXPECT_EQ(processesMarked(folder.path()).size(), 1U);
}

// The processes with the mark that are left after a moment.
std::vector<std::string> leftovers(const std::string& mark) {
  auto left = processesMarked(mark);
  for (int looks = 0; looks < 100 && !left.empty(); ++looks) {
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
    left = processesMarked(mark);
  }
  return left;
}

// The time-out and 8 s, but never less than 12 s.
TEST(Watchdog, EndsWhateverHangsAndNothingOutlivesTheDesktop) {
  struct Hanging {
    std::string seconds;
    std::string faults;
    std::vector<std::string> arguments;
  };
  const TemporaryFolder folder;
  const std::string target = folder.makeFolder("target");
  const std::string silence = R"({"silentProcesses": [812, 900]})";
  const std::string hangingScript = R"({"scriptHangs": true})";
  const std::string hangingHelper = R"({"captureHelperHangs": true})";
  const std::vector<Hanging> hangings{
      {"18.0", silence, {"inspect-open-dialog"}},
      {"18.0", hangingScript, {"choose-folder", "--path", target, "--timeout", "10"}},
      {"18.0", hangingHelper, {"close"}},
      {"12.0", silence, {"list-windows", "--timeout", "-20"}},
      {"12.0", hangingScript, {"choose-folder", "--path", target, "--timeout", "0"}},
      {"12.5", hangingHelper, {"list-background-panels", "--timeout", "4.5"}}};
  std::vector<std::future<ProgramRun>> runs;
  for (const Hanging& hanging : hangings) {
    runs.push_back(std::async(std::launch::async, [&] {
      return runWithFaults(hanging.faults, hanging.arguments, folder.path());
    }));
  }
  for (std::size_t i = 0; i < runs.size(); ++i) {
    SCOPED_TRACE(hangings[i].faults + hangings[i].seconds);
    const ProgramRun run = runs[i].get();
    EXPECT_EQ(run, (ProgramRun{1, "",
                               "timed out after " + hangings[i].seconds +
                                   "s (global watchdog)\npanel 1: still open\n"
                                   "mouse events: 0\nsession-wide events: 0\n"
                                   "frontmost application: Terminal, never changed\n"
                                   "verdict: true\n"}));
    const double budget = std::stod(hangings[i].seconds);
    EXPECT_GE(run.seconds, budget);
    EXPECT_LE(run.seconds, budget + toleranceSeconds);
  }
  // Programs notice the end of their desktop in their own time.
  EXPECT_EQ(leftovers(folder.path()), std::vector<std::string>{});
}

// --- The time limit of a script. ---

// A folder with the desktop's own programs, except that a script that types becomes `sleep`.
std::string programsWhoseTypingHangs(const TemporaryFolder& folder, const std::string& programs) {
  const std::string place = folder.makeFolder("programs");
  const std::string own = "exec " + programs;
  folder.makeScript("programs/ps", own + "/ps \"$@\"");
  folder.makeScript("programs/osascript", "case \"$*\" in *keystroke*) exec sleep 30;; esac\n" +
                                              own + "/osascript \"$@\"");
  return place;
}

// Looks until a `sleep` with the mark is there, or is there no more; at most ten seconds.
bool waitForSleep(const std::string& mark, bool present) {
  for (int looks = 0; looks < 1000; ++looks) {
    const auto running = processesMarked(mark);
    const bool found = std::any_of(running.begin(), running.end(), [](const std::string& command) {
      return command.starts_with("sleep");
    });
    if (found == present) return true;
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
  }
  return false;
}

// The tool inherits a blocked SIGTERM; its script must not.
TEST(ScriptLimit, AScriptThatHangsIsGoneAfterThreeSecondsAndTheCommandGoesOn) {
  const TemporaryFolder folder;
  const ServedDesktop desktop("unseen-folders");
  Environment environment = desktop.environment();
  environment[markName] = folder.path();
  std::string& programs = environment.at("TESSARINE_DESKTOP_PROGRAMS");
  programs = programsWhoseTypingHangs(folder, programs);

  sigset_t termination{};
  sigemptyset(&termination);
  sigaddset(&termination, SIGTERM);
  pthread_sigmask(SIG_BLOCK, &termination, nullptr);
  RunningProgram tool({toolPath(), "choose-folder", "--pid", "812", "--path", "/usr/share",
                       "--temporary-foreground", "--timeout", "1"},
                      environment);
  pthread_sigmask(SIG_UNBLOCK, &termination, nullptr);

  ASSERT_TRUE(waitForSleep(folder.path(), true));
  const auto start = std::chrono::steady_clock::now();
  EXPECT_TRUE(waitForSleep(folder.path(), false));
  const std::chrono::duration<double> lasted = std::chrono::steady_clock::now() - start;
  EXPECT_NEAR(lasted.count(), 3.0, toleranceSeconds);
  const ProgramRun run = tool.finish();
  EXPECT_EQ(run.exitStatus, 0) << run.errors;
  EXPECT_NE(run.output.find("background-window-capture-cgevent"), std::string::npos) << run.output;
  EXPECT_EQ(leftovers(folder.path()), std::vector<std::string>{});
}

// --- Helpers, which have no limit but the watchdog. ---

TEST(Helper, IsWaitedForWhenItsOutputHasEnded) {
  const TemporaryFolder folder;
  folder.makeScript("background-window-capture", "exec >&-; exec sleep 1");
  const ProgramRun run =
      runTessarine({"list-background-panels", "--pid", "812"}, {{"ZORVILET_BIN", folder.path()}});
  EXPECT_EQ(run.exitStatus, 0) << run.errors;
  EXPECT_GE(run.seconds, 1.0);
}

}  // namespace
}  // namespace tessarine::test
