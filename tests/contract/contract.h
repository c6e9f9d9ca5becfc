// What the program takes for granted about the platform. The same tests run against the stand-in
// frameworks and, on a Mac, against the platform's own, which have the last word.
#pragma once

#include <ApplicationServices/ApplicationServices.h>
#include <dispatch/dispatch.h>
#include <gtest/gtest.h>
#include <sys/types.h>

#include <string>

#include "platform/cf_ref.h"
#include "platform/cf_values.h"

namespace tessarine::test {

// One platform for each test, and afterwards, where it can be known, no reference left.
class Contract : public ::testing::Test {
 protected:
  void SetUp() override;
  void TearDown() override;
};

// A process of the platform: on a Mac this one.
pid_t ownProcess();

// A string with one reference.
inline CFStringRef cfString(const std::string& text) {
  CfRef<CFStringRef> string = makeCfString(text);
  CFRetain(string.get());
  return string.get();
}

// The text of a string that is then released; "NULL" for no string.
inline std::string textOf(CFStringRef string) {
  return textValue(CfRef<CFStringRef>::adopt(string).get()).value_or("NULL");
}

}  // namespace tessarine::test
