#include "swarm/world.h"

#include <filesystem>

#include "swarm/setting.h"

namespace tessarine::test {
namespace {

namespace fs = std::filesystem;
using Json = nlohmann::ordered_json;

// --- What is asked for. ---

std::vector<std::string> linksTo(const FolderTree& folders, bool folder) {
  std::vector<std::string> links;
  for (const std::string& link : folders.paths(EntryKind::link)) {
    std::error_code dangling;
    const fs::file_status status = fs::status(link, dangling);
    if (fs::exists(status) && fs::is_directory(status) == folder) links.push_back(link);
  }
  return links;
}

// One of the first list that is not empty.
std::string oneOf(Draw& draw, const std::vector<std::vector<std::string>>& lists) {
  for (const auto& list : lists) {
    if (!list.empty()) return draw.one(list);
  }
  return "/";
}

std::string drawExisting(Draw draw, const FolderTree& folders, bool folder) {
  const auto plain = folders.paths(folder ? EntryKind::folder : EntryKind::file);
  if (draw.of("link").chance(0.06)) return oneOf(draw, {linksTo(folders, folder), plain});
  if (draw.of("package").chance(0.04))
    return oneOf(draw, {folders.paths(EntryKind::package), plain});
  if (folder && draw.of("root").chance(0.02)) return "/";
  return oneOf(draw, {plain, folders.paths(EntryKind::folder)});
}

std::string drawTarget(Draw draw, const FolderTree& folders, const std::string& command) {
  const bool folder =
      command == "choose-folder" ? !draw.of("file").chance(0.03) : draw.of("folder").chance(0.4);
  const std::string target = drawExisting(draw.of("existing"), folders, folder);
  if (draw.of("missing").chance(0.03)) return target + "/" + folders.anyName(draw) + " missing";
  return target;
}

// The same path, written in another way.
std::string drawSpelling(Draw draw, const std::string& path) {
  if (draw.chance(0.9) || path == "/") return path;
  switch (draw.integer(1, 4)) {
    case 1:
      return path + "/";
    case 2:
      return fs::path(path).parent_path().string() + "/./" + fs::path(path).filename().string();
    case 3:
      return path + "/../" + fs::path(path).filename().string();
    default:
      return "/" + path;
  }
}

// --- The desktop besides its panels. ---

Json drawPrices(Draw draw) {
  Json prices{{"request", draw.integer(1, 50) / 10000.0}};
  if (draw.chance(0.2)) prices["press"] = draw.number(0, 2);
  if (draw.chance(0.2)) prices["windowList"] = draw.number(0, 0.3);
  if (draw.chance(0.2)) prices["processList"] = draw.number(0.01, 0.4);
  if (draw.chance(0.1)) prices["comingForward"] = draw.number(0, 0.5);
  return prices;
}

Json drawPlaces(Draw draw, const FolderTree& folders) {
  Json places = Json::array();
  const int count = draw.integer(0, 4);
  for (int i = 0; i < count; ++i) {
    const std::string path = draw.one(folders.paths(EntryKind::folder));
    // A place may be called like another folder.
    const std::string label =
        draw.chance(0.8) ? fs::path(path).filename().string() : folders.anyName(draw);
    places.push_back({{"label", label}, {"path", path}, {"urlKnown", draw.chance(0.4)}});
  }
  return places;
}

Json drawVolumes(Draw draw, const FolderTree& folders) {
  const std::string path = draw.one(folders.paths(EntryKind::folder));
  return Json::array({{{"name", folders.anyName(draw)}, {"path", path}}});
}

void drawSurroundings(Draw draw, const FolderTree& folders, Json& scenario) {
  scenario["language"] = draw.weighted<std::string>({{6, "en"}, {3, "zh-Hans"}, {1, "de"}});
  scenario["home"] = draw.chance(0.5) ? folders.root() : draw.one(folders.paths(EntryKind::folder));
  scenario["listsOnly"] = Json::array({folders.root()});
  scenario["showsSystemFolders"] = draw.of("system folders").chance(0.3);
  if (draw.of("places?").chance(0.4)) scenario["places"] = drawPlaces(draw.of("places"), folders);
  if (draw.of("volume?").chance(0.05))
    scenario["volumes"] = drawVolumes(draw.of("volume"), folders);
  if (draw.of("go-to?").chance(0.3)) {
    scenario["lastGoToPath"] = draw.of("last go-to").one(folders.entries()).path;
  }
  if (draw.of("layout").chance(0.1)) scenario["keyboardLayout"] = "azerty";
  if (draw.of("prices?").chance(0.6)) scenario["prices"] = drawPrices(draw.of("prices"));
  if (draw.of("time-out").chance(0.05)) scenario["requestTimeoutSeconds"] = draw.number(0.5, 8);
}

void drawFront(Draw draw, const std::vector<Browser>& browsers, Json& scenario) {
  constexpr int terminal = 300;
  if (draw.chance(0.75)) return;
  const int last = browsers.back().pid;
  scenario["frontmost"] =
      draw.weighted<Json>({{6, browsers.front().pid}, {2, last}, {1, nullptr}, {1, terminal}});
}

void addUnlessEmpty(Json& scenario, const char* key, const Json& value) {
  if (!value.empty()) scenario[key] = value;
}

bool isFolder(const std::string& path) {
  std::error_code missing;
  return fs::is_directory(path, missing);
}

Setting drawSetting(Draw draw, const FolderTree& folders) {
  const std::string command = draw.of("command").chance(0.55) ? "choose-folder" : "choose-path";
  const std::string target = drawTarget(draw.of("target"), folders, command);
  return {
      .folders = folders,
      .browsers = drawBrowsers(draw.of("browsers")),
      .command = command,
      .target = target,
      .targetIsFolder = isFolder(target),
      .sound = draw.of("sound").chance(0.5),
      .identifiers = !draw.of("identifiers").chance(0.12),
      .oldSheets = draw.of("old sheets").chance(0.15),
      .view = draw.of("view").weighted<std::string>({{3, "list"}, {2, "columns"}, {2, "icons"}})};
}

}  // namespace

DrawnWorld::DrawnWorld(std::uint64_t number, bool verify)
    : seed(number), folders(number, Draw(number).of("folders")) {
  const Draw draw(seed);
  const Setting setting = drawSetting(draw, folders);
  browser = setting.browsers.front().pid;
  target = setting.target;
  timeoutSeconds = draw.of("timeout").integer(4, 40) / 2.0;
  drawSurroundings(draw.of("surroundings"), folders, scenario);
  scenario["processes"] = drawProcesses(draw.of("processes"), setting.browsers);
  drawFront(draw.of("front"), setting.browsers, scenario);
  const Json panels = drawPanels(draw.of("panels"), setting);
  addUnlessEmpty(scenario, "panels", panels);
  addUnlessEmpty(scenario, "person", drawPerson(draw.of("person"), setting, panels));
  addUnlessEmpty(scenario, "faults", drawDesktopFaults(draw.of("faults"), setting));
  const std::string path = drawSpelling(draw.of("spelling"), target);
  arguments = {setting.command,
               "--pid",
               std::to_string(browser),
               "--path",
               path,
               "--timeout",
               Json(timeoutSeconds).dump()};
  if (verify) arguments.push_back("--verify");
}

}  // namespace tessarine::test
