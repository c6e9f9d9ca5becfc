#include "commands/choose_folder.h"

#include <gmock/gmock.h>

#include <unistd.h>

#include "core/tool_error.h"
#include "support/folder_world.h"

namespace tessarine::test {
namespace {

using ::testing::HasSubstr;
using ::testing::Not;
using Case = ToolError::Case;

// Whatever the strategy, the path comes first.
struct Rejection {
  Case errorCase;
  std::string message;
  bool operator==(const Rejection&) const = default;
};

void PrintTo(const Rejection& rejection, std::ostream* stream) {
  *stream << "case " << static_cast<int>(rejection.errorCase) << ": " << rejection.message;
}

Rejection rejectionOf(const std::string& path, bool prefer = false, bool strict = false) {
  try {
    chooseFolder(browserPid, path, 10, prefer, false, strict);
  } catch (const ToolError& error) {
    return {error.errorCase(), error.message()};
  }
  ADD_FAILURE() << "nothing was thrown";
  return {};
}

TEST(ChooseFolder, RejectsAPathThatDoesNotExist) {
  const TemporaryFolder files;
  BareDesktop world;
  const std::string missing = files.path() + "/missing";
  const Rejection expected{Case::notFound, "folder does not exist: " + missing};
  EXPECT_EQ(rejectionOf(missing), expected);
  EXPECT_EQ(rejectionOf(missing + "/"), expected);
  EXPECT_EQ(rejectionOf(files.path() + "/./other/../missing//"), expected);
  EXPECT_EQ(rejectionOf(missing, true, false), expected);
  EXPECT_EQ(rejectionOf(missing, false, true), expected);
  EXPECT_TRUE(world.desktop.record().lines().empty());
}

TEST(ChooseFolder, RejectsAPathThatIsNoFolder) {
  const TemporaryFolder files;
  BareDesktop world;
  const std::string file = files.makeFile("file.txt");
  const Rejection expected{Case::usage, "path is not a directory: " + file};
  EXPECT_EQ(rejectionOf(file), expected);
  EXPECT_EQ(rejectionOf(files.path() + "/folder/../file.txt"), expected);
  EXPECT_EQ(rejectionOf(file, true, true), expected);
  EXPECT_TRUE(world.desktop.record().lines().empty());
}

TEST(ChooseFolder, RejectsADanglingLinkAsMissing) {
  const TemporaryFolder files;
  BareDesktop world;
  const std::string link = files.path() + "/link";
  ASSERT_EQ(symlink("nowhere", link.c_str()), 0);
  EXPECT_EQ(rejectionOf(link), (Rejection{Case::notFound, "folder does not exist: " + link}));
}

TEST(ChooseFolder, ReportsRejectionsWithTheirExitStatus) {
  FolderWorld world("english-service-window");
  world.target = world.start + "/missing";
  EXPECT_EQ(world.chooseStrictly(),
            (Outcome{1, "", "folder does not exist: " + world.target + "\n"}));
  world.target = world.files.makeFile("start/file");
  const Outcome outcome = world.chooseStrictly();
  EXPECT_EQ(outcome.exitStatus, 2);
  EXPECT_EQ(outcome.errors, "path is not a directory: " + world.target + "\n");
  EXPECT_EQ(world.world.record().accessibilityRequests(), 0U);
  EXPECT_EQ(world.world.panelOutcomes(), "open");
}

TEST(ChooseFolder, ChoosesAndReportsTheStandardizedPath) {
  FolderWorld world("english-service-window");
  const std::string clean = world.target;
  world.target = world.start + "/./nothing/../target//";
  EXPECT_EQ(world.chooseStrictly(), (Outcome{0, strictResultText(clean, servicePid), ""}));
  EXPECT_EQ(world.world.panelOutcomes(), "chosen " + clean);
}

TEST(ChooseFolder, TriesNothingElseInStrictMode) {
  const World::Patches refusing{{"/panels/0/faults/pressRefused", -25204}};
  for (const std::vector<std::string>& options :
       {std::vector<std::string>{}, {"--prefer-background-panel"}}) {
    FolderWorld world("english-service-window", refusing);
    EXPECT_EQ(world.chooseStrictly(options),
              (Outcome{1, "", strictFailure("AX action AXPress failed: -25204") + "\n"}));
    EXPECT_EQ(disturbance(world.world.record()), noDisturbance);
  }
}

TEST(ChooseFolder, PrefersTheStrictStrategyToThePreferredPanel) {
  FolderWorld world("english-service-window");
  EXPECT_EQ(world.chooseStrictly({"--prefer-background-panel"}),
            (Outcome{0, strictResultText(world.target, servicePid), ""}));
}

TEST(ChooseFolder, DropsTheStrictStrategyWithTemporaryForeground) {
  FolderWorld world("english-service-window", {{"/panels/0/faults/noConfirmButton", true}});
  const Outcome outcome = world.chooseStrictly({"--temporary-foreground"});
  EXPECT_THAT(outcome.output + outcome.errors, Not(HasSubstr("strict")));
  EXPECT_NE(disturbance(world.world.record()), noDisturbance);
}

}  // namespace
}  // namespace tessarine::test
