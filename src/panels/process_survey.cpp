#include "panels/process_survey.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <set>
#include <string_view>

#include "core/lists.h"
#include "core/numbers.h"
#include "core/text.h"
#include "panels/capture.h"
#include "panels/panel_owners.h"
#include "platform/processes.h"
#include "platform/screens.h"
#include "platform/workspace.h"

namespace tessarine {
namespace {

constexpr std::string_view serviceExecutable = "com.apple.appkit.xpc.openAndSavePanelService";
constexpr std::string_view serviceDisplayName = "Open and Save Panel Service";
constexpr std::string_view bundleExecutables = ".app/Contents/MacOS/";
constexpr double shadowPoints = 40;
// As their bundles' names begin.
constexpr std::array<std::string_view, 9> browserNames{
    "Google Chrome", "Chromium", "Microsoft Edge", "Brave Browser", "Vivaldi",
    "Opera",         "Arc",      "Firefox",        "Safari"};

using Windows = std::vector<PanelWindowRef>;

// A line of "/bin/ps -axo pid=,command=".
std::optional<ListedProcess> parseProcess(const std::string& line) {
  const std::string text = trimmed(line);
  const std::string::size_type blank = text.find(' ');
  if (blank == std::string::npos) return {};
  const auto pid = parseInt32(text.substr(0, blank));
  if (!pid) return {};
  return ListedProcess{*pid, trimmed(text.substr(blank))};
}

const Windows& windowsOf(const ProcessSurvey& survey) {
  static const Windows none;
  return survey.windows ? *survey.windows : none;
}

bool namesService(std::string_view text) {
  return contains(text, serviceExecutable) || contains(text, serviceDisplayName);
}

// NAME in "Open and Save Panel Service (NAME)".
std::optional<std::string> servedName(const std::string& text) {
  const std::string opening = std::string(serviceDisplayName) + " (";
  const auto begin = text.find(opening);
  const auto end = text.rfind(')');
  if (begin == std::string::npos || end == std::string::npos) return {};
  const auto nameBegin = begin + opening.size();
  if (end <= nameBegin) return {};
  return text.substr(nameBegin, end - nameBegin);
}

// The application that a service is named for, as the window list or ps has it.
std::optional<std::string> servedApplication(const ProcessSurvey& survey, std::int32_t service) {
  for (const PanelWindowRef& window : windowsOf(survey)) {
    if (window.pid != service) continue;
    if (auto name = servedName(window.app)) return name;
  }
  for (const ListedProcess& process : survey.processes) {
    if (process.pid == service) return servedName(process.command);
  }
  return {};
}

// Every name that the process goes by.
std::set<std::string> namesOf(const ProcessSurvey& survey, std::int32_t pid) {
  std::set<std::string> names;
  for (const ListedProcess& process : survey.processes) {
    if (process.pid == pid) names.insert(bundleName(process.command));
  }
  for (const PanelWindowRef& window : windowsOf(survey)) {
    if (window.pid == pid) names.insert(window.app);
  }
  names.erase("");
  return names;
}

// Also a process that is called by the bare name, so that none is overlooked.
bool anotherHasName(const ProcessSurvey& survey, std::int32_t pid, const std::string& name) {
  const auto isCalled = [&](const ListedProcess& process) {
    const std::string& command = process.command;
    const bool bare = command == name || command.starts_with(name + " -");
    return process.pid != pid && (bare || bundleName(command) == name);
  };
  const auto ownsWindow = [&](const PanelWindowRef& window) {
    return window.pid != pid && window.app == name;
  };
  return std::ranges::any_of(survey.processes, isCalled) ||
         std::ranges::any_of(windowsOf(survey), ownsWindow);
}

bool isNamedForAnother(const ProcessSurvey& survey, std::int32_t primaryPid, std::int32_t service) {
  const auto served = servedApplication(survey, service);
  const auto names = namesOf(survey, primaryPid);
  return served && !names.empty() && !names.contains(*served);
}

bool isNamedForBrowserAlone(const ProcessSurvey& survey, std::int32_t primaryPid,
                            std::int32_t service) {
  const auto served = servedApplication(survey, service);
  return served && namesOf(survey, primaryPid).contains(*served) && !survey.processes.empty() &&
         !anotherHasName(survey, primaryPid, *served);
}

bool hasWindowWithBrowser(const ProcessSurvey& survey, std::int32_t primaryPid,
                          std::int32_t service) {
  return std::ranges::any_of(windowsOf(survey), [&](const PanelWindowRef& window) {
    return window.pid == service && standsWithBrowser(survey, primaryPid, service, window.frame);
  });
}

bool hasListedWindow(const ProcessSurvey& survey, std::int32_t pid) {
  return std::ranges::any_of(windowsOf(survey),
                             [&](const PanelWindowRef& window) { return window.pid == pid; });
}

bool isBrowser(const std::string& name) {
  const bool known = std::ranges::any_of(
      browserNames, [&](std::string_view browser) { return name.starts_with(browser); });
  return known && !contains(name, "Helper");
}

bool anotherBrowserRuns(const ProcessSurvey& survey, std::int32_t primaryPid) {
  return std::ranges::any_of(survey.processes, [&](const ListedProcess& process) {
    return process.pid != primaryPid && isBrowser(bundleName(process.command));
  });
}

// A sheet's window may be larger than the sheet by its shadow.
bool isNear(const Rect& one, const Rect& other) {
  return std::abs(one.x - other.x) <= shadowPoints && std::abs(one.y - other.y) <= shadowPoints &&
         std::abs(one.width - other.width) <= 2 * shadowPoints &&
         std::abs(one.height - other.height) <= 2 * shadowPoints;
}

}  // namespace

ProcessSurvey surveyProcesses(double helperSeconds) {
  ProcessSurvey survey;
  const std::string listing = commandOutput(psPath, {"-axo", "pid=,command="});
  for (const std::string& line : splitDroppingEmpty(listing, '\n')) {
    if (auto process = parseProcess(line)) survey.processes.push_back(std::move(*process));
  }
  survey.windows = listedWindows(helperSeconds);
  return survey;
}

std::optional<std::vector<PanelWindowRef>> listedWindows(double helperSeconds) {
  if (!(helperSeconds > 0)) return {};
  const auto listing =
      commandOutputWithin(helperExecutable(captureHelperName), {"list"}, helperSeconds);
  if (!listing) return {};
  Windows windows;
  for (const std::string& line : splitDroppingEmpty(*listing, '\n')) {
    windows.push_back(parseCaptureLine(line));
  }
  return windows;
}

std::string bundleName(const std::string& command) {
  const auto end = command.find(bundleExecutables);
  if (end == std::string::npos) return {};
  const auto slash = command.rfind('/', end);
  const auto begin = slash == std::string::npos ? 0 : slash + 1;
  return command.substr(begin, end - begin);
}

std::string processName(const ProcessSurvey& survey, std::int32_t pid) {
  for (const ListedProcess& process : survey.processes) {
    if (process.pid != pid) continue;
    if (std::string name = bundleName(process.command); !name.empty()) return name;
  }
  for (const PanelWindowRef& window : windowsOf(survey)) {
    if (window.pid == pid && !window.app.empty()) return window.app;
  }
  return {};
}

std::string processText(const ProcessSurvey& survey, std::int32_t pid) {
  const std::string name = processName(survey, pid);
  return (name.empty() ? "process" : name) + " " + std::to_string(pid);
}

bool isRunningProcess(std::int32_t pid) {
  return applicationState(pid) == ApplicationState::running || !processCommand(pid).empty();
}

std::vector<std::int32_t> runningPanelServices(const ProcessSurvey& survey) {
  std::vector<std::int32_t> pids;
  for (const ListedProcess& process : survey.processes) {
    if (namesService(process.command)) pids.push_back(process.pid);
  }
  for (const PanelWindowRef& window : windowsOf(survey)) {
    if (window.app.starts_with(serviceDisplayName)) pids.push_back(window.pid);
  }
  return uniquePIDs(pids);
}

std::vector<std::int32_t> possiblePanelServicesOf(const ProcessSurvey& survey,
                                                  std::int32_t primaryPid) {
  auto services = runningPanelServices(survey);
  std::erase_if(services, [&](std::int32_t service) {
    return service == primaryPid || isNamedForAnother(survey, primaryPid, service);
  });
  return services;
}

std::vector<std::int32_t> panelServicesOf(const ProcessSurvey& survey, std::int32_t primaryPid) {
  auto services = possiblePanelServicesOf(survey, primaryPid);
  const bool isOnlyChoice = runningPanelServices(survey).size() == 1 &&
                            hasListedWindow(survey, primaryPid) && !survey.processes.empty() &&
                            !anotherBrowserRuns(survey, primaryPid);
  if (isOnlyChoice) return services;
  std::erase_if(services, [&](std::int32_t service) {
    return !hasWindowWithBrowser(survey, primaryPid, service) &&
           !isNamedForBrowserAlone(survey, primaryPid, service);
  });
  return services;
}

bool standsWithBrowser(const ProcessSurvey& survey, std::int32_t primaryPid, std::int32_t service,
                       const Rect& frame) {
  if (!frame.hasArea()) return false;
  bool browser = false;
  for (const PanelWindowRef& window : windowsOf(survey)) {
    if (!rectsEqual(window.frame, frame)) continue;
    if (window.pid != primaryPid && window.pid != service) return false;
    browser = browser || window.pid == primaryPid;
  }
  return browser;
}

bool standsWithAnother(const ProcessSurvey& survey, std::int32_t primaryPid, const Rect& frame) {
  const auto services = runningPanelServices(survey);
  bool another = false;
  for (const PanelWindowRef& window : windowsOf(survey)) {
    if (!rectsEqual(window.frame, frame)) continue;
    if (window.pid == primaryPid) return false;
    another = another || !isAmong(services, window.pid);
  }
  return another;
}

std::vector<PanelWindowRef> windowsAt(const std::vector<PanelWindowRef>& windows,
                                      const std::vector<std::int32_t>& owners, const Rect& frame) {
  Windows standing;
  for (const PanelWindowRef& window : windows) {
    if (isAmong(owners, window.pid) && rectsEqual(window.frame, frame)) standing.push_back(window);
  }
  return standing;
}

bool hasMoreWindows(const std::vector<PanelWindowRef>& before,
                    const std::vector<PanelWindowRef>& now, const std::vector<std::int32_t>& owners,
                    const std::optional<Rect>& exceptAt) {
  return std::ranges::any_of(now, [&](const PanelWindowRef& window) {
    if (!isAmong(owners, window.pid) || (exceptAt && isNear(window.frame, *exceptAt))) return false;
    return windowsAt(now, {window.pid}, window.frame).size() >
           windowsAt(before, {window.pid}, window.frame).size();
  });
}

}  // namespace tessarine
