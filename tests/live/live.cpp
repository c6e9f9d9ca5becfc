#include "live/live.h"

#include <deque>
#include <stdexcept>

#include "platform/accessibility.h"
#include "platform/wait.h"

namespace tessarine::test {
namespace {

constexpr double showing_seconds = 15;
constexpr double ending_seconds = 5;

std::optional<Element> firstBelow(const Element& root, const ElementTest& matches) {
  const std::vector<Element> found = elementsBelow(root, matches);
  if (found.empty()) return {};
  return found.front();
}

Element require(const std::optional<Element>& element, const std::string& what) {
  if (!element) throw std::runtime_error("the panel shows no " + what);
  return *element;
}

std::optional<Element> withIdentifier(const Element& root, const std::string& identifier) {
  return firstBelow(
      root, [&](const Element& each) { return axString(each, "AXIdentifier") == identifier; });
}

std::string nameOf(const Element& row) {
  const auto text =
      firstBelow(row, [](const Element& each) { return axRole(each) == "AXTextField"; });
  return text ? axInputValue(*text) : std::string();
}

std::vector<Element> namedRows(const Element& panel) {
  const Element list = byIdentifier(panel, "ListView");
  std::vector<Element> rows;
  for (const Element& row : axElements(list, "AXRows")) {
    if (!nameOf(row).empty()) rows.push_back(row);
  }
  return rows;
}

// The view of a panel that has its controls, and else nothing.
std::string viewOf(pid_t application) {
  const auto panel = withIdentifier(Element::application(application), "open-panel");
  if (!panel || !withIdentifier(*panel, "OKButton")) return "";
  if (withIdentifier(*panel, "ListView")) return "list";
  if (withIdentifier(*panel, "ColumnView")) return "columns";
  return withIdentifier(*panel, "IconView") ? "icons" : "";
}

}  // namespace

void Live::SetUp() {
  if (const auto reason = reasonNotToRun()) GTEST_SKIP() << *reason;
}

void Live::TearDown() {
  stage_.reset();
}

void Live::show(const PanelSpec& spec) {
  stage_.reset();
  stage_ = makeStage(spec, folder_.path());
  if (!spec.untilComplete) return;
  if (awaitView() != spec.view) {
    throw std::runtime_error(
        "no panel with a list was shown; where it shows columns or icons, it does not take its "
        "view "
        "from the user's defaults: choose the list view in a panel once");
  }
  awaitPlace(spec);
}

bool Live::showAs(const PanelSpec& spec) {
  stage_.reset();
  stage_ = makeStage(spec, folder_.path());
  const std::string view = awaitView();
  if (view.empty()) throw std::runtime_error("no panel was shown");
  if (view != spec.view) return false;
  awaitPlace(spec);
  return true;
}

std::string Live::awaitView() const {
  std::string view;
  pollUntil(showing_seconds, 0.1, [&] {
    view = viewOf(application());
    return !view.empty();
  });
  return view;
}

// Keys and clicks of a test must not reach anything else.
void Live::awaitPlace(const PanelSpec& spec) const {
  const auto placed = [&] {
    return axIsTrue(Element::application(application()), "AXFrontmost") == spec.inFront;
  };
  if (!pollUntil(ending_seconds, 0.05, placed)) {
    throw std::runtime_error(spec.inFront ? "the application does not come to the front"
                                          : "the application does not stay in the background");
  }
}

pid_t Live::keyTaker() const {
  return stage_->service().value_or(application());
}

Element Live::panel() const {
  return require(withIdentifier(Element::application(application()), "open-panel"), "panel");
}

std::optional<Element> Live::goToSheet() const {
  return withIdentifier(panel(), "GoToWindow");
}

std::string Live::end() const {
  pollUntil(ending_seconds, 0.02, [&] { return outcome() != "open"; });
  return outcome();
}

std::vector<Element> elementsBelow(const Element& root, const ElementTest& matches) {
  constexpr std::size_t most = 3000;
  std::vector<Element> found;
  std::deque<Element> waiting{root};
  for (std::size_t visited = 0; !waiting.empty() && visited < most; ++visited) {
    const Element element = waiting.front();
    waiting.pop_front();
    for (const Element& child : axChildren(element)) {
      if (matches(child)) found.push_back(child);
      waiting.push_back(child);
    }
  }
  return found;
}

Element byIdentifier(const Element& root, const std::string& identifier) {
  return require(withIdentifier(root, identifier), "#" + identifier);
}

Element byRole(const Element& root, const std::string& role) {
  return require(firstBelow(root, [&](const Element& each) { return axRole(each) == role; }), role);
}

Element byTitle(const Element& root, const std::string& role, const std::string& title) {
  return require(firstBelow(root,
                            [&](const Element& each) {
                              return axRole(each) == role && axTitle(each) == title;
                            }),
                 role + " \"" + title + "\"");
}

std::vector<std::string> listedNames(const Element& panel) {
  std::vector<std::string> names;
  for (const Element& row : namedRows(panel)) names.push_back(nameOf(row));
  return names;
}

Element rowNamed(const Element& panel, const std::string& name) {
  for (const Element& row : namedRows(panel)) {
    if (nameOf(row) == name) return row;
  }
  throw std::runtime_error("the list shows no \"" + name + "\"");
}

}  // namespace tessarine::test
