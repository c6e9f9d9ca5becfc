// Rectangles, as the program compares and cuts them.
#include <gtest/gtest.h>

#include <limits>

#include "contract/contract.h"

namespace tessarine::test {
namespace {

TEST_F(Contract, RectanglesOfNegativeSizeCoverTheSameArea) {
  const CGRect flipped = CGRectMake(10, 10, -10, -10);
  EXPECT_TRUE(CGRectEqualToRect(flipped, CGRectMake(0, 0, 10, 10)));
  EXPECT_TRUE(CGRectContainsPoint(flipped, CGPointMake(0, 0)));
  EXPECT_FALSE(CGRectContainsPoint(flipped, CGPointMake(10, 5)));
  EXPECT_TRUE(CGRectEqualToRect(CGRectIntersection(flipped, CGRectMake(5, 5, 20, 20)),
                                CGRectMake(5, 5, 5, 5)));
}

TEST_F(Contract, RectanglesApartIntersectInTheNullRectangle) {
  const CGRect none = CGRectIntersection(CGRectMake(0, 0, 1, 1), CGRectMake(5, 0, 1, 1));
  EXPECT_TRUE(CGRectIsNull(none));
  EXPECT_FALSE(CGRectIsNull(CGRectMake(0, 0, 0, 0)));
  EXPECT_FALSE(CGRectIntersectsRect(CGRectMake(0, 0, 1, 1), CGRectMake(5, 0, 1, 1)));
  EXPECT_TRUE(CGRectIntersectsRect(CGRectMake(0, 0, 2, 2), CGRectMake(1, 1, 2, 2)));
  EXPECT_FALSE(CGRectContainsPoint(none, CGPointMake(0, 0)));
  EXPECT_TRUE(CGRectIsNull(CGRectIntersection(none, CGRectMake(0, 0, 1, 1))));
}

TEST_F(Contract, RectanglesThatTouchIntersectInAnEmptyOne) {
  const CGRect edge = CGRectIntersection(CGRectMake(0, 0, 1, 1), CGRectMake(1, 0, 1, 1));
  EXPECT_TRUE(CGRectEqualToRect(edge, CGRectMake(1, 0, 0, 1)));
}

TEST_F(Contract, TheInfiniteRectangleLeavesTheOtherAsItIs) {
  const double most = std::numeric_limits<double>::max();
  const CGRect everything = CGRectMake(-most / 2, -most / 2, most, most);
  EXPECT_TRUE(CGRectEqualToRect(CGRectIntersection(everything, CGRectMake(1, 2, 3, 4)),
                                CGRectMake(1, 2, 3, 4)));
  EXPECT_TRUE(CGRectContainsPoint(everything, CGPointMake(-1e300, 1e300)));
}

TEST_F(Contract, TheMainDisplayStandsAtTheOrigin) {
  const CGRect bounds = CGDisplayBounds(CGMainDisplayID());
  EXPECT_EQ(bounds.origin.x, 0);
  EXPECT_EQ(bounds.origin.y, 0);
}

}  // namespace
}  // namespace tessarine::test
