// Which of the listed windows are Open panels, and in which order they are preferred.
#include "panels/capture.h"

#include <gmock/gmock.h>

#include "core/tables.h"
#include "panels/reported_desktop.h"

namespace tessarine::test {
namespace {

using Pids = std::vector<std::int32_t>;
using Texts = std::vector<std::string>;

// "456 of 77"
std::string described(const PanelWindowRef& window) {
  return std::to_string(window.windowID) + " of " + std::to_string(window.pid);
}

Texts described(const std::vector<PanelWindowRef>& windows) {
  Texts texts;
  for (const auto& window : windows) texts.push_back(described(window));
  return texts;
}

// The windows kept of those that the helper lists.
Texts kept(const std::string& listing, std::int32_t primaryPid = browserPid) {
  ReportedDesktop world;
  world.windows = listing;
  return described(backgroundOpenPanelWindows(primaryPid));
}

std::string serviceLine(const std::string& number, const std::string& frame, int pid = 77) {
  return windowLine(number, pid, chromeService, "Open", frame);
}

// A line that is kept as it stands, with one piece of it replaced.
std::string lineWith(const std::string& piece, const std::string& by) {
  std::string line = serviceLine("456", "10,20,800,600");
  return line.replace(line.find(piece), piece.size(), by);
}

const Texts panel456{"456 of 77"};
const Texts none;

TEST(PanelCapture, ReadsEveryFieldOfAWindow) {
  ReportedDesktop world;
  world.windows = serviceLine("456", "-10,20.5,800,600");
  const auto windows = backgroundOpenPanelWindows(browserPid);
  ASSERT_EQ(described(windows), panel456);
  EXPECT_EQ(windows[0].app, chromeService);
  EXPECT_EQ(windows[0].title, "Open");
  EXPECT_EQ(windows[0].frame, (Rect{-10, 20.5, 800, 600}));
}

TEST(PanelCapture, KeepsAServiceWindowWhoeverThePrimaryProcessIs) {
  const std::string line = serviceLine("456", "10,20,800,600");
  EXPECT_EQ(kept(line), panel456);
  EXPECT_EQ(kept(line, 77), panel456);
}

TEST(PanelCapture, KeepsABrowserWindowOnlyOfThePrimaryProcess) {
  const std::string line = windowLine("456", 77, "Google Chrome", "Open", "10,20,800,600");
  EXPECT_EQ(kept(line), none);
  EXPECT_EQ(kept(line, 77), panel456);
}

TEST(PanelCapture, ExpectsTheNamesOfThePrimaryBrowser) {
  ReportedDesktop world;
  world.command = "/Applications/Microsoft Edge.app/Contents/MacOS/Microsoft Edge";
  const char* service = "Open and Save Panel Service (Microsoft Edge)";
  world.windows = serviceLine("1", "0,0,100,100") +
                  windowLine("2", 77, service, "Open", "0,0,100,100") +
                  windowLine("3", browserPid, "Google Chrome", "Open", "0,0,100,100") +
                  windowLine("4", browserPid, "Microsoft Edge", "Open", "0,0,100,100");
  EXPECT_EQ(described(backgroundOpenPanelWindows(browserPid)), (Texts{"2 of 77", "4 of 812"}));
}

TEST(PanelCapture, MatchesTheOwnersNameAsAWhole) {
  EXPECT_EQ(kept(lineWith("(Google Chrome)", "(google chrome)")), none);
  EXPECT_EQ(kept(lineWith("(Google Chrome)", "(Google Chrome) ")), none);
  EXPECT_EQ(kept(lineWith("(Google Chrome)", "(Google Chrome Dev)")), none);
}

TEST(PanelCapture, MatchesTheTitleAsAWhole) {
  EXPECT_EQ(kept(lineWith("title=Open", "title=打开")), panel456);
  for (const char* title : {"Open ", "open", "Öffnen", "Open File", ""}) {
    EXPECT_EQ(kept(lineWith("title=Open", std::string("title=") + title)), none) << title;
  }
}

TEST(PanelCapture, DropsALineThatHoldsOnlyAWindowNumber) {
  EXPECT_EQ(kept("456\n"), none);
}

TEST(PanelCapture, DropsAWindowWithoutAPositivePid) {
  for (const char* pid : {"pid=0", "pid=-77", "pid=x", "pid=77 ", "pid=2147483648", "owner=77"}) {
    EXPECT_EQ(kept(lineWith("pid=77", pid)), none) << pid;
  }
}

TEST(PanelCapture, DropsAWindowThatIsNotLargerThanTenPoints) {
  const auto keptWith = [](const std::string& size) {
    return kept(serviceLine("456", "10,20," + size));
  };
  EXPECT_EQ(keptWith("10,600"), none);
  EXPECT_EQ(keptWith("800,10"), none);
  EXPECT_EQ(keptWith("-800,-600"), none);
  EXPECT_EQ(keptWith("10.5,10.5"), panel456);
}

TEST(PanelCapture, DropsAWindowWhoseFrameCannotBeRead) {
  for (const char* frame : {"10,20,800", "10,20,800,600,1", "10,20,800, 600", "10,20,800,x", ""}) {
    EXPECT_EQ(kept(serviceLine("456", frame)), none) << frame;
  }
}

TEST(PanelCapture, AWindowNumberThatCannotBeReadIsZero) {
  for (const char* number : {"x", "-1", "4.5", "456 ", "4294967296", "number=456"}) {
    EXPECT_EQ(kept(serviceLine(number, "10,20,800,600")), Texts{"0 of 77"}) << number;
  }
  EXPECT_EQ(kept(serviceLine("4294967295", "10,20,800,600")), Texts{"4294967295 of 77"});
}

TEST(PanelCapture, ReadsTheFirstFieldAsNothingButANumber) {
  EXPECT_EQ(kept(lineWith("456\t", "")), none);  // its pid stands first
}

TEST(PanelCapture, ReadsFieldsInAnyOrderAndIgnoresOthers) {
  EXPECT_EQ(kept(lineWith("\tpid=77", "") + "\n"), none);
  EXPECT_EQ(kept(lineWith("\n", "\tlayer=8\tPID=1\t pid=2\tTitle=x\n")), panel456);
  EXPECT_EQ(kept(lineWith("456\tpid=77", "456\t\tlayer=8\t\tpid=77")), panel456);
  EXPECT_EQ(kept(std::string("456\tframe=10,20,800,600\ttitle=Open\tapp=") + chromeService +
                 "\tpid=77\n"),
            panel456);
}

TEST(PanelCapture, TheLaterOfTwoFieldsWithTheSameKeyWins) {
  EXPECT_EQ(kept(lineWith("pid=77", "pid=1\tpid=77")), panel456);
  EXPECT_EQ(kept(lineWith("title=Open", "title=Open\ttitle=Save")), none);
  EXPECT_EQ(kept(lineWith("frame=10,20,800,600", "frame=10,20,800,600\tframe=10,20")), none);
}

TEST(PanelCapture, DropsAWindowWhoseNumberIsExcluded) {
  ReportedDesktop world;
  tables().excludedPanelWindowIDs = {456};
  world.windows = serviceLine("456", "10,20,800,600") + serviceLine("457", "10,20,900,600");
  EXPECT_EQ(described(backgroundOpenPanelWindows(browserPid)), Texts{"457 of 77"});
}

TEST(PanelCapture, NeverExcludesAWindowWithoutANumber) {
  ReportedDesktop world;
  tables().excludedPanelWindowIDs = {0, 456};
  world.windows = serviceLine("0", "10,20,800,600");
  EXPECT_EQ(described(backgroundOpenPanelWindows(browserPid)), Texts{"0 of 77"});
}

TEST(PanelCapture, KeepsTheFirstOfWindowsWithTheSameNumber) {
  EXPECT_EQ(kept(serviceLine("5", "0,0,100,100") + serviceLine("5", "50,0,100,100", 78)),
            Texts{"5 of 77"});
}

TEST(PanelCapture, KeepsTheFirstOfWindowsAtTheSamePlaceOfTheSameProcess) {
  for (const char* second : {"6", "0"}) {
    EXPECT_EQ(kept(serviceLine("5", "0,0,100,100") + serviceLine(second, "0,0,100,100")),
              Texts{"5 of 77"});
  }
  EXPECT_EQ(kept(serviceLine("0", "0,0,100,100") + serviceLine("6", "0,0,100,100")),
            Texts{"0 of 77"});
}

TEST(PanelCapture, KeepsWindowsThatDifferInPlaceOrProcess) {
  EXPECT_EQ(kept(serviceLine("0", "0,0,100,100") + serviceLine("0", "0,0,100,101") +
                 serviceLine("0", "0,0,100,100", 78)),
            (Texts{"0 of 77", "0 of 77", "0 of 78"}));
}

// Window 6 counts in the first pass, by its number, so that it takes the second window 6 with it;
// the second pass then drops it for standing where window 5 stands.
TEST(PanelCapture, ComparesNumbersBeforePlaces) {
  EXPECT_EQ(kept(serviceLine("5", "0,0,100,100") + serviceLine("6", "0,0,100,100") +
                 serviceLine("6", "50,0,100,100")),
            Texts{"5 of 77"});
}

TEST(PanelCapture, KeepsTheHelpersOrder) {
  EXPECT_EQ(kept(serviceLine("9", "0,0,100,100") + "\n\n" + serviceLine("3", "0,0,900,900") +
                 serviceLine("6", "0,0,400,400")),
            (Texts{"9 of 77", "3 of 77", "6 of 77"}));
}

TEST(PanelCapture, MeansNoWindowsWhenTheHelperIsMissingOrPrintsGarbage) {
  BareDesktop withoutHelper;
  EXPECT_EQ(described(backgroundOpenPanelWindows(browserPid)), none);
  EXPECT_EQ(kept(""), none);
  EXPECT_EQ(kept("usage: something\n\t\t\n,,,,\n"), none);
  EXPECT_EQ(kept(serviceLine("5", "0,0,100,100") + "\xFF\n"), none);
}

TEST(PanelCapture, ReadsTheOutputOfAHelperThatFails) {
  ReportedDesktop world;
  world.windows = serviceLine("456", "10,20,800,600");
  world.captureStatus = 1;
  EXPECT_EQ(described(backgroundOpenPanelWindows(browserPid)), panel456);
}

TEST(PanelCapture, RunsTheHelperAfreshWithTheArgumentListAlone) {
  ReportedDesktop world;
  backgroundOpenPanelWindows(browserPid);
  backgroundOpenPanelWindows(browserPid);
  EXPECT_EQ(world.startsOf({"list"}).size(), 2U);
}

TEST(PanelCapture, ReadsAFrameOfExactlyFourWholeNumbers) {
  EXPECT_EQ(parseCaptureFrame("-1.5,2e2,0,4"), (Rect{-1.5, 200, 0, 4}));
  EXPECT_EQ(parseCaptureFrame(",1,,2,3,4,"), (Rect{1, 2, 3, 4}));
  for (const char* text : {"", "1,2,3", "1,2,3,4,5", "1,2,3,4x", " 1,2,3,4", "1,2,3,4 ", "1, 2,3,4",
                           "1 ,2,3,4", "1,2,3,-", "a,b,c,d", "1;2;3;4"}) {
    EXPECT_EQ(parseCaptureFrame(text), std::nullopt) << text;
  }
}

// --- Windows on a screen. ---

Texts ordered(const std::string& listing) {
  ReportedDesktop world;
  world.windows = listing;
  return described(orderedBackgroundPanelWindows(browserPid));
}

std::string browserLine(const std::string& number, const std::string& frame) {
  return windowLine(number, browserPid, "Google Chrome", "Open", frame);
}

TEST(PanelCapture, PrefersServiceWindowsToLargerOnesOfTheBrowser) {
  EXPECT_EQ(ordered(browserLine("1", "0,0,1000,500") + serviceLine("2", "0,0,400,250")),
            (Texts{"2 of 77", "1 of 812"}));
}

TEST(PanelCapture, PrefersLargerWindowsThenSmallerNumbersThenTheHelpersOrder) {
  EXPECT_EQ(ordered(browserLine("1", "0,0,200,200") + browserLine("2", "0,0,300,200") +
                    serviceLine("7", "0,0,100,100") + serviceLine("6", "0,0,50,200") +
                    serviceLine("0", "9,0,100,100", 79) + serviceLine("0", "9,9,100,100", 78) +
                    serviceLine("8", "0,0,100,101")),
            (Texts{"8 of 77", "0 of 79", "0 of 78", "6 of 77", "7 of 77", "2 of 812", "1 of 812"}));
}

TEST(PanelCapture, AWindowOffTheScreenIsListedButNotOrdered) {
  ReportedDesktop world;
  world.windows = serviceLine("1", "2000,0,900,900") + serviceLine("2", "0,0,100,100");
  EXPECT_EQ(described(backgroundOpenPanelWindows(browserPid)), (Texts{"1 of 77", "2 of 77"}));
  EXPECT_EQ(described(orderedBackgroundPanelWindows(browserPid)), Texts{"2 of 77"});
  EXPECT_EQ(described(largestPanelWindow(browserPid).value()), "1 of 77");
}

PanelWindowRef windowAt(const Rect& frame, std::uint32_t number = 0, std::int32_t pid = 77) {
  return {number, pid, chromeService, "Open", frame};
}

TEST(PanelCapture, AWindowIsVisibleWhenItsCentreIsOnAScreen) {
  BareDesktop world;  // one screen, 1440 by 900
  EXPECT_TRUE(panelWindowIsVisible(windowAt({-399, -299, 800, 600})));
  EXPECT_FALSE(panelWindowIsVisible(windowAt({-401, 100, 800, 600})));
  EXPECT_FALSE(panelWindowIsVisible(windowAt({1040, 100, 800, 600})));
  EXPECT_FALSE(panelWindowIsVisible(windowAt({100, 600, 800, 600})));
}

// The second screen's top edge is the first one's: counted from the bottom it spans 180 to 900.
TEST(PanelCapture, ComparesTheCentreWithScreensCountedFromTheBottom) {
  BareDesktop world;
  world.desktop.setScreens({{0, 0, 1440, 900}, {1440, 0, 1280, 720}});
  EXPECT_FALSE(panelWindowIsVisible(windowAt({1500, 0, 200, 200})));
  EXPECT_TRUE(panelWindowIsVisible(windowAt({1500, 700, 200, 200})));
}

TEST(PanelCapture, ListsEachOwnerOfVisibleWindowsOnceMostPreferredFirst) {
  ReportedDesktop world;
  world.windows = browserLine("1", "0,0,500,500") + serviceLine("2", "0,0,100,100", 78) +
                  serviceLine("3", "0,0,200,200", 77) + serviceLine("4", "0,0,150,150", 78) +
                  serviceLine("5", "5000,0,900,900", 79);
  EXPECT_EQ(backgroundOpenPanelWindowPIDs(browserPid), (Pids{77, 78, 812}));
}

TEST(PanelCapture, APanelIsVisibleWhenSomeWindowIsOnAScreen) {
  ReportedDesktop world;
  EXPECT_FALSE(backgroundOpenPanelVisible(browserPid));
  world.windows = serviceLine("5", "5000,0,900,900");
  EXPECT_FALSE(backgroundOpenPanelVisible(browserPid));
  world.windows += browserLine("6", "0,0,900,900");
  EXPECT_TRUE(backgroundOpenPanelVisible(browserPid));
}

// Each round names the browser (0.02 s), runs the helper (0.03 s) and pauses for 0.15 s.
TEST(PanelCapture, PollsUntilAPanelAppears) {
  ReportedDesktop world;
  world.desktop.schedule(0.4, [&] { world.windows = serviceLine("5", "0,0,900,900"); });
  EXPECT_EQ(waitForBackgroundOpenPanel(browserPid, 10), Pids{77});
  const auto near = [](double time) { return testing::DoubleNear(time, 1e-9); };
  EXPECT_THAT(world.startsOf({"list"}), testing::ElementsAre(near(0.02), near(0.22), near(0.42)));
  EXPECT_NEAR(world.now(), 0.45, 1e-9);
}

TEST(PanelCapture, GivesUpAtTheTimeOut) {
  ReportedDesktop world;
  world.windows = serviceLine("5", "5000,0,900,900");
  EXPECT_EQ(messageOf([] { waitForBackgroundOpenPanel(browserPid, 0.9); }), "timed out after 0.9s");
  EXPECT_EQ(world.startsOf({"list"}).size(), 5U);
  EXPECT_NEAR(world.now(), 1.0, 1e-9);
}

// --- Comparing windows. ---

TEST(PanelCapture, CountsNegativeExtentsAsNoArea) {
  EXPECT_EQ(panelWindowArea(windowAt({1, 2, 30, 4})), 120);
  EXPECT_EQ(panelWindowArea(windowAt({1, 2, -30, 4})), 0);
  EXPECT_EQ(panelWindowArea(windowAt({1, 2, 30, -4})), 0);
  EXPECT_EQ(panelWindowArea(windowAt({1, 2, -30, -4})), 0);
}

TEST(PanelCapture, WindowsWithNumbersMatchByNumberAlone) {
  const auto tracked = windowAt({0, 0, 9, 9}, 5);
  EXPECT_TRUE(panelWindowMatches(windowAt({1, 1, 1, 1}, 5, 78), tracked));
  EXPECT_FALSE(panelWindowMatches(windowAt({0, 0, 9, 9}, 6), tracked));
}

TEST(PanelCapture, WindowsWithoutANumberMatchByProcessAndFrame) {
  for (const std::uint32_t number : {0U, 5U}) {
    const auto tracked = windowAt({0, 0, 9, 9}, number);
    EXPECT_TRUE(panelWindowMatches(windowAt({0, 0, 9, 9}, 0), tracked));
    EXPECT_FALSE(panelWindowMatches(windowAt({0, 0, 9, 8}, 0), tracked));
    EXPECT_FALSE(panelWindowMatches(windowAt({0, 0, 9, 9}, 0, 78), tracked));
  }
  EXPECT_TRUE(panelWindowMatches(windowAt({0, 0, 9, 9}, 5), windowAt({0, 0, 9, 9}, 0)));
}

TEST(PanelCapture, TheLargestWindowIsTheFirstOfThoseOfTheLargestArea) {
  ReportedDesktop world;
  EXPECT_FALSE(largestPanelWindow(browserPid));
  world.windows = serviceLine("1", "0,0,100,100") + browserLine("9", "0,0,200,300") +
                  serviceLine("2", "0,0,300,200");
  EXPECT_EQ(described(largestPanelWindow(browserPid).value()), "9 of 812");
}

}  // namespace
}  // namespace tessarine::test
