// Under a desktop service the system's own programs would report on the wrong machine: stand-in
// programs take their place. The product's calls of posix_spawn are compiled as calls of this one.
#include <spawn.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <nlohmann/json.hpp>
#include <string>

#include "simulator/service/client.h"

namespace {

constexpr std::array<const char*, 3> replaced_programs{"/bin/ps", "/usr/bin/osascript",
                                                       "/usr/sbin/screencapture"};

std::string replacement(const std::string& asked) {
  const char* programs = std::getenv(simulator::programs_variable);
  if (!programs || !std::getenv(simulator::desktop_variable)) return asked;
  if (std::ranges::find(replaced_programs, asked) == replaced_programs.end()) return asked;
  return programs + asked.substr(asked.rfind('/'));
}

}  // namespace

extern "C" int desktop_posix_spawn(pid_t* pid, const char* path,
                                   const posix_spawn_file_actions_t* actions,
                                   const posix_spawnattr_t* attributes, char* const arguments[],
                                   char* const environment[]) {
  return posix_spawn(pid, replacement(path).c_str(), actions, attributes, arguments, environment);
}
