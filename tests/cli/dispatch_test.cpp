#include "cli/dispatch.h"

#include <gmock/gmock.h>

#include <nlohmann/json.hpp>

#include "cli/trace.h"
#include "support/foreground_story.h"
#include "support/world.h"

namespace tessarine::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using Words = std::vector<std::string>;

Words with(Words words, const Words& more) {
  words.insert(words.end(), more.begin(), more.end());
  return words;
}

TEST(Dispatch, CarriesOutTheCommandsThatNeedNoPanel) {
  World world("no-panel");
  for (const Words& words : std::vector<Words>{
           {"close"},
           {"click-point", "--x", "1", "--y", "2"},
           {"type-text", "--text", "a"},
           {"press-key", "--key", "esc"},
           {"list-windows"},
           {"list-background-panels"},
           {"inspect-open-dialog"},
       }) {
    const Result result = run(parseArgs(with(words, {"--pid", "812"})));
    EXPECT_EQ(result.at("ok"), true) << words.front();
    EXPECT_EQ(result.at("command"), words.front());
    EXPECT_EQ(result.begin().key(), "ok");
    EXPECT_EQ(std::next(result.begin()).key(), "command");
  }
}

TEST(Dispatch, ChoosesFolders) {
  TemporaryFolder folder;
  const std::string target = folder.makeFolder("target");
  World folders("english-service-window");
  EXPECT_EQ(run(parseArgs({"choose-folder", "--pid", "812", "--path", target})).at("command"),
            "choose-folder");
  EXPECT_EQ(folders.panelOutcomes(), "chosen " + target);
}

TEST(Dispatch, ChoosesPaths) {
  TemporaryFolder folder;
  const std::string target = folder.makeFile("upload.txt", "text");
  World files("file-panel-english");
  EXPECT_EQ(run(parseArgs({"choose-path", "--pid", "812", "--path", target})).at("command"),
            "choose-path");
  EXPECT_THAT(files.panelOutcomes(), HasSubstr("chosen "));
}

TEST(Dispatch, CountsTheDialogsThatCloseClosed) {
  World world("english-host-window");
  EXPECT_EQ(
      world.run({"close", "--pid", "812"}),
      (Outcome{0, "{\n  \"ok\": true,\n  \"command\": \"close\",\n  \"closed\": 1\n}\n", ""}));
  EXPECT_EQ(world.panelOutcomes(), "cancelled");
  EXPECT_EQ(run(parseArgs({"close", "--pid", "812"})).dump(),
            R"({"ok":true,"command":"close","closed":0})");
}

TEST(Dispatch, HandsTheTimeoutToTheCommand) {
  World world("no-panel");
  EXPECT_EQ(world.run({"choose-folder", "--pid", "812", "--path", "/usr", "--timeout", "2.5"}),
            (Outcome{1, "", "timed out after 2.5s\n"}));
}

// How a folder was chosen in a quick panel of a service, with these options besides.
std::string strategyWith(const Words& more) {
  TemporaryFolder folder;
  World world("english-service-window", {{"/panels/0/slow", 0.5}});
  const Words words{"choose-folder", "--pid", "812", "--path", folder.path()};
  const Result result = run(parseArgs(with(words, more)));
  EXPECT_EQ(world.panelOutcomes(), "chosen " + folder.path());
  return result.at("strategy");
}

TEST(Dispatch, TriesThePreferredPanelFirstWhenAsked) {
  EXPECT_EQ(strategyWith({"--prefer-background-panel"}), "background-window-capture-cgevent");
  EXPECT_THAT(strategyWith({}), Not(HasSubstr("background-window-capture")));
}

TEST(Dispatch, AllowsEventsForTheWholeSessionInTheForeground) {
  EXPECT_EQ(strategyWith({"--prefer-background-panel", "--temporary-foreground"}),
            "background-window-capture-system-events");
}

// --- The foreground. ---

const World::Patches finderComesForward{{"/person", {{{"atSeconds", 0.01}, {"activates", 250}}}}};

TEST(Dispatch, PreservesTheFrontmostApplicationOnlyInTheBackground) {
  World strict("english-host-window", finderComesForward);
  EXPECT_EQ(strict.run({"close", "--pid", "812", "--strict-background"}).exitStatus, 0);
  EXPECT_THAT(foregroundStory(strict.record()),
              ElementsAre("frontmost?", "frontmost?", "activate 300"));

  World plain("english-host-window", finderComesForward);
  EXPECT_EQ(plain.run({"close", "--pid", "812"}).exitStatus, 0);
  EXPECT_THAT(foregroundStory(plain.record()), IsEmpty());
}

TEST(Dispatch, PreservesTheFrontmostApplicationWhenAFolderIsNotChosen) {
  World world("no-panel", finderComesForward);
  EXPECT_EQ(world
                .run({"choose-folder", "--pid", "812", "--path", "/usr", "--timeout", "1",
                      "--strict-background"})
                .exitStatus,
            1);
  const auto story = foregroundStory(world.record());
  ASSERT_FALSE(story.empty());
  EXPECT_EQ(story.front(), "frontmost?");
  EXPECT_EQ(story.back(), "activate 300");
}

TEST(Dispatch, BringsTheBrowserForwardForATimeWhenAllowed) {
  for (const Words& words : std::vector<Words>{
           {"close", "--pid", "812", "--temporary-foreground"},
           {"choose-folder", "--pid", "812", "--path", "/usr/missing", "--temporary-foreground"},
       }) {
    World world("english-host-window");
    world.run(words);
    EXPECT_THAT(foregroundStory(world.record()),
                ElementsAre("frontmost?", "activate 812", frontmostScript(812), "activate 300"))
        << words.front();
  }
}

TEST(Dispatch, LetsTheForegroundOptionWinOverTheStrictOne) {
  for (const Words& words : std::vector<Words>{
           {"close", "--pid", "812", "--temporary-foreground"},
           {"choose-folder", "--pid", "812", "--path", "/usr", "--temporary-foreground"},
       }) {
    EXPECT_EQ(traceOf("english-host-window", with(words, {"--strict-background"})),
              traceOf("english-host-window", words))
        << words.front();
  }
}

TEST(Dispatch, LeavesTheForegroundAloneForAllOtherCommands) {
  for (const Words& words : std::vector<Words>{
           {"choose-path", "--pid", "812", "--path", "/missing"},
           {"click-point", "--pid", "812", "--x", "1", "--y", "2"},
           {"type-text", "--pid", "812", "--text", "a"},
           {"press-key", "--pid", "812", "--key", "return"},
           {"list-windows", "--pid", "812"},
           {"list-background-panels", "--pid", "812"},
           {"inspect-open-dialog", "--pid", "812"},
       }) {
    const Trace plain = traceOf("english-host-window", words);
    EXPECT_EQ(traceOf("english-host-window", with(words, {"--temporary-foreground"})), plain);
    EXPECT_EQ(traceOf("english-host-window", with(words, {"--strict-background"})), plain);
  }
}

}  // namespace
}  // namespace tessarine::test
