#include <array>
#include <charconv>
#include <fstream>
#include <optional>

#include "simulator/desktop/unmodelled.h"
#include "simulator/programs/programs.h"

namespace simulator {
namespace {

// A grey image of one pixel.
constexpr std::array<unsigned char, 67> image = {
    0x89, 0x50, 0x4e, 0x47, 0x0d, 0x0a, 0x1a, 0x0a, 0x00, 0x00, 0x00, 0x0d, 0x49, 0x48,
    0x44, 0x52, 0x00, 0x00, 0x00, 0x01, 0x00, 0x00, 0x00, 0x01, 0x08, 0x00, 0x00, 0x00,
    0x00, 0x3a, 0x7e, 0x9b, 0x55, 0x00, 0x00, 0x00, 0x0a, 0x49, 0x44, 0x41, 0x54, 0x78,
    0xda, 0x63, 0x68, 0x00, 0x00, 0x00, 0x82, 0x00, 0x81, 0xda, 0x45, 0x08, 0x3b, 0x00,
    0x00, 0x00, 0x00, 0x49, 0x45, 0x4e, 0x44, 0xae, 0x42, 0x60, 0x82};

constexpr std::string_view window_option = "-l";

void capture(ProgramRun& run, std::uint32_t number, const std::string& file) {
  const Window* window = run.desktop().findWindow(number);
  const bool possible = window != nullptr && window->on_screen && window->capturable;
  if (!possible || run.desktop().faults().screen_recording_denied) {
    run.complain("could not create image from window\n");
    return run.end(1);
  }
  std::ofstream out(file, std::ios::binary);
  out.write(reinterpret_cast<const char*>(image.data()), image.size());
  out.close();
  if (!out) {
    run.complain("could not write " + file + "\n");
    return run.end(1);
  }
  run.end(0);
}

std::optional<std::uint32_t> windowNumber(const std::string& option) {
  if (!option.starts_with(window_option)) return std::nullopt;
  std::uint32_t number = 0;
  const char* end = option.data() + option.size();
  const auto read = std::from_chars(option.data() + window_option.size(), end, number);
  if (read.ec != std::errc() || read.ptr != end) return std::nullopt;
  return number;
}

}  // namespace

void runSnapshot(ProgramRun& run) {
  const std::vector<std::string>& words = run.arguments();
  const std::vector<std::string> options{"-x", "-o", "-t", "png"};
  const bool silent_png = words.size() == options.size() + 2 &&
                          std::equal(options.begin(), options.end(), words.begin());
  const auto number = silent_png ? windowNumber(words[options.size()]) : std::nullopt;
  if (!number) {
    std::string line = "/usr/sbin/screencapture";
    for (const std::string& word : words) line += " " + word;
    abortUnmodelled(line);
  }
  run.after(run.desktop().prices().snapshot,
            [&run, number = *number, file = words.back()] { capture(run, number, file); });
}

}  // namespace simulator
