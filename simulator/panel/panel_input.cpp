// Keys and clicks that reach a panel.
#include <algorithm>

#include "simulator/panel/folder.h"
#include "simulator/panel/open_panel.h"

namespace simulator {
namespace {

// Measured: the confirm button is back 0.41 s after the go-to sheet's Return, which is 0.06 s after
// the sheet is gone.
constexpr Seconds confirm_back_delay = 0.06;

}  // namespace

bool OpenPanel::Receiver::keyEvent(const KeyEvent& event, Route route) {
  if (!panel_.alive() || !panel_.takesKeysOf(pid_, route)) return false;
  if (event.down) panel_.pressKey(keystroke(event, panel_.desktop_.keyboardLayout()));
  return true;
}

bool OpenPanel::Receiver::mouseEvent(const MouseEvent& event, Window& window, Route route) {
  if (!panel_.alive()) return false;
  const bool onSheet = panel_.go_to_.covers(event.at);
  if (!onSheet && !(panel_.owns(window) && contains(panel_.options_.frame, event.at))) return false;
  if (panel_.phase_ != Phase::open || !panel_.takesClicksOf(pid_, route)) return true;
  MouseEvent arriving = event;
  if (route == Route::process && panel_.options_.clicksReach == ClicksReach::windowCorner) {
    arriving.at = {window.frame.x, window.frame.y};
  }
  if (event.type == left_down) {
    panel_.mouseDown(arriving);
  } else {
    panel_.mouseUp(arriving);
  }
  return true;
}

// Reported of browsers in the background: clicks that are posted to a process have no effect.
// Assumed (Live.AClickPostedToTheApplicationIsLost, Live.AClickPostedToTheServiceIsLost): the same
// holds in front.
// Assumed (Live.AClickOnARowSelectsIt): those of the session arrive as a person's do.
bool OpenPanel::takesClicksOf(Pid pid, Route route) const {
  if (route == Route::session) return true;
  switch (options_.clicksReach) {
    case ClicksReach::service:
      return pid == options_.service;
    case ClicksReach::host:
      return pid == options_.host;
    case ClicksReach::none:
      return false;
    case ClicksReach::both:
    case ClicksReach::windowCorner:
      break;
  }
  return true;
}

// Assumed (Live.AKeyOfTheSessionReachesThePanelInFront): what comes through the session reaches the
// panel as from a keyboard: the platform passes it on to whichever process draws the panel.
bool OpenPanel::takesKeysOf(Pid pid, Route route) const {
  if (route == Route::session) return true;
  const bool host = pid == options_.host;
  switch (options_.keysReach) {
    case KeysReach::service:
      return !host;
    case KeysReach::host:
      return host;
    case KeysReach::nobody:
      return false;
    case KeysReach::serviceWhileHostFrontmost:
      return !host && desktop_.frontmost() == options_.host;
    case KeysReach::both:
      break;
  }
  return true;
}

// Assumed (Live.TheGoToChordPostedToTheServiceOpensTheSheetInTheBackground,
// Live.ABackgroundPanelHasNoKeyboardUntilItIsClicked,
// Live.ReturnConfirmsABackgroundPanelThatNobodyClicked): the chords, Escape and Return need no
// control that has the keyboard; what moves in the list and what types does.
void OpenPanel::pressKey(const Keystroke& stroke) {
  const PanelFaults& faults = options_.faults;
  if (phase_ != Phase::open || faults.ignoresKeys) return;
  const bool needsClick =
      faults.keysNeedClick || (faults.escapeNeedsClick && stroke.is(key::escape));
  if (needsClick && !clicked_) return;
  if (menu_ != nullptr) {
    // Assumed (Live.EscapeInAnOpenMenuClosesTheMenuAlone, Live.AnOpenMenuTakesReturnFromThePanel,
    // Live.AnOpenMenuTakesTheGoToChordFromThePanel): an open menu takes all keys.
    if (stroke.is(key::escape)) closeMenu();
  } else if (go_to_.isOpen()) {
    go_to_.pressKey(stroke);
  } else if (stroke.is(key::g, true, true)) {
    openGoTo(std::nullopt);
  } else if (stroke.is(key::down, true)) {
    pressCommandDown();
  } else if (stroke.is(key::o, true)) {
    confirm();
  } else if (stroke.is(key::escape) || stroke.is(key::period, true)) {
    end(PanelOutcome::End::cancelled, "");
  } else if (keyboard_ == Keyboard::search) {
    pressSearchKey(stroke);
  } else {
    pressListKey(stroke);
  }
}

// Measured: it confirms, as Return does.
// Assumed (Live.CommandDownOpensASelectedFolder): a selected folder is opened, as in the file
// browser, also in a panel that could choose it.
void OpenPanel::pressCommandDown() {
  const Listing::Row* selected = listing_->selected();
  if (selected != nullptr && selected->directory && !confirm_blocked_) return openRow(*selected);
  confirm();
}

// Assumed (Live.RightArrowOnAFolderLeadsNowhere): Right Arrow would unfold a row of the list view
// in place, which is not drawn and changes nothing else.
// Assumed (Live.CommandAInTheListSelectsNothingMore, Live.DeleteInTheListRemovesNothing): a panel
// that chooses one thing has nothing to do on Command-A or Delete.
void OpenPanel::pressListKey(const Keystroke& stroke) {
  const bool focused = keyboard_ == Keyboard::list;
  if (stroke.is(key::returnKey) || stroke.is(key::keypadEnter)) {
    pressReturn();
  } else if (focused && stroke.is(key::down)) {
    listing_->moveSelection(1);
  } else if (focused && stroke.is(key::up)) {
    listing_->moveSelection(-1);
  } else if (focused && stroke.is(key::right)) {
    listing_->moveAcross(1);
  } else if (focused && stroke.is(key::left)) {
    listing_->moveAcross(-1);
  } else if (focused && stroke.text == "/") {
    openGoTo("/");
  }
}

void OpenPanel::pressReturn() {
  if (options_.faults.confirmsOnSecondReturn && canConfirm() && !return_lost_) {
    return_lost_ = true;
    return;
  }
  confirm();
}

// Assumed (Live.ReturnInTheSearchFieldSearchesAtOnce, Live.ReturnInTheSearchFieldConfirmsNothing):
// Return in the search field searches and confirms nothing.
void OpenPanel::pressSearchKey(const Keystroke& stroke) {
  if (stroke.is(key::returnKey) || stroke.is(key::keypadEnter)) {
    searchAtOnce();
  } else if (stroke.is(key::a, true)) {
    search_.allSelected = true;
  } else if (stroke.is(key::backspace)) {
    search_.deleteBackward();
    editSearch();
  } else if (!stroke.text.empty()) {
    search_.insert(stroke.text);
    editSearch();
  }
}

bool OpenPanel::owns(const Window& window) const {
  if (std::find(windows_.begin(), windows_.end(), window.number) != windows_.end()) return true;
  const bool embedded = options_.shape == PanelShape::embedded;
  return embedded && window.element == elements_.root->parent();
}

const Element* OpenPanel::buttonAt(Point point) const {
  const auto hit = std::find_if(presses_.begin(), presses_.end(), [&](const auto& press) {
    return contains(*press.first->frame(), point);
  });
  return hit == presses_.end() ? nullptr : hit->first;
}

// Assumed (Live.AClickBesideAnOpenMenuClosesIt): a click beside an open menu closes it.
void OpenPanel::clickMenu(Point point) {
  for (std::size_t i = 0; i < menu_paths_.size(); ++i) {
    if (contains(*menu_->children()[i]->frame(), point)) return pickMenuItem(menu_paths_[i]);
  }
  closeMenu();
}

void OpenPanel::mouseDown(const MouseEvent& event) {
  clicked_ = true;
  pressed_ = nullptr;
  pressed_row_.clear();
  // Assumed (Live.AClickBesideTheGoToSheetDoesNothing): a click beside the sheet does nothing.
  if (go_to_.isShown()) {
    if (go_to_.covers(event.at)) go_to_.click(event.at);
    return;
  }
  if (menu_ != nullptr) return clickMenu(event.at);
  // Assumed (Live.TheFirstClickInABackgroundPanelGivesItsListTheKeyboard): the first click anywhere
  // in a panel that opened in the background gives its list the keyboard.
  if (keyboard_ == Keyboard::nowhere) takeKeyboard(Keyboard::list);
  pressed_ = buttonAt(event.at);
  for (std::size_t i = 0; i < places_.size(); ++i) {
    if (contains(*elements_.places[i]->frame(), event.at)) return navigate(places_[i].path);
  }
  if (contains(*elements_.search->frame(), event.at)) return takeKeyboard(Keyboard::search);
  if (!contains(*elements_.listArea->frame(), event.at)) return;
  takeKeyboard(Keyboard::list);
  // Assumed (Live.AClickOnARowSelectsIt, Live.AClickBelowTheRowsLeavesNothingSelected): a click
  // selects the row under it, and beside the rows it takes the selection away.
  const Listing::Row* row = listing_->click(event.at);
  if (row != nullptr) pressed_row_ = row->path;
}

// A button acts, and a second click opens, when the mouse is let go where it was pressed.
void OpenPanel::mouseUp(const MouseEvent& event) {
  const Element* button = buttonAt(event.at);
  if (button != nullptr && button == pressed_) {
    const auto press = std::find_if(presses_.begin(), presses_.end(),
                                    [&](const auto& each) { return each.first == button; });
    const auto effect = press->second;  // a copy, as it may close the panel
    return effect();
  }
  constexpr std::int64_t double_click = 2;
  const Listing::Row* row = listing_->rowAt(event.at);
  if (event.clickState != double_click || row == nullptr || row->path != pressed_row_) return;
  openRow(*row);
}

void OpenPanel::openGoTo(const std::optional<std::string>& typed, bool atOnce) {
  Element* parent = elements_.root;
  // Assumed (no test can tell: AppKit shows no chooser that is only a part of a window): a sheet
  // hangs from a window, also when the chooser is only a part of one.
  if (options_.shape == PanelShape::embedded) parent = parent->parent();
  go_to_.open(*parent, typed, atOnce);
}

void OpenPanel::goToSheetOpened() {
  confirm_blocked_ = true;
  updateControls();
}

// Assumed (Live.AFilesPathLeadsToItsFolderWithTheFileSelected,
// Live.APackagesPathLeadsToItsFolderWithThePackageSelected): a file's path leads to its folder,
// with the file selected where files can be. Scripts rely on it. A package's path does the same.
void OpenPanel::goToSheetClosed(const std::optional<std::string>& path) {
  if (path) {
    const bool folder = isDirectory(*path) && !isPackage(*path);
    const std::string shown = folder ? *path : parentFolder(*path);
    if (shown != folder_) {
      behind_.push_back(folder_);
      ahead_.clear();
    }
    show(shown);
    if (!folder) listing_->selectPath(*path);
  }
  takeKeyboard(keyboard_);
  const bool confirmsToo = path && options_.faults.goToReturnConfirms;
  later(confirm_back_delay, [this, confirmsToo] {
    if (go_to_.isShown()) return;
    confirm_blocked_ = false;
    updateControls();
    if (confirmsToo) confirm();
  });
}

}  // namespace simulator
