// The foreground: how an application gets it, and what that does to the windows.
#include <algorithm>

#include "live/desktop.h"
#include "platform/events.h"
#include "platform/wait.h"
#include "platform/workspace.h"

namespace tessarine::test {
namespace {

constexpr double comingForwardSeconds = 2;
constexpr const char* nobodyInFront = "no application with a window is in front";

// Where these processes' windows stand, counted from the frontmost window.
std::vector<std::size_t> places(const Owners& owners) {
  std::vector<std::size_t> found;
  const std::vector<ListedWindow> windows = ordinaryWindows();
  for (std::size_t i = 0; i < windows.size(); ++i) {
    if (belongsTo(owners, windows[i])) found.push_back(i);
  }
  return found;
}

// The application in front, if it has a window and is not this one.
std::optional<pid_t> applicationInFrontOf(pid_t application) {
  const auto pid = frontmostApplicationPid();
  if (!pid || *pid == application || places({*pid}).empty()) return {};
  return pid;
}

bool comesForward(pid_t application) {
  return pollUntil(comingForwardSeconds, 0.02, [&] { return isInFront(application); });
}

Point onTitleBar(const Element& panel) {
  const Rect frame = axFrame(panel);
  return {frame.midX(), frame.y + 10};
}

TEST_F(Live, AnApplicationComesForwardWithin150Milliseconds) {
  show({.inFront = false});
  activateApplication(application());
  EXPECT_TRUE(pollUntil(0.15, 0.01, [&] { return isInFront(application()); }));
}

TEST_F(Live, AskingForTheForegroundIsAnsweredWithin150Milliseconds) {
  show({.inFront = false});
  EXPECT_LT(secondsOf([&] { activateApplication(application()); }), 0.15);
  EXPECT_TRUE(comesForward(application()));
}

TEST_F(Live, ThePanelOfABackgroundApplicationStandsBehindTheApplicationInFront) {
  show({.inFront = false});
  const auto other = applicationInFrontOf(application());
  if (!other) GTEST_SKIP() << nobodyInFront;
  const Rect panelFrame = axFrame(panel());
  const Owners owners{application(), keyTaker()};
  const std::vector<ListedWindow> windows = ordinaryWindows();
  const auto shown = std::ranges::find_if(windows, [&](const ListedWindow& window) {
    return belongsTo(owners, window) && window.frame == panelFrame;
  });
  ASSERT_NE(shown, windows.end()) << "the window list does not show the panel";
  EXPECT_LT(places({*other}).front(), static_cast<std::size_t>(shown - windows.begin()));
}

TEST_F(Live, AllWindowsOfAnApplicationComeForwardWithIt) {
  show({.inFront = false});
  const auto other = applicationInFrontOf(application());
  if (!other) GTEST_SKIP() << nobodyInFront;
  activateApplication(application());
  ASSERT_TRUE(comesForward(application()));
  const std::vector<std::size_t> own = places({application()});
  ASSERT_GE(own.size(), 2U) << "the application's window and its panel's";
  EXPECT_LT(own.back(), places({*other}).front());
}

TEST_F(Live, AClickBringsAllWindowsOfItsApplicationForward) {
  show({.inFront = false});
  const auto other = applicationInFrontOf(application());
  if (!other) GTEST_SKIP() << nobodyInFront;
  const Point target = onTitleBar(panel());
  if (!uncovered(panel(), {application(), keyTaker()}, target)) GTEST_SKIP() << "it is covered";
  postMouseClick(application(), target, 1, true);
  ASSERT_TRUE(comesForward(application()));
  const std::vector<std::size_t> own = places({application()});
  ASSERT_GE(own.size(), 2U) << "the application's window and its panel's";
  EXPECT_LT(own.back(), places({*other}).front());
}

TEST_F(Live, TheClickThatBringsAnApplicationForwardAlsoReachesTheControlUnderIt) {
  show({.inFront = false});
  const Point target = axFrame(byIdentifier(panel(), "CancelButton")).center();
  if (!uncovered(panel(), {application(), keyTaker()}, target)) GTEST_SKIP() << "it is covered";
  ASSERT_FALSE(isInFront(application()));
  postMouseClick(application(), target, 1, true);
  EXPECT_TRUE(comesForward(application()));
  EXPECT_EQ(end(), "cancelled");
}

}  // namespace
}  // namespace tessarine::test
