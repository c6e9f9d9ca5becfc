#include "platform/wait.h"

#include <gmock/gmock.h>

#include <stdexcept>

#include "platform/clock.h"
#include "support/world.h"

namespace tessarine::test {
namespace {

using testing::DoubleNear;
using testing::ElementsAre;

auto at(double seconds) {
  return DoubleNear(seconds, 1e-6);
}

// A condition that notes when it was evaluated, and holds from a certain time on.
struct Watched {
  explicit Watched(BareDesktop& world, double from = 1e9) : bare(world), holdsFrom(from) {}

  BareDesktop& bare;
  double holdsFrom;
  std::vector<double> evaluations;

  Condition condition() {
    return [this] {
      evaluations.push_back(bare.now());
      return bare.now() >= holdsFrom;
    };
  }
};

TEST(Wait, ReturnsAtOnceWhenTheConditionHolds) {
  BareDesktop bare;
  Watched watched(bare, 0);
  waitUntil(3, watched.condition());
  EXPECT_THAT(watched.evaluations, ElementsAre(0.0));
  EXPECT_EQ(bare.now(), 0.0);
}

TEST(Wait, PollsEvery150MillisecondsUnlessTold) {
  BareDesktop bare;
  Watched watched(bare, 0.4);
  waitUntil(3, watched.condition());
  EXPECT_THAT(watched.evaluations, ElementsAre(at(0), at(0.15), at(0.3), at(0.45)));
  EXPECT_NEAR(bare.now(), 0.45, 1e-6);
}

TEST(Wait, PollsAtTheGivenInterval) {
  BareDesktop bare;
  Watched watched(bare, 0.5);
  waitUntil(3, 0.4, watched.condition());
  EXPECT_THAT(watched.evaluations, ElementsAre(at(0), at(0.4), at(0.8)));
}

TEST(Wait, EvaluatesOnlyBeforeTheDeadlineAndFailsAfterTheLastPause) {
  BareDesktop bare;
  Watched watched(bare);
  EXPECT_EQ(messageOf([&] { waitUntil(1, 0.3, watched.condition()); }), "timed out after 1.0s");
  EXPECT_THAT(watched.evaluations, ElementsAre(at(0), at(0.3), at(0.6), at(0.9)));
  EXPECT_NEAR(bare.now(), 1.2, 1e-6);
}

TEST(Wait, EvaluatesOnceWhenTheIntervalIsLongerThanTheTimeout) {
  BareDesktop bare;
  Watched watched(bare);
  EXPECT_EQ(messageOf([&] { waitUntil(0.15, 5, watched.condition()); }), "timed out after 0.15s");
  EXPECT_THAT(watched.evaluations, ElementsAre(0.0));
  EXPECT_NEAR(bare.now(), 5, 1e-6);
}

TEST(Wait, EvaluatesNothingWithoutTime) {
  BareDesktop bare;
  Watched watched(bare, 0);
  EXPECT_EQ(messageOf([&] { waitUntil(0, watched.condition()); }), "timed out after 0.0s");
  EXPECT_EQ(messageOf([&] { waitUntil(-2.5, watched.condition()); }), "timed out after -2.5s");
  EXPECT_TRUE(watched.evaluations.empty());
  EXPECT_EQ(bare.now(), 0.0);
}

TEST(Wait, FailsWithTheCaseOfExpiredWaits) {
  BareDesktop bare;
  try {
    waitUntil(3, [] { return false; });
    ADD_FAILURE() << "nothing was thrown";
  } catch (const ToolError& error) {
    EXPECT_EQ(error.errorCase(), ToolError::Case::timedOut);
    EXPECT_EQ(error.message(), "timed out after 3.0s");
  }
}

TEST(Wait, PassesAnErrorOfTheConditionOnAtOnce) {
  BareDesktop bare;
  const Condition fails = [&]() -> bool {
    if (bare.now() < 0.2) return false;
    throw std::out_of_range("broken");
  };
  EXPECT_THROW(waitUntil(3, fails), std::out_of_range);
  EXPECT_NEAR(bare.now(), 0.3, 1e-6);
}

TEST(Wait, CountsTheTimeThatTheConditionTakes) {
  BareDesktop bare;
  int evaluations = 0;
  const Condition slow = [&] {
    ++evaluations;
    sleepSeconds(0.4);
    return false;
  };
  EXPECT_EQ(messageOf([&] { waitUntil(1, 0.2, slow); }), "timed out after 1.0s");
  EXPECT_EQ(evaluations, 2);
  EXPECT_NEAR(bare.now(), 1.2, 1e-6);
}

TEST(Wait, AnswersInsteadOfThrowingWhenPolling) {
  BareDesktop bare;
  Watched watched(bare, 0.35);
  EXPECT_TRUE(pollUntil(1, 0.2, watched.condition()));
  EXPECT_THAT(watched.evaluations, ElementsAre(at(0), at(0.2), at(0.4)));
  EXPECT_FALSE(pollUntil(1, 0.3, [] { return false; }));
  EXPECT_NEAR(bare.now(), 0.4 + 1.2, 1e-6);
  EXPECT_FALSE(pollUntil(0, 0.3, [] { return true; }));
}

TEST(Wait, LooksAtOnceWhateverTheTimeoutWhenSeeing) {
  BareDesktop bare;
  Watched watched(bare, 0.35);
  EXPECT_TRUE(seenWithin(1, 0.2, watched.condition()));
  EXPECT_THAT(watched.evaluations, ElementsAre(at(0), at(0.2), at(0.4)));
  int looks = 0;
  const Condition never = [&] { return ++looks < 0; };
  EXPECT_FALSE(seenWithin(0, 0.3, never));
  EXPECT_EQ(looks, 1);
  EXPECT_NEAR(bare.now(), 0.4, 1e-6);
  EXPECT_FALSE(seenWithin(0.7, 0.3, never));
  EXPECT_EQ(looks, 1 + 3);
  EXPECT_NEAR(bare.now(), 0.4 + 0.9, 1e-6);
}

TEST(Wait, HandsOutWhatASearchFinds) {
  BareDesktop bare;
  int searches = 0;
  const auto third = [&] { return ++searches == 3 ? std::optional(searches) : std::nullopt; };
  EXPECT_EQ(waitForValue(1, 0.2, third), 3);
  EXPECT_NEAR(bare.now(), 0.4, 1e-6);
  const auto nothing = [] { return std::optional<int>(); };
  EXPECT_EQ(messageOf([&] { waitForValue(0.5, 0.2, nothing); }), "timed out after 0.5s");
}

}  // namespace
}  // namespace tessarine::test
