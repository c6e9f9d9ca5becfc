// What the desktop answers to requests, and how long that takes.
#include <algorithm>
#include <map>
#include <type_traits>

#include "simulator/desktop/desktop.h"
#include "simulator/desktop/unmodelled.h"

namespace simulator {
namespace {

// Of sums of times.
constexpr Seconds rounding = 1e-9;

template <typename T>
constexpr bool is_accessibility =
    std::is_same_v<T, CopyAttribute> || std::is_same_v<T, CopyAttributes> ||
    std::is_same_v<T, SetAttribute> || std::is_same_v<T, CopyActionNames> ||
    std::is_same_v<T, PerformAction>;

// Whether a request asks for the value of attributes.
template <typename T>
constexpr bool copies = std::is_same_v<T, CopyAttribute> || std::is_same_v<T, CopyAttributes>;

// The applications that scripts tell something, by their identifiers.
const std::map<std::string, std::string> application_names{
    {"com.apple.finder", "Finder"}, {"com.apple.systemevents", "System Events"}};

// Whether a request changes nothing at once.
template <typename T>
constexpr bool is_question = !std::is_same_v<T, SetAttribute> &&
                             !std::is_same_v<T, PerformAction> && !std::is_same_v<T, PostEvent>;

Value valueOf(const std::optional<Pid>& pid) {
  return pid ? Value(static_cast<double>(*pid)) : Value();
}

}  // namespace

// How long the request keeps its process at work.
// Assumed (Live.SeveralAttributesAreAnsweredAsFastAsOne): most of a request is its way there and
// back, so that one for several attributes takes as long as one for a single attribute.
template <typename Asked>
Seconds Desktop::workOf(const Asked& asked) const {
  if constexpr (std::is_same_v<Asked, PerformAction>) {
    return isPress(asked) ? prices_.press : prices_.request;
  }
  return prices_.request;
}

// Assumed (no test can tell: every action of a real element is known to it): who knows no such
// action says so at once.
bool Desktop::isPress(const PerformAction& request) const {
  const Element* element = faults_.untrusted ? nullptr : findElement(request.element);
  if (request.name != "AXPress" || element == nullptr || !element->offers("AXPress")) return false;
  AccessibilityRequest attempt;
  attempt.verb = AccessibilityRequest::Verb::perform;
  attempt.role = element->role();
  attempt.name = request.name;
  return faultyAnswer(attempt) != ax::actionUnsupported;
}

// How long its sender waits.
template <typename Asked>
Seconds Desktop::patienceOf(const Asked& asked) const {
  if constexpr (copies<Asked>) {
    return asked.patience.value_or(request_timeout_);
  }
  return request_timeout_;
}

Seconds Desktop::price(const Request& request) const {
  return std::visit(
      [this](const auto& asked) -> Seconds {
        using T = std::decay_t<decltype(asked)>;
        if constexpr (std::is_same_v<T, Activate>) return prices_.activation;
        if constexpr (std::is_same_v<T, PostEvent>) return prices_.event;
        if constexpr (std::is_same_v<T, AskWindows>) {
          return faults_.window_list_hangs ? never_answered_price : prices_.windowList;
        }
        if constexpr (is_accessibility<T>) {
          return std::min(timeUntilAnswered(asked.element, workOf(asked)), patienceOf(asked));
        }
        return 0;
      },
      request);
}

// From now on, for a request that keeps its process at work for so long.
Seconds Desktop::timeUntilAnswered(ElementId id, Seconds work) const {
  if (faults_.silent_processes.contains(id.pid)) return never_answered_price;
  const Element* element = findElement(id);
  if (faults_.untrusted || element == nullptr) return work;
  const Seconds waiting = std::max(busyUntil(id.pid) - now_, 0.0);
  return std::max(waiting + work, element->readableFrom() - now_);
}

// The end of what keeps the process from answering at present; not after now when nothing does.
Seconds Desktop::busyUntil(Pid pid) const {
  Seconds until = now_;
  for (const BusyTime& busy : faults_.busy) {
    if (busy.pid == pid && busy.from <= until && until < busy.to) until = busy.to;
  }
  return until;
}

// The request is recorded before its effects are, its error code filled in after them.
template <typename Asked>
Reply Desktop::answerAccessibility(const Asked& asked) {
  using Verb = AccessibilityRequest::Verb;
  runWatchers();
  AccessibilityRequest entry;
  entry.element = asked.element;
  if (const Element* element = findElement(asked.element)) {
    entry.role = element->role();
    if constexpr (!is_question<Asked>) {
      entry.text = element->text();
      entry.frame = element->frame();
    }
  }
  if constexpr (std::is_same_v<Asked, CopyActionNames>) {
    entry.verb = Verb::actionNames;
  } else if constexpr (std::is_same_v<Asked, CopyAttributes>) {
    entry.verb = Verb::copySeveral;
    entry.names = asked.names;
  } else {
    entry.name = asked.name;
  }
  if constexpr (std::is_same_v<Asked, SetAttribute>) {
    entry.verb = Verb::set;
    entry.value = asked.value;
  }
  if constexpr (std::is_same_v<Asked, PerformAction>) entry.verb = Verb::perform;

  const auto faulty = faultyAnswer(entry);
  const bool tooLong = workOf(asked) > patienceOf(asked);
  const std::size_t line = record_.addRequest(now_, std::move(entry));
  const std::int32_t refused = refusal(asked.element);
  Reply answered;
  if (refused != ax::success) {
    answered.error = refused;
    carryOutLater(asked);
  } else if (faulty) {
    answered.error = *faulty;
  } else {
    answered = reply(asked);
    // Measured: a press may take longer than its sender waits, and lands anyway.
    if (tooLong) answered = {ax::cannotComplete, {}};
  }
  record_.settle(line, answered.error);
  return answered;
}

// What a busy process was asked to do it does when it has time, although nobody waits any more.
template <typename Asked>
void Desktop::carryOutLater(const Asked& asked) {
  if constexpr (!copies<Asked> && !std::is_same_v<Asked, CopyActionNames>) {
    const Pid pid = asked.element.pid;
    const Seconds wait = busyUntil(pid) - now_;
    if (wait <= rounding || faults_.untrusted || faults_.silent_processes.contains(pid)) return;
    schedule(wait, [this, asked] {
      if (findElement(asked.element) != nullptr) reply(asked);
    });
  }
}

Reply Desktop::answer(const Request& request) {
  return std::visit(
      [this](const auto& asked) -> Reply {
        using T = std::decay_t<decltype(asked)>;
        Reply answered;
        if constexpr (is_accessibility<T>) {
          answered = answerAccessibility(asked);
        } else {
          answered = reply(asked);
        }
        if constexpr (!is_question<T>) changed();
        return answered;
      },
      request);
}

// Why no element answers, or success when one does.
std::int32_t Desktop::refusal(ElementId id) const {
  // Measured: without trust macOS 26 answers -25204. A process that does not answer in time looks
  // the same to who waited for it.
  if (faults_.untrusted || faults_.silent_processes.contains(id.pid)) return ax::cannotComplete;
  if (busyUntil(id.pid) > now_ + rounding) return ax::cannotComplete;
  // So does an element that is not there yet when the asker's patience ends.
  if (const Element* element = findElement(id)) {
    return element->readableFrom() > now_ + rounding ? ax::cannotComplete : ax::success;
  }
  // Assumed (Live.AnElementOfAnApplicationThatHasEndedIsInvalid,
  // Live.AnApplicationThatHasEndedCannotBeReached): who holds an element of a process that has
  // ended learns that it is invalid, who asks the application itself reaches nobody.
  return id.number == 0 ? ax::cannotComplete : ax::invalidElement;
}

// What a fault makes of a request that an element could answer; absent without one.
std::optional<std::int32_t> Desktop::faultyAnswer(const AccessibilityRequest& request) const {
  using Verb = AccessibilityRequest::Verb;
  for (const RefusedRequests& refused : faults_.refused_requests) {
    const bool anyRead = refused.verb == Verb::copy && !refused.name;
    const bool sameVerb =
        refused.verb == request.verb || (anyRead && request.verb == Verb::copySeveral);
    const bool applies = sameVerb && refused.name.value_or(request.name) == request.name &&
                         refused.role.value_or(request.role) == request.role;
    if (applies) return refused.error;
  }
  return {};
}

Reply Desktop::reply(const CopyAttribute& request) {
  Reply answered;
  if (request.element.number == 0 &&
      copyFromDesktop(*findProcess(request.element.pid), request.name, answered)) {
    return answered;
  }
  answered.error = findElement(request.element)->copyAttribute(request.name, answered.value);
  return answered;
}

Reply Desktop::reply(const CopyAttributes& request) {
  AccessibilityRequest single;
  if (const Element* element = findElement(request.element)) single.role = element->role();
  List values;
  for (const std::string& name : request.names) {
    single.name = name;
    const auto faulty = faultyAnswer(single);
    const Reply one = faulty ? Reply{*faulty, {}} : reply(CopyAttribute{request.element, name});
    values.push_back(one.error != ax::success ? Value(AttributeError{one.error}) : one.value);
  }
  return {ax::success, std::move(values)};
}

// The attributes of an application that the desktop itself knows. False for any other.
bool Desktop::copyFromDesktop(const Process& process, const std::string& attribute,
                              Reply& answered) const {
  if (attribute == "AXFrontmost") {
    answered.value = frontmost_ == process.pid;
    return true;
  }
  if (attribute == "AXChildren" && findProcess(applicationOf(process.pid))->on_other_space) {
    answered.value = childrenOnThisSpace(process);
    return true;
  }
  const bool all = attribute == "AXWindows";
  const bool focused = attribute == "AXFocusedWindow";
  if (!all && !focused && attribute != "AXMainWindow") return false;

  List shown;
  for (const auto& window : windows_) {
    if (window->owner != process.pid || !window->on_screen || window->element == nullptr) continue;
    if (focused && window->number == process.focused_window) {
      answered.value = window->element->id();
      return true;
    }
    if (focused || window->element->parent() == &process.root) {
      shown.emplace_back(window->element->id());
    }
  }
  if (all) {
    answered.value = std::move(shown);
  } else if (shown.empty()) {
    answered.error = ax::noValue;
  } else {
    answered.value = shown.front();
  }
  return true;
}

// Assumed (no test can tell: no program moves windows to another space): what was measured of
// "AXWindows" holds for the children, too.
List Desktop::childrenOnThisSpace(const Process& process) const {
  List shown;
  for (const auto& child : process.root.children()) {
    const bool away = std::any_of(windows_.begin(), windows_.end(), [&](const auto& window) {
      return window->element == child.get() && !window->on_screen;
    });
    if (!away) shown.emplace_back(child->id());
  }
  return shown;
}

Reply Desktop::reply(const SetAttribute& request) {
  const Process& process = *findProcess(request.element.pid);
  if (request.element.number == 0 && request.name == "AXFrontmost" && process.application) {
    const bool* forward = std::get_if<bool>(&request.value);
    if (forward == nullptr) return {ax::illegalArgument, {}};
    if (*forward) activate(process.pid, Origin::tool);
    return {};
  }
  return {findElement(request.element)->setAttribute(request.name, request.value), {}};
}

Reply Desktop::reply(const CopyActionNames& request) {
  return {ax::success, findElement(request.element)->actionNames()};
}

Reply Desktop::reply(const PerformAction& request) {
  return {findElement(request.element)->performAction(request.name), {}};
}

Reply Desktop::reply(const PostEvent& request) {
  if (const auto* key = std::get_if<KeyEvent>(&request.event)) {
    postKey(*key, request.target, Origin::tool);
  } else {
    postMouse(std::get<MouseEvent>(request.event), request.target, Origin::tool);
  }
  return {};
}

Reply Desktop::reply(const AskPresses& request) {
  const auto counted = presses_.find(request.type);
  if (counted == presses_.end()) {
    abortUnmodelled("the count of events of type " + std::to_string(request.type));
  }
  noteQuestion("presses of type " + std::to_string(request.type));
  return {ax::success, static_cast<double>(counted->second)};
}

Reply Desktop::reply(const AskTrust&) {
  noteQuestion("trust");
  return {ax::success, !faults_.untrusted};
}

Reply Desktop::reply(const AskScreenCapture&) {
  noteQuestion("screen capture");
  return {ax::success, !faults_.screen_recording_denied};
}

// Whether it runs comes first: nobody may be asked about what does not.
Reply Desktop::reply(const AskAutomation& request) {
  noteQuestion("automation of " + request.bundle);
  const auto known = application_names.find(request.bundle);
  std::int32_t answer = automation::permitted;
  if (known == application_names.end() || !runsApplication(known->second)) {
    answer = automation::notRunning;
  } else if (faults_.automation_denied.contains(known->second)) {
    answer = automation::denied;
  } else if (faults_.automation_unasked.contains(known->second)) {
    answer = automation::unasked;
  }
  return {ax::success, static_cast<double>(answer)};
}

bool Desktop::runsApplication(const std::string& name) const {
  return told_by_scripts_.contains(name) ||
         std::any_of(processes_.begin(), processes_.end(), [&](const auto& process) {
           return process->name == name && !process->terminated;
         });
}

Reply Desktop::reply(const AskFrontmost&) {
  noteQuestion("frontmost");
  return {ax::success, valueOf(frontmost_)};
}

Reply Desktop::reply(const AskRunning& request) {
  noteQuestion("running " + std::to_string(request.pid));
  const Process* process = findProcess(request.pid);
  if (process == nullptr || !process->application) return {};
  if (process->terminated && !process->remembered) return {};
  return {ax::success, !process->terminated};
}

Reply Desktop::reply(const Activate& request) {
  return {ax::success, activate(request.pid, Origin::tool)};
}

Reply Desktop::reply(const AskScreens&) {
  noteQuestion("screens");
  List screens;
  for (const Rect& screen : screens_) {
    screens.emplace_back(List{screen.x, screen.y, screen.width, screen.height});
  }
  return {ax::success, std::move(screens)};
}

// Titles are other programs' business: without permission nobody learns them.
Reply Desktop::reply(const AskWindows&) {
  List windows;
  for (const auto& window : windows_) {
    if (!window->listed || !window->on_screen) continue;
    const Value title = faults_.screen_recording_denied ? Value() : Value(window->title);
    const Rect& frame = window->frame;
    windows.emplace_back(List{static_cast<double>(window->number),
                              static_cast<double>(window->owner), findProcess(window->owner)->name,
                              title, static_cast<double>(window->layer), frame.x, frame.y,
                              frame.width, frame.height});
  }
  return {ax::success, std::move(windows)};
}

Reply Desktop::reply(const AskDisplayName& request) {
  noteQuestion("display name " + request.path);
  return {ax::success, displayName(request.path)};
}

void Desktop::noteQuestion(const std::string& question) {
  record_.add(now_, WorkspaceRequest{question});
}

}  // namespace simulator
