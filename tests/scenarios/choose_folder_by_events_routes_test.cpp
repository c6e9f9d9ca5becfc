// choose-folder on captured panels, as a whole. With a preferred panel nothing is slept before the
// first click, and with a long time-out the watchdog lets every attempt end. A look at the window
// list takes the desktop 0.05 s, so with 0.12 s after each there are five in 0.7 s and in 0.8 s,
// and eight in 1.2 s.
#include <gmock/gmock.h>

#include <algorithm>

#include "panels/reported_desktop.h"
#include "scenarios/folder_routes.h"
#include "support/transcript.h"

namespace tessarine::test::choose_folder_by_events_routes {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::ElementsAreArray;
using ::testing::IsEmpty;
using ::testing::Not;
using Json = nlohmann::ordered_json;

const std::vector<std::string> preferring{"--prefer-background-panel", "--timeout", "60"};
constexpr const char* preferred = "preferred fresh background panel";

const Patch sheetConfirms{"/panels/0/faults/goToReturnConfirms", true};

// A click at the n-th place where Choose is expected, after the pause.
Deeds clickAt(std::size_t n, const std::string& pause, const std::string& to) {
  const std::string at =
      std::vector<std::string>{"(1052, 587)", "(1032, 587)", "(1052, 570)", "(1024, 570)"}.at(n);
  return {pause + " mouse down 1 " + at + " -> " + to, "0.050 mouse up 1 " + at + " -> " + to};
}

// The clicks at the first places: 0.45 s and 0.35 s after the typed Return and five looks, and five
// looks after each other.
Deeds clicks(std::size_t count, const std::string& to) {
  Deeds deeds;
  for (std::size_t n = 0; n < count; ++n) {
    const Deeds click = clickAt(n, n == 0 ? "1.400" : "0.600", to);
    deeds.insert(deeds.end(), click.begin(), click.end());
  }
  return deeds;
}

Deeds secondReturn(const std::string& pid) {
  return {"0.600 key 36 down -> " + pid, "0.020 key 36 up -> " + pid};
}

// --- How one attempt closes the panel. ---

TEST(ChooseFolderEventsRoutes, ClosesThePanelByTheTypedReturn) {
  FolderWorld world("unseen-folders", {sheetConfirms});
  EXPECT_EQ(choose(world, preferring),
            (FolderRun{closedByEvents(world.target, servicePid, servicesWindow, preferred),
                       "chosen " + world.target, "mouse 2, session 0, foreground 0"}));
  EXPECT_THAT(transcript(world.world.record()),
              ElementsAreArray(typed(world.target, "900", "0.000")));
}

TEST(ChooseFolderEventsRoutes, ClosesThePanelAtEachOfTheFourPoints) {
  const std::vector<std::pair<int, int>> points{{1052, 587}, {1032, 587}, {1052, 570}, {1024, 570}};
  for (std::size_t n = 0; n < points.size(); ++n) {
    const auto [x, y] = points[n];
    const Json button{{"x", x - 324}, {"y", y - 184}, {"width", 8}, {"height", 8}};
    FolderWorld world("unseen-folders", {{"/panels/0/layout", {{"confirmButton", button}}}});
    EXPECT_EQ(choose(world, preferring).outcome,
              closedByEvents(world.target, servicePid, servicesWindow, preferred,
                             {{"choosePoint", {{"x", double(x)}, {"y", double(y)}}}}));
    EXPECT_EQ(world.world.panelOutcomes(), "chosen " + world.target);
    EXPECT_THAT(
        transcript(world.world.record()),
        ElementsAreArray(joined({typed(world.target, "900", "0.000"), clicks(n + 1, "900")})));
  }
}

TEST(ChooseFolderEventsRoutes, ClosesThePanelByTheSecondReturn) {
  FolderWorld world("unseen-folders", {noButton});
  EXPECT_EQ(choose(world, preferring),
            (FolderRun{closedByEvents(world.target, servicePid, servicesWindow, preferred),
                       "chosen " + world.target, "mouse 10, session 0, foreground 0"}));
  EXPECT_THAT(transcript(world.world.record()),
              ElementsAreArray(joined(
                  {typed(world.target, "900", "0.000"), clicks(4, "900"), secondReturn("900")})));
}

// The middle of the panel is on the screen, its right half is not.
TEST(ChooseFolderEventsRoutes, GoesOnToTheSecondReturnWhereNoScreenShowsThePoints) {
  FolderWorld world("half-off-screen-panel", {{"/panels/0/shape", "unseen"},
                                              {"/panels/0/serviceTitle", "Open"},
                                              {"/panels/0/frame/x", 1000}});
  Json frame = usualFrame;
  frame["x"] = 1000.0;
  EXPECT_EQ(choose(world, preferring),
            (FolderRun{closedByEvents(world.target, servicePid, servicesWindow, preferred,
                                      Json::object(), frame),
                       "chosen " + world.target, "mouse 2, session 0, foreground 0"}));
  const auto deeds = transcript(world.world.record());
  EXPECT_EQ(deeds.front(), "0.000 mouse down 1 (1400, 405) -> 900");
  EXPECT_EQ(*(deeds.end() - 2), "1.400 key 36 down -> 900");
}

// With 0.06 s for a look there are four in 0.7 s and five in 0.8 s.
TEST(ChooseFolderEventsRoutes, LooksForLessTimeAfterTheTypedReturnThanAfterAClick) {
  World world("unseen-folders", {deaf, deadButton});
  world.desktop().installProgram("background-window-capture", [](simulator::ProgramRun& run) {
    run.after(0.04, [&run] {
      run.print(windowLine("104", servicePid, chromeService, "Open", "320,180,800,450"));
      run.end(0);
    });
  });
  runChooseFolder(world, "/usr", preferring);
  auto deeds = transcript(world.record());
  deeds.resize(typed("/usr", "900", "0.000").size() + clicks(4, "900").size() + 3);
  EXPECT_THAT(deeds, ElementsAreArray(joined({typed("/usr", "900", "0.000"),
                                              clickAt(0, "1.280", "900"),
                                              clickAt(1, "0.600", "900"),
                                              clickAt(2, "0.600", "900"),
                                              clickAt(3, "0.600", "900"),
                                              secondReturn("900"),
                                              {"0.850 mouse down 1 (720, 405) -> 812"}})));
}

// --- Which process and which window. ---

// The second Return's close wait is five looks too, after 0.25 s.
TEST(ChooseFolderEventsRoutes, GoesOnToTheBrowserWhenTheServiceTakesNoKeys) {
  FolderWorld world("unseen-folders", {keysReachHost, noButton, sheetConfirms});
  EXPECT_EQ(choose(world, preferring),
            (FolderRun{closedByEvents(world.target, browserPid, servicesWindow, preferred),
                       "chosen " + world.target, "mouse 12, session 0, foreground 0"}));
  EXPECT_THAT(transcript(world.world.record()),
              ElementsAreArray(joined({typed(world.target, "900", "0.000"), clicks(4, "900"),
                                       secondReturn("900"), typed(world.target, "812", "0.850")})));
}

TEST(ChooseFolderEventsRoutes, HasOneAttemptAtAWindowOfTheBrowser) {
  for (const auto& [patch, options] :
       {std::pair{World::Patches{{"/panels/0/listed", "host"}}, std::vector<std::string>{}},
        {{}, {"--exclude-window-id", "104"}}}) {
    World::Patches patches{keysReachHost};
    patches.insert(patches.end(), patch.begin(), patch.end());
    FolderWorld world("unseen-folders", patches);
    std::vector<std::string> all = preferring;
    all.insert(all.end(), options.begin(), options.end());
    EXPECT_EQ(choose(world, all).outcome,
              closedByEvents(world.target, browserPid, browsersWindow, preferred,
                             {{"choosePoint", {{"x", 1052.0}, {"y", 587.0}}}}));
    EXPECT_EQ(world.world.panelOutcomes(), "chosen " + world.target);
    EXPECT_THAT(transcript(world.world.record()),
                ElementsAreArray(joined({typed(world.target, "812", "0.000"), clicks(1, "812")})));
  }
}

// Typing makes the service's window go, a click at the first place the browser's at the same frame.
TEST(ChooseFolderEventsRoutes, TakesThePanelForClosedWhenBothItsWindowsHaveGone) {
  World world("unseen-folders", {deaf, deadButton});
  world.desktop().installProgram("background-window-capture", [](simulator::ProgramRun& run) {
    const auto events = postedEventKinds(run.desktop().record());
    const auto happened = [&](const char* event) {
      return std::find(events.begin(), events.end(), event) != events.end();
    };
    const std::string frame = "320,180,800,450";
    if (!happened("key 36 up -> 900")) {
      run.print(windowLine("104", servicePid, chromeService, "Open", frame));
    }
    if (!happened("mouse up 1 (1052, 587) -> 900")) {
      run.print(windowLine("103", browserPid, "Google Chrome", "Open", frame));
    }
    run.end(0);
  });
  EXPECT_EQ(runChooseFolder(world, "/usr", preferring).outcome,
            closedByEvents("/usr", servicePid, servicesWindow, preferred,
                           {{"choosePoint", {{"x", 1052.0}, {"y", 587.0}}}}));
}

// Two panels one above the other, each drawn by a service of its own. The first does nothing.
TEST(ChooseFolderEventsRoutes, GoesOnToTheSecondWindow) {
  const auto frame = [](int y) {
    return Json{{"x", 320}, {"y", y}, {"width", 800}, {"height", 440}};
  };
  FolderWorld world("two-panels", {deaf,
                                   deadButton,
                                   {"/panels/0/frame", frame(0)},
                                   {"/panels/1/frame", frame(450)},
                                   {"/panels/1/service", 901}});
  const Json shown{{"x", 320.0}, {"y", 450.0}, {"width", 800.0}, {"height", 440.0}};
  EXPECT_EQ(choose(world, preferring).outcome,
            closedByEvents(world.target, 901, 106, preferred,
                           {{"choosePoint", {{"x", 1052.0}, {"y", 847.0}}}}, shown));
  EXPECT_EQ(world.world.panelOutcomes(), "open, chosen " + world.target);
}

// --- After the dialog was looked for in vain. ---

TEST(ChooseFolderEventsRoutes, TellsWhyThereWasNoDialog) {
  World world("unseen-folders", {sheetConfirms});
  EXPECT_EQ(
      runChooseFolder(world, "/usr/share", {"--timeout", "2"}),
      (FolderRun{closedByEvents("/usr/share", servicePid, servicesWindow, "timed out after 2.0s"),
                 "chosen /usr/share", "mouse 2, session 0, foreground 0"}));
}

// The walk by rows fails as the menu is refused; what is told is that the sheet did not open.
TEST(ChooseFolderEventsRoutes, TellsEveryAttemptAndWhyTheSheetFailed) {
  FolderWorld world("english-service-window", {noMenu, deaf, deadButton});
  EXPECT_EQ(choose(world, {"--timeout", "60"}),
            (FolderRun{failed(notClosed(everyAttempt, "timed out after 1.5s")), "open",
                       "mouse 30, session 0, foreground 0"}));
}

// Every second listing names the window: a wait finds it, the look that follows does not.
TEST(ChooseFolderEventsRoutes, FailsWhenThePanelHasGoneAfterTheWait) {
  World world("no-panel");
  int listings = 0;
  world.desktop().installProgram("background-window-capture", [&](simulator::ProgramRun& run) {
    if (++listings % 2 == 1) {
      run.print(windowLine("104", servicePid, chromeService, "Open", "320,180,800,450"));
    }
    run.end(0);
  });
  EXPECT_EQ(runChooseFolder(world, "/usr", {"--timeout", "1"}).outcome,
            failed("AX open dialog failed and no captured background panel was found; AX error: "
                   "timed out after 1.0s"));
  EXPECT_EQ(transcript(world.record()), Deeds{});
}

// --- System Events. ---

const std::vector<std::string> inFront{"--prefer-background-panel", "--timeout", "60",
                                       "--temporary-foreground"};

// The arguments of the script that ends with this line.
std::vector<std::string> scriptEnding(const simulator::Record& record, const std::string& end) {
  for (const auto& line : record.lines()) {
    const auto* started = std::get_if<simulator::ProgramStarted>(&line.entry);
    if (started != nullptr && started->arguments.back() == end) return started->arguments;
  }
  return {};
}

// A fast panel keeps up with the script.
TEST(ChooseFolderEventsRoutes, LetsSystemEventsTypeThePath) {
  World world("unseen-folders", {{"/panels/0/slow", 0.5}});
  const std::string result =
      strategyResult("/usr/share", "background-window-capture-system-events",
                     {{"dialogPid", 900}, {"panelWindowID", 104}, {"panelFrame", usualFrame}});
  EXPECT_EQ(runChooseFolder(world, "/usr/share", inFront),
            (FolderRun{{0, result, ""}, "chosen /usr/share", "mouse 0, session 0, foreground 1"}));
  EXPECT_EQ(transcript(world.record()), Deeds{});
  EXPECT_THAT(scriptEnding(world.record(), "end tell"),
              ElementsAre("-e", "tell application \"System Events\"", "-e",
                          "keystroke \"g\" using {command down, shift down}", "-e", "delay 0.25",
                          "-e", "keystroke \"a\" using {command down}", "-e",
                          "keystroke \"/usr/share\"", "-e", "delay 0.45", "-e", "key code 36", "-e",
                          "delay 0.70", "-e", "key code 36", "-e", "end tell"));
}

// The larger panel, which is in front, is the one whose windows are watched.
TEST(ChooseFolderEventsRoutes, LetsSystemEventsCloseOneOfTwoPanels) {
  World world("two-panels", {{"/panels/1/slow", 0.5}, {"/panels/1/frame/height", 460}});
  const Json frame{{"x", 480.0}, {"y", 300.0}, {"width", 800.0}, {"height", 460.0}};
  const std::string result =
      strategyResult("/usr/bin", "background-window-capture-system-events",
                     {{"dialogPid", 900}, {"panelWindowID", 106}, {"panelFrame", frame}});
  EXPECT_EQ(
      runChooseFolder(world, "/usr/bin", inFront),
      (FolderRun{{0, result, ""}, "open, chosen /usr/bin", "mouse 0, session 0, foreground 1"}));
}

// The first keys come before the sheet's field does. The clicks at Choose go to the session.
TEST(ChooseFolderEventsRoutes, TypesThePathItselfAfterAScriptInVain) {
  FolderWorld world("unseen-folders");
  EXPECT_EQ(choose(world, inFront),
            (FolderRun{closedByEvents(world.target, servicePid, servicesWindow, preferred,
                                      {{"choosePoint", {{"x", 1052.0}, {"y", 587.0}}}}),
                       "chosen " + world.target, "mouse 4, session 2, foreground 1"}));
  EXPECT_THAT(scriptEnding(world.world.record(), "end tell"), Contains("key code 36").Times(2));
  const auto deeds = transcript(world.world.record());
  ASSERT_THAT(deeds, Not(IsEmpty()));
  const std::string pause = deeds.front().substr(0, 5);
  EXPECT_THAT(deeds,
              ElementsAreArray(joined({typed(world.target, "900", pause), clicks(1, "session")})));
}

// Seven looks after a script that does nothing. It takes 0.05 s to ask for the browser to come
// forward, which is then given 0.55 s.
TEST(ChooseFolderEventsRoutes, LooksForTheEffectOfTheScript) {
  World world("unseen-folders");
  world.desktop().installProgram("/usr/bin/osascript",
                                 [](simulator::ProgramRun& run) { run.end(0); });
  EXPECT_EQ(runChooseFolder(world, "/usr/share", inFront).outcome.exitStatus, 0);
  EXPECT_EQ(transcript(world.record()).front(), "1.440 mouse down 1 (720, 405) -> 900");
}

// Asked for a folder's name, this osascript is quick; asked to type, it never ends.
void hangWhenTyping(simulator::ProgramRun& run) {
  if (run.arguments().back() != "end tell") run.end(1);
}
void failWhenTyping(simulator::ProgramRun& run) {
  run.complain("Not authorised to send keystrokes. (1002)\n");
  run.end(1);
}

TEST(ChooseFolderEventsRoutes, NamesTheScriptsErrorBeforeTheAttempts) {
  using Program = void (*)(simulator::ProgramRun&);
  for (const auto& [script, error] :
       {std::pair<Program, std::string>{hangWhenTyping, "osascript exceeded 3.0s"},
        {failWhenTyping, "Not authorised to send keystrokes. (1002)"}}) {
    FolderWorld world("english-service-window", {noMenu, deaf, deadButton});
    world.world.desktop().installProgram("/usr/bin/osascript", script);
    EXPECT_EQ(choose(world, {"--timeout", "60", "--temporary-foreground"}).outcome,
              failed(notClosed("\"system-events-error=" + error + "\", " + everyAttempt,
                               "timed out after 2.5s")));
  }
}

TEST(ChooseFolderEventsRoutes, GoesOnWithoutOsascript) {
  World world("unseen-folders", {{"/faults", {{"missingPrograms", {"/usr/bin/osascript"}}}}});
  EXPECT_EQ(runChooseFolder(world, "/usr/share", inFront),
            (FolderRun{closedByEvents("/usr/share", servicePid, servicesWindow, preferred,
                                      {{"choosePoint", {{"x", 1052.0}, {"y", 587.0}}}}),
                       "chosen /usr/share", "mouse 4, session 2, foreground 1"}));
  EXPECT_THAT(
      transcript(world.record()),
      ElementsAreArray(joined({typed("/usr/share", "900", "0.600"), clicks(1, "session")})));
}

TEST(ChooseFolderEventsRoutes, AsksSystemEventsForNothingInTheBackground) {
  FolderWorld world("unseen-folders", {{"/panels/0/slow", 0.5}, {"/frontmost", browserPid}});
  EXPECT_EQ(choose(world, preferring).outcome.exitStatus, 0);
  EXPECT_EQ(scriptEnding(world.world.record(), "end tell"), Deeds{});
  EXPECT_EQ(world.world.record().sessionEvents(), 0U);
}

}  // namespace
}  // namespace tessarine::test::choose_folder_by_events_routes
