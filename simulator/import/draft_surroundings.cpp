// What stands around the panels of a scenario in the making.
#include <algorithm>

#include "simulator/import/draft.h"
#include "simulator/import/frames.h"

namespace simulator::importing {
namespace {

using Json = nlohmann::ordered_json;

constexpr Rect usual_screen{0, 0, 1440, 900};
constexpr Rect usual_window{80, 60, 1100, 740};
constexpr int page_elements = 40;

}  // namespace

// Whether the window is a panel's or that of its go-to sheet.
bool Draft::isPanels(const AppWindow& window) const {
  const auto is = [&](const Node* node) {
    return node != nullptr && node->frame == window.frame && node->title == window.title;
  };
  return std::ranges::any_of(panels_, [&](const SeenPanel& panel) {
    return is(panel.goTo) || (is(panel.element) && panel.shape != PanelShape::embedded);
  });
}

void Draft::addBrowserWindows() {
  for (const AppWindow& window : listing_.windows) {
    if (isPanels(window)) continue;
    if (window.pid == browser_ && window.role == "AXWindow" && isUsable(window.frame)) {
      windows_.emplace_back(names_.of(window.title, "window"), window.frame);
    } else {
      omit("the window at " + window.place);
    }
  }
  const auto inWindow = [](const SeenPanel& panel) { return !panel.isWindow(); };
  const auto standing = std::ranges::find_if(panels_, inWindow);
  if (standing != panels_.end()) putOwnerLast(*standing);
  if (std::ranges::count_if(panels_, inWindow) > 1) omit("which panel stands in which window");
  if (windows_.empty()) windows_.emplace_back("", usual_window);
}

// Sheets hang from the oldest window, which is the last.
void Draft::putOwnerLast(const SeenPanel& panel) {
  const Node& root = panel.dialog->root;
  const bool rootOwns = panel.element != &root && isWindow(root);
  const Rect& frame = panel.frame();
  const Rect top{frame.x + frame.width / 2, frame.y, 1, 1};
  const auto owner = std::ranges::find_if(windows_, [&](const auto& window) {
    return rootOwns ? window.second == root.frame : isWithin(top, window.second);
  });
  if (owner == windows_.end()) {
    const Rect shown = rootOwns ? root.frame : around(usual_window, frame);
    const std::string title = rootOwns ? names_.of(root.title, "window") : "";
    windows_.emplace_back(title, isUsable(shown) ? shown : usual_window);
  } else if (owner + 1 != windows_.end()) {
    omit("the order of the browser's windows");
    std::rotate(owner, owner + 1, windows_.end());
  }
}

Pid Draft::freePid(Pid wanted) const {
  const auto taken = [&](Pid pid) {
    return pid == browser_ || std::ranges::any_of(panels_, [&](const SeenPanel& panel) {
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
          {{"pid", browser_},
           {"name", "Google Chrome"},
           {"command", "/Applications/Google Chrome.app/Contents/MacOS/Google Chrome"},
           {"windows", windows}}};
}

// The main screen begins at the origin; what lies to its left and above it gets screens of its own.
Json Draft::screens() const {
  Rect all = usual_screen;
  for (const SeenPanel& panel : panels_) {
    if (isUsable(panel.frame())) all = around(all, panel.frame());
  }
  for (const auto& [title, frame] : windows_) all = around(all, frame);
  const double right = all.x + all.width;
  Json screens = Json::array({toJson({0, 0, right, bottom(all)})});
  if (all.x < 0) screens.push_back(toJson({all.x, all.y, -all.x, all.height}));
  if (all.y < 0) screens.push_back(toJson({0, all.y, right, -all.y}));
  return screens;
}

ImportedScenario Draft::finish() {
  addBrowserWindows();
  const Pid finder = freePid(250);
  const Pid terminal = freePid(std::max(300, finder + 1));
  Json document{{"description", "What stood on a Mac, as the tool printed it."}};
  if (!panels_.empty()) document["language"] = panels_.front().json["language"];
  if (places_) document["places"] = *places_;
  if (path_typed_) document["lastGoToPath"] = folder_for_paths;
  document["screens"] = screens();
  document["processes"] = processes(finder, terminal);
  document["frontmost"] = terminal;
  document["panels"] = Json::array();
  for (SeenPanel& panel : panels_) {
    if (panel.json["language"] == document["language"]) panel.json.erase("language");
    document["panels"].push_back(std::move(panel.json));
  }
  return {document, omissions_};
}

}  // namespace simulator::importing
