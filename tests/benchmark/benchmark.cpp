// What the program costs: processor time and accessibility requests of every route of a command
// under the virtual clock, and the start of the process.
//
// Counters of the routes:
//   requests  accessibility requests that one run made
//   virtual   seconds that passed on the desktop's clock
//   floor     of these, the seconds of pauses and of waits that run out in any case on this route
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
#include <string_view>

#include "benchmark/floors.h"
#include "commands/staging_world.h"
#include "end_to_end/program_run.h"
#include "support/world.h"

extern char** environ;

namespace tessarine::test {
namespace {

using Json = nlohmann::ordered_json;

// --- Routes. ---

constexpr const char* folderPath = "/usr/share";
constexpr const char* ownFile = "a file that each run makes for itself";

// Of a path, typed letter by letter.
constexpr double typing(std::string_view path, double pause) {
  return static_cast<double>(path.size()) * key(pause);
}

// Command-A and Delete, each with a pause.
constexpr double emptying = 2 * key(0.05);
// The sheet by keys: its chord and arrival, the field emptied, the path typed, Return.
constexpr double sheetByKeys = key(0.15) + 0.2 + emptying + typing(folderPath, 0.02) + key(0.25);
// The verified sheet: its chord, and Return; what follows each is watched for.
constexpr double sheetByProof = key(0.15) + key(0.05);
// A sheet that no process opens.
constexpr double noSheet = 2 * (key(0.15) + 1.3);
// A click into the panel, the sheet's chord and arrival, the field emptied, the path typed, Return
// and a rest; then the panel is expected to close in vain, and its button is clicked.
constexpr double eventsAtPanel = click + 0.18 + key(0.15) + 0.35 + emptying +
                                 typing(folderPath, 0.05) + key(0.45) + 0.35 + 0.7 + click;
// The browser comes forward; the script's own delays.
constexpr double systemEvents = 0.55 + 0.25 + 0.45 + 0.7;
// The dialog is looked for in vain; the copy appears; its row and the Open button are clicked.
constexpr double staging = 3.0 + 0.25 + click + 0.22 + click;
// The click is waited for in vain, as is the one beside it; the row is clicked twice.
constexpr double doubleClick = 3.0 + click + 3.0 + click + 0.06 + click;
// The dialog is looked for in vain; a click into the panel, the sheet, and Return twice.
constexpr double keyboard = 2.0 + click + 0.18 + sheetByKeys + 0.35 + 2 * key(0.2);
// Escape at the service and at the browser.
constexpr double escapes = 2 * key(0.08);

struct Route {
  std::string name;
  std::string scenario;
  std::vector<std::string> command;
  std::string ending;
  double floor;
  World::Patches patches = {};
};

std::vector<Route> routes() {
  const std::vector<std::string> folder{"choose-folder", "--path", folderPath};
  const std::vector<std::string> strict{"choose-folder", "--path", folderPath,
                                        "--strict-background"};
  const std::vector<std::string> verified{"choose-folder", "--path", folderPath, "--verify"};
  const std::vector<std::string> events{"choose-folder", "--path", folderPath,
                                        "--prefer-background-panel"};
  const std::vector<std::string> script{"choose-folder", "--path", folderPath,
                                        "--prefer-background-panel", "--temporary-foreground"};
  const std::vector<std::string> pathOfFolder{"choose-path", "--path", folderPath};
  const std::vector<std::string> keys{"choose-path", "--path", folderPath, "--timeout", "2"};
  const std::vector<std::string> file{"choose-path", "--path", ownFile};
  const std::vector<std::string> close{"close"};
  const std::vector<std::string> strictClose{"close", "--strict-background"};

  const std::string strictly = "embedded-chooser-ax-goto-folder-strict-background";
  const std::string english = "english-service-window";
  const std::string chinese = "chinese-service-window";
  const std::string staged = "unseen-tmp-service-chinese";
  const World::Patches parentIsPlace{
      {"/panels/0/folder", "/"},
      {"/places", {{{"label", "usr"}, {"path", "/usr"}, {"urlKnown", true}}}}};
  World::Patches keysReachNobody = parentIsPlace;
  keysReachNobody.emplace_back("/panels/0/keysReach", "nobody");
  const World::Patches fast{{"/panels/0/slow", 0.5}};
  const World::Patches rowUnderClick{
      {"/panels/0/layout/list", {{"x", 160}, {"y", 92}, {"width", 640}, {"height", 250}}}};
  World::Patches bothUnderClicks = rowUnderClick;
  bothUnderClicks.emplace_back("/panels/0/layout/confirmButton",
                               Json{{"x", 696}, {"y", 358}, {"width", 84}, {"height", 24}});
  const World::Patches keysReachHost{{"/panels/0/keysReach", "host"}};
  const World::Patches unlisted{{"/panels/0/listed", "none"}};

  return {
      {"choose_folder/strict_english", english, strict, strictly, sheetByControls},
      {"choose_folder/strict_chinese", chinese, strict, strictly, sheetByControls},
      {"choose_folder/strict_old", "english-old-generation", strict, strictly, sheetByControls},
      {"choose_folder/verified_english", english, verified, "verified", sheetByProof},
      {"choose_folder/verified_chinese", chinese, verified, "verified", sheetByProof},
      {"choose_folder/verified_old", "english-old-generation", verified, "verified", sheetByProof},
      {"choose_folder/verified_without_keys", chinese, verified, "verified", noSheet,
       keysReachNobody},
      {"choose_folder/hierarchy", chinese, folder, "hierarchy", click, parentIsPlace},
      {"choose_folder/go_to_folder", english, folder, "go-to-folder-ax", walkAndSheet},
      {"choose_folder/events", "unseen-folders", events, "background-window-capture-cgevent",
       eventsAtPanel},
      {"choose_folder/script", "unseen-folders", script, "background-window-capture-system-events",
       systemEvents, fast},
      {"choose_path/folder", english, pathOfFolder, "go-to-folder", sheetByKeys + 0.3},
      {"choose_path/sheet", "file-panel-english", file, "go-to-folder-ax", sheetByControls + 1.0},
      {"choose_path/staging", staged, file, "tmp-staging-first-row-mouse", staging,
       bothUnderClicks},
      {"choose_path/double_click", staged, file, "tmp-staging-first-row-double-click",
       staging + doubleClick, rowUnderClick},
      {"choose_path/keyboard", "unseen-folders", keys, "go-to-folder-keyboard-fallback", keyboard,
       keysReachHost},
      {"close/cancel", english, close, "closed 1", cancelPress, unlisted},
      {"close/escape", english, close, "closed 1", escapes},
      {"close/strict", english, strictClose, "closed 1", cancelPress},
  };
}

// The strategy that a result names, or else how many panels were closed.
std::string endingOf(const Json& result) {
  return result.value("strategy", "closed " + result.value("closed", Json()).dump());
}

// What has to become of the panel.
std::string panelOutcomeOf(const Json& result) {
  if (result.contains("closed")) return "cancelled";
  return "chosen " + result.value("stagedPath", result["path"].get<std::string>());
}

// Why a run does not count; empty when it took the route.
std::string objection(const Route& route, const Outcome& outcome, World& world) {
  if (outcome.exitStatus != 0) return outcome.errors;
  const Json result = Json::parse(outcome.output);
  if (endingOf(result) != route.ending) return "ended with " + endingOf(result);
  if (world.panelOutcomes() != panelOutcomeOf(result)) return "panel: " + world.panelOutcomes();
  return world.desktop().now() < route.floor ? "ended before its pauses could be over" : "";
}

void runRoute(benchmark::State& state, const Route& route) {
  for (auto _ : state) {
    state.PauseTiming();
    const StagedFile file;
    std::vector<std::string> arguments = route.command;
    std::replace(arguments.begin(), arguments.end(), std::string(ownFile), file.path());
    arguments.insert(arguments.end(), {"--pid", std::to_string(browserPid)});
    auto world = std::make_unique<World>(route.scenario, route.patches);
    state.ResumeTiming();
    const Outcome outcome = world->run(arguments);
    state.PauseTiming();
    if (const auto why = objection(route, outcome, *world); !why.empty()) {
      state.SkipWithError(why.c_str());
      break;
    }
    state.counters["requests"] = static_cast<double>(world->record().accessibilityRequests());
    state.counters["virtual"] = world->desktop().now();
    state.counters["floor"] = route.floor;
    world.reset();
    state.ResumeTiming();
  }
}

// --- Processes. ---

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

void registerRoutes() {
  for (const Route& route : routes()) {
    benchmark::RegisterBenchmark(route.name.c_str(), runRoute, route)
        ->MeasureProcessCPUTime()
        ->Unit(benchmark::kMillisecond);
  }
}

}  // namespace
}  // namespace tessarine::test

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
  tessarine::test::registerRoutes();
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
}
