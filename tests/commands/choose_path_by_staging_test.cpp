#include "commands/choose_path_by_staging.h"

#include <gmock/gmock.h>
#include <sys/stat.h>

#include "commands/choose_path_deeds.h"
#include "commands/staging_world.h"
#include "simulator/seams/virtual/virtual_world.h"

namespace tessarine::test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::MatchesRegex;

constexpr Point nowhere{-1, -1};

// --- The staged copy. ---

double modificationDate(const std::string& path) {
  struct stat status {};
  EXPECT_EQ(stat(path.c_str(), &status), 0);
  return static_cast<double>(status.st_mtim.tv_sec) +
         static_cast<double>(status.st_mtim.tv_nsec) / 1e9;
}

TEST(StagedTmpCopy, IsNamedByAUuidAndTheFilesExtension) {
  const BareDesktop world;
  const std::string bare =
      "/tmp/zorvilet-upload-[0-9A-F]{8}-[0-9A-F]{4}-[0-9A-F]{4}-[0-9A-F]{4}-[0-9A-F]{12}";
  const std::vector<std::pair<std::string, std::string>> rows{
      {"notes.txt", "\\.txt"},   {"archive.tar.gz", "\\.gz"},
      {"PHOTO.JPEG", "\\.JPEG"}, {"README", ""},
      {".profile", ""},          {"trailing.", ""},
  };
  for (const auto& [name, extension] : rows) {
    const StagedFile file(name);
    const std::string staged = stagedTmpCopy(file.path());
    EXPECT_THAT(staged, MatchesRegex(bare + extension)) << name;
    EXPECT_THAT(file.copies(), ElementsAre(staged));
  }
}

TEST(StagedTmpCopy, IsAnotherOneEachTime) {
  const BareDesktop world;
  const StagedFile file;
  EXPECT_NE(stagedTmpCopy(file.path()), stagedTmpCopy(file.path()));
  EXPECT_EQ(file.copies().size(), 2U);
}

TEST(StagedTmpCopy, IsDatedAnHourAhead) {
  BareDesktop world;
  const StagedFile file;
  EXPECT_EQ(modificationDate(stagedTmpCopy(file.path())), simulator::epoch_seconds + 3600);
  world.desktop.advanceTo(2.5);
  EXPECT_EQ(modificationDate(stagedTmpCopy(file.path())), simulator::epoch_seconds + 3602.5);
}

TEST(StagedTmpCopy, RefusesWhatIsNoFile) {
  const BareDesktop world;
  EXPECT_EQ(messageOf([] { stagedTmpCopy("/usr/no such file"); }),
            "path does not exist: /usr/no such file");
  EXPECT_EQ(messageOf([] { stagedTmpCopy("/usr/lib"); }),
            "tmp staging mouse fallback only supports files: /usr/lib");
}

// --- Where the first row is. ---

TEST(FirstRowPoint, LiesAtAPartOfThePanelsExtentWithinBounds) {
  EXPECT_EQ(firstRowPoint({0, 0, 1000, 500}), (Point{360, 128}));
  EXPECT_EQ(firstRowPoint({0, 0, 2400, 1400}), (Point{520, 180}));
  EXPECT_EQ(firstRowPoint({0, 0, 1600, 1000}), (Point{416, 155}));
  EXPECT_EQ(firstRowPoint({-1500, 40, 300, 200}), (Point{-1140, 168}));
}

// --- The route. ---

nlohmann::ordered_json chooseByStaging(const StagedFile& file, double timeoutSeconds = 10) {
  return choosePathByTmpStagingMouse(browserPid, file.path(), timeoutSeconds, "no dialog");
}

TEST(ChoosePathByTmpStagingMouse, ClicksTheFirstRowAndTheOpenButton) {
  ClickedPanel panel({1052, 550}, 1);
  const StagedFile file;
  const auto result = chooseByStaging(file);
  EXPECT_EQ(result.dump(), rowAndButtonResult(file, 1052, "no dialog").dump());
  EXPECT_EQ(deedsAfterSearch(panel.desktop.record()), stagingClicks("900", 2));
  EXPECT_TRUE(transcript(panel.desktop.record()).front().starts_with("0.250 "));
}

TEST(ChoosePathByTmpStagingMouse, ClicksALittleFurtherLeftNext) {
  ClickedPanel panel({1034, 550}, 1);
  const StagedFile file;
  const auto result = chooseByStaging(file);
  EXPECT_EQ(result.dump(), rowAndButtonResult(file, 1034, "no dialog").dump());
  EXPECT_EQ(deedsAfterSearch(panel.desktop.record()), stagingClicks("900", 3));
}

TEST(ChoosePathByTmpStagingMouse, DoubleClicksTheFirstRowLast) {
  ClickedPanel panel({680, 308}, 2);
  const StagedFile file;
  const auto result = chooseByStaging(file);
  EXPECT_EQ(result.dump(), doubleClickResult(file, "no dialog").dump());
  EXPECT_EQ(deedsAfterSearch(panel.desktop.record()), stagingClicks("900", 5));
}

TEST(ChoosePathByTmpStagingMouse, FailsWithTheStagedPathWhenThePanelStays) {
  ClickedPanel panel(nowhere, 1);
  const StagedFile file;
  const std::string message = messageOf([&] { chooseByStaging(file); });
  EXPECT_EQ(message, "tmp staging mouse fallback did not close open panel; staged path: " +
                         file.copies().at(0));
  EXPECT_EQ(deedsAfterSearch(panel.desktop.record()), stagingClicks("900", 5));
}

// The times at which the mouse went down.
std::vector<double> clickTimes(const simulator::Record& record) {
  std::vector<double> times;
  for (const auto& line : record.lines()) {
    const auto* mouse = std::get_if<simulator::PostedMouse>(&line.entry);
    if (mouse != nullptr && mouse->event.type == 1) times.push_back(line.time);
  }
  return times;
}

// A look that begins in time takes 0.05 s, the pause after it 0.15 s.
TEST(ChoosePathByTmpStagingMouse, WaitsForTheCloseForAtMostThreeSeconds) {
  for (const auto& [timeout, wait] : {std::pair{10.0, 3.0}, {3.0, 3.0}, {1.0, 1.0}}) {
    ClickedPanel panel(nowhere, 1);
    const StagedFile file;
    messageOf([&, seconds = timeout] { chooseByStaging(file, seconds); });
    const auto times = clickTimes(panel.desktop.record());
    ASSERT_EQ(times.size(), 5U);
    for (const double waited :
         {times[2] - times[1], times[3] - times[2], panel.desktop.now() - times[4]}) {
      EXPECT_GE(waited, 0.05 + wait - 1e-6);
      EXPECT_LE(waited, 0.05 + wait + 0.2 + 1e-6);
    }
  }
}

TEST(ChoosePathByTmpStagingMouse, ClicksTheLargestPanelWindowInItsOwner) {
  ReportedDesktop world;
  world.desktop.setScreens({{0, 0, 1440, 900}});
  world.windows = windowLine("5", 900, chromeService, "Open", "0,0,400,300") +
                  windowLine("6", 812, "Google Chrome", "Open", "20,20,1400,800");
  const StagedFile file;
  messageOf([&] { chooseByStaging(file, 0.3); });
  const auto events = postedEventKinds(world.desktop.record());
  EXPECT_EQ(events.at(0), "mouse down 1 (384, 148) -> 812");
  EXPECT_EQ(events.at(2), "mouse down 1 (1352, 740) -> 812");
  EXPECT_EQ(events.at(4), "mouse down 1 (1334, 740) -> 812");
}

TEST(ChoosePathByTmpStagingMouse, WaitsForAPanelForAtMostTwoSeconds) {
  const StagedFile file;
  for (const auto& [timeout, message] :
       {std::pair{10.0, "timed out after 2.0s"}, {0.5, "timed out after 0.5s"}}) {
    const ReportedDesktop world;
    EXPECT_EQ(messageOf([&, seconds = timeout] { chooseByStaging(file, seconds); }), message);
    EXPECT_THAT(sleepLengths(world.desktop.record()), ElementsAre("0.15"));
  }
  EXPECT_THAT(file.copies(), IsEmpty());
}

TEST(ChoosePathByTmpStagingMouse, StagesNothingForAFolder) {
  ClickedPanel panel({1052, 550}, 1);
  EXPECT_EQ(messageOf([] { choosePathByTmpStagingMouse(browserPid, "/usr/lib", 10, "no dialog"); }),
            "tmp staging mouse fallback only supports files: /usr/lib");
  EXPECT_THAT(postedEventKinds(panel.desktop.record()), IsEmpty());
}

TEST(ChoosePathByTmpStagingMouse, FailsWhenThePanelGoesWhileTheFileIsStaged) {
  ClickedPanel panel({1052, 550}, 1);
  const StagedFile file;
  panel.desktop.schedule(0.2, [&panel] { panel.windows.clear(); });
  EXPECT_EQ(messageOf([&] { chooseByStaging(file); }),
            "background open panel window not found after staging tmp file");
  EXPECT_THAT(postedEventKinds(panel.desktop.record()), IsEmpty());
  EXPECT_EQ(file.copies().size(), 1U);
}

}  // namespace
}  // namespace tessarine::test
