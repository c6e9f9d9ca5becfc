// `background-window-capture permissions`.
#include <gtest/gtest.h>

#include <functional>
#include <nlohmann/json.hpp>

#include "capture-helper/helper_desktop.h"
#include "simulator/frameworks/faults.h"

namespace tessarine::test::permissions {
namespace {

using Json = nlohmann::ordered_json;
using simulator::FaultyFrameworks;
using Words = std::vector<std::string>;

constexpr const char* allGranted =
    "Accessibility: granted\n"
    "Screen Recording: granted\n"
    "Automation of System Events: granted\n"
    "Automation of the Finder: granted\n";

// With both applications that scripts tell something.
struct OwnersDesktop : HelperDesktop {
  OwnersDesktop() {
    start(250, "Finder");
    start(260, "System Events");
  }
  void start(std::int32_t pid, const std::string& name) {
    desktop.addProcess(
        {.pid = pid, .name = name, .command = name, .application = true, .host = {}});
  }
};

Outcome lines() {
  return runHelper({"permissions"});
}

// Everything granted but what is said in these lines, which take the place of the ones that begin
// the same.
Outcome grantedBut(const Words& changed) {
  std::string text = allGranted;
  for (const std::string& line : changed) {
    const std::size_t at = text.find(line.substr(0, line.find(':') + 1));
    text.replace(at, text.find('\n', at) - at, line);
  }
  return {1, text, ""};
}

// The same, as JSON.
Outcome object(bool allAreGranted, const Json& changed) {
  const Json granted{{"state", "granted"}};
  Json all{{"ok", allAreGranted},
           {"command", "permissions"},
           {"accessibility", granted},
           {"screenRecording", granted},
           {"automationOfSystemEvents", granted},
           {"automationOfFinder", granted}};
  all.update(changed);
  return {allAreGranted ? 0 : 1, all.dump(2) + "\n", ""};
}

const std::string settings = "System Settings > Privacy & Security > ";
const std::string recordingSetting =
    settings + "Screen & System Audio Recording (before macOS 15: Screen Recording)";

TEST(Permissions, AreALineEach) {
  OwnersDesktop world;
  EXPECT_EQ(lines(), (Outcome{0, allGranted, ""}));
  EXPECT_EQ(runHelper({"permissions", "--json"}), object(true, Json::object()));
}

TEST(Permissions, OneThatIsDeniedNamesItsSetting) {
  struct Row {
    std::function<void(simulator::Faults&)> deny;
    std::string name;
    std::string key;
    std::string setting;
  };
  const std::vector<Row> rows{
      {[](auto& faults) { faults.untrusted = true; }, "Accessibility", "accessibility",
       settings + "Accessibility"},
      {[](auto& faults) { faults.screen_recording_denied = true; }, "Screen Recording",
       "screenRecording", recordingSetting},
      {[](auto& faults) { faults.automation_denied = {"System Events"}; },
       "Automation of System Events", "automationOfSystemEvents", settings + "Automation"},
      {[](auto& faults) { faults.automation_denied = {"Finder"}; }, "Automation of the Finder",
       "automationOfFinder", settings + "Automation"}};
  for (const Row& row : rows) {
    OwnersDesktop world;
    row.deny(world.desktop.faults());
    EXPECT_EQ(lines(), grantedBut({row.name + ": denied; open " + row.setting}));
    EXPECT_EQ(runHelper({"permissions", "--json"}),
              object(false, {{row.key, {{"state", "denied"}, {"setting", row.setting}}}}));
  }
}

TEST(Permissions, AutomationIsUnknownUntilSomebodyWasAsked) {
  OwnersDesktop world;
  world.desktop.faults().automation_unasked = {"System Events", "Finder"};
  const std::string rest =
      ": unknown (nobody was asked); the first script makes macOS ask, later open " + settings +
      "Automation";
  EXPECT_EQ(lines(),
            grantedBut({"Automation of System Events" + rest, "Automation of the Finder" + rest}));
  const Json unasked{
      {"state", "unknown"}, {"reason", "nobody was asked"}, {"setting", settings + "Automation"}};
  EXPECT_EQ(
      runHelper({"permissions", "--json"}),
      object(false, {{"automationOfSystemEvents", unasked}, {"automationOfFinder", unasked}}));
}

// Whatever was granted or denied: the platform tells it of applications that run alone.
TEST(Permissions, AutomationOfWhatDoesNotRunIsUnknown) {
  for (const bool denied : {false, true}) {
    OwnersDesktop world;
    if (denied) world.desktop.faults().automation_denied = {"System Events", "Finder"};
    world.desktop.terminateProcess(260, false);
    world.desktop.terminateProcess(250, true);
    const std::string rest =
        " does not run); the first script makes macOS ask, later open " + settings + "Automation";
    EXPECT_EQ(lines(), grantedBut({"Automation of System Events: unknown (System Events" + rest,
                                   "Automation of the Finder: unknown (the Finder" + rest}));
    EXPECT_EQ(runHelper({"permissions", "--json"}),
              object(false, {{"automationOfSystemEvents",
                              {{"state", "unknown"},
                               {"reason", "System Events does not run"},
                               {"setting", settings + "Automation"}}},
                             {"automationOfFinder",
                              {{"state", "unknown"},
                               {"reason", "the Finder does not run"},
                               {"setting", settings + "Automation"}}}}));
  }
}

TEST(Permissions, AutomationIsUnknownWhenThePlatformDoesNotSay) {
  const std::vector<std::pair<simulator::FrameworkFaults, std::string>> rows{
      {{.descriptor_error = -108}, "error -108"}, {{.automation_error = -1701}, "error -1701"}};
  for (const auto& [faults, reason] : rows) {
    OwnersDesktop world;
    const FaultyFrameworks faulty(faults);
    const std::string rest = ": unknown (" + reason +
                             "); the first script makes macOS ask, later open " + settings +
                             "Automation";
    EXPECT_EQ(lines(), grantedBut({"Automation of System Events" + rest,
                                   "Automation of the Finder" + rest}));
  }
}

TEST(Permissions, AreReadAnewEachTime) {
  OwnersDesktop world;
  world.desktop.faults().untrusted = true;
  EXPECT_EQ(lines().exitStatus, 1);
  world.desktop.faults().untrusted = false;
  EXPECT_EQ(lines(), (Outcome{0, allGranted, ""}));
}

// The stand-ins end the program that lets the platform ask, and have no function that asks by
// itself. A request for an element, a script or a snapshot would make the platform ask, too.
TEST(Permissions, NobodyIsAskedForOneAndNothingElseIsDone) {
  const std::vector<std::function<void(simulator::Faults&)>> states{
      [](auto&) {},
      [](auto& faults) {
        faults.automation_unasked = {"System Events", "Finder"};
      },
      [](auto& faults) {
        faults.untrusted = true;
        faults.screen_recording_denied = true;
        faults.automation_denied = {"System Events", "Finder"};
      }};
  for (const auto& bringAbout : states) {
    for (const Words& call : {Words{"permissions"}, Words{"permissions", "--json"}}) {
      OwnersDesktop world;
      bringAbout(world.desktop.faults());
      const std::size_t before = world.desktop.record().lines().size();
      runHelper(call);
      Words questions;
      const auto& record = world.desktop.record().lines();
      for (std::size_t i = before; i < record.size(); ++i) {
        const auto* asked = std::get_if<simulator::WorkspaceRequest>(&record[i].entry);
        questions.push_back(asked == nullptr ? "something else" : asked->question);
      }
      EXPECT_EQ(questions, (Words{"trust", "screen capture", "automation of com.apple.systemevents",
                                  "automation of com.apple.finder"}));
      EXPECT_EQ(world.now(), 0);
    }
  }
}

}  // namespace
}  // namespace tessarine::test::permissions
