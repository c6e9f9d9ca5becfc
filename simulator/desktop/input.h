// Who receives keyboard and mouse events on the simulated desktop.
#pragma once

#include "simulator/desktop/request.h"
#include "simulator/desktop/window.h"

namespace simulator {

// How an event came to a process: posted to that process alone, or through the login session,
// as from real hardware.
enum class Route { process, session };

// What a panel or a browser window implements. The results say whether the event was taken; one
// that was not is offered to the process's next receiver. A receiver may remove itself, and others,
// from the process while it handles an event.
class InputReceiver {
 public:
  virtual ~InputReceiver() = default;
  virtual bool keyEvent(const KeyEvent& event, Route route) = 0;
  // `window` is the topmost window at the point (of the process, for Route::process).
  virtual bool mouseEvent(const MouseEvent& event, Window& window, Route route) = 0;
};

}  // namespace simulator
