// Choosing and cancelling, by buttons, keys and clicks.
#include "live/by_hand.h"
#include "platform/processes.h"

namespace tessarine::test {
namespace {

TEST_F(Live, TheConfirmButtonChoosesTheFolderShown) {
  show({});
  tryAction("AXPress", byIdentifier(panel(), "OKButton"));
  EXPECT_EQ(end(), "chosen " + folder().path());
}

TEST_F(Live, ASelectedFolderIsChosenInsteadOfTheFolderShown) {
  const std::string inner = folder().makeFolder("inner");
  show({});
  selectName(panel(), "inner");
  tryAction("AXPress", byIdentifier(panel(), "OKButton"));
  EXPECT_EQ(end(), "chosen " + inner);
}

TEST_F(Live, ThePanelServiceEndsWithItsLastPanel) {
  show({});
  const auto service = stage().service();
  if (!service) GTEST_SKIP() << "no service draws the panel";
  ASSERT_NE(processCommand(*service), "");
  tryAction("AXPress", byIdentifier(panel(), "CancelButton"));
  ASSERT_EQ(end(), "cancelled");
  EXPECT_TRUE(soon([&] { return processCommand(*service).empty(); }));
}

TEST_F(Live, AFilePanelConfirmsNothingWhileNothingIsSelected) {
  folder().makeFile("one.txt");
  show({.files = true});
  EXPECT_FALSE(axIsTrue(byIdentifier(panel(), "OKButton"), "AXEnabled"));
  tapKey(keyTaker(), key_return, 0, {}, 0.5);
  EXPECT_EQ(outcome(), "open");
  EXPECT_TRUE(stillTakesKeys(keyTaker(), [this] { return end(); }));
}

TEST_F(Live, APressOfADisabledButtonHasNoEffect) {
  folder().makeFile("one.txt");
  show({.files = true});
  EXPECT_TRUE(tryAction("AXPress", byIdentifier(panel(), "OKButton")));
  tapKey(keyTaker(), key_escape, 0, {}, 0);
  EXPECT_EQ(end(), "cancelled");
}

TEST_F(Live, TheToolChoosesAFolderInTheBackground) {
  const std::string wanted = folder().makeFolder("wanted");
  show({.inFront = false});
  const ProgramEnd run =
      stage().runTool({"choose-folder", "--pid", std::to_string(application()), "--path", wanted});
  EXPECT_EQ(run.exitStatus, 0) << run.output;
  EXPECT_EQ(end(), "chosen " + wanted);
}

}  // namespace
}  // namespace tessarine::test
