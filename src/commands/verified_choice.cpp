#include "commands/verified_choice.h"

#include <algorithm>
#include <nlohmann/json.hpp>
#include <optional>
#include <vector>

#include "commands/folder_result.h"
#include "commands/path_result.h"
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
#include "panels/candidates.h"
#include "panels/process_survey.h"
#include "platform/accessibility.h"
#include "platform/clock.h"
#include "platform/files.h"
#include "platform/foreground.h"
#include "platform/processes.h"
#include "platform/wait.h"

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
// Measured: 0.41 s after the go-to sheet's Return.
constexpr double enabledSeconds = 2.5;
constexpr double confirmPollSeconds = 0.05;
constexpr double closePollSeconds = 0.1;
constexpr double closeSeconds = 2.0;
// A press that failed hardly lands later; one that went unanswered does so before its process
// answers anything else.
constexpr double failedCloseSeconds = 1.0;
constexpr double answersAgainSeconds = 6.0;
constexpr double windowLeavesSeconds = 4.0;

// On one line, as file names may hold line breaks.
ToolError notVerified(std::string text) {
  std::replace_if(
      text.begin(), text.end(), [](unsigned char byte) { return byte < 0x20 || byte == 0x7F; },
      ' ');
  return ToolError::actionFailed("not verified: " + text);
}

std::string processText(const ProcessSurvey& survey, std::int32_t pid) {
  const std::string name = processName(survey, pid);
  return (name.empty() ? "process" : name) + " " + std::to_string(pid);
}

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

bool isRunningProcess(std::int32_t pid) {
  return applicationState(pid) == ApplicationState::running || !processCommand(pid).empty();
}

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
  const double end = std::min(currentTime() + timeoutSeconds, deadline);
  if (!ends()) pollUntil(end - currentTime(), searchPollSeconds, ends);
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
          .isFolderPanel = false,
          .keyPids = keyPids,
          .isAlone = isAlone,
          .hasNoNewWindow = hasNoNewWindow,
          .deadline = deadline,
          .sheetTakers = {},
          .returnUnderWay = false,
          .lastSight = {},
          .problem = {}};
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
    const Condition isReady = [&] { return (kind = kindSeen(choice)) != PanelKind::files; };
    return !pollUntil(withinDeadline(choice, readySeconds), kindPollSeconds, isReady);
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

// --- Confirming. ---

bool confirmIsEnabled(PanelChoice& choice) {
  return choice.parts.confirmButton && holds(choice, [&] {
           return readFlag(*choice.parts.confirmButton, "AXEnabled").value_or(true);
         });
}

std::string sightText(const PanelChoice& choice) {
  return choice.lastSight ? describe(*choice.lastSight) : "nothing that could be read";
}

// What was seen, and that it was so still when the button was about to be pressed.
struct ProvenSight {
  PanelSight sight;
  Proof proof;
};

std::optional<ProvenSight> lookForTheLastTime(PanelChoice& choice) {
  if (!confirmIsEnabled(choice)) {
    closeGoToSheet(choice);  // one that opened late, while nobody waited for it
    return {};
  }
  const auto sight = glance(choice);
  const auto proof = sight ? proofOf(*sight, choice.target) : std::nullopt;
  if (!proof || !confirmIsEnabled(choice)) return {};
  // Without a list that names its selection there is nothing to look at again.
  const bool same =
      !sight->list || holds(choice, [&] { return stillAsSeen(*sight, choice.parts); });
  if (!same) return {};
  return ProvenSight{*sight, *proof};
}

// "the panel shows /a, not /b (no go-to sheet opened; /b is not listed in /)"
std::string mismatchText(const PanelChoice& choice) {
  const std::string why = choice.problem.empty() ? "" : " (" + choice.problem + ")";
  return "the panel shows " + sightText(choice) + ", not " + choice.target.path + why;
}

// A Return of which nothing was seen may still come to something.
std::string afterReturnText(const PanelChoice& choice) {
  return choice.returnUnderWay ? ": what it will choose is unknown" : "";
}

ProvenSight waitUntilProven(PanelChoice& choice) {
  std::optional<ProvenSight> proven;
  const Condition look = [&] { return (proven = lookForTheLastTime(choice)).has_value(); };
  const double seconds = choice.problem.empty() ? enabledSeconds : 0;
  if (look() || pollUntil(withinDeadline(choice, seconds), confirmPollSeconds, look)) {
    return *proven;
  }
  if (!proofWithin(choice, 0)) throw notVerified(mismatchText(choice) + afterReturnText(choice));
  throw notVerified("the panel shows " + choice.target.path +
                    ", but its confirm button is disabled" + afterReturnText(choice));
}

// The panel may still be read for a moment after the press landed, which took a while: whoever
// changed what it shows meanwhile has changed what it chose.
void refuseOtherSight(const PanelChoice& choice, const PanelSight& before) {
  if (!showsOtherwise(before, choice.parts, choice.target)) return;
  throw notVerified("the panel did not show " + choice.target.path +
                    " any more when it was confirmed: what it chose is unknown");
}

// --- WatchedClose. ---

struct WatchedClose {
  std::vector<PanelWindowRef> windows;  // listed at the panel's place before it was confirmed
  double seconds = 0;
};

std::vector<PanelWindowRef> windowsOfPanel(const PanelChoice& choice) {
  std::optional<Rect> frame;
  holds(choice, [&] { return (frame = readFrame(choice.panel.element)).has_value(); });
  const auto windows = frame ? listedWindows() : std::nullopt;
  if (!windows) return {};
  return windowsAt(*windows, choice.keyPids, *frame);
}

bool isListed(const std::vector<PanelWindowRef>& windows, std::uint32_t number) {
  return std::any_of(windows.begin(), windows.end(),
                     [&](const PanelWindowRef& window) { return window.windowID == number; });
}

// The panel's window that is listed still: one of a process none of whose windows at the panel's
// place has left, as another panel of it may stand there, too. A list that cannot be had lists all.
std::optional<std::uint32_t> listedStill(const std::vector<PanelWindowRef>& before) {
  if (before.empty()) return {};
  const auto now = listedWindows().value_or(before);
  for (const PanelWindowRef& window : before) {
    const bool stays = std::all_of(before.begin(), before.end(), [&](const PanelWindowRef& other) {
      return other.pid != window.pid || isListed(now, other.windowID);
    });
    if (stays) return window.windowID;
  }
  return {};
}

void waitForVerifiedClose(const PanelChoice& choice, const WatchedClose& closing,
                          std::int32_t primaryPid) {
  const Condition gone = [&] { return isGone(choice.panel.element); };
  if (!gone() && !pollUntil(withinDeadline(choice, closing.seconds), closePollSeconds, gone)) {
    throw notVerified("the panel did not close within " + formatDouble(closing.seconds) +
                      "s after it was confirmed: what it will choose is unknown");
  }
  std::optional<std::uint32_t> listed = listedStill(closing.windows);
  if (listed) {
    pollUntil(withinDeadline(choice, windowLeavesSeconds), closePollSeconds,
              [&] { return !(listed = listedStill(closing.windows)); });
  }
  if (listed) {
    throw notVerified("the panel is gone, but its window " + std::to_string(*listed) +
                      " is still listed: what it chose is unknown");
  }
  if (!isRunningProcess(primaryPid)) {
    throw notVerified("the browser " + std::to_string(primaryPid) +
                      " ended with its panel: what it chose is unknown");
  }
}

void awaitAnswer(const PanelChoice& choice) {
  const Condition answers = [&] { return answersNow(choice.panel.element); };
  if (!answers()) pollUntil(withinDeadline(choice, answersAgainSeconds), closePollSeconds, answers);
}

Proof confirmPanel(PanelChoice& choice, std::int32_t primaryPid, bool helperAnswers) {
  WatchedClose closing{helperAnswers ? windowsOfPanel(choice) : std::vector<PanelWindowRef>{}};
  const ProvenSight proven = waitUntilProven(choice);
  const int answer = performAction("AXPress", *choice.parts.confirmButton);
  refuseOtherSight(choice, proven.sight);
  if (answer == kAXErrorInvalidUIElement && isGone(choice.panel.element)) {
    throw notVerified(
        "the panel was gone before its confirm button was pressed: what it chose is unknown");
  }
  if (answer == kAXErrorCannotComplete) awaitAnswer(choice);
  const bool failed = answer != kAXErrorSuccess && answer != kAXErrorCannotComplete;
  closing.seconds = failed ? failedCloseSeconds : closeSeconds;
  // What was pressed is awaited, also at the end of the time.
  choice.deadline = std::max(choice.deadline, currentTime() + closeSeconds);
  waitForVerifiedClose(choice, closing, primaryPid);
  return proven.proof;
}

// --- The whole. ---

std::string timeIsUpText(const PanelChoice& choice) {
  const bool proven = choice.lastSight && proofOf(*choice.lastSight, choice.target);
  const std::string text =
      proven ? "the panel, which shows " + choice.target.path + ", is not confirmed"
             : mismatchText(choice);
  return "the time is up, and " + text + afterReturnText(choice);
}

// Best effort, for errors: what was opened is closed.
void tidySheet(PanelChoice& choice) {
  if (choice.sheetTakers.empty()) return;
  choice.deadline = currentTime() + tidySeconds;
  try {
    closeGoToSheet(choice);
  } catch (const PanelGone&) {
  } catch (const TimeIsUp&) {
  }
}

Proof chooseInPanel(PanelChoice& choice, std::int32_t primaryPid, bool helperAnswers) {
  try {
    refuseOtherKind(choice);
    moveToTarget(choice);
    return confirmPanel(choice, primaryPid, helperAnswers);
  } catch (const PanelGone&) {
    throw notVerified("the panel closed before it was verified: what it chose is unknown");
  } catch (const TimeIsUp&) {
    tidySheet(choice);
    throw notVerified(timeIsUpText(choice));
  } catch (const ToolError&) {
    tidySheet(choice);
    throw;
  }
}

// Gives the foreground back when one of the panel's processes took it; whatever a person turned to
// meanwhile stays in front.
void putFrontmostBack(std::optional<std::int32_t> before, const std::vector<std::int32_t>& panels) {
  const auto now = frontmostApplicationPid();
  if (!before || !now || now == before) return;
  if (!hasPID(panels, *now)) return;
  restoreFrontmostApplication(*before);
}

VerifiedChoice chooseFrom(double startTime, std::int32_t primaryPid, const Target& target,
                          double timeoutSeconds) {
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
  const bool helperAnswers = found.survey.windows.has_value();
  const Proof proof = chooseInPanel(choice, primaryPid, helperAnswers);
  return {found.root.owner.pid, found.root.owner.label,
          proof == Proof::folderShown ? "folder shown" : "entry selected", target.path};
}

std::string acceptablePath(const std::string& targetPath) {
  if (targetPath.empty()) throw notVerified("the path is empty");
  if (!isUtf8(targetPath)) throw notVerified("the path is not UTF-8");
  return standardizedPath(targetPath);
}

Result withChoice(Result result, const VerifiedChoice& choice) {
  result = withOwner(std::move(result), choice.dialogPid, choice.dialogApp);
  result["verified"] = choice.verified;
  result["verifiedPath"] = choice.verifiedPath;
  return result;
}

}  // namespace

VerifiedChoice chooseVerified(std::int32_t primaryPid, const std::string& targetPath,
                              double timeoutSeconds) {
  return chooseFrom(currentTime(), primaryPid, targetAt(targetPath), timeoutSeconds);
}

Result chooseFolderVerified(std::int32_t primaryPid, const std::string& targetPath,
                            double timeoutSeconds) {
  const double startTime = currentTime();
  const std::string path = acceptablePath(targetPath);
  if (!fileExists(path)) throw ToolError::notFound("folder does not exist: " + path);
  if (!isDirectory(path)) throw ToolError::usage("path is not a directory: " + path);
  const auto [volumeRoot, components] = volumeRootAndComponents(path);
  const std::string volumeName = displayNameWithin(volumeRoot, finderSeconds);
  const auto choice = chooseFrom(startTime, primaryPid, targetAt(path), timeoutSeconds);
  return withChoice(
      folderResult(path, volumeRoot, volumeName, components, lastPathComponent(path), "verified"),
      choice);
}

Result choosePathVerified(std::int32_t primaryPid, const std::string& targetPath,
                          double timeoutSeconds) {
  const double startTime = currentTime();
  const std::string path = acceptablePath(targetPath);
  if (!fileExists(path)) throw ToolError::notFound("path does not exist: " + path);
  const Target target = targetAt(path);
  const auto choice = chooseFrom(startTime, primaryPid, target, timeoutSeconds);
  return withChoice(pathResult(path, target.isFolder ? "directory" : "file", "verified"), choice);
}

}  // namespace tessarine
