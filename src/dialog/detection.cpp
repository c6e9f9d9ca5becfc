#include "dialog/detection.h"

#include <array>
#include <string>
#include <string_view>

#include "core/lists.h"
#include "core/tables.h"
#include "core/text.h"
#include "dialog/controls.h"
#include "dialog/traversal.h"
#include "panels/candidates.h"
#include "panels/panel_owners.h"
#include "platform/accessibility.h"

namespace tessarine {
namespace {

constexpr std::array<std::string_view, 3> dialogRoles{"AXWindow", "AXSheet", "AXDialog"};
constexpr std::array<std::string_view, 6> containerRoles{
    "AXGroup", "AXSheet", "AXWindow", "AXSplitGroup", "AXSplitterGroup", "AXScrollArea"};
constexpr int mostClimbedElements = 24;
constexpr WalkLimits shallowLimits{4, 300};
constexpr WalkLimits signatureLimits{8, 360};
constexpr WalkLimits markedPopupLimits{8, 700};

// The signs of a chooser among the nodes of one walk.
struct ChooserSigns {
  bool cancel = false;
  bool choose = false;
  bool location = false;
  bool list = false;
  bool extensionTitle = false;
  bool nameField = false;

  bool showAChooser() const {
    return cancel && choose && (nameField || location || list || extensionTitle);
  }
};

const std::vector<std::string> signAttributes{"AXRole",        "AXTitle",    "AXValue",
                                              "AXDescription", "AXPosition", "AXSize"};

void noteSigns(const VisitedNode& node, ChooserSigns& signs) {
  if (!node.isWithin(signatureLimits)) return;
  const std::string role = node.role();
  if (role == "AXButton") {
    const std::string title = node.title();
    signs.cancel = signs.cancel || tables().cancelButtonTitles.contains(title);
    signs.choose = signs.choose || tables().chooseButtonTitles.contains(title);
  } else if (role == "AXPopUpButton") {
    signs.location = signs.location || isMarkedLocationPopup(node);
  } else if (role == "AXOutline") {
    signs.list = signs.list || contains(node.description(), listViewMarker);
  } else if (role == "AXTextField") {
    signs.nameField = signs.nameField || isWideConfirmableField(node);
  }
  signs.extensionTitle = signs.extensionTitle || contains(node.inputValue(), extensionFolderMarker);
}

// What one walk below a window tells of a chooser in it.
struct WindowSigns {
  bool signature = false;
  std::optional<NodeRef> markedPopup;  // the first one; only without a signature
};

WindowSigns signsOf(const Element& window) {
  WindowSigns found;
  ChooserSigns signs;
  walk(window, markedPopupLimits, signAttributes, [&](const VisitedNode& node) {
    noteSigns(node, signs);
    found.signature = signs.showAChooser();
    if (!found.markedPopup && isMarkedLocationPopup(node)) found.markedPopup = node.reference();
    return found.signature || (found.markedPopup && node.isLastOf(signatureLimits));
  });
  return found;
}

// The first container above the pop-up with the chooser signature; when none has it, the highest
// container that was examined.
std::optional<NodeRef> chooserContainerAround(const NodeRef& popup) {
  const AttributeNames asked({"AXRole", "AXParent"});
  std::optional<NodeRef> highest;
  std::optional<Element> current = popup.element;
  for (int i = 0; i < mostClimbedElements && current; ++i) {
    const ElementValues values(*current, asked);
    const std::optional<Element> parent = values.parent();
    if (isAmong(containerRoles, values.role())) {
      highest = NodeRef{*current, parent};
      if (subtreeHasChooserSignature(*current)) return highest;
    }
    current = parent;
  }
  return highest;
}

const std::vector<std::string> rootAttributes{"AXRole", "AXTitle", "AXDescription"};

bool hasRootSigns(const ElementValues& values) {
  const TitleSet& titles = tables().openDialogTitles;
  return isAmong(dialogRoles, values.role()) &&
         (titles.contains(values.title()) || titles.contains(values.description()));
}

// The dialogs of one candidate application.
std::vector<DialogRef> dialogsOf(const AppRef& candidate, bool includeEmbedded) {
  auto nodes = dialogNodes(candidate.app);
  if (nodes.empty() && includeEmbedded && candidate.label == primaryBrowserLabel) {
    if (const auto root = findEmbeddedChooserRoot(candidate.app)) nodes.push_back(*root);
  }
  std::vector<DialogRef> dialogs;
  for (const NodeRef& node : nodes) {
    dialogs.push_back({node, candidate.app, candidate.pid, candidate.label});
  }
  return dialogs;
}

}  // namespace

bool isOpenDialogRoot(const Element& element) {
  const AttributeNames asked(rootAttributes);
  return hasRootSigns(ElementValues(element, asked));
}

std::optional<NodeRef> fastDialogNodes(const Element& app) {
  const auto windows = focusedAndMainWindows(app);
  for (const Element& window : windows) {
    if (isOpenDialogRoot(window)) return NodeRef{window, {}};
  }
  for (const Element& window : windows) {
    if (auto node = firstNode(window, shallowLimits, rootAttributes, hasRootSigns)) return node;
  }
  return {};
}

std::vector<NodeRef> dialogNodes(const Element& app) {
  if (const auto node = fastDialogNodes(app)) return {*node};
  std::vector<NodeRef> nodes;
  for (const Element& window : topLevelWindows(app)) {
    if (isOpenDialogRoot(window)) nodes.push_back({window, {}});
  }
  return nodes;
}

std::optional<NodeRef> findEmbeddedChooserRoot(const Element& app) {
  const auto windows = topLevelWindows(app);
  for (auto window = windows.rbegin(); window != windows.rend(); ++window) {
    const WindowSigns signs = signsOf(*window);
    if (signs.signature) return NodeRef{*window, {}};
    if (!signs.markedPopup) continue;
    if (const auto container = chooserContainerAround(*signs.markedPopup)) return container;
  }
  return {};
}

bool subtreeHasChooserSignature(const Element& element) {
  ChooserSigns signs;
  walk(element, signatureLimits, signAttributes, [&](const VisitedNode& node) {
    noteSigns(node, signs);
    return signs.showAChooser();
  });
  return signs.showAChooser();
}

std::vector<DialogRef> openDialogs(std::int32_t primaryPid, bool includeEmbedded,
                                   const std::vector<std::int32_t>& additionalPIDs) {
  std::vector<DialogRef> dialogs;
  for (const AppRef& candidate : candidateApps(primaryPid, additionalPIDs)) {
    const auto found = dialogsOf(candidate, includeEmbedded);
    dialogs.insert(dialogs.end(), found.begin(), found.end());
  }
  return dialogs;
}

std::optional<DialogRef> preferredDialog(std::int32_t primaryPid, bool includeEmbedded,
                                         const std::vector<std::int32_t>& additionalPIDs) {
  std::optional<DialogRef> last;
  for (const AppRef& candidate : candidateApps(primaryPid, additionalPIDs)) {
    const auto found = dialogsOf(candidate, includeEmbedded);
    if (found.empty()) continue;
    if (candidate.label == primaryBrowserLabel) return found.front();
    last = found.back();
  }
  return last;
}

bool dialogIsOpen(std::int32_t primaryPid) {
  return preferredDialog(primaryPid, true, {}).has_value();
}

bool chooserIsGone(const Element& app) {
  return dialogNodes(app).empty() && !findEmbeddedChooserRoot(app);
}

}  // namespace tessarine
