#include "commands/verified_choice.h"

#include <algorithm>
#include <nlohmann/json.hpp>
#include <optional>
#include <vector>

#include "commands/choice_results.h"
#include "commands/verified_confirmation.h"
#include "commands/verified_error.h"
#include "core/finally.h"
#include "core/lists.h"
#include "core/numbers.h"
#include "core/text.h"
#include "core/time_budget.h"
#include "core/tool_error.h"
#include "dialog/panel_parts.h"
#include "dialog/panel_search.h"
#include "dialog/panel_sight.h"
#include "navigation/accessible_walk.h"
#include "navigation/go_to_sheet.h"
#include "navigation/panel_choice.h"
#include "navigation/path_analysis.h"
#include "panels/panel_owners.h"
#include "panels/process_survey.h"
#include "platform/accessibility.h"
#include "platform/clock.h"
#include "platform/files.h"
#include "platform/processes.h"
#include "platform/wait.h"
#include "platform/workspace.h"

namespace tessarine {
namespace {

// How long before the watchdog everything has to end: time for the last requests and for closing
// the go-to sheet.
constexpr double reserveSeconds = 4.0;
constexpr double tidySeconds = 2.0;
// A process that is busy for longer is asked again.
constexpr double answerSeconds = 1.5;

// As long as a person is asked whether scripts may ask it, the Finder does not answer.
constexpr double finderSeconds = 3.0;
constexpr double searchPollSeconds = 0.15;
// How long a panel may take to enable its button while nothing is selected: measured 1.3 s.
constexpr double readySeconds = 1.5;
constexpr double kindPollSeconds = 0.1;
// Measured: a folder is readable when the go-to sheet is gone.
constexpr double landingSeconds = 1.2;

double deadlineFor(double startTime, double timeoutSeconds) {
  return startTime + watchdogSeconds(timeoutSeconds) - reserveSeconds;
}

Target targetAt(const std::string& targetPath) {
  const std::string path = canonicalPath(targetPath).value_or(targetPath);
  return {path, isDirectory(path)};
}

// --- The browser and its panel. ---

struct FoundPanel {
  PanelRoot root;
  PanelParts parts;
  ProcessSurvey survey;
  std::vector<std::int32_t> services;  // that are the browser's
};

// What the search has seen last, for the error when its time is up.
struct SearchState {
  std::optional<FoundPanel> found;
  bool answered = false;
  bool helperFails = false;  // it is not asked again
  ProcessSurvey survey;
  double lookSeconds = 0;  // that the last look took
};

// One look; whether the panel is there with its controls. Throws when there are several.
bool searchPanel(std::int32_t primaryPid, SearchState& state) {
  state.survey = surveyProcesses(state.helperFails ? 0 : surveySeconds);
  state.helperFails = !state.survey.windows;
  auto services = panelServicesOf(state.survey, primaryPid);
  try {
    auto panels = openPanels(state.survey, primaryPid, services);
    if (panels.empty() && services.empty()) {
      services = panelServicesByPlace(state.survey, primaryPid);
      panels = openPanels(state.survey, primaryPid, services);
    }
    state.answered = true;
    state.found.reset();
    if (panels.size() > 1) {
      throw notVerified(std::to_string(panels.size()) + " panels are open (" +
                        panelCounts(state.survey, panels) + ")");
    }
    if (panels.empty()) return false;
    state.found = FoundPanel{panels.front(), {}, state.survey, services};
    state.found->parts = panelParts(panels.front().element);
    return state.found->parts.complete();
  } catch (const Unanswered&) {
    return false;
  }
}

FoundPanel findPanel(std::int32_t primaryPid, double timeoutSeconds, double deadline) {
  SearchState state;
  bool found = false;
  // Ends when the panel is found, or when another look would not end in time.
  const Condition ends = [&] {
    const double start = currentTime();
    if (start + state.lookSeconds > deadline) return true;
    found = searchPanel(primaryPid, state);
    state.lookSeconds = currentTime() - start;
    return found;
  };
  seenWithin(std::min(timeoutSeconds, deadline - currentTime()), searchPollSeconds, ends);
  if (found) return *state.found;
  const std::string browser = processText(state.survey, primaryPid);
  if (!state.answered) throw notVerified(browser + " does not answer");
  if (!state.found) {
    throw notVerified("no open panel of " + browser + " was found within " +
                      formatDouble(timeoutSeconds) + "s");
  }
  const std::string where = processText(state.survey, state.found->root.owner.pid);
  throw notVerified(
      "the panel (" + where + ") " +
      (state.found->parts.listing ? "has no confirm button" : "shows no list of entries"));
}

// The service that draws the panel, when the controls do not tell: it stands where the panel does,
// or is the only one that is the browser's.
std::vector<std::int32_t> servicesOfPanel(const FoundPanel& found) {
  if (found.services.size() == 1) return found.services;
  auto services = found.services;
  const Rect frame = axFrame(found.root.element);
  const auto windows = found.survey.windows.value_or(std::vector<PanelWindowRef>{});
  std::erase_if(services, [&](auto pid) { return windowsAt(windows, {pid}, frame).empty(); });
  return services;
}

// The process of the controls, the service that draws the panel, the process in whose tree the
// panel stands, the browser.
std::vector<std::int32_t> keyPidsFor(const FoundPanel& found, std::int32_t primaryPid) {
  const std::int32_t controls = elementPid(*found.parts.confirmButton).value_or(0);
  std::vector<std::int32_t> pids{controls};
  if (controls == 0 || controls == primaryPid) {
    for (const std::int32_t service : servicesOfPanel(found)) pids.push_back(service);
  }
  pids.push_back(found.root.owner.pid);
  pids.push_back(primaryPid);
  return uniquePIDs(pids);
}

PanelChoice choiceOf(const FoundPanel& found, std::int32_t primaryPid, const Target& target,
                     double deadline) {
  const auto keyPids = keyPidsFor(found, primaryPid);
  const auto isAlone = [survey = found.survey, services = found.services, root = found.root.element,
                        primaryPid] {
    const auto panels = openPanels(survey, primaryPid, services);
    return panels.size() == 1 && panels.front().element == root;
  };
  const auto hasNoNewWindow = [before = found.survey.windows, keyPids](const auto& sheetFrame) {
    const auto now = before ? listedWindows() : std::nullopt;
    return !now || !hasMoreWindows(*before, *now, keyPids, sheetFrame);
  };
  return {.panel = found.root,
          .parts = found.parts,
          .target = target,
          .keyPids = keyPids,
          .isAlone = isAlone,
          .hasNoNewWindow = hasNoNewWindow,
          .deadline = deadline};
}

// --- The panel's kind. ---

enum class PanelKind { unknown, folders, files };

// While nothing is selected and no sheet is open the confirm button tells.
PanelKind kindSeen(PanelChoice& choice) {
  if (choice.parts.newFolderButton) return PanelKind::folders;
  const auto sight = glance(choice);
  if (!sight || !sight->selectionKnown || !sight->selection.empty()) return PanelKind::unknown;
  PanelKind kind = PanelKind::unknown;
  holds(choice, [&] {
    if (goToSheetOf(choice.panel.element)) return false;
    const auto enabled = readFlag(*choice.parts.confirmButton, "AXEnabled");
    if (enabled) kind = *enabled ? PanelKind::folders : PanelKind::files;
    return true;
  });
  return kind;
}

void refuseOtherKind(PanelChoice& choice) {
  PanelKind kind = kindSeen(choice);
  const auto staysDisabled = [&] {
    const Condition isReady = [&] { return (kind = kindSeen(choice)) == PanelKind::folders; };
    return !pollUntil(withinDeadline(choice, readySeconds), kindPollSeconds, isReady) &&
           kind == PanelKind::files;
  };
  if (kind == PanelKind::files && choice.target.isFolder && staysDisabled()) {
    throw notVerified("a folder for a file panel: " + choice.target.path);
  }
  if (kind == PanelKind::folders && !choice.target.isFolder) {
    throw notVerified("a file for a folder panel: " + choice.target.path);
  }
  choice.isFolderPanel = kind == PanelKind::folders;
}

// --- Getting there. ---

bool showsNothing(PanelChoice& choice) {
  const auto sight = glance(choice);
  return sight && !sight->hasLocatedEntries && sight->selection.empty();
}

// A folder without entries is shown in its parent, and selected there.
bool selectsEmptyTarget(PanelChoice& choice) {
  const std::string& path = choice.target.path;
  if (!choice.target.isFolder || path == "/" || !showsNothing(choice)) return false;
  const std::string parent = parentDirectory(path);
  return goThroughSheet(choice, parent).empty() && showsWithin(choice, parent, landingSeconds) &&
         takeTargetEntry(choice).empty();
}

void walk(PanelChoice& choice) {
  const std::string problem = walkToTarget(choice);
  choice.problem = problem.empty() ? "" : choice.problem + "; " + problem;
}

// Leaves the reason behind when the panel does not get there.
void moveToTarget(PanelChoice& choice) {
  if (proofWithin(choice, 0)) {
    closeGoToSheet(choice);
    return;
  }
  choice.problem = goThroughSheet(choice, choice.target.path);
  if (!choice.problem.empty()) return walk(choice);
  if (proofWithin(choice, landingSeconds) || selectsEmptyTarget(choice)) return;
  choice.problem = "the go-to sheet led elsewhere";
  walk(choice);
}

// --- The whole. ---

std::string timeIsUpText(const PanelChoice& choice) {
  const bool proven = choice.lastSight && proofOf(*choice.lastSight, choice.target);
  const std::string text =
      proven ? "the panel, which shows " + choice.target.path + ", is not confirmed"
             : mismatchText(choice);
  return "the time is up, and " + text + afterReturnText(choice);
}

// For errors: what was opened is closed. What is to be said of it besides.
std::string tidySheet(PanelChoice& choice) {
  if (choice.sheetTakers.empty()) return {};
  choice.deadline = currentTime() + tidySeconds;
  try {
    return closeGoToSheet(choice) ? "" : "; its go-to sheet is still open";
  } catch (const PanelGone&) {
    return "; it has closed since: what it chose is unknown";
  } catch (const TimeIsUp&) {
    return {};
  }
}

Proof chooseInPanel(PanelChoice& choice, std::int32_t primaryPid, const ProcessSurvey& survey) {
  Quiet quiet;
  try {
    refuseOtherKind(choice);
    moveToTarget(choice);
    return confirmPanel(choice, primaryPid, survey.windows, quiet);
  } catch (const PanelGone&) {
    throw notVerified("the panel closed before it was verified: what it chose is unknown");
  } catch (const TimeIsUp&) {
    const std::string text = timeIsUpText(choice);
    throw notVerified(text + tidySheet(choice));
  } catch (const ToolError& error) {
    if (isGone(choice.panel.element)) throw;
    throw ToolError::actionFailed(error.what() + tidySheet(choice));
  }
}

// Gives the foreground back when one of the panel's processes took it; whatever a person turned to
// meanwhile stays in front.
void putFrontmostBack(std::optional<std::int32_t> before, const std::vector<std::int32_t>& panels) {
  const auto now = frontmostApplicationPid();
  if (!before || !now || now == before || !isAmong(panels, *now)) return;
  if (applicationState(*before) == ApplicationState::running) activateApplication(*before);
}

// The result of the command, to which it adds what the choice tells.
Result chooseFrom(double startTime, std::int32_t primaryPid, const Target& target,
                  double timeoutSeconds, Result result) {
  if (!isRunningProcess(primaryPid)) {
    throw notVerified("no process has the pid " + std::to_string(primaryPid));
  }
  setMessagingTimeout(answerSeconds);
  const Finally resetTimeout([] { setMessagingTimeout(0); });
  std::vector<std::int32_t> panelPids{primaryPid};
  const auto frontmost = frontmostApplicationPid();
  const Finally restore([&] { putFrontmostBack(frontmost, panelPids); });

  const double deadline = deadlineFor(startTime, timeoutSeconds);
  const FoundPanel found = findPanel(primaryPid, timeoutSeconds, deadline);
  PanelChoice choice = choiceOf(found, primaryPid, target, deadline);
  panelPids = choice.keyPids;
  const Proof proof = chooseInPanel(choice, primaryPid, found.survey);
  result = withOwner(std::move(result), found.root.owner.pid, found.root.owner.label);
  result["verified"] = proof == Proof::folderShown ? "folder shown" : "entry selected";
  result["verifiedPath"] = target.path;
  return result;
}

std::string acceptablePath(const std::string& targetPath) {
  if (targetPath.empty()) throw notVerified("the path is empty");
  if (!isUtf8(targetPath)) throw notVerified("the path is not UTF-8");
  return standardizedPath(targetPath);
}

}  // namespace

Result chooseFolderVerified(std::int32_t primaryPid, const std::string& targetPath,
                            double timeoutSeconds) {
  const double startTime = currentTime();
  const std::string path = acceptablePath(targetPath);
  if (!fileExists(path)) throw ToolError::notFound("folder does not exist: " + path);
  if (!isDirectory(path)) throw ToolError::usage("path is not a directory: " + path);
  const auto [volumeRoot, components] = volumeRootAndComponents(path);
  const std::string volumeName = displayNameWithin(volumeRoot, finderSeconds);
  return chooseFrom(
      startTime, primaryPid, targetAt(path), timeoutSeconds,
      folderResult(path, volumeRoot, volumeName, components, lastPathComponent(path), "verified"));
}

Result choosePathVerified(std::int32_t primaryPid, const std::string& targetPath,
                          double timeoutSeconds) {
  const double startTime = currentTime();
  const std::string path = acceptablePath(targetPath);
  if (!fileExists(path)) throw ToolError::notFound("path does not exist: " + path);
  const Target target = targetAt(path);
  return chooseFrom(startTime, primaryPid, target, timeoutSeconds,
                    pathResult(path, target.isFolder ? "directory" : "file", "verified"));
}

}  // namespace tessarine
