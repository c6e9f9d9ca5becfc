// A scenario made from what the tool printed is like the desktop on which it was printed.
#include <gtest/gtest.h>

#include <algorithm>
#include <map>

#include "simulator/scenario/scenario.h"
#include "support/temporary_folder.h"
#include "tests/simulator/printouts.h"

namespace tessarine::test {
namespace {

// What comes of a strict choice: the tool's own account, and the panels'.
std::string choice(const std::string& scenario, const World::Patches& patches,
                   const std::string& path) {
  World world(scenario, patches);
  const Outcome outcome =
      world.run({"choose-folder", "--strict-background", "--pid", "812", "--path", path});
  return ::testing::PrintToString(outcome) + world.panelOutcomes();
}

// --- There and back: the scenarios that come with the desktop. ---

const std::string noPanel = "a panel, as there is no dialog";

// In these the tool finds no dialog.
const std::map<std::string, Lines> withoutDialog{
    {"english-host-sheet", {noPanel, "the window at /apps/0/windows/1"}},
    {"german-service-window", {noPanel, "the window at /apps/1/windows/0"}},
    {"late-panel", {noPanel}},
    {"no-panel", {noPanel}},
    {"slow-panel", {noPanel}},
    {"unseen-folders", {noPanel}},
    {"unseen-tmp-host-chinese", {noPanel}},
    {"unseen-tmp-service-chinese", {noPanel}}};

// All that is left out of the others.
const std::map<std::string, Lines> omissions{{"edge-chinese", {guess("folders")}},
                                             {"file-panel-chinese", {guess("files")}},
                                             {"file-panel-english", {guess("files")}},
                                             {"tmp-files-chinese", {guess("files")}},
                                             {"two-panels", {"the window at /apps/1/windows/1"}}};

// Scenarios whose peculiarity no printout shows.
const std::map<std::string, std::string> otherwiseChosen{
    {"chinese-old-generation", "the kind of a go-to sheet that is not open"},
    {"half-off-screen-panel", "where the screens end"},
    {"keys-reach-host", "which process takes the keys"},
    {"off-screen-panel", "where the screens end"},
    {"two-panels", "the panel behind"}};

// A printout names the entries of the folder shown and not the folder, which becomes the usual one.
const std::map<std::string, World::Patches> usualFolder{
    {"tmp-files-chinese", {{"/panels/0/folder", "/usr"}, {"/panels/0/sort", "name"}}},
    {"two-panels", {{"/panels/1/folder", "/usr"}}}};

template <class Value>
Value valueFor(const std::string& name, const std::map<std::string, Value>& values) {
  const auto found = values.find(name);
  return found == values.end() ? Value() : found->second;
}

std::vector<std::string> withDialog() {
  auto names = simulator::bundledScenarioNames();
  std::erase_if(names, [](const auto& name) { return withoutDialog.contains(name); });
  return names;
}

TEST(Import, NoDialogMakesAScenarioWithoutPanels) {
  for (const auto& [name, lines] : withoutDialog) {
    const ImportedScenario imported = printed(name).imported();
    EXPECT_EQ(imported.document["panels"], Json::array()) << name;
    EXPECT_EQ(imported.omissions, lines) << name;
    EXPECT_EQ(printed(imported).allDialogs(), Json::array()) << name;
  }
}

class RoundTrip : public ::testing::TestWithParam<std::string> {};

TEST_P(RoundTrip, KeepsEveryNodeOfTheDialogsAndTheBrowsersWindows) {
  const Printed before = printed(GetParam(), valueFor(GetParam(), usualFolder));
  const ImportedScenario imported = before.imported();
  const Printed after = printed(imported);
  EXPECT_NE(before.allDialogs(), Json::array());
  EXPECT_EQ(after.allDialogs(), before.allDialogs());
  EXPECT_EQ(after.browsersWindows(), before.browsersWindows());
  EXPECT_EQ(imported.omissions, valueFor(GetParam(), omissions));
}

TEST_P(RoundTrip, KeepsWhatComesOfAChoice) {
  const TemporaryFolder folder;
  const Printed before = printed(GetParam());
  const Json redacted = importScenario(before.dialogs, before.windows, false).document;
  const bool same =
      choice("no-panel", {{"", redacted}}, folder.path()) == choice(GetParam(), {}, folder.path());
  EXPECT_EQ(same, !otherwiseChosen.contains(GetParam()));
}

INSTANTIATE_TEST_SUITE_P(Bundled, RoundTrip, ::testing::ValuesIn(withDialog()), [](auto& instance) {
  std::string name = instance.param;
  std::replace(name.begin(), name.end(), '-', '_');
  return name;
});

// --- There and back: one peculiarity each. ---

struct Variant {
  const char* scenario;
  World::Patches patches;
  Lines omissions;
};

const Json layout{{"confirmButton", {{"x", 10}, {"y", 380}, {"width", 90}, {"height", 30}}},
                  {"list", {{"x", 200}, {"y", 60}, {"width", 300}, {"height", 200}}}};
const Json openSheet{{"openAtStart", true}};
const Json openComboBox{{"openAtStart", true}, {"generation", "old"}, {"comboBox", true}};
const Json openWithoutConfirm{{"openAtStart", true}, {"withoutConfirm", true}};
const Json twoWindows = Json::parse(R"([
    {"title": "Front", "frame": {"x": 900, "y": 0, "width": 500, "height": 400}},
    {"title": "Back", "frame": {"x": 0, "y": 0, "width": 1200, "height": 800}}])");

const std::vector<Variant> variants{
    {"english-service-window", {{"/panels/0/layout", layout}}, {}},
    {"chinese-host-sheet", {{"/panels/0/layout", layout}}, {}},
    {"english-host-window", {{"/panels/0/modal", false}}, {}},
    {"english-host-window", {{"/panels/0/title", "Pick one"}}, {}},
    {"chinese-service-window", {{"/panels/0/title", ""}}, {}},
    {"chinese-host-sheet", {{"/panels/0/title", "Pick one"}}, {}},
    {"chinese-host-sheet", {{"/panels/0/message", "Pick one"}}, {}},
    {"english-service-window", {{"/panels/0/message", "Pick one"}}, {}},
    {"english-service-window", {{"/panels/0/prompt", "Pick"}}, {guess("folders")}},
    {"english-service-window", {{"/panels/0/faults/noCancelButton", true}}, {}},
    {"english-service-window", {{"/panels/0/faults/noConfirmButton", true}}, {guess("folders")}},
    {"german-service-window", {{"/panels/0/title", "Open"}}, {}},
    {"german-service-window", {{"/panels/0/title", "Open"}, {"/panels/0/prompt", "Choose"}}, {}},
    {"english-host-sheet", {{"/panels/0/prompt", "Choose"}}, {}},
    {"english-host-sheet", {{"/panels/0/prompt", "Choose"}, {"/panels/0/goTo", openSheet}}, {}},
    {"chinese-host-sheet", {{"/panels/0/goTo", openSheet}}, {}},
    {"chinese-embedded", {{"/panels/0/goTo", openSheet}}, {}},
    {"chinese-embedded", {{"/panels/0/message", ""}}, {}},
    {"chinese-embedded", {{"/language", "en"}, {"/panels/0/prompt", "Choose"}}, {}},
    {"chinese-service-window", {{"/panels/0/goTo", openComboBox}}, {}},
    {"english-service-window", {{"/panels/0/goTo", openWithoutConfirm}}, {}},
    {"edge-chinese", {{"/processes/2/windows", twoWindows}}, {guess("folders")}},
};

TEST(Import, KeepsEveryNodeOfAPeculiarPanel) {
  for (const auto& [scenario, patches, lines] : variants) {
    SCOPED_TRACE(scenario + Json(patches).dump());
    const Printed before = printed(scenario, patches);
    const ImportedScenario imported = before.imported();
    const Printed after = printed(imported);
    EXPECT_NE(before.allDialogs(), Json::array());
    EXPECT_EQ(after.allDialogs(), before.allDialogs());
    EXPECT_EQ(after.browsersWindows(), before.browsersWindows());
    EXPECT_EQ(imported.omissions, lines);
  }
}

TEST(Import, WithoutItsWindowsTheBrowserHasOne) {
  for (const char* scenario : {"chinese-embedded", "chinese-host-sheet", "chinese-host-window"}) {
    const Printed before = printed(scenario);
    const auto imported = importScenario(before.dialogs, std::nullopt, true);
    EXPECT_EQ(printed(imported).allDialogs(), before.allDialogs()) << scenario;
    EXPECT_EQ(imported.document["processes"][2]["windows"].size(), 1U) << scenario;
  }
}

}  // namespace
}  // namespace tessarine::test
