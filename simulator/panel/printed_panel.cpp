#include "simulator/panel/printed_panel.h"

#include "simulator/panel/panel_place.h"

namespace simulator {
namespace {

// What was printed empty is an attribute that the element does not have.
void describeElement(Element& element, const PrintedElement& printed) {
  if (!printed.title.empty()) element.set("AXTitle", printed.title);
  if (!printed.description.empty()) element.set("AXDescription", printed.description);
  if (!printed.value.empty()) element.set("AXValue", printed.value);
  if (printed.frame != Rect{}) element.setFrame(printed.frame);
}

// "AXButton Choose"
std::string milestoneName(const PrintedElement& printed) {
  for (const auto& text : {printed.title, printed.value, printed.description}) {
    if (!text.empty()) return printed.role + " " + text;
  }
  return printed.role;
}

}  // namespace

PrintedPanel::PrintedPanel(Desktop& desktop, PanelSurroundings& surroundings, PanelOptions options)
    : desktop_(desktop),
      options_(std::move(options)),
      number_(++surroundings.panels),
      receiver_(*this) {
  ++surroundings.panelsToServe[options_.service];
  startPanelService(desktop_, options_);
  const bool inWindow =
      options_.shape == PanelShape::hostSheet || options_.shape == PanelShape::embedded;
  const auto elements = build(inWindow ? oldestWindowOf(desktop_, options_.host)
                                       : desktop_.findProcess(shownIn())->root);
  root_ = elements.front();
  openWindows(elements);
  for (const Pid pid : {options_.host, options_.service}) {
    auto& receivers = desktop_.findProcess(pid)->receivers;
    receivers.insert(receivers.begin(), &receiver_);
  }
  note("panel opened");
}

Pid PrintedPanel::shownIn() const {
  return options_.shape == PanelShape::serviceWindow ? options_.service : options_.host;
}

bool PrintedPanel::alive() const {
  return !desktop_.findProcess(shownIn())->terminated;
}

std::vector<Element*> PrintedPanel::build(Element& parent) {
  const std::vector<std::size_t> parents = recoverParents(options_.tree);
  std::vector<Element*> elements;
  for (std::size_t i = 0; i < options_.tree.size(); ++i) {
    const PrintedElement& printed = options_.tree[i];
    Element& element = (i == 0 ? parent : *elements[parents[i]]).addChild(printed.role);
    describeElement(element, printed);
    const std::string name = milestoneName(printed);
    for (const std::string& action : printed.actions) {
      element.addAction(action, [this, milestone = action + " of " + name] {
        note(milestone);
        return ax::success;
      });
    }
    elements.push_back(&element);
  }
  return elements;
}

// The two windows of the panel itself; a sheet on it has one in the process that shows it, and the
// last sheet the focus.
void PrintedPanel::openWindows(const std::vector<Element*>& elements) {
  Element& root = *elements.front();
  const bool inService = options_.shape == PanelShape::serviceWindow;
  const bool inHost =
      options_.shape == PanelShape::hostWindow || options_.shape == PanelShape::hostSheet;
  const std::string title = options_.title.value_or(options_.tree.front().title);
  const auto open = [&](Pid owner, Element* shown) {
    openWindow(owner, windowTitle(options_, owner, title), options_.frame, shown);
  };
  if (inHost || inService) open(options_.host, inHost ? &root : nullptr);
  open(options_.service, inService ? &root : nullptr);
  if (inService || options_.shape == PanelShape::hostWindow) {
    root.set("AXSubrole", std::string(options_.modal ? "AXDialog" : "AXStandardWindow"));
  }
  for (std::size_t i = 1; i < elements.size(); ++i) {
    const PrintedElement& printed = options_.tree[i];
    const bool sheet = printed.role == "AXSheet";
    if (sheet) openWindow(shownIn(), printed.title, printed.frame, elements[i]);
  }
}

// The element comes last: whoever adds a window with one gives it an action.
void PrintedPanel::openWindow(Pid owner, const std::string& title, const Rect& frame,
                              Element* element) {
  Window& window = desktop_.addWindow(
      {.owner = owner, .title = title, .frame = frame, .listed = listsWindowsOf(options_, owner)});
  windows_.push_back(window.number);
  if (element == nullptr) return;
  window.element = element;
  desktop_.findProcess(owner)->focused_window = window.number;
}

void PrintedPanel::note(const std::string& milestone) {
  milestones_.push_back({desktop_.now(), milestone});
  desktop_.noteMilestone(milestone, number_);
}

std::vector<PanelPart> PrintedPanel::parts() const {
  if (!alive()) return {};
  return {{"panel", root_}};
}

bool PrintedPanel::Receiver::keyEvent(const KeyEvent&, Route) {
  return panel_.alive();
}

// Nobody else wants a click on a window of this panel.
bool PrintedPanel::Receiver::mouseEvent(const MouseEvent&, Window&, Route) {
  return false;
}

}  // namespace simulator
