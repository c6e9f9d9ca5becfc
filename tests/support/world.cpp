#include "support/world.h"

#include <array>
#include <cstdio>
#include <filesystem>
#include <sstream>

#include "cli/entry.h"
#include "core/tables.h"
#include "core/text.h"
#include "simulator/frameworks/ledger.h"
#include "simulator/frameworks/messaging_timeout.h"
#include "simulator/judge/verdict.h"
#include "simulator/seams/virtual/virtual_world.h"
#include "support/capture_helper_program.h"
#include "support/result_log.h"

namespace tessarine::test {

void PrintTo(const Outcome& outcome, std::ostream* stream) {
  *stream << "exit status " << outcome.exitStatus << "\noutput: " << outcome.output
          << "\nerrors: " << outcome.errors;
}

AttachedDesktop::AttachedDesktop(simulator::Desktop& desktop) {
  simulator::ledger::reset();
  simulator::setMessagingTimeout(0);
  simulator::attachDesktop(&desktop);
  initializeTables();
}

AttachedDesktop::~AttachedDesktop() {
  simulator::attachDesktop(nullptr);
  EXPECT_EQ(simulator::ledger::liveReferences(), 0) << simulator::ledger::describeLive();
}

BareDesktop::BareDesktop(std::int32_t pid, const std::string& name)
    : pid_(pid), attached_(desktop) {
  desktop.prices().event = 0;
  desktop.addProcess({.pid = pid,
                      .name = name,
                      .command = "/Applications/" + name + ".app/Contents/MacOS/" + name,
                      .application = true,
                      .host = {}});
}

simulator::Element& BareDesktop::addWindow(const std::string& title, const std::string& role) {
  simulator::Element& element = app().addChild(role);
  element.set("AXTitle", title);
  element.setFrame({100, 100, 800, 600});
  simulator::Window window;
  window.owner = pid_;
  window.title = title;
  window.frame = {100, 100, 800, 600};
  window.element = &element;
  desktop.addWindow(window);
  return element;
}

Element BareDesktop::handle(const simulator::Element& element) const {
  // The way from the application element down to it, by position among its siblings.
  std::vector<std::size_t> way;
  for (const simulator::Element* at = &element; at->parent() != nullptr; at = at->parent()) {
    const auto& siblings = at->parent()->children();
    std::size_t position = 0;
    while (siblings.at(position).get() != at) ++position;
    way.push_back(position);
  }
  Element handle = appHandle();
  for (auto position = way.rbegin(); position != way.rend(); ++position) {
    CFTypeRef children = nullptr;
    const std::u16string name = toUtf16("AXChildren");
    const auto attribute = CfRef<CFStringRef>::adopt(CFStringCreateWithCharacters(
        kCFAllocatorDefault, reinterpret_cast<const UniChar*>(name.data()),
        static_cast<CFIndex>(name.size())));
    AXUIElementCopyAttributeValue(handle.get(), attribute.get(), &children);
    const auto list = CfRef<CFTypeRef>::adopt(children);
    const auto* child = CFArrayGetValueAtIndex(static_cast<CFArrayRef>(list.get()),
                                               static_cast<CFIndex>(*position));
    handle = Element(CfRef<AXUIElementRef>::share(static_cast<AXUIElementRef>(child)));
  }
  return handle;
}

namespace {

simulator::Scenario patchedScenario(const std::string& name, const World::Patches& patches) {
  simulator::Scenario scenario = simulator::bundledScenario(name);
  for (const auto& [pointer, value] : patches) scenario = patched(scenario, pointer, value);
  return scenario;
}

}  // namespace

World::World(const std::string& scenario, const Patches& patches)
    : World(patchedScenario(scenario, patches)) {}

World::World(const simulator::Scenario& scenario)
    : scene_(simulator::makeScene(scenario)), attached_(scene_->desktop) {
  installCaptureHelper(scene_->desktop);
}

std::string World::panelOutcomes() const {
  std::string text;
  for (const auto& outcome : scene_->outcomes()) {
    if (!text.empty()) text += ", ";
    using End = simulator::PanelOutcome::End;
    if (outcome.end == End::none) text += "open";
    if (outcome.end == End::cancelled) text += "cancelled";
    if (outcome.end == End::chosen) text += "chosen " + outcome.path;
  }
  return text;
}

Outcome World::run(std::initializer_list<std::string> arguments) {
  return run(std::vector<std::string>(arguments));
}

Outcome World::run(const std::vector<std::string>& arguments) {
  std::vector<std::string> commandLine{"tessarine"};
  commandLine.insert(commandLine.end(), arguments.begin(), arguments.end());
  std::ostringstream output;
  std::ostringstream errors;
  const auto call = calls_.begin(arguments, std::filesystem::current_path(), desktop().now());
  const ExitStatus status = runTool(commandLine, output, errors);
  calls_.end(call, static_cast<int>(status), output.str(), desktop().now());
  keepResult(output.str());
  return {static_cast<int>(status), output.str(), errors.str()};
}

std::string World::verdict() {
  desktop().advanceTo(desktop().now() + simulator::settling_seconds);
  return simulator::overallVerdict(calls_.calls(), simulator::panelFates(*scene_));
}

namespace {

std::string targetText(const std::optional<simulator::Pid>& target) {
  return target ? std::to_string(*target) : "session";
}

template <class... Arguments>
std::string formatted(const char* format, Arguments... arguments) {
  std::array<char, 200> buffer{};
  std::snprintf(buffer.data(), buffer.size(), format, arguments...);
  return buffer.data();
}

std::string describe(const simulator::PostedKey& posted) {
  std::string text = "key " + std::to_string(posted.event.keyCode);
  if (posted.event.flags != 0) {
    text += formatted("+%llx", static_cast<unsigned long long>(posted.event.flags));
  }
  if (posted.event.text) text += " text=" + fromUtf16(*posted.event.text);
  return text + (posted.event.down ? " down" : " up") + " -> " + targetText(posted.target);
}

std::string describe(const simulator::PostedMouse& posted) {
  const auto& event = posted.event;
  return formatted("mouse %s %lld (%g, %g) -> ", event.type == 1 ? "down" : "up",
                   static_cast<long long>(event.clickState), event.at.x, event.at.y) +
         targetText(posted.target);
}

// Calls `visit` with the time and the description of every event that the tool posted.
template <class Visit>
void forEachPosted(const simulator::Record& record, const Visit& visit) {
  for (const auto& line : record.lines()) {
    const auto* key = std::get_if<simulator::PostedKey>(&line.entry);
    const auto* mouse = std::get_if<simulator::PostedMouse>(&line.entry);
    if (key != nullptr && key->origin == simulator::Origin::tool) visit(line.time, describe(*key));
    if (mouse != nullptr && mouse->origin == simulator::Origin::tool) {
      visit(line.time, describe(*mouse));
    }
  }
}

}  // namespace

std::vector<std::string> postedEvents(const simulator::Record& record) {
  std::vector<std::string> events;
  forEachPosted(record, [&](double time, const std::string& event) {
    events.push_back(formatted("%.3f ", time) + event);
  });
  return events;
}

std::vector<std::string> postedEventKinds(const simulator::Record& record) {
  std::vector<std::string> events;
  forEachPosted(record, [&](double, const std::string& event) { events.push_back(event); });
  return events;
}

}  // namespace tessarine::test
