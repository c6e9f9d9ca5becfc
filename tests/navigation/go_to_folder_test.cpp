#include "navigation/go_to_folder.h"

#include <gmock/gmock.h>

#include <algorithm>

#include "support/transcript.h"
#include "support/world.h"

namespace tessarine::test::go_to_folder {
namespace {

namespace ax = simulator::ax;
using simulator::Value;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

// A process with a go-to field that takes what is written, until a test gives it another nature.
struct Sheet {
  BareDesktop world;
  simulator::Element* field = nullptr;

  Sheet() { addField(); }
  explicit Sheet(double appearsAtSeconds) {
    world.desktop.schedule(appearsAtSeconds, [this] { addField(); });
  }

  void addField() {
    field = &world.app().addChild("AXTextField");
    field->setFrame({0, 0, 300, 24});
    field->set("AXValue", std::string());
    field->makeSettable("AXFocused", [](const Value&) { return ax::success; });
    field->makeSettable("AXValue", [this](const Value& value) {
      field->set("AXValue", value);
      return ax::success;
    });
    addConfirm(ax::success);
  }
  void addConfirm(std::int32_t answer) {
    field->addAction("AXConfirm", [answer] { return answer; });
  }
  void send(const std::string& path, double timeoutSeconds = defaultGoToFieldSeconds) {
    setGoToFolderPathAX(world.appHandle(), servicePid, path, timeoutSeconds);
  }
  std::string failure(const std::string& path, double timeoutSeconds = defaultGoToFieldSeconds) {
    return messageOf([&] { send(path, timeoutSeconds); });
  }
  std::vector<std::string> deeds() const { return transcript(world.desktop.record()); }
  // The time of the last request; from then on the tool only slept.
  double lastRequest() const {
    const auto& lines = world.desktop.record().lines();
    const auto last = std::find_if(lines.rbegin(), lines.rend(), [](const auto& line) {
      return std::holds_alternative<simulator::AccessibilityRequest>(line.entry);
    });
    return last->time;
  }
};

TEST(OpenGoToFolderSheet, PressesCommandShiftGAndPauses) {
  BareDesktop world;
  openGoToFolderSheet(servicePid);
  EXPECT_THAT(postedEvents(world.desktop.record()),
              ElementsAre("0.000 key 5+120000 down -> 900", "0.020 key 5+120000 up -> 900"));
  EXPECT_DOUBLE_EQ(world.now(), 0.02 + 0.15);
}

TEST(SetGoToFolderPath, WritesOnceAndConfirmsTheField) {
  Sheet sheet;
  sheet.send("/usr/lib");
  EXPECT_THAT(sheet.deeds(), ElementsAre("0.000 set AXFocused of AXTextField in 812",
                                         "0.000 set AXValue of AXTextField in 812: /usr/lib",
                                         "0.120 AXConfirm of AXTextField in 812"));
  EXPECT_DOUBLE_EQ(sheet.world.now(), sheet.lastRequest() + 0.2);
}

TEST(SetGoToFolderPath, PressesReturnWhereTheFieldCannotBeConfirmed) {
  Sheet sheet;
  sheet.world.app().removeChild(*sheet.field);
  sheet.field = &sheet.world.app().addChild("AXTextField");
  sheet.field->set("AXFocused", true);
  sheet.field->makeSettable("AXValue", [&sheet](const Value& value) {
    sheet.field->set("AXValue", value);
    return ax::success;
  });
  sheet.send("/usr/lib");
  EXPECT_THAT(sheet.deeds(), ElementsAre("0.000 set AXFocused of AXTextField in 812",
                                         "0.000 set AXValue of AXTextField in 812: /usr/lib",
                                         "0.120 key 36 down -> 900", "0.020 key 36 up -> 900"));
  EXPECT_NEAR(sheet.world.now(), sheet.lastRequest() + 0.02 + 0.2 + 0.2, 1e-9);
}

TEST(SetGoToFolderPath, WritesASecondTimeWhenTheFirstDoesNotReadBack) {
  Sheet sheet;
  bool written = false;
  sheet.field->makeSettable("AXValue", [&](const Value& value) {
    sheet.field->set("AXValue", written ? value : Value(std::string("/")));
    written = true;
    return ax::success;
  });
  sheet.send("/usr/lib");
  EXPECT_THAT(sheet.deeds(), ElementsAre("0.000 set AXFocused of AXTextField in 812",
                                         "0.000 set AXValue of AXTextField in 812: /usr/lib",
                                         "0.120 set AXValue of AXTextField in 812: /usr/lib",
                                         "0.120 AXConfirm of AXTextField in 812"));
}

TEST(SetGoToFolderPath, WritesASecondTimeWhenTheFirstIsRefused) {
  Sheet sheet;
  int writes = 0;
  sheet.field->makeSettable("AXValue", [&](const Value& value) {
    sheet.field->set("AXValue", value);  // it took the text all the same
    return ++writes == 1 ? ax::cannotComplete : ax::success;
  });
  sheet.send("/usr/lib");
  EXPECT_EQ(writes, 2);
}

TEST(SetGoToFolderPath, FailsWhenTheFieldNormalizesTheText) {
  Sheet sheet;
  sheet.field->makeSettable("AXValue", [&sheet](const Value&) {
    sheet.field->set("AXValue", std::string("/usr/lib"));
    return ax::success;
  });
  EXPECT_EQ(sheet.failure("/usr/lib/"), "failed to set go-to-folder value via AX (got: /usr/lib)");
  EXPECT_THAT(sheet.deeds(), ElementsAre("0.000 set AXFocused of AXTextField in 812",
                                         "0.000 set AXValue of AXTextField in 812: /usr/lib/",
                                         "0.120 set AXValue of AXTextField in 812: /usr/lib/"));
}

TEST(SetGoToFolderPath, FailsWhenTheFieldIsReadOnly) {
  Sheet sheet;
  sheet.field->set("AXValue", std::string("/old"));
  sheet.field->makeSettable("AXValue", [](const Value&) { return ax::attributeUnsupported; });
  EXPECT_EQ(sheet.failure("/usr"), "failed to set go-to-folder value via AX (got: /old)");
}

TEST(SetGoToFolderPath, ReadsAValueThatIsNoTextAsEmpty) {
  Sheet sheet;
  sheet.field->makeSettable("AXValue", [&sheet](const Value&) {
    sheet.field->set("AXValue", 7.0);
    return ax::success;
  });
  EXPECT_EQ(sheet.failure("/usr"), "failed to set go-to-folder value via AX (got: )");
}

TEST(SetGoToFolderPath, ComparesTheTextExactly) {
  Sheet sheet;
  sheet.field->makeSettable("AXValue", [&sheet](const Value&) {
    sheet.field->set("AXValue", std::string("/caf\u0065\u0301"));
    return ax::success;
  });
  EXPECT_EQ(sheet.failure("/caf\u00e9"),
            "failed to set go-to-folder value via AX (got: /caf\u0065\u0301)");
}

TEST(SetGoToFolderPath, GoesOnWhenTheFieldRefusesTheFocus) {
  Sheet sheet;
  sheet.field->makeSettable("AXFocused", [](const Value&) { return ax::cannotComplete; });
  sheet.send("/usr/lib");
  EXPECT_EQ(sheet.deeds().back(), "0.120 AXConfirm of AXTextField in 812");
}

TEST(SetGoToFolderPath, PassesAFailedConfirmationOn) {
  Sheet sheet;
  sheet.addConfirm(ax::cannotComplete);
  EXPECT_EQ(sheet.failure("/usr"), "AX action AXConfirm failed: -25204");
  EXPECT_THAT(postedEventKinds(sheet.world.desktop.record()), IsEmpty());
}

// Looks at 0, 0.1, 0.2, 0.3 and 0.4 s, a few requests later each.
TEST(SetGoToFolderPath, LooksForTheFieldEvery100Milliseconds) {
  Sheet sheet(0.35);
  sheet.send("/usr/lib");
  EXPECT_EQ(sheet.deeds().front(), "0.400 set AXFocused of AXTextField in 812");
}

TEST(SetGoToFolderPath, GivesUpWhenNoFieldAppearsInTime) {
  Sheet sheet(3);
  EXPECT_EQ(messageOf([&] { setGoToFolderPathAX(sheet.world.appHandle(), servicePid, "/usr"); }),
            "timed out after 1.5s");
  EXPECT_GE(sheet.world.now(), 1.5);
  EXPECT_LT(sheet.world.now(), 1.62);
  EXPECT_EQ(sheet.failure("/usr", 0.25), "timed out after 0.25s");
  EXPECT_THAT(sleepLengths(sheet.world.desktop.record()), ElementsAre("0.1"));
  EXPECT_THAT(sheet.deeds(), IsEmpty());
}

TEST(SetGoToFolderPath, LooksNotOnceWhenThereIsNoTime) {
  Sheet sheet;
  EXPECT_EQ(sheet.failure("/usr", 0), "timed out after 0.0s");
  EXPECT_EQ(sheet.failure("/usr", -1), "timed out after -1.0s");
  EXPECT_EQ(sheet.world.desktop.record().accessibilityRequests(), 0U);
  EXPECT_EQ(sheet.world.now(), 0);
}

}  // namespace
}  // namespace tessarine::test::go_to_folder
