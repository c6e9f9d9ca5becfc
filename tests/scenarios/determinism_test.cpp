// The same scenario and the same command give the same record, to the byte.
#include <algorithm>

#include "simulator/scenario/scenario.h"
#include "support/world.h"

namespace tessarine::test {
namespace {

class Determinism : public ::testing::TestWithParam<std::string> {};

// Panels show the machine's real directories, and none may change between two runs: a panel over
// the temporary folder shows another one instead.
World::Patches withoutChangingFolders(const std::string& scenario) {
  const char* folder = "/panels/0/folder";
  const auto document = simulator::bundledScenario(scenario).document;
  const nlohmann::ordered_json::json_pointer place(folder);
  if (document.value(place, "") != "/tmp") return {};
  return {{folder, "/usr/share"}};
}

// What happened, and what the program said.
std::string everythingOf(const std::string& scenario, const std::vector<std::string>& arguments) {
  World world(scenario, withoutChangingFolders(scenario));
  const Outcome outcome = world.run(arguments);
  return world.record().toText() + std::to_string(outcome.exitStatus) + outcome.output +
         outcome.errors + world.panelOutcomes();
}

TEST_P(Determinism, TwoRunsAreTheSameToTheByte) {
  const std::vector<std::string> choose{"choose-folder", "--pid", std::to_string(browserPid),
                                        "--path", "/usr/lib"};
  std::vector<std::string> chooseStrictly = choose;
  chooseStrictly.push_back("--strict-background");
  for (const auto& arguments : {choose, chooseStrictly}) {
    const std::string first = everythingOf(GetParam(), arguments);
    EXPECT_NE(first.find("accessibility"), std::string::npos);
    // Without the texts, which are long.
    EXPECT_TRUE(everythingOf(GetParam(), arguments) == first);
  }
}

INSTANTIATE_TEST_SUITE_P(AllScenarios, Determinism,
                         ::testing::ValuesIn(simulator::bundledScenarioNames()),
                         [](const auto& instance) {
                           std::string name = instance.param;
                           std::replace(name.begin(), name.end(), '-', '_');
                           return name;
                         });

}  // namespace
}  // namespace tessarine::test
