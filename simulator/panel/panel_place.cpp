#include "simulator/panel/panel_place.h"

#include <cassert>

namespace simulator {

void startPanelService(Desktop& desktop, const PanelOptions& options) {
  if (desktop.findProcess(options.service) != nullptr) return;
  desktop.addProcess({.pid = options.service,
                      .name = options.serviceName,
                      .command = options.serviceCommand,
                      .application = false,
                      .host = options.host});
}

Element& oldestWindowOf(const Desktop& desktop, Pid application) {
  const Window* oldest = nullptr;
  for (const auto& window : desktop.windows()) {
    const bool shown = window->owner == application && window->element != nullptr;
    if (shown && (oldest == nullptr || window->number < oldest->number)) oldest = window.get();
  }
  assert(oldest != nullptr);
  return *oldest->element;
}

// Measured: the window list calls the host's window by its title.
// Assumed (Live.TheWindowListNamesASheetAsItsTitleSays): a sheet without a title has none there.
// Assumed (Live.TheServicesWindowHasNoTitle): the service's second window has no title of its own,
// except where it is the very window that accessibility shows with one.
std::string windowTitle(const PanelOptions& options, Pid owner, const std::string& title) {
  if (owner == options.host) return options.hostTitle.value_or(title);
  const bool own = options.shape == PanelShape::serviceWindow;
  return options.serviceTitle.value_or(own ? title : "");
}

bool listsWindowsOf(const PanelOptions& options, Pid owner) {
  if (options.listed == ListedWindows::hostAndService) return true;
  return options.listed == (owner == options.host ? ListedWindows::host : ListedWindows::service);
}

}  // namespace simulator
