// What the capture helper prints and the tool reads, with windows that nobody wrote down.
#include <gtest/gtest.h>

#include <algorithm>
#include <nlohmann/json.hpp>
#include <random>

#include "capture-helper/helper_desktop.h"
#include "core/text.h"
#include "panels/capture.h"
#include "support/capture_helper_program.h"

namespace tessarine::test::exchange {
namespace {

// Draws windows from a seed.
class Draw {
 public:
  explicit Draw(std::uint32_t seed) : source_(seed) {}

  int upTo(int most) { return std::uniform_int_distribution<int>(0, most)(source_); }

  // Letters of every plane, tabs, line breaks, keys of the line's own form.
  std::string text() {
    static const std::vector<std::string> pieces{
        "\t", "\n", "\r\n", "pid=7", "frame=1,2,3,4", "title=Open", "Open", "打开", " ", "=", ","};
    std::string drawn;
    for (int left = upTo(6); left > 0; --left) {
      if (upTo(1) == 0) {
        drawn += pieces.at(static_cast<std::size_t>(upTo(static_cast<int>(pieces.size()) - 1)));
      } else {
        drawn += fromUtf16(toUtf16(static_cast<char32_t>(upTo(0x10FFFF))));
      }
    }
    return drawn;
  }
  double number() {
    static const std::vector<double> known{0, 10, 10.5, -0.25, 1e-7, 1e17, -3e300, 800, 1.0 / 3};
    const auto index = static_cast<std::size_t>(upTo(2 * static_cast<int>(known.size()) - 1));
    return index < known.size() ? known[index] : upTo(40000) / 8.0 - 1000;
  }
  simulator::Rect frame() {
    // The order of the calls is the order of the members.
    const double x = number();
    const double y = number();
    const double width = number();
    return {x, y, width, number()};
  }

 private:
  std::mt19937 source_;
};

bool isOpenPanel(const simulator::Window& window) {
  return (window.title == "Open" || window.title == "打开") && window.frame.width > 10 &&
         window.frame.height > 10;
}

// Every panel of the browser, told apart by its number alone: each has a frame of its own.
std::vector<PanelWindowRef> expectedPanels(const simulator::Desktop& desktop) {
  std::vector<PanelWindowRef> panels;
  for (const auto& window : desktop.windows()) {
    const simulator::Rect& frame = window->frame;
    const Rect read{frame.x, frame.y, frame.width, frame.height};
    if (!isOpenPanel(*window)) continue;
    const bool seen = std::any_of(panels.begin(), panels.end(),
                                  [&](const PanelWindowRef& panel) { return panel.frame == read; });
    if (!seen) panels.push_back({window->number, browserPid, "Google Chrome", window->title, read});
  }
  return panels;
}

void compare(const std::vector<PanelWindowRef>& read, const std::vector<PanelWindowRef>& expected) {
  ASSERT_EQ(read.size(), expected.size());
  for (std::size_t i = 0; i < read.size(); ++i) {
    EXPECT_EQ(read[i].windowID, expected[i].windowID);
    EXPECT_EQ(read[i].pid, expected[i].pid);
    EXPECT_EQ(read[i].app, expected[i].app);
    EXPECT_EQ(read[i].title, expected[i].title);
    EXPECT_EQ(read[i].frame, expected[i].frame);
  }
}

TEST(Exchange, TenThousandWindowListsLoseNothingThatTheToolNeeds) {
  std::size_t panels = 0;
  for (std::uint32_t seed = 0; seed < 10000; ++seed) {
    SCOPED_TRACE(seed);
    Draw draw(seed);
    HelperDesktop world;
    installCaptureHelper(world.desktop);
    for (int left = draw.upTo(8); left > 0; --left) {
      const bool open = draw.upTo(2) == 0;
      world.addListed(open ? (draw.upTo(1) == 0 ? "Open" : "打开") : draw.text(), draw.frame());
    }
    const auto expected = expectedPanels(world.desktop);
    compare(backgroundOpenPanelWindows(browserPid), expected);
    panels += expected.size();
    if (::testing::Test::HasFailure()) return;
  }
  EXPECT_GT(panels, 3000U) << "the drawn windows are too seldom panels";
}

// Whatever the names hold, each window is one line of five columns.
TEST(Exchange, NamesBreakNoLine) {
  for (std::uint32_t seed = 0; seed < 1000; ++seed) {
    SCOPED_TRACE(seed);
    Draw draw(seed);
    HelperDesktop world;
    world.process().name = draw.text();
    const int windows = draw.upTo(8);
    for (int i = 0; i < windows; ++i) world.addListed(draw.text(), draw.frame());
    const std::string printed = runHelper({"list"}).output;
    EXPECT_TRUE(isUtf8(printed));
    EXPECT_EQ(std::count(printed.begin(), printed.end(), '\n'), windows);
    EXPECT_EQ(std::count(printed.begin(), printed.end(), '\t'), 4 * windows);
  }
}

// --- A sheet without a title, without the Screen Recording permission. ---

nlohmann::ordered_json listedPanels(bool recordingDenied, bool untrusted) {
  World world(
      "english-host-sheet",
      {{"/faults", {{"screenRecordingDenied", recordingDenied}, {"untrusted", untrusted}}}});
  const Outcome outcome = world.run({"list-background-panels", "--pid", "812"});
  EXPECT_EQ(outcome.exitStatus, 0) << outcome.errors;
  return nlohmann::ordered_json::parse(outcome.output).at("windows");
}

TEST(Exchange, AnUntitledSheetIsListedWithAccessibilityAlone) {
  auto browsers = nlohmann::ordered_json::array();
  for (const auto& window : listedPanels(false, false)) {
    if (window.at("pid") == browserPid) browsers.push_back(window);
  }
  ASSERT_EQ(browsers.size(), 1U);
  EXPECT_EQ(browsers[0].at("title"), "Open");
  EXPECT_EQ(listedPanels(true, false), browsers);
}

TEST(Exchange, AnUntitledSheetIsNotListedWithoutAnyPermission) {
  EXPECT_EQ(listedPanels(true, true), nlohmann::ordered_json::array());
  EXPECT_EQ(listedPanels(false, true), listedPanels(false, false));
}

}  // namespace
}  // namespace tessarine::test::exchange
