// A panel that only stands there, with the accessibility tree that was printed of a real one.
#pragma once

#include <string>
#include <vector>

#include "simulator/desktop/desktop.h"
#include "simulator/panel/go_to_sheet.h"
#include "simulator/panel/panel.h"

namespace simulator {

// Its actions answer success, and each that is performed is a milestone. Nothing else comes of
// them, keys and clicks are taken without effect, and it never closes.
class PrintedPanel final : public Panel {
 public:
  // The options have a tree and a shape that accessibility shows; otherwise as for an OpenPanel.
  PrintedPanel(Desktop& desktop, PanelSurroundings& surroundings, PanelOptions options);
  PrintedPanel(const PrintedPanel&) = delete;
  PrintedPanel& operator=(const PrintedPanel&) = delete;

  const PanelOptions& options() const override { return options_; }
  const PanelOutcome& outcome() const override { return outcome_; }
  bool hasOpened() const override { return true; }
  bool alive() const override;
  const std::vector<PanelMilestone>& milestones() const override { return milestones_; }
  const std::vector<std::uint32_t>& windowNumbers() const override { return windows_; }
  std::string title() const override { return options_.tree.front().title; }
  std::string folderShown() const override { return ""; }
  std::vector<PanelPart> parts() const override;

 private:
  class Receiver : public InputReceiver {
   public:
    explicit Receiver(const PrintedPanel& panel) : panel_(panel) {}
    bool keyEvent(const KeyEvent& event, Route route) override;
    bool mouseEvent(const MouseEvent& event, Window& window, Route route) override;

   private:
    const PrintedPanel& panel_;
  };

  Pid shownIn() const;  // the process in whose tree it stands
  std::vector<Element*> build(Element& parent);
  void openWindows(const std::vector<Element*>& elements);
  void openWindow(Pid owner, const std::string& title, const Rect& frame, Element* element);
  void note(const std::string& milestone);

  Desktop& desktop_;
  PanelOptions options_;
  int number_;  // among the desktop's panels, from 1
  const Element* root_ = nullptr;
  PanelOutcome outcome_;
  std::vector<PanelMilestone> milestones_;
  std::vector<std::uint32_t> windows_;
  Receiver receiver_;
};

}  // namespace simulator
