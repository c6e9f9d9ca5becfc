// The built program on a desktop of another process, in real time.
#include <gtest/gtest.h>

#include <chrono>
#include <future>
#include <nlohmann/json.hpp>
#include <thread>

#include "end_to_end/program_run.h"
#include "end_to_end/served_desktop.h"
#include "support/temporary_folder.h"

namespace tessarine::test {
namespace {

using nlohmann::ordered_json;

constexpr const char* quietEnd =
    "mouse events: 0\nsession-wide events: 0\nfrontmost application: Terminal, never changed\n"
    "verdict: true\n";

TEST(OnADesktop, AFolderWithAnAwkwardNameIsChosenInTheBackground) {
  const TemporaryFolder folder;
  const std::string target = folder.makeFolder("it's a \"test\" 文件夹 📁");
  for (const std::string scenario : {"english-service-window", "chinese-service-window"}) {
    const ProgramRun run = runOnDesktop(
        scenario, {"choose-folder", "--strict-background", "--pid", "812", "--path", target});
    EXPECT_EQ(run.exitStatus, 0) << run.errors;
    EXPECT_EQ(run.errors, "panel 1: chosen " + target + "\n" + quietEnd);
    EXPECT_EQ(ordered_json::parse(run.output)["path"], target);
  }
}

TEST(OnADesktop, TheStatusOfTheCommandIsTheStatusOfTheRun) {
  const ProgramRun run = runOnDesktop("no-panel", {"press-key", "--pid", "812", "--key", "Return"});
  EXPECT_EQ(run.exitStatus, 2);
  EXPECT_EQ(run.errors, std::string("unsupported --key: Return\nno panel\n") + quietEnd);
}

// A connection to the desktop would otherwise get the number of the closed descriptor.
TEST(OnADesktop, WhatNobodyCanReceiveIsAFailure) {
  for (const std::string& call :
       {toolPath() + " press-key --pid 812 --key escape", capturePath() + " list"}) {
    const ProgramRun run = runProgram({desktopPath(), "run", "english-service-window", "--", "sh",
                                       "-c", "exec " + call + " >&-"});
    EXPECT_EQ(run.exitStatus, 1) << call;
    EXPECT_EQ(run.output, "");
    EXPECT_NE(run.errors.find("cannot write to standard output\n"), std::string::npos)
        << run.errors;
  }
}

// The desktop is killed while the program waits for it: for a panel, for an answer, for a list.
TEST(OnADesktop, AProgramWhoseDesktopDiesEndsAtOnce) {
  struct Waiting {
    std::string scenario;
    std::vector<std::string> call;
  };
  const std::string hanging = R"({"requestTimeoutSeconds": 3600, "faults": )";
  for (const auto& [scenario, call] : std::vector<Waiting>{
           {"{}", {toolPath(), "choose-folder", "--verify", "--pid", "812", "--path", "/usr"}},
           {hanging + R"({"silentProcesses": [812]}})",
            {toolPath(), "list-windows", "--pid", "812"}},
           {hanging + R"({"captureHelperHangs": true}})", {capturePath(), "list"}}}) {
    const TemporaryFolder folder;
    ServedDesktop desktop(folder.makeFile("scenario.json", scenario));
    RunningProgram program(call, desktop.environment());
    std::this_thread::sleep_for(std::chrono::milliseconds(500));
    const auto killed = std::chrono::steady_clock::now();
    desktop.kill();
    EXPECT_EQ(program.finish(), (ProgramRun{1, "", "the desktop went away\n"})) << call[1];
    EXPECT_LT(std::chrono::steady_clock::now() - killed, std::chrono::seconds(2)) << call[1];
  }
}

TEST(OnADesktop, CallsAtTheSameTimeAndOneAfterAnotherMeetTheSameDesktop) {
  const ServedDesktop desktop("english-service-window");
  const auto list = [&] { return desktop.run({"list-windows", "--pid", "812"}); };
  auto first = std::async(std::launch::async, list);
  auto second = std::async(std::launch::async, list);
  const ordered_json windows = list();
  EXPECT_EQ(windows["apps"].size(), 2U);
  EXPECT_EQ(first.get(), windows);
  EXPECT_EQ(second.get(), windows);
}

TEST(OnADesktop, AServedPanelIsChosenAndTheDesktopTellsOfIt) {
  const TemporaryFolder folder;
  const std::string target = folder.makeFolder("target");
  ServedDesktop desktop("english-service-window");
  desktop.run({"choose-folder", "--strict-background", "--pid", "812", "--path", target});
  const ordered_json state = desktop.state();
  EXPECT_EQ(state["panels"][0]["outcome"], "chosen");
  EXPECT_EQ(state["panels"][0]["path"], target);
  EXPECT_EQ(state["version"], 1);
  EXPECT_EQ(desktop.run({"list-background-panels", "--pid", "812"})["windows"],
            ordered_json::array());
  EXPECT_EQ(desktop.stop().exitStatus, 0);
}

TEST(OnADesktop, AScenarioThatIsWrongIsRefusedWithOneLine) {
  const TemporaryFolder folder;
  const std::string file = folder.makeFile("wrong.json", R"({"panels": [{"shape": "round"}]})");
  const ProgramRun run = runProgram({desktopPath(), "run", file, "--", "/bin/true"});
  EXPECT_EQ(run.exitStatus, 2);
  EXPECT_EQ(run.output, "");
  EXPECT_EQ(run.errors, "tessarine-desktop: " + file +
                            ": /panels/0/shape: expected one of \"service-window\", "
                            "\"host-window\", \"host-sheet\", \"embedded\", \"unseen\"\n");
}

TEST(OnADesktop, APanelThatWasPrintedOnOneIsImportedAndPrintedTheSameOnAnother) {
  const TemporaryFolder folder;
  const auto printed = [](const std::string& scenario, const std::string& command) {
    return runOnDesktop(scenario, {command, "--pid", "812"}).output;
  };
  // Without dates, which may be paths and would be replaced.
  const std::string seen = folder.makeFile("panel.json", R"({"language": "zh-Hans", "panels": [
      {"shape": "service-window", "listColumns": 1}]})");
  const std::string dialogs = printed(seen, "inspect-open-dialog");
  const std::string windows = printed(seen, "list-windows");
  EXPECT_NE(dialogs.find("AXOutline"), std::string::npos) << dialogs;
  const ProgramRun imported =
      runProgram({desktopPath(), "import", folder.makeFile("dialogs", dialogs), "--windows",
                  folder.makeFile("windows", windows), "--keep-names"});
  EXPECT_EQ(imported.exitStatus, 0);
  EXPECT_EQ(imported.errors, "");
  const std::string scenario = folder.makeFile("seen.json", imported.output);
  EXPECT_EQ(printed(scenario, "inspect-open-dialog"), dialogs);
  EXPECT_EQ(printed(scenario, "list-windows"), windows);
}

TEST(OnADesktop, APanelWithATreeIsNotChosen) {
  const TemporaryFolder folder;
  const std::string scenario = folder.makeFile("tree.json", R"({"panels": [
      {"shape": "service-window", "tree": [
        {"role": "AXWindow", "title": "Open", "description": "", "value": "", "actions": [],
         "frame": {"x": 320, "y": 180, "width": 800, "height": 450}}]}]})");
  const ProgramRun run = runOnDesktop(scenario, {"choose-folder", "--strict-background", "--pid",
                                                 "812", "--path", folder.path(), "--timeout", "1"});
  EXPECT_EQ(run.exitStatus, 1);
  EXPECT_NE(run.errors.find("panel 1: still open\n" + std::string(quietEnd)), std::string::npos)
      << run.errors;
}

TEST(OnADesktop, WhatIsNoPrintoutIsNotImported) {
  const TemporaryFolder folder;
  const std::string file = folder.makeFile("wrong.json", R"({"ok": true, "command": "close"})");
  const ProgramRun run = runProgram({desktopPath(), "import", file});
  EXPECT_EQ(run.exitStatus, 2);
  EXPECT_EQ(run.output, "");
  EXPECT_EQ(run.errors,
            "tessarine-desktop: " + file + ": /command: expected \"inspect-open-dialog\"\n");
}

TEST(OnADesktop, ScenariosThatComeWithItAreListed) {
  const ProgramRun run = runProgram({desktopPath(), "list"});
  EXPECT_EQ(run.exitStatus, 0);
  for (const char* name : {"english-service-window", "chinese-embedded", "no-panel", "edge"}) {
    EXPECT_NE(run.output.find(name), std::string::npos) << name;
  }
}

}  // namespace
}  // namespace tessarine::test
