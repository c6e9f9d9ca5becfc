// `background-window-capture capture`.
#include <gtest/gtest.h>

#include <sys/stat.h>

#include <array>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <iterator>

#include "capture-helper/helper_desktop.h"
#include "support/temporary_folder.h"

namespace tessarine::test {
namespace {

namespace fs = std::filesystem;

Outcome capture(const std::string& number, const std::string& file) {
  return runHelper({"capture", "--window-id", number, "--out", file});
}
Outcome notDone(const std::string& reason) {
  return {1, "", "background-window-capture: " + reason + "\n"};
}
std::string contents(const std::string& file) {
  std::ifstream stream(file, std::ios::binary);
  return {std::istreambuf_iterator<char>(stream), {}};
}
std::size_t filesIn(const TemporaryFolder& folder) {
  return static_cast<std::size_t>(
      std::distance(fs::directory_iterator(folder.path()), fs::directory_iterator()));
}

struct OneWindow : HelperDesktop {
  OneWindow() { addListed("Page", {0, 0, 10, 10}); }
  // The file that each run of the snapshot program was told to write.
  std::vector<std::string> askedFor() const {
    std::vector<std::string> files;
    for (const auto& line : desktop.record().lines()) {
      const auto* run = std::get_if<simulator::ProgramStarted>(&line.entry);
      if (run != nullptr) files.push_back(run->arguments.back());
    }
    return files;
  }
  TemporaryFolder folder;
  std::string image = folder.path() + "/page.png";
};

TEST(Capture, WritesAnImageAndNothingElse) {
  OneWindow world;
  EXPECT_EQ(capture("101", world.image), (Outcome{0, "", ""}));
  EXPECT_EQ(contents(world.image).substr(0, 8), "\x89PNG\r\n\x1a\n");
  EXPECT_EQ(filesIn(world.folder), 1U);
}

TEST(Capture, TakesItsOptionsInAnyOrderTheLastOneCounting) {
  OneWindow world;
  EXPECT_EQ(runHelper({"capture", "--out", "/nowhere/x", "--window-id", "7", "--out", world.image,
                       "--window-id", "101"}),
            (Outcome{0, "", ""}));
  EXPECT_TRUE(fs::exists(world.image));
}

TEST(Capture, ReplacesAnOlderImageAsAWhole) {
  OneWindow world;
  world.folder.makeFile("page.png", "old");
  EXPECT_EQ(capture("4321", world.image), notDone("cannot capture window 4321"));
  EXPECT_EQ(contents(world.image), "old");
  EXPECT_EQ(capture("101", world.image), (Outcome{0, "", ""}));
  EXPECT_EQ(contents(world.image).substr(1, 3), "PNG");
  EXPECT_EQ(filesIn(world.folder), 1U);
}

TEST(Capture, FailsForAWindowThatVanishedOrMayNotBeSeen) {
  OneWindow world;
  world.desktop.faults().screen_recording_denied = true;
  EXPECT_EQ(capture("101", world.image), notDone("cannot capture window 101"));
  world.desktop.faults().screen_recording_denied = false;
  world.desktop.removeWindow(101);
  EXPECT_EQ(capture("101", world.image), notDone("cannot capture window 101"));
  world.desktop.terminateProcess(browserPid, false);
  EXPECT_EQ(capture("101", world.image), notDone("cannot capture window 101"));
  EXPECT_EQ(filesIn(world.folder), 0U);
}

TEST(Capture, FailsWhereNoFileCanBe) {
  OneWindow world;
  const std::string nowhere = world.folder.path() + "/none/page.png";
  EXPECT_EQ(capture("101", nowhere),
            notDone("cannot write " + nowhere + ": No such file or directory"));
  const std::string folder = world.folder.makeFolder("page.png");
  EXPECT_EQ(capture("101", folder), notDone("cannot write " + folder + ": Is a directory"));
  EXPECT_EQ(filesIn(world.folder), 1U);
  EXPECT_TRUE(world.askedFor().empty());
}

// A device would have been replaced by the image.
TEST(Capture, TouchesNothingButRegularFiles) {
  OneWindow world;
  const std::string pipe = world.folder.path() + "/pipe";
  ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
  const std::string link = world.folder.path() + "/link";
  fs::create_symlink("pipe", link);
  for (const std::string& file : {pipe, link}) {
    EXPECT_EQ(capture("101", file), notDone("cannot write " + file + ": not a regular file"));
  }
  EXPECT_TRUE(fs::is_fifo(pipe));
  EXPECT_TRUE(fs::is_symlink(link));
  EXPECT_EQ(filesIn(world.folder), 2U);
  EXPECT_TRUE(world.askedFor().empty());
}

TEST(Capture, WritesToTheFileThatALinkLeadsTo) {
  OneWindow world;
  const std::string target = world.folder.makeFolder("images") + "/page.png";
  world.folder.makeFile("images/page.png", "old");
  fs::create_symlink("images/page.png", world.image);
  EXPECT_EQ(capture("101", world.image), (Outcome{0, "", ""}));
  EXPECT_EQ(fs::read_symlink(world.image), "images/page.png");
  EXPECT_EQ(contents(target).substr(1, 3), "PNG");
  EXPECT_EQ(filesIn(world.folder), 2U);
}

TEST(Capture, RefusesALinkThatLeadsNowhere) {
  OneWindow world;
  fs::create_symlink("gone.png", world.image);
  EXPECT_EQ(capture("101", world.image),
            notDone("cannot write " + world.image + ": No such file or directory"));
  fs::remove(world.image);
  fs::create_symlink("page.png", world.image);
  EXPECT_EQ(capture("101", world.image),
            notDone("cannot write " + world.image + ": Too many levels of symbolic links"));
  EXPECT_TRUE(fs::is_symlink(world.image));
}

// The snapshot program would read such a name as options.
TEST(Capture, NamesTheFileByItsWholePath) {
  OneWindow world;
  const fs::path before = fs::current_path();
  fs::current_path(world.folder.path());
  const Outcome outcome = capture("101", "-shot.png");
  fs::current_path(before);
  EXPECT_EQ(outcome, (Outcome{0, "", ""}));
  ASSERT_EQ(world.askedFor().size(), 1U);
  EXPECT_EQ(world.askedFor().front().rfind(world.folder.path() + "/", 0), 0U);
  EXPECT_TRUE(fs::exists(world.folder.path() + "/-shot.png"));
}

TEST(Capture, WritesAFileWithTheLongestName) {
  OneWindow world;
  const std::string longest = world.folder.path() + "/" + std::string(255, 'x');
  EXPECT_EQ(capture("101", longest), (Outcome{0, "", ""}));
  EXPECT_TRUE(fs::exists(longest));
}

TEST(Capture, FailsWithoutTheSnapshotProgram) {
  OneWindow world;
  world.desktop.faults().missing_programs = {"screencapture"};
  const Outcome outcome = capture("101", world.image);
  EXPECT_EQ(outcome.exitStatus, 1);
  EXPECT_EQ(outcome.errors.rfind("background-window-capture: failed to start screencapture: ", 0),
            0U);
}

// Programs in the place of the system's.
void replaceSnapshotProgram(simulator::Desktop& desktop, simulator::ProgramMain main) {
  desktop.installProgram("/usr/sbin/screencapture", std::move(main));
}

TEST(Capture, DoesNotTrustTheExitStatusAlone) {
  OneWindow world;
  replaceSnapshotProgram(world.desktop, [](simulator::ProgramRun& run) { run.end(0); });
  EXPECT_EQ(capture("101", world.image), notDone("cannot capture window 101")) << "no file";
  for (const char* content : {"", "\x89PN", "a text that is no image"}) {
    replaceSnapshotProgram(world.desktop, [content](simulator::ProgramRun& run) {
      std::ofstream(run.arguments().back()) << content;
      run.end(0);
    });
    EXPECT_EQ(capture("101", world.image), notDone("cannot capture window 101")) << content;
  }
  EXPECT_EQ(filesIn(world.folder), 0U);
}

TEST(Capture, EndsASnapshotProgramThatHangs) {
  OneWindow world;
  bool wrote = false;
  replaceSnapshotProgram(world.desktop, [&wrote](simulator::ProgramRun& run) {
    std::ofstream(run.arguments().back()) << "half";
    run.after(60, [&wrote] { wrote = true; });
  });
  EXPECT_EQ(capture("101", world.image), notDone("screencapture exceeded 5.0s"));
  EXPECT_EQ(filesIn(world.folder), 0U);
  world.desktop.advanceTo(100);
  EXPECT_FALSE(wrote);
}

// A snapshot program that finishes its file although it was told to end.
simulator::ProgramMain writesAfterTermination(double seconds) {
  return [seconds](simulator::ProgramRun& run) {
    run.catchTermination([&run, seconds] {
      run.after(seconds, [&run] {
        std::ofstream(run.arguments().back()) << "late";
        run.end(0);
      });
    });
  };
}

TEST(Capture, WaitsForTheEndOfASnapshotProgramThatHung) {
  OneWindow world;
  replaceSnapshotProgram(world.desktop, writesAfterTermination(0.9));
  EXPECT_EQ(capture("101", world.image), notDone("screencapture exceeded 5.0s"));
  world.desktop.advanceTo(100);
  EXPECT_EQ(filesIn(world.folder), 0U);
}

TEST(Capture, GivesUpASnapshotProgramThatDoesNotEnd) {
  OneWindow world;
  replaceSnapshotProgram(world.desktop, writesAfterTermination(60));
  EXPECT_EQ(capture("101", world.image), notDone("screencapture exceeded 5.0s"));
  EXPECT_GE(world.now(), 5.9);
  EXPECT_LT(world.now(), 6.1);
}

// --- Signals to the helper itself. ---

constexpr std::array endingSignals{SIGHUP, SIGINT, SIGQUIT, SIGTERM};

// A snapshot program during which the helper receives a signal.
simulator::ProgramMain signalsTheHelper(int signal) {
  return [signal](simulator::ProgramRun& run) {
    std::ofstream(run.arguments().back()) << "\x89PNG\r\n\x1a\nhalf";
    run.after(1, [signal] { std::raise(signal); });
    run.after(2, [&run] { run.end(0); });
  };
}

TEST(Capture, LeavesNothingBehindWhenASignalEndsIt) {
  for (const int signal : endingSignals) {
    OneWindow world;
    replaceSnapshotProgram(world.desktop, signalsTheHelper(signal));
    EXPECT_EXIT(capture("101", world.image), ::testing::KilledBySignal(signal), "") << signal;
    EXPECT_EQ(filesIn(world.folder), 0U) << signal;
  }
}

// As under nohup.
TEST(Capture, DoesNotMindASignalThatItsCallerIgnores) {
  OneWindow world;
  replaceSnapshotProgram(world.desktop, signalsTheHelper(SIGHUP));
  std::signal(SIGHUP, SIG_IGN);
  EXPECT_EQ(capture("101", world.image), (Outcome{0, "", ""}));
  EXPECT_EQ(std::signal(SIGHUP, SIG_DFL), SIG_IGN);
}

TEST(Capture, LeavesSignalsAsTheyWere) {
  OneWindow world;
  EXPECT_EQ(capture("101", world.image), (Outcome{0, "", ""}));
  for (const int signal : endingSignals) {
    EXPECT_EQ(std::signal(signal, SIG_DFL), SIG_DFL) << signal;
  }
}

}  // namespace
}  // namespace tessarine::test
