// Which processes may own the Open panel, by what "/bin/ps" and the capture helper print.
#include "panels/candidates.h"

#include <gmock/gmock.h>

#include "panels/panel_owners.h"
#include "panels/reported_desktop.h"

namespace tessarine::test {
namespace {

using Pids = std::vector<std::int32_t>;
using Texts = std::vector<std::string>;

// "812 primary-browser" for each application.
Texts described(const std::vector<AppRef>& apps) {
  Texts texts;
  for (const AppRef& app : apps) {
    EXPECT_TRUE(app.app == Element::application(app.pid)) << app.pid;
    texts.push_back(std::to_string(app.pid) + " " + app.label);
  }
  return texts;
}

std::string nameFor(const std::string& command) {
  ReportedDesktop world;
  world.command = command;
  return browserDisplayName(browserPid);
}

Pids servicesListed(const std::string& processes) {
  ReportedDesktop world;
  world.processes = processes;
  return panelServicePIDs(browserPid);
}

const std::string chromeServiceProcess =
    std::string("  900 /System/Library/XPCServices/x.xpc/") + chromeService + "\n";

TEST(Candidates, NamesTheBrowserByItsCommandLine) {
  EXPECT_EQ(nameFor("/Applications/Microsoft Edge.app/Contents/MacOS/Microsoft Edge"),
            "Microsoft Edge");
  EXPECT_EQ(nameFor("/Applications/Google Chrome Dev.app/Contents/MacOS/Google Chrome Dev"),
            "Google Chrome Dev");
  EXPECT_EQ(nameFor("/Applications/Google Chrome.app/Contents/MacOS/Google Chrome"),
            "Google Chrome");
}

TEST(Candidates, PrefersEdgeThenDevWhereverTheCommandLineContainsThem) {
  EXPECT_EQ(nameFor("/opt/Google Chrome Dev --user-data-dir=/Microsoft Edge"), "Microsoft Edge");
  EXPECT_EQ(nameFor("/opt/Google Chrome --user-data-dir=/x/Google Chrome Dev"),
            "Google Chrome Dev");
}

TEST(Candidates, TakesAnyOtherProcessForGoogleChrome) {
  for (const char* command : {"/opt/microsoft edge", "/opt/google chrome dev", "/bin/zsh", ""}) {
    EXPECT_EQ(nameFor(command), "Google Chrome") << command;
  }
  BareDesktop withoutPrograms;
  EXPECT_EQ(browserDisplayName(browserPid), "Google Chrome");
}

TEST(Candidates, NamesThePanelServiceAfterTheBrowser) {
  EXPECT_EQ(panelServiceName("Microsoft Edge"), "Open and Save Panel Service (Microsoft Edge)");
}

TEST(Candidates, FindsServicesInTheOrderInWhichTheyAreListed) {
  EXPECT_EQ(servicesListed("\n    1 /sbin/launchd\n\n" + chromeServiceProcess +
                           "  77 /x/Open and Save Panel Service (Google Chrome)\n"
                           "  900 a second line of the same process: " +
                           chromeService + "\n"),
            (Pids{900, 77}));
}

TEST(Candidates, CountsAProcessWhoseArgumentsContainTheServiceName) {
  EXPECT_EQ(servicesListed("  901 grep Open and Save Panel Service (Google Chrome) x\n"),
            Pids{901});
}

TEST(Candidates, ReadsThePidFromTheFirstPieceOfATrimmedLine) {
  const std::string service = std::string(" /x/") + chromeService + "\n";
  EXPECT_EQ(servicesListed("\t 901" + service), Pids{901});
  EXPECT_EQ(servicesListed("+902" + service), Pids{902});
  for (const char* piece : {"-903", "0", "x904", "905,", "9.5", "0x10", "2147483648", "906\t"}) {
    EXPECT_EQ(servicesListed(piece + (piece == std::string("906\t") ? chromeService : service)),
              Pids())
        << piece;
  }
  EXPECT_EQ(servicesListed(chromeService), Pids());
}

TEST(Candidates, MatchesTheServiceNameByItsLetters) {
  EXPECT_EQ(servicesListed("901 open and save panel service (google chrome)\n"
                           "902 Open and Save Panel Service (Google Chrome\n"
                           "903 Open and Save Panel Service (Google Chrome Dev)\n"),
            Pids());
}

TEST(Candidates, LeavesAnotherBrowsersServiceAlone) {
  ReportedDesktop world;
  world.command = "/Applications/Microsoft Edge.app/Contents/MacOS/Microsoft Edge";
  world.processes = chromeServiceProcess + "905 Open and Save Panel Service (Microsoft Edge)\n";
  EXPECT_EQ(panelServicePIDs(browserPid), Pids{905});
}

TEST(Candidates, LeavesThePrimaryProcessOutOfTheServices) {
  ReportedDesktop world;
  world.processes = std::string("812 ") + chromeService + "\n";
  world.windows = windowLine("1", 812, "Google Chrome", "Open", "0,0,100,100");
  EXPECT_EQ(panelServicePIDs(browserPid), Pids());
}

TEST(Candidates, AppendsTheOwnersOfCapturedWindows) {
  ReportedDesktop world;
  world.processes = chromeServiceProcess;
  world.windows = windowLine("1", 77, chromeService, "Open", "0,0,100,100") +
                  windowLine("2", 900, chromeService, "Open", "50,0,100,100") +
                  windowLine("3", 33, chromeService, "打开", "0,50,100,100") +
                  windowLine("4", 77, chromeService, "Open", "50,50,100,100");
  EXPECT_EQ(panelServicePIDs(browserPid), (Pids{900, 77, 33}));
}

TEST(Candidates, AppendsTheOwnersOfWindowsThatAreOnNoScreen) {
  ReportedDesktop world;
  world.windows = windowLine("1", 77, chromeService, "Open", "9000,9000,100,100");
  EXPECT_EQ(panelServicePIDs(browserPid), Pids{77});
}

TEST(Candidates, KeepsTheFirstOfEachPositivePid) {
  EXPECT_EQ(uniquePIDs({5, 3, 5, 0, -3, 3, 4}), (Pids{5, 3, 4}));
  EXPECT_EQ(uniquePIDs({}), Pids());
}

TEST(Candidates, TheBrowserComesFirstThenServicesThenAdditionalProcesses) {
  ReportedDesktop world;
  world.processes = chromeServiceProcess;
  world.windows = windowLine("1", 77, chromeService, "Open", "0,0,100,100");
  EXPECT_EQ(
      described(candidateApps(browserPid, {41, 812, 0, -5, 77, 900, 41, 40})),
      (Texts{"812 primary-browser", "900 open-save-panel-service", "77 open-save-panel-service",
             "41 open-save-panel-service", "40 open-save-panel-service"}));
}

TEST(Candidates, WithoutProgramsOnlyTheBrowserIsLeftEvenIfItDoesNotExist) {
  BareDesktop world;
  EXPECT_EQ(described(candidateApps(4711)), Texts{"4711 primary-browser"});
  EXPECT_EQ(described(panelServiceApps(4711)), Texts());
}

TEST(Candidates, ThePanelServicesAloneComeWithoutTheBrowser) {
  ReportedDesktop world;
  world.processes = chromeServiceProcess + std::string("812 ") + chromeService + "\n";
  world.windows = windowLine("1", 77, chromeService, "Open", "0,0,100,100");
  EXPECT_EQ(described(panelServiceApps(browserPid)),
            (Texts{"900 open-save-panel-service", "77 open-save-panel-service"}));
}

// Naming the browser, listing the processes, naming it again for the captured windows and listing
// these follow each other without a pause.
TEST(Candidates, RunsEveryProgramAfreshOnEachCall) {
  ReportedDesktop world;
  for (int call = 0; call < 2; ++call) panelServicePIDs(browserPid);
  const auto near = [](double time) { return testing::DoubleNear(time, 1e-9); };
  EXPECT_THAT(world.startsOf({"-p", "812", "-o", "command="}),
              testing::ElementsAre(near(0), near(0.04), near(0.09), near(0.13)));
  EXPECT_THAT(world.startsOf({"-axo", "pid=,command="}),
              testing::ElementsAre(near(0.02), near(0.11)));
  EXPECT_THAT(world.startsOf({"list"}), testing::ElementsAre(near(0.06), near(0.15)));
}

}  // namespace
}  // namespace tessarine::test
