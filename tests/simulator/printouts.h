// What the two commands print: on a simulated desktop, and as it may be printed in the field.
#pragma once

#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "simulator/import/import.h"
#include "simulator/scenario/scenario.h"
#include "support/world.h"

namespace tessarine::test {

using Json = nlohmann::ordered_json;
using simulator::ImportedScenario;
using simulator::importScenario;
using simulator::Printout;
using Lines = std::vector<std::string>;

// What the two commands print on a desktop.
struct Printed {
  Printout dialogs;
  Printout windows;

  ImportedScenario imported() const { return importScenario(dialogs, windows, true); }
  Json allDialogs() const { return Json::parse(dialogs.text)["dialogs"]; }
  Json browsersWindows() const { return Json::parse(windows.text)["apps"][0]; }
};

inline Printed printed(const std::string& scenario, const World::Patches& patches = {},
                       const std::string& pid = "812") {
  World world(scenario, patches);
  return {{"panel.json", world.run({"inspect-open-dialog", "--pid", pid}).output},
          {"windows.json", world.run({"list-windows", "--pid", pid}).output}};
}

inline Printed printed(const ImportedScenario& imported, const std::string& pid = "812") {
  return printed("no-panel", {{"", imported.document}}, pid);
}

// The panels of a scenario that comes with the desktop show names alone, as a date may be a path,
// and no folder that others change meanwhile.
inline World::Patches namesAlone(const std::string& scenario) {
  World::Patches patches;
  const auto panels = simulator::bundledScenario(scenario).panels;
  for (std::size_t i = 0; i < panels.size(); ++i) {
    const std::string place = "/panels/" + std::to_string(i);
    patches.emplace_back(place + "/listColumns", 1);
    if (panels[i].folder == "/tmp") patches.emplace_back(place + "/folder", "/usr");
  }
  return patches;
}

inline Json frame(double x, double y, double width, double height) {
  return {{"x", x}, {"y", y}, {"width", width}, {"height", height}};
}

struct Words {
  std::string title;
  std::string description;
  std::string value;
};

inline Json node(const std::string& role, const Json& place, const Words& words = {},
                 const Lines& actions = {}) {
  return {{"role", role},         {"title", words.title}, {"description", words.description},
          {"value", words.value}, {"frame", place},       {"actions", actions}};
}

// A sheet with a sidebar, a list that is longer than the panel, and a prompt of its own.
inline Json fieldDialogs() {
  const Json area = frame(400, 130, 800, 500);
  const Json bar = frame(400, 190, 150, 380);
  const Json list = frame(551, 190, 649, 380);
  const Json nodes{node("AXSheet", area, {"", "打开", ""}),
                   node("AXStaticText", frame(420, 140, 760, 20), {"", "", "给 jane 上传"}),
                   node("AXSplitGroup", area),
                   node("AXScrollArea", bar),
                   node("AXScrollArea", list),
                   node("AXPopUpButton", frame(700, 160, 200, 24), {"位置：", "", "jane-secret"}),
                   node("AXCheckBox", frame(420, 600, 90, 24), {"jane", "", ""}),
                   node("AXButton", frame(980, 590, 90, 24), {"取消", "", ""}, {"AXPress"}),
                   node("AXButton", frame(1090, 590, 90, 24), {"上传 jane", "", ""},
                        {"AXPress", "Name:Show jane"}),
                   node("AXOutline", bar, {"", "边栏", ""}),
                   node("AXOutline", frame(551, 190, 649, 4800), {"", "列表视图", ""}),
                   node("AXStaticText", frame(410, 194, 120, 16), {"", "", "位置"}),
                   node("AXImage", frame(404, 222, 16, 16)),
                   node("AXStaticText", frame(424, 222, 120, 16), {"", "", "jane"}),
                   node("AXImage", frame(404, 246, 16, 16)),
                   node("AXStaticText", frame(424, 246, 120, 16), {"", "", "/Users/jane"}),
                   node("AXTextField", frame(575, 218, 600, 16), {"", "", "jane-secret"})};
  return {
      {"ok", true},
      {"command", "inspect-open-dialog"},
      {"primaryPid", 300},
      {"dialogs",
       {{{"pid", 300},
         {"label", "primary-browser"},
         {"root", {{"role", "AXSheet"}, {"title", ""}, {"description", "打开"}, {"frame", area}}},
         {"chooserControlsAvailable", false},
         {"nodes", nodes}}}}};
}

inline Json window(const std::string& role, const std::string& title, const Json& place) {
  return {{"role", role},
          {"subrole", "AXStandardWindow"},
          {"title", title},
          {"description", ""},
          {"frame", place}};
}

// The sheet hangs from the second of three windows.
inline Json fieldWindows() {
  const Json windows{window("AXWindow", "给 jane 上传", frame(1700, 0, 900, 900)),
                     window("AXWindow", "Bank of jane", frame(300, 60, 1000, 900)),
                     window("AXWindow", "", frame(-200, -50, 400, 300)),
                     window("AXSheet", "", frame(400, 130, 800, 500))};
  return {{"ok", true},
          {"command", "list-windows"},
          {"primaryPid", 300},
          {"apps",
           {{{"pid", 300}, {"label", "primary-browser"}, {"windows", windows}},
            {{"pid", 250}, {"label", "open-save-panel-service"}, {"windows", Json::array()}}}}};
}

inline ImportedScenario importField(const Json& dialogs, const Json& windows, bool keepNames) {
  return importScenario({"panel.json", dialogs.dump()}, Printout{"windows.json", windows.dump()},
                        keepNames);
}

using Patches = std::vector<std::pair<std::string, Json>>;

inline Json patchedWith(Json document, const Patches& patches) {
  for (const auto& [pointer, value] : patches) document[Json::json_pointer(pointer)] = value;
  return document;
}

}  // namespace tessarine::test
