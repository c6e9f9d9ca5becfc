// What happened on the desktop, in order: everything that was asked of it and what came of it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <nlohmann/json_fwd.hpp>
#include <optional>
#include <string>
#include <utility>
#include <variant>
#include <vector>

#include "simulator/desktop/request.h"
#include "simulator/desktop/value.h"

namespace simulator {

// Who caused an entry: the program that uses the desktop, a script that it started, or a person at
// the machine (a click of theirs that a scenario plays).
enum class Origin { tool, script, person };

struct AccessibilityRequest {
  enum class Verb { copy, copySeveral, set, actionNames, perform };
  Verb verb = Verb::copy;
  ElementId element;
  std::string role;                // empty when no living element has that number
  std::string name;                // attribute or action
  std::vector<std::string> names;  // the attributes of a request for several
  Value value;                     // of a set request
  // Of a set or perform request: what a person reads on the element, and where it is.
  std::string text;
  std::optional<Rect> frame;
  std::int32_t error = ax::success;
};
struct WorkspaceRequest {
  std::string question;  // "frontmost", "running 501", "screens", "automation of com.apple.finder"
};
struct PostedKey {
  std::optional<Pid> target;  // absent: the login session
  KeyEvent event;
  Origin origin = Origin::tool;
};
struct PostedMouse {
  std::optional<Pid> target;
  MouseEvent event;
  Origin origin = Origin::tool;
};
struct ProgramStarted {
  std::uint64_t program = 0;
  std::string path;
  std::vector<std::string> arguments;
};
struct ProgramEnded {
  std::uint64_t program = 0;
  std::string path;
  int status = 0;
};
struct ActivationAsked {
  Pid pid = 0;
  Origin origin = Origin::tool;
};
struct FrontmostChanged {
  std::optional<Pid> from;
  std::optional<Pid> to;
};
struct WindowOpened {
  std::uint32_t number = 0;
  Pid owner = 0;
  std::string title;
};
struct WindowClosed {
  std::uint32_t number = 0;
  Pid owner = 0;
  std::string title;
};
struct Milestone {
  std::string text;  // "panel opened", "folder shown /usr/lib", "panel closed: chosen /x"
  std::optional<int> panel = {};  // its number, from 1; absent: of no panel
};

// What a person sees of the desktop from now on. Only a desktop that is filmed has these.
struct ShownWindow {
  std::uint32_t number = 0;
  Pid owner = 0;
  std::string title;
  Rect frame;
  bool listed = true;  // the window list names it
  bool operator==(const ShownWindow&) const = default;
};
struct ScreenShown {
  std::vector<ShownWindow> windows;  // those on the screen, front first
  bool operator==(const ScreenShown&) const = default;
};
struct ShownElement {
  std::string role;
  Rect frame;
  std::string text;         // what a person reads on it; empty: nothing
  std::string placeholder;  // what an empty field says
  std::string identifier;
  bool selected = false;
  bool focused = false;
  bool disabled = false;
  std::optional<bool> folder;  // it names a folder, or a file; absent: neither
  bool operator==(const ShownElement&) const = default;
};
struct PanelShown {
  int panel = 0;                       // its number, from 1
  std::string part;                    // "panel", "sheet", "menu" or "question"
  std::vector<ShownElement> elements;  // in the order of drawing; empty: the part is gone
  int leftOut = 0;                     // rows and items that are scrolled out of sight
  bool operator==(const PanelShown&) const = default;
};

using RecordEntry = std::variant<AccessibilityRequest, WorkspaceRequest, PostedKey, PostedMouse,
                                 ProgramStarted, ProgramEnded, ActivationAsked, FrontmostChanged,
                                 WindowOpened, WindowClosed, Milestone, ScreenShown, PanelShown>;

// Whether it only asks for something and changes nothing: nearly all that a program does.
bool isQuestion(const RecordEntry& entry);

struct RecordLine {
  Seconds time = 0;
  RecordEntry entry;
};

class Record {
 public:
  void add(Seconds time, RecordEntry entry) { lines_.push_back({time, std::move(entry)}); }
  // Adds a request before its effects are known; `settle` gives its error code afterwards.
  std::size_t addRequest(Seconds time, AccessibilityRequest request);
  void settle(std::size_t line, std::int32_t error);
  const std::vector<RecordLine>& lines() const { return lines_; }

  // One object for each entry, in order: "at" (seconds, to the microsecond), "what", and the
  // entry's own members. The same entries give the same bytes.
  nlohmann::ordered_json toJson(bool withQuestions = true) const;
  // The same as text, one object on each line. Bytes that are not UTF-8 become U+FFFD.
  std::string toText() const;
  // The milestones' texts, in order.
  std::vector<std::string> milestones() const;

  // Counts. Events count only when the tool itself posted them; a click is two mouse events.
  std::size_t accessibilityRequests() const;
  std::size_t keyEvents() const;
  std::size_t mouseEvents() const;
  std::size_t sessionEvents() const;      // keys and mouse events posted to the whole session
  std::size_t foregroundChanges() const;  // from one application to another, or to none

 private:
  std::vector<RecordLine> lines_;
};

}  // namespace simulator
