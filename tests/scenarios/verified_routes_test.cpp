// --verify as a whole: on the measured sheets, whoever gets the keys, in every view, and on every
// scenario that comes with the desktop.
#include <gmock/gmock.h>

#include "commands/verified_world.h"

namespace tessarine::test::verified_routes {
namespace {

using ::testing::AllOf;
using ::testing::HasSubstr;
using ::testing::StartsWith;

const std::vector<std::string> measured{"chromium-english", "chromium-chinese"};

VerifiedRun chosen(const FolderWorld& world, std::int32_t dialogPid = browserPid,
                   const std::string& verified = "folder shown") {
  return {verifiedFolder(world.target, dialogPid, verified), "chosen " + world.target,
          noDisturbance};
}

// --- Who gets the keys, in which view. ---

TEST(VerifiedFolder, IsChosenWhoeverGetsTheKeys) {
  for (const std::string& scenario : measured) {
    for (const char* reach : {"service", "host", "both"}) {
      for (const char* view : {"list", "columns", "icons"}) {
        FolderWorld world(scenario, {{"/panels/0/keysReach", reach}, {"/panels/0/view", view}});
        EXPECT_EQ(chooseVerifiedFolder(world), chosen(world))
            << scenario << ", keys reach " << reach << ", " << view;
        EXPECT_EQ(world.world.verdict(), "true");
      }
    }
  }
}

TEST(VerifiedFolder, IsChosenAt2MillisecondsARequest) {
  for (const std::string& scenario : measured) {
    for (const char* reach : {"service", "host"}) {
      for (const char* view : {"list", "columns", "icons"}) {
        FolderWorld world(
            scenario,
            {{"/panels/0/keysReach", reach}, {"/panels/0/view", view}, {"/prices/request", 0.002}});
        EXPECT_EQ(chooseVerifiedFolder(world), chosen(world))
            << scenario << ", keys reach " << reach << ", " << view;
        EXPECT_EQ(world.world.verdict(), "true");
      }
    }
  }
}

TEST(VerifiedFolder, IsChosenWhenKeysReachNobody) {
  for (const std::string& scenario : measured) {
    for (const double price : {0.0003, 0.002}) {
      FolderWorld list(scenario, {{"/panels/0/keysReach", "nobody"}, {"/prices/request", price}});
      EXPECT_EQ(chooseVerifiedFolder(list), chosen(list, browserPid, "entry selected"));
      EXPECT_EQ(list.world.verdict(), "true");
      FolderWorld icons(scenario, {{"/panels/0/keysReach", "nobody"},
                                   {"/panels/0/view", "icons"},
                                   {"/prices/request", price}});
      EXPECT_EQ(chooseVerifiedFolder(icons), chosen(icons));
      EXPECT_EQ(icons.world.verdict(), "true");
    }
  }
}

// A column offers no action and takes no selection: without keys only what the sidebar or the
// location pop-up names is reached.
TEST(VerifiedFolder, IsChosenInColumnsWithoutKeysWhereThePopUpNamesIt) {
  for (const std::string& scenario : measured) {
    FolderWorld world(scenario, {{"/panels/0/keysReach", "nobody"}, {"/panels/0/view", "columns"}});
    world.target = world.files.path();
    EXPECT_EQ(chooseVerifiedFolder(world), chosen(world)) << scenario;
    EXPECT_EQ(world.world.verdict(), "true");
    FolderWorld beside(scenario,
                       {{"/panels/0/keysReach", "nobody"}, {"/panels/0/view", "columns"}});
    const VerifiedRun run = chooseVerifiedFolder(beside);
    EXPECT_EQ(run.panels, "open");
    EXPECT_THAT(run.outcome.errors, StartsWith("not verified: the panel shows " + beside.start +
                                               ", not " + beside.target));
    EXPECT_EQ(beside.world.verdict(), "true");
  }
}

TEST(VerifiedFolder, IsChosenAtOnceWhenItIsShown) {
  for (const char* view : {"list", "columns", "icons"}) {
    FolderWorld world("chromium-english", {{"/panels/0/view", view}});
    world.target = world.start;
    EXPECT_EQ(chooseVerifiedFolder(world), chosen(world)) << view;
    EXPECT_EQ(world.world.record().keyEvents(), 0U);
    EXPECT_EQ(world.world.verdict(), "true");
  }
}

TEST(VerifiedFolder, IsChosenAtARequestsOrdinaryKeys) {
  FolderWorld world("chromium-english");
  chooseVerifiedFolder(world);
  EXPECT_THAT(postedEventKinds(world.world.record()),
              ::testing::ElementsAre("key 5+120000 down -> 900", "key 5+120000 up -> 900",
                                     "key 36 down -> 900", "key 36 up -> 900"));
}

TEST(VerifiedFolder, MayBeEmptyOrHidden) {
  for (const char* view : {"list", "columns"}) {
    FolderWorld empty("chromium-english", {{"/panels/0/view", view}});
    empty.target = empty.files.makeFolder("start/nothing in it");
    EXPECT_EQ(chooseVerifiedFolder(empty), chosen(empty, browserPid, "entry selected")) << view;
    EXPECT_EQ(empty.world.verdict(), "true");
    FolderWorld hidden("chromium-english", {{"/panels/0/view", view}});
    hidden.files.makeFolder("start/.hidden/inner");
    hidden.target = hidden.start + "/.hidden";
    EXPECT_EQ(chooseVerifiedFolder(hidden), chosen(hidden)) << view;
    EXPECT_EQ(hidden.world.verdict(), "true");
  }
}

TEST(VerifiedFolder, OfHiddenFoldersCannotBeReachedWithoutKeys) {
  FolderWorld world("chromium-english", {{"/panels/0/keysReach", "nobody"}});
  world.files.makeFolder("start/.hidden/inner");
  world.target = world.start + "/.hidden";
  const VerifiedRun run = chooseVerifiedFolder(world);
  EXPECT_THAT(run.outcome.errors, AllOf(HasSubstr("is not listed in " + world.start),
                                        HasSubstr("what is hidden is reached through the go-to "
                                                  "sheet alone")));
  EXPECT_EQ(run.panels, "open");
  EXPECT_EQ(world.world.verdict(), "true");
}

// --- Every shape. ---

TEST(VerifiedFolder, IsChosenInEveryShapeThatATreeShows) {
  for (const char* shape : {"host-sheet", "host-window", "service-window", "embedded"}) {
    for (const char* language : {"en", "zh-Hans", "de"}) {
      FolderWorld world("chromium-english", {{"/panels/0/shape", shape}, {"/language", language}});
      const bool service = std::string(shape) == "service-window";
      EXPECT_EQ(chooseVerifiedFolder(world), chosen(world, service ? servicePid : browserPid))
          << shape << " " << language;
      EXPECT_EQ(world.world.verdict(), "true");
    }
  }
}

TEST(VerifiedFolder, IsChosenInOldPanels) {
  for (const char* shape : {"host-sheet", "host-window", "service-window"}) {
    FolderWorld world("english-old-generation", {{"/panels/0/shape", shape},
                                                 {"/panels/0/identifiers", false},
                                                 {"/panels/0/prompt", "Choose"},
                                                 {"/panels/0/title", "Open"}});
    const bool service = std::string(shape) == "service-window";
    EXPECT_EQ(chooseVerifiedFolder(world), chosen(world, service ? servicePid : browserPid))
        << shape;
    EXPECT_EQ(world.world.verdict(), "true");
  }
}

TEST(VerifiedFolder, IsChosenInAPanelThatBothTreesShow) {
  FolderWorld world("chromium-english", {{"/panels/0/inBothTrees", true}});
  EXPECT_EQ(chooseVerifiedFolder(world), chosen(world));
  EXPECT_EQ(world.world.verdict(), "true");
}

TEST(VerifiedFolder, IsChosenInTheRightOneOfTwoBrowsers) {
  FolderWorld world("two-browsers", {{"/panels/1/folder", "/usr"}});
  const VerifiedRun run = chooseVerifiedFolder(world);
  EXPECT_EQ(run.outcome, verifiedFolder(world.target));
  EXPECT_EQ(run.panels, "chosen " + world.target + ", open");
  EXPECT_EQ(world.world.verdict(), "true");
}

TEST(VerifiedFolder, IsChosenInAPanelThatOpensLate) {
  FolderWorld world("chromium-english", {{"/panels/0/opensAtSeconds", 3}});
  EXPECT_EQ(chooseVerifiedFolder(world), chosen(world));
  EXPECT_EQ(world.world.verdict(), "true");
}

// --- Files. ---

TEST(VerifiedPath, ChoosesAFile) {
  for (const char* reach : {"service", "host", "both"}) {
    for (const char* view : {"list", "columns", "icons"}) {
      FolderWorld world(
          "chromium-english",
          {{"/panels/0/mode", "files"}, {"/panels/0/keysReach", reach}, {"/panels/0/view", view}});
      const std::string file = world.files.makeFile("start/target/report.txt", "text");
      const VerifiedRun run = runVerified(world.world, "choose-path", file);
      EXPECT_EQ(run.outcome, verifiedPath(file, "file")) << reach << " " << view;
      EXPECT_EQ(run.panels, "chosen " + file);
      EXPECT_EQ(run.disturbed, noDisturbance);
      EXPECT_EQ(world.world.verdict(), "true");
    }
  }
}

TEST(VerifiedPath, ChoosesAFileWithoutKeys) {
  FolderWorld world("chromium-english",
                    {{"/panels/0/mode", "files"}, {"/panels/0/keysReach", "nobody"}});
  const std::string file = world.files.makeFile("start/target/report.txt", "text");
  EXPECT_EQ(runVerified(world.world, "choose-path", file),
            (VerifiedRun{verifiedPath(file, "file"), "chosen " + file, noDisturbance}));
  EXPECT_EQ(world.world.verdict(), "true");
}

TEST(VerifiedPath, ChoosesAFolder) {
  FolderWorld world("chromium-english");
  EXPECT_EQ(runVerified(world.world, "choose-path", world.target),
            (VerifiedRun{verifiedPath(world.target, "directory", browserPid, "folder shown"),
                         "chosen " + world.target, noDisturbance}));
  EXPECT_EQ(world.world.verdict(), "true");
}

// --- Every scenario. ---

// Those in which a panel stands that can be led to the folder: the others end in an honest error.
TEST(VerifiedFolder, IsTrueOnEveryScenario) {
  const std::vector<std::string> others{
      "two-panels",  // which of them is meant nobody can say
      // No tree shows their panels.
      "clicks-at-the-corner", "clicks-lost", "other-space", "unseen-folders",
      "unseen-tmp-host-chinese", "unseen-tmp-service-chinese",
      // They choose files.
      "file-panel-chinese", "file-panel-english", "tmp-files-chinese"};
  for (const std::string& name : simulator::bundledScenarioNames()) {
    if (name == "no-panel") continue;  // there is nothing to show a folder of the test's
    FolderWorld world(name);
    const VerifiedRun run = chooseVerifiedFolder(world);
    EXPECT_EQ(world.world.verdict(), "true") << name;
    const bool other = std::find(others.begin(), others.end(), name) != others.end();
    EXPECT_EQ(run.outcome.exitStatus, other ? 1 : 0) << name << ": " << run.outcome.errors;
    if (other) {
      EXPECT_THAT(run.outcome.errors, StartsWith("not verified: ")) << name;
    }
    EXPECT_EQ(run.disturbed, noDisturbance) << name;
  }
}

}  // namespace
}  // namespace tessarine::test::verified_routes
