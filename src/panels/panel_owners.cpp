#include "panels/panel_owners.h"

#include "core/lists.h"
#include "core/text.h"
#include "platform/processes.h"

namespace tessarine {

std::string browserDisplayName(std::int32_t primaryPid) {
  const std::string command = processCommand(primaryPid);
  for (const char* name : {"Microsoft Edge", "Google Chrome Dev"}) {
    if (contains(command, name)) return name;
  }
  return "Google Chrome";
}

std::string panelServiceName(const std::string& browserName) {
  return "Open and Save Panel Service (" + browserName + ")";
}

std::vector<std::int32_t> uniquePIDs(const std::vector<std::int32_t>& pids) {
  std::vector<std::int32_t> unique;
  for (const std::int32_t pid : pids) {
    if (pid > 0 && !isAmong(unique, pid)) unique.push_back(pid);
  }
  return unique;
}

}  // namespace tessarine
