// The tool prints the same dialogs on a scenario made from what it printed.
#include <gtest/gtest.h>

#include <algorithm>
#include <map>

#include "simulator/scenario/scenario.h"
#include "support/temporary_folder.h"
#include "tests/simulator/printouts.h"

namespace tessarine::test {
namespace {

// --- There and back: the scenarios that come with the desktop. ---

// All that is left out of those in which the tool finds a dialog.
const std::map<std::string, Lines> omissions{{"two-panels", {"the window at /apps/1/windows/1"}}};

// What may be a path, in these scenarios: the page's address, and what was typed before.
std::string withoutPaths(std::string text) {
  for (const auto& [path, placeholder] :
       {std::pair("chrome://extensions", "name-1"), std::pair("/usr/share", "/name-1")}) {
    for (std::size_t at = 0; (at = text.find(path)) != std::string::npos;) {
      text.replace(at, std::string(path).size(), placeholder);
    }
  }
  return text;
}

void expectTheSameAgain(const Printed& before, const Lines& omitted) {
  const ImportedScenario imported = before.imported();
  const Printed after = printed(imported);
  EXPECT_NE(before.allDialogs(), Json::array());
  EXPECT_EQ(after.dialogs.text, withoutPaths(before.dialogs.text));
  EXPECT_EQ(after.browsersWindows(), before.browsersWindows());
  EXPECT_EQ(imported.omissions, omitted);
}

void expectNoPanel(const Printed& before) {
  const ImportedScenario imported = before.imported();
  EXPECT_EQ(imported.document["panels"], Json::array());
  EXPECT_EQ(imported.omissions.front(), "a panel, as there is no dialog");
  EXPECT_EQ(printed(imported).dialogs.text, before.dialogs.text);
}

class RoundTrip : public ::testing::TestWithParam<std::string> {};

TEST_P(RoundTrip, PrintsTheSameDialogsToTheByte) {
  const Printed before = printed(GetParam(), namesAlone(GetParam()));
  if (before.allDialogs().empty()) return expectNoPanel(before);
  const auto omitted = omissions.find(GetParam());
  expectTheSameAgain(before, omitted != omissions.end() ? omitted->second : Lines{});
}

// All but one: a browser that answers nobody cannot be printed whole.
std::vector<std::string> answeringScenarios() {
  std::vector<std::string> names = simulator::bundledScenarioNames();
  std::erase(names, "busy-browser");
  return names;
}

INSTANTIATE_TEST_SUITE_P(Bundled, RoundTrip, ::testing::ValuesIn(answeringScenarios()),
                         [](auto& instance) {
                           std::string name = instance.param;
                           std::replace(name.begin(), name.end(), '-', '_');
                           return name;
                         });

// --- There and back: one peculiarity each. ---

const Json layout{{"confirmButton", {{"x", 10}, {"y", 380}, {"width", 90}, {"height", 30}}},
                  {"list", {{"x", 200}, {"y", 60}, {"width", 300}, {"height", 200}}}};
const Json openSheet{{"openAtStart", true}};
const Json openComboBox{{"openAtStart", true}, {"generation", "old"}, {"comboBox", true}};
const Json places = Json::parse(R"([{"label": "Programs", "path": "/usr"}])");
const Json twoWindows = Json::parse(R"([
    {"title": "Front", "frame": {"x": 900, "y": 0, "width": 500, "height": 400}},
    {"title": "Back", "frame": {"x": 0, "y": 0, "width": 1200, "height": 800}}])");
const Json largePage = Json::parse(R"([{"title": "Page", "webElements": 300}])");

const std::vector<std::pair<std::string, World::Patches>> variants{
    {"english-service-window", {{"/panels/0/layout", layout}}},
    {"english-service-window", {{"/panels/0/prompt", "Pick"}, {"/panels/0/message", "Pick one"}}},
    {"english-service-window", {{"/panels/0/faults/noConfirmButton", true}}},
    {"english-service-window", {{"/places", places}}},
    {"english-host-window", {{"/panels/0/modal", false}}},
    {"english-host-window", {{"/panels/0/title", "Pick one"}}},
    {"english-host-window", {{"/panels/0/goTo", openSheet}}},
    {"english-host-sheet", {{"/panels/0/prompt", "Choose"}, {"/panels/0/goTo", openSheet}}},
    {"chinese-service-window", {{"/panels/0/goTo", openComboBox}}},
    {"chinese-host-sheet", {{"/panels/0/view", "columns"}}},
    {"chinese-host-sheet", {{"/panels/0/view", "icons"}}},
    {"chinese-host-sheet", {{"/panels/0/inBothTrees", true}}},
    {"chinese-host-sheet", {{"/panels/0/goTo", openSheet}}},
    {"chinese-host-sheet", {{"/panels/0/title", "Pick one"}}},
    {"chinese-embedded", {{"/panels/0/goTo", openSheet}}},
    {"edge-chinese", {{"/panels/0/shape", "embedded"}, {"/processes/2/windows", largePage}}},
    {"edge-chinese", {{"/processes/2/windows", twoWindows}}},
    {"german-service-window", {{"/panels/0/title", "Open"}}},
};

TEST(Import, PeculiarPanelsArePrintedTheSameToTheByte) {
  for (const auto& [scenario, patches] : variants) {
    SCOPED_TRACE(scenario + Json(patches).dump());
    World::Patches all = namesAlone(scenario);
    all.insert(all.end(), patches.begin(), patches.end());
    expectTheSameAgain(printed(scenario, all), {});
  }
}

TEST(Import, OfALongListWhatWasPrintedIsThere) {
  const TemporaryFolder folder;
  for (int i = 0; i < 200; ++i) folder.makeFile("file " + std::to_string(i), "");
  World::Patches patches = namesAlone("english-host-window");
  patches.emplace_back("/panels/0/folder", folder.path());
  expectTheSameAgain(printed("english-host-window", patches),
                     {"what /dialogs/0 holds beyond the 700 nodes listed"});
}

TEST(Import, WithoutItsWindowsTheBrowserHasOne) {
  const std::map<std::string, std::size_t> others{
      {"chinese-embedded", 0}, {"chinese-host-sheet", 1}, {"chinese-service-window", 1}};
  for (const auto& [scenario, count] : others) {
    const Printed before = printed(scenario, namesAlone(scenario));
    const auto imported = importScenario(before.dialogs, std::nullopt, true);
    const Printed after = printed(imported);
    EXPECT_EQ(after.dialogs.text, withoutPaths(before.dialogs.text)) << scenario;
    EXPECT_EQ(imported.document["processes"][2]["windows"].size(), count) << scenario;
  }
}

}  // namespace
}  // namespace tessarine::test
