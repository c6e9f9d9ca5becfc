// The file system, and paths as this program writes them.
#pragma once

#include <optional>
#include <string>
#include <vector>

namespace tessarine {

// The absolute path without "." and ".." components, repeated slashes and a trailing slash; a
// relative path is resolved against the current directory. Symbolic links are not followed.
std::string standardizedPath(const std::string& path);

// The components of a standardized path: "/" first, then one for each level.
std::vector<std::string> pathComponents(const std::string& path);

// The last component of a standardized path ("/" for the root).
std::string lastPathComponent(const std::string& path);

// The path without its last component.
std::string parentDirectory(const std::string& path);

// The path with one more component.
std::string appendingComponent(const std::string& path, const std::string& component);

// Symbolic links are followed; a broken one does not exist.
bool fileExists(const std::string& path);
bool isDirectory(const std::string& path);
bool isExecutableFile(const std::string& path);

// The absolute path without links and "." and ".." components of what is there. Below a folder that
// this program may not search the rest of the path stays as it is. Absent when nothing is there or
// it cannot be told.
std::optional<std::string> canonicalPath(const std::string& path);

// Whether both paths lead to the same file or folder: by device and inode, links followed. Where
// the system refuses to say (EACCES, EPERM) the canonical paths are compared. Nothing is the same
// as what does not exist.
bool sameFile(const std::string& left, const std::string& right);

// Removes the file if it is there; a failure is ignored.
void removeFile(const std::string& path);

// Copies a file, or what a link leads to, to a path where nothing stands yet. Throws
// std::filesystem::filesystem_error.
void copyFile(const std::string& from, const std::string& to);

// Sets the modification date, in seconds since 1970. Throws std::filesystem::filesystem_error.
void setModificationDate(const std::string& path, double secondsSince1970);

}  // namespace tessarine
