// `background-window-capture list`.
#include <gtest/gtest.h>

#include "capture-helper/helper_desktop.h"
#include "platform/accessibility.h"

namespace tessarine::test::list {
namespace {

Outcome lines(const std::string& text) {
  return {0, text, ""};
}
Outcome list() {
  return runHelper({"list"});
}

TEST(List, PrintsTheWindowsOnTheScreenFrontToBack) {
  HelperDesktop world;
  world.addListed("Page", {0, 25, 1440, 875});
  world.addListed("Hidden", {0, 0, 1, 1}).listed = false;
  world.addListed("Elsewhere", {0, 0, 1, 1}).on_screen = false;
  world.addListed("打开", {-320.5, 100, 800, 448.25});
  EXPECT_EQ(list(),
            lines("104\tpid=812\tapp=Google Chrome\ttitle=打开\tframe=-320.5,100.0,800.0,448.25\n"
                  "101\tpid=812\tapp=Google Chrome\ttitle=Page\tframe=0.0,25.0,1440.0,875.0\n"));
  EXPECT_EQ(world.desktop.record().accessibilityRequests(), 0U);
}

TEST(List, PutsBlanksForWhatWouldBreakTheColumns) {
  HelperDesktop world;
  world.process().name = "App\twith\nbreaks\r\n";
  world.addListed(std::string("\tOpen\v\f\x7f\x1b") + '\0' + "é\u2028", {0, 0, 0, 0});
  EXPECT_EQ(list(), lines("101\tpid=812\tapp=App with breaks  \ttitle= Open     é\u2028\t"
                          "frame=0.0,0.0,0.0,0.0\n"));
}

TEST(List, PrintsNothingWithoutWindows) {
  HelperDesktop world;
  EXPECT_EQ(list(), lines(""));
}

// --- Without the Screen Recording permission. ---

struct WithheldTitles : HelperDesktop {
  explicit WithheldTitles(const std::string& name = "Google Chrome") : HelperDesktop(name) {
    desktop.faults().screen_recording_denied = true;
  }
  // The titles in the order of the list.
  std::vector<std::string> titles() {
    std::vector<std::string> found;
    std::istringstream printed(list().output);
    for (std::string line; std::getline(printed, line);) {
      const std::size_t at = line.find("\ttitle=") + 7;
      found.push_back(line.substr(at, line.find('\t', at) - at));
    }
    return found;
  }
};
using Titles = std::vector<std::string>;

TEST(WithheldTitles, ComeFromTheWindowOrSheetWithTheSameFrame) {
  WithheldTitles world;
  simulator::Element& page = world.addWindow("Page");
  simulator::Element& sheet = page.addChild("AXSheet");
  sheet.set("AXTitle", "Open");
  sheet.setFrame({150, 120, 600, 400});
  simulator::Element& inner = sheet.addChild("AXSheet");
  inner.set("AXTitle", "Go to Folder");
  inner.setFrame({200, 140, 300, 100});
  simulator::Element& group = page.addChild("AXGroup");
  group.set("AXTitle", "no window");
  group.setFrame({1, 2, 30, 40});
  world.addListed("", {150, 120, 600, 400});
  world.addListed("", {200, 140, 300, 100});
  world.addListed("", {1, 2, 30, 40});
  world.addListed("", {150, 120, 600, 400.5});
  EXPECT_EQ(world.titles(), (Titles{"", "", "Go to Folder", "Open", "Page"}));
}

TEST(WithheldTitles, AreNotTakenFromAnUntitledElement) {
  WithheldTitles world;
  simulator::Element& page = world.addWindow("Page");
  page.set("AXTitle", "");
  simulator::Element& sheet = page.addChild("AXSheet");
  sheet.set("AXTitle", "Open");
  sheet.setFrame({100, 100, 800, 600});
  EXPECT_EQ(world.titles(), Titles{"Open"});
}

// Front to back on both sides; a sheet is in front of its window.
TEST(WithheldTitles, AreGivenOnceWhereWindowsHaveTheSameFrame) {
  WithheldTitles world;
  world.addWindow("Back");
  world.addWindow("Front");
  EXPECT_EQ(world.titles(), (Titles{"Front", "Back"}));

  WithheldTitles twice;
  simulator::Element& page = twice.addWindow("Page");
  twice.addListed("", *page.frame());
  EXPECT_EQ(twice.titles(), (Titles{"Page", ""}));
  simulator::Element& sheet = page.addChild("AXSheet");
  sheet.set("AXTitle", "Open");
  sheet.setFrame(*page.frame());
  EXPECT_EQ(twice.titles(), (Titles{"Open", "Page"}));
}

TEST(WithheldTitles, OfAnUntitledOpenPanelAreOpen) {
  WithheldTitles world;
  simulator::Element& page = world.addWindow("Page");
  const std::vector<std::pair<std::string, std::string>> sheets{
      {"open-panel", ""}, {"save-panel", ""}, {"open-panel", "Pick"}};
  double x = 0;
  for (const auto& [identifier, title] : sheets) {
    simulator::Element& sheet = page.addChild("AXSheet");
    sheet.set("AXIdentifier", identifier);
    if (!title.empty()) sheet.set("AXTitle", title);
    sheet.setFrame({++x, 0, 600, 400});
    world.addListed("", *sheet.frame());
  }
  simulator::Element& window = world.addWindow("");
  window.set("AXIdentifier", "open-panel");
  window.setFrame({0, 5, 600, 400});
  world.desktop.windows().front()->frame = *window.frame();
  EXPECT_EQ(world.titles(), (Titles{"Open", "Pick", "", "Open", "Page"}));
}

// What the window server lists without a readable owner.
TEST(WithheldTitles, AreNotAskedForWithoutAProcess) {
  for (const std::int32_t pid : {0, -1}) {
    WithheldTitles world;
    world.desktop.addProcess({.pid = 701, .name = "Nobody", .command = "", .host = {}}).pid = pid;
    simulator::Window window;
    window.owner = pid;
    world.desktop.addWindow(window);
    EXPECT_EQ(world.titles(), Titles{""}) << pid;
    EXPECT_EQ(world.desktop.record().accessibilityRequests(), 0U) << pid;
  }
}

TEST(WithheldTitles, AreAskedForOnceOfEachProcessAndOnlyForOrdinaryWindowsAndPanels) {
  const std::vector<std::pair<int, bool>> layers{{-1, false}, {0, true},  {3, true},
                                                 {8, true},   {9, false}, {25, false}};
  for (const auto& [layer, asked] : layers) {
    WithheldTitles world;
    world.addWindow("Page");
    for (const auto& window : world.desktop.windows()) window->layer = layer;
    EXPECT_EQ(world.titles(), Titles{asked ? "Page" : ""}) << layer;
    EXPECT_EQ(world.desktop.record().accessibilityRequests() > 0, asked) << layer;
  }
  WithheldTitles once;
  once.addWindow("Page");
  once.titles();
  const std::size_t requests = once.desktop.record().accessibilityRequests();
  WithheldTitles twice;
  twice.addWindow("Page");
  twice.addListed("", {1, 2, 3, 4});
  EXPECT_EQ(twice.titles(), (Titles{"", "Page"}));
  EXPECT_EQ(twice.desktop.record().accessibilityRequests(), requests);
}

TEST(WithheldTitles, StayAwayWithoutTrust) {
  WithheldTitles world;
  world.desktop.faults().untrusted = true;
  world.addWindow("Page");
  EXPECT_EQ(world.titles(), Titles{""});
}

// Four answers about each window, half a second each: three windows are not asked about.
TEST(WithheldTitles, AreNotAwaitedWindowByWindow) {
  WithheldTitles world;
  for (int i = 0; i < 4; ++i) world.addWindow("Page").setReadableFrom(100);
  EXPECT_EQ(world.titles(), (Titles{"", "", "", ""}));
  EXPECT_GE(world.now(), 1.5);
  EXPECT_LT(world.now(), 2.1);
}

// The process answered with the window's children and then no more.
TEST(WithheldTitles, AreNotAwaitedChildByChild) {
  WithheldTitles world;
  simulator::Element& page = world.addWindow("Page");
  for (int i = 0; i < 30; ++i) page.addChild("AXSheet").setReadableFrom(100);
  EXPECT_EQ(world.titles(), Titles{"Page"});
  EXPECT_GE(world.now(), 1.5);
  EXPECT_LE(world.now(), 2.0);
}

// A process that does not answer, with a window in front of the others.
void addSilentProcess(WithheldTitles& world, std::int32_t pid) {
  world.desktop.addProcess(
      {.pid = pid, .name = "Silent", .command = "/Silent", .application = true, .host = {}});
  world.desktop.faults().silent_processes.insert(pid);
  simulator::Window window;
  window.owner = pid;
  world.desktop.addWindow(window);
}

// Shortly before the end of the time a process tells its windows and then no more; a frame takes
// two answers.
TEST(WithheldTitles, AreAwaitedForOneAnswerBeyondTheEndAtMost) {
  for (const double last : {1.01, 1.2, 1.4, 1.49}) {
    WithheldTitles world;
    world.addWindow("Page").setReadableFrom(100);
    world.app().setReadableFrom(last);
    for (const std::int32_t pid : {701, 702}) addSilentProcess(world, pid);
    EXPECT_EQ(world.titles(), (Titles{"", "", ""})) << last;
    EXPECT_GE(world.now(), 1.5) << last;
    EXPECT_LE(world.now(), 2.0) << last;
  }
}

// A process that does not answer costs half a second; after one and a half nobody is asked.
TEST(WithheldTitles, DoNotKeepTheListWaiting) {
  WithheldTitles world("Notes");
  world.addWindow("Page");  // the last in the list
  for (std::int32_t pid = 701; pid <= 704; ++pid) addSilentProcess(world, pid);
  EXPECT_EQ(world.titles(), (Titles{"", "", "", "", ""}));
  EXPECT_DOUBLE_EQ(world.now(), 1.502) << "the list itself takes 0.002 s";

  WithheldTitles few("Notes");
  few.addWindow("Page");
  addSilentProcess(few, 701);
  EXPECT_EQ(few.titles(), (Titles{"", "Page"}));
  EXPECT_GE(few.now(), 0.5);
  EXPECT_LT(few.now(), 0.6);
}

// A browser stands behind what the person at the machine works with, and is asked before it.
TEST(WithheldTitles, OfABrowserAreReadHoweverManyWindowsInFrontOfItDoNotAnswer) {
  for (const char* name : {"Google Chrome", "Google Chrome Dev", "Microsoft Edge",
                           "Open and Save Panel Service (Google Chrome)"}) {
    WithheldTitles world(name);
    world.addWindow("Page");
    for (std::int32_t pid = 701; pid <= 704; ++pid) addSilentProcess(world, pid);
    EXPECT_EQ(world.titles(), (Titles{"", "", "", "", "Page"})) << name;
  }
}

TEST(WithheldTitles, AreLookedForInPlaceOfEmptyOnesToo) {
  WithheldTitles world;
  world.desktop.faults().screen_recording_denied = false;
  simulator::Element& page = world.addWindow("Page");
  world.desktop.findWindow(101)->title = "";
  EXPECT_EQ(world.titles(), Titles{"Page"});
  page.set("AXTitle", std::string());
  EXPECT_EQ(world.titles(), Titles{""});
}

TEST(WithheldTitles, LeaveTheDefaultAnswerLimitBehind) {
  WithheldTitles world;
  world.addWindow("Page").setReadableFrom(5);
  EXPECT_EQ(world.titles(), Titles{""});
  EXPECT_LT(world.now(), 5);
  EXPECT_EQ(axTitle(world.handle(*world.app().children().at(0))), "Page");
  EXPECT_GE(world.now(), 5) << "waited until it was readable";
}

}  // namespace
}  // namespace tessarine::test::list
