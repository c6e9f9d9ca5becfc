// The signing script, with a stand-in for `codesign` that writes down how it was called.
#include <gtest/gtest.h>

#include <fstream>
#include <sstream>

#include "end_to_end/program_run.h"
#include "support/temporary_folder.h"

namespace tessarine::test {
namespace {

class Sign : public ::testing::Test {
 protected:
  Sign() {
    bin_ = path_ = folder_.makeFolder("bin");
    programs_ = folder_.makeFolder("built programs");
    for (const char* program : {"tessarine", "background-window-capture"}) {
      folder_.makeFile("built programs/" + std::string(program));
    }
  }

  // `ending` is the script's last line.
  void makeCodesign(const std::string& ending = "exit 0") {
    path_ = bin_ + ":/usr/bin:/bin";
    folder_.makeScript("bin/codesign", "echo \"$*\" >> '" + folder_.path() + "/calls'\n" + ending);
  }

  ProgramRun sign(const std::vector<std::string>& arguments) {
    std::vector<std::string> command{"/bin/bash", SOURCE_TREE "/packaging/sign"};
    command.insert(command.end(), arguments.begin(), arguments.end());
    return runProgram(command, {{"PATH", path_}});
  }

  std::string calls() const {
    std::ostringstream text;
    text << std::ifstream(folder_.path() + "/calls").rdbuf();
    return text.str();
  }

  // What `codesign` is asked for each of the programs.
  std::string callsWith(const std::string& options, const std::string& identity) const {
    std::string lines;
    for (const std::string program : {"tessarine", "background-window-capture"}) {
      const std::string path = programs_ + "/" + program;
      lines += "--force --options runtime --entitlements " SOURCE_TREE
               "/packaging/entitlements.plist " +
               options + "--identifier dev.tessarine." + program + " --sign " + identity + " " +
               path + "\n--verify --strict " + path + "\n";
    }
    return lines;
  }

  TemporaryFolder folder_;
  std::string bin_;
  std::string path_;  // the system may have a codesign of its own
  std::string programs_;
};

const ProgramRun quiet{0, "", "", 0};

ProgramRun failure(int status, const std::string& line) {
  return {status, "", line + "\n", 0};
}

TEST_F(Sign, WithoutAnIdentitySignsAdHoc) {
  makeCodesign();
  EXPECT_EQ(sign({programs_}), quiet);
  EXPECT_EQ(calls(), callsWith("", "-"));
}

TEST_F(Sign, WithAnIdentityAsksForATimestamp) {
  makeCodesign();
  EXPECT_EQ(sign({programs_, "Developer ID Application: Someone"}), quiet);
  EXPECT_EQ(calls(), callsWith("--timestamp ", "Developer ID Application: Someone"));
}

TEST_F(Sign, AWrongCommandLineGetsTheUsage) {
  makeCodesign();
  const ProgramRun usage = failure(2, "usage: packaging/sign FOLDER [IDENTITY]");
  EXPECT_EQ(sign({}), usage);
  EXPECT_EQ(sign({""}), usage);
  EXPECT_EQ(sign({programs_, ""}), usage) << "an identity that was not set";
  EXPECT_EQ(sign({programs_, "-", "more"}), usage);
  EXPECT_EQ(calls(), "");
}

TEST_F(Sign, SignsNothingUnlessBothProgramsAreThere) {
  makeCodesign();
  const std::string other = folder_.makeFolder("other");
  folder_.makeFile("other/tessarine");
  EXPECT_EQ(sign({other}), failure(1, "sign: no background-window-capture in " + other));
  EXPECT_EQ(sign({"/nowhere"}), failure(1, "sign: no tessarine in /nowhere"));
  EXPECT_EQ(calls(), "");
}

TEST_F(Sign, SaysWhatCodesignDidNotDo) {
  const std::string first = programs_ + "/tessarine";
  makeCodesign("exit 3");
  EXPECT_EQ(sign({programs_}), failure(1, "sign: codesign did not sign " + first));
  makeCodesign("[ $1 != --verify ]");
  EXPECT_EQ(sign({programs_}), failure(1, "sign: the signature of " + first + " is not valid"));
}

TEST_F(Sign, SaysThatCodesignIsMissing) {
  EXPECT_EQ(sign({programs_}), failure(1, "sign: codesign is not here; run this on a Mac"));
}

}  // namespace
}  // namespace tessarine::test
