#include "simulator/panel/column_view.h"

#include <algorithm>

#include "simulator/panel/folder.h"
#include "simulator/panel/panel_tree.h"

namespace simulator {
namespace {

// Assumed (no test can tell: how wide columns are, and how large their texts, is the user's): in
// points.
constexpr double column_width = 200;
constexpr double column_row_height = 24;

// Whether the folder is the other one or around it.
bool isAround(const std::string& folder, const std::string& other) {
  return folder == "/" || other == folder || other.starts_with(folder + "/");
}

}  // namespace

// Assumed (Live.AColumnIsNotSelectedInByAccessibility): what is selected can be read and not be
// set.
class ColumnView::Column final : public EntryList {
 public:
  Column(Element& area, Element& list) : EntryList(list, "AXSelectedChildren"), area_(area) {
    list.makeSettable("AXSelectedRows", [](const Value& value) {
      return std::holds_alternative<List>(value) ? ax::success : ax::illegalArgument;
    });
  }

  Element& area() { return area_; }

  void moveTo(const Rect& frame) {
    area_.setFrame(frame);
    list_.setFrame(frame);
    place();
  }

  using EntryList::mark;

  const Row* find(const std::string& path) const {
    const auto found = std::find_if(rows().begin(), rows().end(),
                                    [&](const Row& row) { return row.path == path; });
    return found == rows().end() ? nullptr : &*found;
  }

 private:
  // Assumed (Live.AColumnsFieldTellsTheFilesNameAndUrl, Live.AColumnsEntryHasNoOpen): an entry is a
  // group of an image and a name, and cannot be opened by accessibility.
  void build() override {
    for (std::size_t i = 0; i < rows_.size(); ++i) addName(addItem("AXGroup", i), i, false);
  }

  void place() override {
    const Rect area = visible();
    Rect frame{area.x, area.y - scrolled_, area.width, column_row_height};
    for (const Row& shown : rows_) {
      shown.row->setFrame(frame);
      const auto& parts = shown.row->children();
      parts[0]->setFrame({frame.x + 4, frame.y + 4, 16, 16});
      parts[1]->setFrame({frame.x + 24, frame.y + 4, frame.width - 28, 16});
      frame.y += frame.height;
    }
  }

  Element& area_;
};

ColumnView::ColumnView(Element& browser, std::vector<std::string> starts)
    : browser_(browser), starts_(std::move(starts)) {}

ColumnView::~ColumnView() = default;

// Assumed (Live.TheFirstColumnIsThatOfTheNearestPlace, Live.ASelectedFolderKeepsTheFirstColumn):
// the first column is that of the nearest place of the sidebar around the folder shown, or else of
// its volume, and stays while folders are selected in the columns.
void ColumnView::show(const std::string& folder) {
  Destination arrival{folder, folder, ""};
  if (destination_ && destination_->folder == folder) {
    arrival = *destination_;
    destination_.reset();
  } else if (folder == folder_ && !columns_.empty()) {
    arrival.active = columns_[active_]->folder();
  } else {
    start_ = nearestStart(folder);
    destination_.reset();
  }
  folder_ = folder;
  columns_.clear();
  browser_.removeChildren();
  path_ = pathTo(folder);
  for (const std::string& each : path_) addColumn(each);
  placeColumns();
  active_ = columnOf(arrival.active).value_or(columns_.empty() ? 0 : columns_.size() - 1);
  if (const auto shown = columnOf(folder)) columns_[*shown]->selectPath(arrival.selected);
  for (std::size_t i = 0; i < columns_.size(); ++i) {
    columns_[i]->selectionChanged = [this, i] { follow(i); };
    columns_[i]->keyboardWanted = [this, i] {
      active_ = i;
      keyboardWanted();
    };
  }
  showKeyboard(has_keyboard_);
}

std::string ColumnView::nearestStart(const std::string& folder) const {
  std::string nearest = "/";
  for (const std::string& start : starts_) {
    if (isAround(start, folder) && start.size() > nearest.size()) nearest = start;
  }
  return nearest;
}

std::vector<std::string> ColumnView::pathTo(const std::string& folder) const {
  std::vector<std::string> path{folder};
  while (path.back() != start_) path.push_back(parentFolder(path.back()));
  std::reverse(path.begin(), path.end());
  return path;
}

// Measured: an empty folder has no column.
// Assumed (Live.ABrowsersChildrenAreItsColumns): a browser has no other children.
// Assumed (Live.OnlyTheFoldersOfTheColumnsAreSelectedInThem): what leads to the next column is
// selected, where it is not hidden.
void ColumnView::addColumn(const std::string& folder) {
  Element& area = addElement(browser_, "AXScrollArea", *browser_.frame());
  Element& list = addElement(area, "AXList", *browser_.frame());
  auto column = std::make_unique<Column>(area, list);
  column->rowsOf = rowsOf;
  column->show(folder);
  if (column->rows().empty()) return browser_.removeChild(area);
  const auto next = std::find(path_.begin(), path_.end(), folder) + 1;
  if (next != path_.end()) column->mark(column->find(*next));
  columns_.push_back(std::move(column));
}

// Assumed (no test can tell: columns are as wide as the user left them): all are equally wide, and
// where they do not fit the last one is seen.
void ColumnView::placeColumns() {
  const Rect area = *browser_.frame();
  const double width = column_width * static_cast<double>(columns_.size());
  Rect frame{area.x - std::max(0.0, width - area.width), area.y, column_width, area.height};
  List all;
  for (const auto& column : columns_) {
    column->moveTo(frame);
    frame.x += frame.width;
    all.emplace_back(column->area().id());
  }
  browser_.set("AXColumns", std::move(all));
}

std::vector<std::string> ColumnView::folders() const {
  return path_;
}

bool ColumnView::isCurrent() const {
  return std::all_of(path_.begin(), path_.end(), [this](const std::string& folder) {
    const auto column = columnOf(folder);
    return column ? columns_[*column]->isCurrent() : rowsOf(folder).empty();
  });
}

const Listing::Row* ColumnView::selected() const {
  const auto shown = columnOf(folder_);
  return shown ? columns_[*shown]->selected() : nullptr;
}

void ColumnView::selectPath(const std::string& path) {
  if (const auto shown = columnOf(folder_)) columns_[*shown]->selectPath(path);
}

// Assumed (Live.DownArrowShowsTheNextFolderOfTheColumn): up and down select in the column that has
// the keyboard.
void ColumnView::moveSelection(int step) {
  if (!columns_.empty()) columns_[active_]->moveSelection(step);
}

// Assumed (Live.RightArrowSelectsTheFirstOfTheNextColumn,
// Live.LeftArrowLeadsBackToTheColumnBefore): right leads into the next column, left back to the one
// before, whose folder is still selected.
void ColumnView::moveAcross(int step) {
  if (columns_.empty()) return;
  const std::ptrdiff_t wanted = static_cast<std::ptrdiff_t>(active_) + step;
  if (wanted < 0 || wanted >= std::ssize(columns_)) return;
  const auto column = static_cast<std::size_t>(wanted);
  if (step > 0 && columns_[column]->selected() == nullptr) {
    columns_[column]->moveSelection(1);
  } else {
    follow(column);
  }
}

const Listing::Row* ColumnView::click(Point point) {
  const auto column = columnAt(point);
  return column ? columns_[*column]->click(point) : nullptr;
}

const Listing::Row* ColumnView::rowAt(Point point) const {
  const auto column = columnAt(point);
  return column ? columns_[*column]->rowAt(point) : nullptr;
}

// Assumed (Live.AColumnHasTheKeyboard): a column has the keyboard, or the browser when it has none.
Element& ColumnView::keyboardElement() {
  return columns_.empty() ? browser_ : columns_[active_]->keyboardElement();
}

void ColumnView::showKeyboard(bool has) {
  has_keyboard_ = has;
  browser_.set("AXFocused", has && columns_.empty());
  for (std::size_t i = 0; i < columns_.size(); ++i) columns_[i]->showKeyboard(has && i == active_);
}

// Assumed (Live.AFolderSelectedInAColumnIsShown, Live.AFileSelectedInAnEarlierColumnShowsItsFolder,
// Live.AClickBelowAColumnsEntriesShowsItsFolder): a selected folder is shown, and of a selected
// file, or of nothing, the folder that the column is of.
void ColumnView::follow(std::size_t index) {
  active_ = index;
  if (has_keyboard_) keyboardWanted();
  const Column& column = *columns_[index];
  const Row* row = column.selected();
  const bool leads = row != nullptr && row->directory;
  const std::string folder = leads ? row->path : column.folder();
  if (folder != folder_) {
    destination_ = {folder, column.folder(), row != nullptr && !leads ? row->path : ""};
    opened({.path = folder, .name = "", .directory = true});
    return;
  }
  destination_.reset();
  if (const auto shown = columnOf(folder_); leads && shown) columns_[*shown]->mark(nullptr);
  selectionChanged();
}

std::optional<std::size_t> ColumnView::columnOf(const std::string& folder) const {
  for (std::size_t i = 0; i < columns_.size(); ++i) {
    if (columns_[i]->folder() == folder) return i;
  }
  return std::nullopt;
}

std::optional<std::size_t> ColumnView::columnAt(Point point) const {
  if (!contains(*browser_.frame(), point)) return std::nullopt;
  for (std::size_t i = 0; i < columns_.size(); ++i) {
    if (contains(*columns_[i]->area().frame(), point)) return i;
  }
  return std::nullopt;
}

}  // namespace simulator
