#include "swarm/rules.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <functional>
#include <variant>

#include "simulator/desktop/record.h"

namespace tessarine::test {
namespace {

using Json = nlohmann::ordered_json;

constexpr int usageStatus = 2;

// What broke a rule; empty when nothing did.
using Rule = std::string (*)(const FinishedRun&);

// A path that it repeats may break it.
bool isOneLine(const std::string& text, const std::string& path) {
  const auto breaks = [](const std::string& words) { return std::ranges::count(words, '\n'); };
  return text.size() > 1 && text.ends_with('\n') && breaks(text) <= 1 + breaks(path);
}

bool beginsWithOneOf(const std::string& text, const std::vector<std::string>& beginnings) {
  return std::any_of(beginnings.begin(), beginnings.end(),
                     [&](const std::string& beginning) { return text.starts_with(beginning); });
}

template <class Entry>
std::vector<const Entry*> recorded(const FinishedRun& run) {
  std::vector<const Entry*> entries;
  for (const auto& line : run.world.record().lines()) {
    if (const auto* entry = std::get_if<Entry>(&line.entry)) entries.push_back(entry);
  }
  return entries;
}

std::size_t panelCount(const FinishedRun& run) {
  return run.drawn.scenario.value("panels", Json::array()).size();
}

// --- Of every command line. ---

std::string answersOnce(const FinishedRun& run) {
  const Outcome& outcome = run.outcome;
  if (outcome.exitStatus == 0) {
    const bool object = Json::parse(outcome.output, nullptr, false).is_object();
    return object && outcome.errors.empty() ? "" : outcome.output + outcome.errors;
  }
  const bool usage = outcome.exitStatus == usageStatus;
  const bool printed =
      usage ? outcome.output.find("\nUsage:") != std::string::npos : outcome.output.empty();
  return printed && isOneLine(outcome.errors, run.drawn.target) ? ""
                                                                : outcome.output + outcome.errors;
}

// --- Of --verify. ---

std::string tellsTheTruth(const FinishedRun& run) {
  return run.outcome.exitStatus != 0 || run.verdict == "true" ? "" : run.verdict;
}

bool personClicks(const FinishedRun& run) {
  const Json acts = run.drawn.scenario.value("person", Json::array());
  return std::any_of(acts.begin(), acts.end(),
                     [](const Json& act) { return act.contains("clicks"); });
}

// What it chose may be unknown to the tool, and then it says so. A click of a person that a busy
// process takes late is not told from the tool's doing.
std::string hidesNoChoice(const FinishedRun& run) {
  if (run.outcome.exitStatus == 0 || run.verdict == "true" || personClicks(run)) return "";
  return run.outcome.errors.find("is unknown") == std::string::npos ? run.verdict : "";
}

// A success is of a panel of the browser that was named.
std::string choosesInItsOwnBrowser(const FinishedRun& run) {
  if (run.outcome.exitStatus != 0) return "";
  for (std::size_t i = 0; i < panelCount(run); ++i) {
    const simulator::Panel& panel = run.world.panel(i);
    const bool chosen = panel.outcome().end == simulator::PanelOutcome::End::chosen;
    if (chosen && panel.options().host == run.drawn.browser) return "";
  }
  return run.world.panelOutcomes();
}

std::string saysWhatItProved(const FinishedRun& run) {
  if (run.outcome.exitStatus != 0) return "";
  const Json result = Json::parse(run.outcome.output, nullptr, false);
  const auto path = std::filesystem::canonical(run.drawn.target).string();
  const std::string verified = result.value("verified", "");
  const bool right = result.value("ok", false) && result.value("strategy", "") == "verified" &&
                     (verified == "folder shown" || verified == "entry selected") &&
                     result.value("verifiedPath", "") == path &&
                     result.value("command", "") == run.drawn.arguments.front();
  return right ? "" : run.outcome.output;
}

// A process is silent for longer than what the tool keeps in hand before the watchdog.
bool requestsStall(const FinishedRun& run) {
  constexpr double inHandSeconds = 4;
  const Json faults = run.drawn.scenario.value("faults", Json::object());
  const Json busy = faults.value("busy", Json::array());
  return faults.contains("silentProcesses") ||
         std::any_of(busy.begin(), busy.end(), [](const Json& time) {
           return time["toSeconds"].get<double>() - time.value("fromSeconds", 0.0) > inHandSeconds;
         });
}

std::string failsInItsOwnWords(const FinishedRun& run) {
  const std::string& errors = run.outcome.errors;
  if (run.outcome.exitStatus == 0) return "";
  if (run.outcome.exitStatus == usageStatus) {
    return errors.starts_with("path is not a directory: ") ? "" : errors;
  }
  if (requestsStall(run) && errors.find("global watchdog") != errors.npos) return "";
  const bool known = beginsWithOneOf(
      errors, {"not verified: ", "folder does not exist: ", "path does not exist: "});
  return known ? "" : errors;
}

std::string endsBeforeTheWatchdog(const FinishedRun& run) {
  const double watchdog = std::max(12.0, run.drawn.timeoutSeconds + 8);
  const bool stopped = run.outcome.errors.find("global watchdog") != std::string::npos;
  if (requestsStall(run) || (!stopped && run.seconds < watchdog)) return "";
  return std::to_string(run.seconds) + " s: " + run.outcome.errors;
}

std::string postsNoMouseEvent(const FinishedRun& run) {
  const auto events = run.world.record().mouseEvents();
  return events == 0 ? "" : std::to_string(events) + " mouse events";
}

std::string postsNothingToTheSession(const FinishedRun& run) {
  const auto events = run.world.record().sessionEvents();
  return events == 0 ? "" : std::to_string(events) + " events";
}

// Keys that open, confirm and close a go-to sheet, to processes that may own the panel.
std::string postsOnlyTheKeysOfTheSheet(const FinishedRun& run) {
  constexpr std::array<int, 3> keys{5, 36, 53};  // G, Return, Escape
  std::vector<std::int32_t> owners{run.drawn.browser};
  for (std::size_t i = 0; i < panelCount(run); ++i) {
    const auto& options = run.world.panel(i).options();
    if (options.host == run.drawn.browser) owners.push_back(options.service);
  }
  for (const auto* posted : recorded<simulator::PostedKey>(run)) {
    const bool known = std::find(keys.begin(), keys.end(), posted->event.keyCode) != keys.end();
    const bool owner =
        posted->target && std::find(owners.begin(), owners.end(), *posted->target) != owners.end();
    if (!known || !owner || posted->event.text) {
      return "key " + std::to_string(posted->event.keyCode) + " to " +
             std::to_string(posted->target.value_or(0));
    }
  }
  return "";
}

// The Finder alone is asked, for the volume's name.
bool isAllowed(const simulator::ProgramStarted& started) {
  const std::string words = Json(started.arguments).dump();
  if (started.path.ends_with("/ps")) return true;
  if (started.path.ends_with("/osascript")) {
    return words.find("Finder") != words.npos && words.find("System Events") == words.npos;
  }
  return started.path.ends_with("background-window-capture") && words == "[\"list\"]";
}

std::string startsOnlyWhatTells(const FinishedRun& run) {
  for (const auto* started : recorded<simulator::ProgramStarted>(run)) {
    if (!isAllowed(*started)) return started->path + Json(started->arguments).dump();
  }
  return "";
}

// Only an application that was in front is ever brought there again. A person may have turned to it
// before the tool looked.
std::string activatesNothing(const FinishedRun& run) {
  std::vector<std::optional<std::int32_t>> wereInFront{run.frontmostBefore};
  for (const auto* change : recorded<simulator::FrontmostChanged>(run)) {
    wereInFront.push_back(change->from);
  }
  for (const auto* asked : recorded<simulator::ActivationAsked>(run)) {
    const bool was =
        std::find(wereInFront.begin(), wereInFront.end(), asked->pid) != wereInFront.end();
    if (asked->origin != simulator::Origin::person && !was) {
      return "process " + std::to_string(asked->pid);
    }
  }
  return "";
}

std::string leavesTheFrontAlone(const FinishedRun& run) {
  if (run.drawn.scenario.contains("person") || run.frontmostBefore == run.frontmostAfter) return "";
  return "process " + std::to_string(run.frontmostAfter.value_or(0));
}

// That a panel took a key the tool cannot know where no tree shows it, or where neither identifiers
// nor, it may be, titles tell of a second one.
bool mayBeOverlooked(const FinishedRun& run, const simulator::Panel& panel) {
  if (panel.options().shape == simulator::PanelShape::unseen) return true;
  return !panel.options().identifiers && panelCount(run) > 1;
}

// Every sheet is the tool's but one that was open from the start.
std::string leavesNoSheetOpen(const FinishedRun& run) {
  if (run.outcome.errors.find("its go-to sheet is still open") != std::string::npos) return "";
  for (std::size_t i = 0; i < panelCount(run); ++i) {
    const simulator::Panel& panel = run.world.panel(i);
    if (!panel.alive() || panel.outcome().end != simulator::PanelOutcome::End::none) continue;
    if (mayBeOverlooked(run, panel)) continue;
    int opened = panel.options().goTo.openAtStart ? -1 : 0;
    for (const auto& milestone : panel.milestones()) {
      if (milestone.text == "go-to sheet opened") ++opened;
      if (milestone.text == "go-to sheet closed") opened = 0;
    }
    if (opened > 0) return "panel " + std::to_string(i + 1);
  }
  return "";
}

// --- All of them. ---

using NamedRule = std::pair<const char*, Rule>;

std::vector<std::string> broken(const FinishedRun& run, const std::vector<NamedRule>& rules) {
  std::vector<std::string> texts;
  for (const auto& [name, rule] : rules) {
    const std::string what = rule(run);
    if (!what.empty()) texts.push_back(std::string(name) + ": " + what);
  }
  return texts;
}

}  // namespace

std::vector<std::string> brokenRules(const FinishedRun& run) {
  return broken(run, {{"one JSON object or one line of error", answersOnce}});
}

std::vector<std::string> brokenPromises(const FinishedRun& run) {
  return broken(run, {{"a success is true", tellsTheTruth},
                      {"an error says when a choice is unknown", hidesNoChoice},
                      {"a success is of the browser's own panel", choosesInItsOwnBrowser},
                      {"a success says what was proved", saysWhatItProved},
                      {"an error is one of the known ones", failsInItsOwnWords},
                      {"the run ends before the watchdog", endsBeforeTheWatchdog},
                      {"no mouse event", postsNoMouseEvent},
                      {"nothing to the session", postsNothingToTheSession},
                      {"only the keys of a go-to sheet", postsOnlyTheKeysOfTheSheet},
                      {"no program but those that tell something", startsOnlyWhatTells},
                      {"no activation", activatesNothing},
                      {"the same application stays in front", leavesTheFrontAlone},
                      {"no go-to sheet is left open", leavesNoSheetOpen}});
}

}  // namespace tessarine::test
