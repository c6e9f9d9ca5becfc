#include "commands/dialog_confirmation.h"

#include <gmock/gmock.h>

#include "support/transcript.h"
#include "support/world.h"

namespace tessarine::test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

// A dialog of the browser with a button that closes it at a certain press, or never.
struct Dialog {
  explicit Dialog(int closesAtPress = 0, const std::string& title = "Choose") {
    window = &world.addWindow("Open");
    simulator::Element& button = window->addChild("AXButton");
    button.set("AXTitle", title);
    button.addAction("AXPress", [this, closesAtPress] {
      if (++presses == closesAtPress) world.desktop.removeWindow(number());
      return simulator::ax::success;
    });
  }
  std::uint32_t number() const { return world.desktop.windows().front()->number; }
  DialogRef reference() const {
    return {{world.handle(*window), {}}, world.appHandle(), browserPid, "primary-browser"};
  }

  BareDesktop world;
  simulator::Element* window = nullptr;
  int presses = 0;
};

TEST(PressChooseButton, PressesAButtonOfEachKnownTitle) {
  for (const char* title : {"Choose", "Open", "选择", "打开"}) {
    const Dialog dialog(0, title);
    EXPECT_TRUE(pressChooseButton(dialog.reference().node.element)) << title;
    EXPECT_EQ(dialog.presses, 1) << title;
  }
}

TEST(PressChooseButton, SaysThatThereIsNoSuchButton) {
  const Dialog dialog(0, "Select");
  EXPECT_FALSE(pressChooseButton(dialog.reference().node.element));
  EXPECT_EQ(dialog.presses, 0);
}

TEST(PressChooseButton, IgnoresARefusedPress) {
  BareDesktop world;
  simulator::Element& window = world.addWindow("Open");
  simulator::Element& button = window.addChild("AXButton");
  button.set("AXTitle", std::string("Choose"));
  button.addAction("AXPress", [] { return simulator::ax::cannotComplete; });
  EXPECT_TRUE(pressChooseButton(world.handle(window)));
}

TEST(DialogCloseSeconds, AreTheTimeoutButAtMostFour) {
  EXPECT_EQ(dialogCloseSeconds(10), 4);
  EXPECT_EQ(dialogCloseSeconds(4), 4);
  EXPECT_EQ(dialogCloseSeconds(2.5), 2.5);
  EXPECT_EQ(dialogCloseSeconds(0), 0);
}

TEST(CloseWithOneRetry, IsContentWithADialogThatHasGone) {
  Dialog dialog;
  const DialogRef reference = dialog.reference();
  dialog.world.desktop.removeWindow(dialog.number());
  closeWithOneRetry(reference, 10);
  EXPECT_THAT(transcript(dialog.world.desktop.record()), IsEmpty());
  EXPECT_THAT(sleepLengths(dialog.world.desktop.record()), IsEmpty());
}

TEST(CloseWithOneRetry, LooksEvery150Milliseconds) {
  Dialog dialog;
  dialog.world.desktop.schedule(0.7, [&] { dialog.world.desktop.removeWindow(dialog.number()); });
  closeWithOneRetry(dialog.reference(), 10);
  EXPECT_THAT(transcript(dialog.world.desktop.record()), IsEmpty());
  EXPECT_THAT(sleepLengths(dialog.world.desktop.record()), ElementsAre("0.15"));
}

TEST(CloseWithOneRetry, PressesReturnAndTheButtonOnceMore) {
  Dialog dialog(1);
  closeWithOneRetry(dialog.reference(), 1);
  const auto deeds = postedEventKinds(dialog.world.desktop.record());
  EXPECT_THAT(deeds, ElementsAre("key 36 down -> 812", "key 36 up -> 812"));
  EXPECT_EQ(transcript(dialog.world.desktop.record()).back(), "0.150 AXPress of AXButton in 812");
  EXPECT_EQ(dialog.presses, 1);
  EXPECT_GE(dialog.world.now(), 1.0 + 0.02 + 0.15);
}

TEST(CloseWithOneRetry, PressesReturnAloneWhereThereIsNoButton) {
  Dialog dialog(0, "Select");
  dialog.world.desktop.schedule(1.3, [&] { dialog.world.desktop.removeWindow(dialog.number()); });
  closeWithOneRetry(dialog.reference(), 1);
  EXPECT_EQ(transcript(dialog.world.desktop.record()).back(), "0.020 key 36 up -> 812");
}

TEST(CloseWithOneRetry, FailsAfterTwoWaitsOfTheSameLength) {
  struct Row {
    double timeout;
    std::string message;
    double waited;  // twice the wait, the key press and its pause
  };
  for (const Row& row : {Row{10, "timed out after 4.0s", 8.17},
                         {0.75, "timed out after 0.75s", 1.67},
                         {0, "timed out after 0.0s", 0.17}}) {
    Dialog dialog;
    EXPECT_EQ(messageOf([&] { closeWithOneRetry(dialog.reference(), row.timeout); }), row.message);
    EXPECT_EQ(dialog.presses, 1);
    EXPECT_GE(dialog.world.now(), row.waited);
    EXPECT_LE(dialog.world.now(), row.waited + 0.5);  // two last looks and the press
  }
}

}  // namespace
}  // namespace tessarine::test
