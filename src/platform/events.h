// Synthetic keyboard and mouse input: the only place that fabricates events. And how often people
// press something themselves.
//
// Events go to one process, which need not be frontmost, or through the HID tap to the whole login
// session. Nothing reports whether an event arrived; an event that the platform does not create is
// skipped, its pauses are not. All pauses block the calling thread.
//
// Points are screen points, origin at the top left of the main display, y growing downwards.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "core/geometry.h"
#include "platform/element.h"

namespace tessarine {

// --- Mouse: the left button, with no movement before it. A click to a process leaves the visible
// pointer where it is, a click to the session moves it. ---

// Down, 0.05 s, up, each carrying the click state. `global` posts to the session instead of the
// process. No pause follows.
void postMouseClick(std::int32_t pid, const Point& at, std::int64_t clickState, bool global);

// Click the centre of the element's frame, once or twice (0.06 s apart, the second with click state
// 2), to the process. Throw ToolError actionFailed "target element has no visible frame" when the
// frame's width or height is not above 0; nothing is posted then.
void clickElement(std::int32_t pid, const Element& element);
void doubleClickElement(std::int32_t pid, const Element& element);

// Double-clicks a point as doubleClickElement does.
void doubleClickPoint(std::int32_t pid, const Point& at);

// --- Keyboard. ---

void postKeyEvent(std::int32_t pid, std::uint16_t keyCode, std::uint64_t flags, bool keyDown,
                  const std::optional<std::u16string>& unicodeText = {});
void postGlobalKeyEvent(std::uint16_t keyCode, std::uint64_t flags, bool keyDown);

// Down, 0.02 s, up with the same flags and text, then `pause` seconds.
void tapKey(std::int32_t pid, std::uint16_t keyCode, std::uint64_t flags,
            const std::optional<std::u16string>& unicodeText, double pause);
void tapGlobalKey(std::uint16_t keyCode, std::uint64_t flags = 0, double pause = 0.05);

// One key press for each Unicode scalar, with key code 0 and the scalar attached: the receiver
// takes the attached text whatever the keyboard layout. Each is down, 0.02 s, up, then `pause`
// seconds.
void typeUnicodeText(std::int32_t pid, const std::string& text, double pause = 0.02);

// Return: down, 0.02 s, up, then `pause` seconds.
void pressReturn(std::int32_t pid, double pause);

// Command-A, then Delete, with 0.05 s after each.
void selectAllAndDelete(std::int32_t pid);

// --- People. ---

// How many times people have pressed a key or a mouse button since the window server started. What
// programs post to a process does not count, nor does a modifier key alone or a key's repetition.
// (CGEventSourceCounterForEventType of kCGEventSourceStateHIDSystemState, for key down and the
// three kinds of mouse down. Its documentation speaks of hardware, not of presses from afar, such
// as those by screen sharing, nor of what programs post to the session.)
std::uint64_t pressesByPeople();

}  // namespace tessarine
