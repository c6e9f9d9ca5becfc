#include "simulator/panel/listing.h"

#include "simulator/panel/column_view.h"
#include "simulator/panel/icon_view.h"
#include "simulator/panel/list_view.h"

namespace simulator {

std::unique_ptr<Listing> makeListing(Element& list, const PanelOptions& options,
                                     const std::vector<std::string>& starts) {
  switch (options.view) {
    case PanelView::columns:
      return std::make_unique<ColumnView>(list, starts);
    case PanelView::icons:
      return std::make_unique<IconView>(list);
    case PanelView::list:
      break;
  }
  return std::make_unique<ListView>(list, options.language,
                                    static_cast<std::size_t>(options.listColumns),
                                    options.faults.ignoresSelection);
}

}  // namespace simulator
