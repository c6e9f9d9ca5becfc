// Titles that the window server withholds, from accessibility: so that the list serves with the
// Accessibility permission alone.
#pragma once

#include <vector>

#include "capture-helper/listed_window.h"

namespace tessarine {

// Gives each window whose title is withheld or empty that of the accessibility window or sheet of
// its process with the same frame, front to back where there are several; what has none stays as it
// is. An Open panel without a title counts as titled "Open". Only ordinary windows and panels are
// looked up, not the Dock, menus or what floats above them; browsers and the services that draw
// panels come first. A process has 0.5 s for each answer, and after 1.5 s in all nothing more is
// asked: it takes 2 s at most.
void readWithheldTitles(std::vector<ListedWindow>& windows);

}  // namespace tessarine
