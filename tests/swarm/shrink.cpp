#include "swarm/shrink.h"

#include "simulator/scenario/scenario.h"

namespace tessarine::test {
namespace {

using Json = nlohmann::ordered_json;
using Pointer = Json::json_pointer;
using Sameness = std::function<bool(const RunReport&)>;

// Every place of the document below `place`, outer ones before inner ones, and of a list the last
// ones first, so that those before them stay where they are.
void collectPlaces(const Json& document, const Pointer& place, std::vector<Pointer>& places) {
  const Json& value = document.at(place);
  std::vector<Pointer> below;
  if (value.is_object()) {
    for (const auto& item : value.items()) below.push_back(place / item.key());
  }
  for (std::size_t i = value.is_array() ? value.size() : 0; i-- > 0;) below.push_back(place / i);
  for (const Pointer& each : below) {
    places.push_back(each);
    collectPlaces(document, each, places);
  }
}

void leaveOut(Json& document, const Pointer& place) {
  Json& holder = document.at(place.parent_pointer());
  if (holder.is_array()) {
    holder.erase(std::stoul(place.back()));
  } else {
    holder.erase(place.back());
  }
}

class Shrinker {
 public:
  Shrinker(DrawnWorld& drawn, bool verify, const RunReport& report, const Sameness& isTheSame)
      : drawn_(drawn), verify_(verify), isTheSame_(isTheSame), report_(report) {}

  // Until nothing more can be left out.
  RunReport shrink() {
    while (leavesSomethingOut()) {
    }
    return report_;
  }

 private:
  bool leavesSomethingOut() {
    bool smaller = false;
    std::vector<Pointer> places;
    collectPlaces(drawn_.scenario, Pointer(), places);
    for (const Pointer& place : places) {
      // What stood around it may be gone, or another item may stand there now: that is tried, too.
      if (drawn_.scenario.contains(place) && endsTheSameWithout(place)) smaller = true;
    }
    return smaller;
  }

  bool endsTheSameWithout(const Pointer& place) {
    const Json whole = drawn_.scenario;
    leaveOut(drawn_.scenario, place);
    try {
      const RunReport report = runWorld(drawn_, verify_, false);
      if (isTheSame_(report)) {
        report_ = report;
        return true;
      }
    } catch (const simulator::ScenarioError&) {
      // Something that is left needs it.
    }
    drawn_.scenario = whole;
    return false;
  }

  DrawnWorld& drawn_;
  bool verify_;
  const Sameness& isTheSame_;
  RunReport report_;
};

}  // namespace

RunReport shrinkWorld(DrawnWorld& drawn, bool verify, const RunReport& report,
                      const std::function<bool(const RunReport&)>& isTheSame) {
  return Shrinker(drawn, verify, report, isTheSame).shrink();
}

}  // namespace tessarine::test
