#include "simulator/import/import.h"

#include "simulator/import/draft.h"
#include "simulator/import/printout.h"

namespace simulator {

ImportedScenario importScenario(const Printout& dialogs, const std::optional<Printout>& windows,
                                bool keepNames) {
  using namespace importing;
  Inspection inspection = readInspection(dialogs);
  std::optional<Listing> listing;
  if (windows) listing = readListing(*windows, inspection.browser);
  return Draft(std::move(inspection), std::move(listing), keepNames).finish();
}

}  // namespace simulator
