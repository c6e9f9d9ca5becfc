#include "simulator/panel/list_view.h"

#include <algorithm>

#include "simulator/panel/list_columns.h"
#include "simulator/panel/panel_tree.h"

namespace simulator {
namespace {

constexpr double list_row_height = 24;
// Assumed (no test can tell: the columns are as wide as the user left them): what a column besides
// the first takes at most; together they leave half of the list to the first.
constexpr double further_column_width = 120;

Rect textFrame(const Rect& cell, double indent) {
  return {cell.x + indent, cell.y + 4, cell.width - indent - 4, 16};
}

}  // namespace

ListView::ListView(Element& outline, Language language, std::size_t columns, bool ignoresSelection)
    : EntryList(outline, "AXSelectedRows"),
      language_(language),
      columns_(columns),
      ignores_selection_(ignoresSelection) {
  outline.makeSettable("AXSelectedRows",
                       [this](const Value& value) { return selectElements(value); });
}

void ListView::build() {
  addHeader();
  for (std::size_t i = 0; i < rows_.size(); ++i) addRow(i);
  List all;
  for (const auto& child : list_.children()) all.emplace_back(child->id());
  list_.set("AXRows", std::move(all));
}

std::vector<Rect> ListView::cellFrames(const Rect& row) const {
  std::vector<Rect> frames{row};
  if (columns_ == 1) return frames;
  const auto further = static_cast<double>(columns_ - 1);
  const double width = std::min(further_column_width, row.width / 2 / further);
  frames.front().width -= width * further;
  while (frames.size() < columns_) {
    const Rect& last = frames.back();
    frames.push_back({last.x + last.width, row.y, width, row.height});
  }
  return frames;
}

// Assumed (Live.TheHeaderRowHoldsATextForEachColumnAndNamesNoFile): the header row has the cells of
// the others, with one text each and nothing that names a file.
void ListView::addHeader() {
  const Rect area = *list_.frame();
  const Rect frame{area.x, area.y, area.width, list_row_height};
  Element& row = addElement(list_, "AXRow", frame);
  const std::vector<Rect> cells = cellFrames(frame);
  for (std::size_t i = 0; i < cells.size(); ++i) {
    addElement(addElement(row, "AXCell", cells[i]), "AXStaticText",
               textFrame(cells[i], i == 0 ? 24 : 4), {{"AXValue", columnTitle(i, language_)}});
  }
}

// Assumed (Live.EachRowHasACellForEachColumnAndOnlyTheFirstNamesTheFile): the image and the name
// are in the first cell, and each other cell holds one text.
void ListView::addRow(std::size_t index) {
  Element& row = addItem("AXRow", index);
  row.set("AXSubrole", std::string("AXOutlineRow"));
  // Assumed (no test can tell: the tool does not use it): a row can be selected by its attribute,
  // as in outlines that applications show.
  row.makeSettable("AXSelected", [this, index](const Value& value) {
    const bool* wanted = std::get_if<bool>(&value);
    if (wanted == nullptr) return ax::illegalArgument;
    if (!ignores_selection_) select(*wanted ? &rows_[index] : nullptr);
    return ax::success;
  });
  addName(row.addChild("AXCell"), index, true);
  const EntryTexts texts(rows_[index].path, rows_[index].directory, rows_[index].package);
  for (std::size_t column = 1; column < columns_; ++column) {
    row.addChild("AXCell").addChild("AXStaticText").set("AXValue", texts.in(column, language_));
  }
}

void ListView::place() {
  const Rect area = visible();
  Rect frame{area.x, area.y - scrolled_, area.width, list_row_height};
  for (const Row& shown : rows_) {
    shown.row->setFrame(frame);
    const std::vector<Rect> cells = cellFrames(frame);
    for (std::size_t i = 0; i < cells.size(); ++i) {
      Element& cell = *shown.row->children()[i];
      cell.setFrame(cells[i]);
      cell.children().back()->setFrame(textFrame(cells[i], i == 0 ? 24 : 4));
    }
    Element& name = *shown.row->children().front();
    name.children().front()->setFrame({frame.x + 4, frame.y + 4, 16, 16});
    frame.y += list_row_height;
  }
}

// Below the header.
Rect ListView::visible() const {
  const Rect area = *list_.frame();
  return {area.x, area.y + list_row_height, area.width, area.height - list_row_height};
}

// Assumed (Live.OfSeveralRowsTheFirstIsSelected): of several rows the first that can be selected
// is.
std::int32_t ListView::selectElements(const Value& value) {
  const List* wanted = std::get_if<List>(&value);
  if (wanted == nullptr) return ax::illegalArgument;
  if (ignores_selection_) return ax::success;
  const auto found = std::find_if(rows_.begin(), rows_.end(), [&](const Row& row) {
    return row.selectable &&
           std::find(wanted->begin(), wanted->end(), Value(row.row->id())) != wanted->end();
  });
  select(found == rows_.end() ? nullptr : &*found);
  return ax::success;
}

}  // namespace simulator
