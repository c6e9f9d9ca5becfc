#include "simulator/seams/virtual/virtual_world.h"

#include "simulator/frameworks/desktop_link.h"
#include "simulator/frameworks/object.h"
#include "simulator/seams/virtual/worker.h"

namespace simulator {
namespace {

Desktop* attached = nullptr;

class VirtualLink : public DesktopLink {
 public:
  Reply ask(const Request& request) override {
    Desktop& desktop = attachedDesktop("a request to the desktop");
    passTimeUntil(desktop.now() + desktop.price(request), "a request to the desktop");
    return desktop.answer(request);
  }
};

}  // namespace

void attachDesktop(Desktop* desktop) {
  attached = desktop;
  forgetPendingWork();
}

Desktop& attachedDesktop(const char* user) {
  if (!attached) refuse(user, "no desktop is attached");
  return *attached;
}

void passTimeUntil(Seconds time, const char* user) {
  Desktop& desktop = attachedDesktop(user);
  if (const auto end = waitersPatience(); end && time > *end) {
    desktop.advanceTo(*end);
    stopForGood();
  }
  desktop.advanceTo(time);
}

DesktopLink& desktopLink() {
  static VirtualLink link;
  return link;
}

}  // namespace simulator
