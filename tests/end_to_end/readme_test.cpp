// The transcript on the README's first screen is what the programs print.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <map>
#include <nlohmann/json.hpp>
#include <sstream>

#include "end_to_end/program_run.h"
#include "support/temporary_folder.h"

namespace tessarine::test {
namespace {

using nlohmann::ordered_json;

const std::string folderOfReadme = "/tmp/demo/extension";

struct Transcript {
  std::vector<std::string> words;  // of the command line
  std::string output;
  std::string errors;
};

std::string textOf(const std::string& file) {
  std::ostringstream text;
  text << std::ifstream(file).rdbuf();
  return text.str();
}

// The first command of the page, with what stands below it: the result, then the desktop's lines.
Transcript firstTranscript() {
  const std::string page = textOf(SOURCE_TREE "/README.md");
  const auto begin = page.find("\n$ ") + 3;
  const std::string block = page.substr(begin, page.find("\n```", begin) + 1 - begin);
  const auto result = block.find('\n') + 1;
  const auto rest = block.find("\n}\n", result) + 3;
  std::istringstream line(block.substr(0, result));
  Transcript transcript{{}, block.substr(result, rest - result), block.substr(rest)};
  for (std::string word; line >> word;) transcript.words.push_back(word);
  return transcript;
}

std::string replaced(std::string text, const std::string& part, const std::string& instead) {
  const auto at = text.find(part);
  return at == std::string::npos ? text : text.replace(at, part.size(), instead);
}

// What stands there of the README's folder, for another one.
std::string resultFor(const std::string& folder, const std::string& result) {
  ordered_json expected = ordered_json::parse(result);
  expected["path"] = folder;
  expected["verifiedPath"] = folder;
  expected["components"] = ordered_json::array();
  for (const auto& name : std::filesystem::path(folder).relative_path()) {
    expected["components"].push_back(name.string());
  }
  return expected.dump(2) + "\n";
}

TEST(Readme, ShowsWhatTheProgramsPrint) {
  const Transcript transcript = firstTranscript();
  EXPECT_EQ(resultFor(folderOfReadme, transcript.output), transcript.output);
  const TemporaryFolder files;
  const std::string folder = files.makeFolder("extension");
  const std::map<std::string, std::string> inPlaceOf{
      {"tessarine", toolPath()}, {"tessarine-desktop", desktopPath()}, {folderOfReadme, folder}};
  std::vector<std::string> words;
  for (const std::string& word : transcript.words) {
    words.push_back(inPlaceOf.contains(word) ? inPlaceOf.at(word) : word);
  }
  EXPECT_EQ(runProgram(words), (ProgramRun{0, resultFor(folder, transcript.output),
                                           replaced(transcript.errors, folderOfReadme, folder)}));
}

}  // namespace
}  // namespace tessarine::test
