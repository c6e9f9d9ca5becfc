#include "platform/events.h"

#include <ApplicationServices/ApplicationServices.h>

#include "core/tables.h"
#include "core/text.h"
#include "core/tool_error.h"
#include "platform/accessibility.h"
#include "platform/cf_ref.h"
#include "platform/clock.h"

namespace tessarine {
namespace {

using EventRef = CfRef<CGEventRef>;

constexpr double keyHoldSeconds = 0.02;
constexpr double buttonHoldSeconds = 0.05;
constexpr double doubleClickGapSeconds = 0.06;
constexpr double editingPauseSeconds = 0.05;

constexpr CGEventType pressTypes[] = {kCGEventKeyDown, kCGEventLeftMouseDown,
                                      kCGEventRightMouseDown, kCGEventOtherMouseDown};

EventRef mouseEvent(CGEventType type, const Point& at, std::int64_t clickState) {
  const auto event = EventRef::adopt(
      CGEventCreateMouseEvent(nullptr, type, CGPointMake(at.x, at.y), kCGMouseButtonLeft));
  if (event) CGEventSetIntegerValueField(event.get(), kCGMouseEventClickState, clickState);
  return event;
}

EventRef keyEvent(std::uint16_t keyCode, std::uint64_t flags, bool keyDown) {
  const auto event = EventRef::adopt(CGEventCreateKeyboardEvent(nullptr, keyCode, keyDown));
  if (event) CGEventSetFlags(event.get(), static_cast<CGEventFlags>(flags));
  return event;
}

// To the whole session without a pid.
void post(const EventRef& event, std::optional<std::int32_t> pid) {
  if (!event) return;
  if (pid) {
    CGEventPostToPid(*pid, event.get());
  } else {
    CGEventPost(kCGHIDEventTap, event.get());
  }
}

Point visibleCenter(const Element& element) {
  const Rect frame = axFrame(element);
  if (!frame.hasArea()) throw ToolError::actionFailed("target element has no visible frame");
  return frame.center();
}

}  // namespace

void postMouseClick(std::int32_t pid, const Point& at, std::int64_t clickState, bool global) {
  const EventRef down = mouseEvent(kCGEventLeftMouseDown, at, clickState);
  const EventRef up = mouseEvent(kCGEventLeftMouseUp, at, clickState);
  const auto receiver = global ? std::nullopt : std::optional(pid);
  post(down, receiver);
  sleepSeconds(buttonHoldSeconds);
  post(up, receiver);
}

void clickElement(std::int32_t pid, const Element& element) {
  postMouseClick(pid, visibleCenter(element), 1, false);
}

void doubleClickElement(std::int32_t pid, const Element& element) {
  doubleClickPoint(pid, visibleCenter(element));
}

void doubleClickPoint(std::int32_t pid, const Point& at) {
  postMouseClick(pid, at, 1, false);
  sleepSeconds(doubleClickGapSeconds);
  postMouseClick(pid, at, 2, false);
}

void postKeyEvent(std::int32_t pid, std::uint16_t keyCode, std::uint64_t flags, bool keyDown,
                  const std::optional<std::u16string>& unicodeText) {
  const EventRef event = keyEvent(keyCode, flags, keyDown);
  if (event && unicodeText) {
    CGEventKeyboardSetUnicodeString(event.get(), unicodeText->size(),
                                    reinterpret_cast<const UniChar*>(unicodeText->data()));
  }
  post(event, pid);
}

void postGlobalKeyEvent(std::uint16_t keyCode, std::uint64_t flags, bool keyDown) {
  post(keyEvent(keyCode, flags, keyDown), std::nullopt);
}

void tapKey(std::int32_t pid, std::uint16_t keyCode, std::uint64_t flags,
            const std::optional<std::u16string>& unicodeText, double pause) {
  postKeyEvent(pid, keyCode, flags, true, unicodeText);
  sleepSeconds(keyHoldSeconds);
  postKeyEvent(pid, keyCode, flags, false, unicodeText);
  sleepSeconds(pause);
}

void tapGlobalKey(std::uint16_t keyCode, std::uint64_t flags, double pause) {
  postGlobalKeyEvent(keyCode, flags, true);
  sleepSeconds(keyHoldSeconds);
  postGlobalKeyEvent(keyCode, flags, false);
  sleepSeconds(pause);
}

void typeUnicodeText(std::int32_t pid, const std::string& text, double pause) {
  for (const char32_t scalar : toScalars(text)) {
    tapKey(pid, 0, noModifiers, toUtf16(scalar), pause);
  }
}

void pressReturn(std::int32_t pid, double pause) {
  tapKey(pid, keyCodeReturn, noModifiers, {}, pause);
}

void selectAllAndDelete(std::int32_t pid) {
  tapKey(pid, keyCodeA, commandFlag, {}, editingPauseSeconds);
  tapKey(pid, keyCodeDelete, noModifiers, {}, editingPauseSeconds);
}

std::uint64_t pressesByPeople() {
  std::uint64_t presses = 0;
  for (const CGEventType type : pressTypes) {
    presses += CGEventSourceCounterForEventType(kCGEventSourceStateHIDSystemState, type);
  }
  return presses;
}

}  // namespace tessarine
