#include "panels/panel_clicks.h"

#include <gmock/gmock.h>

#include "panels/reported_desktop.h"
#include "support/transcript.h"

namespace tessarine::test::panel_clicks {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using Points = std::vector<Point>;

PanelWindowRef windowAt(const Rect& frame, std::int32_t pid = servicePid) {
  return {7, pid, chromeService, "Open", frame};
}

// A desktop with these screens, one of 1440 x 900 by default.
struct Screens : BareDesktop {
  explicit Screens(std::vector<simulator::Rect> frames = {{0, 0, 1440, 900}}) {
    desktop.setScreens(std::move(frames));
  }
};

Points choosePointsIn(const Rect& frame) {
  const Screens screens;
  return panelChoosePoints(windowAt(frame));
}

Point contentPointIn(const Rect& frame) {
  const Screens screens;
  return panelContentPoint(windowAt(frame));
}

TEST(PanelChoosePoints, AreFourOffsetsFromTheBottomRightCorner) {
  EXPECT_EQ(choosePointsIn({320, 180, 800, 450}),
            (Points{{1052, 587}, {1032, 587}, {1052, 570}, {1024, 570}}));
}

TEST(PanelChoosePoints, LeaveOutThoseOffTheScreenInOrder) {
  EXPECT_EQ(choosePointsIn({700, 500, 800, 450}), (Points{{1432, 890}, {1404, 890}}));
  EXPECT_EQ(choosePointsIn({720, 180, 800, 450}), (Points{{1432, 587}, {1424, 570}}));
  EXPECT_EQ(choosePointsIn({730, 500, 800, 450}), (Points{{1434, 890}}));
  EXPECT_EQ(choosePointsIn({3000, 180, 800, 450}), Points{});
}

// The left and top edges of a screen belong to it, the right and bottom ones do not.
TEST(PanelChoosePoints, CountTheEdgesOfAScreenAsTheSystemDoes) {
  EXPECT_EQ(choosePointsIn({708, 180, 800, 450}), (Points{{1420, 587}, {1412, 570}}));
  EXPECT_EQ(choosePointsIn({-732, 180, 800, 450}), (Points{{0, 587}, {0, 570}}));
}

TEST(PanelChoosePoints, MayLieOnAnyScreen) {
  const Screens screens({{0, 0, 1440, 900}, {1440, 0, 1000, 900}});
  EXPECT_EQ(panelChoosePoints(windowAt({720, 180, 800, 450})),
            (Points{{1452, 587}, {1432, 587}, {1452, 570}, {1424, 570}}));
}

TEST(PanelContentPoint, LiesInTheMiddleOfWhatIsVisible) {
  EXPECT_EQ(contentPointIn({320, 180, 800, 450}), (Point{720, 405}));
  EXPECT_EQ(contentPointIn({320, 800, 800, 450}), (Point{720, 850}));   // 100 points show
  EXPECT_EQ(contentPointIn({320, -250, 800, 450}), (Point{720, 100}));  // the lower 200
}

TEST(PanelContentPoint, StaysTwentyFourPointsBelowTheTop) {
  EXPECT_EQ(contentPointIn({320, 860, 800, 450}), (Point{720, 884}));  // 40 points show
  EXPECT_EQ(contentPointIn({320, 870, 800, 450}), (Point{720, 894}));  // 30 points show
  EXPECT_EQ(contentPointIn({320, 180, 800, 30}), (Point{720, 204}));
}

TEST(PanelContentPoint, IsTheFramesCentreWhereHardlyAnythingShows) {
  EXPECT_EQ(contentPointIn({320, 870.5, 800, 450}), (Point{720, 1095.5}));  // 29.5 points show
  EXPECT_EQ(contentPointIn({320, 880, 800, 450}), (Point{720, 1105}));      // 20 points show
  EXPECT_EQ(contentPointIn({320, 180, 800, 20}), (Point{720, 190}));
  EXPECT_EQ(contentPointIn({3000, 180, 800, 450}), (Point{3400, 405}));  // nothing shows
}

TEST(PanelContentPoint, StaysFourPointsFromTheSides) {
  EXPECT_EQ(contentPointIn({-700, 180, 800, 450}), (Point{4, 405}));
  EXPECT_EQ(contentPointIn({1400, 180, 800, 450}), (Point{1436, 405}));
  EXPECT_EQ(contentPointIn({1434, 180, 800, 450}), (Point{1436, 405}));  // 6 points show
  EXPECT_EQ(contentPointIn({-794, 180, 800, 450}), (Point{2, 405}));     // 6 points show
}

TEST(PanelContentPoint, IsOnTheFirstScreenThatShowsAPart) {
  const Screens screens({{0, 0, 1440, 900}, {1440, 0, 1000, 900}});
  EXPECT_EQ(panelContentPoint(windowAt({1300, 180, 800, 450})), (Point{1436, 405}));
  EXPECT_EQ(panelContentPoint(windowAt({1500, 180, 800, 450})), (Point{1900, 405}));
}

// Where the main display is at the origin it is a screen like the others. Set off from it, it spans
// 100 to 1000 as a display and -100 to 800 as a screen, which leaves 140 points of the panel.
TEST(PanelContentPoint, IsOnTheMainDisplayWhenNoScreenShowsThePanel) {
  const Screens screens({{0, 100, 1440, 900}});
  EXPECT_EQ(panelContentPoint(windowAt({320, 860, 800, 450})), (Point{720, 930}));
}

TEST(PanelEventPIDs, AreTheOwnerAndTheBrowserOnceEach) {
  EXPECT_THAT(panelEventPIDs(windowAt({}, 900), 812), ElementsAre(900, 812));
  EXPECT_THAT(panelEventPIDs(windowAt({}, 812), 812), ElementsAre(812));
}

TEST(ClickPanelContent, ClicksOnceAndPauses) {
  const Screens toProcess;
  clickPanelContent(windowAt({320, 180, 800, 450}), 812, false);
  EXPECT_THAT(
      transcript(toProcess.desktop.record()),
      ElementsAre("0.000 mouse down 1 (720, 405) -> 812", "0.050 mouse up 1 (720, 405) -> 812"));
  EXPECT_DOUBLE_EQ(toProcess.now(), 0.05 + 0.18);
}

TEST(ClickPanelContent, ClicksThroughTheSessionWhenGlobal) {
  const Screens screens;
  clickPanelContent(windowAt({320, 860, 800, 450}), 812, true);
  EXPECT_THAT(transcript(screens.desktop.record()),
              ElementsAre("0.000 mouse down 1 (720, 884) -> session",
                          "0.050 mouse up 1 (720, 884) -> session"));
}

// Two panel windows, the service's before the larger one of the browser.
struct TwoWindows : ReportedDesktop {
  TwoWindows() {
    desktop.setScreens({{0, 0, 1440, 900}});
    windows = windowLine("5", 812, "Google Chrome", "Open", "100,100,800,450") +
              windowLine("6", 900, chromeService, "Open", "0,0,400,500");
  }
};

TEST(ClickBackgroundPanelWindow, ClicksTheCentreOfTheProcesssOwnWindow) {
  const TwoWindows world;
  clickBackgroundPanelWindow(812, 812);
  clickBackgroundPanelWindow(812, 900);
  EXPECT_THAT(
      transcript(world.desktop.record()),
      ElementsAre("0.000 mouse down 1 (500, 325) -> 812", "0.050 mouse up 1 (500, 325) -> 812",
                  "0.180 mouse down 1 (200, 250) -> 900", "0.050 mouse up 1 (200, 250) -> 900"));
}

TEST(ClickBackgroundPanelWindow, ClicksThePreferredOfSeveralWindowsOfTheProcess) {
  TwoWindows world;
  world.windows = windowLine("5", 901, chromeService, "Open", "0,0,1400,800") +
                  windowLine("6", 900, chromeService, "Open", "0,0,400,500") +
                  windowLine("7", 900, chromeService, "Open", "100,100,800,450") +
                  windowLine("8", 900, chromeService, "Open", "0,0,400,300");
  clickBackgroundPanelWindow(812, 900);
  EXPECT_THAT(postedEventKinds(world.desktop.record()),
              ElementsAre("mouse down 1 (500, 325) -> 900", "mouse up 1 (500, 325) -> 900"));
}

// The middle of what shows would be (1300, 700).
TEST(ClickBackgroundPanelWindow, ClicksTheCentreOfAFrameThatIsHalfOffTheScreen) {
  TwoWindows world;
  world.windows = windowLine("6", 900, chromeService, "Open", "900,500,800,600");
  clickBackgroundPanelWindow(812, 900);
  EXPECT_THAT(postedEventKinds(world.desktop.record()),
              ElementsAre("mouse down 1 (1300, 800) -> 900", "mouse up 1 (1300, 800) -> 900"));
}

TEST(ClickBackgroundPanelWindow, ClicksThePreferredWindowForAProcessWithoutOne) {
  const TwoWindows world;
  clickBackgroundPanelWindow(812, 77);
  EXPECT_THAT(postedEventKinds(world.desktop.record()),
              ElementsAre("mouse down 1 (200, 250) -> 77", "mouse up 1 (200, 250) -> 77"));
}

TEST(ClickBackgroundPanelWindow, DoesNothingWithoutAPanelOnTheScreen) {
  TwoWindows world;
  world.windows = windowLine("6", 900, chromeService, "Open", "3000,0,400,500");
  clickBackgroundPanelWindow(812, 900);
  EXPECT_THAT(postedEventKinds(world.desktop.record()), IsEmpty());
  EXPECT_THAT(sleepLengths(world.desktop.record()), IsEmpty());
}

}  // namespace
}  // namespace tessarine::test::panel_clicks
