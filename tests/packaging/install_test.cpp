// What is installed works from where it was installed: the programs, the man pages by their names,
// and the completions where each shell looks for them.
#include <gtest/gtest.h>

#include <filesystem>
#include <iterator>
#include <nlohmann/json.hpp>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "end_to_end/program_run.h"
#include "support/temporary_folder.h"

namespace tessarine::test {
namespace {

namespace fs = std::filesystem;
using Json = nlohmann::ordered_json;
using Words = std::vector<std::string>;

const Words programs{"background-window-capture", "tessarine", "tessarine-desktop"};

class Installed : public ::testing::Test {
 protected:
  Installed() {
    const ProgramRun run =
        runProgram({CMAKE_PROGRAM, "--install", BUILD_TREE, "--prefix", prefix()});
    EXPECT_EQ(run.exitStatus, 0) << run.errors;
  }

  std::string prefix() const { return folder_.path() + "/prefix"; }
  std::string program(const std::string& name) const { return prefix() + "/bin/" + name; }

  // With the installed programs in the search path and nothing of a person's own in the way.
  ProgramRun run(const Words& command) const {
    return runProgram(command, {{"PATH", prefix() + "/bin:/usr/bin:/bin"},
                                {"HOME", folder_.path()},
                                {"XDG_DATA_DIRS", prefix() + "/share:/usr/share"},
                                {"XDG_CONFIG_HOME", folder_.path()}});
  }

  TemporaryFolder folder_;
};

std::set<std::string> wordsOf(const std::string& text) {
  std::istringstream words(text);
  return {std::istream_iterator<std::string>(words), {}};
}

TEST_F(Installed, IsAllThatBelongsToTheProgramsAndNothingElse) {
  std::set<std::string> expected = wordsOf(INSTALLED_ON_MACOS_ALONE);
  for (const char* path :
       {"bin/tessarine", "bin/tessarine-desktop", "libexec/tessarine/tessarine"}) {
    expected.insert(path);
  }
  for (const char* name :
       {"background-window-capture", "desktop-program", "osascript", "ps", "screencapture"}) {
    expected.insert("libexec/tessarine-desktop/" + std::string(name));
  }
  expected.insert("share/zsh/site-functions/_tessarine");
  expected.insert("share/tessarine/results.schema.json");
  for (const std::string& name : programs) {
    expected.insert("share/man/man1/" + name + ".1");
    expected.insert("share/bash-completion/completions/" + name);
    expected.insert("share/fish/vendor_completions.d/" + name + ".fish");
  }
  std::set<std::string> found;
  for (const auto& entry : fs::recursive_directory_iterator(prefix())) {
    if (!entry.is_directory()) found.insert(entry.path().lexically_relative(prefix()).string());
  }
  EXPECT_EQ(found, expected);
}

TEST_F(Installed, TheToolChoosesAFolderOnTheDesktop) {
  const std::string target = folder_.makeFolder("extension");
  const ProgramRun chosen =
      run({program("tessarine-desktop"), "run", "english-service-window", "--", "tessarine",
           "choose-folder", "--strict-background", "--pid", "812", "--path", target});
  EXPECT_EQ(chosen.exitStatus, 0);
  EXPECT_EQ(chosen.errors.rfind("panel 1: chosen " + target + "\n", 0), 0U) << chosen.errors;
  const Json result = Json::parse(chosen.output, nullptr, false);
  ASSERT_TRUE(result.is_object()) << chosen.output;
  EXPECT_EQ(result["ok"], true);
  EXPECT_EQ(result["path"], target);
}

// The tool finds it by the environment that the desktop sets.
TEST_F(Installed, TheCaptureHelperListsPanelsThatAccessibilityDoesNotShow) {
  const ProgramRun listed = run({program("tessarine-desktop"), "run", "unseen-folders", "--",
                                 "tessarine", "list-background-panels", "--pid", "812"});
  EXPECT_EQ(listed.exitStatus, 0) << listed.errors;
  const Json result = Json::parse(listed.output, nullptr, false);
  ASSERT_TRUE(result.is_object()) << listed.output;
  ASSERT_TRUE(result.contains("windows")) << listed.output;
  EXPECT_EQ(result["windows"].size(), 2U) << listed.output;
}

// The tool looks for its helper where it was called from: a shell's name for it says nothing.
TEST_F(Installed, TheToolRunsNoProgramOfTheCurrentFolder) {
  const std::string work = folder_.makeFolder("work");
  const std::string trace = work + "/ran";
  fs::rename(folder_.makeScript("background-window-capture", "touch " + trace),
             work + "/background-window-capture");
  const ProgramRun listed =
      run({"/bin/sh", "-c", "cd \"$0\" && exec \"$@\"", work, program("tessarine-desktop"), "run",
           "unseen-folders", "--", "tessarine", "list-background-panels", "--pid", "812"});
  EXPECT_EQ(listed.exitStatus, 0) << listed.errors;
  EXPECT_NE(listed.output.find("\"title\": \"Open\""), std::string::npos) << listed.output;
  EXPECT_FALSE(fs::exists(trace));
}

TEST_F(Installed, ADesktopWithoutItsProgramsIsRefused) {
  fs::remove_all(prefix() + "/libexec/tessarine-desktop");
  EXPECT_EQ(run({program("tessarine-desktop"), "run", "no-panel", "--", "true"}),
            (ProgramRun{2, "",
                        "tessarine-desktop: the desktop's own programs are not in " + prefix() +
                            "/libexec/tessarine-desktop\n",
                        0}));
}

TEST_F(Installed, TheManPagesAreFoundByName) {
  for (const std::string& name : programs) {
    const ProgramRun page = run({"/usr/bin/man", "-M", prefix() + "/share/man", name});
    EXPECT_EQ(page.exitStatus, 0) << page.errors;
    EXPECT_EQ(wordsOf(page.output).count(name), 1U) << page.output;
  }
}

// Each shell is asked by itself for one program, as completions of one may load those of another.
TEST_F(Installed, EachShellFindsTheCompletions) {
  const std::string bash =
      ". /usr/share/bash-completion/bash_completion; _completion_loader $0;"
      "complete -p $0 | grep -q -- '-F _tessarine\\|-F _background_window_capture'";
  const std::string zsh =
      "fpath=($1 $fpath); autoload -Uz compinit; compinit -D -u; [[ $_comps[$0] == _tessarine ]]";
  // fish completes only what it can find, and the helper may lie among the programs of the desktop.
  const std::string fish =
      "set -a PATH $argv[2]; complete -C \"$argv[1] --h\" | grep -q 'Print the usage'";
  for (const std::string& name : programs) {
    const std::vector<Words> questions{
        {"/bin/bash", "--norc", "-c", bash, name},
        {"/bin/zsh", "-f", "-c", zsh, name, prefix() + "/share/zsh/site-functions"},
        {"/usr/bin/fish", "-c", fish, name, prefix() + "/libexec/tessarine-desktop"}};
    for (const Words& question : questions) {
      EXPECT_EQ(run(question), (ProgramRun{0, "", "", 0})) << question[0] << ' ' << name;
    }
  }
}

}  // namespace
}  // namespace tessarine::test
