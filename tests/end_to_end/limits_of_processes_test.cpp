// The cases of docs/limits.md that concern processes.
#include <gtest/gtest.h>

#include <filesystem>
#include <sstream>

#include "end_to_end/program_run.h"
#include "limits/process_cases.h"
#include "support/temporary_folder.h"

namespace tessarine::test {
namespace {

namespace fs = std::filesystem;

// A Chinese panel of its service, which shows `start`.
class Trial {
 public:
  Trial() {
    const std::string start = files_.makeFolder("start");
    files_.makeFolder("start/target");
    scenario_ = files_.makeFile("scenario.json", R"json({
        "language": "zh-Hans",
        "panels": [{"shape": "service-window", "folder": ")json" +
                                                     start + R"json(",
                    "serviceCommand": "Open and Save Panel Service (Google Chrome)"}]})json");
  }

  const TemporaryFolder& files() const { return files_; }

  // Runs the shell's words, where "$@" is the command line behind the tool's name.
  ProgramRun run(const std::string& words, const ProcessCase& limit, bool verified) const {
    std::vector<std::string> line{desktopPath(), "run", scenario_, "--",
                                  "/bin/sh",     "-c",  words,     toolPath()};
    for (const std::string& word : limit.command) {
      line.push_back(word.starts_with("start/") ? files_.path() + "/" + word : word);
    }
    line.insert(line.end(), {"--pid", "812"});
    if (verified) line.push_back("--verify");
    return runProgram(line);
  }

  // Of a run whose shell left the tool's status to it.
  Seen seen(const ProgramRun& run) const {
    Seen seen;
    std::istringstream lines(run.errors);
    for (std::string line; std::getline(lines, line);) {
      const std::string text = shortened(line.substr(std::min(line.find(": ") + 2, line.size())));
      if (line.starts_with("panel 1: ")) seen.panels = text == "still open" ? "open" : text;
      if (line.starts_with("verdict: ")) seen.verdict = text;
    }
    seen.answer = run.exitStatus == 0 ? "ok" : run.errors.substr(0, run.errors.find('\n'));
    return seen;
  }

 private:
  std::string shortened(std::string text) const {
    const auto at = text.find(files_.path() + "/");
    return at == std::string::npos ? text : text.erase(at, files_.path().size() + 1);
  }

  TemporaryFolder files_;
  std::string scenario_;
};

TEST(LimitsOfProcesses, ABareNameRunsAHelperOfTheCurrentFolder) {
  const ProcessCase& limit = helperOfTheCurrentFolder;
  for (const bool verified : {false, true}) {
    const Trial trial;
    trial.files().makeScript("background-window-capture", "touch \"$(dirname \"$0\")/ran\"");
    const ProgramRun run = trial.run("cd '" + trial.files().path() +
                                         "' && PATH=\"$(dirname \"$0\"):$PATH\" && "
                                         "exec \"$(basename \"$0\")\" \"$@\"",
                                     limit, verified);
    Seen seen = trial.seen(run);
    if (fs::exists(trial.files().path() + "/ran")) seen.answer += ", the folder's program ran";
    EXPECT_EQ(seen, verified ? limit.with : limit.without) << run.errors;
  }
}

TEST(LimitsOfProcesses, AResultThatCannotBePrintedIsAnErrorAfterTheChoice) {
  const ProcessCase& limit = resultThatCannotBePrinted;
  for (const bool verified : {false, true}) {
    const Trial trial;
    const ProgramRun run = trial.run("exec \"$0\" \"$@\" >/dev/full", limit, verified);
    EXPECT_EQ(trial.seen(run), verified ? limit.with : limit.without) << run.errors;
  }
}

}  // namespace
}  // namespace tessarine::test
