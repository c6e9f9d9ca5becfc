// The list view: an outline with a row for each entry and a header row above them.
#pragma once

#include "simulator/panel/entry_list.h"

namespace simulator {

class ListView final : public EntryList {
 public:
  // With `ignoresSelection`, setting "AXSelectedRows" succeeds and selects nothing.
  ListView(Element& outline, Language language, std::size_t columns, bool ignoresSelection);

 private:
  void build() override;
  void place() override;
  Rect visible() const override;
  void addHeader();
  void addRow(std::size_t index);
  // The cells' frames within a row's.
  std::vector<Rect> cellFrames(const Rect& row) const;
  std::int32_t selectElements(const Value& value);

  Language language_;
  std::size_t columns_;
  bool ignores_selection_;
};

}  // namespace simulator
