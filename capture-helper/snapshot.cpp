#include "capture-helper/snapshot.h"

#include <filesystem>
#include <fstream>

#include "capture-helper/end_signals.h"
#include "core/numbers.h"
#include "core/tool_error.h"
#include "platform/child_process.h"
#include "platform/files.h"
#include "platform/own_process.h"
#include "platform/wait.h"

namespace tessarine {
namespace {

namespace fs = std::filesystem;

constexpr double limitSeconds = 5.0;
constexpr double endSeconds = 1.0;  // what the program has to end once it is told to
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

ToolError cannotWrite(const std::string& file, const std::string& reason) {
  return ToolError::actionFailed("cannot write " + file + ": " + reason);
}

// Where the image goes: the regular file that is there or that a link leads to, or else a new one.
// By its absolute path, which the snapshot program never takes for an option.
std::string destination(const std::string& file) {
  const fs::path path = fs::absolute(file);
  std::error_code failure;
  fs::path found;
  switch (fs::status(path, failure).type()) {
    case fs::file_type::regular:
      found = fs::canonical(path, failure);
      break;
    case fs::file_type::not_found:
      if (fs::is_symlink(fs::symlink_status(path))) {  // one that leads nowhere
        failure = std::make_error_code(std::errc::no_such_file_or_directory);
      } else {
        found = fs::canonical(path.parent_path(), failure) / path.filename();
      }
      break;
    case fs::file_type::directory:
      failure = std::make_error_code(std::errc::is_a_directory);
      break;
    default:
      if (!failure) throw cannotWrite(file, "not a regular file");
  }
  if (failure) throw cannotWrite(file, failure.message());
  return found;
}

int runSnapshotProgram(std::uint32_t number, const std::string& file,
                       const EndSignals& endSignals) {
  const StartedChild started =
      startChild(snapshotProgram, {"-x", "-o", "-t", "png", "-l" + std::to_string(number), file});
  if (!started.child) {
    throw ToolError::actionFailed("failed to start screencapture: " + started.startError);
  }
  const auto hasEnded = [&] { return !isRunning(*started.child); };
  pollUntil(limitSeconds, pollSeconds, [&] { return hasEnded() || endSignals.received(); });
  if (hasEnded()) return waitForExit(*started.child);
  terminate(*started.child);
  // Until it has ended it may write the file anew. One that ignores SIGTERM goes on for itself:
  // child processes are sent nothing stronger.
  pollUntil(endSeconds, pollSeconds, hasEnded);
  // Not true after a signal, but then nobody gets to read it.
  throw ToolError::actionFailed("screencapture exceeded " + formatDouble(limitSeconds) + "s");
}

}  // namespace

void snapshotWindow(std::uint32_t number, const std::string& file) {
  const std::string target = destination(file);
  const EndSignals endSignals;  // one that came acts when the unfinished image is gone
  const UnfinishedFile image(appendingComponent(parentDirectory(target), "." + freshUuid()));
  if (runSnapshotProgram(number, image.path(), endSignals) != 0 || !isPng(image.path())) {
    throw ToolError::actionFailed("cannot capture window " + std::to_string(number));
  }
  std::error_code failure;
  fs::rename(image.path(), target, failure);
  if (failure) throw cannotWrite(file, failure.message());
}

}  // namespace tessarine
