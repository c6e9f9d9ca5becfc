// The flag --verify: accepted with every command, used by two.
#include <gmock/gmock.h>

#include <sstream>

#include "cli/dispatch.h"
#include "cli/options.h"
#include "cli/trace.h"
#include "cli/usage_text.h"
#include "support/world.h"

namespace tessarine::test::verify_option {
namespace {

using Words = std::vector<std::string>;
using ::testing::HasSubstr;
using ::testing::Not;

Words with(Words words, const Words& more) {
  words.insert(words.end(), more.begin(), more.end());
  return words;
}

// A call of each command that parses.
const std::vector<Words> everyCommand{
    {"close"},
    {"choose-folder", "--path", "/usr"},
    {"choose-path", "--path", "/usr"},
    {"click-point", "--x", "1", "--y", "2"},
    {"type-text", "--text", "a"},
    {"press-key", "--key", "esc"},
    {"list-windows"},
    {"list-background-panels"},
    {"inspect-open-dialog"},
};

TEST(VerifyOption, IsOffUnlessGiven) {
  EXPECT_FALSE(Options().verify);
  for (const Words& words : everyCommand) {
    EXPECT_FALSE(parseArgs(with(words, {"--pid", "812"})).verify) << words.front();
  }
}

TEST(VerifyOption, IsAcceptedWithEveryCommand) {
  for (const Words& words : everyCommand) {
    const Options options = parseArgs(with(words, {"--verify", "--pid", "812"}));
    EXPECT_TRUE(options.verify) << words.front();
    EXPECT_EQ(options.pid, 812);
  }
}

TEST(VerifyOption, IsAFlagOfItsOwn) {
  const Options options = parseArgs({"close", "--pid", "1", "--verify"});
  EXPECT_FALSE(options.quiet || options.preferBackgroundPanel || options.strictBackground ||
               options.temporaryForeground);
  EXPECT_FALSE(parseArgs({"close", "--pid", "1", "--strict-background"}).verify);
}

TEST(VerifyOption, TakesNoValueAndIsMatchedExactly) {
  for (const Words& words :
       {Words{"close", "--pid", "1", "--verify", "true"}, Words{"close", "--pid", "1", "--Verify"},
        Words{"close", "--pid", "1", "--verify=1"}}) {
    EXPECT_THAT(messageOf([&] { parseArgs(words); }), HasSubstr("unknown arg: "));
  }
}

TEST(VerifyOption, IsAValueWhereOneIsExpected) {
  const Options options = parseArgs({"choose-folder", "--pid", "1", "--path", "--verify"});
  EXPECT_EQ(options.path, "--verify");
  EXPECT_FALSE(options.verify);
}

TEST(VerifyOption, IsNotInTheUsageText) {
  std::ostringstream output;
  printUsage(output);
  EXPECT_THAT(output.str(), Not(HasSubstr("verify")));
}

TEST(VerifyOption, ChangesNothingOfTheOtherCommands) {
  for (const Words& words : everyCommand) {
    if (words.front().starts_with("choose-")) continue;
    const Words call = with(words, {"--pid", "812"});
    EXPECT_TRUE(traceOf("english-host-window", call) ==
                traceOf("english-host-window", with(call, {"--verify"})))
        << words.front();
  }
}

// Whatever the other flags say.
TEST(VerifyOption, MakesBothCommandsVerify) {
  for (const Words& more : {Words{}, Words{"--strict-background"}, Words{"--temporary-foreground"},
                            Words{"--prefer-background-panel"}, Words{"--quiet"},
                            Words{"--temporary-foreground", "--prefer-background-panel"}}) {
    for (const char* command : {"choose-folder", "choose-path"}) {
      TemporaryFolder folder;
      folder.makeFolder("target/inner");
      const std::string target = folder.path() + "/target";
      World world("chromium-english");
      const Result result =
          run(parseArgs(with({command, "--pid", "812", "--path", target, "--verify"}, more)));
      EXPECT_EQ(result.at("strategy"), "verified") << command;
      EXPECT_EQ(result.at("command"), command);
      EXPECT_EQ(world.panelOutcomes(), "chosen " + target);
      EXPECT_EQ(world.record().mouseEvents() + world.record().sessionEvents(), 0U);
    }
  }
}

TEST(VerifyOption, RunsNoOtherStrategyWhenItFails) {
  World world("unseen-folders");
  const Outcome outcome = world.run({"choose-folder", "--pid", "812", "--path", "/usr", "--verify",
                                     "--timeout", "1", "--prefer-background-panel"});
  EXPECT_EQ(outcome.exitStatus, 1);
  EXPECT_THAT(outcome.errors, ::testing::StartsWith("not verified: "));
  EXPECT_EQ(world.record().mouseEvents() + world.record().keyEvents(), 0U);
}

}  // namespace
}  // namespace tessarine::test::verify_option
