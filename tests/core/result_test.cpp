#include "core/result.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <nlohmann/json.hpp>
#include <stdexcept>

namespace tessarine::test {
namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();

// The message of the std::runtime_error with which writing the result fails.
std::string refusalOf(const Result& result) {
  try {
    ADD_FAILURE() << "written: " << serialize(result);
  } catch (const std::runtime_error& error) {
    return error.what();
  }
  return {};
}

TEST(Result, KeepsTheOrderInWhichKeysWereAdded) {
  Result result{{"ok", true}, {"command", "close"}};
  result["closed"] = 1;
  result["apps"] = Result::array();
  EXPECT_EQ(serialize(result),
            "{\n"
            "  \"ok\": true,\n"
            "  \"command\": \"close\",\n"
            "  \"closed\": 1,\n"
            "  \"apps\": []\n"
            "}");
}

TEST(Result, IndentsEachLevelByTwoBlanks) {
  EXPECT_EQ(serialize({{"point", pointObject({-3.5, 987})}, {"components", {"a", "打开"}}}),
            "{\n"
            "  \"point\": {\n"
            "    \"x\": -3.5,\n"
            "    \"y\": 987.0\n"
            "  },\n"
            "  \"components\": [\n"
            "    \"a\",\n"
            "    \"打开\"\n"
            "  ]\n"
            "}");
}

TEST(Result, EscapesWhatJsonCannotHoldInText) {
  EXPECT_EQ(serialize(Result("a \"b\" \\ \n\t\x01")), R"("a \"b\" \\ \n\t\u0001")");
}

TEST(Result, WritesFramesWithTheirExtentAsMagnitudes) {
  EXPECT_EQ(frameObject({-10, 20.5, -300, -0.5}),
            Result({{"x", -10.0}, {"y", 20.5}, {"width", 300.0}, {"height", 0.5}}));
  EXPECT_EQ(frameObject({}).dump(), R"({"x":0.0,"y":0.0,"width":0.0,"height":0.0})");
}

TEST(Result, RefusesNumbersThatAreNotFinite) {
  EXPECT_EQ(refusalOf({{"point", pointObject({1, std::nan("")})}}),
            "the number nan at /point/y cannot be written as JSON");
  EXPECT_EQ(refusalOf({{"list", {1.0, -infinity}}}),
            "the number -inf at /list/1 cannot be written as JSON");
}

TEST(Result, RefusesTextThatIsNotUtf8) {
  EXPECT_EQ(refusalOf({{"path", "/tmp/\xFF"}}),
            "the text at /path is not UTF-8 and cannot be written as JSON");
  EXPECT_EQ(refusalOf({{"components", {"fine", "\xE6\x89"}}}),
            "the text at /components/1 is not UTF-8 and cannot be written as JSON");
}

}  // namespace
}  // namespace tessarine::test
