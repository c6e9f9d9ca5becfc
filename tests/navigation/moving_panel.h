// A panel that is being moved by hand: found on the desktop as the commands find it, without their
// strategy.
#pragma once

#include <stdexcept>
#include <string>
#include <vector>

#include "dialog/panel_search.h"
#include "navigation/panel_choice.h"
#include "platform/clock.h"
#include "platform/files.h"
#include "support/folder_world.h"

namespace tessarine::test {

inline PanelChoice choiceOf(const PanelRoot& panel, const std::string& path) {
  PanelChoice choice{panel,
                     panelParts(panel.element),
                     {},
                     false,
                     {servicePid, browserPid},
                     [] { return true; },
                     [](const std::optional<Rect>&) { return true; },
                     currentTime() + 60,
                     {},
                     false,
                     {},
                     {}};
  choice.target = {path, isDirectory(path)};
  return choice;
}

// The only panel of the desktop's browser.
inline PanelChoice choiceOnDesktop(const std::string& path) {
  const ProcessSurvey survey = surveyProcesses();
  const auto panels = openPanels(survey, browserPid, panelServicesOf(survey, browserPid));
  if (panels.size() != 1) throw std::runtime_error("one panel expected");
  return choiceOf(panels.front(), path);
}

// A scenario's panel, which shows `start` with the folder `target` in it.
struct MovingPanel {
  explicit MovingPanel(const std::string& scenario, const World::Patches& patches = {},
                       const std::string& name = "target")
      : folders(scenario, patches, name), choice(choiceOnDesktop(folders.target)) {}

  void aimAt(const std::string& path) { choice.target = {path, isDirectory(path)}; }
  std::string folderShown() { return folders.world.panel().folderShown(); }
  // What was posted, "chord -> 900" for the chord, "return -> 900" and "escape -> 900".
  std::vector<std::string> keys() const {
    std::vector<std::string> keys;
    for (const std::string& event : postedEventKinds(folders.world.record())) {
      if (event.find(" up") != std::string::npos) continue;
      std::string text = event;
      for (const auto& [from, to] :
           std::vector<std::pair<std::string, std::string>>{{"key 5+120000 down", "chord"},
                                                            {"key 36 down", "return"},
                                                            {"key 53 down", "escape"}}) {
        if (text.starts_with(from)) text.replace(0, from.size(), to);
      }
      keys.push_back(text);
    }
    return keys;
  }

  FolderWorld folders;
  PanelChoice choice;
};

}  // namespace tessarine::test
