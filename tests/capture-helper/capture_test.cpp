// `background-window-capture capture`.
#include <gtest/gtest.h>

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
  EXPECT_EQ(capture("101", nowhere), notDone("cannot capture window 101"));
  const std::string folder = world.folder.makeFolder("page.png");
  EXPECT_EQ(capture("101", folder), notDone("cannot write " + folder + ": Is a directory"));
  EXPECT_EQ(filesIn(world.folder), 1U);
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

}  // namespace
}  // namespace tessarine::test
