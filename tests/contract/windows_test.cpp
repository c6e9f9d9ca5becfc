// The window list: which keys a description has and what stands behind them.
#include <gtest/gtest.h>

#include "contract/contract.h"

namespace tessarine::test {
namespace {

class WindowList : public Contract {
 protected:
  void SetUp() override {
    Contract::SetUp();
    windows_ = CfRef<CFArrayRef>::adopt(
        CGWindowListCopyWindowInfo(kCGWindowListOptionOnScreenOnly, kCGNullWindowID));
    if (!windows_) GTEST_SKIP() << "there is no login session";
  }
  void TearDown() override {
    windows_ = {};
    Contract::TearDown();
  }

  template <class Check>
  void forEachWindow(const Check& check) const {
    const CFIndex count = CFArrayGetCount(windows_.get());
    for (CFIndex i = 0; i < count; ++i) {
      check(static_cast<CFDictionaryRef>(CFArrayGetValueAtIndex(windows_.get(), i)));
    }
  }

 private:
  CfRef<CFArrayRef> windows_;
};

TEST_F(WindowList, DescribesEachWindowByADictionary) {
  forEachWindow([](CFDictionaryRef window) {
    ASSERT_EQ(CFGetTypeID(window), CFDictionaryGetTypeID());
    for (const CFStringRef key : {kCGWindowNumber, kCGWindowOwnerPID, kCGWindowLayer}) {
      const void* number = CFDictionaryGetValue(window, key);
      ASSERT_NE(number, nullptr);
      ASSERT_EQ(CFGetTypeID(number), CFNumberGetTypeID());
      std::int32_t held = 0;
      EXPECT_TRUE(CFNumberGetValue(static_cast<CFNumberRef>(number), kCFNumberSInt32Type, &held));
    }
    const void* name = CFDictionaryGetValue(window, kCGWindowName);
    EXPECT_TRUE(name == nullptr || CFGetTypeID(name) == CFStringGetTypeID());
  });
}

TEST_F(WindowList, TellsTitlesOfOthersOnlyToWhoMaySeeTheirWindows) {
  const bool mayBeTold = CGPreflightScreenCaptureAccess();
  forEachWindow([&](CFDictionaryRef window) {
    std::int32_t layer = 0;
    const void* held = CFDictionaryGetValue(window, kCGWindowLayer);
    CFNumberGetValue(static_cast<CFNumberRef>(held), kCFNumberSInt32Type, &layer);
    const std::string title = textValue(CFDictionaryGetValue(window, kCGWindowName)).value_or("");
    EXPECT_TRUE(mayBeTold || layer != 0 || title.empty()) << title;
  });
}

TEST_F(WindowList, GivesBoundsThatAreARectangle) {
  forEachWindow([](CFDictionaryRef window) {
    const void* bounds = CFDictionaryGetValue(window, kCGWindowBounds);
    ASSERT_NE(bounds, nullptr);
    ASSERT_EQ(CFGetTypeID(bounds), CFDictionaryGetTypeID());
    CGRect rect = CGRectMake(0, 0, -1, -1);
    ASSERT_TRUE(
        CGRectMakeWithDictionaryRepresentation(static_cast<CFDictionaryRef>(bounds), &rect));
    EXPECT_GE(rect.size.width, 0);
    EXPECT_GE(rect.size.height, 0);
  });
}

TEST_F(WindowList, HasNothingUnderAKeyThatItDoesNotHave) {
  const CfRef<CFStringRef> key = makeCfString("no such key");
  forEachWindow([&](CFDictionaryRef window) {
    EXPECT_EQ(CFDictionaryGetValue(window, key.get()), nullptr);
    CGRect rect{};
    EXPECT_FALSE(CGRectMakeWithDictionaryRepresentation(window, &rect)) << "it is no rectangle";
  });
}

}  // namespace
}  // namespace tessarine::test
