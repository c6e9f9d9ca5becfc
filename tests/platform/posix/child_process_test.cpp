// Child processes of the system itself: the shell and what it can tell about itself.
#include "platform/child_process.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <thread>

namespace tessarine::test {
namespace {

StartedChild shell(const std::string& command) {
  return startChild("/bin/sh", {"-c", command});
}

std::string outputOf(const std::string& command) {
  return readStandardOutput(*shell(command).child);
}

bool soon(const std::function<bool()>& condition) {
  for (int looks = 0; looks < 500 && !condition(); ++looks) {
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
  }
  return condition();
}

// --- How a child ends. ---

TEST(ChildProcess, GivesItsExitStatus) {
  for (const int status : {0, 1, 3, 255}) {
    EXPECT_EQ(waitForExit(*shell("exit " + std::to_string(status)).child), status);
  }
}

TEST(ChildProcess, GivesTheNumberOfTheSignalThatEndedIt) {
  EXPECT_EQ(waitForExit(*shell("kill -TERM $$").child), SIGTERM);
  EXPECT_EQ(waitForExit(*shell("kill -KILL $$").child), SIGKILL);
}

TEST(ChildProcess, RunsUntilItIsTerminated) {
  const StartedChild sleeper = shell("exec sleep 30");
  EXPECT_TRUE(isRunning(*sleeper.child));
  terminate(*sleeper.child);
  EXPECT_TRUE(soon([&] { return !isRunning(*sleeper.child); }));
  EXPECT_EQ(waitForExit(*sleeper.child), SIGTERM);
}

TEST(ChildProcess, KeepsItsExitStatusWhenItIsTerminatedTooLate) {
  const StartedChild child = shell("exit 3");
  EXPECT_EQ(waitForExit(*child.child), 3);
  terminate(*child.child);
  EXPECT_FALSE(isRunning(*child.child));
  EXPECT_EQ(waitForExit(*child.child), 3);
}

TEST(ChildProcess, IsNotWaitedForWhenItIsLetGo) {
  StartedChild sleeper = shell("exec sleep 2");
  const auto start = std::chrono::steady_clock::now();
  sleeper.child.reset();
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(1));
}

TEST(ChildProcess, LeavesNoTraceWhenItIsLetGoAfterItsEnd) {
  StartedChild child = shell("echo $$");
  const std::string output = readStandardOutput(*child.child);
  const std::string directory = "/proc/" + output.substr(0, output.find('\n'));
  EXPECT_TRUE(soon([&] {
    std::string text;
    std::getline(std::ifstream(directory + "/stat"), text);
    return text.find(") Z ") != std::string::npos;
  }));
  child.child.reset();
  EXPECT_FALSE(std::filesystem::exists(directory));
}

// --- What a child says. ---

TEST(ChildProcess, IsReadOnBothStreams) {
  const StartedChild child = shell("echo output; echo 错误 >&2; exit 1");
  EXPECT_EQ(readStandardOutput(*child.child), "output\n");
  EXPECT_EQ(readStandardError(*child.child), "错误\n");
  EXPECT_EQ(waitForExit(*child.child), 1);
}

TEST(ChildProcess, CanBeReadAfterItsEnd) {
  const StartedChild child = shell("echo output; echo errors >&2");
  EXPECT_EQ(waitForExit(*child.child), 0);
  EXPECT_EQ(readStandardOutput(*child.child), "output\n");
  EXPECT_EQ(readStandardError(*child.child), "errors\n");
}

TEST(ChildProcess, IsReadToTheEndHoweverMuchAndHoweverSlowlyItWrites) {
  EXPECT_EQ(outputOf("head -c 1000000 /dev/zero"), std::string(1000000, '\0'));
  EXPECT_EQ(outputOf("echo begin; sleep 0.1; echo end"), "begin\nend\n");
}

TEST(ChildProcess, TakesArgumentsAsTheyStand) {
  const StartedChild child = startChild("/bin/echo", {"a  b", "$HOME", "*", "", "'\""});
  EXPECT_EQ(readStandardOutput(*child.child), "a  b $HOME *  '\"\n");
}

// --- What does not start. ---

TEST(ChildProcess, SaysWhyAProgramDoesNotStart) {
  for (const auto& [path, reason] : {std::pair{"/bin/no such program", "No such file or directory"},
                                     {"/etc/passwd", "Permission denied"},
                                     {"/usr", "Permission denied"}}) {
    const StartedChild child = startChild(path, {});
    EXPECT_EQ(child.child, nullptr) << path;
    EXPECT_EQ(child.startError, reason) << path;
  }
}

TEST(ChildProcess, LeavesNoDescriptorOpen) {
  const auto descriptors = [] {
    const std::filesystem::directory_iterator open("/proc/self/fd");
    return std::distance(begin(open), end(open));
  };
  const auto before = descriptors();
  startChild("/bin/no such program", {});
  EXPECT_EQ(outputOf("echo output"), "output\n");
  EXPECT_EQ(descriptors(), before);
}

// --- What a child inherits. ---

TEST(ChildProcess, InheritsTheEnvironment) {
  setenv("TESSARINE_TEST", "打开 \"1\"", 1);
  EXPECT_EQ(outputOf("printf %s \"$TESSARINE_TEST\""), "打开 \"1\"");
  unsetenv("TESSARINE_TEST");
}

// As many as a child of the C library's, also while another child's pipes are open.
TEST(ChildProcess, InheritsNoDescriptorButTheStandardOnes) {
  const std::string command = "set -- /proc/$$/fd/*; echo $#";
  std::FILE* usual = popen(command.c_str(), "r");
  int number = 0;
  ASSERT_EQ(std::fscanf(usual, "%d", &number), 1);
  pclose(usual);
  const StartedChild other = shell("exec sleep 30");
  EXPECT_EQ(outputOf(command), std::to_string(number) + "\n");
  terminate(*other.child);
  EXPECT_EQ(waitForExit(*other.child), SIGTERM);
}

// This thread blocks every signal, as those of the global queues do, and the process ignores two.
class UnderBlockedSignals : public testing::Test {
 protected:
  UnderBlockedSignals() {
    sigset_t all{};
    sigfillset(&all);
    pthread_sigmask(SIG_SETMASK, &all, &mask_);
  }
  ~UnderBlockedSignals() override {
    for (const int number : {SIGCHLD, SIGPIPE}) std::signal(number, SIG_DFL);
    pthread_sigmask(SIG_SETMASK, &mask_, nullptr);
  }

 private:
  sigset_t mask_{};
};

TEST_F(UnderBlockedSignals, AChildBlocksAndIgnoresNone) {
  for (const int number : {SIGCHLD, SIGPIPE}) std::signal(number, SIG_IGN);
  const auto signals = [](const std::string& kind) {
    const StartedChild child = startChild("/bin/grep", {"^" + kind, "/proc/self/status"});
    return std::stoull(readStandardOutput(*child.child).substr(kind.size() + 1), nullptr, 16);
  };
  constexpr unsigned long long below32 = 0x7FFFFFFF;  // the C library keeps some of the others
  EXPECT_EQ(signals("SigBlk"), 0U);
  EXPECT_EQ(signals("SigIgn") & below32, 0U);
}

TEST_F(UnderBlockedSignals, AChildCanBeTerminated) {
  const StartedChild sleeper = shell("exec sleep 30");
  terminate(*sleeper.child);
  EXPECT_EQ(waitForExit(*sleeper.child), SIGTERM);
}

TEST_F(UnderBlockedSignals, AChildThatTheSystemCollectsCountsAsFailed) {
  std::signal(SIGCHLD, SIG_IGN);
  const StartedChild child = shell("exit 0");
  EXPECT_NE(waitForExit(*child.child), 0);
  EXPECT_FALSE(isRunning(*child.child));
}

}  // namespace
}  // namespace tessarine::test
