// The ways of calling the tool in examples/, on desktops that are served and with stand-ins for
// the tool.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/file.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <sstream>

#include "end_to_end/served_desktop.h"
#include "examples/languages.h"

namespace tessarine::test {
namespace {

namespace fs = std::filesystem;
using nlohmann::ordered_json;
using Words = std::vector<std::string>;

// What a call came to, in any language.
struct Answer {
  std::string kind;  // "chosen", or a failure's
  std::string text;  // the path, or the message
  bool operator==(const Answer&) const = default;
};

void PrintTo(const Answer& answer, std::ostream* stream) {
  *stream << answer.kind << ": " << answer.text;
}

// What programs may find besides a desktop: a home of their own, and no tool but the one under
// test.
class Caller {
 public:
  explicit Caller(const Language& language, Environment environment = {})
      : language_(language), environment_(std::move(environment)) {
    environment_.insert({{"EXAMPLES", SOURCE_TREE "/examples"},
                         {"HOME", home_.path()},
                         {"PYTHONDONTWRITEBYTECODE", "1"},
                         {"TESSARINE", toolPath()}});
  }

  const TemporaryFolder& home() const { return home_; }
  void set(const std::string& name, const std::string& value) { environment_[name] = value; }

  // `opener` is the command that opens the panel.
  Answer choose(const std::string& path, const Words& opener = {}) const {
    return answerOf(runProgram(commandLine(path, opener), environment_));
  }
  // A call that goes on meanwhile, with an environment of its own.
  std::unique_ptr<RunningProgram> begin(const std::string& path, const Words& opener = {}) const {
    return std::make_unique<RunningProgram>(commandLine(path, opener), environment_);
  }
  Answer answerOf(const ProgramRun& run) const {
    return language_.tellsByStatus ? toldByStatus(run) : toldByJson(run);
  }

 private:
  Words commandLine(const std::string& path, const Words& opener) const {
    Words words = language_.driver;
    words.insert(words.end(), {"choose", "812", path});
    words.insert(words.end(), opener.begin(), opener.end());
    return words;
  }

  static Answer toldByStatus(const ProgramRun& run) {
    static const Words kinds{"chosen",   "not-chosen", "request", "unknown",
                             "no-panel", "busy",       "no-tool"};
    const std::string kind = kinds.at(static_cast<std::size_t>(run.exitStatus));
    if (kind == "chosen") return {kind, ordered_json::parse(run.output)["verifiedPath"]};
    EXPECT_EQ(run.output, "");
    const auto begin = run.errors.find(kind + ": ");
    if (begin == std::string::npos) return {"no line", run.errors};
    const auto text = begin + kind.size() + 2;
    return {kind, run.errors.substr(text, run.errors.find('\n', text) - text)};
  }

  static Answer toldByJson(const ProgramRun& run) {
    if (run.exitStatus != 0) return {"no answer", run.errors};
    const ordered_json answer = ordered_json::parse(run.output);
    if (answer.contains("path")) return {"chosen", answer["path"]};
    const std::string kind = answer["kind"];
    EXPECT_EQ(answer["mayHaveChosen"], kind == "unknown");
    EXPECT_EQ(answer["mayRepeat"], kind == "no-panel" || kind == "not-chosen" || kind == "busy");
    return {kind, answer["message"]};
  }

  Language language_;
  Environment environment_;
  TemporaryFolder home_;
};

// A scenario with one panel of an English Chromium browser, which shows the folder.
std::string scenarioIn(const TemporaryFolder& folder, ordered_json panel) {
  panel["folder"] = folder.path();
  return folder.makeFile("scenario.json",
                         ordered_json{{"panels", ordered_json::array({panel})}}.dump());
}

class Examples : public ::testing::TestWithParam<Language> {
 protected:
  // What comes of the path on a desktop with the panel, which the desktop then says.
  void expect(const ordered_json& panel, const std::string& path, const Answer& expected,
              const std::string& outcome) {
    const ServedDesktop desktop(scenarioIn(folder_, panel));
    EXPECT_EQ(Caller(GetParam(), desktop.environment()).choose(path), expected);
    const ordered_json state = desktop.state();
    EXPECT_EQ(state["panels"][0]["outcome"], outcome);
    if (outcome == "chosen") {
      EXPECT_EQ(state["panels"][0]["path"], expected.text);
    }
    EXPECT_EQ(state["calls"].size(), 1U);
  }

  TemporaryFolder folder_;
};

TEST_P(Examples, ChooseAFile) {
  const std::string file = folder_.makeFile("it's a \"letter\" – 信 $HOME.txt");
  expect({{"mode", "files"}}, file, {"chosen", file}, "chosen");
}

TEST_P(Examples, ChooseAFolder) {
  const std::string target = folder_.makeFolder("an extension");
  expect({}, target, {"chosen", target}, "chosen");
}

TEST_P(Examples, FollowLinks) {
  const std::string target = folder_.makeFolder("target");
  fs::create_directory_symlink(target, folder_.path() + "/link");
  expect({}, folder_.path() + "/link", {"chosen", target}, "chosen");
}

TEST_P(Examples, TellAWrongRequest) {
  expect({}, folder_.path() + "/none",
         {"request", "path does not exist: " + folder_.path() + "/none"}, "none");
  expect({}, "", {"request", "not verified: the path is empty"}, "none");
  const std::string file = folder_.makeFile("file.txt");
  expect({}, file, {"request", "not verified: a file for a folder panel: " + file}, "none");
}

TEST_P(Examples, TellThatThereIsNoPanel) {
  const ServedDesktop desktop("no-panel");
  Caller caller(GetParam(), desktop.environment());
  caller.set("TESSARINE_SECONDS", "1");
  EXPECT_EQ(caller.choose("/usr"),
            (Answer{"no-panel",
                    "not verified: no open panel of Google Chrome 812 was found within 1.0s"}));
}

TEST_P(Examples, TellThatNothingWasChosen) {
  const ServedDesktop desktop("two-panels");
  EXPECT_EQ(Caller(GetParam(), desktop.environment()).choose("/usr"),
            (Answer{"not-chosen", "not verified: 2 panels are open (panel service 900: 2)"}));
}

TEST_P(Examples, TellThatSomethingMayHaveBeenChosen) {
  const std::string target = folder_.makeFolder("target");
  const ServedDesktop desktop(scenarioIn(
      folder_, {{"faults", {{"goToReturnConfirms", true}}}, {"shape", "service-window"}}));
  const Answer answer = Caller(GetParam(), desktop.environment()).choose(target);
  EXPECT_EQ(answer.kind, "unknown");
  EXPECT_TRUE(answer.text.ends_with(": what it chose is unknown")) << answer.text;
  EXPECT_EQ(desktop.state()["panels"][0]["outcome"], "chosen");
}

TEST_P(Examples, FindTheToolOnThePath) {
  const TemporaryFolder programs;
  programs.makeScript("tessarine", "echo \"not verified: $*\" >&2; exit 1");
  Caller caller(GetParam());
  caller.set("TESSARINE", "");
  caller.set("PATH", programs.path() + ":/usr/bin:/bin");
  EXPECT_EQ(caller.choose("/usr"),
            (Answer{"not-chosen",
                    "not verified: choose-folder --verify --pid 812 --path /usr "
                    "--timeout 10"}));
}

TEST_P(Examples, TellThatThereIsNoTool) {
  Caller caller(GetParam());
  caller.set("TESSARINE", "/no/such/tool");
  EXPECT_EQ(caller.choose("/usr").kind, "no-tool");
  const TemporaryFolder programs;
  caller.set("TESSARINE", programs.makeScript("tessarine", "") + "/below");
  EXPECT_EQ(caller.choose("/usr").kind, "no-tool");
}

TEST_P(Examples, TakeNothingPrintedForNoSuccess) {
  const TemporaryFolder programs;
  Caller caller(GetParam());
  caller.set("TESSARINE", programs.makeScript("tessarine", "exit 0"));
  EXPECT_EQ(caller.choose("/usr"), (Answer{"unknown", "ended with 0"}));
}

TEST_P(Examples, DoNotWorkOnABrowserThatAnotherCallWorksOn) {
  Caller caller(GetParam());
  caller.set("TESSARINE_LOCK_SECONDS", "0");
  const std::string folder = caller.home().path() + "/.cache/tessarine";
  EXPECT_EQ(caller.choose("/no/such/folder").kind, "request");
  EXPECT_EQ(fs::status(folder).permissions(), fs::perms::owner_all);
  const int lock = open((folder + "/812.lock").c_str(), O_WRONLY | O_CLOEXEC);
  ASSERT_EQ(flock(lock, LOCK_EX | LOCK_NB), 0) << "a call that is over keeps its lock";
  EXPECT_EQ(caller.choose("/usr"), (Answer{"busy", "another call works on the browser 812"}));
  close(lock);
}

std::string nameOf(const ::testing::TestParamInfo<Language>& language) {
  return language.param.name;
}

INSTANTIATE_TEST_SUITE_P(Languages, Examples, ::testing::ValuesIn(languages()), nameOf);

// A stand-in for the tool that appends a line to the log when it ends, some time after it began.
std::string lateTool(const TemporaryFolder& folder, const std::string& log) {
  return folder.makeScript("tessarine", "sleep 0.3; echo end >>" + log + "; exit 1");
}

TEST(ExamplesTogether, OpenAndChooseOneAfterTheOther) {
  const TemporaryFolder folder;
  const std::string log = folder.path() + "/log";
  const std::string opener = folder.makeScript("opener", "echo open >>" + log);
  const std::string tool = lateTool(folder, log);
  std::vector<std::unique_ptr<RunningProgram>> calls;
  for (const Language& language : languages()) {
    Caller caller(language);
    caller.set("TESSARINE", tool);
    caller.set("HOME", folder.path());
    calls.push_back(caller.begin("/usr", {opener}));
  }
  for (const auto& call : calls) call->finish();
  std::string expected;
  for (std::size_t i = 0; i < calls.size(); ++i) expected += "open\nend\n";
  std::ostringstream text;
  text << std::ifstream(log).rdbuf();
  EXPECT_EQ(text.str(), expected);
}

// 12 s are the watchdog's for a time-out of a second, and the examples wait 5 s more.
TEST(ExamplesTogether, GiveUpAToolThatHangs) {
  const TemporaryFolder folder;
  const std::string tool = folder.makeScript("tessarine", "exec sleep 60");
  std::vector<std::pair<Caller*, std::unique_ptr<RunningProgram>>> calls;
  std::vector<std::unique_ptr<Caller>> callers;
  for (const Language& language : languages()) {
    callers.push_back(std::make_unique<Caller>(language));
    callers.back()->set("TESSARINE", tool);
    callers.back()->set("TESSARINE_SECONDS", "1");
    calls.emplace_back(callers.back().get(), callers.back()->begin("/usr"));
  }
  for (const auto& [caller, call] : calls) {
    const ProgramRun run = call->finish();
    EXPECT_EQ(caller->answerOf(run).kind, "unknown");
    EXPECT_GT(run.seconds, 16.9);
    EXPECT_LT(run.seconds, 40);
  }
}

}  // namespace
}  // namespace tessarine::test
