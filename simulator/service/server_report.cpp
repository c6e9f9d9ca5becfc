#include "simulator/service/server_report.h"

#include <nlohmann/json.hpp>
#include <optional>
#include <vector>

#include "simulator/judge/panel_fate.h"
#include "simulator/judge/verdict.h"
#include "simulator/panel/panel_texts.h"
#include "simulator/replay/recording.h"

namespace simulator {
namespace {

using Json = nlohmann::ordered_json;

std::string describe(const Panel& panel) {
  const PanelOutcome& outcome = panel.outcome();
  if (outcome.end == PanelOutcome::End::chosen) return "chosen " + outcome.path;
  if (outcome.end == PanelOutcome::End::cancelled) return "cancelled";
  if (!panel.hasOpened()) return "not opened";
  return panel.alive() ? "still open" : "ended with its application";
}

std::string applicationName(const Desktop& desktop, const std::optional<Pid>& pid) {
  const Process* process = pid ? desktop.findProcess(*pid) : nullptr;
  return process ? process->name : "none";
}

// The first application to be frontmost was so from the start.
std::string frontmostLine(const Desktop& desktop) {
  std::string text;
  bool changed = false;
  for (const RecordLine& line : desktop.record().lines()) {
    const auto* change = std::get_if<FrontmostChanged>(&line.entry);
    if (!change) continue;
    const bool atStart = line.time == 0 && !change->from;
    if (!atStart) {
      if (text.empty()) text = applicationName(desktop, change->from);
      text += ", then ";
      changed = true;
    }
    text += applicationName(desktop, change->to);
  }
  if (text.empty()) text = applicationName(desktop, desktop.frontmost());
  return "frontmost application: " + text + (changed ? "\n" : ", never changed\n");
}

Json frameJson(const Rect& frame) {
  return {{"x", frame.x}, {"y", frame.y}, {"width", frame.width}, {"height", frame.height}};
}

Json processesJson(const Desktop& desktop) {
  Json processes = Json::array();
  for (const auto& process : desktop.processes()) {
    processes.push_back({{"pid", process->pid},
                         {"name", process->name},
                         {"command", process->command},
                         {"frontmost", desktop.frontmost() == process->pid},
                         {"terminated", process->terminated}});
  }
  return processes;
}

Json windowsJson(const Desktop& desktop) {
  Json windows = Json::array();
  for (const auto& window : desktop.windows()) {
    windows.push_back({{"number", window->number},
                       {"owner", window->owner},
                       {"title", window->title},
                       {"frame", frameJson(window->frame)},
                       {"listed", window->listed}});
  }
  return windows;
}

// "outcome" is "none", "chosen" or "cancelled"; "path" and "at" stand beside one that came about.
Json outcomeJson(const Panel& panel) {
  const PanelOutcome& outcome = panel.outcome();
  switch (outcome.end) {
    case PanelOutcome::End::chosen:
      return {{"outcome", "chosen"}, {"path", outcome.path}, {"at", outcome.at}};
    case PanelOutcome::End::cancelled:
      return {{"outcome", "cancelled"}, {"at", outcome.at}};
    case PanelOutcome::End::none:
      break;
  }
  return {{"outcome", "none"}};
}

Json panelJson(const Panel& panel) {
  const PanelOptions& options = panel.options();
  Json json = outcomeJson(panel);
  json["host"] = options.host;
  json["service"] = options.service;
  json["title"] = panel.title();
  json["windows"] = panel.windowNumbers();
  json["milestones"] = Json::array();
  for (const PanelMilestone& milestone : panel.milestones()) {
    json["milestones"].push_back({{"at", milestone.at}, {"text", milestone.text}});
  }
  return json;
}

template <class T>
Json orNull(const std::optional<T>& value) {
  return value ? Json(*value) : Json();
}

// The verdict on a call that still runs is null.
Json callsJson(const std::vector<ToolCall>& calls, const std::vector<PanelFate>& fates) {
  const std::vector<std::string> verdicts = callVerdicts(calls, fates);
  Json json = Json::array();
  for (std::size_t i = 0; i < calls.size(); ++i) {
    const ToolCall& call = calls[i];
    json.push_back({{"arguments", call.arguments},
                    {"startedAt", call.startedAt},
                    {"endedAt", orNull(call.endedAt)},
                    {"status", orNull(call.status)},
                    {"output", call.output},
                    {"verdict", call.endedAt ? Json(verdicts[i]) : Json()}});
  }
  return json;
}

// What a state and a record have in common.
Json accountJson(const Scene& scene, const CallLog& log) {
  const std::vector<PanelFate> fates = panelFates(scene);
  Json screens = Json::array();
  for (const Rect& screen : scene.desktop.screens()) screens.push_back(frameJson(screen));
  Json panels = Json::array();
  for (const auto& panel : scene.panels) panels.push_back(panelJson(*panel));
  return {{"verdict", overallVerdict(log.calls(), fates)},
          {"screens", screens},
          {"processes", processesJson(scene.desktop)},
          {"panels", panels},
          {"calls", callsJson(log.calls(), fates)}};
}

}  // namespace

std::string outcomeLines(const Scene& scene) {
  std::string text = scene.panels.empty() ? "no panel\n" : "";
  int number = 0;
  for (const auto& panel : scene.panels) {
    text += "panel " + std::to_string(++number) + ": " + describe(*panel) + "\n";
  }
  const Record& record = scene.desktop.record();
  text += "mouse events: " + std::to_string(record.mouseEvents()) + "\n";
  text += "session-wide events: " + std::to_string(record.sessionEvents()) + "\n";
  return text + frontmostLine(scene.desktop);
}

std::string stateJson(const Scene& scene, const CallLog& log, bool withRequests) {
  Json state = {{"version", record_version}, {"now", scene.desktop.now()}};
  state.update(accountJson(scene, log));
  state["windows"] = windowsJson(scene.desktop);
  state["record"] = scene.desktop.record().toJson(withRequests);
  return state.dump(2, ' ', false, Json::error_handler_t::replace);
}

std::string recordJson(const Scene& scene, const CallLog& log, const std::string& scenario,
                       bool withRequests) {
  Json head = {{"version", record_version}, {"scenario", scenario}};
  head.update(accountJson(scene, log));
  const auto shown = [](const Json& json) {
    return json.dump(-1, ' ', false, Json::error_handler_t::replace);
  };
  std::string text = "{\n";
  for (const auto& [key, value] : head.items()) text += shown(key) + ": " + shown(value) + ",\n";
  text += "\"entries\": [";
  const char* before = "\n";
  for (const Json& entry : scene.desktop.record().toJson(withRequests)) {
    text += before + shown(entry);
    before = ",\n";
  }
  return text + "\n]}\n";
}

}  // namespace simulator
