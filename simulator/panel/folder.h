// What the panel reads from the machine's real directories.
#pragma once

#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace simulator {

struct FolderEntry {
  std::string name;
  bool directory = false;
  bool package = false;  // a directory that is shown as a file
};

enum class SortOrder {
  name,  // as the file browser orders names: without regard to case, numbers by their value
  date,  // by modification time, the newest first; of the same time by name
};

// Which entries panels list, besides that no name begins with a dot.
struct ListedEntries {
  bool systemFolders = false;  // those of "/" that a Mac hides
  // Absent: all. Otherwise what these paths name, what lies below it and the folders that lead
  // there; "*" in a path stands for any part of a name.
  std::optional<std::vector<std::string>> only;
};

// The visible entries. A folder that cannot be read has none.
std::vector<FolderEntry> visibleEntries(const std::string& folder, SortOrder order,
                                        const ListedEntries& listed);

// Tells one state of a folder from another. The count of all entries finds what happened within
// one tick of the clock that stamps folders.
struct FolderState {
  std::filesystem::file_time_type modified;
  std::ptrdiff_t entries = 0;
  bool operator==(const FolderState&) const = default;
};
FolderState folderState(const std::string& folder);

bool isDirectory(const std::string& path);

// A directory that is shown as a file and not entered, as its name tells.
bool isPackage(const std::string& path);

// The folder above; "/" for "/".
std::string parentFolder(const std::string& path);

// "folder/name" without a doubled slash.
std::string pathWithin(const std::string& folder, const std::string& name);

// The absolute path without links, trailing slashes and dot components that a typed text means, or
// nothing when no such thing exists. "~" is `home`; a relative text starts at `folder`.
std::optional<std::string> typedPath(const std::string& text, const std::string& home,
                                     const std::string& folder);

// "file:///a%20b/": a directory's ends in a slash.
std::string fileUrl(const std::string& path, bool directory);

}  // namespace simulator
