#include "simulator/service/server_report.h"

#include <nlohmann/json.hpp>
#include <optional>
#include <vector>

#include "simulator/judge/panel_fate.h"
#include "simulator/judge/verdict.h"
#include "simulator/panel/panel_texts.h"

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
  return {frame.x, frame.y, frame.width, frame.height};
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
                    {"verdict", call.endedAt ? Json(verdicts[i]) : Json()}});
  }
  return json;
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

std::string stateJson(const Scene& scene, const CallLog& log) {
  const std::vector<PanelFate> fates = panelFates(scene);
  Json panels = Json::array();
  for (const auto& panel : scene.panels) panels.push_back(panelJson(*panel));
  const Json state = {{"now", scene.desktop.now()},
                      {"processes", processesJson(scene.desktop)},
                      {"windows", windowsJson(scene.desktop)},
                      {"panels", panels},
                      {"calls", callsJson(log.calls(), fates)},
                      {"verdict", overallVerdict(log.calls(), fates)},
                      {"record", scene.desktop.record().toJson()}};
  return state.dump(2, ' ', false, Json::error_handler_t::replace);
}

}  // namespace simulator
