#include "panels/panel_close.h"

#include <gmock/gmock.h>

#include <filesystem>
#include <fstream>

#include "panels/reported_desktop.h"
#include "platform/files.h"
#include "platform/own_process.h"
#include "support/transcript.h"

namespace tessarine::test::panel_close {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::MatchesRegex;

constexpr const char* frameText = "320,180,800,450";
const Rect frame{320, 180, 800, 450};

std::string serviceLine(const std::string& number, const std::string& at = frameText) {
  return windowLine(number, servicePid, chromeService, "Open", at);
}
std::string browserLine(const std::string& number, const std::string& at = frameText) {
  return windowLine(number, browserPid, "Google Chrome", "Open", at);
}
PanelWindowRef serviceWindow(std::uint32_t number) {
  return {number, servicePid, chromeService, "Open", frame};
}

// A look at the window list takes 0.05 s, a snapshot 0.03 s.
struct Panels : ReportedDesktop {
  explicit Panels(const std::string& lines = "") {
    desktop.setScreens({{0, 0, 1440, 900}});
    windows = lines;
  }
  std::size_t looks() const { return startsOf({"list"}).size(); }

  // The window numbers of which a snapshot was asked for, in order.
  std::vector<std::string> snapshots() const {
    std::vector<std::string> numbers;
    for (const auto& line : desktop.record().lines()) {
      const auto* started = std::get_if<simulator::ProgramStarted>(&line.entry);
      if (started != nullptr && started->arguments.front() == "capture") {
        numbers.push_back(started->arguments.at(2));
      }
    }
    return numbers;
  }
};

// --- Snapshots. ---

TEST(PanelCaptureAvailable, AsksForASnapshotInTheTemporaryFolderAndRemovesIt) {
  BareDesktop world;
  std::vector<std::string> asked;
  world.desktop.installProgram("background-window-capture", [&](simulator::ProgramRun& run) {
    asked = run.arguments();
    std::ofstream(asked.back()) << "image";
    EXPECT_TRUE(std::filesystem::exists(asked.back()));
    run.end(0);
  });
  EXPECT_TRUE(panelCaptureAvailable(serviceWindow(4294967295U)));
  const std::string name = "zorvilet-panel-" + std::to_string(ownPid()) +
                           "-4294967295-[0-9A-F]{8}-[0-9A-F]{4}-[0-9A-F]{4}-[0-9A-F]{4}"
                           "-[0-9A-F]{12}\\.png";
  EXPECT_THAT(asked, ElementsAre("capture", "--window-id", "4294967295", "--out",
                                 MatchesRegex(".*/" + name)));
  EXPECT_TRUE(std::filesystem::equivalent(std::filesystem::path(asked.back()).parent_path(),
                                          std::filesystem::temp_directory_path()));
  EXPECT_FALSE(std::filesystem::exists(asked.back()));
}

TEST(PanelCaptureAvailable, RemovesWhatAFailedSnapshotLeftBehind) {
  BareDesktop world;
  std::string file;
  world.desktop.installProgram("background-window-capture", [&](simulator::ProgramRun& run) {
    file = run.arguments().back();
    std::ofstream(file) << "half an image";
    run.end(1);
  });
  EXPECT_FALSE(panelCaptureAvailable(serviceWindow(7)));
  EXPECT_FALSE(std::filesystem::exists(file));
}

TEST(PanelCaptureAvailable, IsTheHelpersExitStatus) {
  Panels world;
  EXPECT_TRUE(panelCaptureAvailable(serviceWindow(7)));
  world.captureStatus = 3;
  EXPECT_FALSE(panelCaptureAvailable(serviceWindow(7)));
  EXPECT_THAT(world.snapshots(), ElementsAre("7", "7"));
}

TEST(PanelCaptureAvailable, RunsNothingForAWindowWithoutANumber) {
  const Panels world;
  EXPECT_FALSE(panelCaptureAvailable(serviceWindow(0)));
  EXPECT_THAT(world.desktop.record().lines(), IsEmpty());
}

TEST(PanelCaptureAvailable, IsFalseWithoutTheHelper) {
  const BareDesktop world;
  EXPECT_FALSE(panelCaptureAvailable(serviceWindow(7)));
}

// --- Tracked windows. ---

TEST(WaitForTrackedPanelClose, IsFalseAtOnceWhenNothingIsTracked) {
  const Panels world;
  EXPECT_FALSE(waitForTrackedPanelClose(browserPid, {}, 0.8));
  EXPECT_THAT(world.desktop.record().lines(), IsEmpty());
  EXPECT_EQ(world.now(), 0);
}

TEST(WaitForTrackedPanelClose, KnowsAWindowByItsNumberOrElseByOwnerAndFrame) {
  struct Row {
    std::uint32_t tracked;
    std::string listed;
    bool closed;
  };
  const std::vector<Row> rows{
      {7, "", true},
      {7, serviceLine("7", "0,0,400,300"), false},
      {7, serviceLine("8"), true},
      {7, browserLine("7"), false},
      {0, serviceLine("7"), false},
      {7, serviceLine("0"), false},
      {0, serviceLine("0"), false},
      {0, browserLine("0"), true},
      {7, serviceLine("0", "320,180,800,451"), true},
      {7, serviceLine("7", "3000,180,800,450"), true},  // on no screen
  };
  for (const Row& row : rows) {
    const Panels world(row.listed);
    EXPECT_EQ(waitForTrackedPanelClose(browserPid, {serviceWindow(row.tracked)}, 0.3), row.closed)
        << row.tracked << " " << row.listed;
  }
}

TEST(WaitForTrackedPanelClose, WaitsForTheLastOfTheTrackedWindows) {
  const Panels world(serviceLine("3", "0,0,500,500") + serviceLine("8"));
  EXPECT_FALSE(waitForTrackedPanelClose(browserPid, {serviceWindow(7), serviceWindow(8)}, 0.3));
  EXPECT_TRUE(waitForTrackedPanelClose(browserPid, {serviceWindow(7), serviceWindow(9)}, 0.3));
}

// Looks begin at 0, 0.17, 0.34, 0.51 and 0.68 s.
TEST(WaitForTrackedPanelClose, LooksEvery120MillisecondsUntilTheTimeIsUp) {
  const Panels world(serviceLine("7"));
  EXPECT_FALSE(waitForTrackedPanelClose(browserPid, {serviceWindow(7)}, 0.8));
  EXPECT_EQ(world.looks(), 5U);
  EXPECT_THAT(sleepLengths(world.desktop.record()), ElementsAre("0.12"));
}

TEST(WaitForTrackedPanelClose, IsTrueAsSoonAsTheWindowHasGone) {
  Panels world(serviceLine("7"));
  world.desktop.schedule(0.3, [&world] { world.windows.clear(); });
  EXPECT_TRUE(waitForTrackedPanelClose(browserPid, {serviceWindow(7)}, 0.8));
  EXPECT_EQ(world.looks(), 3U);
}

// --- Windows of the browser that can be captured. ---

TEST(WaitForCapturedPanelClose, IsTrueAtOnceWhenOnlyTheServiceShowsAPanel) {
  const Panels world(serviceLine("7"));
  EXPECT_TRUE(waitForCapturedPanelClose(browserPid, 0.8));
  EXPECT_EQ(world.looks(), 1U);
  EXPECT_THAT(world.snapshots(), IsEmpty());
}

TEST(WaitForCapturedPanelClose, CountsAWindowThatCannotBeCapturedAsClosed) {
  Panels world(browserLine("7") + browserLine("8", "0,0,400,300") + serviceLine("9"));
  world.captureStatus = 1;
  EXPECT_TRUE(waitForCapturedPanelClose(browserPid, 0.8));
  EXPECT_EQ(world.looks(), 1U);
  EXPECT_THAT(world.snapshots(), ElementsAre("7", "8"));
}

TEST(WaitForCapturedPanelClose, CountsAWindowOnNoScreenAsClosed) {
  const Panels world(browserLine("7", "3000,180,800,450"));
  EXPECT_TRUE(waitForCapturedPanelClose(browserPid, 0.8));
  EXPECT_EQ(world.looks(), 1U);
  EXPECT_THAT(world.snapshots(), IsEmpty());
}

TEST(WaitForCapturedPanelClose, CountsAWindowWithoutANumberAsClosed) {
  const Panels world(browserLine("0"));
  EXPECT_TRUE(waitForCapturedPanelClose(browserPid, 0.8));
  EXPECT_THAT(world.snapshots(), IsEmpty());
}

// Looks begin at 0, 0.2 and 0.4 s; the first window that can be captured is enough.
TEST(WaitForCapturedPanelClose, LooksEvery120MillisecondsUntilTheTimeIsUp) {
  const Panels world(browserLine("7") + browserLine("8", "0,0,400,300"));
  EXPECT_FALSE(waitForCapturedPanelClose(browserPid, 0.5));
  EXPECT_EQ(world.looks(), 3U);
  EXPECT_THAT(world.snapshots(), ElementsAre("7", "7", "7"));
  EXPECT_THAT(sleepLengths(world.desktop.record()), ElementsAre("0.12"));
}

TEST(WaitForCapturedPanelClose, IsTrueAsSoonAsTheWindowHasGone) {
  Panels world(browserLine("7"));
  world.desktop.schedule(0.3, [&world] { world.windows.clear(); });
  EXPECT_TRUE(waitForCapturedPanelClose(browserPid, 0.8));
  EXPECT_EQ(world.looks(), 3U);
}

// --- Any captured window. ---

TEST(WaitForPanelClose, IsTrueOnceNothingIsListed) {
  Panels world(serviceLine("7"));
  EXPECT_FALSE(waitForPanelClose(browserPid, 0.5));
  world.windows = browserLine("8");
  EXPECT_FALSE(waitForPanelClose(browserPid, 0.5));
  world.windows = serviceLine("7", "3000,180,800,450");  // on no screen
  EXPECT_TRUE(waitForPanelClose(browserPid, 0.5));
}

// Looks begin at 0, 0.2, 0.4, 0.6 and 0.8 s.
TEST(WaitForPanelClose, LooksEvery150MillisecondsUntilTheTimeIsUp) {
  const Panels world(serviceLine("7"));
  EXPECT_FALSE(waitForPanelClose(browserPid, 0.9));
  EXPECT_EQ(world.looks(), 5U);
  EXPECT_THAT(sleepLengths(world.desktop.record()), ElementsAre("0.15"));
}

TEST(PanelCloseWaits, LookNotOnceWhenThereIsNoTime) {
  const Panels world;
  EXPECT_FALSE(waitForPanelClose(browserPid, 0));
  EXPECT_FALSE(waitForCapturedPanelClose(browserPid, -1));
  EXPECT_FALSE(waitForTrackedPanelClose(browserPid, {serviceWindow(7)}, 0));
  EXPECT_THAT(world.desktop.record().lines(), IsEmpty());
}

}  // namespace
}  // namespace tessarine::test::panel_close
