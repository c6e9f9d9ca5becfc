// What the program costs: processor time and accessibility requests of a whole command under the
// virtual clock, and the start of the process.
//
// Counters of the command benchmarks:
//   requests  accessibility requests that one run made
//   virtual   seconds that passed on the desktop's clock
//   floor     seconds of the pauses that the command makes in any case
// Counters of whole processes:
//   peak_KiB   greatest resident memory
//   libraries  shared libraries that the program names
#include <benchmark/benchmark.h>
#include <spawn.h>
#include <sys/wait.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <fstream>

#include "end_to_end/program_run.h"
#include "support/world.h"

extern char** environ;

namespace tessarine::test {
namespace {

// The pauses of a strict choose-folder that opens the go-to-folder sheet: the chord (held, after
// it, for the sheet), the written path, its confirmation, Return (held, after it).
constexpr double strictFloorSeconds = (0.02 + 0.15 + 0.25) + 0.12 + 0.2 + (0.02 + 0.25);

void strictChooseFolder(benchmark::State& state, const std::string& scenario) {
  const TemporaryFolder folder;
  const std::string target = folder.makeFolder("target");
  for (auto _ : state) {
    state.PauseTiming();
    auto world = std::make_unique<World>(scenario);
    state.ResumeTiming();
    const Outcome outcome =
        world->run({"choose-folder", "--strict-background", "--pid", "812", "--path", target});
    state.PauseTiming();
    if (outcome.exitStatus != 0) {
      state.SkipWithError(outcome.errors.c_str());
      break;
    }
    state.counters["requests"] = static_cast<double>(world->record().accessibilityRequests());
    state.counters["virtual"] = world->desktop().now();
    state.counters["floor"] = strictFloorSeconds;
    world.reset();
    state.ResumeTiming();
  }
}

// The wall time of a whole process, from its start until it has been waited for.
void wholeProcess(benchmark::State& state, const std::vector<std::string>& commandLine) {
  std::vector<char*> argv;
  for (const std::string& word : commandLine) argv.push_back(const_cast<char*>(word.c_str()));
  argv.push_back(nullptr);
  posix_spawn_file_actions_t quiet{};
  posix_spawn_file_actions_init(&quiet);
  posix_spawn_file_actions_addopen(&quiet, 1, "/dev/null", 1, 0);
  for (auto _ : state) {
    const auto start = std::chrono::steady_clock::now();
    pid_t pid = 0;
    int status = 0;
    if (posix_spawn(&pid, argv.front(), &quiet, nullptr, argv.data(), environ) != 0 ||
        waitpid(pid, &status, 0) != pid || status != 0) {
      state.SkipWithError("the process failed");
    }
    const std::chrono::duration<double> lasted = std::chrono::steady_clock::now() - start;
    state.SetIterationTime(lasted.count());
  }
  posix_spawn_file_actions_destroy(&quiet);
}

// A command on a desktop of another process, once: its memory.
void footprint(benchmark::State& state, const std::vector<std::string>& command) {
  const TemporaryFolder folder;
  const std::string report = folder.path() + "/peak";
  std::vector<std::string> commandLine{
      desktopPath(), "run", "chinese-service-window", "--", peakMemoryPath(), report, toolPath()};
  commandLine.insert(commandLine.end(), command.begin(), command.end());
  commandLine.insert(commandLine.end(), {"--pid", "812"});
  for (auto _ : state) {
    const ProgramRun run = runProgram(commandLine);
    state.SetIterationTime(run.seconds);
    if (run.exitStatus != 0) {
      state.SkipWithError(run.errors.c_str());
      break;
    }
  }
  double kilobytes = 0;
  std::ifstream(report) >> kilobytes;
  state.counters["peak_KiB"] = kilobytes;
  const std::string libraries = runProgram({"/usr/bin/ldd", toolPath()}).output;
  state.counters["libraries"] =
      static_cast<double>(std::count(libraries.begin(), libraries.end(), '>'));
}

BENCHMARK_CAPTURE(strictChooseFolder, english_service_window, "english-service-window")
    ->MeasureProcessCPUTime()
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(strictChooseFolder, chinese_service_window, "chinese-service-window")
    ->MeasureProcessCPUTime()
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(strictChooseFolder, english_old_generation, "english-old-generation")
    ->MeasureProcessCPUTime()
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(wholeProcess, bin_true, {"/bin/true"})
    ->UseManualTime()
    ->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(wholeProcess, tessarine_help, {toolPath(), "--help"})
    ->UseManualTime()
    ->Unit(benchmark::kMicrosecond);

#define FOOTPRINT(name, ...)                        \
  BENCHMARK_CAPTURE(footprint, name, {__VA_ARGS__}) \
      ->UseManualTime()                             \
      ->Iterations(1)                               \
      ->Unit(benchmark::kMillisecond)
FOOTPRINT(list_windows, "list-windows");
FOOTPRINT(list_background_panels, "list-background-panels");
FOOTPRINT(inspect_open_dialog, "inspect-open-dialog");
FOOTPRINT(press_key, "press-key", "--key", "return");
FOOTPRINT(choose_folder_strict, "choose-folder", "--strict-background", "--path", "/usr/lib");

}  // namespace
}  // namespace tessarine::test

BENCHMARK_MAIN();
