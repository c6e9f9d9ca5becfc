// What has changed from one look at a part of a panel to the next, in words.
#pragma once

#include <string>

#include "simulator/desktop/record.h"

namespace simulator {

// "“Select” is enabled", "“beta” is selected"; of many changes the first three.
std::string changeWords(const PanelShown& before, const PanelShown& after);

}  // namespace simulator
