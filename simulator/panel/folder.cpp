#include "simulator/panel/folder.h"

#include <fnmatch.h>
#include <utf8proc.h>

#include <algorithm>
#include <array>
#include <cctype>
#include <cstdlib>
#include <iterator>
#include <string_view>

#include "simulator/desktop/text.h"

namespace simulator {
namespace {

namespace fs = std::filesystem;

std::string folded(const std::string& name) {
  std::string result = name;
  if (std::all_of(name.begin(), name.end(), [](char c) { return (c & 0x80) == 0; })) {
    std::transform(name.begin(), name.end(), result.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return result;
  }
  utf8proc_uint8_t* mapped = nullptr;
  const auto length =
      utf8proc_map(reinterpret_cast<const utf8proc_uint8_t*>(name.data()),
                   static_cast<utf8proc_ssize_t>(name.size()), &mapped,
                   static_cast<utf8proc_option_t>(UTF8PROC_CASEFOLD | UTF8PROC_COMPOSE));
  if (length < 0) return result;  // not UTF-8: ordered by its bytes
  result.assign(reinterpret_cast<const char*>(mapped), static_cast<std::size_t>(length));
  std::free(mapped);
  return result;
}

// Hidden on the boot volume, by the file system's flags.
constexpr std::array<std::string_view, 11> hidden_in_root{
    "bin", "cores", "dev", "etc", "opt", "private", "sbin", "tmp", "usr", "var", "Volumes"};

// Assumed (Live.AnApplicationIsShownAsAFile, Live.APhotoLibraryIsShownAsAFile): what the system and
// Apple's own programs declare as packages; other programs declare further types.
constexpr std::array<std::string_view, 22> package_extensions{
    "action",   "app",         "appex",     "bundle", "component",     "framework",
    "kext",     "mdimporter",  "mpkg",      "pkg",    "photoslibrary", "plugin",
    "prefpane", "qlgenerator", "rtfd",      "saver",  "scptd",         "service",
    "wdgt",     "workflow",    "xcodeproj", "xpc"};

// Takes the digits at `position` without their leading zeros.
std::string_view takeNumber(const std::string& text, std::size_t& position) {
  while (position < text.size() && text[position] == '0') ++position;
  const std::size_t begin = position;
  while (position < text.size() && isDigit(text[position])) ++position;
  return std::string_view(text).substr(begin, position - begin);
}

bool comesBefore(const std::string& left, const std::string& right) {
  std::size_t l = 0;
  std::size_t r = 0;
  while (l < left.size() && r < right.size()) {
    if (isDigit(left[l]) && isDigit(right[r])) {
      const auto leftNumber = takeNumber(left, l);
      const auto rightNumber = takeNumber(right, r);
      if (leftNumber.size() != rightNumber.size()) return leftNumber.size() < rightNumber.size();
      if (leftNumber != rightNumber) return leftNumber < rightNumber;
    } else if (left[l] != right[r]) {
      return static_cast<unsigned char>(left[l]) < static_cast<unsigned char>(right[r]);
    } else {
      ++l;
      ++r;
    }
  }
  return left.size() - l < right.size() - r;
}

template <typename Names>
bool isOneOf(const Names& names, std::string_view name) {
  return std::find(names.begin(), names.end(), name) != names.end();
}

bool hasPackageExtension(const std::string& name) {
  const std::size_t dot = name.rfind('.');
  return dot != name.npos && isOneOf(package_extensions, folded(name.substr(dot + 1)));
}

// Whether the paths agree as far as the shorter one goes.
bool liesOnTheWay(const fs::path& path, const fs::path& pattern) {
  auto name = path.begin();
  for (const fs::path& expected : pattern) {
    if (name == path.end() || expected.empty()) return true;  // empty: after a slash at the end
    if (fnmatch(expected.c_str(), name->c_str(), 0) != 0) return false;
    ++name;
  }
  return true;
}

bool isListed(const fs::path& path, const ListedEntries& listed) {
  const std::string name = path.filename().string();
  if (name.starts_with(".")) return false;
  if (!listed.systemFolders && path.parent_path() == "/" && isOneOf(hidden_in_root, name)) {
    return false;
  }
  return !listed.only ||
         std::any_of(listed.only->begin(), listed.only->end(),
                     [&](const std::string& pattern) { return liesOnTheWay(path, pattern); });
}

}  // namespace

std::vector<FolderEntry> visibleEntries(const std::string& folder, SortOrder order,
                                        const ListedEntries& listed) {
  struct Keyed {
    std::string key;
    fs::file_time_type modified;  // of no interest when ordered by name
    FolderEntry entry;
  };
  std::vector<Keyed> found;
  std::error_code ignored;
  for (const auto& item : fs::directory_iterator(folder, ignored)) {
    if (!isListed(item.path(), listed)) continue;
    const std::string name = item.path().filename().string();
    std::error_code broken;  // a link that leads nowhere is no folder and the oldest
    fs::file_time_type modified;
    if (order == SortOrder::date) modified = item.last_write_time(broken);
    const bool directory = item.is_directory(broken);
    const bool package = directory && hasPackageExtension(name);
    found.push_back({folded(name), modified, {name, directory, package}});
  }
  std::sort(found.begin(), found.end(), [](const Keyed& left, const Keyed& right) {
    if (left.modified != right.modified) return left.modified > right.modified;
    if (comesBefore(left.key, right.key)) return true;
    if (comesBefore(right.key, left.key)) return false;
    return left.entry.name < right.entry.name;
  });
  std::vector<FolderEntry> entries;
  entries.reserve(found.size());
  for (auto& keyed : found) entries.push_back(std::move(keyed.entry));
  return entries;
}

FolderState folderState(const std::string& folder) {
  std::error_code ignored;
  FolderState state{fs::last_write_time(folder, ignored), 0};
  const fs::directory_iterator entries(folder, ignored);
  state.entries = std::distance(begin(entries), end(entries));
  return state;
}

bool isDirectory(const std::string& path) {
  std::error_code ignored;
  return fs::is_directory(path, ignored);
}

bool isPackage(const std::string& path) {
  return isDirectory(path) && hasPackageExtension(fs::path(path).filename().string());
}

std::string parentFolder(const std::string& path) {
  return fs::path(path).parent_path().string();
}

std::string pathWithin(const std::string& folder, const std::string& name) {
  return folder == "/" ? "/" + name : folder + "/" + name;
}

std::optional<std::string> typedPath(const std::string& text, const std::string& home,
                                     const std::string& folder) {
  if (text.empty()) return std::nullopt;
  std::string path = text;
  if (path == "~" || path.starts_with("~/")) path = home + path.substr(1);
  if (!path.starts_with("/")) path = pathWithin(folder, path);
  std::error_code missing;
  const fs::path resolved = fs::canonical(path, missing);
  if (missing) return std::nullopt;
  return resolved.string();
}

std::string fileUrl(const std::string& path, bool directory) {
  std::string url = "file://" + percentEncoded(path, "-._~!$&'()*+,=:@/");
  if (directory && !url.ends_with("/")) url += "/";
  return url;
}

}  // namespace simulator
