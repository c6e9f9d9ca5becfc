// An Open panel that is really shown, and what is asked of it. On a Mac a small application of our
// own shows it (fixture/main.mm); elsewhere it stands on the simulated desktop, whose model takes
// for granted what these tests say. A Mac has the last word.
//
// On a Mac these tests take the foreground, type, click, move the pointer and set the view of this
// user's Open panels, which they put back: nobody else should use the machine meanwhile. Points are
// screen points, origin at the top left of the main display.
#pragma once

#include <gtest/gtest.h>
#include <sys/types.h>

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/element.h"
#include "support/temporary_folder.h"

namespace tessarine::test {

// How the panel is shown. It is a folder panel in English unless something else is asked for; where
// nothing is said, the simulated panel is what its model takes for usual.
struct PanelSpec {
  bool sheet = false;  // attached to the application's window; otherwise a window without one
  bool files = false;
  bool inFront = true;          // the application is frontmost
  bool untilComplete = true;    // whether to wait for its controls and its list
  std::string language = "en";  // or "zh-Hans", "de"
  // "columns" or "icons" are for tests of these views, which ask `showAs`.
  std::string view = "list";
  // What the application writes on its panel; where it is empty, the panel has its own words.
  std::string prompt = {};
  std::string message = {};
  // Names of disks that are there besides the folder's.
  std::vector<std::string> volumes = {};
};

struct ProgramEnd {
  int exitStatus = 0;
  std::string output;  // what it said, its errors included
};

// A desktop with an application that shows one panel.
class Stage {
 public:
  virtual ~Stage() = default;
  virtual pid_t application() const = 0;
  // The process that draws the panel for the application; absent when there is none.
  virtual std::optional<pid_t> service() const = 0;
  // The process that an element belongs to.
  virtual pid_t processOf(const Element& element) const = 0;
  // "open", "chosen PATH" without links in the path, or "cancelled".
  virtual std::string outcome() const = 0;
  // The application ends, its panel with it.
  virtual void quit() = 0;
  // Runs the tool to its end.
  virtual ProgramEnd runTool(const std::vector<std::string>& arguments) = 0;
};

// Why a test of another view than the list is left out.
inline constexpr const char* no_such_view =
    "the panel does not take its view from the user's defaults: choose this view in a panel once";

// Why nothing can be shown here, or that it can.
std::optional<std::string> reasonNotToRun();
std::unique_ptr<Stage> makeStage(const PanelSpec& spec, const std::string& folder);

class Live : public ::testing::Test {
 protected:
  void SetUp() override;
  void TearDown() override;

  // What the panel shows at first: empty, until the test puts something into it before `show`.
  const TemporaryFolder& folder() const { return folder_; }

  // An earlier panel and its application end first.
  void show(const PanelSpec& spec);
  // The same, in another view than the list: false where the panel shows itself in another one than
  // the one that was asked for.
  bool showAs(const PanelSpec& spec);
  Stage& stage() { return *stage_; }
  pid_t application() const { return stage_->application(); }
  // The process that draws the panel and takes its keys: the panel service, where there is one.
  pid_t keyTaker() const;

  // The panel's root. Throws when it is not there.
  Element panel() const;
  // The go-to sheet, absent while it is closed.
  std::optional<Element> goToSheet() const;

  std::string outcome() const { return stage_->outcome(); }
  // Waits, at most 5 s, for the end of the panel; its outcome then.
  std::string end() const;

 private:
  // Waits until the panel is complete; gives the view that it has.
  std::string awaitView() const;
  void awaitPlace(const PanelSpec& spec) const;

  TemporaryFolder folder_;
  std::unique_ptr<Stage> stage_;
};

// --- Elements below another one, breadth first. ---

using ElementTest = std::function<bool(const Element&)>;
std::vector<Element> elementsBelow(const Element& root, const ElementTest& matches);
// The first with this identifier, role or title. Each throws when there is none.
Element byIdentifier(const Element& root, const std::string& identifier);
Element byRole(const Element& root, const std::string& role);
Element byTitle(const Element& root, const std::string& role, const std::string& title);

// The names in the panel's list view, from top to bottom.
std::vector<std::string> listedNames(const Element& panel);
// The row that shows this name. Throws when there is none.
Element rowNamed(const Element& panel, const std::string& name);

}  // namespace tessarine::test
