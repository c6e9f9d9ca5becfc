// Standard descriptors that the caller left closed.
#include "platform/standard_streams.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdlib>

#include "support/temporary_folder.h"

namespace tessarine::test {
namespace {

int openFile(const std::string& file) {
  return open(file.c_str(), O_WRONLY | O_CREAT, 0600);
}

TEST(StandardStreams, AreNotTakenByWhatIsOpenedNext) {
  const TemporaryFolder folder;
  for (const int missing : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
    const auto start = [&] {
      close(missing);
      openMissingStandardStreams();
      const bool takesText = write(missing, "x", 1) == 1;
      std::_Exit(openFile(folder.path() + "/file") > STDERR_FILENO && !takesText ? 0 : 1);
    };
    EXPECT_EXIT(start(), ::testing::ExitedWithCode(0), "") << missing;
  }
}

TEST(StandardStreams, StayAsTheyAreWhenNoneIsMissing) {
  const TemporaryFolder folder;
  const int before = openFile(folder.path() + "/file");
  close(before);
  openMissingStandardStreams();
  const int after = openFile(folder.path() + "/file");
  close(after);
  EXPECT_EQ(after, before);
}

}  // namespace
}  // namespace tessarine::test
