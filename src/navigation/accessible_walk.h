// Taking a panel to its target without a key: by its entries, its sidebar and its location pop-up,
// through accessibility alone.
//
// What actions and writes answer is not believed: each step counts when it is seen. Entries are
// known by their locations. Only folders around the target are opened, and the target itself where
// it is a folder and the panel is known to choose folders; never a file, as opening one confirms.
#pragma once

#include <string>

#include "navigation/panel_choice.h"

namespace tessarine {

// Begins at the nearest place around the target: the folder shown, a place of the sidebar, a folder
// of the location pop-up's menu; where one leads nowhere at the next. From there each folder on the
// way is found among the entries (for 1 s) and opened (2 s for each action that it offers), and at
// last the target selected (0.6 s for each way), or opened. Empty when the target is proven,
// otherwise why not, of the nearest place: "/a/b is not listed in /a: what is hidden is reached
// through the go-to sheet alone", "/a/b does not open", "/a/b cannot be selected", "nothing in the
// panel leads to /a/b". Throws as glance does.
std::string walkToTarget(PanelChoice& choice);

// The last step alone, in the folder around the target, which is shown.
std::string takeTargetEntry(PanelChoice& choice);

}  // namespace tessarine
