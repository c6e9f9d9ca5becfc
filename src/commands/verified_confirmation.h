// The end of --verify: the panel is seen to show the target, confirmed, and seen to close.
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "dialog/panel_sight.h"
#include "navigation/panel_choice.h"
#include "platform/clock.h"
#include "platform/events.h"

namespace tessarine {

// Since when nobody has been seen to press a key or a mouse button, from its making on.
class Quiet {
 public:
  double since();  // in the clock's time

 private:
  std::uint64_t presses_ = pressesByPeople();
  double since_ = currentTime();
};

// Presses the confirm button, once, at a moment at which the target is proven, the button is
// enabled and nobody has pressed anything in the panel's application for a second; waits 4 s for
// such a moment, or looks once when the panel was not brought to the target. Then the panel has 6 s
// to go, 1 s after a press that was refused; a press that went unanswered is awaited until its
// process answers again, for 6 s. `windows` are those that were listed before, absent when the list
// cannot be had; the panel's has 4 s to leave it.
//
// Throws notVerified, as commands/verified_choice.h lists it, and what glance throws; TimeIsUp also
// when less than a second is left for the press.
Proof confirmPanel(PanelChoice& choice, std::int32_t primaryPid,
                   const std::optional<std::vector<PanelWindowRef>>& windows, Quiet& quiet);

}  // namespace tessarine
