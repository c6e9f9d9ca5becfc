#include "platform/files.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <regex>
#include <set>
#include <sstream>

#include "support/world.h"

namespace tessarine::test {
namespace {

namespace fs = std::filesystem;
using Components = std::vector<std::string>;

std::string contentsOf(const std::string& path) {
  std::ostringstream contents;
  contents << std::ifstream(path).rdbuf();
  return contents.str();
}

TEST(Files, StandardizePaths) {
  EXPECT_EQ(standardizedPath("/usr/lib"), "/usr/lib");
  EXPECT_EQ(standardizedPath("/usr/lib/"), "/usr/lib");
  EXPECT_EQ(standardizedPath("/usr//lib///"), "/usr/lib");
  EXPECT_EQ(standardizedPath("/usr/./share/../lib/."), "/usr/lib");
  EXPECT_EQ(standardizedPath("/usr/lib/.."), "/usr");
  EXPECT_EQ(standardizedPath("/"), "/");
  EXPECT_EQ(standardizedPath("///"), "/");
  EXPECT_EQ(standardizedPath("/../.."), "/");
  EXPECT_EQ(standardizedPath("/a b/打开/.hidden/..."), "/a b/打开/.hidden/...");
}

TEST(Files, ResolveRelativePathsAgainstTheCurrentDirectory) {
  const fs::path here = fs::current_path();
  EXPECT_EQ(standardizedPath("a/b/"), here / "a/b");
  EXPECT_EQ(standardizedPath("./a/../b"), here / "b");
  EXPECT_EQ(standardizedPath(""), here);
  EXPECT_EQ(standardizedPath("."), here);
  EXPECT_EQ(standardizedPath("~"), here / "~");
}

TEST(Files, DoNotFollowLinksWhenStandardizing) {
  TemporaryFolder folder;
  fs::create_directory_symlink("/usr", folder.path() + "/link");
  EXPECT_EQ(standardizedPath(folder.path() + "/link/lib"), folder.path() + "/link/lib");
  EXPECT_EQ(standardizedPath(folder.path() + "/link/.."), folder.path());
}

TEST(Files, TakePathsApartAndPutThemTogether) {
  EXPECT_EQ(pathComponents("/usr/lib"), (Components{"/", "usr", "lib"}));
  EXPECT_EQ(pathComponents("/"), Components{"/"});
  EXPECT_EQ(lastPathComponent("/usr/my.lib"), "my.lib");
  EXPECT_EQ(lastPathComponent("/usr"), "usr");
  EXPECT_EQ(lastPathComponent("/"), "/");
  EXPECT_EQ(parentDirectory("/usr/lib"), "/usr");
  EXPECT_EQ(parentDirectory("/usr"), "/");
  EXPECT_EQ(appendingComponent("/usr", "lib"), "/usr/lib");
  EXPECT_EQ(appendingComponent("/usr/", "lib"), "/usr/lib");
  EXPECT_EQ(appendingComponent("/", "usr"), "/usr");
  EXPECT_EQ(appendingComponent("", "usr"), "usr");
}

TEST(Files, TellWhatExists) {
  TemporaryFolder folder;
  const std::string file = folder.makeFile("file", "text");
  const std::string script = folder.makeScript("script", "exit 0");
  const std::string link = folder.path() + "/link";
  const std::string broken = folder.path() + "/broken";
  fs::create_symlink(script, link);
  fs::create_symlink(folder.path() + "/missing", broken);
  struct {
    std::string path;
    bool exists, directory, executable;
  } const expected[] = {
      {file, true, false, false},
      {script, true, false, true},
      {link, true, false, true},
      {broken, false, false, false},
      {folder.path() + "/missing", false, false, false},
      {file + "/below", false, false, false},
      {"", false, false, false},
  };
  for (const auto& [path, exists, directory, executable] : expected) {
    EXPECT_EQ(fileExists(path), exists) << path;
    EXPECT_EQ(isDirectory(path), directory) << path;
    EXPECT_EQ(isExecutableFile(path), executable) << path;
  }
  EXPECT_TRUE(fileExists(folder.path()));
  EXPECT_TRUE(isDirectory(folder.path()));
  fs::create_directory_symlink(folder.path(), folder.path() + "/self");
  EXPECT_TRUE(isDirectory(folder.path() + "/self"));
}

TEST(Files, RemoveAFileIfItIsThere) {
  TemporaryFolder folder;
  const std::string file = folder.makeFile("file", "text");
  removeFile(file);
  EXPECT_FALSE(fileExists(file));
  EXPECT_NO_THROW(removeFile(file));
  folder.makeFolder("full/inner");
  EXPECT_NO_THROW(removeFile(folder.path() + "/full"));
  EXPECT_TRUE(fileExists(folder.path() + "/full/inner"));
}

TEST(Files, CopyAFileToWhereNothingStands) {
  TemporaryFolder folder;
  const std::string from = folder.makeFile("from", "new");
  const std::string taken = folder.makeFile("taken", "old");
  copyFile(from, folder.path() + "/to");
  EXPECT_EQ(contentsOf(folder.path() + "/to"), "new");
  EXPECT_THROW(copyFile(from, taken), fs::filesystem_error);
  EXPECT_EQ(contentsOf(taken), "old");
  EXPECT_THROW(copyFile(folder.path() + "/missing", folder.path() + "/other"),
               fs::filesystem_error);
}

TEST(Files, CopyWhatALinkLeadsTo) {
  TemporaryFolder folder;
  fs::create_symlink(folder.makeFile("from", "text"), folder.path() + "/link");
  copyFile(folder.path() + "/link", folder.path() + "/to");
  EXPECT_FALSE(fs::is_symlink(folder.path() + "/to"));
  EXPECT_EQ(contentsOf(folder.path() + "/to"), "text");
}

TEST(Files, SetModificationDates) {
  TemporaryFolder folder;
  const std::string file = folder.makeFile("file");
  // An instant that a double and nanoseconds both hold.
  setModificationDate(file, 1'700'000'000.25);
  const auto age = fs::file_time_type::clock::now() - fs::last_write_time(file);
  const auto now = std::chrono::system_clock::now().time_since_epoch();
  EXPECT_NEAR(std::chrono::duration<double>(now - age).count(), 1'700'000'000.25, 0.1);
  EXPECT_THROW(setModificationDate(folder.path() + "/missing", 0), fs::filesystem_error);
}

}  // namespace
}  // namespace tessarine::test
