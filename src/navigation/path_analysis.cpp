#include "navigation/path_analysis.h"

#include <algorithm>
#include <cstddef>
#include <functional>

#include "core/tables.h"
#include "core/text.h"
#include "platform/child_process.h"
#include "platform/files.h"
#include "platform/processes.h"
#include "platform/workspace.h"

namespace tessarine {
namespace {

std::string finderScript(const std::string& path) {
  return "tell application \"Finder\" to get displayed name of (POSIX file \"" + shellQuoted(path) +
         "\" as alias)";
}

// The Finder's trimmed answer; empty when it gives none that can be used.
std::string finderDisplayName(const std::string& path) {
  const StartedChild started = startChild(osascriptPath, {"-e", finderScript(path)});
  if (!started.child || waitForExit(*started.child) != 0) return {};
  const std::string answer = readStandardOutput(*started.child);
  return isUtf8(answer) ? trimmed(answer) : std::string();
}

using FinderQuestion = std::function<std::string(const std::string& path)>;

std::string nameBy(const FinderQuestion& ask, const std::string& path) {
  const std::string key = standardizedPath(path);
  auto& cache = tables().localizedDisplayNameCache;
  if (const auto known = cache.find(key); known != cache.end()) return known->second;
  const std::string fallback = fileManagerDisplayName(key);
  std::string name = ask(key);
  if (name.empty()) name = fallback;
  cache.emplace(key, name);
  return name;
}

}  // namespace

VolumePath volumeRootAndComponents(const std::string& path) {
  auto components = pathComponents(standardizedPath(path));
  if (components.size() >= 3 && components[1] == "Volumes") {
    return {"/Volumes/" + components[2], {components.begin() + 3, components.end()}};
  }
  if (components.empty()) return {"/", {}};
  return {"/", {components.begin() + 1, components.end()}};
}

std::string displayName(const std::string& path) {
  return nameBy(finderDisplayName, path);
}

std::string displayNameWithin(const std::string& path, double timeoutSeconds) {
  const FinderQuestion ask = [&](const std::string& key) {
    const std::vector<std::string> arguments{"-e", finderScript(key)};
    return trimmed(
        commandOutputWithin(osascriptPath, arguments, timeoutSeconds).value_or(std::string()));
  };
  return nameBy(ask, path);
}

std::vector<std::string> relativeComponents(const std::string& from, const std::string& to) {
  const auto base = pathComponents(standardizedPath(from));
  const auto target = pathComponents(standardizedPath(to));
  const bool below =
      base.size() <= target.size() && std::equal(base.begin(), base.end(), target.begin());
  if (!below) return {};
  return {target.begin() + static_cast<std::ptrdiff_t>(base.size()), target.end()};
}

}  // namespace tessarine
