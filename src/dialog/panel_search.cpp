#include "dialog/panel_search.h"

#include <algorithm>
#include <array>
#include <string_view>

#include "core/lists.h"
#include "core/tables.h"
#include "core/text.h"
#include "dialog/detection.h"
#include "dialog/panel_parts.h"
#include "dialog/traversal.h"
#include "panels/panel_owners.h"
#include "platform/accessibility.h"
#include "platform/screens.h"

namespace tessarine {
namespace {

constexpr std::array<std::string_view, 3> titledRoles{"AXWindow", "AXSheet", "AXDialog"};
constexpr WalkLimits rootLimits{3, 150};
constexpr WalkLimits cancelButtonLimits{8, 360};

using Elements = std::vector<Element>;

// All windows that the application shows, the focused and the main one among them.
Elements shownWindows(const Element& app) {
  Elements windows = readList(app, "AXWindows");
  for (const char* attribute : {"AXFocusedWindow", "AXMainWindow"}) {
    const auto window = readElement(app, attribute);
    if (window && !isAmong(windows, *window)) windows.push_back(*window);
  }
  return windows;
}

bool hasOpenTitle(const Element& element) {
  const TitleSet& titles = tables().openDialogTitles;
  return titles.contains(readText(element, "AXTitle").value_or("")) ||
         titles.contains(readText(element, "AXDescription").value_or(""));
}

bool hasCancelTitle(const Element& button) {
  return tables().cancelButtonTitles.contains(readText(button, "AXTitle").value_or(""));
}

// What a walk below a window found.
struct FoundRoots {
  Elements identified;
  Elements titled;
};

void noteRoot(const Element& element, const std::string& role, FoundRoots& found) {
  if (readText(element, "AXIdentifier") == panelIdentifier) {
    if (!isAmong(found.identified, element)) found.identified.push_back(element);
  } else if (isAmong(titledRoles, role) && !isAmong(found.titled, element) &&
             hasOpenTitle(element)) {
    found.titled.push_back(element);
  }
}

void findRoots(const Element& window, FoundRoots& found) {
  walkAnswered({window}, rootLimits, [&](const Element& element, const std::string& role) {
    if (!isContainerRole(role)) return Step::past;
    noteRoot(element, role, found);
    return isAmong(found.identified, element) ? Step::past : Step::into;
  });
}

// The Cancel buttons below the window, by their titles, in containers alone.
Elements cancelButtonsIn(const Element& window) {
  Elements buttons;
  walkAnswered({window}, cancelButtonLimits, [&](const Element& element, const std::string& role) {
    if (role == "AXButton" && hasCancelTitle(element)) buttons.push_back(element);
    return isContainerRole(role) ? Step::into : Step::past;
  });
  return buttons;
}

bool isChooser(const Element& element) {
  const PanelParts parts = panelParts(element);
  return parts.complete() && parts.cancelButton && subtreeHasChooserSignature(element);
}

// The innermost chooser around the button. A window that is no dialog is none, as it outlives the
// chooser.
std::optional<Element> chooserAround(const Element& button, const Element& window) {
  for (const NodeRef& node : ancestorChain({button, axParent(button)})) {
    const Element& element = node.element;
    if (element == window && readText(window, "AXSubrole") != "AXDialog") return {};
    if (isContainerRole(readText(element, "AXRole").value_or("")) && isChooser(element))
      return element;
    if (element == window) return {};
  }
  return {};
}

Elements embeddedRoots(const Elements& windows) {
  Elements roots;
  for (const Element& window : windows) {
    for (const Element& button : cancelButtonsIn(window)) {
      const auto root = chooserAround(button, window);
      if (root && !isAmong(roots, *root)) roots.push_back(*root);
    }
  }
  return roots;
}

bool holdsControls(const Element& root) {
  const PanelParts parts = panelParts(root);
  return parts.listing && (parts.confirmButton || parts.cancelButton);
}

// The pids of the elements, each once, in order.
std::vector<std::int32_t> ownersOf(const Elements& elements) {
  std::vector<std::int32_t> pids;
  for (const Element& element : elements) pids.push_back(elementPid(element).value_or(0));
  std::ranges::sort(pids);
  pids.erase(std::unique(pids.begin(), pids.end()), pids.end());
  return pids;
}

// Whether panel services have several windows there.
bool severalStandAt(const ProcessSurvey& survey, const Rect& frame) {
  return survey.windows &&
         windowsAt(*survey.windows, runningPanelServices(survey), frame).size() > 1;
}

// Whether a root of the browser and one of the service show one panel: at one place, with the same
// elements below them. Where these are other processes' elements in the two trees, and cannot be
// compared, the place decides, unless panel services have several windows there.
bool showOnePanel(const ProcessSurvey& survey, const Element& one, const Element& other) {
  if (one == other) return true;
  const auto frame = readFrame(one);
  const auto otherFrame = readFrame(other);
  if (!frame || !otherFrame || !rectsEqual(*frame, *otherFrame)) return false;
  const Elements contents = readList(one);
  const Elements otherContents = readList(other);
  const bool shared = std::ranges::any_of(
      contents, [&](const Element& element) { return isAmong(otherContents, element); });
  if (shared) return true;
  const bool comparable =
      !contents.empty() && !otherContents.empty() && ownersOf(contents) == ownersOf(otherContents);
  return !comparable && !severalStandAt(survey, *frame);
}

FoundRoots rootsBelowWindows(const Elements& windows) {
  FoundRoots found;
  for (const Element& window : windows) findRoots(window, found);
  return found;
}

std::vector<PanelRoot> rootsOf(const AppRef& app, const Elements& elements) {
  std::vector<PanelRoot> roots;
  for (const Element& element : elements) roots.push_back({element, app});
  return roots;
}

std::vector<PanelRoot> identifiedRootsIn(const AppRef& app) {
  return rootsOf(app, rootsBelowWindows(shownWindows(app.app)).identified);
}

using RootFinder = std::vector<PanelRoot> (*)(const AppRef&);

std::vector<PanelRoot> serviceRoots(const ProcessSurvey& survey, std::int32_t primaryPid,
                                    std::int32_t service, RootFinder rootsIn) {
  try {
    auto roots = rootsIn({Element::application(service), service, panelServiceLabel});
    std::erase_if(roots, [&](const PanelRoot& root) {
      const auto frame = readFrame(root.element);
      return frame && standsWithAnother(survey, primaryPid, *frame);
    });
    return roots;
  } catch (const Unanswered&) {
    return {};
  }
}

// The browser's own, then those that only the services show.
std::vector<PanelRoot> panelsFoundBy(RootFinder rootsIn, const ProcessSurvey& survey,
                                     std::int32_t primaryPid,
                                     const std::vector<std::int32_t>& services) {
  auto panels = rootsIn({Element::application(primaryPid), primaryPid, primaryBrowserLabel});
  const auto own = static_cast<std::ptrdiff_t>(panels.size());
  for (const std::int32_t service : services) {
    for (PanelRoot& root : serviceRoots(survey, primaryPid, service, rootsIn)) {
      const bool twin =
          std::any_of(panels.begin(), panels.begin() + own, [&](const PanelRoot& panel) {
            return showOnePanel(survey, panel.element, root.element);
          });
      if (!twin) panels.push_back(std::move(root));
    }
  }
  return panels;
}

}  // namespace

std::vector<PanelRoot> panelRootsIn(const AppRef& app) {
  const Elements windows = shownWindows(app.app);
  FoundRoots found = rootsBelowWindows(windows);
  if (!found.identified.empty()) return rootsOf(app, found.identified);
  std::erase_if(found.titled, [](const Element& element) { return !holdsControls(element); });
  const bool searchOn = found.titled.empty() && app.label == primaryBrowserLabel;
  return rootsOf(app, searchOn ? embeddedRoots(windows) : found.titled);
}

// What has no identifier takes long to find in a window with a large page: it is looked for when
// there is none anywhere.
std::vector<PanelRoot> openPanels(const ProcessSurvey& survey, std::int32_t primaryPid,
                                  const std::vector<std::int32_t>& services) {
  auto panels = panelsFoundBy(identifiedRootsIn, survey, primaryPid, services);
  return panels.empty() ? panelsFoundBy(panelRootsIn, survey, primaryPid, services) : panels;
}

std::vector<std::int32_t> panelServicesByPlace(const ProcessSurvey& survey,
                                               std::int32_t primaryPid) {
  auto services = possiblePanelServicesOf(survey, primaryPid);
  std::erase_if(services, [&](std::int32_t service) {
    const auto roots = serviceRoots(survey, primaryPid, service, panelRootsIn);
    return std::ranges::none_of(roots, [&](const PanelRoot& root) {
      return standsWithBrowser(survey, primaryPid, service, axFrame(root.element));
    });
  });
  if (services.size() > 1) services.clear();
  return services;
}

std::string panelCounts(const ProcessSurvey& survey, const std::vector<PanelRoot>& panels) {
  std::vector<std::int32_t> owners;
  std::vector<std::string> counts;
  for (const PanelRoot& panel : panels) {
    const AppRef& owner = panel.owner;
    if (isAmong(owners, owner.pid)) continue;
    owners.push_back(owner.pid);
    const auto count = std::ranges::count_if(
        panels, [&](const PanelRoot& each) { return each.owner.pid == owner.pid; });
    const std::string where = owner.label == panelServiceLabel
                                  ? "panel service " + std::to_string(owner.pid)
                                  : processText(survey, owner.pid);
    counts.push_back(where + ": " + std::to_string(count));
  }
  return joined(counts, ", ");
}

}  // namespace tessarine
