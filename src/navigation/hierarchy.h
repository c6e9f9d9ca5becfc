// Walking the chooser to a folder the way a person would: from a place in the sidebar or a volume,
// one folder row after the other.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "platform/element.h"

namespace tessarine {

// Brings an open chooser to the target: starts from the deepest ancestor that the sidebar offers,
// or else from the volume in the location pop-up, opens one row for each component that is left and
// selects the last one. `pid` takes the events that openRow posts when process events are allowed.
// Every wait is `timeoutSeconds`, but at most 2.5 s for a row, 2.0 s for an opened folder and for
// the final verification, 1.5 s for the last selection; looking up how the file browser displays a
// folder's name is not counted and has no limit (navigation/path_analysis.h). Throws ToolError
// timedOut with the time of the wait that expired, and what openRow and navigateToVolume throw.
void navigateByHierarchy(const Element& dialog, std::int32_t pid, const std::string& targetPath,
                         double timeoutSeconds, bool allowProcessEvents);

// Opens the deepest proper ancestor of the target that is a place in the sidebar and waits for the
// file list to change (for at most 1.5 s; that it does not is no error). The ancestor's path, or
// nothing. Throws what openRow throws.
std::optional<std::string> anchorPathFromSidebar(const Element& dialog, std::int32_t pid,
                                                 const std::string& targetPath,
                                                 double timeoutSeconds, bool allowProcessEvents);

// Picks the volume from the location pop-up, unless it is shown already. Throws ToolError
// - notFound "location popup not found in open dialog",
// - timedOut when its menu has no item of that name within the time, or does not show it
// afterwards,
// - actionFailed "menu item does not support AXPick/AXPress", or the error of an action.
void navigateToVolume(const Element& dialog, const std::string& volumeDisplayName,
                      double timeoutSeconds);

// Polls every 0.15 s until the location pop-up shows the value. Throws ToolError timedOut "timed
// out after " + timeoutSeconds + "s".
void waitForPopupValue(const Element& dialog, const std::string& expectedValue,
                       double timeoutSeconds);

}  // namespace tessarine
