// A scenario brought to life.
#pragma once

#include <memory>
#include <vector>

#include "simulator/desktop/desktop.h"
#include "simulator/panel/open_panel.h"
#include "simulator/scenario/scenario.h"

namespace simulator {

// A desktop with the panels that live on it. Everything that the scenario wants at time 0 is there.
struct Scene {
  Desktop desktop;
  PanelSurroundings surroundings;
  std::vector<std::unique_ptr<Panel>> panels;  // in the scenario's order

  std::vector<PanelOutcome> outcomes() const;
};

std::unique_ptr<Scene> makeScene(const Scenario& scenario);

// Ends an application and the services that draw for it. `remembered`: the workspace still knows
// it.
void quitApplication(Desktop& desktop, Pid pid, bool remembered);

}  // namespace simulator
