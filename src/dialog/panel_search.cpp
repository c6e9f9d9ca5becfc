#include "dialog/panel_search.h"

#include <algorithm>
#include <array>
#include <string_view>

#include "core/tables.h"
#include "dialog/detection.h"
#include "dialog/panel_parts.h"
#include "dialog/traversal.h"
#include "panels/candidates.h"
#include "platform/accessibility.h"
#include "platform/screens.h"

namespace tessarine {
namespace {

constexpr const char* panelIdentifier = "open-panel";
constexpr std::array<std::string_view, 3> titledRoles{"AXWindow", "AXSheet", "AXDialog"};
constexpr int deepestRoot = 3;
constexpr std::size_t mostRootNodes = 150;
constexpr int deepestButton = 8;
constexpr std::size_t mostButtonNodes = 360;

using Elements = std::vector<Element>;

Elements childrenOf(const Element& element) {
  return readElements(element, "AXChildren").value_or(Elements{});
}

bool isAmongElements(const Elements& elements, const Element& element) {
  return std::find(elements.begin(), elements.end(), element) != elements.end();
}

// All windows that the application shows, the focused and the main one among them.
Elements shownWindows(const Element& app) {
  Elements windows = readElements(app, "AXWindows").value_or(Elements{});
  for (const char* attribute : {"AXFocusedWindow", "AXMainWindow"}) {
    const auto window = readElement(app, attribute);
    if (window && !isAmongElements(windows, *window)) windows.push_back(*window);
  }
  return windows;
}

bool hasOpenTitle(const Element& element) {
  const TitleSet& titles = tables().openDialogTitles;
  return titles.contains(readText(element, "AXTitle").value_or("")) ||
         titles.contains(readText(element, "AXDescription").value_or(""));
}

// What a walk below a window found.
struct FoundRoots {
  Elements identified;
  Elements titled;
};

void noteRoot(const Element& element, const std::string& role, FoundRoots& found) {
  if (readText(element, "AXIdentifier") == panelIdentifier) {
    if (!isAmongElements(found.identified, element)) found.identified.push_back(element);
  } else if (std::find(titledRoles.begin(), titledRoles.end(), role) != titledRoles.end() &&
             !isAmongElements(found.titled, element) && hasOpenTitle(element)) {
    found.titled.push_back(element);
  }
}

void findRoots(const Element& window, FoundRoots& found) {
  struct Entry {
    Element element;
    int depth;
  };
  std::vector<Entry> queue{{window, 0}};
  for (std::size_t head = 0; head < queue.size() && head < mostRootNodes; ++head) {
    const Entry entry = queue[head];
    const std::string role = readText(entry.element, "AXRole").value_or("");
    if (!isContainerRole(role)) continue;
    noteRoot(entry.element, role, found);
    if (entry.depth == deepestRoot || isAmongElements(found.identified, entry.element)) continue;
    for (const Element& child : childrenOf(entry.element)) {
      queue.push_back({child, entry.depth + 1});
    }
  }
}

// Whether a Cancel and a Choose button stand below the window: only then a chooser may.
bool mayHoldChooser(const Element& window) {
  bool cancel = false;
  bool choose = false;
  std::size_t visited = 0;
  Elements level{window};
  for (int depth = 0; depth <= deepestButton && !level.empty(); ++depth) {
    Elements next;
    for (const Element& element : level) {
      if (++visited > mostButtonNodes) return false;
      if (readText(element, "AXRole") == "AXButton") {
        const std::string title = readText(element, "AXTitle").value_or("");
        cancel = cancel || tables().cancelButtonTitles.contains(title);
        choose = choose || tables().chooseButtonTitles.contains(title);
      }
      const Elements children = childrenOf(element);
      next.insert(next.end(), children.begin(), children.end());
    }
    level = std::move(next);
  }
  return cancel && choose;
}

// The innermost element around both.
std::optional<Element> around(const Element& first, const Element& second) {
  const auto others = ancestorChain({second, axParent(second)});
  for (const NodeRef& node : ancestorChain({first, axParent(first)})) {
    const bool common = std::any_of(others.begin(), others.end(), [&](const NodeRef& other) {
      return other.element == node.element;
    });
    if (common) return node.element;
  }
  return {};
}

// A finder of embedded choosers may answer with their whole window, which outlives them.
std::optional<Element> embeddedRoot(const Element& app, const Elements& windows) {
  if (std::none_of(windows.begin(), windows.end(), mayHoldChooser)) return {};
  const auto chooser = findEmbeddedChooserRoot(app);
  if (!chooser) return {};
  const PanelParts parts = panelParts(chooser->element);
  if (!parts.complete() || !parts.cancelButton) return {};
  return around(*parts.confirmButton, *parts.cancelButton);
}

bool holdsControls(const Element& root) {
  const PanelParts parts = panelParts(root);
  return parts.listing && (parts.confirmButton || parts.cancelButton);
}

// The pids of the elements, each once, in order.
std::vector<std::int32_t> ownersOf(const Elements& elements) {
  std::vector<std::int32_t> pids;
  for (const Element& element : elements) pids.push_back(elementPid(element).value_or(0));
  std::sort(pids.begin(), pids.end());
  pids.erase(std::unique(pids.begin(), pids.end()), pids.end());
  return pids;
}

// Whether both roots show one panel: at one place, with the same elements below them. Where these
// are other processes' elements in the two trees, and cannot be compared, the place decides.
bool showOnePanel(const Element& one, const Element& other) {
  if (one == other) return true;
  const auto frame = readFrame(one);
  const auto otherFrame = readFrame(other);
  if (!frame || !otherFrame || !rectsEqual(*frame, *otherFrame)) return false;
  const Elements contents = childrenOf(one);
  const Elements otherContents = childrenOf(other);
  const bool shared = std::any_of(contents.begin(), contents.end(), [&](const Element& element) {
    return isAmongElements(otherContents, element);
  });
  return shared || contents.empty() || otherContents.empty() ||
         ownersOf(contents) != ownersOf(otherContents);
}

std::vector<PanelRoot> serviceRoots(const ProcessSurvey& survey, std::int32_t primaryPid,
                                    std::int32_t service) {
  try {
    auto roots = panelRootsIn({Element::application(service), service, panelServiceLabel});
    std::erase_if(roots, [&](const PanelRoot& root) {
      const auto frame = readFrame(root.element);
      return frame && standsWithAnother(survey, primaryPid, *frame);
    });
    return roots;
  } catch (const Unanswered&) {
    return {};
  }
}

}  // namespace

std::vector<PanelRoot> panelRootsIn(const AppRef& app) {
  const Elements windows = shownWindows(app.app);
  FoundRoots found;
  for (const Element& window : windows) findRoots(window, found);
  std::vector<PanelRoot> roots;
  for (const Element& element : found.identified) roots.push_back({element, app, true});
  if (!roots.empty()) return roots;
  for (const Element& element : found.titled) {
    if (holdsControls(element)) roots.push_back({element, app, false});
  }
  if (!roots.empty() || app.label != primaryBrowserLabel) return roots;
  if (const auto element = embeddedRoot(app.app, windows)) roots.push_back({*element, app, false});
  return roots;
}

std::vector<PanelRoot> openPanels(const ProcessSurvey& survey, std::int32_t primaryPid,
                                  const std::vector<std::int32_t>& services) {
  auto panels = panelRootsIn({Element::application(primaryPid), primaryPid, primaryBrowserLabel});
  const std::size_t own = panels.size();
  for (const std::int32_t service : services) {
    for (PanelRoot& root : serviceRoots(survey, primaryPid, service)) {
      const auto twin = std::find_if(
          panels.begin(), panels.begin() + static_cast<std::ptrdiff_t>(own),
          [&](const PanelRoot& panel) { return showOnePanel(panel.element, root.element); });
      if (twin == panels.begin() + static_cast<std::ptrdiff_t>(own)) {
        panels.push_back(std::move(root));
      }
    }
  }
  const bool identified = std::any_of(panels.begin(), panels.end(),
                                      [](const PanelRoot& panel) { return panel.identified; });
  if (identified) std::erase_if(panels, [](const PanelRoot& panel) { return !panel.identified; });
  return panels;
}

std::string panelCounts(const ProcessSurvey& survey, const std::vector<PanelRoot>& panels) {
  std::vector<std::pair<std::int32_t, int>> counts;
  for (const PanelRoot& panel : panels) {
    const auto same = std::find_if(counts.begin(), counts.end(), [&](const auto& count) {
      return count.first == panel.owner.pid;
    });
    if (same == counts.end()) {
      counts.emplace_back(panel.owner.pid, 1);
    } else {
      ++same->second;
    }
  }
  std::string text;
  for (const auto& [pid, count] : counts) {
    const bool service =
        std::any_of(panels.begin(), panels.end(), [&, id = pid](const auto& panel) {
          return panel.owner.pid == id && panel.owner.label == panelServiceLabel;
        });
    const std::string name = service ? "panel service" : processName(survey, pid);
    if (!text.empty()) text += ", ";
    text += (name.empty() ? "process" : name) + " " + std::to_string(pid) + ": " +
            std::to_string(count);
  }
  return text;
}

}  // namespace tessarine
