#include "platform/foreground.h"

#include <gmock/gmock.h>

#include "platform/clock.h"
#include "support/foreground_story.h"
#include "support/world.h"

namespace tessarine::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr std::int32_t finderPid = 250;
constexpr std::int32_t rendererPid = 830;  // not an application

// The browser in the background, and an operation that notes when it ran and what was in front.
struct Foreground : World {
  explicit Foreground(const Patches& patches = {}) : World("no-panel", patches) {}

  int operation() {
    desktop().noteMilestone("operation");
    startedAt = desktop().now();
    frontmostDuring = desktop().frontmost();
    return 42;
  }
  int failingOperation() {
    operation();
    throw ToolError::notFound("no such thing");
  }
  std::vector<std::string> story() { return foregroundStory(record()); }
  // Once an application that was told to come forward has done so.
  std::optional<std::int32_t> frontmostSoon() {
    sleepSeconds(0.2);
    return desktop().frontmost();
  }

  double startedAt = -1;
  std::optional<std::int32_t> frontmostDuring;
};

const World::Patches nothingInFront{{"/frontmost", nullptr}};
const World::Patches browserInFront{{"/frontmost", browserPid}};
const World::Patches scriptsMissing{{"/faults", {{"missingPrograms", {"/usr/bin/osascript"}}}}};

// --- setProcessFrontmost ---

TEST(SetProcessFrontmost, RunsOneLineOfScriptAndWaitsForIt) {
  Foreground world;
  EXPECT_TRUE(setProcessFrontmost(browserPid));
  EXPECT_THAT(world.story(),
              ElementsAre("osascript tell application \"System Events\" to set frontmost of first "
                          "process whose unix id is 812 to true"));
  EXPECT_EQ(world.desktop().frontmost(), browserPid);
  for (const auto& line : world.record().lines()) {
    const auto* started = std::get_if<simulator::ProgramStarted>(&line.entry);
    if (started == nullptr) continue;
    EXPECT_EQ(started->arguments.size(), 2U);
    EXPECT_EQ(started->arguments.front(), "-e");
  }
}

TEST(SetProcessFrontmost, AnswersWhetherTheScriptSucceeded) {
  Foreground world;
  EXPECT_FALSE(setProcessFrontmost(4711));
  Foreground withoutScripts(scriptsMissing);
  EXPECT_FALSE(setProcessFrontmost(browserPid));
}

TEST(SetProcessFrontmost, HasNoTimeLimitOfItsOwn) {
  Foreground world;
  world.desktop().installProgram("/usr/bin/osascript", [](simulator::ProgramRun& run) {
    run.after(3600, [&run] { run.end(0); });
  });
  EXPECT_TRUE(setProcessFrontmost(browserPid));
  EXPECT_NEAR(world.desktop().now(), 3600, 1e-6);
}

// --- restoreFrontmostApplication ---

TEST(RestoreFrontmost, LeavesPidsBelowOneAlone) {
  Foreground world;
  restoreFrontmostApplication(0);
  restoreFrontmostApplication(-5);
  EXPECT_THAT(world.story(), IsEmpty());
}

TEST(RestoreFrontmost, DoesNothingWhenTheApplicationIsInFront) {
  Foreground world;
  restoreFrontmostApplication(terminalPid);
  EXPECT_THAT(world.story(), ElementsAre("frontmost?"));
}

TEST(RestoreFrontmost, ActivatesARunningApplicationAndStops) {
  Foreground world;
  restoreFrontmostApplication(browserPid);
  EXPECT_THAT(world.story(), ElementsAre("frontmost?", "activate 812"));
  EXPECT_EQ(world.frontmostSoon(), browserPid);
}

TEST(RestoreFrontmost, FallsBackToAScriptForWhatIsNoApplication) {
  Foreground world;
  restoreFrontmostApplication(rendererPid);
  EXPECT_THAT(world.story(), ElementsAre("frontmost?", frontmostScript(rendererPid)));
}

TEST(RestoreFrontmost, FallsBackToAScriptForATerminatedApplication) {
  for (const bool remembered : {true, false}) {
    Foreground world;
    world.desktop().terminateProcess(finderPid, remembered);
    restoreFrontmostApplication(finderPid);
    EXPECT_THAT(world.story(), ElementsAre("frontmost?", frontmostScript(finderPid)));
  }
}

TEST(RestoreFrontmost, RestoresAlsoWhenNothingIsInFront) {
  Foreground world(nothingInFront);
  restoreFrontmostApplication(terminalPid);
  EXPECT_THAT(world.story(), ElementsAre("frontmost?", "activate 300"));
}

// --- withTemporaryForeground ---

TEST(TemporaryForeground, OnlyRunsTheOperationWhenNotEnabled) {
  Foreground world;
  EXPECT_EQ(withTemporaryForeground(browserPid, false, [&] { return world.operation(); }), 42);
  EXPECT_THAT(world.story(), ElementsAre("operation"));
  EXPECT_EQ(world.desktop().now(), 0.0);
}

TEST(TemporaryForeground, TakesTheForegroundInTwoWaysAndGivesItBack) {
  Foreground world;
  EXPECT_EQ(withTemporaryForeground(browserPid, true, [&] { return world.operation(); }), 42);
  EXPECT_THAT(world.story(), ElementsAre("frontmost?", "activate 812", frontmostScript(812),
                                         "operation", "activate 300"));
  EXPECT_EQ(world.frontmostDuring, browserPid);
  EXPECT_EQ(world.frontmostSoon(), terminalPid);
}

TEST(TemporaryForeground, SettlesFor550MillisecondsBeforeTheOperation) {
  Foreground world;
  withTemporaryForeground(browserPid, true, [&] { return world.operation(); });
  double scriptEnd = -1;
  for (const auto& line : world.record().lines()) {
    if (std::holds_alternative<simulator::ProgramEnded>(line.entry)) scriptEnd = line.time;
  }
  EXPECT_GT(scriptEnd, 0);
  EXPECT_NEAR(world.startedAt - scriptEnd, 0.55, 1e-9);
}

TEST(TemporaryForeground, SettlesAlsoWhenTheScriptCannotBeStarted) {
  Foreground world(scriptsMissing);
  withTemporaryForeground(rendererPid, true, [&] { return world.operation(); });
  EXPECT_THAT(world.story(), ElementsAre("frontmost?", "operation", "activate 300"));
  EXPECT_NEAR(world.startedAt, 0.55, 1e-9);
}

TEST(TemporaryForeground, GivesNothingBackWhenTheTargetWasInFront) {
  Foreground world(browserInFront);
  withTemporaryForeground(browserPid, true, [&] { return world.operation(); });
  EXPECT_THAT(world.story(),
              ElementsAre("frontmost?", "activate 812", frontmostScript(812), "operation"));
  EXPECT_GT(world.startedAt, 0.55);
}

TEST(TemporaryForeground, GivesNothingBackWhenNothingWasInFront) {
  Foreground world(nothingInFront);
  withTemporaryForeground(browserPid, true, [&] { return world.operation(); });
  EXPECT_THAT(world.story(),
              ElementsAre("frontmost?", "activate 812", frontmostScript(812), "operation"));
}

TEST(TemporaryForeground, UsesOnlyTheScriptForWhatIsNoApplication) {
  Foreground world;
  withTemporaryForeground(rendererPid, true, [&] { return world.operation(); });
  EXPECT_THAT(world.story(),
              ElementsAre("frontmost?", frontmostScript(rendererPid), "operation", "activate 300"));
}

TEST(TemporaryForeground, TriesBothWaysForATerminatedTargetThatTheWorkspaceStillKnows) {
  Foreground world;
  world.desktop().terminateProcess(finderPid, true);
  withTemporaryForeground(finderPid, true, [&] { return world.operation(); });
  EXPECT_THAT(world.story(), ElementsAre("frontmost?", "activate 250", frontmostScript(finderPid),
                                         "operation", "activate 300"));
}

TEST(TemporaryForeground, GivesTheForegroundBackBeforeAnErrorPassesOn) {
  Foreground world;
  EXPECT_EQ(messageOf([&] {
              withTemporaryForeground(browserPid, true, [&] { return world.failingOperation(); });
            }),
            "no such thing");
  EXPECT_THAT(world.story(), ElementsAre("frontmost?", "activate 812", frontmostScript(812),
                                         "operation", "activate 300"));
}

TEST(TemporaryForeground, ActivatesATerminatedApplicationThatTheWorkspaceStillKnows) {
  Foreground world;
  withTemporaryForeground(browserPid, true, [&] {
    world.desktop().terminateProcess(terminalPid, true);
    return world.operation();
  });
  EXPECT_EQ(world.story().back(), "activate 300");
}

TEST(TemporaryForeground, FallsBackToAScriptWhenThePreviousApplicationIsUnknown) {
  Foreground world;
  withTemporaryForeground(browserPid, true, [&] {
    world.desktop().terminateProcess(terminalPid, false);
    return world.operation();
  });
  EXPECT_EQ(world.story().back(), frontmostScript(terminalPid));
}

// --- withBackgroundFrontmostPreserved ---

TEST(BackgroundFrontmost, OnlyRunsTheOperationWhenNotEnabled) {
  Foreground world;
  EXPECT_EQ(withBackgroundFrontmostPreserved(false, [&] { return world.operation(); }), 42);
  EXPECT_THAT(world.story(), ElementsAre("operation"));
}

TEST(BackgroundFrontmost, ChangesNothingWhenNobodyTookTheForeground) {
  Foreground world;
  EXPECT_EQ(withBackgroundFrontmostPreserved(true, [&] { return world.operation(); }), 42);
  EXPECT_THAT(world.story(), ElementsAre("frontmost?", "operation", "frontmost?"));
  EXPECT_EQ(world.desktop().now(), 0.0);
}

TEST(BackgroundFrontmost, PutsTheFrontmostApplicationBack) {
  Foreground world;
  withBackgroundFrontmostPreserved(true, [&] {
    world.desktop().setFrontmost(browserPid);
    return world.operation();
  });
  EXPECT_THAT(world.story(), ElementsAre("frontmost?", "operation", "frontmost?", "activate 300"));
  EXPECT_EQ(world.frontmostSoon(), terminalPid);
}

TEST(BackgroundFrontmost, PutsItBackBeforeAnErrorPassesOn) {
  Foreground world;
  EXPECT_EQ(messageOf([&] {
              withBackgroundFrontmostPreserved(true, [&] {
                world.desktop().setFrontmost(browserPid);
                return world.failingOperation();
              });
            }),
            "no such thing");
  EXPECT_THAT(world.story(), ElementsAre("frontmost?", "operation", "frontmost?", "activate 300"));
}

TEST(BackgroundFrontmost, PutsNothingBackWhenNothingWasInFront) {
  Foreground world(nothingInFront);
  withBackgroundFrontmostPreserved(true, [&] {
    world.desktop().setFrontmost(browserPid);
    return world.operation();
  });
  EXPECT_THAT(world.story(), ElementsAre("frontmost?", "operation"));
}

TEST(BackgroundFrontmost, FailsQuietlyWhenTheApplicationQuitMeanwhile) {
  for (const bool remembered : {true, false}) {
    Foreground world;
    withBackgroundFrontmostPreserved(true, [&] {
      world.desktop().terminateProcess(terminalPid, remembered);
      return world.operation();
    });
    EXPECT_THAT(world.story(),
                ElementsAre("frontmost?", "operation", "frontmost?", frontmostScript(terminalPid)));
  }
}

}  // namespace
}  // namespace tessarine::test
