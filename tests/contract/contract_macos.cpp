// The contract on a Mac.
#include <unistd.h>

#include "contract/contract.h"

namespace tessarine::test {

void Contract::SetUp() {}

void Contract::TearDown() {}

pid_t ownProcess() {
  return getpid();
}

}  // namespace tessarine::test
