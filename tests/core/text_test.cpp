#include "core/text.h"

#include <gtest/gtest.h>

namespace tessarine::test {
namespace {

using Pieces = std::vector<std::string>;

constexpr const char* family =
    "👨‍👩‍👧‍👦";  // four people, joined by three zero-width joiners

TEST(Text, TellsUtf8FromOtherBytes) {
  for (const char* text : {"", "plain", "打开", "e\u0301", "😀", "\u00A0"}) {
    EXPECT_TRUE(isUtf8(text)) << text;
  }
  // A lone byte, a cut sequence, an overlong form, a surrogate, and a scalar beyond U+10FFFF.
  for (const char* text : {"a\xFF", "\xE6\x89", "\xC0\xAF", "\xED\xA0\x80", "\xF4\x90\x80\x80"}) {
    EXPECT_FALSE(isUtf8(text));
  }
}

TEST(Text, SplitsIntoScalarsAndNotIntoUnitsOrCharacters) {
  EXPECT_EQ(toScalars("a打😀"), U"a打😀");
  EXPECT_EQ(toScalars("e\u0301"), U"e\u0301");
  EXPECT_EQ(toScalars(family).size(), 7U);
  EXPECT_EQ(toScalars(""), U"");
}

TEST(Text, DecodesEachStrayByteAsAReplacementCharacter) {
  EXPECT_EQ(toScalars("a\xFF\xFE"
                      "b"),
            U"a\uFFFD\uFFFDb");
  EXPECT_EQ(toUtf16("\xFF"), u"\uFFFD");
}

TEST(Text, WritesScalarsBeyondTheBasicPlaneAsTwoUnits) {
  EXPECT_EQ(toUtf16(U'a'), u"a");
  EXPECT_EQ(toUtf16(U'\uFFFD'), u"\uFFFD");
  EXPECT_EQ(toUtf16(U'😀'), (std::u16string{0xD83D, 0xDE00}));
  EXPECT_EQ(toUtf16(U'\U00010000'), (std::u16string{0xD800, 0xDC00}));
  EXPECT_EQ(toUtf16(U'\U0010FFFF'), (std::u16string{0xDBFF, 0xDFFF}));
  EXPECT_EQ(toUtf16("打开 😀"), u"打开 😀");
}

TEST(Text, ReadsBackTheUnitsThatItWrites) {
  for (const std::string text : {"", "plain", "打开", "e\u0301", "😀\U0010FFFF", family}) {
    EXPECT_EQ(fromUtf16(toUtf16(text)), text);
  }
}

TEST(Text, ReadsAnUnpairedSurrogateAsAReplacementCharacter) {
  EXPECT_EQ(fromUtf16(std::u16string{u'a', 0xD83D}), "a\uFFFD");
  EXPECT_EQ(fromUtf16(std::u16string{0xD83D, u'b'}), "\uFFFDb");
  EXPECT_EQ(fromUtf16(std::u16string{0xDE00, 0xD83D}), "\uFFFD\uFFFD");
}

struct Counted {
  const char* text;
  std::size_t characters;
};

TEST(Text, CountsCharactersAsPeopleDo) {
  for (const auto& [text, characters] : std::initializer_list<Counted>{
           {"", 0},
           {"abc", 3},
           {"打开", 2},
           {"e\u0301", 1},
           {"\u0301", 1},
           {"😀", 1},
           {"👍🏽", 1},
           {family, 1},
           {"🇩🇪", 1},
           {"🇩🇪🇫🇷", 2},
           {"a👨‍👩‍👧‍👦b", 3},
           {"\r\n", 1},
           {"\n\r", 2},
           {"\u1112\u1161\u11AB", 1},
       }) {
    EXPECT_EQ(characterCount(text), characters) << text;
  }
}

TEST(Text, TrimsWhiteSpaceInTheUnicodeSense) {
  EXPECT_EQ(trimmed(" \t\r\n one two \v\f"), "one two");
  EXPECT_EQ(trimmed("\u00A0\u3000打 开\u2028\u2029\u0085"), "打 开");
  EXPECT_EQ(trimmed("kept"), "kept");
  EXPECT_EQ(trimmed(" \n\u3000"), "");
  EXPECT_EQ(trimmed(""), "");
}

TEST(Text, KeepsWhatLooksLikeWhiteSpaceButIsNone) {
  EXPECT_EQ(trimmed("\u200D a \u200D"), "\u200D a \u200D");
  EXPECT_EQ(trimmed(" \xFF "), "\xFF");
}

TEST(Text, SplitsAndDropsEmptyPieces) {
  EXPECT_EQ(splitDroppingEmpty("a\tb c\td", '\t'), (Pieces{"a", "b c", "d"}));
  EXPECT_EQ(splitDroppingEmpty("//usr//lib/", '/'), (Pieces{"usr", "lib"}));
  EXPECT_EQ(splitDroppingEmpty("whole", ','), Pieces{"whole"});
  EXPECT_EQ(splitDroppingEmpty(",,", ','), Pieces{});
  EXPECT_EQ(splitDroppingEmpty("", ','), Pieces{});
}

TEST(Text, LowersAsciiLettersAlone) {
  EXPECT_EQ(lowercased("File://AZ@[`az{09"), "file://az@[`az{09");
  EXPECT_EQ(lowercased("ÄÉ打开"), "ÄÉ打开");
}

TEST(Text, FindsPieces) {
  EXPECT_TRUE(contains("列表视图边栏", "边栏"));
  EXPECT_TRUE(contains("anything", ""));
  EXPECT_FALSE(contains("Sidebar", "sidebar"));
  EXPECT_FALSE(contains("", "a"));
}

TEST(Joined, PutsTheSeparatorBetweenThePieces) {
  EXPECT_EQ(joined({}, ", "), "");
  EXPECT_EQ(joined({"one"}, ", "), "one");
  EXPECT_EQ(joined({"", "two", "two"}, ", "), ", two, two");
}

}  // namespace
}  // namespace tessarine::test
