// tessarine-swarm --seeds A..B [--verify] [--list] [--errors] [--shrink] [--record FILE]: draws a
// desktop from each seed, runs a whole command line of the tool on it, and says which rules were
// broken. Exit status 1 when one was.
//   --verify       The command lines have --verify, and all that it promises must hold.
//   --list         One line for each run.
//   --errors       Honest errors are printed as failures are.
//   --shrink       Of what is printed so, only what matters of the scenario.
//   --record FILE  What happened in the last run, one JSON object on each line.
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <functional>
#include <iostream>
#include <map>
#include <optional>
#include <regex>
#include <set>

#include "swarm/run.h"
#include "swarm/shrink.h"

namespace tessarine::test {
namespace {

using Json = nlohmann::ordered_json;

struct SwarmOptions {
  std::uint64_t first = 0;
  std::uint64_t last = 0;
  bool verify = false;
  bool list = false;
  bool errors = false;
  bool shrink = false;
  std::string recordFile;
};

std::optional<SwarmOptions> readOptions(const std::vector<std::string>& words) {
  SwarmOptions options;
  bool seeds = false;
  for (std::size_t i = 0; i < words.size(); ++i) {
    std::smatch range;
    if (words[i] == "--verify") {
      options.verify = true;
    } else if (words[i] == "--list") {
      options.list = true;
    } else if (words[i] == "--errors") {
      options.errors = true;
    } else if (words[i] == "--shrink") {
      options.shrink = true;
    } else if (words[i] == "--record" && i + 1 < words.size()) {
      options.recordFile = words[++i];
    } else if (words[i] == "--seeds" && i + 1 < words.size() &&
               std::regex_match(words[++i], range, std::regex("(\\d{1,18})\\.\\.(\\d{1,18})"))) {
      options.first = std::stoull(range[1]);
      options.last = std::stoull(range[2]);
      seeds = true;
    } else {
      return {};
    }
  }
  if (!seeds || options.last < options.first) return {};
  return options;
}

std::string replayLine(std::uint64_t seed, bool verify) {
  const std::string number = std::to_string(seed);
  return "tessarine-swarm --seeds " + number + ".." + number + (verify ? " --verify" : "");
}

// --- A run that ends the whole program is named all the same. ---

std::string& lastWords() {
  static std::string words;
  return words;
}

extern "C" void sayLastWords(int number) {
  const std::string& words = lastWords();
  if (write(STDERR_FILENO, words.data(), words.size()) < 0) std::_Exit(1);
  std::signal(number, SIG_DFL);
  std::raise(number);
}

constexpr unsigned longestRunSeconds = 300;  // of the machine's time

void watchRun(std::uint64_t seed, bool verify) {
  lastWords() = "seed " + std::to_string(seed) +
                " ended the program or its time: " + replayLine(seed, verify) + "\n";
  for (const int number : {SIGABRT, SIGSEGV, SIGFPE, SIGALRM}) std::signal(number, sayLastWords);
  alarm(longestRunSeconds);
}

// --- The report. ---

void replaceAll(std::string& text, const std::string& what, const std::string& by) {
  for (auto at = text.find(what); at != text.npos; at = text.find(what, at + by.size())) {
    text.replace(at, what.size(), by);
  }
}

// As errors name them, the longest first.
std::vector<std::string> pathsIn(const DrawnWorld& drawn) {
  std::vector<std::string> paths;
  for (const DrawnEntry& entry : drawn.folders.entries()) {
    std::string path = entry.path;
    std::ranges::replace_if(
        path, [](char c) { return c == '\n' || c == '\t'; }, ' ');
    paths.push_back(path);
  }
  std::ranges::sort(paths, std::ranges::greater(), &std::string::size);
  return paths;
}

// A message without what differs from one desktop to the next.
std::string messageKind(const std::string& message, const DrawnWorld& drawn) {
  std::string text = message.substr(0, message.find_last_not_of('\n') + 1);
  for (const std::string& path : pathsIn(drawn)) replaceAll(text, path, "PATH");
  for (const Json& process : drawn.scenario.value("processes", Json::array())) {
    replaceAll(text, process["name"].get<std::string>() + " ", "PROCESS ");
    replaceAll(text, "(" + process["name"].get<std::string>() + ")", "(PROCESS)");
  }
  text = std::regex_replace(text, std::regex("shows .*, not PATH"), "shows SOMETHING, not PATH");
  text = std::regex_replace(text, std::regex("exist: [^]*"), "exist: PATH");
  return std::regex_replace(text, std::regex("[0-9]+(\\.[0-9]+)?"), "N");
}

struct Counts {
  int runs = 0;
  int right = 0;
  int failures = 0;
  std::map<std::string, int> wrong;   // without --verify: what the judge said
  std::map<std::string, int> errors;  // by their kind
};

void print(const std::string& title, const std::map<std::string, int>& counts) {
  for (const auto& [text, count] : counts) {
    std::cout << "  " << title << ' ' << count << ": " << text << '\n';
  }
}

void printRun(const DrawnWorld& drawn, const RunReport& report, bool verify) {
  std::cout << "seed " << drawn.seed << '\n';
  for (const std::string& rule : report.broken) std::cout << "  broken: " << rule << '\n';
  std::cout << "  error: " << Json(report.outcome.errors).dump() << '\n';
  std::cout << "  verdict: " << report.verdict << "\n  scenario: " << drawn.scenario.dump()
            << "\n  command: tessarine";
  for (const std::string& word : drawn.arguments) std::cout << ' ' << Json(word).dump();
  std::cout << "\n  replay: " << replayLine(drawn.seed, verify) << std::endl;
}

void printLine(const DrawnWorld& drawn, const RunReport& report) {
  std::cout << drawn.seed << ' ' << report.seconds << " s "
            << (report.outcome.exitStatus == 0 ? "ok, " : "failed, ") << report.verdict << ' '
            << Json(report.outcome.errors).dump() << '\n';
}

// "false success", "more than asked" or "unreported".
std::string verdictKind(const std::string& verdict) {
  return verdict.substr(0, verdict.find(':'));
}

void count(const DrawnWorld& drawn, const RunReport& report, Counts& counts) {
  ++counts.runs;
  if (!report.broken.empty()) ++counts.failures;
  if (report.verdict != "true") ++counts.wrong[verdictKind(report.verdict)];
  if (report.outcome.exitStatus == 0) {
    if (report.verdict == "true") ++counts.right;
  } else {
    ++counts.errors[messageKind(report.outcome.errors, drawn)];
  }
}

// The names of the rules that were broken.
std::set<std::string> rulesOf(const RunReport& report) {
  std::set<std::string> names;
  for (const std::string& text : report.broken) names.insert(text.substr(0, text.find(':')));
  return names;
}

// A failure ends the same when it breaks the same rules, an honest error when its message is of the
// same kind.
RunReport shrunk(DrawnWorld& drawn, const RunReport& report, const SwarmOptions& options) {
  const auto rules = rulesOf(report);
  const std::string kind = messageKind(report.outcome.errors, drawn);
  const auto isTheSame = [&](const RunReport& other) {
    if (!rules.empty()) return rulesOf(other) == rules;
    return other.broken.empty() && messageKind(other.outcome.errors, drawn) == kind;
  };
  return shrinkWorld(drawn, options.verify, report, isTheSame);
}

int runAll(const SwarmOptions& options) {
  Counts counts;
  for (std::uint64_t seed = options.first; seed <= options.last; ++seed) {
    watchRun(seed, options.verify);
    DrawnWorld drawn(seed, options.verify);
    const bool record = !options.recordFile.empty() && seed == options.last;
    const RunReport report = runWorld(drawn, options.verify, record);
    count(drawn, report, counts);
    const bool error = options.errors && report.outcome.exitStatus != 0;
    if (error || !report.broken.empty()) {
      printRun(drawn, options.shrink ? shrunk(drawn, report, options) : report, options.verify);
    }
    if (options.list) printLine(drawn, report);
    if (record) std::ofstream(options.recordFile) << report.record;
  }
  int errors = 0;
  for (const auto& each : counts.errors) errors += each.second;
  print("error", counts.errors);
  print("verdict", counts.wrong);
  std::cout << counts.runs << " runs, " << counts.right << " right, " << errors << " errors, "
            << counts.failures << " failures" << std::endl;
  return counts.failures == 0 ? 0 : 1;
}

}  // namespace
}  // namespace tessarine::test

int main(int argc, char** argv) {
  const auto options = tessarine::test::readOptions({argv + 1, argv + argc});
  if (!options) {
    std::cerr << "usage: tessarine-swarm --seeds A..B [--verify] [--list] [--errors] [--shrink] "
                 "[--record FILE]\n";
    return 2;
  }
  return tessarine::test::runAll(*options);
}
