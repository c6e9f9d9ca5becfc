// The panels of the desktop: one function for each thing that is drawn.
#include <algorithm>
#include <filesystem>

#include "swarm/setting.h"

namespace tessarine::test {
namespace {

using Json = nlohmann::ordered_json;

// What one panel is drawn for.
struct PanelPlan {
  const Setting& setting;
  const Browser& host;
  int position = 0;  // among all panels
};

// What requests answer that fail.
const std::vector<int>& errorCodes() {
  static const std::vector<int> codes{-25200, -25202, -25204, -25205, -25206, -25211, -25212};
  return codes;
}

void drawShape(Draw draw, Json& panel) {
  panel["shape"] = draw.weighted<std::string>({{9, "host-sheet"},
                                               {4, "service-window"},
                                               {4, "host-window"},
                                               {2, "embedded"},
                                               {1, "unseen"}});
  const std::string shape = panel["shape"];
  const bool inHost = shape != "service-window" && shape != "unseen";
  if (inHost && draw.of("both").chance(0.15)) panel["inBothTrees"] = true;
  if (draw.of("owner").chance(0.3)) panel["elementsBelongTo"] = "host";
  if (draw.of("modal").chance(0.2)) panel["modal"] = false;
}

void drawMode(Draw draw, const Setting& setting, Json& panel) {
  const bool matches = draw.chance(0.93);
  const std::string folders = draw.weighted<std::string>({{4, "folders"}, {1, "upload"}});
  panel["mode"] = setting.targetIsFolder == matches ? folders : "files";
}

void drawService(Draw draw, const PanelPlan& plan, Json& panel) {
  // Panels of one browser share a service, as a rule.
  const bool own = plan.position > 0 && draw.of("own").chance(0.2);
  panel["service"] = plan.host.pid + 100 + (own ? 50 + plan.position : 0);
  if (draw.of("ends").chance(0.4)) panel["serviceEnds"] = true;
  if (draw.of("name").chance(0.1)) {
    panel["serviceName"] = draw.one(std::vector<std::string>{
        "Open and Save Panel Service", "打开与存储面板服务", "Open and Save Panel Service (Mail)"});
  }
  if (draw.of("command").chance(0.1)) {
    panel["serviceCommand"] = "Open and Save Panel Service (" + plan.host.name + ")";
  }
}

void drawWords(Draw draw, Json& panel) {
  static const std::vector<std::string> words{"Open",   "Choose",    "Select", "打开",
                                              "选择",   "上传",      "Cancel", "Auswählen",
                                              "Öffnen", "Hochladen", "開く",   "…"};
  if (draw.of("language").chance(0.1))
    panel["language"] = draw.one(std::vector<std::string>{"en", "zh-Hans", "de"});
  if (draw.of("title").chance(0.15)) panel["title"] = draw.one(words);
  if (draw.of("prompt").chance(0.15)) panel["prompt"] = draw.of("which prompt").one(words);
  if (draw.of("message").chance(0.1)) panel["message"] = draw.of("which message").one(words);
  if (draw.of("description").chance(0.05)) panel["description"] = draw.of("which").one(words);
  if (draw.of("search").chance(0.1)) panel["searchConfirms"] = true;
}

void drawInput(Draw draw, Json& panel) {
  panel["keysReach"] = draw.weighted<std::string>({{6, "service"},
                                                   {3, "host"},
                                                   {2, "both"},
                                                   {3, "nobody"},
                                                   {1, "service-while-host-frontmost"}});
  panel["clicksReach"] = draw.weighted<std::string>(
      {{4, "none"}, {1, "service"}, {1, "host"}, {1, "both"}, {1, "window-corner"}});
}

// --- What it shows first. ---

std::string parentOf(const std::string& path) {
  return std::filesystem::path(path).parent_path().string();
}

// Another folder of the target's name.
std::vector<std::string> namesakes(const Setting& setting) {
  const auto name = std::filesystem::path(setting.target).filename();
  std::vector<std::string> paths;
  for (const std::string& path : setting.folders.paths(EntryKind::folder)) {
    if (path != setting.target && std::filesystem::path(path).filename() == name)
      paths.push_back(path);
  }
  return paths;
}

bool isDirectoryOfTree(const std::string& path) {
  std::error_code missing;
  return std::filesystem::is_directory(path, missing);
}

std::string drawFirstFolder(Draw draw, const Setting& setting) {
  const std::string any = draw.one(setting.folders.paths(EntryKind::folder));
  const auto others = namesakes(setting);
  const std::string parent = parentOf(setting.target);
  const std::string folder =
      draw.weighted<std::string>({{7, parent},
                                  {2, setting.target},
                                  {2, parentOf(parent)},
                                  {6, any},
                                  {2, others.empty() ? any : draw.one(others)},
                                  {1, "/"}});
  return isDirectoryOfTree(folder) ? folder : any;
}

void drawListing(Draw draw, const Setting& setting, Json& panel) {
  panel["folder"] = drawFirstFolder(draw.of("folder"), setting);
  panel["view"] = setting.view;
  if (draw.of("cells").chance(0.3)) panel["listColumns"] = draw.integer(1, 8);
  if (draw.of("sort").chance(0.3)) panel["sort"] = "date";
}

// --- Its windows, and when it opens. ---

void drawWindowList(Draw draw, Json& panel) {
  Json list = Json::object();
  if (draw.of("leaves").chance(0.15)) list["leavesAfterSeconds"] = draw.number(0, 5);
  if (draw.of("number").chance(0.15)) list["changesNumberAfterSeconds"] = draw.number(0, 5);
  if (draw.of("host").chance(0.15)) list["hostListedAfterSeconds"] = draw.number(0, 5);
  if (draw.of("twice").chance(0.15)) list["listedTwice"] = true;
  if (draw.of("stays").chance(0.2)) list["staysAfterClosingSeconds"] = draw.number(0, 6);
  if (draw.of("for good").chance(0.1)) list["staysUncapturable"] = true;
  if (!list.empty()) panel["windowList"] = list;
}

void drawFrame(Draw draw, int position, Json& panel) {
  // A second panel mostly stands elsewhere.
  const bool moved = draw.chance(position == 0 ? 0.2 : 0.8);
  if (!moved) return;
  panel["frame"] = {{"x", draw.integer(-100, 700)},
                    {"y", draw.integer(0, 500)},
                    {"width", draw.integer(700, 1000)},
                    {"height", draw.integer(400, 560)}};
}

void drawWindows(Draw draw, const PanelPlan& plan, Json& panel) {
  if (panel["shape"] != "embedded" && draw.of("listed?").chance(0.5)) {
    panel["listed"] =
        draw.one(std::vector<std::string>{"host-and-service", "host", "service", "none"});
  }
  if (draw.of("host title").chance(0.1)) panel["hostTitle"] = "Open";
  if (draw.of("service title").chance(0.1)) panel["serviceTitle"] = "Open";
  drawFrame(draw.of("frame"), plan.position, panel);
  if (!plan.setting.sound && draw.of("list?").chance(0.2)) drawWindowList(draw.of("list"), panel);
}

void drawTime(Draw draw, int position, Json& panel) {
  if (draw.of("opens").chance(position == 0 ? 0.3 : 0.5)) {
    panel["opensAtSeconds"] = draw.number(0.1, position == 0 ? 4 : 9);
  }
  if (draw.of("slow").chance(0.2)) {
    panel["slow"] = draw.chance(0.7) ? draw.number(0.5, 3) : draw.number(3, 15);
  }
}

// --- The go-to sheet and faults. ---

void drawGoTo(Draw draw, const Setting& setting, Json& panel) {
  Json goTo = Json::object();
  if (setting.oldSheets) goTo["generation"] = "old";
  if (goTo.contains("generation") && draw.of("combo").chance(0.4)) goTo["comboBox"] = true;
  if (draw.of("slashes").chance(0.3)) goTo["normalisesField"] = true;
  if (draw.of("confirm").chance(0.1)) goTo["withoutConfirm"] = true;
  if (draw.of("start").chance(0.04)) goTo["openAtStart"] = true;
  if (!setting.sound && draw.of("never").chance(0.08)) goTo["neverOpens"] = true;
  if (!setting.sound && draw.of("suggestion").chance(0.06)) {
    goTo["suggestion"] = draw.of("which").one(setting.folders.entries()).path;
  }
  if (!goTo.empty()) panel["goTo"] = goTo;
}

void drawPanelFaults(Draw draw, Json& panel) {
  constexpr double seldom = 0.03;
  Json faults = Json::object();
  for (const char* fault :
       {"confirmDoesNothing", "ignoresKeys", "ignoresSelection", "staleListing", "noConfirmButton",
        "noCancelButton", "cancelDoesNothing", "confirmsOnSecondReturn", "keysNeedClick",
        "escapeNeedsClick", "menuItemsWithoutPress", "menuItemsWithoutPick",
        "goToReturnConfirms"}) {
    if (draw.of(fault).chance(seldom)) faults[fault] = true;
  }
  for (const char* fault :
       {"confirmAnswers", "pressRefused", "fieldWriteRefused", "showMenuRefused"}) {
    if (draw.of(fault).chance(seldom)) faults[fault] = draw.of(fault).of("code").one(errorCodes());
  }
  if (draw.of("late").chance(0.1)) faults["closesLateBySeconds"] = draw.number(0.1, 8);
  if (!faults.empty()) panel["faults"] = faults;
}

Json drawPanel(Draw draw, const PanelPlan& plan) {
  Json panel{{"host", plan.host.pid}};
  drawShape(draw.of("shape"), panel);
  drawMode(draw.of("mode"), plan.setting, panel);
  drawService(draw.of("service"), plan, panel);
  drawWords(draw.of("words"), panel);
  if (!plan.setting.identifiers) panel["identifiers"] = false;
  drawInput(draw.of("input"), panel);
  drawListing(draw.of("listing"), plan.setting, panel);
  drawWindows(draw.of("windows"), plan, panel);
  drawTime(draw.of("time"), plan.position, panel);
  drawGoTo(draw.of("go-to"), plan.setting, panel);
  if (!plan.setting.sound) drawPanelFaults(draw.of("faults"), panel);
  return panel;
}

}  // namespace

Json drawPanels(Draw draw, const Setting& setting) {
  Json panels = Json::array();
  const auto add = [&](const Browser& host) {
    const int position = static_cast<int>(panels.size());
    panels.push_back(
        drawPanel(draw.of("panel " + std::to_string(position)), {setting, host, position}));
  };
  if (!draw.of("none").chance(0.02)) add(setting.browsers.front());
  if (draw.of("second").chance(0.06)) add(setting.browsers.front());
  if (setting.browsers.size() > 1 && draw.of("other").chance(0.6)) add(setting.browsers.back());
  if (draw.of("order").chance(0.2)) std::reverse(panels.begin(), panels.end());
  return panels;
}

}  // namespace tessarine::test
