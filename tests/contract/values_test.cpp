// Strings, constants, arrays, equality: what the program takes for granted about values.
#include <gtest/gtest.h>

#include <initializer_list>

#include "contract/contract.h"

namespace tessarine::test {
namespace {

TEST_F(Contract, TheConstantIsNeverReleased) {
  CFRelease(kCFBooleanTrue);
  CFRelease(kCFBooleanTrue);
  EXPECT_EQ(CFBooleanGetValue(kCFBooleanTrue), 1);
  EXPECT_EQ(CFGetTypeID(kCFBooleanTrue), CFBooleanGetTypeID());
}

TEST_F(Contract, EqualityGoesByValueAndType) {
  const CFStringRef one = cfString("a");
  const CFStringRef same = cfString("a");
  const CFStringRef other = cfString("b");
  const CFURLRef url = CFURLCreateWithString(kCFAllocatorDefault, one, nullptr);
  const AXUIElementRef browserElement = AXUIElementCreateApplication(ownProcess());
  const AXUIElementRef browserAgain = AXUIElementCreateApplication(ownProcess());
  const AXUIElementRef stranger = AXUIElementCreateApplication(1);
  EXPECT_TRUE(CFEqual(one, same));
  EXPECT_FALSE(CFEqual(one, other));
  EXPECT_FALSE(CFEqual(one, url));
  EXPECT_TRUE(CFEqual(browserElement, browserAgain));
  EXPECT_FALSE(CFEqual(browserElement, stranger));
  for (const CFTypeRef object : std::initializer_list<CFTypeRef>{
           one, same, other, url, browserElement, browserAgain, stranger}) {
    CFRelease(object);
  }
}

TEST_F(Contract, StringsKeepEveryUtf16UnitEvenThoseThatPairWithNothing) {
  const UniChar units[] = {0x41, 0xD83D, 0xDE00, 0xD800};
  const CFStringRef string = CFStringCreateWithCharacters(kCFAllocatorDefault, units, 4);
  EXPECT_EQ(CFStringGetLength(string), 4);
  UniChar middle[2] = {};
  CFStringGetCharacters(string, CFRangeMake(2, 2), middle);
  EXPECT_EQ(middle[0], 0xDE00);
  EXPECT_EQ(middle[1], 0xD800);
  CFRelease(string);
}

TEST_F(Contract, AnEmptyStringHasNoLength) {
  const CfRef<CFStringRef> empty = makeCfString("");
  EXPECT_EQ(CFStringGetLength(empty.get()), 0);
  EXPECT_EQ(textValue(empty.get()), "");
}

TEST_F(Contract, ArraysRetainTheirMembers) {
  const void* member = cfString("member");
  const CFArrayRef array = CFArrayCreate(kCFAllocatorDefault, &member, 1, &kCFTypeArrayCallBacks);
  CFRelease(member);
  ASSERT_EQ(CFArrayGetCount(array), 1);
  EXPECT_EQ(CFArrayGetValueAtIndex(array, 0), member);
  EXPECT_EQ(textValue(CFArrayGetValueAtIndex(array, 0)), "member");
  CFRelease(array);
  const CFArrayRef none = CFArrayCreate(kCFAllocatorDefault, nullptr, 0, &kCFTypeArrayCallBacks);
  EXPECT_EQ(CFArrayGetCount(none), 0);
  EXPECT_EQ(CFGetTypeID(none), CFArrayGetTypeID());
  CFRelease(none);
}

TEST_F(Contract, EveryKindHasATypeOfItsOwn) {
  const CFTypeID types[] = {CFStringGetTypeID(),    CFArrayGetTypeID(),   CFDictionaryGetTypeID(),
                            CFNumberGetTypeID(),    CFBooleanGetTypeID(), CFURLGetTypeID(),
                            AXUIElementGetTypeID(), AXValueGetTypeID()};
  for (const CFTypeID& one : types) {
    for (const CFTypeID& other : types) EXPECT_EQ(one == other, &one == &other);
  }
}

}  // namespace
}  // namespace tessarine::test
