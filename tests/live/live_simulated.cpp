// The panel on the simulated desktop.
#include "live/live.h"
#include "simulator/frameworks/object.h"
#include "support/world.h"

namespace tessarine::test {
namespace {

// The application is no browser, which would write words of its own on the panel.
nlohmann::ordered_json processes() {
  using Json = nlohmann::ordered_json;
  const Json window{{"title", "Open Panel Fixture"}};
  const Json other{{"title", "Terminal"},
                   {"frame", {{"x", 700}, {"y", 400}, {"width", 640}, {"height", 420}}}};
  return Json::array(
      {{{"pid", terminalPid}, {"name", "Terminal"}, {"windows", Json::array({other})}},
       {{"pid", browserPid}, {"name", "open-panel-fixture"}, {"windows", Json::array({window})}}});
}

// Each volume is a folder of its own below `disks`.
World::Patches patches(const PanelSpec& spec, const std::string& folder,
                       const TemporaryFolder& disks) {
  nlohmann::ordered_json panel{{"shape", spec.sheet ? "host-sheet" : "host-window"},
                               {"mode", spec.files ? "files" : "folders"},
                               {"folder", folder},
                               {"view", spec.view},
                               {"opensAtSeconds", 0.01}};
  if (!spec.sheet) panel["modal"] = false;
  if (!spec.prompt.empty()) panel["prompt"] = spec.prompt;
  if (!spec.message.empty()) panel["message"] = spec.message;
  // Columns begin there: those of the folders around it would show what other programs do to them.
  const nlohmann::ordered_json place{{"label", "Place"}, {"path", folder}};
  auto volumes = nlohmann::ordered_json::array();
  for (const std::string& name : spec.volumes) {
    volumes.push_back({{"name", name}, {"path", disks.makeFolder(name)}});
  }
  return {{"/language", spec.language},
          {"/processes", processes()},
          {"/places", nlohmann::ordered_json::array({place})},
          {"/frontmost", spec.inFront ? browserPid : terminalPid},
          {"/volumes", volumes},
          {"/panels", nlohmann::ordered_json::array({panel})}};
}

class SimulatedStage final : public Stage {
 public:
  SimulatedStage(const PanelSpec& spec, const std::string& folder)
      : world_("no-panel", patches(spec, folder, disks_)) {}

  pid_t application() const override { return browserPid; }
  std::optional<pid_t> service() const override { return servicePid; }
  pid_t processOf(const Element& element) const override {
    return simulator::payload<simulator::ElementId>(element.get(), __func__).pid;
  }
  std::string outcome() const override { return world_.panelOutcomes(); }
  void quit() override { simulator::quitApplication(world_.desktop(), browserPid, false); }
  ProgramEnd runTool(const std::vector<std::string>& arguments) override {
    const Outcome outcome = world_.run(arguments);
    return {outcome.exitStatus, outcome.output + outcome.errors};
  }

 private:
  TemporaryFolder disks_;
  World world_;
};

}  // namespace

std::optional<std::string> reasonNotToRun() {
  return {};
}

std::unique_ptr<Stage> makeStage(const PanelSpec& spec, const std::string& folder) {
  return std::make_unique<SimulatedStage>(spec, folder);
}

}  // namespace tessarine::test
