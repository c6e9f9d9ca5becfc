// The form of the source tree: what a reader may rely on in every file.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <map>
#include <regex>
#include <set>
#include <string>
#include <vector>

namespace {

namespace fs = std::filesystem;

constexpr std::size_t longestLine = 100;
constexpr std::size_t longestFunction = 70;

struct SourceFile {
  std::string name;  // relative to the root of the tree
  std::vector<std::string> lines;
};

SourceFile readSource(const fs::path& path) {
  SourceFile file{fs::relative(path, SOURCE_TREE).generic_string(), {}};
  std::ifstream stream(path);
  for (std::string line; std::getline(stream, line);) file.lines.push_back(line);
  return file;
}

// The C++ and Objective-C++ sources below the folders.
std::vector<SourceFile> sourcesIn(std::initializer_list<const char*> folders) {
  std::vector<SourceFile> files;
  for (const char* folder : folders) {
    for (const auto& entry : fs::recursive_directory_iterator(fs::path(SOURCE_TREE) / folder)) {
      const std::string extension = entry.path().extension().string();
      if (extension == ".h" || extension == ".cpp" || extension == ".mm") {
        files.push_back(readSource(entry.path()));
      }
    }
  }
  EXPECT_GT(files.size(), 5U) << "the tree is not where it was built from";
  return files;
}

// Columns as a reader counts them: UTF-8 continuation bytes take none.
std::size_t columns(const std::string& line) {
  return static_cast<std::size_t>(
      std::count_if(line.begin(), line.end(), [](char byte) { return (byte & 0xC0) != 0x80; }));
}

std::size_t indent(const std::string& line) {
  return std::min(line.find_first_not_of(' '), line.size());
}

// Whether a function's body begins at the end of this line.
bool beginsFunction(const std::string& line) {
  static const std::regex head(R"(.*\)( const| noexcept| override| -> [^{]*)*( : .*)? \{$)");
  static const std::regex statement(R"(\s*(\} )?(if|for|while|switch|catch|else|do|try)\b.*)");
  return std::regex_match(line, head) && !std::regex_match(line, statement) &&
         line.find("[") == std::string::npos;
}

TEST(Form, LinesEndByColumnOneHundred) {
  for (const SourceFile& file : sourcesIn({"src", "capture-helper", "simulator", "tests"})) {
    for (std::size_t i = 0; i < file.lines.size(); ++i) {
      EXPECT_LE(columns(file.lines[i]), longestLine) << file.name << ":" << i + 1;
    }
  }
}

TEST(Form, FunctionsFitAScreen) {
  std::size_t functions = 0;
  for (const SourceFile& file : sourcesIn({"src", "capture-helper", "simulator", "tests"})) {
    for (std::size_t i = 0; i < file.lines.size(); ++i) {
      if (!beginsFunction(file.lines[i])) continue;
      ++functions;
      std::size_t end = i + 1;
      const auto closes = [&](const std::string& line) {
        return line.find('}') != std::string::npos && indent(line) == line.find('}') &&
               indent(line) <= indent(file.lines[i]);
      };
      while (end < file.lines.size() && !closes(file.lines[end])) ++end;
      EXPECT_LE(end - i + 1, longestFunction) << file.name << ":" << i + 1;
    }
  }
  EXPECT_GT(functions, 300U) << "functions are no longer recognised";
}

// The folders of src/, from the ground up: each includes only itself and what stands before it.
TEST(Form, FoldersIncludeOnlyWhatStandsBelowThem) {
  const std::vector<std::string> order{"core",       "platform", "panels", "dialog",
                                       "navigation", "commands", "cli"};
  const auto rank = [&](const std::string& folder) {
    return std::find(order.begin(), order.end(), folder) - order.begin();
  };
  const std::regex include("#include \"([a-z]+)/.*\"");
  for (const SourceFile& file : sourcesIn({"src"})) {
    const std::string folder = file.name.substr(4, file.name.find('/', 4) - 4);
    for (const std::string& line : file.lines) {
      std::smatch match;
      if (!std::regex_match(line, match, include)) continue;
      EXPECT_LE(rank(match[1].str()), rank(folder)) << file.name << ": " << line;
    }
  }
}

TEST(Form, TheCaptureHelperStandsOnThePlatformAlone) {
  const std::regex include("#include \"([a-z-]+)/.*\"");
  const std::vector<std::string> allowed{"capture-helper", "core", "platform"};
  for (const SourceFile& file : sourcesIn({"capture-helper"})) {
    for (const std::string& line : file.lines) {
      std::smatch match;
      if (!std::regex_match(line, match, include)) continue;
      EXPECT_EQ(std::count(allowed.begin(), allowed.end(), match[1].str()), 1)
          << file.name << ": " << line;
    }
  }
}

TEST(Form, EveryPlatformFunctionThatIsCalledHasItsSignatureChecked) {
  std::string checked;
  for (const char* name : {"src/platform/signatures.cpp", "capture-helper/signatures.cpp"}) {
    for (const std::string& line : readSource(fs::path(SOURCE_TREE) / name).lines) checked += line;
  }
  const std::regex call(R"(\b((AX(UI|Value|Is)|AE[A-Z]|CF[A-Z]|CG[A-Z]|dispatch_)\w+)\()");
  std::size_t calls = 0;
  for (const SourceFile& file : sourcesIn({"src", "capture-helper"})) {
    if (file.name.ends_with("signatures.cpp") || file.name.ends_with(".mm")) continue;
    for (const std::string& line : file.lines) {
      for (std::sregex_iterator found(line.begin(), line.end(), call), end; found != end; ++found) {
        ++calls;
        EXPECT_NE(checked.find("decltype(" + (*found)[1].str() + ")"), std::string::npos)
            << file.name << ": " << line;
      }
    }
  }
  EXPECT_GT(calls, 50U) << "calls are no longer recognised";
}

TEST(Form, ThePanelModelKnowsNothingOfTheProduct) {
  const std::regex product("#include \"(core|platform|panels|dialog|navigation|commands|cli)/.*\"");
  for (const SourceFile& file : sourcesIn({"simulator"})) {
    const bool implementsSeams = file.name.starts_with("simulator/seams/");
    for (const std::string& line : file.lines) {
      EXPECT_TRUE(implementsSeams || !std::regex_match(line, product)) << file.name << ": " << line;
    }
  }
}

// Every line of a file; a line that goes on with the comment before it is joined to that.
std::string withCommentsJoined(const SourceFile& file) {
  std::string text;
  for (const std::string& line : file.lines) text += line + "\n";
  static const std::regex continued(R"(\n\s*//)");
  return std::regex_replace(text, continued, "");
}

// The tests that a Mac is asked as well: "Live.TheNameOfTheTest".
std::set<std::string> testsOfThePlatform() {
  const std::regex head(R"(TEST_F\((\w+),\s*(\w+)\))");
  std::set<std::string> tests;
  for (const SourceFile& file : sourcesIn({"tests/live", "tests/contract"})) {
    std::string text;
    for (const std::string& line : file.lines) text += line + "\n";
    for (std::sregex_iterator found(text.begin(), text.end(), head), end; found != end; ++found) {
      tests.insert((*found)[1].str() + "." + (*found)[2].str());
    }
  }
  return tests;
}

// What nobody measured is labelled with the tests that ask a Mac, or with why none can.
TEST(Form, EveryAssumptionOfTheSimulatorNamesItsTests) {
  const std::set<std::string> tests = testsOfThePlatform();
  const std::regex label(R"(\b[Aa]ssumed\b)");
  const std::regex reason(R"(^ \(no test can tell: [^()]+\): )");
  const std::regex names(R"(^ \((\w+\.\w+(, \w+\.\w+)*)\): )");
  const std::regex name(R"(\w+\.\w+)");
  std::size_t named = 0;
  for (const SourceFile& file : sourcesIn({"simulator"})) {
    const std::string text = withCommentsJoined(file);
    for (std::sregex_iterator found(text.begin(), text.end(), label), end; found != end; ++found) {
      const std::string rest = found->suffix();
      const std::string place = file.name + ": Assumed" + rest.substr(0, 60);
      if (std::regex_search(rest, reason)) continue;
      std::smatch list;
      if (!std::regex_search(rest, list, names)) {
        ADD_FAILURE() << place;
        continue;
      }
      const std::string listed = list[1];
      for (std::sregex_iterator each(listed.begin(), listed.end(), name); each != end; ++each) {
        ++named;
        EXPECT_TRUE(tests.contains(each->str())) << place << "\nno such test: " << each->str();
      }
    }
  }
  EXPECT_GT(named, 20U) << "labels are no longer recognised";
}

// A word, and the files in which alone it may stand.
struct Reserved {
  const char* pattern;
  std::vector<std::string> files;
};

TEST(Form, PlatformServicesAreReachedOnlyThroughTheirUnits) {
  const std::vector<Reserved> reserved{
      {R"(\bCF(Release|Retain)\b)", {"src/platform/cf_ref.h", "src/platform/signatures.cpp"}},
      {R"(\b(sleep_for|sleep_until|usleep|nanosleep)\b)", {"src/platform/posix/clock.cpp"}},
      {R"(\b(system_clock|steady_clock|gettimeofday|clock_gettime)\b)",
       {"src/platform/posix/clock.cpp"}},
      {R"(\b(posix_spawn|fork|execv|popen|system)\()", {"src/platform/posix/child_process.cpp"}},
      {R"(\bgetenv\b)", {"src/platform/own_process.cpp"}},
      {R"(\b(random_device|mt19937|rand)\b)", {"src/platform/own_process.cpp"}},
      {R"(#include <ApplicationServices/)",
       {"src/platform/element.h", "src/platform/events.cpp", "src/platform/screens.cpp",
        "src/platform/signatures.cpp", "capture-helper/window_list.cpp",
        "capture-helper/permissions.cpp", "capture-helper/signatures.cpp"}},
      {R"(#include <dispatch/)", {"src/platform/worker.cpp", "src/platform/signatures.cpp"}},
      {R"(#\s*if(n?def)?\b.*(__APPLE__|__linux__|_WIN32))", {}},
      {R"([Ss]imulat)", {}},
  };
  const std::vector<SourceFile> sources = sourcesIn({"src", "capture-helper"});
  for (const auto& [pattern, files] : reserved) {
    const std::regex word(pattern);
    for (const SourceFile& file : sources) {
      if (std::find(files.begin(), files.end(), file.name) != files.end()) continue;
      for (const std::string& line : file.lines) {
        EXPECT_FALSE(std::regex_search(line, word)) << file.name << ": " << line;
      }
    }
  }
}

TEST(Form, EveryReservedWordIsUsedWhereItIsAllowed) {
  const std::map<std::string, std::string> uses{
      {"src/platform/cf_ref.h", "CFRelease"},
      {"src/platform/posix/clock.cpp", "sleep_for"},
      {"src/platform/posix/child_process.cpp", "posix_spawn("},
      {"src/platform/own_process.cpp", "getenv"},
      {"src/platform/worker.cpp", "#include <dispatch/"}};
  for (const auto& [name, word] : uses) {
    const SourceFile file = readSource(fs::path(SOURCE_TREE) / name);
    EXPECT_TRUE(std::any_of(
        file.lines.begin(), file.lines.end(),
        [&word = word](const std::string& line) { return line.find(word) != std::string::npos; }))
        << name << " no longer uses " << word;
  }
}

std::string textOf(const std::string& name) {
  std::string text;
  for (const std::string& line : readSource(fs::path(SOURCE_TREE) / name).lines) text += line;
  return text;
}

// Another compiler's new warning stops nobody who only builds.
TEST(Form, WarningsAreErrorsForThePresetsAlone) {
  std::size_t lists = 0;
  for (const auto& entry : fs::recursive_directory_iterator(SOURCE_TREE)) {
    if (entry.path().filename() != "CMakeLists.txt") continue;
    ++lists;
    const std::string text = textOf(fs::relative(entry.path(), SOURCE_TREE).generic_string());
    EXPECT_EQ(text.find("-Werror"), std::string::npos) << entry.path();
    EXPECT_EQ(text.find("COMPILE_WARNING_AS_ERROR "), std::string::npos) << entry.path();
  }
  EXPECT_GT(lists, 5U) << "the tree is not where it was built from";
  const std::string presets = textOf("CMakePresets.json");
  const std::regex error(R"("CMAKE_COMPILE_WARNING_AS_ERROR": "ON")");
  const std::regex preset(R"("binaryDir")");
  const auto count = [&](const std::regex& word) {
    return std::distance(std::sregex_iterator(presets.begin(), presets.end(), word), {});
  };
  EXPECT_EQ(count(error), count(preset));
  EXPECT_GE(count(preset), 3);
}

TEST(Form, HeadersBeginWithACommentAndAreIncludedOnce) {
  for (const SourceFile& file : sourcesIn({"src", "capture-helper", "simulator"})) {
    if (!file.name.ends_with(".h")) continue;
    ASSERT_FALSE(file.lines.empty()) << file.name;
    EXPECT_TRUE(file.lines.front().starts_with("//")) << file.name;
    EXPECT_NE(std::find(file.lines.begin(), file.lines.end(), "#pragma once"), file.lines.end())
        << file.name;
  }
}

}  // namespace
