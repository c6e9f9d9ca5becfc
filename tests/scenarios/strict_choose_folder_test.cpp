// choose-folder --strict-background as a whole, on panels of every kind.
#include <gmock/gmock.h>

#include "support/folder_world.h"
#include "support/transcript.h"

namespace tessarine::test::strict_choose_folder {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

// What a whole run came to.
struct WholeRun {
  Outcome outcome;
  std::string panels;
  std::string disturbed;
  bool operator==(const WholeRun&) const = default;
};

void PrintTo(const WholeRun& run, std::ostream* stream) {
  PrintTo(run.outcome, stream);
  *stream << "panels: " << run.panels << "\ndisturbance: " << run.disturbed;
}

WholeRun runStrictly(FolderWorld& world, const std::vector<std::string>& options = {}) {
  Outcome outcome = world.chooseStrictly(options);
  return {std::move(outcome), world.world.panelOutcomes(), disturbance(world.world.record())};
}

WholeRun chosen(const FolderWorld& world, std::int32_t dialogPid) {
  return {
      {0, strictResultText(world.target, dialogPid), ""}, "chosen " + world.target, noDisturbance};
}

WholeRun failed(const std::string& message) {
  return {{1, "", message + "\n"}, "open", noDisturbance};
}

constexpr const char* notFoundAfterPriming =
    "open dialog not found after process-directed AX priming";
const World::Patches keysReachTheBrowser{{"/panels/0/keysReach", "both"}};

// --- Transcripts: every event, write and action, after the seconds slept since the one before. ---

// The sheet is there 0.33 s after the chord, so the first look finds its field. The field's
// AXConfirm does nothing, Return sends the sheet off. 0.27 s later the look at the window list
// takes 0.05 s, and the look at the folder asks some 70 elements before the pop-up, 0.02 s: the
// 0.35 s that the sheet takes to go are not over, and the folder is there at the next look.
TEST(StrictChooseFolder, TranscriptOnANewPanel) {
  FolderWorld world("english-service-window");
  EXPECT_EQ(runStrictly(world), chosen(world, servicePid));
  EXPECT_THAT(transcript(world.world.record()),
              ElementsAre("0.000 key 5+120000 down -> 900", "0.020 key 5+120000 up -> 900",
                          "0.400 set AXFocused of AXTextField in 900",
                          "0.000 set AXValue of AXTextField in 900: " + world.target,
                          "0.120 AXConfirm of AXTextField in 900", "0.200 key 36 down -> 900",
                          "0.020 key 36 up -> 900", "0.350 AXPress of AXButton in 900"));
}

// AXConfirm sends the sheet off; the Return that follows meets a sheet that is closing.
TEST(StrictChooseFolder, TranscriptOnAnOldPanel) {
  FolderWorld world("english-old-generation");
  EXPECT_EQ(runStrictly(world), chosen(world, servicePid));
  EXPECT_THAT(transcript(world.world.record()),
              ElementsAre("0.000 key 5+120000 down -> 900", "0.020 key 5+120000 up -> 900",
                          "0.400 set AXFocused of AXTextField in 900",
                          "0.000 set AXValue of AXTextField in 900: " + world.target,
                          "0.120 AXConfirm of AXTextField in 900", "0.200 key 36 down -> 900",
                          "0.020 key 36 up -> 900", "0.250 AXPress of AXButton in 900"));
}

TEST(StrictChooseFolder, TranscriptWithTheGoToSheetOpenAlready) {
  FolderWorld world("goto-sheet-open");
  EXPECT_EQ(runStrictly(world), chosen(world, servicePid));
  EXPECT_THAT(transcript(world.world.record()),
              ElementsAre("0.000 set AXFocused of AXTextField in 900",
                          "0.000 set AXValue of AXTextField in 900: " + world.target,
                          "0.120 AXConfirm of AXTextField in 900", "0.200 key 36 down -> 900",
                          "0.020 key 36 up -> 900", "0.250 AXPress of AXButton in 900"));
}

TEST(StrictChooseFolder, TranscriptWithTheFolderShownAlready) {
  FolderWorld world("english-service-window");
  world.target = world.start;
  EXPECT_EQ(runStrictly(world), chosen(world, servicePid));
  EXPECT_THAT(transcript(world.world.record()), ElementsAre("0.000 AXPress of AXButton in 900"));
}

// On a fast panel the Return of the sheet confirms the panel too, and all is over before the look
// at the window list.
TEST(StrictChooseFolder, TranscriptWithAReturnThatClosesThePanel) {
  FolderWorld world("english-service-window",
                    {{"/panels/0/slow", 0.5}, {"/panels/0/faults/goToReturnConfirms", true}});
  EXPECT_EQ(runStrictly(world), chosen(world, servicePid));
  EXPECT_THAT(transcript(world.world.record()),
              ElementsAre("0.000 key 5+120000 down -> 900", "0.020 key 5+120000 up -> 900",
                          "0.400 set AXFocused of AXTextField in 900",
                          "0.000 set AXValue of AXTextField in 900: " + world.target,
                          "0.120 AXConfirm of AXTextField in 900", "0.200 key 36 down -> 900",
                          "0.020 key 36 up -> 900"));
}

// --- Shapes and languages. ---

TEST(StrictChooseFolder, AWindowOfTheService) {
  for (const char* scenario : {"english-service-window", "chinese-service-window"}) {
    FolderWorld world(scenario);
    EXPECT_EQ(runStrictly(world), chosen(world, servicePid)) << scenario;
  }
}

TEST(StrictChooseFolder, AWindowOfTheBrowser) {
  for (const char* scenario : {"english-host-window", "chinese-host-window"}) {
    FolderWorld world(scenario, keysReachTheBrowser);
    EXPECT_EQ(runStrictly(world), chosen(world, browserPid)) << scenario;
  }
}

// The dialog was found in the browser, so the keys go there, and are lost.
TEST(StrictChooseFolder, AWindowOfTheBrowserThatOnlyTheServicesKeysReach) {
  for (const char* scenario :
       {"english-host-window", "chinese-host-window", "chinese-host-sheet"}) {
    FolderWorld world(scenario);
    EXPECT_EQ(runStrictly(world), failed(strictFailure("timed out after 1.5s"))) << scenario;
    EXPECT_THAT(transcript(world.world.record()),
                ElementsAre("0.000 key 5+120000 down -> 812", "0.020 key 5+120000 up -> 812"));
  }
}

// Known by its description.
TEST(StrictChooseFolder, AChineseSheet) {
  FolderWorld world("chinese-host-sheet", keysReachTheBrowser);
  EXPECT_EQ(runStrictly(world), chosen(world, browserPid));
}

// It has neither a title nor a Chinese text: Cancel, Choose and the search field, which is wide and
// can be confirmed, make it a chooser. It is seen at once, before anything is posted.
TEST(StrictChooseFolder, AnEnglishSheetKnownByItsControls) {
  FolderWorld world("english-host-sheet",
                    {{"/panels/0/keysReach", "both"}, {"/panels/0/prompt", "Choose"}});
  EXPECT_EQ(runStrictly(world), chosen(world, browserPid));
  EXPECT_THAT(transcript(world.world.record()),
              ElementsAre("0.000 key 5+120000 down -> 812", "0.020 key 5+120000 up -> 812",
                          "0.400 set AXFocused of AXTextField in 900",
                          "0.000 set AXValue of AXTextField in 900: " + world.target,
                          "0.120 AXConfirm of AXTextField in 900", "0.200 key 36 down -> 812",
                          "0.020 key 36 up -> 812", "0.350 AXPress of AXButton in 900"));
}

TEST(StrictChooseFolder, AnEnglishSheetWithAnUnknownPrompt) {
  FolderWorld world("english-host-sheet");
  EXPECT_EQ(runStrictly(world, {"--timeout", "0.5"}), failed(notFoundAfterPriming));
}

TEST(StrictChooseFolder, AnEmbeddedChooser) {
  FolderWorld chinese("chinese-embedded", {{"/panels/0/keysReach", "both"},
                                           {"/panels/0/listed", "service"},
                                           {"/panels/0/serviceTitle", "打开"}});
  EXPECT_EQ(runStrictly(chinese), chosen(chinese, browserPid));

  FolderWorld english("chinese-embedded", {{"/panels/0/keysReach", "both"},
                                           {"/panels/0/listed", "service"},
                                           {"/panels/0/serviceTitle", "Open"},
                                           {"/panels/0/language", "en"},
                                           {"/panels/0/prompt", "Choose"}});
  EXPECT_EQ(runStrictly(english), chosen(english, browserPid));
}

// No window of its own is listed, which counts as a panel that is gone already.
TEST(StrictChooseFolder, AnEmbeddedChooserThatNoListedWindowShows) {
  FolderWorld world("chinese-embedded", keysReachTheBrowser);
  const WholeRun run{{0, strictResultText(world.target, browserPid), ""}, "open", noDisturbance};
  EXPECT_EQ(runStrictly(world), run);
}

TEST(StrictChooseFolder, NoGermanPanelOfAnyShape) {
  for (const char* shape : {"service-window", "host-window", "host-sheet", "embedded"}) {
    FolderWorld world("german-service-window",
                      {{"/panels/0/shape", shape}, {"/panels/0/keysReach", "both"}});
    EXPECT_EQ(runStrictly(world, {"--timeout", "0.5"}), failed(notFoundAfterPriming)) << shape;
    EXPECT_THAT(transcript(world.world.record()), IsEmpty()) << shape;
  }
}

// Not even the go-to sheet that the chord opens makes it known.
TEST(StrictChooseFolder, AGermanPanelIsPrimedInVain) {
  FolderWorld world("german-service-window",
                    {{"/panels/0/shape", "embedded"}, {"/panels/0/keysReach", "both"}});
  EXPECT_EQ(runStrictly(world, {"--timeout", "3"}), failed(notFoundAfterPriming));
  EXPECT_THAT(postedEventKinds(world.world.record()),
              ElementsAre("key 5+120000 down -> 812", "key 5+120000 up -> 812",
                          "key 5+120000 down -> 900", "key 5+120000 up -> 900"));
  EXPECT_THAT(world.world.record().milestones(), Contains("go-to sheet ready"));
}

// --- Names. ---

TEST(StrictChooseFolder, AwkwardNames) {
  const std::vector<std::string> names{"two  blanks and a trailing ",
                                       "quotes \" and ' and `",
                                       "back\\slash",
                                       "$HOME;&|*?",
                                       "扩展程序 目录",
                                       "rocket 🚀 and family 👩‍👩‍👧",
                                       "cafe\u0301 combined",
                                       "café precomposed",
                                       "colon:name",
                                       ".hidden",
                                       "-dash"};
  for (const char* scenario : {"english-service-window", "chinese-service-window"}) {
    for (const std::string& name : names) {
      FolderWorld world(scenario, {}, name);
      EXPECT_EQ(runStrictly(world), chosen(world, servicePid)) << scenario << ": " << name;
    }
  }
}

// A wide text field that begins with "~" or "/" passes for the go-to sheet's, also in a list row.
TEST(StrictChooseFolder, ANameInTheListThatLooksLikeAPath) {
  for (const auto& [name, shown] : {std::pair{"~tilde", "~tilde"}, {":colon", "/colon"}}) {
    FolderWorld world("english-service-window", {}, name);
    EXPECT_EQ(runStrictly(world),
              failed(strictFailure(
                  "failed to set go-to-folder value via AX (got: " + std::string(shown) + ")")));
    EXPECT_THAT(postedEventKinds(world.world.record()), IsEmpty());
  }
}

}  // namespace
}  // namespace tessarine::test::strict_choose_folder
