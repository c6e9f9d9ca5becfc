#include "simulator/panel/icon_view.h"

#include <algorithm>

namespace simulator {
namespace {

// Assumed (no test can tell: the size and the spacing of icons are the user's): in points.
constexpr double icon_item_width = 104;
constexpr double icon_item_height = 96;
constexpr double icon_size = 64;
constexpr double icon_name_height = 16;

}  // namespace

// Assumed (Live.AnIconIsNotSelectedByAccessibility): what is selected can be read and not be set.
IconView::IconView(Element& list) : EntryList(list, "AXSelectedChildren") {}

int IconView::iconsInALine() const {
  return std::max(1, static_cast<int>(visible().width / icon_item_width));
}

// Assumed (Live.DownArrowSelectsTheIconBelow, Live.ArrowsLeadToTheIconsBeside,
// Live.ArrowsLeadToTheNextLineOfIcons, Live.DownArrowSelectsTheFirstIcon): up and down lead by a
// line, right and left by an icon also to another line, from nothing to the first or the last.
void IconView::moveSelection(int step) {
  moveBy(step * iconsInALine());
}

// Assumed (Live.AnIconsFieldTellsTheFilesNameAndUrl): an icon is a group of an image and a name.
void IconView::build() {
  for (std::size_t i = 0; i < rows_.size(); ++i) addName(addItem("AXGroup", i), i, true);
}

void IconView::place() {
  const Rect area = visible();
  const int line = iconsInALine();
  int index = 0;
  for (const Row& shown : rows_) {
    const Rect frame{area.x + icon_item_width * (index % line),
                     area.y + icon_item_height * (index / line) - scrolled_, icon_item_width,
                     icon_item_height};
    shown.row->setFrame(frame);
    const auto& parts = shown.row->children();
    parts[0]->setFrame(
        {frame.x + (frame.width - icon_size) / 2, frame.y + 4, icon_size, icon_size});
    parts[1]->setFrame({frame.x + 4, frame.y + icon_size + 8, frame.width - 8, icon_name_height});
    ++index;
  }
}

}  // namespace simulator
