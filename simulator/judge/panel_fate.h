// What became of a panel, as far as a call of the tool can be judged by it.
#pragma once

#include <optional>
#include <vector>

#include "simulator/panel/open_panel.h"
#include "simulator/scenario/scene.h"

namespace simulator {

struct PanelFate {
  std::optional<Seconds> openedAt;  // absent: it never did
  PanelOutcome outcome;
  std::optional<Seconds> goneAt;  // it ended with its application, neither chosen nor cancelled
  // A click of a person at the machine chose or cancelled it. Told by the record: the click has the
  // time of the end and lies in the panel. What a person only prepared, as a row that they selected
  // and the tool then confirmed, cannot be told from the tool's own doing and is not meant here.
  bool endedByPerson = false;
};

// In the scenario's order.
std::vector<PanelFate> panelFates(const Scene& scene);

}  // namespace simulator
