// `background-window-capture permissions` as a process, on desktops of another process.
#include <gtest/gtest.h>

#include <fstream>
#include <nlohmann/json.hpp>
#include <sstream>

#include "end_to_end/program_run.h"
#include "support/temporary_folder.h"

namespace tessarine::test::permissions {
namespace {

using nlohmann::ordered_json;

std::string helperPath() {
  const std::string desktop = desktopPath();
  return desktop.substr(0, desktop.rfind('/')) + "/desktop-programs/background-window-capture";
}

ProgramRun permissionsOn(const ordered_json& scenario,
                         const std::vector<std::string>& arguments = {}) {
  const TemporaryFolder folder;
  std::vector<std::string> words{
      desktopPath(), "run",        folder.makeFile("desktop.json", scenario.dump()),
      "--",          helperPath(), "permissions"};
  words.insert(words.end(), arguments.begin(), arguments.end());
  return runProgram(words);
}

// What is on that desktop besides the faults: an application of each name.
ordered_json withApplications(const ordered_json& faults) {
  const auto application = [](int pid, const char* name) {
    return ordered_json{{"pid", pid}, {"name", name}};
  };
  return {{"processes",
           {application(300, "Terminal"), application(812, "Google Chrome"),
            application(250, "Finder"), application(260, "System Events")}},
          {"faults", faults}};
}

// The states in the order in which they are printed.
std::vector<std::string> states(const ProgramRun& run) {
  std::vector<std::string> found;
  const ordered_json object = ordered_json::parse(run.output);
  for (const char* key :
       {"accessibility", "screenRecording", "automationOfSystemEvents", "automationOfFinder"}) {
    found.push_back(object.at(key).at("state"));
  }
  return found;
}

TEST(PermissionsOnADesktop, AreAllGrantedWhereNothingIsMissing) {
  const ProgramRun run = permissionsOn(withApplications(ordered_json::object()));
  EXPECT_EQ(run.exitStatus, 0) << run.errors;
  EXPECT_EQ(run.output,
            "Accessibility: granted\nScreen Recording: granted\n"
            "Automation of System Events: granted\nAutomation of the Finder: granted\n");
}

TEST(PermissionsOnADesktop, AreWhatTheFaultsLeave) {
  using States = std::vector<std::string>;
  const std::vector<std::pair<ordered_json, States>> rows{
      {{{"untrusted", true}}, {"denied", "granted", "granted", "granted"}},
      {{{"screenRecordingDenied", true}}, {"granted", "denied", "granted", "granted"}},
      {{{"automationDenied", {"System Events"}}}, {"granted", "granted", "denied", "granted"}},
      {{{"automationDenied", {"Finder"}}}, {"granted", "granted", "granted", "denied"}},
      {{{"automationUnasked", {"System Events"}}}, {"granted", "granted", "unknown", "granted"}},
      {{{"automationUnasked", {"Finder"}}}, {"granted", "granted", "granted", "unknown"}}};
  for (const auto& [faults, expected] : rows) {
    const ProgramRun run = permissionsOn(withApplications(faults), {"--json"});
    EXPECT_EQ(run.exitStatus, 1) << faults;
    EXPECT_EQ(states(run), expected) << faults;
  }
}

TEST(PermissionsOnADesktop, NothingIsGrantedWithoutADesktop) {
  const ProgramRun run = runProgram({helperPath(), "permissions", "--json"});
  EXPECT_EQ(run.exitStatus, 1);
  EXPECT_EQ(run.errors, "");
  EXPECT_EQ(states(run), (std::vector<std::string>{"denied", "denied", "unknown", "unknown"}));
}

TEST(PermissionsOnADesktop, AMistakeIsOneLine) {
  EXPECT_EQ(runProgram({helperPath(), "permissions", "--jason"}),
            (ProgramRun{2, "", "background-window-capture: unexpected argument: --jason\n"}));
}

// --- The pages show what the program prints. ---

std::string page(const std::string& name) {
  std::ostringstream text;
  text << std::ifstream(SOURCE_TREE "/docs/" + name).rdbuf();
  return text.str();
}

// The rest of the block of code, from behind this text on.
std::string shownBehind(const std::string& text, const std::string& start) {
  const auto begin = text.find(start) + start.size();
  return text.substr(begin, text.find("\n```", begin) + 1 - begin);
}

TEST(PermissionsOnADesktop, AreShownOnTheirPage) {
  const ordered_json scenario{
      {"faults", {{"screenRecordingDenied", true}, {"automationUnasked", {"Finder"}}}}};
  const std::string text = page("permissions.md");
  EXPECT_EQ(permissionsOn(scenario).output,
            shownBehind(text, "$ background-window-capture permissions\n"));
  EXPECT_EQ("{\n" + shownBehind(text, "\n```\n{\n"), permissionsOn(scenario, {"--json"}).output);
}

TEST(PermissionsOnADesktop, AreShownOnThePageOfTheScenarios) {
  const std::string call = R"('"$ZORVILET_BIN"/background-window-capture permissions')";
  const ProgramRun run = runProgram({desktopPath(), "run", "english-service-window", "--", "sh",
                                     "-c", call.substr(1, call.size() - 2)});
  EXPECT_EQ(run.exitStatus, 1) << run.errors;
  EXPECT_EQ(run.output, shownBehind(page("scenarios.md"), call + "\n"));
}

}  // namespace
}  // namespace tessarine::test::permissions
