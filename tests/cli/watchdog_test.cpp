#include "cli/watchdog.h"

#include <gtest/gtest.h>

#include <limits>
#include <nlohmann/json.hpp>
#include <stdexcept>
#include <thread>

#include "platform/clock.h"
#include "support/world.h"

namespace tessarine::test {
namespace {

TEST(Watchdog, ReturnsTheResultOfWorkThatIsDoneInTime) {
  BareDesktop bare;
  const Result result = runUnderWatchdog(12, [] {
    sleepSeconds(11.9);
    return Result{{"ok", true}};
  });
  EXPECT_EQ(result, Result({{"ok", true}}));
  EXPECT_NEAR(bare.now(), 11.9, 1e-6);
}

TEST(Watchdog, RunsTheWorkOnceOnAThreadOfItsOwn) {
  BareDesktop bare;
  std::vector<std::thread::id> threads;
  runUnderWatchdog(12, [&] {
    threads.push_back(std::this_thread::get_id());
    return Result();
  });
  ASSERT_EQ(threads.size(), 1U);
  EXPECT_NE(threads.front(), std::this_thread::get_id());
}

TEST(Watchdog, PassesTheErrorOfTheWorkOn) {
  BareDesktop bare;
  const auto work = []() -> Result { throw ToolError::notFound("nothing there"); };
  try {
    runUnderWatchdog(12, work);
    ADD_FAILURE() << "nothing was thrown";
  } catch (const ToolError& error) {
    EXPECT_EQ(error.errorCase(), ToolError::Case::notFound);
    EXPECT_EQ(error.message(), "nothing there");
  }
  EXPECT_THROW(runUnderWatchdog(12, []() -> Result { throw std::out_of_range("mistake"); }),
               std::out_of_range);
}

TEST(Watchdog, GivesUpWorkThatTakesLongerAndLeavesItUndone) {
  BareDesktop bare;
  bool finished = false;
  try {
    runUnderWatchdog(12.5, [&] {
      sleepSeconds(12.6);
      finished = true;
      return Result();
    });
    ADD_FAILURE() << "nothing was thrown";
  } catch (const ToolError& error) {
    EXPECT_EQ(error.errorCase(), ToolError::Case::timedOut);
    EXPECT_EQ(error.message(), "timed out after 12.5s (global watchdog)");
  }
  EXPECT_NEAR(bare.now(), 12.5, 1e-6);
  EXPECT_FALSE(finished);
}

TEST(Watchdog, WaitsForEverWithoutABound) {
  BareDesktop bare;
  constexpr double aCentury = 3.2e9;
  const Result result = runUnderWatchdog(std::numeric_limits<double>::infinity(), [] {
    sleepSeconds(aCentury);
    return Result("done");
  });
  EXPECT_EQ(result, Result("done"));
  EXPECT_EQ(bare.now(), aCentury);
}

}  // namespace
}  // namespace tessarine::test
