#include "simulator/desktop/process.h"

namespace simulator {

Process::Process(const ProcessOptions& options)
    : pid(options.pid),
      name(options.name),
      command(options.command),
      application(options.application),
      host(options.host),
      on_other_space(options.onOtherSpace),
      elements{options.pid, 0, {}},
      root(elements, "AXApplication") {
  root.set("AXTitle", name);
}

}  // namespace simulator
