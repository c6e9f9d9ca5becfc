// Locations: which texts are one, and which path they lead to.
#include <gtest/gtest.h>

#include "contract/contract.h"

namespace tessarine::test {
namespace {

std::string pathOf(const std::string& text) {
  const CFStringRef string = cfString(text);
  const CFURLRef url = CFURLCreateWithString(kCFAllocatorDefault, string, nullptr);
  CFRelease(string);
  if (!url) return "no URL";
  const std::string path = textOf(CFURLCopyFileSystemPath(url, kCFURLPOSIXPathStyle));
  CFRelease(url);
  return path;
}

TEST_F(Contract, UrlsGiveDecodedPathsWithoutTheirLastSlash) {
  EXPECT_EQ(pathOf("file:///Users/me/My%20Folder/"), "/Users/me/My Folder");
  EXPECT_EQ(pathOf("file://localhost/tmp/a"), "/tmp/a");
  EXPECT_EQ(pathOf("file:///"), "/");
  EXPECT_EQ(pathOf("file:///tmp//"), "/tmp/");
  EXPECT_EQ(pathOf("file:///a%2Fb%E6%89%93"), "/a/b打");
  EXPECT_EQ(pathOf("https://example.org/x/y/?q=1#f"), "/x/y");
  EXPECT_EQ(pathOf("/plain/path/"), "/plain/path");
  EXPECT_EQ(pathOf("https://example.org"), "");
  EXPECT_EQ(pathOf("mailto:me"), "NULL");
  EXPECT_EQ(pathOf("file:///not%FFutf8"), "NULL");
}

TEST_F(Contract, TextThatIsNoUrlGivesNone) {
  for (const char* text : {"", " ", "file:///a b", "file:///打开", "file:///%", "file:///%2",
                           "file:///%zz", "file:///<a>", "file:///a\\b", "file:///a#b#c"}) {
    EXPECT_EQ(pathOf(text), "no URL") << text;
  }
}

TEST_F(Contract, SchemesAreCopiedAsWritten) {
  const auto schemeOf = [](const std::string& text) {
    const CFStringRef string = cfString(text);
    const CFURLRef url = CFURLCreateWithString(kCFAllocatorDefault, string, nullptr);
    const std::string scheme = textOf(CFURLCopyScheme(url));
    CFRelease(url);
    CFRelease(string);
    return scheme;
  };
  EXPECT_EQ(schemeOf("File:///a"), "File");
  EXPECT_EQ(schemeOf("https://example.org"), "https");
  EXPECT_EQ(schemeOf("/a:b"), "NULL");
  EXPECT_EQ(schemeOf("1a:b"), "NULL");
}

// What it resolves to is tested with the panel's items, which alone have such locations.
TEST_F(Contract, OnlyFileLocationsBecomeFilePaths) {
  const auto resolved = [](const std::string& text) {
    const CFStringRef string = cfString(text);
    const CFURLRef url = CFURLCreateWithString(kCFAllocatorDefault, string, nullptr);
    const CFURLRef fileUrl = CFURLCreateFilePathURL(kCFAllocatorDefault, url, nullptr);
    std::string path = "NULL";
    if (fileUrl) {
      path = textOf(CFURLCopyFileSystemPath(fileUrl, kCFURLPOSIXPathStyle));
      CFRelease(fileUrl);
    }
    CFRelease(url);
    CFRelease(string);
    return path;
  };
  EXPECT_EQ(resolved("file:///tmp/"), "/tmp");
  EXPECT_EQ(resolved("https://example.org/tmp"), "NULL");
}

}  // namespace
}  // namespace tessarine::test
