#include "commands/choose_folder_by_events.h"

#include <gmock/gmock.h>

#include <algorithm>

#include "panels/reported_desktop.h"
#include "support/transcript.h"

namespace tessarine::test {
namespace {

using ::testing::ElementsAre;

constexpr const char* frame = "100,100,800,600";

// Panel windows that are listed until the tool has posted an event so many times.
struct CapturedPanel : ReportedDesktop {
  std::string closer;
  long times = 1;

  CapturedPanel(const std::string& listed, const std::string& closedBy, long closedAfter = 1)
      : closer(closedBy), times(closedAfter) {
    desktop.setScreens({{0, 0, 1440, 900}});
    windows = listed;
    processes = "  900 " + std::string(chromeService) + "\n";
    desktop.installProgram("background-window-capture", [this](simulator::ProgramRun& run) {
      const auto events = postedEventKinds(desktop.record());
      if (std::count(events.begin(), events.end(), closer) < times) run.print(windows);
      run.end(0);
    });
  }
  Result choose() {
    return chooseFolderByBackgroundEvents(browserPid, "/u", 1, "no dialog", "/vol", "Vol", {"u"},
                                          "u", false);
  }
};

std::string browsersWindow() {
  return windowLine("7", browserPid, "Google Chrome", "Open", frame);
}

std::string servicesWindow() {
  return windowLine("8", servicePid, chromeService, "Open", frame);
}

Result closedBy(std::int32_t pid, int window) {
  return {{"ok", true},
          {"command", "choose-folder"},
          {"path", "/u"},
          {"volumeRoot", "/vol"},
          {"volumeDisplayName", "Vol"},
          {"components", {"u"}},
          {"searchQuery", "u"},
          {"strategy", "background-window-capture-cgevent"},
          {"dialogPid", pid},
          {"panelWindowID", window},
          {"panelFrame", {{"x", 100.0}, {"y", 100.0}, {"width", 800.0}, {"height", 600.0}}},
          {"axWaitError", "no dialog"}};
}

TEST(ChooseFolderByBackgroundEvents, ClosesThePanelByTheTypedPath) {
  CapturedPanel panel(browsersWindow(), "key 36 up -> 812");
  EXPECT_EQ(panel.choose(), closedBy(browserPid, 7));
  EXPECT_THAT(
      transcript(panel.desktop.record()),
      ElementsAre("0.000 mouse down 1 (500, 400) -> 812", "0.050 mouse up 1 (500, 400) -> 812",
                  "0.180 key 5+120000 down -> 812", "0.020 key 5+120000 up -> 812",
                  "0.500 key 0+100000 down -> 812", "0.020 key 0+100000 up -> 812",
                  "0.050 key 51 down -> 812", "0.020 key 51 up -> 812",
                  "0.050 key 0 text=/ down -> 812", "0.020 key 0 text=/ up -> 812",
                  "0.050 key 0 text=u down -> 812", "0.020 key 0 text=u up -> 812",
                  "0.050 key 36 down -> 812", "0.020 key 36 up -> 812"));
}

TEST(ChooseFolderByBackgroundEvents, ClosesThePanelByEachOfTheFourPoints) {
  const std::vector<std::pair<int, int>> points{{832, 657}, {812, 657}, {832, 640}, {804, 640}};
  for (const auto& [x, y] : points) {
    const std::string click =
        "mouse up 1 (" + std::to_string(x) + ", " + std::to_string(y) + ") -> 812";
    CapturedPanel panel(browsersWindow(), click);
    Result expected = closedBy(browserPid, 7);
    expected["choosePoint"] = {{"x", double(x)}, {"y", double(y)}};
    EXPECT_EQ(panel.choose(), expected) << click;
    EXPECT_EQ(postedEventKinds(panel.desktop.record()).back(), click);
  }
}

TEST(ChooseFolderByBackgroundEvents, ClosesThePanelByTheSecondReturn) {
  CapturedPanel panel(browsersWindow(), "key 36 up -> 812", 2);
  EXPECT_EQ(panel.choose(), closedBy(browserPid, 7));
  EXPECT_EQ(panel.desktop.record().mouseEvents(), 10U);
}

TEST(ChooseFolderByBackgroundEvents, SkipsThePointsThatNoScreenShows) {
  CapturedPanel panel(browsersWindow(), "key 36 up -> 812", 2);
  panel.desktop.setScreens({{0, 0, 700, 500}});
  EXPECT_EQ(panel.choose(), closedBy(browserPid, 7));
  EXPECT_EQ(panel.desktop.record().mouseEvents(), 2U);
}

TEST(ChooseFolderByBackgroundEvents, ClosesThePanelByTheSecondProcess) {
  CapturedPanel panel(servicesWindow(), "key 36 up -> 812");
  EXPECT_EQ(panel.choose(), closedBy(browserPid, 8));
}

TEST(ChooseFolderByBackgroundEvents, FailsWithEveryAttemptWhenThePanelStays) {
  CapturedPanel own(browsersWindow(), "nothing");
  EXPECT_EQ(messageOf([&] { own.choose(); }),
            "background CGEvent folder selection did not close the captured panel; attempted: "
            "[\"window=7,pid=812,frame=100.0,100.0,800.0,600.0\"]; AX error: no dialog");
  EXPECT_EQ(own.desktop.record().sessionEvents(), 0U);

  CapturedPanel service(servicesWindow(), "nothing");
  EXPECT_EQ(messageOf([&] { service.choose(); }),
            "background CGEvent folder selection did not close the captured panel; attempted: "
            "[\"window=8,pid=900,frame=100.0,100.0,800.0,600.0\", "
            "\"window=8,pid=812,frame=100.0,100.0,800.0,600.0\"]; AX error: no dialog");
}

}  // namespace
}  // namespace tessarine::test
