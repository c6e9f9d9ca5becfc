// The desktop's windows, and the way of posted events to who receives them.
#include <algorithm>
#include <cassert>

#include "simulator/desktop/desktop.h"
#include "simulator/desktop/unmodelled.h"

namespace simulator {
namespace {

bool standsBelow(const Element* element, const Element* ancestor) {
  while (element != nullptr && element != ancestor) element = element->parent();
  return element != nullptr;
}

// Offers an event to the receivers of a process, topmost first, until one takes it.
template <typename Offer>
void offerToReceivers(const Process& process, Offer offer) {
  const std::vector<InputReceiver*> receivers = process.receivers;
  for (InputReceiver* receiver : receivers) {
    const auto& present = process.receivers;
    const bool remains = std::find(present.begin(), present.end(), receiver) != present.end();
    if (remains && offer(*receiver)) return;
  }
}

}  // namespace

Window& Desktop::addWindow(Window window) {
  assert(findProcess(window.owner) != nullptr);
  window.number = next_window_number_++;
  if (findProcess(applicationOf(window.owner))->on_other_space) window.on_screen = false;
  record_.add(now_, WindowOpened{window.number, window.owner, window.title});

  // Assumed (Live.ThePanelOfABackgroundApplicationStandsBehindTheApplicationInFront): a background
  // application cannot cover the one in front.
  auto position = windows_.begin();
  if (!belongsToFrontmost(window)) {
    position = std::find_if_not(windows_.begin(), windows_.end(),
                                [this](const auto& other) { return belongsToFrontmost(*other); });
  }
  const auto added = windows_.insert(position, std::make_unique<Window>(std::move(window)));
  makeRaisable(**added);
  return **added;
}

void Desktop::makeRaisable(const Window& window) {
  if (window.element == nullptr) return;
  if (window.element->parent() != &findProcess(window.owner)->root) return;
  window.element->addAction("AXRaise", [this, number = window.number] {
    raiseWindow(number);
    return ax::success;
  });
}

void Desktop::removeWindow(std::uint32_t number) {
  const Window* window = findWindow(number);
  if (window == nullptr) return;
  Element* element = window->element;
  std::vector<std::unique_ptr<Window>> remaining;
  for (auto& other : windows_) {
    const bool attached = element != nullptr && standsBelow(other->element, element);
    if (other->number != number && !attached) {
      remaining.push_back(std::move(other));
      continue;
    }
    if (!other->ghost) record_.add(now_, WindowClosed{other->number, other->owner, other->title});
    Process& owner = *findProcess(other->owner);
    if (owner.focused_window == other->number) owner.focused_window.reset();
  }
  windows_ = std::move(remaining);
  if (element != nullptr && element->parent() != nullptr) element->parent()->removeChild(*element);
}

void Desktop::leaveGhost(std::uint32_t number, bool capturable) {
  const auto at = std::find_if(windows_.begin(), windows_.end(),
                               [&](const auto& window) { return window->number == number; });
  if (at == windows_.end()) return;
  Window ghost = **at;
  ghost.element = nullptr;
  ghost.ghost = true;
  ghost.capturable = capturable;
  const auto place = static_cast<std::size_t>(at - windows_.begin());
  removeWindow(number);
  const auto position = windows_.begin() + static_cast<long>(std::min(place, windows_.size()));
  windows_.insert(position, std::make_unique<Window>(std::move(ghost)));
}

std::uint32_t Desktop::renumberWindow(std::uint32_t number) {
  Window* window = findWindow(number);
  assert(window != nullptr);
  window->number = next_window_number_++;
  Process& owner = *findProcess(window->owner);
  if (owner.focused_window == number) owner.focused_window = window->number;
  makeRaisable(*window);
  record_.add(now_, WindowClosed{number, window->owner, window->title});
  record_.add(now_, WindowOpened{window->number, window->owner, window->title});
  return window->number;
}

Window* Desktop::findWindow(std::uint32_t number) {
  for (const auto& window : windows_) {
    if (window->number == number) return window.get();
  }
  return nullptr;
}

void Desktop::raiseWindow(std::uint32_t number) {
  const Window* raised = findWindow(number);
  if (raised == nullptr) return;
  const Element* element = raised->element;
  std::stable_partition(windows_.begin(), windows_.end(), [&](const auto& window) {
    return window->number == number ||
           (element != nullptr && standsBelow(window->element, element)) ||
           findProcess(window->owner)->host == raised->owner;
  });
}

Window* Desktop::windowAt(Point point, std::optional<Pid> owner) {
  for (const auto& window : windows_) {
    const bool candidate =
        window->on_screen && !window->ghost && (!owner || window->owner == *owner);
    if (candidate && contains(window->frame, point)) return window.get();
  }
  return nullptr;
}

bool Desktop::belongsToFrontmost(const Window& window) const {
  return frontmost_ && applicationOf(window.owner) == *frontmost_;
}

// The application that a process draws for, or the process itself.
Pid Desktop::applicationOf(Pid pid) const {
  return findProcess(pid)->host.value_or(pid);
}

// Hardware is counted, which people alone press.
// Assumed (Live.KeysPostedToAPanelAreNotCounted, Live.WhatIsPostedToTheSessionIsNotCounted,
// Live.WhatSystemEventsTypesIsNotCounted): what programs post is not, neither to a process nor to
// the session. The documentation says that the hardware's events are counted, and no more.
void Desktop::countPress(std::uint32_t type, Origin origin) {
  if (origin == Origin::person) ++presses_.at(type);
}

void Desktop::postKey(const KeyEvent& event, std::optional<Pid> target, Origin origin) {
  runWatchers();
  record_.add(now_, PostedKey{target, event, origin});
  if (event.down) countPress(pressed::key, origin);
  // Assumed (no test can tell: the tests themselves need trust): what a program without trust posts
  // is dropped without an error.
  if (faults_.untrusted && origin != Origin::person) return;
  const std::optional<Pid> receiving = target ? target : frontmost_;
  const Process* process = receiving ? findProcess(*receiving) : nullptr;
  if (process == nullptr) return;
  const Route route = target ? Route::process : Route::session;
  whenFree(process->pid, [process, event, route] {
    offerToReceivers(*process,
                     [&](InputReceiver& receiver) { return receiver.keyEvent(event, route); });
  });
}

// Events that reach a busy process wait until it has time for them.
void Desktop::whenFree(Pid pid, std::function<void()> effect) {
  const Seconds wait = busyUntil(pid) - now_;
  if (wait <= 0) return effect();
  schedule(wait, std::move(effect));
}

void Desktop::postMouse(const MouseEvent& event, std::optional<Pid> target, Origin origin) {
  if (event.type != left_down && event.type != left_up) {
    abortUnmodelled("mouse event of type " + std::to_string(event.type));
  }
  runWatchers();
  record_.add(now_, PostedMouse{target, event, origin});
  if (event.type == left_down) countPress(pressed::left_button, origin);
  if (faults_.untrusted && origin != Origin::person) return;
  const Window* window = windowAt(event.at, target);
  if (window == nullptr) return;

  const Pid owner = window->owner;
  const std::uint32_t number = window->number;
  if (!target && event.type == left_down && findProcess(applicationOf(owner))->application) {
    setFrontmost(applicationOf(owner));
  }
  // Assumed (Live.TheClickThatBringsAnApplicationForwardAlsoReachesTheControlUnderIt): nobody
  // swallows such a click.
  const Route route = target ? Route::process : Route::session;
  whenFree(owner, [this, owner, number, event, route] {
    offerToReceivers(*findProcess(owner), [&](InputReceiver& receiver) {
      Window* hit = findWindow(number);  // null once a receiver has closed it
      return hit != nullptr && receiver.mouseEvent(event, *hit, route);
    });
  });
}

}  // namespace simulator
