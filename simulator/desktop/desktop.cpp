#include "simulator/desktop/desktop.h"

#include <algorithm>
#include <cassert>

#include "simulator/desktop/unmodelled.h"

namespace simulator {
namespace {

std::string fileName(const std::string& path) {
  return path.substr(path.rfind('/') + 1);
}

}  // namespace

Desktop::Desktop() : screens_{{0, 0, 1440, 900}} {}

// Elements of one process may stand in the tree of another one.
Desktop::~Desktop() {
  for (const auto& process : processes_) process->root.removeChildren();
}

Seconds Desktop::now() const {
  return now_;
}

void Desktop::advanceTo(Seconds time) {
  while (!schedule_.empty() && schedule_.begin()->first.time <= time) {
    auto due = schedule_.extract(schedule_.begin());
    now_ = std::max(now_, due.key().time);
    due.mapped()();
    changed();
  }
  now_ = std::max(now_, time);
}

std::optional<Seconds> Desktop::nextDeadline() const {
  if (schedule_.empty()) return std::nullopt;
  return schedule_.begin()->first.time;
}

void Desktop::schedule(Seconds delay, std::function<void()> effect) {
  assert(delay >= 0);
  schedule_.emplace(Scheduled{now_ + delay, next_order_++}, std::move(effect));
}

void Desktop::runWatchers() const {
  for (const auto& look : watchers_) look();
}

void Desktop::changed() const {
  for (const auto& look : changed_) look();
}

void Desktop::noteMilestone(const std::string& text, std::optional<int> panel) {
  record_.add(now_, Milestone{text, panel});
}

// --- Processes. ---

Process& Desktop::addProcess(const ProcessOptions& options) {
  ProcessOptions chosen = options;
  while (chosen.pid == 0 || (options.pid == 0 && findProcess(chosen.pid) != nullptr)) {
    chosen.pid = next_pid_++;
  }
  assert(findProcess(chosen.pid) == nullptr);
  assert(!chosen.host || findProcess(*chosen.host) != nullptr);
  processes_.push_back(std::make_unique<Process>(chosen));
  return *processes_.back();
}

const Process* Desktop::findProcess(Pid pid) const {
  for (const auto& process : processes_) {
    if (process->pid == pid) return process.get();
  }
  return nullptr;
}

Process* Desktop::findProcess(Pid pid) {
  return const_cast<Process*>(std::as_const(*this).findProcess(pid));
}

const Element* Desktop::findElement(ElementId id) const {
  const Process* process = findProcess(id.pid);
  if (process == nullptr || process->terminated) return nullptr;
  const auto found = process->elements.living.find(id.number);
  return found == process->elements.living.end() ? nullptr : found->second;
}

Element* Desktop::findElement(ElementId id) {
  return const_cast<Element*>(std::as_const(*this).findElement(id));
}

void Desktop::terminateProcess(Pid pid, bool remembered) {
  Process* process = findProcess(pid);
  assert(process != nullptr && !process->terminated);
  process->terminated = true;
  process->remembered = remembered;
  process->receivers.clear();
  for (std::size_t at = 0; at < windows_.size();) {
    if (windows_[at]->owner == pid && !windows_[at]->ghost) {
      removeWindow(windows_[at]->number);
      at = 0;  // the windows attached to it are gone as well
    } else {
      ++at;
    }
  }
  process->root.removeChildren();
  if (frontmost_ != pid) return;

  for (const auto& window : windows_) {
    const Process& next = *findProcess(applicationOf(window->owner));
    const bool open = window->on_screen && !window->ghost;
    if (open && next.application && !next.terminated) return setFrontmost(next.pid);
  }
  setFrontmost(std::nullopt);
}

void Desktop::setFrontmost(std::optional<Pid> pid) {
  if (frontmost_ == pid) return;
  assert(!pid || (findProcess(*pid)->application && !findProcess(*pid)->terminated));
  record_.add(now_, FrontmostChanged{frontmost_, pid});
  frontmost_ = pid;
  if (pid) comeBackFromOtherSpace(*findProcess(*pid));
  // Assumed (Live.AllWindowsOfAnApplicationComeForwardWithIt,
  // Live.AClickBringsAllWindowsOfItsApplicationForward): all windows of the application come
  // forward, whether it was asked to or clicked.
  std::stable_partition(windows_.begin(), windows_.end(),
                        [this](const auto& window) { return belongsToFrontmost(*window); });
}

// Assumed (no test can tell: no program moves windows to another space): the system changes to the
// space of an application that comes forward.
void Desktop::comeBackFromOtherSpace(Process& process) {
  if (!process.on_other_space) return;
  process.on_other_space = false;
  for (const auto& window : windows_) {
    if (applicationOf(window->owner) == process.pid) window->on_screen = true;
  }
}

// Assumed (Live.AnApplicationComesForwardWithin150Milliseconds): the system agrees, unless the
// scenario says otherwise.
// Assumed (no test can tell: the system decides when it refuses): then the workspace answers as if
// it had agreed, and System Events may do what other programs may not.
bool Desktop::activate(Pid pid, Origin origin) {
  record_.add(now_, ActivationAsked{pid, origin});
  const Process* process = findProcess(pid);
  if (process == nullptr || process->terminated || !process->application) return false;
  if (faults_.activation_refused && origin == Origin::tool) return true;
  schedule(prices_.comingForward, [this, process] {
    if (!process->terminated) setFrontmost(process->pid);
  });
  return true;
}

void Desktop::setScreens(std::vector<Rect> screens) {
  assert(!screens.empty());
  screens_ = std::move(screens);
}

// --- Programs. ---

void Desktop::installProgram(const std::string& path_or_name, ProgramMain main) {
  programs_[path_or_name] = std::move(main);
}

const ProgramMain* Desktop::findProgram(const std::string& path) const {
  const auto& missing = faults_.missing_programs;
  if (missing.contains(path) || missing.contains(fileName(path))) return nullptr;
  for (const std::string& key : {path, fileName(path)}) {
    const auto found = programs_.find(key);
    if (found != programs_.end()) return &found->second;
  }
  return nullptr;
}

bool Desktop::hasProgram(const std::string& path) const {
  return findProgram(path) != nullptr;
}

ProgramId Desktop::startProgram(const std::string& path,
                                const std::vector<std::string>& arguments) {
  const ProgramMain* main = findProgram(path);
  if (main == nullptr) abortUnmodelled("the program " + path);
  const ProgramId id = runs_.size() + 1;
  runs_.push_back(std::make_shared<ProgramRun>(*this, id, path, arguments));
  record_.add(now_, ProgramStarted{id, path, arguments});
  (*main)(*runs_.back());
  return id;
}

std::optional<ProgramResult> Desktop::programResult(ProgramId id) const {
  const ProgramRun& run = *runs_.at(id - 1);
  if (!run.ended()) return std::nullopt;
  return run.result();
}

void Desktop::terminateProgram(ProgramId id) {
  runs_.at(id - 1)->terminate();
}

}  // namespace simulator
