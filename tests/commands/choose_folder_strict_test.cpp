#include "commands/choose_folder_strict.h"

#include <gmock/gmock.h>

#include <functional>

#include "core/tool_error.h"
#include "support/folder_world.h"
#include "support/transcript.h"

namespace tessarine::test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr const char* notFoundAfterPriming =
    "open dialog not found after process-directed AX priming";
constexpr double defaultSeconds = 10;

Result chooseStrictly(const std::string& path, double timeoutSeconds = defaultSeconds) {
  return chooseFolderByStrictAX(browserPid, path, timeoutSeconds, "/vol", "Vol", {"a", "b"}, "b");
}

// The failure with the default time-out, or with another.
std::string failureIn(const std::string& scenario, const World::Patches& patches,
                      double timeoutSeconds = defaultSeconds) {
  FolderWorld world(scenario, patches);
  const std::string message = messageOf([&] { chooseStrictly(world.target, timeoutSeconds); });
  EXPECT_EQ(disturbance(world.world.record()), noDisturbance);
  return message;
}

// --- The result. ---

TEST(ChooseFolderByStrictAX, AnswersWithWhatItWasGivenAndTheDialog) {
  FolderWorld world("english-service-window");
  const Result expected{{"ok", true},
                        {"command", "choose-folder"},
                        {"path", world.target},
                        {"volumeRoot", "/vol"},
                        {"volumeDisplayName", "Vol"},
                        {"components", {"a", "b"}},
                        {"searchQuery", "b"},
                        {"strategy", "embedded-chooser-ax-goto-folder-strict-background"},
                        {"backgroundOnly", true},
                        {"dialogPid", servicePid},
                        {"dialogApp", "open-save-panel-service"}};
  EXPECT_EQ(chooseStrictly(world.target), expected);
  EXPECT_EQ(world.world.panelOutcomes(), "chosen " + world.target);
}

// --- The search, whose error is passed on as it is. ---

TEST(ChooseFolderByStrictAX, PassesOnThatThereIsNoPanel) {
  World world("no-panel");
  EXPECT_EQ(messageOf([] { chooseStrictly("/usr", 0.2); }), notFoundAfterPriming);
  EXPECT_GE(world.desktop().now(), 0.5);
}

TEST(ChooseFolderByStrictAX, PassesOnThatTheLastWaitForAPanelTimedOut) {
  BareDesktop world;
  const std::string message = messageOf([] { chooseStrictly("/usr", 30); });
  EXPECT_THAT(message, ::testing::MatchesRegex("timed out after 1\\.[12][0-9]*s"));
  EXPECT_GE(world.now(), 4.0);
  EXPECT_LT(world.now(), 4.2);
}

TEST(ChooseFolderByStrictAX, SearchesForHalfASecondAtLeastAndFourAtMost) {
  const auto opensAt = [](double seconds) {
    return World::Patches{{"/panels/0/opensAtSeconds", seconds}, {"/panels/0/slow", 0.01}};
  };
  FolderWorld early("english-service-window", opensAt(0.3));
  chooseStrictly(early.target, 0.2);
  EXPECT_EQ(early.world.panelOutcomes(), "chosen " + early.target);

  FolderWorld late("english-service-window", opensAt(3));
  chooseStrictly(late.target, 30);
  EXPECT_EQ(late.world.panelOutcomes(), "chosen " + late.target);

  FolderWorld tooLate("english-service-window", opensAt(4.6));
  EXPECT_NE(messageOf([&] { chooseStrictly(tooLate.target, 30); }), "");
  EXPECT_LT(tooLate.world.desktop().now(), 4.6);
}

// The owner of the service's panel window comes before the service of the process list, for which
// no time is left; the browser, which the search puts first, is not repeated.
TEST(ChooseFolderByStrictAX, PrimesTheBrowserThenTheOwnersOfPanelWindows) {
  BareDesktop world;
  world.desktop.setScreens({{0, 0, 1440, 900}});
  world.desktop.installProgram("/bin/ps", [](simulator::ProgramRun& run) {
    run.print("  901 Open and Save Panel Service (Google Chrome)\n");
    run.end(0);
  });
  world.desktop.installProgram("background-window-capture", [](simulator::ProgramRun& run) {
    run.print(
        "7\tpid=812\tapp=Google Chrome\ttitle=Open\tframe=0,0,100,100\n"
        "8\tpid=900\tapp=Open and Save Panel Service (Google Chrome)\ttitle=Open\t"
        "frame=0,0,100,100\n");
    run.end(0);
  });
  EXPECT_THROW(chooseStrictly("/usr"), ToolError);
  EXPECT_THAT(postedEventKinds(world.desktop.record()),
              ElementsAre("key 5+120000 down -> 812", "key 5+120000 up -> 812",
                          "key 5+120000 down -> 900", "key 5+120000 up -> 900"));
}

// --- Going to the folder. ---

TEST(ChooseFolderByStrictAX, WrapsThatNoGoToFieldAppears) {
  EXPECT_EQ(failureIn("english-service-window", {{"/panels/0/goTo/neverOpens", true}}),
            strictFailure("timed out after 1.5s"));
}

TEST(ChooseFolderByStrictAX, WrapsThatTheGoToFieldRefusesThePath) {
  EXPECT_EQ(failureIn("english-service-window", {{"/panels/0/faults/fieldWriteRefused", -25204},
                                                 {"/lastGoToPath", "/usr/share"}}),
            strictFailure("failed to set go-to-folder value via AX (got: /usr/share)"));
}

TEST(ChooseFolderByStrictAX, WrapsThatTheGoToFieldIsAComboBox) {
  EXPECT_EQ(failureIn("chinese-old-generation", {}), strictFailure("timed out after 1.5s"));
}

TEST(ChooseFolderByStrictAX, PressesReturnTwiceWhereTheGoToFieldCannotBeConfirmed) {
  FolderWorld world("english-service-window", {{"/panels/0/goTo/withoutConfirm", true}});
  chooseStrictly(world.target);
  EXPECT_THAT(transcript(world.world.record()),
              ElementsAre("0.000 key 5+120000 down -> 900", "0.020 key 5+120000 up -> 900",
                          "0.400 set AXFocused of AXTextField in 900",
                          "0.000 set AXValue of AXTextField in 900: " + world.target,
                          "0.120 key 36 down -> 900", "0.020 key 36 up -> 900",
                          "0.400 key 36 down -> 900", "0.020 key 36 up -> 900"));
  EXPECT_EQ(world.world.panelOutcomes(), "chosen " + world.target);
}

// --- After that. ---

// What is not listed counts as gone, whatever the tree shows.
TEST(ChooseFolderByStrictAX, SucceedsAtOnceWhenNoPanelWindowIsListed) {
  FolderWorld world("english-service-window",
                    {{"/panels/0/listed", "none"}, {"/panels/0/faults/noConfirmButton", true}});
  EXPECT_EQ(chooseStrictly(world.target)["ok"], true);
  EXPECT_EQ(transcript(world.world.record()).back(), "0.020 key 36 up -> 900");
  EXPECT_EQ(world.world.panelOutcomes(), "open");
}

TEST(ChooseFolderByStrictAX, WrapsThatTheFolderIsNotShownWithinTwoSeconds) {
  const World::Patches sheetThatIgnoresReturn{{"/panels/0/faults/ignoresKeys", true}};
  EXPECT_EQ(failureIn("goto-sheet-open", sheetThatIgnoresReturn),
            strictFailure("timed out after 2.0s"));
  EXPECT_EQ(failureIn("goto-sheet-open", sheetThatIgnoresReturn, 30),
            strictFailure("timed out after 2.0s"));
  EXPECT_EQ(failureIn("goto-sheet-open", sheetThatIgnoresReturn, 0.7),
            strictFailure("timed out after 0.7s"));
  EXPECT_EQ(failureIn("goto-sheet-open", sheetThatIgnoresReturn, 0.2),
            strictFailure("timed out after 0.5s"));
}

// The pauses: of a key press, of writing, after the confirmation, of the looks, after Return.
TEST(ChooseFolderByStrictAX, LooksForTheFolderEvery100Milliseconds) {
  FolderWorld world("goto-sheet-open", {{"/panels/0/faults/ignoresKeys", true}});
  EXPECT_THROW(chooseStrictly(world.target), ToolError);
  EXPECT_THAT(sleepLengths(world.world.record()),
              ElementsAre("0.02", "0.1", "0.12", "0.2", "0.25"));
}

TEST(ChooseFolderByStrictAX, WrapsThatThereIsNoChooseButton) {
  EXPECT_EQ(failureIn("english-service-window", {{"/panels/0/faults/noConfirmButton", true}}),
            strictFailure("background-only native folder panel has no AXPress Choose control"));
  EXPECT_EQ(failureIn("english-service-window", {{"/panels/0/prompt", "Select"}}),
            strictFailure("background-only native folder panel has no AXPress Choose control"));
}

// A panel whose pop-up names another folder as soon as the title of its button has been read.
TEST(ChooseFolderByStrictAX, WrapsThatThePanelShowsAnotherFolderBeforeThePress) {
  BareDesktop world;
  world.desktop.installProgram("background-window-capture", [](simulator::ProgramRun& run) {
    run.print("7\tpid=812\tapp=Google Chrome\ttitle=Open\tframe=0,0,100,100\n");
    run.end(0);
  });
  world.desktop.setScreens({{0, 0, 1440, 900}});
  simulator::Element& window = world.addWindow("Open");
  simulator::Element& popup = window.addChild("AXPopUpButton");
  popup.set("AXValue", std::string("usr"));
  window.addChild("AXButton").set("AXTitle", std::string("Choose"));
  std::function<void()> watch = [&] {
    const auto& last = world.desktop.record().lines();
    const auto* request =
        last.empty() ? nullptr : std::get_if<simulator::AccessibilityRequest>(&last.back().entry);
    // Its title without its value is what tells a Choose button.
    const auto asked = request != nullptr ? request->names : std::vector<std::string>();
    const bool isPress = request != nullptr && request->role == "AXButton" &&
                         std::ranges::count(asked, "AXTitle") > 0 &&
                         std::ranges::count(asked, "AXValue") == 0;
    if (isPress) popup.set("AXValue", std::string("lib"));
    if (!isPress) world.desktop.schedule(0.0001, watch);
  };
  world.desktop.schedule(0.0001, watch);
  EXPECT_EQ(messageOf([] { chooseStrictly("/usr"); }),
            strictFailure("background-only AX navigation did not verify target folder before "
                          "pressing Choose: /usr"));
  EXPECT_THAT(transcript(world.desktop.record()), IsEmpty());
}

TEST(ChooseFolderByStrictAX, WrapsThatThePressIsRefused) {
  EXPECT_EQ(failureIn("english-service-window", {{"/panels/0/faults/pressRefused", -25204}}),
            strictFailure("AX action AXPress failed: -25204"));
}

TEST(ChooseFolderByStrictAX, WrapsThatThePressReportsAnErrorThoughItLands) {
  FolderWorld world("english-service-window", {{"/panels/0/faults/confirmAnswers", -25204}});
  EXPECT_EQ(messageOf([&] { chooseStrictly(world.target); }),
            strictFailure("AX action AXPress failed: -25204"));
  world.world.desktop().advanceTo(world.world.desktop().now() + 1);
  EXPECT_EQ(world.world.panelOutcomes(), "chosen " + world.target);
}

TEST(ChooseFolderByStrictAX, WrapsThatThePanelDoesNotCloseWithinTwoSeconds) {
  const World::Patches deadButton{{"/panels/0/faults/confirmDoesNothing", true}};
  EXPECT_EQ(failureIn("english-service-window", deadButton),
            "background-only native folder panel key+AX selection failed: timed out after 2.0s; "
            "mouse CGEvent fallback is disabled in strict background mode");
  EXPECT_EQ(failureIn("english-service-window", deadButton, 30),
            strictFailure("timed out after 2.0s"));
  EXPECT_EQ(failureIn("english-service-window", deadButton, 0.75),
            strictFailure("timed out after 0.75s"));
}

TEST(ChooseFolderByStrictAX, LooksForTheCloseEvery120Milliseconds) {
  FolderWorld world("english-service-window", {{"/panels/0/faults/confirmDoesNothing", true}});
  world.target = world.start;
  EXPECT_THROW(chooseStrictly(world.target), ToolError);
  EXPECT_THAT(sleepLengths(world.world.record()), ElementsAre("0.12"));
}

TEST(ChooseFolderByStrictAX, WaitsForAPanelThatClosesLate) {
  FolderWorld late("english-service-window", {{"/panels/0/faults/closesLateBySeconds", 1.5}});
  EXPECT_EQ(chooseStrictly(late.target)["ok"], true);
  EXPECT_EQ(failureIn("english-service-window", {{"/panels/0/faults/closesLateBySeconds", 2.5}}),
            strictFailure("timed out after 2.0s"));
}

// The close counts only when no candidate process shows a dialog any more, of whichever service.
TEST(ChooseFolderByStrictAX, FailsWhenAnotherPanelStaysOpen) {
  for (const World::Patches& patches :
       {World::Patches{}, World::Patches{{"/panels/1/service", 901}}}) {
    FolderWorld world("two-panels", patches);
    EXPECT_EQ(messageOf([&] { chooseStrictly(world.target); }),
              strictFailure("timed out after 2.0s"));
    EXPECT_EQ(world.world.panelOutcomes(), "open, chosen " + world.target);
  }
}

// It appears while the service's panel is at work.
TEST(ChooseFolderByStrictAX, FailsWhenTheBrowserShowsAnEmbeddedChooserMeanwhile) {
  FolderWorld world("two-panels", {{"/panels/0/shape", "embedded"},
                                   {"/panels/0/language", "zh-Hans"},
                                   {"/panels/0/prompt", "选择"},
                                   {"/panels/0/opensAtSeconds", 1},
                                   {"/panels/1/service", 901}});
  EXPECT_EQ(messageOf([&] { chooseStrictly(world.target); }),
            strictFailure("timed out after 2.0s"));
  EXPECT_EQ(world.world.panelOutcomes(), "open, chosen " + world.target);
}

}  // namespace
}  // namespace tessarine::test
