#include "support/folder_world.h"

#include <algorithm>
#include <filesystem>
#include <variant>

namespace tessarine::test {
namespace {

World::Patches withFolder(World::Patches patches, const std::string& start,
                          const std::string& around) {
  patches.insert(patches.begin(),
                 {{"/panels/0/folder", start}, {"/home", start}, {"/listsOnly", {around}}});
  return patches;
}

}  // namespace

FolderWorld::FolderWorld(const std::string& scenario, const World::Patches& patches,
                         const std::string& name)
    : start(files.makeFolder("start")),
      target(files.makeFolder("start/" + name)),
      world(scenario, withFolder(patches, start, files.path())) {
  files.makeFolder("start/" + name + "/inner");
  files.makeFolder("start/" + name + "/other");
}

Outcome FolderWorld::chooseStrictly(const std::vector<std::string>& options) {
  std::vector<std::string> arguments{"choose-folder", "--pid", std::to_string(browserPid),
                                     "--path",        target,  "--strict-background"};
  arguments.insert(arguments.end(), options.begin(), options.end());
  return world.run(arguments);
}

std::string strictFailure(const std::string& cause) {
  return "background-only native folder panel key+AX selection failed: " + cause +
         "; mouse CGEvent fallback is disabled in strict background mode";
}

std::string strictResultText(const std::string& path, std::int32_t dialogPid) {
  const std::filesystem::path whole(path);
  const std::vector<std::string> components(++whole.begin(), whole.end());
  const nlohmann::ordered_json result{
      {"ok", true},
      {"command", "choose-folder"},
      {"path", path},
      {"volumeRoot", "/"},
      {"volumeDisplayName", "Macintosh HD"},
      {"components", components},
      {"searchQuery", components.back()},
      {"strategy", "embedded-chooser-ax-goto-folder-strict-background"},
      {"backgroundOnly", true},
      {"dialogPid", dialogPid},
      {"dialogApp", dialogPid == browserPid ? "primary-browser" : "open-save-panel-service"}};
  return result.dump(2) + "\n";
}

std::string disturbance(const simulator::Record& record) {
  // The first application to come forward came there with the scenario.
  const auto changes = std::count_if(
      record.lines().begin(), record.lines().end(), [](const simulator::RecordLine& line) {
        const auto* change = std::get_if<simulator::FrontmostChanged>(&line.entry);
        return change != nullptr && change->from;
      });
  return "mouse " + std::to_string(record.mouseEvents()) + ", session " +
         std::to_string(record.sessionEvents()) + ", foreground " + std::to_string(changes);
}

}  // namespace tessarine::test
