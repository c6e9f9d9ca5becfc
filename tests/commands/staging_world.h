// What tests of the staging route stand on: a file to choose, and a panel that is clicked blind.
#pragma once

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "panels/reported_desktop.h"
#include "support/temporary_folder.h"

namespace tessarine::test {

// The temporary folder for one test alone: what others stage there would be in its panel's list.
class OwnTmp {
 public:
  OwnTmp() { flock(folder_, LOCK_EX); }
  ~OwnTmp() { close(folder_); }
  OwnTmp(const OwnTmp&) = delete;
  OwnTmp& operator=(const OwnTmp&) = delete;

 private:
  int folder_ = open("/tmp", O_RDONLY | O_DIRECTORY | O_CLOEXEC);
};

// A file whose text no other file has, and the copies of it that the tool stages, removed at the
// end. One at a time.
class StagedFile {
 public:
  explicit StagedFile(const std::string& name = "notes.txt")
      : path_(files_.makeFile("start/" + name, files_.path())) {
    removeLeftovers();
  }
  ~StagedFile() {
    for (const std::string& copy : copies()) std::filesystem::remove(copy);
  }
  StagedFile(const StagedFile&) = delete;
  StagedFile& operator=(const StagedFile&) = delete;

  const std::string& path() const { return path_; }
  const std::string& folder() const { return folder_; }

  std::vector<std::string> copies() const {
    std::vector<std::string> found;
    for (const auto& entry : allCopies()) {
      if (textOf(entry.path()) == files_.path()) found.push_back(entry.path().string());
    }
    return found;
  }

 private:
  static std::vector<std::filesystem::directory_entry> allCopies() {
    std::vector<std::filesystem::directory_entry> found;
    for (const auto& entry : std::filesystem::directory_iterator("/tmp")) {
      if (entry.path().filename().string().starts_with("zorvilet-upload-")) found.push_back(entry);
    }
    return found;
  }
  // Of tests that were killed, told by a date that the machine's clock does not lead to.
  static void removeLeftovers() {
    const auto latest = std::filesystem::file_time_type::clock::now() + std::chrono::hours(2);
    for (const auto& entry : allCopies()) {
      if (entry.last_write_time() > latest) std::filesystem::remove(entry);
    }
  }
  static std::string textOf(const std::filesystem::path& file) {
    std::ifstream stream(file);
    return {std::istreambuf_iterator<char>(stream), {}};
  }

  OwnTmp tmp_;
  TemporaryFolder files_;
  std::string folder_ = files_.makeFolder("start");
  std::string path_;
};

// A panel of the service at 320, 180 with the extent 800 x 450, in no accessibility tree. Once its
// first row has been clicked, one click at a certain point closes it.
struct ClickedPanel : ReportedDesktop, simulator::InputReceiver {
  ClickedPanel(const Point& closingPoint, std::int64_t closingState)
      : closesAt(closingPoint), closesOn(closingState) {
    desktop.setScreens({{0, 0, 1440, 900}});
    desktop.addProcess({.pid = servicePid,
                        .name = chromeService,
                        .command = chromeService,
                        .application = false,
                        .host = browserPid});
    simulator::Window window;
    window.owner = servicePid;
    window.frame = {320, 180, 800, 450};
    desktop.addWindow(window);
    desktop.findProcess(servicePid)->receivers.push_back(this);
    windows = windowLine("7", servicePid, chromeService, "Open", "320,180,800,450");
  }

  bool keyEvent(const simulator::KeyEvent&, simulator::Route) override { return true; }
  bool mouseEvent(const simulator::MouseEvent& event, simulator::Window&,
                  simulator::Route) override {
    constexpr std::uint32_t leftUp = 2;
    if (event.type != leftUp) return true;
    const Point at{event.at.x, event.at.y};
    if (rowSelected && at == closesAt && event.clickState == closesOn) windows.clear();
    rowSelected = rowSelected || at == Point{680, 308};
    return true;
  }

  Point closesAt;
  std::int64_t closesOn;
  bool rowSelected = false;
};

// The results that clicks at a panel of that extent lead to.
struct PanelOwner {
  std::int32_t pid = servicePid;
  std::string app = chromeService;
};
inline nlohmann::ordered_json stagingResult(const StagedFile& file, const std::string& strategy,
                                            const std::string& waitError,
                                            const PanelOwner& owner = {}) {
  return {{"ok", true},
          {"command", "choose-path"},
          {"path", file.path()},
          {"kind", "file"},
          {"basename", "notes.txt"},
          {"strategy", strategy},
          {"dialogPid", owner.pid},
          {"dialogApp", owner.app},
          {"axWaitError", waitError},
          {"stagedPath", file.copies().at(0)},
          {"panelFrame", {{"x", 320.0}, {"y", 180.0}, {"width", 800.0}, {"height", 450.0}}},
          {"rowPoint", {{"x", 680.0}, {"y", 308.0}}}};
}
inline nlohmann::ordered_json rowAndButtonResult(const StagedFile& file, double buttonX,
                                                 const std::string& waitError,
                                                 const PanelOwner& owner = {}) {
  auto result = stagingResult(file, "tmp-staging-first-row-mouse", waitError, owner);
  result["openButtonPoint"] = {{"x", buttonX}, {"y", 550.0}};
  return result;
}
inline nlohmann::ordered_json doubleClickResult(const StagedFile& file,
                                                const std::string& waitError,
                                                const PanelOwner& owner = {}) {
  return stagingResult(file, "tmp-staging-first-row-double-click", waitError, owner);
}

}  // namespace tessarine::test
