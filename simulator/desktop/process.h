// A process of the simulated desktop.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "simulator/desktop/element.h"
#include "simulator/desktop/input.h"
#include "simulator/desktop/value.h"

namespace simulator {

// What a process starts as.
struct ProcessOptions {
  Pid pid = 0;                // 0: the desktop chooses a free one
  std::string name;           // "Browser"
  std::string command;        // "/Applications/Browser.app/Contents/MacOS/Browser --flag"
  bool application = true;    // registered with the workspace; may become frontmost
  std::optional<Pid> host;    // the application whose panels this process draws
  bool onOtherSpace = false;  // all its windows stand on another space until it comes forward
};

// The application element is number 0. Besides what is `set` on it, it answers "AXWindows" (front
// to back; the windows whose elements are its children), "AXMainWindow" (the first of them),
// "AXFocusedWindow" and "AXFrontmost" (settable) from the desktop.
struct Process {
  explicit Process(const ProcessOptions& options);

  Pid pid;
  std::string name;
  std::string command;
  bool application;
  std::optional<Pid> host;
  bool on_other_space;
  bool terminated = false;
  bool remembered = false;  // terminated, and the workspace still knows the application
  ElementTable elements;
  Element root;  // the application element, role "AXApplication", "AXTitle" the name
  std::vector<InputReceiver*> receivers;        // top first; not owned
  std::optional<std::uint32_t> focused_window;  // absent: the frontmost window of the process that
                                                // has an element
};

}  // namespace simulator
