// One element with a child for each entry of one folder, of which one can be selected.
#pragma once

#include <string>
#include <vector>

#include "simulator/panel/listing.h"

namespace simulator {

class EntryList : public Listing {
 public:
  void show(const std::string& folder) override;
  std::vector<std::string> folders() const override { return {folder_}; }
  bool isCurrent() const override;
  const Row* selected() const override { return selected_; }
  void selectPath(const std::string& path) override;
  void moveSelection(int step) override { moveBy(step); }
  void moveAcross(int) override {}
  const Row* click(Point point) override;
  const Row* rowAt(Point point) const override;
  Element& keyboardElement() override { return list_; }
  void showKeyboard(bool has) override { list_.set("AXFocused", has); }

  const std::string& folder() const { return folder_; }
  const std::vector<Row>& rows() const { return rows_; }

 protected:
  // `selectionAttribute` of `list` names the selected child.
  EntryList(Element& list, std::string selectionAttribute);

  // Adds the children of the list and fills in the rows' `row`.
  virtual void build() = 0;
  // Gives the rows their frames.
  virtual void place() = 0;
  // The part of the list in which rows are seen.
  virtual Rect visible() const { return *list_.frame(); }

  // A child of the list for the row.
  Element& addItem(const char* role, std::size_t index);
  // The image and the name of the row, as two children of `parent`.
  void addName(Element& parent, std::size_t index, bool opensByAction);
  // A row that cannot be selected, or null, leaves nothing selected.
  void select(const Row* row);
  // The same, of which nobody is told.
  void mark(const Row* row);
  // Moves over rows that can be selected, `step` at a time; from nothing to the first or the last.
  void moveBy(int step);

  Element& list_;
  std::vector<Row> rows_;
  double scrolled_ = 0;  // points by which the rows are moved up

 private:
  void scrollTo(const Row& row);

  std::string selection_attribute_;
  std::string folder_;
  const Row* selected_ = nullptr;
};

}  // namespace simulator
