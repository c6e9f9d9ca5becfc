#include "simulator/panel/listing.h"

#include <algorithm>

#include "simulator/panel/folder.h"
#include "simulator/panel/panel_tree.h"

namespace simulator {
namespace {

constexpr double row_height = 24;

}  // namespace

Listing::Listing(Element& outline, const std::string& header, bool ignoresSelection)
    : outline_(outline), header_(header), ignores_selection_(ignoresSelection) {
  outline_.makeSettable("AXSelectedRows",
                        [this](const Value& value) { return selectElements(value); });
  show({});
}

void Listing::show(std::vector<Row> rows) {
  outline_.removeChildren();
  rows_ = std::move(rows);
  selected_ = nullptr;
  scrolled_ = 0;
  addHeader();
  for (std::size_t i = 0; i < rows_.size(); ++i) addRow(i);
  placeRows();
  List all;
  for (const auto& child : outline_.children()) all.emplace_back(child->id());
  outline_.set("AXRows", std::move(all));
  outline_.set("AXSelectedRows", List{});
}

// Assumed (Live.TheHeaderRowHoldsOneTextAndNamesNoFile): the header row holds one text and nothing
// that names a file.
void Listing::addHeader() {
  const Rect area = *outline_.frame();
  const Rect frame{area.x, area.y, area.width, row_height};
  Element& cell = addElement(addElement(outline_, "AXRow", frame), "AXCell", frame);
  addElement(cell, "AXStaticText", {frame.x + 24, frame.y + 4, frame.width - 28, 16},
             {{"AXValue", header_}});
}

void Listing::addRow(std::size_t index) {
  Row& shown = rows_[index];
  Element& row = outline_.addChild("AXRow");
  row.set("AXSubrole", std::string("AXOutlineRow"));
  row.set("AXSelected", false);
  row.makeSettable("AXSelected", [this, index](const Value& value) {
    const bool* wanted = std::get_if<bool>(&value);
    if (wanted == nullptr) return ax::illegalArgument;
    if (!ignores_selection_) select(*wanted ? &rows_[index] : nullptr);
    return ax::success;
  });
  Element& cell = row.addChild("AXCell");
  Element& image = cell.addChild("AXImage");
  Element& field = cell.addChild("AXTextField");
  field.set("AXValue", shown.name);
  field.set("AXFilename", shown.path.substr(shown.path.rfind('/') + 1));
  field.set("AXURL", Url{fileUrl(shown.path, shown.directory)});
  field.set("AXEnabled", shown.selectable);
  const auto open = [this, index] {
    if (opened) opened(rows_[index]);
    return ax::attributeUnsupported;  // what the platform answers although it opens the item
  };
  image.addAction("AXOpen", open);
  field.addAction("AXOpen", open);
  shown.row = &row;
}

void Listing::placeRows() {
  const Rect area = *outline_.frame();
  Rect frame{area.x, area.y + row_height - scrolled_, area.width, row_height};
  for (const Row& shown : rows_) {
    Element& cell = *shown.row->children().front();
    shown.row->setFrame(frame);
    cell.setFrame(frame);
    cell.children()[0]->setFrame({frame.x + 4, frame.y + 4, 16, 16});
    cell.children()[1]->setFrame({frame.x + 24, frame.y + 4, frame.width - 28, 16});
    frame.y += row_height;
  }
}

void Listing::scrollTo(const Row& row) {
  const Rect area = *outline_.frame();
  const double top = row.row->frame()->y - (area.y + row_height);
  const double bottom = row.row->frame()->y + row_height - (area.y + area.height);
  if (top < 0) scrolled_ += top;
  if (bottom > 0) scrolled_ += bottom;
  if (top < 0 || bottom > 0) placeRows();
}

void Listing::select(const Row* row) {
  if (selected_ != nullptr) selected_->row->set("AXSelected", false);
  selected_ = row != nullptr && row->selectable ? row : nullptr;
  List ids;
  if (selected_ != nullptr) {
    selected_->row->set("AXSelected", true);
    ids.emplace_back(selected_->row->id());
  }
  outline_.set("AXSelectedRows", std::move(ids));
  if (selectionChanged) selectionChanged();
}

// Assumed (Live.DownArrowSelectsTheFirstRow, Live.UpArrowSelectsTheLastRow,
// Live.ArrowsPassOverWhatCannotBeSelected, Live.DownArrowStaysAtTheLastRow): from nothing to the
// first or the last row, over those that cannot be selected, and never past an end.
void Listing::moveSelection(int step) {
  const auto count = static_cast<std::ptrdiff_t>(rows_.size());
  std::ptrdiff_t index = selected_ != nullptr ? selected_ - rows_.data() : step > 0 ? -1 : count;
  do {
    index += step;
  } while (index >= 0 && index < count && !rows_[static_cast<std::size_t>(index)].selectable);
  if (index < 0 || index >= count) return;
  const Row& row = rows_[static_cast<std::size_t>(index)];
  select(&row);
  scrollTo(row);
}

void Listing::selectPath(const std::string& path) {
  const auto found =
      std::find_if(rows_.begin(), rows_.end(), [&](const Row& row) { return row.path == path; });
  if (found == rows_.end()) return;
  select(&*found);
  scrollTo(*found);
}

const Listing::Row* Listing::rowAt(Point point) const {
  Rect visible = *outline_.frame();
  visible.y += row_height;
  visible.height -= row_height;
  if (!contains(visible, point)) return nullptr;
  const auto found = std::find_if(rows_.begin(), rows_.end(), [&](const Row& row) {
    return contains(*row.row->frame(), point);
  });
  return found == rows_.end() ? nullptr : &*found;
}

// Assumed (Live.OfSeveralRowsTheFirstIsSelected): of several rows the first that can be selected
// is.
std::int32_t Listing::selectElements(const Value& value) {
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
