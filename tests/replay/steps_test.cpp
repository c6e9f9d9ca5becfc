// The steps of a recording in words.
#include "simulator/replay/steps.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "replay/recorded_run.h"
#include "simulator/replay/key_words.h"

namespace simulator::steps {
namespace {

using testing::ElementsAre;

Recording empty() {
  Recording recording;
  recording.screens = {{0, 0, 1440, 900}};
  recording.processes = {{812, "Browser"}, {250, "Finder"}};
  return recording;
}

std::vector<std::string> wordsOf(const Recording& recording) {
  std::vector<std::string> words;
  for (const ReplayStep& step : stepsOf(recording)) words.push_back(step.words);
  return words;
}

PostedKey typed(const std::u16string& text, Origin origin = Origin::tool) {
  return {812, {0, true, 0, text}, origin};
}

TEST(ReplaySteps, KeysThatTypeAreOneStepAsLongAsNothingComesBetween) {
  Recording recording = empty();
  recording.lines = {{1, typed(u"/")},
                     {1.1, PostedKey{812, {0, false, 0, u"/"}, Origin::tool}},
                     {1.2, typed(u"usr")},
                     {1.3, PostedKey{812, {36, true, 0, {}}, Origin::tool}},
                     {1.4, typed(u"a")},
                     {1.5, typed(u"b", Origin::script)},
                     {1.6, PostedKey{{}, {5, true, 0x120000, {}}, Origin::tool}}};
  EXPECT_THAT(
      wordsOf(recording),
      ElementsAre("The desktop at its start", "The text “/usr” is posted to Browser (812)",
                  "Return is posted to Browser (812)", "The text “a” is posted to Browser (812)",
                  "The text “b” is posted to Browser (812) by System Events",
                  "⇧⌘G is posted to the session"));
}

TEST(ReplaySteps, CallsStandAmongWhatHappenedAtTheirTimes) {
  Recording recording = empty();
  recording.lines = {{1, ActivationAsked{250, Origin::person}},
                     {2, FrontmostChanged{812, 250}},
                     {3, FrontmostChanged{250, {}}}};
  recording.calls = {{{"close"}, 0.5, 2.5, 0, "true"}, {{"list-windows"}, 2.6, {}, {}, "true"}};
  EXPECT_THAT(wordsOf(recording),
              ElementsAre("The desktop at its start", "Call 1 begins: tessarine close",
                          "Finder (250) is asked to come forward by a person",
                          "Finder (250) is in front", "Call 1 ends with status 0; verdict: true",
                          "Call 2 begins: tessarine list-windows", "No application is in front"));
}

TEST(ReplaySteps, RequestsSayWhatTheyDidToWhatAndMarkIt) {
  Recording recording = empty();
  AccessibilityRequest press;
  press.verb = AccessibilityRequest::Verb::perform;
  press.element.pid = 812;
  press.role = "AXButton";
  press.name = "AXPress";
  press.text = "Select";
  press.frame = Rect{1, 2, 30, 40};
  AccessibilityRequest set;
  set.verb = AccessibilityRequest::Verb::set;
  set.element.pid = 77;
  set.role = "AXTextField";
  set.name = "AXValue";
  set.value = std::string("/usr");
  set.error = -25204;
  recording.lines = {{1, press}, {2, set}};
  EXPECT_THAT(
      wordsOf(recording),
      ElementsAre("The desktop at its start", "AXPress of AXButton “Select” of Browser (812)",
                  "AXValue of AXTextField of process 77 is set to “/usr”; answered -25204"));
  const auto steps = stepsOf(recording);
  EXPECT_EQ(steps[1].mark, press.frame);
  EXPECT_EQ(steps[2].mark, std::nullopt);
}

TEST(ReplaySteps, WhatIsSeenBelongsToWhatHappenedAtTheSameTimeOrIsAStepOfItsOwn) {
  Recording recording = empty();
  PanelShown before{1, "panel", std::vector<ShownElement>(2), 0};
  before.elements[0].role = "AXWindow";
  before.elements[1].role = "AXButton";
  before.elements[1].text = "Go";
  PanelShown after = before;
  after.elements[1].disabled = true;
  recording.lines = {{0, before},
                     {1, PostedKey{812, {36, true, 0, {}}, Origin::tool}},
                     {1, after},
                     {2, before},
                     {3, PanelShown{1, "panel", {}, 0}}};
  EXPECT_THAT(wordsOf(recording),
              ElementsAre("The desktop at its start", "Return is posted to Browser (812)",
                          "The picture changes: in panel 1: “Go” is enabled",
                          "The picture changes: panel 1 is gone"));
  const auto steps = stepsOf(recording);
  const std::pair key{1, std::string("panel")};
  EXPECT_EQ(steps[0].sight.parts.at(key), before);
  EXPECT_EQ(steps[1].sight.parts.at(key), after);
  EXPECT_EQ(steps[2].sight.parts.at(key), before);
  EXPECT_TRUE(steps[3].sight.parts.empty());
}

TEST(ReplaySteps, ClicksHaveAPointer) {
  Recording recording = empty();
  recording.lines = {{1, PostedMouse{{}, {1, {10.4, 20}, 2}, Origin::person}},
                     {1.1, PostedMouse{812, {2, {10.4, 20}, 1}, Origin::tool}}};
  const auto steps = stepsOf(recording);
  EXPECT_EQ(steps[1].words,
            "The mouse button is pressed at (10, 20) (double click), posted to the session by a "
            "person");
  EXPECT_EQ(steps[1].pointer, (Point{10.4, 20}));
  EXPECT_TRUE(steps[1].pressed);
  EXPECT_EQ(steps[2].words, "The mouse button is let go at (10, 20), posted to Browser (812)");
  EXPECT_FALSE(steps[2].pressed);
}

// A panel that is led elsewhere, as it was filmed.
TEST(ReplaySteps, OfAFilmedRunShowWhatThePanelShowed) {
  RecordedRun run(R"({"panels": [{"shape": "service-window", "folder": "/usr"}]})");
  run.wait(1);
  run.press(900, 5, 0x120000);
  run.wait(1);
  run.type(900, u"/usr/share");
  run.press(900, 36);
  run.wait(1);
  const auto steps = stepsOf(run.recording());
  std::vector<std::string> words;
  for (const ReplayStep& step : steps) words.push_back(step.words);
  EXPECT_THAT(words,
              ElementsAre("The desktop at its start",
                          "⇧⌘G is posted to Open and Save Panel Service (Google Chrome) (900)",
                          "Panel 1: go-to sheet opened", "Panel 1: go-to sheet ready",
                          "The text “/usr/share” is posted to Open and Save Panel Service "
                          "(Google Chrome) (900)",
                          "Return is posted to Open and Save Panel Service (Google Chrome) "
                          "(900)",
                          "Panel 1: go-to sheet closed; folder shown /usr/share",
                          "The picture changes: in panel 1: “Select” is enabled"));
  const std::pair sheet{1, std::string("sheet")};
  EXPECT_FALSE(steps[1].sight.parts.contains(sheet));
  EXPECT_TRUE(steps[2].sight.parts.contains(sheet));
  const auto& typedInto = steps[4].sight.parts.at(sheet).elements;
  EXPECT_TRUE(std::ranges::any_of(
      typedInto, [](const ShownElement& element) { return element.text == "/usr/share"; }));
  EXPECT_FALSE(steps[6].sight.parts.contains(sheet));
  EXPECT_EQ(steps[0].sight.frontmost, 300);
}

TEST(KeyWords, NameChordsKeysAndWhatTypes) {
  EXPECT_EQ(keyWords({5, true, 0x120000, {}}), "⇧⌘G");
  EXPECT_EQ(keyWords({36, true, 0x40000, {}}), "⌃Return");
  EXPECT_EQ(keyWords({99, true, 0, {}}), "key 99");
  EXPECT_EQ(typedBy({0, true, 0, {}}), "a");
  EXPECT_EQ(typedBy({0, true, shift_flag, {}}), "A");
  EXPECT_EQ(typedBy({0, true, 0, u"文"}), "文");
  EXPECT_EQ(typedBy({0, true, command_flag, {}}), "");
  EXPECT_EQ(typedBy({36, true, 0, {}}), "");
  EXPECT_EQ(typedBy({36, true, 0, u"\r"}), "");
}

}  // namespace
}  // namespace simulator::steps
