// docs/limits.md says what the cases of limit_cases.cpp and process_cases.h come to: the cases come
// to what is written there, and the page to what the cases say.
#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <fstream>
#include <map>
#include <regex>
#include <sstream>

#include "commands/staging_world.h"
#include "limits/limit_cases.h"
#include "support/world.h"

namespace tessarine::test {
namespace {

namespace fs = std::filesystem;
using Json = nlohmann::ordered_json;
using Words = std::vector<std::string>;

// --- The cases. ---

// The folders that the cases name, and no staged copy but this test's own.
class Folders {
 public:
  Folders() {
    for (const char* name : {"start/target/inner", "start/cafe\u0301/inner", "start/.hidden/inner",
                             "other/target/inner", "tilde/~notes", "tilde/target/inner"}) {
      fs::create_directories(path(name));
    }
    for (const char* name : {"start/alpha.txt", "start/beta.txt"})
      std::ofstream(path(name)) << name;
    fs::create_directory_symlink(path("other/target"), path("start/link"));
    // Where a file system takes both for one name, as a Mac's does, nothing has to be linked.
    if (!fs::exists(path("start/caf\u00e9"))) {
      fs::create_directory_symlink(path("start/cafe\u0301"), path("start/caf\u00e9"));
    }
  }

  std::string path(const std::string& name) const {
    return name.empty() ? root() : (fs::path(root()) / name).string();
  }
  // The text with paths from the folder on, which itself is ".", staged copies of one name, and
  // seconds that say how long a walk took cut short.
  std::string shortened(const std::string& text) const {
    static const std::regex copy("zorvilet-upload-[-0-9A-F]+");
    static const std::regex digits("([0-9]\\.[0-9])[0-9]{3,}");
    std::string shorter = without(root(), ".", without(root() + "/", "", text));
    shorter = std::regex_replace(shorter, copy, "zorvilet-upload-UUID");
    return std::regex_replace(shorter, digits, "$1…");
  }

 private:
  std::string root() const { return fs::path(file_.folder()).parent_path(); }
  static std::string without(const std::string& part, const std::string& instead,
                             std::string text) {
    for (auto at = text.find(part); at != std::string::npos; at = text.find(part)) {
      text.replace(at, part.size(), instead);
    }
    return text;
  }

  StagedFile file_{"report.txt"};  // in start
};

// For as long as it lives, the current folder.
class CurrentFolder {
 public:
  explicit CurrentFolder(const std::string& folder) { fs::current_path(folder); }
  ~CurrentFolder() { fs::current_path(before_); }
  CurrentFolder(const CurrentFolder&) = delete;
  CurrentFolder& operator=(const CurrentFolder&) = delete;

 private:
  fs::path before_ = fs::current_path();
};

World::Patches desktopOf(const LimitCase& limit, const Folders& folders) {
  Json panels = limit.panels;
  for (Json& panel : panels) panel["folder"] = folders.path(panel.value("folder", "start"));
  // The same on every machine.
  World::Patches patches{{"/home", folders.path("")},
                         {"/listsOnly", {folders.path(""), "/tmp/zorvilet-upload-*"}}};
  if (!panels.empty() && panels[0].contains("language")) {
    patches.push_back({"/language", panels[0]["language"]});
  }
  for (const auto& [key, value] : limit.scenario.items()) patches.push_back({"/" + key, value});
  patches.push_back({"/panels", panels});
  return patches;
}

Words commandLine(const LimitCase& limit, const Folders& folders) {
  Words words = limit.command;
  for (std::size_t i = 1; i < words.size(); ++i) {
    if (words[i - 1] == "--path" && !words[i].empty()) words[i] = folders.path(words[i]);
  }
  if (std::find(words.begin(), words.end(), "--pid") == words.end()) {
    words.insert(words.end(), {"--pid", std::to_string(browserPid)});
  }
  return words;
}

// The first line of an error, up to a word's end.
std::string firstWords(const std::string& message) {
  constexpr std::size_t longest = 120;
  const std::string line = message.substr(0, message.find('\n'));
  return line.size() <= longest ? line : line.substr(0, line.rfind(' ', longest)) + " …";
}

bool postedToTheBrowser(const std::string& event) {
  return event.starts_with("key ") && event.ends_with(" -> " + std::to_string(browserPid));
}

std::string nameOf(World& world, std::optional<std::int32_t> pid) {
  return pid ? world.desktop().findProcess(*pid)->name : "nobody";
}

std::string disturbanceOf(World& world) {
  std::string text;
  const auto events = postedEventKinds(world.record());
  if (std::any_of(events.begin(), events.end(), postedToTheBrowser)) text += ", keys";
  if (world.record().mouseEvents() > 0) text += ", mouse";
  if (world.record().sessionEvents() > 0) text += ", session";
  if (world.record().foregroundChanges() > 0) {
    text += ", front: " + nameOf(world, world.desktop().frontmost());
  }
  return text;
}

std::string answerOf(const Outcome& outcome, const Folders& folders) {
  if (outcome.exitStatus != 0) return firstWords(folders.shortened(outcome.errors));
  const Json result = Json::parse(outcome.output);
  std::string answer = "ok";
  if (result.contains("closed")) answer += ", closed " + result["closed"].dump();
  if (result.contains("stagedPath")) answer += ", with a stagedPath";
  return answer;
}

Seen runOf(const LimitCase& limit, const Words& options) {
  const Folders folders;
  const CurrentFolder current(folders.path(limit.currentFolder));
  World world("no-panel", desktopOf(limit, folders));
  Words words = commandLine(limit, folders);
  words.insert(words.end(), options.begin(), options.end());
  const Outcome outcome = world.run(words);
  // What is under way has landed, then.
  const std::string verdict = folders.shortened(world.verdict());
  return {answerOf(outcome, folders) + disturbanceOf(world), verdict,
          folders.shortened(world.panelOutcomes())};
}

class Limits : public ::testing::TestWithParam<LimitCase> {};

TEST_P(Limits, AreAsTheyAreWritten) {
  EXPECT_EQ(runOf(GetParam(), {}), GetParam().without);
}

TEST_P(Limits, AreWithVerifyAsTheyAreWritten) {
  EXPECT_EQ(runOf(GetParam(), {"--verify"}), GetParam().with);
}

std::string testName(const ::testing::TestParamInfo<LimitCase>& limit) {
  std::string name = limit.param.heading;
  std::erase_if(name, [](unsigned char byte) { return std::isalnum(byte) == 0; });
  return name;
}

INSTANTIATE_TEST_SUITE_P(Page, Limits, ::testing::ValuesIn(limitCases()), testName);

// --- The page. ---

std::string tableOf(const Words& command, const Seen& without, const Seen& with) {
  std::ostringstream table;
  table << "| `tessarine";
  for (const std::string& word : command) table << ' ' << (word.empty() ? "\"\"" : word);
  table << "` | answer | verdict | panels |\n|---|---|---|---|\n";
  for (const auto& [name, seen] : {std::pair("without", without), std::pair("with", with)}) {
    table << "| " << name << " `--verify` | " << seen.answer << " | " << seen.verdict << " | "
          << (seen.panels.empty() ? "none" : seen.panels) << " |\n";
  }
  return table.str();
}

// By their headings.
std::map<std::string, std::string> tables() {
  std::map<std::string, std::string> all;
  for (const LimitCase& limit : limitCases()) {
    all[limit.heading] = tableOf(limit.command, limit.without, limit.with);
  }
  for (const ProcessCase& limit : {helperOfTheCurrentFolder, resultThatCannotBePrinted}) {
    all[limit.heading] = tableOf(limit.command, limit.without, limit.with);
  }
  return all;
}

// What stands below a heading of the page.
struct Section {
  std::string heading;
  std::size_t lines = 0;  // of text
  std::string table;
};

struct Page {
  std::string beginning;  // before the first heading of a case, the list of contents in it
  std::vector<Section> sections;
};

Page readPage() {
  std::ifstream file(SOURCE_TREE "/docs/limits.md");
  Page page;
  bool within = false;
  for (std::string line; std::getline(file, line);) {
    if (line.starts_with("#")) within = line.starts_with("### ");
    if (line.starts_with("### ")) {
      page.sections.push_back({line.substr(4), 0, {}});
    } else if (page.sections.empty()) {
      page.beginning += line + "\n";
    } else if (within && line.starts_with("|")) {
      page.sections.back().table += line + "\n";
    } else if (within && !line.empty()) {
      ++page.sections.back().lines;
    }
  }
  return page;
}

// The link to a heading, as pages are shown.
std::string linkTo(const std::string& heading) {
  std::string anchor;
  for (const char letter : heading) {
    const auto byte = static_cast<unsigned char>(letter);
    if (byte == ' ') anchor += '-';
    if (byte == '-' || std::isalnum(byte) != 0) anchor += static_cast<char>(std::tolower(byte));
  }
  return "[" + heading + "](#" + anchor + ")";
}

TEST(PageOfLimits, HasAHeadingForEachCaseAndACaseForEachHeading) {
  std::vector<std::string> written;
  for (const Section& section : readPage().sections) written.push_back(section.heading);
  std::sort(written.begin(), written.end());
  std::vector<std::string> expected;
  for (const auto& [heading, table] : tables()) expected.push_back(heading);
  EXPECT_EQ(written, expected);
}

TEST(PageOfLimits, SaysWhatTheCasesComeTo) {
  const auto expected = tables();
  for (const Section& section : readPage().sections) {
    if (!expected.contains(section.heading)) continue;
    EXPECT_EQ(section.table, expected.at(section.heading)) << section.heading;
    EXPECT_GE(section.lines, 3U) << section.heading;
    EXPECT_LE(section.lines, 6U) << section.heading;
  }
}

TEST(PageOfLimits, ListsItsHeadings) {
  const Page page = readPage();
  for (const Section& section : page.sections) {
    EXPECT_NE(page.beginning.find(linkTo(section.heading)), std::string::npos)
        << linkTo(section.heading);
  }
}

}  // namespace
}  // namespace tessarine::test
