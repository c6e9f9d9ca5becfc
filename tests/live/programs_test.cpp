// The system's own programs: how long they take, and what System Events does. On a Mac the tests of
// System Events need the Automation permission, those of snapshots the Screen Recording permission.
#include <algorithm>

#include "core/tool_error.h"
#include "live/desktop.h"
#include "platform/child_process.h"
#include "platform/events.h"
#include "platform/files.h"
#include "platform/foreground.h"
#include "platform/processes.h"
#include "platform/wait.h"

namespace tessarine::test {
namespace {

constexpr const char* snapshotPath = "/usr/sbin/screencapture";
constexpr const char* doing_nothing = "delay 0";
// Longer than a person needs to answer the platform's question for the permission.
constexpr double scriptSeconds = 30;

void tellSystemEvents(const std::string& statement) {
  runAppleScript({"tell application \"System Events\" to " + statement}, scriptSeconds);
}

// Why System Events does nothing for us, or that it does.
std::optional<std::string> refusalOfSystemEvents() {
  constexpr const char* harmless = "key code 63";  // the fn key
  try {
    tellSystemEvents(harmless);
  } catch (const ToolError& error) {
    return error.message();
  }
  return {};
}

Element focusedSearchField(const Element& panel) {
  const Element search = byIdentifier(panel, "Search");
  setTrue(search, "AXFocused");
  if (!pollUntil(2, 0.05, [&] { return axIsTrue(search, "AXFocused"); })) {
    throw std::runtime_error("the search field does not take the focus");
  }
  return search;
}

double secondsOfTyping(const std::string& text) {
  return secondsOf([&] { tellSystemEvents("keystroke \"" + text + "\""); });
}

struct Snapshot {
  int exitStatus = 0;
  std::string errors;
};

Snapshot takeSnapshot(std::uint32_t window, const std::string& file) {
  const StartedChild child =
      startChild(snapshotPath, {"-x", "-o", "-t", "png", "-l" + std::to_string(window), file});
  if (!child.child) throw std::runtime_error("no snapshot: " + child.startError);
  const std::string errors = readStandardError(*child.child);
  return {waitForExit(*child.child), errors};
}

// A window of the application whose title this program may know; absent without the permission.
std::optional<ListedWindow> windowWithTitle(pid_t application) {
  const std::vector<ListedWindow> windows = onScreenWindows();
  const auto found = std::ranges::find_if(windows, [&](const ListedWindow& window) {
    return window.pid == application && window.title && !window.title->empty();
  });
  if (found == windows.end()) return {};
  return *found;
}

TEST_F(Live, AllProcessesAreListedWithin60Milliseconds) {
  show({});
  std::string list;
  const double took = secondsOf([&] { list = commandOutput(psPath, {"-axo", "pid=,command="}); });
  EXPECT_NE(list, "");
  EXPECT_LT(took, 0.06);
}

// How long a script takes, which must succeed.
double secondsOfScript(const std::string& script) {
  return secondsOf([&] { EXPECT_TRUE(commandSucceeded(osascriptPath, {"-e", script})) << script; });
}

TEST_F(Live, AShortScriptIsCompiledAndRunWithin360Milliseconds) {
  show({});
  EXPECT_LT(secondsOfScript(doing_nothing), 0.36);
}

TEST_F(Live, TheFinderNamesAFolderWithin90MillisecondsMoreThanAScriptTakes) {
  show({});
  const std::string naming = "tell application \"Finder\" to get displayed name of (POSIX file \"" +
                             folder().path() + "\" as alias)";
  if (!commandSucceeded(osascriptPath, {"-e", naming})) {
    GTEST_SKIP() << "the Finder does not answer this program";
  }
  EXPECT_LT(secondsOfScript(naming) - secondsOfScript(doing_nothing), 0.09);
}

TEST_F(Live, SystemEventsTypesAtLeast34KeysInASecond) {
  show({});
  if (const auto refusal = refusalOfSystemEvents()) GTEST_SKIP() << *refusal;
  focusedSearchField(panel());
  const double few = secondsOfTyping("aa");
  const double many = secondsOfTyping(std::string(42, 'a'));
  EXPECT_LT((many - few) / 40, 1.0 / 34);
}

TEST_F(Live, SystemEventsTypesTheLetterAForWhatNoKeyTypes) {
  show({});
  if (const auto refusal = refusalOfSystemEvents()) GTEST_SKIP() << *refusal;
  const Element search = focusedSearchField(panel());
  tellSystemEvents("keystroke \"x中y\"");
  pollUntil(2, 0.05, [&] { return axInputValue(search).ends_with("y"); });
  EXPECT_EQ(axInputValue(search), "xay");
}

TEST_F(Live, WhatSystemEventsTypesIsNotCounted) {
  show({});
  if (const auto refusal = refusalOfSystemEvents()) GTEST_SKIP() << *refusal;
  const Element search = focusedSearchField(panel());
  const std::uint64_t before = pressesByPeople();
  tellSystemEvents("keystroke \"x\"");
  ASSERT_TRUE(pollUntil(2, 0.05, [&] { return axInputValue(search) == "x"; }));
  EXPECT_EQ(pressesByPeople(), before);
}

TEST_F(Live, SystemEventsRunsOnceAScriptHasToldItSomething) {
  show({});
  if (const auto refusal = refusalOfSystemEvents()) GTEST_SKIP() << *refusal;
  constexpr std::string_view bundle = "com.apple.systemevents";
  AEDesc address{};
  ASSERT_EQ(AECreateDesc(typeApplicationBundleID, bundle.data(), static_cast<long>(bundle.size()),
                         &address),
            noErr);
  EXPECT_EQ(AEDeterminePermissionToAutomateTarget(&address, typeWildCard, typeWildCard, 0), noErr);
  AEDisposeDesc(&address);
}

TEST_F(Live, SystemEventsAnswersOnceTheApplicationHasComeForward) {
  show({.inFront = false});
  if (const auto refusal = refusalOfSystemEvents()) GTEST_SKIP() << *refusal;
  ASSERT_FALSE(isInFront(application()));
  EXPECT_TRUE(setProcessFrontmost(application()));
  EXPECT_TRUE(isInFront(application()));
}

TEST_F(Live, ASnapshotOfAWindowIsTakenWithin90Milliseconds) {
  show({});
  const auto window = windowWithTitle(application());
  if (!window) GTEST_SKIP() << "this program may not see other programs' windows";
  const TemporaryFolder images;
  const std::string file = images.path() + "/window.png";
  Snapshot snapshot;
  const double took = secondsOf([&] { snapshot = takeSnapshot(window->number, file); });
  EXPECT_EQ(snapshot.exitStatus, 0) << snapshot.errors;
  EXPECT_TRUE(fileExists(file));
  EXPECT_LT(took, 0.09);
}

TEST_F(Live, ASnapshotOfAWindowThatIsNotThereFailsWithOneLine) {
  show({});
  const TemporaryFolder images;
  const std::string file = images.path() + "/window.png";
  constexpr std::uint32_t noWindow = 3999999999;
  const Snapshot snapshot = takeSnapshot(noWindow, file);
  EXPECT_EQ(snapshot.exitStatus, 1);
  EXPECT_EQ(std::ranges::count(snapshot.errors, '\n'), 1) << snapshot.errors;
  EXPECT_TRUE(snapshot.errors.ends_with("\n")) << snapshot.errors;
  EXPECT_FALSE(fileExists(file));
}

}  // namespace
}  // namespace tessarine::test
