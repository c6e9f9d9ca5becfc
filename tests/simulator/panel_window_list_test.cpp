// What the window list gets wrong about a panel, and what the snapshot program can see.
#include <gtest/gtest.h>

#include <algorithm>

#include "tests/simulator/panel_world.h"

namespace simulator {
namespace {

struct ListedWindow {
  std::uint32_t number = 0;
  Pid owner = 0;
  Rect frame;
};

class WindowListWorld : public PanelWorld {
 public:
  explicit WindowListWorld(Json list, Json panel = Json::object())
      : PanelWorld(withList(std::move(list), std::move(panel))) {}

  // The windows titled "Open" in the window list, front to back.
  std::vector<ListedWindow> listed() {
    enum { number, owner, owner_name, title, layer, frame };
    std::vector<ListedWindow> windows;
    const Reply reply = desktop().answer(AskWindows{});
    for (const Value& value : std::get<List>(reply.value)) {
      const auto& window = std::get<List>(value);
      const auto at = [&](std::size_t index) { return std::get<double>(window.at(index)); };
      if (std::get<std::string>(window.at(title)) != "Open") continue;
      windows.push_back({static_cast<std::uint32_t>(at(number)),
                         static_cast<Pid>(at(owner)),
                         {at(frame), at(frame + 1), at(frame + 2), at(frame + 3)}});
    }
    return windows;
  }
  std::vector<Pid> owners() {
    std::vector<Pid> pids;
    for (const ListedWindow& window : listed()) pids.push_back(window.owner);
    std::sort(pids.begin(), pids.end());
    return pids;
  }
  int captureStatus(std::uint32_t number) {
    const ProgramId id = desktop().startProgram(
        "/usr/sbin/screencapture",
        {"-x", "-o", "-t", "png", "-l" + std::to_string(number), sample.path("image")});
    while (!desktop().programResult(id)) desktop().advanceTo(*desktop().nextDeadline());
    return desktop().programResult(id)->exitStatus;
  }
  void confirm() {
    key(key::returnKey);
    pass(0.1);
    EXPECT_EQ(panel().outcome().end, PanelOutcome::End::chosen);
    EXPECT_FALSE(panel().alive());
  }

 private:
  static Json withList(Json list, Json panel) {
    panel["windowList"] = std::move(list);
    return panel;
  }
};

using Pids = std::vector<Pid>;

TEST(PanelWindowList, NamesBothWindowsWhileThePanelIsOpenAndNoneAfterwards) {
  WindowListWorld world(Json::object());
  EXPECT_EQ(world.owners(), (Pids{host, service}));
  world.confirm();
  EXPECT_EQ(world.owners(), Pids{});
}

TEST(PanelWindowList, LosesAPanelThatStaysOpen) {
  WindowListWorld world(Json{{"leavesAfterSeconds", 2}});
  world.pass(1.9);
  EXPECT_EQ(world.owners(), (Pids{host, service}));
  world.pass(0.1);
  EXPECT_EQ(world.owners(), Pids{});
  world.click(world.identified("OKButton"));
  EXPECT_EQ(world.panel().outcome().path, world.sample.path());
}

TEST(PanelWindowList, NamesTheHostsWindowLate) {
  WindowListWorld world(Json{{"hostListedAfterSeconds", 2}});
  EXPECT_EQ(world.owners(), Pids{service});
  world.pass(2);
  EXPECT_EQ(world.owners(), (Pids{host, service}));
  WindowListWorld never(Json{{"hostListedAfterSeconds", 2}}, Json{{"listed", "service"}});
  never.pass(3);
  EXPECT_EQ(never.owners(), Pids{service});
}

TEST(PanelWindowList, KeepsAClosedPanelThatCanNoLongerBeCaptured) {
  WindowListWorld world(Json{{"staysUncapturable", true}});
  const auto before = world.listed();
  EXPECT_EQ(world.captureStatus(before.at(0).number), 0);
  const Point inside{400, 300};
  world.confirm();
  world.pass(100);
  const auto after = world.listed();
  ASSERT_EQ(after.size(), 2U);
  for (std::size_t i = 0; i < after.size(); ++i) {
    EXPECT_EQ(after[i].number, before[i].number);
    EXPECT_EQ(after[i].frame, before[i].frame);
    EXPECT_EQ(world.captureStatus(after[i].number), 1);
  }
  EXPECT_EQ(world.desktop().windowAt(inside)->title, "Extensions") << "nothing hits a ghost";
  EXPECT_EQ(world.all("AXIdentifier", "open-panel").size(), 0U);
}

TEST(PanelWindowList, KeepsAClosedPanelForAWhileThatCanBeCaptured) {
  WindowListWorld world(Json{{"staysAfterClosingSeconds", 3}}, Json{{"listed", "host"}});
  const std::uint32_t number = world.listed().at(0).number;
  world.confirm();
  world.pass(2.5);
  EXPECT_EQ(world.owners(), Pids{host});
  EXPECT_EQ(world.captureStatus(number), 0);
  world.pass(0.5);
  EXPECT_EQ(world.owners(), Pids{});
  EXPECT_EQ(world.captureStatus(number), 1);
}

TEST(PanelWindowList, GivesAnOpenPanelNewNumbers) {
  WindowListWorld world(Json{{"changesNumberAfterSeconds", 1}},
                        Json{{"shape", "host-window"}, {"serviceTitle", "Open"}});
  const auto before = world.listed();
  const Value focused = world.focusedWindow(host);
  world.pass(1);
  const auto after = world.listed();
  ASSERT_EQ(after.size(), 2U);
  for (std::size_t i = 0; i < after.size(); ++i) {
    EXPECT_GT(after[i].number, before[1 - i].number);
    EXPECT_EQ(after[i].owner, before[i].owner);
    EXPECT_EQ(world.captureStatus(before[i].number), 1) << "the old number is nobody's";
    EXPECT_EQ(world.captureStatus(after[i].number), 0);
  }
  EXPECT_EQ(world.focusedWindow(host), focused) << "accessibility sees no difference";
  EXPECT_EQ(world.perform(world.identified("open-panel"), "AXRaise"), ax::success);
  EXPECT_EQ(world.desktop().windows().front()->title, "Open");
  world.confirm();
  EXPECT_EQ(world.owners(), Pids{});
}

TEST(PanelWindowList, NamesEachWindowTwiceAtTheSameFrame) {
  WindowListWorld world(Json{{"listedTwice", true}}, Json{{"listed", "service"}});
  const auto windows = world.listed();
  ASSERT_EQ(windows.size(), 2U);
  EXPECT_NE(windows[0].number, windows[1].number);
  EXPECT_EQ(windows[0].frame, windows[1].frame);
  EXPECT_EQ(world.owners(), (Pids{service, service}));
  world.confirm();
  EXPECT_EQ(world.owners(), Pids{});
}

}  // namespace
}  // namespace simulator
