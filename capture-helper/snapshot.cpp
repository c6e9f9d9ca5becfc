#include "capture-helper/snapshot.h"

#include <filesystem>
#include <fstream>

#include "core/numbers.h"
#include "core/tool_error.h"
#include "platform/child_process.h"
#include "platform/files.h"
#include "platform/wait.h"

namespace tessarine {
namespace {

constexpr double limitSeconds = 5.0;
constexpr double pollSeconds = 0.02;
constexpr std::string_view pngSignature = "\x89PNG\r\n\x1a\n";

// Removes what is left of an unfinished image.
class UnfinishedFile {
 public:
  explicit UnfinishedFile(std::string path) : path_(std::move(path)) {}
  ~UnfinishedFile() { removeFile(path_); }
  UnfinishedFile(const UnfinishedFile&) = delete;
  UnfinishedFile& operator=(const UnfinishedFile&) = delete;
  const std::string& path() const { return path_; }

 private:
  std::string path_;
};

bool isPng(const std::string& path) {
  std::string start(pngSignature.size(), '\0');
  std::ifstream file(path, std::ios::binary);
  file.read(start.data(), static_cast<std::streamsize>(start.size()));
  return file && start == pngSignature;
}

int runSnapshotProgram(std::uint32_t number, const std::string& file) {
  const StartedChild started =
      startChild(snapshotProgram, {"-x", "-o", "-t", "png", "-l" + std::to_string(number), file});
  if (!started.child) {
    throw ToolError::actionFailed("failed to start screencapture: " + started.startError);
  }
  if (!pollUntil(limitSeconds, pollSeconds, [&] { return !isRunning(*started.child); })) {
    terminate(*started.child);
    throw ToolError::actionFailed("screencapture exceeded " + formatDouble(limitSeconds) + "s");
  }
  return waitForExit(*started.child);
}

}  // namespace

void snapshotWindow(std::uint32_t number, const std::string& file) {
  const UnfinishedFile image(file + "." + freshUuid());
  if (runSnapshotProgram(number, image.path()) != 0 || !isPng(image.path())) {
    throw ToolError::actionFailed("cannot capture window " + std::to_string(number));
  }
  std::error_code failure;
  std::filesystem::rename(image.path(), file, failure);
  if (failure) throw ToolError::actionFailed("cannot write " + file + ": " + failure.message());
}

}  // namespace tessarine
