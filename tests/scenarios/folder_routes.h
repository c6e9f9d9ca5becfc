// What tests of choose-folder as a whole share: what is asked for, and what comes of it.
#pragma once

#include <filesystem>
#include <initializer_list>
#include <string>
#include <vector>

#include "support/folder_world.h"
#include "support/transcript.h"

namespace tessarine::test {

// What one run came to, and what it did to the desktop besides posting to single processes.
struct FolderRun {
  Outcome outcome;
  std::string panels;
  std::string disturbed;
  bool operator==(const FolderRun&) const = default;
};

inline void PrintTo(const FolderRun& run, std::ostream* stream) {
  PrintTo(run.outcome, stream);
  *stream << "panels: " << run.panels << "\ndisturbance: " << run.disturbed;
}

inline FolderRun runChooseFolder(World& world, const std::string& path,
                                 const std::vector<std::string>& options = {}) {
  std::vector<std::string> arguments{"choose-folder", "--pid", std::to_string(browserPid), "--path",
                                     path};
  arguments.insert(arguments.end(), options.begin(), options.end());
  Outcome outcome = world.run(arguments);
  return {std::move(outcome), world.panelOutcomes(), disturbance(world.record())};
}

inline FolderRun choose(FolderWorld& world, const std::vector<std::string>& options = {}) {
  return runChooseFolder(world.world, world.target, options);
}

inline std::string strategyResult(const std::string& path, const std::string& strategy,
                                  const nlohmann::ordered_json& more) {
  const std::filesystem::path whole(path);
  auto components = nlohmann::ordered_json::array();
  for (const auto& component : whole.relative_path()) components.push_back(component.string());
  nlohmann::ordered_json result{{"ok", true},
                                {"command", "choose-folder"},
                                {"path", path},
                                {"volumeRoot", "/"},
                                {"volumeDisplayName", "Macintosh HD"},
                                {"components", components},
                                {"searchQuery", path == "/" ? "/" : whole.filename().string()},
                                {"strategy", strategy}};
  result.update(more);
  return result.dump(2) + "\n";
}

// Chosen through the controls of the dialog.
inline Outcome controlled(const std::string& path, const std::string& strategy,
                          std::int32_t dialogPid = servicePid) {
  return {0,
          strategyResult(path, strategy,
                         {{"dialogPid", dialogPid},
                          {"dialogApp", dialogPid == browserPid ? "primary-browser"
                                                                : "open-save-panel-service"}}),
          ""};
}

// A panel's usual place, as results show it.
inline const nlohmann::ordered_json usualFrame{
    {"x", 320.0}, {"y", 180.0}, {"width", 800.0}, {"height", 450.0}};

// Closed by events to a process; `more` is the point of the click that did it.
inline Outcome closedByEvents(const std::string& path, std::int32_t eventPid, int window,
                              const std::string& waitError,
                              const nlohmann::ordered_json& more = nlohmann::ordered_json::object(),
                              const nlohmann::ordered_json& frame = usualFrame) {
  nlohmann::ordered_json keys{{"dialogPid", eventPid},
                              {"panelWindowID", window},
                              {"panelFrame", frame},
                              {"axWaitError", waitError}};
  keys.update(more);
  return {0, strategyResult(path, "background-window-capture-cgevent", keys), ""};
}

// The numbers of the windows that the first panel of a scenario has.
inline constexpr int browsersWindow = 103;
inline constexpr int servicesWindow = 104;

// The attempts on a panel at its usual place, as messages list them.
inline constexpr const char* everyAttempt =
    R"("window=104,pid=900,frame=320.0,180.0,800.0,450.0", )"
    R"("window=104,pid=812,frame=320.0,180.0,800.0,450.0", )"
    R"("window=103,pid=812,frame=320.0,180.0,800.0,450.0")";

inline std::string notClosed(const std::string& attempts, const std::string& waitError) {
  return "background CGEvent folder selection did not close the captured panel; attempted: [" +
         attempts + "]; AX error: " + waitError;
}

// What was done, after the seconds slept before each.

// The click into the panel, the sheet, the path and Return.
inline Deeds typed(const std::string& path, const std::string& pid, const std::string& pause) {
  Deeds deeds{pause + " mouse down 1 (720, 405) -> " + pid,
              "0.050 mouse up 1 (720, 405) -> " + pid,
              "0.180 key 5+120000 down -> " + pid,
              "0.020 key 5+120000 up -> " + pid,
              "0.500 key 0+100000 down -> " + pid,
              "0.020 key 0+100000 up -> " + pid,
              "0.050 key 51 down -> " + pid,
              "0.020 key 51 up -> " + pid};
  for (const char letter : path) {
    const std::string key = std::string("key 0 text=") + letter;
    deeds.push_back("0.050 " + key + " down -> " + pid);
    deeds.push_back("0.020 " + key + " up -> " + pid);
  }
  deeds.push_back("0.050 key 36 down -> " + pid);
  deeds.push_back("0.020 key 36 up -> " + pid);
  return deeds;
}

// --- Patches of a scenario. ---

using Patch = World::Patches::value_type;

// The folder around the target is a place in the sidebar that says where it leads.
inline const Patch startIsAPlace{"/places",
                                 {{{"label", "start"}, {"path", "~"}, {"urlKnown", true}}}};
// No menu of volumes opens, so without such a place the walk by rows fails at once.
inline const Patch noMenu{"/panels/0/faults/showMenuRefused", -25204};
inline const Patch noButton{"/panels/0/faults/noConfirmButton", true};
inline const Patch deadButton{"/panels/0/faults/confirmDoesNothing", true};
inline const Patch deaf{"/panels/0/faults/ignoresKeys", true};
inline const Patch keysReachHost{"/panels/0/keysReach", "host"};

}  // namespace tessarine::test
