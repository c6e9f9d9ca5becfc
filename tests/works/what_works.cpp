// what_works FILE: tries every way of calling the tool on every desktop of facts.cpp and writes
// what came of it as a page of the documentation. what_works --check FILE README: compares the page
// with what it finds now, and the totals in README.
#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <map>
#include <set>
#include <sstream>

#include "support/world.h"
#include "works/facts.h"

namespace tessarine::test {
namespace {

namespace fs = std::filesystem;
using Json = nlohmann::ordered_json;

// Always the same one, as the tool types paths and every letter takes its time.
const fs::path trial = "/tmp/tessarine-what-works";

struct Way {
  std::string name;
  std::vector<std::string> arguments;
  bool files = false;  // it is tried on a file panel
};

// The ways of one table.
struct Ways {
  std::string name;
  std::vector<Way> ways;
  std::size_t longestMessage;  // so much of an error's text, for the cells to stay narrow
};

const Ways& waysWithout() {
  static const Ways ways{
      "Without `--verify`",
      {
          {"choose-folder, strict", {"choose-folder", "--strict-background"}},
          {"choose-folder", {"choose-folder"}},
          {"choose-folder, foreground", {"choose-folder", "--temporary-foreground"}},
          {"choose-path of a file", {"choose-path"}, true},
          {"choose-path of a folder", {"choose-path"}},
          {"close", {"close"}},
      },
      48};
  return ways;
}

const Ways& waysWith() {
  static const Ways ways{
      "With `--verify`",
      {
          {"choose-folder `--verify`", {"choose-folder", "--verify"}},
          {"choose-path `--verify` of a file", {"choose-path", "--verify"}, true},
          {"choose-path `--verify` of a folder", {"choose-path", "--verify"}},
      },
      90};
  return ways;
}

// --- The folders of the trial. ---

class Folders {
 public:
  Folders() {
    fs::remove_all(trial);
    for (const char* folder : {"start/target/inner", "start/empty", "start/cafe\u0301/inner",
                               "large/target/inner", "other/target/inner"}) {
      fs::create_directories(trial / folder);
    }
    for (const char* file : {"start/report.txt", "start/cafe\u0301.txt", "large/report.txt"}) {
      std::ofstream(trial / file) << "x";
    }
    for (int i = 0; i < 3000; ++i) std::ofstream(trial / "large" / ("entry " + std::to_string(i)));
    fs::create_directory_symlink(trial / "start/target", trial / "start/link");
    fs::create_symlink(trial / "start/report.txt", trial / "start/link.txt");
  }
  ~Folders() {
    std::error_code ignored;
    fs::remove_all(trial, ignored);
  }
  Folders(const Folders&) = delete;
  Folders& operator=(const Folders&) = delete;
};

// The same on every machine: the folders of the trial, the copies that choose-path leaves in /tmp,
// and what stands in "/" of every Debian.
Json listedEntries() {
  return {trial.string(), "/tmp/zorvilet-upload-*", "/home", "/media", "/mnt", "/srv"};
}

// The copies that choose-path leaves in /tmp.
std::set<fs::path> stagedCopies() {
  std::set<fs::path> copies;
  for (const auto& entry : fs::directory_iterator("/tmp")) {
    if (entry.path().filename().string().starts_with("zorvilet-upload-")) copies.insert(entry);
  }
  return copies;
}

// Removes those that came during its life: the next trial shall not find them.
class WithoutNewCopies {
 public:
  ~WithoutNewCopies() {
    for (const fs::path& copy : stagedCopies()) {
      if (!before_.contains(copy)) fs::remove(copy);
    }
  }

 private:
  std::set<fs::path> before_ = stagedCopies();
};

// --- One trial. ---

enum class Kind { right, error, wrong, unreported };

struct Cell {
  Kind kind = Kind::right;
  std::string text;
};

World::Patches desktopOf(const Fact& fact, const Way& way) {
  Json panel = fact.panel;
  if (!panel.contains("folder")) panel["folder"] = (trial / fact.begin).string();
  if (way.files) panel["mode"] = "files";
  World::Patches patches{{"/home", trial.string()}, {"/listsOnly", listedEntries()}};
  if (panel.contains("language")) patches.push_back({"/language", panel["language"]});
  for (const auto& [key, value] : fact.scenario.items()) patches.push_back({"/" + key, value});
  Json panels = Json::array({panel});
  const Json& processes = fact.scenario.value("processes", Json::array());
  if (!processes.empty() && processes.back()["pid"] == secondBrowserPid) {
    panel.update({{"host", secondBrowserPid},
                  {"folder", (trial / "other/target").string()},
                  {"frame", {{"x", 480}, {"y", 300}, {"width", 800}, {"height", 450}}}});
    panels.push_back(panel);
  }
  patches.push_back({"/panels", panels});
  return patches;
}

std::vector<std::string> commandLine(const Fact& fact, const Way& way) {
  std::vector<std::string> words = way.arguments;
  words.insert(words.end(), {"--pid", std::to_string(browserPid)});
  if (words.front() != "close") {
    words.insert(words.end(), {"--path", (trial / (way.files ? fact.file : fact.folder)).string()});
  }
  return words;
}

// The beginning of a message, up to a word's end; paths from the trial's folder on.
std::string firstWords(const std::string& message, std::size_t longest) {
  std::string line = message.substr(0, message.find('\n'));
  const std::string folder = trial.string() + "/";
  for (auto at = line.find(folder); at != std::string::npos; at = line.find(folder)) {
    line.erase(at, folder.size());
  }
  if (line.size() <= longest) return line;
  return line.substr(0, line.rfind(' ', longest)) + " …";
}

// What was chosen below the trial's folder is named from there on; the rest may be a copy, whose
// name is another one each time.
std::string withShortPath(const std::string& verdict) {
  const auto at = verdict.find('/');
  if (at == std::string::npos) return verdict;
  const std::string folder = trial.string() + "/";
  const bool own = verdict.compare(at, folder.size(), folder) == 0;
  return verdict.substr(0, at) + (own ? verdict.substr(at + folder.size()) : "something else");
}

std::string disturbanceOf(const simulator::Record& record) {
  std::string text;
  if (record.mouseEvents() > 0) text += ", mouse";
  if (record.sessionEvents() > 0) text += ", session";
  if (record.foregroundChanges() > 0) text += ", front";
  return text;
}

std::string secondsText(double seconds) {
  std::array<char, 32> text{};
  std::snprintf(text.data(), text.size(), ", %.1f s", seconds);
  return text.data();
}

Cell tried(const Fact& fact, const Way& way, std::size_t longestMessage) {
  const WithoutNewCopies tidy;
  World world("no-panel", desktopOf(fact, way));
  const Outcome outcome = world.run(commandLine(fact, way));
  const std::string rest = secondsText(world.desktop().now()) + disturbanceOf(world.record());
  const std::string verdict = withShortPath(world.verdict());
  if (verdict.starts_with("unreported")) return {Kind::unreported, "**" + verdict + "**" + rest};
  if (verdict != "true") return {Kind::wrong, "**wrong**: " + verdict + rest};
  if (outcome.exitStatus != 0) {
    return {Kind::error, "“" + firstWords(outcome.errors, longestMessage) + "”" + rest};
  }
  if (outcome.output.find("\"closed\": 0") != std::string::npos) {
    return {Kind::error, "“closed: 0”" + rest};
  }
  return {Kind::right, "right" + rest};
}

// --- The page. ---

constexpr const char* beginning = R"(# What works where

Every way of calling the tool, tried on simulated desktops that have the facts about the Open
panel which decide most: those that people measured on Macs, and both sides of those on which
reports disagree. Nobody has tried any of this on a Mac. [What each fact is based
on](scenarios.md).

In each trial a panel shows the folder `start`, and the tool is asked for `start/target` or
`start/report.txt` in it, unless the row says otherwise. A cell says what came of it:

- **right**: the panel chose just that; `close`: it was cancelled.
- “…”: an error, of which the first words stand here, and the panel chose nothing. “closed: 0”
  is no error of the command, which says that it closed nothing.
- **wrong**: the command reported success, and a panel chose something else or nothing, or
  another panel ended, too.
- **unreported**: the command reported an error, and the panel chose all the same.

Then the seconds that it took, and what it disturbed: `mouse`, mouse events were posted;
`session`, events went to the whole session; `front`, another application came to the front, if
only for a while.

**With `--verify`.** Wherever accessibility shows the panel, in any language, whoever takes the
keys and whether or not anything is listed; where no keys arrive it goes from entry to entry, which
takes some seconds more. No mouse, nothing to the session, nothing brought forward. It ends in an
error where there is nothing to see: a panel that no tree shows, windows on another space, no
Accessibility; on an old panel without identifiers whose button it does not know; and on one that
its service alone shows where no capture helper says that it stands with the browser. Where the
go-to sheet's Return confirms the panel, too, the panel has chosen before anything was proven: that
is an error, which says that what was chosen is unknown, and counts as **unreported** here.

**Without it: where it can be relied on.** Where keys reach the process that accessibility shows
the panel in: a panel that its service alone exposes, with keys to the service; a sheet or a window
of the browser that takes keys from the browser. In Chinese, or with a prompt that the tool knows.
There each way of choosing works in the background, also in columns, with icons, with slow
requests and with an awkward name; in a folder of thousands of entries the strict way and
`choose-path` alone end in time. Where keys posted to a process do not arrive,
`--temporary-foreground` still works on the Chinese sheets and windows, unless both the
workspace and System Events refuse to bring the browser forward. A panel that no tree shows is
chosen in by the blind routes alone, where its clicks arrive.

**Without it: where it fails honestly.** On Chromium's own sheets in the background: the keys go to
the browser, which drops them; in English and German the sheet is not recognised at all, in front
neither. Without Accessibility, without the helper, in the background on another space. It takes
up to the watchdog's time, and without `--strict-background` it clicks meanwhile.

**Without it: where it lies.** `choose-path` of a folder confirms what it does not see: where keys
are lost but the Choose button answers, the panel chooses the folder that it showed before. The
strict way knows folders by their names alone. Where no window of the panel is listed, a panel that
is open is taken for closed. Clicks on a list of another layout choose another row. A suggestion of
the go-to sheet is chosen for what was typed. With two browsers of one name, `close` cancels the
panels of both. And it chooses, but reports an error, where the panel is slow, where the go-to
sheet's Return confirms, or where the other browser's panel stays open. [Limits](limits.md) takes
these cases, and more, one by one.
)";

using Totals = std::map<std::string, std::map<Kind, int>>;

void writeTable(std::ostream& page, const FactGroup& group, const Ways& ways, Totals& totals) {
  page << "\n| " << ways.name << " |";
  for (const Way& way : ways.ways) page << ' ' << way.name << " |";
  page << "\n|---|";
  for (std::size_t i = 0; i < ways.ways.size(); ++i) page << "---|";
  page << '\n';
  for (const Fact& fact : group.facts) {
    page << "| " << fact.name << " |";
    for (const Way& way : ways.ways) {
      const Cell cell = tried(fact, way, ways.longestMessage);
      ++totals[way.name][cell.kind];
      page << ' ' << cell.text << " |";
    }
    page << '\n';
  }
}

void writeTotals(std::ostream& page, const Ways& ways, Totals& totals) {
  for (const Way& way : ways.ways) {
    page << "| " << way.name;
    for (const Kind kind : {Kind::right, Kind::error, Kind::wrong, Kind::unreported}) {
      page << " | " << totals[way.name][kind];
    }
    page << " |\n";
  }
}

std::string sums(const Ways& ways, Totals& totals) {
  std::map<Kind, int> sums;
  int all = 0;
  for (const Way& way : ways.ways) {
    for (const auto& [kind, count] : totals[way.name]) {
      sums[kind] += count;
      all += count;
    }
  }
  return "of " + std::to_string(all) + " trials " + std::to_string(sums[Kind::right]) +
         " were right, " + std::to_string(sums[Kind::error]) + " ended in an error, " +
         std::to_string(sums[Kind::wrong]) + " reported a success that was none or not all, and " +
         std::to_string(sums[Kind::unreported]) + " chose although they reported an error";
}

std::string totalsText(Totals& totals) {
  return "with `--verify`, " + sums(waysWith(), totals) + "; without it, " +
         sums(waysWithout(), totals);
}

std::string pageText() {
  const Folders folders;
  Totals totals;
  std::ostringstream tables;
  for (const FactGroup& group : factGroups()) {
    tables << "\n## " << group.title << '\n';
    for (const Ways* ways : {&waysWith(), &waysWithout()}) {
      writeTable(tables, group, *ways, totals);
    }
  }
  std::ostringstream page;
  page
      << beginning << "\nAltogether, " << totalsText(totals) << ".\n"
      << "\n## Totals\n\n| | right | error | **wrong** | **unreported** |\n|---|---|---|---|---|\n";
  for (const Ways* ways : {&waysWith(), &waysWithout()}) writeTotals(page, *ways, totals);
  page << tables.str();
  return page.str();
}

std::string contents(const std::string& file) {
  std::ostringstream text;
  text << std::ifstream(file).rdbuf();
  return text.str();
}

// Whether the sentence with the totals stands in the file, however its lines are broken.
bool repeatsTotals(const std::string& page, const std::string& file) {
  const std::string mark = "Altogether, ";
  const auto begin = page.find(mark) + mark.size();
  const std::string sentence = page.substr(begin, page.find(".\n", begin) - begin);
  std::string text = contents(file);
  std::replace(text.begin(), text.end(), '\n', ' ');
  if (text.find(sentence) != std::string::npos) return true;
  std::cerr << file << ": does not say \"" << sentence << "\"\n";
  return false;
}

int check(const std::string& file, const std::string& readme) {
  std::ifstream written(file);
  const std::string page = pageText();
  std::istringstream found(page);
  std::string expected;
  std::string line;
  int differences = repeatsTotals(page, readme) ? 0 : 1;
  while (std::getline(found, line)) {
    if (std::getline(written, expected) && expected == line) continue;
    std::cerr << file << ":\n- " << expected << "\n+ " << line << '\n';
    ++differences;
  }
  if (std::getline(written, expected)) {
    std::cerr << file << ": goes on with\n- " << expected << '\n';
    ++differences;
  }
  return differences == 0 ? 0 : 1;
}

int write(const std::string& file) {
  std::ofstream page(file);
  page << pageText();
  return page ? 0 : 1;
}

}  // namespace
}  // namespace tessarine::test

int main(int argc, char** argv) {
  const std::vector<std::string> arguments(argv + 1, argv + argc);
  if (arguments.size() == 1) return tessarine::test::write(arguments[0]);
  if (arguments.size() == 3 && arguments[0] == "--check") {
    return tessarine::test::check(arguments[1], arguments[2]);
  }
  std::cerr << "usage: what_works FILE | what_works --check FILE README\n";
  return 2;
}
