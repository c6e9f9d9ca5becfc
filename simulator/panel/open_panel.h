// The Open panel as the platform shows it: its windows and elements, what its controls, keys and
// clicks do, how long it takes over everything, and what came of it.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "simulator/desktop/desktop.h"
#include "simulator/panel/go_to_sheet.h"
#include "simulator/panel/keystroke.h"
#include "simulator/panel/listing.h"
#include "simulator/panel/panel.h"
#include "simulator/panel/panel_tree.h"
#include "simulator/panel/upload_question.h"

namespace simulator {

class OpenPanel final : public Panel, private GoToSheetOwner {
 public:
  // The host process must exist, and for a sheet and an embedded chooser its window too. The
  // service process is started with the panel. `desktop` and `surroundings` must outlive the
  // panel, and the panel everything that is done with the desktop.
  OpenPanel(Desktop& desktop, PanelSurroundings& surroundings, PanelOptions options);
  OpenPanel(const OpenPanel&) = delete;
  OpenPanel& operator=(const OpenPanel&) = delete;

  const PanelOptions& options() const override { return options_; }
  const PanelOutcome& outcome() const override { return outcome_; }
  bool hasOpened() const override { return phase_ != Phase::waiting; }
  bool alive() const override;
  const std::vector<PanelMilestone>& milestones() const override { return milestones_; }
  const std::vector<std::uint32_t>& windowNumbers() const override { return windows_; }
  std::string title() const override;
  std::string folderShown() const override { return folder_; }
  std::vector<PanelPart> parts() const override;

 private:
  enum class Phase { waiting, opening, open, closing, closed };
  enum class Keyboard { nowhere, list, search };

  // Receives what is sent to one of the panel's two processes.
  class Receiver : public InputReceiver {
   public:
    Receiver(OpenPanel& panel, Pid pid) : panel_(panel), pid_(pid) {}
    bool keyEvent(const KeyEvent& event, Route route) override;
    bool mouseEvent(const MouseEvent& event, Window& window, Route route) override;

   private:
    OpenPanel& panel_;
    Pid pid_;
  };

  // Life.
  void later(Seconds delay, std::function<void()> step);
  void note(const std::string& milestone) override;
  void openRoot();
  void openLists();
  void openListing();
  void openControls();
  void openWindows();
  ElementTable& tableOfContents();
  void openWindow(Pid owner, bool listed, Element* shown);  // `shown`: null when no tree shows it
  void scheduleListChanges();
  void closeWindow(std::uint32_t number);
  Element& parentOfRoot();
  Pid pidShowingIt() const;  // of the process in whose tree the panel stands
  Process& shownIn() const;  // which runs
  bool isSeen() const { return options_.shape != PanelShape::unseen; }
  void end(PanelOutcome::End how, const std::string& path);
  void close();

  // Controls.
  void attachPress(Element* button, std::function<void()> effect);
  void attachConfirm();
  void attachPlaces();
  void attachSearch();
  void searchAtOnce();
  void attachWhere();
  std::vector<std::string> menuPaths() const;
  void openMenu();
  void closeMenu();
  void pickMenuItem(const std::string& path);
  void takeKeyboard(Keyboard where);
  std::vector<SidebarPlace> sidebarPlaces() const;

  // What is shown and chosen.
  void navigate(const std::string& folder);
  void show(const std::string& folder);
  void fillListing();
  void followFolder();
  std::vector<FolderState> folderStates() const;
  std::vector<Listing::Row> rowsOf(const std::string& folder) const;
  void openRow(const Listing::Row& row);
  void updateControls();
  bool canConfirm() const;
  void confirm();
  void travel(std::vector<std::string>& from, std::vector<std::string>& to);
  void editSearch();

  // Input.
  bool takesKeysOf(Pid pid, Route route) const;
  bool takesClicksOf(Pid pid, Route route) const;
  void pressKey(const Keystroke& stroke);
  void pressCommandDown();
  void pressListKey(const Keystroke& stroke);
  void pressReturn();
  void pressSearchKey(const Keystroke& stroke);
  void mouseDown(const MouseEvent& event);
  void clickMenu(Point point);
  void mouseUp(const MouseEvent& event);
  bool owns(const Window& window) const;
  const Element* buttonAt(Point point) const;

  // The go-to sheet.
  void openGoTo(const std::optional<std::string>& typed, bool atOnce = false);
  void goToSheetOpened() override;
  void goToSheetClosed(const std::optional<std::string>& path) override;

  Desktop& desktop_;
  PanelSurroundings& surroundings_;
  PanelOptions options_;
  int number_;  // among the desktop's panels, from 1
  PanelOutcome outcome_;
  std::vector<PanelMilestone> milestones_;
  Phase phase_ = Phase::waiting;
  ElementTable unseen_table_;
  Element unseen_root_;  // what stands below it belongs to no process
  PanelElements elements_;
  std::vector<SidebarPlace> places_;  // of the sidebar
  std::vector<std::pair<Element*, std::function<void()>>> presses_;
  std::unique_ptr<Listing> listing_;
  GoToSheet go_to_;
  std::optional<UploadQuestion> question_;  // once it has closed
  Receiver host_receiver_;
  Receiver service_receiver_;
  std::vector<std::uint32_t> windows_;  // numbers of the panel's windows
  Element* menu_ = nullptr;
  std::vector<std::string> menu_paths_;  // where its items lead
  std::string folder_;
  std::vector<FolderState> folder_states_;  // of the folders listed, since they were compared
  Seconds followed_at_ = 0;                 // when that was
  std::vector<std::string> behind_;
  std::vector<std::string> ahead_;
  EditedText search_;
  Keyboard keyboard_ = Keyboard::nowhere;
  bool clicked_ = false;              // something of it was, ever
  bool return_lost_ = false;          // the first Return of those that have no effect
  bool confirm_blocked_ = false;      // by the go-to sheet, and for a moment after it
  const Element* pressed_ = nullptr;  // the button under the last mouse-down
  std::string pressed_row_;           // the path of the row under it
};

}  // namespace simulator
