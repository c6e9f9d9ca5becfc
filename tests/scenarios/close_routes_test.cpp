// The command close as a whole, on panels of every kind.
#include <gmock/gmock.h>

#include "support/foreground_story.h"
#include "support/transcript.h"
#include "support/world.h"

namespace tessarine::test {
namespace {

using ::testing::ElementsAre;

const std::vector<std::string> ordinary{"close", "--pid", "812"};
const std::vector<std::string> strict{"close", "--pid", "812", "--strict-background"};

// The events of each step.
const std::string escapes =
    "key 53 down -> 900, key 53 up -> 900, key 53 down -> 812, key 53 up -> 812";
const std::string clickAndEscape =
    ", mouse down 1 (720, 405) -> 812, mouse up 1 (720, 405) -> 812, key 53 down -> 812, "
    "key 53 up -> 812";

Outcome closed(int count) {
  return {0,
          "{\n  \"ok\": true,\n  \"command\": \"close\",\n  \"closed\": " + std::to_string(count) +
              "\n}\n",
          ""};
}
Outcome failed(const std::string& message) {
  return {1, "", message + "\n"};
}

constexpr const char* pressRefused = "AX action AXPress failed: -25204";
constexpr const char* remainedOpen =
    "background-only AXPress was accepted but the captured native folder panel remained open";
constexpr const char* noCloseControl =
    "background-only native folder panel exposes no verified AX close control and targeted process "
    "events did not close it";

struct Row {
  std::string name;
  std::string scenario;
  World::Patches patches;
  Outcome outcome;
  std::string panels;
  std::string events;
  std::string presses;  // the processes whose Cancel buttons were pressed
};

std::string joined(const std::vector<std::string>& texts) {
  std::string all;
  for (const std::string& text : texts) all += (all.empty() ? "" : ", ") + text;
  return all;
}

std::string pressedIn(const simulator::Record& record) {
  std::vector<std::string> pids;
  for (const auto& line : record.lines()) {
    const auto* request = std::get_if<simulator::AccessibilityRequest>(&line.entry);
    if (request != nullptr && request->name == "AXPress") {
      pids.push_back(std::to_string(request->element.pid));
    }
  }
  return joined(pids);
}

void expectRows(const std::vector<Row>& rows, const std::vector<std::string>& arguments) {
  for (const Row& row : rows) {
    SCOPED_TRACE(row.name);
    World world(row.scenario, row.patches);
    EXPECT_EQ(world.run(arguments), row.outcome);
    EXPECT_EQ(world.panelOutcomes(), row.panels);
    EXPECT_EQ(joined(postedEventKinds(world.record())), row.events);
    EXPECT_EQ(pressedIn(world.record()), row.presses);
  }
}

const std::pair<std::string, nlohmann::ordered_json> unlisted{"/panels/0/listed", "none"};
const std::pair<std::string, nlohmann::ordered_json> noCancel{"/panels/0/faults/noCancelButton",
                                                              true};
const std::pair<std::string, nlohmann::ordered_json> deadCancel{
    "/panels/0/faults/cancelDoesNothing", true};
const std::pair<std::string, nlohmann::ordered_json> deaf{"/panels/0/faults/ignoresKeys", true};
const std::pair<std::string, nlohmann::ordered_json> clickFirst{"/panels/0/faults/escapeNeedsClick",
                                                                true};
const std::pair<std::string, nlohmann::ordered_json> keysReachBoth{"/panels/0/keysReach", "both"};

TEST(Close, TheOrdinaryRoute) {
  const std::string service = "english-service-window";
  expectRows(
      {
          {"no panel", "no-panel", {}, closed(0), "", "", ""},
          {"Escape", service, {}, closed(1), "cancelled", escapes, ""},
          {"Escape at a sheet", "chinese-host-sheet", {}, closed(1), "cancelled", escapes, ""},
          {"Escape at an unseen panel", "unseen-folders", {}, closed(1), "cancelled", escapes, ""},
          {"click and Escape",
           service,
           {clickFirst, keysReachBoth},
           closed(1),
           "cancelled",
           escapes + clickAndEscape,
           ""},
          {"Escape after the click is lost",
           service,
           {clickFirst},
           closed(0),
           "open",
           escapes + clickAndEscape,
           ""},
          {"nothing helps", service, {deaf}, closed(0), "open", escapes + clickAndEscape, ""},
          {"one dialog", service, {unlisted}, closed(1), "cancelled", "", "900"},
          {"two dialogs",
           "two-panels",
           {unlisted, {"/panels/1/listed", "none"}, {"/panels/1/service", 901}},
           closed(2),
           "cancelled, cancelled",
           "",
           "901, 900"},
          {"a dialog without Cancel", service, {unlisted, noCancel}, closed(0), "open", "", ""},
          {"an embedded chooser is no dialog", "chinese-embedded", {}, closed(0), "open", "", ""},
          {"a press is refused",
           service,
           {unlisted, {"/panels/0/faults/pressRefused", -25204}},
           failed(pressRefused),
           "open",
           "",
           "900"},
      },
      ordinary);
}

TEST(Close, TheStrictRouteWithCancelButtons) {
  const std::string service = "english-service-window";
  expectRows(
      {
          {"no panel", "no-panel", {}, closed(0), "", "", ""},
          {"Cancel", service, {}, closed(1), "cancelled", "", "900"},
          {"Cancel in the browser", "english-host-window", {}, closed(1), "cancelled", "", "812"},
          {"Cancel in an embedded chooser",
           "chinese-embedded",
           {},
           closed(1),
           "cancelled",
           "",
           "812"},
          {"two panels count as one",
           "two-panels",
           {{"/panels/1/service", 901}},
           closed(1),
           "cancelled, cancelled",
           "",
           "901, 900"},
          {"Escape after Cancel", service, {deadCancel}, closed(1), "cancelled", escapes, "900"},
          {"click and Escape after Cancel",
           service,
           {deadCancel, clickFirst, keysReachBoth},
           closed(1),
           "cancelled",
           escapes + clickAndEscape,
           "900"},
          {"Cancel was accepted in vain",
           service,
           {deadCancel, deaf},
           failed(remainedOpen),
           "open",
           escapes + clickAndEscape,
           "900"},
          {"a closed window that stays listed but cannot be captured",
           service,
           {{"/panels/0/windowList/staysUncapturable", true}},
           closed(1),
           "cancelled",
           "",
           "900"},
      },
      strict);
}

TEST(Close, TheStrictRouteWithoutSuccessfulPresses) {
  const std::string service = "english-service-window";
  expectRows(
      {
          {"Escape without Cancel", service, {noCancel}, closed(1), "cancelled", escapes, ""},
          {"click and Escape without Cancel",
           service,
           {noCancel, clickFirst, keysReachBoth},
           closed(1),
           "cancelled",
           escapes + clickAndEscape,
           ""},
          {"no close control",
           service,
           {noCancel, deaf},
           failed(noCloseControl),
           "open",
           escapes + clickAndEscape,
           ""},
          {"nothing captured and no Cancel",
           service,
           {unlisted, noCancel},
           closed(0),
           "open",
           "",
           ""},
          {"a press is refused",
           service,
           {{"/panels/0/faults/pressRefused", -25204}},
           failed(pressRefused),
           "open",
           "",
           "900"},
      },
      strict);
}

TEST(Close, TemporaryForegroundBringsTheBrowserForwardAndBack) {
  World world("english-service-window");
  EXPECT_EQ(world.run({"close", "--pid", "812", "--temporary-foreground"}), closed(1));
  EXPECT_THAT(foregroundStory(world.record()),
              ElementsAre("frontmost?", "activate 812", frontmostScript(812), "activate 300"));
  EXPECT_EQ(world.panelOutcomes(), "cancelled");
}

// The foreground option wins: Escape comes first, no Cancel button is pressed.
TEST(Close, TemporaryForegroundOverridesStrictBackground) {
  World world("english-service-window", {deaf});
  EXPECT_EQ(world.run({"close", "--pid", "812", "--strict-background", "--temporary-foreground"}),
            closed(0));
  EXPECT_EQ(joined(postedEventKinds(world.record())), escapes + clickAndEscape);
  EXPECT_THAT(foregroundStory(world.record()),
              ElementsAre("frontmost?", "activate 812", frontmostScript(812), "activate 300"));
}

TEST(Close, TemporaryForegroundIsGivenBackAfterAnError) {
  World world("english-service-window", {unlisted, {"/panels/0/faults/pressRefused", -25204}});
  EXPECT_EQ(world.run({"close", "--pid", "812", "--temporary-foreground"}), failed(pressRefused));
  EXPECT_THAT(foregroundStory(world.record()),
              ElementsAre("frontmost?", "activate 812", frontmostScript(812), "activate 300"));
}

TEST(Close, StrictBackgroundLeavesTheForegroundAlone) {
  World world("english-service-window", {noCancel, deaf});
  EXPECT_EQ(world.run(strict), failed(noCloseControl));
  EXPECT_THAT(foregroundStory(world.record()), ElementsAre("frontmost?", "frontmost?"));
  EXPECT_EQ(world.desktop().frontmost(), terminalPid);
}

}  // namespace
}  // namespace tessarine::test
