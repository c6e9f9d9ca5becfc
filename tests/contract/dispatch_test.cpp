// Work on a global queue, and waiting for it.
#include <gtest/gtest.h>

#include "contract/contract.h"

namespace tessarine::test {
namespace {

class Group {
 public:
  ~Group() { dispatch_release(group_); }
  void run(dispatch_function_t work, void* context) {
    dispatch_async_f(dispatch_get_global_queue(QOS_CLASS_USER_INITIATED, 0), context, work);
  }
  dispatch_group_t get() const { return group_; }

 private:
  dispatch_group_t group_ = dispatch_group_create();
};

TEST_F(Contract, AGroupThatNobodyEnteredIsEmpty) {
  const Group group;
  EXPECT_EQ(dispatch_group_wait(group.get(), DISPATCH_TIME_NOW), 0);
  EXPECT_EQ(dispatch_group_wait(group.get(), DISPATCH_TIME_FOREVER), 0);
}

TEST_F(Contract, AnEnteredGroupIsWaitedForUntilTheTimeIsUp) {
  const Group group;
  dispatch_group_enter(group.get());
  const auto soon = dispatch_time(DISPATCH_TIME_NOW, NSEC_PER_SEC / 100);
  EXPECT_NE(dispatch_group_wait(group.get(), soon), 0);
  dispatch_group_leave(group.get());
  EXPECT_EQ(dispatch_group_wait(group.get(), DISPATCH_TIME_NOW), 0);
}

TEST_F(Contract, WorkOfAGroupEndsItsWait) {
  Group group;
  dispatch_group_enter(group.get());
  group.run([](void* context) { dispatch_group_leave(static_cast<dispatch_group_t>(context)); },
            group.get());
  const auto later = dispatch_time(DISPATCH_TIME_NOW, 10 * static_cast<int64_t>(NSEC_PER_SEC));
  EXPECT_EQ(dispatch_group_wait(group.get(), later), 0);
}

}  // namespace
}  // namespace tessarine::test
