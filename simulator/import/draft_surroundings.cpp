// What stands around the panels of a scenario in the making.
#include <algorithm>

#include "simulator/import/draft.h"
#include "simulator/import/frames.h"
#include "simulator/import/panel_words.h"

namespace simulator::importing {
namespace {

using Json = nlohmann::ordered_json;

constexpr Rect usual_screen{0, 0, 1440, 900};
constexpr Rect usual_window{80, 60, 1100, 740};
constexpr int page_elements = 40;

}  // namespace

// Whether the window is one of the windows and sheets that a panel's tree holds.
bool Draft::isInATree(const AppWindow& window) const {
  const auto is = [&](const PrintedElement& element) {
    return element.role == window.role && element.frame == window.frame &&
           element.title == window.title;
  };
  return std::ranges::any_of(panels_, [&](const SeenPanel& panel) {
    return panel.dialog->pid == window.pid && std::ranges::any_of(panel.dialog->tree, is);
  });
}

void Draft::addListedWindows() {
  bool reordered = false;
  for (const AppWindow& window : listing_->windows) {
    const bool browsers = window.pid == inspection_.browser && window.role == "AXWindow";
    if (isInATree(window)) {
      // Those of panels open last, in front of the others.
      reordered = reordered || (browsers && !windows_.empty());
      continue;
    }
    if (!browsers || !isUsable(window.frame)) {
      omit("the window at " + window.place);
      continue;
    }
    windows_.emplace_back(names_.of(window.title, "window"), window.frame);
    if (window.subrole != "AXStandardWindow" || !window.description.empty()) {
      omit("the subrole and the description of the window at " + window.place);
    }
  }
  if (reordered) omit("the order of the browser's windows");
}

void Draft::addBrowserWindows() {
  if (listing_) addListedWindows();
  const auto inWindow = [](const SeenPanel& panel) {
    return panel.shape == PanelShape::hostSheet || panel.shape == PanelShape::embedded;
  };
  const auto standing = std::ranges::find_if(panels_, inWindow);
  if (standing != panels_.end()) putOwnerLast(*standing);
  if (std::ranges::count_if(panels_, inWindow) > 1) omit("which panel stands in which window");
  const bool known = listing_ || std::ranges::any_of(panels_, [](const SeenPanel& panel) {
                       return panel.shape == PanelShape::hostWindow;
                     });
  if (windows_.empty() && !known) windows_.emplace_back("", usual_window);
}

// Sheets hang from the oldest window, which is the last.
void Draft::putOwnerLast(const SeenPanel& panel) {
  const Rect& frame = panel.dialog->frame();
  const auto owner = std::ranges::find_if(windows_, [&](const auto& window) {
    return contains(window.second, {frame.x + frame.width / 2, frame.y});
  });
  if (owner == windows_.end()) {
    windows_.emplace_back("", isUsable(frame) ? around(usual_window, frame) : usual_window);
  } else if (owner + 1 != windows_.end()) {
    omit("the order of the browser's windows");
    std::rotate(owner, owner + 1, windows_.end());
  }
}

Pid Draft::freePid(Pid wanted) const {
  const auto taken = [&](Pid pid) {
    return pid == inspection_.browser || std::ranges::any_of(panels_, [&](const SeenPanel& panel) {
             return panel.json.value("service", 0) == pid;
           });
  };
  while (taken(wanted)) ++wanted;
  return wanted;
}

Json Draft::processes(Pid finder, Pid terminal) const {
  Json windows = Json::array();
  for (const auto& [title, frame] : windows_) {
    windows.push_back({{"title", title}, {"frame", toJson(frame)}, {"webElements", page_elements}});
  }
  const Json shell = {{"title", "Terminal"}, {"frame", toJson({700, 400, 640, 420})}};
  return {{{"pid", finder},
           {"name", "Finder"},
           {"command", "/System/Library/CoreServices/Finder.app/Contents/MacOS/Finder"}},
          {{"pid", terminal},
           {"name", "Terminal"},
           {"command", "/System/Applications/Utilities/Terminal.app/Contents/MacOS/Terminal"},
           {"windows", {shell}}},
          {{"pid", inspection_.browser},
           {"name", "Google Chrome"},
           {"command", "/Applications/Google Chrome.app/Contents/MacOS/Google Chrome"},
           {"windows", windows}}};
}

// The main screen begins at the origin; what lies to its left and above it gets screens of its own.
Json Draft::screens() const {
  Rect all = usual_screen;
  for (const SeenPanel& panel : panels_) {
    const Rect& frame = panel.dialog->frame();
    if (isUsable(frame)) all = around(all, frame);
  }
  for (const auto& [title, frame] : windows_) all = around(all, frame);
  const double right = all.x + all.width;
  Json screens = Json::array({toJson({0, 0, right, all.y + all.height})});
  if (all.x < 0) screens.push_back(toJson({all.x, all.y, -all.x, all.height}));
  if (all.y < 0) screens.push_back(toJson({0, all.y, right, -all.y}));
  return screens;
}

// That of the first panel with known words.
Language Draft::language() {
  for (const SeenPanel& panel : panels_) {
    if (const auto known = languageOf(panel.dialog->tree)) return *known;
  }
  if (!panels_.empty()) omit("the language, which is taken for English");
  return Language::english;
}

ImportedScenario Draft::finish() {
  addPanels();
  addBrowserWindows();
  const Pid finder = freePid(250);
  const Pid terminal = freePid(std::max(300, finder + 1));
  Json document{{"description", "What stood on a Mac, as the tool printed it."}};
  document["language"] = languageTag(language());
  document["screens"] = screens();
  document["processes"] = processes(finder, terminal);
  document["frontmost"] = terminal;
  document["panels"] = Json::array();
  for (SeenPanel& panel : panels_) document["panels"].push_back(std::move(panel.json));
  return {document, omissions_};
}

}  // namespace simulator::importing
