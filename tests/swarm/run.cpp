#include "swarm/run.h"

#include "simulator/frameworks/ledger.h"
#include "swarm/rules.h"

namespace tessarine::test {

RunReport runWorld(const DrawnWorld& drawn, bool verify, bool withRecord) {
  RunReport report;
  World world(simulator::scenarioFromJson(drawn.scenario, "swarm"));
  const auto before = world.desktop().frontmost();
  report.outcome = world.run(drawn.arguments);
  report.seconds = world.desktop().now();
  const auto after = world.desktop().frontmost();
  const long references = simulator::ledger::liveReferences();
  if (references != 0)
    report.broken.push_back("no reference is left: " + simulator::ledger::describeLive());
  report.verdict = world.verdict();
  const FinishedRun run{drawn,          world,  report.outcome, report.verdict,
                        report.seconds, before, after};
  const auto add = [&](const std::vector<std::string>& rules) {
    report.broken.insert(report.broken.end(), rules.begin(), rules.end());
  };
  add(brokenRules(run));
  if (verify) add(brokenPromises(run));
  if (withRecord) report.record = world.record().toText();
  return report;
}

}  // namespace tessarine::test
