// Reading and acting on elements: what every kind of value reads as, and what failure looks like.
#include "platform/accessibility.h"

#include <map>

#include "support/world.h"

namespace tessarine::test {
namespace {

using Texts = std::vector<std::string>;

// An element with these attributes, in a desktop of its own.
class Probe : public BareDesktop {
 public:
  Probe(std::initializer_list<std::pair<std::string, simulator::Value>> attributes = {}) {
    for (const auto& [name, value] : attributes) element.set(name, value);
  }
  Element handle() const { return BareDesktop::handle(element); }

  simulator::Element& element = app().addChild("AXTextField");
};

Texts titlesOf(const std::vector<Element>& elements) {
  Texts titles;
  for (const Element& element : elements) titles.push_back(axTitle(element));
  return titles;
}

std::string titleOf(const std::optional<Element>& element) {
  return element ? axTitle(*element) : "nothing";
}

// Everything that can be read of an element, as text.
Texts everythingReadFrom(const Element& element) {
  Texts read{axRole(element),        axTitle(element),      axSubrole(element),
             axDescription(element), axInputValue(element), fileNameAttribute(element),
             displayLabel(element)};
  read.push_back(axString(element, "AXHelp").value_or("nothing"));
  read.push_back(axValue(element, "AXTitle") ? "a value" : "nothing");
  read.push_back(axIsTrue(element, "AXFocused") ? "true" : "not true");
  read.push_back(titleOf(axElementAttribute(element, "AXTitleUIElement")));
  read.push_back(titleOf(axParent(element)));
  read.push_back(std::to_string(axChildren(element).size()) + " children");
  read.push_back(std::to_string(axActions(element).size()) + " actions");
  read.push_back(axFrame(element) == Rect{} ? "no frame" : "a frame");
  read.push_back(axURLPath(element).value_or("nothing"));
  read.push_back(std::to_string(topLevelWindows(element).size()) + " windows");
  return read;
}

const Texts nothingToRead{"",           "",          "",         "",         "",         "",
                          "",           "nothing",   "nothing",  "not true", "nothing",  "nothing",
                          "0 children", "0 actions", "no frame", "nothing",  "0 windows"};

TEST(Accessibility, ReadsEachTextByItsAttribute) {
  Probe probe{{"AXTitle", "title"}, {"AXSubrole", "subrole"},    {"AXDescription", "description"},
              {"AXValue", "value"}, {"AXFilename", "file name"}, {"AXHelp", "帮助 🙂"}};
  const Element element = probe.handle();
  EXPECT_EQ((Texts{axRole(element), axTitle(element), axSubrole(element), axDescription(element),
                   axInputValue(element), fileNameAttribute(element),
                   axString(element, "AXHelp").value_or("nothing")}),
            (Texts{"AXTextField", "title", "subrole", "description", "value", "file name",
                   "帮助 🙂"}));
}

TEST(Accessibility, ReadsValuesOfAnotherTypeAsEmpty) {
  Probe probe{{"AXTitle", 7.0},
              {"AXSubrole", true},
              {"AXDescription", simulator::List{"text"}},
              {"AXValue", false},
              {"AXFilename", simulator::Url{"file:///x"}},
              {"AXHelp", 1.0},
              {"AXFocused", "true"},
              {"AXTitleUIElement", "text"},
              {"AXURL", 3.0}};
  Texts expected = nothingToRead;
  expected[0] = "AXTextField";
  expected[8] = "a value";
  expected[11] = "Google Chrome";  // its parent, the application
  EXPECT_EQ(everythingReadFrom(probe.handle()), expected);
}

TEST(Accessibility, ReadsAnElementThatIsGoneAsEmpty) {
  Probe probe{{"AXTitle", "title"}};
  const Element gone = probe.handle();
  probe.app().removeChildren();
  EXPECT_EQ(everythingReadFrom(gone), nothingToRead);
}

TEST(Accessibility, ReadsEverythingAsEmptyWithoutTrust) {
  Probe probe{{"AXTitle", "title"}};
  const Element element = probe.handle();
  probe.desktop.faults().untrusted = true;
  EXPECT_EQ(everythingReadFrom(element), nothingToRead);
}

TEST(Accessibility, ReadsAProcessThatDoesNotExistAsEmpty) {
  BareDesktop world;
  EXPECT_EQ(everythingReadFrom(Element::application(4711)), nothingToRead);
}

TEST(Accessibility, ReadsADeclaredAttributeWithoutAValueAsAbsent) {
  Probe probe{{"AXTitle", std::monostate()}};
  EXPECT_FALSE(axValue(probe.handle(), "AXTitle"));
}

TEST(Accessibility, AsksAnewOnEveryRead) {
  Probe probe{{"AXTitle", "before"}};
  const Element element = probe.handle();
  EXPECT_EQ(axTitle(element), "before");
  probe.element.set("AXTitle", "after");
  EXPECT_EQ(axTitle(element), "after");
}

TEST(Accessibility, LabelsAnElementByTitleThenTextValueThenDescription) {
  const auto label = [](simulator::Value title, simulator::Value value, const char* description) {
    Probe probe{{"AXTitle", std::move(title)},
                {"AXValue", std::move(value)},
                {"AXDescription", description},
                {"AXSubrole", "subrole"},
                {"AXHelp", "help"},
                {"AXIdentifier", "identifier"}};
    return displayLabel(probe.handle());
  };
  EXPECT_EQ(label("title", "value", "description"), "title");
  EXPECT_EQ(label("", "value", "description"), "value");
  EXPECT_EQ(label(std::monostate(), "", "description"), "description");
  EXPECT_EQ(label("", 42.0, "Documents"), "Documents");
  EXPECT_EQ(label("", 42.0, ""), "");
}

TEST(Accessibility, TellsTheBooleanTrueFromEverythingElse) {
  const auto reads = [](simulator::Value value) {
    Probe probe{{"AXFocused", std::move(value)}};
    return axIsTrue(probe.handle(), "AXFocused");
  };
  EXPECT_TRUE(reads(true));
  EXPECT_FALSE(reads(false));
  EXPECT_FALSE(reads(1.0));
  EXPECT_FALSE(reads("true"));
}

TEST(Accessibility, HandlesAreEqualWhenTheyNameTheSameElement) {
  BareDesktop world;
  const auto& first = world.app().addChild("AXButton");
  const auto& second = world.app().addChild("AXButton");
  EXPECT_TRUE(world.handle(first) == world.handle(first));
  EXPECT_FALSE(world.handle(first) == world.handle(second));
  EXPECT_FALSE(Element::application(1) == Element::application(2));
}

TEST(Accessibility, ListsChildrenInTheOrderDeliveredAndFindsTheWayBackUp) {
  BareDesktop world;
  auto& window = world.addWindow("window");
  for (const char* title : {"b", "c", "a"}) window.addChild("AXButton").set("AXTitle", title);
  const auto children = axChildren(world.handle(window));
  EXPECT_EQ(titlesOf(children), (Texts{"b", "c", "a"}));
  EXPECT_EQ(titleOf(axParent(children.at(1))), "window");
  EXPECT_EQ(titleOf(axParent(world.appHandle())), "nothing");
}

TEST(Accessibility, TakesAnyValueForAParent) {
  BareDesktop world;
  world.app().set("AXParent", "text");
  EXPECT_TRUE(axParent(world.appHandle()).has_value());
}

TEST(Accessibility, ReadsAListAsElementsOnlyWhenAllItsMembersAre) {
  BareDesktop world;
  auto& row = world.app().addChild("AXRow");
  row.set("AXTitle", "row");
  world.app().set("rows", simulator::List{row.id(), row.id()});
  world.app().set("mixed", simulator::List{row.id(), "text", row.id()});
  world.app().set("text", "row");
  EXPECT_EQ(titlesOf(axElements(world.appHandle(), "rows")), (Texts{"row", "row"}));
  EXPECT_EQ(titlesOf(axElements(world.appHandle(), "mixed")), Texts());
  EXPECT_EQ(titlesOf(axElements(world.appHandle(), "text")), Texts());
  EXPECT_EQ(titlesOf(axElements(world.appHandle(), "missing")), Texts());
}

TEST(Accessibility, ReadsAnElementAttributeOnlyWhenItHoldsAnElement) {
  BareDesktop world;
  auto& button = world.app().addChild("AXButton");
  button.set("AXTitle", "button");
  world.app().set("element", button.id());
  world.app().set("list", simulator::List{button.id()});
  EXPECT_EQ(titleOf(axElementAttribute(world.appHandle(), "element")), "button");
  EXPECT_EQ(titleOf(axElementAttribute(world.appHandle(), "list")), "nothing");
}

TEST(Accessibility, NamesActionsInTheOrderDelivered) {
  Probe probe;
  for (const char* name : {"AXConfirm", "AXPress"}) {
    probe.element.addAction(name, [] { return simulator::ax::success; });
  }
  EXPECT_EQ(axActions(probe.handle()), (Texts{"AXConfirm", "AXPress"}));
}

// --- Frames. ---

Rect frameOf(simulator::Value position, simulator::Value size) {
  Probe probe{{"AXPosition", std::move(position)}, {"AXSize", std::move(size)}};
  return axFrame(probe.handle());
}

TEST(Accessibility, BuildsAFrameFromPositionAndSize) {
  EXPECT_EQ(frameOf(simulator::Point{-10, 20.5}, simulator::Size{300, 40}),
            (Rect{-10, 20.5, 300, 40}));
}

TEST(Accessibility, AFrameWithoutPositionOrSizeIsZero) {
  EXPECT_EQ(frameOf(simulator::Point{10, 20}, std::monostate()), Rect());
  EXPECT_EQ(frameOf(std::monostate(), simulator::Size{300, 40}), Rect());
}

TEST(Accessibility, AFrameWhosePositionOrSizeIsOfAnotherTypeIsZero) {
  EXPECT_EQ(frameOf("10, 20", simulator::Size{300, 40}), Rect());
  EXPECT_EQ(frameOf(simulator::Size{10, 20}, simulator::Size{300, 40}), Rect());
  EXPECT_EQ(frameOf(simulator::Point{10, 20}, simulator::Point{300, 40}), Rect());
}

// --- Locations. ---

std::string urlPathOf(simulator::Value url) {
  Probe probe{{"AXURL", std::move(url)}};
  return axURLPath(probe.handle()).value_or("nothing");
}

TEST(Accessibility, ReadsThePathOfALocationWhateverItsScheme) {
  using simulator::Url;
  EXPECT_EQ(urlPathOf(Url{"file:///Users/me/My%20Folder/"}), "/Users/me/My Folder");
  EXPECT_EQ(urlPathOf(Url{"file:///Users/./me/a/../%E6%96%87%E7%A8%BF"}), "/Users/me/文稿");
  EXPECT_EQ(urlPathOf(Url{"https://example.com/a/./b%20c/"}), "/a/b c");
  EXPECT_EQ(urlPathOf(Url{"https://example.com"}), "");
  EXPECT_EQ(urlPathOf(Url{"mailto:someone"}), "");
}

TEST(Accessibility, ReadsThePathOfATextThatIsAFileLocation) {
  EXPECT_EQ(urlPathOf("file:///Users/me/My%20Folder"), "/Users/me/My Folder");
  EXPECT_EQ(urlPathOf("FILE:///Users/me/./My%20Folder/"), "/Users/me/My Folder");
  EXPECT_EQ(urlPathOf("file://"), "");
}

TEST(Accessibility, KeepsAnyOtherLocationTextUnchanged) {
  for (const char* text : {"https://example.com/a%20b/", "/Users/me/My Folder/", "", "100%"}) {
    EXPECT_EQ(urlPathOf(text), text);
  }
}

// --- Windows. ---

// An application with the windows "front" and "back" and, attached to "back", a sheet that is not
// among the application's windows.
class WindowedApplication : public BareDesktop {
 public:
  WindowedApplication() {
    auto& back = addWindow("back");
    numbers["back"] = desktop.windows().front()->number;
    addWindow("front");
    numbers["front"] = desktop.windows().front()->number;
    auto& sheetElement = back.addChild("AXSheet");
    sheetElement.set("AXTitle", "sheet");
    simulator::Window sheet;
    sheet.owner = browserPid;
    sheet.frame = {100, 100, 400, 300};
    sheet.element = &sheetElement;
    numbers["sheet"] = desktop.addWindow(sheet).number;
  }
  void focus(const std::string& title) { process().focused_window = numbers.at(title); }

  std::map<std::string, std::uint32_t> numbers;
};

TEST(Accessibility, ListsAFocusedWindowOnceAtItsPlaceAmongTheWindows) {
  WindowedApplication world;
  world.focus("back");
  EXPECT_EQ(titlesOf(topLevelWindows(world.appHandle())), (Texts{"front", "back"}));
  EXPECT_EQ(titlesOf(focusedAndMainWindows(world.appHandle())), (Texts{"back", "front"}));
}

TEST(Accessibility, AppendsAFocusedWindowThatIsNotAmongTheWindows) {
  WindowedApplication world;
  world.focus("sheet");
  EXPECT_EQ(titlesOf(topLevelWindows(world.appHandle())), (Texts{"front", "back", "sheet"}));
  EXPECT_EQ(titlesOf(focusedAndMainWindows(world.appHandle())), (Texts{"sheet", "front"}));
}

TEST(Accessibility, ListsAWindowThatIsFocusedAndMainOnce) {
  WindowedApplication world;
  world.focus("front");
  EXPECT_EQ(titlesOf(focusedAndMainWindows(world.appHandle())), Texts{"front"});
}

// --- Writing and acting. ---

TEST(Accessibility, WritesTextsTheBooleanTrueAndLists) {
  Probe probe;
  std::vector<simulator::Value> written;
  for (const char* attribute : {"AXValue", "AXFocused", "AXSelectedRows"}) {
    probe.element.makeSettable(attribute, [&](const simulator::Value& value) {
      written.push_back(value);
      return simulator::ax::success;
    });
  }
  const Element element = probe.handle();
  EXPECT_EQ(setText(element, "AXValue", "/文稿"), 0);
  EXPECT_EQ(setTrue(element, "AXFocused"), 0);
  EXPECT_EQ(setElements(element, "AXSelectedRows", {probe.appHandle(), element}), 0);
  EXPECT_EQ(written, (std::vector<simulator::Value>{
                         "/文稿", true, simulator::List{probe.app().id(), probe.element.id()}}));
}

TEST(Accessibility, AnswersThePlatformsCodeForARefusedWrite) {
  Probe probe;
  EXPECT_EQ(setText(probe.handle(), "AXValue", "text"), -25205);
  EXPECT_EQ(setTrue(probe.handle(), "AXFocused"), -25205);
  EXPECT_EQ(setElements(probe.handle(), "AXSelectedRows", {}), -25205);
}

TEST(Accessibility, PerformsAnActionOnce) {
  Probe probe;
  int presses = 0;
  probe.element.addAction("AXPress", [&] { return ++presses, simulator::ax::success; });
  perform("AXPress", probe.handle());
  EXPECT_TRUE(tryAction("AXPress", probe.handle()));
  EXPECT_EQ(presses, 2);
}

// The error of performing "AXPress" on an element, and whether trying it succeeds.
void expectRefusal(const Element& element, const std::string& message) {
  try {
    perform("AXPress", element);
    ADD_FAILURE() << "nothing was thrown";
  } catch (const ToolError& error) {
    EXPECT_EQ(error.errorCase(), ToolError::Case::actionFailed);
    EXPECT_EQ(error.message(), message);
  }
  EXPECT_FALSE(tryAction("AXPress", element));
}

TEST(Accessibility, NamesTheActionAndThePlatformsCodeOfAFailure) {
  Probe probe;
  const Element element = probe.handle();
  expectRefusal(element, "AX action AXPress failed: -25206");
  probe.element.addAction("AXPress", [] { return simulator::ax::cannotComplete; });
  expectRefusal(element, "AX action AXPress failed: -25204");
  probe.app().removeChildren();
  expectRefusal(element, "AX action AXPress failed: -25202");
}

}  // namespace
}  // namespace tessarine::test
