#include "panels/candidates.h"

#include <optional>

#include "core/numbers.h"
#include "core/text.h"
#include "panels/capture.h"
#include "panels/panel_owners.h"
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

// Each once, the primary one left out.
std::vector<std::int32_t> othersThan(std::int32_t primaryPid,
                                     const std::vector<std::int32_t>& pids) {
  auto others = uniquePIDs(pids);
  std::erase(others, primaryPid);
  return others;
}

AppRef serviceApp(std::int32_t pid) {
  return {Element::application(pid), pid, panelServiceLabel};
}

}  // namespace

std::vector<std::int32_t> panelServicePIDs(std::int32_t primaryPid) {
  auto pids = listedServicePIDs(panelServiceName(browserDisplayName(primaryPid)));
  for (const auto& window : backgroundOpenPanelWindows(primaryPid)) pids.push_back(window.pid);
  return othersThan(primaryPid, pids);
}

std::vector<AppRef> candidateApps(std::int32_t primaryPid,
                                  const std::vector<std::int32_t>& additionalPIDs) {
  auto pids = panelServicePIDs(primaryPid);
  pids.insert(pids.end(), additionalPIDs.begin(), additionalPIDs.end());
  std::vector<AppRef> apps{{Element::application(primaryPid), primaryPid, primaryBrowserLabel}};
  for (const std::int32_t pid : othersThan(primaryPid, pids)) apps.push_back(serviceApp(pid));
  return apps;
}

std::vector<AppRef> panelServiceApps(std::int32_t primaryPid) {
  std::vector<AppRef> apps;
  for (const std::int32_t pid : panelServicePIDs(primaryPid)) apps.push_back(serviceApp(pid));
  return apps;
}

}  // namespace tessarine
