#include "commands/choose_folder_by_controls.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <functional>

#include "dialog/tree.h"
#include "panels/reported_desktop.h"
#include "support/transcript.h"

namespace tessarine::test {
namespace {

namespace ax = simulator::ax;
using simulator::Value;
using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::EndsWith;
using ::testing::IsEmpty;
using ::testing::Not;
using Node = simulator::Element;

// A chooser of the service that shows the boot volume, with the folder "usr" in its list. A press
// of its button or a Return closes it, unless a test says otherwise.
struct Chooser : ReportedDesktop, simulator::InputReceiver {
  Chooser() {
    processes = "  900 " + std::string(chromeService) + "\n";
    desktop.addProcess({.pid = servicePid,
                        .name = chromeService,
                        .command = chromeService,
                        .application = false,
                        .host = browserPid});
    desktop.findProcess(servicePid)->receivers.push_back(this);
    window = &add(service(), "window", "AXWindow", {{"AXTitle", std::string("Open")}});
    simulator::Window listed;
    listed.owner = servicePid;
    listed.element = window;
    number = desktop.addWindow(listed).number;
    popup = &add(*window, "popup", "AXPopUpButton", {{"AXValue", std::string("Macintosh HD")}});
    list = &add(*window, "list", "AXOutline", {{"AXDescription", std::string("列表视图")}});
    list->makeSettable("AXSelectedRows", [this](const Value& rows) {
      list->set("AXSelectedRows", rows);
      return ax::success;
    });
    add(add(*list, "row", "AXRow"), "text", "AXTextField", {{"AXValue", std::string("usr")}});
    addButton(*window, "Choose");
  }

  Node& service() { return desktop.findProcess(servicePid)->root; }
  void addButton(Node& parent, const std::string& title) {
    button = &add(parent, "button", "AXButton", {{"AXTitle", title}});
    button->addAction("AXPress", [this] { return onPress(); });
  }
  void close() { desktop.removeWindow(number); }
  bool keyEvent(const simulator::KeyEvent& event, simulator::Route) override {
    if (event.keyCode == 36 && !event.down) onReturn();
    return true;
  }
  bool mouseEvent(const simulator::MouseEvent&, simulator::Window&, simulator::Route) override {
    return true;
  }

  // The pop-up shows a folder, and no menu of volumes opens: only the sheet is left, which hangs
  // from the application.
  void leaveOnlyTheSheet(const std::string& shownAfterwards = "usr") {
    popup->set("AXValue", std::string("share"));
    Node& field = add(service(), "field", "AXTextField", {{"AXValue", std::string()}});
    field.setFrame({0, 0, 300, 24});
    field.makeSettable("AXValue", [&field](const Value& value) {
      field.set("AXValue", value);
      return ax::success;
    });
    field.addAction("AXConfirm", [this, shownAfterwards] {
      popup->set("AXValue", shownAfterwards);
      return ax::success;
    });
    onReturn = [this, sent = false]() mutable {
      if (std::exchange(sent, true)) close();  // the first sends the sheet off
    };
  }

  Result choose(double seconds = 10) {
    return chooseFolderByControls(browserPid, "/usr", seconds, "/vol", "Vol", {"a", "b"}, "b");
  }
  std::vector<std::string> deeds() const { return transcript(desktop.record()); }

  Node* window = nullptr;
  Node* popup = nullptr;
  Node* list = nullptr;
  Node* button = nullptr;
  std::uint32_t number = 0;
  std::function<std::int32_t()> onPress = [this] {
    close();
    return ax::success;
  };
  std::function<void()> onReturn = [this] { close(); };
};

Result chosenBy(const std::string& strategy) {
  return {{"ok", true},
          {"command", "choose-folder"},
          {"path", "/usr"},
          {"volumeRoot", "/vol"},
          {"volumeDisplayName", "Vol"},
          {"components", {"a", "b"}},
          {"searchQuery", "b"},
          {"strategy", strategy},
          {"dialogPid", servicePid},
          {"dialogApp", "open-save-panel-service"}};
}

const std::vector<std::string> selecting{"0.150 set AXSelectedRows of AXOutline in 900",
                                         "0.000 set AXFocused of AXOutline in 900"};
constexpr const char* pressing = "0.000 AXPress of AXButton in 900";

// --- The dialog. ---

TEST(ChooseFolderByControls, PassesOnThatThereIsNoDialog) {
  Chooser chooser;
  chooser.close();
  EXPECT_EQ(messageOf([&] { chooser.choose(0.7); }), "timed out after 0.7s");
  EXPECT_THAT(chooser.deeds(), IsEmpty());
}

TEST(ChooseFolderByControls, WaitsForTheDialogForTheWholeTimeout) {
  Chooser chooser;
  chooser.window->set("AXTitle", std::string("Later"));
  chooser.desktop.schedule(8, [&] { chooser.window->set("AXTitle", std::string("Open")); });
  EXPECT_EQ(chooser.choose(), chosenBy("hierarchy"));
}

// --- The way to the folder. ---

TEST(ChooseFolderByControls, SelectsTheFolderAndPressesTheButton) {
  Chooser chooser;
  EXPECT_EQ(chooser.choose(), chosenBy("hierarchy"));
  EXPECT_THAT(chooser.deeds(), ElementsAre(selecting[0], selecting[1], pressing));
}

TEST(ChooseFolderByControls, GivesTheWalkTheWholeTimeout) {
  Chooser chooser;
  chooser.popup->set("AXValue", std::string("share"));
  chooser.popup->addAction("AXShowMenu", [] { return ax::success; });
  chooser.desktop.schedule(8, [&] {
    Node& item = add(*chooser.popup, "item", "AXMenuItem", {{"AXTitle", "Macintosh HD"}});
    item.addAction("AXPick", [&] {
      chooser.popup->set("AXValue", std::string("Macintosh HD"));
      return ax::success;
    });
  });
  EXPECT_EQ(chooser.choose(), chosenBy("hierarchy"));
}

TEST(ChooseFolderByControls, FindsTheSheetBesideTheDialog) {
  Chooser chooser;
  chooser.leaveOnlyTheSheet();
  EXPECT_EQ(chooser.choose(), chosenBy("go-to-folder-ax"));
  const auto deeds = chooser.deeds();
  EXPECT_EQ(deeds[0], "0.000 AXShowMenu of AXPopUpButton in 900");
  EXPECT_EQ(deeds[1], "0.000 key 5+120000 down -> 900");
}

TEST(ChooseFolderByControls, PassesOnThatTheSheetDidNotOpen) {
  Chooser chooser;
  chooser.popup->set("AXValue", std::string("share"));
  EXPECT_EQ(messageOf([&] { chooser.choose(); }), "timed out after 1.5s");
  EXPECT_THAT(chooser.deeds(), Not(Contains(EndsWith("AXPress of AXButton in 900"))));
}

// The row is outside the marked list and has no place on the screen to be clicked.
TEST(ChooseFolderByControls, GoesOnWhereTheFoldersRowCannotBeOpened) {
  Chooser chooser;
  chooser.leaveOnlyTheSheet();
  chooser.list->set("AXDescription", std::string("list view"));
  EXPECT_EQ(chooser.choose(), chosenBy("go-to-folder-ax"));
  EXPECT_EQ(chooser.deeds().back(), "0.550 AXPress of AXButton in 900");
}

// 0.25 s and 0.3 s pass before the row is looked for; a look with its pause takes less than 0.15 s.
TEST(ChooseFolderByControls, LooksForTheFoldersRowForTwoSecondsAtMost) {
  for (const auto& [timeout, wait] : {std::pair{10.0, 2.0}, {0.8, 0.8}}) {
    Chooser chooser;
    chooser.leaveOnlyTheSheet();
    chooser.list->removeChildren();
    double pressedAt = 0;
    chooser.onPress = [&] {
      pressedAt = chooser.desktop.now() - 0.1;  // it takes so long
      chooser.close();
      return ax::success;
    };
    EXPECT_EQ(chooser.choose(timeout), chosenBy("go-to-folder-ax"));
    const auto events = postedEvents(chooser.desktop.record());
    const double returned = std::stod(events.back());
    EXPECT_GE(pressedAt - returned, 0.55 + wait);
    EXPECT_LE(pressedAt - returned, 0.55 + wait + 0.15);
  }
}

// --- The confirmation. ---

TEST(ChooseFolderByControls, PressesAButtonOfEachTitle) {
  for (const char* title : {"Choose", "Open", "选择", "打开"}) {
    Chooser chooser;
    chooser.button->set("AXTitle", std::string(title));
    chooser.choose();
    EXPECT_EQ(chooser.deeds().back(), pressing) << title;
  }
}

// Neither a button of another title nor one beside the dialog.
TEST(ChooseFolderByControls, PressesReturnWhereTheDialogHasNoSuchButton) {
  Chooser chooser;
  chooser.button->set("AXTitle", std::string("Select"));
  chooser.addButton(chooser.service(), "Choose");
  EXPECT_EQ(chooser.choose(), chosenBy("hierarchy"));
  EXPECT_THAT(chooser.deeds(), ElementsAre(selecting[0], selecting[1], "0.000 key 36 down -> 900",
                                           "0.020 key 36 up -> 900"));
  EXPECT_THAT(sleepLengths(chooser.desktop.record()), ElementsAre("0.02", "0.1", "0.15"));
}

TEST(ChooseFolderByControls, PressesReturnWhateverFolderIsShown) {
  Chooser chooser;
  chooser.leaveOnlyTheSheet("share");
  chooser.list->removeChildren();
  chooser.button->set("AXTitle", std::string("Select"));
  EXPECT_EQ(chooser.choose(), chosenBy("go-to-folder-ax"));
  const auto events = postedEventKinds(chooser.desktop.record());
  EXPECT_EQ(std::count(events.begin(), events.end(), "key 36 up -> 900"), 2);
}

TEST(ChooseFolderByControls, PressesNoButtonWhereTheFolderIsNotReached) {
  Chooser chooser;
  chooser.leaveOnlyTheSheet("share");
  chooser.list->removeChildren();
  EXPECT_EQ(messageOf([&] { chooser.choose(); }),
            "chooser did not reach target folder before pressing choose: /usr");
  EXPECT_THAT(chooser.deeds(), Not(Contains(EndsWith("AXPress of AXButton in 900"))));
}

// The pop-up stays as it is; the row that is opened gets selected.
TEST(ChooseFolderByControls, IsContentWithASelectedFolder) {
  Chooser chooser;
  chooser.leaveOnlyTheSheet("share");
  chooser.onReturn = [] {};
  EXPECT_EQ(chooser.choose(), chosenBy("go-to-folder-ax"));
  EXPECT_THAT(chooser.deeds().back(), EndsWith(" AXPress of AXButton in 900"));
}

TEST(ChooseFolderByControls, IsContentWithARefusedPressThatLanded) {
  Chooser chooser;
  chooser.onPress = [&] {
    chooser.close();
    return ax::cannotComplete;
  };
  EXPECT_EQ(chooser.choose(), chosenBy("hierarchy"));
  EXPECT_EQ(chooser.deeds().back(), pressing);
}

// The second press is not preceded by a look at the folder.
TEST(ChooseFolderByControls, PressesAgainWhateverFolderIsShownThen) {
  Chooser chooser;
  chooser.onReturn = [] {};
  chooser.onPress = [&, presses = 0]() mutable {
    if (++presses == 2) {
      chooser.close();
    } else {
      chooser.list->removeChildren();
    }
    return ax::success;
  };
  EXPECT_EQ(chooser.choose(1), chosenBy("hierarchy"));
  const auto deeds = chooser.deeds();
  ASSERT_EQ(deeds.size(), 6U);
  EXPECT_EQ(deeds[2], pressing);
  EXPECT_THAT(deeds[3], EndsWith(" key 36 down -> 900"));
  EXPECT_EQ(deeds[4], "0.020 key 36 up -> 900");
  EXPECT_EQ(deeds[5], "0.150 AXPress of AXButton in 900");
}

TEST(ChooseFolderByControls, FailsWhenTheDialogStays) {
  Chooser chooser;
  chooser.onReturn = [] {};
  chooser.onPress = [] { return ax::success; };
  EXPECT_EQ(messageOf([&] { chooser.choose(); }), "timed out after 4.0s");
  EXPECT_EQ(messageOf([&] { chooser.choose(0.75); }), "timed out after 0.75s");
}

}  // namespace
}  // namespace tessarine::test
