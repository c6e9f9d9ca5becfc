// An Open panel that is being taken to a target, and seeing where it is. Whatever is done to it
// stops as soon as the panel is gone.
#pragma once

#include <cstdint>
#include <exception>
#include <functional>
#include <optional>
#include <vector>

#include "dialog/panel_parts.h"
#include "dialog/panel_search.h"
#include "dialog/panel_sight.h"

namespace tessarine {

// The panel's root is no more.
class PanelGone : public std::exception {
 public:
  const char* what() const noexcept override { return "the panel is gone"; }
};

struct PanelChoice {
  PanelRoot panel;
  PanelParts parts;
  Target target;
  bool isFolderPanel = false;  // it is known to be one
  // The processes that may take the panel's keys, in the order in which they are tried.
  std::vector<std::int32_t> keyPids;
  // Whether a key can reach no other panel, asked right before each.
  std::function<bool()> keysAreSafe;
  double deadline = 0;  // in the clock's time: no wait goes beyond it
  // Filled in by moves: a go-to sheet was opened, by a chord to that process.
  std::optional<std::int32_t> sheetTaker;
};

// The wait, cut at the deadline; never below 0.
double withinDeadline(const PanelChoice& choice, double seconds);

// One look. Absent when it could not be completed, as the panel was busy or its listing changed
// meanwhile. Throws PanelGone.
std::optional<PanelSight> glance(PanelChoice& choice);

// Looks every 0.1 s until the target is proven; at least once. Throws PanelGone.
std::optional<Proof> proofWithin(PanelChoice& choice, double seconds);

// Looks every 0.1 s until the panel shows the folder; at least once. Throws PanelGone.
bool showsWithin(PanelChoice& choice, const std::string& folder, double seconds);

// What a request says that may go unanswered: false when it does. Throws PanelGone when the panel
// turns out to be gone.
bool holds(const PanelChoice& choice, const std::function<bool()>& request);

}  // namespace tessarine
