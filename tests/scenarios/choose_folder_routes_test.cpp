// choose-folder as a whole: what is asked for, the order of its strategies, and the foreground.
#include <gmock/gmock.h>

#include "cli/usage_text.h"
#include "platform/clock.h"
#include "scenarios/folder_routes.h"
#include "support/foreground_story.h"
#include "support/transcript.h"

namespace tessarine::test::choose_folder_routes {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using Json = nlohmann::ordered_json;

const Patch unlisted{"/panels/0/listed", "none"};

// --- The path. ---

TEST(ChooseFolderRoutes, FailsBeforeAnythingWhenThereIsNoSuchFolder) {
  FolderWorld world("english-service-window");
  EXPECT_EQ(
      runChooseFolder(world.world, world.start + "/./no/"),
      (FolderRun{failed("folder does not exist: " + world.start + "/no"), "open", noDisturbance}));
  EXPECT_EQ(world.world.record().accessibilityRequests(), 0U);
  EXPECT_THAT(transcript(world.world.record()), IsEmpty());
  EXPECT_THAT(foregroundStory(world.world.record()), IsEmpty());
}

TEST(ChooseFolderRoutes, FailsWithTheUsageWhenThePathIsNoFolder) {
  FolderWorld world("english-service-window");
  const std::string file = world.files.makeFile("start/file");
  EXPECT_EQ(runChooseFolder(world.world, file + "/"),
            (FolderRun{
                {2, usageText, "path is not a directory: " + file + "\n"}, "open", noDisturbance}));
  EXPECT_EQ(world.world.record().accessibilityRequests(), 0U);
}

TEST(ChooseFolderRoutes, ChoosesTheStandardizedPath) {
  FolderWorld world("chinese-service-window", {startIsAPlace});
  EXPECT_EQ(runChooseFolder(world.world, world.start + "/./nothing/../target//").outcome,
            controlled(world.target, "hierarchy"));
  EXPECT_EQ(world.world.panelOutcomes(), "chosen " + world.target);
}

// --- The order of the strategies. ---

TEST(ChooseFolderRoutes, TriesThePreferredPanelBeforeTheControls) {
  FolderWorld world("chinese-service-window", {startIsAPlace});
  EXPECT_EQ(choose(world, {"--prefer-background-panel"}),
            (FolderRun{closedByEvents(world.target, servicePid, servicesWindow,
                                      "preferred fresh background panel",
                                      {{"choosePoint", {{"x", 1052.0}, {"y", 587.0}}}}),
                       "chosen " + world.target, "mouse 4, session 0, foreground 0"}));
  EXPECT_EQ(world.world.record().accessibilityRequests(), 0U);
}

TEST(ChooseFolderRoutes, UsesTheControlsWhenThePreferredPanelIsNotListed) {
  FolderWorld world("chinese-service-window", {startIsAPlace, unlisted});
  EXPECT_EQ(choose(world, {"--prefer-background-panel", "--timeout", "4"}),
            (FolderRun{controlled(world.target, "hierarchy"), "chosen " + world.target,
                       "mouse 2, session 0, foreground 0"}));
  EXPECT_GE(world.world.desktop().now(), 4.0);
}

std::string bothFailed(const std::string& preferred, const std::string& controls) {
  return "preferred background panel failed: " + preferred + "; AX path failed: " + controls;
}

TEST(ChooseFolderRoutes, TellsWhyEachStrategyFailed) {
  FolderWorld world("english-service-window", {noMenu, deaf, deadButton});
  const std::string first = notClosed(everyAttempt, "preferred fresh background panel");
  EXPECT_EQ(choose(world, {"--prefer-background-panel", "--timeout", "90"}).outcome,
            failed(notClosed(everyAttempt, bothFailed(first, "timed out after 1.5s"))));
  EXPECT_EQ(world.world.panelOutcomes(), "open");
}

// The Return that ends the first attempt is lost, the sheet that the controls open refuses the path
// and stays, and the last attempt succeeds. The sheet holds the path that was typed before.
TEST(ChooseFolderRoutes, TellsWhyTheStrategiesBeforeItFailed) {
  FolderWorld world("english-service-window", {noMenu,
                                               noButton,
                                               {"/panels/0/faults/confirmsOnSecondReturn", true},
                                               {"/panels/0/faults/fieldWriteRefused", -25204}});
  const std::string first = notClosed(everyAttempt, "preferred fresh background panel");
  const std::string second = "failed to set go-to-folder value via AX (got: " + world.target + ")";
  EXPECT_EQ(choose(world, {"--prefer-background-panel", "--timeout", "60"}).outcome,
            closedByEvents(world.target, servicePid, servicesWindow, bothFailed(first, second)));
  EXPECT_EQ(world.world.panelOutcomes(), "chosen " + world.target);
}

TEST(ChooseFolderRoutes, WaitsForAPanelOnceMoreWhenThereIsNone) {
  for (const auto& [options, waits] : {std::pair{std::vector<std::string>{"--timeout", "0.5"}, 2},
                                       {{"--timeout", "0.5", "--prefer-background-panel"}, 3}}) {
    World world("no-panel");
    EXPECT_EQ(runChooseFolder(world, "/usr", options).outcome, failed("timed out after 0.5s"));
    EXPECT_THAT(transcript(world.record()), IsEmpty());
    EXPECT_GE(world.desktop().now(), 0.5 * waits);
    EXPECT_LE(world.desktop().now(), 0.5 * waits + 0.6) << "names are asked for before";
  }
}

TEST(ChooseFolderRoutes, TriesTheStrictStrategyAloneWhateverIsPreferred) {
  FolderWorld world("english-service-window");
  EXPECT_EQ(choose(world, {"--strict-background", "--prefer-background-panel"}),
            (FolderRun{{0, strictResultText(world.target, servicePid), ""},
                       "chosen " + world.target,
                       noDisturbance}));
  FolderWorld failing("english-service-window", {deadButton});
  EXPECT_EQ(choose(failing, {"--strict-background", "--prefer-background-panel"}),
            (FolderRun{failed(strictFailure("timed out after 2.0s")), "open", noDisturbance}));
}

// --- The foreground. ---

// The story without the questions for the names of folders.
std::vector<std::string> changesAsked(const simulator::Record& record) {
  auto story = foregroundStory(record);
  std::erase_if(story, [](const std::string& line) {
    return line.find("application \"Finder\"") != std::string::npos;
  });
  return story;
}

std::optional<std::int32_t> frontmostSoon(World& world) {
  sleepSeconds(0.2);
  return world.desktop().frontmost();
}

TEST(ChooseFolderRoutes, AsksForNoForegroundUnlessTold) {
  FolderWorld world("chinese-service-window", {startIsAPlace});
  EXPECT_EQ(choose(world).outcome, controlled(world.target, "hierarchy"));
  EXPECT_THAT(changesAsked(world.world.record()), IsEmpty());
}

// What is strict otherwise walks by rows with clicks.
TEST(ChooseFolderRoutes, IsNotStrictWithTemporaryForeground) {
  for (const std::vector<std::string>& options :
       {std::vector<std::string>{"--temporary-foreground"},
        {"--temporary-foreground", "--strict-background"}}) {
    FolderWorld world("chinese-service-window", {startIsAPlace});
    EXPECT_EQ(choose(world, options),
              (FolderRun{controlled(world.target, "hierarchy"), "chosen " + world.target,
                         "mouse 2, session 0, foreground 1"}));
    const auto story = foregroundStory(world.world.record());
    EXPECT_THAT(changesAsked(world.world.record()),
                ElementsAre("frontmost?", "activate 812", frontmostScript(812), "activate 300"));
    EXPECT_THAT(story.at(3), HasSubstr("Finder"));  // once the browser is in front
    EXPECT_EQ(frontmostSoon(world.world), terminalPid);
  }
}

TEST(ChooseFolderRoutes, GivesTheForegroundBackAfterAnError) {
  World world("no-panel");
  EXPECT_EQ(runChooseFolder(world, "/usr", {"--temporary-foreground", "--timeout", "0.5"}).outcome,
            failed("timed out after 0.5s"));
  EXPECT_THAT(changesAsked(world.record()),
              ElementsAre("frontmost?", "activate 812", frontmostScript(812), "activate 300"));
  EXPECT_EQ(frontmostSoon(world), terminalPid);
}

TEST(ChooseFolderRoutes, GivesNothingBackWhenTheBrowserWasInFront) {
  FolderWorld world("chinese-service-window", {startIsAPlace, {"/frontmost", browserPid}});
  EXPECT_EQ(choose(world, {"--temporary-foreground"}).outcome,
            controlled(world.target, "hierarchy"));
  EXPECT_THAT(changesAsked(world.world.record()),
              ElementsAre("frontmost?", "activate 812", frontmostScript(812)));
}

Json quitting(std::int32_t pid, bool remembered) {
  return {{{"atSeconds", 0.5}, {"quits", pid}, {"remembered", remembered}}};
}

// An application that the workspace has forgotten is asked for by script, in vain.
TEST(ChooseFolderRoutes, SucceedsWhenTheApplicationOfBeforeHasQuit) {
  for (const auto& [remembered, last] :
       {std::pair{true, std::string("activate 300")}, {false, frontmostScript(300)}}) {
    FolderWorld world("chinese-service-window",
                      {startIsAPlace, {"/person", quitting(terminalPid, remembered)}});
    EXPECT_EQ(choose(world, {"--temporary-foreground"}).outcome,
              controlled(world.target, "hierarchy"));
    EXPECT_THAT(changesAsked(world.world.record()),
                ElementsAre("frontmost?", "activate 812", frontmostScript(812), last));
  }
}

TEST(ChooseFolderRoutes, GivesTheForegroundBackWhenTheBrowserHasQuit) {
  FolderWorld world("chinese-service-window", {{"/person", quitting(browserPid, true)}});
  EXPECT_EQ(choose(world, {"--temporary-foreground", "--timeout", "1"}).outcome,
            failed("timed out after 1.0s"));
  EXPECT_THAT(changesAsked(world.world.record()),
              ElementsAre("frontmost?", "activate 812", frontmostScript(812), "activate 300"));
  EXPECT_EQ(frontmostSoon(world.world), terminalPid);
}

}  // namespace
}  // namespace tessarine::test::choose_folder_routes
