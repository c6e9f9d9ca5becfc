// what_works FILE: tries every way of calling the tool on every desktop of facts.cpp and writes
// what came of it as a page of the documentation.
#include <algorithm>
#include <array>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <map>
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

const std::vector<Way>& ways() {
  static const std::vector<Way> all{
      {"choose-folder strict", {"choose-folder", "--strict-background"}},
      {"choose-folder", {"choose-folder"}},
      {"choose-folder, foreground", {"choose-folder", "--temporary-foreground"}},
      {"choose-path, file", {"choose-path"}, true},
      {"choose-path, folder", {"choose-path"}},
      {"close", {"close"}},
  };
  return all;
}

enum class Kind { right, error, wrong, unreported };

struct Cell {
  Kind kind = Kind::right;
  std::string text;
};

class Trial {
 public:
  Trial() {
    fs::remove_all(trial);
    for (const char* folder : {"start/target/inner", "start/empty", "start/cafe\u0301/inner",
                               "large/target/inner", "other/target/inner"}) {
      fs::create_directories(trial / folder);
    }
    for (const char* file : {"start/report.txt", "start/cafe\u0301.txt", "start/target/inside.txt",
                             "large/report.txt", "other/target/report.txt"}) {
      std::ofstream(trial / file) << "x";
    }
    for (int i = 0; i < 3000; ++i) std::ofstream(trial / "large" / ("entry " + std::to_string(i)));
    fs::create_directory_symlink(trial / "start/target", trial / "start/link");
    fs::create_symlink(trial / "start/report.txt", trial / "start/link.txt");
  }
  ~Trial() {
    std::error_code ignored;
    fs::remove_all(trial, ignored);
  }
  Trial(const Trial&) = delete;
  Trial& operator=(const Trial&) = delete;
};

World::Patches desktopOf(const Fact& fact, const Way& way) {
  Json panel = fact.panel;
  if (!panel.contains("folder")) panel["folder"] = (trial / fact.begin).string();
  if (way.files) panel["mode"] = "files";
  World::Patches patches{{"/home", trial.string()}};
  for (const auto& [key, value] : fact.scenario.items()) patches.push_back({"/" + key, value});
  Json panels = Json::array({panel});
  // A second browser has the same panel at another place.
  if (fact.scenario.contains("processes") && fact.scenario["processes"].size() > 3) {
    Json second = panel;
    second.update({{"host", 813},
                   {"folder", (trial / "other/target").string()},
                   {"frame", {{"x", 480}, {"y", 300}, {"width", 800}, {"height", 450}}}});
    panels.push_back(second);
  }
  if (panel.contains("language")) patches.push_back({"/language", panel["language"]});
  patches.push_back({"/panels", panels});
  return patches;
}

std::vector<std::string> commandLine(const Fact& fact, const Way& way) {
  std::vector<std::string> words = way.arguments;
  words.insert(words.end(), {"--pid", "812"});
  if (words.front() != "close") {
    words.insert(words.end(), {"--path", (trial / (way.files ? fact.file : fact.folder)).string()});
  }
  return words;
}

// The beginning of a message, up to a word's end.
std::string firstWords(const std::string& message) {
  constexpr std::size_t longest = 48;
  std::string line = message.substr(0, message.find('\n'));
  if (line.size() <= longest) return line;
  return line.substr(0, line.rfind(' ', longest)) + " …";
}

std::string disturbanceOf(const simulator::Record& record) {
  std::string text;
  if (record.mouseEvents() > 0) text += ", mouse";
  if (record.sessionEvents() > 0) text += ", session";
  if (record.foregroundChanges() > 0) text += ", front";
  return text;
}

std::string withoutTrialFolder(std::string text) {
  const std::string folder = trial.string() + "/";
  for (auto at = text.find(folder); at != text.npos; at = text.find(folder)) {
    text.erase(at, folder.size());
  }
  return text;
}

Cell tried(const Fact& fact, const Way& way) {
  World world("no-panel", desktopOf(fact, way));
  const Outcome outcome = world.run(commandLine(fact, way));
  std::array<char, 32> seconds{};
  std::snprintf(seconds.data(), seconds.size(), ", %.1f s", world.desktop().now());
  const std::string rest = seconds.data() + disturbanceOf(world.record());
  const std::string verdict = withoutTrialFolder(world.verdict());
  if (verdict.starts_with("unreported")) return {Kind::unreported, "**" + verdict + "**" + rest};
  if (verdict != "true") return {Kind::wrong, "**wrong**: " + verdict + rest};
  if (outcome.exitStatus != 0) return {Kind::error, "“" + firstWords(outcome.errors) + "”" + rest};
  if (outcome.output.find("\"closed\": 0") != std::string::npos) {
    return {Kind::error, "“closed: 0”" + rest};
  }
  return {Kind::right, "right" + rest};
}

void writeTable(std::ostream& page, const FactGroup& group,
                std::map<std::string, std::map<Kind, int>>& totals) {
  page << "\n## " << group.title << "\n\n| |";
  for (const Way& way : ways()) page << ' ' << way.name << " |";
  page << "\n|---|";
  for (std::size_t i = 0; i < ways().size(); ++i) page << "---|";
  page << '\n';
  for (const Fact& fact : group.facts) {
    page << "| " << fact.name << " |";
    for (const Way& way : ways()) {
      const Cell cell = tried(fact, way);
      ++totals[way.name][cell.kind];
      page << ' ' << cell.text << " |";
    }
    page << '\n';
  }
}

}  // namespace
}  // namespace tessarine::test

int main(int argc, char** argv) {
  using namespace tessarine::test;
  if (argc != 2) return 2;
  const Trial folders;
  std::map<std::string, std::map<Kind, int>> totals;
  std::ofstream page(argv[1]);
  for (const FactGroup& group : factGroups()) writeTable(page, group, totals);
  for (const auto& [way, counts] : totals) {
    page << way;
    for (const auto& [kind, count] : counts) page << ' ' << static_cast<int>(kind) << ':' << count;
    page << '\n';
  }
  return page ? 0 : 1;
}
