#include "platform/workspace.h"

#include <filesystem>
#include <system_error>

#include "simulator/frameworks/desktop_link.h"

namespace tessarine {
namespace {

using simulator::List;
using simulator::Value;

Value ask(const simulator::Request& request) {
  return simulator::desktopLink().ask(request).value;
}

Rect frameOf(const Value& screen) {
  const auto& numbers = std::get<List>(screen);
  const auto number = [&](std::size_t index) { return std::get<double>(numbers.at(index)); };
  return {number(0), number(1), number(2), number(3)};
}

}  // namespace

std::optional<std::int32_t> frontmostApplicationPid() {
  const Value answer = ask(simulator::AskFrontmost{});
  const auto* pid = std::get_if<double>(&answer);
  return pid ? std::optional(static_cast<std::int32_t>(*pid)) : std::nullopt;
}

ApplicationState applicationState(std::int32_t pid) {
  const Value answer = ask(simulator::AskRunning{pid});
  const auto* running = std::get_if<bool>(&answer);
  if (!running) return ApplicationState::unknown;
  return *running ? ApplicationState::running : ApplicationState::terminated;
}

void activateApplication(std::int32_t pid) {
  ask(simulator::Activate{pid});
}

// From Quartz points, which count downwards from the top of the main display.
std::vector<Rect> screenFrames() {
  std::vector<Rect> frames;
  double mainHeight = 0;
  const Value screens = ask(simulator::AskScreens{});
  for (const Value& screen : std::get<List>(screens)) {
    Rect frame = frameOf(screen);
    if (frames.empty()) mainHeight = frame.height;
    frame.y = mainHeight - (frame.y + frame.height);
    frames.push_back(frame);
  }
  return frames;
}

std::string fileManagerDisplayName(const std::string& path) {
  return std::get<std::string>(ask(simulator::AskDisplayName{path}));
}

std::string temporaryDirectory() {
  std::error_code failed;
  const std::string directory = std::filesystem::temp_directory_path(failed);
  return failed ? "/tmp" : directory;
}

}  // namespace tessarine
