// Which processes may own the Open panel: the browser itself and the panel-service processes that
// serve it. Nothing here fails, and nothing is cached: each call runs "/bin/ps" and the capture
// helper afresh. No process is checked for being alive.
#pragma once

#include <cstdint>
#include <vector>

#include "platform/element.h"

namespace tessarine {

// The browser's panel-service processes: those that "/bin/ps" lists, in its order, then the owners
// of captured panel windows; without the primary pid and without repeats.
std::vector<std::int32_t> panelServicePIDs(std::int32_t primaryPid);

// The browser first, labelled primaryBrowserLabel; then its panel services and the additional
// processes, labelled panelServiceLabel, without repeats and without pids below 1.
std::vector<AppRef> candidateApps(std::int32_t primaryPid,
                                  const std::vector<std::int32_t>& additionalPIDs = {});

// The panel services alone, with the same label.
std::vector<AppRef> panelServiceApps(std::int32_t primaryPid);

}  // namespace tessarine
