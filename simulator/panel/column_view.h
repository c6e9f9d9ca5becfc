// The column view: a browser with a column for each folder from a start to the folder shown. A
// folder that is selected in a column is the next column's, and shown.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "simulator/panel/entry_list.h"

namespace simulator {

class ColumnView final : public Listing {
 public:
  // Begins at one of the folders `starts`, "/" among them.
  ColumnView(Element& browser, std::vector<std::string> starts);
  ~ColumnView() override;

  void show(const std::string& folder) override;
  std::vector<std::string> folders() const override;
  bool isCurrent() const override;
  const Row* selected() const override;
  void selectPath(const std::string& path) override;
  void moveSelection(int step) override;
  void moveAcross(int step) override;
  const Row* click(Point point) override;
  const Row* rowAt(Point point) const override;
  Element& keyboardElement() override;
  void showKeyboard(bool has) override;

 private:
  class Column;

  // Where a selection leads that the panel has not followed yet.
  struct Destination {
    std::string folder;
    std::string active;    // the folder whose column has the keyboard then
    std::string selected;  // the path of what is selected in `folder`, or empty
  };

  std::string nearestStart(const std::string& folder) const;
  std::vector<std::string> pathTo(const std::string& folder) const;
  void addColumn(const std::string& folder);
  void placeColumns();
  // Shows what is selected in the column, which has the keyboard from now on.
  void follow(std::size_t index);
  std::optional<std::size_t> columnOf(const std::string& folder) const;
  std::optional<std::size_t> columnAt(Point point) const;

  Element& browser_;
  std::vector<std::string> starts_;
  std::string start_;
  std::string folder_;
  std::vector<std::string> path_;  // from the start to the folder shown
  std::vector<std::unique_ptr<Column>> columns_;
  std::size_t active_ = 0;  // the column that takes keys
  bool has_keyboard_ = false;
  std::optional<Destination> destination_;
};

}  // namespace simulator
