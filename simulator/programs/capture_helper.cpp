#include <algorithm>
#include <array>
#include <charconv>
#include <fstream>
#include <optional>

#include "simulator/programs/programs.h"

namespace simulator {
namespace {

constexpr Seconds running_time = 0.03;  // assumed

// A grey image of one pixel.
constexpr std::array<unsigned char, 67> image = {
    0x89, 0x50, 0x4e, 0x47, 0x0d, 0x0a, 0x1a, 0x0a, 0x00, 0x00, 0x00, 0x0d, 0x49, 0x48,
    0x44, 0x52, 0x00, 0x00, 0x00, 0x01, 0x00, 0x00, 0x00, 0x01, 0x08, 0x00, 0x00, 0x00,
    0x00, 0x3a, 0x7e, 0x9b, 0x55, 0x00, 0x00, 0x00, 0x0a, 0x49, 0x44, 0x41, 0x54, 0x78,
    0xda, 0x63, 0x68, 0x00, 0x00, 0x00, 0x82, 0x00, 0x81, 0xda, 0x45, 0x08, 0x3b, 0x00,
    0x00, 0x00, 0x00, 0x49, 0x45, 0x4e, 0x44, 0xae, 0x42, 0x60, 0x82};

// In decimal notation, without decimals for a whole number.
std::string decimal(double number) {
  std::array<char, 400> digits{};
  const auto written =
      std::to_chars(digits.data(), digits.data() + digits.size(), number, std::chars_format::fixed);
  return {digits.data(), written.ptr};
}

// Tabs and line ends would break the columns. Assumed: blanks stand for them.
std::string inColumn(std::string text) {
  const auto breaks = [](char letter) {
    return letter == '\t' || letter == '\n' || letter == '\r';
  };
  std::replace_if(text.begin(), text.end(), breaks, ' ');
  return text;
}

void list(ProgramRun& run) {
  const Desktop& desktop = run.desktop();
  for (const auto& window : desktop.windows()) {
    if (!window->listed || !window->on_screen) continue;
    const bool hidden = desktop.faults().screen_recording_denied;
    const Rect& frame = window->frame;
    run.print(std::to_string(window->number) + "\tpid=" + std::to_string(window->owner) +
              "\tapp=" + inColumn(desktop.findProcess(window->owner)->name) + "\ttitle=" +
              (hidden ? "" : inColumn(window->title)) + "\tframe=" + decimal(frame.x) + "," +
              decimal(frame.y) + "," + decimal(frame.width) + "," + decimal(frame.height) + "\n");
  }
  run.end(0);
}

void capture(ProgramRun& run, std::uint32_t number, const std::string& file) {
  const Desktop& desktop = run.desktop();
  const Window* window = run.desktop().findWindow(number);
  const bool possible = window != nullptr && window->on_screen && window->capturable;
  if (!possible || desktop.faults().screen_recording_denied) {
    run.complain("cannot capture window " + std::to_string(number) + "\n");
    return run.end(1);
  }
  std::ofstream out(file, std::ios::binary);
  out.write(reinterpret_cast<const char*>(image.data()), image.size());
  out.close();
  if (!out) {
    run.complain("cannot write " + file + "\n");
    return run.end(1);
  }
  run.end(0);
}

std::optional<std::uint32_t> windowNumber(const std::string& text) {
  std::uint32_t number = 0;
  const char* end = text.data() + text.size();
  const auto read = std::from_chars(text.data(), end, number);
  if (read.ec != std::errc() || read.ptr != end) return std::nullopt;
  return number;
}

}  // namespace

void runCaptureHelper(ProgramRun& run) {
  if (run.desktop().faults().capture_helper_hangs) return;
  const std::vector<std::string>& words = run.arguments();
  if (words == std::vector<std::string>{"list"}) {
    return run.after(running_time, [&run] { list(run); });
  }
  if (words.size() == 5 && words[0] == "capture" && words[1] == "--window-id" &&
      words[3] == "--out") {
    if (const std::optional<std::uint32_t> number = windowNumber(words[2])) {
      return run.after(running_time,
                       [&run, number = *number, file = words[4]] { capture(run, number, file); });
    }
  }
  run.complain("usage: background-window-capture list | capture --window-id NUMBER --out FILE\n");
  run.end(2);
}

}  // namespace simulator
