// Finding the Open dialog: which element is the root of one, and where to look for it.
//
// A dialog is a window or sheet with an Open title, or, in the browser only, a chooser that stands
// in a window without one. Titles are matched exactly. No search reports an error.
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "platform/element.h"

namespace tessarine {

// Whether the element has a dialog role ("AXWindow", "AXSheet", "AXDialog") and an Open title, or,
// failing that, an Open description.
bool isOpenDialogRoot(const Element& element);

// A dialog among the application's focused and main windows, or else shallowly below them.
std::optional<NodeRef> fastDialogNodes(const Element& app);

// That dialog alone, or else every top-level window that is a dialog.
std::vector<NodeRef> dialogNodes(const Element& app);

// The root of a chooser embedded in one of the application's windows, the last window first: the
// window itself, or the container around its location pop-up.
std::optional<NodeRef> findEmbeddedChooserRoot(const Element& app);

// Whether the subtree carries the controls of a chooser: Cancel and Choose buttons together with a
// wide confirmable text field, or, where there is no such field, with a location pop-up, a list
// view or the text of an extension-folder chooser.
bool subtreeHasChooserSignature(const Element& element);

// The dialogs of all candidate applications, in their order. An embedded chooser is looked for only
// in the browser, and only when it shows no other dialog.
std::vector<DialogRef> openDialogs(std::int32_t primaryPid, bool includeEmbedded,
                                   const std::vector<std::int32_t>& additionalPIDs);

// Of these the browser's first one, or else the last one.
std::optional<DialogRef> preferredDialog(std::int32_t primaryPid, bool includeEmbedded,
                                         const std::vector<std::int32_t>& additionalPIDs);

// Whether some candidate application shows a dialog or, in the browser, an embedded chooser.
bool dialogIsOpen(std::int32_t primaryPid);

// Whether the application shows neither a dialog nor an embedded chooser.
bool chooserIsGone(const Element& app);

}  // namespace tessarine
