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
#include "simulator/replay/drawing.h"
#include "simulator/replay/shown.h"
#include "support/temporary_folder.h"
#include "support/world.h"

namespace tessarine::test {
namespace {

namespace fs = std::filesystem;

constexpr double margin = 24;
constexpr double legendLineHeight = 16;

// Points at which the tool clicks for one purpose.
struct Clicks {
  std::string meaning;
  std::string colour;
  std::vector<Point> points;
};

// A panel with marks at points of the screen, and what they mean below it.
class Picture {
 public:
  explicit Picture(const simulator::Rect& panel) : panel_(panel) {}

  void add(const std::string& svg) { shapes_ << svg << '\n'; }

  // Points that coincide share a mark.
  void addMarks(const std::vector<Clicks>& clicks) {
    struct Mark {
      Point at;
      std::string label;
      std::string colour;
    };
    std::vector<Mark> marks;
    int number = 0;
    double y = panel_.y + panel_.height + margin;
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
      addMeaning(y, kind, numbers);
      y += legendLineHeight;
    }
    for (const Mark& mark : marks) addMark(mark.label, mark.colour, mark.at);
    bottom_ = y;
  }

  std::string text() const {
    std::ostringstream svg;
    svg << "<svg xmlns=\"http://www.w3.org/2000/svg\" viewBox=\"" << panel_.x - margin << ' '
        << panel_.y - margin << ' ' << panel_.width + 2 * margin << ' '
        << bottom_ - panel_.y + margin << "\">\n<style>\n"
        << simulator::drawingStyle() << "</style>\n<rect class=\"screen\" x=\"" << panel_.x - margin
        << "\" y=\"" << panel_.y - margin << "\" width=\"100%\" height=\"100%\"/>\n"
        << shapes_.str() << "</svg>\n";
    return svg.str();
  }

 private:
  void addMeaning(double y, const Clicks& kind, const std::string& numbers) {
    shapes_ << "<circle cx=\"" << panel_.x + 5 << "\" cy=\"" << y - 4
            << "\" r=\"5\" fill=\"white\" stroke-width=\"2\" stroke=\"" << kind.colour
            << "\"/>\n<text class=\"text\" x=\"" << panel_.x + 16 << "\" y=\"" << y << "\">"
            << numbers << ": " << simulator::escapeMarkup(kind.meaning) << "</text>\n";
  }

  void addMark(const std::string& label, const std::string& colour, const Point& at) {
    shapes_ << "<ellipse cx=\"" << at.x << "\" cy=\"" << at.y << "\" rx=\"" << 4 + 3 * label.size()
            << "\" ry=\"7\" fill=\"white\" stroke=\"" << colour << "\"/>\n<text x=\"" << at.x
            << "\" y=\"" << at.y + 3
            << "\" text-anchor=\"middle\" font-family=\"monospace\" font-size=\"9\" "
               "font-weight=\"bold\" fill=\""
            << colour << "\">" << label << "</text>\n";
  }

  simulator::Rect panel_;
  std::ostringstream shapes_;
  double bottom_ = 0;
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
  Picture picture(frame);
  const auto parts = world.panel().parts();
  picture.add(simulator::drawPart(simulator::shownPart(1, parts.front(), parts)));

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
  picture.addMarks(clicks);
  return picture.text();
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
