// What stands on the desktop besides the panels, what is wrong with it, and who uses it meanwhile.
#include <algorithm>

#include "swarm/setting.h"

namespace tessarine::test {
namespace {

using Json = nlohmann::ordered_json;

constexpr int finderPid = 250;
constexpr int terminalOfPerson = 300;

const std::vector<std::string>& browserNames() {
  static const std::vector<std::string> names{"Google Chrome",     "Google Chrome",
                                              "Google Chrome Dev", "Microsoft Edge",
                                              "Chromium",          "Firefox"};
  return names;
}

Json rectangle(int x, int y, int width, int height) {
  return {{"x", x}, {"y", y}, {"width", width}, {"height", height}};
}

Json drawPageWindow(Draw& draw, const std::string& title) {
  Json window{{"title", title}, {"webElements", draw.weighted<int>({{3, 40}, {2, 0}, {1, 300}})}};
  window["frame"] = {{"x", draw.integer(0, 300)},
                     {"y", draw.integer(0, 200)},
                     {"width", draw.integer(500, 1300)},
                     {"height", draw.integer(400, 800)}};
  if (draw.chance(0.1)) window["listed"] = false;
  return window;
}

// A page may be called like a panel.
std::string drawPageTitle(Draw& draw) {
  static const std::vector<std::string> titles{"Extensions", "扩展程序", "Open",
                                               "打开",       "",         "Open file - Mail"};
  return draw.weighted<std::string>({{8, titles[0]}, {2, draw.one(titles)}});
}

Json drawBrowserProcess(Draw draw, const Browser& browser) {
  Json windows = Json::array();
  const int count = draw.weighted<int>({{8, 1}, {2, 2}, {1, 3}});
  for (int i = 0; i < count; ++i) windows.push_back(drawPageWindow(draw, drawPageTitle(draw)));
  Json process{{"pid", browser.pid},
               {"name", browser.name},
               {"command", "/Applications/" + browser.name + ".app/Contents/MacOS/" + browser.name},
               {"windows", windows}};
  if (draw.chance(0.1))
    process["command"] = process["command"].get<std::string>() + " --no-first-run";
  if (draw.of("space").chance(0.04)) process["onOtherSpace"] = true;
  return process;
}

Json rendererOf(const Browser& browser) {
  const std::string name = browser.name + " Helper (Renderer)";
  return {{"pid", browser.pid + 7},
          {"name", name},
          {"command", "/Applications/" + browser.name + ".app/Contents/Helpers/" + name +
                          ".app/Contents/MacOS/" + name},
          {"application", false}};
}

// --- What is wrong. ---

Json drawSilent(Draw draw, const Setting& setting) {
  const int service = setting.browsers.front().pid + 100;
  return Json::array({draw.weighted<int>({{2, setting.browsers.front().pid},
                                          {2, service},
                                          {1, finderPid},
                                          {1, setting.browsers.back().pid}})});
}

Json drawBusy(Draw draw, const Setting& setting) {
  Json times = Json::array();
  const int count = draw.integer(1, 3);
  for (int i = 0; i < count; ++i) {
    const Browser& browser = draw.one(setting.browsers);
    const double from = draw.number(0, 6);
    const double lasts = draw.chance(0.8) ? draw.number(0.05, 2) : draw.number(2, 12);
    times.push_back({{"pid", draw.chance(0.5) ? browser.pid : browser.pid + 100},
                     {"fromSeconds", from},
                     {"toSeconds", from + lasts}});
  }
  return times;
}

// --- Who interferes. ---

struct Spot {
  double right;   // from the panel's right edge, or, where it is below 0, from its left one
  double bottom;  // the same, of the lower and the upper edge
};

// Where a person clicks in a panel: its buttons, its entries, its sidebar, anywhere.
Json drawClick(Draw& draw, const Json& panel) {
  const Json frame = panel.value("frame", rectangle(320, 180, 800, 450));
  const double width = frame["width"];
  const double height = frame["height"];
  const double row = 62 + 24.0 * draw.integer(0, 6);
  const auto spot =
      draw.weighted<Spot>({{3, {62, 32}},                                  // the confirm button
                           {2, {160, 32}},                                 // the Cancel button
                           {5, {-200 - 40.0 * draw.integer(0, 6), -row}},  // an entry
                           {2, {-40, -row}},                               // a place
                           {1, {width * draw.number(0, 1), height * draw.number(0, 1)}}});
  const double x = frame["x"].get<double>() + (spot.right >= 0 ? width - spot.right : -spot.right);
  const double y =
      frame["y"].get<double>() + (spot.bottom >= 0 ? height - spot.bottom : -spot.bottom);
  return {{"x", x}, {"y", y}};
}

Json drawAct(Draw& draw, const Setting& setting, const Json& panels) {
  Json act{{"atSeconds", draw.number(0, 7)}};
  const int browser = setting.browsers.front().pid;
  switch (draw.weighted<int>({{5, 0}, {6, 1}, {1, 2}})) {
    case 0:
      act["activates"] = draw.one(
          std::vector<int>{finderPid, terminalOfPerson, browser, setting.browsers.back().pid});
      break;
    case 1:
      act["clicks"] = panels.empty() ? Json{{"x", 500}, {"y", 400}}
                                     : drawClick(draw, panels.at(draw.index(panels.size())));
      break;
    default:
      act["quits"] = draw.chance(0.8) ? browser : setting.browsers.back().pid;
      if (draw.chance(0.3)) act["remembered"] = false;
  }
  return act;
}

}  // namespace

std::vector<Browser> drawBrowsers(Draw draw) {
  std::vector<Browser> browsers{{draw.of("pid").integer(500, 60000), draw.one(browserNames())}};
  if (!draw.of("second").chance(0.15)) return browsers;
  const std::string name = draw.chance(0.5) ? browsers.front().name : draw.one(browserNames());
  browsers.push_back({browsers.front().pid + (draw.chance(0.5) ? 1 : -60), name});
  return browsers;
}

Json drawProcesses(Draw draw, const std::vector<Browser>& browsers) {
  Json processes = Json::array(
      {{{"pid", 1}, {"name", "launchd"}, {"command", "/sbin/launchd"}, {"application", false}},
       {{"pid", finderPid},
        {"name", "Finder"},
        {"command", "/System/Library/CoreServices/Finder.app/Contents/MacOS/Finder"}},
       {{"pid", terminalOfPerson},
        {"name", "Terminal"},
        {"command", "/System/Applications/Utilities/Terminal.app/Contents/MacOS/Terminal"},
        {"windows",
         Json::array({{{"title", "Terminal"}, {"frame", rectangle(700, 400, 640, 420)}}})}}});
  for (std::size_t i = 0; i < browsers.size(); ++i) {
    processes.push_back(drawBrowserProcess(draw.of("browser " + std::to_string(i)), browsers[i]));
    processes.push_back(rendererOf(browsers[i]));
  }
  return processes;
}

Json drawDesktopFaults(Draw draw, const Setting& setting) {
  Json faults = Json::object();
  if (setting.sound) return faults;
  if (draw.of("busy?").chance(0.15)) faults["busy"] = drawBusy(draw.of("busy"), setting);
  if (draw.of("silent?").chance(0.03)) {
    faults["silentProcesses"] = drawSilent(draw.of("silent"), setting);
  }
  if (draw.of("trust").chance(0.01)) faults["untrusted"] = true;
  if (draw.of("activation").chance(0.1)) faults["activationRefused"] = true;
  if (draw.of("automation").chance(0.1)) faults["automationDenied"] = {"System Events", "Finder"};
  if (draw.of("helper").chance(0.08)) {
    faults["missingPrograms"].push_back("background-window-capture");
  }
  if (draw.of("ps").chance(0.03)) faults["missingPrograms"].push_back("ps");
  if (draw.of("empty ps").chance(0.03)) faults["psPrintsNothing"] = true;
  if (draw.of("script").chance(0.05)) faults["scriptHangs"] = true;
  if (draw.of("hanging helper").chance(0.03)) faults["captureHelperHangs"] = true;
  if (draw.of("recording").chance(0.1)) faults["screenRecordingDenied"] = true;
  return faults;
}

Json drawPerson(Draw draw, const Setting& setting, const Json& panels) {
  Json acts = Json::array();
  if (!draw.of("anybody").chance(0.2)) return acts;
  const int count = draw.integer(1, 4);
  for (int i = 0; i < count; ++i) acts.push_back(drawAct(draw, setting, panels));
  return acts;
}

}  // namespace tessarine::test
