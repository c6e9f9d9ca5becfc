#include "navigation/row_opening.h"
#include "navigation/folder_selection.h"
#include "navigation/hierarchy.h"

#include <gmock/gmock.h>

#include "dialog/tree.h"
#include "support/transcript.h"

namespace tessarine::test {
namespace {

namespace ax = simulator::ax;
using simulator::Rect;
using simulator::Value;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using Node = simulator::Element;

// An outline with one row, which has one cell, which has one text field.
struct Entry {
  BareDesktop world;
  Node& outline;
  Node& row = add(outline, "row", "AXRow");
  Node& cell = add(row, "cell", "AXCell");
  Node& label = add(cell, "label", "AXTextField");

  explicit Entry(const std::string& description)
      : outline(add(world.app(), "outline", "AXOutline", {{"AXDescription", description}})) {}

  void open(bool allowProcessEvents) {
    openRow(servicePid, NodeRef{world.handle(label), world.handle(cell)}, allowProcessEvents);
  }
  std::vector<std::string> deeds() const { return transcript(world.desktop.record()); }
};

void offer(Node& element, const std::vector<std::string>& actions,
           std::int32_t answer = ax::success) {
  for (const auto& action : actions) element.addAction(action, [answer] { return answer; });
}

TEST(OpenRow, OpensASidebarEntryByItsCellItsRowAndAClick) {
  Entry entry("边栏");
  offer(entry.cell, {"AXOpen"}, ax::cannotComplete);
  offer(entry.row, {"AXShowDefaultUI", "AXShowAlternateUI"}, ax::cannotComplete);
  entry.label.setFrame(Rect{100, 100, 200, 20});
  entry.open(true);
  EXPECT_THAT(
      entry.deeds(),
      ElementsAre("0.000 AXOpen of AXCell in 812", "0.120 AXShowDefaultUI of AXRow in 812",
                  "0.080 AXShowAlternateUI of AXRow in 812", "0.080 mouse down 1 (200, 110) -> 900",
                  "0.050 mouse up 1 (200, 110) -> 900"));
}

// The first action brings the second forth, which only a fresh look at the row can tell.
TEST(OpenRow, AsksASidebarRowAnewBeforeEachAction) {
  Entry entry("边栏");
  entry.row.addAction("AXShowDefaultUI", [&entry] {
    offer(entry.row, {"AXShowAlternateUI"});
    return ax::success;
  });
  entry.open(false);
  EXPECT_THAT(entry.deeds(), ElementsAre("0.000 AXShowDefaultUI of AXRow in 812",
                                         "0.080 AXShowAlternateUI of AXRow in 812"));
}

TEST(OpenRow, DoesNothingWithASidebarEntryWithoutFrameAndActions) {
  for (const bool allowProcessEvents : {false, true}) {
    Entry entry("边栏");
    entry.open(allowProcessEvents);
    EXPECT_THAT(entry.deeds(), IsEmpty());
  }
}

TEST(OpenRow, OpensAListEntryByEveryActionADoubleClickAndThreeKeys) {
  Entry entry("列表视图");
  offer(entry.label, {"AXConfirm", "AXOpen", "AXRaise"});
  offer(entry.row, {"AXShowAlternateUI", "AXShowDefaultUI"});
  offer(entry.cell, {"AXPress"});
  entry.label.setFrame(Rect{100, 100, 200, 20});
  entry.open(true);
  EXPECT_THAT(
      entry.deeds(),
      ElementsAre(
          "0.000 AXOpen of AXTextField in 812", "0.060 AXConfirm of AXTextField in 812",
          "0.060 AXShowDefaultUI of AXRow in 812", "0.060 AXShowAlternateUI of AXRow in 812",
          "0.060 AXPress of AXCell in 812", "0.060 set AXSelectedRows of AXOutline in 812",
          "0.000 set AXFocused of AXOutline in 812", "0.000 mouse down 1 (200, 110) -> 900",
          "0.050 mouse up 1 (200, 110) -> 900", "0.060 mouse down 2 (200, 110) -> 900",
          "0.050 mouse up 2 (200, 110) -> 900", "0.120 key 124 down -> 900",
          "0.020 key 124 up -> 900", "0.080 key 125+100000 down -> 900",
          "0.020 key 125+100000 up -> 900", "0.080 key 36 down -> 900", "0.020 key 36 up -> 900"));
}

TEST(OpenRow, TriesTheFiveActionsInTheirOrder) {
  Entry entry("list");
  offer(entry.cell, {"AXPress", "AXConfirm", "AXShowAlternateUI", "AXShowDefaultUI", "AXOpen"});
  entry.open(false);
  EXPECT_THAT(entry.deeds(),
              ElementsAre("0.000 AXOpen of AXCell in 812", "0.060 AXShowDefaultUI of AXCell in 812",
                          "0.060 AXShowAlternateUI of AXCell in 812",
                          "0.060 AXConfirm of AXCell in 812", "0.060 AXPress of AXCell in 812"));
}

TEST(OpenRow, OnlyPressesTheKeysForAListEntryWithoutAVisibleFrame) {
  for (const Rect& frame : {Rect{}, Rect{100, 100, 200, 0}, Rect{100, 100, 0, 20}}) {
    Entry entry("列表视图");
    entry.label.setFrame(frame);
    entry.open(true);
    EXPECT_THAT(
        postedEventKinds(entry.world.desktop.record()),
        ElementsAre("key 124 down -> 900", "key 124 up -> 900", "key 125+100000 down -> 900",
                    "key 125+100000 up -> 900", "key 36 down -> 900", "key 36 up -> 900"));
  }
}

TEST(OpenRow, SelectsAListEntryEvenWithoutEvents) {
  Entry entry("列表视图");
  offer(entry.label, {"AXOpen"});
  entry.open(false);
  EXPECT_THAT(entry.deeds(), ElementsAre("0.000 AXOpen of AXTextField in 812",
                                         "0.060 set AXSelectedRows of AXOutline in 812",
                                         "0.000 set AXFocused of AXOutline in 812"));
}

TEST(OpenRow, FailsWithoutEventsWhenNoActionSucceeds) {
  const std::string rest = " exposes no successful AX navigation action in strict background mode";
  for (const auto& [description, entryName] :
       {std::pair{"列表视图", "folder row"}, {"list", "dialog item"}}) {
    Entry silent(description);
    EXPECT_EQ(messageOf([&] { silent.open(false); }), entryName + rest);
    Entry refusing(description);
    offer(refusing.label, {"AXOpen"}, ax::cannotComplete);
    EXPECT_EQ(messageOf([&] { refusing.open(false); }), entryName + rest);
    EXPECT_THAT(postedEventKinds(refusing.world.desktop.record()), IsEmpty());
  }
}

TEST(OpenRow, SucceedsWithoutEventsWhenOneActionOfAnyPartDoes) {
  for (const char* description : {"列表视图", "list"}) {
    for (const std::size_t opened : {0U, 1U, 2U}) {
      Entry entry(description);
      const std::vector<Node*> parts{&entry.label, &entry.row, &entry.cell};
      offer(*parts[opened], {"AXConfirm"});
      for (Node* part : parts) offer(*part, {"AXOpen", "AXPress"}, ax::cannotComplete);
      EXPECT_NO_THROW(entry.open(false)) << description << " " << opened;
      EXPECT_THAT(postedEventKinds(entry.world.desktop.record()), IsEmpty());
    }
  }
}

TEST(OpenRow, DoubleClicksAnotherEntryThatHasAFrame) {
  Entry entry("list");
  EXPECT_EQ(messageOf([&] { entry.open(true); }), "target element has no visible frame");
  entry.label.setFrame(Rect{100, 100, 200, 20});
  entry.open(true);
  EXPECT_THAT(
      entry.deeds(),
      ElementsAre("0.000 mouse down 1 (200, 110) -> 900", "0.050 mouse up 1 (200, 110) -> 900",
                  "0.060 mouse down 2 (200, 110) -> 900", "0.050 mouse up 2 (200, 110) -> 900"));
}

TEST(OpenRow, TakesTheTextAroundANodeForItsLabel) {
  for (const char* role : {"AXTextField", "AXStaticText"}) {
    BareDesktop world;
    Node& text = add(world.app(), "text", role);
    text.setFrame(Rect{10, 20, 40, 60});
    Node& icon = add(text, "icon", "AXImage");
    openRow(servicePid, NodeRef{world.handle(icon), world.handle(text)}, true);
    EXPECT_EQ(postedEventKinds(world.desktop.record()).front(), "mouse down 1 (30, 50) -> 900");
  }
}

TEST(OpenRow, TakesANodeWithoutTextForItsOwnLabel) {
  BareDesktop world;
  Node& group = add(world.app(), "group");
  group.setFrame(Rect{10, 20, 40, 60});
  openRow(servicePid, NodeRef{world.handle(group), world.appHandle()}, true);
  EXPECT_EQ(postedEventKinds(world.desktop.record()).front(), "mouse down 1 (30, 50) -> 900");
}

TEST(WaitForPopupValue, LooksEvery150MillisecondsUntilThePopupShowsTheName) {
  BareDesktop world;
  Node& popup = add(world.app(), "popup", "AXPopUpButton", {{"AXTitle", std::string("usr")}});
  waitForPopupValue(world.appHandle(), "usr", 1);
  world.desktop.schedule(0.4, [&] { popup.set("AXValue", std::string("lib")); });
  waitForPopupValue(world.appHandle(), "lib", 1);
  EXPECT_EQ(messageOf([&] { waitForPopupValue(world.appHandle(), "usr", 0.5); }),
            "timed out after 0.5s");
  EXPECT_THAT(sleepLengths(world.desktop.record()), ElementsAre("0.15"));
}

TEST(SetSearchQuery, WritesTheSearchField) {
  BareDesktop world;
  EXPECT_EQ(messageOf([&] { setSearchQuery(world.appHandle(), "lib"); }),
            "search field not found in open dialog");
  Node& field =
      add(world.app(), "search", "AXTextField", {{"AXSubrole", std::string("AXSearchField")}});
  std::int32_t answer = ax::cannotComplete;
  field.makeSettable("AXValue", [&answer](const Value&) { return answer; });
  EXPECT_EQ(messageOf([&] { setSearchQuery(world.appHandle(), "lib"); }),
            "failed to write search field: -25204");
  answer = ax::success;
  EXPECT_NO_THROW(setSearchQuery(world.appHandle(), "lib"));
}

TEST(StabilizeFolderSelection, GivesUpAfterTwoSecondsAtMost) {
  for (const auto& [seconds, message] :
       {std::pair{10.0, "timed out after 2.0s"}, {0.5, "timed out after 0.5s"}}) {
    Entry entry("列表视图");
    EXPECT_EQ(messageOf([&, limit = seconds] {
                stabilizeFolderSelection(entry.world.appHandle(), servicePid, "/usr/lib", limit);
              }),
              message);
    EXPECT_THAT(sleepLengths(entry.world.desktop.record()), ElementsAre("0.1"));
  }
}

TEST(StabilizeFolderSelection, ConfirmsTheNameFieldAndOpensTheRow) {
  Entry entry("列表视图");
  entry.label.set("AXValue", std::string("lib"));
  Node& name = add(entry.world.app(), "name", "AXTextField", {{"AXValue", std::string("lib")}});
  name.setFrame(Rect{0, 0, 120, 20});
  offer(name, {"AXConfirm"}, ax::cannotComplete);
  stabilizeFolderSelection(entry.world.appHandle(), servicePid, "/usr/lib/", 1);
  EXPECT_THAT(entry.deeds(),
              ElementsAre("0.000 AXConfirm of AXTextField in 812",
                          "0.100 set AXSelectedRows of AXOutline in 812",
                          "0.000 set AXFocused of AXOutline in 812", "0.120 key 124 down -> 900",
                          "0.020 key 124 up -> 900", "0.080 key 125+100000 down -> 900",
                          "0.020 key 125+100000 up -> 900", "0.080 key 36 down -> 900",
                          "0.020 key 36 up -> 900"));
  const double lastKey = std::stod(postedEvents(entry.world.desktop.record()).back());
  EXPECT_NEAR(entry.world.now() - lastKey, 0.08 + 0.15, 0.001);
}

TEST(StabilizeFolderSelection, KnowsTheRowByItsLocation) {
  Entry entry("列表视图");
  entry.label.set("AXValue", std::string("Bibliothek"));
  entry.label.set("AXURL", simulator::Url{"file:///usr/lib/"});
  EXPECT_NO_THROW(stabilizeFolderSelection(entry.world.appHandle(), servicePid, "/usr/lib", 1));
}

}  // namespace
}  // namespace tessarine::test
