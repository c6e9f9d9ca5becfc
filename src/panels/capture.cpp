#include "panels/capture.h"

#include <algorithm>
#include <string_view>
#include <tuple>

#include "core/numbers.h"
#include "core/tables.h"
#include "core/text.h"
#include "panels/panel_owners.h"
#include "platform/processes.h"
#include "platform/screens.h"
#include "platform/wait.h"

namespace tessarine {
namespace {

// Smaller windows are not panels (points).
constexpr double smallestPanelExtent = 10;

// The names under which a window of the browser's panel may be listed.
struct ExpectedOwner {
  std::int32_t primaryPid;
  std::string browserName;
  std::string serviceName;
};

// What follows the prefix, if the field begins with it.
std::optional<std::string> fieldValue(const std::string& field, std::string_view prefix) {
  if (!field.starts_with(prefix)) return {};
  return field.substr(prefix.size());
}

void readField(const std::string& field, PanelWindowRef& window) {
  if (const auto pid = fieldValue(field, "pid=")) window.pid = parseInt32(*pid).value_or(0);
  if (const auto app = fieldValue(field, "app=")) window.app = *app;
  if (const auto title = fieldValue(field, "title=")) window.title = *title;
  if (const auto frame = fieldValue(field, "frame=")) {
    window.frame = parseCaptureFrame(*frame).value_or(Rect{});
  }
}

bool isOpenPanelOf(const ExpectedOwner& owner, const PanelWindowRef& window) {
  if (!tables().openDialogTitles.contains(window.title)) return false;
  if (window.windowID != 0 && tables().excludedPanelWindowIDs.contains(window.windowID)) {
    return false;
  }
  const bool ownedByService = window.app == owner.serviceName;
  const bool ownedByBrowser = window.pid == owner.primaryPid && window.app == owner.browserName;
  if (!ownedByService && !ownedByBrowser) return false;
  return window.pid > 0 && window.frame.width > smallestPanelExtent &&
         window.frame.height > smallestPanelExtent;
}

bool samePlace(const PanelWindowRef& first, const PanelWindowRef& second) {
  return first.pid == second.pid && rectsEqual(first.frame, second.frame);
}

// Appends the window unless `same` finds it among those already there.
template <class Same>
void appendUnlessRepeated(std::vector<PanelWindowRef>& windows, const PanelWindowRef& window,
                          const Same& same) {
  const bool repeated =
      std::ranges::any_of(windows, [&](const auto& earlier) { return same(window, earlier); });
  if (!repeated) windows.push_back(window);
}

}  // namespace

std::optional<Rect> parseCaptureFrame(const std::string& text) {
  std::vector<double> numbers;
  for (const std::string& piece : splitDroppingEmpty(text, ',')) {
    const auto number = parseDouble(piece);
    if (!number) return {};
    numbers.push_back(*number);
  }
  if (numbers.size() != 4) return {};
  return Rect{numbers[0], numbers[1], numbers[2], numbers[3]};
}

PanelWindowRef parseCaptureLine(const std::string& line) {
  const auto fields = splitDroppingEmpty(line, '\t');
  PanelWindowRef window;
  if (fields.empty()) return window;
  window.windowID = parseUInt32(fields.front()).value_or(0);
  std::for_each(fields.begin() + 1, fields.end(),
                [&](const std::string& field) { readField(field, window); });
  return window;
}

std::vector<PanelWindowRef> backgroundOpenPanelWindows(std::int32_t primaryPid) {
  const std::string browserName = browserDisplayName(primaryPid);
  const ExpectedOwner owner{primaryPid, browserName, panelServiceName(browserName)};
  const std::string listing = commandOutput(helperExecutable(captureHelperName), {"list"});

  std::vector<PanelWindowRef> distinct;
  for (const std::string& line : splitDroppingEmpty(listing, '\n')) {
    const PanelWindowRef window = parseCaptureLine(line);
    if (isOpenPanelOf(owner, window)) appendUnlessRepeated(distinct, window, panelWindowMatches);
  }

  // A second pass over what is left: windows of one process at the same place count once even when
  // the helper gives them different numbers.
  std::vector<PanelWindowRef> windows;
  for (const auto& window : distinct) appendUnlessRepeated(windows, window, samePlace);
  return windows;
}

std::vector<PanelWindowRef> orderedBackgroundPanelWindows(std::int32_t primaryPid) {
  auto windows = backgroundOpenPanelWindows(primaryPid);
  std::erase_if(windows, [](const auto& window) { return !panelWindowIsVisible(window); });
  const auto rank = [&](const PanelWindowRef& window) {
    return std::tuple(window.pid == primaryPid, -panelWindowArea(window), window.windowID);
  };
  std::ranges::stable_sort(
      windows, [&](const auto& first, const auto& second) { return rank(first) < rank(second); });
  return windows;
}

std::vector<std::int32_t> backgroundOpenPanelWindowPIDs(std::int32_t primaryPid) {
  std::vector<std::int32_t> pids;
  for (const auto& window : orderedBackgroundPanelWindows(primaryPid)) pids.push_back(window.pid);
  return uniquePIDs(pids);
}

bool backgroundOpenPanelVisible(std::int32_t primaryPid) {
  return !backgroundOpenPanelWindowPIDs(primaryPid).empty();
}

std::vector<std::int32_t> waitForBackgroundOpenPanel(std::int32_t primaryPid,
                                                     double timeoutSeconds) {
  std::vector<std::int32_t> pids;
  waitUntil(timeoutSeconds, [&] {
    pids = backgroundOpenPanelWindowPIDs(primaryPid);
    return !pids.empty();
  });
  return pids;
}

const PanelWindowRef& windowOfOrFirst(const std::vector<PanelWindowRef>& windows,
                                      std::int32_t pid) {
  const auto own = std::ranges::find_if(
      windows, [&](const PanelWindowRef& window) { return window.pid == pid; });
  return own != windows.end() ? *own : windows.front();
}

double panelWindowArea(const PanelWindowRef& window) {
  return std::max(window.frame.width, 0.0) * std::max(window.frame.height, 0.0);
}

bool panelWindowIsVisible(const PanelWindowRef& window) {
  return pointIsOnScreen(window.frame.center());
}

bool panelWindowMatches(const PanelWindowRef& window, const PanelWindowRef& tracked) {
  if (window.windowID != 0 && tracked.windowID != 0) return window.windowID == tracked.windowID;
  return samePlace(window, tracked);
}

std::optional<PanelWindowRef> largestPanelWindow(std::int32_t primaryPid) {
  const auto windows = backgroundOpenPanelWindows(primaryPid);
  if (windows.empty()) return {};
  return *std::ranges::max_element(windows, [](const auto& one, const auto& other) {
    return panelWindowArea(one) < panelWindowArea(other);
  });
}

}  // namespace tessarine
