#include "simulator/desktop/process.h"

namespace simulator {

Process::Process(const ProcessOptions& options)
    : pid(options.pid),
      name(options.name),
      command(options.command),
      application(options.application),
      host(options.host),
      elements{options.pid, 0, {}},
      root(elements, "AXApplication") {
  root.set("AXTitle", name);
}

}  // namespace simulator
