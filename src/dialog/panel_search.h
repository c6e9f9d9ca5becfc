// Finding Open panels by identity: which elements are the roots of panels, in the browser's own
// tree and in those of panel services.
//
// A panel is an element with the identifier "open-panel", whatever its language, role and title.
// Only where no identifier is found at all, as on old systems, the titles and controls by which
// dialog/detection.h knows a dialog count, and then only for an element that holds a panel's
// controls: a page may be titled "Open".
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "panels/process_survey.h"
#include "platform/element.h"

namespace tessarine {

inline constexpr const char* panelIdentifier = "open-panel";

struct PanelRoot {
  Element element;
  AppRef owner;  // the application in whose tree it was found
};

// The roots in one application's tree: its windows, the focused and the main one, and what stands
// below them down to three levels, 150 elements of each, without pages, tool bars and listings. A
// chooser without identifier or title that is embedded in a window of the browser is the innermost
// element around a Cancel button that has the chooser's signature and a panel's controls, a window
// only when it is a dialog; no more than eight levels and 360 elements of a window are searched for
// the button, pages and listings not at all. Throws Unanswered.
std::vector<PanelRoot> panelRootsIn(const AppRef& app);

// The browser's open panels: those of its own tree, then those that the panel services alone show.
// A panel that stands in both trees is one, the browser's. A service that does not answer shows
// none; nor does one whose panel stands where another application has a window. Throws Unanswered
// when the browser does not answer.
std::vector<PanelRoot> openPanels(const ProcessSurvey& survey, std::int32_t primaryPid,
                                  const std::vector<std::int32_t>& services);

// The service that may be the browser's and whose panel, as its tree has it, stands where a window
// of the browser and of no third process stands: for when its own windows are not listed. None when
// there are several.
std::vector<std::int32_t> panelServicesByPlace(const ProcessSurvey& survey,
                                               std::int32_t primaryPid);

// Where the panels are: "Google Chrome 812: 2, panel service 900: 1".
std::string panelCounts(const ProcessSurvey& survey, const std::vector<PanelRoot>& panels);

}  // namespace tessarine
