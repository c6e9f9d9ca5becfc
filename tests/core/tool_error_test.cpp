#include "core/tool_error.h"

#include <gtest/gtest.h>

namespace tessarine::test {
namespace {

using Case = ToolError::Case;

TEST(ToolError, CarriesItsCaseAndItsMessage) {
  struct {
    ToolError error;
    Case errorCase;
    const char* message;
  } const expected[] = {
      {ToolError::usage("--pid is required"), Case::usage, "--pid is required"},
      {ToolError::usage(""), Case::usage, ""},
      {ToolError::actionFailed("refused"), Case::actionFailed, "refused"},
      {ToolError::notFound("打开 is missing"), Case::notFound, "打开 is missing"},
      {ToolError::timedOut("too late"), Case::timedOut, "too late"},
  };
  for (const auto& [error, errorCase, message] : expected) {
    EXPECT_EQ(error.errorCase(), errorCase) << message;
    EXPECT_EQ(error.message(), message);
    EXPECT_STREQ(error.what(), message);
  }
}

TEST(ToolError, DeclaresItsCasesFromUsageToTimedOut) {
  EXPECT_LT(Case::usage, Case::actionFailed);
  EXPECT_LT(Case::actionFailed, Case::notFound);
  EXPECT_LT(Case::notFound, Case::timedOut);
}

TEST(ToolError, NamesTheSecondsOfAnExpiredWait) {
  EXPECT_EQ(ToolError::timedOutAfter(4).message(), "timed out after 4.0s");
  EXPECT_EQ(ToolError::timedOutAfter(0).message(), "timed out after 0.0s");
  EXPECT_EQ(ToolError::timedOutAfter(0.15).message(), "timed out after 0.15s");
  EXPECT_EQ(ToolError::timedOutAfter(-20).message(), "timed out after -20.0s");
  EXPECT_EQ(ToolError::timedOutAfter(4).errorCase(), Case::timedOut);
}

TEST(ToolError, IsAStandardException) {
  EXPECT_THROW(throw ToolError::notFound("gone"), std::exception);
}

}  // namespace
}  // namespace tessarine::test
