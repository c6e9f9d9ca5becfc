// The programs of the simulated desktop: what they print, how they end, what they do on the way.
#include "simulator/programs/programs.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <optional>
#include <string>
#include <vector>

#include "simulator/desktop/text.h"

namespace simulator::programs {
namespace {

using Texts = std::vector<std::string>;

struct Outcome {
  int status = 0;
  std::string output;
  std::string errors;
  bool operator==(const Outcome&) const = default;
};

void PrintTo(const Outcome& outcome, std::ostream* stream) {
  *stream << "status " << outcome.status << "\noutput: " << outcome.output
          << "\nerrors: " << outcome.errors;
}

// Writes down the keys that reach it.
class Typist : public InputReceiver {
 public:
  bool keyEvent(const KeyEvent& event, Route route) override {
    EXPECT_EQ(route, Route::session);
    if (!event.down) return true;
    std::string line = std::to_string(event.keyCode) + "/" + std::to_string(event.flags);
    if (event.text) line += "/" + utf8FromUtf16(*event.text);
    typed.push_back(line);
    return true;
  }
  bool mouseEvent(const MouseEvent&, Window&, Route) override { return false; }

  Texts typed;
};

class ProgramsTest : public testing::Test {
 protected:
  ProgramsTest() {
    installPrograms(desktop);
    browser.receivers = {&typist};
    desktop.setFrontmost(browser.pid);
  }

  // The result of a program and, in `took`, its running time. Absent when it never ends.
  std::optional<Outcome> run(const std::string& path, const Texts& arguments) {
    const Seconds start = desktop.now();
    const ProgramId id = desktop.startProgram(path, arguments);
    while (!desktop.programResult(id) && desktop.nextDeadline()) {
      desktop.advanceTo(*desktop.nextDeadline());
    }
    took = desktop.now() - start;
    return outcome(id);
  }

  std::optional<Outcome> outcome(ProgramId id) const {
    const std::optional<ProgramResult> result = desktop.programResult(id);
    if (!result) return std::nullopt;
    return Outcome{result->exitStatus, result->standardOutput, result->standardError};
  }

  std::optional<Outcome> script(const Texts& lines) {
    Texts arguments;
    for (const std::string& line : lines) {
      arguments.push_back("-e");
      arguments.push_back(line);
    }
    return run("/usr/bin/osascript", arguments);
  }

  std::optional<Outcome> snapshot(const std::string& number, const std::string& file) {
    return run("/usr/sbin/screencapture", {"-x", "-o", "-t", "png", "-l" + number, file});
  }

  std::optional<Outcome> toSystemEvents(const std::string& statement) {
    return script({"tell application \"System Events\"", statement, "end tell"});
  }

  std::uint32_t addWindow(const std::string& title, const Rect& frame) {
    Window window;
    window.owner = browser.pid;
    window.title = title;
    window.frame = frame;
    return desktop.addWindow(window).number;
  }

  Desktop desktop;
  Process& browser = desktop.addProcess({700, "Browser", "/Browser --flag=a b", true, {}});
  Typist typist;
  Seconds took = 0;
};

TEST_F(ProgramsTest, TheDesktopHasThreeProgramsUnlessOneIsMissing) {
  EXPECT_TRUE(desktop.hasProgram("/bin/ps"));
  EXPECT_TRUE(desktop.hasProgram("/usr/bin/osascript"));
  EXPECT_TRUE(desktop.hasProgram("/usr/sbin/screencapture"));
  EXPECT_FALSE(desktop.hasProgram("/usr/bin/ps"));
  desktop.faults().missing_programs = {"/bin/ps", "screencapture"};
  EXPECT_FALSE(desktop.hasProgram("/bin/ps"));
  EXPECT_TRUE(desktop.hasProgram("/usr/bin/osascript"));
  EXPECT_FALSE(desktop.hasProgram("/usr/sbin/screencapture"));
}

// --- ps ---

TEST_F(ProgramsTest, PsListsEveryRunningProcess) {
  desktop.addProcess({123456, "Service", "/Service.xpc/Service", false, 700});
  desktop.addProcess({9, "Gone", "/gone", true, {}});
  desktop.addProcess({1, "launchd", "/sbin/launchd", false, {}});
  desktop.terminateProcess(9, true);
  EXPECT_EQ(run("/bin/ps", {"-axo", "pid=,command="}), (Outcome{0,
                                                                "  700 /Browser --flag=a b\n"
                                                                "123456 /Service.xpc/Service\n"
                                                                "    1 /sbin/launchd\n",
                                                                ""}));
  EXPECT_DOUBLE_EQ(took, 0.02);
}

TEST_F(ProgramsTest, PsPrintsOneCommandLineOrFails) {
  EXPECT_EQ(run("/bin/ps", {"-p", "700", "-o", "command="}),
            (Outcome{0, "/Browser --flag=a b\n", ""}));
  EXPECT_EQ(run("/bin/ps", {"-p", "4321", "-o", "command="}), (Outcome{1, "", ""}));
}

TEST_F(ProgramsTest, PsPrintsNothingWhenToldTo) {
  desktop.faults().ps_prints_nothing = true;
  EXPECT_EQ(run("/bin/ps", {"-axo", "pid=,command="}), (Outcome{0, "", ""}));
}

using ProgramsDeathTest = ProgramsTest;

TEST_F(ProgramsDeathTest, PsInAnotherFormNamesItself) {
  EXPECT_DEATH(run("/bin/ps", {"aux"}), "not modelled: /bin/ps aux");
}

// --- osascript ---

TEST_F(ProgramsTest, AScriptTypesThroughTheSessionWithModifiers) {
  EXPECT_EQ(script({"tell application \"System Events\"",
                    "  keystroke \"g\" using {command down, shift down}", "  delay 0.5",
                    "  KEYSTROKE \"a/B \\\"\\\\\\t\"  -- a path", "  key code 36",
                    "  key code 125 using command down", "end tell"}),
            (Outcome{0, "", ""}));
  EXPECT_EQ(typist.typed, (Texts{"5/1179648/g", "0/0/a", "44/0//", "11/131072/B", "49/0/ ",
                                 "39/131072/\"", "42/0/\\", "48/0/\t", "36/0", "125/1048576"}));
  EXPECT_NEAR(took, 0.12 + 0.01 + 0.5 + 0.01 * 9, 1e-9);
  EXPECT_EQ(desktop.record().sessionEvents(), 0u);
}

TEST_F(ProgramsTest, AScriptTypesSpreadOverTime) {
  desktop.startProgram("/usr/bin/osascript",
                       {"-e", "tell application \"System Events\" to keystroke \"ab\""});
  desktop.advanceTo(0.11);
  EXPECT_EQ(typist.typed, Texts{});
  desktop.advanceTo(0.125);
  EXPECT_EQ(typist.typed, Texts{"0/0/a"});
  desktop.advanceTo(0.2);
  EXPECT_EQ(typist.typed, (Texts{"0/0/a", "11/0/b"}));
}

TEST_F(ProgramsTest, AScriptTypesTheLetterAForWhatHasNoKey) {
  EXPECT_EQ(toSystemEvents("keystroke \"中z\""), (Outcome{0, "", ""}));
  EXPECT_EQ(typist.typed, (Texts{"0/0/a", "6/0/z"}));
}

TEST_F(ProgramsTest, ATerminatedScriptTypesNoFurther) {
  const ProgramId id = desktop.startProgram(
      "/usr/bin/osascript", {"-e", "tell application \"System Events\" to keystroke \"abc\""});
  desktop.advanceTo(0.125);
  EXPECT_FALSE(desktop.programResult(id));
  desktop.terminateProgram(id);
  desktop.advanceTo(1);
  EXPECT_EQ(typist.typed, Texts{"0/0/a"});
  EXPECT_EQ(outcome(id), (Outcome{15, "", ""}));
}

TEST_F(ProgramsTest, AScriptBringsAProcessForward) {
  desktop.addProcess({800, "Editor", "/Editor", true, {}});
  const std::string line =
      "tell application \"System Events\" to set frontmost of first process whose unix id is ";
  EXPECT_EQ(script({line + "800 to true"}), (Outcome{0, "", ""}));
  EXPECT_EQ(desktop.frontmost(), 800);
  EXPECT_EQ(script({line + "4321 to true"}),
            (Outcome{1, "",
                     "0:0: execution error: System Events got an error: Can’t get process 1 "
                     "whose unix id = 4321. Invalid index. (-1719)\n"}));
}

TEST_F(ProgramsTest, FinderTellsTheDisplayedNameOfWhatExists) {
  desktop.setLanguage(Language::simplifiedChinese);
  const std::string line = "tell application \"Finder\" to get displayed name of (POSIX file \"";
  EXPECT_EQ(script({line + "/\" as alias)"}), (Outcome{0, "Macintosh HD\n", ""}));
  EXPECT_EQ(script({line + "/usr/\" as alias)"}), (Outcome{0, "usr\n", ""}));
  EXPECT_EQ(script({line + "/no/such \\\"thing\\\"\" as alias)"}),
            (Outcome{1, "",
                     "0:0: execution error: File file \"Macintosh HD:no:such \"thing\"\" "
                     "wasn’t found. (-43)\n"}));
}

TEST_F(ProgramsTest, AScriptThatDoesNotCompileDoesNothing) {
  const Texts broken = {"keystroke \"a",
                        "keystroke \"a\" \"b\"",
                        "keystroke \"\\q\"",
                        "keystroke a",
                        "key code \"36\"",
                        "keystroke \"a\" using hyper down",
                        "delay",
                        "keystroke \"a\" using {command down"};
  for (const std::string& statement : broken) {
    const std::optional<Outcome> result =
        script({"tell application \"System Events\"", "keystroke \"x\"", statement, "end tell"});
    ASSERT_TRUE(result) << statement;
    EXPECT_EQ(result->status, 1) << statement;
    EXPECT_NE(result->errors.find(": syntax error: Expected "), std::string::npos) << statement;
    EXPECT_TRUE(result->errors.ends_with(" (-2741)\n")) << statement;
  }
  EXPECT_EQ(typist.typed, Texts{});
}

TEST_F(ProgramsTest, ATellBlockMustBeClosedAndStatementsNeedOne) {
  EXPECT_EQ(script({"tell application \"System Events\"", "delay 1"}),
            (Outcome{1, "",
                     "40:40: syntax error: Expected “end tell” but found end of script. "
                     "(-2741)\n"}));
  EXPECT_EQ(script({"end tell"})->status, 1);
  EXPECT_EQ(script({"keystroke \"a\""})->status, 1);
}

TEST_F(ProgramsDeathTest, AScriptBeyondTheModelNamesItself) {
  EXPECT_DEATH(toSystemEvents("click button 1"),
               "not modelled: AppleScript: \"click\" to System Events");
  EXPECT_DEATH(script({"tell application \"Mail\" to quit"}),
               "not modelled: AppleScript: application \"Mail\"");
  EXPECT_DEATH(run("/usr/bin/osascript", {"-l", "JavaScript"}), "not modelled: /usr/bin/osascript");
}

TEST_F(ProgramsTest, AScriptTellsNothingToAnApplicationThatItMayNotTell) {
  desktop.faults().automation_denied = {"System Events"};
  const Outcome denied{
      1, "",
      "0:0: execution error: Not authorized to send Apple events to System Events. (-1743)\n"};
  EXPECT_EQ(toSystemEvents("keystroke \"a\""), denied);
  EXPECT_EQ(toSystemEvents("set frontmost of first process whose unix id is 700 to true"), denied);
  EXPECT_TRUE(typist.typed.empty());
  EXPECT_EQ(toSystemEvents("delay 0.5"), (Outcome{0, "", ""})) << "nobody is told anything";
  const std::string name =
      "tell application \"Finder\" to get displayed name of (POSIX file \"/usr\" as alias)";
  EXPECT_EQ(script({name}), (Outcome{0, "usr\n", ""}));
  desktop.faults().automation_denied = {"Finder"};
  EXPECT_EQ(
      script({name}),
      (Outcome{1, "",
               "0:0: execution error: Not authorized to send Apple events to Finder. (-1743)\n"}));
}

TEST_F(ProgramsTest, AScriptWaitsForTheAnswerToAQuestionThatNobodyAnswers) {
  desktop.faults().automation_unasked = {"System Events"};
  EXPECT_EQ(toSystemEvents("keystroke \"a\""), std::nullopt);
  EXPECT_TRUE(typist.typed.empty());
  EXPECT_EQ(toSystemEvents("delay 0.5"), (Outcome{0, "", ""})) << "nobody is told anything";
  desktop.faults().automation_denied = {"System Events"};
  EXPECT_EQ(toSystemEvents("keystroke \"a\"")->status, 1) << "somebody answered";
}

TEST_F(ProgramsTest, AScriptStartsWhatItTellsSomething) {
  const auto automation = [&] {
    return desktop.answer(AskAutomation{"com.apple.systemevents"}).value;
  };
  EXPECT_EQ(automation(), Value(-600.0));
  toSystemEvents("delay 0.5");
  EXPECT_EQ(automation(), Value(-600.0)) << "nobody was told anything";
  desktop.faults().automation_denied = {"System Events"};
  toSystemEvents("keystroke \"a\"");
  desktop.faults().automation_denied = {};
  EXPECT_EQ(automation(), Value(-600.0)) << "it was told nothing";
  toSystemEvents("keystroke \"a\"");
  EXPECT_EQ(automation(), Value(0.0));
}

TEST_F(ProgramsTest, SystemEventsTypesWithTheKeysOfTheLayout) {
  desktop.setKeyboardLayout(KeyboardLayout::azerty);
  toSystemEvents("keystroke \"aq1\" using {command down}");
  EXPECT_EQ(typist.typed, (Texts{"12/1048576/a", "0/1048576/q", "18/1179648/1"}));
}

TEST_F(ProgramsTest, EachProgramTakesWhatItsPriceSays) {
  desktop.prices().script = 1;
  desktop.prices().finder = 0.5;
  desktop.prices().scriptKey = 0.25;
  desktop.prices().processList = 2;
  script({"tell application \"Finder\" to get displayed name of (POSIX file \"/\" as alias)"});
  EXPECT_DOUBLE_EQ(took, 1.5);
  toSystemEvents("keystroke \"ab\"");
  EXPECT_DOUBLE_EQ(took, 1.5);
  run("/bin/ps", {"-axo", "pid=,command="});
  EXPECT_DOUBLE_EQ(took, 2);
  desktop.prices().snapshot = 4;
  snapshot("4321", "/no/such/image.png");
  EXPECT_DOUBLE_EQ(took, 4);
}

TEST_F(ProgramsTest, AScriptWithoutTrustMayNotType) {
  desktop.faults().untrusted = true;
  EXPECT_EQ(toSystemEvents("keystroke \"a\""),
            (Outcome{1, "",
                     "0:0: execution error: System Events got an error: osascript is not "
                     "allowed to send keystrokes. (1002)\n"}));
  EXPECT_EQ(typist.typed, Texts{});
}

TEST_F(ProgramsTest, AScriptHangsWhenToldTo) {
  desktop.faults().script_hangs = true;
  EXPECT_EQ(toSystemEvents("delay 0"), std::nullopt);
}

// --- screencapture ---

TEST_F(ProgramsTest, TheSnapshotProgramWritesAnImageOfAWindow) {
  const std::string number = std::to_string(addWindow("Page", {0, 0, 10, 10}));
  const std::filesystem::path file =
      std::filesystem::path(testing::TempDir()) / "tessarine_programs_test.png";
  EXPECT_EQ(snapshot(number, file.string()), (Outcome{0, "", ""}));
  EXPECT_DOUBLE_EQ(took, 0.03);
  std::ifstream stream(file, std::ios::binary);
  const std::string image{std::istreambuf_iterator<char>(stream), {}};
  EXPECT_EQ(image.substr(0, 8), "\x89PNG\r\n\x1a\n");
  EXPECT_EQ(image.substr(image.size() - 8, 4), "IEND");
  std::filesystem::remove(file);
}

TEST_F(ProgramsTest, TheSnapshotProgramFailsWithoutTheWindowThePermissionOrThePlace) {
  const std::string number = std::to_string(addWindow("Page", {0, 0, 10, 10}));
  const std::string nowhere = testing::TempDir() + "/no/such/folder/image.png";
  const Outcome noWindow{1, "", "could not create image from window\n"};
  EXPECT_EQ(snapshot("4321", nowhere), noWindow);
  EXPECT_EQ(snapshot(number, nowhere), (Outcome{1, "", "could not write " + nowhere + "\n"}));
  desktop.faults().screen_recording_denied = true;
  EXPECT_EQ(snapshot(number, nowhere), noWindow);
}

TEST_F(ProgramsDeathTest, ASnapshotOfAnotherKindNamesItself) {
  EXPECT_DEATH(run("/usr/sbin/screencapture", {"-x", "image.png"}),
               "not modelled: /usr/sbin/screencapture -x image.png");
}

}  // namespace
}  // namespace simulator::programs
