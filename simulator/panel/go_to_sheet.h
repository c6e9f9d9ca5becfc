// The sheet into which a path is typed, in both of its generations.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "simulator/desktop/desktop.h"
#include "simulator/panel/folder.h"
#include "simulator/panel/keystroke.h"
#include "simulator/panel/panel_options.h"
#include "simulator/panel/panel_tree.h"

namespace simulator {

// What all panels of a desktop share.
struct PanelSurroundings {
  std::string home = "/";
  std::optional<std::vector<SidebarPlace>> places;  // absent: the usual ones
  std::string lastGoToPath;  // prefills the next go-to sheet of any application
  ListedEntries listed;
  std::map<Pid, int> panelsToServe;  // panels that are open or will be, by their service
  int panels = 0;                    // how many there are
};

// The panel that a go-to sheet belongs to.
class GoToSheetOwner {
 public:
  virtual std::string folderShown() const = 0;
  // The panel has not closed, and the process that shows it runs.
  virtual bool alive() const = 0;
  // Adds to what happened to the panel.
  virtual void note(const std::string& milestone) = 0;
  virtual void goToSheetOpened() = 0;
  // The sheet is gone. `path` is the existing path it was confirmed with, absent when it was not.
  virtual void goToSheetClosed(const std::optional<std::string>& path) = 0;

 protected:
  ~GoToSheetOwner() = default;
};

class GoToSheet {
 public:
  // Its elements are numbered in `contents`, which is known when it opens.
  GoToSheet(Desktop& desktop, PanelSurroundings& surroundings, const PanelOptions& options,
            ElementTable*& contents, GoToSheetOwner& owner);

  // From the chord until the sheet is gone. Keys belong to the sheet, also those that are lost
  // before its field has the keyboard and while it closes.
  bool isOpen() const { return phase_ != Phase::closed; }
  // From when the sheet is seen until it is gone.
  bool isShown() const { return sheet_ != nullptr; }
  const Element* element() const { return sheet_; }

  // Opens below `parent` with the last path, or with `typed`. Nothing happens while it is open.
  // `atOnce` leaves out the delays.
  void open(Element& parent, const std::optional<std::string>& typed, bool atOnce = false);
  void pressKey(const Keystroke& stroke);
  // Whether the point lies on the sheet; a click there presses what it hits.
  bool covers(Point point) const;
  void click(Point point);
  // Takes the sheet away with the panel; the owner hears nothing.
  void abandon();

 private:
  enum class Phase { closed, opening, ready, closing };

  bool isSeen() const { return options_.shape != PanelShape::unseen; }
  void later(Seconds delay, std::function<void()> step);
  void showSheet(Element& parent);
  void showField();
  void fillOldSheet();
  void fillNewSheet();
  void addButton(const Rect& frame, const std::string& title, std::function<void()> effect);
  void confirm();
  void close(const std::optional<std::string>& path);
  void edited();
  std::int32_t writeField(const Value& value);

  Desktop& desktop_;
  PanelSurroundings& surroundings_;
  const PanelOptions& options_;
  ElementTable*& contents_;
  GoToSheetOwner& owner_;
  Phase phase_ = Phase::closed;
  std::uint64_t turn_ = 0;  // grows with each opening and closing; older steps no longer run
  Pid shown_in_ = 0;        // the process in whose tree it stands, while it is open
  Element* sheet_ = nullptr;
  Element* field_ = nullptr;
  std::uint32_t window_ = 0;
  EditedText text_;
  std::vector<std::pair<Element*, std::function<void()>>> buttons_;
};

}  // namespace simulator
