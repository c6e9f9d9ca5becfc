#include "simulator/panel/entry_list.h"

#include <algorithm>

#include "simulator/panel/folder.h"

namespace simulator {

EntryList::EntryList(Element& list, std::string selectionAttribute)
    : list_(list), selection_attribute_(std::move(selectionAttribute)) {
  list_.set("AXFocused", false);
  list_.set(selection_attribute_, List{});
  list_.makeSettable("AXFocused", [this](const Value& value) {
    const bool* focused = std::get_if<bool>(&value);
    if (focused == nullptr) return ax::illegalArgument;
    if (*focused && keyboardWanted) keyboardWanted();
    return ax::success;
  });
}

void EntryList::show(const std::string& folder) {
  list_.removeChildren();
  folder_ = folder;
  rows_ = rowsOf(folder);
  selected_ = nullptr;
  scrolled_ = 0;
  build();
  place();
  list_.set(selection_attribute_, List{});
}

bool EntryList::isCurrent() const {
  const std::vector<Row> present = rowsOf(folder_);
  return std::equal(rows_.begin(), rows_.end(), present.begin(), present.end(),
                    [](const Row& left, const Row& right) {
                      return left.path == right.path && left.directory == right.directory &&
                             left.package == right.package;
                    });
}

Element& EntryList::addItem(const char* role, std::size_t index) {
  Element& item = list_.addChild(role);
  item.set("AXSelected", false);
  rows_[index].row = &item;
  return item;
}

// Assumed (Live.ARowsFieldTellsTheFilesNameAndUrl, Live.AColumnsFieldTellsTheFilesNameAndUrl,
// Live.AnIconsFieldTellsTheFilesNameAndUrl): beside the URL the field tells the name on the disk.
void EntryList::addName(Element& parent, std::size_t index, bool opensByAction) {
  const Row& shown = rows_[index];
  Element& image = parent.addChild("AXImage");
  Element& field = parent.addChild("AXTextField");
  field.set("AXValue", shown.name);
  field.set("AXFilename", shown.path.substr(shown.path.rfind('/') + 1));
  field.set("AXURL", Url{fileUrl(shown.path, shown.directory || shown.package)});
  field.set("AXEnabled", shown.selectable);
  if (!opensByAction) return;
  // Assumed (Live.OpenOnARowLeadsToItsFolderAndAnswersAnError): its name and its image both offer
  // it.
  const auto open = [this, index] {
    if (opened) opened(rows_[index]);
    return ax::attributeUnsupported;  // what the platform answers although it opens the item
  };
  image.addAction("AXOpen", open);
  field.addAction("AXOpen", open);
}

void EntryList::scrollTo(const Row& row) {
  const Rect area = visible();
  const Rect frame = *row.row->frame();
  const double above = area.y - frame.y;
  const double below = frame.y + frame.height - (area.y + area.height);
  if (above > 0) scrolled_ -= above;
  if (below > 0) scrolled_ += below;
  if (above > 0 || below > 0) place();
}

void EntryList::select(const Row* row) {
  mark(row);
  if (selectionChanged) selectionChanged();
}

void EntryList::mark(const Row* row) {
  if (selected_ != nullptr) selected_->row->set("AXSelected", false);
  selected_ = row != nullptr && row->selectable ? row : nullptr;
  List ids;
  if (selected_ != nullptr) {
    selected_->row->set("AXSelected", true);
    ids.emplace_back(selected_->row->id());
  }
  list_.set(selection_attribute_, std::move(ids));
}

// Assumed (Live.DownArrowSelectsTheFirstRow, Live.UpArrowSelectsTheLastRow,
// Live.ArrowsPassOverWhatCannotBeSelected, Live.DownArrowStaysAtTheLastRow): from nothing to the
// first or the last row, over those that cannot be selected, and never past an end.
void EntryList::moveBy(int step) {
  const auto count = static_cast<std::ptrdiff_t>(rows_.size());
  const std::ptrdiff_t stride = selected_ != nullptr ? step : step > 0 ? 1 : -1;
  std::ptrdiff_t index = selected_ != nullptr ? selected_ - rows_.data() : step > 0 ? -1 : count;
  do {
    index += stride;
  } while (index >= 0 && index < count && !rows_[static_cast<std::size_t>(index)].selectable);
  if (index < 0 || index >= count) return;
  const Row& row = rows_[static_cast<std::size_t>(index)];
  scrollTo(row);
  select(&row);
}

void EntryList::selectPath(const std::string& path) {
  const auto found =
      std::find_if(rows_.begin(), rows_.end(), [&](const Row& row) { return row.path == path; });
  if (found == rows_.end()) return;
  scrollTo(*found);
  select(&*found);
}

const Listing::Row* EntryList::click(Point point) {
  const Row* row = rowAt(point);
  select(row);
  return row;
}

const Listing::Row* EntryList::rowAt(Point point) const {
  if (!contains(visible(), point)) return nullptr;
  const auto found = std::find_if(rows_.begin(), rows_.end(), [&](const Row& row) {
    return contains(*row.row->frame(), point);
  });
  return found == rows_.end() ? nullptr : &*found;
}

}  // namespace simulator
