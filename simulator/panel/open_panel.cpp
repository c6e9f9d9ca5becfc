// The life of a panel: opening, what it shows, confirming, closing.
#include "simulator/panel/open_panel.h"

#include <algorithm>

#include "simulator/desktop/unmodelled.h"
#include "simulator/panel/folder.h"
#include "simulator/panel/panel_place.h"
#include "simulator/panel/panel_texts.h"

namespace simulator {
namespace {

// Measured, in seconds from the opening.
constexpr Seconds window_root_delay = 0.05;
constexpr Seconds sheet_root_delay = 0.3;  // the first read of a new sheet blocks until then
constexpr Seconds window_controls_delay = 0.48;
constexpr Seconds sheet_controls_delay = 0.74;
// Assumed (Live.TheListComesWithinASecondOfThePanel): the lists are there a little before the half
// second that was measured at most.
constexpr Seconds lists_delay = 0.45;
// Assumed (Live.ADoubleClickedFolderIsShownWithinThreeTenthsOfASecond): from a click to the folder
// it leads to.
constexpr Seconds navigation_delay = 0.1;
// Assumed (Live.ThePanelsWindowIsGoneWithin60MillisecondsOfTheConfirmation): from the confirmation
// until the panel's windows are gone.
constexpr Seconds panel_closing_delay = 0.02;
// Assumed (Live.ANewEntryIsListedWithinSixTenthsOfASecond): a change of the folder on the disk is
// seen within this time.
constexpr Seconds follow_interval = 0.2;

bool isSheet(const PanelOptions& options) {
  return options.shape == PanelShape::hostSheet || options.shape == PanelShape::embedded;
}

}  // namespace

OpenPanel::OpenPanel(Desktop& desktop, PanelSurroundings& surroundings, PanelOptions options)
    : desktop_(desktop),
      surroundings_(surroundings),
      options_(std::move(options)),
      number_(++surroundings.panels),
      unseen_table_{options_.service, 0, {}},
      unseen_root_(unseen_table_, "AXApplication"),
      go_to_(desktop, surroundings, options_, elements_.contents, *this),
      host_receiver_(*this, options_.host),
      service_receiver_(*this, options_.service) {
  ++surroundings_.panelsToServe[options_.service];
  desktop_.watch([this] { followFolder(); });
  if (options_.opensAtSeconds <= 0) {
    openRoot();
    openLists();
    openControls();
    return;
  }
  // A window appears when it can be read, a sheet at once.
  const bool sheet = isSheet(options_);
  const Seconds announced = sheet ? 0 : window_root_delay;
  desktop_.schedule(options_.opensAtSeconds + announced * options_.slow, [this, sheet, announced] {
    if (desktop_.findProcess(options_.host)->terminated) return;
    openRoot();
    const Seconds controls = sheet ? sheet_controls_delay : window_controls_delay;
    later(lists_delay - announced, [this] { openLists(); });
    later(controls - announced, [this] { openControls(); });
  });
}

// A step of a panel that has closed meanwhile, or whose process has ended, does not run.
void OpenPanel::later(Seconds delay, std::function<void()> step) {
  desktop_.schedule(delay * options_.slow, [this, step = std::move(step)] {
    if (alive()) step();
  });
}

Pid OpenPanel::pidShowingIt() const {
  const bool service = options_.shape == PanelShape::serviceWindow || !isSeen();
  return service ? options_.service : options_.host;
}

Process& OpenPanel::shownIn() const {
  return *desktop_.findProcess(pidShowingIt());
}

// Before it opens, the service that is to show it may not have started.
bool OpenPanel::alive() const {
  const Process* process = desktop_.findProcess(pidShowingIt());
  return phase_ != Phase::closed && process != nullptr && !process->terminated;
}

void OpenPanel::note(const std::string& milestone) {
  milestones_.push_back({desktop_.now(), milestone});
  desktop_.noteMilestone(milestone, number_);
}

Element& OpenPanel::parentOfRoot() {
  if (!isSeen()) return unseen_root_;
  return isSheet(options_) ? oldestWindowOf(desktop_, options_.host) : shownIn().root;
}

void OpenPanel::openRoot() {
  phase_ = Phase::opening;
  startPanelService(desktop_, options_);
  elements_.contents = &tableOfContents();
  buildRoot(elements_, parentOfRoot(), options_);
  if (isSheet(options_) && options_.opensAtSeconds > 0) {
    elements_.root->setReadableFrom(desktop_.now() + sheet_root_delay * options_.slow);
  }
  attachPress(elements_.closeButton, [this] { end(PanelOutcome::End::cancelled, ""); });
  openWindows();
  for (InputReceiver* receiver : {&host_receiver_, &service_receiver_}) {
    const Pid pid = receiver == &host_receiver_ ? options_.host : options_.service;
    auto& receivers = desktop_.findProcess(pid)->receivers;
    receivers.insert(receivers.begin(), receiver);
  }
  note("panel opened");
}

// Inferred by others.
// Assumed (Live.WhatStandsInThePanelBelongsToTheService): what stands in the panel is the
// service's, which draws it, also where the host's tree shows it.
ElementTable& OpenPanel::tableOfContents() {
  if (!isSeen()) return unseen_table_;
  const Pid owner = options_.elementsBelongToHost && options_.shape != PanelShape::serviceWindow
                        ? options_.host
                        : options_.service;
  return desktop_.findProcess(owner)->elements;
}

// The window server's view: one window of the browser and one of the service at the same frame.
// An embedded chooser stands in the browser's own window instead.
void OpenPanel::openWindows() {
  const bool both = options_.listed == ListedWindows::hostAndService;
  const bool inService = options_.shape == PanelShape::serviceWindow;
  if (options_.shape != PanelShape::embedded) {
    const bool listed = both || options_.listed == ListedWindows::host;
    openWindow(options_.host, listed, isSeen() && !inService ? elements_.root : nullptr);
  }
  if (options_.inBothTrees) {
    buildTwin(elements_, desktop_.findProcess(options_.service)->root, options_);
  }
  openWindow(options_.service, both || options_.listed == ListedWindows::service,
             inService ? elements_.root : elements_.twin);
  scheduleListChanges();
}

void OpenPanel::openWindow(Pid owner, bool listed, Element* shown) {
  Window window;
  window.owner = owner;
  window.title = windowTitle(options_, owner, title());
  window.frame = options_.frame;
  window.listed = listed;
  if (listed && options_.windowList.listedTwice) {
    windows_.push_back(desktop_.addWindow(window).number);
  }
  window.element = shown;
  windows_.push_back(desktop_.addWindow(window).number);
  if (shown != nullptr) desktop_.findProcess(owner)->focused_window = windows_.back();
}

std::string OpenPanel::title() const {
  const std::string usual = isSheet(options_) ? "" : panelTexts(options_.language).open;
  return options_.title.value_or(usual);
}

std::vector<PanelPart> OpenPanel::parts() const {
  std::vector<PanelPart> parts;
  const bool shown = elements_.root != nullptr && alive();
  if (shown) parts.push_back({"panel", elements_.root});
  if (shown && menu_ != nullptr) parts.push_back({"menu", menu_});
  if (shown && go_to_.element() != nullptr) parts.push_back({"sheet", go_to_.element()});
  if (question_ && question_->element() != nullptr) {
    parts.push_back({"question", question_->element()});
  }
  return parts;
}

// What the window list gets wrong while the panel is open.
void OpenPanel::scheduleListChanges() {
  const WindowListOptions& list = options_.windowList;
  const auto whileOpen = [this](Seconds delay, std::function<void()> change) {
    desktop_.schedule(delay, [this, change = std::move(change)] {
      if (alive()) change();
    });
  };
  const auto listWindows = [this](std::optional<Pid> owner, bool listed) {
    for (const std::uint32_t number : windows_) {
      Window* window = desktop_.findWindow(number);
      if (window != nullptr && (!owner || window->owner == *owner)) window->listed = listed;
    }
  };
  const bool hostListed =
      options_.listed == ListedWindows::hostAndService || options_.listed == ListedWindows::host;
  if (list.hostListedAfterSeconds > 0 && hostListed) {
    listWindows(options_.host, false);
    whileOpen(list.hostListedAfterSeconds,
              [this, listWindows] { listWindows(options_.host, true); });
  }
  if (list.leavesAfterSeconds) {
    whileOpen(*list.leavesAfterSeconds, [listWindows] { listWindows({}, false); });
  }
  if (list.changesNumberAfterSeconds) {
    whileOpen(*list.changesNumberAfterSeconds, [this] {
      for (std::uint32_t& number : windows_) {
        if (desktop_.findWindow(number) != nullptr) number = desktop_.renumberWindow(number);
      }
    });
  }
}

void OpenPanel::closeWindow(std::uint32_t number) {
  const WindowListOptions& list = options_.windowList;
  const Window* window = desktop_.findWindow(number);
  const bool stays = list.staysUncapturable || list.staysAfterClosingSeconds > 0;
  if (window == nullptr || !window->listed || !stays) return desktop_.removeWindow(number);
  desktop_.leaveGhost(number, !list.staysUncapturable);
  if (list.staysUncapturable) return;
  desktop_.schedule(list.staysAfterClosingSeconds,
                    [this, number] { desktop_.removeWindow(number); });
}

void OpenPanel::openLists() {
  if (phase_ != Phase::opening) return;
  places_ = sidebarPlaces();
  buildLists(elements_, options_, places_);
  openListing();
  attachPlaces();
  show(typedPath(options_.folder, surroundings_.home, "/").value_or("/"));
  // Assumed (Live.ABackgroundPanelHasNoKeyboardUntilItIsClicked,
  // Live.FocusingTheListGivesABackgroundPanelTheKeyboard): a panel that opens in the background has
  // no keyboard until something in it is clicked or given the focus.
  if (desktop_.frontmost() == options_.host) takeKeyboard(Keyboard::list);
}

void OpenPanel::openListing() {
  std::vector<std::string> starts;
  for (const SidebarPlace& place : places_) starts.push_back(place.path);
  for (const auto& [path, name] : desktop_.volumes()) starts.push_back(path);
  listing_ = makeListing(*elements_.list, options_, starts);
  listing_->rowsOf = [this](const std::string& folder) { return rowsOf(folder); };
  listing_->selectionChanged = [this] { updateControls(); };
  listing_->opened = [this](const Listing::Row& row) { openRow(row); };
  listing_->keyboardWanted = [this] { takeKeyboard(Keyboard::list); };
}

void OpenPanel::openControls() {
  if (phase_ != Phase::opening) return;
  buildControls(elements_, options_);
  attachPress(elements_.cancel, [this] {
    if (!options_.faults.cancelDoesNothing) end(PanelOutcome::End::cancelled, "");
  });
  attachPress(elements_.back, [this] { travel(behind_, ahead_); });
  attachPress(elements_.forward, [this] { travel(ahead_, behind_); });
  attachPress(elements_.newFolder, [] { abortUnmodelled("the panel's New Folder button"); });
  attachPress(elements_.viewOptions, [] { abortUnmodelled("the panel's view options"); });
  attachPress(elements_.groupBy, [] { abortUnmodelled("the panel's grouping options"); });
  attachConfirm();
  attachSearch();
  attachWhere();
  phase_ = Phase::open;
  updateControls();
  if (options_.goTo.openAtStart) openGoTo(std::nullopt, true);
}

// --- What is shown. ---

void OpenPanel::navigate(const std::string& folder) {
  later(navigation_delay, [this, folder] {
    if (phase_ != Phase::open || folder == folder_) return;
    behind_.push_back(folder_);
    ahead_.clear();
    show(folder);
  });
}

void OpenPanel::travel(std::vector<std::string>& from, std::vector<std::string>& to) {
  later(navigation_delay, [this, &from, &to] {
    if (from.empty()) return;
    to.push_back(folder_);
    const std::string folder = from.back();
    from.pop_back();
    show(folder);
  });
}

void OpenPanel::show(const std::string& folder) {
  const bool stale = options_.faults.staleListing && !folder_.empty();
  folder_ = folder;
  // Assumed (Live.AnotherFolderEndsTheSearch): a search is over when another folder is shown.
  search_ = {};
  if (!stale) fillListing();
  for (std::size_t i = 0; i < places_.size(); ++i) {
    elements_.places[i]->set("AXSelected", places_[i].path == folder_);
  }
  note("folder shown " + folder_);
  updateControls();
}

void OpenPanel::fillListing() {
  followed_at_ = desktop_.now();
  listing_->show(folder_);
  folder_states_.clear();
  if (keyboard_ == Keyboard::list) takeKeyboard(Keyboard::list);
}

// Assumed (Live.AllRowsAreMadeAnewForANewEntry, Live.TheSelectionStaysWhenThereIsANewEntry,
// Live.TheSelectionStaysWhenAnEntryVanishes): when an entry has appeared or vanished all rows are
// made anew, and what was selected stays so.
void OpenPanel::followFolder() {
  if (phase_ != Phase::open || !alive() || options_.faults.staleListing) return;
  if (desktop_.now() < followed_at_ + follow_interval) return;
  followed_at_ = desktop_.now();
  const std::vector<FolderState> states = folderStates();
  if (states == folder_states_) return;
  folder_states_ = states;
  if (listing_->isCurrent()) return;
  const std::string selected = listing_->selected() != nullptr ? listing_->selected()->path : "";
  fillListing();
  listing_->selectPath(selected);
  updateControls();
  desktop_.changed();
}

std::vector<FolderState> OpenPanel::folderStates() const {
  std::vector<FolderState> states;
  for (const std::string& folder : listing_->folders()) states.push_back(folderState(folder));
  return states;
}

// Assumed (Live.AFolderPanelShowsFiles, Live.AFolderPanelSelectsNoFile): a folder panel shows files
// but does not let them be selected.
// Assumed (Live.ASearchKeepsTheEntriesWhoseNamesContainItsText): a search keeps the entries of the
// folder shown whose names contain its text.
std::vector<Listing::Row> OpenPanel::rowsOf(const std::string& folder) const {
  std::vector<Listing::Row> rows;
  for (const auto& entry : visibleEntries(folder, options_.sort, surroundings_.listed)) {
    const std::string path = pathWithin(folder, entry.name);
    const std::string name = desktop_.displayName(path);
    if (folder == folder_ && name.find(search_.text) == std::string::npos) continue;
    const bool entered = entry.directory && !entry.package;
    const bool selectable = entered || options_.mode == PanelMode::files;
    rows.push_back({path, name, entered, entry.package, selectable, nullptr});
  }
  return rows;
}

void OpenPanel::openRow(const Listing::Row& row) {
  if (row.directory) {
    const auto folder = typedPath(row.path, surroundings_.home, folder_);
    if (folder) navigate(*folder);
  } else if (options_.mode == PanelMode::files) {
    end(PanelOutcome::End::chosen, row.path);
  }
}

bool OpenPanel::canConfirm() const {
  if (phase_ != Phase::open || confirm_blocked_) return false;
  return options_.mode != PanelMode::files || listing_->selected() != nullptr;
}

void OpenPanel::updateControls() {
  if (phase_ != Phase::open) return;
  if (elements_.confirm != nullptr) elements_.confirm->set("AXEnabled", canConfirm());
  elements_.back->set("AXEnabled", !behind_.empty());
  elements_.forward->set("AXEnabled", !ahead_.empty());
  elements_.where->set("AXValue", desktop_.displayName(folder_));
  elements_.search->set("AXValue", search_.text);
}

// --- What comes of it. ---

// Assumed (Live.ASelectedFolderIsChosenInsteadOfTheFolderShown): in a folder panel a selected
// folder is chosen, without one the folder shown, as measured.
void OpenPanel::confirm() {
  if (!canConfirm()) return;
  const Listing::Row* selected = listing_->selected();
  if (selected != nullptr && options_.mode == PanelMode::files) {
    openRow(*selected);
  } else {
    end(PanelOutcome::End::chosen, selected != nullptr ? selected->path : folder_);
  }
}

void OpenPanel::end(PanelOutcome::End how, const std::string& path) {
  if (phase_ == Phase::closing || phase_ == Phase::closed) return;
  phase_ = Phase::closing;
  outcome_ = {how, path, desktop_.now()};
  if (how == PanelOutcome::End::chosen) {
    outcome_.path = typedPath(path, surroundings_.home, folder_).value_or(path);
    note("chosen " + outcome_.path);
  } else {
    note("cancelled");
  }
  later(panel_closing_delay + options_.faults.closesLateBySeconds / options_.slow,
        [this] { close(); });
}

void OpenPanel::close() {
  phase_ = Phase::closed;
  go_to_.abandon();
  for (const Pid pid : {options_.host, options_.service}) {
    std::erase_if(desktop_.findProcess(pid)->receivers, [this](const InputReceiver* receiver) {
      return receiver == &host_receiver_ || receiver == &service_receiver_;
    });
  }
  Process& process = shownIn();
  process.root.set("AXFocusedUIElement", Value{});
  if (options_.shape == PanelShape::embedded || !isSeen()) {
    elements_.root->parent()->removeChild(*elements_.root);
  }
  for (const std::uint32_t number : windows_) closeWindow(number);
  elements_ = {};
  listing_.reset();
  menu_ = nullptr;
  presses_.clear();
  // Reported: the service outlives its last panel.
  const bool last = --surroundings_.panelsToServe[options_.service] == 0;
  if (last && options_.serviceEnds) desktop_.terminateProcess(options_.service, false);
  note(outcome_.end == PanelOutcome::End::chosen ? "panel closed: chosen " + outcome_.path
                                                 : "panel closed: cancelled");
  const bool uploads = options_.mode == PanelMode::upload;
  if (!uploads || !options_.asksAfterUpload || outcome_.end != PanelOutcome::End::chosen) return;
  question_.emplace(desktop_, options_, [this](const std::string& answer) { note(answer); });
}

}  // namespace simulator
