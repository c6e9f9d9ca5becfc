#include "support/transcript.h"

#include <array>
#include <cmath>
#include <cstdio>
#include <optional>
#include <set>
#include <variant>

#include "support/world.h"

namespace tessarine::test {
namespace {

using simulator::AccessibilityRequest;
using simulator::RecordEntry;
using Verb = AccessibilityRequest::Verb;

std::string seconds(const char* format, double value) {
  std::array<char, 32> buffer{};
  std::snprintf(buffer.data(), buffer.size(), format, std::fabs(value));
  return buffer.data();
}

bool isPosted(const RecordEntry& entry) {
  const auto* key = std::get_if<simulator::PostedKey>(&entry);
  const auto* mouse = std::get_if<simulator::PostedMouse>(&entry);
  return (key != nullptr && key->origin == simulator::Origin::tool) ||
         (mouse != nullptr && mouse->origin == simulator::Origin::tool);
}

constexpr simulator::Prices prices;

// What the tool itself spent on the entry. An event costs next to nothing.
double priceOf(const RecordEntry& entry) {
  const auto* request = std::get_if<AccessibilityRequest>(&entry);
  if (request == nullptr) return 0;
  const bool press = request->verb == Verb::perform && request->name == "AXPress";
  return press && request->error != simulator::ax::actionUnsupported ? prices.press
                                                                     : prices.request;
}

// What a request did, absent when it only read.
std::optional<std::string> deedOf(const AccessibilityRequest& request) {
  const std::string place = " of " + request.role + " in " + std::to_string(request.element.pid);
  if (request.verb == Verb::perform) return request.name + place;
  if (request.verb != Verb::set) return {};
  const auto* text = std::get_if<std::string>(&request.value);
  return "set " + request.name + place + (text == nullptr ? "" : ": " + *text);
}

// Calls `visit` with each entry and the seconds slept before it. Only what the tool itself did ends
// a sleep; the desktop's own doings fall into one.
template <class Visit>
void forEachStep(const simulator::Record& record, const Visit& visit) {
  double awake = 0;  // the end of the last thing that the tool did
  int programs = 0;  // that run: what they wait for is no sleep of the tool
  for (const auto& line : record.lines()) {
    const auto* request = std::get_if<AccessibilityRequest>(&line.entry);
    const bool starts = std::holds_alternative<simulator::ProgramStarted>(line.entry);
    const bool ends = std::holds_alternative<simulator::ProgramEnded>(line.entry);
    if (request == nullptr && !starts && !ends && !isPosted(line.entry)) continue;
    const bool within = programs > 0;
    programs += starts ? 1 : ends ? -1 : 0;
    const double price = within ? line.time - awake : priceOf(line.entry);
    visit(line.entry, line.time - price - awake);
    awake = line.time;
  }
}

}  // namespace

std::vector<std::string> transcript(const simulator::Record& record) {
  const auto events = postedEventKinds(record);
  auto event = events.begin();
  std::vector<std::string> lines;
  double slept = 0;
  forEachStep(record, [&](const RecordEntry& entry, double sleep) {
    slept += sleep;
    std::optional<std::string> deed;
    if (isPosted(entry)) deed = *event++;
    if (const auto* request = std::get_if<AccessibilityRequest>(&entry)) deed = deedOf(*request);
    if (!deed) return;
    lines.push_back(seconds("%.3f ", slept) + *deed);
    slept = 0;
  });
  return lines;
}

// In whole milliseconds: what events cost is no sleep.
std::vector<std::string> sleepLengths(const simulator::Record& record) {
  std::set<double> lengths;
  forEachStep(record, [&](const RecordEntry&, double sleep) {
    const double milliseconds = std::round(sleep * 1000);
    if (milliseconds > 0) lengths.insert(milliseconds / 1000);
  });
  std::vector<std::string> texts;
  for (const double length : lengths) texts.push_back(seconds("%g", length));
  return texts;
}

}  // namespace tessarine::test
