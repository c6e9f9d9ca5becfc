#include "commands/listings.h"

#include <nlohmann/json.hpp>

#include "dialog/detection.h"
#include "dialog/traversal.h"
#include "panels/candidates.h"
#include "panels/capture.h"
#include "platform/accessibility.h"

namespace tessarine {
namespace {

constexpr int deepestNode = 8;
constexpr int mostNodes = 700;

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

Result nodeEntry(const Element& element) {
  return {{"role", axRole(element)},
          {"title", axTitle(element)},
          {"description", axDescription(element)},
          {"value", axInputValue(element)},
          {"frame", frameObject(axFrame(element))},
          {"actions", axActions(element)}};
}

Result rootEntry(const Element& root) {
  return {{"role", axRole(root)},
          {"title", axTitle(root)},
          {"description", axDescription(root)},
          {"frame", frameObject(axFrame(root))}};
}

Result dialogEntry(const DialogRef& dialog) {
  const Element& root = dialog.node.element;
  Result entry{{"pid", dialog.pid}, {"label", dialog.label}, {"root", rootEntry(root)}};
  Result nodes = Result::array();
  for (const NodeRef& node : breadthFirstNodes(root, deepestNode, mostNodes)) {
    nodes.push_back(nodeEntry(node.element));
  }
  entry["chooserControlsAvailable"] = subtreeHasChooserSignature(root);
  entry["nodes"] = std::move(nodes);
  return entry;
}

}  // namespace

Result windowSummary(const Element& window) {
  return {{"role", axRole(window)},
          {"subrole", axSubrole(window)},
          {"title", axTitle(window)},
          {"description", axDescription(window)},
          {"frame", frameObject(axFrame(window))}};
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
