// An Open panel that is being taken to a target, and seeing where it is. Whatever is done to it
// stops as soon as the panel is gone.
#pragma once

#include <cstdint>
#include <exception>
#include <functional>
#include <optional>
#include <string>
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

// The deadline has passed.
class TimeIsUp : public std::exception {
 public:
  const char* what() const noexcept override { return "the time is up"; }
};

struct PanelChoice {
  PanelRoot panel;
  PanelParts parts;
  Target target;
  bool isFolderPanel = false;  // it is known to be one
  // The processes that may take the panel's keys, in the order in which they are tried.
  std::vector<std::int32_t> keyPids;
  // Whether no other panel of the browser is there that could take a key, asked before each: as the
  // trees show it, and, before a key that confirms or closes, as the window list does, too, where
  // the go-to sheet may have a window there.
  std::function<bool()> isAlone;
  std::function<bool(const std::optional<Rect>& sheetFrame)> hasNoNewWindow;
  // In the clock's time: no wait goes beyond it, and nothing is begun after it.
  double deadline = 0;
  // Filled in meanwhile: the processes that were sent the chord of the go-to sheet, whether a
  // Return is under way of which nothing was seen yet, what the last complete look saw, and why the
  // panel is not where it should be.
  std::vector<std::int32_t> sheetTakers = {};
  bool returnUnderWay = false;
  std::optional<PanelSight> lastSight = {};
  std::string problem = {};
};

// The wait, cut at the deadline; never below 0.
double withinDeadline(const PanelChoice& choice, double seconds);

// One look. Absent when it could not be completed, as the panel was busy or its listing changed
// meanwhile. Throws PanelGone, and TimeIsUp instead of looking.
std::optional<PanelSight> glance(PanelChoice& choice);

// Looks every 0.1 s until the target is proven; at least once. Throws as glance does.
std::optional<Proof> proofWithin(PanelChoice& choice, double seconds);

// Looks every 0.1 s until the panel shows the folder; at least once. Throws as glance does.
bool showsWithin(PanelChoice& choice, const std::string& folder, double seconds);

// What a request says that may go unanswered: false when it does. Throws PanelGone when the panel
// turns out to be gone, and TimeIsUp instead of asking.
bool holds(const PanelChoice& choice, const std::function<bool()>& request);

// Whether the element is there and its process answers now, so that something may be done to it.
// Throws as holds does.
bool mayActOn(const PanelChoice& choice, const Element& element);

}  // namespace tessarine
