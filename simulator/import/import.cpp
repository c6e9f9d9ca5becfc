#include "simulator/import/import.h"

#include "simulator/import/draft.h"
#include "simulator/import/printout.h"

namespace simulator {

ImportedScenario importScenario(const Printout& dialogs, const std::optional<Printout>& windows,
                                bool keepNames) {
  using namespace importing;
  const Inspection inspection = readInspection(dialogs);
  const Pid browser = inspection.browser;
  Draft draft(browser, windows ? readListing(*windows, browser) : Listing(), keepNames);
  draft.add(inspection.dialogs);
  return draft.finish();
}

}  // namespace simulator
