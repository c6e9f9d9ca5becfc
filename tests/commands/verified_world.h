// What tests of --verify share: a run of one of the two commands, and what came of it.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "support/folder_world.h"
#include "support/transcript.h"

namespace tessarine::test {

struct VerifiedRun {
  Outcome outcome;
  std::string panels;
  std::string disturbed;
  bool operator==(const VerifiedRun&) const = default;
};

inline void PrintTo(const VerifiedRun& run, std::ostream* stream) {
  PrintTo(run.outcome, stream);
  *stream << "panels: " << run.panels << "\ndisturbance: " << run.disturbed;
}

inline VerifiedRun runVerified(World& world, const std::string& command, const std::string& path,
                               const std::vector<std::string>& options = {}) {
  std::vector<std::string> arguments{command,  "--pid", std::to_string(browserPid),
                                     "--path", path,    "--verify"};
  arguments.insert(arguments.end(), options.begin(), options.end());
  Outcome outcome = world.run(arguments);
  return {std::move(outcome), world.panelOutcomes(), disturbance(world.record())};
}

inline VerifiedRun chooseVerifiedFolder(FolderWorld& world,
                                        const std::vector<std::string>& options = {}) {
  return runVerified(world.world, "choose-folder", world.target, options);
}

// The results, key by key in their order.
inline nlohmann::ordered_json verifiedKeys(std::int32_t dialogPid, const std::string& verified,
                                           const std::string& path) {
  return {{"strategy", "verified"},
          {"dialogPid", dialogPid},
          {"dialogApp", dialogPid == browserPid ? "primary-browser" : "open-save-panel-service"},
          {"verified", verified},
          {"verifiedPath", path}};
}

inline Outcome verifiedFolder(const std::string& path, std::int32_t dialogPid = browserPid,
                              const std::string& verified = "folder shown") {
  auto components = nlohmann::ordered_json::array();
  for (const auto& component : std::filesystem::path(path).relative_path()) {
    components.push_back(component.string());
  }
  nlohmann::ordered_json result{{"ok", true},
                                {"command", "choose-folder"},
                                {"path", path},
                                {"volumeRoot", "/"},
                                {"volumeDisplayName", "Macintosh HD"},
                                {"components", components},
                                {"searchQuery", std::filesystem::path(path).filename().string()}};
  result.update(verifiedKeys(dialogPid, verified, path));
  return {0, result.dump(2) + "\n", ""};
}

inline Outcome verifiedPath(const std::string& path, const std::string& kind,
                            std::int32_t dialogPid = browserPid,
                            const std::string& verified = "entry selected") {
  nlohmann::ordered_json result{{"ok", true},
                                {"command", "choose-path"},
                                {"path", path},
                                {"kind", kind},
                                {"basename", std::filesystem::path(path).filename().string()}};
  result.update(verifiedKeys(dialogPid, verified, path));
  return {0, result.dump(2) + "\n", ""};
}

inline Outcome notVerified(const std::string& why) {
  return failed("not verified: " + why);
}

}  // namespace tessarine::test
