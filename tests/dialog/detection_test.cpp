#include "dialog/detection.h"
#include "dialog/dialog_wait.h"

#include <gmock/gmock.h>

#include <functional>

#include "dialog/tree.h"
#include "support/transcript.h"
#include "support/world.h"

namespace tessarine::test {
namespace {

using Node = simulator::Element;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

void addProcess(BareDesktop& world, std::int32_t pid) {
  world.desktop.addProcess({.pid = pid,
                            .name = "Service",
                            .command = "Service",
                            .application = false,
                            .host = browserPid});
}

// In front of the windows that are there; its element carries the title as its identifier too.
Node& openWindow(BareDesktop& world, const std::string& title, std::int32_t pid = browserPid) {
  Node& app = world.desktop.findProcess(pid)->root;
  app.set("AXIdentifier", std::string("app"));
  Node& element = add(app, title, "AXWindow", {{"AXTitle", title}});
  world.desktop.addWindow(
      {.owner = pid, .title = title, .frame = {100, 100, 800, 600}, .element = &element});
  return element;
}

void focus(BareDesktop& world, const Node& element) {
  for (const auto& window : world.desktop.windows()) {
    if (window->element == &element) world.process().focused_window = window->number;
  }
}

std::string described(const DialogRef& dialog) {
  return std::to_string(dialog.pid) + " " + dialog.label + ": " + nameOf(dialog.node);
}

std::vector<std::string> described(const std::vector<DialogRef>& dialogs) {
  std::vector<std::string> texts;
  for (const auto& dialog : dialogs) texts.push_back(described(dialog));
  return texts;
}

void addButtons(Node& parent, const std::string& cancel = "Cancel",
                const std::string& choose = "Choose") {
  add(parent, "", "AXButton", {{"AXTitle", cancel}});
  add(parent, "", "AXButton", {{"AXTitle", choose}});
}

Node& addField(Node& parent, double width, const std::string& role = "AXTextField") {
  Node& field = add(parent, "", role);
  field.setFrame({0, 0, width, 24});
  field.addAction("AXConfirm", [] { return simulator::ax::success; });
  return field;
}

Node& addMarkedPopup(Node& parent, const std::string& identifier = "popup") {
  return add(parent, identifier, "AXPopUpButton", {{"AXTitle", "位置："}});
}

// Below a node 8 levels down the buttons are out of a walk's reach from the top, in its own reach.
void addChooser(Node& parent) {
  addMarkedPopup(parent);
  addButtons(add(parent, "", "AXGroup"));
}

// --- Which element is a root. ---

TEST(OpenDialogRoot, HasADialogRoleAndExactlyAnOpenTitleOrDescription) {
  struct Case {
    std::string role;
    Attributes texts;
    bool root;
  };
  const std::vector<Case> cases{
      {"AXWindow", {{"AXTitle", "Open"}}, true},
      {"AXSheet", {{"AXTitle", "打开"}}, true},
      {"AXDialog", {{"AXTitle", "Open"}}, true},
      {"AXGroup", {{"AXTitle", "Open"}}, false},
      {"AXDrawer", {{"AXTitle", "Open"}}, false},
      {"AXWindow", {{"AXTitle", "open"}}, false},
      {"AXWindow", {{"AXTitle", "OPEN"}}, false},
      {"AXWindow", {{"AXTitle", " Open"}}, false},
      {"AXWindow", {{"AXTitle", "Open…"}}, false},
      {"AXWindow", {{"AXTitle", "Öffnen"}}, false},
      {"AXWindow", {{"AXTitle", "Choose"}}, false},
      {"AXSheet", {{"AXTitle", ""}, {"AXDescription", "打开"}}, true},
      {"AXSheet", {{"AXDescription", "打开"}}, true},
      {"AXWindow", {{"AXTitle", "Page"}, {"AXDescription", "Open"}}, true},
      {"AXSheet", {{"AXDescription", "open"}}, false},
      {"AXWindow", {{"AXValue", "Open"}}, false},
      {"AXWindow", {}, false},
  };
  for (std::size_t i = 0; i < cases.size(); ++i) {
    BareDesktop world;
    const Node& node = add(world.app(), "", cases[i].role, cases[i].texts);
    EXPECT_EQ(isOpenDialogRoot(world.handle(node)), cases[i].root) << "case " << i;
  }
}

// --- One application. ---

TEST(FastDialogNodes, PrefersTheFocusedWindowToTheMainOne) {
  BareDesktop world;
  focus(world, openWindow(world, "打开"));
  openWindow(world, "Open");
  EXPECT_EQ(nameOf(fastDialogNodes(world.appHandle())), "打开");
}

TEST(FastDialogNodes, PrefersTheMainWindowItselfToASheetOfTheFocusedOne) {
  BareDesktop world;
  Node& focused = openWindow(world, "Page");
  add(focused, "sheet", "AXSheet", {{"AXTitle", "Open"}});
  focus(world, focused);
  openWindow(world, "Open");
  EXPECT_EQ(nameOf(fastDialogNodes(world.appHandle())), "Open");
}

TEST(FastDialogNodes, LooksFourLevelsDeepAndNotFive) {
  BareDesktop world;
  Node& third = addChain(openWindow(world, "Page"), 3);
  Node& fourth = add(third, "", "AXGroup");
  add(fourth, "fifth level", "AXSheet", {{"AXTitle", "Open"}});
  EXPECT_EQ(nameOf(fastDialogNodes(world.appHandle())), "nothing");
  add(third, "fourth level", "AXSheet", {{"AXTitle", "Open"}});
  EXPECT_EQ(nameOf(fastDialogNodes(world.appHandle())), "fourth level in 3");
}

TEST(FastDialogNodes, LooksAtThreeHundredNodesOfAWindow) {
  for (const int before : {298, 299}) {
    BareDesktop world;
    Node& window = openWindow(world, "Page");
    addSiblings(window, before);
    add(window, "sheet", "AXSheet", {{"AXTitle", "Open"}});
    EXPECT_EQ(nameOf(fastDialogNodes(world.appHandle())),
              before == 298 ? "sheet in Page" : "nothing");
  }
}

TEST(DialogNodes, AreTheFastOneAlone) {
  BareDesktop world;
  openWindow(world, "打开");
  openWindow(world, "Open");
  EXPECT_THAT(namesOf(dialogNodes(world.appHandle())), ElementsAre("Open"));
}

TEST(DialogNodes, AreOtherwiseAllDialogWindowsInWindowOrderWithoutDescent) {
  BareDesktop world;
  add(openWindow(world, "Mail"), "", "AXSheet", {{"AXTitle", "Open"}});
  openWindow(world, "打开");
  openWindow(world, "Open");
  openWindow(world, "Page");
  EXPECT_THAT(namesOf(dialogNodes(world.appHandle())), ElementsAre("Open", "打开"));
}

// --- The signature. ---

using Build = std::function<void(Node&)>;

bool hasSignature(const Build& build) {
  BareDesktop world;
  Node& root = add(world.app(), "", "AXGroup");
  build(root);
  return subtreeHasChooserSignature(world.handle(root));
}

TEST(ChooserSignature, NeedsAFurtherSignBesideTheButtons) {
  const std::vector<std::pair<Build, bool>> furtherSigns{
      {[](Node&) {}, false},
      {[](Node& root) {
         add(root, "", "AXPopUpButton", {{"AXTitle", "位置："}});
       },
       true},
      {[](Node& root) {
         add(root, "", "AXPopUpButton", {{"AXValue", "新位置"}});
       },
       true},
      {[](Node& root) {
         add(root, "", "AXPopUpButton", {{"AXTitle", "Where:"}});
       },
       false},
      {[](Node& root) {
         add(root, "", "AXMenuButton", {{"AXTitle", "位置："}});
       },
       false},
      {[](Node& root) {
         add(root, "", "AXOutline", {{"AXDescription", "文件列表视图"}});
       },
       true},
      {[](Node& root) {
         add(root, "", "AXOutline", {{"AXDescription", "边栏"}});
       },
       false},
      {[](Node& root) {
         add(root, "", "AXOutline", {{"AXTitle", "列表视图"}});
       },
       false},
      {[](Node& root) {
         add(root, "", "AXTable", {{"AXDescription", "列表视图"}});
       },
       false},
      {[](Node& root) {
         add(root, "", "AXStaticText", {{"AXValue", "选择扩展程序目录"}});
       },
       true},
      {[](Node& root) {
         add(root, "", "AXButton", {{"AXValue", "请选择扩展程序目录。"}});
       },
       true},
      {[](Node& root) {
         add(root, "", "AXStaticText", {{"AXTitle", "选择扩展程序目录"}});
       },
       false},
      {[](Node& root) { addField(root, 120); }, true},
      {[](Node& root) { addField(root, 119.5); }, false},
      {[](Node& root) { addField(root, 300, "AXComboBox"); }, false},
      {[](Node& root) {
         add(root, "", "AXTextField").setFrame({0, 0, 300, 24});
       },
       false},
      {[](Node& root) { add(root, "", "AXTextField").addAction("AXConfirm", [] { return 0; }); },
       false},
  };
  for (std::size_t i = 0; i < furtherSigns.size(); ++i) {
    const auto& [build, expected] = furtherSigns[i];
    const auto withButtons = [&build = build](Node& root) {
      addButtons(root);
      build(root);
    };
    EXPECT_EQ(hasSignature(withButtons), expected) << "sign " << i;
    EXPECT_FALSE(hasSignature(build)) << "sign " << i << " alone";
  }
}

TEST(ChooserSignature, NeedsBothButtonsInOneOfTheTwoLanguages) {
  const auto withButtons = [](const std::string& cancel, const std::string& choose) {
    return hasSignature([&](Node& root) {
      addButtons(root, cancel, choose);
      addMarkedPopup(root);
      add(root, "", "AXOutline", {{"AXDescription", "列表视图"}});
    });
  };
  for (const char* choose : {"Choose", "Open", "选择", "打开"}) {
    EXPECT_TRUE(withButtons("Cancel", choose)) << choose;
    EXPECT_TRUE(withButtons("取消", choose)) << choose;
    EXPECT_FALSE(withButtons("Abbrechen", choose)) << choose;
    EXPECT_FALSE(withButtons("", choose)) << choose;
  }
  for (const char* choose : {"Auswählen", "Öffnen", "Select", "choose", "Choose ", "Cancel", ""}) {
    EXPECT_FALSE(withButtons("Cancel", choose)) << choose;
  }
}

TEST(ChooserSignature, WithANameFieldStillNeedsBothButtons) {
  for (const auto& [cancel, choose] : {std::pair{"Cancel", "Select"}, {"Abort", "Choose"}}) {
    EXPECT_FALSE(hasSignature([&, cancelTitle = cancel, chooseTitle = choose](Node& root) {
      addButtons(root, cancelTitle, chooseTitle);
      addField(root, 200);
      addMarkedPopup(root);
    }));
  }
}

TEST(ChooserSignature, TakesOnlyButtonsForButtons) {
  EXPECT_FALSE(hasSignature([](Node& root) {
    add(root, "", "AXButton", {{"AXTitle", "Cancel"}});
    add(root, "", "AXMenuButton", {{"AXTitle", "Choose"}});
    addMarkedPopup(root);
  }));
}

TEST(ChooserSignature, LooksEightLevelsDeepAndAtThreeHundredAndSixtyNodes) {
  for (const auto& [groups, found] : {std::pair{7, true}, {8, false}}) {
    EXPECT_EQ(hasSignature([&, depth = groups](Node& root) {
                addMarkedPopup(root);
                addButtons(addChain(root, depth));
              }),
              found);
  }
  // The root, the pop-up, the copies and the two buttons.
  for (const auto& [copies, found] : {std::pair{356, true}, {357, false}}) {
    EXPECT_EQ(hasSignature([&, count = copies](Node& root) {
                addMarkedPopup(root);
                addSiblings(root, count);
                addButtons(root);
              }),
              found);
  }
}

// --- Embedded choosers. ---

TEST(EmbeddedChooser, IsTheWindowThatHasTheSignature) {
  BareDesktop world;
  addChooser(openWindow(world, "Page"));
  EXPECT_EQ(nameOf(findEmbeddedChooserRoot(world.appHandle())), "Page");
}

TEST(EmbeddedChooser, IsLookedForInTheLastWindowFirst) {
  BareDesktop world;
  addChooser(openWindow(world, "last"));
  addChooser(openWindow(world, "middle"));
  openWindow(world, "first");
  EXPECT_EQ(nameOf(findEmbeddedChooserRoot(world.appHandle())), "last");
}

TEST(EmbeddedChooser, IsTheFirstContainerWithTheSignatureAboveTheLocationPopup) {
  for (const char* role :
       {"AXGroup", "AXSheet", "AXWindow", "AXSplitGroup", "AXSplitterGroup", "AXScrollArea"}) {
    BareDesktop world;
    Node& outer = addChain(openWindow(world, "Page"), 6);
    addChooser(add(outer, "container", role));
    EXPECT_EQ(nameOf(findEmbeddedChooserRoot(world.appHandle())), "container in 6") << role;
  }
}

TEST(EmbeddedChooser, PassesOverAncestorsThatAreNoContainers) {
  BareDesktop world;
  Node& outer = addChain(openWindow(world, "Page"), 6);
  addChooser(add(outer, "", "AXWebArea"));
  // The web area has the signature and is no container; from the group above it the buttons are in
  // reach too.
  EXPECT_EQ(nameOf(findEmbeddedChooserRoot(world.appHandle())), "6 in 5");
}

TEST(EmbeddedChooser, IsOtherwiseTheHighestContainerExamined) {
  BareDesktop world;
  addMarkedPopup(addChain(openWindow(world, "Page"), 2));
  EXPECT_EQ(nameOf(findEmbeddedChooserRoot(world.appHandle())), "Page in app");
}

TEST(EmbeddedChooser, IsLookedForAmongThePopupAndTwentyThreeAncestors) {
  BareDesktop world;
  Node& sheet = add(addChain(world.app(), 40), "sheet", "AXSheet");
  addMarkedPopup(sheet);
  world.desktop.addWindow({.owner = browserPid, .title = "", .frame = {}, .element = &sheet});
  focus(world, sheet);
  // The pop-up, the sheet and 22 groups from number 40 down to number 19.
  EXPECT_EQ(nameOf(findEmbeddedChooserRoot(world.appHandle())), "19 in 18");
}

TEST(EmbeddedChooser, IsAroundTheFirstMarkedPopupOnly) {
  BareDesktop world;
  Node& window = add(world.app(), "window", "AXUnknown");
  world.desktop.addWindow({.owner = browserPid, .title = "", .frame = {}, .element = &window});
  addChooser(addChain(window, 7));
  EXPECT_EQ(nameOf(findEmbeddedChooserRoot(world.appHandle())), "7 in 6");
  addMarkedPopup(window);  // with no container above it
  EXPECT_EQ(nameOf(findEmbeddedChooserRoot(world.appHandle())), "nothing");
}

TEST(EmbeddedChooser, IsLookedForInTheNextWindowWhenOneHasNoContainer) {
  BareDesktop world;
  Node& last = add(world.app(), "", "AXUnknown");
  world.desktop.addWindow({.owner = browserPid, .title = "", .frame = {}, .element = &last});
  addMarkedPopup(last);
  addChooser(openWindow(world, "Page"));
  EXPECT_EQ(nameOf(findEmbeddedChooserRoot(world.appHandle())), "Page");
}

TEST(EmbeddedChooser, KnowsTheLocationPopupByTitleOrValue) {
  const std::vector<std::pair<Attributes, std::string>> popups{
      {{{"AXTitle", "位置："}, {"AXValue", "usr"}}, "Page in app"},
      {{{"AXTitle", "Where:"}, {"AXValue", "位置"}}, "Page in app"},
      {{{"AXValue", "位置"}}, "Page in app"},
      {{{"AXTitle", "Where:"}, {"AXValue", "usr"}}, "nothing"},
      {{{"AXTitle", "Where:"}}, "nothing"},
      {{{"AXDescription", "位置"}}, "nothing"},
      {{}, "nothing"},
  };
  for (const auto& [texts, expected] : popups) {
    BareDesktop world;
    Node& window = openWindow(world, "Page");
    add(window, "", "AXPopUpButton", {{"AXTitle", "Language"}});
    add(window, "", "AXPopUpButton", texts);
    EXPECT_EQ(nameOf(findEmbeddedChooserRoot(world.appHandle())), expected);
  }
}

TEST(EmbeddedChooser, LooksForThePopupEightLevelsDeepAndAtSevenHundredNodes) {
  for (const auto& [groups, found] : {std::pair{7, true}, {8, false}}) {
    BareDesktop world;
    addMarkedPopup(addChain(openWindow(world, "Page"), groups));
    EXPECT_EQ(findEmbeddedChooserRoot(world.appHandle()).has_value(), found) << groups;
  }
  for (const auto& [copies, found] : {std::pair{698, true}, {699, false}}) {
    BareDesktop world;
    Node& window = openWindow(world, "Page");
    addSiblings(window, copies);
    addMarkedPopup(window);
    EXPECT_EQ(findEmbeddedChooserRoot(world.appHandle()).has_value(), found) << copies;
  }
}

// --- All candidates. ---

TEST(OpenDialogs, AreThoseOfTheBrowserThenOfTheAdditionalProcesses) {
  BareDesktop world;
  for (const std::int32_t pid : {901, 900}) addProcess(world, pid);
  openWindow(world, "Open", 901);
  openWindow(world, "打开", 900);
  openWindow(world, "Open");
  EXPECT_THAT(described(openDialogs(browserPid, true, {900, browserPid, 901})),
              ElementsAre("812 primary-browser: Open", "900 open-save-panel-service: 打开",
                          "901 open-save-panel-service: Open"));
}

TEST(OpenDialogs, HoldAnEmbeddedChooserOfTheBrowserOnlyWhenAskedFor) {
  BareDesktop world;
  addChooser(openWindow(world, "Page"));
  EXPECT_THAT(described(openDialogs(browserPid, true, {})),
              ElementsAre("812 primary-browser: Page"));
  EXPECT_THAT(described(openDialogs(browserPid, false, {})), IsEmpty());
}

TEST(OpenDialogs, HoldNoEmbeddedChooserBesideADialogOfTheBrowser) {
  BareDesktop world;
  addChooser(openWindow(world, "Page"));
  openWindow(world, "Open");
  EXPECT_THAT(described(openDialogs(browserPid, true, {})),
              ElementsAre("812 primary-browser: Open"));
}

TEST(OpenDialogs, HoldAnEmbeddedChooserBesideADialogOfAService) {
  BareDesktop world;
  addProcess(world, servicePid);
  addChooser(openWindow(world, "Page"));
  openWindow(world, "Open", servicePid);
  EXPECT_THAT(described(openDialogs(browserPid, true, {servicePid})),
              ElementsAre("812 primary-browser: Page", "900 open-save-panel-service: Open"));
}

TEST(OpenDialogs, NeverHoldAnEmbeddedChooserOfAService) {
  BareDesktop world;
  addProcess(world, servicePid);
  addChooser(openWindow(world, "Panel", servicePid));
  EXPECT_THAT(described(openDialogs(browserPid, true, {servicePid})), IsEmpty());
}

TEST(DialogIsOpen, ForADialogAndForAnEmbeddedChooserOfTheBrowser) {
  BareDesktop world;
  EXPECT_FALSE(dialogIsOpen(browserPid));
  Node& page = openWindow(world, "Page");
  EXPECT_FALSE(dialogIsOpen(browserPid));
  addChooser(page);
  EXPECT_TRUE(dialogIsOpen(browserPid));
  page.removeChildren();
  EXPECT_FALSE(dialogIsOpen(browserPid));
  openWindow(world, "打开");
  EXPECT_TRUE(dialogIsOpen(browserPid));
}

TEST(DialogIsOpen, ForADialogOfAServiceAndNotForAnEmbeddedChooserThere) {
  BareDesktop world;
  world.desktop.installProgram("/bin/ps", [](simulator::ProgramRun& run) {
    run.print("  900 Open and Save Panel Service (Google Chrome)\n");
    run.end(0);
  });
  addProcess(world, servicePid);
  addChooser(openWindow(world, "Panel", servicePid));
  EXPECT_FALSE(dialogIsOpen(browserPid));
  openWindow(world, "Open", servicePid);
  EXPECT_TRUE(dialogIsOpen(browserPid));
}

// --- Waiting. ---

TEST(WaitForOpenDialog, PrefersTheBrowsersDialog) {
  BareDesktop world;
  addProcess(world, servicePid);
  openWindow(world, "Open", servicePid);
  openWindow(world, "打开");
  EXPECT_EQ(described(waitForOpenDialog(browserPid, 1, true, {servicePid})),
            "812 primary-browser: 打开");
}

TEST(WaitForOpenDialog, TakesTheBrowsersFirstDialogOfSeveral) {
  BareDesktop world;
  openWindow(world, "打开");
  openWindow(world, "Open");
  openWindow(world, "Page");
  EXPECT_EQ(described(waitForOpenDialog(browserPid, 1, true, {})), "812 primary-browser: Open");
}

TEST(WaitForOpenDialog, TakesTheLastDialogWhenNoneIsTheBrowsers) {
  BareDesktop world;
  for (const std::int32_t pid : {900, 901}) {
    addProcess(world, pid);
    openWindow(world, "Open", pid);
  }
  EXPECT_EQ(described(waitForOpenDialog(browserPid, 1, true, {900, 901})),
            "901 open-save-panel-service: Open");
}

TEST(WaitForOpenDialog, LooksEvery150Milliseconds) {
  BareDesktop world;
  openWindow(world, "Page");
  world.desktop.schedule(0.5, [&world] { openWindow(world, "Open"); });
  EXPECT_EQ(described(waitForOpenDialog(browserPid, 10, true, {})), "812 primary-browser: Open");
  EXPECT_THAT(sleepLengths(world.desktop.record()), ElementsAre("0.15"));
  // The fifth look, after four that cost some requests each.
  EXPECT_GE(world.now(), 0.6);
  EXPECT_LT(world.now(), 0.65);
}

TEST(WaitForOpenDialog, GivesUpWhenTheTimeIsUp) {
  BareDesktop world;
  const auto wait = [](double seconds) {
    return messageOf([&] { waitForOpenDialog(browserPid, seconds, true, {}); });
  };
  EXPECT_EQ(wait(10), "timed out after 10.0s");
  EXPECT_GE(world.now(), 10);
  EXPECT_LT(world.now(), 10.2);
  EXPECT_EQ(wait(0.25), "timed out after 0.25s");
}

TEST(WaitForOpenDialog, LooksNotOnceWhenThereIsNoTime) {
  BareDesktop world;
  openWindow(world, "Open");
  for (const double seconds : {0.0, -1.0}) {
    EXPECT_THROW(waitForOpenDialog(browserPid, seconds, true, {}), ToolError);
  }
  EXPECT_EQ(messageOf([] { waitForOpenDialog(browserPid, 0, true, {}); }), "timed out after 0.0s");
  EXPECT_EQ(world.now(), 0);
  EXPECT_EQ(world.desktop.record().accessibilityRequests(), 0U);
}

// --- The strict wait. ---

constexpr const char* notFoundAfterPriming =
    "open dialog not found after process-directed AX priming";

// Calls an action on each key-down that is posted to its process.
struct KeyListener : simulator::InputReceiver {
  explicit KeyListener(std::function<void()> action) : onKeyDown(std::move(action)) {}
  bool keyEvent(const simulator::KeyEvent& event, simulator::Route) override {
    if (event.down) onKeyDown();
    return true;
  }
  bool mouseEvent(const simulator::MouseEvent&, simulator::Window&, simulator::Route) override {
    return false;
  }
  std::function<void()> onKeyDown;
};

std::string strictWait(double timeoutSeconds, const std::vector<std::int32_t>& eventPIDs = {}) {
  return described(waitForStrictOpenDialog(browserPid, eventPIDs, timeoutSeconds));
}

TEST(WaitForStrictOpenDialog, FindsAnOpenDialogWithoutAnyEvent) {
  BareDesktop world;
  addProcess(world, servicePid);
  openWindow(world, "Open", servicePid);
  EXPECT_EQ(strictWait(10, {servicePid}), "900 open-save-panel-service: Open");
  EXPECT_THAT(transcript(world.desktop.record()), IsEmpty());
  EXPECT_LT(world.now(), 0.01);
}

TEST(WaitForStrictOpenDialog, FindsAnEmbeddedChooser) {
  BareDesktop world;
  addChooser(openWindow(world, "Page"));
  EXPECT_EQ(strictWait(10), "812 primary-browser: Page");
}

// Looks at 0, 0.15, 0.3 and 0.45 s end the first try after 0.6 s; 0.75 s later the priming begins.
// A look every 0.15 s for 1.15 s is eight of them, for 0.85 s six. Then 3.79 s have passed, and the
// requests of 18 looks at four processes: too little is left for the third process.
TEST(WaitForStrictOpenDialog, PrimesOneProcessAfterTheOtherWithinFourSeconds) {
  BareDesktop world;
  EXPECT_EQ(messageOf([] {
              strictWait(10, {900, browserPid, 901, 900, 902});
            }),
            notFoundAfterPriming);
  EXPECT_THAT(transcript(world.desktop.record()),
              ElementsAre("1.350 key 5+120000 down -> 812", "0.020 key 5+120000 up -> 812",
                          "1.350 key 5+120000 down -> 900", "0.020 key 5+120000 up -> 900"));
  EXPECT_GT(world.now(), 4.0 - 0.15);
  EXPECT_LT(world.now(), 4.0);
}

// The second priming begins at 2.72 s; after it there is time for a single look.
TEST(WaitForStrictOpenDialog, LooksAfterAPrimingForNoLongerThanIsLeft) {
  BareDesktop world;
  EXPECT_EQ(messageOf([] { strictWait(3, {900}); }), notFoundAfterPriming);
  EXPECT_THAT(transcript(world.desktop.record()),
              ElementsAre("1.350 key 5+120000 down -> 812", "0.020 key 5+120000 up -> 812",
                          "1.350 key 5+120000 down -> 900", "0.020 key 5+120000 up -> 900"));
  EXPECT_GE(world.now(), 2.72 + 0.17 + 0.15);
  EXPECT_LT(world.now(), 3.15);
}

TEST(WaitForStrictOpenDialog, ReturnsTheDialogThatAKeyBroughtForth) {
  BareDesktop world;
  addProcess(world, servicePid);
  KeyListener listener([&world] { openWindow(world, "Open", servicePid); });
  world.desktop.findProcess(servicePid)->receivers.push_back(&listener);
  EXPECT_EQ(strictWait(10, {servicePid, 901}), "900 open-save-panel-service: Open");
  EXPECT_THAT(transcript(world.desktop.record()),
              ElementsAre("1.350 key 5+120000 down -> 812", "0.020 key 5+120000 up -> 812",
                          "1.350 key 5+120000 down -> 900", "0.020 key 5+120000 up -> 900"));
}

TEST(WaitForStrictOpenDialog, DropsTheErrorOfTheFirstTry) {
  BareDesktop world;
  world.desktop.schedule(0.7, [&world] { openWindow(world, "Open"); });
  EXPECT_EQ(strictWait(10), "812 primary-browser: Open");
  EXPECT_THAT(postedEventKinds(world.desktop.record()),
              ElementsAre("key 5+120000 down -> 812", "key 5+120000 up -> 812"));
  EXPECT_GE(world.now(), 1.35 + 0.02 + 0.15);
  EXPECT_LT(world.now(), 1.55);
}

// After the only process was primed, at 2.72 s, there is time for one more plain wait.
TEST(WaitForStrictOpenDialog, WaitsOnAfterPrimingAndPassesItsErrorThrough) {
  BareDesktop found;
  found.desktop.schedule(3.5, [&found] { openWindow(found, "Open"); });
  EXPECT_EQ(strictWait(10), "812 primary-browser: Open");

  BareDesktop empty;
  const std::string message = messageOf([] { strictWait(10); });
  const double seconds = std::stod(message.substr(message.rfind(' ')));
  EXPECT_TRUE(message.starts_with("timed out after ") && message.ends_with("s")) << message;
  EXPECT_LE(seconds, 4.0 - 2.72);
  EXPECT_GT(seconds, 4.0 - 2.82);
  EXPECT_GE(empty.now(), 4.0);
  EXPECT_LT(empty.now(), 4.2);
}

// One that comes before the priming is seen at 1.52 s, by the look after that; one that comes later
// by the last wait, which looks at 3.62 s.
TEST(WaitForStrictOpenDialog, FindsAnEmbeddedChooserThatComesLater) {
  for (const auto& [comesAt, seenBefore] : {std::pair{0.7, 1.6}, {3.5, 3.8}}) {
    BareDesktop world;
    world.desktop.schedule(comesAt, [&world] { addChooser(openWindow(world, "Page")); });
    EXPECT_EQ(strictWait(10), "812 primary-browser: Page");
    EXPECT_LT(world.now(), seenBefore);
  }
}

// The last wait begins at 3.79 s and looks again at 3.94 s.
TEST(WaitForStrictOpenDialog, LooksAtEveryProcessToTheEnd) {
  BareDesktop world;
  world.desktop.prices().request = 0;
  addProcess(world, servicePid);
  world.desktop.schedule(3.8, [&world] { openWindow(world, "Open", servicePid); });
  EXPECT_EQ(strictWait(10, {servicePid}), "900 open-save-panel-service: Open");
  EXPECT_NEAR(world.now(), 3.94, 1e-6);
}

// A strict wait where nothing takes time but the capture helper, once in each look.
struct TimedWait {
  std::vector<double> keyTimes;
  std::string message;
};

TimedWait timedWait(double helperSeconds, double timeoutSeconds) {
  BareDesktop world;
  world.desktop.prices().request = 0;
  world.desktop.installProgram("background-window-capture", [&](simulator::ProgramRun& run) {
    run.after(helperSeconds, [&run] { run.end(0); });
  });
  TimedWait wait;
  wait.message = messageOf([&] { strictWait(timeoutSeconds, {900, 901}); });
  for (const auto& line : world.desktop.record().lines()) {
    const auto* key = std::get_if<simulator::PostedKey>(&line.entry);
    if (key != nullptr && key->event.down) wait.keyTimes.push_back(line.time);
  }
  return wait;
}

MATCHER_P(AreAbout, times, "") {
  return testing::ExplainMatchResult(testing::Pointwise(testing::DoubleNear(1e-6), times), arg,
                                     result_listener);
}
using Times = std::vector<double>;

// From one look to the next it takes 0.15 s and what the helper takes.
TEST(WaitForStrictOpenDialog, LooksForFiftyFiveHundredthsOfASecondFirst) {
  // Looks at 0, 0.27, 0.54 s; at 0 and 0.28 s, as 0.56 s would be too late.
  EXPECT_DOUBLE_EQ(timedWait(0.12, 10).keyTimes.at(0), 0.81 + 0.75);
  EXPECT_DOUBLE_EQ(timedWait(0.13, 10).keyTimes.at(0), 0.56 + 0.75);
}

TEST(WaitForStrictOpenDialog, LooksForMoreThanASecondAfterTheFirstPriming) {
  // Five looks, the last 1.14 s after the first; four, as 1.16 s would be too late, leave time for
  // a third process.
  EXPECT_THAT(timedWait(0.135, 10).keyTimes, AreAbout(Times{1.32, 1.32 + 0.17 + 1.425}));
  EXPECT_THAT(timedWait(0.14, 10).keyTimes, AreAbout(Times{1.33, 2.66, 2.66 + 0.17 + 0.87}));
}

TEST(WaitForStrictOpenDialog, LooksForALittleLessAfterLaterPrimings) {
  // Five looks, the last 0.84 s after the first, leave no time; four, as 0.86 s would be too late,
  // leave too little for a priming.
  const TimedWait five = timedWait(0.06, 10);
  EXPECT_THAT(five.keyTimes, AreAbout(Times{1.38, 2.81}));
  EXPECT_EQ(five.message, notFoundAfterPriming);
  const TimedWait four = timedWait(0.065, 10);
  EXPECT_THAT(four.keyTimes, AreAbout(Times{1.395, 2.855}));
  EXPECT_THAT(four.message, testing::StartsWith("timed out after 0.11"));
}

// 1.35 s have passed before the first priming.
TEST(WaitForStrictOpenDialog, NeedsTimeForAPrimingAndForTheLastWait) {
  EXPECT_THAT(timedWait(0, 1.35 + 0.16).keyTimes, AreAbout(Times{1.35}));
  const TimedWait unprimed = timedWait(0, 1.35 + 0.14);
  EXPECT_THAT(unprimed.keyTimes, IsEmpty());
  EXPECT_THAT(unprimed.message, testing::StartsWith("timed out after 0.1"));
  EXPECT_THAT(timedWait(0, 1.35 + 0.11).message, testing::StartsWith("timed out after 0.1"));
  EXPECT_EQ(timedWait(0, 1.35 + 0.09).message, notFoundAfterPriming);
}

TEST(WaitForStrictOpenDialog, WorksForHalfASecondWhenAskedForLess) {
  for (const double timeout : {0.2, 0.0, -3.0, 0.5}) {
    BareDesktop world;
    EXPECT_EQ(messageOf([&] { strictWait(timeout, {900}); }), notFoundAfterPriming);
    EXPECT_THAT(transcript(world.desktop.record()), IsEmpty());
    EXPECT_GE(world.now(), 0.5);
    EXPECT_LT(world.now(), 0.7);
  }
}

TEST(WaitForStrictOpenDialog, FindsADialogWithinThatHalfSecond) {
  BareDesktop world;
  world.desktop.schedule(0.4, [&world] { openWindow(world, "Open"); });
  EXPECT_EQ(strictWait(0.2), "812 primary-browser: Open");
}

TEST(WaitForStrictOpenDialog, TakesTheTimeItWasGivenWhenThatIsLessThanFourSeconds) {
  BareDesktop world;
  EXPECT_EQ(messageOf([] { strictWait(2, {900, 901}); }), notFoundAfterPriming);
  EXPECT_GE(world.now(), 2.0);
  EXPECT_LT(world.now(), 2.2);
}

}  // namespace
}  // namespace tessarine::test
