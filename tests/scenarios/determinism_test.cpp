// The same scenario and the same command give the same record, to the byte.
#include <algorithm>

#include "simulator/scenario/scenario.h"
#include "support/temporary_folder.h"
#include "support/world.h"

namespace tessarine::test {
namespace {

class Determinism : public ::testing::TestWithParam<std::string> {
 protected:
  Determinism() {
    for (int i = 0; i < 20; ++i) files_.makeFile("start/file " + std::to_string(i));
    for (int i = 0; i < 20; ++i) files_.makeFolder("start/folder " + std::to_string(i));
    target_ = files_.makeFolder("start/target/inner");
  }

  // What happened, and what the program said.
  std::string everythingOf(const std::vector<std::string>& options) const {
    World world(GetParam(), overTheFolder());
    std::vector<std::string> arguments{"choose-folder", "--pid", std::to_string(browserPid),
                                       "--path", target_};
    arguments.insert(arguments.end(), options.begin(), options.end());
    const Outcome outcome = world.run(arguments);
    return world.record().toText() + std::to_string(outcome.exitStatus) + outcome.output +
           outcome.errors + world.panelOutcomes();
  }

 private:
  // Nobody else changes what the panels show.
  World::Patches overTheFolder() const {
    World::Patches patches{{"/home", files_.path()}, {"/listsOnly", {files_.path()}}};
    const auto document = simulator::bundledScenario(GetParam()).document;
    for (std::size_t i = 0; i < document.value("panels", nlohmann::ordered_json::array()).size();
         ++i) {
      patches.emplace_back("/panels/" + std::to_string(i) + "/folder", files_.path() + "/start");
    }
    return patches;
  }

  TemporaryFolder files_;
  std::string target_;
};

TEST_P(Determinism, TwoRunsAreTheSameToTheByte) {
  for (const std::vector<std::string>& options :
       {std::vector<std::string>{}, std::vector<std::string>{"--strict-background"}}) {
    const std::string first = everythingOf(options);
    EXPECT_NE(first.find("accessibility"), std::string::npos);
    // Without the texts, which are long.
    EXPECT_TRUE(everythingOf(options) == first);
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
