#include "cli/options.h"

#include <gtest/gtest.h>

#include <limits>
#include <sstream>

#include "cli/usage_text.h"
#include "support/world.h"

namespace tessarine::test {
namespace {

using Words = std::vector<std::string>;

// The message of the usage error with which reading the words fails.
std::string refusalOf(const Words& words) {
  try {
    parseArgs(words);
  } catch (const ToolError& error) {
    EXPECT_EQ(error.errorCase(), ToolError::Case::usage);
    return error.message();
  }
  ADD_FAILURE() << "accepted";
  return {};
}

TEST(Options, NameTheNineCommandsInOrder) {
  const Words names{"close",
                    "choose-folder",
                    "choose-path",
                    "click-point",
                    "type-text",
                    "press-key",
                    "list-windows",
                    "list-background-panels",
                    "inspect-open-dialog"};
  for (std::size_t i = 0; i < names.size(); ++i) {
    EXPECT_EQ(commandKind(names[i]), static_cast<CommandKind>(i)) << names[i];
  }
  EXPECT_EQ(static_cast<std::size_t>(CommandKind::inspectOpenDialog) + 1, names.size());
}

TEST(Options, MatchCommandsExactly) {
  for (const char* name : {"", "Close", "close ", "chooseFolder", "choose", "help", "--pid"}) {
    EXPECT_EQ(commandKind(name), std::nullopt) << name;
  }
}

TEST(Options, HaveDefaults) {
  const Options options = parseArgs({"close", "--pid", "812"});
  EXPECT_EQ(options.command, CommandKind::close);
  EXPECT_EQ(options.pid, 812);
  EXPECT_EQ(options.path, std::nullopt);
  EXPECT_EQ(options.x, std::nullopt);
  EXPECT_EQ(options.y, std::nullopt);
  EXPECT_EQ(options.text, std::nullopt);
  EXPECT_EQ(options.key, std::nullopt);
  EXPECT_EQ(options.timeoutSeconds, 10.0);
  EXPECT_FALSE(options.quiet);
  EXPECT_FALSE(options.preferBackgroundPanel);
  EXPECT_FALSE(options.strictBackground);
  EXPECT_FALSE(options.temporaryForeground);
  EXPECT_TRUE(options.excludedWindowIDs.empty());
  EXPECT_EQ(Options().pid, 0);
  EXPECT_EQ(Options().command, std::nullopt);
}

TEST(Options, AreAllAcceptedWithAnyCommand) {
  const Options options = parseArgs({"inspect-open-dialog",
                                     "--pid",
                                     "+12",
                                     "--path",
                                     "/tmp",
                                     "--timeout",
                                     "2.5",
                                     "--x",
                                     "-5.5",
                                     "--y",
                                     "1e3",
                                     "--text",
                                     "hello",
                                     "--key",
                                     "whatever",
                                     "--quiet",
                                     "--prefer-background-panel",
                                     "--strict-background",
                                     "--temporary-foreground",
                                     "--exclude-window-id",
                                     "77"});
  EXPECT_EQ(options.command, CommandKind::inspectOpenDialog);
  EXPECT_EQ(options.pid, 12);
  EXPECT_EQ(options.path, "/tmp");
  EXPECT_EQ(options.timeoutSeconds, 2.5);
  EXPECT_EQ(options.x, -5.5);
  EXPECT_EQ(options.y, 1000.0);
  EXPECT_EQ(options.text, "hello");
  EXPECT_EQ(options.key, "whatever");
  EXPECT_TRUE(options.quiet);
  EXPECT_TRUE(options.preferBackgroundPanel);
  EXPECT_TRUE(options.strictBackground);
  EXPECT_TRUE(options.temporaryForeground);
  EXPECT_EQ(options.excludedWindowIDs, (std::set<std::uint32_t>{77}));
}

TEST(Options, SetOneFlagEach) {
  const Options quiet = parseArgs({"close", "--pid", "1", "--quiet"});
  EXPECT_TRUE(quiet.quiet && !quiet.preferBackgroundPanel && !quiet.strictBackground &&
              !quiet.temporaryForeground);
  const Options prefer = parseArgs({"close", "--pid", "1", "--prefer-background-panel"});
  EXPECT_TRUE(!prefer.quiet && prefer.preferBackgroundPanel && !prefer.strictBackground &&
              !prefer.temporaryForeground);
  const Options strict = parseArgs({"close", "--pid", "1", "--strict-background"});
  EXPECT_TRUE(!strict.quiet && !strict.preferBackgroundPanel && strict.strictBackground &&
              !strict.temporaryForeground);
  const Options temporary = parseArgs({"close", "--pid", "1", "--temporary-foreground"});
  EXPECT_TRUE(!temporary.quiet && !temporary.preferBackgroundPanel && !temporary.strictBackground &&
              temporary.temporaryForeground);
}

TEST(Options, RequireACommand) {
  EXPECT_EQ(refusalOf({}), "missing command");
}

TEST(Options, AskForHelpAsTheFirstWord) {
  for (const char* word : {"help", "-h", "--help"}) {
    EXPECT_EQ(refusalOf({word}), "") << word;
    EXPECT_EQ(refusalOf({word, "--nonsense"}), "") << word;
  }
}

TEST(Options, AskForHelpAnywhereUnlessAnEarlierOptionFailed) {
  EXPECT_EQ(refusalOf({"close", "-h"}), "");
  EXPECT_EQ(refusalOf({"choose-folder", "--pid", "x", "--help", "--nonsense"}), "");
  EXPECT_EQ(refusalOf({"close", "--nonsense", "--help"}), "unknown arg: --nonsense");
  EXPECT_EQ(refusalOf({"close", "--exclude-window-id", "0", "-h"}),
            "--exclude-window-id requires a positive window ID");
  EXPECT_EQ(refusalOf({"close", "help"}), "unknown arg: help");
}

TEST(Options, RefuseUnknownCommands) {
  EXPECT_EQ(refusalOf({"open"}), "unknown command: open");
  EXPECT_EQ(refusalOf({"Close", "--help"}), "unknown command: Close");
  EXPECT_EQ(refusalOf({""}), "unknown command: ");
  EXPECT_EQ(refusalOf({"--pid", "12"}), "unknown command: --pid");
}

TEST(Options, RequireAPidBeforeAnythingElse) {
  for (const Words& words : std::vector<Words>{
           {"choose-folder"},
           {"click-point", "--quiet"},
           {"close", "--pid", "abc"},
           {"close", "--pid", ""},
           {"close", "--pid", "0"},
           {"close", "--pid", "-5"},
           {"close", "--pid", "2147483648"},
           {"close", "--pid", "12.0"},
           {"close", "--pid", "12", "--pid", "x"},
           {"press-key", "--pid", "abc"},
       }) {
    EXPECT_EQ(refusalOf(words), "--pid is required");
  }
}

TEST(Options, RequireAValue) {
  for (const std::string option :
       {"--pid", "--path", "--timeout", "--x", "--y", "--text", "--key", "--exclude-window-id"}) {
    EXPECT_EQ(refusalOf({"choose-path", "--pid", "12", option}), option + " requires a value");
    EXPECT_EQ(refusalOf({"close", option}), option + " requires a value");
  }
  EXPECT_EQ(refusalOf({"type-text", "--pid", "12", "--text"}), "--text requires a value");
}

TEST(Options, TakeTheNextWordAsTheValueWhateverItLooksLike) {
  const Options path = parseArgs({"choose-path", "--pid", "12", "--path", "--quiet"});
  EXPECT_EQ(path.path, "--quiet");
  EXPECT_FALSE(path.quiet);
  EXPECT_EQ(parseArgs({"type-text", "--pid", "12", "--text", "--help"}).text, "--help");
  EXPECT_EQ(parseArgs({"type-text", "--pid", "12", "--text", ""}).text, "");
  EXPECT_EQ(parseArgs({"choose-folder", "--pid", "12", "--path", ""}).path, "");
}

TEST(Options, RefuseWhatIsNoOption) {
  EXPECT_EQ(refusalOf({"close", "--pid", "12", "--verbose"}), "unknown arg: --verbose");
  EXPECT_EQ(refusalOf({"close", "--pid=12"}), "unknown arg: --pid=12");
  EXPECT_EQ(refusalOf({"close", "-p", "12"}), "unknown arg: -p");
  EXPECT_EQ(refusalOf({"close", "--pid", "12", "more"}), "unknown arg: more");
  EXPECT_EQ(refusalOf({"close", ""}), "unknown arg: ");
  EXPECT_EQ(refusalOf({"close", "--Pid", "12"}), "unknown arg: --Pid");
}

TEST(Options, OverwriteEarlierValues) {
  const Options options =
      parseArgs({"choose-path", "--pid", "abc", "--path", "/a", "--pid", "12", "--path", "/b"});
  EXPECT_EQ(options.pid, 12);
  EXPECT_EQ(options.path, "/b");
}

TEST(Options, FallBackToTheDefaultTimeoutWhenItCannotBeRead) {
  const auto timeout = [](const Words& values) {
    Words words{"choose-folder", "--pid", "12", "--path", "/tmp"};
    for (const std::string& value : values) words.insert(words.end(), {"--timeout", value});
    return parseArgs(words).timeoutSeconds;
  };
  EXPECT_EQ(timeout({"soon"}), 10.0);
  EXPECT_EQ(timeout({""}), 10.0);
  EXPECT_EQ(timeout({"30", "soon"}), 10.0);
  EXPECT_EQ(timeout({"5s"}), 10.0);
  EXPECT_EQ(timeout({"0"}), 0.0);
  EXPECT_EQ(timeout({"-20"}), -20.0);
  EXPECT_EQ(timeout({"inf"}), std::numeric_limits<double>::infinity());
}

TEST(Options, ForgetACoordinateWhenALaterOneCannotBeRead) {
  const Options options = parseArgs({"list-windows", "--pid", "12", "--x", "5", "--y", "-0.5",
                                     "--x", "nope", "--key", "whatever"});
  EXPECT_EQ(options.x, std::nullopt);
  EXPECT_EQ(options.y, -0.5);
}

TEST(Options, CollectExcludedWindows) {
  const Options options =
      parseArgs({"close", "--pid", "1", "--exclude-window-id", "+7", "--exclude-window-id",
                 "4294967295", "--exclude-window-id", "7"});
  EXPECT_EQ(options.excludedWindowIDs, (std::set<std::uint32_t>{7, 4294967295U}));
}

TEST(Options, RefuseExcludedWindowsThatAreNoWindowNumbers) {
  for (const char* value : {"0", "4294967296", "", "-1", "-0", "abc", "7.0", " 7"}) {
    EXPECT_EQ(refusalOf({"close", "--pid", "12", "--exclude-window-id", value}),
              "--exclude-window-id requires a positive window ID")
        << value;
  }
}

TEST(Options, RequireWhatTheCommandNeeds) {
  const std::string path = "--path is required for choose-folder/choose-path";
  const std::string point = "--x and --y are required for click-point";
  EXPECT_EQ(refusalOf({"choose-folder", "--pid", "12"}), path);
  EXPECT_EQ(refusalOf({"choose-path", "--pid", "12", "--text", "a"}), path);
  EXPECT_EQ(refusalOf({"click-point", "--pid", "12"}), point);
  EXPECT_EQ(refusalOf({"click-point", "--pid", "12", "--x", "5"}), point);
  EXPECT_EQ(refusalOf({"click-point", "--pid", "12", "--x", "5", "--y", "nope"}), point);
  EXPECT_EQ(refusalOf({"click-point", "--pid", "12", "--x", "", "--y", "5"}), point);
  EXPECT_EQ(refusalOf({"type-text", "--pid", "12"}), "--text is required for type-text");
  EXPECT_EQ(refusalOf({"press-key", "--pid", "12"}), "--key is required for press-key");
}

TEST(Options, RequireNothingButAPidOfTheOtherCommands) {
  for (const std::string command :
       {"close", "list-windows", "list-background-panels", "inspect-open-dialog"}) {
    EXPECT_EQ(parseArgs({command, "--pid", "1"}).command, commandKind(command));
  }
}

TEST(Options, PrintTheUsage) {
  std::ostringstream output;
  printUsage(output);
  EXPECT_EQ(output.str(), usageText);
}

}  // namespace
}  // namespace tessarine::test
