// The simulated desktop: time, elements, windows, the way of events, requests, the record.
#include "simulator/desktop/desktop.h"

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include <string>
#include <utility>
#include <vector>

#include "simulator/desktop/text.h"

namespace simulator::desktop {
namespace {

using Texts = std::vector<std::string>;

// Writes down what it receives and takes it, unless told to leave it to the next receiver.
class Listener : public InputReceiver {
 public:
  Listener(std::string name, Texts& heard, bool takes = true)
      : name_(std::move(name)), heard_(heard), takes_(takes) {}

  bool keyEvent(const KeyEvent& event, Route route) override {
    heard_.push_back(name_ + " key " + std::to_string(event.keyCode) + routeName(route));
    return takes_;
  }
  bool mouseEvent(const MouseEvent& event, Window& window, Route route) override {
    heard_.push_back(name_ + " mouse " + std::to_string(event.type) + " in " + window.title +
                     routeName(route));
    return takes_;
  }

 private:
  static std::string routeName(Route route) {
    return route == Route::session ? " from session" : " to process";
  }

  std::string name_;
  Texts& heard_;
  bool takes_;
};

Window windowFor(Pid owner, const std::string& title, const Rect& frame,
                 Element* element = nullptr) {
  Window window;
  window.owner = owner;
  window.title = title;
  window.frame = frame;
  window.element = element;
  return window;
}

ProcessOptions application(Pid pid, const std::string& name) {
  return {pid, name, "/Applications/" + name + ".app/Contents/MacOS/" + name, true, {}};
}

PostEvent keyTo(std::optional<Pid> target, std::uint16_t code) {
  return {KeyEvent{code, true, 0, {}}, target};
}

PostEvent mouseTo(std::optional<Pid> target, Point at, std::uint32_t type = 1) {
  return {MouseEvent{type, at, 1}, target};
}

// Two applications whose windows overlap at (150, 150): the editor is in front of the browser.
class DesktopTest : public testing::Test {
 protected:
  DesktopTest() {
    browser.receivers = {&browser_listener};
    editor.receivers = {&editor_listener};
    desktop.setFrontmost(editor.pid);
  }

  Texts titles() const {
    Texts result;
    for (const auto& window : desktop.windows()) result.push_back(window->title);
    return result;
  }

  Reply copy(ElementId element, const std::string& name) {
    return desktop.answer(CopyAttribute{element, name});
  }

  Desktop desktop;
  Process& browser = desktop.addProcess(application(700, "Browser"));
  Process& editor = desktop.addProcess(application(800, "Editor"));
  Element& page_element = browser.root.addChild("AXWindow");
  Window& page = desktop.addWindow(windowFor(700, "Page", {100, 100, 400, 300}, &page_element));
  Element& text_element = editor.root.addChild("AXWindow");
  Window& text = desktop.addWindow(windowFor(800, "Text", {0, 0, 200, 200}, &text_element));
  Texts heard;
  Listener browser_listener{"browser", heard};
  Listener editor_listener{"editor", heard};
};

// --- Time. ---

TEST_F(DesktopTest, EffectsRunInTheOrderOfTheirTimesAndThenOfTheirScheduling) {
  std::vector<std::pair<std::string, Seconds>> ran;
  const auto note = [&](const std::string& name) {
    return [&ran, &desktop = desktop, name] { ran.emplace_back(name, desktop.now()); };
  };
  desktop.schedule(2, note("late"));
  desktop.schedule(1, note("first"));
  desktop.schedule(1, [&] {
    note("second")();
    desktop.schedule(0, note("fourth"));
  });
  desktop.schedule(1, note("third"));

  EXPECT_EQ(desktop.nextDeadline(), 1);
  desktop.advanceTo(1.5);
  using Ran = std::vector<std::pair<std::string, Seconds>>;
  EXPECT_EQ(ran, (Ran{{"first", 1}, {"second", 1}, {"third", 1}, {"fourth", 1}}));
  EXPECT_EQ(desktop.now(), 1.5);
  EXPECT_EQ(desktop.nextDeadline(), 2);
  desktop.advanceTo(2);
  EXPECT_EQ(ran.back(), (std::pair<std::string, Seconds>{"late", 2}));
  EXPECT_EQ(desktop.nextDeadline(), std::nullopt);
}

TEST_F(DesktopTest, TimeNeverMovesBack) {
  desktop.advanceTo(3);
  desktop.advanceTo(1);
  EXPECT_EQ(desktop.now(), 3);
}

// --- Elements. ---

TEST_F(DesktopTest, StructureAnswersRoleParentChildrenAndFrame) {
  Element& button = page_element.addChild("AXButton");
  button.setFrame({1, 2, 30, 40});
  EXPECT_EQ(copy(button.id(), "AXRole").value, Value("AXButton"));
  EXPECT_EQ(copy(button.id(), "AXParent").value, Value(page_element.id()));
  EXPECT_EQ(copy(page_element.id(), "AXChildren").value, Value(List{button.id()}));
  EXPECT_EQ(copy(button.id(), "AXPosition").value, Value(Point{1, 2}));
  EXPECT_EQ(copy(button.id(), "AXSize").value, Value(Size{30, 40}));
  const Reply none = copy(button.id(), "AXChildren");
  EXPECT_EQ(none.error, ax::success);
  EXPECT_EQ(none.value, Value(List{}));
}

TEST_F(DesktopTest, AnAttributeIsUnsupportedOrEmptyOrThere) {
  Element& field = page_element.addChild("AXTextField");
  field.set("AXDescription", Value());
  field.set("AXValue", "text");
  EXPECT_EQ(copy(field.id(), "AXTitle").error, ax::attributeUnsupported);
  EXPECT_EQ(copy(field.id(), "AXPosition").error, ax::attributeUnsupported);
  EXPECT_EQ(copy(field.id(), "AXDescription").error, ax::noValue);
  EXPECT_EQ(copy(field.id(), "AXValue").value, Value("text"));
  field.clear("AXValue");
  EXPECT_EQ(copy(field.id(), "AXValue").error, ax::attributeUnsupported);
}

TEST_F(DesktopTest, OnlyWhatIsSettableCanBeSet) {
  Element& field = page_element.addChild("AXTextField");
  field.set("AXValue", "before");
  const SetAttribute request{field.id(), "AXValue", "after"};
  EXPECT_EQ(desktop.answer(request).error, ax::attributeUnsupported);
  EXPECT_EQ(copy(field.id(), "AXValue").value, Value("before"));
  field.makeSettable("AXValue", [&](const Value& value) {
    field.set("AXValue", value);
    return ax::success;
  });
  EXPECT_EQ(desktop.answer(request).error, ax::success);
  EXPECT_EQ(copy(field.id(), "AXValue").value, Value("after"));
}

TEST_F(DesktopTest, AnActionMayRemoveItsOwnElement) {
  Element& button = page_element.addChild("AXButton");
  const ElementId id = button.id();
  button.addAction("AXPress", [this] {
    page_element.removeChildren();
    return ax::cannotComplete;
  });
  EXPECT_EQ(desktop.answer(CopyActionNames{id}).value, Value(List{"AXPress"}));
  EXPECT_EQ(desktop.answer(PerformAction{id, "AXCancel"}).error, ax::actionUnsupported);
  EXPECT_EQ(desktop.answer(PerformAction{id, "AXPress"}).error, ax::cannotComplete);
  EXPECT_EQ(desktop.answer(PerformAction{id, "AXPress"}).error, ax::invalidElement);
}

TEST_F(DesktopTest, ARebuiltElementHasANewNumberAndTheOldOneIsStale) {
  Element& row = page_element.addChild("AXRow");
  const ElementId cell = row.addChild("AXCell").id();
  const ElementId old = row.id();
  page_element.removeChild(row);
  Element& rebuilt = page_element.addChild("AXRow");
  EXPECT_FALSE(rebuilt.id() == old || rebuilt.id() == cell);
  EXPECT_EQ(copy(old, "AXRole").error, ax::invalidElement);
  EXPECT_EQ(copy(cell, "AXRole").error, ax::invalidElement);
  EXPECT_EQ(copy(rebuilt.id(), "AXRole").error, ax::success);
}

// --- Windows. ---

TEST_F(DesktopTest, AWindowOfABackgroundApplicationOpensBehindTheFrontmostOne) {
  desktop.addWindow(windowFor(700, "Panel", {0, 0, 10, 10}));
  EXPECT_EQ(titles(), (Texts{"Text", "Panel", "Page"}));
  desktop.addWindow(windowFor(800, "Notes", {0, 0, 10, 10}));
  EXPECT_EQ(titles(), (Texts{"Notes", "Text", "Panel", "Page"}));
}

TEST_F(DesktopTest, AnApplicationComesForwardWithTheWindowsThatAreDrawnForIt) {
  desktop.addProcess({900, "Panel Service", "/panel-service", false, 700});
  desktop.addWindow(windowFor(900, "Panel", {0, 0, 10, 10}));
  EXPECT_EQ(titles(), (Texts{"Text", "Panel", "Page"}));
  desktop.setFrontmost(700);
  EXPECT_EQ(titles(), (Texts{"Panel", "Page", "Text"}));
}

TEST_F(DesktopTest, ClosingAWindowClosesItsSheetsAndMakesTheirElementsStale) {
  Element& sheet = page_element.addChild("AXSheet");
  const ElementId sheet_id = sheet.id();
  const ElementId page_id = page_element.id();
  desktop.addWindow(windowFor(700, "Sheet", {0, 0, 10, 10}, &sheet));
  desktop.removeWindow(page.number);
  EXPECT_EQ(titles(), Texts{"Text"});
  EXPECT_EQ(copy(sheet_id, "AXRole").error, ax::invalidElement);
  EXPECT_EQ(copy(page_id, "AXRole").error, ax::invalidElement);
}

TEST_F(DesktopTest, RaisingAWindowKeepsItsSheetInFrontOfIt) {
  Element& other_element = browser.root.addChild("AXWindow");
  Element& sheet = page_element.addChild("AXSheet");
  desktop.addWindow(windowFor(700, "Sheet", {0, 0, 10, 10}, &sheet));
  desktop.addWindow(windowFor(700, "Other", {0, 0, 10, 10}, &other_element));
  EXPECT_EQ(titles(), (Texts{"Text", "Other", "Sheet", "Page"}));
  EXPECT_EQ(desktop.answer(PerformAction{page_element.id(), "AXRaise"}).error, ax::success);
  EXPECT_EQ(titles(), (Texts{"Sheet", "Page", "Text", "Other"}));
}

TEST_F(DesktopTest, AnApplicationAnswersForItsWindows) {
  const ElementId app = browser.root.id();
  EXPECT_EQ(app, (ElementId{700, 0}));
  Element& other = browser.root.addChild("AXWindow");
  const std::uint32_t number =
      desktop.addWindow(windowFor(700, "Other", {0, 0, 10, 10}, &other)).number;
  desktop.addWindow(windowFor(700, "Unseen", {0, 0, 10, 10}));
  Element& sheet = page_element.addChild("AXSheet");
  Window& sheet_window = desktop.addWindow(windowFor(700, "Sheet", {0, 0, 10, 10}, &sheet));
  const ElementId sheet_id = sheet.id();

  EXPECT_EQ(copy(app, "AXTitle").value, Value("Browser"));
  EXPECT_EQ(copy(app, "AXRole").value, Value("AXApplication"));
  EXPECT_EQ(copy(app, "AXWindows").value, Value(List{other.id(), page_element.id()}));
  EXPECT_EQ(copy(app, "AXMainWindow").value, Value(other.id()));
  EXPECT_EQ(copy(app, "AXFocusedWindow").value, Value(sheet_id));
  browser.focused_window = page.number;
  EXPECT_EQ(copy(app, "AXFocusedWindow").value, Value(page_element.id()));
  desktop.findWindow(number)->on_screen = false;
  EXPECT_EQ(copy(app, "AXWindows").value, Value(List{page_element.id()}));
  sheet_window.on_screen = false;
  page.on_screen = false;
  EXPECT_EQ(copy(app, "AXWindows").value, Value(List{}));
  EXPECT_EQ(copy(app, "AXFocusedWindow").error, ax::noValue);
  EXPECT_EQ(copy(app, "AXMainWindow").error, ax::noValue);
}

// --- The way of events. ---

TEST_F(DesktopTest, AKeyPostedToAProcessReachesThatProcessAlone) {
  desktop.answer(keyTo(700, 36));
  EXPECT_EQ(heard, Texts{"browser key 36 to process"});
}

TEST_F(DesktopTest, AKeyPostedToTheSessionReachesTheFrontmostApplication) {
  desktop.answer(keyTo({}, 53));
  desktop.setFrontmost(700);
  desktop.answer(keyTo({}, 36));
  desktop.setFrontmost(std::nullopt);
  desktop.answer(keyTo({}, 36));
  EXPECT_EQ(heard, (Texts{"editor key 53 from session", "browser key 36 from session"}));
}

TEST_F(DesktopTest, AnEventPostedToNobodyIsSwallowed) {
  EXPECT_EQ(desktop.answer(keyTo(4321, 36)).error, ax::success);
  EXPECT_EQ(desktop.answer(mouseTo(4321, {150, 150})).error, ax::success);
  EXPECT_EQ(desktop.answer(mouseTo({}, {1400, 800})).error, ax::success);
  EXPECT_EQ(heard, Texts{});
}

TEST_F(DesktopTest, AnEventThatAReceiverLeavesGoesToTheNextOne) {
  Listener above{"above", heard, false};
  browser.receivers = {&above, &browser_listener};
  desktop.answer(keyTo(700, 1));
  EXPECT_EQ(heard, (Texts{"above key 1 to process", "browser key 1 to process"}));
}

TEST_F(DesktopTest, AMouseEventPostedToAProcessReachesItsWindowBehindAnother) {
  desktop.answer(mouseTo(700, {150, 150}));
  desktop.answer(mouseTo(700, {150, 150}, 2));
  desktop.answer(mouseTo(700, {50, 50}));
  EXPECT_EQ(heard,
            (Texts{"browser mouse 1 in Page to process", "browser mouse 2 in Page to process"}));
  EXPECT_EQ(desktop.frontmost(), 800);
}

TEST_F(DesktopTest, AMouseEventPostedToTheSessionReachesTheTopmostWindow) {
  desktop.answer(mouseTo({}, {150, 150}));
  EXPECT_EQ(heard, Texts{"editor mouse 1 in Text from session"});
}

TEST_F(DesktopTest, AClickThroughTheSessionBringsTheApplicationForward) {
  desktop.answer(mouseTo({}, {450, 350}));
  EXPECT_EQ(heard, Texts{"browser mouse 1 in Page from session"});
  EXPECT_EQ(desktop.frontmost(), 700);
  EXPECT_EQ(titles(), (Texts{"Page", "Text"}));
}

TEST_F(DesktopTest, AWindowOnAnotherSpaceIsNotHit) {
  text.on_screen = false;
  desktop.answer(mouseTo({}, {150, 150}));
  EXPECT_EQ(heard, Texts{"browser mouse 1 in Page from session"});
}

using DesktopDeathTest = DesktopTest;

TEST_F(DesktopDeathTest, AMouseEventThatIsNotModelledNamesItself) {
  EXPECT_DEATH(desktop.answer(mouseTo(700, {150, 150}, 5)), "not modelled: mouse event of type 5");
}

// --- The workspace. ---

TEST_F(DesktopTest, ActivationBringsAnApplicationForwardAfterADelay) {
  EXPECT_EQ(desktop.answer(AskFrontmost{}).value, Value(800.0));
  EXPECT_EQ(desktop.answer(Activate{700}).value, Value(true));
  EXPECT_EQ(desktop.frontmost(), 800);
  desktop.advanceTo(0.05);
  EXPECT_EQ(desktop.answer(AskFrontmost{}).value, Value(700.0));
  EXPECT_EQ(desktop.answer(Activate{4321}).value, Value(false));
}

TEST_F(DesktopTest, AnApplicationIsRunningOrTerminatedOrUnknown) {
  desktop.addProcess({900, "Panel Service", "/panel-service", false, 700});
  desktop.addProcess(application(901, "Forgotten"));
  desktop.addProcess(application(902, "Remembered"));
  desktop.terminateProcess(901, false);
  desktop.terminateProcess(902, true);
  EXPECT_EQ(desktop.answer(AskRunning{700}).value, Value(true));
  EXPECT_EQ(desktop.answer(AskRunning{900}).value, Value());
  EXPECT_EQ(desktop.answer(AskRunning{901}).value, Value());
  EXPECT_EQ(desktop.answer(AskRunning{902}).value, Value(false));
  EXPECT_EQ(desktop.answer(AskRunning{4321}).value, Value());
  EXPECT_EQ(desktop.answer(Activate{902}).value, Value(false));
}

TEST_F(DesktopTest, AProcessThatEndsTakesItsWindowsAndElementsAlong) {
  const ElementId window = text_element.id();
  desktop.terminateProcess(800, true);
  EXPECT_EQ(copy(window, "AXRole").error, ax::invalidElement);
  EXPECT_EQ(copy({800, 0}, "AXRole").error, ax::cannotComplete);
  EXPECT_EQ(copy({4321, 0}, "AXRole").error, ax::cannotComplete);
  EXPECT_EQ(titles(), Texts{"Page"});
  EXPECT_EQ(desktop.frontmost(), 700);
  desktop.terminateProcess(700, true);
  EXPECT_EQ(desktop.answer(AskFrontmost{}).value, Value());
}

TEST_F(DesktopTest, SettingFrontmostOnAnApplicationElementActivatesIt) {
  const ElementId app = browser.root.id();
  EXPECT_EQ(copy(app, "AXFrontmost").value, Value(false));
  EXPECT_EQ(desktop.answer(SetAttribute{app, "AXFrontmost", "yes"}).error, ax::illegalArgument);
  EXPECT_EQ(desktop.answer(SetAttribute{app, "AXFrontmost", true}).error, ax::success);
  desktop.advanceTo(1);
  EXPECT_EQ(copy(app, "AXFrontmost").value, Value(true));
}

TEST_F(DesktopTest, ScreensAreAnsweredMainFirst) {
  desktop.setScreens({{0, 0, 1512, 982}, {1512, -98, 1920, 1080}});
  EXPECT_EQ(desktop.answer(AskScreens{}).value,
            Value(List{List{0.0, 0.0, 1512.0, 982.0}, List{1512.0, -98.0, 1920.0, 1080.0}}));
}

// In the order: left, right and other button, key.
std::vector<double> pressesOn(Desktop& desktop) {
  std::vector<double> presses;
  for (const std::uint32_t type : {1U, 3U, 25U, 10U}) {
    presses.push_back(std::get<double>(desktop.answer(AskPresses{type}).value));
  }
  return presses;
}

TEST_F(DesktopTest, WhatAPersonPressesIsCountedByItsType) {
  using Counts = std::vector<double>;
  EXPECT_EQ(pressesOn(desktop), (Counts{0, 0, 0, 0}));
  for (const bool down : {true, false, true}) {
    desktop.postKey(KeyEvent{5, down, 0, {}}, {}, Origin::person);
  }
  for (const std::uint32_t type : {1U, 2U}) {
    desktop.postMouse(MouseEvent{type, {450, 350}, 1}, {}, Origin::person);
  }
  EXPECT_EQ(pressesOn(desktop), (Counts{1, 0, 0, 2}));
  EXPECT_EQ(desktop.price(AskPresses{}), 0);
}

TEST_F(DesktopTest, WhatProgramsPostIsNotCountedAsPressed) {
  for (const std::optional<Pid> target : {std::optional<Pid>(700), std::optional<Pid>()}) {
    desktop.answer(keyTo(target, 36));
    desktop.answer(mouseTo(target, {450, 350}));
    desktop.postKey(KeyEvent{5, true, 0, {}}, target, Origin::script);
    desktop.postMouse(MouseEvent{1, {450, 350}, 1}, target, Origin::script);
  }
  EXPECT_EQ(pressesOn(desktop), (std::vector<double>{0, 0, 0, 0}));
}

TEST_F(DesktopTest, PermissionsAreGivenUnlessAFaultTakesThem) {
  EXPECT_EQ(desktop.answer(AskTrust{}).value, Value(true));
  EXPECT_EQ(desktop.answer(AskScreenCapture{}).value, Value(true));
  desktop.faults().untrusted = true;
  EXPECT_EQ(desktop.answer(AskTrust{}).value, Value(false));
  EXPECT_EQ(desktop.answer(AskScreenCapture{}).value, Value(true));
  desktop.faults() = {};
  desktop.faults().screen_recording_denied = true;
  EXPECT_EQ(desktop.answer(AskTrust{}).value, Value(true));
  EXPECT_EQ(desktop.answer(AskScreenCapture{}).value, Value(false));
}

TEST_F(DesktopTest, AutomationIsToldOfApplicationsThatRun) {
  const auto automationOf = [&](const char* bundle) {
    return desktop.answer(AskAutomation{bundle}).value;
  };
  EXPECT_EQ(automationOf("com.apple.finder"), Value(-600.0));
  desktop.addProcess(
      {.pid = 250, .name = "Finder", .command = "", .application = true, .host = {}});
  EXPECT_EQ(automationOf("com.apple.finder"), Value(0.0));
  EXPECT_EQ(automationOf("com.apple.systemevents"), Value(-600.0));
  EXPECT_EQ(automationOf("org.example.unknown"), Value(-600.0));
  desktop.faults().automation_unasked = {"Finder"};
  EXPECT_EQ(automationOf("com.apple.finder"), Value(-1744.0));
  desktop.faults().automation_denied = {"Finder", "System Events"};
  EXPECT_EQ(automationOf("com.apple.finder"), Value(-1743.0));
  EXPECT_EQ(automationOf("com.apple.systemevents"), Value(-600.0));
  desktop.terminateProcess(250, true);
  EXPECT_EQ(automationOf("com.apple.finder"), Value(-600.0));
}

TEST_F(DesktopDeathTest, TheCountOfAnEventThatIsNoPressNamesItself) {
  EXPECT_DEATH(desktop.answer(AskPresses{2}), "the count of events of type 2");
}

TEST_F(DesktopTest, DisplayNamesFollowTheVolumeAndTheLanguage) {
  const auto name = [&](const std::string& path) {
    return std::get<std::string>(desktop.answer(AskDisplayName{path}).value);
  };
  EXPECT_EQ(name("/"), "Macintosh HD");
  EXPECT_EQ(name("/Volumes/Backup"), "Backup");
  EXPECT_EQ(name("/Users/"), "Users");
  EXPECT_EQ(name("/Users/me/Tax 2025:26"), "Tax 2025/26");
  desktop.addVolume("/", "Data");
  EXPECT_EQ(name("/"), "Data");

  desktop.setLanguage(Language::simplifiedChinese);
  EXPECT_EQ(name("/Users"), "用户");
  EXPECT_EQ(name("/Applications"), "应用程序");
  EXPECT_EQ(name("/Library"), "资源库");
  EXPECT_EQ(name("/System"), "系统");
  EXPECT_EQ(name("/Users/me/Desktop"), "桌面");
  EXPECT_EQ(name("/Users/me/Documents/"), "文稿");
  EXPECT_EQ(name("/Users/me/Downloads"), "下载");
  EXPECT_EQ(name("/Users/me"), "me");
  EXPECT_EQ(name("/Users/Desktop"), "Desktop");
  EXPECT_EQ(name("/Users/me/Documents/Desktop"), "Desktop");
  EXPECT_EQ(name("/srv/Users"), "Users");

  desktop.setLanguage(Language::german);
  EXPECT_EQ(name("/Users"), "Benutzer");
  EXPECT_EQ(name("/Users/me/Documents"), "Dokumente");
}

// --- Prices and faults. ---

TEST_F(DesktopTest, EveryRequestHasItsPrice) {
  Element& button = page_element.addChild("AXButton");
  button.addAction("AXPress", [] { return ax::success; });
  button.addAction("AXShowMenu", [] { return ax::success; });
  button.addAction("AXPick", [] { return ax::success; });
  const ElementId id = button.id();
  EXPECT_EQ(desktop.price(CopyAttribute{id, "AXRole"}), 0.0003);
  EXPECT_EQ(desktop.price(SetAttribute{id, "AXValue", "x"}), 0.0003);
  EXPECT_EQ(desktop.price(CopyActionNames{id}), 0.0003);
  EXPECT_EQ(desktop.price(PerformAction{id, "AXPress"}), 0.1);
  EXPECT_EQ(desktop.price(PerformAction{id, "AXShowMenu"}), 0.0003);
  EXPECT_EQ(desktop.price(PerformAction{id, "AXPick"}), 0.0003);
  EXPECT_EQ(desktop.price(PerformAction{id, "AXUnknown"}), 0.0003);
  EXPECT_EQ(desktop.price(keyTo(700, 36)), 0.0001);
  EXPECT_EQ(desktop.price(AskFrontmost{}), 0);
  EXPECT_EQ(desktop.price(Activate{700}), 0.05);
}

TEST_F(DesktopTest, ARequestToAnElementThatIsBeingBuiltWaitsForIt) {
  page_element.setReadableFrom(0.3);
  EXPECT_EQ(desktop.price(CopyAttribute{page_element.id(), "AXRole"}), 0.3);
  desktop.advanceTo(0.25);
  EXPECT_DOUBLE_EQ(desktop.price(CopyAttribute{page_element.id(), "AXRole"}), 0.05);
  desktop.advanceTo(0.3);
  EXPECT_EQ(desktop.price(CopyAttribute{page_element.id(), "AXRole"}), 0.0003);
}

TEST_F(DesktopTest, RequestsToASilentProcessEndAfterTheTimeoutWhileOthersAreAnswered) {
  desktop.faults().silent_processes = {700};
  EXPECT_EQ(desktop.price(CopyAttribute{{700, 0}, "AXWindows"}), 6);
  EXPECT_EQ(desktop.price(PerformAction{{700, 0}, "AXPress"}), 6);
  desktop.setRequestTimeout(2.5);
  EXPECT_EQ(desktop.price(CopyAttribute{{700, 0}, "AXWindows"}), 2.5);
  EXPECT_EQ(desktop.price(CopyAttribute{{800, 0}, "AXWindows"}), 0.0003);
  EXPECT_EQ(copy({700, 0}, "AXWindows").error, ax::cannotComplete);
}

TEST_F(DesktopTest, EachPriceIsWhatTheDesktopSays) {
  desktop.prices() = {
      .request = 1, .press = 2, .windowList = 3, .event = 4, .activation = 5, .comingForward = 6};
  page_element.addAction("AXPress", [] { return ax::success; });
  EXPECT_EQ(desktop.price(CopyAttribute{page_element.id(), "AXRole"}), 1);
  EXPECT_EQ(desktop.price(PerformAction{page_element.id(), "AXPress"}), 2);
  EXPECT_EQ(desktop.price(AskWindows{}), 3);
  EXPECT_EQ(desktop.price(keyTo(700, 36)), 4);
  EXPECT_EQ(desktop.price(Activate{700}), 5);
  desktop.activate(700, Origin::tool);
  desktop.advanceTo(5.9);
  EXPECT_EQ(desktop.frontmost(), 800);
  desktop.advanceTo(6);
  EXPECT_EQ(desktop.frontmost(), 700);
}

TEST_F(DesktopTest, SeveralAttributesAreAnsweredInOneRequestEachAtItsPosition) {
  page_element.set("AXTitle", std::string("Page"));
  page_element.set("AXHelp", std::monostate{});
  const CopyAttributes request{page_element.id(), {"AXTitle", "AXNone", "AXRole", "AXHelp"}};
  EXPECT_EQ(desktop.price(request), 0.0003);
  const auto lines = desktop.record().lines().size();
  const Reply reply = desktop.answer(request);
  EXPECT_EQ(reply.error, ax::success);
  EXPECT_EQ(reply.value, Value(List{std::string("Page"), AttributeError{ax::attributeUnsupported},
                                    page_element.role(), AttributeError{ax::noValue}}));
  ASSERT_EQ(desktop.record().lines().size(), lines + 1);
  const auto& entry = std::get<AccessibilityRequest>(desktop.record().lines().back().entry);
  EXPECT_EQ(entry.verb, AccessibilityRequest::Verb::copySeveral);
  EXPECT_EQ(entry.names, request.names);
  EXPECT_EQ(entry.error, ax::success);
}

TEST_F(DesktopTest, SeveralAttributesWaitFailAndAreRefusedAsOneIs) {
  const CopyAttributes request{page_element.id(), {"AXRole", "AXChildren"}, 0.5};
  page_element.setReadableFrom(0.3);
  EXPECT_EQ(desktop.price(request), 0.3);
  page_element.setReadableFrom(9);
  EXPECT_EQ(desktop.price(request), 0.5) << "its sender's patience";
  EXPECT_EQ(desktop.answer(request).error, ax::cannotComplete);
  page_element.setReadableFrom(0);
  EXPECT_EQ(desktop.answer(CopyAttributes{{700, 9999}, {"AXRole"}}).error, ax::invalidElement);

  using Verb = AccessibilityRequest::Verb;
  desktop.faults().refused_requests = {{Verb::copy, ax::failure, "AXChildren"}};
  EXPECT_EQ(desktop.answer(request).value,
            Value(List{page_element.role(), AttributeError{ax::failure}}));
  desktop.faults().refused_requests = {{Verb::copy, ax::failure}};
  EXPECT_EQ(desktop.answer(request).error, ax::failure);
  desktop.faults().refused_requests = {{Verb::copySeveral, ax::notImplemented}};
  EXPECT_EQ(desktop.answer(request).error, ax::notImplemented);
  EXPECT_EQ(copy(page_element.id(), "AXRole").error, ax::success);
}

TEST_F(DesktopTest, APressThatTakesLongerThanItsSenderWaitsLandsAnyway) {
  int presses = 0;
  page_element.addAction("AXPress", [&] { return ++presses, ax::success; });
  desktop.setRequestTimeout(0.05);
  const PerformAction press{page_element.id(), "AXPress"};
  EXPECT_EQ(desktop.price(press), 0.05);
  EXPECT_EQ(desktop.answer(press).error, ax::cannotComplete);
  EXPECT_EQ(presses, 1);
}

TEST_F(DesktopTest, ABusyProcessAnswersWhenItHasTime) {
  desktop.faults().busy = {{700, 1, 4}, {700, 4, 5}};
  const CopyAttribute request{page_element.id(), "AXRole"};
  EXPECT_EQ(desktop.price(request), 0.0003) << "it is not busy yet";
  desktop.advanceTo(2);
  EXPECT_EQ(desktop.price(request), 3.0003) << "one time of work follows the other";
  EXPECT_EQ(desktop.price(CopyAttribute{text_element.id(), "AXRole"}), 0.0003) << "others are not";
  desktop.advanceTo(5.0003);
  EXPECT_EQ(desktop.answer(request).error, ax::success);
}

TEST_F(DesktopTest, RequestsToABusyProcessTimeOutAndItDoesWhatItWasAskedToAfterwards) {
  int presses = 0;
  page_element.addAction("AXPress", [&] { return ++presses, ax::success; });
  desktop.faults().busy = {{700, 0, 10}};
  const PerformAction press{page_element.id(), "AXPress"};
  EXPECT_EQ(desktop.price(press), 6);
  desktop.advanceTo(6);
  EXPECT_EQ(desktop.answer(press).error, ax::cannotComplete);
  EXPECT_EQ(desktop.answer(CopyAttribute{page_element.id(), "AXRole"}).error, ax::cannotComplete);
  EXPECT_EQ(presses, 0);
  desktop.advanceTo(10);
  EXPECT_EQ(presses, 1);
}

TEST_F(DesktopTest, EventsWaitUntilABusyProcessHasTime) {
  desktop.faults().busy = {{700, 0, 2}};
  desktop.answer(keyTo(700, 36));
  desktop.answer(PostEvent{MouseEvent{1, {300, 350}, 1}, 700});
  desktop.answer(keyTo(800, 53));
  EXPECT_EQ(heard, Texts{"editor key 53 to process"});
  desktop.advanceTo(2);
  EXPECT_EQ(heard, (Texts{"editor key 53 to process", "browser key 36 to process",
                          "browser mouse 1 in Page to process"}));
}

TEST_F(DesktopTest, ActivationIsRefusedToProgramsAndNotToSystemEvents) {
  desktop.faults().activation_refused = true;
  EXPECT_EQ(desktop.answer(Activate{700}).value, Value(true)) << "it answers as if it agreed";
  desktop.advanceTo(1);
  EXPECT_EQ(desktop.frontmost(), 800);
  desktop.activate(700, Origin::script);
  desktop.advanceTo(2);
  EXPECT_EQ(desktop.frontmost(), 700);
}

TEST_F(DesktopTest, AnApplicationOnAnotherSpaceShowsNothingUntilItComesForward) {
  ProcessOptions away = application(900, "Away");
  away.onOtherSpace = true;
  Process& process = desktop.addProcess(away);
  Element& element = process.root.addChild("AXWindow");
  desktop.addWindow(windowFor(900, "Far", {500, 500, 100, 100}, &element));
  const auto listed = [&] { return std::get<List>(desktop.answer(AskWindows{}).value).size(); };
  EXPECT_EQ(copy({900, 0}, "AXWindows").value, Value(List{}));
  EXPECT_EQ(copy({900, 0}, "AXChildren").value, Value(List{}));
  EXPECT_EQ(copy({900, 0}, "AXMainWindow").error, ax::noValue);
  EXPECT_EQ(desktop.windowAt({550, 550}), nullptr);
  EXPECT_EQ(listed(), 2U);
  desktop.setFrontmost(900);
  EXPECT_EQ(copy({900, 0}, "AXWindows").value, Value(List{element.id()}));
  EXPECT_EQ(copy({900, 0}, "AXChildren").value, Value(List{element.id()}));
  EXPECT_EQ(listed(), 3U);
}

TEST_F(DesktopTest, AReadIsGivenUpWhenTheProgramsPatienceEnds) {
  desktop.faults().silent_processes = {700};
  EXPECT_EQ(desktop.price(CopyAttribute{{700, 0}, "AXWindows", 0.5}), 0.5);
  text_element.setReadableFrom(2);
  const CopyAttribute early{text_element.id(), "AXRole", 0.5};
  EXPECT_EQ(desktop.price(early), 0.5);
  desktop.advanceTo(0.5);
  EXPECT_EQ(desktop.answer(early).error, ax::cannotComplete);
  desktop.advanceTo(1.75);
  EXPECT_EQ(desktop.price(early), 0.25);
  desktop.advanceTo(2);
  EXPECT_EQ(desktop.answer(early).error, ax::success);
}

TEST_F(DesktopTest, TheWindowListHidesTitlesWithoutPermission) {
  desktop.findWindow(page.number)->layer = 3;
  const auto listed = [&] { return std::get<List>(desktop.answer(AskWindows{}).value); };
  const auto line = [](double number, double pid, const char* app, const Value& title, double layer,
                       const Rect& frame) {
    return Value(List{number, pid, app, title, layer, frame.x, frame.y, frame.width, frame.height});
  };
  const Rect pageFrame{100, 100, 400, 300};
  const Rect textFrame{0, 0, 200, 200};
  EXPECT_EQ(listed(), (List{line(text.number, 800, "Editor", "Text", 0, textFrame),
                            line(page.number, 700, "Browser", "Page", 3, pageFrame)}));
  desktop.faults().screen_recording_denied = true;
  EXPECT_EQ(listed(), (List{line(text.number, 800, "Editor", {}, 0, textFrame),
                            line(page.number, 700, "Browser", {}, 3, pageFrame)}));
  desktop.faults().window_list_hangs = true;
  EXPECT_EQ(desktop.price(AskWindows{}), never_answered_price);
}

TEST_F(DesktopTest, WithoutTrustEveryAccessibilityRequestFailsAndEventsAreDropped) {
  desktop.faults().untrusted = true;
  EXPECT_EQ(copy({700, 0}, "AXWindows").error, ax::cannotComplete);
  EXPECT_EQ(desktop.answer(CopyActionNames{{700, 0}}).error, ax::cannotComplete);
  desktop.answer(keyTo(700, 36));
  desktop.answer(mouseTo(700, {150, 150}));
  EXPECT_EQ(heard, Texts{});
  desktop.postKey(KeyEvent{36, true, 0, {}}, {}, Origin::person);
  EXPECT_EQ(heard, Texts{"editor key 36 from session"});
}

// --- The record. ---

TEST_F(DesktopTest, TheRecordCountsWhatTheToolDid) {
  copy(page_element.id(), "AXRole");
  desktop.answer(keyTo(700, 36));
  desktop.answer(keyTo({}, 36));
  desktop.answer(mouseTo(700, {150, 150}));
  desktop.answer(mouseTo({}, {450, 350}));  // brings the browser forward
  desktop.postKey(KeyEvent{5, true, 0, {}}, {}, Origin::script);
  desktop.postMouse(MouseEvent{1, {450, 350}, 1}, {}, Origin::person);
  const Record& record = desktop.record();
  EXPECT_EQ(record.accessibilityRequests(), 1u);
  EXPECT_EQ(record.keyEvents(), 2u);
  EXPECT_EQ(record.mouseEvents(), 2u);
  EXPECT_EQ(record.sessionEvents(), 2u);
  EXPECT_EQ(record.foregroundChanges(), 1u);  // the click; what the fixture starts with is none
}

TEST(DesktopRecordTest, EachEntryIsOneLineOfJson) {
  Desktop desktop;
  desktop.addProcess(application(700, "Browser"));
  Element& window = desktop.findProcess(700)->root.addChild("AXWindow");
  desktop.addWindow(windowFor(700, "Page", {0, 0, 100, 100}, &window));
  desktop.setFrontmost(700);
  window.addAction("AXPress", [&] {
    desktop.noteMilestone("panel opened");
    return ax::success;
  });
  desktop.installProgram("/bin/echo",
                         [](ProgramRun& run) { run.after(0.5, [&run] { run.end(3); }); });
  desktop.advanceTo(0.0003);
  desktop.answer(CopyAttribute{window.id(), "AXTitle"});
  desktop.answer(SetAttribute{window.id(), "AXSelectedRows", List{ElementId{700, 9}, 1.5}});
  desktop.answer(CopyActionNames{{700, 77}});
  desktop.answer(PerformAction{window.id(), "AXPress"});
  desktop.answer(PostEvent{KeyEvent{5, true, 0x120000, u"é\xD83D\xDE00"}, 700});
  desktop.answer(PostEvent{MouseEvent{1, {10.5, 20}, 2}, {}});
  desktop.answer(AskRunning{700});
  desktop.startProgram("/bin/echo", {"a", "\xFF"});
  desktop.advanceTo(0.6);
  desktop.answer(Activate{700});
  desktop.removeWindow(101);

  const std::string expected =
      R"({"at":0.0,"what":"window opened","number":101,"pid":700,"title":"Page"})"
      "\n"
      R"({"at":0.0,"what":"frontmost","from":null,"to":700})"
      "\n"
      R"({"at":0.0003,"what":"accessibility","verb":"copy","pid":700,"element":1,)"
      R"("role":"AXWindow","name":"AXTitle","error":-25205})"
      "\n"
      R"({"at":0.0003,"what":"accessibility","verb":"set","pid":700,"element":1,)"
      R"("role":"AXWindow","name":"AXSelectedRows","value":[{"pid":700,"element":9},1.5],)"
      R"("error":-25205})"
      "\n"
      R"({"at":0.0003,"what":"accessibility","verb":"action names","pid":700,"element":77,)"
      R"("role":"","error":-25202})"
      "\n"
      R"({"at":0.0003,"what":"accessibility","verb":"perform","pid":700,"element":1,)"
      R"("role":"AXWindow","name":"AXPress","error":0})"
      "\n"
      R"({"at":0.0003,"what":"milestone","text":"panel opened"})"
      "\n"
      R"({"at":0.0003,"what":"key","to":700,"keyCode":5,"down":true,"flags":1179648,)"
      R"("text":"é😀","by":"tool"})"
      "\n"
      R"({"at":0.0003,"what":"mouse","to":"session","type":1,"x":10.5,"y":20.0,)"
      R"("clickState":2,"by":"tool"})"
      "\n"
      R"({"at":0.0003,"what":"workspace","question":"running 700"})"
      "\n"
      R"({"at":0.0003,"what":"program started","program":1,"path":"/bin/echo",)"
      R"("arguments":["a","�"]})"
      "\n"
      R"({"at":0.5003,"what":"program ended","program":1,"path":"/bin/echo","status":3})"
      "\n"
      R"({"at":0.6,"what":"activation","pid":700,"by":"tool"})"
      "\n"
      R"({"at":0.6,"what":"window closed","number":101,"pid":700,"title":"Page"})"
      "\n";
  EXPECT_EQ(desktop.record().toText(), expected);
  EXPECT_EQ(desktop.record().toJson().size(), desktop.record().lines().size());
  EXPECT_EQ(desktop.record().milestones(), Texts{"panel opened"});
}

TEST(TextTest, EncodingsConvertBothWaysAndReplaceWhatIsMalformed) {
  EXPECT_EQ(utf16FromUtf8("aé中😀"), u"aé中😀");
  EXPECT_EQ(utf8FromUtf16(u"aé中😀"), "aé中😀");
  EXPECT_EQ(utf16FromUtf8("a\xFF"
                          "b"),
            u"a\xFFFD"
            u"b");
  EXPECT_EQ(utf8FromUtf16(std::u16string{u'a', char16_t{0xD800}, u'b'}),
            "a\xEF\xBF\xBD"
            "b");
}

}  // namespace
}  // namespace simulator::desktop
