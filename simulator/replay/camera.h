// Films a desktop: whenever what a person sees has changed, its record gets an entry that says what
// is seen from now on. A part of a panel that stays as it is is not told again.
#pragma once

#include <map>
#include <string>
#include <utility>

#include "simulator/desktop/record.h"
#include "simulator/scenario/scene.h"

namespace simulator {

class Camera {
 public:
  // Begins at once. It must live as long as anything is done with the scene's desktop.
  explicit Camera(Scene& scene);
  Camera(const Camera&) = delete;
  Camera& operator=(const Camera&) = delete;

 private:
  void look();
  void lookAtWindows();
  void lookAtPanel(int number, const Panel& panel);
  void note(PanelShown shown);

  Scene& scene_;
  ScreenShown screen_;
  std::map<std::pair<int, std::string>, PanelShown> parts_;  // by panel and part
};

}  // namespace simulator
