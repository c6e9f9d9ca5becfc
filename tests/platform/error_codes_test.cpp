// Every platform function that can fail, made to fail in each way that its documentation names:
// what this program's readers, writers and events make of it. Nothing may be leaked on the way, and
// what a failed call left in an out-parameter may not be touched.
#include "platform/error_codes.h"

#include <gmock/gmock.h>

#include <functional>

#include "core/tables.h"
#include "platform/accessibility.h"
#include "platform/events.h"
#include "simulator/frameworks/faults.h"
#include "support/world.h"

namespace tessarine::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Texts = std::vector<std::string>;

// A window with a text field in which everything that this program reads has a value.
struct Rich {
  BareDesktop world;
  simulator::Element& window = world.addWindow("Page");
  simulator::Element& field = window.addChild("AXTextField");
  int presses = 0;
  std::vector<simulator::Value> written;

  Rich() {
    for (const char* name : {"Title", "Subrole", "Description", "Value", "Filename", "Help"}) {
      field.set(std::string("AX") + name, std::string("the ") + name);
    }
    field.set("AXFocused", true);
    field.set("AXTitleUIElement", window.id());
    field.set("AXURL", simulator::Url{"file:///a/b"});
    field.setFrame({10, 20, 300, 40});
    field.addChild("AXButton");
    field.addAction("AXPress", [this] { return ++presses, simulator::ax::success; });
    for (const char* attribute : {"AXValue", "AXFocused", "AXSelectedRows"}) {
      field.makeSettable(attribute, [this](const simulator::Value& value) {
        written.push_back(value);
        return simulator::ax::success;
      });
    }
    simulator::Element& sheet = window.addChild("AXSheet");
    sheet.set("AXTitle", "Sheet");
    simulator::Window attached;
    attached.owner = browserPid;
    attached.element = &sheet;
    world.process().focused_window = world.desktop.addWindow(attached).number;
  }
  Element handle() const { return world.handle(field); }
  Element app() const { return world.appHandle(); }
  void refuseAll(Verb verb, std::int32_t code) { refuse(world.desktop, verb, code); }
  void refuseOne(Verb verb, const std::string& name, std::int32_t code) {
    refuse(world.desktop, verb, code, name);
  }
};

std::string presence(const std::optional<Element>& element) {
  return element ? "an element" : "nothing";
}

std::string count(std::size_t number) {
  return std::to_string(number);
}

std::string text(const Rect& frame) {
  return testing::PrintToString(std::vector{frame.x, frame.y, frame.width, frame.height});
}

// --- AXUIElementCopyAttributeValue. ---

// What each reader makes of an attribute that has a value, and of one that cannot be read.
struct Reader {
  const char* name;
  std::function<std::string(const Element& field, const Element& app)> read;
  const char* value;
  const char* empty;
};

template <class Read>
auto ofField(const Read& read) {
  return [read](const Element& field, const Element&) -> std::string { return read(field); };
}

const std::vector<Reader> readers{
    {"axRole", ofField(axRole), "AXTextField", ""},
    {"axTitle", ofField(axTitle), "the Title", ""},
    {"axSubrole", ofField(axSubrole), "the Subrole", ""},
    {"axDescription", ofField(axDescription), "the Description", ""},
    {"axInputValue", ofField(axInputValue), "the Value", ""},
    {"fileNameAttribute", ofField(fileNameAttribute), "the Filename", ""},
    {"displayLabel", ofField(displayLabel), "the Title", ""},
    {"axString", ofField([](auto& field) { return axString(field, "AXHelp").value_or("nothing"); }),
     "the Help", "nothing"},
    {"axValue",
     ofField([](auto& field) { return axValue(field, "AXHelp") ? "a value" : "nothing"; }),
     "a value", "nothing"},
    {"axIsTrue", ofField([](auto& field) { return axIsTrue(field, "AXFocused") ? "true" : "not"; }),
     "true", "not"},
    {"axElementAttribute",
     ofField([](auto& field) { return presence(axElementAttribute(field, "AXTitleUIElement")); }),
     "an element", "nothing"},
    {"axParent", ofField([](auto& field) { return presence(axParent(field)); }), "an element",
     "nothing"},
    {"axChildren", ofField([](auto& field) { return count(axChildren(field).size()); }), "1", "0"},
    {"axFrame", ofField([](auto& field) { return text(axFrame(field)); }), "{ 10, 20, 300, 40 }",
     "{ 0, 0, 0, 0 }"},
    {"axURLPath", ofField([](auto& field) { return axURLPath(field).value_or("nothing"); }), "/a/b",
     "nothing"},
    {"focusedAndMainWindows",
     [](auto&, auto& app) { return count(focusedAndMainWindows(app).size()); }, "2", "0"},
    {"topLevelWindows", [](auto&, auto& app) { return count(topLevelWindows(app).size()); }, "2",
     "0"},
};

TEST(CopyAttributeValue, ReadsAsEmptyWhateverItsError) {
  for (const Reader& reader : readers) {
    for (const std::int32_t code : copyErrors) {
      SCOPED_TRACE(std::string(reader.name) + " " + std::to_string(code));
      Rich rich;
      const Element field = rich.handle();
      EXPECT_EQ(reader.read(field, rich.app()), reader.value);
      rich.refuseAll(Verb::copy, code);
      EXPECT_EQ(reader.read(field, rich.app()), reader.empty);
      rich.world.desktop.faults() = {};
      EXPECT_EQ(reader.read(field, rich.app()), reader.value) << "a failure is not remembered";
    }
  }
}

TEST(CopyAttributeValue, ReadsAsEmptyWhenItSucceedsWithoutAValue) {
  for (const Reader& reader : readers) {
    SCOPED_TRACE(reader.name);
    Rich rich;
    const Element field = rich.handle();
    rich.refuseAll(Verb::copy, simulator::ax::success);
    EXPECT_EQ(reader.read(field, rich.app()), reader.empty);
  }
}

TEST(CopyAttributeValue, AFailureOfOneAttributeLeavesTheOthers) {
  for (const std::int32_t code : copyErrors) {
    SCOPED_TRACE(code);
    const auto labelWithout = [code](const char* refused, const char* alsoMissing) {
      Rich rich;
      rich.field.clear(alsoMissing);
      const Element field = rich.handle();
      rich.refuseOne(Verb::copy, refused, code);
      return displayLabel(field);
    };
    EXPECT_EQ(labelWithout("AXTitle", ""), "the Value");
    EXPECT_EQ(labelWithout("AXTitle", "AXValue"), "the Description");
    EXPECT_EQ(labelWithout("AXValue", "AXTitle"), "the Description");
    EXPECT_EQ(labelWithout("AXDescription", ""), "the Title");
  }
}

TEST(CopyAttributeValue, AFrameNeedsBothOfItsAttributes) {
  for (const std::int32_t code : copyErrors) {
    for (const char* refused : {"AXPosition", "AXSize"}) {
      Rich rich;
      const Element field = rich.handle();
      rich.refuseOne(Verb::copy, refused, code);
      EXPECT_EQ(axFrame(field), Rect()) << refused << " " << code;
    }
  }
}

// The window is main, its sheet focused and not among the application's windows.
TEST(CopyAttributeValue, WindowsThatCanBeReadAreListed) {
  const auto titlesWithout = [](const char* refused, std::int32_t code) {
    Rich rich;
    rich.refuseOne(Verb::copy, refused, code);
    Texts titles;
    for (const Element& window : topLevelWindows(rich.app())) titles.push_back(axTitle(window));
    return titles;
  };
  for (const std::int32_t code : copyErrors) {
    SCOPED_TRACE(code);
    EXPECT_THAT(titlesWithout("AXWindows", code), ElementsAre("Sheet", "Page"));
    EXPECT_THAT(titlesWithout("AXFocusedWindow", code), ElementsAre("Page"));
    EXPECT_THAT(titlesWithout("AXMainWindow", code), ElementsAre("Page", "Sheet"));
  }
}

// --- AXUIElementSetAttributeValue. ---

TEST(SetAttributeValue, AnswersTheErrorAndWritesNothing) {
  for (const std::int32_t code : setErrors) {
    SCOPED_TRACE(code);
    Rich rich;
    const Element field = rich.handle();
    rich.refuseAll(Verb::set, code);
    EXPECT_EQ(setText(field, "AXValue", "/文稿"), code);
    EXPECT_EQ(setTrue(field, "AXFocused"), code);
    EXPECT_EQ(setElements(field, "AXSelectedRows", {field, rich.app()}), code);
    EXPECT_THAT(rich.written, IsEmpty());
    rich.world.desktop.faults() = {};
    EXPECT_EQ(setText(field, "AXValue", "/文稿"), 0);
    EXPECT_EQ(rich.written, std::vector<simulator::Value>{"/文稿"});
  }
}

// --- AXUIElementCopyActionNames. ---

TEST(CopyActionNames, NamesNoActionsWhateverItsError) {
  for (const std::int32_t code : actionNamesErrors) {
    SCOPED_TRACE(code);
    Rich rich;
    const Element field = rich.handle();
    EXPECT_THAT(axActions(field), ElementsAre("AXPress"));
    rich.refuseAll(Verb::actionNames, code);
    EXPECT_THAT(axActions(field), IsEmpty());
  }
}

TEST(CopyActionNames, NamesNoActionsWhenItSucceedsWithoutAList) {
  Rich rich;
  const Element field = rich.handle();
  rich.refuseAll(Verb::actionNames, simulator::ax::success);
  EXPECT_THAT(axActions(field), IsEmpty());
}

// --- AXUIElementPerformAction. ---

std::pair<ToolError::Case, std::string> failureOf(const std::string& action, const Element& on) {
  try {
    perform(action, on);
  } catch (const ToolError& error) {
    return {error.errorCase(), error.message()};
  }
  ADD_FAILURE() << "nothing was thrown";
  return {};
}

TEST(PerformAction, NamesTheActionAndTheError) {
  for (const auto& [code, text] : std::vector<std::pair<std::int32_t, std::string>>{
           {simulator::ax::actionUnsupported, "-25206"},
           {simulator::ax::illegalArgument, "-25201"},
           {simulator::ax::invalidElement, "-25202"},
           {simulator::ax::cannotComplete, "-25204"},
           {simulator::ax::notImplemented, "-25208"},
           {simulator::ax::apiDisabled, "-25211"}}) {
    Rich rich;
    const Element field = rich.handle();
    rich.refuseAll(Verb::perform, code);
    for (const std::string action : {"AXPress", "AXShowMenu"}) {
      EXPECT_EQ(failureOf(action, field), std::pair(ToolError::Case::actionFailed,
                                                    "AX action " + action + " failed: " + text));
    }
    EXPECT_FALSE(tryAction("AXPress", field)) << code;
    EXPECT_EQ(rich.presses, 0);
  }
}

TEST(PerformAction, OnlyTheErrorDecidesWhateverWasDone) {
  for (const std::int32_t code : performErrors) {
    Rich rich;
    rich.field.addAction("AXOpen", [&] { return ++rich.presses, code; });
    const Element field = rich.handle();
    EXPECT_FALSE(tryAction("AXOpen", field)) << code;
    EXPECT_EQ(failureOf("AXOpen", field).second,
              "AX action AXOpen failed: " + std::to_string(code));
    EXPECT_EQ(rich.presses, 2);
  }
  Rich idle;
  const Element field = idle.handle();
  idle.refuseAll(Verb::perform, simulator::ax::success);
  EXPECT_TRUE(tryAction("AXPress", field));
  EXPECT_NO_THROW(perform("AXPress", field));
  EXPECT_EQ(idle.presses, 0);
}

// --- CGEventCreateMouseEvent, CGEventCreateKeyboardEvent. ---

// No event of the function is created, or only not those of these calls, counted from 1.
simulator::FrameworkFaults nullFrom(const std::string& function, std::set<int> calls = {}) {
  return {.answers_null = [=, made = 0](const std::string& called) mutable {
    if (called != function) return false;
    ++made;
    return calls.empty() || calls.contains(made);
  }};
}

const std::string mouse = "CGEventCreateMouseEvent";
const std::string keyboard = "CGEventCreateKeyboardEvent";

// What `act` posts while calls of the function answer NULL, and how long it takes.
template <class Act>
void expectPosted(const std::string& function, const std::set<int>& calls, const Act& act,
                  const Texts& events, double seconds) {
  BareDesktop bare;
  const simulator::FaultyFrameworks faulty(nullFrom(function, calls));
  act();
  EXPECT_EQ(postedEvents(bare.desktop.record()), events);
  EXPECT_NEAR(bare.now(), seconds, 1e-9);
}

TEST(EventCreation, AMouseEventThatIsNotCreatedIsSkippedAndItsPauseKept) {
  for (const bool global : {false, true}) {
    const std::string target = global ? "session" : "812";
    const std::string down = "0.000 mouse down 1 (10, 20) -> " + target;
    const std::string up = "0.050 mouse up 1 (10, 20) -> " + target;
    const auto click = [global] { postMouseClick(812, {10, 20}, 1, global); };
    expectPosted(mouse, {}, click, {}, 0.05);
    expectPosted(mouse, {1}, click, {up}, 0.05);
    expectPosted(mouse, {2}, click, {down}, 0.05);
    expectPosted(keyboard, {}, click, {down, up}, 0.05);
  }
}

TEST(EventCreation, ADoubleClickKeepsItsRhythm) {
  const auto click = [] { doubleClickPoint(812, {1, 2}); };
  expectPosted(mouse, {}, click, {}, 0.16);
  expectPosted(mouse, {2, 3}, click,
               {"0.000 mouse down 1 (1, 2) -> 812", "0.160 mouse up 2 (1, 2) -> 812"}, 0.16);
}

TEST(EventCreation, AKeyEventThatIsNotCreatedIsSkippedAndItsPauseKept) {
  const std::string down = "0.000 key 5+120000 text=打 down -> 812";
  const std::string up = "0.020 key 5+120000 text=打 up -> 812";
  const auto tap = [] { tapKey(812, keyCodeG, commandShiftFlags, u"打", 0.3); };
  expectPosted(keyboard, {}, tap, {}, 0.32);
  expectPosted(keyboard, {1}, tap, {up}, 0.32);
  expectPosted(keyboard, {2}, tap, {down}, 0.32);
  expectPosted(mouse, {}, tap, {down, up}, 0.32);
}

TEST(EventCreation, AGlobalKeyEventThatIsNotCreatedIsSkippedAndItsPauseKept) {
  const auto tap = [] { tapGlobalKey(keyCodeEscape); };
  expectPosted(keyboard, {}, tap, {}, 0.07);
  expectPosted(keyboard, {1}, tap, {"0.020 key 53 up -> session"}, 0.07);
  expectPosted(keyboard, {2}, tap, {"0.000 key 53 down -> session"}, 0.07);
}

TEST(EventCreation, TypingGoesOnWithTheNextScalar) {
  const auto type = [] { typeUnicodeText(812, "a打", 0.1); };
  expectPosted(keyboard, {}, type, {}, 0.24);
  expectPosted(keyboard, {1, 2}, type,
               {"0.120 key 0 text=打 down -> 812", "0.140 key 0 text=打 up -> 812"}, 0.24);
  expectPosted(
      keyboard, {}, [] { selectAllAndDelete(812); }, {}, 0.14);
}

TEST(EventCreation, AnElementWhoseFrameCannotBeReadIsNotClicked) {
  for (const std::int32_t code : copyErrors) {
    Rich rich;
    const Element field = rich.handle();
    rich.refuseOne(Verb::copy, "AXSize", code);
    EXPECT_EQ(messageOf([&] { clickElement(812, field); }), "target element has no visible frame");
    EXPECT_EQ(messageOf([&] { doubleClickElement(812, field); }),
              "target element has no visible frame");
    EXPECT_THAT(postedEvents(rich.world.desktop.record()), IsEmpty());
  }
}

// --- CFURLCreateWithString, CFURLCopyScheme, CFURLCreateFilePathURL, CFURLCopyFileSystemPath. ---

// The path read from "AXURL" while the functions answer NULL.
std::string pathWithout(const std::set<std::string>& functions, const simulator::Value& url) {
  BareDesktop world;
  world.app().set("AXURL", url);
  const simulator::FaultyFrameworks faulty(
      {.answers_null = [&](const std::string& function) { return functions.contains(function); }});
  return axURLPath(world.appHandle()).value_or("nothing");
}

TEST(Locations, ATextThatIsNoLocationOrHasNoSchemeStaysAsItIs) {
  const std::string text = "file:///a/./My%20Folder/";
  EXPECT_EQ(pathWithout({}, text), "/a/My Folder");
  EXPECT_EQ(pathWithout({"CFURLCreateWithString"}, text), text);
  EXPECT_EQ(pathWithout({"CFURLCopyScheme"}, text), text);
}

TEST(Locations, ALocationThatNamesNoFileHasItsOwnPath) {
  using simulator::Url;
  const std::string reference = "file:///.file/id=2F612F62";
  EXPECT_EQ(pathWithout({}, Url{reference}), "/a/b");
  EXPECT_EQ(pathWithout({"CFURLCreateFilePathURL"}, Url{reference}), "/.file/id=2F612F62");
  EXPECT_EQ(pathWithout({"CFURLCreateFilePathURL"}, Url{"file:///a/./b/"}), "/a/b");
  EXPECT_EQ(pathWithout({"CFURLCreateFilePathURL"}, "file:///a/b/"), "/a/b");
  EXPECT_EQ(pathWithout({}, Url{"file:///.file/id=gone"}), "/.file/id=gone");
}

TEST(Locations, APathThatCannotBeCopiedIsEmpty) {
  using simulator::Url;
  EXPECT_EQ(pathWithout({"CFURLCopyFileSystemPath"}, Url{"file:///a/b"}), "");
  EXPECT_EQ(pathWithout({"CFURLCopyFileSystemPath"}, "file:///a/b"), "");
  EXPECT_EQ(pathWithout({"CFURLCreateFilePathURL", "CFURLCopyFileSystemPath"}, Url{"file:///a"}),
            "");
  EXPECT_EQ(pathWithout({}, Url{"file:///a%FFb"}), "");
  EXPECT_EQ(pathWithout({}, "file:///a%FFb"), "");
}

}  // namespace
}  // namespace tessarine::test
