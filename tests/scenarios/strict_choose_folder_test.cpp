// choose-folder --strict-background as a whole, on panels of every kind.
#include "support/world.h"

namespace tessarine::test {
namespace {

TEST(StrictChooseFolder, FirstLight) {
  TemporaryFolder folder;
  const std::string target = folder.makeFolder("target");
  World world("english-service-window");
  const Outcome outcome = world.run({"choose-folder", "--pid", "812", "--path", target, "--strict-background"});
  EXPECT_EQ(outcome.errors, "");
  EXPECT_EQ(outcome.output, "");
  EXPECT_EQ(world.panelOutcomes(), "chosen " + target);
  for (auto& l : postedEvents(world.record())) puts(l.c_str());
}

}  // namespace
}  // namespace tessarine::test
