// The whole program, from its arguments to its exit status and both streams.
#include "cli/entry.h"

#include <gmock/gmock.h>

#include <nlohmann/json.hpp>
#include <sstream>

#include "cli/usage_text.h"
#include "core/result.h"
#include "core/tables.h"
#include "support/world.h"

namespace tessarine::test {
namespace {

Outcome failedWith(const std::string& message) {
  return {1, "", message + "\n"};
}

Outcome refusedWith(const std::string& message) {
  return {2, usageText, message + "\n"};
}

TEST(Entry, PrintsTheResultWithItsKeysInOrder) {
  World world("no-panel");
  EXPECT_EQ(world.run({"click-point", "--pid", "812", "--x", "3205", "--y", "-0.5"}),
            (Outcome{0,
                     "{\n"
                     "  \"ok\": true,\n"
                     "  \"command\": \"click-point\",\n"
                     "  \"point\": {\n"
                     "    \"x\": 3205.0,\n"
                     "    \"y\": -0.5\n"
                     "  }\n"
                     "}\n",
                     ""}));
}

// What a command line said and did on a desktop of its own.
std::pair<Outcome, std::string> runAlone(const std::vector<std::string>& words) {
  World world("english-host-window");
  const Outcome outcome = world.run(words);
  return {outcome, world.record().toText()};
}

TEST(Entry, ChangesNothingWithQuiet) {
  for (const std::vector<std::string>& more : {std::vector<std::string>{"list-windows"},
                                               {"list-background-panels"},
                                               {"inspect-open-dialog"},
                                               {"close"},
                                               {"choose-folder", "--path", "/usr"},
                                               {"choose-path", "--path", "/usr"},
                                               {"click-point", "--x", "1", "--y", "2"},
                                               {"type-text", "--text", "a"},
                                               {"press-key", "--key", "escape"}}) {
    std::vector<std::string> words = more;
    words.insert(words.end(), {"--pid", "812"});
    const auto loud = runAlone(words);
    EXPECT_EQ(loud.first.exitStatus, 0) << more.front();
    words.push_back("--quiet");
    EXPECT_EQ(runAlone(words), loud) << more.front();
  }
}

TEST(Entry, PrintsTheUsageForHelp) {
  World world("no-panel");
  for (const char* word : {"help", "-h", "--help"}) {
    EXPECT_EQ(world.run({word}), (Outcome{0, usageText, ""}));
  }
  EXPECT_EQ(world.run({"choose-folder", "--pid", "12", "--help"}), (Outcome{0, usageText, ""}));
}

TEST(Entry, PrintsTheUsageAndTheMessageForABadCommandLine) {
  World world("no-panel");
  const std::string before = world.record().toText();
  EXPECT_EQ(world.run({}), refusedWith("missing command"));
  EXPECT_EQ(world.run({"frobnicate"}), refusedWith("unknown command: frobnicate"));
  EXPECT_EQ(world.run({"choose-folder"}), refusedWith("--pid is required"));
  EXPECT_EQ(world.run({"close", "--pid", "12", "--verbose"}),
            refusedWith("unknown arg: --verbose"));
  EXPECT_EQ(world.record().toText(), before);
}

TEST(Entry, ReportsAUsageErrorOfACommandInTheSameWay) {
  World world("no-panel");
  EXPECT_EQ(world.run({"press-key", "--pid", "812", "--key", "f1"}),
            refusedWith("unsupported --key: f1"));
}

TEST(Entry, TakesNoArgumentsAtAllForAMissingCommand) {
  World world("no-panel");
  std::ostringstream output;
  std::ostringstream errors;
  EXPECT_EQ(runTool({}, output, errors), ExitStatus::badCommandLine);
  EXPECT_EQ(output.str(), usageText);
  EXPECT_EQ(errors.str(), "missing command\n");
}

TEST(Entry, PrintsTheMessageAloneWhenACommandFails) {
  TemporaryFolder folder;
  World world("no-panel");
  const std::string missing = folder.path() + "/missing";
  EXPECT_EQ(world.run({"choose-folder", "--pid", "812", "--path", missing}),
            failedWith("folder does not exist: " + missing));
}

// The coordinate is accepted and the click is made; only the answer cannot be written.
TEST(Entry, FailsWhenTheResultCannotBeWritten) {
  World world("no-panel");
  EXPECT_EQ(world.run({"click-point", "--pid", "812", "--x", "nan", "--y", "1"}),
            failedWith("the number nan at /point/x cannot be written as JSON"));
  EXPECT_EQ(world.record().mouseEvents(), 2U);
  EXPECT_EQ(world.run({"click-point", "--pid", "812", "--x", "0", "--y", "-inf"}),
            failedWith("the number -inf at /point/y cannot be written as JSON"));
}

// Without a go-to sheet the typed path is lost and the panel confirms what it shows; the result
// names the path all the same.
TEST(Entry, FailsWhenThePathOfTheResultIsNotUtf8) {
  TemporaryFolder folder;
  const std::string target = folder.makeFolder("caf\xE9");
  World world("english-service-window", {{"/panels/0/goTo", {{"neverOpens", true}}}});
  EXPECT_EQ(
      world.run({"choose-folder", "--pid", "812", "--path", target, "--prefer-background-panel"}),
      failedWith("the text at /path is not UTF-8 and cannot be written as JSON"));
  EXPECT_THAT(world.panelOutcomes(), testing::StartsWith("chosen "));
}

TEST(Entry, StartsEveryRunWithFreshTables) {
  World world("no-panel");
  tables().openDialogTitles.clear();
  tables().localizedDisplayNameCache["/"] = "stale";
  tables().excludedPanelWindowIDs = {1};
  world.run({"help"});
  EXPECT_EQ(tables().openDialogTitles.size(), 2U);
  EXPECT_TRUE(tables().localizedDisplayNameCache.empty());
  EXPECT_TRUE(tables().excludedPanelWindowIDs.empty());
}

TEST(Entry, HandsTheExcludedWindowsToThePanelCapture) {
  World world("english-host-window");
  world.run({"list-background-panels", "--pid", "812", "--exclude-window-id", "7",
             "--exclude-window-id", "4294967295"});
  EXPECT_EQ(tables().excludedPanelWindowIDs, (std::set<std::uint32_t>{7, 4294967295U}));
  world.run({"close", "--pid", "12", "--exclude-window-id", "9", "--nonsense"});
  EXPECT_TRUE(tables().excludedPanelWindowIDs.empty()) << "of a command line that was refused";
}

TEST(Entry, ListsTheWindowsThatTheSameCommandLineDoesNotExclude) {
  World world("english-service-window");
  const auto listedWithout = [&](const std::string& number) {
    const Outcome outcome =
        world.run({"list-background-panels", "--pid", "812", "--exclude-window-id", number});
    return Result::parse(outcome.output)["windows"];
  };
  const Result both = listedWithout("4294967295");
  ASSERT_EQ(both.size(), 2U);
  EXPECT_EQ(listedWithout(both[0]["windowID"].dump()), Result::array({both[1]}));
}

// --- The watchdog. Its expiry leaves the account of platform objects to the exiting process. ---

struct Hang {
  World::Patches faults;
  std::vector<std::string> arguments;
  std::string seconds;
};

void PrintTo(const Hang& hang, std::ostream* stream) {
  for (const std::string& argument : hang.arguments) *stream << argument << ' ';
}

class WatchdogExpiry : public testing::TestWithParam<Hang> {};

TEST_P(WatchdogExpiry, EndsACommandThatHangs) {
  World world("english-service-window", GetParam().faults);
  EXPECT_EQ(world.run(GetParam().arguments),
            failedWith("timed out after " + GetParam().seconds + "s (global watchdog)"));
  EXPECT_NEAR(world.desktop().now(), std::stod(GetParam().seconds), 1e-6);
}

const World::Patches silentBrowser{{"/requestTimeoutSeconds", 3600},
                                   {"/faults", {{"silentProcesses", {browserPid}}}}};
const World::Patches hangingHelper{{"/faults", {{"captureHelperHangs", true}}}};
const World::Patches hangingScript{{"/faults", {{"scriptHangs", true}}}};

INSTANTIATE_TEST_SUITE_P(
    Entry, WatchdogExpiry,
    testing::Values(
        Hang{silentBrowser, {"list-windows", "--pid", "812"}, "18.0"},
        Hang{silentBrowser, {"list-windows", "--pid", "812", "--timeout", "0"}, "12.0"},
        Hang{silentBrowser, {"list-windows", "--pid", "812", "--timeout", "30"}, "38.0"},
        Hang{silentBrowser, {"list-windows", "--pid", "812", "--timeout", "-20"}, "12.0"},
        Hang{silentBrowser, {"list-windows", "--pid", "812", "--timeout", "4.25"}, "12.25"},
        Hang{hangingHelper, {"list-background-panels", "--pid", "812"}, "18.0"},
        Hang{hangingScript, {"close", "--pid", "812", "--temporary-foreground"}, "18.0"}));

}  // namespace
}  // namespace tessarine::test
