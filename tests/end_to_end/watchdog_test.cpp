// What nothing answers: the watchdog ends the program, in real time.
#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <future>
#include <iterator>
#include <thread>

#include "end_to_end/program_run.h"
#include "support/temporary_folder.h"

namespace tessarine::test {
namespace {

namespace fs = std::filesystem;

constexpr double budgetSeconds = 12;
constexpr double toleranceSeconds = 0.5;
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
      "hanging.json", R"({"panels": [{"shape": "service-window"}], "faults": )" + faults + "}");
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

TEST(Watchdog, WhateverHangsEndsAfterTwelveSecondsAndNothingOutlivesTheDesktop) {
  struct Hanging {
    std::string faults;
    std::vector<std::string> arguments;
  };
  const TemporaryFolder folder;
  const std::string target = folder.makeFolder("target");
  const std::vector<Hanging> hangings{
      {R"({"silentProcesses": [812]})", {"list-windows", "--timeout", "0"}},
      {R"({"scriptHangs": true})", {"choose-folder", "--path", target, "--timeout", "0"}},
      {R"({"captureHelperHangs": true})", {"list-background-panels", "--timeout", "3.5"}}};
  std::vector<std::future<ProgramRun>> runs;
  for (const Hanging& hanging : hangings) {
    runs.push_back(std::async(std::launch::async, [&] {
      return runWithFaults(hanging.faults, hanging.arguments, folder.path());
    }));
  }
  for (std::size_t i = 0; i < runs.size(); ++i) {
    SCOPED_TRACE(hangings[i].faults);
    const ProgramRun run = runs[i].get();
    EXPECT_EQ(run, (ProgramRun{1, "",
                               "timed out after 12.0s (global watchdog)\npanel 1: still open\n"
                               "mouse events: 0\nsession-wide events: 0\n"
                               "frontmost application: Terminal, never changed\n"}));
    EXPECT_GE(run.seconds, budgetSeconds);
    EXPECT_LE(run.seconds, budgetSeconds + toleranceSeconds);
  }
  // Programs notice the end of their desktop in their own time.
  auto left = processesMarked(folder.path());
  for (int looks = 0; looks < 100 && !left.empty(); ++looks) {
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
    left = processesMarked(folder.path());
  }
  EXPECT_EQ(left, std::vector<std::string>{});
}

}  // namespace
}  // namespace tessarine::test
