#include "simulator/service/server_report.h"

#include <nlohmann/json.hpp>
#include <optional>
#include <vector>

namespace simulator {
namespace {

using Json = nlohmann::ordered_json;

std::string describe(const OpenPanel& panel) {
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
Json panelJson(const OpenPanel& panel) {
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

std::string stateJson(const Scene& scene) {
  Json panels = Json::array();
  for (const auto& panel : scene.panels) panels.push_back(panelJson(*panel));
  const Json state = {{"now", scene.desktop.now()},
                      {"processes", processesJson(scene.desktop)},
                      {"windows", windowsJson(scene.desktop)},
                      {"panels", panels},
                      {"record", scene.desktop.record().toJson()}};
  return state.dump(2, ' ', false, Json::error_handler_t::replace);
}

}  // namespace simulator
