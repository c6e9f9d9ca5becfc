#include <charconv>
#include <iomanip>
#include <sstream>

#include "simulator/desktop/unmodelled.h"
#include "simulator/programs/programs.h"

namespace simulator {
namespace {

void listAll(ProgramRun& run) {
  std::ostringstream lines;
  for (const auto& process : run.desktop().processes()) {
    if (process->terminated) continue;
    lines << std::setw(5) << process->pid << ' ' << process->command << '\n';
  }
  run.print(lines.str());
  run.end(0);
}

void listOne(ProgramRun& run, Pid pid) {
  const Process* process = run.desktop().findProcess(pid);
  if (process == nullptr || process->terminated) return run.end(1);
  run.print(process->command + "\n");
  run.end(0);
}

}  // namespace

void runProcessList(ProgramRun& run) {
  const Seconds running_time = run.desktop().prices().processList;
  if (run.desktop().faults().ps_prints_nothing) {
    return run.after(running_time, [&run] { run.end(0); });
  }
  const std::vector<std::string>& words = run.arguments();
  if (words == std::vector<std::string>{"-axo", "pid=,command="}) {
    return run.after(running_time, [&run] { listAll(run); });
  }
  if (words.size() == 4 && words[0] == "-p" && words[2] == "-o" && words[3] == "command=") {
    Pid pid = 0;
    const char* end = words[1].data() + words[1].size();
    const auto read = std::from_chars(words[1].data(), end, pid);
    if (read.ec == std::errc() && read.ptr == end) {
      return run.after(running_time, [&run, pid] { listOne(run, pid); });
    }
  }
  std::string line = "/bin/ps";
  for (const std::string& word : words) line += " " + word;
  abortUnmodelled(line);
}

}  // namespace simulator
