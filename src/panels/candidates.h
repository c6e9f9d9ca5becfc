// Which processes may own the Open panel: the browser itself and the panel-service processes that
// serve it. Nothing here fails, and nothing is cached: every browserDisplayName runs "/bin/ps"
// afresh; every panelServicePIDs, candidateApps and panelServiceApps runs it and the capture
// helper. No process is checked for being alive.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "platform/element.h"

namespace tessarine {

inline constexpr const char* primaryBrowserLabel = "primary-browser";
inline constexpr const char* panelServiceLabel = "open-save-panel-service";

// "Microsoft Edge" or "Google Chrome Dev" when the process's command line contains it, otherwise
// "Google Chrome", also for other browsers and for processes whose command line cannot be read.
std::string browserDisplayName(std::int32_t primaryPid);

// "Open and Save Panel Service (" + the browser's display name + ")".
std::string panelServiceName(const std::string& browserName);

// The browser's panel-service processes: those that "/bin/ps" lists, in its order, then the owners
// of captured panel windows; without the primary pid and without repeats.
std::vector<std::int32_t> panelServicePIDs(std::int32_t primaryPid);

bool hasPID(const std::vector<std::int32_t>& pids, std::int32_t pid);

// Without repeats and without pids below 1, the first of each kept, in order.
std::vector<std::int32_t> uniquePIDs(const std::vector<std::int32_t>& pids);

// The browser first, labelled primaryBrowserLabel; then its panel services and the additional
// processes, labelled panelServiceLabel, without repeats and without pids below 1.
std::vector<AppRef> candidateApps(std::int32_t primaryPid,
                                  const std::vector<std::int32_t>& additionalPIDs = {});

// The panel services alone, with the same label.
std::vector<AppRef> panelServiceApps(std::int32_t primaryPid);

}  // namespace tessarine
