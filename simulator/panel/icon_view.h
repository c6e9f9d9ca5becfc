// The icon view: a list whose items stand in lines, from left to right and from top to bottom.
#pragma once

#include "simulator/panel/entry_list.h"

namespace simulator {

class IconView final : public EntryList {
 public:
  explicit IconView(Element& list);
  void moveSelection(int step) override;
  void moveAcross(int step) override { moveBy(step); }

 private:
  void build() override;
  void place() override;
  int iconsInALine() const;
};

}  // namespace simulator
