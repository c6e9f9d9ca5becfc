#include "platform/own_process.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdlib>
#include <regex>
#include <set>

namespace tessarine::test {
namespace {

TEST(OwnProcess, HasTheSystemsNumber) {
  EXPECT_EQ(ownPid(), getpid());
}

TEST(OwnProcess, MakesRandomUuidsInUpperCase) {
  const std::regex form("[0-9A-F]{8}-[0-9A-F]{4}-4[0-9A-F]{3}-[89AB][0-9A-F]{3}-[0-9A-F]{12}");
  std::set<std::string> made;
  for (int i = 0; i < 100; ++i) made.insert(freshUuid());
  EXPECT_EQ(made.size(), 100U);
  for (const std::string& uuid : made) EXPECT_TRUE(std::regex_match(uuid, form)) << uuid;
}

TEST(OwnProcess, ReadsItsEnvironment) {
  constexpr const char* name = "TESSARINE_OWN_PROCESS_TEST";
  setenv(name, "打开 = b", 1);
  EXPECT_EQ(environmentVariable(name), "打开 = b");
  setenv(name, "", 1);
  EXPECT_EQ(environmentVariable(name), "");
  unsetenv(name);
  EXPECT_EQ(environmentVariable(name), "");
}

}  // namespace
}  // namespace tessarine::test
