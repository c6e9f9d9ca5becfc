// The go-to sheet of one panel, in both of its generations: found by its identifier, or as the
// sheet below the panel that holds a field for a path. It is opened by its chord, filled through
// accessibility and confirmed by Return; only what is then seen counts.
//
// Keys go to the processes of the choice alone, and only while the panel and that process answer
// and no other panel could take them.
#pragma once

#include <optional>
#include <string>

#include "navigation/panel_choice.h"
#include "platform/element.h"

namespace tessarine {

// The sheet, below the panel's root or, for a chooser that is only a part of a window, below that
// window. Throws Unanswered.
std::optional<Element> goToSheetOf(const Element& root);

// Sends the panel to the path through the sheet, which opens within 1.3 s of Command-Shift-G to one
// of the processes in turn, none of which gets it too late to close the sheet again; one that is
// open already is closed first, as it tells nothing about who takes keys. Its field has 2 s to
// appear and half a second to hold the path, once more after a second write. Return goes to the
// process that took the chord, and the sheet has 3 s to go; then its field's "AXConfirm" is tried,
// for 1.5 s. A sheet that does not take the path or does not go is closed. Where the sheet led is
// not looked at. Empty when it went, otherwise why it did not: "the go-to sheet does not close",
// "no go-to sheet opened", "the go-to sheet did not take the path", "the go-to sheet did not go".
// Throws as glance does.
std::string goThroughSheet(PanelChoice& choice, const std::string& path);

// Closes the sheet, if one is open; a sheet whose field is still to come has 2 s for it. By its own
// button, or else by Escape to the processes that were sent the chord, the last one first. Whether
// none is seen then, within 1.5 s each. Throws as glance does.
bool closeGoToSheet(PanelChoice& choice);

}  // namespace tessarine
