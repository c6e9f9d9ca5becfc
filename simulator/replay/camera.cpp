#include "simulator/replay/camera.h"

#include <array>

#include "simulator/replay/shown.h"

namespace simulator {
namespace {

constexpr std::array<const char*, 4> part_names{"panel", "menu", "sheet", "question"};

}  // namespace

Camera::Camera(Scene& scene) : scene_(scene) {
  scene_.desktop.onChange([this] { look(); });
  look();
}

void Camera::look() {
  lookAtWindows();
  int number = 0;
  for (const auto& panel : scene_.panels) lookAtPanel(++number, *panel);
}

void Camera::lookAtWindows() {
  ScreenShown seen;
  for (const auto& window : scene_.desktop.windows()) {
    if (!window->on_screen || window->ghost) continue;
    seen.windows.push_back(
        {window->number, window->owner, window->title, window->frame, window->listed});
  }
  if (seen == screen_) return;
  screen_ = seen;
  scene_.desktop.record().add(scene_.desktop.now(), std::move(seen));
}

void Camera::lookAtPanel(int number, const Panel& panel) {
  const std::vector<PanelPart> parts = panel.parts();
  for (const char* name : part_names) {
    PanelShown shown{number, name, {}, 0};
    for (const PanelPart& part : parts) {
      if (part.name == std::string(name)) shown = shownPart(number, part, parts);
    }
    note(std::move(shown));
  }
}

void Camera::note(PanelShown shown) {
  PanelShown& before = parts_[{shown.panel, shown.part}];
  if (shown.elements == before.elements && shown.leftOut == before.leftOut) return;
  before = shown;
  scene_.desktop.record().add(scene_.desktop.now(), std::move(shown));
}

}  // namespace simulator
