#include "commands/close.h"

#include <gmock/gmock.h>

#include "panels/reported_desktop.h"
#include "support/foreground_story.h"
#include "support/transcript.h"

namespace tessarine::test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

const World::Patches deadPanel{{"/panels/0/faults/noCancelButton", true},
                               {"/panels/0/faults/ignoresKeys", true}};

int closeOrdinarily() {
  return closeDialogs(browserPid, false, false);
}
int closeStrictly() {
  return closeDialogs(browserPid, false, true);
}

// "AXPress of Cancel B" for each press, in order: dialogs of a browser whose front window is a
// page.
struct BrowserDialogs {
  explicit BrowserDialogs(const std::vector<std::string>& names, const std::string& title) {
    for (const std::string& name : names) {
      simulator::Element& button = world.addWindow("Open").addChild("AXButton");
      button.set("AXTitle", title);
      button.addAction("AXPress", [this, name] {
        pressed.push_back(name);
        return simulator::ax::success;
      });
    }
    world.addWindow("A page");
  }
  BareDesktop world;
  std::vector<std::string> pressed;
};

// --- Cancel buttons. ---

// "AXWindows" lists the front window first, which was opened last.
TEST(CloseDialogs, PressesTheCancelButtonsOfAllDialogsTheLaterListedFirst) {
  for (const char* title : {"Cancel", "取消"}) {
    BrowserDialogs dialogs({"first opened", "second opened"}, title);
    EXPECT_EQ(closeOrdinarily(), 2);
    EXPECT_THAT(dialogs.pressed, ElementsAre("first opened", "second opened"));
    EXPECT_THAT(
        transcript(dialogs.world.desktop.record()),
        ElementsAre("0.000 AXPress of AXButton in 812", "0.100 AXPress of AXButton in 812"));
  }
}

TEST(CloseDialogs, PausesAfterEachPress) {
  const BrowserDialogs dialogs({"only"}, "Cancel");
  closeOrdinarily();
  const auto& lines = dialogs.world.desktop.record().lines();
  EXPECT_NEAR(dialogs.world.now(), lines.back().time + 0.1, 1e-9);
}

TEST(CloseDialogs, CountsOnlyDialogsWithACancelButton) {
  BrowserDialogs dialogs({"first", "second"}, "Abbrechen");
  EXPECT_EQ(closeOrdinarily(), 0);
  EXPECT_THAT(dialogs.pressed, IsEmpty());
}

TEST(CloseDialogs, PassesOnThatAPressFails) {
  for (const bool strict : {false, true}) {
    World world("english-service-window",
                {{"/panels/0/listed", "none"}, {"/panels/0/faults/pressRefused", -25204}});
    EXPECT_EQ(messageOf([&] { closeDialogs(browserPid, false, strict); }),
              "AX action AXPress failed: -25204");
    EXPECT_THAT(postedEventKinds(world.record()), IsEmpty());
  }
}

TEST(CloseDialogs, PressesNothingWhileAPanelIsCaptured) {
  World world("english-service-window");
  EXPECT_EQ(closeOrdinarily(), 1);
  EXPECT_EQ(world.record().accessibilityRequests(), 0U);
}

// --- Waits and events of the ordinary route. ---

// After the last Escape 0.08 s pass, then looks begin every 0.17 s for 0.8 s.
TEST(CloseDialogs, ClicksThePanelAndTriesEscapeAgain) {
  World world("english-service-window", deadPanel);
  EXPECT_EQ(closeOrdinarily(), 0);
  EXPECT_THAT(
      transcript(world.record()),
      ElementsAre("0.000 key 53 down -> 900", "0.020 key 53 up -> 900", "0.080 key 53 down -> 812",
                  "0.020 key 53 up -> 812", "0.680 mouse down 1 (720, 405) -> 812",
                  "0.050 mouse up 1 (720, 405) -> 812", "0.180 key 53 down -> 812",
                  "0.020 key 53 up -> 812"));
  EXPECT_THAT(sleepLengths(world.record()), ElementsAre("0.02", "0.05", "0.08", "0.12", "0.18"));
}

TEST(CloseDialogs, ClicksTheFirstWindowWhereItIsVisible) {
  ReportedDesktop world;
  world.desktop.setScreens({{0, 0, 1440, 900}});
  world.windows = windowLine("5", 812, "Google Chrome", "Open", "0,0,1400,800") +
                  windowLine("6", 900, chromeService, "Open", "100,600,400,500");
  EXPECT_EQ(closeOrdinarily(), 0);
  EXPECT_THAT(
      postedEventKinds(world.desktop.record()),
      ElementsAre("key 53 down -> 900", "key 53 up -> 900", "key 53 down -> 812",
                  "key 53 up -> 812", "mouse down 1 (300, 750) -> 812",
                  "mouse up 1 (300, 750) -> 812", "key 53 down -> 812", "key 53 up -> 812"));
}

TEST(CloseDialogs, TapsEscapeOnceAtEachOwnerThenAtTheBrowser) {
  ReportedDesktop world;
  world.desktop.setScreens({{0, 0, 1440, 900}});
  world.windows = windowLine("5", 812, "Google Chrome", "Open", "0,0,300,300") +
                  windowLine("6", 901, chromeService, "Open", "0,0,400,300") +
                  windowLine("7", 900, chromeService, "Open", "0,0,400,400") +
                  windowLine("8", 901, chromeService, "Open", "20,20,200,200");
  world.desktop.schedule(0.3, [&world] { world.windows.clear(); });
  EXPECT_EQ(closeOrdinarily(), 1);
  EXPECT_THAT(
      transcript(world.desktop.record()),
      ElementsAre("0.000 key 53 down -> 900", "0.020 key 53 up -> 900", "0.080 key 53 down -> 901",
                  "0.020 key 53 up -> 901", "0.080 key 53 down -> 812", "0.020 key 53 up -> 812"));
}

// --- The strict route. ---

// Two services with a panel each: one of them not captured, so only the process list names it.
TEST(CloseDialogsStrictly, TapsEscapeAtTheOwnersTheBrowserAndTheServices) {
  ReportedDesktop world;
  world.desktop.setScreens({{0, 0, 1440, 900}});
  world.processes = std::string("  901 ") + chromeService + "\n  900 " + chromeService + "\n";
  world.windows = windowLine("5", 812, "Google Chrome", "Open", "0,0,300,300") +
                  windowLine("7", 900, chromeService, "Open", "0,0,400,400");
  EXPECT_EQ(messageOf(closeStrictly),
            "background-only native folder panel exposes no verified AX close control and targeted "
            "process events did not close it");
  EXPECT_THAT(postedEventKinds(world.desktop.record()),
              ElementsAre("key 53 down -> 900", "key 53 up -> 900", "key 53 down -> 812",
                          "key 53 up -> 812", "key 53 down -> 901", "key 53 up -> 901",
                          "mouse down 1 (150, 150) -> 812", "mouse up 1 (150, 150) -> 812",
                          "key 53 down -> 812", "key 53 up -> 812"));
}

// The browser's window joins the list only after the windows have been noted.
TEST(CloseDialogsStrictly, ClicksTheServicesWindowWhenTheBrowserShowedNone) {
  ReportedDesktop world;
  world.desktop.setScreens({{0, 0, 1440, 900}});
  world.windows = windowLine("7", 900, chromeService, "Open", "0,0,400,400");
  std::function<void()> watch = [&] {
    if (!postedEventKinds(world.desktop.record()).empty()) {
      world.windows += windowLine("5", 812, "Google Chrome", "Open", "0,0,300,300");
    } else {
      world.desktop.schedule(0.01, watch);
    }
  };
  world.desktop.schedule(0.01, watch);
  EXPECT_THROW(closeStrictly(), ToolError);
  EXPECT_THAT(
      postedEventKinds(world.desktop.record()),
      ElementsAre("key 53 down -> 900", "key 53 up -> 900", "key 53 down -> 812",
                  "key 53 up -> 812", "mouse down 1 (200, 200) -> 900",
                  "mouse up 1 (200, 200) -> 900", "key 53 down -> 812", "key 53 up -> 812"));
}

// Only the browser's windows count, so what the service alone shows is gone at the first look.
TEST(CloseDialogsStrictly, DoesNotWatchTheServicesWindow) {
  World world("english-service-window",
              {{"/panels/0/listed", "service"}, {"/panels/0/faults/cancelDoesNothing", true}});
  EXPECT_EQ(closeStrictly(), 1);
  EXPECT_THAT(transcript(world.record()), ElementsAre("0.000 AXPress of AXButton in 900"));
  EXPECT_EQ(world.panelOutcomes(), "open");
}

// The wait for the accepted press is over before the window leaves the list; Escape goes to the
// browser and its services all the same, and then nothing is listed.
TEST(CloseDialogsStrictly, GoesOnWithEscapeWhenTheWindowLeavesTheListLate) {
  BrowserDialogs dialogs({"only"}, "Cancel");
  auto& desktop = dialogs.world.desktop;
  desktop.setScreens({{0, 0, 1440, 900}});
  int captures = 0;
  desktop.installProgram("background-window-capture", [&](simulator::ProgramRun& run) {
    const bool listing = run.arguments().front() == "list";
    run.after(listing ? 0.05 : 0.13, [&, listing] {  // looks every 0.3 s, the third at 0.6 s
      if (listing && captures < 3) {
        run.print(windowLine("7", 812, "Google Chrome", "Open", "0,0,400,400"));
      }
      if (!listing) ++captures;
      run.end(0);
    });
  });
  EXPECT_EQ(closeStrictly(), 1);
  EXPECT_EQ(captures, 3);
  EXPECT_THAT(postedEventKinds(desktop.record()),
              ElementsAre("key 53 down -> 812", "key 53 up -> 812"));
}

TEST(CloseDialogsStrictly, WaitsOneAndEightTenthsAfterEscapeAndAfterTheClick) {
  World world("english-service-window", deadPanel);
  EXPECT_THROW(closeStrictly(), ToolError);
  double lastEscape = 0;
  double click = 0;
  for (const auto& line : world.record().lines()) {
    const auto* mouse = std::get_if<simulator::PostedMouse>(&line.entry);
    if (mouse != nullptr && mouse->event.type == 1) click = line.time;
    if (click == 0 && std::holds_alternative<simulator::PostedKey>(line.entry)) {
      lastEscape = line.time;
    }
  }
  EXPECT_NEAR(click - lastEscape - 0.08, 1.9, 0.1001);
  EXPECT_NEAR(world.desktop().now() - click - 0.05 - 0.18 - 0.02 - 0.08, 1.9, 0.1001);
}

// --- Temporary foreground. ---

TEST(CloseDialogs, BringsTheBrowserForwardMeanwhile) {
  for (const bool strict : {false, true}) {
    World world("english-service-window");
    EXPECT_EQ(closeDialogs(browserPid, true, strict), 1);
    EXPECT_THAT(foregroundStory(world.record()),
                ElementsAre("frontmost?", "activate 812", frontmostScript(812), "activate 300"));
  }
}

TEST(CloseDialogs, GivesTheForegroundBackAfterAnError) {
  World world("english-service-window", deadPanel);
  EXPECT_EQ(messageOf([] { closeDialogs(browserPid, true, true); }),
            "background-only native folder panel exposes no verified AX close control and targeted "
            "process events did not close it");
  EXPECT_THAT(foregroundStory(world.record()),
              ElementsAre("frontmost?", "activate 812", frontmostScript(812), "activate 300"));
  world.desktop().advanceTo(world.desktop().now() + 1);
  EXPECT_EQ(world.desktop().frontmost(), terminalPid);
}

TEST(CloseDialogs, WaitsForTheForegroundBeforeAnythingElse) {
  World world("english-service-window");
  closeDialogs(browserPid, true, false);
  double scriptEnd = 0;
  double nextStart = 0;
  for (const auto& line : world.record().lines()) {
    const auto* ended = std::get_if<simulator::ProgramEnded>(&line.entry);
    const auto* started = std::get_if<simulator::ProgramStarted>(&line.entry);
    if (ended != nullptr && ended->path == "/usr/bin/osascript") scriptEnd = line.time;
    if (started != nullptr && scriptEnd > 0 && nextStart == 0) nextStart = line.time;
  }
  EXPECT_NEAR(nextStart - scriptEnd, 0.55, 1e-9);
}

}  // namespace
}  // namespace tessarine::test
