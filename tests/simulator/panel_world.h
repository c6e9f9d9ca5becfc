// One Open panel over a folder of its own, driven as a program drives it: by requests to the
// desktop and by letting its time pass.
#pragma once

#include <gtest/gtest.h>

#include <cmath>
#include <filesystem>
#include <fstream>
#include <memory>
#include <string>
#include <vector>

#include "simulator/desktop/text.h"
#include "simulator/panel/open_panel.h"
#include "simulator/scenario/scene.h"

namespace simulator {

namespace fs = std::filesystem;
using Json = nlohmann::ordered_json;
using Texts = std::vector<std::string>;

inline constexpr Pid host = 812;
inline constexpr Pid service = 900;
inline constexpr std::uint64_t command = 0x100000;
inline constexpr std::uint64_t shift = 0x20000;

// A folder of the machine with two folders, two files and something hidden.
class Sample {
 public:
  Sample() {
    std::string pattern = (fs::temp_directory_path() / "panel-XXXXXX").string();
    if (mkdtemp(pattern.data()) == nullptr) throw std::runtime_error("no temporary folder");
    path_ = fs::canonical(pattern).string();
    for (const char* folder : {"beta", "Alpha/inner", ".hidden"}) {
      fs::create_directories(fs::path(path_) / folder);
    }
    for (const char* file : {"file10.txt", "file 9.txt"}) std::ofstream(path_ + "/" + file) << "x";
  }
  ~Sample() { fs::remove_all(path_); }
  Sample(const Sample&) = delete;
  Sample& operator=(const Sample&) = delete;

  std::string path(const std::string& name = "") const {
    return name.empty() ? path_ : path_ + "/" + name;
  }

 private:
  std::string path_;
};

// One panel that shows the sample folder; `panel` holds what differs from a healthy one.
class PanelWorld {
 public:
  explicit PanelWorld(Json panel = Json::object(), Json scenario = Json::object()) {
    if (!panel.contains("shape")) panel["shape"] = "service-window";
    if (!panel.contains("tree")) describe(panel, scenario);
    if (!scenario.contains("home")) scenario["home"] = sample.path();
    scenario["panels"] = Json::array({panel});
    scene = makeScene(scenarioFromJson(scenario, "world"));
  }

  Desktop& desktop() { return scene->desktop; }
  const Panel& panel() const { return *scene->panels.front(); }
  void pass(Seconds seconds) { desktop().advanceTo(desktop().now() + seconds); }

  void key(std::uint16_t code, std::uint64_t flags = 0, std::optional<Pid> target = service) {
    for (const bool down : {true, false}) {
      desktop().answer(PostEvent{KeyEvent{code, down, flags, {}}, target});
    }
  }
  void type(const std::string& text) {
    desktop().answer(PostEvent{KeyEvent{0, true, 0, utf16FromUtf8(text)}, service});
  }
  void click(const Element& element, std::int64_t state = 1, Pid target = service) {
    const Rect frame = *element.frame();
    const Point middle{frame.x + frame.width / 2, frame.y + frame.height / 2};
    for (const std::uint32_t type : {1U, 2U}) {
      desktop().answer(PostEvent{MouseEvent{type, middle, state}, target});
    }
  }

  // Performs an action as the panel's user does: its price passes first.
  std::int32_t perform(const Element& element, const std::string& action) {
    const Request request = PerformAction{element.id(), action};
    pass(desktop().price(request));
    return desktop().answer(request).error;
  }
  std::int32_t write(const Element& element, const std::string& attribute, Value value) {
    return desktop().answer(SetAttribute{element.id(), attribute, std::move(value)}).error;
  }
  Reply read(ElementId element, const std::string& attribute) {
    return desktop().answer(CopyAttribute{element, attribute});
  }
  Value focusedWindow(Pid pid) { return read({pid, 0}, "AXFocusedWindow").value; }

  // Elements with the attribute at that text, in the order of the tree.
  std::vector<Element*> all(const std::string& attribute, const std::string& text) {
    std::vector<Element*> found;
    for (const auto& process : desktop().processes()) {
      collect(process->root, attribute, text, found);
    }
    return found;
  }
  Element& one(const std::string& attribute, const std::string& text) {
    const auto found = all(attribute, text);
    if (found.size() != 1) {
      throw std::runtime_error(std::to_string(found.size()) + " elements with " + attribute + " " +
                               text);
    }
    return *found.front();
  }
  Element& identified(const std::string& identifier) { return one("AXIdentifier", identifier); }
  Element& named(const std::string& file) { return one("AXFilename", file); }
  Element& rowOf(const std::string& file) { return *named(file).parent()->parent(); }
  std::string text(const Element& element, const std::string& attribute = "AXValue") {
    return std::get<std::string>(*element.get(attribute));
  }
  bool enabled(const Element& element) { return std::get<bool>(*element.get("AXEnabled")); }

  Texts shownNames() {
    Texts names;
    for (const auto& child : identified("ListView").children()) {
      const auto& cell = *child->children().front();
      if (cell.children().size() == 2) names.push_back(text(*cell.children()[1]));
    }
    return names;
  }

  // The first time of the milestone, in milliseconds.
  long milestone(const std::string& text) {
    for (const auto& line : desktop().record().lines()) {
      const auto* entry = std::get_if<Milestone>(&line.entry);
      if (entry != nullptr && entry->text == text) return std::lround(line.time * 1000);
    }
    throw std::runtime_error("never: " + text);
  }

  Sample sample;
  std::unique_ptr<Scene> scene;

 private:
  void describe(Json& panel, const Json& scenario) const {
    if (!panel.contains("folder")) panel["folder"] = sample.path();
    // Everything can be tried here: what differs from these is a test's own matter.
    if (!panel.contains("clicksReach")) panel["clicksReach"] = "both";
    if (!panel.contains("searchConfirms")) panel["searchConfirms"] = true;
    const bool english = !panel.contains("language") && !scenario.contains("language");
    if (english && !panel.contains("prompt") && !panel.contains("mode")) panel["prompt"] = "Choose";
  }
  static void collect(Element& at, const std::string& attribute, const std::string& text,
                      std::vector<Element*>& found) {
    const Value* value = at.get(attribute);
    if (value != nullptr && *value == Value(text)) found.push_back(&at);
    for (const auto& child : at.children()) collect(*child, attribute, text, found);
  }
};

inline PanelOutcome chosen(const std::string& path, Seconds at) {
  return {PanelOutcome::End::chosen, path, at};
}
inline PanelOutcome cancelled(Seconds at) {
  return {PanelOutcome::End::cancelled, "", at};
}

}  // namespace simulator
