// Under a desktop service the system's own programs would report on the wrong machine: stand-in
// programs take their place. Linked with `--wrap=posix_spawn`.
#include <spawn.h>

#include <cstdlib>
#include <string>

extern "C" {

int __real_posix_spawn(pid_t* pid, const char* path, const posix_spawn_file_actions_t* actions,
                       const posix_spawnattr_t* attributes, char* const arguments[],
                       char* const environment[]);

int __wrap_posix_spawn(pid_t* pid, const char* path, const posix_spawn_file_actions_t* actions,
                       const posix_spawnattr_t* attributes, char* const arguments[],
                       char* const environment[]) {
  const std::string asked = path;
  const char* programs = std::getenv("TESSARINE_DESKTOP_PROGRAMS");
  const bool replaced = asked == "/bin/ps" || asked == "/usr/bin/osascript";
  std::string started = asked;
  if (replaced && programs && std::getenv("TESSARINE_DESKTOP")) {
    started = programs + asked.substr(asked.rfind('/'));
  }
  return __real_posix_spawn(pid, started.c_str(), actions, attributes, arguments, environment);
}

}  // extern "C"
