// Everything a program can ask of the simulated desktop, as plain records: the border between the
// stand-in frameworks (in the program's process) and the model (in the same process under the
// virtual clock, or behind a socket in real time).
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "simulator/desktop/value.h"

namespace simulator {

// Accessibility error codes, from the platform's AXError.h.
namespace ax {
inline constexpr std::int32_t success = 0;
inline constexpr std::int32_t failure = -25200;
inline constexpr std::int32_t illegalArgument = -25201;
inline constexpr std::int32_t invalidElement = -25202;
inline constexpr std::int32_t cannotComplete = -25204;
inline constexpr std::int32_t attributeUnsupported = -25205;
inline constexpr std::int32_t actionUnsupported = -25206;
inline constexpr std::int32_t notImplemented = -25208;
inline constexpr std::int32_t apiDisabled = -25211;
inline constexpr std::int32_t noValue = -25212;
}  // namespace ax

// --- Accessibility. The reply's value is the attribute's value, or a list: of action names, or of
// what each of several attributes holds, at its position, an AttributeError where it has no value.
// ---
struct CopyAttribute {
  ElementId element;
  std::string name;
  // How long the program waits for the answer; absent: for ever.
  std::optional<Seconds> patience = {};
};
struct CopyAttributes {
  ElementId element;
  std::vector<std::string> names;
  std::optional<Seconds> patience = {};  // as above
};
struct SetAttribute {
  ElementId element;
  std::string name;
  Value value;
};
struct CopyActionNames {
  ElementId element;
};
struct PerformAction {
  ElementId element;
  std::string name;
};

// --- Input. Posting never fails and never says whether anything received the event. ---
// Modifier flags, from CoreGraphics/CGEventTypes.h.
inline constexpr std::uint64_t shift_flag = 0x20000;
inline constexpr std::uint64_t control_flag = 0x40000;
inline constexpr std::uint64_t option_flag = 0x80000;
inline constexpr std::uint64_t command_flag = 0x100000;

struct KeyEvent {
  std::uint16_t keyCode = 0;
  bool down = true;
  std::uint64_t flags = 0;
  std::optional<std::u16string> text;  // attached Unicode text, absent when none was attached
};
inline constexpr std::uint32_t left_down = 1;
inline constexpr std::uint32_t left_up = 2;
struct MouseEvent {
  std::uint32_t type = left_down;  // or left_up
  Point at;
  std::int64_t clickState = 0;
};
struct PostEvent {
  std::variant<KeyEvent, MouseEvent> event;
  std::optional<Pid> target;  // absent: the whole login session (HID tap)
};

// The types of events that say that something was pressed, from CoreGraphics/CGEventTypes.h.
namespace pressed {
inline constexpr std::uint32_t left_button = 1;
inline constexpr std::uint32_t right_button = 3;
inline constexpr std::uint32_t key = 10;
inline constexpr std::uint32_t other_button = 25;
}  // namespace pressed

struct AskPresses {  // reply: how often people have pressed this since the desktop is there
  std::uint32_t type = pressed::key;
};

// --- Permissions. ---
// Answers about Apple events, from AppleEvents.h and MacErrors.h.
namespace automation {
inline constexpr std::int32_t permitted = 0;
inline constexpr std::int32_t notRunning = -600;
inline constexpr std::int32_t denied = -1743;
inline constexpr std::int32_t unasked = -1744;
}  // namespace automation

struct AskTrust {};          // reply: whether programs may use accessibility
struct AskScreenCapture {};  // reply: whether programs may see the windows of others
struct AskAutomation {       // reply: one of the codes above, as a number; the person is not asked
  std::string bundle;        // the identifier of the application that would be told something
};

// --- Workspace. ---
struct AskFrontmost {};  // reply: pid as a number, or no value
struct AskRunning {      // reply: true when it runs, false when it is known but has terminated,
  Pid pid = 0;           // no value when no application with that pid is registered
};
struct Activate {  // reply: true when the application exists and was told to come forward
  Pid pid = 0;
};
struct AskScreens {};  // reply: list of lists {x, y, width, height}, Quartz points, main first
struct AskWindows {};  // reply: list of lists {number, pid, owner's name, title or no value, layer,
                       // x, y, width, height}, those on the screen, front first
struct AskDisplayName {  // reply: the name under which the file browser shows the path
  std::string path;
};

using Request =
    std::variant<CopyAttribute, CopyAttributes, SetAttribute, CopyActionNames, PerformAction,
                 PostEvent, AskPresses, AskTrust, AskScreenCapture, AskAutomation, AskFrontmost,
                 AskRunning, Activate, AskScreens, AskWindows, AskDisplayName>;

// An answer. `error` is an accessibility error code; requests that are not accessibility requests
// always answer with success.
struct Reply {
  std::int32_t error = ax::success;
  Value value;
};

// What a program that ended on the desktop left behind.
struct ProgramResult {
  int exitStatus = 0;
  std::string standardOutput;
  std::string standardError;
};

}  // namespace simulator
