// The simulated desktop: processes, applications, screens, windows, element trees, input routing,
// programs and the record of everything that was asked of it. One object is one login session.
//
// The desktop keeps its own time and never reads a clock. Whoever drives it moves its time: the
// virtual clock in tests, the wall clock in the service.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "simulator/desktop/element.h"
#include "simulator/desktop/input.h"
#include "simulator/desktop/keyboard_layout.h"
#include "simulator/desktop/prices.h"
#include "simulator/desktop/process.h"
#include "simulator/desktop/program.h"
#include "simulator/desktop/record.h"
#include "simulator/desktop/request.h"
#include "simulator/desktop/value.h"
#include "simulator/desktop/window.h"

namespace simulator {

// The language in which the desktop shows names.
enum class Language { english, simplifiedChinese, german };

// Accessibility requests that fail although an element is there to answer them.
struct RefusedRequests {
  // Reading one attribute that is refused leaves its error in the answer to a request for several,
  // refusing to have any read refuses such requests as a whole.
  AccessibilityRequest::Verb verb = AccessibilityRequest::Verb::copy;
  // Their answer. Nothing is handed out and nothing done, not even with `ax::success`.
  std::int32_t error = ax::cannotComplete;
  std::optional<std::string> name = {};  // attribute or action; absent: any
  std::optional<std::string> role = {};  // of the element; absent: any
};

// A time in which a process answers nobody and handles no event: what comes meanwhile waits.
struct BusyTime {
  Pid pid = 0;
  Seconds from = 0;
  Seconds to = 0;
};

// What is wrong with this desktop. Nothing, by default.
struct Faults {
  bool untrusted = false;          // accessibility answers -25204, posted events are dropped
  std::set<Pid> silent_processes;  // accessibility requests to these are never answered
  std::vector<BusyTime> busy;
  std::set<std::string> missing_programs;  // by path or by file name: cannot be started
  bool script_hangs = false;               // osascript never ends
  bool window_list_hangs = false;          // the window server never lists its windows
  bool ps_prints_nothing = false;
  bool screen_recording_denied = false;  // window titles are hidden, no window can be captured
  bool activation_refused = false;       // who asks the workspace for the foreground asks in vain
  std::set<std::string> automation_denied;   // applications that no script may tell anything
  std::set<std::string> automation_unasked;  // about these nobody has been asked, nobody answers
  std::vector<RefusedRequests> refused_requests;  // the first that applies decides
};

// The price of what is never answered and has no time-out: longer than anyone waits.
inline constexpr Seconds never_answered_price = 1e9;

class Desktop {
 public:
  Desktop();
  ~Desktop();
  Desktop(const Desktop&) = delete;
  Desktop& operator=(const Desktop&) = delete;

  // --- Time. ---
  Seconds now() const;
  // Moves time forward to `time` (never back), running everything scheduled up to it in order.
  void advanceTo(Seconds time);
  // The time of the next thing that will happen by itself, absent when nothing is scheduled.
  std::optional<Seconds> nextDeadline() const;

  // --- Requests. ---
  // How long a request takes before it is answered. The caller lets that much time pass and calls
  // `answer` then: the answer shows the desktop as it is at the end of the request.
  Seconds price(const Request& request) const;
  Reply answer(const Request& request);

  // --- Programs of the desktop ("/bin/ps", "/usr/bin/osascript", "background-window-capture"). ---
  // Whether the desktop has a program of that path; the capture helper is known by its file name.
  bool hasProgram(const std::string& path) const;
  // Starts a program; it runs as time moves. `arguments` do not include the program's own name.
  ProgramId startProgram(const std::string& path, const std::vector<std::string>& arguments);
  // Absent while the program runs.
  std::optional<ProgramResult> programResult(ProgramId id) const;
  // Sends a running program SIGTERM.
  void terminateProgram(ProgramId id);

  // A script told the application something.
  // Assumed (Live.SystemEventsRunsOnceAScriptHasToldItSomething): it runs from then on, as scripts
  // start what they tell something. System Events is said to end after a while, which is not
  // modelled; such an application is no process here.
  void noteTold(const std::string& application) { told_by_scripts_.insert(application); }

  // --- What happened. ---
  const Record& record() const { return record_; }

  // --- From here on: for those who build the desktop and play its processes. ---
  Record& record() { return record_; }
  void noteMilestone(const std::string& text, std::optional<int> panel = {});

  // Runs `effect` once time has moved on by `delay` (seconds, not negative). Effects of the same
  // time run in the order in which they were scheduled, also those scheduled by an effect.
  void schedule(Seconds delay, std::function<void()> effect);

  // Runs `look` before each accessibility request and each event, for as long as the desktop lives:
  // for what follows the machine outside the desktop, which nothing announces.
  void watch(std::function<void()> look) { watchers_.push_back(std::move(look)); }

  // Runs `look` after everything that may have changed what is seen: an effect, a write, an action,
  // an event, and what a watcher says that it `changed`.
  void onChange(std::function<void()> look) { changed_.push_back(std::move(look)); }
  void changed() const;

  // A process's host must exist. References to processes stay valid as long as the desktop, those
  // to windows until their removal. Finders give null for what does not exist; a terminated process
  // is still found.
  Process& addProcess(const ProcessOptions& options);
  Process* findProcess(Pid pid);
  const Process* findProcess(Pid pid) const;
  const std::vector<std::unique_ptr<Process>>& processes() const { return processes_; }
  // Ends a process: its windows close, its elements go stale, and when it was frontmost the
  // application of the topmost window left becomes frontmost. A `remembered` application is still
  // answered for as "known but terminated".
  void terminateProcess(Pid pid, bool remembered);
  Element* findElement(ElementId id);  // null for a stale number and for a terminated process
  const Element* findElement(ElementId id) const;

  // Opens a window; `window.number` is chosen here. It opens in front of everything, except that a
  // window of a background application opens behind the windows of the frontmost one. A window
  // whose element is a child of the application element gets an "AXRaise" action.
  Window& addWindow(Window window);
  // Closes a window and removes its element from the tree. Nothing happens for an unknown number.
  void removeWindow(std::uint32_t number);
  // Closes a window of which the window list keeps a ghost: an entry under the same number that
  // nothing hits and accessibility does not show. It stays until it is removed.
  void leaveGhost(std::uint32_t number, bool capturable);
  // Gives an open window another number, which is returned.
  std::uint32_t renumberWindow(std::uint32_t number);
  Window* findWindow(std::uint32_t number);
  void raiseWindow(std::uint32_t number);  // in front of everything
  const std::vector<std::unique_ptr<Window>>& windows() const { return windows_; }  // front first
  // The topmost window on the screen at the point, of `owner` alone when given; null without one.
  Window* windowAt(Point point, std::optional<Pid> owner = {});

  // The frontmost application. Its windows, and those of processes that draw for it, come forward.
  std::optional<Pid> frontmost() const { return frontmost_; }
  void setFrontmost(std::optional<Pid> pid);
  // Asks an application to come forward; it is frontmost when the price of that has passed. False
  // when there is no such application.
  bool activate(Pid pid, Origin origin);

  // Posts an event. A process that is busy receives it afterwards. To a process: its receivers
  // alone see it, a mouse event only over a window of that process. To the session: a key goes to
  // the frontmost application, a mouse event to the process of the topmost window at the point, and
  // a mouse-down there brings that application forward.
  void postKey(const KeyEvent& event, std::optional<Pid> target, Origin origin);
  void postMouse(const MouseEvent& event, std::optional<Pid> target, Origin origin);

  const std::vector<Rect>& screens() const { return screens_; }
  void setScreens(std::vector<Rect> screens);  // Quartz points, the main one first; at least one
  Language language() const { return language_; }
  void setLanguage(Language language) { language_ = language; }
  KeyboardLayout keyboardLayout() const { return keyboard_layout_; }
  void setKeyboardLayout(KeyboardLayout layout) { keyboard_layout_ = layout; }
  Prices& prices() { return prices_; }
  const Prices& prices() const { return prices_; }
  // How long an accessibility request waits for its answer, unless its sender set another time.
  void setRequestTimeout(Seconds timeout) { request_timeout_ = timeout; }
  // The disks, by the path (without links) at which each is mounted, "/" among them.
  void addVolume(const std::string& path, const std::string& name) { volumes_[path] = name; }
  const std::map<std::string, std::string>& volumes() const { return volumes_; }
  std::string displayName(const std::string& path) const;

  Faults& faults() { return faults_; }
  const Faults& faults() const { return faults_; }

  // Installs a program under a path, or under a bare file name that any folder may hold.
  void installProgram(const std::string& path_or_name, ProgramMain main);

 private:
  struct Scheduled {
    Seconds time;
    std::uint64_t order;
    auto operator<=>(const Scheduled&) const = default;
  };

  // The answers to the kinds of requests.
  Reply reply(const CopyAttribute& request);
  Reply reply(const CopyAttributes& request);
  Reply reply(const SetAttribute& request);
  Reply reply(const CopyActionNames& request);
  Reply reply(const PerformAction& request);
  Reply reply(const PostEvent& request);
  Reply reply(const AskPresses& request);
  Reply reply(const AskTrust& request);
  Reply reply(const AskScreenCapture& request);
  Reply reply(const AskAutomation& request);
  Reply reply(const AskFrontmost& request);
  Reply reply(const AskRunning& request);
  Reply reply(const Activate& request);
  Reply reply(const AskScreens& request);
  Reply reply(const AskWindows& request);
  Reply reply(const AskDisplayName& request);

  template <typename Asked>
  Reply answerAccessibility(const Asked& asked);
  std::int32_t refusal(ElementId id) const;
  Seconds busyUntil(Pid pid) const;
  Seconds timeUntilAnswered(ElementId id, Seconds work) const;
  template <typename Asked>
  Seconds workOf(const Asked& asked) const;
  bool isPress(const PerformAction& request) const;
  template <typename Asked>
  Seconds patienceOf(const Asked& asked) const;
  template <typename Asked>
  void carryOutLater(const Asked& asked);
  void whenFree(Pid pid, std::function<void()> effect);
  std::optional<std::int32_t> faultyAnswer(const AccessibilityRequest& request) const;
  bool copyFromDesktop(const Process& process, const std::string& attribute, Reply& answered) const;
  List childrenOnThisSpace(const Process& process) const;
  void noteQuestion(const std::string& question);
  void countPress(std::uint32_t type, Origin origin);
  bool runsApplication(const std::string& name) const;
  void runWatchers() const;
  void makeRaisable(const Window& window);
  bool belongsToFrontmost(const Window& window) const;
  Pid applicationOf(Pid pid) const;
  void comeBackFromOtherSpace(Process& process);
  const ProgramMain* findProgram(const std::string& path) const;

  Seconds now_ = 0;
  std::uint64_t next_order_ = 0;
  std::map<Scheduled, std::function<void()>> schedule_;
  std::vector<std::unique_ptr<Process>> processes_;
  std::vector<std::unique_ptr<Window>> windows_;
  Pid next_pid_ = 501;
  std::uint32_t next_window_number_ = 101;
  std::optional<Pid> frontmost_;
  std::map<std::uint32_t, std::uint32_t> presses_{{pressed::left_button, 0},
                                                  {pressed::right_button, 0},
                                                  {pressed::key, 0},
                                                  {pressed::other_button, 0}};
  std::set<std::string> told_by_scripts_;
  std::vector<Rect> screens_;
  Language language_ = Language::english;
  KeyboardLayout keyboard_layout_ = KeyboardLayout::us;
  Prices prices_;
  Seconds request_timeout_ = 6;  // measured, about
  std::map<std::string, std::string> volumes_{{"/", "Macintosh HD"}};
  std::vector<std::function<void()>> watchers_;
  std::vector<std::function<void()>> changed_;
  Faults faults_;
  std::map<std::string, ProgramMain> programs_;
  std::vector<std::shared_ptr<ProgramRun>> runs_;
  Record record_;
};

}  // namespace simulator
