// The finders once more, in the plainest way: every element that a walk reaches is asked for one
// attribute after the other, and nothing is tested before the walk is over. What they find is what
// the finders have to find.
#pragma once

#include <algorithm>
#include <optional>
#include <string>
#include <vector>

#include "core/tables.h"
#include "platform/accessibility.h"
#include "platform/files.h"

namespace tessarine::test::plain {

using Found = std::optional<Element>;

inline bool has(const std::string& text, std::string_view part) {
  return text.find(part) != std::string::npos;
}

// Level by level; no more than `most` are ever enqueued.
inline std::vector<Element> nodes(const Element& root, int deepest, std::size_t most) {
  std::vector<Element> queue{root};
  std::vector<int> depths{0};
  for (std::size_t next = 0; next < queue.size(); ++next) {
    if (depths[next] == deepest) continue;
    for (const Element& child : axChildren(Element(queue[next]))) {
      if (queue.size() == most) break;
      queue.push_back(child);
      depths.push_back(depths[next] + 1);
    }
  }
  return queue;
}

template <class Fits>
Found first(const std::vector<Element>& elements, const Fits& fits) {
  for (const Element& element : elements) {
    if (fits(element)) return element;
  }
  return {};
}

template <class Fits>
std::vector<Element> all(const std::vector<Element>& elements, const Fits& fits) {
  std::vector<Element> fitting;
  for (const Element& element : elements) {
    if (fits(element)) fitting.push_back(element);
  }
  return fitting;
}

inline auto hasRole(const std::string& role) {
  return [role](const Element& element) { return axRole(element) == role; };
}

inline Found button(const Element& root, const TitleSet& titles) {
  return first(all(nodes(root, 8, 1800), hasRole("AXButton")),
               [&](const Element& element) { return titles.contains(axTitle(element)); });
}

inline std::string shownBy(const Element& popup) {
  const std::string value = axInputValue(popup);
  return value.empty() ? axTitle(popup) : value;
}

inline bool isMarked(const Element& popup) {
  return has(axTitle(popup), "位置") || has(shownBy(popup), "位置");
}

inline Found locationPopup(const Element& root) {
  const auto popups = all(nodes(root, 6, 220), hasRole("AXPopUpButton"));
  if (const Found marked = first(popups, isMarked)) return marked;
  if (popups.empty()) return {};
  return popups.front();
}

inline Found menuItem(const Element& root, const std::string& title) {
  return first(all(nodes(root, 8, 700), hasRole("AXMenuItem")),
               [&](const Element& element) { return axTitle(element) == title; });
}

inline Found searchField(const Element& root) {
  return first(all(nodes(root, 7, 260), hasRole("AXTextField")),
               [](const Element& element) { return axSubrole(element) == "AXSearchField"; });
}

inline bool isWideAndConfirmed(const Element& field) {
  const auto actions = axActions(field);
  return axFrame(field).width >= 120 &&
         std::find(actions.begin(), actions.end(), "AXConfirm") != actions.end();
}

inline Found nameField(const Element& root, const std::string& value) {
  return first(all(nodes(root, 7, 260), hasRole("AXTextField")), [&](const Element& element) {
    return axInputValue(element) == value && isWideAndConfirmed(element);
  });
}

inline Found goToField(const Element& root) {
  auto fields = all(nodes(root, 8, 700), hasRole("AXTextField"));
  fields = all(fields, [](const Element& field) { return axSubrole(field) != "AXSearchField"; });
  const Found focused =
      first(fields, [](const Element& field) { return axIsTrue(field, "AXFocused"); });
  if (focused) return focused;
  return first(fields, [](const Element& field) {
    const std::string value = axInputValue(field);
    return axFrame(field).width >= 120 && (value.empty() || value[0] == '/' || value[0] == '~');
  });
}

inline Found outline(const Element& root, const std::string& marker) {
  return first(all(nodes(root, 8, 260), hasRole("AXOutline")),
               [&](const Element& element) { return has(axDescription(element), marker); });
}

inline Found fileList(const Element& root) {
  const auto outlines = all(nodes(root, 8, 260), hasRole("AXOutline"));
  const auto marked = [](const char* marker, bool wanted) {
    return [marker, wanted](const Element& element) {
      return has(axDescription(element), marker) == wanted;
    };
  };
  if (const Found list = first(outlines, marked("列表视图", true))) return list;
  if (const Found other = first(outlines, marked("边栏", false))) return other;
  if (outlines.empty()) return {};
  return outlines.front();
}

inline bool isText(const Element& element) {
  const std::string role = axRole(element);
  return role == "AXTextField" || role == "AXStaticText";
}

inline std::vector<Element> candidates(const Element& root) {
  const Found list = fileList(root);
  return list ? all(nodes(*list, 5, 700), isText) : std::vector<Element>{};
}

inline std::string label(const Element& element) {
  if (const std::string title = axTitle(element); !title.empty()) return title;
  if (const std::string value = axInputValue(element); !value.empty()) return value;
  return axDescription(element);
}

inline std::string fingerprint(const Element& root) {
  std::string text;
  for (const Element& candidate : candidates(root)) {
    if (!label(candidate).empty()) text += (text.empty() ? "" : "|") + label(candidate);
  }
  return text;
}

inline bool leadsTo(const Element& element, const std::string& path) {
  const auto location = axURLPath(element);
  return location && !location->empty() && standardizedPath(*location) == standardizedPath(path);
}

inline Found folderRow(const Element& root, const std::string& path, const std::string& name) {
  return first(candidates(root), [&](const Element& candidate) {
    if (leadsTo(candidate, path)) return true;
    const std::string file = fileNameAttribute(candidate);
    const std::string own = file.empty() ? label(candidate) : file;
    return !own.empty() && own == name;
  });
}

inline Found sidebarItem(const Element& root, const std::string& name, const std::string& path) {
  const Found sidebar = outline(root, "边栏");
  if (!sidebar) return {};
  return first(all(nodes(*sidebar, 8, 700), isText), [&](const Element& element) {
    return label(element) == name && leadsTo(element, path);
  });
}

inline std::vector<std::string> selectedLabels(const Element& root) {
  std::vector<std::string> labels;
  const Found list = outline(root, "列表视图");
  if (!list) return labels;
  for (const Element& row : axElements(*list, "AXSelectedRows")) {
    for (const Element& element : nodes(row, 8, 700)) {
      if (!label(element).empty()) labels.push_back(label(element));
    }
  }
  return labels;
}

inline bool showsFolder(const Element& root, const std::string& name, const std::string& shown) {
  if (nameField(root, name)) return true;
  const Found popup = locationPopup(root);
  return popup && (shownBy(*popup) == name || shownBy(*popup) == shown);
}

inline bool isDialog(const Element& element) {
  const std::string role = axRole(element);
  if (role != "AXWindow" && role != "AXSheet" && role != "AXDialog") return false;
  const auto isOpen = [](const std::string& text) { return text == "Open" || text == "打开"; };
  return isOpen(axTitle(element)) || isOpen(axDescription(element));
}

inline Found fastDialog(const Element& app) {
  const auto windows = focusedAndMainWindows(app);
  if (const Found window = first(windows, isDialog)) return window;
  for (const Element& window : windows) {
    if (const Found below = first(nodes(window, 4, 300), isDialog)) return below;
  }
  return {};
}

inline bool isChooser(const Element& root) {
  const auto elements = nodes(root, 8, 360);
  const auto some = [&](const std::string& role, const auto& fits) {
    return first(all(elements, hasRole(role)), fits).has_value();
  };
  const bool cancel = some(
      "AXButton", [](const auto& e) { return axTitle(e) == "取消" || axTitle(e) == "Cancel"; });
  const TitleSet chooseTitles{"选择", "Open", "打开", "Choose"};
  const bool choose =
      some("AXButton", [&](const auto& e) { return chooseTitles.contains(axTitle(e)); });
  if (some("AXTextField", isWideAndConfirmed)) return cancel && choose;
  const bool location = some("AXPopUpButton", isMarked);
  const bool list =
      some("AXOutline", [](const auto& e) { return has(axDescription(e), "列表视图"); });
  const bool extension = first(elements, [](const auto& e) {
                           return has(axInputValue(e), "选择扩展程序目录");
                         }).has_value();
  return cancel && choose && (location || list || extension);
}

inline Found embeddedChooser(const Element& app) {
  const auto windows = topLevelWindows(app);
  for (auto window = windows.rbegin(); window != windows.rend(); ++window) {
    if (isChooser(*window)) return *window;
    Found at = first(all(nodes(*window, 8, 700), hasRole("AXPopUpButton")), isMarked);
    Found highest;
    for (int i = 0; i < 24 && at; ++i, at = axParent(Element(*at))) {
      const std::string role = axRole(*at);
      const bool container = role == "AXGroup" || role == "AXSheet" || role == "AXWindow" ||
                             role == "AXSplitGroup" || role == "AXSplitterGroup" ||
                             role == "AXScrollArea";
      if (!container) continue;
      highest = at;
      if (isChooser(*at)) break;
    }
    if (highest) return highest;
  }
  return {};
}

}  // namespace tessarine::test::plain
