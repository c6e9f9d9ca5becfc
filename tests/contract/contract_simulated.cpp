// The contract on the simulated desktop.
#include <memory>

#include "contract/contract.h"
#include "support/world.h"

namespace tessarine::test {
namespace {

std::unique_ptr<BareDesktop>& platform() {
  static std::unique_ptr<BareDesktop> only;
  return only;
}

}  // namespace

void Contract::SetUp() {
  platform() = std::make_unique<BareDesktop>();
  platform()->addWindow("Contract");
}

void Contract::TearDown() {
  platform().reset();
}

pid_t ownProcess() {
  return browserPid;
}

}  // namespace tessarine::test
