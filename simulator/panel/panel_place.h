// Where on the desktop a panel stands.
#pragma once

#include <string>

#include "simulator/desktop/desktop.h"
#include "simulator/panel/panel_options.h"

namespace simulator {

// Starts the process that draws the panel, unless it runs already.
void startPanelService(Desktop& desktop, const PanelOptions& options);

// The element of the oldest window of the application that accessibility shows, which must exist.
Element& oldestWindowOf(const Desktop& desktop, Pid application);

// What the window list calls the panel's windows of a process. `title` is that of the panel itself,
// as accessibility shows it.
std::string windowTitle(const PanelOptions& options, Pid owner, const std::string& title);

// Whether the window list names the panel's window of that process.
bool listsWindowsOf(const PanelOptions& options, Pid owner);

}  // namespace simulator
