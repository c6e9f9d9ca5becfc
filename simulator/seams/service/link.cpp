#include <cstdlib>
#include <memory>
#include <nlohmann/json.hpp>

#include "simulator/frameworks/desktop_link.h"
#include "simulator/service/client.h"

namespace simulator {
namespace {

// Without a service: nothing runs, nobody may look or presses anything, and there is one screen. A
// program that the user does not trust with accessibility is answered, as was measured on macOS 26,
// that its requests cannot complete.
struct EmptyDesktop {
  Reply operator()(const CopyAttribute&) const { return {ax::cannotComplete, {}}; }
  Reply operator()(const CopyAttributes&) const { return {ax::cannotComplete, {}}; }
  Reply operator()(const SetAttribute&) const { return {ax::cannotComplete, {}}; }
  Reply operator()(const CopyActionNames&) const { return {ax::cannotComplete, {}}; }
  Reply operator()(const PerformAction&) const { return {ax::cannotComplete, {}}; }
  Reply operator()(const PostEvent&) const { return {}; }
  Reply operator()(const AskPresses&) const { return {ax::success, 0.0}; }
  Reply operator()(const AskTrust&) const { return {ax::success, false}; }
  Reply operator()(const AskScreenCapture&) const { return {ax::success, false}; }
  Reply operator()(const AskAutomation&) const {
    return {ax::success, static_cast<double>(automation::notRunning)};
  }
  Reply operator()(const AskFrontmost&) const { return {}; }
  Reply operator()(const AskRunning&) const { return {}; }
  Reply operator()(const Activate&) const { return {ax::success, false}; }
  Reply operator()(const AskScreens&) const {
    const Value screen = List{0.0, 0.0, 1440.0, 900.0};
    return {ax::success, List{screen}};
  }
  Reply operator()(const AskWindows&) const { return {}; }
  Reply operator()(const AskDisplayName& request) const {
    std::string path = request.path;
    while (path.size() > 1 && path.ends_with('/')) path.pop_back();
    if (path != "/") path.erase(0, path.rfind('/') + 1);
    return {ax::success, path};
  }
};

// The calling thread's own connection: a request that is not answered holds up no other thread.
// Null when the environment names no desktop.
Connection* connection() {
  thread_local const std::unique_ptr<Connection> own = []() -> std::unique_ptr<Connection> {
    const char* path = std::getenv(desktop_variable);
    return path ? std::make_unique<Connection>(path) : nullptr;
  }();
  return own.get();
}

class ServiceLink : public DesktopLink {
 public:
  Reply ask(const Request& request) override {
    try {
      if (Connection* service = connection()) return decodeReply(service->exchange(request));
    } catch (const WireError& error) {
      endWithoutDesktop(error);
    }
    return std::visit(EmptyDesktop{}, request);
  }
};

}  // namespace

DesktopLink& desktopLink() {
  static ServiceLink link;
  return link;
}

}  // namespace simulator
