#include "commands/close.h"

#include <vector>

#include "core/tables.h"
#include "core/tool_error.h"
#include "dialog/controls.h"
#include "dialog/detection.h"
#include "panels/candidates.h"
#include "panels/capture.h"
#include "panels/panel_clicks.h"
#include "panels/panel_close.h"
#include "panels/panel_owners.h"
#include "platform/accessibility.h"
#include "platform/clock.h"
#include "platform/events.h"
#include "platform/foreground.h"

namespace tessarine {
namespace {

constexpr double escapePauseSeconds = 0.08;
constexpr double cancelPauseSeconds = 0.1;
constexpr double panelCloseSeconds = 0.8;
constexpr double strictEscapeSeconds = 1.8;

using PanelWindows = std::vector<PanelWindowRef>;

void tapEscape(std::int32_t pid) {
  tapKey(pid, keyCodeEscape, noModifiers, {}, escapePauseSeconds);
}

void tapEscape(const std::vector<std::int32_t>& pids) {
  for (const std::int32_t pid : uniquePIDs(pids)) tapEscape(pid);
}

// The owners of the windows in their order, then the browser.
std::vector<std::int32_t> escapePIDs(const PanelWindows& windows, std::int32_t primaryPid) {
  std::vector<std::int32_t> pids;
  for (const PanelWindowRef& window : windows) pids.push_back(window.pid);
  pids.push_back(primaryPid);
  return pids;
}

// Presses the Cancel buttons, those of the dialogs listed last first; how many.
int pressCancelButtons(std::int32_t primaryPid, bool includeEmbedded) {
  const auto dialogs = openDialogs(primaryPid, includeEmbedded, {});
  int pressed = 0;
  for (auto dialog = dialogs.rbegin(); dialog != dialogs.rend(); ++dialog) {
    const auto button = findButton(dialog->node.element, tables().cancelButtonTitles);
    if (!button) continue;
    perform("AXPress", button->element);
    ++pressed;
    sleepSeconds(cancelPauseSeconds);
  }
  return pressed;
}

int closeCapturedFirst(std::int32_t primaryPid) {
  const PanelWindows tracked = orderedBackgroundPanelWindows(primaryPid);
  if (tracked.empty()) return pressCancelButtons(primaryPid, false);
  tapEscape(escapePIDs(tracked, primaryPid));
  if (waitForTrackedPanelClose(primaryPid, tracked, panelCloseSeconds)) return 1;
  clickPanelContent(tracked.front(), primaryPid, false);
  tapEscape(primaryPid);
  return waitForTrackedPanelClose(primaryPid, tracked, panelCloseSeconds) ? 1 : 0;
}

// Escape to every process concerned, then a click into the panel and Escape to the browser; whether
// that closed what was captured.
bool closeByEvents(std::int32_t primaryPid, const PanelWindows& windows) {
  auto pids = escapePIDs(windows, primaryPid);
  const auto services = panelServicePIDs(primaryPid);
  pids.insert(pids.end(), services.begin(), services.end());
  tapEscape(pids);
  if (waitForCapturedPanelClose(primaryPid, strictEscapeSeconds)) return true;
  if (windows.empty()) return false;
  const PanelWindowRef& window = windowOfOrFirst(windows, primaryPid);
  clickPanelContent(window, window.pid, false);
  tapEscape(primaryPid);
  return waitForCapturedPanelClose(primaryPid, strictEscapeSeconds);
}

int closeByCancelFirst(std::int32_t primaryPid) {
  const bool pressed = pressCancelButtons(primaryPid, true) > 0;
  if (pressed && waitForCapturedPanelClose(primaryPid, panelCloseSeconds)) return 1;
  const PanelWindows windows = orderedBackgroundPanelWindows(primaryPid);
  if (!pressed && windows.empty()) return 0;
  if (closeByEvents(primaryPid, windows)) return 1;
  if (pressed) {
    throw ToolError::actionFailed(
        "background-only AXPress was accepted but the captured native folder panel remained open");
  }
  throw ToolError::actionFailed(
      "background-only native folder panel exposes no verified AX close control and targeted "
      "process events did not close it");
}

}  // namespace

int closeDialogs(std::int32_t primaryPid, bool temporaryForeground, bool strictBackground) {
  return withTemporaryForeground(primaryPid, temporaryForeground, [&] {
    return strictBackground ? closeByCancelFirst(primaryPid) : closeCapturedFirst(primaryPid);
  });
}

}  // namespace tessarine
