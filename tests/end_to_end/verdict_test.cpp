// What a desktop says about the calls of the tool, each a process of its own.
#include <gtest/gtest.h>
#include <signal.h>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <map>
#include <nlohmann/json.hpp>
#include <thread>

#include "end_to_end/program_run.h"
#include "end_to_end/served_desktop.h"
#include "support/temporary_folder.h"

namespace tessarine::test {
namespace {

using nlohmann::ordered_json;
using Words = std::vector<std::string>;

// One service window whose go-to sheet does not open, so that choose-path confirms the folder that
// is shown.
constexpr const char* without_go_to =
    R"({"panels": [{"shape": "service-window", "goTo": {"neverOpens": true}}]})";

const Words choosing{"choose-path", "--pid", "812", "--path", "/usr/share"};
constexpr const char* false_success = "verdict: false success: panel 1 chose /usr\n";

// The last line.
std::string verdictLine(const ProgramRun& run) {
  const std::size_t before = run.errors.rfind('\n', run.errors.size() - 2);
  return run.errors.substr(before == std::string::npos ? 0 : before + 1);
}

// `tessarine-desktop run OPTIONS -- COMMAND`.
ProgramRun runDesktop(const Words& options, const Words& command) {
  Words line{desktopPath(), "run"};
  line.insert(line.end(), options.begin(), options.end());
  line.push_back("--");
  line.insert(line.end(), command.begin(), command.end());
  return runProgram(line);
}

Words toolCall(const Words& arguments) {
  Words line{toolPath()};
  line.insert(line.end(), arguments.begin(), arguments.end());
  return line;
}

TEST(VerdictOfARun, StandsLastAndDecidesTheStatusWhenAsked) {
  const TemporaryFolder folder;
  const std::string scenario = folder.makeFile("false.json", without_go_to);
  const ProgramRun run = runDesktop({scenario}, toolCall(choosing));
  EXPECT_EQ(run.exitStatus, 0);
  EXPECT_EQ(run.errors,
            "panel 1: chosen /usr\nmouse events: 0\nsession-wide events: 0\n"
            "frontmost application: Terminal, never changed\n" +
                std::string(false_success));
  const ProgramRun judged = runDesktop({scenario, "--judge"}, toolCall(choosing));
  EXPECT_EQ(judged.exitStatus, 3);
  EXPECT_EQ(judged.errors, run.errors);
}

TEST(VerdictOfARun, OptionsStandBeforeOrAfterTheScenario) {
  const TemporaryFolder folder;
  const std::string record = folder.path() + "/record.json";
  const std::string scenario = "english-service-window";
  for (const Words& options : {Words{"--judge", "--record", record, scenario},
                               Words{scenario, "--judge", "--record", record},
                               Words{"--record", record, scenario, "--judge"}}) {
    const ProgramRun run = runDesktop(options, {"true"});
    EXPECT_EQ(run.exitStatus, 3);
    EXPECT_EQ(verdictLine(run), "verdict: no call\n");
    EXPECT_TRUE(std::filesystem::remove(record));
  }
}

TEST(VerdictOfARun, OptionsThatAreNoneAreRefusedWithOneLine) {
  const auto refusal = [](const Words& options) {
    const ProgramRun run = runDesktop(options, {"true"});
    EXPECT_EQ(run.exitStatus, 2);
    return run.errors;
  };
  EXPECT_EQ(refusal({"--jugde", "no-panel"}), "tessarine-desktop: unknown option: --jugde\n");
  EXPECT_EQ(refusal({"no-panel", "--jugde"}), "tessarine-desktop: unknown option: --jugde\n");
  EXPECT_EQ(refusal({"no-panel", "--record"}), "tessarine-desktop: --record needs a value\n");
  EXPECT_EQ(refusal({"--record", "a", "no-panel", "--record", "b"}),
            "tessarine-desktop: --record is given twice\n");
  EXPECT_EQ(refusal({"no-panel", "--record-requests"}),
            "tessarine-desktop: --record-requests needs --record\n");
  EXPECT_EQ(refusal({"no-panel", "edge"}), "tessarine-desktop: unexpected argument: edge\n");
  EXPECT_EQ(refusal({"--judge"}), "tessarine-desktop: a scenario is missing; `list` names some\n");
}

TEST(RecordOfARun, HoldsWhatWasDoneAndSeenAndOnRequestWhatWasAsked) {
  const TemporaryFolder folder;
  const std::string target = folder.makeFolder("target");
  const auto recorded = [&](const Words& options) {
    const std::string file = folder.path() + "/record.json";
    Words line{"chromium-english", "--record", file};
    line.insert(line.end(), options.begin(), options.end());
    const ProgramRun run =
        runDesktop(line, toolCall({"choose-folder", "--verify", "--pid", "812", "--path", target}));
    EXPECT_EQ(run.exitStatus, 0) << run.errors;
    std::ifstream stream(file);
    return ordered_json::parse(stream);
  };
  const auto kinds = [](const ordered_json& record) {
    std::map<std::string, int> count;
    for (const ordered_json& entry : record["entries"]) {
      ++count[entry.value("verb", entry["what"].get<std::string>())];
    }
    return count;
  };
  const ordered_json record = recorded({});
  EXPECT_EQ(record["version"], 1);
  EXPECT_EQ(record["scenario"], "chromium-english");
  EXPECT_EQ(record["verdict"], "true");
  EXPECT_EQ(record["calls"].size(), 1U);
  EXPECT_EQ(ordered_json::parse(record["calls"][0]["output"].get<std::string>())["ok"], true);
  auto found = kinds(record);
  for (const char* kind : {"key", "set", "perform", "program started", "milestone", "screen"}) {
    EXPECT_GT(found[kind], 0) << kind;
  }
  EXPECT_GT(found["panel"], 4);
  EXPECT_EQ(found["copy"] + found["copy several"] + found["workspace"], 0);
  for (const ordered_json& entry : record["entries"]) {
    EXPECT_TRUE(entry["what"] != "milestone" || entry["panel"] == 1) << entry;
  }
  found = kinds(recorded({"--record-requests"}));
  EXPECT_GT(found["copy"], 100);
  EXPECT_GT(found["workspace"], 0);
}

TEST(RecordOfAServedDesktop, IsWrittenWhenItEnds) {
  const TemporaryFolder folder;
  const std::string file = folder.path() + "/record.json";
  ServedDesktop desktop("english-service-window", {"--record", file});
  desktop.run({"close", "--pid", "812"});
  const ProgramRun run = desktop.stop();
  EXPECT_EQ(run.exitStatus, 0);
  EXPECT_EQ(run.errors, "");
  std::ifstream stream(file);
  const ordered_json record = ordered_json::parse(stream);
  EXPECT_EQ(record["panels"][0]["outcome"], "cancelled");
  EXPECT_EQ(record["verdict"], "true");
}

TEST(ReplayOfARecord, IsAPageAndOfAnythingElseALine) {
  const TemporaryFolder folder;
  const std::string record = folder.path() + "/record.json";
  EXPECT_EQ(runDesktop({"no-panel", "--record", record}, {"true"}).exitStatus, 0);
  const ProgramRun page = runProgram({desktopPath(), "replay", record});
  EXPECT_EQ(page.exitStatus, 0) << page.errors;
  EXPECT_TRUE(page.output.starts_with("<!DOCTYPE html>\n"));
  EXPECT_NE(page.output.find("<title>Replay of no-panel: no call</title>"), std::string::npos);
  const std::string wrong = folder.makeFile("wrong.json", R"({"version": 7})");
  EXPECT_EQ(runProgram({desktopPath(), "replay", wrong}),
            (ProgramRun{2, "", "tessarine-desktop: " + wrong + ": /version: expected 1\n"}));
  EXPECT_EQ(runProgram({desktopPath(), "replay"}),
            (ProgramRun{2, "", "tessarine-desktop: a file is missing: what --record wrote\n"}));
}

TEST(WhatCannotBeWritten, IsOneLineAndStatusOne) {
  const TemporaryFolder folder;
  const std::string mark = folder.path() + "/ran";
  EXPECT_EQ(runDesktop({"no-panel", "--record", "/no/such/file"}, {"touch", mark}),
            (ProgramRun{1, "",
                        "tessarine-desktop: cannot write /no/such/file: No such file or "
                        "directory\n"}));
  EXPECT_FALSE(std::filesystem::exists(mark));
  const ProgramRun full = runDesktop({"no-panel", "--record", "/dev/full"}, {"true"});
  EXPECT_EQ(full.exitStatus, 1);
  EXPECT_TRUE(
      full.errors.ends_with("verdict: no call\ntessarine-desktop: cannot write /dev/full\n"))
      << full.errors;
  const ServedDesktop desktop("no-panel");
  const std::string socket = desktop.environment().at("TESSARINE_DESKTOP");
  const ProgramRun unwritten{1, "", "tessarine-desktop: cannot write to standard output\n"};
  for (const std::string& call : {"state --socket " + socket, std::string("list")}) {
    const std::string shell = "exec " + desktopPath() + " " + call;
    EXPECT_EQ(runProgram({"/bin/sh", "-c", shell + " >/dev/full"}), unwritten) << call;
    EXPECT_EQ(runProgram({"/bin/sh", "-c", shell + " >&-"}), unwritten) << call;
  }
}

// The command's own options are its own, and so is its status as long as all is well.
TEST(VerdictOfARun, ThatIsTrueLeavesTheStatusAsItIs) {
  const ProgramRun failed =
      runDesktop({"no-panel", "--judge"}, {"sh", "-c", "$0 --help >/dev/null; exit 5", toolPath()});
  EXPECT_EQ(failed.exitStatus, 5);
  EXPECT_EQ(verdictLine(failed), "verdict: true\n");
  const ProgramRun missing = runDesktop({"no-panel", "--judge"}, {"/no/such/program"});
  EXPECT_EQ(missing.exitStatus, 127);
  EXPECT_EQ(missing.errors,
            "tessarine-desktop: cannot start /no/such/program: No such file or directory\n");
}

TEST(VerdictOfARun, IsTheFirstThatIsNotTrue) {
  const TemporaryFolder folder;
  const std::string scenario = folder.makeFile("false.json", without_go_to);
  const std::string calls =
      "$0 list-windows --pid 812; $0 choose-path --pid 812 --path /usr/share;"
      "$0 close --pid 812";
  const ProgramRun run = runDesktop({scenario}, {"sh", "-c", calls, toolPath()});
  EXPECT_EQ(run.exitStatus, 0);
  EXPECT_EQ(verdictLine(run), false_success);
}

// The panel is sent an Escape that no call of the tool sent.
TEST(VerdictOfARun, KnowsWhatEndedInNoCallsTime) {
  const TemporaryFolder folder;
  const std::string scenario = folder.makeFile("front.json", R"({
      "frontmost": 812, "panels": [{"shape": "service-window"}]})");
  const std::string escape =
      "$0 list-windows --pid 812 >/dev/null; \"$TESSARINE_DESKTOP_PROGRAMS/osascript\" "
      "-e 'tell application \"System Events\" to key code 53'";
  const ProgramRun run = runDesktop({scenario, "--judge"}, {"sh", "-c", escape, toolPath()});
  EXPECT_EQ(run.exitStatus, 3) << run.errors;
  EXPECT_EQ(verdictLine(run), "verdict: unreported: panel 1 was cancelled\n");
}

// The go-to sheet takes most of a second to close and to confirm the panel.
TEST(VerdictOfARun, WaitsForWhatIsUnderWayWithoutTakingTime) {
  const TemporaryFolder folder;
  const std::string scenario = folder.makeFile("late.json", R"({"lastGoToPath": "/usr/share",
      "panels": [{"shape": "service-window", "slow": 10, "goTo": {"openAtStart": true},
                  "faults": {"goToReturnConfirms": true}}]})");
  const ProgramRun run =
      runDesktop({scenario}, toolCall({"press-key", "--pid", "900", "--key", "return"}));
  EXPECT_EQ(run.errors.substr(0, run.errors.find('\n')), "panel 1: chosen /usr/share");
  EXPECT_EQ(verdictLine(run), "verdict: true\n");
  EXPECT_LT(run.seconds, 1.2);
}

// --- A desktop that is served. ---

// Looks until the first panel's outcome is this, at most ten seconds.
bool waitForOutcome(const ServedDesktop& desktop, const std::string& outcome) {
  for (int looks = 0; looks < 50; ++looks) {
    if (desktop.state()["panels"][0]["outcome"] == outcome) return true;
    std::this_thread::sleep_for(std::chrono::milliseconds(200));
  }
  return false;
}

TEST(StateOfADesktop, TellsOfItsCallsAndTheirVerdicts) {
  const TemporaryFolder folder;
  const ServedDesktop desktop(folder.makeFile("false.json", without_go_to));
  EXPECT_EQ(desktop.state()["calls"], ordered_json::array());
  EXPECT_EQ(desktop.state()["verdict"], "no call");
  const Words missing{"choose-folder", "--pid", "812", "--path", "/no/such/folder"};
  EXPECT_EQ(runTessarine(missing, desktop.environment()).exitStatus, 1);
  desktop.run(choosing);
  EXPECT_EQ(runTessarine({"close"}, desktop.environment()).exitStatus, 2);

  const ordered_json state = desktop.state();
  ordered_json calls = state["calls"];
  double before = 0;
  for (ordered_json& call : calls) {
    for (const char* time : {"startedAt", "endedAt"}) {
      EXPECT_GE(call[time].get<double>(), before);
      before = call[time];
      call.erase(time);
    }
    EXPECT_EQ(call["output"] == "", call["status"] == 1);
    call.erase("output");
  }
  EXPECT_LE(before, state["now"].get<double>());
  const std::string verdict = "false success: panel 1 chose /usr";
  EXPECT_EQ(calls, (ordered_json{{{"arguments", missing}, {"status", 1}, {"verdict", "true"}},
                                 {{"arguments", choosing}, {"status", 0}, {"verdict", verdict}},
                                 {{"arguments", {"close"}}, {"status", 2}, {"verdict", "true"}}}));
  EXPECT_EQ(state["verdict"], verdict);
}

TEST(StateOfADesktop, TellsWhoseEachPanelIsAndWhatHappenedToIt) {
  const TemporaryFolder folder;
  const ServedDesktop desktop(folder.makeFile("two.json", R"({"panels": [
      {"shape": "service-window", "language": "zh-Hans"},
      {"shape": "host-sheet", "language": "de", "service": 950,
       "opensAtSeconds": 3600}]})"));
  desktop.run({"close", "--pid", "812"});
  ordered_json panels = desktop.state()["panels"];
  EXPECT_EQ(panels[1], ordered_json::parse(R"({"outcome": "none", "host": 812, "service": 950,
      "title": "", "windows": [], "milestones": []})"));
  const double at = panels[0]["at"];
  EXPECT_GT(at, 0);
  EXPECT_EQ(panels[0]["milestones"].size(), 4U);
  EXPECT_EQ(panels[0]["milestones"][0], (ordered_json{{"at", 0.0}, {"text", "panel opened"}}));
  EXPECT_EQ(panels[0]["milestones"][2], (ordered_json{{"at", at}, {"text", "cancelled"}}));
  panels[0].erase("at");
  panels[0].erase("milestones");
  EXPECT_EQ(panels[0], ordered_json::parse(R"({"outcome": "cancelled", "host": 812,
      "service": 900, "title": "打开", "windows": [103, 104]})"));
}

// The helper that the tool starts talks to the same desktop.
TEST(StateOfADesktop, CountsTheToolAloneAsACall) {
  const ServedDesktop desktop("unseen-folders");
  EXPECT_EQ(desktop.run({"list-background-panels", "--pid", "812"})["windows"].size(), 2U);
  EXPECT_EQ(desktop.state()["calls"].size(), 1U);
}

// The panel closes later than anybody waits. It chooses the folder that it shows.
TEST(StateOfADesktop, ACallThatIsKilledHasReportedNothing) {
  const TemporaryFolder folder;
  const ServedDesktop desktop(folder.makeFile("late.json", R"({"panels": [
      {"shape": "service-window", "goTo": {"neverOpens": true},
       "faults": {"closesLateBySeconds": 3600}}]})"));
  Words patient = choosing;
  patient.insert(patient.end(), {"--timeout", "60"});
  RunningProgram tool(toolCall(patient), desktop.environment());
  ASSERT_TRUE(waitForOutcome(desktop, "chosen"));
  const ordered_json running = desktop.state();
  EXPECT_EQ(running["calls"][0]["endedAt"], nullptr);
  EXPECT_EQ(running["calls"][0]["verdict"], nullptr);
  EXPECT_EQ(running["verdict"], "true");
  tool.sendSignal(SIGKILL);
  EXPECT_EQ(tool.finish().exitStatus, 128 + SIGKILL);
  const ordered_json state = desktop.state();
  EXPECT_TRUE(state["calls"][0]["endedAt"].is_number());
  EXPECT_EQ(state["calls"][0]["status"], nullptr);
  EXPECT_EQ(state["calls"][0]["verdict"], "unreported: panel 1 chose /usr");
  EXPECT_EQ(state["verdict"], "unreported: panel 1 chose /usr");
}

}  // namespace
}  // namespace tessarine::test
