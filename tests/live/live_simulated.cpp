// The panel on the simulated desktop.
#include "live/live.h"
#include "support/world.h"

namespace tessarine::test {
namespace {

// Each volume is a folder of its own below `disks`.
World::Patches patches(const PanelSpec& spec, const std::string& folder,
                       const TemporaryFolder& disks) {
  nlohmann::ordered_json panel{{"shape", spec.sheet ? "host-sheet" : "host-window"},
                               {"mode", spec.files ? "files" : "folders"},
                               {"folder", folder},
                               {"view", spec.view},
                               {"opensAtSeconds", 0.01}};
  if (!spec.sheet) panel["modal"] = false;
  auto volumes = nlohmann::ordered_json::array();
  for (const std::string& name : spec.volumes) {
    volumes.push_back({{"name", name}, {"path", disks.makeFolder(name)}});
  }
  return {{"/language", spec.language},
          {"/frontmost", spec.inFront ? browserPid : terminalPid},
          {"/volumes", volumes},
          {"/panels", nlohmann::ordered_json::array({panel})}};
}

class SimulatedStage final : public Stage {
 public:
  SimulatedStage(const PanelSpec& spec, const std::string& folder)
      : world_("english-host-window", patches(spec, folder, disks_)) {}

  pid_t application() const override { return browserPid; }
  std::optional<pid_t> service() const override { return servicePid; }
  std::string outcome() const override { return world_.panelOutcomes(); }
  void quit() override { simulator::quitApplication(world_.desktop(), browserPid, false); }
  ProgramEnd runTool(const std::vector<std::string>& arguments) override {
    const Outcome outcome = world_.run(arguments);
    return {outcome.exitStatus, outcome.output};
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
