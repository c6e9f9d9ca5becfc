// Who runs around a browser's panels, and which panel services can be told to be the browser's: one
// look at the processes and one at the windows on the screen, from which everything else follows.
//
// Frames are in screen points, origin at the top left of the main display.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "platform/element.h"

namespace tessarine {

struct ListedProcess {
  std::int32_t pid = 0;
  std::string command;  // the command line
};

struct ProcessSurvey {
  std::vector<ListedProcess> processes;  // as "/bin/ps" lists them; none when it prints nothing
  // All windows on the screen, whatever their titles; absent when the capture helper cannot be
  // started, fails or takes too long.
  std::optional<std::vector<PanelWindowRef>> windows;
};

// How long a look waits for the capture helper at most, which itself takes up to 2 s.
inline constexpr double surveySeconds = 3.0;

// Runs "/bin/ps" and the capture helper's "list", which has `helperSeconds` for it; with 0 it is
// not run.
ProcessSurvey surveyProcesses(double helperSeconds = surveySeconds);

// The windows alone.
std::optional<std::vector<PanelWindowRef>> listedWindows(double helperSeconds = surveySeconds);

// The name of the application that a command line starts: NAME in
// ".../NAME.app/Contents/MacOS/...", of a helper process its own; empty for any other command line.
std::string bundleName(const std::string& command);

// What people call the process: its bundle's name, else the owner's name of its windows; empty when
// neither is known.
std::string processName(const ProcessSurvey& survey, std::int32_t pid);

// That name and the pid, "Google Chrome 812"; "process 812" without a name.
std::string processText(const ProcessSurvey& survey, std::int32_t pid);

// Whether the process runs, as the workspace or "/bin/ps" says.
bool isRunningProcess(std::int32_t pid);

// The panel services that run: processes whose command line names the service's executable or its
// display name, and owners of windows that are called by the display name. In the survey's order.
std::vector<std::int32_t> runningPanelServices(const ProcessSurvey& survey);

// Those of them that may be the browser's: that are not named for another application ("Open and
// Save Panel Service (NAME)").
std::vector<std::int32_t> possiblePanelServicesOf(const ProcessSurvey& survey,
                                                  std::int32_t primaryPid);

// Those of these that can be told to be the browser's. A service is when
// - a window of its stands exactly where a window of the browser stands, and no third process has
//   one there, or
// - it is named for the browser and no other process that runs has that name, or
// - it is the only one that runs, and so, as far as its name tells, is the browser, of which a
//   window is listed; for from the list another application's panel is told.
std::vector<std::int32_t> panelServicesOf(const ProcessSurvey& survey, std::int32_t primaryPid);

// Whether a window of the browser stands exactly there, and none of a third process.
bool standsWithBrowser(const ProcessSurvey& survey, std::int32_t primaryPid, std::int32_t service,
                       const Rect& frame);

// Whether a window of a process that is neither the browser nor a panel service stands exactly
// there, and none of the browser's does.
bool standsWithAnother(const ProcessSurvey& survey, std::int32_t primaryPid, const Rect& frame);

// Those listed windows of the processes that stand exactly there.
std::vector<PanelWindowRef> windowsAt(const std::vector<PanelWindowRef>& windows,
                                      const std::vector<std::int32_t>& owners, const Rect& frame);

// Whether the processes have more windows somewhere than before. Those near `exceptAt`, by 40
// points at each side, are left out.
bool hasMoreWindows(const std::vector<PanelWindowRef>& before,
                    const std::vector<PanelWindowRef>& now, const std::vector<std::int32_t>& owners,
                    const std::optional<Rect>& exceptAt);

}  // namespace tessarine
