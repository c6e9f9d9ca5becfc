// What the owners of panels are called: the browser, its panel service, and each in results.
// Nothing here fails.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace tessarine {

inline constexpr const char* primaryBrowserLabel = "primary-browser";
inline constexpr const char* panelServiceLabel = "open-save-panel-service";

// "Microsoft Edge" or "Google Chrome Dev" when the process's command line contains it, otherwise
// "Google Chrome", also for other browsers and for processes whose command line cannot be read.
// Runs "/bin/ps" afresh.
std::string browserDisplayName(std::int32_t primaryPid);

// "Open and Save Panel Service (" + the browser's display name + ")".
std::string panelServiceName(const std::string& browserName);

// Without repeats and without pids below 1, the first of each kept, in order.
std::vector<std::int32_t> uniquePIDs(const std::vector<std::int32_t>& pids);

}  // namespace tessarine
