#include "platform/files.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cmath>
#include <filesystem>

namespace tessarine {

namespace fs = std::filesystem;

namespace {

bool isRefusal(int error) {
  return error == EACCES || error == EPERM;
}

// The system's error code, 0 when it told.
int readStatus(const std::string& path, struct stat& status) {
  return stat(path.c_str(), &status) == 0 ? 0 : errno;
}

}  // namespace

std::string standardizedPath(const std::string& path) {
  std::error_code failed;
  std::string standardized = fs::absolute(path.empty() ? "." : path, failed).lexically_normal();
  while (standardized.size() > 1 && standardized.ends_with('/')) standardized.pop_back();
  return standardized;
}

std::vector<std::string> pathComponents(const std::string& path) {
  const fs::path standardized(path);
  return {standardized.begin(), standardized.end()};
}

std::string lastPathComponent(const std::string& path) {
  return path == "/" ? path : fs::path(path).filename().string();
}

std::string parentDirectory(const std::string& path) {
  return fs::path(path).parent_path();
}

std::string appendingComponent(const std::string& path, const std::string& component) {
  return fs::path(path) / component;
}

bool fileExists(const std::string& path) {
  std::error_code failed;
  return fs::exists(path, failed);
}

bool isDirectory(const std::string& path) {
  std::error_code failed;
  return fs::is_directory(path, failed);
}

bool isExecutableFile(const std::string& path) {
  return access(path.c_str(), X_OK) == 0;
}

std::optional<std::string> canonicalPath(const std::string& path) {
  std::error_code failed;
  const fs::path canonical = fs::canonical(path, failed);
  if (!failed) return canonical.string();
  const fs::path parent = fs::path(path).parent_path();
  if (!isRefusal(failed.value()) || parent.empty() || parent == path) return {};
  const auto folder = canonicalPath(parent);
  if (!folder) return {};
  return appendingComponent(*folder, lastPathComponent(path));
}

bool sameFile(const std::string& left, const std::string& right) {
  struct stat leftStatus {};
  struct stat rightStatus {};
  const int leftError = readStatus(left, leftStatus);
  const int rightError = readStatus(right, rightStatus);
  if (leftError == 0 && rightError == 0) {
    return leftStatus.st_dev == rightStatus.st_dev && leftStatus.st_ino == rightStatus.st_ino;
  }
  if (!isRefusal(leftError) || !isRefusal(rightError)) return false;
  const auto leftPath = canonicalPath(left);
  return leftPath && leftPath == canonicalPath(right);
}

void removeFile(const std::string& path) {
  std::error_code failed;
  fs::remove(path, failed);
}

void copyFile(const std::string& from, const std::string& to) {
  fs::copy_file(from, to);
}

void setModificationDate(const std::string& path, double secondsSince1970) {
  const double whole = std::floor(secondsSince1970);
  struct timespec modified {};
  modified.tv_sec = static_cast<time_t>(whole);
  modified.tv_nsec = static_cast<long>((secondsSince1970 - whole) * 1e9);
  struct timespec untouched {};
  untouched.tv_nsec = UTIME_OMIT;
  const std::array<struct timespec, 2> times{untouched, modified};
  if (utimensat(AT_FDCWD, path.c_str(), times.data(), 0) != 0) {
    throw fs::filesystem_error("cannot set the modification date", path,
                               std::error_code(errno, std::generic_category()));
  }
}

}  // namespace tessarine
