// picture FOLDER: draws the simulated panel of two scenarios as SVG, with the points at which the
// tool clicks blind, into "folder-panel.svg" and "file-panel.svg" in the folder, which it makes.
#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string_view>
#include <vector>

#include "commands/choose_path_by_staging.h"
#include "panels/panel_clicks.h"
#include "support/temporary_folder.h"
#include "support/world.h"

namespace tessarine::test {
namespace {

namespace fs = std::filesystem;

constexpr double margin = 24;
constexpr double legendLineHeight = 16;
constexpr double letterWidth = 5.5;

// Points at which the tool clicks for one purpose.
struct Clicks {
  std::string meaning;
  std::string colour;
  std::vector<Point> points;
};

std::string escaped(const std::string& text) {
  std::string safe;
  for (const char letter : text) {
    if (letter == '&') safe += "&amp;";
    if (letter == '<') safe += "&lt;";
    if (letter == '"') safe += "&quot;";
    if (letter != '&' && letter != '<' && letter != '"') safe += letter;
  }
  return safe;
}

std::string textOf(const simulator::Element& element, const char* attribute) {
  const simulator::Value* value = element.get(attribute);
  const auto* text = value == nullptr ? nullptr : std::get_if<std::string>(value);
  return text == nullptr ? std::string() : *text;
}

// What a person reads on the element, or else its description.
std::string nameOf(const simulator::Element& element) {
  for (const char* attribute : {"AXValue", "AXTitle", "AXDescription"}) {
    if (auto text = textOf(element, attribute); !text.empty()) return text;
  }
  return {};
}

class Drawing {
 public:
  explicit Drawing(const simulator::Rect& panel) : panel_(panel) {}

  // The frame of the element and of all below it, each with its role and name.
  void addTree(const simulator::Element& element) {
    if (element.frame()) addElement(element, *element.frame());
    for (const auto& child : element.children()) addTree(*child);
  }

  // Points that coincide share a mark.
  void addMarks(const std::vector<Clicks>& clicks) {
    struct Mark {
      Point at;
      std::string label;
      std::string colour;
    };
    std::vector<Mark> marks;
    int number = 0;
    double y = panel_.height + margin;
    for (const Clicks& kind : clicks) {
      std::string numbers;
      for (const Point& at : kind.points) {
        const std::string label = std::to_string(++number);
        numbers += (numbers.empty() ? "" : ",") + label;
        const auto same = std::find_if(marks.begin(), marks.end(),
                                       [&](const Mark& mark) { return mark.at == at; });
        if (same != marks.end()) {
          same->label += "," + label;
        } else {
          marks.push_back({at, label, kind.colour});
        }
      }
      shapes_ << "<text x=\"0\" y=\"" << y << "\" font-size=\"12\" fill=\"" << kind.colour << "\">"
              << numbers << ": " << escaped(kind.meaning) << "</text>\n";
      y += legendLineHeight;
    }
    for (const Mark& mark : marks) {
      addMark(mark.label, mark.colour, {mark.at.x - panel_.x, mark.at.y - panel_.y});
    }
    height_ = y;
  }

  std::string text() const {
    std::ostringstream svg;
    svg << "<svg xmlns=\"http://www.w3.org/2000/svg\" viewBox=\"" << -margin << ' ' << -margin
        << ' ' << panel_.width + 2 * margin << ' ' << height_ + margin
        << "\" font-family=\"monospace\" font-size=\"9\">\n<rect x=\"" << -margin << "\" y=\""
        << -margin << "\" width=\"100%\" height=\"100%\" fill=\"white\"/>\n"
        << shapes_.str() << "</svg>\n";
    return svg.str();
  }

 private:
  void addElement(const simulator::Element& element, const simulator::Rect& frame) {
    const double x = frame.x - panel_.x;
    const double y = frame.y - panel_.y;
    const auto actions = element.actionNames();
    const bool pressable = std::find(actions.begin(), actions.end(),
                                     simulator::Value(std::string("AXPress"))) != actions.end();
    const std::string name = nameOf(element);
    const std::string label = element.role() + (name.empty() ? "" : " " + name);
    shapes_ << "<rect x=\"" << x << "\" y=\"" << y << "\" width=\"" << frame.width << "\" height=\""
            << frame.height << "\" stroke=\"#999\" fill=\"" << (pressable ? "#e8eef8" : "none")
            << "\"><title>" << escaped(label) << "</title></rect>\n";
    const auto fits = [&](const std::string& text) {
      return static_cast<double>(text.size()) * letterWidth + 4 <= frame.width;
    };
    const std::string& shown = fits(label) ? label : name;
    if (shown.empty() || !fits(shown) || containsLabels(element)) return;
    const bool inner = element.children().empty();
    const double baseline = inner ? y + frame.height / 2 + 3 : y + frame.height - 4;
    shapes_ << "<text x=\"" << x + 3 << "\" y=\"" << baseline << "\" fill=\""
            << (inner ? "black" : "#777") << "\">" << escaped(shown) << "</text>\n";
  }

  // Whether a label would stand where that of an element inside stands.
  static bool containsLabels(const simulator::Element& element) {
    for (const char* role : {"AXScrollArea", "AXRow", "AXCell", "AXSplitGroup"}) {
      if (element.role() == role) return true;
    }
    return false;
  }

  void addMark(const std::string& label, const std::string& colour, const Point& at) {
    shapes_ << "<ellipse cx=\"" << at.x << "\" cy=\"" << at.y << "\" rx=\"" << 4 + 3 * label.size()
            << "\" ry=\"7\" fill=\"white\" stroke=\"" << colour << "\"/>\n<text x=\"" << at.x
            << "\" y=\"" << at.y + 3 << "\" text-anchor=\"middle\" font-weight=\"bold\" fill=\""
            << colour << "\">" << label << "</text>\n";
  }

  simulator::Rect panel_;
  std::ostringstream shapes_;
  double height_ = 0;
};

// Where the presses of the mouse went that the tool posted, in order.
std::vector<Point> pressedPoints(const simulator::Record& record) {
  std::vector<Point> points;
  for (const auto& line : record.lines()) {
    const auto* posted = std::get_if<simulator::PostedMouse>(&line.entry);
    if (posted == nullptr || posted->origin != simulator::Origin::tool) continue;
    if (posted->event.type == 1) points.push_back({posted->event.at.x, posted->event.at.y});
  }
  return points;
}

// Where a whole run of choose-path clicks to press Open in a panel that accessibility does not
// show: after the row, at two points, none of which hits the button here.
std::vector<Point> openButtonPoints() {
  constexpr std::string_view extension = ".tessarine-picture";
  const TemporaryFolder folder;
  World world("unseen-tmp-service-chinese");
  world.run({"choose-path", "--pid", std::to_string(browserPid), "--path",
             folder.makeFile("upload" + std::string(extension))});
  for (const auto& entry : fs::directory_iterator("/tmp")) {
    if (entry.path().extension() == extension) fs::remove(entry.path());
  }
  const auto points = pressedPoints(world.record());
  return {points.at(1), points.at(2)};
}

// The folder that the panel shows, and the places of its sidebar, with the same names everywhere.
// Rows have one cell: dates would differ.
World::Patches fixedTree(const TemporaryFolder& folder) {
  for (const char* name : {"extension/icons", "extension/scripts", "Documents", "Downloads"}) {
    folder.makeFolder(name);
  }
  folder.makeFile("extension/manifest.json", "{}");
  folder.makeFile("extension/read & remember.txt");
  const auto place = [&](const std::string& name) {
    return nlohmann::ordered_json{{"label", name}, {"path", folder.path() + "/" + name}};
  };
  return {{"/panels/0/folder", folder.path() + "/extension"},
          {"/panels/0/listColumns", 1},
          {"/places", {place("Documents"), place("Downloads")}}};
}

std::string drawPanel(const std::string& scenario, const std::vector<Point>& openButton) {
  const TemporaryFolder folder;
  World world(scenario, fixedTree(folder));
  const simulator::Rect frame = world.panel().options().frame;
  Drawing drawing(frame);
  drawing.addTree(*world.desktop().findProcess(servicePid)->root.children().front());

  PanelWindowRef window;
  window.frame = {frame.x, frame.y, frame.width, frame.height};
  const std::vector<Clicks> clicks{
      {"into the panel, to give it the keyboard: choose-folder, close",
       "#1b5e20",
       {panelContentPoint(window)}},
      {"the frame's centre, for the same: choose-path by keyboard",
       "#1b5e20",
       {window.frame.center()}},
      {"the Choose button: choose-folder by events, in this order", "#b71c1c",
       panelChoosePoints(window)},
      {"the first row: choose-path by staging", "#0d47a1", {firstRowPoint(window.frame)}},
      {"the Open button: choose-path by staging, in this order", "#6a1b9a", openButton}};
  drawing.addMarks(clicks);
  return drawing.text();
}

void writePictures(const fs::path& folder) {
  fs::create_directories(folder);
  const auto openButton = openButtonPoints();
  std::ofstream(folder / "folder-panel.svg") << drawPanel("english-service-window", openButton);
  std::ofstream(folder / "file-panel.svg") << drawPanel("file-panel-english", openButton);
}

}  // namespace
}  // namespace tessarine::test

int main(int argc, char** argv) {
  if (argc != 2) {
    std::fputs("usage: picture FOLDER\n", stderr);
    return 2;
  }
  tessarine::test::writePictures(argv[1]);
  return 0;
}
