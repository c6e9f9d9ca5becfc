// The command close as a whole, on panels of every kind.
#include <gmock/gmock.h>

#include "support/foreground_story.h"
#include "support/transcript.h"
#include "support/world.h"

namespace tessarine::test::close_routes {
namespace {

using ::testing::ElementsAre;

const std::vector<std::string> ordinary{"close", "--pid", "812"};
const std::vector<std::string> strict{"close", "--pid", "812", "--strict-background"};

// What each step does, after the seconds slept before: Escape at the service and at the browser, a
// click into the panel and Escape at the browser, a press of Cancel.
const std::string escapes =
    "key 53 down -> 900, 0.020 key 53 up -> 900, 0.080 key 53 down -> 812, 0.020 key 53 up -> 812";
const std::string clickAndEscape =
    "mouse down 1 (720, 405) -> 812, 0.050 mouse up 1 (720, 405) -> 812, 0.180 key 53 down -> 812, "
    "0.020 key 53 up -> 812";
// Whose window it is, the button belongs to the service that draws the panel.
const std::string cancelInService = "0.000 AXPress of AXButton in 900";
const std::string cancelTwice =
    "0.000 AXPress of AXButton in 901, 0.100 AXPress of AXButton in 900";

// In 0.8 s there are five looks of 0.05 s, each with a pause of 0.12 s, after the 0.08 s that
// follow Escape.
const std::string onlyEscape = "0.000 " + escapes;
const std::string allEvents = onlyEscape + ", 0.680 " + clickAndEscape;

// A strict look takes another 0.07 s, to capture the browser's window: four in 0.8 s after the 0.1
// s that follow a press, eight in 1.8 s.
const std::string strictEvents = escapes + ", 1.040 " + clickAndEscape;
const std::string afterPress = ", 0.580 ";

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
  std::string deeds;
};

std::string joined(const std::vector<std::string>& texts) {
  std::string all;
  for (const std::string& text : texts) all += (all.empty() ? "" : ", ") + text;
  return all;
}

void expectRows(const std::vector<Row>& rows, const std::vector<std::string>& arguments) {
  for (const Row& row : rows) {
    SCOPED_TRACE(row.name);
    World world(row.scenario, row.patches);
    EXPECT_EQ(world.run(arguments), row.outcome);
    EXPECT_EQ(world.panelOutcomes(), row.panels);
    EXPECT_EQ(joined(transcript(world.record())), row.deeds);
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
          {"no panel", "no-panel", {}, closed(0), "", ""},
          {"Escape", service, {}, closed(1), "cancelled", onlyEscape},
          {"Escape at a sheet", "chinese-host-sheet", {}, closed(1), "cancelled", onlyEscape},
          {"Escape at an unseen panel", "unseen-folders", {}, closed(1), "cancelled", onlyEscape},
          {"click and Escape",
           service,
           {clickFirst, keysReachBoth},
           closed(1),
           "cancelled",
           allEvents},
          {"Escape after the click is lost", service, {clickFirst}, closed(0), "open", allEvents},
          {"nothing helps", service, {deaf}, closed(0), "open", allEvents},
          {"one dialog", service, {unlisted}, closed(1), "cancelled", cancelInService},
          {"two dialogs",
           "two-panels",
           {unlisted, {"/panels/1/listed", "none"}, {"/panels/1/service", 901}},
           closed(2),
           "cancelled, cancelled",
           cancelTwice},
          {"a dialog without Cancel", service, {unlisted, noCancel}, closed(0), "open", ""},
          {"an embedded chooser is no dialog", "chinese-embedded", {}, closed(0), "open", ""},
          {"a press is refused",
           service,
           {unlisted, {"/panels/0/faults/pressRefused", -25204}},
           failed(pressRefused),
           "open",
           cancelInService},
      },
      ordinary);
}

TEST(Close, TheStrictRouteWithCancelButtons) {
  const std::string service = "english-service-window";
  expectRows(
      {
          {"no panel", "no-panel", {}, closed(0), "", ""},
          {"Cancel", service, {}, closed(1), "cancelled", cancelInService},
          {"Cancel in the browser",
           "english-host-window",
           {},
           closed(1),
           "cancelled",
           cancelInService},
          {"Cancel in an embedded chooser",
           "chinese-embedded",
           {},
           closed(1),
           "cancelled",
           cancelInService},
          {"two panels count as one",
           "two-panels",
           {{"/panels/1/service", 901}},
           closed(1),
           "cancelled, cancelled",
           cancelTwice},
          {"Escape after Cancel",
           service,
           {deadCancel},
           closed(1),
           "cancelled",
           cancelInService + afterPress + escapes},
          {"click and Escape after Cancel",
           service,
           {deadCancel, clickFirst, keysReachBoth},
           closed(1),
           "cancelled",
           cancelInService + afterPress + strictEvents},
          {"Cancel was accepted in vain",
           service,
           {deadCancel, deaf},
           failed(remainedOpen),
           "open",
           cancelInService + afterPress + strictEvents},
          {"a closed window that stays listed but cannot be captured",
           service,
           {{"/panels/0/windowList/staysUncapturable", true}},
           closed(1),
           "cancelled",
           cancelInService},
      },
      strict);
}

TEST(Close, TheStrictRouteWithoutSuccessfulPresses) {
  const std::string service = "english-service-window";
  expectRows(
      {
          {"Escape without Cancel", service, {noCancel}, closed(1), "cancelled", onlyEscape},
          {"click and Escape without Cancel",
           service,
           {noCancel, clickFirst, keysReachBoth},
           closed(1),
           "cancelled",
           "0.000 " + strictEvents},
          {"no close control",
           service,
           {noCancel, deaf},
           failed(noCloseControl),
           "open",
           "0.000 " + strictEvents},
          {"nothing captured and no Cancel", service, {unlisted, noCancel}, closed(0), "open", ""},
          {"a press is refused",
           service,
           {{"/panels/0/faults/pressRefused", -25204}},
           failed(pressRefused),
           "open",
           cancelInService},
      },
      strict);
}

// The pause for the browser to come forward, after the 0.05 s that asking for it takes.
const std::string inFront = "0.600 ";

TEST(Close, TemporaryForegroundBringsTheBrowserForwardAndBack) {
  World world("english-service-window");
  EXPECT_EQ(world.run({"close", "--pid", "812", "--temporary-foreground"}), closed(1));
  EXPECT_THAT(foregroundStory(world.record()),
              ElementsAre("frontmost?", "activate 812", frontmostScript(812), "activate 300"));
  EXPECT_EQ(joined(transcript(world.record())), inFront + escapes);
  EXPECT_EQ(world.panelOutcomes(), "cancelled");
}

// The foreground option wins: Escape comes first, no Cancel button is pressed.
TEST(Close, TemporaryForegroundOverridesStrictBackground) {
  World world("english-service-window", {deaf});
  EXPECT_EQ(world.run({"close", "--pid", "812", "--strict-background", "--temporary-foreground"}),
            closed(0));
  EXPECT_EQ(joined(transcript(world.record())), inFront + escapes + ", 0.680 " + clickAndEscape);
  EXPECT_THAT(foregroundStory(world.record()),
              ElementsAre("frontmost?", "activate 812", frontmostScript(812), "activate 300"));
}

TEST(Close, TemporaryForegroundIsGivenBackAfterAnError) {
  World world("english-service-window", {unlisted, {"/panels/0/faults/pressRefused", -25204}});
  EXPECT_EQ(world.run({"close", "--pid", "812", "--temporary-foreground"}), failed(pressRefused));
  EXPECT_EQ(joined(transcript(world.record())), inFront + "AXPress of AXButton in 900");
  EXPECT_THAT(foregroundStory(world.record()),
              ElementsAre("frontmost?", "activate 812", frontmostScript(812), "activate 300"));
}

TEST(Close, StrictBackgroundLeavesTheForegroundAlone) {
  World world("english-service-window", {noCancel, deaf});
  EXPECT_EQ(world.run(strict), failed(noCloseControl));
  EXPECT_THAT(foregroundStory(world.record()), ElementsAre("frontmost?", "frontmost?"));
  EXPECT_EQ(world.desktop().frontmost(), terminalPid);
}

TEST(Close, WatchesTheCapturedWindowsEvery120Milliseconds) {
  for (const auto& arguments : {ordinary, strict}) {
    World world("english-service-window", {noCancel, deaf});
    world.run(arguments);
    EXPECT_THAT(sleepLengths(world.record()), ElementsAre("0.02", "0.05", "0.08", "0.12", "0.18"));
  }
}

// Accessibility does not show the panel: without its windows there is nothing to close.
TEST(CloseRoutes, LeaveAPanelAloneWhoseWindowsAreExcluded) {
  for (auto words : {ordinary, strict}) {
    World world("unseen-folders");
    words.insert(words.end(), {"--exclude-window-id", "103", "--exclude-window-id", "104"});
    EXPECT_EQ(world.run(words), closed(0));
    EXPECT_EQ(world.panelOutcomes(), "open");
  }
}

}  // namespace
}  // namespace tessarine::test::close_routes
