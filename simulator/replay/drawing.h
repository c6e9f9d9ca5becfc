// Draws what is seen of a desktop as SVG, in screen points. Classes say what a shape is;
// drawing.css says what it looks like, light and dark. Nothing is told by colour alone: what is
// selected has a mark and bold text, what has the keyboard a doubled frame, what is disabled a
// broken one.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "simulator/desktop/record.h"

namespace simulator {

// For text and attributes of HTML and SVG, quotes included.
std::string escapeMarkup(const std::string& text);

// A part of a panel.
std::string drawPart(const PanelShown& shown);
// One that covers a part of a panel is of glass: the panel is what people look for.
std::string drawWindow(const ShownWindow& window, const std::string& owner, bool inFront,
                       bool covering);
std::string drawScreen(const Rect& screen);
// The bar at the top of the main screen, with the name of the application in front.
std::string drawMenuBar(const Rect& screen, const std::string& application);

// What was posted: the pointer with its button pressed or not, a frame around an element, and in a
// line at the bottom of the screen what went where.
std::string drawPointer(const Point& at, bool pressed);
std::string drawMark(const Rect& frame);
std::string drawPosted(const Rect& screen, const std::string& words);

// The style of all that, as CSS.
std::string_view drawingStyle();

}  // namespace simulator
