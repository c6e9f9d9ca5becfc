// The panel's list of the folder shown. Its elements are built anew for each folder.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "simulator/desktop/element.h"
#include "simulator/panel/panel_options.h"

namespace simulator {

class Listing {
 public:
  struct Row {
    std::string path;
    std::string name;  // as shown
    bool directory = false;
    bool selectable = false;
    Element* row = nullptr;
  };

  // Shows its rows in `outline`, whose frame is the visible part of the list. With
  // `ignoresSelection`, setting "AXSelectedRows" succeeds and selects nothing.
  Listing(Element& outline, const std::string& header, bool ignoresSelection);

  std::function<void()> selectionChanged;
  std::function<void(const Row&)> opened;  // by "AXOpen"

  // Replaces all rows; nothing is selected. The rows' `row` is filled in here.
  void show(std::vector<Row> rows);
  const std::vector<Row>& rows() const { return rows_; }

  const Row* selected() const { return selected_; }
  // A row that cannot be selected, or null, leaves nothing selected.
  void select(const Row* row);
  // Moves by `step` rows over those that can be selected; from nothing to the first or the last.
  void moveSelection(int step);
  void selectPath(const std::string& path);
  // The row under a point of the visible part, or null.
  const Row* rowAt(Point point) const;

 private:
  void addHeader();
  void addRow(std::size_t index);
  void placeRows();
  void scrollTo(const Row& row);
  std::int32_t selectElements(const Value& value);

  Element& outline_;
  std::string header_;
  bool ignores_selection_;
  std::vector<Row> rows_;
  const Row* selected_ = nullptr;
  double scrolled_ = 0;  // points by which the rows are moved up
};

}  // namespace simulator
