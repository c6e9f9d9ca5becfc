// The line that the helper prints for a window.
#pragma once

#include <string>

#include "capture-helper/listed_window.h"

namespace tessarine {

// NUMBER, "pid=", "app=", "title=" and "frame=X,Y,WIDTH,HEIGHT" with tabs in between, ended by a
// line feed. In names and titles a blank stands for each tab, line break and other control
// character, so that they break no column and no line.
std::string windowLine(const ListedWindow& window);

}  // namespace tessarine
