// What tests of the staging route stand on: a file to choose, and a panel that is clicked blind.
#pragma once

#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>
#include <string>
#include <vector>

#include "cli/entry.h"
#include "panels/reported_desktop.h"
#include "support/temporary_folder.h"

namespace tessarine::test {

// A file whose text no other file has, and the copies of it that the tool stages, removed at the
// end.
class StagedFile {
 public:
  explicit StagedFile(const std::string& name = "notes.txt")
      : path_(files_.makeFile("start/" + name, files_.path())) {}
  ~StagedFile() {
    for (const std::string& copy : copies()) std::filesystem::remove(copy);
  }
  StagedFile(const StagedFile&) = delete;
  StagedFile& operator=(const StagedFile&) = delete;

  const std::string& path() const { return path_; }
  const std::string& folder() const { return folder_; }

  std::vector<std::string> copies() const {
    std::vector<std::string> found;
    for (const auto& entry : std::filesystem::directory_iterator("/tmp")) {
      const std::string name = entry.path().filename().string();
      if (name.starts_with("zorvilet-upload-") && textOf(entry.path()) == files_.path()) {
        found.push_back(entry.path().string());
      }
    }
    return found;
  }

 private:
  static std::string textOf(const std::filesystem::path& file) {
    std::ifstream stream(file);
    return {std::istreambuf_iterator<char>(stream), {}};
  }

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

  Outcome run(const std::vector<std::string>& arguments) {
    std::vector<std::string> commandLine{"tessarine"};
    commandLine.insert(commandLine.end(), arguments.begin(), arguments.end());
    std::ostringstream output;
    std::ostringstream errors;
    const ExitStatus status = runTool(commandLine, output, errors);
    return {static_cast<int>(status), output.str(), errors.str()};
  }

  Point closesAt;
  std::int64_t closesOn;
  bool rowSelected = false;
};

// The results that the clicks on that panel lead to.
inline nlohmann::ordered_json stagingResult(const StagedFile& file, const std::string& strategy,
                                            const std::string& waitError) {
  return {{"ok", true},
          {"command", "choose-path"},
          {"path", file.path()},
          {"kind", "file"},
          {"basename", "notes.txt"},
          {"strategy", strategy},
          {"dialogPid", 900},
          {"dialogApp", "Open and Save Panel Service (Google Chrome)"},
          {"axWaitError", waitError},
          {"stagedPath", file.copies().at(0)},
          {"panelFrame", {{"x", 320.0}, {"y", 180.0}, {"width", 800.0}, {"height", 450.0}}},
          {"rowPoint", {{"x", 680.0}, {"y", 308.0}}}};
}
inline nlohmann::ordered_json rowAndButtonResult(const StagedFile& file, double buttonX,
                                                 const std::string& waitError) {
  auto result = stagingResult(file, "tmp-staging-first-row-mouse", waitError);
  result["openButtonPoint"] = {{"x", buttonX}, {"y", 550.0}};
  return result;
}
inline nlohmann::ordered_json doubleClickResult(const StagedFile& file,
                                                const std::string& waitError) {
  return stagingResult(file, "tmp-staging-first-row-double-click", waitError);
}

}  // namespace tessarine::test
