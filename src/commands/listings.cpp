#include "commands/listings.h"

#include <nlohmann/json.hpp>

#include "dialog/detection.h"
#include "dialog/traversal.h"
#include "panels/candidates.h"
#include "panels/capture.h"
#include "platform/accessibility.h"

namespace tessarine {
namespace {

constexpr WalkLimits inspectedLimits{8, 700};

Result listing(const char* command, std::int32_t primaryPid) {
  return {{"ok", true}, {"command", command}, {"primaryPid", primaryPid}};
}

Result appEntry(const AppRef& app) {
  Result windows = Result::array();
  for (const Element& window : topLevelWindows(app.app)) windows.push_back(windowSummary(window));
  return {{"pid", app.pid}, {"label", app.label}, {"windows", windows}};
}

Result panelEntry(const PanelWindowRef& window) {
  return {{"windowID", window.windowID},
          {"pid", window.pid},
          {"app", window.app},
          {"title", window.title},
          {"visible", panelWindowIsVisible(window)},
          {"frame", frameObject(window.frame)}};
}

Result nodeEntry(const ElementValues& node) {
  return {{"role", node.role()},
          {"title", node.title()},
          {"description", node.description()},
          {"value", node.inputValue()},
          {"frame", frameObject(node.frame())},
          {"actions", axActions(node.element())}};
}

Result rootEntry(const Element& element) {
  const AttributeNames asked({"AXRole", "AXTitle", "AXDescription", "AXPosition", "AXSize"});
  const ElementValues root(element, asked);
  return {{"role", root.role()},
          {"title", root.title()},
          {"description", root.description()},
          {"frame", frameObject(root.frame())}};
}

Result dialogEntry(const DialogRef& dialog) {
  const Element& root = dialog.node.element;
  Result entry{{"pid", dialog.pid}, {"label", dialog.label}, {"root", rootEntry(root)}};
  Result nodes = Result::array();
  walk(root, inspectedLimits,
       {"AXRole", "AXTitle", "AXDescription", "AXValue", "AXPosition", "AXSize"},
       [&](const VisitedNode& node) {
         nodes.push_back(nodeEntry(node));
         return false;
       });
  entry["chooserControlsAvailable"] = subtreeHasChooserSignature(root);
  entry["nodes"] = std::move(nodes);
  return entry;
}

}  // namespace

Result windowSummary(const Element& element) {
  const AttributeNames asked(
      {"AXRole", "AXSubrole", "AXTitle", "AXDescription", "AXPosition", "AXSize"});
  const ElementValues window(element, asked);
  return {{"role", window.role()},
          {"subrole", window.subrole()},
          {"title", window.title()},
          {"description", window.description()},
          {"frame", frameObject(window.frame())}};
}

Result listWindows(std::int32_t primaryPid) {
  Result result = listing("list-windows", primaryPid);
  result["apps"] = Result::array();
  for (const AppRef& app : candidateApps(primaryPid)) result["apps"].push_back(appEntry(app));
  return result;
}

Result listBackgroundPanels(std::int32_t primaryPid) {
  Result result = listing("list-background-panels", primaryPid);
  result["windows"] = Result::array();
  for (const auto& window : backgroundOpenPanelWindows(primaryPid)) {
    result["windows"].push_back(panelEntry(window));
  }
  return result;
}

Result inspectOpenDialog(std::int32_t primaryPid) {
  Result result = listing("inspect-open-dialog", primaryPid);
  result["dialogs"] = Result::array();
  for (const DialogRef& dialog : openDialogs(primaryPid, true, {})) {
    result["dialogs"].push_back(dialogEntry(dialog));
  }
  return result;
}

}  // namespace tessarine
