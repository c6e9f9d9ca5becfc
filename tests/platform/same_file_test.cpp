// Which paths lead to the same file: what the file system says of them, not how they are written.
#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <stdexcept>

#include "platform/files.h"
#include "support/temporary_folder.h"

namespace tessarine::test::same_file {
namespace {

namespace fs = std::filesystem;

std::string canonical(const std::string& path) {
  return canonicalPath(path).value_or("nothing");
}

// Folders with links between them: "real/inner" with a file, and "link" that leads to it.
struct Linked {
  TemporaryFolder files;
  std::string inner = files.makeFolder("real/inner");
  std::string file = files.makeFile("real/inner/report.txt", "text");
  std::string link = files.path() + "/link";

  Linked() { fs::create_directory_symlink(inner, link); }
};

// For as long as it lives the process may read no more than any user may.
class WithoutPrivileges {
 public:
  WithoutPrivileges() {
    if (seteuid(before_ == 0 ? 65534 : before_) != 0) throw std::runtime_error("seteuid");
  }
  ~WithoutPrivileges() { EXPECT_EQ(seteuid(before_), 0); }
  WithoutPrivileges(const WithoutPrivileges&) = delete;
  WithoutPrivileges& operator=(const WithoutPrivileges&) = delete;

 private:
  uid_t before_ = geteuid();
};

// A folder that may not be searched, "closed", with two files.
struct Closed {
  TemporaryFolder files;
  std::string folder = files.makeFolder("closed");
  std::string first = files.makeFile("closed/first", "x");
  std::string second = files.makeFile("closed/second", "x");

  Closed() {
    fs::create_directory_symlink(folder, files.path() + "/link");
    fs::permissions(files.path(), fs::perms::all);
    fs::permissions(folder, fs::perms::none);
  }
  ~Closed() { fs::permissions(folder, fs::perms::owner_all); }
};

// --- canonicalPath ---

TEST(CanonicalPath, HasNoLinksDotsOrTrailingSlashes) {
  Linked linked;
  EXPECT_EQ(canonical(linked.inner), linked.inner);
  EXPECT_EQ(canonical(linked.inner + "//./"), linked.inner);
  EXPECT_EQ(canonical(linked.link), linked.inner);
  EXPECT_EQ(canonical(linked.link + "/report.txt"), linked.file);
  EXPECT_EQ(canonical("/"), "/");
}

TEST(CanonicalPath, LeadsUpFromWhereALinkLeadsAndNotFromWhereItStands) {
  Linked linked;
  EXPECT_EQ(canonical(linked.link + "/.."), linked.files.path() + "/real");
  EXPECT_EQ(standardizedPath(linked.link + "/.."), linked.files.path());
}

TEST(CanonicalPath, FollowsLinksToLinks) {
  Linked linked;
  fs::create_directory_symlink("link", linked.files.path() + "/second");
  EXPECT_EQ(canonical(linked.files.path() + "/second/report.txt"), linked.file);
}

TEST(CanonicalPath, BeginsAtTheCurrentDirectoryForARelativePath) {
  Linked linked;
  const fs::path before = fs::current_path();
  fs::current_path(linked.files.path());
  EXPECT_EQ(canonical("link/report.txt"), linked.file);
  fs::current_path(before);
}

TEST(CanonicalPath, IsAbsentWhereNothingIs) {
  Linked linked;
  fs::create_symlink("nowhere", linked.files.path() + "/broken");
  fs::create_symlink("circle", linked.files.path() + "/circle");
  EXPECT_EQ(canonical(linked.files.path() + "/missing"), "nothing");
  EXPECT_EQ(canonical(linked.files.path() + "/broken"), "nothing");
  EXPECT_EQ(canonical(linked.files.path() + "/circle"), "nothing");
  EXPECT_EQ(canonical(linked.file + "/below a file"), "nothing");
  EXPECT_EQ(canonical(""), "nothing");
}

TEST(CanonicalPath, KeepsWhatLiesBelowAFolderThatMayNotBeSearched) {
  Closed closed;
  const WithoutPrivileges asAnybody;
  EXPECT_EQ(canonical(closed.first), closed.first);
  EXPECT_EQ(canonical(closed.files.path() + "/link/first"), closed.first);
  EXPECT_EQ(canonical(closed.folder + "/missing"), closed.folder + "/missing");
  EXPECT_EQ(canonical(closed.files.path() + "/missing"), "nothing");
}

// --- sameFile ---

TEST(SameFile, HoldsHoweverThePathIsWritten) {
  Linked linked;
  EXPECT_TRUE(sameFile(linked.file, linked.file));
  EXPECT_TRUE(sameFile(linked.inner + "/", linked.inner));
  EXPECT_TRUE(sameFile(linked.link, linked.inner));
  EXPECT_TRUE(sameFile(linked.link + "/report.txt", linked.file));
  EXPECT_TRUE(sameFile(linked.link + "/..", linked.files.path() + "/real"));
  EXPECT_TRUE(sameFile(linked.inner + "/../inner/./report.txt", linked.file));
}

TEST(SameFile, DoesNotHoldForTheSameNameElsewhere) {
  TemporaryFolder files;
  files.makeFolder("one");
  files.makeFolder("other");
  const std::string one = files.makeFile("one/report.txt", "text");
  const std::string other = files.makeFile("other/report.txt", "text");
  EXPECT_FALSE(sameFile(one, other));
  EXPECT_FALSE(sameFile(files.path() + "/one", files.path() + "/other"));
  EXPECT_FALSE(sameFile(files.path() + "/one", one));
  Linked linked;
  EXPECT_FALSE(sameFile(linked.link + "/..", linked.files.path()));
}

TEST(SameFile, HoldsForTwoNamesOfOneFile) {
  Linked linked;
  const std::string second = linked.files.path() + "/second name";
  fs::create_hard_link(linked.file, second);
  EXPECT_TRUE(sameFile(linked.file, second));
}

// A file system that tells them apart has both; one that does not makes them the same file.
TEST(SameFile, AsksTheFileSystemAboutComposedAndDecomposedNames) {
  TemporaryFolder files;
  const std::string composed = files.makeFolder("caf\xC3\xA9");
  const std::string decomposed = files.path() + "/cafe\xCC\x81";
  EXPECT_EQ(sameFile(composed, decomposed), fs::exists(decomposed));
  files.makeFolder("cafe\xCC\x81");
  EXPECT_EQ(sameFile(composed, decomposed), fs::equivalent(composed, decomposed));
  EXPECT_TRUE(sameFile(decomposed, decomposed + "/"));
}

TEST(SameFile, TellsNamesOfDifferentCaseApartWhereTheFileSystemDoes) {
  TemporaryFolder files;
  const std::string small = files.makeFolder("downloads");
  const std::string large = files.path() + "/Downloads";
  EXPECT_EQ(sameFile(small, large), fs::exists(large));
}

TEST(SameFile, NothingIsTheSameAsWhatDoesNotExist) {
  Linked linked;
  const std::string missing = linked.files.path() + "/missing";
  fs::create_symlink("nowhere", linked.files.path() + "/broken");
  EXPECT_FALSE(sameFile(missing, missing));
  EXPECT_FALSE(sameFile(missing, linked.file));
  EXPECT_FALSE(sameFile(linked.file, missing));
  EXPECT_FALSE(sameFile(linked.files.path() + "/broken", linked.files.path() + "/broken"));
  EXPECT_FALSE(sameFile("", ""));
}

// The roots of several file systems have the same inode.
TEST(SameFile, TellsDevicesApart) {
  for (const char* root : {"/dev/shm", "/sys", "/dev/pts", "/usr"}) {
    EXPECT_FALSE(sameFile("/proc", root)) << root;
  }
}

TEST(SameFile, ComparesCanonicalPathsWhereTheSystemRefusesToSay) {
  Closed closed;
  const WithoutPrivileges asAnybody;
  EXPECT_TRUE(sameFile(closed.first, closed.first));
  EXPECT_TRUE(sameFile(closed.files.path() + "/link/first", closed.first));
  EXPECT_FALSE(sameFile(closed.first, closed.second));
  EXPECT_FALSE(sameFile(closed.first, closed.folder));
}

TEST(SameFile, WhatMayNotBeAskedIsNotWhatDoesNotExist) {
  Closed closed;
  const WithoutPrivileges asAnybody;
  EXPECT_FALSE(sameFile(closed.first, closed.files.path() + "/missing"));
  EXPECT_FALSE(sameFile(closed.files.path() + "/missing", closed.first));
}

}  // namespace
}  // namespace tessarine::test::same_file
