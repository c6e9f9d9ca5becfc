#include <gmock/gmock.h>

#include "navigation/go_to_folder.h"
#include "support/transcript.h"
#include "support/world.h"

namespace tessarine::test {
namespace {

namespace ax = simulator::ax;
using simulator::Value;
using ::testing::ElementsAre;

// A browser that is frontmost if a test says so, and a go-to field that takes what is written.
struct Sheet {
  BareDesktop world;

  void addField() {
    simulator::Element& field = world.app().addChild("AXTextField");
    field.setFrame({0, 0, 300, 24});
    field.set("AXValue", std::string());
    field.makeSettable("AXFocused", [](const Value&) { return ax::success; });
    field.makeSettable("AXValue", [&field](const Value& value) {
      field.set("AXValue", value);
      return ax::success;
    });
    field.addAction("AXConfirm", [] { return ax::success; });
  }
  void addFieldAt(double seconds) {
    world.desktop.schedule(seconds, [this] { addField(); });
  }
  void go(std::optional<std::int32_t> owner = browserPid) {
    navigateByGoToFolderAX(world.appHandle(), servicePid, owner, "/usr/lib");
  }
  std::string failure(std::optional<std::int32_t> owner = browserPid) {
    return messageOf([&] { go(owner); });
  }
  std::vector<std::string> events() const { return postedEventKinds(world.desktop.record()); }
};

TEST(NavigateByGoToFolderKeys, TypesThePathBetweenTheChordAndReturn) {
  BareDesktop world;
  navigateByGoToFolder(servicePid, "/é");
  EXPECT_THAT(transcript(world.desktop.record()),
              ElementsAre("0.000 key 5+120000 down -> 900", "0.020 key 5+120000 up -> 900",
                          "0.350 key 0+100000 down -> 900", "0.020 key 0+100000 up -> 900",
                          "0.050 key 51 down -> 900", "0.020 key 51 up -> 900",
                          "0.050 key 0 text=/ down -> 900", "0.020 key 0 text=/ up -> 900",
                          "0.020 key 0 text=é down -> 900", "0.020 key 0 text=é up -> 900",
                          "0.020 key 36 down -> 900", "0.020 key 36 up -> 900"));
  // Six keys of 0.02 s and the pauses after each.
  EXPECT_NEAR(world.now(), 0.12 + (0.15 + 0.2) + 0.05 + 0.05 + 2 * 0.02 + 0.25, 1e-9);
}

TEST(NavigateByGoToFolderAX, ConfirmsTheFieldAndPressesReturnOnceMore) {
  Sheet sheet;
  sheet.addField();
  sheet.go();
  EXPECT_THAT(transcript(sheet.world.desktop.record()),
              ElementsAre("0.000 key 5+120000 down -> 900", "0.020 key 5+120000 up -> 900",
                          "0.400 set AXFocused of AXTextField in 812",
                          "0.000 set AXValue of AXTextField in 812: /usr/lib",
                          "0.120 AXConfirm of AXTextField in 812", "0.200 key 36 down -> 900",
                          "0.020 key 36 up -> 900"));
}

TEST(NavigateByGoToFolderAX, PostsNothingToTheSessionWhileAnotherApplicationIsFrontmost) {
  Sheet sheet;
  sheet.world.desktop.addProcess({.pid = terminalPid,
                                  .name = "Terminal",
                                  .command = "Terminal",
                                  .application = true,
                                  .host = {}});
  sheet.world.desktop.setFrontmost(terminalPid);
  EXPECT_EQ(sheet.failure(), "timed out after 1.5s");
  EXPECT_THAT(sheet.events(), ElementsAre("key 5+120000 down -> 900", "key 5+120000 up -> 900"));
}

TEST(NavigateByGoToFolderAX, PostsNothingToTheSessionWithoutAnOwner) {
  Sheet sheet;
  sheet.world.desktop.setFrontmost(browserPid);
  EXPECT_EQ(sheet.failure(std::nullopt), "timed out after 1.5s");
  EXPECT_EQ(sheet.world.desktop.record().sessionEvents(), 0U);
}

TEST(NavigateByGoToFolderAX, PostsNothingToTheSessionWhenNeitherOwnerNorFrontmostIsKnown) {
  Sheet sheet;
  sheet.world.desktop.setFrontmost(std::nullopt);
  EXPECT_EQ(sheet.failure(std::nullopt), "timed out after 1.5s");
  EXPECT_EQ(sheet.world.desktop.record().sessionEvents(), 0U);
}

// The first look lasts from 0.42 s to about 1.92 s, the second from 2.2 s to about 4.7 s.
TEST(NavigateByGoToFolderAX, PressesTheChordThroughTheSessionWhileTheOwnerIsFrontmost) {
  Sheet sheet;
  sheet.world.desktop.setFrontmost(browserPid);
  sheet.addFieldAt(4.4);
  sheet.go();
  EXPECT_THAT(sheet.events(),
              ElementsAre("key 5+120000 down -> 900", "key 5+120000 up -> 900",
                          "key 5+120000 down -> session", "key 5+120000 up -> session",
                          "key 36 down -> 900", "key 36 up -> 900"));
}

TEST(NavigateByGoToFolderAX, LooksForTheFieldAgainAQuarterOfASecondAfterTheSecondChord) {
  Sheet sheet;
  sheet.world.desktop.setFrontmost(browserPid);
  sheet.addFieldAt(1.98);
  sheet.go();
  const auto deeds = transcript(sheet.world.desktop.record());
  ASSERT_GE(deeds.size(), 5U);
  EXPECT_EQ(deeds[3], "0.020 key 5+120000 up -> session");
  EXPECT_EQ(deeds[4], "0.250 set AXFocused of AXTextField in 812");
}

TEST(NavigateByGoToFolderAX, FailsWithTheErrorOfTheSecondAttempt) {
  Sheet sheet;
  sheet.world.desktop.setFrontmost(browserPid);
  EXPECT_EQ(sheet.failure(), "timed out after 2.5s");
  EXPECT_EQ(sheet.world.desktop.record().sessionEvents(), 2U);
}

}  // namespace
}  // namespace tessarine::test
