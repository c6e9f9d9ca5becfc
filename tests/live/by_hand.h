// What the tests do to a shown panel as a person would, by keys and clicks, and what they look at.
#pragma once

#include <ApplicationServices/ApplicationServices.h>

#include <cstdint>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <vector>

#include "core/geometry.h"
#include "live/live.h"
#include "platform/accessibility.h"
#include "platform/cf_values.h"
#include "platform/clock.h"
#include "platform/events.h"
#include "platform/wait.h"

namespace tessarine::test {

// Virtual key codes, from Carbon's HIToolbox/Events.h, and modifier flags.
inline constexpr std::uint16_t key_a = 0;
inline constexpr std::uint16_t key_g = 5;
inline constexpr std::uint16_t key_return = 36;
inline constexpr std::uint16_t key_backspace = 51;
inline constexpr std::uint16_t key_escape = 53;
inline constexpr std::uint16_t key_left = 123;
inline constexpr std::uint16_t key_right = 124;
inline constexpr std::uint16_t key_down = 125;
inline constexpr std::uint16_t key_up = 126;
inline constexpr std::uint64_t command_key = 0x100000;
inline constexpr std::uint64_t command_and_shift = 0x120000;

// --- Waiting. ---

// How long something may take of which no test says how long it takes.
inline bool soon(const Condition& condition) {
  return pollUntil(5, 0.05, condition);
}

// For as long as it would take to see what must not happen.
inline void letThingsSettle() {
  sleepSeconds(1);
}

// --- What is shown. ---

inline bool isThere(const Element& root, const std::string& identifier) {
  const auto found = elementsBelow(
      root, [&](const Element& each) { return axString(each, "AXIdentifier") == identifier; });
  return !found.empty();
}

// The name of the folder shown.
inline std::string folderShown(const Element& panel) {
  return axInputValue(byIdentifier(panel, "where popup"));
}

inline std::vector<std::string> textsBelow(const Element& root, const std::string& role) {
  std::vector<std::string> texts;
  for (const Element& each :
       elementsBelow(root, [&](const Element& below) { return axRole(below) == role; })) {
    texts.push_back(axInputValue(each));
  }
  return texts;
}

inline std::vector<std::string> selectedNames(const Element& panel) {
  std::vector<std::string> names;
  for (const Element& row : axElements(byIdentifier(panel, "ListView"), "AXSelectedRows")) {
    const auto texts = textsBelow(row, "AXTextField");
    names.insert(names.end(), texts.begin(), texts.end());
  }
  return names;
}

// Selects the rows of these names, in this order, by accessibility.
inline void selectNames(const Element& panel, const std::vector<std::string>& names) {
  std::vector<Element> rows;
  for (const std::string& name : names) rows.push_back(rowNamed(panel, name));
  setElements(byIdentifier(panel, "ListView"), "AXSelectedRows", rows);
}

// Selects one row, which can be selected, and waits until it is.
inline void selectName(const Element& panel, const std::string& name) {
  selectNames(panel, {name});
  if (!soon([&] { return selectedNames(panel) == std::vector<std::string>{name}; })) {
    throw std::runtime_error("the list does not select \"" + name + "\"");
  }
}

// The name and the place of the file that an element with an image and a name shows.
inline Element fieldOf(const Element& item) {
  return byRole(item, "AXTextField");
}

// The elements below that name a file.
inline std::vector<Element> namingFiles(const Element& root) {
  return elementsBelow(root, [](const Element& each) {
    return axURLPath(each) || !fileNameAttribute(each).empty();
  });
}

// Whether the element's URL leads to this file, by whichever of its paths.
inline bool leadsTo(const Element& element, const std::string& path) {
  std::error_code missing;
  return std::filesystem::equivalent(axURLPath(element).value_or(""), path, missing);
}

// What performing the action answers.
inline std::int32_t answerTo(const std::string& action, const Element& element) {
  const CfRef<CFStringRef> name = makeCfString(action);
  return AXUIElementPerformAction(element.get(), name.get());
}

// How many windows of a process the window list shows.
inline int listedWindows(pid_t pid) {
  const auto windows = CfRef<CFArrayRef>::adopt(
      CGWindowListCopyWindowInfo(kCGWindowListOptionOnScreenOnly, kCGNullWindowID));
  int count = 0;
  for (CFIndex i = 0; windows && i < CFArrayGetCount(windows.get()); ++i) {
    const auto window = static_cast<CFDictionaryRef>(CFArrayGetValueAtIndex(windows.get(), i));
    const auto number = static_cast<CFNumberRef>(CFDictionaryGetValue(window, kCGWindowOwnerPID));
    std::int32_t owner = 0;
    CFNumberGetValue(number, kCFNumberSInt32Type, &owner);
    if (owner == pid) ++count;
  }
  return count;
}

// --- Keys and clicks. ---

// A key alone or with modifiers, and a moment for what comes of it.
inline void press(pid_t taker, std::uint16_t keyCode, std::uint64_t flags = 0) {
  tapKey(taker, keyCode, flags, {}, 0.1);
}

// Shows that keys arrive, after a test of what must not come of one. Ends the panel.
inline bool stillTakesKeys(pid_t taker, const std::function<std::string()>& end) {
  press(taker, key_escape);
  return end() == "cancelled";
}

inline bool covers(const Element& element, const Point& point) {
  const Rect frame = axFrame(element);
  return point.x >= frame.x && point.x < frame.x + frame.width && point.y >= frame.y &&
         point.y < frame.y + frame.height;
}

// A point of the panel with nothing under it, left of its Cancel button.
inline Point blankPoint(const Element& panel) {
  const Rect cancel = axFrame(byIdentifier(panel, "CancelButton"));
  return {cancel.x - 20, cancel.midY()};
}

// Moves the pointer there and clicks, as a person does.
inline void click(const Point& at) {
  postMouseClick(0, at, 1, true);
  sleepSeconds(0.1);
}

inline void doubleClick(const Point& at) {
  postMouseClick(0, at, 1, true);
  sleepSeconds(0.06);
  postMouseClick(0, at, 2, true);
}

// --- The menu of enclosing folders. ---

inline std::vector<Element> openMenus(const Element& panel) {
  return elementsBelow(panel, [](const Element& each) { return axRole(each) == "AXMenu"; });
}

inline Element openedMenu(const Element& panel) {
  tryAction("AXShowMenu", byIdentifier(panel, "where popup"));
  if (!soon([&] { return !openMenus(panel).empty(); })) throw std::runtime_error("no menu opened");
  return openMenus(panel).front();
}

// --- The go-to sheet. ---

// Opens it and waits until its field has the keyboard.
inline Element openedPathField(const Element& panel, pid_t taker) {
  press(taker, key_g, command_and_shift);
  const auto ready = [&] {
    return isThere(panel, "PathTextField") &&
           axIsTrue(byIdentifier(panel, "PathTextField"), "AXFocused");
  };
  if (!soon(ready)) throw std::runtime_error("no go-to sheet with a field opened");
  return byIdentifier(panel, "PathTextField");
}

// Goes to a folder by the sheet, which is closed then.
inline void goTo(const Element& panel, pid_t taker, const std::string& path) {
  const Element field = openedPathField(panel, taker);
  setText(field, "AXValue", path);
  press(taker, key_return);
  if (!soon([&] { return !isThere(panel, "GoToWindow"); })) {
    throw std::runtime_error("the go-to sheet did not lead to " + path);
  }
}

}  // namespace tessarine::test
