#include "core/numbers.h"

#include <gmock/gmock.h>

#include <cmath>
#include <limits>

namespace tessarine::test {
namespace {

using testing::Each;
using testing::Eq;

template <class Parse>
auto parsedEach(const Parse& parse, std::initializer_list<const char*> texts) {
  std::vector<decltype(parse(""))> results;
  for (const char* text : texts) results.push_back(parse(text));
  return results;
}

TEST(Numbers, ReadsSigned32BitDecimals) {
  using Read = std::vector<std::optional<std::int32_t>>;
  EXPECT_EQ(parsedEach(parseInt32, {"0", "812", "+7", "-7", "007", "2147483647", "-2147483648"}),
            (Read{0, 812, 7, -7, 7, 2147483647, std::numeric_limits<std::int32_t>::min()}));
}

TEST(Numbers, ReadsUnsigned32BitDecimals) {
  using Read = std::vector<std::optional<std::uint32_t>>;
  EXPECT_EQ(parsedEach(parseUInt32, {"0", "-0", "+7", "2147483648", "4294967295"}),
            (Read{0, 0, 7, 2147483648U, 4294967295U}));
}

TEST(Numbers, RefusesIntegersThatDoNotFit) {
  EXPECT_THAT(parsedEach(parseInt32, {"2147483648", "-2147483649", "99999999999999999999999"}),
              Each(Eq(std::nullopt)));
  EXPECT_THAT(parsedEach(parseUInt32, {"4294967296", "-1", "99999999999999999999999"}),
              Each(Eq(std::nullopt)));
}

TEST(Numbers, RefusesIntegersThatAreNotDigitsOnly) {
  for (const char* text : {"", "+", "-", "abc", "12a", " 12", "12 ", "1.0", "1e3", "0x10", "+-5",
                           "--5", "1,000", "١٢"}) {
    EXPECT_EQ(parseInt32(text), std::nullopt) << text;
    EXPECT_EQ(parseUInt32(text), std::nullopt) << text;
  }
}

TEST(Numbers, ReadsDoublesAsTheStandardConversionDoes) {
  using Read = std::vector<std::optional<double>>;
  EXPECT_EQ(parsedEach(parseDouble, {"5", "-0.25", "+3.5", ".5", "5.", "1e3", "0x1p4", "1e999"}),
            (Read{5, -0.25, 3.5, 0.5, 5, 1000, 16, std::numeric_limits<double>::infinity()}));
  EXPECT_EQ(parseDouble("-inf"), -std::numeric_limits<double>::infinity());
  EXPECT_TRUE(std::isnan(parseDouble("nan").value_or(0)));
}

TEST(Numbers, RefusesDoublesUnlessTheWholeTextIsTheNumber) {
  EXPECT_THAT(parsedEach(parseDouble, {"", "soon", "5s", " 5", "5 ", "\t5", "\n5", "1,5", "--5"}),
              Each(Eq(std::nullopt)));
}

TEST(Numbers, ReadsNoTextBehindAZeroByte) {
  EXPECT_EQ(parseDouble(std::string_view("5\0", 2)), std::nullopt);
  EXPECT_EQ(parseInt32(std::string_view("5\0", 2)), std::nullopt);
}

struct Printed {
  double value;
  const char* text;
};

TEST(Numbers, PrintsTheShortestDecimalThatReadsBackTheSame) {
  for (const auto& [value, text] : std::initializer_list<Printed>{
           {18, "18.0"},
           {10.5, "10.5"},
           {0.15, "0.15"},
           {3, "3.0"},
           {0, "0.0"},
           {-0.0, "-0.0"},
           {-20, "-20.0"},
           {0.1 + 0.2, "0.30000000000000004"},
           {1.0 / 3, "0.3333333333333333"},
           {0.0001, "0.0001"},
           {9007199254740992, "9007199254740992.0"},
       }) {
    EXPECT_EQ(formatDouble(value), text);
    EXPECT_EQ(parseDouble(text), value);
  }
}

TEST(Numbers, PrintsTheVeryLargeAndTheVerySmallWithAnExponent) {
  for (const auto& [value, text] : std::initializer_list<Printed>{
           {1e16, "1e+16"}, {1.5e-5, "1.5e-05"}, {-2.5e300, "-2.5e+300"}}) {
    EXPECT_EQ(formatDouble(value), text);
  }
}

TEST(Numbers, PrintsWhatIsNotFiniteByName) {
  constexpr double infinity = std::numeric_limits<double>::infinity();
  EXPECT_EQ(formatDouble(infinity), "inf");
  EXPECT_EQ(formatDouble(-infinity), "-inf");
  EXPECT_EQ(formatDouble(std::nan("")), "nan");
  EXPECT_EQ(formatDouble(-std::nan("")), "nan");
}

}  // namespace
}  // namespace tessarine::test
