// Choosing and cancelling, by buttons, keys and clicks.
#include "live/live.h"
#include "platform/accessibility.h"
#include "platform/events.h"
#include "platform/wait.h"

namespace tessarine::test {
namespace {

constexpr std::uint16_t key_return = 36;
constexpr std::uint16_t key_escape = 53;

TEST_F(Live, TheConfirmButtonChoosesTheFolderShown) {
  show({});
  tryAction("AXPress", byIdentifier(panel(), "OKButton"));
  EXPECT_EQ(end(), "chosen " + folder().path());
}

TEST_F(Live, AFilePanelConfirmsNothingWhileNothingIsSelected) {
  folder().makeFile("one.txt");
  show({.files = true});
  EXPECT_FALSE(axIsTrue(byIdentifier(panel(), "OKButton"), "AXEnabled"));
  tapKey(keyTaker(), key_return, 0, {}, 0.5);
  EXPECT_EQ(outcome(), "open");
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
