// choose-folder where it may use events, as a whole.
#include <gmock/gmock.h>

#include <filesystem>

#include "support/folder_world.h"
#include "support/transcript.h"

namespace tessarine::test {
namespace {

using ::testing::ElementsAre;

std::vector<std::string> choosing(const FolderWorld& world,
                                  const std::vector<std::string>& options = {}) {
  std::vector<std::string> arguments{"choose-folder", "--pid", "812", "--path", world.target};
  arguments.insert(arguments.end(), options.begin(), options.end());
  return arguments;
}

nlohmann::ordered_json resultStart(const std::string& path, const std::string& strategy) {
  const std::filesystem::path whole(path);
  const std::vector<std::string> components(++whole.begin(), whole.end());
  return {{"ok", true},
          {"command", "choose-folder"},
          {"path", path},
          {"volumeRoot", "/"},
          {"volumeDisplayName", "Macintosh HD"},
          {"components", components},
          {"searchQuery", components.back()},
          {"strategy", strategy}};
}

Outcome controlsResult(const std::string& path, const std::string& strategy) {
  auto result = resultStart(path, strategy);
  result["dialogPid"] = servicePid;
  result["dialogApp"] = "open-save-panel-service";
  return {0, result.dump(2) + "\n", ""};
}

TEST(ChooseFolderRoutes, WalksFromAPlaceInTheSidebar) {
  FolderWorld anchored("chinese-service-window",
                       {{"/places", {{{"label", "start"}, {"path", "~"}, {"urlKnown", true}}}}});
  EXPECT_EQ(anchored.world.run(choosing(anchored)), controlsResult(anchored.target, "hierarchy"));
  EXPECT_EQ(anchored.world.panelOutcomes(), "chosen " + anchored.target);
  const auto deeds = transcript(anchored.world.record());
  EXPECT_EQ(deeds.back(), "0.000 AXPress of AXButton in 900");
}

TEST(ChooseFolderRoutes, GoesThroughTheSheetWhereTheListsAreNotKnown) {
  FolderWorld world("english-service-window");
  EXPECT_EQ(world.world.run(choosing(world)), controlsResult(world.target, "go-to-folder-ax"));
  EXPECT_EQ(world.world.panelOutcomes(), "chosen " + world.target);
  EXPECT_EQ(world.world.record().sessionEvents(), 0U);
}

TEST(ChooseFolderRoutes, FailsBeforeAnythingWhenThereIsNoSuchFolder) {
  FolderWorld world("english-service-window");
  EXPECT_EQ(world.world.run({"choose-folder", "--pid", "812", "--path", world.start + "/./no/"}),
            (Outcome{1, "", "folder does not exist: " + world.start + "/no\n"}));
  EXPECT_EQ(world.world.record().accessibilityRequests(), 0U);
  EXPECT_THAT(postedEventKinds(world.world.record()), ElementsAre());
}

TEST(ChooseFolderRoutes, PressesReturnWhereThereIsNoChooseButton) {
  FolderWorld world("english-service-window", {{"/panels/0/faults/noConfirmButton", true}});
  EXPECT_EQ(world.world.run(choosing(world)), controlsResult(world.target, "go-to-folder-ax"));
  EXPECT_EQ(world.world.panelOutcomes(), "chosen " + world.target);
}

// The press of the button does nothing; four seconds later Return confirms.
TEST(ChooseFolderRoutes, PressesReturnOnceMoreWhenThePanelStays) {
  FolderWorld world("chinese-service-window",
                    {{"/places", {{{"label", "start"}, {"path", "~"}, {"urlKnown", true}}}},
                     {"/panels/0/faults/confirmDoesNothing", true}});
  EXPECT_EQ(world.world.run(choosing(world)), controlsResult(world.target, "hierarchy"));
  EXPECT_EQ(world.world.panelOutcomes(), "chosen " + world.target);
  EXPECT_GE(world.world.desktop().now(), 4.0);
}

TEST(ChooseFolderRoutes, FailsWithTheLastWaitWhenThereIsNoPanel) {
  for (const bool prefers : {false, true}) {
    World world("no-panel");
    std::vector<std::string> arguments{"choose-folder", "--pid",     "812", "--path",
                                       "/usr",          "--timeout", "0.5"};
    if (prefers) arguments.push_back("--prefer-background-panel");
    EXPECT_EQ(world.run(arguments), (Outcome{1, "", "timed out after 0.5s\n"}));
    EXPECT_THAT(postedEventKinds(world.record()), ElementsAre());
  }
}

}  // namespace
}  // namespace tessarine::test
