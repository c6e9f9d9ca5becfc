// The world of tests: virtual time, programs that run inside the wait for them, and work that is
// handed over to dispatch.
#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

#include "CoreFoundation/CoreFoundation.h"
#include "dispatch/dispatch.h"
#include "platform/child_process.h"
#include "platform/clock.h"
#include "platform/workspace.h"
#include "simulator/desktop/desktop.h"
#include "simulator/frameworks/desktop_link.h"
#include "simulator/frameworks/ledger.h"
#include "simulator/seams/virtual/virtual_world.h"

namespace simulator::seams {
namespace {

constexpr Pid browser = 501;

class VirtualWorld : public testing::Test {
 protected:
  VirtualWorld() {
    ledger::reset();
    desktop.addProcess({.pid = browser,
                        .name = "Browser",
                        .command = "/Browser",
                        .application = true,
                        .host = {}});
    attachDesktop(&desktop);
  }
  ~VirtualWorld() override { attachDesktop(nullptr); }

  // Installs a program that ends after `seconds` with a status and some output.
  void installSleeper(const std::string& path, Seconds seconds, int status) {
    desktop.installProgram(path, [=](ProgramRun& run) {
      run.after(seconds, [&run, status] {
        run.print("out");
        run.complain("err");
        run.end(status);
      });
    });
  }

  Desktop desktop;
};

TEST_F(VirtualWorld, SleepingMovesTimeAndNothingElseDoes) {
  EXPECT_EQ(tessarine::currentTime(), epoch_seconds);
  tessarine::sleepSeconds(2.5);
  EXPECT_EQ(tessarine::currentTime(), epoch_seconds + 2.5);
  EXPECT_EQ(desktop.now(), 2.5);
  tessarine::sleepSeconds(0);
  tessarine::sleepSeconds(-1);
  tessarine::sleepSeconds(std::nan(""));
  EXPECT_EQ(desktop.now(), 2.5);
}

TEST_F(VirtualWorld, WhatIsScheduledHappensDuringTheSleep) {
  std::vector<Seconds> seen;
  desktop.schedule(0.5, [&] { seen.push_back(desktop.now()); });
  desktop.schedule(1.5, [&] { seen.push_back(desktop.now()); });
  tessarine::sleepSeconds(1);
  EXPECT_EQ(seen, std::vector<Seconds>{0.5});
}

TEST_F(VirtualWorld, ARequestTakesItsPrice) {
  const Request request = CopyAttribute{{browser, 0}, "AXRole"};
  const Seconds price = desktop.price(request);
  ASSERT_GT(price, 0);
  EXPECT_EQ(std::get<std::string>(desktopLink().ask(request).value), "AXApplication");
  EXPECT_EQ(desktop.now(), price);
}

TEST_F(VirtualWorld, WaitingForAProgramMovesTimeToItsEnd) {
  installSleeper("/bin/sleeper", 3, 4);
  auto started = tessarine::startChild("/bin/sleeper", {"-x"});
  ASSERT_TRUE(started.child);
  EXPECT_TRUE(tessarine::isRunning(*started.child));
  EXPECT_EQ(desktop.now(), 0);
  EXPECT_EQ(tessarine::readStandardOutput(*started.child), "out");
  EXPECT_NEAR(desktop.now(), 3, 0.1);
  EXPECT_EQ(tessarine::readStandardError(*started.child), "err");
  EXPECT_EQ(tessarine::waitForExit(*started.child), 4);
  EXPECT_FALSE(tessarine::isRunning(*started.child));
}

TEST_F(VirtualWorld, ATerminatedProgramEndsAtOnceWithTheSignalsNumber) {
  installSleeper("/bin/sleeper", 3, 0);
  auto started = tessarine::startChild("/bin/sleeper", {});
  tessarine::terminate(*started.child);
  EXPECT_FALSE(tessarine::isRunning(*started.child));
  EXPECT_EQ(tessarine::waitForExit(*started.child), 15);
  EXPECT_EQ(desktop.now(), 0);
}

TEST_F(VirtualWorld, AProgramThatTheDesktopDoesNotHaveDoesNotStart) {
  const auto started = tessarine::startChild("/opt/tools/helper", {});
  EXPECT_FALSE(started.child);
  EXPECT_EQ(started.startError, "No such file or directory");
}

TEST_F(VirtualWorld, ScreensAreCountedUpwardsFromTheBottomOfTheMainOne) {
  desktop.setScreens({{0, 0, 1000, 600}, {1000, -100, 800, 500}});
  const std::vector<tessarine::Rect> expected = {{0, 0, 1000, 600}, {1000, 200, 800, 500}};
  EXPECT_EQ(tessarine::screenFrames(), expected);
}

TEST_F(VirtualWorld, TheWorkspaceKnowsApplicationsAndWhichIsFrontmost) {
  using tessarine::ApplicationState;
  EXPECT_EQ(tessarine::frontmostApplicationPid(), std::nullopt);
  tessarine::activateApplication(browser);
  tessarine::sleepSeconds(1);
  EXPECT_EQ(tessarine::frontmostApplicationPid(), browser);
  EXPECT_EQ(tessarine::applicationState(browser), ApplicationState::running);
  EXPECT_EQ(tessarine::applicationState(browser + 1), ApplicationState::unknown);
  desktop.terminateProcess(browser, true);
  EXPECT_EQ(tessarine::applicationState(browser), ApplicationState::terminated);
  EXPECT_EQ(tessarine::fileManagerDisplayName("/usr/lib"), "lib");
}

// --- Dispatch. ---

struct Job {
  dispatch_group_t group = dispatch_group_create();
  double seconds = 0;
  bool leaves = true;
  std::vector<std::string> steps = {};
};

void workOn(void* context) {
  Job& job = *static_cast<Job*>(context);
  const UniChar text[] = {u'w'};
  const CFStringRef held = CFStringCreateWithCharacters(kCFAllocatorDefault, text, 1);
  job.steps.emplace_back("begun");
  tessarine::sleepSeconds(job.seconds);
  job.steps.emplace_back("ended");
  CFRelease(held);
  if (job.leaves) dispatch_group_leave(job.group);
}

// Starts the job and waits for it so many seconds.
std::intptr_t waitFor(Job& job, std::int64_t seconds) {
  dispatch_group_enter(job.group);
  dispatch_async_f(dispatch_get_global_queue(QOS_CLASS_USER_INITIATED, 0), &job, workOn);
  job.steps.emplace_back("waiting");
  const auto nanoseconds = seconds * static_cast<std::int64_t>(NSEC_PER_SEC);
  return dispatch_group_wait(job.group, dispatch_time(DISPATCH_TIME_NOW, nanoseconds));
}

TEST_F(VirtualWorld, WorkRunsInsideTheWaitForIt) {
  Job job{.seconds = 2};
  EXPECT_EQ(waitFor(job, 5), 0);
  EXPECT_EQ(job.steps, (std::vector<std::string>{"waiting", "begun", "ended"}));
  EXPECT_EQ(desktop.now(), 2);
  dispatch_release(job.group);
  EXPECT_EQ(ledger::describeLive(), "");
}

TEST_F(VirtualWorld, WaitingForEverEndsWhenTheGroupIsEmpty) {
  Job job{.seconds = 100};
  dispatch_group_enter(job.group);
  dispatch_async_f(dispatch_get_global_queue(QOS_CLASS_USER_INITIATED, 0), &job, workOn);
  EXPECT_EQ(dispatch_group_wait(job.group, DISPATCH_TIME_FOREVER), 0);
  EXPECT_EQ(desktop.now(), 100);
  dispatch_release(job.group);
}

TEST_F(VirtualWorld, WorkThatOutlastsTheWaitStopsForGoodAtTheDeadline) {
  Job job{.seconds = 9};
  EXPECT_NE(waitFor(job, 5), 0);
  EXPECT_EQ(desktop.now(), 5);
  EXPECT_EQ(job.steps, (std::vector<std::string>{"waiting", "begun"}));
  EXPECT_EQ(ledger::describeLive(), "");
  tessarine::sleepSeconds(50);
  EXPECT_EQ(job.steps.size(), 2u);
  dispatch_release(job.group);
}

TEST_F(VirtualWorld, ARequestThatIsNeverAnsweredOutlastsTheWait) {
  desktop.faults().silent_processes = {browser};
  struct Asker {
    static void ask(void*) { desktopLink().ask(CopyAttribute{{browser, 0}, "AXRole"}); }
  };
  const dispatch_group_t group = dispatch_group_create();
  dispatch_group_enter(group);
  dispatch_async_f(dispatch_get_global_queue(QOS_CLASS_USER_INITIATED, 0), nullptr, Asker::ask);
  EXPECT_NE(dispatch_group_wait(group, dispatch_time(DISPATCH_TIME_NOW, NSEC_PER_SEC)), 0);
  EXPECT_EQ(desktop.now(), 1);
}

TEST_F(VirtualWorld, AWaitForAGroupThatNobodyLeavesTakesAllItsTime) {
  Job job{.seconds = 1, .leaves = false};
  EXPECT_NE(waitFor(job, 5), 0);
  EXPECT_EQ(desktop.now(), 5);
  EXPECT_EQ(job.steps.back(), "ended");
  dispatch_release(job.group);
}

TEST_F(VirtualWorld, ADesktopThatIsGoneLeavesParkedWorkHarmless) {
  for (int round = 0; round < 3; ++round) {
    Desktop another;
    attachDesktop(&another);
    static Job job{.seconds = 9};
    EXPECT_NE(waitFor(job, 1), 0);
    attachDesktop(nullptr);
  }
}

using VirtualWorldDeathTest = VirtualWorld;

TEST_F(VirtualWorldDeathTest, WithoutADesktopTheProgramEndsWithALine) {
  attachDesktop(nullptr);
  EXPECT_DEATH(tessarine::currentTime(), "^currentTime: no desktop is attached\n$");
}

}  // namespace
}  // namespace simulator::seams
