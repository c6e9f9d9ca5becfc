// What calls of the tool reported, against what the panels did.
#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "simulator/judge/call_log.h"
#include "simulator/judge/panel_fate.h"
#include "simulator/judge/verdict.h"
#include "simulator/scenario/scene.h"
#include "support/temporary_folder.h"
#include "support/world.h"

namespace simulator::judge {
namespace {

using Texts = std::vector<std::string>;
using Fates = std::vector<PanelFate>;
using tessarine::test::TemporaryFolder;
using tessarine::test::World;

const Texts choose_folder{"choose-folder", "--pid", "812", "--path", "/x"};
const Texts choose_path{"choose-path", "--pid", "812", "--path", "/x"};
const Texts close_panels{"close", "--pid", "812"};
const Texts press_key{"press-key", "--pid", "900", "--key", "return"};
const Texts list_windows{"list-windows", "--pid", "812"};

PanelFate stillOpen() {
  return {.openedAt = 0, .outcome = {}, .goneAt = {}};
}
PanelFate chosen(const std::string& path, Seconds at) {
  return {.openedAt = 0, .outcome = {PanelOutcome::End::chosen, path, at}, .goneAt = {}};
}
PanelFate cancelled(Seconds at) {
  return {.openedAt = 0, .outcome = {PanelOutcome::End::cancelled, "", at}, .goneAt = {}};
}
PanelFate gone(Seconds at) {
  return {.openedAt = 0, .outcome = {}, .goneAt = at};
}
PanelFate notOpened() {
  return {.openedAt = {}, .outcome = {}, .goneAt = {}};
}
PanelFate byPerson(PanelFate fate) {
  fate.endedByPerson = true;
  return fate;
}

// Calls that are told of in the order of their begin.
class Calls {
 public:
  Calls& succeeded(const Texts& arguments, Seconds from, Seconds to,
                   const std::string& output = R"({"ok": true})") {
    return ended(arguments, from, to, 0, output);
  }
  Calls& failed(const Texts& arguments, Seconds from, Seconds to) {
    return ended(arguments, from, to, 1, "");
  }
  Calls& closed(int count, Seconds from, Seconds to) {
    return succeeded(
        close_panels, from, to,
        R"({"ok": true, "command": "close", "closed": )" + std::to_string(count) + "}");
  }
  Calls& ended(const Texts& arguments, Seconds from, Seconds to, int status,
               const std::string& output) {
    log_.end(log_.begin(arguments, "/", from), status, output, to);
    return *this;
  }
  Calls& lost(const Texts& arguments, Seconds from, Seconds to) {
    log_.lose(log_.begin(arguments, "/", from), to);
    return *this;
  }
  Calls& running(const Texts& arguments, Seconds from) {
    log_.begin(arguments, "/", from);
    return *this;
  }

  Texts verdicts(const Fates& panels) const { return callVerdicts(log_.calls(), panels); }
  std::string overall(const Fates& panels) const { return overallVerdict(log_.calls(), panels); }

 private:
  CallLog log_;
};

// --- A choice that succeeded. ---

TEST(VerdictOnAChoice, IsTrueWhenOnePanelChoseItsPath) {
  for (const Texts& command : {choose_folder, choose_path}) {
    EXPECT_EQ(Calls().succeeded(command, 1, 2).verdicts({chosen("/x", 1.5)}), Texts{"true"});
    EXPECT_EQ(Calls().succeeded(command, 1, 2).verdicts({stillOpen(), chosen("/x", 1.5)}),
              Texts{"true"});
  }
}

TEST(VerdictOnAChoice, NamesWhatThePanelDidInstead) {
  const Calls calls = Calls().succeeded(choose_folder, 1, 2);
  EXPECT_EQ(calls.verdicts({chosen("/y", 1.5)}), Texts{"false success: panel 1 chose /y"});
  EXPECT_EQ(calls.verdicts({cancelled(1.5)}), Texts{"false success: panel 1 was cancelled"});
  EXPECT_EQ(calls.verdicts({stillOpen()}), Texts{"false success: panel 1 is still open"});
  EXPECT_EQ(calls.verdicts({gone(1.5)}),
            Texts{"false success: panel 1 ended with its application"});
  EXPECT_EQ(calls.verdicts({}), Texts{"false success: no panel chose anything"});
  EXPECT_EQ(calls.verdicts({notOpened()}), Texts{"false success: no panel chose anything"});
}

TEST(VerdictOnAChoice, NamesAnEffectRatherThanAPanelThatIsOpen) {
  const Calls calls = Calls().succeeded(choose_folder, 1, 2);
  EXPECT_EQ(calls.verdicts({stillOpen(), chosen("/y", 1.5)}),
            Texts{"false success: panel 2 chose /y"});
  EXPECT_EQ(calls.verdicts({stillOpen(), cancelled(1.7), chosen("/y", 1.5)}),
            Texts{"false success: panel 2 was cancelled"});
  EXPECT_EQ(calls.verdicts({notOpened(), gone(1.5), stillOpen()}),
            Texts{"false success: panel 2 ended with its application"});
}

TEST(VerdictOnAChoice, IsMoreThanAskedWhenAnotherPanelEndedToo) {
  const Calls calls = Calls().succeeded(choose_folder, 1, 2);
  EXPECT_EQ(calls.verdicts({chosen("/x", 1.5), chosen("/y", 1.6)}),
            Texts{"more than asked: panel 2 chose /y"});
  EXPECT_EQ(calls.verdicts({cancelled(1.6), chosen("/x", 1.5), chosen("/y", 1.4)}),
            Texts{"more than asked: panel 1 was cancelled"});
  EXPECT_EQ(calls.verdicts({chosen("/x", 1.5), chosen("/x", 1.6)}),
            Texts{"more than asked: panel 2 chose /x"});
}

// A panel that was not there cannot have been meant.
TEST(VerdictOnAChoice, KnowsOnlyThePanelsOfItsTime) {
  PanelFate late = stillOpen();
  late.openedAt = 3;
  EXPECT_EQ(Calls().succeeded(choose_folder, 1, 2).verdicts({late}),
            Texts{"false success: no panel chose anything"});
  EXPECT_EQ(Calls().succeeded(choose_folder, 5, 6).verdicts({cancelled(4), gone(4)}),
            Texts{"false success: no panel chose anything"});
  EXPECT_EQ(Calls()
                .succeeded(choose_folder, 1, 2)
                .succeeded(choose_folder, 5, 6)
                .verdicts({chosen("/x", 5.5)}),
            (Texts{"false success: panel 1 is still open", "true"}));
}

// --- What a choice is meant to choose. ---

TEST(VerdictOnAChoice, FollowsTheLinksOfThePath) {
  const TemporaryFolder folder;
  const std::string target = folder.makeFolder("target");
  std::filesystem::create_directory_symlink(target, folder.path() + "/link");
  for (const std::string path : {"/link", "/link/", "//target/../link/."}) {
    const Texts command{"choose-folder", "--pid", "812", "--path", folder.path() + path};
    EXPECT_EQ(Calls().succeeded(command, 1, 2).verdicts({chosen(target, 1.5)}), Texts{"true"});
  }
}

// ".." goes back to where the path came from, not to where the link leads.
TEST(VerdictOnAChoice, TakesTheDotsOutOfThePathBeforeItsLinks) {
  const TemporaryFolder folder;
  const std::string target = folder.makeFolder("target");
  const std::string deep = folder.makeFolder("one/two");
  std::filesystem::create_directory_symlink(deep, folder.path() + "/link");
  const Texts command{"choose-folder", "--path", folder.path() + "/link/../target"};
  EXPECT_EQ(Calls().succeeded(command, 1, 2).verdicts({chosen(target, 1.5)}), Texts{"true"});
}

TEST(VerdictOnAChoice, TakesTheLinksAsTheyWereWhenTheCallBegan) {
  const TemporaryFolder folder;
  const std::string target = folder.makeFolder("target");
  const std::string link = folder.path() + "/link";
  std::filesystem::create_directory_symlink(target, link);
  const Calls calls = Calls().succeeded({"choose-folder", "--path", link}, 1, 2);
  std::filesystem::remove(link);
  EXPECT_EQ(calls.verdicts({chosen(target, 1.5)}), Texts{"true"});
}

TEST(VerdictOnAChoice, TakesTheLastPathFromTheCallsFolder) {
  CallLog log;
  log.begin({"choose-folder", "--path", "/y", "--path", "lib/../share/"}, "/usr", 0);
  log.begin({"choose-folder", "--path", ""}, "/usr/share", 0);
  log.begin({"choose-folder", "--path"}, "/usr", 0);
  EXPECT_EQ(log.calls()[0].target, "/usr/share");
  EXPECT_EQ(log.calls()[1].target, "/usr/share");
  EXPECT_EQ(log.calls()[2].target, "");
}

TEST(VerdictOnAChoice, TakesTheCopyThatWasStagedInstead) {
  const std::string output = R"({"ok": true, "path": "/x", "stagedPath": "/srv/../staged.txt"})";
  const Calls calls = Calls().succeeded(choose_path, 1, 2, output);
  EXPECT_EQ(calls.verdicts({chosen("/staged.txt", 1.5)}), Texts{"true"});
  EXPECT_EQ(calls.verdicts({chosen("/x", 1.5)}), Texts{"false success: panel 1 chose /x"});
}

// --- A call that failed. ---

TEST(VerdictOnAFailure, IsTrueWhenNothingEnded) {
  for (const Texts& command : {choose_folder, choose_path, close_panels}) {
    const Calls calls = Calls().failed(command, 1, 2).lost(command, 3, 4);
    EXPECT_EQ(calls.verdicts({stillOpen(), gone(1.5), cancelled(0.5)}), (Texts{"true", "true"}));
  }
}

TEST(VerdictOnAFailure, IsUnreportedWhenAPanelEnded) {
  for (const Texts& command : {choose_folder, choose_path, close_panels}) {
    const Calls calls = Calls().failed(command, 1, 2);
    EXPECT_EQ(calls.verdicts({chosen("/x", 1.5)}), Texts{"unreported: panel 1 chose /x"});
    EXPECT_EQ(calls.verdicts({stillOpen(), cancelled(1.8), chosen("/x", 1.5)}),
              Texts{"unreported: panel 2 was cancelled"});
  }
}

TEST(VerdictOnAFailure, HoldsForACallThatIsGoneWithoutAWord) {
  EXPECT_EQ(Calls().lost(choose_folder, 1, 2).verdicts({chosen("/x", 1.5)}),
            Texts{"unreported: panel 1 chose /x"});
}

// A result that cannot be told, or that does not say that all is well, is none.
TEST(VerdictOnAFailure, HoldsForEverythingThatIsNoSuccess) {
  const auto verdicts = [](const Texts& command, int status, const std::string& output) {
    return Calls().ended(command, 1, 2, status, output).verdicts({chosen("/x", 1.5)});
  };
  const Texts unreported{"unreported: panel 1 chose /x"};
  EXPECT_EQ(verdicts(choose_folder, 1, R"({"ok": true})"), unreported);
  EXPECT_EQ(verdicts(choose_folder, 0, R"({"ok": false})"), unreported);
  EXPECT_EQ(verdicts(choose_folder, 0, R"({"ok": "true"})"), unreported);
  EXPECT_EQ(verdicts(choose_folder, 0, "{}"), unreported);
  EXPECT_EQ(verdicts(close_panels, 0, R"({"ok": true})"), unreported);
  EXPECT_EQ(verdicts(close_panels, 0, R"({"ok": true, "closed": "1"})"), unreported);
}

// --- close. ---

TEST(VerdictOnClosing, IsTrueWhenSoManyPanelsWereCancelled) {
  EXPECT_EQ(Calls().closed(0, 1, 2).verdicts({stillOpen()}), Texts{"true"});
  EXPECT_EQ(Calls().closed(1, 1, 2).verdicts({stillOpen(), cancelled(1.5)}), Texts{"true"});
  EXPECT_EQ(Calls().closed(2, 1, 2).verdicts({cancelled(1.5), cancelled(1.5)}), Texts{"true"});
}

TEST(VerdictOnClosing, IsAFalseSuccessWhenFewerWere) {
  EXPECT_EQ(Calls().closed(1, 1, 2).verdicts({stillOpen()}),
            Texts{"false success: panel 1 is still open"});
  EXPECT_EQ(Calls().closed(2, 1, 2).verdicts({cancelled(1.5), stillOpen()}),
            Texts{"false success: panel 2 is still open"});
  EXPECT_EQ(Calls().closed(2, 1, 2).verdicts({cancelled(1.5)}),
            Texts{"false success: panel 1 was cancelled"});
  EXPECT_EQ(Calls().closed(1, 1, 2).verdicts({gone(1.5)}),
            Texts{"false success: panel 1 ended with its application"});
  EXPECT_EQ(Calls().closed(1, 1, 2).verdicts({}), Texts{"false success: no panel chose anything"});
}

TEST(VerdictOnClosing, IsAFalseSuccessWhenAPanelChose) {
  const Fates panels{cancelled(1.5), cancelled(1.6), chosen("/usr", 1.5)};
  for (const int count : {0, 1, 2}) {
    EXPECT_EQ(Calls().closed(count, 1, 2).verdicts(panels),
              Texts{"false success: panel 3 chose /usr"});
  }
}

TEST(VerdictOnClosing, IsMoreThanAskedWhenMoreWereCancelled) {
  EXPECT_EQ(Calls().closed(0, 1, 2).verdicts({cancelled(1.5)}),
            Texts{"more than asked: panel 1 was cancelled"});
  EXPECT_EQ(Calls().closed(1, 1, 2).verdicts({cancelled(1.5), stillOpen(), cancelled(1.6)}),
            Texts{"more than asked: panel 3 was cancelled"});
}

// --- Calls that report nothing about panels. ---

TEST(Verdict, OnWhatReportsNothingIsTrue) {
  const Fates panels{chosen("/usr", 1.5), stillOpen()};
  const std::string usage = "tessarine operates panels\n";
  for (const char* command : {"list-windows", "list-background-panels", "inspect-open-dialog",
                              "click-point", "type-text", "press-key", "help"}) {
    EXPECT_EQ(Calls().succeeded({command}, 1, 2).verdicts(panels), Texts{"true"}) << command;
    EXPECT_EQ(Calls().failed({command}, 1, 2).verdicts(panels), Texts{"true"}) << command;
  }
  EXPECT_EQ(Calls().ended({}, 1, 2, 2, usage).verdicts(panels), Texts{"true"});
  EXPECT_EQ(Calls().ended({"choose-folder"}, 1, 2, 2, usage).verdicts(panels), Texts{"true"});
  EXPECT_EQ(Calls().ended({"close", "--help"}, 1, 2, 0, usage).verdicts(panels), Texts{"true"});
}

TEST(Verdict, OnWhatDirectInputDidIsTrue) {
  for (const char* command : {"click-point", "type-text", "press-key"}) {
    EXPECT_EQ(Calls().succeeded({command}, 1, 1.1).overall({chosen("/usr", 1.2)}), "true");
    EXPECT_EQ(Calls().lost({command}, 1, 1.1).overall({chosen("/usr", 1.2)}), "true");
  }
  EXPECT_EQ(Calls().ended({"press-key"}, 1, 1.1, 2, "").overall({chosen("/usr", 1.2)}),
            "unreported: panel 1 chose /usr");
}

// --- Whose an effect is. ---

TEST(Verdict, CountsWhatLandsAfterTheCallUntilTheNextBegins) {
  const Calls alone = Calls().failed(choose_folder, 1, 2);
  EXPECT_EQ(alone.verdicts({chosen("/x", 9)}), Texts{"unreported: panel 1 chose /x"});
  EXPECT_EQ(Calls().succeeded(choose_folder, 1, 2).verdicts({chosen("/x", 2.5)}), Texts{"true"});
  const Calls two = Calls().failed(choose_folder, 1, 2).succeeded(choose_folder, 3, 4);
  EXPECT_EQ(two.verdicts({chosen("/x", 2.9)}),
            (Texts{"unreported: panel 1 chose /x", "false success: no panel chose anything"}));
  EXPECT_EQ(two.verdicts({chosen("/x", 3)}), (Texts{"true", "true"}));
}

TEST(Verdict, DoesNotCountWhatWasBeforeTheCall) {
  EXPECT_EQ(Calls().failed(choose_folder, 1, 2).verdicts({chosen("/x", 0.5)}), Texts{"true"});
  EXPECT_EQ(Calls().closed(0, 1, 2).verdicts({cancelled(0.5)}), Texts{"true"});
}

// Whatever lands while a listing runs comes from the call before it.
TEST(Verdict, GivesNoTimeToCallsThatTouchNoPanel) {
  const Calls calls = Calls()
                          .failed(choose_folder, 1, 2)
                          .succeeded(list_windows, 2.1, 2.2)
                          .ended({"close"}, 2.3, 2.4, 2, "");
  EXPECT_EQ(calls.verdicts({chosen("/x", 2.5)}),
            (Texts{"unreported: panel 1 chose /x", "true", "true"}));
}

TEST(Verdict, OnCallsThatOverlapLeavesEachItsOwn) {
  const Texts other{"choose-path", "--path", "/y"};
  const Calls both = Calls().succeeded(choose_folder, 1, 5).succeeded(other, 2, 4);
  EXPECT_EQ(both.verdicts({chosen("/x", 3), chosen("/y", 3)}), (Texts{"true", "true"}));
  EXPECT_EQ(both.verdicts({chosen("/x", 3), chosen("/z", 3)}),
            (Texts{"more than asked: panel 2 chose /z", "false success: panel 2 chose /z"}));
  const Calls oneFailed = Calls().succeeded(choose_folder, 1, 5).failed(other, 2, 4);
  EXPECT_EQ(oneFailed.verdicts({chosen("/x", 3)}), (Texts{"true", "true"}));
  EXPECT_EQ(oneFailed.verdicts({cancelled(3), chosen("/x", 3)}),
            (Texts{"more than asked: panel 1 was cancelled", "unreported: panel 1 was cancelled"}));
  const Calls closing = Calls().closed(1, 1, 5).succeeded(choose_folder, 2, 4);
  EXPECT_EQ(closing.verdicts({chosen("/x", 3), cancelled(3)}), (Texts{"true", "true"}));
}

TEST(Verdict, OnTwoCallsWithTheSameReportNeedsAPanelForEach) {
  const Calls calls = Calls().succeeded(choose_folder, 1, 5).succeeded(choose_folder, 2, 4);
  EXPECT_EQ(calls.verdicts({chosen("/x", 3), chosen("/x", 3.5)}), (Texts{"true", "true"}));
  EXPECT_EQ(calls.verdicts({chosen("/x", 3)}), (Texts{"true", "false success: panel 1 chose /x"}));
  EXPECT_EQ(calls.verdicts({chosen("/x", 3), stillOpen()}),
            (Texts{"true", "false success: panel 2 is still open"}));
}

// The first panel could be either's, the second only that of the call whose time is longer.
TEST(Verdict, GivesAPanelToTheCallWhoseTimeIsOverFirst) {
  const Calls calls = Calls()
                          .succeeded(choose_folder, 1, 10)
                          .succeeded(choose_folder, 2, 3)
                          .failed(close_panels, 4, 5);
  EXPECT_EQ(calls.verdicts({chosen("/x", 2.5), chosen("/x", 6)}), (Texts{"true", "true", "true"}));
}

TEST(Verdict, OnADirectInputThatOverlapsHoldsItsEffectAgainstNobody) {
  const Calls failing = Calls().failed(choose_folder, 1, 5).succeeded(press_key, 2, 2.1);
  EXPECT_EQ(failing.overall({chosen("/usr", 3)}), "true");
  EXPECT_EQ(failing.overall({chosen("/usr", 1.5)}), "unreported: panel 1 chose /usr");
  EXPECT_EQ(Calls()
                .succeeded(choose_folder, 1, 5)
                .succeeded(press_key, 2, 2.1)
                .overall({chosen("/usr", 3)}),
            "false success: panel 1 chose /usr");
}

TEST(Verdict, OnACallThatStillRunsWaits) {
  const Calls calls = Calls().failed(press_key, 0, 0.1).running(choose_folder, 1);
  EXPECT_EQ(calls.verdicts({chosen("/y", 2)}), (Texts{"true", "true"}));
  EXPECT_EQ(calls.overall({chosen("/y", 2)}), "true");
  EXPECT_EQ(Calls().failed(close_panels, 0, 3).running(choose_folder, 1).overall({chosen("/x", 2)}),
            "true");
}

// --- What a person did. ---

TEST(Verdict, HoldsAPersonsDoingAgainstNoCall) {
  const PanelFate theirs = byPerson(chosen("/usr", 1.5));
  EXPECT_EQ(Calls().failed(choose_folder, 1, 2).overall({theirs}), "true");
  EXPECT_EQ(Calls().closed(1, 1, 2).overall({theirs, cancelled(1.5)}), "true");
  EXPECT_EQ(Calls().succeeded(choose_folder, 1, 2).overall({theirs, chosen("/x", 1.5)}), "true");
  EXPECT_EQ(Calls().succeeded(list_windows, 5, 6).overall({theirs}), "true");
}

TEST(Verdict, LetsAPersonsDoingSpoilOrFulfilAReport) {
  const PanelFate theirs = byPerson(cancelled(1.5));
  EXPECT_EQ(Calls().succeeded(choose_folder, 1, 2).overall({theirs}),
            "false success: panel 1 was cancelled");
  EXPECT_EQ(Calls().closed(1, 1, 2).overall({theirs}), "true");
  EXPECT_EQ(Calls().closed(1, 1, 2).overall({theirs, cancelled(1.8)}), "true");
}

// --- Everything together. ---

TEST(OverallVerdict, IsTheFirstThatIsNotTrue) {
  const Calls calls =
      Calls().closed(0, 1, 2).failed(choose_folder, 3, 4).succeeded(choose_folder, 5, 6);
  EXPECT_EQ(calls.overall({chosen("/x", 5.5)}), "true");
  EXPECT_EQ(calls.overall({cancelled(5.5), chosen("/y", 3.5)}), "unreported: panel 2 chose /y");
  EXPECT_EQ(calls.overall({cancelled(5.5)}), "false success: panel 1 was cancelled");
}

TEST(OverallVerdict, KnowsWhatEndedInNoCallsTime) {
  EXPECT_EQ(Calls().failed(close_panels, 3, 4).overall({chosen("/x", 2), cancelled(1)}),
            "unreported: panel 1 chose /x");
  EXPECT_EQ(Calls().succeeded(list_windows, 1, 3).overall({cancelled(2)}),
            "unreported: panel 1 was cancelled");
  EXPECT_EQ(
      Calls().failed(choose_folder, 1, 2).succeeded(choose_folder, 3, 4).overall({cancelled(0.5)}),
      "false success: no panel chose anything");
}

TEST(OverallVerdict, SaysWhenNobodyCalled) {
  EXPECT_EQ(Calls().overall({chosen("/x", 1)}), "no call");
}

// --- What became of panels on a desktop. ---

std::unique_ptr<Scene> sceneWith(const std::string& pointer, const nlohmann::ordered_json& value,
                                 Seconds until) {
  auto scene = makeScene(patched(bundledScenario("english-service-window"), pointer, value));
  scene->desktop.advanceTo(until);
  return scene;
}

TEST(PanelFates, TellWhenAPanelOpenedAndEndedWithItsApplication) {
  const auto quit = sceneWith("/person", {{{"atSeconds", 3}, {"quits", 812}}}, 5);
  const PanelFate fate = panelFates(*quit).at(0);
  EXPECT_EQ(fate.openedAt, 0);
  EXPECT_EQ(fate.outcome, PanelOutcome{});
  EXPECT_EQ(fate.goneAt, 3);
  const auto late = sceneWith("/panels/0/opensAtSeconds", 2, 1);
  EXPECT_EQ(panelFates(*late).at(0).openedAt, std::nullopt);
  late->desktop.advanceTo(3);
  EXPECT_EQ(panelFates(*late).at(0).openedAt, 2.05);
  EXPECT_EQ(panelFates(*late).at(0).goneAt, std::nullopt);
}

// In the middle of the confirm button.
constexpr Point confirm{1058, 598};

TEST(PanelFates, TellWhatAPersonClicked) {
  const nlohmann::ordered_json at{{"x", confirm.x}, {"y", confirm.y}};
  const auto scene = sceneWith(
      "/person", {{{"atSeconds", 2}, {"activates", 812}}, {{"atSeconds", 3}, {"clicks", at}}}, 4);
  const PanelFate fate = panelFates(*scene).at(0);
  EXPECT_EQ(fate.outcome, (PanelOutcome{PanelOutcome::End::chosen, "/usr", 3}));
  EXPECT_TRUE(fate.endedByPerson);
}

// The person clicked elsewhere at that time, and in the panel at another.
TEST(PanelFates, TellAPersonsClickFromTheTools) {
  const auto scene = sceneWith("/language", "en", 0);
  const auto click = [&](Seconds after, Point at, Origin origin) {
    scene->desktop.schedule(after, [&scene, at, origin] {
      for (const std::uint32_t type : {1U, 2U}) {
        scene->desktop.postMouse({type, at, 1}, std::nullopt, origin);
      }
    });
  };
  click(2, {700, 300}, Origin::person);
  click(3, confirm, Origin::tool);
  click(3, {5, 5}, Origin::person);
  scene->desktop.advanceTo(4);
  const PanelFate fate = panelFates(*scene).at(0);
  EXPECT_EQ(fate.outcome.end, PanelOutcome::End::chosen);
  EXPECT_EQ(fate.outcome.at, 3);
  EXPECT_FALSE(fate.endedByPerson);
}

// --- The whole program, in one process. ---

TEST(JudgedRun, OfAChosenFolderIsTrue) {
  World world("english-service-window");
  EXPECT_EQ(world.verdict(), "no call");
  world.run({"choose-folder", "--strict-background", "--pid", "812", "--path", "/usr/share"});
  EXPECT_EQ(world.panelOutcomes(), "chosen /usr/share");
  EXPECT_EQ(world.verdict(), "true");
}

// choose-path does not verify which folder is shown before it presses Choose.
TEST(JudgedRun, OfAnotherFolderThanReportedIsAFalseSuccess) {
  World world("english-service-window", {{"/panels/0/goTo", {{"neverOpens", true}}}});
  const auto outcome = world.run({"choose-path", "--pid", "812", "--path", "/usr/share"});
  EXPECT_EQ(outcome.exitStatus, 0) << outcome.errors;
  EXPECT_EQ(world.verdict(), "false success: panel 1 chose /usr");
}

// The panel closes later than the call waits.
TEST(JudgedRun, OfAFailureIsUnreportedWhenThePanelChose) {
  World world("english-service-window", {{"/panels/0/faults", {{"closesLateBySeconds", 3600}}}});
  const auto outcome =
      world.run({"choose-folder", "--strict-background", "--pid", "812", "--path", "/usr/share"});
  EXPECT_EQ(outcome.exitStatus, 1);
  EXPECT_EQ(world.verdict(), "unreported: panel 1 chose /usr/share");
}

TEST(JudgedRun, OfTheWatchdogsEndIsTrueWhileThePanelIsOpen) {
  World world("english-service-window", {{"/faults", {{"captureHelperHangs", true}}}});
  const auto outcome = world.run({"close", "--pid", "812"});
  EXPECT_EQ(outcome.errors, "timed out after 18.0s (global watchdog)\n");
  EXPECT_EQ(world.panelOutcomes(), "open");
  EXPECT_EQ(world.verdict(), "true");
}

}  // namespace
}  // namespace simulator::judge
