// Texts, booleans and locations on their way between the platform and this program.
#include "platform/cf_values.h"

#include "platform/accessibility.h"
#include "support/world.h"

namespace tessarine::test::cf_values {
namespace {

std::string roundTrip(std::string_view text) {
  return textValue(makeCfString(text).get()).value_or("nothing");
}

// What `read` makes of a value that arrives from another process.
template <class Read>
auto asRead(const Read& read, simulator::Value value) {
  BareDesktop world;
  world.app().set("AXProbe", std::move(value));
  return read(axValue(world.appHandle(), "AXProbe").get());
}

std::string pathOf(const std::string& url) {
  return asRead(locationPath, simulator::Url{url}).value_or("nothing");
}

std::string pathOfText(const std::string& text) {
  return fileLocationPath(text).value_or("nothing");
}

TEST(CfValues, TextSurvivesTheRoundTrip) {
  using namespace std::string_literals;
  for (const auto& text : {""s, "plain"s, "打开 e\u0301 🙂"s, "a\0b"s}) {
    EXPECT_EQ(roundTrip(text), text);
  }
}

TEST(CfValues, BytesThatAreNotUtf8BecomeReplacementCharacters) {
  EXPECT_EQ(roundTrip("a\xFFz"), "a\uFFFDz");
}

TEST(CfValues, OnlyATextReadsAsText) {
  EXPECT_EQ(asRead(textValue, "text"), "text");
  EXPECT_EQ(asRead(textValue, 1.0), std::nullopt);
  EXPECT_EQ(asRead(textValue, true), std::nullopt);
  EXPECT_EQ(asRead(textValue, simulator::Url{"file:///x"}), std::nullopt);
  EXPECT_EQ(textValue(nullptr), std::nullopt);
}

TEST(CfValues, AListReadsAsTextsOnlyWhenAllItsMembersAre) {
  using simulator::List;
  using Texts = std::vector<std::string>;
  EXPECT_EQ(asRead(textList, List{"b", "", "a"}), (Texts{"b", "", "a"}));
  EXPECT_EQ(asRead(textList, List{"b", 1.0, "a"}), Texts());
  EXPECT_EQ(asRead(textList, List{}), Texts());
  EXPECT_EQ(asRead(textList, "text"), Texts());
  EXPECT_EQ(textList(nullptr), Texts());
}

TEST(CfValues, OnlyTheBooleanTrueIsTrue) {
  EXPECT_TRUE(isTrue(kCFBooleanTrue));
  EXPECT_TRUE(asRead(isTrue, true));
  EXPECT_FALSE(asRead(isTrue, false));
  EXPECT_FALSE(asRead(isTrue, 1.0));
  EXPECT_FALSE(asRead(isTrue, "true"));
  EXPECT_FALSE(isTrue(nullptr));
}

TEST(CfValues, TheLocationPathIsDecodedAndHasNoTrailingSlash) {
  EXPECT_EQ(pathOf("file:///Users/me/My%20Folder/"), "/Users/me/My Folder");
  EXPECT_EQ(pathOf("file://localhost/a%2525"), "/a%25");
  EXPECT_EQ(pathOf("https://example.com/a/b?query#part"), "/a/b");
  EXPECT_EQ(pathOf("file:///"), "/");
}

TEST(CfValues, AFileReferenceLocationIsResolvedToItsFile) {
  EXPECT_EQ(pathOf("file:///.file/id=2F746D702F61"), "/tmp/a");
}

TEST(CfValues, ThePathOfALocationWithoutOneIsEmpty) {
  EXPECT_EQ(pathOf("mailto:someone"), "");
}

TEST(CfValues, OnlyALocationHasAPath) {
  EXPECT_EQ(asRead(locationPath, "file:///x"), std::nullopt);
  EXPECT_EQ(locationPath(nullptr), std::nullopt);
}

TEST(CfValues, OnlyATextOfTheFileSchemeIsAFileLocation) {
  EXPECT_EQ(pathOfText("file:///Users/me/My%20Folder/"), "/Users/me/My Folder");
  EXPECT_EQ(pathOfText("FILE:///x"), "/x");
  for (const char* text : {"https://example.com/a", "/a", "", "files:///a", "file:///100%"}) {
    EXPECT_EQ(pathOfText(text), "nothing") << text;
  }
}

}  // namespace
}  // namespace tessarine::test::cf_values
