// The strategy of --verify, step by step: what it refuses, what it sees, what it says.
#include "commands/verified_choice.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <functional>
#include <memory>

#include "commands/verified_world.h"
#include "core/time_budget.h"
#include "dialog/tree.h"

namespace tessarine::test::verified_choice {
namespace {

using ::testing::AllOf;
using ::testing::ElementsAre;
using ::testing::EndsWith;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;
using ::testing::StartsWith;
using Verb = simulator::AccessibilityRequest::Verb;

struct Failure {
  ToolError::Case kind;
  std::string message;
  bool operator==(const Failure&) const = default;
};

void PrintTo(const Failure& failure, std::ostream* stream) {
  *stream << static_cast<int>(failure.kind) << " " << failure.message;
}

template <class Action>
Failure failureOf(const Action& action) {
  try {
    action();
  } catch (const ToolError& error) {
    return {error.errorCase(), error.message()};
  }
  ADD_FAILURE() << "nothing was thrown";
  return {ToolError::Case::usage, ""};
}

// How often buttons were pressed.
long presses(const World& world) {
  return requestsFor(world.record(), "AXPress", 0, Verb::perform);
}

// The verdict on a run that failed, and its error without the line's end.
struct HonestFailure {
  explicit HonestFailure(World& world, const std::string& path,
                         const std::string& command = "choose-folder",
                         const std::vector<std::string>& options = {})
      : run(runVerified(world, command, path, options)) {
    error = run.outcome.errors;
    EXPECT_EQ(run.outcome.exitStatus, 1);
    EXPECT_EQ(run.outcome.output, "");
    EXPECT_THAT(error, StartsWith("not verified: "));
    EXPECT_EQ(std::count(error.begin(), error.end(), '\n'), 1) << error;
    EXPECT_THAT(error, EndsWith("\n"));
    if (!error.empty()) error.pop_back();
    EXPECT_EQ(world.record().mouseEvents(), 0U);
    EXPECT_EQ(world.record().sessionEvents(), 0U);
  }
  VerifiedRun run;
  std::string error;
};

// --- The target. ---

TEST(VerifiedTarget, MustExist) {
  World world("chromium-english");
  const std::string missing = "/nowhere/at/all";
  EXPECT_EQ(failureOf([&] { chooseFolderVerified(browserPid, missing, 1); }),
            (Failure{ToolError::Case::notFound, "folder does not exist: " + missing}));
  EXPECT_EQ(failureOf([&] { choosePathVerified(browserPid, missing, 1); }),
            (Failure{ToolError::Case::notFound, "path does not exist: " + missing}));
  EXPECT_EQ(world.record().accessibilityRequests(), 0U);
}

TEST(VerifiedTarget, MustBeAFolderForChooseFolder) {
  World world("chromium-english");
  TemporaryFolder files;
  const std::string file = files.makeFile("report.txt");
  EXPECT_EQ(failureOf([&] { chooseFolderVerified(browserPid, file, 1); }),
            (Failure{ToolError::Case::usage, "path is not a directory: " + file}));
  EXPECT_EQ(world.record().accessibilityRequests(), 0U);
}

TEST(VerifiedTarget, MustNotBeEmpty) {
  World world("chromium-english");
  const Failure empty{ToolError::Case::actionFailed, "not verified: the path is empty"};
  EXPECT_EQ(failureOf([] { chooseFolderVerified(browserPid, "", 1); }), empty);
  EXPECT_EQ(failureOf([] { choosePathVerified(browserPid, "", 1); }), empty);
  EXPECT_EQ(world.record().accessibilityRequests(), 0U);
}

TEST(VerifiedTarget, MustBeText) {
  World world("chromium-english");
  const Failure noText{ToolError::Case::actionFailed, "not verified: the path is not UTF-8"};
  EXPECT_EQ(failureOf([] { chooseFolderVerified(browserPid, "/usr/\xFF", 1); }), noText);
  EXPECT_EQ(failureOf([] { choosePathVerified(browserPid, "/usr/\xFF", 1); }), noText);
}

TEST(VerifiedTarget, LinksAreFollowed) {
  FolderWorld world("chromium-english");
  const std::string link = world.files.path() + "/link";
  std::filesystem::create_directory_symlink(world.target, link);
  const VerifiedRun run = runVerified(world.world, "choose-folder", link);
  EXPECT_EQ(run.panels, "chosen " + world.target);
  const auto result = nlohmann::json::parse(run.outcome.output);
  EXPECT_EQ(result.at("path"), link);
  EXPECT_EQ(result.at("verifiedPath"), world.target);
  EXPECT_EQ(world.world.verdict(), "true");
}

TEST(VerifiedTarget, ABrokenLinkDoesNotExist) {
  FolderWorld world("chromium-english");
  const std::string link = world.files.path() + "/link";
  std::filesystem::create_symlink("nowhere", link);
  EXPECT_EQ(failureOf([&] { chooseFolderVerified(browserPid, link, 1); }).message,
            "folder does not exist: " + link);
}

// --- The results. ---

TEST(VerifiedResult, HasTheKeysOfChooseFolderInOrder) {
  FolderWorld world("chromium-english");
  EXPECT_EQ(chooseVerifiedFolder(world).outcome, verifiedFolder(world.target));
}

TEST(VerifiedResult, HasTheKeysOfChoosePathInOrder) {
  FolderWorld world("file-panel-english");
  const std::string file = world.files.makeFile("start/report.txt", "text");
  EXPECT_EQ(runVerified(world.world, "choose-path", file).outcome,
            verifiedPath(file, "file", servicePid));
}

TEST(VerifiedResult, OfChoosePathNamesAFolderADirectory) {
  FolderWorld world("chromium-english");
  EXPECT_EQ(runVerified(world.world, "choose-path", world.target).outcome,
            verifiedPath(world.target, "directory", browserPid, "folder shown"));
}

TEST(VerifiedResult, HasThePathWithoutWhatIsOfNoEffectInIt) {
  FolderWorld world("chromium-english");
  EXPECT_EQ(runVerified(world.world, "choose-folder", world.start + "//./target/").outcome,
            verifiedFolder(world.target));
}

TEST(VerifiedResult, SaysInWhoseTreeThePanelWas) {
  FolderWorld world("english-service-window");
  EXPECT_EQ(chooseVerifiedFolder(world).outcome, verifiedFolder(world.target, servicePid));
}

TEST(VerifiedResult, OfTheStrategyItself) {
  FolderWorld world("chromium-english");
  const Result choice = choosePathVerified(browserPid, world.target, 10);
  EXPECT_EQ(choice["dialogPid"], browserPid);
  EXPECT_EQ(choice["dialogApp"], "primary-browser");
  EXPECT_EQ(choice["verified"], "folder shown");
  EXPECT_EQ(choice["verifiedPath"], world.target);
}

// --- The browser. ---

TEST(VerifiedBrowser, MustRun) {
  FolderWorld world("chromium-english");
  EXPECT_EQ(world.world.run({"choose-folder", "--pid", "4711", "--path", world.target, "--verify"}),
            notVerified("no process has the pid 4711"));
  EXPECT_EQ(world.world.panelOutcomes(), "open");
}

TEST(VerifiedBrowser, NeedNotBeAnApplicationThatTheWorkspaceKnows) {
  FolderWorld world("chromium-english");
  const Outcome outcome = world.world.run({"choose-folder", "--pid", std::to_string(servicePid),
                                           "--path", world.target, "--verify", "--timeout", "0"});
  EXPECT_THAT(outcome.errors, StartsWith("not verified: no open panel of "));
}

TEST(VerifiedBrowser, MustRunBeforeAnythingIsAskedOfIt) {
  FolderWorld world("chromium-english");
  world.world.run({"choose-folder", "--pid", "0", "--path", world.target, "--verify"});
  EXPECT_EQ(world.world.record().accessibilityRequests(), 0U);
}

TEST(VerifiedBrowser, MayNotAnswer) {
  FolderWorld world("chromium-english", {{"/faults/silentProcesses", {812}}});
  const HonestFailure failure(world.world, world.target, "choose-folder", {"--timeout", "2"});
  EXPECT_THAT(failure.error, AllOf(HasSubstr("Google Chrome"), EndsWith("does not answer")));
  EXPECT_LT(world.world.desktop().now(), watchdogSeconds(2));
}

// It is asked with little patience: two looks fit into the time.
TEST(VerifiedBrowser, IsNotWaitedForLongByASingleRequest) {
  FolderWorld world("chromium-english", {{"/faults/silentProcesses", {812}}});
  const HonestFailure failure(world.world, world.target, "choose-folder", {"--timeout", "2"});
  EXPECT_LE(world.world.desktop().now(), 5.0);
}

TEST(VerifiedBrowser, NeedNotBeListedByPs) {
  FolderWorld world("chromium-english");
  world.world.desktop().faults().missing_programs.insert("/bin/ps");
  EXPECT_THAT(chooseVerifiedFolder(world).outcome.errors, Not(HasSubstr("no process")));
}

TEST(VerifiedBrowser, MayBeBusyForAWhile) {
  FolderWorld world("chromium-english",
                    {{"/faults/busy", {{{"pid", 812}, {"fromSeconds", 0}, {"toSeconds", 4}}}}});
  const VerifiedRun run = chooseVerifiedFolder(world);
  EXPECT_EQ(run.outcome, verifiedFolder(world.target));
  EXPECT_EQ(world.world.verdict(), "true");
}

// It falls silent while the go-to sheet opens, which nobody sees then.
TEST(VerifiedBrowser, MayFallSilentInBetween) {
  FolderWorld world("busy-browser");
  const VerifiedRun run = chooseVerifiedFolder(world, {"--timeout", "20"});
  EXPECT_EQ(world.world.verdict(), "true");
  if (run.outcome.exitStatus == 0) {
    EXPECT_EQ(run.panels, "chosen " + world.target);
  } else {
    EXPECT_THAT(run.outcome.errors, StartsWith("not verified: "));
    EXPECT_EQ(run.panels, "open");
    EXPECT_THAT(world.world.record().milestones(),
                ::testing::Contains(HasSubstr("go-to sheet closed")));
  }
}

// --- The panel. ---

TEST(VerifiedPanel, IsWaitedForUpToTheTimeout) {
  FolderWorld world("no-panel", {{"/panels", nlohmann::ordered_json::array({{{"folder", "/usr"}}})},
                                 {"/panels/0/opensAtSeconds", 3600}});
  const HonestFailure failure(world.world, world.target, "choose-folder", {"--timeout", "2.5"});
  EXPECT_THAT(failure.error, StartsWith("not verified: no open panel of Google Chrome"));
  EXPECT_THAT(failure.error, EndsWith(" was found within 2.5s"));
  EXPECT_GE(world.world.desktop().now(), 2.4);
  EXPECT_LE(world.world.desktop().now(), 4.0);
}

long helperStarts(const World& world) {
  const auto& lines = world.record().lines();
  return std::count_if(lines.begin(), lines.end(), [](const simulator::RecordLine& line) {
    const auto* started = std::get_if<simulator::ProgramStarted>(&line.entry);
    return started != nullptr && started->arguments == std::vector<std::string>{"list"};
  });
}

TEST(VerifiedPanel, IsSearchedWithOneListOfWindowsWhereTheHelperHangs) {
  FolderWorld world("chromium-english",
                    {{"/faults/captureHelperHangs", true}, {"/panels/0/opensAtSeconds", 5}});
  EXPECT_EQ(chooseVerifiedFolder(world).outcome, verifiedFolder(world.target));
  EXPECT_EQ(helperStarts(world.world), 1);
}

TEST(VerifiedPanel, IsLookedForOnceAtLeast) {
  for (const char* timeout : {"0", "-3"}) {
    FolderWorld world("chromium-english");
    world.target = world.start;
    EXPECT_EQ(chooseVerifiedFolder(world, {"--timeout", timeout}).outcome,
              verifiedFolder(world.start))
        << timeout;
  }
}

TEST(VerifiedPanel, MustBeTheOnlyOne) {
  FolderWorld world("two-panels", {{"/panels/1/folder", "/usr"}});
  const HonestFailure failure(world.world, world.target);
  EXPECT_THAT(failure.error, StartsWith("not verified: 2 panels are open ("));
  EXPECT_EQ(failure.run.panels, "open, open");
  EXPECT_EQ(world.world.record().keyEvents(), 0U);
  EXPECT_EQ(presses(world.world), 0);
}

TEST(VerifiedPanel, OfTwoInTheBrowserIsCounted) {
  FolderWorld world("two-panels", {{"/panels/0/shape", "host-sheet"},
                                   {"/panels/1/shape", "host-window"},
                                   {"/panels/1/folder", "/usr"}});
  const HonestFailure failure(world.world, world.target);
  EXPECT_EQ(failure.error, "not verified: 2 panels are open (Google Chrome 812: 2)");
}

TEST(VerifiedPanel, OfTwoInDifferentTreesIsCountedForEach) {
  FolderWorld world("two-panels",
                    {{"/panels/0/shape", "host-sheet"}, {"/panels/1/folder", "/usr"}});
  const HonestFailure failure(world.world, world.target);
  EXPECT_EQ(failure.error,
            "not verified: 2 panels are open (Google Chrome 812: 1, panel service 900: 1)");
}

TEST(VerifiedPanel, OfAServiceThatIsNobodysIsNotTouched) {
  FolderWorld world("english-service-window",
                    {{"/panels/0/listed", "none"},
                     {"/panels/0/serviceCommand", "Open and Save Panel Service (TextEdit)"},
                     {"/panels/0/serviceName", "Open and Save Panel Service (TextEdit)"}});
  const HonestFailure failure(world.world, world.target, "choose-folder", {"--timeout", "1"});
  EXPECT_THAT(failure.error, HasSubstr("no open panel of Google Chrome"));
  EXPECT_EQ(failure.run.panels, "open");
  EXPECT_EQ(world.world.record().keyEvents(), 0U);
}

TEST(VerifiedPanel, OfASecondBrowserIsNotTouched) {
  FolderWorld world("two-browsers",
                    {{"/panels/0/opensAtSeconds", 3600}, {"/panels/1/folder", "/usr"}});
  const HonestFailure failure(world.world, world.target, "choose-folder", {"--timeout", "1"});
  EXPECT_EQ(failure.run.panels, "open, open");
  EXPECT_EQ(world.world.record().keyEvents(), 0U);
}

// Its service is the only one that runs, and nothing tells whose it is.
TEST(VerifiedPanel, OfASecondBrowserThatOnlyItsServiceShowsIsNotTouched) {
  FolderWorld world("two-browsers", {{"/panels/0/opensAtSeconds", 3600},
                                     {"/panels/1/shape", "service-window"},
                                     {"/panels/1/listed", "none"}});
  const HonestFailure failure(world.world, world.target, "choose-folder", {"--timeout", "1"});
  EXPECT_THAT(failure.error, HasSubstr("no open panel of Google Chrome"));
  EXPECT_EQ(failure.run.panels, "open, open");
  EXPECT_EQ(world.world.record().keyEvents(), 0U);
}

// Its service's window stands just where the browser's own panel has its window.
TEST(VerifiedPanel, WhoseControlsTellTheirServiceSendsKeysToNoOther) {
  const nlohmann::ordered_json ownFrame{{"x", 320}, {"y", 180}, {"width", 800}, {"height", 450}};
  FolderWorld world("two-browsers", {{"/panels/0/keysReach", "nobody"},
                                     {"/panels/0/listed", "host"},
                                     {"/panels/1/listed", "service"},
                                     {"/panels/1/folder", "/usr"},
                                     {"/panels/1/frame", ownFrame}});
  chooseVerifiedFolder(world);
  EXPECT_GT(world.world.record().keyEvents(), 0U);
  for (const std::string& event : postedEventKinds(world.world.record())) {
    EXPECT_THAT(event, ::testing::AnyOf(EndsWith("-> 900"), EndsWith("-> 812")));
  }
  EXPECT_EQ(world.world.panel(1).folderShown(), "/usr");
}

TEST(VerifiedPanel, NeedsAConfirmButton) {
  FolderWorld world("chromium-english", {{"/panels/0/faults/noConfirmButton", true}});
  const HonestFailure failure(world.world, world.target, "choose-folder", {"--timeout", "1"});
  EXPECT_THAT(failure.error, AllOf(StartsWith("not verified: the panel (Google Chrome 812)"),
                                   EndsWith("has no confirm button")));
  EXPECT_EQ(failure.run.panels, "open");
  EXPECT_EQ(world.world.record().keyEvents(), 0U);
}

TEST(VerifiedPanel, WaitsForItsControls) {
  FolderWorld world("chromium-english", {{"/panels/0/opensAtSeconds", 1}, {"/panels/0/slow", 4}});
  EXPECT_EQ(chooseVerifiedFolder(world).panels, "chosen " + world.target);
  EXPECT_EQ(world.world.verdict(), "true");
}

// --- Kind. ---

TEST(VerifiedKind, AFolderIsRefusedForAFilePanel) {
  for (const char* command : {"choose-folder", "choose-path"}) {
    FolderWorld world("chromium-english", {{"/panels/0/mode", "files"}});
    const HonestFailure failure(world.world, world.target, command);
    EXPECT_EQ(failure.error, "not verified: a folder for a file panel: " + world.target);
    EXPECT_EQ(world.world.record().keyEvents(), 0U);
    EXPECT_EQ(presses(world.world), 0);
    EXPECT_EQ(failure.run.panels, "open");
  }
}

TEST(VerifiedKind, AFilePanelIsKnownWithinTwoSeconds) {
  FolderWorld world("chromium-english", {{"/panels/0/mode", "files"}});
  const HonestFailure failure(world.world, world.target);
  EXPECT_LE(world.world.desktop().now(), 2.5);
}

TEST(VerifiedKind, AFileIsRefusedForAFolderPanel) {
  for (const char* mode : {"folders", "upload"}) {
    FolderWorld world("chromium-english", {{"/panels/0/mode", mode}});
    const std::string file = world.files.makeFile("start/report.txt", "text");
    const HonestFailure failure(world.world, file, "choose-path");
    EXPECT_EQ(failure.error, "not verified: a file for a folder panel: " + file) << mode;
    EXPECT_EQ(world.world.record().keyEvents(), 0U);
    EXPECT_EQ(failure.run.panels, "open");
  }
}

// --- Getting there. ---

TEST(VerifiedChoice, SaysWhatThePanelShowsInstead) {
  FolderWorld world("chromium-english", {{"/panels/0/keysReach", "nobody"},
                                         {"/panels/0/view", "columns"},
                                         {"/places", nlohmann::ordered_json::array()}});
  const HonestFailure failure(world.world, world.target);
  EXPECT_THAT(failure.error, StartsWith("not verified: the panel shows " + world.start + ", not " +
                                        world.target + " ("));
  EXPECT_THAT(failure.error,
              EndsWith(" (no go-to sheet opened; " + world.target + " cannot be selected)"));
  EXPECT_EQ(presses(world.world), 0);
}

// The suggestion wins over the path, and accessibility alone gets there all the same.
TEST(VerifiedChoice, IsNotMisledByASuggestion) {
  FolderWorld world("chromium-english", {{"/panels/0/goTo/suggestion", "/usr"}});
  const VerifiedRun run = chooseVerifiedFolder(world);
  EXPECT_EQ(run.panels, "chosen " + world.target);
  EXPECT_EQ(world.world.verdict(), "true");
}

// The folder vanishes before the sheet is confirmed, which stays open then.
TEST(VerifiedChoice, SaysThatAReturnOfWhichNothingWasSeenMayStillComeToSomething) {
  FolderWorld world("chromium-english");
  world.world.desktop().schedule(0.3, [&] { std::filesystem::remove_all(world.target); });
  const HonestFailure failure(world.world, world.target);
  EXPECT_THAT(failure.error, AllOf(HasSubstr("the go-to sheet did not go"),
                                   EndsWith("): what it will choose is unknown")));
}

TEST(VerifiedChoice, SaysThatTheSheetLedElsewhere) {
  FolderWorld world("chromium-english", {{"/panels/0/goTo/suggestion", "/usr"},
                                         {"/panels/0/view", "columns"},
                                         {"/places", nlohmann::ordered_json::array()}});
  const HonestFailure failure(world.world, world.target);
  EXPECT_THAT(failure.error, HasSubstr(" (the go-to sheet led elsewhere; "));
}

TEST(VerifiedChoice, SaysThatItsSheetIsStillOpen) {
  FolderWorld world("chromium-english", {{"/panels/0/faults/fieldWriteRefused", -25200},
                                         {"/panels/0/faults/pressRefused", -25200},
                                         {"/panels/0/faults/escapeNeedsClick", true},
                                         {"/panels/0/view", "columns"},
                                         {"/places", nlohmann::ordered_json::array()}});
  EXPECT_THAT(HonestFailure(world.world, world.target).error,
              EndsWith("; its go-to sheet is still open"));
}

TEST(VerifiedChoice, ClosesTheSheetThatItOpenedWhenItFails) {
  FolderWorld world("chromium-english", {{"/panels/0/faults/fieldWriteRefused", -25200},
                                         {"/panels/0/view", "columns"},
                                         {"/places", nlohmann::ordered_json::array()}});
  const HonestFailure failure(world.world, world.target);
  EXPECT_THAT(failure.error, HasSubstr("the go-to sheet did not take the path"));
  const auto& milestones = world.world.record().milestones();
  EXPECT_THAT(milestones, ::testing::Contains(HasSubstr("go-to sheet closed")));
  EXPECT_EQ(failure.run.panels, "open");
}

TEST(VerifiedChoice, DoesNotKnowWhatTheSheetsReturnConfirmed) {
  FolderWorld world("chromium-english", {{"/panels/0/faults/goToReturnConfirms", true}});
  const HonestFailure failure(world.world, world.target);
  EXPECT_EQ(failure.error,
            "not verified: the panel closed before it was verified: what it chose is unknown");
  EXPECT_EQ(world.world.record().keyEvents(), 4U);
}

TEST(VerifiedChoice, PressesNoKeyAfterThePanelHasGone) {
  FolderWorld world("chromium-english", {{"/panels/0/slow", 3}});
  world.world.desktop().schedule(
      0.8, [&] { simulator::quitApplication(world.world.desktop(), browserPid, true); });
  const HonestFailure failure(world.world, world.target);
  EXPECT_THAT(failure.error, HasSubstr("what it chose is unknown"));
  for (const auto& event : postedEvents(world.world.record())) {
    EXPECT_LT(std::stod(event), 0.85) << event;
  }
}

// --- Confirming. ---

TEST(VerifiedConfirmation, AFailureCountsWhenThePanelCloses) {
  for (const int code : {-25204, -25200, -25205}) {
    FolderWorld world("chromium-english", {{"/panels/0/faults/confirmAnswers", code}});
    EXPECT_EQ(chooseVerifiedFolder(world).outcome, verifiedFolder(world.target)) << code;
    EXPECT_EQ(world.world.verdict(), "true");
  }
}

TEST(VerifiedConfirmation, ASuccessDoesNotCountWhenThePanelStays) {
  FolderWorld world("chromium-english", {{"/panels/0/faults/confirmDoesNothing", true}});
  const HonestFailure failure(world.world, world.target);
  EXPECT_THAT(failure.error, StartsWith("not verified: the panel did not close within "));
  EXPECT_EQ(presses(world.world), 1);
  EXPECT_EQ(failure.run.panels, "open");
  EXPECT_EQ(world.world.verdict(), "true");
}

TEST(VerifiedConfirmation, ARefusalIsNotRepeated) {
  FolderWorld world("chromium-english", {{"/panels/0/faults/pressRefused", -25200}});
  const HonestFailure failure(world.world, world.target);
  EXPECT_THAT(failure.error, HasSubstr("did not close within 1.0s"));
  EXPECT_EQ(presses(world.world), 1);
}

TEST(VerifiedConfirmation, IsWaitedForAsLongAsThePressAllows) {
  const auto errorFor = [](const char* fault, const nlohmann::ordered_json& value) {
    FolderWorld world("chromium-english", {{std::string("/panels/0/faults/") + fault, value}});
    return HonestFailure(world.world, world.target).error;
  };
  EXPECT_THAT(errorFor("confirmDoesNothing", true), HasSubstr("did not close within 6.0s"));
  EXPECT_THAT(errorFor("pressRefused", -25204), HasSubstr("did not close within 6.0s"));
}

TEST(VerifiedConfirmation, AButtonThatIsGoneWasNotPressed) {
  FolderWorld world("chromium-english", {{"/panels/0/faults/confirmAnswers", -25202},
                                         {"/panels/0/faults/closesLateBySeconds", 0.5}});
  const HonestFailure failure(world.world, world.target);
  EXPECT_EQ(failure.error,
            "not verified: the confirm button was gone before it was pressed: what the panel will "
            "choose is unknown");
}

TEST(VerifiedConfirmation, APanelThatTakesFourSecondsToCloseHasClosed) {
  FolderWorld world("chromium-english", {{"/panels/0/faults/closesLateBySeconds", 4}});
  EXPECT_EQ(chooseVerifiedFolder(world).outcome, verifiedFolder(world.target));
}

// A file panel whose file cannot be selected keeps its button disabled; here it is disabled by
// hand.
TEST(VerifiedConfirmation, NeedsAnEnabledButton) {
  FolderWorld world("chromium-english");
  world.target = world.start;
  simulator::Element* button = nullptr;
  const std::function<void(simulator::Element&)> find = [&](simulator::Element& at) {
    const auto* identifier = at.get("AXIdentifier");
    if (identifier != nullptr && *identifier == simulator::Value("OKButton")) button = &at;
    for (const auto& child : at.children()) find(*child);
  };
  find(world.world.desktop().findProcess(browserPid)->root);
  ASSERT_NE(button, nullptr);
  button->set("AXEnabled", false);
  const HonestFailure failure(world.world, world.target);
  EXPECT_THAT(failure.error,
              ::testing::AnyOf("not verified: the panel shows " + world.target +
                                   ", but its confirm button is disabled",
                               "not verified: a folder for a file panel: " + world.target));
  EXPECT_EQ(presses(world.world), 0);
}

TEST(VerifiedConfirmation, PressesOnlyTheConfirmButton) {
  FolderWorld world("chromium-english");
  chooseVerifiedFolder(world);
  EXPECT_EQ(presses(world.world), 1);
  EXPECT_THAT(world.world.record().milestones(),
              ::testing::Contains(HasSubstr("closed: chosen " + world.target)));
}

// --- Closing. ---

TEST(VerifiedClosing, IsWaitedFor) {
  FolderWorld world("chromium-english", {{"/panels/0/faults/closesLateBySeconds", 1}});
  EXPECT_EQ(chooseVerifiedFolder(world).outcome, verifiedFolder(world.target));
  EXPECT_EQ(world.world.panelOutcomes(), "chosen " + world.target);
  EXPECT_EQ(world.world.verdict(), "true");
}

TEST(VerifiedClosing, NeedsItsWindowOffTheList) {
  FolderWorld world("chromium-english", {{"/panels/0/windowList/staysUncapturable", true}});
  const HonestFailure failure(world.world, world.target);
  EXPECT_THAT(failure.error, StartsWith("not verified: the panel is gone, but its window "));
  EXPECT_LE(world.world.desktop().now(), 8.0);
}

TEST(VerifiedErrors, EndAsTheHeaderSays) {
  FolderWorld listed("chromium-english", {{"/panels/0/windowList/staysUncapturable", true}});
  EXPECT_THAT(HonestFailure(listed.world, listed.target).error,
              EndsWith(" is still listed: what it chose is unknown"));
  FolderWorld open("chromium-english", {{"/panels/0/faults/confirmDoesNothing", true}});
  EXPECT_THAT(HonestFailure(open.world, open.target).error,
              EndsWith("s after its button was pressed: what it will choose is unknown"));
}

TEST(VerifiedClosing, WaitsForItsWindowToLeaveTheList) {
  FolderWorld world("chromium-english", {{"/panels/0/windowList/staysAfterClosingSeconds", 1}});
  EXPECT_EQ(chooseVerifiedFolder(world).outcome, verifiedFolder(world.target));
}

TEST(VerifiedClosing, NeedsNoWindowThatWasNeverListed) {
  FolderWorld world("chromium-english", {{"/panels/0/listed", "none"}});
  EXPECT_EQ(chooseVerifiedFolder(world).outcome, verifiedFolder(world.target));
}

TEST(VerifiedClosing, NeedsNoListOfWindows) {
  FolderWorld world("chromium-english", {{"/faults/captureHelperHangs", true}});
  EXPECT_EQ(chooseVerifiedFolder(world).outcome, verifiedFolder(world.target));
  EXPECT_EQ(world.world.verdict(), "true");
}

// A person cancels it while the go-to sheet is waited for.
TEST(VerifiedClosing, OfThePanelItselfIsAnErrorBeforeItWasVerified) {
  FolderWorld world("chromium-english",
                    {{"/panels/0/keysReach", "nobody"},
                     {"/frontmost", browserPid},
                     {"/person", {{{"atSeconds", 0.9}, {"clicks", {{"x", 960}, {"y", 598}}}}}}});
  const HonestFailure failure(world.world, world.target);
  EXPECT_EQ(failure.error,
            "not verified: the panel closed before it was verified: what it chose is unknown");
  EXPECT_EQ(failure.run.panels, "cancelled");
  EXPECT_EQ(world.world.verdict(), "true");
}

TEST(VerifiedClosing, TheBrowserEndingWithItsPanelIsNoSuccess) {
  for (const double at : {0.3, 1.0, 1.4, 1.6}) {
    FolderWorld world("chromium-english", {{"/panels/0/faults/closesLateBySeconds", 3}});
    world.world.desktop().schedule(
        at, [&] { simulator::quitApplication(world.world.desktop(), browserPid, true); });
    const VerifiedRun run = chooseVerifiedFolder(world);
    EXPECT_EQ(run.outcome.exitStatus, 1) << at;
    EXPECT_THAT(run.outcome.errors, HasSubstr("what it chose is unknown")) << at;
    EXPECT_EQ(world.world.verdict() == "true" || world.world.verdict().starts_with("unreported"),
              true);
  }
}

// --- Lines. ---

TEST(VerifiedErrors, AreOneLineWhateverThePathHolds) {
  FolderWorld world("chromium-english", {{"/panels/0/mode", "files"}}, "two\nlines\r\nor three");
  const HonestFailure failure(world.world, world.target);
  EXPECT_THAT(failure.error, HasSubstr("a folder for a file panel"));
}

TEST(VerifiedErrors, HoldNoControlCharacters) {
  FolderWorld world("chromium-english", {{"/panels/0/mode", "files"}},
                    "tab\tdelete\x7f"
                    "bell\a.");
  EXPECT_THAT(HonestFailure(world.world, world.target).error, EndsWith("/tab delete bell ."));
}

TEST(VerifiedErrors, AreOneLineWhateverThePanelShows) {
  FolderWorld world("chromium-english",
                    {{"/panels/0/keysReach", "nobody"},
                     {"/panels/0/view", "columns"},
                     {"/places", nlohmann::ordered_json::array()}},
                    "two\nlines");
  const HonestFailure failure(world.world, world.target);
  EXPECT_THAT(failure.error, HasSubstr("the panel shows"));
}

// --- Time. ---

// Nothing leads to a folder in columns without keys: the whole time is used.
double secondsInVain(double requestSeconds) {
  FolderWorld world("chromium-english", {{"/panels/0/keysReach", "nobody"},
                                         {"/panels/0/slow", 100},
                                         {"/prices/request", requestSeconds},
                                         {"/panels/0/view", "columns"}});
  const HonestFailure failure(world.world, world.target, "choose-folder", {"--timeout", "6"});
  EXPECT_THAT(failure.error, Not(HasSubstr("timed out")));
  return world.world.desktop().now();
}

TEST(VerifiedChoice, EndsFourSecondsBeforeTheWatchdog) {
  EXPECT_LE(secondsInVain(0.0003), watchdogSeconds(6) - 4 + 0.5);
  EXPECT_LE(secondsInVain(0.002), watchdogSeconds(6) - 4 + 0.5);
}

TEST(VerifiedChoice, EndsBeforeTheWatchdogHoweverSlowlyItIsAnswered) {
  EXPECT_LT(secondsInVain(0.01), watchdogSeconds(6));
  EXPECT_LT(secondsInVain(0.02), watchdogSeconds(6));
  EXPECT_LT(secondsInVain(0.05), watchdogSeconds(6));
}

TEST(VerifiedChoice, LeavesTheTimeOfRequestsAsItWas) {
  FolderWorld world("chromium-english");
  choosePathVerified(browserPid, world.target, 10);
  world.world.desktop().faults().silent_processes.insert(browserPid);
  const double start = world.world.desktop().now();
  EXPECT_FALSE(answersNow(Element::application(browserPid)));
  EXPECT_NEAR(world.world.desktop().now() - start, 6, 0.01);
}

// --- The foreground. ---

std::optional<std::int32_t> frontmostAfter(FolderWorld& world, std::int32_t comes, double at) {
  world.world.desktop().schedule(at,
                                 [&world, comes] { world.world.desktop().setFrontmost(comes); });
  chooseVerifiedFolder(world);
  world.world.desktop().advanceTo(world.world.desktop().now() + 1);
  return world.world.desktop().frontmost();
}

TEST(VerifiedForeground, IsGivenBackWhenTheBrowserTookIt) {
  FolderWorld world("chromium-english");
  EXPECT_EQ(frontmostAfter(world, browserPid, 0.5), terminalPid);
}

TEST(VerifiedForeground, StaysWithWhomAPersonGaveIt) {
  FolderWorld world("chromium-english");
  EXPECT_EQ(frontmostAfter(world, 250, 0.5), 250);
}

TEST(VerifiedForeground, IsLeftAloneWhenTheBrowserHadIt) {
  FolderWorld world("chromium-english");
  world.world.desktop().setFrontmost(browserPid);
  chooseVerifiedFolder(world);
  EXPECT_EQ(world.world.desktop().frontmost(), browserPid);
}

TEST(VerifiedForeground, IsGivenBackAfterAFailureToo) {
  FolderWorld world("chromium-english", {{"/panels/0/faults/confirmDoesNothing", true}});
  EXPECT_EQ(frontmostAfter(world, browserPid, 0.5), terminalPid);
}

TEST(VerifiedForeground, IsNeverTaken) {
  FolderWorld world("chromium-english");
  chooseVerifiedFolder(world);
  for (const auto& line : world.world.record().lines()) {
    EXPECT_EQ(std::get_if<simulator::ActivationAsked>(&line.entry), nullptr);
  }
}

// --- What changes between two requests. ---

// Calls `act` once, before the first request that is made when `isTime` says so.
void before(World& world, std::function<bool()> isTime, std::function<void()> act) {
  auto done = std::make_shared<bool>(false);
  world.desktop().watch([done, isTime = std::move(isTime), act = std::move(act)] {
    if (*done || !isTime()) return;
    *done = true;
    act();
  });
}

// Reads of the confirm button's state so far: the second follows the look that is proof.
long enabledReads(const World& world) {
  return requestsFor(world.record(), "AXEnabled");
}

// What the last request asked for: "AXValue of AXPopUpButton".
std::string lastRequest(const World& world) {
  const auto& lines = world.record().lines();
  const auto* request =
      lines.empty() ? nullptr : std::get_if<simulator::AccessibilityRequest>(&lines.back().entry);
  return request == nullptr ? "" : request->name + " of " + request->role;
}

// Acts so many seconds after the last request of the last look, around the press.
void afterTheLastLook(World& world, simulator::Seconds delay, const std::function<void()>& act) {
  before(
      world,
      [&world] {
        return enabledReads(world) >= 2 && lastRequest(world) == "AXValue of AXPopUpButton";
      },
      [&world, delay, act] { world.desktop().schedule(delay, act); });
}

simulator::Element* elementCalled(simulator::Element& at, const std::string& identifier) {
  const auto* own = at.get("AXIdentifier");
  if (own != nullptr && *own == simulator::Value(identifier)) return &at;
  for (const auto& child : at.children()) {
    if (auto* found = elementCalled(*child, identifier)) return found;
  }
  return nullptr;
}

simulator::Element& panelElement(World& world, const std::string& identifier) {
  return *elementCalled(world.desktop().findProcess(browserPid)->root, identifier);
}

TEST(VerifiedMoment, ASelectionThatChangesBeforeThePressIsSeen) {
  FolderWorld world("chromium-english");
  world.target = world.start;
  before(
      world.world, [&] { return enabledReads(world.world) >= 2; },
      [&] {
        auto& list = panelElement(world.world, "ListView");
        const auto row = list.children().back()->id();
        list.setAttribute("AXSelectedRows", simulator::List{row});
      });
  const HonestFailure failure(world.world, world.target);
  EXPECT_THAT(failure.error, EndsWith(" selected, not " + world.target));
  EXPECT_EQ(presses(world.world), 0);
  EXPECT_EQ(failure.run.panels, "open");
  EXPECT_EQ(world.world.verdict(), "true");
}

TEST(VerifiedMoment, ASelectionThatChangesWhileItIsPressedIsSeen) {
  FolderWorld world("chromium-english", {{"/panels/0/faults/closesLateBySeconds", 1}});
  world.target = world.start;
  before(
      world.world, [&] { return presses(world.world) == 1; },
      [&] {
        auto& list = panelElement(world.world, "ListView");
        list.set("AXSelectedRows", simulator::List{list.children().back()->id()});
      });
  EXPECT_EQ(HonestFailure(world.world, world.target).error,
            "not verified: the panel did not show " + world.target +
                " any more when it was confirmed: what it chose is unknown");
}

// What cannot be listed any more may be there still.
TEST(VerifiedMoment, AListOfWindowsThatFailsAfterThePressIsNoProof) {
  FolderWorld world("chromium-english");
  before(
      world.world, [&] { return presses(world.world) == 1; },
      [&] { world.world.desktop().faults().missing_programs.insert("background-window-capture"); });
  EXPECT_THAT(HonestFailure(world.world, world.target).error,
              EndsWith(" is still listed: what it chose is unknown"));
}

TEST(VerifiedMoment, APanelThatGoesWhileItsButtonIsAwaitedIsNoneAnyMore) {
  FolderWorld world("chromium-english", {{"/panels/0/faults/noConfirmButton", true}});
  world.world.desktop().schedule(
      1.0, [&] { panelElement(world.world, "CancelButton").performAction("AXPress"); });
  EXPECT_THAT(HonestFailure(world.world, world.target, "choose-folder", {"--timeout", "3"}).error,
              HasSubstr("no open panel of Google Chrome"));
}

TEST(VerifiedMoment, NoReturnIsPressedOnceTheServiceHasANewWindow) {
  FolderWorld world("chromium-english");
  world.world.desktop().schedule(0.3, [&] {
    simulator::Window window;
    window.owner = servicePid;
    window.frame = {40, 40, 300, 200};
    world.world.desktop().addWindow(window);
  });
  runVerified(world.world, "choose-folder", world.target);
  EXPECT_THAT(postedEventKinds(world.world.record()),
              Not(::testing::Contains(HasSubstr("key 36"))));
  EXPECT_EQ(world.world.verdict(), "true");
}

// Its windows are not listed, and its tree tells.
TEST(VerifiedMoment, NoReturnIsPressedOnceTheTreesShowASecondPanel) {
  FolderWorld world("two-panels", {{"/panels/0/slow", 3},
                                   {"/panels/1/folder", "/usr"},
                                   {"/panels/1/listed", "none"},
                                   {"/panels/1/opensAtSeconds", 0.3}});
  runVerified(world.world, "choose-folder", world.target);
  EXPECT_THAT(postedEventKinds(world.world.record()),
              Not(::testing::Contains(HasSubstr("key 36"))));
  EXPECT_EQ(world.world.verdict(), "true");
}

TEST(VerifiedMoment, APanelThatCannotYetBeConfirmedIsWaitedFor) {
  FolderWorld world("chromium-english", {{"/panels/0/mode", "upload"}});
  world.target = world.start;
  panelElement(world.world, "OKButton").set("AXEnabled", false);
  world.world.desktop().schedule(
      1.0, [&] { panelElement(world.world, "OKButton").set("AXEnabled", true); });
  EXPECT_EQ(chooseVerifiedFolder(world).panels, "chosen " + world.target);
}

TEST(VerifiedMoment, TheNewFolderButtonTellsTheKindWhateverIsSelected) {
  FolderWorld world("chromium-english");
  const std::string file = world.files.makeFile("start/report.txt", "text");
  auto& list = panelElement(world.world, "ListView");
  list.setAttribute("AXSelectedRows", simulator::List{list.children().back()->id()});
  EXPECT_EQ(HonestFailure(world.world, file, "choose-path").error,
            "not verified: a file for a folder panel: " + file);
}

// A press that lands after all does so before its process answers anything else.
TEST(VerifiedMoment, ACancelLongAfterAPressThatWentUnansweredIsNoSuccess) {
  FolderWorld world("chromium-english",
                    {{"/panels/0/faults/pressRefused", -25204},
                     {"/frontmost", browserPid},
                     {"/person", {{{"atSeconds", 5}, {"clicks", {{"x", 960}, {"y", 598}}}}}}});
  EXPECT_EQ(chooseVerifiedFolder(world).outcome.exitStatus, 1);
  world.world.desktop().advanceTo(6);
  EXPECT_EQ(world.world.panelOutcomes(), "cancelled");
}

TEST(VerifiedMoment, ABrowserInFrontIsNoObstacleWhileNobodyPressesAnything) {
  FolderWorld world("chromium-english", {{"/frontmost", browserPid}});
  EXPECT_EQ(chooseVerifiedFolder(world).outcome, verifiedFolder(world.target));
}

TEST(VerifiedMoment, ThePressWaitsForASecondOfPeaceInABrowserInFront) {
  const auto secondsWith = [](const nlohmann::ordered_json& front) {
    FolderWorld world("chromium-english",
                      {{"/frontmost", front},
                       {"/person", {{{"atSeconds", 0.9}, {"clicks", {{"x", 2}, {"y", 2}}}}}}});
    EXPECT_EQ(chooseVerifiedFolder(world).outcome, verifiedFolder(world.target));
    return world.world.desktop().now();
  };
  EXPECT_LT(secondsWith(terminalPid), 1.6);
  EXPECT_GE(secondsWith(browserPid), 1.9);
  EXPECT_LT(secondsWith(browserPid), 3);
}

TEST(VerifiedMoment, APanelThatIsCancelledBeforeThePressIsNoSuccess) {
  FolderWorld world("chromium-english");
  world.target = world.start;
  afterTheLastLook(world.world, 0.02,
                   [&] { panelElement(world.world, "CancelButton").performAction("AXPress"); });
  const HonestFailure failure(world.world, world.target);
  EXPECT_EQ(failure.run.panels, "cancelled");
  EXPECT_THAT(failure.error, HasSubstr("what it chose is unknown"));
}

// Its service takes the keys of both.
TEST(VerifiedMoment, NoKeyIsPressedOnceASecondPanelIsOpen) {
  FolderWorld world(
      "two-panels",
      {{"/panels/0/slow", 3}, {"/panels/1/folder", "/usr"}, {"/panels/1/opensAtSeconds", 0.3}});
  runVerified(world.world, "choose-folder", world.target);
  EXPECT_THAT(postedEventKinds(world.world.record()),
              Not(::testing::Contains(HasSubstr("key 36"))));
  EXPECT_EQ(world.world.verdict(), "true");
}

TEST(VerifiedMoment, AButtonThatStaysDisabledIsWaitedForForAFewSeconds) {
  FolderWorld world("chromium-english");
  world.target = world.start;
  panelElement(world.world, "OKButton").set("AXEnabled", false);
  EXPECT_EQ(
      HonestFailure(world.world, world.target).error,
      "not verified: the panel shows " + world.target + ", but its confirm button is disabled");
  EXPECT_NEAR(world.world.desktop().now(), 4.0, 1.0);
}

// --- Corners. ---

TEST(VerifiedKind, IsNotToldByTheButtonWhileAGoToSheetIsOpen) {
  FolderWorld world("goto-sheet-open", {{"/panels/0/mode", "upload"}});
  EXPECT_EQ(chooseVerifiedFolder(world).panels, "chosen " + world.target);
  EXPECT_EQ(world.world.verdict(), "true");
}

// Nothing is listed in it, and what is around it only the sheet reaches.
TEST(VerifiedChoice, TakesAnEmptyFolderInAHiddenOne) {
  FolderWorld world("chromium-english");
  world.target = world.files.makeFolder("start/.hidden/empty");
  EXPECT_EQ(chooseVerifiedFolder(world).outcome,
            verifiedFolder(world.target, browserPid, "entry selected"));
  EXPECT_EQ(world.world.verdict(), "true");
}

TEST(VerifiedKeys, GoToTheOwnerOfTheControlsThenToTheServiceThenToThePresenter) {
  const auto chords = [](const World::Patches& patches) {
    FolderWorld world("chromium-english", patches);
    EXPECT_EQ(chooseVerifiedFolder(world).panels, "chosen " + world.target);
    std::vector<std::string> keys;
    for (const std::string& event : postedEventKinds(world.world.record())) {
      if (event.find(" down") != std::string::npos) keys.push_back(event);
    }
    return keys;
  };
  EXPECT_THAT(
      chords({{"/panels/0/elementsBelongTo", "host"}}),
      ElementsAre("key 5+120000 down -> 812", "key 5+120000 down -> 900", "key 36 down -> 900"));
  EXPECT_THAT(
      chords({{"/panels/0/keysReach", "host"}}),
      ElementsAre("key 5+120000 down -> 900", "key 5+120000 down -> 812", "key 36 down -> 812"));
}

TEST(VerifiedKeys, GoToTheBrowserWhereAServiceAloneShowsThePanel) {
  FolderWorld world("english-service-window", {{"/panels/0/keysReach", "host"}});
  EXPECT_EQ(chooseVerifiedFolder(world).panels, "chosen " + world.target);
  EXPECT_THAT(postedEventKinds(world.world.record()), ::testing::Contains("key 36 down -> 812"));
}

nlohmann::ordered_json processJson(std::int32_t pid, const std::string& name,
                                   const std::string& command) {
  return {{"pid", pid}, {"name", name}, {"command", command}};
}

// The desktop's processes with one more beside the Terminal and the browser.
std::pair<std::string, nlohmann::ordered_json> processesWith(nlohmann::ordered_json another) {
  auto chrome = processJson(browserPid, "Google Chrome",
                            "/Applications/Google Chrome.app/Contents/MacOS/Google Chrome");
  chrome["windows"] = {{{"title", "Extensions"}}};
  return {"/processes", {processJson(terminalPid, "Terminal", "Terminal"), chrome, another}};
}

// Of the browser's two services one has its window where the panel stands.
TEST(VerifiedKeys, GoToTheServiceThatStandsWhereThePanelDoes) {
  const std::string name = "Open and Save Panel Service (Google Chrome)";
  FolderWorld world("chromium-english", {processesWith(processJson(950, name, name)),
                                         {"/panels/0/elementsBelongTo", "host"},
                                         {"/panels/0/keysReach", "nobody"}});
  chooseVerifiedFolder(world);
  std::vector<std::string> chords;
  for (const std::string& event : postedEventKinds(world.world.record())) {
    if (event.starts_with("key 5+120000 down")) chords.push_back(event);
  }
  EXPECT_THAT(chords, ElementsAre("key 5+120000 down -> 812", "key 5+120000 down -> 900"));
}

// Its window is not listed, and it may be another browser's as far as its name tells.
TEST(VerifiedPanel, OfAServiceIsKnownByThePlaceOfItsPanel) {
  FolderWorld world(
      "english-service-window",
      {processesWith(processJson(814, "Microsoft Edge",
                                 "/Applications/Microsoft Edge.app/Contents/MacOS/Microsoft Edge")),
       {"/panels/0/listed", "host"},
       {"/panels/0/serviceCommand", "com.apple.appkit.xpc.openAndSavePanelService"}});
  EXPECT_EQ(chooseVerifiedFolder(world).outcome, verifiedFolder(world.target, servicePid));
  EXPECT_EQ(world.world.verdict(), "true");
}

// The second one would begin before the timeout and end after the time for everything.
TEST(VerifiedPanel, IsNotLookedForAgainWhereALookTakesTooLong) {
  FolderWorld world("no-panel", {{"/prices/processList", 5}, {"/panels/0/opensAtSeconds", 3600}});
  const HonestFailure failure(world.world, world.target, "choose-folder", {"--timeout", "6"});
  EXPECT_THAT(failure.error, EndsWith(" was found within 6.0s"));
  EXPECT_LE(world.world.desktop().now(), 6.5);
}

// The browser's own has left it.
TEST(VerifiedClosing, NeedsEachProcessesWindowAtThePanelsPlaceOffTheList) {
  FolderWorld world("chromium-english", {{"/panels/0/listed", "host"}});
  simulator::Window window;
  window.owner = servicePid;
  window.frame = {320, 180, 800, 450};
  world.world.desktop().addWindow(window);
  EXPECT_THAT(HonestFailure(world.world, world.target).error,
              EndsWith(" is still listed: what it chose is unknown"));
}

TEST(VerifiedKeys, GoToTheOnlyServiceThoughItsWindowIsNotListed) {
  FolderWorld world("chromium-english",
                    {{"/panels/0/elementsBelongTo", "host"}, {"/panels/0/listed", "none"}});
  EXPECT_EQ(chooseVerifiedFolder(world).panels, "chosen " + world.target);
  EXPECT_THAT(postedEventKinds(world.world.record()), ::testing::Contains("key 36 down -> 900"));
}

TEST(VerifiedKind, AFolderPanelsTargetIsOpenedWhereItCannotBeSelected) {
  FolderWorld world("chromium-english", {{"/panels/0/keysReach", "nobody"},
                                         {"/panels/0/faults/ignoresSelection", true}});
  EXPECT_EQ(chooseVerifiedFolder(world).outcome, verifiedFolder(world.target));
}

// Opening it would choose it.
TEST(VerifiedKind, AFilePanelsPackageIsNotOpened) {
  FolderWorld files("file-panel-english", {{"/panels/0/keysReach", "nobody"}});
  files.files.makeFolder("start/Tool.app");
  const std::string file = files.files.makeFile("start/Tool.app/report.txt", "text");
  EXPECT_THAT(HonestFailure(files.world, file, "choose-path").error,
              HasSubstr(files.start + "/Tool.app does not open"));
  EXPECT_EQ(files.world.panelOutcomes(), "open");
}

TEST(VerifiedErrors, NameTheBrowserThatEndedWithItsPanel) {
  FolderWorld world("chromium-english");
  world.target = world.start;
  afterTheLastLook(world.world, 0.15,
                   [&] { simulator::quitApplication(world.world.desktop(), browserPid, true); });
  const HonestFailure failure(world.world, world.target);
  EXPECT_EQ(failure.error,
            "not verified: the browser 812 ended with its panel: what it chose is unknown");
}

// --- Uploads. ---

TEST(VerifiedUpload, LeavesTheBrowsersQuestionAlone) {
  FolderWorld world("folder-upload");
  const VerifiedRun run = chooseVerifiedFolder(world);
  EXPECT_EQ(run.outcome, verifiedFolder(world.target));
  EXPECT_EQ(presses(world.world), 1);
  EXPECT_EQ(world.world.verdict(), "true");
}

}  // namespace
}  // namespace tessarine::test::verified_choice
