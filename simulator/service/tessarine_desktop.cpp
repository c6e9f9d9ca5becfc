// `tessarine-desktop`: a simulated desktop as a process of its own.
#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <initializer_list>
#include <iomanip>
#include <iostream>
#include <nlohmann/json.hpp>
#include <optional>
#include <stdexcept>
#include <string>
#include <system_error>
#include <vector>

#include "simulator/import/import.h"
#include "simulator/judge/call_log.h"
#include "simulator/judge/panel_fate.h"
#include "simulator/judge/verdict.h"
#include "simulator/replay/camera.h"
#include "simulator/replay/page.h"
#include "simulator/scenario/scenario.h"
#include "simulator/scenario/scene.h"
#include "simulator/service/client.h"
#include "simulator/service/own_path.h"
#include "simulator/service/server.h"
#include "simulator/service/server_report.h"

extern char** environ;

namespace simulator {
namespace {

namespace fs = std::filesystem;
using Arguments = std::vector<std::string>;

constexpr int status_not_written = 1;
constexpr int status_bad_argument = 2;
constexpr int status_not_true = 3;
constexpr int status_not_started = 127;
constexpr int signal_status_base = 128;

constexpr const char* usage =
    "usage: tessarine-desktop run SCENARIO [--record FILE] [--record-requests] [--judge] -- "
    "COMMAND "
    "[ARGUMENT...]\n"
    R"(       tessarine-desktop serve SCENARIO --socket PATH [--record FILE] [--record-requests]
       tessarine-desktop state --socket PATH
       tessarine-desktop replay RECORD
       tessarine-desktop list
       tessarine-desktop import FILE [--windows FILE] [--keep-names]

A simulated desktop for programs that were built to talk to one.

  run    runs COMMAND on the desktop, says on standard error what the panels ended with and
         whether the tool reported it so, and exits with the command's status; --record writes
         what happened and what was seen as JSON, with --record-requests also what was only asked;
         with --judge a verdict that is not `true` is status 3
  serve  keeps the desktop until SIGINT or SIGTERM; prints what to export for programs to find it;
         --record writes its record when it ends
  state  prints the processes, windows, panels, calls, verdicts and the record of a desktop that
         is being served
  replay prints a page, for any browser, that shows what a record holds
  list   names the scenarios that come with the program
  import makes a scenario out of what `tessarine inspect-open-dialog` printed on a Mac, and of
         what `tessarine list-windows` printed; says on standard error what it leaves out;
         names become placeholders unless --keep-names, paths always do

SCENARIO is one of those names, or a file (with a slash or ending in .json).
)";

// A mistake in how the program was called: one line on standard error, status 2.
struct CallError : std::runtime_error {
  using runtime_error::runtime_error;
};

// What cannot be written: one line on standard error, status 1.
struct OutputError : std::runtime_error {
  using runtime_error::runtime_error;
};

// Without them a file that is opened would get one of their numbers. What nobody opened cannot be
// written to, neither here.
void openMissingStandardStreams() {
  int opened = 0;
  while (opened >= 0 && opened <= STDERR_FILENO) opened = open("/dev/null", O_RDONLY);
  if (opened > STDERR_FILENO) close(opened);
}

void finishOutput() {
  if (!std::cout.flush()) throw OutputError("cannot write to standard output");
}

// Takes `--name VALUE` out of the arguments; empty when it is not there.
std::string takeOption(Arguments& arguments, const std::string& name) {
  const auto found = std::ranges::find(arguments, name);
  if (found == arguments.end()) return "";
  if (found + 1 == arguments.end() || (found + 1)->empty()) {
    throw CallError(name + " needs a value");
  }
  std::string value = *(found + 1);
  arguments.erase(found, found + 2);
  if (std::ranges::count(arguments, name)) throw CallError(name + " is given twice");
  return value;
}

// Takes `--name` out of the arguments; whether it was there.
bool takeFlag(Arguments& arguments, const std::string& name) {
  return std::erase(arguments, name) > 0;
}

std::string takeSocket(Arguments& arguments) {
  const std::string path = takeOption(arguments, "--socket");
  if (path.empty()) throw CallError("--socket PATH is missing");
  return fs::absolute(path);
}

// To be called when every option has been taken.
std::string takeScenarioName(Arguments& arguments) {
  for (const std::string& argument : arguments) {
    if (argument.starts_with('-')) throw CallError("unknown option: " + argument);
  }
  if (arguments.empty()) throw CallError("a scenario is missing; `list` names some");
  const std::string name = arguments.front();
  arguments.erase(arguments.begin());
  return name;
}

void takeNoMore(const Arguments& arguments) {
  if (!arguments.empty()) throw CallError("unexpected argument: " + arguments.front());
}

Scenario scenarioOf(const std::string& name) {
  if (name.find('/') != std::string::npos || name.ends_with(".json")) {
    return readScenarioFile(name);
  }
  if (!std::ranges::count(bundledScenarioNames(), name)) {
    throw CallError("no scenario is called " + name + "; `list` names them all");
  }
  return bundledScenario(name);
}

// The desktop's programs: where they are built, beside this one, or where they are installed. A
// desktop without them is refused: on a Mac the command would work on the Mac itself.
std::string programsFolder() {
  const fs::path folder = ownPath().parent_path();
  const fs::path built = folder / "desktop-programs";
  const fs::path programs =
      fs::exists(built) ? built : folder.parent_path() / "libexec" / "tessarine-desktop";
  if (!fs::exists(programs / "background-window-capture")) {
    throw CallError("the desktop's own programs are not in " + programs.string());
  }
  return programs;
}

struct Variable {
  std::string name;
  std::string value;
};

// What connects a program to the desktop at `socket`. The capture helper is a program like any
// other, so a desktop without it is one on which nobody is told where it lies. On a Mac the tool
// itself is of two kinds, and the search path leads to the one for the desktop.
std::vector<Variable> connection(const std::string& socket, const Desktop& desktop) {
  const std::string programs = programsFolder();
  const bool helper = !desktop.faults().missing_programs.contains("background-window-capture");
  std::vector<Variable> variables{{desktop_variable, socket},
                                  {programs_variable, programs},
                                  {"ZORVILET_BIN", helper ? programs : ""}};
  const char* path = std::getenv("PATH");
  if (const std::string commands = programs + "/commands"; fs::exists(commands)) {
    variables.push_back({"PATH", path ? commands + ":" + path : commands});
  }
  return variables;
}

std::string shellQuoted(const std::string& text) {
  std::string quoted = "'";
  for (const char c : text) quoted += c == '\'' ? std::string("'\\''") : std::string(1, c);
  return quoted + "'";
}

// Signals that have arrived, one byte each.
int signal_pipe[2];

void noteSignal(int number) {
  const int reason = errno;
  const auto byte = static_cast<unsigned char>(number);
  [[maybe_unused]] const ssize_t count = write(signal_pipe[1], &byte, 1);
  errno = reason;
}

void noteSignals(std::initializer_list<int> numbers) {
  if (pipe(signal_pipe) != 0) throw std::runtime_error("cannot make a pipe");
  for (const int end : signal_pipe) {
    fcntl(end, F_SETFD, FD_CLOEXEC);
    fcntl(end, F_SETFL, O_NONBLOCK);
  }
  for (const int number : numbers) {
    struct sigaction action {};
    action.sa_handler = noteSignal;
    action.sa_flags = SA_RESTART;
    sigaction(number, &action, nullptr);
  }
}

std::vector<int> takeSignals() {
  unsigned char bytes[64];
  const ssize_t count = read(signal_pipe[0], bytes, sizeof bytes);
  return {bytes, bytes + std::max<ssize_t>(count, 0)};
}

// A new folder that only this user can enter, removed with what is in it.
class PrivateFolder {
 public:
  PrivateFolder() : path_((fs::temp_directory_path() / "tessarine-desktop-XXXXXX").string()) {
    if (!mkdtemp(path_.data())) throw std::runtime_error("cannot make a folder like " + path_);
  }
  ~PrivateFolder() {
    std::error_code ignored;
    fs::remove_all(path_, ignored);
  }
  PrivateFolder(const PrivateFolder&) = delete;
  PrivateFolder& operator=(const PrivateFolder&) = delete;
  const std::string& path() const { return path_; }

 private:
  std::string path_;
};

// The command's process; absent, after a line on standard error, when it cannot be started.
std::optional<pid_t> startCommand(const Arguments& command) {
  std::vector<char*> argv;
  for (const std::string& argument : command) argv.push_back(const_cast<char*>(argument.c_str()));
  argv.push_back(nullptr);
  pid_t pid = 0;
  const int reason = posix_spawnp(&pid, argv[0], nullptr, nullptr, argv.data(), environ);
  if (reason == 0) return pid;
  std::cerr << "tessarine-desktop: cannot start " << command[0] << ": " << std::strerror(reason)
            << '\n';
  return {};
}

// Serves until the command has ended; its status as a shell would give it.
int serveCommand(Server& server, pid_t command) {
  int status = 0;
  while (waitpid(command, &status, WNOHANG) == 0) {
    server.serveUntil(signal_pipe[0]);
    for (const int number : takeSignals()) {
      if (number == SIGTERM || number == SIGHUP) kill(command, number);
    }
  }
  return WIFSIGNALED(status) ? signal_status_base + WTERMSIG(status) : WEXITSTATUS(status);
}

// The file for a record, open from the start: one that cannot be written is told before anything
// runs. Without a name nothing is filmed or written.
class RecordFile {
 public:
  explicit RecordFile(Arguments& arguments)
      : name_(takeOption(arguments, "--record")),
        withRequests_(takeFlag(arguments, "--record-requests")) {}

  bool isWanted() const { return !name_.empty(); }
  bool withRequests() const { return withRequests_; }

  void begin(Scene& scene, bool filmed) {
    if (!name_.empty()) {
      file_.open(name_);
      if (!file_) throw OutputError("cannot write " + name_ + ": " + std::strerror(errno));
    }
    if (filmed || !name_.empty()) camera_.emplace(scene);
  }
  void write(const Scene& scene, const CallLog& calls, const std::string& scenario) {
    if (name_.empty()) return;
    file_ << recordJson(scene, calls, scenario, withRequests_);
    file_.close();
    if (!file_) throw OutputError("cannot write " + name_);
  }

 private:
  std::string name_;
  bool withRequests_;
  std::ofstream file_;
  std::optional<Camera> camera_;
};

// Moves on to where nothing is under way any more; nobody calls from now on.
void settle(Server& server, const Scene& scene, CallLog& calls) {
  calls.loseAll(scene.desktop.now());
  server.moveOn(settling_seconds);
}

int run(Arguments arguments) {
  const auto separator = std::ranges::find(arguments, "--");
  if (separator == arguments.end() || separator + 1 == arguments.end()) {
    throw CallError("`-- COMMAND` is missing");
  }
  const Arguments command(separator + 1, arguments.end());
  arguments.erase(separator, arguments.end());
  RecordFile record(arguments);
  if (record.withRequests() && !record.isWanted()) {
    throw CallError("--record-requests needs --record");
  }
  const bool judged = takeFlag(arguments, "--judge");
  const std::string scenario = takeScenarioName(arguments);
  takeNoMore(arguments);

  const auto scene = makeScene(scenarioOf(scenario));
  record.begin(*scene, false);
  const PrivateFolder folder;
  const std::string socket = folder.path() + "/desktop";
  // The terminal sends SIGINT and SIGQUIT to the command as well: it decides what they mean.
  noteSignals({SIGCHLD, SIGTERM, SIGHUP, SIGINT, SIGQUIT});
  for (const Variable& variable : connection(socket, scene->desktop)) {
    setenv(variable.name.c_str(), variable.value.c_str(), 1);
  }
  CallLog calls;
  Server server(scene->desktop, calls, socket,
                [&] { return stateJson(*scene, calls, record.withRequests()); });
  const auto started = startCommand(command);
  if (!started) return status_not_started;
  const int status = serveCommand(server, *started);
  settle(server, *scene, calls);
  const std::string verdict = overallVerdict(calls.calls(), panelFates(*scene));
  std::cerr << outcomeLines(*scene) << "verdict: " << verdict << '\n';
  record.write(*scene, calls, scenario);
  return judged && verdict != verdict_true ? status_not_true : status;
}

int serve(Arguments arguments) {
  const std::string socket = takeSocket(arguments);
  RecordFile record(arguments);
  const std::string scenario = takeScenarioName(arguments);
  takeNoMore(arguments);
  const auto scene = makeScene(scenarioOf(scenario));
  record.begin(*scene, true);
  noteSignals({SIGINT, SIGTERM});
  CallLog calls;
  Server server(scene->desktop, calls, socket,
                [&] { return stateJson(*scene, calls, record.withRequests()); });
  for (const Variable& variable : connection(socket, scene->desktop)) {
    std::cout << "export " << variable.name << '=' << shellQuoted(variable.value) << std::endl;
  }
  finishOutput();
  server.serveUntil(signal_pipe[0]);
  settle(server, *scene, calls);
  record.write(*scene, calls, scenario);
  return 0;
}

int state(Arguments arguments) {
  const std::string socket = takeSocket(arguments);
  takeNoMore(arguments);
  std::cout << Connection(socket).exchange(AskState{}).get<std::string>() << '\n';
  return 0;
}

int list(const Arguments& arguments) {
  takeNoMore(arguments);
  for (const std::string& name : bundledScenarioNames()) {
    std::cout << std::left << std::setw(28) << name << ' ' << bundledScenario(name).description
              << '\n';
  }
  return 0;
}

int importPrintouts(Arguments arguments) {
  const std::string windowsFile = takeOption(arguments, "--windows");
  const bool keepNames = takeFlag(arguments, "--keep-names");
  if (arguments.empty()) throw CallError("a file is missing: what inspect-open-dialog printed");
  const Printout dialogs = readPrintout(arguments.front());
  arguments.erase(arguments.begin());
  takeNoMore(arguments);
  std::optional<Printout> windows;
  if (!windowsFile.empty()) windows = readPrintout(windowsFile);
  const ImportedScenario imported = importScenario(dialogs, windows, keepNames);
  for (const std::string& omission : imported.omissions) {
    std::cerr << "not in the scenario: " << omission << '\n';
  }
  std::cout << imported.document.dump(2) << '\n';
  return 0;
}

int replay(Arguments arguments) {
  if (arguments.empty()) throw CallError("a file is missing: what --record wrote");
  const std::string file = arguments.front();
  arguments.erase(arguments.begin());
  takeNoMore(arguments);
  std::cout << replayPage(readRecording(file));
  return 0;
}

int perform(Arguments arguments) {
  if (arguments.empty()) throw CallError("a command is missing; --help names them");
  const std::string command = arguments.front();
  arguments.erase(arguments.begin());
  if (command == "--help") {
    std::cout << usage;
    return 0;
  }
  if (command == "run") return run(arguments);
  if (command == "serve") return serve(arguments);
  if (command == "state") return state(arguments);
  if (command == "list") return list(arguments);
  if (command == "replay") return replay(arguments);
  if (command == "import") return importPrintouts(arguments);
  throw CallError("unknown command: " + command);
}

}  // namespace
}  // namespace simulator

int main(int argc, char** argv) {
  simulator::openMissingStandardStreams();
  try {
    const int status = simulator::perform({argv + 1, argv + argc});
    simulator::finishOutput();
    return status;
  } catch (const simulator::OutputError& error) {
    std::cerr << "tessarine-desktop: " << error.what() << '\n';
    return simulator::status_not_written;
  } catch (const std::exception& error) {
    std::cerr << "tessarine-desktop: " << error.what() << '\n';
    return simulator::status_bad_argument;
  }
}
