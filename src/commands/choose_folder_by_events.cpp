#include "commands/choose_folder_by_events.h"

#include <nlohmann/json.hpp>
#include <optional>

#include "commands/choice_results.h"
#include "core/numbers.h"
#include "core/text.h"
#include "core/tool_error.h"
#include "navigation/go_to_folder.h"
#include "panels/capture.h"
#include "panels/panel_clicks.h"
#include "panels/panel_close.h"
#include "platform/clock.h"
#include "platform/events.h"
#include "platform/processes.h"
#include "platform/screens.h"

namespace tessarine {
namespace {

constexpr double scriptCloseSeconds = 1.2;
constexpr double blindSheetSeconds = 0.35;
constexpr double blindTypingPauseSeconds = 0.05;
constexpr double afterTypedReturnSeconds = 0.45;
constexpr double settleSeconds = 0.35;
constexpr double typedCloseSeconds = 0.7;
constexpr double clickCloseSeconds = 0.8;
constexpr double secondReturnSeconds = 0.25;

using PanelWindows = std::vector<PanelWindowRef>;

// Which events closed which panel: those to this process, with the point of a click, or keys alone.
struct Closing {
  PanelWindowRef panel;
  std::int32_t pid;
  std::optional<Point> choosePoint = {};
};

// What every attempt works with.
struct EventChoice {
  std::int32_t primaryPid;
  std::string targetPath;
  bool globalMouseEvents;
};

PanelWindows windowsAtSamePlace(const PanelWindows& windows, const PanelWindowRef& panel) {
  PanelWindows tracked;
  for (const PanelWindowRef& window : windows) {
    if (rectsEqual(window.frame, panel.frame)) tracked.push_back(window);
  }
  return tracked;
}

std::string frameText(const Rect& frame) {
  return formatDouble(frame.x) + "," + formatDouble(frame.y) + "," + formatDouble(frame.width) +
         "," + formatDouble(frame.height);
}

std::string attemptText(const PanelWindowRef& panel, std::int32_t eventPid) {
  return "window=" + std::to_string(panel.windowID) + ",pid=" + std::to_string(eventPid) +
         ",frame=" + frameText(panel.frame);
}

// ["first", "second"]
std::string listText(const std::vector<std::string>& items) {
  return items.empty() ? "[]" : "[\"" + joined(items, "\", \"") + "\"]";
}

void typePath(const PanelWindowRef& panel, std::int32_t eventPid, const std::string& path) {
  clickPanelContent(panel, eventPid, false);
  openGoToFolderSheet(eventPid);
  sleepSeconds(blindSheetSeconds);
  selectAllAndDelete(eventPid);
  typeUnicodeText(eventPid, path, blindTypingPauseSeconds);
  pressReturn(eventPid, afterTypedReturnSeconds);
  sleepSeconds(settleSeconds);
}

// One attempt: this panel window, this process.
std::optional<Closing> attempt(const EventChoice& choice, const PanelWindowRef& panel,
                               const PanelWindows& tracked, std::int32_t eventPid) {
  const auto closes = [&](double seconds) {
    return waitForTrackedPanelClose(choice.primaryPid, tracked, seconds);
  };
  typePath(panel, eventPid, choice.targetPath);
  if (closes(typedCloseSeconds)) return Closing{panel, eventPid};
  for (const Point& point : panelChoosePoints(panel)) {
    postMouseClick(eventPid, point, 1, choice.globalMouseEvents);
    if (closes(clickCloseSeconds)) return Closing{panel, eventPid, point};
  }
  pressReturn(eventPid, secondReturnSeconds);
  if (closes(clickCloseSeconds)) return Closing{panel, eventPid};
  return {};
}

std::optional<Closing> closeByEvents(const EventChoice& choice, const PanelWindows& windows,
                                     std::vector<std::string>& attempts) {
  for (const PanelWindowRef& panel : windows) {
    const PanelWindows tracked = windowsAtSamePlace(windows, panel);
    for (const std::int32_t eventPid : panelEventPIDs(panel, choice.primaryPid)) {
      attempts.push_back(attemptText(panel, eventPid));
      if (auto closing = attempt(choice, panel, tracked, eventPid)) return closing;
    }
  }
  return {};
}

// Whether the System Events script closed the preferred panel. A script that fails leaves its error
// among the attempts.
bool closeBySystemEvents(const EventChoice& choice, const PanelWindows& windows,
                         std::vector<std::string>& attempts) {
  try {
    chooseFolderWithSystemEvents(choice.targetPath);
  } catch (const ToolError& error) {
    attempts.push_back("system-events-error=" + error.message());
    return false;
  }
  return waitForTrackedPanelClose(choice.primaryPid, windowsAtSamePlace(windows, windows.front()),
                                  scriptCloseSeconds);
}

Result withPanel(Result result, std::int32_t pid, const PanelWindowRef& panel) {
  result["dialogPid"] = pid;
  result["panelWindowID"] = panel.windowID;
  result["panelFrame"] = frameObject(panel.frame);
  return result;
}

}  // namespace

Result chooseFolderByBackgroundEvents(std::int32_t primaryPid, const std::string& targetPath,
                                      double timeoutSeconds, const std::string& waitError,
                                      const std::string& volumeRoot,
                                      const std::string& volumeDisplayName,
                                      const std::vector<std::string>& components,
                                      const std::string& basename, bool globalMouseEvents) {
  waitForBackgroundOpenPanel(primaryPid, timeoutSeconds);
  const PanelWindows windows = orderedBackgroundPanelWindows(primaryPid);
  if (windows.empty()) {
    throw ToolError::actionFailed(
        "AX open dialog failed and no captured background panel was found; AX error: " + waitError);
  }
  const EventChoice choice{primaryPid, targetPath, globalMouseEvents};
  const auto resultOf = [&](const std::string& strategy) {
    return folderResult(targetPath, volumeRoot, volumeDisplayName, components, basename, strategy);
  };
  std::vector<std::string> attempts;
  if (globalMouseEvents && closeBySystemEvents(choice, windows, attempts)) {
    return withPanel(resultOf("background-window-capture-system-events"), windows.front().pid,
                     windows.front());
  }
  if (const auto closing = closeByEvents(choice, windows, attempts)) {
    Result result =
        withPanel(resultOf("background-window-capture-cgevent"), closing->pid, closing->panel);
    result["axWaitError"] = waitError;
    if (closing->choosePoint) result["choosePoint"] = pointObject(*closing->choosePoint);
    return result;
  }
  throw ToolError::actionFailed(
      "background CGEvent folder selection did not close the captured panel; attempted: " +
      listText(attempts) + "; AX error: " + waitError);
}

}  // namespace tessarine
