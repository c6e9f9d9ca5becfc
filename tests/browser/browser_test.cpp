// The page that replays a recording, in a browser. Skipped where there is no Chromium, unless the
// environment variable CHROMIUM names one: then it has to be there. Empty, it means none.
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <nlohmann/json.hpp>
#include <optional>
#include <regex>
#include <set>

#include "end_to_end/program_run.h"
#include "support/temporary_folder.h"

namespace tessarine::test::browser {
namespace {

using Words = std::vector<std::string>;
using nlohmann::ordered_json;

// Absent when there is none.
std::optional<std::string> chromiumPath() {
  if (const char* named = std::getenv("CHROMIUM")) {
    return *named == '\0' ? std::nullopt : std::optional<std::string>(named);
  }
  for (const char* path : {"/usr/bin/chromium", "/usr/bin/chromium-browser"}) {
    if (std::filesystem::exists(path)) return path;
  }
  return std::nullopt;
}

std::string contentsOf(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

std::size_t countOf(const std::string& text, const std::string& part) {
  std::size_t count = 0;
  for (std::size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1)) {
    ++count;
  }
  return count;
}

// The big-endian number at a place of the file.
std::size_t numberAt(const std::string& bytes, std::size_t at) {
  std::size_t number = 0;
  for (std::size_t i = 0; i < 4; ++i) {
    number = number << 8 | static_cast<unsigned char>(bytes.at(at + i));
  }
  return number;
}

// The page of a run in which a folder with an awkward name is chosen.
class Browser : public ::testing::Test {
 protected:
  static void SetUpTestSuite() {
    if (!chromiumPath()) return;
    folder_ = std::make_unique<TemporaryFolder>();
    const std::string target = folder_->makeFolder("target/</script><b>&\"");
    const std::string record = folder_->path() + "/record.json";
    const ProgramRun run =
        runProgram({desktopPath(), "run", "chromium-english", "--record", record, "--", toolPath(),
                    "choose-folder", "--verify", "--pid", "812", "--path", target});
    EXPECT_EQ(run.exitStatus, 0) << run.errors;
    const ProgramRun made = runProgram({desktopPath(), "replay", record});
    EXPECT_EQ(made.exitStatus, 0) << made.errors;
    page_ = made.output;
    record_ = ordered_json::parse(contentsOf(record));
  }
  static void TearDownTestSuite() { folder_.reset(); }

  void SetUp() override {
    if (!chromiumPath()) GTEST_SKIP() << "there is no Chromium on this machine";
  }

  // Chromium's output on the page with this script at its end, opened at a place of it.
  static ProgramRun open(const Words& options, const std::string& script = "",
                         const std::string& place = "") {
    std::string page = page_;
    if (!script.empty()) {
      page.insert(page.rfind("</body>"), "<script>" + script + "</script>");
    }
    const std::string file = folder_->makeFile("page.html", page);
    Words line{*chromiumPath(),
               "--headless",
               "--no-sandbox",
               "--disable-gpu",
               "--hide-scrollbars",
               "--enable-logging=stderr",
               "--user-data-dir=" + folder_->path() + "/profile",
               "--virtual-time-budget=4000"};
    line.insert(line.end(), options.begin(), options.end());
    line.push_back("file://" + file + place);
    return runProgram(line);
  }
  // What a script that ends with a call of `tell` tells, as JSON.
  static ordered_json told(const std::string& script, const Words& options = {}) {
    Words all{"--dump-dom"};
    all.insert(all.end(), options.begin(), options.end());
    const ProgramRun run =
        open(all, "const tell = (what) => { document.title = JSON.stringify(what); };" + script);
    const std::size_t from = run.output.find("<title>") + 7;
    const std::string title = run.output.substr(from, run.output.find("</title>") - from);
    EXPECT_EQ(countOf(run.errors, "CONSOLE"), 0U) << run.errors;
    return ordered_json::parse(title, nullptr, false);
  }

  static std::unique_ptr<TemporaryFolder> folder_;
  static std::string page_;
  static ordered_json record_;
};
std::unique_ptr<TemporaryFolder> Browser::folder_;
std::string Browser::page_;
ordered_json Browser::record_;

TEST_F(Browser, AnErrorWouldBeSeenOnTheConsole) {
  const ProgramRun run = open({"--dump-dom"}, "nobodyKnowsThis();");
  EXPECT_GT(countOf(run.errors, "CONSOLE"), 0U) << run.errors;
}

TEST_F(Browser, DrawsEachStepAndHasNothingToComplainOf) {
  const ProgramRun run = open({"--dump-dom"}, "", "#pictures");
  EXPECT_EQ(run.exitStatus, 0) << run.errors;
  EXPECT_EQ(countOf(run.errors, "CONSOLE"), 0U) << run.errors;
  const std::size_t steps = countOf(page_, "data-shows=");
  EXPECT_GT(steps, 10U);
  const std::string pictures = run.output.substr(run.output.find("<section id=\"pictures\""));
  EXPECT_EQ(countOf(pictures, "<figure>"), steps);
  std::istringstream figures(pictures);
  const std::regex use("<use href=\"#(d[0-9]+)\">");
  std::size_t empty = 0;
  for (std::size_t at = pictures.find("<figure>"); at != std::string::npos;) {
    const std::size_t next = pictures.find("<figure>", at + 1);
    const std::string figure = pictures.substr(at, next - at);
    at = next;
    std::set<std::string> names;
    for (std::sregex_iterator found(figure.begin(), figure.end(), use), end; found != end;
         ++found) {
      names.insert((*found)[1]);
    }
    for (const std::string& name : names) {
      EXPECT_EQ(countOf(page_, "<g id=\"" + name + "\">"), 1U) << name;
    }
    if (names.size() < 3) ++empty;
  }
  EXPECT_EQ(empty, 0U);
}

// Where the drawings of the step in which the panel is there stand on the screen of the desktop.
TEST_F(Browser, ThePanelStandsWhereItWasOnTheScreen) {
  const ordered_json drawn = told(R"(
      document.getElementById("first").click();
      const screen = document.getElementById("screen");
      const toScreen = screen.getScreenCTM().inverse();
      tell(Array.from(screen.children).map((use) => {
        const drawing = document.querySelector(use.getAttribute("href"));
        const box = use.getBBox();
        return {isPanel: drawing.querySelector(".panel") !== null, x: box.x, y: box.y,
                width: box.width, height: box.height, seen: use.getBoundingClientRect().width > 0};
      }));)",
                                  {"--window-size=1400,1000"});
  ASSERT_TRUE(drawn.is_array());
  std::size_t panels = 0;
  for (const ordered_json& each : drawn) {
    EXPECT_EQ(each["seen"], true) << each;
    if (each["isPanel"] != true) continue;
    ++panels;
    for (const ordered_json& entry : record_["entries"]) {
      if (entry["what"] != "panel") continue;
      const ordered_json& frame = entry["elements"][0]["frame"];
      for (const auto& [side, length] : frame.items()) {
        EXPECT_NEAR(each[side].get<double>(), length.get<double>(), 1) << side;
      }
      break;
    }
  }
  EXPECT_EQ(panels, 1U);
}

TEST_F(Browser, IsUsedByKeys) {
  const std::size_t steps = countOf(page_, "data-shows=");
  const ordered_json seen = told(R"(
      const press = (key, target = document.body) => target.dispatchEvent(
          new KeyboardEvent("keydown", {key, bubbles: true, cancelable: true}));
      const at = () => Number(document.getElementById("slider").value);
      const current = () => document.querySelectorAll("[aria-current=step]").length;
      const seen = [at()];
      press("ArrowRight"); press("ArrowRight"); seen.push(at());
      press("ArrowLeft"); seen.push(at());
      press("End"); seen.push(at());
      press("ArrowRight"); seen.push(at());
      press("Home"); seen.push(at());
      press("ArrowRight", document.getElementById("slider")); seen.push(at());
      press(" "); seen.push(document.getElementById("play").textContent);
      press(" "); seen.push(document.getElementById("play").textContent);
      press("a"); seen.push(document.getElementById("pictures").children.length);
      press("a"); seen.push(document.getElementById("pictures").children.length, current());
      tell(seen);)");
  EXPECT_EQ(seen,
            (ordered_json{0, 2, 1, steps - 1, steps - 1, 0, 0, "❚❚ Pause", "▶ Play", steps, 0, 1}));
}

TEST_F(Browser, PlaysToTheEnd) {
  const ordered_json seen = told(R"(
      document.getElementById("speed").value = "4";
      document.getElementById("play").click();
      setTimeout(() => tell([Number(document.getElementById("slider").value),
                             document.getElementById("play").textContent]), 3500);)");
  EXPECT_EQ(seen, (ordered_json{countOf(page_, "data-shows=") - 1, "▶ Play"}));
}

TEST_F(Browser, NamesOfFoldersAreTextInThePage) {
  const ordered_json seen = told(R"(
      const panel = document.querySelector("header ul").lastElementChild.textContent;
      tell([document.querySelectorAll("b").length, document.scripts.length,
            panel.endsWith("/target/<" + "/script><b>&\"")]);)");
  EXPECT_EQ(seen, (ordered_json{0, 2, true}));  // the page's script and this one
}

TEST_F(Browser, FitsNarrowAndWideWindows) {
  for (const char* size : {"--window-size=500,900", "--window-size=1700,1000"}) {
    const ordered_json seen = told(R"(
        tell([document.documentElement.scrollWidth <= window.innerWidth,
              document.getElementById("screen").getBoundingClientRect().width > 300]);)",
                                   {size});
    EXPECT_EQ(seen, (ordered_json{true, true})) << size;
  }
}

TEST_F(Browser, IsLightOrDarkAsThePersonWants) {
  const std::string look = "tell(getComputedStyle(document.body).backgroundColor);";
  EXPECT_EQ(told(look), "rgb(255, 255, 255)");
  EXPECT_EQ(told(look, {"--blink-settings=preferredColorScheme=0"}), "rgb(27, 31, 36)");
}

// The pictures that a person would see: their size, and that they are not the same.
TEST_F(Browser, ScreenshotsShowDifferentSteps) {
  std::set<std::string> pictures;
  for (const char* place : {"#step-1", "#step-9"}) {
    const std::string file = folder_->path() + "/picture.png";
    const ProgramRun run = open({"--screenshot=" + file, "--window-size=1400,1000"}, "", place);
    EXPECT_EQ(countOf(run.errors, "CONSOLE"), 0U) << run.errors;
    const std::string png = contentsOf(file);
    ASSERT_GT(png.size(), 20000U);
    EXPECT_EQ(png.substr(1, 3), "PNG");
    EXPECT_EQ(numberAt(png, 16), 1400U);
    EXPECT_EQ(numberAt(png, 20), 1000U);
    pictures.insert(png);
  }
  EXPECT_EQ(pictures.size(), 2U);
}

}  // namespace
}  // namespace tessarine::test::browser
