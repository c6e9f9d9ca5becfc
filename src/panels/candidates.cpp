#include "panels/candidates.h"

#include <algorithm>
#include <optional>

#include "core/numbers.h"
#include "core/text.h"
#include "panels/capture.h"
#include "platform/processes.h"

namespace tessarine {
namespace {

// The pid that a line of "/bin/ps -axo pid=,command=" begins with.
std::optional<std::int32_t> leadingPid(const std::string& line) {
  const auto pieces = splitDroppingEmpty(trimmed(line), ' ');
  if (pieces.empty()) return {};
  return parseInt32(pieces.front());
}

std::vector<std::int32_t> listedServicePIDs(const std::string& serviceName) {
  std::vector<std::int32_t> pids;
  for (const auto& line :
       splitDroppingEmpty(commandOutput(psPath, {"-axo", "pid=,command="}), '\n')) {
    if (!contains(line, serviceName)) continue;
    if (const auto pid = leadingPid(line)) pids.push_back(*pid);
  }
  return pids;
}

AppRef serviceApp(std::int32_t pid) {
  return {Element::application(pid), pid, panelServiceLabel};
}

}  // namespace

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

std::vector<std::int32_t> panelServicePIDs(std::int32_t primaryPid) {
  auto pids = listedServicePIDs(panelServiceName(browserDisplayName(primaryPid)));
  for (const auto& window : backgroundOpenPanelWindows(primaryPid)) pids.push_back(window.pid);
  pids = uniquePIDs(pids);
  std::erase(pids, primaryPid);
  return pids;
}

bool hasPID(const std::vector<std::int32_t>& pids, std::int32_t pid) {
  return std::find(pids.begin(), pids.end(), pid) != pids.end();
}

std::vector<std::int32_t> uniquePIDs(const std::vector<std::int32_t>& pids) {
  std::vector<std::int32_t> unique;
  for (const std::int32_t pid : pids) {
    if (pid > 0 && !hasPID(unique, pid)) unique.push_back(pid);
  }
  return unique;
}

std::vector<AppRef> candidateApps(std::int32_t primaryPid,
                                  const std::vector<std::int32_t>& additionalPIDs) {
  auto pids = panelServicePIDs(primaryPid);
  pids.insert(pids.end(), additionalPIDs.begin(), additionalPIDs.end());
  pids = uniquePIDs(pids);
  std::erase(pids, primaryPid);

  std::vector<AppRef> apps{{Element::application(primaryPid), primaryPid, primaryBrowserLabel}};
  for (const std::int32_t pid : pids) apps.push_back(serviceApp(pid));
  return apps;
}

std::vector<AppRef> panelServiceApps(std::int32_t primaryPid) {
  std::vector<AppRef> apps;
  for (const std::int32_t pid : panelServicePIDs(primaryPid)) apps.push_back(serviceApp(pid));
  return apps;
}

}  // namespace tessarine
