#include "simulator/judge/panel_fate.h"

#include <algorithm>
#include <variant>

namespace simulator {
namespace {

// When the first of the panel's windows closed.
Seconds closingTime(const Panel& panel, const Desktop& desktop) {
  const auto& numbers = panel.windowNumbers();
  for (const RecordLine& line : desktop.record().lines()) {
    const auto* closed = std::get_if<WindowClosed>(&line.entry);
    if (closed && std::ranges::find(numbers, closed->number) != numbers.end()) return line.time;
  }
  return desktop.now();
}

bool endedByPerson(const Panel& panel, const Record& record) {
  const PanelOutcome& outcome = panel.outcome();
  if (outcome.end == PanelOutcome::End::none) return false;
  return std::ranges::any_of(record.lines(), [&](const RecordLine& line) {
    const auto* click = std::get_if<PostedMouse>(&line.entry);
    return click && click->origin == Origin::person && line.time == outcome.at &&
           contains(panel.options().frame, click->event.at);
  });
}

}  // namespace

std::vector<PanelFate> panelFates(const Scene& scene) {
  std::vector<PanelFate> fates;
  for (const auto& panel : scene.panels) {
    PanelFate fate;
    fate.outcome = panel->outcome();
    if (panel->hasOpened()) {
      fate.openedAt = panel->milestones().front().at;
      const bool ended = fate.outcome.end != PanelOutcome::End::none;
      if (!ended && !panel->alive()) fate.goneAt = closingTime(*panel, scene.desktop);
      fate.endedByPerson = endedByPerson(*panel, scene.desktop.record());
    }
    fates.push_back(std::move(fate));
  }
  return fates;
}

}  // namespace simulator
