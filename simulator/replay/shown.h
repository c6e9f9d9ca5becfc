// What a person sees of a panel: its elements as far as they show something.
#pragma once

#include <vector>

#include "simulator/desktop/element.h"
#include "simulator/desktop/record.h"
#include "simulator/panel/panel.h"

namespace simulator {

// The part without what stands in `others`. Elements come in the order of drawing. Left out are
// those that only hold others, those without a frame and those that are scrolled out of sight, of
// which rows and items are counted.
PanelShown shownPart(int panel, const PanelPart& part, const std::vector<PanelPart>& others);

}  // namespace simulator
