// A scenario in the making: panels are added, then what stands around them.
#pragma once

#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "simulator/import/import.h"
#include "simulator/import/placeholders.h"
#include "simulator/import/printout.h"
#include "simulator/panel/panel_options.h"

namespace simulator::importing {

// Texts that are not a panel's own become placeholders unless `keepNames`.
class Draft {
 public:
  // Without a listing the browser has one window.
  Draft(Inspection inspection, std::optional<Listing> listing, bool keepNames)
      : inspection_(std::move(inspection)), listing_(std::move(listing)), names_(keepNames) {}

  ImportedScenario finish();

 private:
  struct SeenPanel {
    const Dialog* dialog = nullptr;
    PanelShape shape = PanelShape::serviceWindow;
    nlohmann::ordered_json json;  // what the scenario says of it
  };

  void omit(const std::string& what) { omissions_.push_back(what); }

  // In draft_panels.cpp.
  void addPanels();
  void addPanel(const Dialog& dialog);
  void describeProcesses(SeenPanel& panel);
  void describeModality(SeenPanel& panel);
  nlohmann::ordered_json treeOf(const Dialog& dialog);
  void omitWhatIsNotPrinted(const SeenPanel& panel);

  // In draft_surroundings.cpp.
  void addBrowserWindows();
  void addListedWindows();
  void putOwnerLast(const SeenPanel& panel);
  bool isInATree(const AppWindow& window) const;
  Pid freePid(Pid wanted) const;
  nlohmann::ordered_json processes(Pid finder, Pid terminal) const;
  nlohmann::ordered_json screens() const;
  Language language();

  Inspection inspection_;
  std::optional<Listing> listing_;
  Placeholders names_;
  std::vector<std::string> omissions_;
  std::vector<SeenPanel> panels_;                      // the one in front last
  std::vector<std::pair<std::string, Rect>> windows_;  // of the browser, front to back
};

}  // namespace simulator::importing
