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
#include "simulator/import/seen_panel.h"

namespace simulator::importing {

// Stands for every path that was printed.
inline constexpr const char* folder_for_paths = "/usr/share";

// Texts that are not a panel's own become placeholders unless `keepNames`.
class Draft {
 public:
  Draft(Pid browser, Listing listing, bool keepNames)
      : browser_(browser), listing_(std::move(listing)), names_(keepNames) {}

  void add(const std::vector<Dialog>& dialogs);
  ImportedScenario finish();

 private:
  void omit(const std::string& what) { omissions_.push_back(what); }

  // In draft_panels.cpp.
  void addPanel(SeenPanel panel, std::optional<Pid> service);
  void describeWords(SeenPanel& panel);
  void describeModality(SeenPanel& panel);
  void describeView(SeenPanel& panel);
  void describeFrames(SeenPanel& panel);
  void describeGoTo(SeenPanel& panel);
  void describeMissingButtons(SeenPanel& panel);
  void describePlaces(const SeenPanel& panel);
  void checkRecognition(const SeenPanel& panel);
  void omitWhatIsNotModelled(const SeenPanel& panel);

  // In draft_surroundings.cpp.
  bool isPanels(const AppWindow& window) const;
  void addBrowserWindows();
  void putOwnerLast(const SeenPanel& panel);
  Pid freePid(Pid wanted) const;
  nlohmann::ordered_json processes(Pid finder, Pid terminal) const;
  nlohmann::ordered_json screens() const;

  Pid browser_;
  Listing listing_;
  Placeholders names_;
  std::vector<std::string> omissions_;
  std::vector<SeenPanel> panels_;  // the one in front last
  std::optional<nlohmann::ordered_json> places_;
  bool path_typed_ = false;
  std::vector<std::pair<std::string, Rect>> windows_;  // of the browser, front to back
};

}  // namespace simulator::importing
