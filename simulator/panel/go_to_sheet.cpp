#include "simulator/panel/go_to_sheet.h"

#include <algorithm>

#include "simulator/panel/folder.h"
#include "simulator/panel/panel_place.h"
#include "simulator/panel/panel_texts.h"

namespace simulator {
namespace {

// Measured, in seconds: from the chord to the sheet and to its field, from the confirmation until
// the sheet is gone.
constexpr Seconds sheet_delay = 0.13;
constexpr Seconds field_delay = 0.33;
constexpr Seconds sheet_closing_delay = 0.35;

// Assumed (Live.TheGoToSheetLiesOnThePanel): in points, where all of it is on the panel and beside
// it there is panel to click.
constexpr double sheet_width = 460;
constexpr double sheet_height = 140;

Rect centredIn(const Rect& panel) {
  return {panel.x + (panel.width - sheet_width) / 2, panel.y + (panel.height - sheet_height) / 3,
          sheet_width, sheet_height};
}

}  // namespace

GoToSheet::GoToSheet(Desktop& desktop, PanelSurroundings& surroundings, const PanelOptions& options,
                     ElementTable*& contents, GoToSheetOwner& owner)
    : desktop_(desktop),
      surroundings_(surroundings),
      options_(options),
      contents_(contents),
      owner_(owner) {}

void GoToSheet::later(Seconds delay, std::function<void()> step) {
  desktop_.schedule(delay * options_.slow, [this, turn = turn_, step = std::move(step)] {
    if (turn == turn_ && owner_.alive()) step();
  });
}

void GoToSheet::open(Element& parent, const std::optional<std::string>& typed, bool atOnce) {
  if (isOpen() || options_.goTo.neverOpens) return;
  phase_ = Phase::opening;
  ++turn_;
  // Assumed (Live.TypingReplacesThePathOfBefore): the path of before is selected, so that typing
  // replaces it.
  text_ = typed ? EditedText{*typed, false} : EditedText{surroundings_.lastGoToPath, true};
  if (atOnce) {
    showSheet(parent);
    showField();
    return;
  }
  later(sheet_delay, [this, &parent] { showSheet(parent); });
  later(field_delay, [this] { showField(); });
}

void GoToSheet::showSheet(Element& parent) {
  const Rect frame = centredIn(options_.frame);
  sheet_ = &parent.addChild("AXSheet", *contents_);
  sheet_->setFrame(frame);
  sheet_->set("AXTitle", std::string());
  if (!options_.goTo.oldGeneration) sheet_->set("AXIdentifier", std::string("GoToWindow"));
  if (!options_.identifiers) removeIdentifiers(*sheet_);
  shown_in_ = parent.id().pid;
  // Assumed (Live.TheWindowListShowsTheGoToSheetWhereItShowsThePanel): the window list shows the
  // sheet's window where it shows the panel's.
  window_ = desktop_
                .addWindow({.owner = shown_in_,
                            .title = "",
                            .frame = frame,
                            .listed = listsWindowsOf(options_, shown_in_),
                            .element = isSeen() ? sheet_ : nullptr})
                .number;
  if (isSeen()) desktop_.findProcess(shown_in_)->focused_window = window_;
  owner_.note("go-to sheet opened");
  owner_.goToSheetOpened();
}

void GoToSheet::showField() {
  const Rect frame = *sheet_->frame();
  addElement(*sheet_, "AXStaticText", {frame.x + 20, frame.y + 12, frame.width - 40, 16},
             {{"AXValue", panelTexts(options_.language).goToFolder}});
  const bool comboBox = options_.goTo.oldGeneration && options_.goTo.comboBox;
  field_ = &addElement(*sheet_, comboBox ? "AXComboBox" : "AXTextField",
                       {frame.x + 20, frame.y + 36, frame.width - 40, 24},
                       {{"AXEnabled", true}, {"AXFocused", true}});
  field_->makeSettable("AXValue", [this](const Value& value) { return writeField(value); });
  // It has the keyboard as long as it exists.
  field_->makeSettable("AXFocused", [](const Value& value) {
    return std::holds_alternative<bool>(value) ? ax::success : ax::illegalArgument;
  });
  if (options_.goTo.oldGeneration) {
    fillOldSheet();
  } else {
    fillNewSheet();
  }
  if (!options_.goTo.withoutConfirm) {
    field_->addAction("AXConfirm", [this] {
      // Since the redesign it answers success and does nothing.
      if (options_.goTo.oldGeneration) confirm();
      return ax::success;
    });
  }
  if (!options_.identifiers) removeIdentifiers(*sheet_);
  edited();
  if (isSeen()) {
    desktop_.findProcess(shown_in_)->root.set("AXFocusedUIElement", field_->id());
  }
  phase_ = Phase::ready;
  owner_.note("go-to sheet ready");
}

void GoToSheet::fillOldSheet() {
  const PanelTexts& texts = panelTexts(options_.language);
  const Rect frame = *sheet_->frame();
  const double y = frame.y + frame.height - 44;
  const double right = frame.x + frame.width - 20;
  addButton({right - 180, y, 84, 24}, texts.cancel, [this] { close(std::nullopt); });
  addButton({right - 84, y, 84, 24}, texts.go, [this] { confirm(); });
}

// Assumed (Live.TheOnlySuggestionIsThePathUsedLast): the only suggestion is the path that was used
// last, and it is not selected.
void GoToSheet::fillNewSheet() {
  field_->set("AXIdentifier", std::string("PathTextField"));
  const Rect frame = *sheet_->frame();
  const Rect area{frame.x + 20, frame.y + 68, frame.width - 40, frame.height - 80};
  Element& table = addElement(addElement(*sheet_, "AXScrollArea", area), "AXTable", area);
  const std::string suggested = options_.goTo.suggestion.value_or(surroundings_.lastGoToPath);
  if (!suggested.empty()) {
    const Rect row{area.x, area.y, area.width, 24};
    addElement(addElement(addElement(table, "AXRow", row), "AXCell", row), "AXStaticText", row,
               {{"AXValue", suggested}});
  }
  addButton({frame.x + 8, frame.y + 8, 14, 14}, "", [this] { close(std::nullopt); });
  buttons_.back().first->set("AXSubrole", std::string("AXCloseButton"));
}

void GoToSheet::addButton(const Rect& frame, const std::string& title,
                          std::function<void()> effect) {
  Element& button =
      addElement(*sheet_, "AXButton", frame, {{"AXTitle", title}, {"AXEnabled", true}});
  button.addAction("AXPress", [this, effect] {
    if (options_.faults.pressRefused != ax::success) return options_.faults.pressRefused;
    if (phase_ == Phase::ready) effect();
    return ax::success;
  });
  buttons_.emplace_back(&button, std::move(effect));
}

void GoToSheet::pressKey(const Keystroke& stroke) {
  if (phase_ != Phase::ready) return;
  const bool withShift = stroke.is(key::returnKey, false, true);
  if (stroke.is(key::returnKey) || withShift || stroke.is(key::keypadEnter)) {
    confirm();
  } else if (stroke.is(key::escape)) {
    close(std::nullopt);
  } else if (stroke.is(key::a, true)) {
    text_.allSelected = true;
  } else if (stroke.is(key::backspace)) {
    text_.deleteBackward();
    edited();
  } else if (!stroke.text.empty()) {
    text_.insert(stroke.text);
    edited();
  }
}

bool GoToSheet::covers(Point point) const {
  return isShown() && contains(*sheet_->frame(), point);
}

void GoToSheet::click(Point point) {
  if (phase_ != Phase::ready) return;
  const auto hit = std::find_if(buttons_.begin(), buttons_.end(), [&](const auto& button) {
    return contains(*button.first->frame(), point);
  });
  if (hit != buttons_.end()) hit->second();
}

// Assumed (Live.APathThatDoesNotExistLeavesTheSheetAndItsText): a path that does not exist leaves
// the sheet and its text as they are.
void GoToSheet::confirm() {
  if (phase_ != Phase::ready) return;
  const std::string wanted = options_.goTo.suggestion.value_or(text_.text);
  const auto path = typedPath(wanted, surroundings_.home, owner_.folderShown());
  if (!path) {
    owner_.note("go-to sheet stays: nothing at " + wanted);
    return;
  }
  surroundings_.lastGoToPath = wanted;
  close(path);
}

void GoToSheet::close(const std::optional<std::string>& path) {
  phase_ = Phase::closing;
  ++turn_;
  later(sheet_closing_delay, [this, path] {
    abandon();
    owner_.note("go-to sheet closed");
    owner_.goToSheetClosed(path);
  });
}

void GoToSheet::abandon() {
  phase_ = Phase::closed;
  ++turn_;
  if (sheet_ == nullptr) return;
  desktop_.findProcess(shown_in_)->root.set("AXFocusedUIElement", Value{});
  Element* unseen = isSeen() ? nullptr : sheet_;
  desktop_.removeWindow(window_);
  if (unseen != nullptr) unseen->parent()->removeChild(*unseen);
  sheet_ = nullptr;
  field_ = nullptr;
  buttons_.clear();
}

void GoToSheet::edited() {
  field_->set("AXValue", text_.text);
}

std::int32_t GoToSheet::writeField(const Value& value) {
  const std::string* written = std::get_if<std::string>(&value);
  if (written == nullptr) return ax::illegalArgument;
  if (options_.faults.fieldWriteRefused != ax::success) return options_.faults.fieldWriteRefused;
  text_ = {*written, false};
  while (options_.goTo.normalisesField && text_.text.size() > 1 && text_.text.ends_with("/")) {
    text_.text.pop_back();
  }
  edited();
  return ax::success;
}

}  // namespace simulator
