#include "CoreGraphics/CoreGraphics.h"

#include <algorithm>
#include <array>
#include <limits>

#include "simulator/frameworks/desktop_link.h"
#include "simulator/frameworks/faults.h"
#include "simulator/frameworks/object.h"

using simulator::answersNull;
using simulator::InputEvent;
using simulator::KeyEvent;
using simulator::MouseEvent;
using simulator::refuse;

namespace {

constexpr CGDirectDisplayID main_display = 1;
constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double largest = std::numeric_limits<double>::max();
constexpr CGRect null_rect{{infinity, infinity}, {0, 0}};
constexpr CGRect infinite_rect{{-largest / 2, -largest / 2}, {largest, largest}};

// The members of a rectangle in a dictionary.
constexpr std::array<const char16_t*, 4> bounds_keys{u"X", u"Y", u"Width", u"Height"};

bool same(const CGRect& one, const CGRect& other) {
  return one.origin.x == other.origin.x && one.origin.y == other.origin.y &&
         one.size.width == other.size.width && one.size.height == other.size.height;
}

// The same area with a width and height that are not negative.
CGRect standardized(CGRect rect) {
  if (CGRectIsNull(rect)) return null_rect;
  if (rect.size.width < 0) {
    rect.origin.x += rect.size.width;
    rect.size.width = -rect.size.width;
  }
  if (rect.size.height < 0) {
    rect.origin.y += rect.size.height;
    rect.size.height = -rect.size.height;
  }
  return rect;
}

template <class Event>
Event& eventOf(CGEventRef event, const char* user) {
  auto* held = std::get_if<Event>(&simulator::payload<InputEvent>(event, user));
  if (!held) refuse(user, "does not apply to this kind of event");
  return *held;
}

void post(CGEventRef event, std::optional<simulator::Pid> target, const char* user) {
  simulator::desktopLink().ask(
      simulator::PostEvent{simulator::payload<InputEvent>(event, user), target});
}

}  // namespace

// The platform tells the null rectangle by its origin alone.
bool CGRectIsNull(CGRect rect) {
  return rect.origin.x == infinity || rect.origin.y == infinity;
}

bool CGRectEqualToRect(CGRect one, CGRect other) {
  return same(standardized(one), standardized(other));
}

bool CGRectContainsPoint(CGRect rect, CGPoint point) {
  if (CGRectIsNull(rect)) return false;
  rect = standardized(rect);
  return point.x >= rect.origin.x && point.x < rect.origin.x + rect.size.width &&
         point.y >= rect.origin.y && point.y < rect.origin.y + rect.size.height;
}

bool CGRectIntersectsRect(CGRect one, CGRect other) {
  return !CGRectIsNull(CGRectIntersection(one, other));
}

// Assumed (Contract.RectanglesThatTouchIntersectInAnEmptyOne): as in the open-source Foundation,
// rectangles that only touch intersect in one that is empty, not null.
CGRect CGRectIntersection(CGRect one, CGRect other) {
  if (CGRectIsNull(one) || CGRectIsNull(other)) return null_rect;
  one = standardized(one);
  other = standardized(other);
  if (same(one, infinite_rect)) return other;
  if (same(other, infinite_rect)) return one;
  const double left = std::max(one.origin.x, other.origin.x);
  const double top = std::max(one.origin.y, other.origin.y);
  const double right = std::min(one.origin.x + one.size.width, other.origin.x + other.size.width);
  const double bottom =
      std::min(one.origin.y + one.size.height, other.origin.y + other.size.height);
  if (left > right || top > bottom) return null_rect;
  return CGRectMake(left, top, right - left, bottom - top);
}

CGDirectDisplayID CGMainDisplayID() {
  return main_display;
}

CGRect CGDisplayBounds(CGDirectDisplayID display) {
  if (display != main_display) refuse(__func__, "only the main display is modelled");
  const simulator::Reply reply = simulator::desktopLink().ask(simulator::AskScreens{});
  const auto& frame = std::get<simulator::List>(std::get<simulator::List>(reply.value).at(0));
  const auto number = [&](std::size_t index) { return std::get<double>(frame.at(index)); };
  return CGRectMake(number(0), number(1), number(2), number(3));
}

CGEventRef CGEventCreateKeyboardEvent(CGEventSourceRef source, CGKeyCode key, bool down) {
  if (source) refuse(__func__, "an event source is not modelled");
  if (answersNull(__func__)) return nullptr;
  return simulator::make<CGEventRef>(InputEvent(KeyEvent{key, down, 0, {}}), __func__);
}

CGEventRef CGEventCreateMouseEvent(CGEventSourceRef source, CGEventType type, CGPoint at,
                                   CGMouseButton button) {
  if (source) refuse(__func__, "an event source is not modelled");
  if (button != kCGMouseButtonLeft) refuse(__func__, "only the left button is modelled");
  if (answersNull(__func__)) return nullptr;
  return simulator::make<CGEventRef>(InputEvent(MouseEvent{type, {at.x, at.y}, 0}), __func__);
}

void CGEventKeyboardSetUnicodeString(CGEventRef event, unsigned long length,
                                     const unsigned short* text) {
  eventOf<KeyEvent>(event, __func__).text = std::u16string(text, text + length);
}

void CGEventSetFlags(CGEventRef event, CGEventFlags flags) {
  eventOf<KeyEvent>(event, __func__).flags = flags;
}

void CGEventSetIntegerValueField(CGEventRef event, CGEventField field, std::int64_t value) {
  if (field != kCGMouseEventClickState) refuse(__func__, "only the click state is modelled");
  eventOf<MouseEvent>(event, __func__).clickState = value;
}

void CGEventPost(CGEventTapLocation tap, CGEventRef event) {
  if (tap != kCGHIDEventTap) refuse(__func__, "only the HID tap is modelled");
  post(event, {}, __func__);
}

void CGEventPostToPid(pid_t pid, CGEventRef event) {
  post(event, pid, __func__);
}

std::uint32_t CGEventSourceCounterForEventType(CGEventSourceStateID state, CGEventType type) {
  if (state != kCGEventSourceStateHIDSystemState) {
    refuse(__func__, "only the state of the hardware is modelled");
  }
  if (type != kCGEventKeyDown && type != kCGEventLeftMouseDown && type != kCGEventRightMouseDown &&
      type != kCGEventOtherMouseDown) {
    refuse(__func__, "only the count of presses is modelled");
  }
  const simulator::Reply reply = simulator::desktopLink().ask(simulator::AskPresses{type});
  return static_cast<std::uint32_t>(std::get<double>(reply.value));
}

bool CGPreflightScreenCaptureAccess() {
  return std::get<bool>(simulator::desktopLink().ask(simulator::AskScreenCapture{}).value);
}

namespace {

// A constant of the framework.
CFStringRef constant(const char16_t* text) {
  auto* string = new simulator::Object;
  string->references = 1;
  string->creator = "the framework";
  string->immortal = true;
  string->payload = std::u16string(text);
  return reinterpret_cast<CFStringRef>(string);
}

// Adds what is true, unless a fault says something else under the key.
void addMember(simulator::DictionaryMembers& members, const std::u16string& key,
               const simulator::Value& truth, const char* creator) {
  const auto& faults = simulator::frameworkFaults().window_descriptions;
  const auto fault = faults.find(key);
  const simulator::Value& value = fault == faults.end() ? truth : fault->second;
  if (std::holds_alternative<std::monostate>(value)) return;
  members.values.emplace_back(key, simulator::toCf(value, creator));
}

// One description of a window, as AskWindows is answered: in this order.
CFTypeRef describe(const simulator::List& window, const char* creator) {
  enum { number, owner, owner_name, name, layer, frame };
  simulator::DictionaryMembers members;
  const auto add = [&](CFStringRef key, const simulator::Value& value) {
    addMember(members, simulator::payload<std::u16string>(key, creator), value, creator);
  };
  add(kCGWindowNumber, window.at(number));
  add(kCGWindowOwnerPID, window.at(owner));
  add(kCGWindowOwnerName, window.at(owner_name));
  add(kCGWindowName, window.at(name));
  add(kCGWindowLayer, window.at(layer));
  const auto& bounds_key = simulator::payload<std::u16string>(kCGWindowBounds, creator);
  if (simulator::frameworkFaults().window_descriptions.contains(bounds_key)) {
    add(kCGWindowBounds, {});
    return simulator::make<CFTypeRef>(std::move(members), creator);
  }
  simulator::DictionaryMembers bounds;
  std::size_t position = frame;
  for (const char16_t* key : bounds_keys) {
    addMember(bounds, key, window.at(position++), creator);
  }
  members.values.emplace_back(bounds_key, simulator::make<CFTypeRef>(std::move(bounds), creator));
  return simulator::make<CFTypeRef>(std::move(members), creator);
}

}  // namespace

const CFStringRef kCGWindowNumber = constant(u"kCGWindowNumber");
const CFStringRef kCGWindowOwnerPID = constant(u"kCGWindowOwnerPID");
const CFStringRef kCGWindowOwnerName = constant(u"kCGWindowOwnerName");
const CFStringRef kCGWindowName = constant(u"kCGWindowName");
const CFStringRef kCGWindowLayer = constant(u"kCGWindowLayer");
const CFStringRef kCGWindowBounds = constant(u"kCGWindowBounds");

CFArrayRef CGWindowListCopyWindowInfo(CGWindowListOption option, CGWindowID relativeTo) {
  if (option != kCGWindowListOptionOnScreenOnly || relativeTo != kCGNullWindowID) {
    refuse(__func__, "only the windows on the screen are modelled");
  }
  const simulator::Reply reply = simulator::desktopLink().ask(simulator::AskWindows{});
  const auto* windows = std::get_if<simulator::List>(&reply.value);
  if (!windows || answersNull(__func__)) return nullptr;
  simulator::ArrayMembers members;
  for (const simulator::Value& window : *windows) {
    members.values.push_back(describe(std::get<simulator::List>(window), __func__));
  }
  return simulator::make<CFArrayRef>(std::move(members), __func__);
}

// A rectangle that nobody can take for one stays behind where the dictionary describes none.
// Assumed (no test can tell: the window server describes no window so): a member that is no number
// makes it such a dictionary.
bool CGRectMakeWithDictionaryRepresentation(CFDictionaryRef dictionary, CGRect* rect) {
  constexpr double nan = std::numeric_limits<double>::quiet_NaN();
  *rect = CGRectMake(nan, nan, nan, nan);
  const auto& held = simulator::payload<simulator::DictionaryMembers>(dictionary, __func__).values;
  std::array<double, std::size(bounds_keys)> numbers{};
  for (std::size_t i = 0; i < numbers.size(); ++i) {
    const auto found =
        std::ranges::find(held, bounds_keys[i], &std::pair<std::u16string, CFTypeRef>::first);
    if (found == held.end()) return false;
    const simulator::Value value = simulator::fromCf(found->second, __func__);
    const auto* number = std::get_if<double>(&value);
    if (!number) return false;
    numbers[i] = *number;
  }
  *rect = CGRectMake(numbers[0], numbers[1], numbers[2], numbers[3]);
  return true;
}
