// Accessibility elements and the records that carry them from one unit to the next.
#pragma once

#include <ApplicationServices/ApplicationServices.h>

#include <cstdint>
#include <optional>
#include <string>

#include "core/geometry.h"
#include "platform/cf_ref.h"

namespace tessarine {

// A handle to a user-interface element of some process. Copies share the platform's object; two
// handles are equal when they name the same element.
class Element {
 public:
  explicit Element(CfRef<AXUIElementRef> reference) : reference_(std::move(reference)) {}

  // The application element of a process, which need not exist.
  static Element application(std::int32_t pid) {
    return Element(CfRef<AXUIElementRef>::adopt(AXUIElementCreateApplication(pid)));
  }

  AXUIElementRef get() const { return reference_.get(); }
  bool operator==(const Element& other) const { return CFEqual(get(), other.get()); }

 private:
  CfRef<AXUIElementRef> reference_;
};

// An application that may own the Open panel.
struct AppRef {
  Element app;
  std::int32_t pid = 0;
  std::string label;  // primaryBrowserLabel or panelServiceLabel
};

// An element reached during a walk, with the element that it was reached from (absent for the
// root).
struct NodeRef {
  Element element;
  std::optional<Element> parent;
};

// A found Open dialog: its root, and the application in whose tree it was found.
struct DialogRef {
  NodeRef node;
  Element app;
  std::int32_t pid = 0;
  std::string label;
};

// An on-screen panel window that the capture helper reported.
struct PanelWindowRef {
  std::uint32_t windowID = 0;  // the window server's number; 0 when unknown
  std::int32_t pid = 0;        // owning process
  std::string app;             // the owning application's name
  std::string title;
  Rect frame;  // screen points, origin at the top left of the main display
};

}  // namespace tessarine
