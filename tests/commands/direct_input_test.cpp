#include "commands/direct_input.h"

#include <gmock/gmock.h>

#include <nlohmann/json.hpp>

#include "support/world.h"

namespace tessarine::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(ClickPoint, ClicksOnceAndEchoesThePoint) {
  BareDesktop bare;
  EXPECT_EQ(clickPoint(812, 3205, 987).dump(),
            R"({"ok":true,"command":"click-point","point":{"x":3205.0,"y":987.0}})");
  EXPECT_THAT(
      postedEvents(bare.desktop.record()),
      ElementsAre("0.000 mouse down 1 (3205, 987) -> 812", "0.050 mouse up 1 (3205, 987) -> 812"));
  EXPECT_NEAR(bare.now(), 0.05, 1e-9);
}

TEST(ClickPoint, PostsNegativeAndFractionalCoordinatesAsGiven) {
  BareDesktop bare;
  EXPECT_EQ(clickPoint(812, -1200.25, -0.5).at("point").dump(), R"({"x":-1200.25,"y":-0.5})");
  EXPECT_THAT(
      postedEventKinds(bare.desktop.record()),
      ElementsAre("mouse down 1 (-1200.25, -0.5) -> 812", "mouse up 1 (-1200.25, -0.5) -> 812"));
}

TEST(TypeText, TypesIntoTheProcessAndCountsCharacters) {
  BareDesktop bare;
  EXPECT_EQ(typeTextCommand(812, "a打").dump(),
            R"({"ok":true,"command":"type-text","textLength":2})");
  EXPECT_THAT(postedEvents(bare.desktop.record()),
              ElementsAre("0.000 key 0 text=a down -> 812", "0.020 key 0 text=a up -> 812",
                          "0.040 key 0 text=打 down -> 812", "0.060 key 0 text=打 up -> 812"));
  EXPECT_NEAR(bare.now(), 0.08, 1e-9);
}

TEST(TypeText, PostsNothingForAnEmptyText) {
  BareDesktop bare;
  EXPECT_EQ(typeTextCommand(812, "").dump(), R"({"ok":true,"command":"type-text","textLength":0})");
  EXPECT_TRUE(bare.desktop.record().lines().empty());
  EXPECT_EQ(bare.now(), 0.0);
}

TEST(TypeText, CountsAnEmojiOfSeveralScalarsOnce) {
  BareDesktop bare;
  EXPECT_EQ(typeTextCommand(812, "👩‍🚀").at("textLength"), 1);
  EXPECT_EQ(bare.desktop.record().keyEvents(), 6U) << "a pair for each of the three scalars";
  EXPECT_EQ(typeTextCommand(812, "e\u0301\r\n").at("textLength"), 2);
}

struct NamedKey {
  std::string names[2];
  std::string event;
  double pauseSeconds;
};

TEST(PressKey, KnowsEachKeyByTwoNames) {
  for (const auto& [names, event, pauseSeconds] : std::initializer_list<NamedKey>{
           {{"return", "enter"}, "key 36", 0.1},
           {{"delete", "backspace"}, "key 51", 0.1},
           {{"escape", "esc"}, "key 53", 0.1},
           {{"cmd-a", "command-a"}, "key 0+100000", 0.1},
           {{"cmd-shift-g", "command-shift-g"}, "key 5+120000", 0.15},
       }) {
    for (const std::string& name : names) {
      BareDesktop bare;
      EXPECT_EQ(pressKeyCommand(812, name).dump(),
                R"({"ok":true,"command":"press-key","key":")" + name + "\"}");
      EXPECT_THAT(postedEvents(bare.desktop.record()),
                  ElementsAre("0.000 " + event + " down -> 812", "0.020 " + event + " up -> 812"));
      EXPECT_NEAR(bare.now(), 0.02 + pauseSeconds, 1e-9) << name;
    }
  }
}

TEST(PressKey, RefusesAnyOtherNameAsAUsageError) {
  BareDesktop bare;
  for (const std::string name : {"Return", "", " return", "cmd-A", "cmd+a", "tab", "回车"}) {
    try {
      pressKeyCommand(812, name);
      ADD_FAILURE() << "accepted " << name;
    } catch (const ToolError& error) {
      EXPECT_EQ(error.errorCase(), ToolError::Case::usage);
      EXPECT_EQ(error.message(), "unsupported --key: " + name);
    }
  }
  EXPECT_THAT(postedEvents(bare.desktop.record()), IsEmpty());
  EXPECT_EQ(bare.now(), 0.0);
}

TEST(PressKey, ExitsWithTheStatusOfABadCommandLineForAnUnknownName) {
  World world("no-panel");
  const Outcome outcome = world.run({"press-key", "--pid", "812", "--key", "Return"});
  EXPECT_EQ(outcome.exitStatus, 2);
  EXPECT_EQ(outcome.errors, "unsupported --key: Return\n");
  EXPECT_THAT(outcome.output, testing::StartsWith("tessarine — operate macOS Open panels"));
}

TEST(DirectInput, SucceedsForAProcessThatDoesNotExist) {
  BareDesktop bare;
  EXPECT_EQ(clickPoint(4711, 1, 2).at("ok"), true);
  EXPECT_EQ(typeTextCommand(4711, "a").at("ok"), true);
  EXPECT_EQ(pressKeyCommand(4711, "esc").at("ok"), true);
  EXPECT_EQ(bare.desktop.record().accessibilityRequests(), 0U);
}

}  // namespace
}  // namespace tessarine::test
