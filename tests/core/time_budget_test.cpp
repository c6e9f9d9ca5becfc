#include "core/time_budget.h"

#include <gtest/gtest.h>

#include <limits>

namespace tessarine::test {
namespace {

TEST(WatchdogSeconds, AreTheTimeoutAndEightMoreButAtLeastTwelve) {
  EXPECT_EQ(watchdogSeconds(10), 18.0);
  EXPECT_EQ(watchdogSeconds(30), 38.0);
  EXPECT_EQ(watchdogSeconds(4.5), 12.5);
  EXPECT_EQ(watchdogSeconds(4), 12.0);
  EXPECT_EQ(watchdogSeconds(0), 12.0);
  EXPECT_EQ(watchdogSeconds(-20), 12.0);
}

TEST(WatchdogSeconds, AreTwelveWhenTheTimeoutIsNoNumber) {
  constexpr double endless = std::numeric_limits<double>::infinity();
  EXPECT_EQ(watchdogSeconds(std::numeric_limits<double>::quiet_NaN()), 12.0);
  EXPECT_EQ(watchdogSeconds(-endless), 12.0);
  EXPECT_EQ(watchdogSeconds(endless), endless);
}

}  // namespace
}  // namespace tessarine::test
