// Every platform function that the helper calls, made to fail in each way that its documentation
// names: what the helper prints, and what the tool makes of that.
#include "platform/error_codes.h"

#include <gmock/gmock.h>

#include <nlohmann/json.hpp>

#include "capture-helper/helper_desktop.h"
#include "platform/accessibility.h"
#include "simulator/frameworks/faults.h"

namespace tessarine::test {
namespace {

using simulator::FaultyFrameworks;
using simulator::Value;
using Json = nlohmann::ordered_json;

Outcome lines(const std::string& text) {
  return {0, text, ""};
}
Outcome list() {
  return runHelper({"list"});
}

simulator::FrameworkFaults nullFrom(const std::string& function) {
  return {.answers_null = [=](const std::string& called) { return called == function; }};
}

simulator::FrameworkFaults describing(const std::u16string& key, const Value& value) {
  return {.window_descriptions = {{key, value}}};
}

constexpr double beyondThirtyTwoBits = 5e9;
const Value missing;

// --- CGWindowListCopyWindowInfo. ---

TEST(WindowListErrors, NoListIsAListWithoutWindows) {
  HelperDesktop world;
  world.addListed("Open", {10, 20, 800, 600});
  const FaultyFrameworks faulty(nullFrom("CGWindowListCopyWindowInfo"));
  EXPECT_EQ(list(), lines(""));
  EXPECT_EQ(world.desktop.record().accessibilityRequests(), 0U);
}

// --- CFDictionaryGetValue, CFNumberGetValue, CGRectMakeWithDictionaryRepresentation. ---

const std::string start = "101\tpid=812\t";
const std::string browser = "app=Google Chrome\t";
const std::string title = "title=Open\t";
const std::string frame = "frame=10.0,20.0,800.0,600.0\n";
const std::string noFrame = "frame=0.0,0.0,0.0,0.0\n";

struct Described {
  std::u16string key;
  Value value;
  std::string line;
};

const std::vector<Described> descriptions{
    {u"kCGWindowNumber", missing, "0\tpid=812\t" + browser + title + frame},
    {u"kCGWindowNumber", "101", "0\tpid=812\t" + browser + title + frame},
    {u"kCGWindowNumber", beyondThirtyTwoBits, "0\tpid=812\t" + browser + title + frame},
    {u"kCGWindowNumber", 101.5, "0\tpid=812\t" + browser + title + frame},
    {u"kCGWindowOwnerPID", missing, "101\tpid=0\t" + browser + title + frame},
    {u"kCGWindowOwnerPID", true, "101\tpid=0\t" + browser + title + frame},
    {u"kCGWindowOwnerPID", -beyondThirtyTwoBits, "101\tpid=0\t" + browser + title + frame},
    {u"kCGWindowOwnerName", missing, start + "app=\t" + title + frame},
    {u"kCGWindowOwnerName", 812.0, start + "app=\t" + title + frame},
    {u"kCGWindowName", missing, start + browser + "title=\t" + frame},
    {u"kCGWindowName", 7.0, start + browser + "title=\t" + frame},
    {u"kCGWindowName", simulator::List{"Open"}, start + browser + "title=\t" + frame},
    {u"kCGWindowLayer", missing, start + browser + title + frame},
    {u"kCGWindowLayer", "0", start + browser + title + frame},
    {u"kCGWindowBounds", missing, start + browser + title + noFrame},
    {u"kCGWindowBounds", "10, 20, 800, 600", start + browser + title + noFrame},
    {u"kCGWindowBounds", simulator::List{10.0, 20.0, 800.0, 600.0},
     start + browser + title + noFrame},
    {u"X", missing, start + browser + title + noFrame},
    {u"Y", "20", start + browser + title + noFrame},
    {u"Width", missing, start + browser + title + noFrame},
    {u"Height", true, start + browser + title + noFrame},
};

TEST(WindowListErrors, WhatIsMissingOrOfAnotherKindIsNumberZeroOrEmpty) {
  for (const Described& described : descriptions) {
    SCOPED_TRACE(testing::PrintToString(described.key) + ": " + described.line);
    HelperDesktop world;
    world.addListed("Open", {10, 20, 800, 600});
    EXPECT_EQ(list(), lines(start + browser + title + frame));
    const FaultyFrameworks faulty({.window_descriptions = {{described.key, described.value}}});
    EXPECT_EQ(list(), lines(described.line));
  }
}

// The browser's windows are those of a layer that is looked up when none is known.
TEST(WindowListErrors, AnUnknownLayerIsThatOfOrdinaryWindows) {
  for (const Value& layer : {missing, Value("25"), Value(beyondThirtyTwoBits)}) {
    HelperDesktop world;
    world.addWindow("Page");
    world.desktop.windows().front()->layer = 25;
    world.desktop.faults().screen_recording_denied = true;
    const std::string rest = "\tframe=100.0,100.0,800.0,600.0\n";
    EXPECT_EQ(list(), lines(start + browser + "title=" + rest));
    const FaultyFrameworks faulty(describing(u"kCGWindowLayer", layer));
    EXPECT_EQ(list(), lines(start + browser + "title=Page" + rest));
  }
}

// --- What the tool makes of such lists. ---

Json backgroundPanels(World& world) {
  const Outcome outcome = world.run({"list-background-panels", "--pid", "812"});
  EXPECT_EQ(std::pair(outcome.exitStatus, outcome.errors), std::pair(0, std::string()));
  const Json result = Json::parse(outcome.output);
  EXPECT_EQ(result.at("command"), "list-background-panels");
  return result.at("windows");
}

// The numbers of the listed panels; the browser's window of the panel and its service's.
using Numbers = std::vector<int>;
const Numbers both{104, 103};

Numbers panelNumbers(const simulator::FrameworkFaults& faults) {
  World world("english-service-window");
  const FaultyFrameworks faulty(faults);
  Numbers numbers;
  for (const Json& window : backgroundPanels(world)) numbers.push_back(window.at("windowID"));
  return numbers;
}

TEST(WindowListErrors, TheToolKeepsPanelsWithoutANumberAndDropsWhatItCannotTell) {
  EXPECT_EQ(panelNumbers({}), both);
  EXPECT_EQ(panelNumbers(nullFrom("CGWindowListCopyWindowInfo")), Numbers());
  EXPECT_EQ(panelNumbers(describing(u"kCGWindowLayer", missing)), both);
  for (const Value& odd : {missing, Value("1"), Value(beyondThirtyTwoBits)}) {
    EXPECT_EQ(panelNumbers(describing(u"kCGWindowNumber", odd)), (Numbers{0, 0}));
    EXPECT_EQ(panelNumbers(describing(u"kCGWindowOwnerPID", odd)), Numbers());
    EXPECT_EQ(panelNumbers(describing(u"kCGWindowBounds", odd)), Numbers());
  }
  for (const Value& odd : {missing, Value(1.0)}) {
    EXPECT_EQ(panelNumbers(describing(u"kCGWindowOwnerName", odd)), Numbers());
    // Accessibility knows the title of the service's window alone.
    EXPECT_EQ(panelNumbers(describing(u"kCGWindowName", odd)), Numbers{104});
  }
}

// --- Accessibility. ---

struct Untitled : HelperDesktop {
  Untitled() {
    desktop.faults().screen_recording_denied = true;
    simulator::Element& page = addWindow("Page");
    sheet = &page.addChild("AXSheet");
    sheet->set("AXTitle", "Open");
    sheet->setFrame({150, 120, 600, 400});
    addListed("", {150, 120, 600, 400});
  }
  // What the list says of the sheet and of the page below it.
  Outcome titled(const std::string& ofSheet, const std::string& ofPage) const {
    return lines("102\tpid=812\t" + browser + "title=" + ofSheet +
                 "\tframe=150.0,120.0,600.0,400.0\n" + start + browser + "title=" + ofPage +
                 "\tframe=100.0,100.0,800.0,600.0\n");
  }
  simulator::Element* sheet = nullptr;
};

TEST(WithheldTitleErrors, WhatCannotBeReadLeavesTheTitleAway) {
  for (const std::int32_t code : copyErrors) {
    SCOPED_TRACE(code);
    Untitled world;
    EXPECT_EQ(list(), world.titled("Open", "Page"));
    for (const char* needed : {"AXWindows", "AXTitle", "AXPosition", "AXSize"}) {
      refuse(world.desktop, Verb::copy, code, needed);
      EXPECT_EQ(list(), world.titled("", "")) << needed;
    }
    for (const char* neededForSheets : {"AXChildren", "AXRole"}) {
      refuse(world.desktop, Verb::copy, code, neededForSheets);
      EXPECT_EQ(list(), world.titled("", "Page")) << neededForSheets;
    }
    refuse(world.desktop, Verb::copy, code, "AXTitle", "AXWindow");
    EXPECT_EQ(list(), world.titled("Open", ""));
    refuse(world.desktop, Verb::copy, code);
    EXPECT_EQ(list(), world.titled("", ""));
  }
}

// The titles are asked for all the same, and each answer is waited for as long as the platform
// waits.
TEST(WithheldTitleErrors, AnAnswerLimitThatIsRefusedIsDoneWithout) {
  for (const std::int32_t code : messagingTimeoutErrors) {
    SCOPED_TRACE(code);
    Untitled world;
    const FaultyFrameworks faulty({.messaging_timeout_error = code});
    EXPECT_EQ(list(), world.titled("Open", "Page"));
    EXPECT_LT(world.now(), 0.1);

    Untitled slow;
    slow.sheet->setReadableFrom(1.2);
    EXPECT_EQ(list(), slow.titled("Open", "Page"));
    EXPECT_NEAR(slow.now(), 1.2, 0.1);
  }
  Untitled limited;
  limited.sheet->setReadableFrom(1.2);
  EXPECT_EQ(list(), limited.titled("", "Page"));
}

}  // namespace
}  // namespace tessarine::test
