// The fixtures of the product's tests: a simulated desktop in this process under the virtual clock,
// and the whole program run on it. When a world ends, no reference to a platform object may be
// left.
#pragma once

#include <gtest/gtest.h>

#include <initializer_list>
#include <memory>
#include <nlohmann/json.hpp>
#include <string>
#include <utility>
#include <vector>

#include "core/tool_error.h"
#include "platform/element.h"
#include "simulator/desktop/desktop.h"
#include "simulator/judge/call_log.h"
#include "simulator/scenario/scenario.h"
#include "simulator/scenario/scene.h"
#include "support/temporary_folder.h"

namespace tessarine::test {

inline constexpr std::int32_t browserPid = 812;  // in every scenario that comes with the desktop
inline constexpr std::int32_t servicePid = 900;
inline constexpr std::int32_t terminalPid = 300;  // frontmost at the start

// What one run of the program left behind.
struct Outcome {
  int exitStatus = 0;
  std::string output;
  std::string errors;
  bool operator==(const Outcome&) const = default;
};
void PrintTo(const Outcome& outcome, std::ostream* stream);

// What a command ends in that failed with the message.
inline Outcome failed(const std::string& message) {
  return {1, "", message + "\n"};
}

// Attaches a desktop for as long as it lives and sets the process-wide tables up afresh.
class AttachedDesktop {
 public:
  explicit AttachedDesktop(simulator::Desktop& desktop);
  ~AttachedDesktop();
  AttachedDesktop(const AttachedDesktop&) = delete;
  AttachedDesktop& operator=(const AttachedDesktop&) = delete;
};

// A desktop built by hand, with one process: for tests of readers, walks and finders. Elements are
// added below `app()`. Events cost nothing, so that the time between two is the program's pause.
class BareDesktop {
 public:
  explicit BareDesktop(std::int32_t pid = browserPid, const std::string& name = "Google Chrome");

  simulator::Desktop desktop;

  simulator::Process& process() { return *desktop.findProcess(pid_); }
  simulator::Element& app() { return process().root; }
  // A window of the process, on the screen, listed, with an element of the given role.
  simulator::Element& addWindow(const std::string& title, const std::string& role = "AXWindow");
  // The product's handle to a model element.
  Element handle(const simulator::Element& element) const;
  Element appHandle() const { return Element::application(pid_); }
  double now() const { return desktop.now(); }

 private:
  std::int32_t pid_;
  AttachedDesktop attached_;
};

// A scenario brought to life. Each patch replaces the value at a JSON pointer of the scenario.
class World {
 public:
  using Patches = std::vector<std::pair<std::string, nlohmann::ordered_json>>;
  explicit World(const std::string& scenario, const Patches& patches = {});
  explicit World(const simulator::Scenario& scenario);

  simulator::Desktop& desktop() { return scene_->desktop; }
  const simulator::Record& record() const { return scene_->desktop.record(); }
  simulator::Panel& panel(std::size_t index = 0) { return *scene_->panels.at(index); }

  // "chosen /usr/lib", "cancelled" or "open" for each panel, joined by ", ".
  std::string panelOutcomes() const;

  // Runs the program with these arguments (without its own name).
  Outcome run(std::initializer_list<std::string> arguments);
  Outcome run(const std::vector<std::string>& arguments);

  // Whether the runs so far reported what the panels did: see simulator/judge/verdict.h. Time moves
  // on before, so that what is under way lands.
  std::string verdict();

 private:
  std::unique_ptr<simulator::Scene> scene_;
  simulator::CallLog calls_;
  AttachedDesktop attached_;
};

// The message of the ToolError that the action throws; fails the test when it throws none.
template <class Action>
std::string messageOf(const Action& action) {
  try {
    action();
  } catch (const ToolError& error) {
    return error.message();
  }
  ADD_FAILURE() << "nothing was thrown";
  return {};
}

// --- Reading the record. ---

// One line for each event that the tool posted, in order, each with its virtual time in
// seconds: "1.230 key 36 down -> 900", "1.250 key 36 up -> 900", "2.000 mouse down 1 (10, 20) ->
// session". Modifier flags follow the key code as "+flags" in hexadecimal, text as "text=...".
std::vector<std::string> postedEvents(const simulator::Record& record);

// The same without times.
std::vector<std::string> postedEventKinds(const simulator::Record& record);

}  // namespace tessarine::test
