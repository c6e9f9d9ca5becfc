#include "platform/events.h"

#include <gmock/gmock.h>

#include "core/tables.h"
#include "support/world.h"

namespace tessarine::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pointwise;

// The seconds between each posted event and the next.
std::vector<double> gapsBetweenEvents(const simulator::Record& record) {
  std::vector<double> times;
  for (const auto& line : record.lines()) {
    if (std::holds_alternative<simulator::PostedKey>(line.entry) ||
        std::holds_alternative<simulator::PostedMouse>(line.entry)) {
      times.push_back(line.time);
    }
  }
  std::vector<double> gaps;
  for (std::size_t i = 1; i < times.size(); ++i) gaps.push_back(times[i] - times[i - 1]);
  return gaps;
}

auto areNear(const std::vector<double>& seconds) {
  return Pointwise(testing::DoubleNear(1e-9), seconds);
}

// The text attached to each posted key event; absent when none was.
std::vector<std::optional<std::u16string>> attachedTexts(const simulator::Record& record) {
  std::vector<std::optional<std::u16string>> texts;
  for (const auto& line : record.lines()) {
    const auto* key = std::get_if<simulator::PostedKey>(&line.entry);
    if (key != nullptr) texts.push_back(key->event.text);
  }
  return texts;
}

// A desktop with one element in the frame.
struct Framed : BareDesktop {
  explicit Framed(const simulator::Rect& frame) : element(addWindow("Page").addChild("AXButton")) {
    element.setFrame(frame);
  }
  simulator::Element& element;
};

TEST(Events, ClickAProcess) {
  BareDesktop bare;
  postMouseClick(812, {3205, -0.5}, 1, false);
  EXPECT_THAT(postedEvents(bare.desktop.record()),
              ElementsAre("0.000 mouse down 1 (3205, -0.5) -> 812",
                          "0.050 mouse up 1 (3205, -0.5) -> 812"));
  EXPECT_NEAR(bare.now(), 0.05, 1e-9);
}

TEST(Events, ClickTheWholeSession) {
  BareDesktop bare;
  postMouseClick(812, {10, 20}, 2, true);
  EXPECT_THAT(postedEvents(bare.desktop.record()),
              ElementsAre("0.000 mouse down 2 (10, 20) -> session",
                          "0.050 mouse up 2 (10, 20) -> session"));
}

TEST(Events, ClickTheCentreOfAnElement) {
  Framed framed({10, 20, 25, 31});
  clickElement(812, framed.handle(framed.element));
  EXPECT_THAT(postedEventKinds(framed.desktop.record()),
              ElementsAre("mouse down 1 (22.5, 35.5) -> 812", "mouse up 1 (22.5, 35.5) -> 812"));
  EXPECT_THAT(gapsBetweenEvents(framed.desktop.record()), areNear({0.05}));
}

TEST(Events, DoubleClickTheCentreOfAnElement) {
  Framed framed({-300, 20, 100, 40});
  doubleClickElement(900, framed.handle(framed.element));
  EXPECT_THAT(postedEventKinds(framed.desktop.record()),
              ElementsAre("mouse down 1 (-250, 40) -> 900", "mouse up 1 (-250, 40) -> 900",
                          "mouse down 2 (-250, 40) -> 900", "mouse up 2 (-250, 40) -> 900"));
  EXPECT_THAT(gapsBetweenEvents(framed.desktop.record()), areNear({0.05, 0.06, 0.05}));
}

TEST(Events, DoubleClickAPointInTheSameRhythm) {
  BareDesktop bare;
  doubleClickPoint(812, {1, 2});
  EXPECT_THAT(postedEvents(bare.desktop.record()),
              ElementsAre("0.000 mouse down 1 (1, 2) -> 812", "0.050 mouse up 1 (1, 2) -> 812",
                          "0.110 mouse down 2 (1, 2) -> 812", "0.160 mouse up 2 (1, 2) -> 812"));
  EXPECT_NEAR(bare.now(), 0.16, 1e-9);
}

TEST(Events, NeverClickAnElementWithoutAnArea) {
  for (const simulator::Rect& frame : std::vector<simulator::Rect>{
           {10, 10, 0, 50}, {10, 10, 50, 0}, {10, 10, -50, 50}, {10, 10, 50, -50}, {}}) {
    Framed framed(frame);
    const Element element = framed.handle(framed.element);
    EXPECT_EQ(messageOf([&] { clickElement(812, element); }),
              "target element has no visible frame");
    EXPECT_EQ(messageOf([&] { doubleClickElement(812, element); }),
              "target element has no visible frame");
    EXPECT_THAT(postedEvents(framed.desktop.record()), IsEmpty());
  }
}

TEST(Events, FailWithTheCaseOfAFailedActionForAnElementWithoutAFrame) {
  BareDesktop bare;
  try {
    clickElement(812, bare.appHandle());
    ADD_FAILURE() << "nothing was thrown";
  } catch (const ToolError& error) {
    EXPECT_EQ(error.errorCase(), ToolError::Case::actionFailed);
    EXPECT_EQ(error.message(), "target element has no visible frame");
  }
}

TEST(Events, PostOneHalfOfAKey) {
  BareDesktop bare;
  postKeyEvent(812, keyCodeG, commandShiftFlags, true);
  postKeyEvent(812, keyCodeArrowDown, noModifiers, false);
  postGlobalKeyEvent(keyCodeReturn, commandFlag, true);
  postGlobalKeyEvent(keyCodeReturn, noModifiers, false);
  EXPECT_THAT(postedEvents(bare.desktop.record()),
              ElementsAre("0.000 key 5+120000 down -> 812", "0.000 key 125 up -> 812",
                          "0.000 key 36+100000 down -> session", "0.000 key 36 up -> session"));
}

TEST(Events, AttachTextOnlyWhenGivenSome) {
  BareDesktop bare;
  postKeyEvent(812, 0, 0, true, u"打开😀");
  postKeyEvent(812, 0, 0, true, u"");
  postKeyEvent(812, 0, 0, true);
  EXPECT_THAT(attachedTexts(bare.desktop.record()),
              ElementsAre(u"打开😀", u"", std::optional<std::u16string>()));
}

TEST(Events, TapAKeyWithTheSameFlagsAndTextOnBothHalves) {
  BareDesktop bare;
  tapKey(900, 7, commandFlag, u"x", 0.3);
  EXPECT_THAT(
      postedEvents(bare.desktop.record()),
      ElementsAre("0.000 key 7+100000 text=x down -> 900", "0.020 key 7+100000 text=x up -> 900"));
  EXPECT_NEAR(bare.now(), 0.32, 1e-9);
}

TEST(Events, TapAGlobalKeyWithoutFlagsAndWithAShortPauseUnlessTold) {
  BareDesktop bare;
  tapGlobalKey(keyCodeEscape);
  EXPECT_NEAR(bare.now(), 0.07, 1e-9);
  tapGlobalKey(keyCodeG, commandShiftFlags, 0.4);
  EXPECT_THAT(
      postedEvents(bare.desktop.record()),
      ElementsAre("0.000 key 53 down -> session", "0.020 key 53 up -> session",
                  "0.070 key 5+120000 down -> session", "0.090 key 5+120000 up -> session"));
  EXPECT_NEAR(bare.now(), 0.07 + 0.42, 1e-9);
}

TEST(Events, TypeOneScalarForEachKeyPress) {
  BareDesktop bare;
  typeUnicodeText(812, "a打-");
  EXPECT_THAT(postedEvents(bare.desktop.record()),
              ElementsAre("0.000 key 0 text=a down -> 812", "0.020 key 0 text=a up -> 812",
                          "0.040 key 0 text=打 down -> 812", "0.060 key 0 text=打 up -> 812",
                          "0.080 key 0 text=- down -> 812", "0.100 key 0 text=- up -> 812"));
  EXPECT_NEAR(bare.now(), 3 * (0.02 + 0.02), 1e-9);
}

TEST(Events, PauseBetweenTypedScalarsAsTold) {
  BareDesktop bare;
  typeUnicodeText(812, "abc", 0.1);
  EXPECT_THAT(gapsBetweenEvents(bare.desktop.record()), areNear({0.02, 0.1, 0.02, 0.1, 0.02}));
  EXPECT_NEAR(bare.now(), 3 * (0.02 + 0.1), 1e-9);
}

TEST(Events, TypeAnEmojiAsOneKeyPressWithTwoUnits) {
  BareDesktop bare;
  typeUnicodeText(812, "😀");
  const std::u16string units{0xD83D, 0xDE00};
  EXPECT_THAT(attachedTexts(bare.desktop.record()), ElementsAre(units, units));
}

TEST(Events, TypeACombiningMarkAsAKeyPressOfItsOwn) {
  BareDesktop bare;
  typeUnicodeText(812, "e\u0301");
  EXPECT_THAT(attachedTexts(bare.desktop.record()), ElementsAre(u"e", u"e", u"\u0301", u"\u0301"));
}

TEST(Events, TypeNothingForAnEmptyText) {
  BareDesktop bare;
  typeUnicodeText(812, "");
  EXPECT_THAT(postedEvents(bare.desktop.record()), IsEmpty());
  EXPECT_EQ(bare.now(), 0.0);
}

TEST(Events, PressReturn) {
  BareDesktop bare;
  pressReturn(900, 0.35);
  EXPECT_THAT(postedEvents(bare.desktop.record()),
              ElementsAre("0.000 key 36 down -> 900", "0.020 key 36 up -> 900"));
  EXPECT_DOUBLE_EQ(bare.now(), 0.02 + 0.35);
}

TEST(Events, SelectAllAndDelete) {
  BareDesktop bare;
  selectAllAndDelete(812);
  EXPECT_THAT(postedEvents(bare.desktop.record()),
              ElementsAre("0.000 key 0+100000 down -> 812", "0.020 key 0+100000 up -> 812",
                          "0.070 key 51 down -> 812", "0.090 key 51 up -> 812"));
  EXPECT_THAT(attachedTexts(bare.desktop.record()), testing::Each(std::nullopt));
  EXPECT_NEAR(bare.now(), 0.14, 1e-9);
}

// What a person at the machine does, at a point where nothing is.
void pressKey(simulator::Desktop& desktop) {
  for (const bool down : {true, false}) {
    desktop.postKey({keyCodeReturn, down, 0, {}}, {}, simulator::Origin::person);
  }
}

void clickAs(simulator::Origin origin, simulator::Desktop& desktop) {
  for (const std::uint32_t type : {1U, 2U}) desktop.postMouse({type, {5, 5}, 1}, {}, origin);
}

TEST(PressesByPeople, AreTheKeysAndClicksOfAPerson) {
  BareDesktop bare;
  EXPECT_EQ(pressesByPeople(), 0U);
  pressKey(bare.desktop);
  EXPECT_EQ(pressesByPeople(), 1U);
  clickAs(simulator::Origin::person, bare.desktop);
  EXPECT_EQ(pressesByPeople(), 2U);
  pressKey(bare.desktop);
  EXPECT_EQ(pressesByPeople(), 3U);
}

// 10 key down; 1, 3 and 25 left, right and other mouse down, from CoreGraphics/CGEventTypes.h.
TEST(PressesByPeople, AreKeysAndEveryButtonOfTheMouse) {
  BareDesktop bare;
  pressesByPeople();
  std::vector<std::string> questions;
  for (const auto& line : bare.desktop.record().lines()) {
    const auto* asked = std::get_if<simulator::WorkspaceRequest>(&line.entry);
    if (asked != nullptr) questions.push_back(asked->question);
  }
  EXPECT_THAT(questions, testing::UnorderedElementsAre("presses of type 10", "presses of type 1",
                                                       "presses of type 3", "presses of type 25"));
}

TEST(PressesByPeople, AreNoneOfWhatProgramsPost) {
  BareDesktop bare;
  pressKey(bare.desktop);
  postMouseClick(812, {5, 5}, 1, false);
  postMouseClick(812, {5, 5}, 1, true);
  tapKey(812, keyCodeReturn, noModifiers, {}, 0);
  tapGlobalKey(keyCodeReturn);
  clickAs(simulator::Origin::script, bare.desktop);
  EXPECT_EQ(pressesByPeople(), 1U);
}

TEST(PressesByPeople, AreToldAtOnceAndWithoutPermission) {
  BareDesktop bare;
  bare.desktop.faults().untrusted = true;
  bare.desktop.prices() = simulator::Prices{};
  clickAs(simulator::Origin::person, bare.desktop);
  EXPECT_EQ(pressesByPeople(), 1U);
  EXPECT_EQ(bare.now(), 0.0);
}

TEST(Events, DoNotAskWhetherTheProcessExists) {
  BareDesktop bare;
  postMouseClick(4711, {1, 2}, 1, false);
  tapKey(4711, keyCodeReturn, noModifiers, {}, 0);
  EXPECT_EQ(postedEvents(bare.desktop.record()).size(), 4U);
}

}  // namespace
}  // namespace tessarine::test
