// The panel's view of the folder shown: what the panel asks of it and it of the panel, whichever
// of the views it is. The elements of the entries are built anew for each folder.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "simulator/desktop/element.h"
#include "simulator/panel/panel_options.h"

namespace simulator {

class Listing {
 public:
  struct Row {
    std::string path;
    std::string name;        // as shown
    bool directory = false;  // a folder that can be entered
    bool package = false;    // a directory that is shown as a file
    bool selectable = false;
    Element* row = nullptr;  // filled in by the view that shows it
  };

  Listing() = default;
  virtual ~Listing() = default;
  Listing(const Listing&) = delete;
  Listing& operator=(const Listing&) = delete;

  // What it asks of the panel.
  std::function<std::vector<Row>(const std::string& folder)> rowsOf;
  std::function<void()> selectionChanged;
  std::function<void(const Row&)> opened;  // by "AXOpen", or by a selection that leads elsewhere
  std::function<void()> keyboardWanted;

  // Reads the folder's rows, and those of folders around it that it shows too; nothing is selected.
  virtual void show(const std::string& folder) = 0;
  // The folders whose rows it shows, and whether these are still what `rowsOf` says.
  virtual std::vector<std::string> folders() const = 0;
  virtual bool isCurrent() const = 0;

  // In the folder shown.
  virtual const Row* selected() const = 0;
  virtual void selectPath(const std::string& path) = 0;
  // By arrow keys: down and up, right and left.
  virtual void moveSelection(int step) = 0;
  virtual void moveAcross(int step) = 0;
  // Selects the row under a point of the screen, which is the result, or nothing.
  virtual const Row* click(Point point) = 0;
  // The row under a point of the visible part, or null.
  virtual const Row* rowAt(Point point) const = 0;

  // The element that has the keyboard when the view has it, and whether it says so.
  virtual Element& keyboardElement() = 0;
  virtual void showKeyboard(bool has) = 0;
};

// The view that the options ask for, within `list`, whose frame is the visible part. A view of
// columns begins at one of the folders `starts`, "/" among them.
std::unique_ptr<Listing> makeListing(Element& list, const PanelOptions& options,
                                     const std::vector<std::string>& starts);

}  // namespace simulator
