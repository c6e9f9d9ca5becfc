// Clicking blind into a captured panel window: where to click, and the clicks. Points are screen
// points, origin at the top left of the main display; what is on a screen is told by the screens'
// own frames, without a conversion (platform/screens.h).
#pragma once

#include <cstdint>
#include <vector>

#include "platform/element.h"

namespace tessarine {

// Where the Choose button is expected: four offsets from the frame's bottom-right corner, those
// that lie on a screen, in order of preference.
std::vector<Point> panelChoosePoints(const PanelWindowRef& window);

// A point in the part of the panel that is on a screen, the first that shows any of it: halfway
// down the part but at least 24 points below its top; at the frame's middle but 4 points inside the
// part's sides (its right side alone when it is narrower than 8 points). The frame's centre when
// less than 30 points of height show.
Point panelContentPoint(const PanelWindowRef& window);

// The processes that may take the panel's input: its owner, then the browser.
std::vector<std::int32_t> panelEventPIDs(const PanelWindowRef& window, std::int32_t primaryPid);

// One click at panelContentPoint, then 0.18 s. `global` posts it to the session instead of the
// process.
void clickPanelContent(const PanelWindowRef& window, std::int32_t eventPid, bool global);

// One click, to the process, at the centre of its captured panel window, or else of the preferred
// one; then 0.18 s. Does nothing when no panel is captured.
void clickBackgroundPanelWindow(std::int32_t primaryPid, std::int32_t eventPid);

}  // namespace tessarine
