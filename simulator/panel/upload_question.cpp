#include "simulator/panel/upload_question.h"

#include <utility>

#include "simulator/panel/keystroke.h"
#include "simulator/panel/panel_texts.h"
#include "simulator/panel/panel_tree.h"

namespace simulator {
namespace {

// Assumed (no test can tell: it takes a browser and a page that uploads): in points.
constexpr double question_width = 420;
constexpr double question_height = 130;

constexpr const char* confirmed = "upload confirmed";
constexpr const char* declined = "upload declined";

}  // namespace

UploadQuestion::UploadQuestion(Desktop& desktop, const PanelOptions& options,
                               std::function<void(const std::string&)> note)
    : desktop_(desktop), host_(options.host), note_(std::move(note)) {
  const BrowserTexts& texts = browserTexts(options.language);
  const Rect& panel = options.frame;
  const Rect frame{panel.x + (panel.width - question_width) / 2, panel.y, question_width,
                   question_height};
  root_ = &addElement(host().root, "AXWindow", frame,
                      {{"AXSubrole", std::string("AXDialog")}, {"AXTitle", texts.askUpload}});
  addElement(*root_, "AXStaticText", {frame.x + 20, frame.y + 20, question_width - 40, 16},
             {{"AXValue", texts.askUpload}});
  const double y = frame.y + question_height - 44;
  addButton({frame.x + question_width - 200, y, 84, 24}, texts.cancel, declined);
  addButton({frame.x + question_width - 104, y, 84, 24}, texts.upload, confirmed);
  window_ =
      desktop_
          .addWindow({.owner = host_, .title = texts.askUpload, .frame = frame, .element = root_})
          .number;
  host().focused_window = window_;
  host().receivers.insert(host().receivers.begin(), this);
  note_("upload asked for");
}

UploadQuestion::~UploadQuestion() {
  std::erase(host().receivers, this);
}

void UploadQuestion::addButton(const Rect& frame, const std::string& title,
                               const std::string& answer) {
  Element& button =
      addElement(*root_, "AXButton", frame, {{"AXTitle", title}, {"AXEnabled", true}});
  button.addAction("AXPress", [this, answer] {
    end(answer);
    return ax::success;
  });
}

// Measured (on Linux, where the browser has the same code): Cancel may be the default button.
bool UploadQuestion::keyEvent(const KeyEvent& event, Route) {
  const Keystroke stroke = keystroke(event, desktop_.keyboardLayout());
  if (!event.down) return true;
  if (stroke.is(key::returnKey) || stroke.is(key::keypadEnter) || stroke.is(key::escape)) {
    end(declined);
  }
  return true;
}

bool UploadQuestion::mouseEvent(const MouseEvent& event, Window& window, Route route) {
  if (window.number != window_) return false;
  // Reported: clicks posted to a browser in the background have no effect.
  if (event.type != left_up || route == Route::process) return true;
  for (const auto& child : root_->children()) {
    if (!child->offers("AXPress") || !contains(*child->frame(), event.at)) continue;
    child->performAction("AXPress");
    break;
  }
  return true;
}

const Element* UploadQuestion::element() const {
  return desktop_.findWindow(window_) != nullptr ? root_ : nullptr;
}

void UploadQuestion::end(const std::string& answer) {
  std::erase(host().receivers, this);
  desktop_.removeWindow(std::exchange(window_, 0));
  note_(answer);
}

}  // namespace simulator
