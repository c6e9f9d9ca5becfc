// The tables of docs/calling.md hold every message that src/ can end with, and no other; and the
// examples make of each message what the tables say.
#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <fstream>
#include <regex>
#include <set>
#include <sstream>

#include "end_to_end/program_run.h"
#include "examples/languages.h"
#include "support/temporary_folder.h"

namespace tessarine::test {
namespace {

namespace fs = std::filesystem;
using Texts = std::vector<std::string>;

// --- The page. ---

struct Row {
  std::string section;
  Texts cells;
  Texts messages;  // between backticks, in the first cell
};

Texts cellsOf(const std::string& line) {
  Texts cells;
  std::istringstream stream(line.substr(1));
  for (std::string cell; std::getline(stream, cell, '|');) {
    const auto begin = cell.find_first_not_of(' ');
    if (begin == std::string::npos) continue;
    cells.push_back(cell.substr(begin, cell.find_last_not_of(' ') + 1 - begin));
  }
  return cells;
}

Texts betweenBackticks(const std::string& cell) {
  static const std::regex quoted("`([^`]+)`");
  Texts texts;
  for (std::sregex_iterator found(cell.begin(), cell.end(), quoted), end; found != end; ++found) {
    texts.push_back((*found)[1]);
  }
  return texts;
}

// The rows between "## Every message" and the next heading of that rank.
std::vector<Row> rows() {
  std::ifstream page(SOURCE_TREE "/docs/calling.md");
  std::vector<Row> all;
  std::string rank;
  std::string section;
  for (std::string line; std::getline(page, line);) {
    if (line.starts_with("## ")) rank = line;
    if (line.starts_with("### ")) section = line.substr(4);
    const bool isRow = line.starts_with("| ") && line.find('`') != std::string::npos;
    if (rank != "## Every message" || !isRow) continue;
    const Texts cells = cellsOf(line);
    all.push_back({section, cells, betweenBackticks(cells.front())});
  }
  return all;
}

Texts messagesOfThePage() {
  Texts messages;
  for (const Row& row : rows()) {
    messages.insert(messages.end(), row.messages.begin(), row.messages.end());
  }
  return messages;
}

// --- The source. ---

struct Literal {
  std::string file;
  std::string text;
  bool thrown = false;  // stands in a statement that throws or makes an error
};

// A C++ source without its comments and its lines for the preprocessor.
std::string codeOf(const fs::path& file) {
  std::ifstream stream(file);
  std::string code;
  for (std::string line; std::getline(stream, line);) {
    static const std::regex comment(R"re(^((?:[^"/]|"(?:[^"\\]|\\.)*"|/(?!/))*)//.*$)re");
    std::smatch match;
    if (line.starts_with("#")) continue;
    code += (std::regex_match(line, match, comment) ? match[1].str() : line) + "\n";
  }
  return code;
}

std::string unescaped(const std::string& text) {
  std::string plain;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] != '\\') {
      plain += text[i];
    } else if (text[++i] != 'n') {
      plain += text[i];
    }
  }
  return plain;
}

// Whether the statement that the text stands in, given up to there, is about an error.
bool isAboutAnError(const std::string& before) {
  const auto begin = before.find_last_of(";{}");
  const std::string statement = begin == std::string::npos ? before : before.substr(begin);
  static const std::regex error(R"(\bthrow\b|ToolError|notVerified|_error\(|errors <<|cerr <<)");
  return std::regex_search(statement, error);
}

// The texts of the file; those that stand side by side are one.
std::vector<Literal> literalsOf(const fs::path& file) {
  const std::string code = codeOf(file);
  static const std::regex token(R"re('(?:[^'\\]|\\.)'|"((?:[^"\\\n]|\\.)*)")re");
  std::vector<Literal> literals;
  std::size_t lastEnd = std::string::npos;
  for (std::sregex_iterator found(code.begin(), code.end(), token), end; found != end; ++found) {
    const auto begin = static_cast<std::size_t>(found->position());
    const bool isText = (*found)[1].matched;
    if (isText && lastEnd != std::string::npos && code.find_first_not_of(" \n", lastEnd) == begin) {
      literals.back().text += unescaped((*found)[1]);
    } else if (isText) {
      literals.push_back({fs::relative(file, SOURCE_TREE).generic_string(), unescaped((*found)[1]),
                          isAboutAnError(code.substr(0, begin))});
    }
    lastEnd = isText ? begin + static_cast<std::size_t>(found->length()) : std::string::npos;
  }
  return literals;
}

std::vector<Literal> literalsOfTheSource() {
  std::vector<Literal> all;
  for (const auto& entry : fs::recursive_directory_iterator(SOURCE_TREE "/src")) {
    const std::string extension = entry.path().extension().string();
    if (extension != ".h" && extension != ".cpp" && extension != ".mm") continue;
    const auto some = literalsOf(entry.path());
    all.insert(all.end(), some.begin(), some.end());
  }
  return all;
}

std::string trimmed(const std::string& text) {
  const auto begin = text.find_first_not_of(' ');
  if (begin == std::string::npos) return {};
  return text.substr(begin, text.find_last_not_of(' ') + 1 - begin);
}

// Texts with blanks in them that are no messages, by the file that they stand in.
const std::set<std::pair<std::string, std::string>> noMessages{
    {"src/cli/dispatch.cpp", "a command without a function"},  // a mistake of the program's own
    {"src/commands/verified_choice.cpp", "folder shown"},
    {"src/commands/verified_choice.cpp", "entry selected"},
    {"src/dialog/panel_parts.cpp", "list view"},
    {"src/dialog/panel_parts.cpp", "where popup"},
    {"src/dialog/panel_search.cpp", "panel service"},
    {"src/navigation/path_analysis.cpp",
     "tell application \"Finder\" to get displayed name of (POSIX file \""},
    {"src/navigation/path_analysis.cpp", "\" as alias)"},
    {"src/panels/panel_owners.cpp", "Google Chrome"},
    {"src/panels/panel_owners.cpp", "Google Chrome Dev"},
    {"src/panels/panel_owners.cpp", "Microsoft Edge"},
    {"src/panels/panel_owners.cpp", "Open and Save Panel Service ("},
    {"src/panels/process_survey.cpp", "Open and Save Panel Service"},
    {"src/panels/process_survey.cpp", "Google Chrome"},
    {"src/panels/process_survey.cpp", "Microsoft Edge"},
    {"src/panels/process_survey.cpp", "Brave Browser"},
    {"src/platform/accessibility.h", "an element does not answer"},  // never leaves its callers
    {"src/platform/foreground.cpp",
     "tell application \"System Events\" to set frontmost of first process whose unix id is"},
    {"src/platform/foreground.cpp", "to true"},
    {"src/platform/processes.cpp", "tell application \"System Events\""},
    {"src/platform/processes.cpp", "keystroke \"g\" using {command down, shift down}"},
    {"src/platform/processes.cpp", "keystroke \"a\" using {command down}"},
    {"src/platform/processes.cpp", "keystroke \""},
    {"src/platform/processes.cpp", "delay 0.25"},
    {"src/platform/processes.cpp", "delay 0.45"},
    {"src/platform/processes.cpp", "delay 0.70"},
    {"src/platform/processes.cpp", "key code 36"},
    {"src/platform/processes.cpp", "end tell"},
};

bool isUsageText(const Literal& literal) {
  return literal.file == "src/cli/options.cpp" && literal.text.starts_with("tessarine — operate");
}

// Whatever is said of an error, and every other text of several words.
bool mayBeAMessage(const Literal& literal) {
  const std::string text = trimmed(literal.text);
  const bool hasWords = std::any_of(text.begin(), text.end(),
                                    [](unsigned char byte) { return std::isalpha(byte) != 0; });
  if (isUsageText(literal) || noMessages.contains({literal.file, text})) return false;
  return hasWords && (literal.thrown || text.find(' ') != std::string::npos);
}

// --- The one against the other. ---

TEST(PageOfMessages, HasARowForEveryMessageOfTheSource) {
  const Texts messages = messagesOfThePage();
  std::size_t compared = 0;
  for (const Literal& literal : literalsOfTheSource()) {
    if (!mayBeAMessage(literal)) continue;
    ++compared;
    const std::string text = trimmed(literal.text);
    EXPECT_TRUE(std::any_of(
        messages.begin(), messages.end(),
        [&](const std::string& message) { return message.find(text) != std::string::npos; }))
        << literal.file << ": \"" << text << "\" stands in no row of docs/calling.md";
  }
  EXPECT_GT(compared, 100U) << "messages are no longer recognised";
}

// The parts of a message between the dots that stand for what differs.
Texts partsOf(const std::string& message) {
  const std::string dots = "…";
  Texts parts;
  for (std::size_t at = 0; at <= message.size();) {
    const auto end = std::min(message.find(dots, at), message.size());
    if (end > at) parts.push_back(message.substr(at, end - at));
    at = end + dots.size();
  }
  return parts;
}

// Whether the text can be put together from the texts, one after the other.
bool isComposedOf(const std::string& text, const std::set<std::string>& texts) {
  std::vector<bool> reached(text.size() + 1);
  reached[0] = true;
  for (std::size_t at = 0; at < text.size(); ++at) {
    if (!reached[at]) continue;
    for (const std::string& part : texts) {
      if (!part.empty() && text.compare(at, part.size(), part) == 0)
        reached[at + part.size()] = true;
    }
  }
  return reached.back();
}

TEST(PageOfMessages, HasNoRowOfAMessageThatIsNotInTheSource) {
  std::set<std::string> texts;
  for (const Literal& literal : literalsOfTheSource()) texts.insert(literal.text);
  for (const std::string& message : messagesOfThePage()) {
    for (const std::string& part : partsOf(message)) {
      EXPECT_TRUE(isComposedOf(part, texts)) << message << "\nno such text: \"" << part << "\"";
    }
  }
}

TEST(PageOfMessages, NoExceptionIsLeftOver) {
  std::set<std::pair<std::string, std::string>> texts;
  for (const Literal& literal : literalsOfTheSource()) {
    texts.insert({literal.file, trimmed(literal.text)});
  }
  for (const auto& exception : noMessages) {
    EXPECT_TRUE(texts.contains(exception)) << exception.first << ": " << exception.second;
  }
}

TEST(PageOfMessages, SaysOfEachWhatItMeansAndWhatToDo) {
  std::size_t sections = 0;
  std::string last;
  for (const Row& row : rows()) {
    if (row.section != last) ++sections;
    last = row.section;
    const std::size_t columns = row.section == "With --verify" ? 4
                                : row.section == "In brackets" ? 2
                                                               : 3;
    EXPECT_EQ(row.cells.size(), columns) << row.cells.front();
    EXPECT_FALSE(row.messages.empty()) << row.cells.front();
    if (row.section == "Without --verify") {
      EXPECT_TRUE(row.cells.at(1) == "no" || row.cells.at(1) == "perhaps") << row.cells.front();
    }
  }
  EXPECT_EQ(sections, 3U);
}

// --- The examples. ---

std::string withSomethingForDots(std::string message) {
  const std::string dots = "…";
  for (auto at = message.find(dots); at != std::string::npos; at = message.find(dots)) {
    message.replace(at, dots.size(), "some thing");
  }
  return message;
}

class Kinds : public ::testing::TestWithParam<Language> {};

TEST_P(Kinds, AreThoseOfThePage) {
  std::string lines;
  std::string expected;
  for (const Row& row : rows()) {
    if (row.section != "With --verify") continue;
    for (const std::string& message : row.messages) {
      lines += row.cells.at(1) + " " + withSomethingForDots(message) + "\n";
      expected += row.cells.at(2) + "\n";
    }
  }
  const TemporaryFolder folder;
  std::vector<std::string> commandLine = GetParam().driver;
  commandLine.insert(commandLine.end(), {"kinds", folder.makeFile("messages", lines)});
  const ProgramRun run = runProgram(
      commandLine, {{"EXAMPLES", SOURCE_TREE "/examples"}, {"PYTHONDONTWRITEBYTECODE", "1"}});
  EXPECT_EQ(run, (ProgramRun{0, expected, ""})) << lines;
  for (const char* kind : {"request\n", "no-panel\n", "not-chosen\n", "unknown\n"}) {
    EXPECT_NE(expected.find(kind), std::string::npos) << kind;
  }
}

std::string languageName(const ::testing::TestParamInfo<Language>& language) {
  return language.param.name;
}

INSTANTIATE_TEST_SUITE_P(Languages, Kinds, ::testing::ValuesIn(languages()), languageName);

}  // namespace
}  // namespace tessarine::test
