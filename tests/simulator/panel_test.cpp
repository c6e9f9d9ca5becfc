// The Open panel: its tree in every shape and language, keys, clicks, both generations of the go-to
// sheet, what it chooses, and how it fails when told to. Driven as a program drives it: by requests
// to the desktop and by letting its time pass.
#include "simulator/panel/open_panel.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "simulator/panel/folder.h"
#include "simulator/panel/panel_texts.h"
#include "tests/simulator/panel_world.h"

namespace simulator::panel {
namespace {

// One line for each element, without what stands in the sidebar and in a page.
std::string drawn(const Element& element, const std::string& indent = "") {
  std::string line = indent + element.role();
  for (const char* attribute :
       {"AXSubrole", "AXIdentifier", "AXTitle", "AXDescription", "AXFilename", "AXValue"}) {
    const Value* value = element.get(attribute);
    const auto* text = value != nullptr ? std::get_if<std::string>(value) : nullptr;
    if (text != nullptr) line += " " + std::string(attribute).substr(2) + "=" + *text;
  }
  line += "\n";
  const Value* description = element.get("AXDescription");
  const bool sidebar = description != nullptr &&
                       (*description == Value("sidebar") || *description == Value("边栏") ||
                        *description == Value("Seitenleiste"));
  if (sidebar || element.role() == "AXWebArea") return line;
  for (const auto& child : element.children()) line += drawn(*child, indent + " ");
  return line;
}

const char* const english_lists = R"( AXSplitGroup
  AXScrollArea
   AXOutline Description=sidebar
  AXSplitter
  AXScrollArea
   AXOutline Identifier=ListView Description=list view
    AXRow
     AXCell
      AXStaticText Value=Name
    AXRow Subrole=AXOutlineRow
     AXCell
      AXImage
      AXTextField Filename=Alpha Value=Alpha
    AXRow Subrole=AXOutlineRow
     AXCell
      AXImage
      AXTextField Filename=beta Value=beta
    AXRow Subrole=AXOutlineRow
     AXCell
      AXImage
      AXTextField Filename=file 9.txt Value=file 9.txt
    AXRow Subrole=AXOutlineRow
     AXCell
      AXImage
      AXTextField Filename=file10.txt Value=file10.txt
  AXMenuButton Description=View Options
  AXMenuButton Description=Group or Sort By
)";

std::string englishControls(const std::string& folder, const std::string& confirm) {
  return "  AXPopUpButton Identifier=where popup Title=Where: Value=" + folder +
         R"(
  AXTextField Subrole=AXSearchField Identifier=Search Value=
  AXButton Description=back
  AXButton Description=forward
  AXButton Identifier=NewFolderButton Title=New Folder
  AXButton Identifier=CancelButton Title=Cancel
  AXButton Identifier=OKButton Title=)" +
         confirm + "\n";
}

std::string fileName(const std::string& path) {
  return fs::path(path).filename().string();
}

TEST(PanelTree, ServiceWindowStandsInTheServiceAlone) {
  PanelWorld world(Json{{"listColumns", 1}});
  EXPECT_EQ(drawn(world.identified("open-panel")),
            R"(AXWindow Subrole=AXDialog Identifier=open-panel Title=Open Description=open
 AXButton Subrole=AXCloseButton
 AXButton Subrole=AXMinimizeButton
 AXButton Subrole=AXZoomButton
 AXStaticText Value=Open
 AXStaticText Value=Select the extension directory.
)" + std::string(english_lists) +
                englishControls(fileName(world.sample.path()), "Choose"));
  const Element& root = world.identified("open-panel");
  EXPECT_EQ(world.read({service, 0}, "AXWindows").value, Value(List{root.id()}));
  EXPECT_EQ(world.focusedWindow(service), Value(root.id()));
  EXPECT_EQ(std::get<List>(world.read({host, 0}, "AXWindows").value).size(), 1U);
}

TEST(PanelTree, HostWindowStandsAmongTheBrowsersWindows) {
  PanelWorld world(Json{{"shape", "host-window"}, {"modal", false}, {"title", "Pick"}});
  const Element& root = world.identified("open-panel");
  EXPECT_EQ(root.parent(), &world.desktop().findProcess(host)->root);
  EXPECT_EQ(drawn(root).substr(0, drawn(root).find('\n')),
            "AXWindow Subrole=AXStandardWindow Identifier=open-panel Title=Pick Description=open");
  EXPECT_EQ(std::get<List>(world.read({host, 0}, "AXWindows").value).size(), 2U);
  EXPECT_EQ(world.focusedWindow(host), Value(root.id()));
  EXPECT_EQ(world.read({service, 0}, "AXWindows").value, Value(List{}));
}

TEST(PanelTree, SheetHangsFromTheBrowsersWindowAndHasNoTitle) {
  PanelWorld world(Json{{"shape", "host-sheet"}, {"prompt", "Select"}, {"listColumns", 1}});
  const Element& root = world.identified("open-panel");
  EXPECT_EQ(drawn(root),
            "AXSheet Identifier=open-panel Description=open\n"
            " AXStaticText Value=Select the extension directory.\n" +
                std::string(english_lists) +
                englishControls(fileName(world.sample.path()), "Select"));
  EXPECT_EQ(world.text(*root.parent(), "AXTitle"), "Extensions");
  EXPECT_EQ(world.focusedWindow(host), Value(root.id()));
  EXPECT_EQ(world.read(root.id(), "AXTitle").error, ax::attributeUnsupported);
}

TEST(PanelTree, EmbeddedChooserLeavesTheWindowItsTitleAndSaysWhatItWants) {
  PanelWorld world(Json{{"shape", "embedded"}, {"listColumns", 1}});
  const Element& root = world.identified("open-panel");
  EXPECT_EQ(drawn(root),
            "AXGroup Identifier=open-panel Description=open\n"
            " AXStaticText Value=Select the extension directory.\n" +
                std::string(english_lists) +
                englishControls(fileName(world.sample.path()), "Choose"));
  EXPECT_EQ(root.parent()->role(), "AXWindow");
  EXPECT_EQ(world.text(*root.parent(), "AXTitle"), "Extensions");
}

TEST(PanelTree, SpeaksChineseAndGerman) {
  PanelWorld chinese(Json{{"shape", "host-window"}}, {{"language", "zh-Hans"}});
  EXPECT_EQ(chinese.text(chinese.identified("open-panel"), "AXTitle"), "打开");
  EXPECT_EQ(chinese.text(chinese.identified("OKButton"), "AXTitle"), "选择");
  EXPECT_EQ(chinese.text(chinese.identified("CancelButton"), "AXTitle"), "取消");
  EXPECT_EQ(chinese.text(chinese.identified("ListView"), "AXDescription"), "列表视图");
  EXPECT_EQ(chinese.text(chinese.identified("where popup"), "AXTitle"), "位置：");
  EXPECT_EQ(chinese.all("AXDescription", "边栏").size(), 1U);
  PanelWorld german(Json{{"mode", "files"}}, {{"language", "de"}});
  EXPECT_EQ(german.text(german.identified("OKButton"), "AXTitle"), "Öffnen");
  EXPECT_EQ(german.text(german.identified("CancelButton"), "AXTitle"), "Abbrechen");
  EXPECT_EQ(german.all("AXDescription", "Seitenleiste").size(), 1U);
}

TEST(PanelTree, RowsCarryNameLocationAndWhetherTheyCanBeChosen) {
  PanelWorld world;
  const std::string url = "file://" + world.sample.path();
  EXPECT_EQ(world.read(world.named("Alpha").id(), "AXURL").value, Value(Url{url + "/Alpha/"}));
  EXPECT_EQ(world.read(world.named("file 9.txt").id(), "AXURL").value,
            Value(Url{url + "/file%209.txt"}));
  EXPECT_TRUE(world.enabled(world.named("Alpha")));
  EXPECT_FALSE(world.enabled(world.named("file10.txt")));
  EXPECT_EQ(world.desktop().answer(CopyActionNames{world.named("Alpha").id()}).value,
            Value(List{"AXOpen"}));
}

TEST(PanelTree, ControlsStandInsideThePanelAndDoNotOverlap) {
  PanelWorld world;
  std::vector<Rect> frames;
  for (const char* identifier :
       {"where popup", "Search", "NewFolderButton", "CancelButton", "OKButton", "ListView"}) {
    frames.push_back(*world.identified(identifier).frame());
  }
  const Rect panel = world.panel().options().frame;
  for (std::size_t i = 0; i < frames.size(); ++i) {
    const Rect& a = frames[i];
    EXPECT_TRUE(contains(panel, {a.x, a.y}));
    EXPECT_TRUE(contains(panel, {a.x + a.width - 1, a.y + a.height - 1}));
    for (std::size_t j = 0; j < i; ++j) {
      const Rect& b = frames[j];
      const bool apart = a.x >= b.x + b.width || b.x >= a.x + a.width || a.y >= b.y + b.height ||
                         b.y >= a.y + a.height;
      EXPECT_TRUE(apart) << i << " and " << j;
    }
  }
}

TEST(PanelWindows, AreListedAsTheOptionSays) {
  const auto listed = [](const char* option) {
    PanelWorld world(Json{{"listed", option}});
    Texts owners;
    for (const auto& window : world.desktop().windows()) {
      if (window->title == "Open" && window->listed) {
        EXPECT_EQ(window->frame, world.panel().options().frame);
        owners.push_back(world.desktop().findProcess(window->owner)->name);
      }
    }
    return owners;
  };
  const std::string drawer = "Open and Save Panel Service (Google Chrome)";
  EXPECT_EQ(listed("host-and-service"), (Texts{drawer, "Google Chrome"}));
  EXPECT_EQ(listed("host"), Texts{"Google Chrome"});
  EXPECT_EQ(listed("service"), Texts{drawer});
  EXPECT_EQ(listed("none"), Texts{});
}

TEST(PanelOpening, WindowAppearsInSteps) {
  PanelWorld world(Json{{"opensAtSeconds", 1}});
  const auto seen = [&](Seconds at, const char* identifier) {
    world.desktop().advanceTo(at);
    return world.all("AXIdentifier", identifier).size() == 1;
  };
  EXPECT_EQ(world.desktop().findProcess(service), nullptr);
  EXPECT_FALSE(seen(1.049, "open-panel"));
  EXPECT_TRUE(seen(1.051, "open-panel"));
  EXPECT_FALSE(seen(1.44, "ListView"));
  EXPECT_TRUE(seen(1.46, "ListView"));
  EXPECT_FALSE(seen(1.47, "OKButton"));
  EXPECT_TRUE(seen(1.49, "OKButton"));
}

TEST(PanelOpening, FirstReadOfASheetBlocksUntilItIsReadable) {
  PanelWorld world(Json{{"shape", "host-sheet"}, {"opensAtSeconds", 1}});
  world.desktop().advanceTo(1.1);
  const ElementId root = world.identified("open-panel").id();
  EXPECT_NEAR(world.desktop().price(CopyAttribute{root, "AXChildren"}), 0.2, 1e-9);
  world.desktop().advanceTo(1.73);
  EXPECT_EQ(world.all("AXIdentifier", "OKButton").size(), 0U);
  world.desktop().advanceTo(1.75);
  EXPECT_EQ(world.all("AXIdentifier", "OKButton").size(), 1U);
  EXPECT_LT(world.desktop().price(CopyAttribute{root, "AXChildren"}), 0.001);
}

TEST(PanelOpening, SlowPanelTakesAMultipleOfEveryDelay) {
  PanelWorld world(Json{{"opensAtSeconds", 1}, {"slow", 10}});
  world.desktop().advanceTo(20);
  EXPECT_EQ(world.milestone("panel opened"), 1500);
  EXPECT_EQ(world.milestone("folder shown " + world.sample.path()), 5500);
  world.key(key::g, command | shift);
  world.pass(10);
  EXPECT_EQ(world.milestone("go-to sheet opened"), 21300);
}

TEST(PanelChoice, PressOfTheConfirmButtonChoosesTheFolderShown) {
  PanelWorld world;
  const ElementId root = world.identified("open-panel").id();
  EXPECT_EQ(world.perform(world.identified("OKButton"), "AXPress"), ax::success);
  EXPECT_EQ(world.panel().outcome(), chosen(world.sample.path(), 0.1));
  EXPECT_EQ(world.read(root, "AXRole").error, ax::success);
  world.pass(0.021);
  EXPECT_EQ(world.read(root, "AXRole").error, ax::invalidElement);
  EXPECT_FALSE(world.desktop().findProcess(service)->terminated) << "it outlives its panel";
  for (const auto& window : world.desktop().windows()) EXPECT_NE(window->title, "Open");
  EXPECT_EQ(world.milestone("panel closed: chosen " + world.sample.path()), 120);
}

TEST(PanelChoice, SelectedFolderWinsOverTheFolderShown) {
  PanelWorld world;
  EXPECT_EQ(
      world.write(world.identified("ListView"), "AXSelectedRows", List{world.rowOf("beta").id()}),
      ax::success);
  EXPECT_EQ(world.read(world.identified("ListView").id(), "AXSelectedRows").value,
            Value(List{world.rowOf("beta").id()}));
  world.key(key::returnKey);
  EXPECT_EQ(world.panel().outcome(), chosen(world.sample.path("beta"), 0));
}

TEST(PanelChoice, FolderPanelDoesNotSelectFiles) {
  PanelWorld world;
  world.write(world.identified("ListView"), "AXSelectedRows", List{world.rowOf("file10.txt").id()});
  EXPECT_EQ(world.read(world.identified("ListView").id(), "AXSelectedRows").value, Value(List{}));
}

TEST(PanelChoice, FilePanelConfirmsOnlyWithASelection) {
  PanelWorld world(Json{{"mode", "files"}});
  EXPECT_FALSE(world.enabled(world.identified("OKButton")));
  EXPECT_EQ(world.perform(world.identified("OKButton"), "AXPress"), ax::success);
  world.key(key::returnKey);
  EXPECT_EQ(world.panel().outcome(), PanelOutcome{});
  world.write(world.identified("ListView"), "AXSelectedRows", List{world.rowOf("file 9.txt").id()});
  EXPECT_TRUE(world.enabled(world.identified("OKButton")));
  world.key(key::o, command);
  EXPECT_EQ(world.panel().outcome(), chosen(world.sample.path("file 9.txt"), 0.1));
}

TEST(PanelChoice, FilePanelEntersASelectedFolderWhenItIsConfirmed) {
  PanelWorld world(Json{{"mode", "files"}});
  world.write(world.identified("ListView"), "AXSelectedRows", List{world.rowOf("Alpha").id()});
  world.key(key::returnKey);
  world.pass(0.2);
  EXPECT_EQ(world.panel().outcome(), PanelOutcome{});
  EXPECT_EQ(world.shownNames(), Texts{"inner"});
}

TEST(PanelChoice, CancelButtonAndCloseButtonCancel) {
  PanelWorld button;
  button.perform(button.identified("CancelButton"), "AXPress");
  EXPECT_EQ(button.panel().outcome(), cancelled(0.1));
  PanelWorld title;
  title.perform(*title.identified("open-panel").children().front(), "AXPress");
  EXPECT_EQ(title.panel().outcome(), cancelled(0.1));
}

TEST(PanelKeys, ConfirmAndCancelAsMeasured) {
  const auto after = [](std::uint16_t code, std::uint64_t flags) {
    PanelWorld world;
    world.key(code, flags);
    return world.panel().outcome().end;
  };
  using End = PanelOutcome::End;
  EXPECT_EQ(after(key::returnKey, 0), End::chosen);
  EXPECT_EQ(after(key::keypadEnter, 0), End::chosen);
  EXPECT_EQ(after(key::down, command), End::chosen);
  EXPECT_EQ(after(key::o, command), End::chosen);
  EXPECT_EQ(after(key::escape, 0), End::cancelled);
  EXPECT_EQ(after(key::period, command), End::cancelled);
  EXPECT_EQ(after(key::returnKey, shift), End::none);
  EXPECT_EQ(after(key::returnKey, command), End::none);
  EXPECT_EQ(after(48, 0), End::none) << "Tab";
}

TEST(PanelKeys, ReachThePanelThroughTheProcessThatTheOptionNames) {
  const auto reaches = [](const char* option, std::optional<Pid> target, Pid frontmost) {
    PanelWorld world(Json{{"keysReach", option}}, {{"frontmost", frontmost}});
    world.key(key::returnKey, 0, target);
    return world.panel().outcome().end == PanelOutcome::End::chosen;
  };
  EXPECT_TRUE(reaches("service", service, 300));
  EXPECT_FALSE(reaches("service", host, 300));
  EXPECT_FALSE(reaches("host", service, 300));
  EXPECT_TRUE(reaches("host", host, 300));
  EXPECT_TRUE(reaches("both", service, 300));
  EXPECT_TRUE(reaches("both", host, 300));
  EXPECT_FALSE(reaches("service-while-host-frontmost", service, 300));
  EXPECT_TRUE(reaches("service-while-host-frontmost", service, host));
  EXPECT_TRUE(reaches("service", std::nullopt, host)) << "typed on the keyboard";
  EXPECT_FALSE(reaches("service", std::nullopt, 300)) << "typed into another application";
}

TEST(PanelKeys, ArrowsMoveTheSelectionOnceTheListHasTheKeyboard) {
  PanelWorld world;
  world.key(key::down);
  EXPECT_EQ(world.read(world.identified("ListView").id(), "AXSelectedRows").value, Value(List{}));
  world.click(world.rowOf("Alpha"));
  world.key(key::down);
  EXPECT_EQ(world.read(world.identified("ListView").id(), "AXSelectedRows").value,
            Value(List{world.rowOf("beta").id()}));
  world.key(key::down);
  world.key(key::up);
  world.key(key::up);
  EXPECT_EQ(world.read(world.rowOf("Alpha").id(), "AXSelected").value, Value(true));
}

TEST(PanelMouse, DoubleClickOpensAFolderAndAButtonActsWhenTheMouseIsLetGo) {
  PanelWorld world;
  world.click(world.rowOf("Alpha"));
  EXPECT_EQ(world.read(world.rowOf("Alpha").id(), "AXSelected").value, Value(true));
  world.click(world.rowOf("Alpha"), 2);
  world.pass(0.2);
  EXPECT_EQ(world.shownNames(), Texts{"inner"});
  world.click(world.identified("OKButton"));
  EXPECT_EQ(world.panel().outcome().path, world.sample.path("Alpha"));
}

TEST(PanelKeys, CommandDownOpensASelectedFolderAndConfirmsWithoutOne) {
  PanelWorld world;
  world.click(world.rowOf("Alpha"));
  world.key(key::down, command);
  world.pass(0.11);
  EXPECT_EQ(world.panel().folderShown(), world.sample.path("Alpha"));
  world.key(key::down, command);
  EXPECT_EQ(world.panel().outcome().path, world.sample.path("Alpha"));
  PanelWorld files(Json{{"mode", "files"}});
  files.click(files.rowOf("file10.txt"));
  files.key(key::down, command);
  EXPECT_EQ(files.panel().outcome().path, files.sample.path("file10.txt"));
}

TEST(PanelKeys, RightArrowCommandAAndDeleteLeaveASelectionAsItIs) {
  PanelWorld world;
  world.click(world.rowOf("Alpha"));
  world.key(key::right);
  world.key(key::a, command);
  world.key(key::backspace);
  world.pass(0.5);
  EXPECT_EQ(world.panel().folderShown(), world.sample.path());
  EXPECT_EQ(world.read(world.identified("ListView").id(), "AXSelectedRows").value,
            Value(List{world.rowOf("Alpha").id()}));
}

TEST(PanelKeys, ChordOfTheSessionReachesThePanelOfTheApplicationInFrontAlone) {
  const auto opens = [](const char* shape, Pid frontmost) {
    PanelWorld world(Json{{"shape", shape}}, {{"frontmost", frontmost}});
    world.key(key::g, command | shift, std::nullopt);
    world.pass(0.5);
    return world.all("AXIdentifier", "GoToWindow").size() == 1;
  };
  for (const char* shape : {"service-window", "host-window", "host-sheet", "embedded"}) {
    EXPECT_TRUE(opens(shape, host)) << shape;
    EXPECT_FALSE(opens(shape, 300)) << shape;
  }
}

TEST(PanelMouse, FirstClickAnywhereInABackgroundPanelGivesItsListTheKeyboard) {
  PanelWorld world;
  const Element& list = world.identified("ListView");
  EXPECT_EQ(world.read(list.id(), "AXFocused").value, Value(false));
  const Rect panel = world.panel().options().frame;
  const Point bar{panel.x + 60, panel.y + panel.height - 5};
  world.desktop().answer(PostEvent{MouseEvent{1, bar, 1}, service});
  EXPECT_EQ(world.read(list.id(), "AXFocused").value, Value(true));
  world.key(key::down);
  EXPECT_EQ(world.read(world.rowOf("Alpha").id(), "AXSelected").value, Value(true));
}

TEST(PanelMouse, ClickThroughTheSessionGoesToTheWindowOnTopAndBringsTheBrowserForward) {
  PanelWorld world;
  const Rect row = *world.rowOf("beta").frame();
  const auto click = [&](Point at) {
    for (const std::uint32_t type : {1U, 2U}) {
      world.desktop().answer(PostEvent{MouseEvent{type, at, 1}, std::nullopt});
    }
  };
  click({row.x + 100, row.y + 12});
  EXPECT_EQ(world.desktop().frontmost(), host);
  EXPECT_EQ(world.read(world.rowOf("beta").id(), "AXSelected").value, Value(true));
  world.key(key::returnKey, 0, std::nullopt);
  EXPECT_EQ(world.panel().outcome().path, world.sample.path("beta"));
}

TEST(PanelMouse, ClicksOnSidebarMenuAndSearchField) {
  PanelWorld world;
  const std::string home = fileName(world.sample.path());
  world.click(world.identified("where popup"), 1, host);
  world.pass(0.41);
  const Element& above = *world.one("AXTitle", "Where:").children()[0]->children()[1];
  world.click(above);
  world.pass(0.11);
  EXPECT_EQ(world.panel().folderShown(), parentFolder(world.sample.path()));
  const auto places = world.all("AXValue", home);
  world.click(*places.front());
  world.pass(0.11);
  EXPECT_EQ(world.panel().folderShown(), world.sample.path());
  world.click(world.identified("Search"));
  world.type("beta");
  world.pass(0.31);
  EXPECT_EQ(world.shownNames(), Texts{"beta"});
  world.key(key::returnKey);
  EXPECT_EQ(world.panel().outcome(), PanelOutcome{});
}

TEST(PanelNavigation, OpenOfARowReportsAnErrorAndNavigates) {
  PanelWorld world;
  const ElementId old = world.named("Alpha").id();
  EXPECT_EQ(world.perform(world.named("Alpha"), "AXOpen"), ax::attributeUnsupported);
  world.pass(0.11);
  EXPECT_EQ(world.shownNames(), Texts{"inner"});
  EXPECT_EQ(world.read(old, "AXValue").error, ax::invalidElement);
  EXPECT_EQ(world.text(world.identified("where popup")), "Alpha");
  EXPECT_TRUE(world.enabled(world.one("AXDescription", "back")));
  world.perform(world.one("AXDescription", "back"), "AXPress");
  world.pass(0.11);
  EXPECT_EQ(world.panel().folderShown(), world.sample.path());
  world.perform(world.one("AXDescription", "forward"), "AXPress");
  world.pass(0.11);
  EXPECT_EQ(world.panel().folderShown(), world.sample.path("Alpha"));
}

TEST(PanelNavigation, MenuOfEnclosingFoldersExistsOnlyWhileItIsOpen) {
  PanelWorld world(Json{{"folder", "/usr"}}, {{"volume", "Disk"}});
  Element& popUp = world.identified("where popup");
  EXPECT_TRUE(popUp.children().empty());
  EXPECT_EQ(world.perform(popUp, "AXShowMenu"), ax::success);
  world.pass(0.39);
  EXPECT_TRUE(popUp.children().empty());
  world.pass(0.02);
  EXPECT_EQ(drawn(popUp),
            "AXPopUpButton Identifier=where popup Title=Where: Value=usr\n"
            " AXMenu\n  AXMenuItem Title=usr\n  AXMenuItem Title=Disk\n");
  EXPECT_EQ(world.perform(*popUp.children()[0]->children()[1], "AXPick"), ax::success);
  EXPECT_TRUE(popUp.children().empty());
  world.pass(0.11);
  EXPECT_EQ(world.panel().folderShown(), "/");
  EXPECT_EQ(world.text(popUp), "Disk");
}

// Opens the go-to sheet, writes the path and presses Return half a second after the chord.
void goTo(PanelWorld& world, const std::string& path) {
  world.key(key::g, command | shift);
  world.pass(0.5);
  world.key(key::a, command);
  world.type(path);
  world.key(key::returnKey);
}

TEST(GoToSheet, NewSheetOpensTakesAPathAndLeadsThereInTheMeasuredTimes) {
  PanelWorld world;
  goTo(world, "/usr/bin");
  EXPECT_EQ(world.text(world.identified("PathTextField")), "/usr/bin");
  EXPECT_FALSE(world.enabled(world.identified("OKButton")));
  world.pass(0.349);
  EXPECT_EQ(world.panel().folderShown(), world.sample.path());
  world.pass(0.002);
  EXPECT_EQ(world.panel().folderShown(), fs::canonical("/usr/bin").string());
  EXPECT_EQ(world.all("AXIdentifier", "GoToWindow").size(), 0U);
  EXPECT_FALSE(world.enabled(world.identified("OKButton")));
  world.pass(0.06);
  EXPECT_TRUE(world.enabled(world.identified("OKButton")));
  EXPECT_EQ(world.milestone("go-to sheet opened"), 130);
  EXPECT_EQ(world.milestone("go-to sheet ready"), 330);
  EXPECT_EQ(world.milestone("go-to sheet closed"), 850);
}

TEST(GoToSheet, NewSheetLooksLikeThis) {
  PanelWorld world({}, {{"lastGoToPath", "/usr"}});
  world.key(key::g, command | shift);
  world.pass(0.2);
  const Element& sheet = world.identified("GoToWindow");
  EXPECT_TRUE(sheet.children().empty());
  EXPECT_EQ(sheet.parent(), &world.identified("open-panel"));
  EXPECT_EQ(world.focusedWindow(service), Value(sheet.id()));
  world.pass(0.2);
  EXPECT_EQ(drawn(sheet), R"(AXSheet Identifier=GoToWindow Title=
 AXStaticText Value=Go to the folder:
 AXTextField Identifier=PathTextField Value=/usr
 AXScrollArea
  AXTable
   AXRow
    AXCell
     AXStaticText Value=/usr
 AXButton Subrole=AXCloseButton Title=
)");
  EXPECT_EQ(world.read({service, 0}, "AXFocusedUIElement").value,
            Value(world.identified("PathTextField").id()));
  EXPECT_EQ(world.perform(sheet, "AXCancel"), ax::actionUnsupported);
  EXPECT_EQ(world.perform(world.identified("PathTextField"), "AXConfirm"), ax::success);
  world.pass(1);
  EXPECT_EQ(world.all("AXIdentifier", "GoToWindow").size(), 1U) << "AXConfirm does nothing";
}

TEST(GoToSheet, OldSheetConfirmsByActionAndByButton) {
  PanelWorld world(Json{{"goTo", {{"generation", "old"}}}}, {{"lastGoToPath", "/usr"}});
  world.key(key::g, command | shift);
  world.pass(0.5);
  const Element& field = *world.one("AXValue", "/usr").parent()->children()[1];
  EXPECT_EQ(drawn(*field.parent()), R"(AXSheet Title=
 AXStaticText Value=Go to the folder:
 AXTextField Value=/usr
 AXButton Title=Cancel
 AXButton Title=Go
)");
  EXPECT_EQ(world.write(field, "AXValue", "~/Alpha/"), ax::success);
  EXPECT_EQ(world.perform(field, "AXConfirm"), ax::success);
  world.pass(0.36);
  EXPECT_EQ(world.panel().folderShown(), world.sample.path("Alpha"));
  world.key(key::g, command | shift);
  world.pass(0.5);
  Element& again = world.one("AXValue", "~/Alpha/");
  world.write(again, "AXValue", "/usr");
  world.perform(world.one("AXTitle", "Go"), "AXPress");
  world.pass(0.36);
  EXPECT_EQ(world.panel().folderShown(), "/usr");
}

TEST(GoToSheet, OldSheetMayHoldAComboBox) {
  PanelWorld world(
      Json{{"goTo", {{"generation", "old"}, {"comboBox", true}, {"openAtStart", true}}}},
      {{"lastGoToPath", "/usr"}});
  EXPECT_EQ(world.one("AXValue", "/usr").role(), "AXComboBox");
  EXPECT_FALSE(world.enabled(world.identified("OKButton")));
}

TEST(GoToSheet, LosesKeysBeforeItsFieldHasTheKeyboardAndWhileItCloses) {
  PanelWorld world({}, {{"lastGoToPath", "/usr"}});
  world.key(key::g, command | shift);
  world.pass(0.32);
  world.type("/lost");
  world.key(key::returnKey);
  world.pass(0.02);
  EXPECT_EQ(world.text(world.identified("PathTextField")), "/usr");
  world.key(key::returnKey);
  world.pass(0.1);
  world.key(key::returnKey);
  world.pass(1);
  EXPECT_EQ(world.panel().outcome(), PanelOutcome{});
  world.key(key::returnKey);
  EXPECT_EQ(world.panel().outcome().path, "/usr");
}

TEST(GoToSheet, EditsItsFieldByKeys) {
  PanelWorld world({}, {{"lastGoToPath", "/old"}});
  world.key(key::g, command | shift);
  world.pass(0.5);
  world.key(44);  // the slash of the US layout replaces the selected path
  world.key(32);
  world.type("é文");
  EXPECT_EQ(world.text(world.identified("PathTextField")), "/ué文");
  world.key(key::backspace);
  world.key(key::backspace);
  EXPECT_EQ(world.text(world.identified("PathTextField")), "/u");
  world.key(key::a, command);
  world.key(key::backspace);
  EXPECT_EQ(world.text(world.identified("PathTextField")), "");
}

TEST(GoToSheet, TakesAndDeletesCharactersThatAreSeveralUnits) {
  PanelWorld world({}, {{"lastGoToPath", "/old"}});
  world.key(key::g, command | shift);
  world.pass(0.5);
  world.type("/e\u0301\U0001F4C1");
  EXPECT_EQ(world.text(world.identified("PathTextField")), "/e\u0301\U0001F4C1");
  world.key(key::backspace);
  EXPECT_EQ(world.text(world.identified("PathTextField")), "/e\u0301");
  world.key(key::backspace);
  EXPECT_EQ(world.text(world.identified("PathTextField")), "/");
}

TEST(GoToSheet, SecondChordChangesNothingAndEscapeCloses) {
  PanelWorld world;
  world.key(key::g, command | shift);
  world.pass(0.5);
  const ElementId sheet = world.identified("GoToWindow").id();
  world.key(key::g, command | shift);
  world.pass(0.5);
  EXPECT_EQ(world.identified("GoToWindow").id(), sheet);
  world.key(48);
  world.key(key::returnKey, command);
  world.key(key::escape);
  world.pass(0.36);
  EXPECT_EQ(world.all("AXIdentifier", "GoToWindow").size(), 0U);
  EXPECT_EQ(world.panel().outcome(), PanelOutcome{});
  EXPECT_EQ(world.panel().folderShown(), world.sample.path());
}

TEST(GoToSheet, StaysWithItsTextWhenThePathDoesNotExist) {
  PanelWorld world;
  goTo(world, "/does/not/exist");
  world.pass(2);
  EXPECT_EQ(world.text(world.identified("PathTextField")), "/does/not/exist");
  EXPECT_EQ(world.milestone("go-to sheet stays: nothing at /does/not/exist"), 500);
}

TEST(GoToSheet, PathOfAFileLeadsToItsFolderWithTheFileSelected) {
  PanelWorld world(Json{{"mode", "files"}, {"folder", "/usr"}});
  goTo(world, "~/file10.txt");
  world.pass(0.5);
  EXPECT_EQ(world.panel().folderShown(), world.sample.path());
  EXPECT_EQ(world.read(world.rowOf("file10.txt").id(), "AXSelected").value, Value(true));
  world.key(key::returnKey);
  EXPECT_EQ(world.panel().outcome().path, world.sample.path("file10.txt"));
}

TEST(GoToSheet, SlashOpensItWhileTheListHasTheKeyboard) {
  PanelWorld world;
  world.type("/");
  world.pass(0.5);
  EXPECT_EQ(world.all("AXIdentifier", "GoToWindow").size(), 0U);
  world.click(world.rowOf("beta"));
  world.type("/");
  world.pass(0.5);
  EXPECT_EQ(world.text(world.identified("PathTextField")), "/");
}

TEST(GoToSheet, HangsFromTheWindowOfAnEmbeddedChooser) {
  PanelWorld world(Json{{"shape", "embedded"}});
  world.key(key::g, command | shift);
  world.pass(0.5);
  EXPECT_EQ(world.identified("GoToWindow").parent(), world.identified("open-panel").parent());
}

TEST(GoToSheet, TakesClicksOnItsButtonsAndKeepsOthersFromThePanel) {
  PanelWorld world(Json{{"goTo", {{"generation", "old"}}}}, {{"lastGoToPath", "/usr"}});
  world.key(key::g, command | shift);
  world.pass(0.5);
  world.click(world.identified("CancelButton"));
  EXPECT_EQ(world.panel().outcome(), PanelOutcome{});
  world.click(world.one("AXTitle", "Go"), 1, host);
  EXPECT_EQ(world.panel().folderShown(), world.sample.path()) << "the sheet is the service's";
  world.click(world.one("AXTitle", "Go"));
  world.pass(0.36);
  EXPECT_EQ(world.panel().folderShown(), "/usr");
}

TEST(GoToSheet, OptionsOfItsField) {
  PanelWorld tidy(Json{{"goTo", {{"openAtStart", true}, {"normalisesField", true}}}});
  Element& field = tidy.identified("PathTextField");
  tidy.write(field, "AXValue", "/usr/bin//");
  EXPECT_EQ(tidy.text(field), "/usr/bin");
  PanelWorld bare(Json{{"goTo", {{"openAtStart", true}, {"withoutConfirm", true}}}});
  EXPECT_EQ(bare.perform(bare.identified("PathTextField"), "AXConfirm"), ax::actionUnsupported);
  PanelWorld shut(Json{{"goTo", {{"neverOpens", true}}}});
  shut.key(key::g, command | shift);
  shut.pass(2);
  EXPECT_EQ(shut.all("AXIdentifier", "GoToWindow").size(), 0U);
}

TEST(PanelFault, ConfirmPressThatDoesNothingOrReportsAnErrorThoughItLands) {
  PanelWorld idle(Json{{"faults", {{"confirmDoesNothing", true}}}});
  EXPECT_EQ(idle.perform(idle.identified("OKButton"), "AXPress"), ax::success);
  EXPECT_EQ(idle.panel().outcome(), PanelOutcome{});
  PanelWorld dying(Json{{"faults", {{"confirmAnswers", ax::cannotComplete}}}});
  EXPECT_EQ(dying.perform(dying.identified("OKButton"), "AXPress"), ax::cannotComplete);
  EXPECT_EQ(dying.panel().outcome(), chosen(dying.sample.path(), 0.1));
}

TEST(PanelFault, RefusedRequestsHaveNoEffect) {
  PanelWorld presses(Json{{"faults", {{"pressRefused", ax::failure}}}});
  EXPECT_EQ(presses.perform(presses.identified("OKButton"), "AXPress"), ax::failure);
  EXPECT_EQ(presses.perform(presses.identified("CancelButton"), "AXPress"), ax::failure);
  EXPECT_EQ(presses.panel().outcome(), PanelOutcome{});
  PanelWorld writes(
      {{"goTo", {{"openAtStart", true}}}, {"faults", {{"fieldWriteRefused", ax::cannotComplete}}}},
      {{"lastGoToPath", "/usr"}});
  Element& field = writes.identified("PathTextField");
  EXPECT_EQ(writes.write(field, "AXValue", "/x"), ax::cannotComplete);
  EXPECT_EQ(writes.text(field), "/usr");
}

TEST(PanelFault, KeysSelectionAndConfirmButtonCanBeMissing) {
  PanelWorld deaf(Json{{"faults", {{"ignoresKeys", true}}}});
  deaf.key(key::returnKey);
  EXPECT_EQ(deaf.panel().outcome(), PanelOutcome{});
  PanelWorld fixed(Json{{"faults", {{"ignoresSelection", true}}}});
  Element& list = fixed.identified("ListView");
  EXPECT_EQ(fixed.write(list, "AXSelectedRows", List{fixed.rowOf("beta").id()}), ax::success);
  EXPECT_EQ(fixed.read(list.id(), "AXSelectedRows").value, Value(List{}));
  PanelWorld bare(Json{{"faults", {{"noConfirmButton", true}}}});
  EXPECT_EQ(bare.all("AXIdentifier", "OKButton").size(), 0U);
  bare.key(key::returnKey);
  EXPECT_EQ(bare.panel().outcome().path, bare.sample.path());
}

TEST(PanelFault, ListingStaysStaleAndPanelClosesLate) {
  PanelWorld stale(Json{{"faults", {{"staleListing", true}, {"closesLateBySeconds", 3}}}});
  const Texts before = stale.shownNames();
  goTo(stale, "/usr");
  stale.pass(1);
  EXPECT_EQ(stale.text(stale.identified("where popup")), "usr");
  EXPECT_EQ(stale.shownNames(), before);
  stale.key(key::returnKey);
  stale.pass(3);
  EXPECT_EQ(stale.all("AXIdentifier", "open-panel").size(), 1U);
  stale.pass(0.03);
  EXPECT_EQ(stale.all("AXIdentifier", "open-panel").size(), 0U);
}

TEST(PanelFault, ReturnOfTheGoToSheetConfirmsThePanelToo) {
  PanelWorld world(Json{{"faults", {{"goToReturnConfirms", true}}}});
  goTo(world, "/usr");
  world.pass(1);
  EXPECT_EQ(world.panel().outcome().path, "/usr");
  EXPECT_EQ(world.milestone("chosen /usr"), 910);
}

TEST(PanelFault, MenuItemsAndTheMenuItselfCanRefuse) {
  PanelWorld bare(
      Json{{"faults", {{"menuItemsWithoutPress", true}, {"menuItemsWithoutPick", true}}}});
  bare.perform(bare.identified("where popup"), "AXShowMenu");
  bare.pass(0.41);
  const Element& item = bare.one("AXTitle", "Macintosh HD");
  EXPECT_EQ(bare.perform(item, "AXPress"), ax::actionUnsupported);
  EXPECT_EQ(bare.perform(item, "AXPick"), ax::actionUnsupported);
  bare.click(item);
  bare.pass(0.11);
  EXPECT_EQ(bare.panel().folderShown(), "/") << "a click still works";
  PanelWorld pick(Json{{"faults", {{"menuItemsWithoutPress", true}}}});
  pick.perform(pick.identified("where popup"), "AXShowMenu");
  pick.pass(0.41);
  EXPECT_EQ(pick.perform(pick.one("AXTitle", "Macintosh HD"), "AXPick"), ax::success);
  PanelWorld shut(Json{{"faults", {{"showMenuRefused", ax::cannotComplete}}}});
  EXPECT_EQ(shut.perform(shut.identified("where popup"), "AXShowMenu"), ax::cannotComplete);
  shut.pass(1);
  EXPECT_TRUE(shut.identified("where popup").children().empty());
}

TEST(PanelFault, CancelButtonCanBeMissingOrIdle) {
  PanelWorld bare(Json{{"faults", {{"noCancelButton", true}}}});
  EXPECT_EQ(bare.all("AXIdentifier", "CancelButton").size(), 0U);
  bare.key(key::escape);
  EXPECT_EQ(bare.panel().outcome().end, PanelOutcome::End::cancelled);
  PanelWorld idle(Json{{"faults", {{"cancelDoesNothing", true}}}});
  EXPECT_EQ(idle.perform(idle.identified("CancelButton"), "AXPress"), ax::success);
  idle.click(idle.identified("CancelButton"));
  EXPECT_EQ(idle.panel().outcome(), PanelOutcome{});
}

TEST(PanelFault, KeysOrEscapeAloneCanNeedAClick) {
  PanelWorld all(Json{{"faults", {{"keysNeedClick", true}}}});
  all.key(key::returnKey);
  EXPECT_EQ(all.panel().outcome(), PanelOutcome{});
  all.click(all.rowOf("beta"));
  all.key(key::returnKey);
  EXPECT_EQ(all.panel().outcome().path, all.sample.path("beta"));
  PanelWorld escape(Json{{"faults", {{"escapeNeedsClick", true}}}});
  escape.key(key::escape);
  EXPECT_EQ(escape.panel().outcome(), PanelOutcome{});
  escape.click(escape.rowOf("beta"));
  escape.key(key::escape);
  EXPECT_EQ(escape.panel().outcome().end, PanelOutcome::End::cancelled);
  PanelWorld others(Json{{"faults", {{"escapeNeedsClick", true}}}});
  others.key(key::returnKey);
  EXPECT_EQ(others.panel().outcome().end, PanelOutcome::End::chosen);
}

TEST(PanelFault, FirstReturnThatCouldConfirmIsLost) {
  PanelWorld world(Json{{"mode", "files"}, {"faults", {{"confirmsOnSecondReturn", true}}}});
  world.key(key::returnKey);
  world.click(world.rowOf("file10.txt"));
  world.key(key::returnKey);
  EXPECT_EQ(world.panel().outcome(), PanelOutcome{});
  world.key(key::returnKey);
  EXPECT_EQ(world.panel().outcome().path, world.sample.path("file10.txt"));
}

TEST(UnseenPanel, ShowsNoElementAndTakesKeysAndClicks) {
  PanelWorld world(Json{
      {"shape", "unseen"}, {"opensAtSeconds", 1}, {"mode", "files"}, {"serviceTitle", "Open"}});
  const std::string page = drawn(world.desktop().findProcess(host)->root);
  const Value focused = world.focusedWindow(host);
  world.pass(3);
  EXPECT_EQ(drawn(world.desktop().findProcess(host)->root), page);
  EXPECT_EQ(world.focusedWindow(host), focused);
  EXPECT_TRUE(world.desktop().findProcess(service)->root.children().empty());
  EXPECT_EQ(world.read({service, 0}, "AXWindows").value, Value(List{}));
  EXPECT_EQ(world.read({service, 0}, "AXFocusedUIElement").error, ax::attributeUnsupported);
  const Rect frame = world.panel().options().frame;
  std::size_t titled = 0;
  for (const auto& window : world.desktop().windows()) {
    titled += window->title == "Open" && window->listed && window->frame == frame;
  }
  EXPECT_EQ(titled, 2U) << "the browser's and the service's";

  world.key(key::g, command | shift);
  world.pass(0.5);
  EXPECT_EQ(world.desktop().windows().size(), 5U) << "the sheet has a window, too";
  EXPECT_TRUE(world.desktop().findProcess(service)->root.children().empty());
  world.type("~/Alpha");
  world.key(key::returnKey);
  world.pass(1);
  EXPECT_EQ(world.panel().folderShown(), world.sample.path("Alpha"));
  world.key(key::escape);
  world.pass(0.1);
  EXPECT_EQ(world.panel().outcome().end, PanelOutcome::End::cancelled);
  EXPECT_EQ(world.desktop().windows().size(), 2U);
}

TEST(UnseenPanel, ClickWhereTheFirstRowOfAnEqualPanelLiesSelectsItsFirstFile) {
  const Sample folder;
  const Json options{{"mode", "files"}, {"folder", folder.path("")}};
  PanelWorld equal(options);
  const Rect row = *equal.rowOf("file 9.txt").frame();
  const Rect button = *equal.identified("OKButton").frame();
  Json unseen = options;
  unseen["shape"] = "unseen";
  PanelWorld world(unseen);
  for (const Rect& target : {row, button}) {
    for (const std::uint32_t type : {1U, 2U}) {
      const Point at{target.x + 30, target.y + 12};
      world.desktop().answer(PostEvent{MouseEvent{type, at, 1}, service});
    }
  }
  EXPECT_EQ(world.panel().outcome().path, folder.path("file 9.txt"));
}

TEST(PanelLife, LeavesOnlyTheBrowsersWindowBehindInEveryShape) {
  for (const char* shape : {"service-window", "host-window", "host-sheet", "embedded"}) {
    PanelWorld world(Json{{"shape", shape}, {"opensAtSeconds", 1}, {"listed", "none"}});
    const std::size_t windows = world.desktop().windows().size();
    const std::string page = drawn(world.desktop().findProcess(host)->root);
    world.pass(3);
    EXPECT_EQ(world.all("AXIdentifier", "open-panel").size(), 1U) << shape;
    world.key(key::g, command | shift);
    world.pass(0.5);
    world.perform(world.identified("CancelButton"), "AXPress");
    world.pass(0.03);
    EXPECT_EQ(world.panel().outcome().end, PanelOutcome::End::cancelled) << shape;
    EXPECT_EQ(world.desktop().windows().size(), windows) << shape;
    EXPECT_EQ(drawn(world.desktop().findProcess(host)->root), page) << shape;
    EXPECT_TRUE(world.desktop().findProcess(service)->root.children().empty()) << shape;
    EXPECT_TRUE(world.desktop().findProcess(host)->receivers.empty()) << shape;
  }
}

TEST(PanelLife, OutlivesTheEndOfItsHost) {
  PanelWorld world(Json{{"shape", "host-window"}});
  world.key(key::g, command | shift);
  world.desktop().terminateProcess(host, true);
  world.key(key::returnKey);
  world.pass(5);
  EXPECT_EQ(world.panel().outcome(), PanelOutcome{});
}

TEST(PanelKeystroke, TypesAttachedTextUpToItsLimitOrWhatTheLayoutSays) {
  const auto typed = [](const KeyEvent& event) {
    return keystroke(event, KeyboardLayout::us).text;
  };
  EXPECT_EQ(typed({0, true, 0, u"0123456789012345678901234"}), "01234567890123456789");
  EXPECT_EQ(typed({key::returnKey, true, 0, u"\r"}), "");
  EXPECT_EQ(typed({44, true, 0, {}}), "/");
  EXPECT_EQ(typed({44, true, shift, {}}), "?");
  EXPECT_EQ(typed({49, true, 0, {}}), " ");
  EXPECT_EQ(typed({46, true, shift, {}}), "M");
  EXPECT_EQ(typed({key::a, true, command, u"a"}), "");
}

TEST(PanelFolder, ListsVisibleEntriesAsTheFileBrowserOrdersThem) {
  const Sample sample;
  std::ofstream(sample.path("file2.txt")) << "x";
  fs::create_directory_symlink(sample.path("Alpha"), sample.path("link"));
  Texts names;
  for (const auto& entry : visibleEntries(sample.path(), SortOrder::name, {})) {
    names.push_back(entry.name + (entry.directory ? "/" : ""));
  }
  EXPECT_EQ(names, (Texts{"Alpha/", "beta/", "file 9.txt", "file2.txt", "file10.txt", "link/"}));
  EXPECT_EQ(typedPath(sample.path("link/inner/"), "/", "/"), sample.path("Alpha/inner"));
  EXPECT_EQ(typedPath("Alpha/../beta", "/", sample.path()), sample.path("beta"));
  EXPECT_EQ(typedPath("~x", "/", sample.path()), std::nullopt);
  EXPECT_EQ(fileUrl("/a b/ü%#?", true), "file:///a%20b/%C3%BC%25%23%3F/");
}

}  // namespace
}  // namespace simulator::panel
