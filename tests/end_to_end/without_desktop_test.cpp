// The built program on a machine without a desktop: nothing to find, and the real "/bin/ps".
#include <gtest/gtest.h>

#include <filesystem>
#include <nlohmann/json.hpp>

#include "end_to_end/program_run.h"
#include "support/temporary_folder.h"

namespace tessarine::test {
namespace {

using nlohmann::ordered_json;

TEST(WithoutADesktop, AProcessThatDoesNotExistHasNoWindows) {
  const ProgramRun run = runTessarine({"list-windows", "--pid", "999999"});
  EXPECT_EQ(run.exitStatus, 0) << run.errors;
  EXPECT_EQ(ordered_json::parse(run.output),
            ordered_json::parse(R"({"ok": true, "command": "list-windows", "primaryPid": 999999,
                "apps": [{"pid": 999999, "label": "primary-browser", "windows": []}]})"));
}

TEST(WithoutADesktop, AMissingFolderIsNamedAtOnce) {
  const ProgramRun run =
      runTessarine({"choose-folder", "--pid", "812", "--path", "/no/such/../folder/"});
  EXPECT_EQ(run, (ProgramRun{1, "", "folder does not exist: /no/folder\n"}));
  EXPECT_LT(run.seconds, 2);
}

TEST(WithoutADesktop, AHelperNamedByTheEnvironmentIsRun) {
  const TemporaryFolder folder;
  folder.makeScript(
      "background-window-capture",
      "[ \"$*\" = list ] || exit 2\n"
      "printf '41\\tpid=812\\tapp=Google Chrome\\ttitle=Open\\tframe=10,20,800,600\\n'"
      "; printf '42\\tpid=812\\tapp=Google Chrome\\ttitle=Other\\tframe=1,2,80,60\\n'");
  const ProgramRun run =
      runTessarine({"list-background-panels", "--pid", "812"}, {{"ZORVILET_BIN", folder.path()}});
  EXPECT_EQ(run.exitStatus, 0) << run.errors;
  EXPECT_EQ(ordered_json::parse(run.output),
            ordered_json::parse(R"({"ok": true, "command": "list-background-panels",
                "primaryPid": 812, "windows": [{"windowID": 41, "pid": 812, "app": "Google Chrome",
                "title": "Open", "visible": true,
                "frame": {"x": 10.0, "y": 20.0, "width": 800.0, "height": 600.0}}]})"));
}

// Each says by the number of its window which it is.
TEST(WithoutADesktop, AHelperBesideTheProgramComesBeforeTheOneThatTheEnvironmentNames) {
  const auto line = [](const std::string& number) {
    return "printf '" + number +
           "\\tpid=812\\tapp=Google Chrome\\ttitle=Open\\tframe=10,20,800,600\\n'";
  };
  const TemporaryFolder programs;
  const TemporaryFolder named;
  std::filesystem::copy_file(toolPath(), programs.path() + "/tessarine");
  named.makeScript("background-window-capture", line("42"));
  const auto windowListed = [&] {
    const ProgramRun run =
        runProgram({programs.path() + "/tessarine", "list-background-panels", "--pid", "812"},
                   {{"ZORVILET_BIN", named.path()}});
    EXPECT_EQ(run.exitStatus, 0) << run.errors;
    return ordered_json::parse(run.output)["windows"][0]["windowID"];
  };
  EXPECT_EQ(windowListed(), 42);
  programs.makeScript("background-window-capture", line("41"));
  EXPECT_EQ(windowListed(), 41);
}

TEST(WithoutADesktop, AFullDiskIsNotSuccess) {
  const ProgramRun run = runProgram(
      {"/bin/sh", "-c", "exec \"$0\" press-key --pid 1 --key return >/dev/full", toolPath()});
  EXPECT_EQ(run, (ProgramRun{1, "", "cannot write to standard output\n"}));
}

TEST(WithoutADesktop, ADesktopThatDoesNotAnswerIsNotAnEmptyOne) {
  const Environment told{{"TESSARINE_DESKTOP", "/no/such/socket"}};
  const ProgramRun ended{1, "",
                         "no desktop answers at /no/such/socket: No such file or directory\n"};
  EXPECT_EQ(runTessarine({"list-windows", "--pid", "812"}, told), ended);
  EXPECT_EQ(runTessarine({"press-key", "--pid", "812", "--key", "escape"}, told), ended);
  EXPECT_EQ(runProgram({capturePath(), "list"}, told), ended);
}

TEST(WithoutADesktop, HelpAndAMisspeltCommandPrintTheUsage) {
  const ProgramRun help = runTessarine({"--help"});
  EXPECT_EQ(help.exitStatus, 0);
  EXPECT_EQ(help.errors, "");
  EXPECT_EQ(help.output.substr(0, help.output.find('\n')),
            "tessarine — operate macOS Open panels inside a background browser process");
  EXPECT_EQ(runTessarine({"choose"}), (ProgramRun{2, help.output, "unknown command: choose\n"}));
}

}  // namespace
}  // namespace tessarine::test
