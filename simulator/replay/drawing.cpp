#include "simulator/replay/drawing.h"

#include <algorithm>
#include <cmath>
#include <sstream>

#include "simulator/replay/page_files.h"

namespace simulator {
namespace {

constexpr double text_margin = 4;
constexpr double title_height = 28;
constexpr double menu_bar_height = 24;
constexpr double narrow_button = 40;  // too narrow for its description
constexpr double window_button = 16;  // at most: those of a title bar

// Of the system's font at 12 points, about; letters of East Asia are twice as wide.
constexpr double letter_width = 7;
constexpr double wide_letter_width = 12;
constexpr double posted_letter_width = 10;  // at 16 points, bold

double widthOf(unsigned char firstByte) {
  return firstByte < 0xE3 ? letter_width : wide_letter_width;
}

// The text as far as it fits, with an ellipsis where it does not.
std::string fitted(const std::string& text, double width) {
  double used = 0;
  std::size_t lastThatLeavesRoom = 0;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const auto byte = static_cast<unsigned char>(text[i]);
    if ((byte & 0xC0) == 0x80) continue;
    if (used + letter_width <= width) lastThatLeavesRoom = i;
    used += widthOf(byte);
  }
  return used <= width ? text : text.substr(0, lastThatLeavesRoom) + "…";
}

// To a tenth of a point.
std::string points(double value) {
  std::ostringstream text;
  text << std::round(value * 10) / 10;
  return text.str();
}

std::string boxOf(const Rect& frame, const std::string& classes, double radius = 0) {
  std::string rect = "<rect class=\"" + classes + "\" x=\"" + points(frame.x) + "\" y=\"" +
                     points(frame.y) + "\" width=\"" + points(frame.width) + "\" height=\"" +
                     points(frame.height) + "\"";
  if (radius > 0) rect += " rx=\"" + points(radius) + "\"";
  return rect + "/>";
}

std::string textAt(const Point& at, const std::string& classes, const std::string& text,
                   const char* anchor = "start") {
  return "<text class=\"" + classes + "\" x=\"" + points(at.x) + "\" y=\"" + points(at.y) +
         "\" text-anchor=\"" + anchor + "\">" + escapeMarkup(text) + "</text>";
}

// In the middle of the frame's height, from its left edge.
std::string textIn(const Rect& frame, const std::string& classes, const std::string& text) {
  const double width = frame.width - 2 * text_margin;
  return textAt({frame.x + text_margin, frame.y + frame.height / 2 + 4}, classes,
                fitted(text, width));
}

std::string centredIn(const Rect& frame, const std::string& classes, const std::string& text) {
  return textAt({frame.x + frame.width / 2, frame.y + frame.height / 2 + 4}, classes,
                fitted(text, frame.width - 4), "middle");
}

std::string pathOf(const char* classes, const std::string& path) {
  return std::string("<path class=\"") + classes + "\" d=\"" + path + "\"/>";
}

Rect inset(const Rect& frame, double by) {
  return {frame.x + by, frame.y + by, std::max(frame.width - 2 * by, 0.0),
          std::max(frame.height - 2 * by, 0.0)};
}

bool holdsCentre(const Rect& frame, const Rect& other) {
  const double x = other.x + other.width / 2 - frame.x;
  const double y = other.y + other.height / 2 - frame.y;
  return x >= 0 && y >= 0 && x < frame.width && y < frame.height;
}

class PartDrawing {
 public:
  explicit PartDrawing(const PanelShown& shown) : shown_(shown) {}

  std::string draw() {
    for (at_ = 0; at_ < shown_.elements.size(); ++at_) drawElement(shown_.elements[at_]);
    if (shown_.leftOut > 0) drawLeftOut();
    return svg_;
  }

 private:
  void drawElement(const ShownElement& element) {
    const std::string& role = element.role;
    if (isCutOff(element.frame)) return;
    if (at_ == 0) {
      svg_ += boxOf(element.frame, shown_.part == "menu" ? "menu" : "panel", 8);
    } else if (role == "AXImage") {
      drawIcon(element);
    } else if (role == "AXStaticText" || element.folder) {
      drawText(element);
    } else if (role == "AXTextField" || role == "AXComboBox" || role == "AXTextArea") {
      drawField(element);
    } else if (role.ends_with("Button")) {
      drawButton(element);
    } else if (role == "AXRow" || role == "AXMenuItem" || role == "AXGroup") {
      drawRow(element);
    } else if (role == "AXOutline" || role == "AXList" || role == "AXBrowser" ||
               role == "AXTable") {
      drawList(element);
    } else if (role == "AXSplitter") {
      svg_ += boxOf(element.frame, "splitter");
    } else {
      drawOther(element);
    }
  }

  // It stands in the last list, more than half below its end.
  bool isCutOff(const Rect& frame) const {
    if (!list_ || frame.x < list_->x || frame.y < list_->y) return false;
    const double bottom = list_->y + list_->height;
    return frame.y < bottom && frame.y + frame.height / 2 > bottom;
  }

  void drawList(const ShownElement& element) {
    list_ = element.frame;
    svg_ += boxOf(element.frame, element.focused ? "list focused" : "list");
    if (element.focused) svg_ += boxOf(inset(element.frame, 3), "focus");
  }

  // A row shows what stands in it; a menu's item its own text.
  void drawRow(const ShownElement& element) {
    if (element.selected) {
      selected_ = element.frame;
      svg_ += boxOf(inset(element.frame, 1), "selected", 4);
      const double y = element.frame.y + element.frame.height / 2;
      svg_ += pathOf("pointing",
                     "M" + points(element.frame.x + 1) + " " + points(y - 5) + "l5 5l-5 5z");
    }
    if (!element.text.empty()) svg_ += textIn(element.frame, textClasses(element), element.text);
  }

  void drawText(const ShownElement& element) {
    svg_ += textIn({element.frame.x - text_margin, element.frame.y,
                    element.frame.width + 2 * text_margin, element.frame.height},
                   textClasses(element), element.text);
  }

  std::string textClasses(const ShownElement& element) const {
    std::string classes = element.disabled ? "text dim" : "text";
    if (selected_ && holdsCentre(*selected_, element.frame)) classes += " on";
    return classes;
  }

  // A folder, or a page with a turned corner for what the name beside it says is a file.
  void drawIcon(const ShownElement& element) {
    const ShownElement* name =
        at_ + 1 < shown_.elements.size() ? &shown_.elements[at_ + 1] : nullptr;
    const bool file = name != nullptr && name->folder && !*name->folder;
    const Rect& frame = element.frame;
    const double size = std::min(frame.width, frame.height);
    const std::string at = "M" + points(frame.x + (frame.width - size) / 2) + " " + points(frame.y);
    const auto scaled = [&](double share) { return points(share * size); };
    if (file) {
      svg_ += pathOf("file", at + "m" + scaled(.2) + " " + scaled(.05) + "h" + scaled(.4) + "l" +
                                 scaled(.2) + " " + scaled(.2) + "v" + scaled(.7) + "h" +
                                 scaled(-.6) + "z");
    } else {
      svg_ += pathOf("folder", at + "m" + scaled(.05) + " " + scaled(.2) + "h" + scaled(.35) + "l" +
                                   scaled(.1) + " " + scaled(.12) + "h" + scaled(.45) + "v" +
                                   scaled(.5) + "h" + scaled(-.9) + "z");
    }
  }

  void drawField(const ShownElement& element) {
    svg_ += boxOf(element.frame, element.focused ? "field focused" : "field", 5);
    if (element.focused) svg_ += boxOf(inset(element.frame, 2), "focus", 3);
    const Rect inner = inset(element.frame, 2);
    if (element.text.empty()) {
      svg_ += textIn(inner, "text placeholder", element.placeholder);
    } else {
      svg_ += textIn(inner, "text", element.text);
    }
  }

  void drawButton(const ShownElement& element) {
    const Rect& frame = element.frame;
    const std::string state = element.disabled ? " disabled" : "";
    if (frame.width <= window_button && frame.height <= window_button) {
      svg_ += boxOf(frame, "dot" + state, frame.width / 2);
      return;
    }
    const bool confirms = element.identifier == "OKButton";
    svg_ += boxOf(frame, (confirms ? "button default" : "button") + state, 6);
    const std::string text = element.disabled ? "text dim" : confirms ? "text strong" : "text";
    if (element.role == "AXPopUpButton") {
      svg_ += textIn({frame.x, frame.y, frame.width - 16, frame.height}, text, element.text);
      svg_ += pathOf("arrow", "M" + points(frame.x + frame.width - 15) + " " +
                                  points(frame.y + frame.height / 2 - 2) + "l4 4l4-4");
    } else if (frame.width < narrow_button) {
      svg_ +=
          centredIn({frame.x - 9, frame.y, frame.width + 18, frame.height}, text, sign(element));
    } else {
      svg_ += centredIn(frame, text, element.text);
    }
  }

  // Of the narrow buttons that are no menus the first leads back and the second forward.
  const char* sign(const ShownElement& element) {
    if (element.role == "AXMenuButton") return "≡";
    return narrow_++ == 0 ? "‹" : "›";
  }

  void drawOther(const ShownElement& element) {
    svg_ += boxOf(element.frame, "other");
    if (!element.text.empty()) svg_ += textIn(element.frame, textClasses(element), element.text);
  }

  void drawLeftOut() {
    const Rect around = list_.value_or(shown_.elements.front().frame);
    const std::string words = std::to_string(shown_.leftOut) + " more, out of sight";
    const Rect note{around.x + around.width - 170, around.y + around.height - 22, 160, 18};
    svg_ += boxOf(note, "note", 9) + centredIn(note, "text small", words);
  }

  const PanelShown& shown_;
  std::string svg_;
  std::size_t at_ = 0;
  int narrow_ = 0;
  std::optional<Rect> list_;      // the last one
  std::optional<Rect> selected_;  // the last row that is
};

}  // namespace

std::string escapeMarkup(const std::string& text) {
  std::string safe;
  for (const char letter : text) {
    switch (letter) {
      case '&':
        safe += "&amp;";
        break;
      case '<':
        safe += "&lt;";
        break;
      case '>':
        safe += "&gt;";
        break;
      case '"':
        safe += "&quot;";
        break;
      case '\'':
        safe += "&#39;";
        break;
      default:
        safe += static_cast<unsigned char>(letter) < 0x20 ? ' ' : letter;
    }
  }
  return safe;
}

std::string drawPart(const PanelShown& shown) {
  return PartDrawing(shown).draw();
}

std::string drawWindow(const ShownWindow& window, const std::string& owner, bool inFront,
                       bool covering) {
  const Rect& frame = window.frame;
  const Rect bar{frame.x, frame.y, frame.width, std::min(title_height, frame.height)};
  const std::string glass = covering ? " glass" : "";
  std::string svg = boxOf(frame, (inFront ? "window front" : "window") + glass, 8) +
                    boxOf(bar, "title" + glass, 8);
  for (int i = 0; i < 3; ++i) svg += boxOf({frame.x + 8 + 20 * i, frame.y + 7, 14, 14}, "dot", 7);
  const std::string title = window.title.empty() ? owner : owner + " — " + window.title;
  svg += centredIn({bar.x + 70, bar.y, bar.width - 140, bar.height},
                   inFront ? "text strong" : "text dim", title);
  return svg;
}

std::string drawScreen(const Rect& screen) {
  return boxOf(screen, "screen");
}

std::string drawMenuBar(const Rect& screen, const std::string& application) {
  const Rect bar{screen.x, screen.y, screen.width, menu_bar_height};
  return boxOf(bar, "menubar") +
         textAt({bar.x + 16, bar.y + 16}, "text strong", fitted(application, bar.width / 2));
}

std::string drawPointer(const Point& at, bool pressed) {
  const std::string place = points(at.x) + " " + points(at.y);
  std::string svg = pathOf("pointer", "M" + place + "v19l4.5-4l3 7l3-1.300l-3-7h6z");
  if (!pressed) return svg;
  return "<circle class=\"press\" cx=\"" + points(at.x) + "\" cy=\"" + points(at.y) +
         "\" r=\"13\"/>" + svg;
}

std::string drawMark(const Rect& frame) {
  return boxOf(inset(frame, -4), "mark", 6);
}

std::string drawPosted(const Rect& screen, const std::string& words) {
  const double width = std::min(680.0, screen.width - 40);
  const Rect chip{screen.x + (screen.width - width) / 2, screen.y + screen.height - 60, width, 36};
  // The letters are larger and bold here.
  const std::string text = fitted(words, (width - 20) * letter_width / posted_letter_width);
  return boxOf(chip, "chip", 10) +
         textAt({chip.x + chip.width / 2, chip.y + 23}, "text chiptext", text, "middle");
}

std::string_view drawingStyle() {
  return drawing_css;
}

}  // namespace simulator
