// The panel on a Mac: an application of our own shows it, beside the tests.
#include <ApplicationServices/ApplicationServices.h>

#include <algorithm>
#include <fstream>
#include <set>
#include <stdexcept>

#include "core/numbers.h"
#include "core/text.h"
#include "live/live.h"
#include "platform/child_process.h"
#include "platform/processes.h"
#include "platform/wait.h"

namespace tessarine::test {
namespace {

constexpr double starting_seconds = 15;
constexpr double service_seconds = 5;

bool thereIsALoginSession() {
  return static_cast<bool>(CfRef<CFArrayRef>::adopt(
      CGWindowListCopyWindowInfo(kCGWindowListOptionOnScreenOnly, kCGNullWindowID)));
}

std::set<pid_t> panelServices() {
  std::set<pid_t> services;
  for (const auto& line :
       splitDroppingEmpty(commandOutput(psPath, {"-axo", "pid=,command="}), '\n')) {
    if (!contains(line, "openAndSavePanelService")) continue;
    const auto pieces = splitDroppingEmpty(trimmed(line), ' ');
    if (const auto pid = parseInt32(pieces.front())) services.insert(*pid);
  }
  return services;
}

std::vector<std::string> fixtureArguments(const PanelSpec& spec, const std::string& folder,
                                          const std::string& report) {
  std::vector<std::string> arguments{report, folder};
  if (spec.sheet) arguments.emplace_back("--sheet");
  if (spec.files) arguments.emplace_back("--files");
  if (spec.inFront) arguments.emplace_back("--in-front");
  if (!spec.prompt.empty()) arguments.insert(arguments.end(), {"--prompt", spec.prompt});
  if (!spec.message.empty()) arguments.insert(arguments.end(), {"--message", spec.message});
  // What an application is told on its command line overrides the user's settings.
  arguments.insert(arguments.end(), {"-AppleLanguages", "(" + spec.language + ")"});
  return arguments;
}

// The view of the Open panels of this user while it lives; afterwards it is again what it was. The
// setting's name is that of older systems, and nobody has tried it: where the panel takes its view
// from elsewhere, it shows the view that a person chose last.
class View {
 public:
  explicit View(const std::string& name) : before_(trimmed(defaults({"read", "-g", setting}))) {
    const char* number = name == "columns" ? "1" : name == "list" ? "2" : "3";
    defaults({"write", "-g", setting, "-int", number});
  }
  ~View() {
    if (before_.empty()) {
      defaults({"delete", "-g", setting});
    } else {
      defaults({"write", "-g", setting, "-int", before_});
    }
  }
  View(const View&) = delete;
  View& operator=(const View&) = delete;

 private:
  static constexpr const char* setting = "NSNavPanelFileListModeForOpenMode2";

  static std::string defaults(const std::vector<std::string>& arguments) {
    return commandOutput("/usr/bin/defaults", arguments);
  }

  std::string before_;
};

// Empty disk images that are mounted as /Volumes/NAME while it lives.
class Disks {
 public:
  // The other constructor has ended when a disk fails, so those before it are unmounted.
  explicit Disks(const std::vector<std::string>& names) : Disks() {
    for (const std::string& name : names) {
      const std::string image = images_.path() + "/" + name + ".dmg";
      if (!commandSucceeded(diskUtility, {"create", "-quiet", "-size", "4m", "-fs", "HFS+",
                                          "-volname", name, image}) ||
          !commandSucceeded(diskUtility, {"attach", "-quiet", image})) {
        throw std::runtime_error("no disk \"" + name + "\"");
      }
      mounted_.push_back("/Volumes/" + name);
    }
  }
  ~Disks() {
    for (const std::string& path : mounted_) {
      commandSucceeded(diskUtility, {"detach", "-quiet", "-force", path});
    }
  }
  Disks(const Disks&) = delete;
  Disks& operator=(const Disks&) = delete;

 private:
  Disks() = default;

  static constexpr const char* diskUtility = "/usr/bin/hdiutil";

  TemporaryFolder images_;
  std::vector<std::string> mounted_;
};

class FixtureStage final : public Stage {
 public:
  FixtureStage(const PanelSpec& spec, const std::string& folder)
      : disks_(spec.volumes),
        view_(spec.view),
        servicesBefore_(panelServices()),
        child_(startChild(OPEN_PANEL_FIXTURE, fixtureArguments(spec, folder, reportPath()))) {
    if (!child_.child) throw std::runtime_error("the fixture did not start: " + child_.startError);
    if (!pollUntil(starting_seconds, 0.02, [this] { return report().pid != 0; })) {
      quit();
      throw std::runtime_error("the fixture showed no panel");
    }
  }
  ~FixtureStage() override { quit(); }
  FixtureStage(const FixtureStage&) = delete;
  FixtureStage& operator=(const FixtureStage&) = delete;

  pid_t application() const override { return report().pid; }

  // The one that was not there before the panel was.
  std::optional<pid_t> service() const override {
    std::optional<pid_t> found;
    pollUntil(service_seconds, 0.1, [&] {
      for (const pid_t pid : panelServices()) {
        if (!servicesBefore_.contains(pid)) found = pid;
      }
      return found.has_value();
    });
    return found;
  }

  pid_t processOf(const Element& element) const override {
    pid_t pid = 0;
    AXUIElementGetPid(element.get(), &pid);
    return pid;
  }

  std::string outcome() const override { return report().outcome; }

  void quit() override {
    if (ended_) return;
    ended_ = true;
    terminate(*child_.child);
    waitForExit(*child_.child);
  }

  ProgramEnd runTool(const std::vector<std::string>& arguments) override {
    const StartedChild tool = startChild(TESSARINE_PROGRAM, arguments);
    if (!tool.child) throw std::runtime_error("the tool did not start: " + tool.startError);
    std::string output = readStandardOutput(*tool.child);
    output += readStandardError(*tool.child);
    return {waitForExit(*tool.child), output};
  }

 private:
  // What the fixture wrote last: its process identifier, a blank, what came of the panel.
  struct Report {
    pid_t pid = 0;
    std::string outcome;
  };

  std::string reportPath() const { return folder_.path() + "/report"; }

  Report report() const {
    std::ifstream file(reportPath());
    Report report;
    if (file >> report.pid) std::getline(file >> std::ws, report.outcome);
    return report;
  }

  TemporaryFolder folder_;
  Disks disks_;
  View view_;
  std::set<pid_t> servicesBefore_;
  StartedChild child_;
  bool ended_ = false;
};

}  // namespace

std::optional<std::string> reasonNotToRun() {
  if (!thereIsALoginSession()) return "nobody is logged in: there is no desktop";
  if (!AXIsProcessTrusted()) return "this program is not trusted with accessibility";
  return {};
}

std::unique_ptr<Stage> makeStage(const PanelSpec& spec, const std::string& folder) {
  return std::make_unique<FixtureStage>(spec, folder);
}

}  // namespace tessarine::test
