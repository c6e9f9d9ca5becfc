// Who runs around a browser's panels: what "/bin/ps" and the capture helper print, and what
// follows.
#include "panels/process_survey.h"

#include <gmock/gmock.h>

#include "panels/reported_desktop.h"

namespace tessarine::test::process_survey {
namespace {

using Pids = std::vector<std::int32_t>;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

const std::string chrome = "/Applications/Google Chrome.app/Contents/MacOS/Google Chrome";
const std::string edge = "/Applications/Microsoft Edge.app/Contents/MacOS/Microsoft Edge";
// As it was measured.
const std::string service =
    "/System/Library/Frameworks/AppKit.framework/Versions/C/XPCServices/"
    "com.apple.appkit.xpc.openAndSavePanelService.xpc/Contents/MacOS/"
    "com.apple.appkit.xpc.openAndSavePanelService";

constexpr Rect place{320, 180, 800, 450};
constexpr Rect elsewhere{20, 30, 800, 450};

std::string serviceOf(const std::string& name) {
  return "Open and Save Panel Service (" + name + ")";
}

PanelWindowRef window(std::int32_t pid, const std::string& owner, const Rect& frame = place,
                      std::uint32_t number = 7) {
  return {number, pid, owner, "", frame};
}

ProcessSurvey surveyOf(std::vector<ListedProcess> processes,
                       std::vector<PanelWindowRef> windows = {}) {
  return {std::move(processes), std::move(windows)};
}

ProcessSurvey withoutWindows(std::vector<ListedProcess> processes) {
  return {std::move(processes), std::nullopt};
}

// --- The look. ---

TEST(SurveyProcesses, ListsProcessesAndWindows) {
  ReportedDesktop world;
  world.processes = "    1 /sbin/launchd\n\n  812 " + chrome + "\n  900 " + service + "\n";
  world.windows = windowLine("41", 812, "Google Chrome", "Extensions", "80,60,1100,740") +
                  windowLine("42", 900, chromeService, "", "320,180,800,450");
  const ProcessSurvey survey = surveyProcesses();
  ASSERT_EQ(survey.processes.size(), 3U);
  EXPECT_EQ(survey.processes[0].pid, 1);
  EXPECT_EQ(survey.processes[0].command, "/sbin/launchd");
  EXPECT_EQ(survey.processes[1].pid, 812);
  EXPECT_EQ(survey.processes[1].command, chrome);
  EXPECT_EQ(survey.processes[2].command, service);
  ASSERT_TRUE(survey.windows);
  ASSERT_EQ(survey.windows->size(), 2U);
  EXPECT_EQ(survey.windows->at(0).title, "Extensions");
  EXPECT_EQ(survey.windows->at(1).windowID, 42U);
  EXPECT_EQ(survey.windows->at(1).pid, 900);
  EXPECT_EQ(survey.windows->at(1).app, chromeService);
  EXPECT_EQ(survey.windows->at(1).frame, place);
}

TEST(SurveyProcesses, HasNoProcessesWhenPsPrintsNothing) {
  ReportedDesktop world;
  EXPECT_THAT(surveyProcesses().processes, IsEmpty());
}

TEST(SurveyProcesses, LeavesOutLinesThatAreNoProcess) {
  ReportedDesktop world;
  world.processes = "4711\n  PID COMMAND\n  812 " + chrome + "\n";
  const ProcessSurvey survey = surveyProcesses();
  ASSERT_EQ(survey.processes.size(), 1U);
  EXPECT_EQ(survey.processes.front().pid, 812);
}

TEST(SurveyProcesses, DoesNotRunTheCaptureHelperWithoutTimeForIt) {
  ReportedDesktop world;
  EXPECT_FALSE(surveyProcesses(0).windows);
  EXPECT_THAT(world.startsOf({"list"}), IsEmpty());
  surveyProcesses();
  EXPECT_EQ(world.startsOf({"list"}).size(), 1U);
}

TEST(SurveyProcesses, TellsNoWindowsFromNoList) {
  ReportedDesktop world;
  ASSERT_TRUE(surveyProcesses().windows);
  EXPECT_THAT(*surveyProcesses().windows, IsEmpty());
  world.captureStatus = 1;
  EXPECT_FALSE(surveyProcesses().windows);
  EXPECT_FALSE(listedWindows());
}

TEST(SurveyProcesses, HasNoListWithoutTheCaptureHelper) {
  ReportedDesktop world;
  world.desktop.faults().missing_programs.insert("background-window-capture");
  EXPECT_FALSE(surveyProcesses().windows);
}

TEST(SurveyProcesses, WaitsForTheCaptureHelperForALimitedTime) {
  BareDesktop world;
  world.desktop.installProgram("background-window-capture", [](simulator::ProgramRun&) {});
  EXPECT_FALSE(listedWindows());
  EXPECT_GE(world.now(), surveySeconds - 1e-6);
  EXPECT_LE(world.now(), surveySeconds + 0.5);
}

TEST(ListedWindows, AreReadAfresh) {
  ReportedDesktop world;
  EXPECT_THAT(*listedWindows(), IsEmpty());
  world.windows = windowLine("42", 900, chromeService, "", "320,180,800,450");
  EXPECT_EQ(listedWindows()->size(), 1U);
}

// --- Names. ---

TEST(BundleName, IsThatOfTheApplicationThatIsStarted) {
  EXPECT_EQ(bundleName(chrome), "Google Chrome");
  EXPECT_EQ(bundleName(chrome + " --profile-directory=Default"), "Google Chrome");
  EXPECT_EQ(bundleName("/Users/me/My Apps/Chromium.app/Contents/MacOS/Chromium"), "Chromium");
}

TEST(BundleName, IsAHelpersOwnAndNotItsBrowsers) {
  EXPECT_EQ(bundleName("/Applications/Google Chrome.app/Contents/Frameworks/Google Chrome "
                       "Framework.framework/Versions/120/Helpers/Google Chrome Helper "
                       "(Renderer).app/Contents/MacOS/Google Chrome Helper (Renderer) --type=x"),
            "Google Chrome Helper (Renderer)");
}

TEST(BundleName, IsEmptyForWhatIsNoApplication) {
  EXPECT_EQ(bundleName("/sbin/launchd"), "");
  EXPECT_EQ(bundleName(""), "");
  EXPECT_EQ(bundleName("/Applications/Google Chrome.app/Contents/Resources/tool"), "");
}

TEST(ProcessName, IsTheBundlesElseThatOfTheOwnerOfItsWindows) {
  const auto survey = surveyOf({{812, chrome}, {300, "/usr/bin/term"}},
                               {window(812, "Chrome"), window(300, "Terminal")});
  EXPECT_EQ(processName(survey, 812), "Google Chrome");
  EXPECT_EQ(processName(survey, 300), "Terminal");
  EXPECT_EQ(processName(survey, 4711), "");
}

TEST(ProcessName, IsThatOfTheFirstWindowWhoseOwnerHasOne) {
  EXPECT_EQ(processName(surveyOf({}, {window(300, ""), window(300, "Terminal")}), 300), "Terminal");
}

TEST(ProcessName, IsEmptyWithoutAWindowList) {
  EXPECT_EQ(processName(withoutWindows({{300, "/usr/bin/term"}}), 300), "");
}

// --- Which services run. ---

TEST(RunningPanelServices, AreKnownByTheirExecutable) {
  EXPECT_THAT(runningPanelServices(surveyOf({{1, "/sbin/launchd"}, {900, service}, {812, chrome}})),
              ElementsAre(900));
}

TEST(RunningPanelServices, AreKnownByTheirDisplayName) {
  EXPECT_THAT(runningPanelServices(surveyOf({{900, chromeService}})), ElementsAre(900));
}

TEST(RunningPanelServices, AreKnownByTheirWindows) {
  EXPECT_THAT(runningPanelServices(surveyOf({{812, chrome}}, {window(900, chromeService)})),
              ElementsAre(900));
}

TEST(RunningPanelServices, AreEachListedOnce) {
  EXPECT_THAT(runningPanelServices(
                  surveyOf({{905, service}, {900, service}},
                           {window(900, chromeService), window(900, chromeService, elsewhere)})),
              ElementsAre(905, 900));
}

TEST(RunningPanelServices, AreNoneWithoutAnything) {
  EXPECT_THAT(runningPanelServices(withoutWindows({})), IsEmpty());
  EXPECT_THAT(runningPanelServices(surveyOf({{812, chrome}}, {window(812, "Google Chrome")})),
              IsEmpty());
}

// --- Which of them are the browser's: its window stands where the browser's panel stands. ---

// Two services run, so that none is the only one, and neither is named.
ProcessSurvey twoUnnamed(std::vector<PanelWindowRef> windows) {
  return surveyOf({{812, chrome}, {900, service}, {901, service}}, std::move(windows));
}

TEST(PanelServicesOf, HoldsOneWhoseWindowStandsWhereOneOfTheBrowserStands) {
  EXPECT_THAT(panelServicesOf(twoUnnamed({window(812, "Google Chrome"), window(901, "")}), 812),
              ElementsAre(901));
}

TEST(PanelServicesOf, LacksOneWhoseWindowStandsElsewhere) {
  for (const Rect& frame : {elsewhere, Rect{321, 180, 800, 450}, Rect{320, 181, 800, 450},
                            Rect{320, 180, 801, 450}, Rect{320, 180, 800, 451}}) {
    EXPECT_THAT(
        panelServicesOf(twoUnnamed({window(812, "Google Chrome"), window(901, "", frame)}), 812),
        IsEmpty());
  }
}

TEST(PanelServicesOf, LacksOneThatStandsWhereAThirdProcessHasAWindowToo) {
  EXPECT_THAT(
      panelServicesOf(
          twoUnnamed({window(812, "Google Chrome"), window(901, ""), window(700, "Preview")}), 812),
      IsEmpty());
}

TEST(PanelServicesOf, LacksOneThatStandsNowhere) {
  constexpr Rect nowhere{};
  EXPECT_THAT(
      panelServicesOf(twoUnnamed({window(812, "Google Chrome", nowhere), window(901, "", nowhere)}),
                      812),
      IsEmpty());
}

TEST(PanelServicesOf, LacksTwoThatStandAtTheSamePlace) {
  EXPECT_THAT(
      panelServicesOf(twoUnnamed({window(812, "Google Chrome"), window(900, ""), window(901, "")}),
                      812),
      IsEmpty());
}

TEST(PanelServicesOf, LacksOneThatStandsWhereNoWindowOfTheBrowserStands) {
  EXPECT_THAT(panelServicesOf(twoUnnamed({window(901, ""), window(700, "Preview")}), 812),
              IsEmpty());
}

// --- Its windows' owner is named for this browser alone. ---

ProcessSurvey twoNamed(const std::string& owner, std::vector<ListedProcess> more = {}) {
  std::vector<ListedProcess> processes{{812, chrome}, {900, service}, {901, service}};
  processes.insert(processes.end(), more.begin(), more.end());
  return surveyOf(std::move(processes), {window(901, owner, elsewhere)});
}

TEST(PanelServicesOf, HoldsOneThatIsNamedForTheBrowser) {
  EXPECT_THAT(panelServicesOf(twoNamed(chromeService), 812), ElementsAre(901));
}

TEST(PanelServicesOf, HoldsOneWhoseCommandIsTheNameForTheBrowser) {
  EXPECT_THAT(panelServicesOf(surveyOf({{812, chrome}, {900, chromeService}, {901, service}}), 812),
              ElementsAre(900));
}

TEST(PanelServicesOf, HoldsOneThatASecondWindowNamesForTheBrowser) {
  ProcessSurvey survey = twoNamed("");
  survey.windows->push_back(window(901, chromeService, elsewhere));
  EXPECT_THAT(panelServicesOf(survey, 812), ElementsAre(901));
}

TEST(PanelServicesOf, HoldsOneWhoseBrowserHasParenthesesInItsName) {
  EXPECT_THAT(
      panelServicesOf(surveyOf({{812, "/Applications/Chrome (Beta).app/Contents/MacOS/Chrome"},
                                {900, service},
                                {901, service}},
                               {window(901, serviceOf("Chrome (Beta)"), elsewhere)}),
                      812),
      ElementsAre(901));
}

// Of a browser that ps shows as no application.
TEST(PanelServicesOf, HoldsOneThatIsNamedAsTheBrowsersOwnWindowsAre) {
  EXPECT_THAT(panelServicesOf(surveyOf({{812, "/usr/bin/chromium"}, {900, service}, {901, service}},
                                       {window(812, "Chromium"),
                                        window(901, serviceOf("Chromium"), elsewhere)}),
                              812),
              ElementsAre(901));
}

TEST(PanelServicesOf, LacksOneOfTwoThatIsNamedWhereTheBrowserHasNoName) {
  EXPECT_THAT(panelServicesOf(surveyOf({{812, "/usr/bin/chromium"}, {900, service}, {901, service}},
                                       {window(901, serviceOf("Chromium"), elsewhere)}),
                              812),
              IsEmpty());
}

TEST(PanelServicesOf, LacksOneThatIsNamedForAnotherApplication) {
  EXPECT_THAT(panelServicesOf(twoNamed(serviceOf("Google Chrome Dev")), 812), IsEmpty());
  EXPECT_THAT(panelServicesOf(twoNamed(serviceOf("Chrome")), 812), IsEmpty());
  EXPECT_THAT(panelServicesOf(twoNamed(serviceOf("google chrome")), 812), IsEmpty());
}

TEST(PanelServicesOf, LacksOneThatMayBeNamedForASecondBrowserOfThatName) {
  EXPECT_THAT(
      panelServicesOf(
          twoNamed(chromeService, {{813, "/Users/me" + chrome + " --user-data-dir=/x"}}), 812),
      IsEmpty());
  EXPECT_THAT(panelServicesOf(twoNamed(chromeService, {{814, edge}}), 812), ElementsAre(901));
}

TEST(PanelServicesOf, DoesNotTakeABrowsersHelperForASecondBrowser) {
  const std::string helper =
      "/Applications/Google Chrome.app/Contents/Frameworks/Google Chrome Framework.framework/"
      "Helpers/Google Chrome Helper.app/Contents/MacOS/Google Chrome Helper --type=gpu-process";
  EXPECT_THAT(panelServicesOf(twoNamed(chromeService, {{830, helper}}), 812), ElementsAre(901));
}

TEST(PanelServicesOf, LacksOneThatMayBeNamedForAProcessThatOnlyItsWindowTellsOf) {
  ProcessSurvey survey = twoNamed(chromeService);
  survey.windows->push_back(window(813, "Google Chrome", elsewhere));
  EXPECT_THAT(panelServicesOf(survey, 812), IsEmpty());
}

TEST(PanelServicesOf, LacksOneThatMayBeNamedForAProcessOfThatBareName) {
  for (const char* command : {"Google Chrome", "Google Chrome --headless"}) {
    EXPECT_THAT(panelServicesOf(twoNamed(chromeService, {{813, command}}), 812), IsEmpty())
        << command;
  }
  EXPECT_THAT(panelServicesOf(twoNamed(chromeService, {{813, "Google Chrome Dev"}}), 812),
              ElementsAre(901));
}

// --- It is the only one that runs. ---

const std::string textEdit = "/System/Applications/TextEdit.app/Contents/MacOS/TextEdit";
const std::string firefox = "/Applications/Firefox.app/Contents/MacOS/firefox";
const std::string chromeHelper =
    "/Applications/Google Chrome.app/Contents/Frameworks/Google Chrome Framework.framework/"
    "Helpers/Google Chrome Helper (Renderer).app/Contents/MacOS/Google Chrome Helper (Renderer)";

// With a window of the browser on the list.
ProcessSurvey listed(std::vector<ListedProcess> processes,
                     std::vector<PanelWindowRef> windows = {}) {
  windows.push_back(window(812, "Google Chrome", elsewhere));
  return surveyOf(std::move(processes), std::move(windows));
}

TEST(PanelServicesOf, HoldsTheOnlyOneThatRunsBesideTheOnlyBrowser) {
  EXPECT_THAT(panelServicesOf(listed({{812, chrome}, {900, service}}), 812), ElementsAre(900));
  EXPECT_THAT(
      panelServicesOf(listed({{812, chrome}, {820, chromeHelper}, {250, textEdit}, {900, service}}),
                      812),
      ElementsAre(900));
}

TEST(PanelServicesOf, LacksTheOnlyOneWhileNoWindowOfTheBrowserIsListed) {
  EXPECT_THAT(panelServicesOf(surveyOf({{812, chrome}, {900, service}}), 812), IsEmpty());
  EXPECT_THAT(
      panelServicesOf(
          surveyOf({{812, chrome}, {900, service}}, {window(250, "TextEdit", elsewhere)}), 812),
      IsEmpty());
}

TEST(PanelServicesOf, LacksTheOnlyOneWhileAnotherBrowserRuns) {
  for (const std::string& other : {edge, firefox, chrome}) {
    EXPECT_THAT(panelServicesOf(listed({{812, chrome}, {813, other}, {900, service}}), 812),
                IsEmpty())
        << other;
  }
}

// Of any edition.
TEST(PanelServicesOf, LacksTheOnlyOneWhileAnyOtherBrowserRuns) {
  for (const char* name : {"Google Chrome Canary", "Chromium", "Microsoft Edge Dev",
                           "Brave Browser Nightly", "Vivaldi Snapshot", "Opera GX", "Arc",
                           "Firefox Developer Edition", "Safari Technology Preview"}) {
    const std::string other = std::string("/Applications/") + name + ".app/Contents/MacOS/" + name;
    EXPECT_THAT(panelServicesOf(surveyOf({{812, chrome}, {813, other}, {900, service}}), 812),
                IsEmpty())
        << name;
  }
}

TEST(PanelServicesOf, LacksTheOnlyOneWhileTheWindowsAreUnknown) {
  EXPECT_THAT(panelServicesOf(withoutWindows({{812, chrome}, {900, service}}), 812), IsEmpty());
}

TEST(PanelServicesOf, HoldsTheOnlyOneThoughTheBrowserHasNoName) {
  EXPECT_THAT(panelServicesOf(surveyOf({{812, "/usr/bin/chromium"}, {900, service}},
                                       {window(812, ""), window(900, chromeService, elsewhere)}),
                              812),
              ElementsAre(900));
}

// Only what stands between the parentheses of its display name is an application's name.
TEST(PanelServicesOf, HoldsTheOnlyOneWhateverElseItsCommandSays) {
  for (const std::string& command :
       {service + " (of TextEdit)", std::string("Open and Save Panel Service ()"),
        std::string("Open and Save Panel Service (TextEdit")}) {
    EXPECT_THAT(panelServicesOf(listed({{812, chrome}, {900, command}}), 812), ElementsAre(900))
        << command;
  }
}

// Whoever else runs has another name than the browser.
TEST(PanelServicesOf, LacksTheOnlyOneWhenItIsNamedForAnotherThatRuns) {
  const std::string edit = "/Applications/TextEdit.app/Contents/MacOS/TextEdit";
  const PanelWindowRef named = window(900, serviceOf("TextEdit"), elsewhere);
  EXPECT_THAT(panelServicesOf(surveyOf({{812, chrome}, {815, edit}, {900, service}}, {named}), 812),
              IsEmpty());
  EXPECT_THAT(panelServicesOf(
                  surveyOf({{812, chrome}, {900, service}}, {named, window(815, "TextEdit")}), 812),
              IsEmpty());
}

TEST(PanelServicesOf, LacksTwoOfWhichNothingIsKnown) {
  EXPECT_THAT(panelServicesOf(listed({{812, chrome}, {900, service}, {901, service}}), 812),
              IsEmpty());
}

TEST(PanelServicesOf, LacksTheOnlyOneWhenItIsNamedForAnother) {
  EXPECT_THAT(panelServicesOf(surveyOf({{812, chrome}, {900, service}},
                                       {window(900, serviceOf("TextEdit"), elsewhere)}),
                              812),
              IsEmpty());
}

// Who else runs nobody knows then.
TEST(PanelServicesOf, LacksAllThatOnlyTheirNamesTellOfWhenPsPrintsNothing) {
  EXPECT_THAT(
      panelServicesOf(
          surveyOf({}, {window(812, "Google Chrome", elsewhere), window(900, chromeService)}), 812),
      IsEmpty());
  EXPECT_THAT(panelServicesOf(
                  surveyOf({}, {window(812, "Google Chrome"), window(900, chromeService)}), 812),
              ElementsAre(900));
}

TEST(PanelServicesOf, LacksTheBrowserItself) {
  EXPECT_THAT(panelServicesOf(surveyOf({{812, chromeService}}), 812), IsEmpty());
}

// Whatever else is so.
TEST(PanelServicesOf, LacksOneThatIsNamedForAnotherThoughItStandsWhereTheBrowserDoes) {
  EXPECT_THAT(
      panelServicesOf(surveyOf({{812, chrome}, {900, service}},
                               {window(812, "Google Chrome"), window(900, serviceOf("TextEdit"))}),
                      812),
      IsEmpty());
}

TEST(PanelServicesOf, HoldsSeveralInTheSurveysOrder) {
  EXPECT_THAT(panelServicesOf(surveyOf({{812, chrome}, {902, service}, {900, service}},
                                       {window(812, "Google Chrome"), window(900, ""),
                                        window(902, chromeService, elsewhere)}),
                              812),
              ElementsAre(902, 900));
}

TEST(PanelServicesOf, IsTheSameForABrowserOfAnotherName) {
  const auto survey =
      surveyOf({{813, edge}, {900, service}, {901, service}},
               {window(900, chromeService, elsewhere), window(901, serviceOf("Microsoft Edge"))});
  EXPECT_THAT(panelServicesOf(survey, 813), ElementsAre(901));
}

// --- Places. ---

TEST(StandsWithAnother, HoldsWhereAnotherApplicationAloneHasAWindow) {
  const std::vector<ListedProcess> processes{{812, chrome}, {900, service}, {700, "/x/Preview"}};
  EXPECT_TRUE(standsWithAnother(surveyOf(processes, {window(700, "Preview")}), 812, place));
  EXPECT_FALSE(
      standsWithAnother(surveyOf(processes, {window(700, "Preview", elsewhere)}), 812, place));
  EXPECT_FALSE(standsWithAnother(surveyOf(processes, {window(900, chromeService)}), 812, place));
  EXPECT_FALSE(standsWithAnother(
      surveyOf(processes, {window(700, "Preview"), window(812, "Google Chrome")}), 812, place));
  EXPECT_FALSE(standsWithAnother(withoutWindows(processes), 812, place));
}

TEST(StandsWithAnother, HoldsWhereAServicesWindowStandsBehindTheOthers) {
  EXPECT_TRUE(standsWithAnother(
      surveyOf({{900, service}}, {window(700, "Preview"), window(900, chromeService)}), 812,
      place));
}

TEST(WindowsAt, AreThoseOfTheOwnersThatStandExactlyThere) {
  const std::vector<PanelWindowRef> windows{
      window(812, "Google Chrome", place, 1), window(900, "", place, 2),
      window(900, "", elsewhere, 3), window(700, "Preview", place, 4),
      window(812, "Google Chrome", place, 5)};
  std::vector<std::uint32_t> numbers;
  for (const auto& found : windowsAt(windows, {812, 900}, place)) numbers.push_back(found.windowID);
  EXPECT_THAT(numbers, ElementsAre(1U, 2U, 5U));
  EXPECT_THAT(windowsAt(windows, {}, place), IsEmpty());
}

// --- Windows that were not there before. ---

bool hasMore(const std::vector<PanelWindowRef>& before, const std::vector<PanelWindowRef>& now,
             const std::optional<Rect>& left = {}) {
  return hasMoreWindows(before, now, {812, 900}, left);
}

TEST(HasMoreWindows, HoldsForOneMoreOfAnOwner) {
  const std::vector<PanelWindowRef> before{window(812, "", place, 1)};
  EXPECT_FALSE(hasMore(before, before));
  EXPECT_FALSE(hasMore(before, {}));
  EXPECT_TRUE(hasMore(before, {window(812, "", place, 1), window(812, "", elsewhere, 2)}));
  EXPECT_TRUE(hasMore(before, {window(812, "", place, 1), window(812, "", place, 2)}));
}

// One of each may stand at one place.
TEST(HasMoreWindows, CountsEachOwnersWindowsByThemselves) {
  const std::vector<PanelWindowRef> before{window(812, "", place, 1), window(812, "", place, 2)};
  EXPECT_TRUE(hasMore(before, {window(812, "", place, 1), window(900, "", place, 3)}));
}

TEST(HasMoreWindows, DoesNotMindThoseOfOthers) {
  EXPECT_FALSE(hasMore({}, {window(700, "Preview", place, 4)}));
}

TEST(HasMoreWindows, LeavesOutWhatStandsAtThePlaceThatIsNamedOrNearIt) {
  EXPECT_FALSE(hasMore({}, {window(900, "", place, 1)}, place));
  const Rect withShadow{place.x - 40, place.y - 40, place.width + 80, place.height + 80};
  EXPECT_FALSE(hasMore({}, {window(900, "", withShadow, 1)}, place));
  const Rect larger{place.x - 41, place.y, place.width + 81, place.height};
  EXPECT_TRUE(hasMore({}, {window(900, "", larger, 1)}, place));
  EXPECT_TRUE(hasMore({}, {window(900, "", elsewhere, 1)}, place));
}

}  // namespace
}  // namespace tessarine::test::process_survey
