// The line that the helper prints for a window.
#pragma once

#include <string>

#include "capture-helper/listed_window.h"

namespace tessarine {

// NUMBER, "pid=", "app=", "title=" and "frame=X,Y,WIDTH,HEIGHT" with tabs in between, ended by a
// line feed. Names and titles are `onOneLine`, so that they break no column and no line.
std::string windowLine(const ListedWindow& window);

}  // namespace tessarine
