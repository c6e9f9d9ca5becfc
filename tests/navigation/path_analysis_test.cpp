// What a path says about volumes and components, and how folders are named.
#include "navigation/path_analysis.h"

#include <filesystem>

#include "core/tables.h"
#include "simulator/programs/programs.h"
#include "support/world.h"

namespace tessarine::test {
namespace {

using Texts = std::vector<std::string>;

// "/Volumes/Data: a b"
std::string analysed(const std::string& path) {
  const VolumePath analysis = volumeRootAndComponents(path);
  std::string text = analysis.volumeRoot + ":";
  for (const auto& component : analysis.components) text += " " + component;
  return text;
}

// A desktop whose osascript answers as a test wrote down and notes what it was asked.
class Scripted : public BareDesktop {
 public:
  explicit Scripted(std::string answer = "", int status = 0, double seconds = 0.12) {
    desktop.installProgram("/usr/bin/osascript", [=, this](simulator::ProgramRun& run) {
      asked.push_back(run.arguments());
      run.after(seconds, [=, &run] {
        run.print(answer);
        run.complain("execution error\n");
        run.end(status);
      });
    });
  }

  std::vector<Texts> asked;
};

TEST(PathAnalysis, SplitsOffTheVolume) {
  EXPECT_EQ(analysed("/Volumes/Data/a/b"), "/Volumes/Data: a b");
  EXPECT_EQ(analysed("/Volumes/Data"), "/Volumes/Data:");
  EXPECT_EQ(analysed("/Volumes/My Disk/a b"), "/Volumes/My Disk: a b");
}

TEST(PathAnalysis, TakesEverythingElseForTheBootVolume) {
  EXPECT_EQ(analysed("/Volumes"), "/: Volumes");
  EXPECT_EQ(analysed("/Users/x"), "/: Users x");
  EXPECT_EQ(analysed("/volumes/Data/a"), "/: volumes Data a");
  EXPECT_EQ(analysed("/x/Volumes/Data"), "/: x Volumes Data");
  EXPECT_EQ(analysed("/"), "/:");
}

TEST(PathAnalysis, StandardizesThePathFirst) {
  EXPECT_EQ(analysed("/Volumes/Data/"), "/Volumes/Data:");
  EXPECT_EQ(analysed("/Volumes/Data/."), "/Volumes/Data:");
  EXPECT_EQ(analysed("/Volumes/./Data/a/../b//c/"), "/Volumes/Data: b c");
  EXPECT_EQ(analysed("/Volumes/Data/.."), "/: Volumes");
  EXPECT_EQ(analysed("a/../b"), analysed(std::filesystem::current_path().string() + "/b"));
}

TEST(PathAnalysis, NamesTheComponentsBelowAFolder) {
  EXPECT_EQ(relativeComponents("/Volumes/Data", "/Volumes/Data/a/b"), (Texts{"a", "b"}));
  EXPECT_EQ(relativeComponents("/", "/Users/x"), (Texts{"Users", "x"}));
  EXPECT_EQ(relativeComponents("/Users/./x/", "/Users/x/y/../z/"), Texts{"z"});
}

TEST(PathAnalysis, NoComponentsLeadToTheFolderItselfOrToOneThatIsNotBelow) {
  EXPECT_EQ(relativeComponents("/Users/x", "/Users/x/"), Texts());
  EXPECT_EQ(relativeComponents("/Users/x", "/Volumes/Data/a"), Texts());
  EXPECT_EQ(relativeComponents("/Users/x", "/Users"), Texts());
  EXPECT_EQ(relativeComponents("/Users/x", "/Users/xy/z"), Texts());
  EXPECT_EQ(relativeComponents("/Users/x", "/Users/X/z"), Texts());
}

// --- Display names. ---

TEST(DisplayName, AsksTheFinderWithOneScript) {
  Scripted world("Bibliothek\n");
  EXPECT_EQ(displayName("/Users/me/./lib/"), "Bibliothek");
  EXPECT_EQ(world.asked,
            std::vector<Texts>({{"-e",
                                 "tell application \"Finder\" to get displayed name of (POSIX file "
                                 "\"/Users/me/lib\" as alias)"}}));
}

TEST(DisplayName, EscapesBackslashesAndQuotesInThePath) {
  Scripted world("x");
  displayName("/a\"b\\c\\\"d");
  EXPECT_EQ(world.asked,
            std::vector<Texts>({{"-e",
                                 "tell application \"Finder\" to get displayed name of (POSIX file "
                                 "\"/a\\\"b\\\\c\\\\\\\"d\" as alias)"}}));
}

TEST(DisplayName, AnAwkwardPathLeavesTheScriptWellFormed) {
  TemporaryFolder folder;
  const std::string path = folder.makeFolder("a \"b\" \\c");
  BareDesktop world;
  simulator::installPrograms(world.desktop);
  EXPECT_EQ(displayName(path), "a \"b\" \\c");
  const auto& lines = world.desktop.record().lines();
  const auto* ended = std::get_if<simulator::ProgramEnded>(&lines.back().entry);
  ASSERT_NE(ended, nullptr);
  EXPECT_EQ(ended->status, 0);
}

TEST(DisplayName, TrimsTheAnswer) {
  Scripted world(" \t\n 文稿 und mehr\u00A0\r\n");
  EXPECT_EQ(displayName("/Users/me/Documents"), "文稿 und mehr");
}

TEST(DisplayName, WaitsForTheScriptHoweverLongItTakes) {
  Scripted world("late", 0, 3600);
  EXPECT_EQ(displayName("/a"), "late");
  EXPECT_NEAR(world.now(), 3600, 1e-6);
}

TEST(DisplayName, AsksOnceForEachStandardizedPath) {
  Scripted world("name");
  for (const char* path : {"/a/b", "/a/b/", "/a/./b", "/a/c/../b"}) {
    EXPECT_EQ(displayName(path), "name") << path;
  }
  EXPECT_EQ(world.asked.size(), 1U);
  displayName("/a");
  EXPECT_EQ(world.asked.size(), 2U);
  EXPECT_EQ(tables().localizedDisplayNameCache,
            (std::map<std::string, std::string>{{"/a/b", "name"}, {"/a", "name"}}));
}

TEST(DisplayName, TakesACachedNameWithoutAskingAnyone) {
  Scripted world("other");
  tables().localizedDisplayNameCache = {{"/a", "cached"}};
  EXPECT_EQ(displayName("/a/"), "cached");
  EXPECT_TRUE(world.desktop.record().lines().empty());
}

TEST(DisplayName, FallsBackOnTheFileManagersNameWhenTheAnswerCannotBeUsed) {
  for (const auto& [answer, status] : std::vector<std::pair<std::string, int>>{
           {"usable", 1}, {"", 0}, {" \n\t", 0}, {"a\xFF", 0}}) {
    Scripted world(answer, status);
    world.desktop.setLanguage(simulator::Language::simplifiedChinese);
    EXPECT_EQ(displayName("/Users/me/Documents/"), "文稿") << answer;
    EXPECT_EQ(displayName("/Users/me/Documents"), "文稿") << answer;
    EXPECT_EQ(world.asked.size(), 1U) << "the fallback is remembered as well";
  }
}

TEST(DisplayName, FallsBackWhenTheScriptDoesNotStart) {
  BareDesktop world;
  EXPECT_EQ(displayName("/x/notes"), "notes");
  EXPECT_EQ(tables().localizedDisplayNameCache,
            (std::map<std::string, std::string>{{"/x/notes", "notes"}}));
}

TEST(DisplayName, FallsBackForAPathThatDoesNotExist) {
  BareDesktop world;
  simulator::installPrograms(world.desktop);
  EXPECT_EQ(displayName("/no such folder/notes"), "notes");
}

TEST(DisplayName, AsksTheFileManagerBeforeTheFinder) {
  Scripted world("name");
  displayName("/a/");
  const auto& lines = world.desktop.record().lines();
  ASSERT_EQ(lines.size(), 3U);
  const auto* question = std::get_if<simulator::WorkspaceRequest>(&lines[0].entry);
  ASSERT_NE(question, nullptr);
  EXPECT_EQ(question->question, "display name /a");
  EXPECT_TRUE(std::holds_alternative<simulator::ProgramStarted>(lines[1].entry));
  EXPECT_TRUE(std::holds_alternative<simulator::ProgramEnded>(lines[2].entry));
}

}  // namespace
}  // namespace tessarine::test
