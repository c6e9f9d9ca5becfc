// A run on a desktop in this process, recorded as the service does it.
#pragma once

#include <memory>
#include <optional>
#include <string>

#include "simulator/judge/call_log.h"
#include "simulator/replay/camera.h"
#include "simulator/replay/recording.h"
#include "simulator/service/server_report.h"
#include "support/temporary_folder.h"

namespace simulator {

class RecordedRun {
 public:
  explicit RecordedRun(const std::string& scenario)
      : scene(makeScene(scenarioFromText(scenario, "scenario.json"))) {
    camera_.emplace(*scene);
  }

  void wait(Seconds seconds) { scene->desktop.advanceTo(scene->desktop.now() + seconds); }
  void press(Pid pid, std::uint16_t code, std::uint64_t flags = 0) {
    scene->desktop.answer(PostEvent{KeyEvent{code, true, flags, {}}, pid});
  }
  void type(Pid pid, const std::u16string& text) {
    scene->desktop.answer(PostEvent{KeyEvent{0, true, 0, text}, pid});
  }

  // What is written of it, and that read back.
  std::string json() const { return recordJson(*scene, calls, "scenario.json", true); }
  Recording recording() const { return readRecording(folder_.makeFile("record.json", json())); }

  std::unique_ptr<Scene> scene;
  CallLog calls;

 private:
  tessarine::test::TemporaryFolder folder_;
  std::optional<Camera> camera_;
};

}  // namespace simulator
