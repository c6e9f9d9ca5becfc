#include "navigation/panel_choice.h"

#include <algorithm>

#include "platform/accessibility.h"
#include "platform/clock.h"
#include "platform/files.h"
#include "platform/wait.h"

namespace tessarine {
namespace {

constexpr double glancePollSeconds = 0.1;

void lookForPartsAgain(PanelChoice& choice) {
  try {
    choice.parts = panelParts(choice.panel.element);
  } catch (const Unanswered&) {
  }
}

void requireTime(const PanelChoice& choice) {
  if (currentTime() > choice.deadline) throw TimeIsUp();
}

bool seesWithin(const PanelChoice& choice, double seconds, const Condition& condition) {
  return seenWithin(withinDeadline(choice, seconds), glancePollSeconds, condition);
}

}  // namespace

double withinDeadline(const PanelChoice& choice, double seconds) {
  return std::max(0.0, std::min(seconds, choice.deadline - currentTime()));
}

std::optional<PanelSight> glance(PanelChoice& choice) {
  requireTime(choice);
  try {
    choice.lastSight = lookAt(choice.parts);
    return choice.lastSight;
  } catch (const Unanswered& unanswered) {
    if (!unanswered.gone()) return {};
  }
  if (isGone(choice.panel.element)) throw PanelGone();
  lookForPartsAgain(choice);
  return {};
}

std::optional<Proof> proofWithin(PanelChoice& choice, double seconds) {
  std::optional<Proof> proof;
  seesWithin(choice, seconds, [&] {
    const auto sight = glance(choice);
    if (sight) proof = proofOf(*sight, choice.target);
    return proof.has_value();
  });
  return proof;
}

bool showsWithin(PanelChoice& choice, const std::string& folder, double seconds) {
  return seesWithin(choice, seconds, [&] {
    const auto sight = glance(choice);
    return sight && sight->folder && sameFile(*sight->folder, folder);
  });
}

bool holds(const PanelChoice& choice, const std::function<bool()>& request) {
  requireTime(choice);
  try {
    return request();
  } catch (const Unanswered& unanswered) {
    if (unanswered.gone() && isGone(choice.panel.element)) throw PanelGone();
    return false;
  }
}

bool mayActOn(const PanelChoice& choice, const Element& element) {
  return holds(choice, [&] { return readText(element, "AXRole").has_value(); });
}

}  // namespace tessarine
