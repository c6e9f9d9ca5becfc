// The panel as it was measured, and the options on which reports disagree.
#include <gmock/gmock.h>

#include "simulator/panel_world.h"

namespace simulator::panel_measured {
namespace {

using ::testing::ElementsAre;

Scenario scenarioWith(const Json& panel, Json scenario = Json::object()) {
  scenario["panels"] = Json::array({panel});
  return scenarioFromJson(scenario, "measured");
}

// Those of its own windows, by owner: what the window list calls them.
Texts listedTitles(Desktop& desktop, const Rect& frame) {
  Texts titles;
  const Reply reply = desktop.answer(AskWindows{});
  for (const Value& item : std::get<List>(reply.value)) {
    const List& window = std::get<List>(item);
    if (std::get<double>(window[5]) != frame.x || std::get<double>(window[6]) != frame.y) continue;
    titles.push_back(std::to_string(static_cast<int>(std::get<double>(window[1]))) + " " +
                     std::get<std::string>(window[3]));
  }
  return titles;
}

TEST(MeasuredPanel, IsChromiumsSheetWithoutATitleWhoseButtonSaysSelect) {
  const auto scene = makeScene(scenarioWith(Json::object()));
  const PanelOptions& panel = scene->panels.front()->options();
  EXPECT_EQ(panel.shape, PanelShape::hostSheet);
  EXPECT_EQ(panel.prompt, "Select");
  EXPECT_EQ(panel.message, "Select the extension directory.");
  EXPECT_EQ(panel.title, std::nullopt);
  EXPECT_EQ(panel.keysReach, KeysReach::service);
  EXPECT_EQ(panel.clicksReach, ClicksReach::none);
  EXPECT_EQ(scene->desktop.findProcess(service)->command,
            "/System/Library/Frameworks/AppKit.framework/Versions/C/XPCServices/"
            "com.apple.appkit.xpc.openAndSavePanelService.xpc/Contents/MacOS/"
            "com.apple.appkit.xpc.openAndSavePanelService");
  EXPECT_EQ(scene->desktop.findProcess(service)->name,
            "Open and Save Panel Service (Google Chrome)");
  EXPECT_THAT(listedTitles(scene->desktop, panel.frame),
              ::testing::UnorderedElementsAre("812 ", "900 "));
}

TEST(MeasuredPanel, SpeaksTheBrowsersWordsInEachLanguageAndMode) {
  const auto texts = [](const char* language, const char* mode, const char* browser) {
    const Json processes =
        Json::array({{{"pid", 812}, {"name", browser}, {"windows", {{{"title", "Page"}}}}}});
    const Scenario scenario = scenarioWith(
        {{"mode", mode}}, {{"language", language}, {"frontmost", 812}, {"processes", processes}});
    const PanelOptions& panel = scenario.panels.front();
    return panel.prompt.value_or("-") + ", " + panel.message.value_or("-");
  };
  EXPECT_EQ(texts("zh-Hans", "folders", "Google Chrome Dev"), "选择, 选择扩展程序目录。");
  EXPECT_EQ(texts("de", "folders", "Microsoft Edge"),
            "Auswählen, Erweiterungsverzeichnis auswählen");
  EXPECT_EQ(texts("en", "upload", "Chromium"), "Upload, -");
  EXPECT_EQ(texts("zh-Hans", "upload", "Google Chrome"), "上传, -");
  EXPECT_EQ(texts("en", "files", "Google Chrome"), "-, -");
  EXPECT_EQ(texts("en", "folders", "TextEdit"), "-, -") << "only Chromium's have them";
}

TEST(MeasuredPanel, HasWhatStandsInItFromItsServiceAndItsRootFromTheHost) {
  PanelWorld world(Json{{"shape", "host-sheet"}});
  EXPECT_EQ(world.identified("open-panel").id().pid, host);
  EXPECT_EQ(world.identified("OKButton").id().pid, service);
  EXPECT_EQ(world.read(world.one("AXDescription", "sidebar").id(), "AXRole").value,
            Value("AXOutline"));
  world.key(key::g, command | shift);
  world.pass(0.5);
  EXPECT_EQ(world.identified("PathTextField").id().pid, service);

  PanelWorld hosts(Json{{"shape", "host-sheet"}, {"elementsBelongTo", "host"}});
  EXPECT_EQ(hosts.identified("OKButton").id().pid, host);
}

TEST(MeasuredPanel, LeavesItsServiceRunningUnlessItEnds) {
  for (const bool ends : {false, true}) {
    PanelWorld world(Json{{"serviceEnds", ends}});
    world.key(key::escape);
    world.pass(1);
    EXPECT_EQ(world.desktop().findProcess(service)->terminated, ends);
  }
}

TEST(MeasuredPanel, HasADescriptionInEnglishAlone) {
  EXPECT_EQ(PanelWorld().text(PanelWorld().identified("open-panel"), "AXDescription"), "open");
  PanelWorld chinese(Json::object(), {{"language", "zh-Hans"}});
  EXPECT_EQ(chinese.identified("open-panel").get("AXDescription"), nullptr);
  PanelWorld told(Json{{"description", "打开"}}, {{"language", "zh-Hans"}});
  EXPECT_EQ(told.text(told.identified("open-panel"), "AXDescription"), "打开");
}

TEST(MeasuredPanel, OffersNewFolderForAPlainFolderAlone) {
  EXPECT_EQ(PanelWorld().all("AXIdentifier", "NewFolderButton").size(), 1U);
  for (const char* mode : {"files", "upload"}) {
    EXPECT_TRUE(PanelWorld(Json{{"mode", mode}}).all("AXIdentifier", "NewFolderButton").empty());
  }
}

TEST(PanelOptions, TheWindowListCallsTheTwoWindowsAsTheyAreCalled) {
  PanelWorld world(Json{{"shape", "host-sheet"}, {"hostTitle", "Open"}, {"serviceTitle", "Panel"}});
  EXPECT_THAT(listedTitles(world.desktop(), world.panel().options().frame),
              ::testing::UnorderedElementsAre("812 Open", "900 Panel"));
  EXPECT_EQ(world.read(world.identified("open-panel").id(), "AXTitle").error,
            ax::attributeUnsupported);
  PanelWorld own(Json{{"shape", "service-window"}, {"title", "Pick"}});
  EXPECT_THAT(listedTitles(own.desktop(), own.panel().options().frame),
              ::testing::UnorderedElementsAre("812 Pick", "900 Pick"));
}

TEST(PanelOptions, APanelInBothTreesIsOnePanel) {
  PanelWorld world(Json{{"shape", "host-sheet"}, {"inBothTrees", true}});
  const List windows = std::get<List>(world.read({service, 0}, "AXWindows").value);
  ASSERT_EQ(windows.size(), 1U);
  const ElementId twin = std::get<ElementId>(windows.front());
  const Element& root = *world.identified("OKButton").parent()->parent();
  EXPECT_EQ(world.read(twin, "AXChildren").value, world.read(root.id(), "AXChildren").value);
  world.perform(world.identified("CancelButton"), "AXPress");
  world.pass(0.1);
  EXPECT_EQ(world.panel().outcome().end, PanelOutcome::End::cancelled);
  EXPECT_EQ(world.read({service, 0}, "AXWindows").value, Value(List{}));
  EXPECT_EQ(world.read(twin, "AXChildren").error, ax::invalidElement);
}

TEST(PanelOptions, APanelThatOnlyTheServiceOrNobodyShowsHasNoTwin) {
  for (const char* shape : {"service-window", "unseen"}) {
    try {
      scenarioWith({{"shape", shape}, {"inBothTrees", true}});
      ADD_FAILURE() << "it was accepted";
    } catch (const ScenarioError& error) {
      EXPECT_STREQ(error.what(),
                   "measured: /panels/0/inBothTrees: expected a shape that stands in the host's "
                   "tree");
    }
  }
}

// Its controls came after its end and opened it again.
TEST(PanelOptions, APanelThatEndsWhileItOpensStaysEnded) {
  PanelWorld world(
      Json{{"opensAtSeconds", 1}, {"slow", 10}, {"faults", {{"closesLateBySeconds", 20}}}});
  world.desktop().advanceTo(3);
  EXPECT_EQ(world.perform(*world.identified("open-panel").children().front(), "AXPress"),
            ax::success);
  EXPECT_EQ(world.panel().outcome().end, PanelOutcome::End::cancelled);
  world.desktop().advanceTo(15);
  EXPECT_TRUE(world.all("AXIdentifier", "OKButton").empty());
  EXPECT_EQ(world.panel().outcome().at, 3.1);
}

TEST(PanelOptions, OldPanelsHaveNoIdentifiers) {
  PanelWorld world(Json{{"identifiers", false}, {"goTo", {{"generation", "new"}}}});
  world.key(key::g, command | shift);
  world.pass(0.5);
  for (const char* identifier :
       {"open-panel", "ListView", "Search", "OKButton", "GoToWindow", "PathTextField"}) {
    EXPECT_TRUE(world.all("AXIdentifier", identifier).empty()) << identifier;
  }
  EXPECT_EQ(world.all("AXTitle", "Choose").size(), 1U);
}

TEST(PanelOptions, TheSearchFieldOffersAConfirmationWhereOneIsAskedFor) {
  PanelWorld world(Json{{"searchConfirms", true}, {"searchWidth", 240}});
  const Element& field = world.identified("Search");
  EXPECT_EQ(field.actionNames(), List{Value("AXConfirm")});
  EXPECT_EQ(field.frame()->width, 240);
  PanelWorld measured(Json{{"searchConfirms", false}});
  EXPECT_TRUE(measured.identified("Search").actionNames().empty());
}

// Which of the clicks on Cancel, posted to the host and to the service, cancel the panel.
Texts clicksThatArrive(const char* reach) {
  Texts arrived;
  for (const Pid target : {host, service}) {
    PanelWorld world(Json{{"shape", "host-window"}, {"clicksReach", reach}});
    world.click(world.identified("CancelButton"), 1, target);
    if (world.panel().outcome().end == PanelOutcome::End::cancelled) {
      arrived.push_back(target == host ? "host" : "service");
    }
  }
  return arrived;
}

TEST(PanelOptions, PostedClicksReachWhomTheScenarioSays) {
  EXPECT_THAT(clicksThatArrive("none"), ElementsAre());
  EXPECT_THAT(clicksThatArrive("host"), ElementsAre("host"));
  EXPECT_THAT(clicksThatArrive("service"), ElementsAre("service"));
  EXPECT_THAT(clicksThatArrive("both"), ElementsAre("host", "service"));
  EXPECT_THAT(clicksThatArrive("window-corner"), ElementsAre());
}

// Seen by what the first click in a background panel does, wherever it lands: its list has the
// keyboard.
TEST(PanelOptions, ClicksAtTheCornerDoArriveThere) {
  PanelWorld world(Json{{"shape", "host-window"}, {"clicksReach", "window-corner"}});
  world.click(world.rowOf("Alpha"));
  EXPECT_EQ(world.read(world.identified("ListView").id(), "AXFocused").value, Value(true));
  EXPECT_EQ(world.read(world.identified("ListView").id(), "AXSelectedRows").value, Value(List{}));
}

TEST(PanelOptions, AClickOfThePersonArrivesAlways) {
  PanelWorld world(Json{{"shape", "host-window"}, {"clicksReach", "none"}}, {{"frontmost", host}});
  const Rect frame = *world.identified("CancelButton").frame();
  for (const std::uint32_t type : {1U, 2U}) {
    world.desktop().postMouse({type, {frame.x + 5, frame.y + 5}, 1}, std::nullopt, Origin::person);
  }
  EXPECT_EQ(world.panel().outcome().end, PanelOutcome::End::cancelled);
}

TEST(PanelOptions, KeysReachNobodyButThroughTheSession) {
  PanelWorld world(Json{{"keysReach", "nobody"}}, {{"frontmost", host}});
  world.key(key::escape, 0, host);
  world.key(key::escape, 0, service);
  world.pass(0.1);
  EXPECT_EQ(world.panel().outcome(), PanelOutcome{});
  world.key(key::escape, 0, std::nullopt);
  EXPECT_EQ(world.panel().outcome().end, PanelOutcome::End::cancelled);
}

TEST(PanelOptions, ASuggestionWinsOverTheTypedText) {
  PanelWorld world(Json{{"goTo", {{"suggestion", "~/beta"}}}});
  world.key(key::g, command | shift);
  world.pass(0.5);
  EXPECT_EQ(world.all("AXValue", "~/beta").size(), 1U) << "it is shown";
  world.type("~/Alpha");
  world.key(key::returnKey);
  world.pass(1);
  EXPECT_EQ(world.panel().folderShown(), world.sample.path("beta"));
}

TEST(PanelOptions, AFrenchKeyboardTypesFrenchAndChordsFollowTheLetter) {
  const auto typed = [](std::uint16_t code, std::uint64_t flags) {
    return keystroke({code, true, flags, {}}, KeyboardLayout::azerty);
  };
  EXPECT_EQ(typed(0, 0).text, "q");
  EXPECT_EQ(typed(12, 0).text, "a");
  EXPECT_EQ(typed(18, 0).text, "&");
  EXPECT_EQ(typed(18, shift).text, "1");
  EXPECT_EQ(typed(19, 0).text, "") << "accented letters are left out";
  EXPECT_TRUE(typed(12, command).is(key::a, true)) << "where Q is on a US keyboard";
  EXPECT_FALSE(typed(0, command).is(key::a, true));
  EXPECT_TRUE(typed(5, command | shift).is(key::g, true, true)) << "G is where it always is";
}

TEST(PanelOptions, CommandAByItsPlaceSelectsNothingOnAFrenchKeyboard) {
  PanelWorld world(Json::object(), {{"keyboardLayout", "azerty"}});
  world.key(key::g, command | shift);
  world.pass(0.5);
  world.type("~/beta");
  world.key(0, command);  // Command-Q
  world.type("~/Alpha");
  EXPECT_EQ(world.text(world.identified("PathTextField")), "~/beta~/Alpha");
  world.key(12, command);
  world.type("~/Alpha");
  EXPECT_EQ(world.text(world.identified("PathTextField")), "~/Alpha");
}

// What became of an upload whose question was answered by `answer`.
template <typename Answer>
std::string uploadAnswered(const Answer& answer) {
  PanelWorld world(Json{{"mode", "upload"}, {"prompt", "Upload"}});
  world.perform(world.identified("OKButton"), "AXPress");
  world.pass(0.1);
  answer(world);
  EXPECT_EQ(world.panel().outcome().end, PanelOutcome::End::chosen);
  EXPECT_EQ(world.desktop().windows().size(), 2U) << "the question is gone";
  return world.panel().milestones().back().text;
}

TEST(UploadQuestion, IsAnsweredByItsButtonsAndDeclinedByAReturnTooMany) {
  EXPECT_EQ(uploadAnswered([](PanelWorld& world) {
              EXPECT_EQ(world.panel().milestones().back().text, "upload asked for");
              world.perform(world.one("AXTitle", "Upload"), "AXPress");
            }),
            "upload confirmed");
  EXPECT_EQ(uploadAnswered([](PanelWorld& world) {
              world.perform(world.one("AXTitle", "Cancel"), "AXPress");
            }),
            "upload declined");
  EXPECT_EQ(uploadAnswered([](PanelWorld& world) { world.key(key::returnKey, 0, host); }),
            "upload declined");
  EXPECT_EQ(uploadAnswered([](PanelWorld& world) {
              const Rect frame = *world.one("AXTitle", "Upload").frame();
              for (const std::uint32_t type : {1U, 2U}) {
                const MouseEvent event{type, {frame.x + 5, frame.y + 5}, 1};
                world.desktop().postMouse(event, host, Origin::tool);
              }
              EXPECT_EQ(world.panel().milestones().back().text, "upload asked for");
              world.key(key::escape, 0, host);
            }),
            "upload declined");
}

TEST(UploadQuestion, IsNotAskedAfterAnythingElse) {
  PanelWorld folders;
  folders.perform(folders.identified("OKButton"), "AXPress");
  folders.pass(0.1);
  EXPECT_EQ(folders.panel().milestones().back().text,
            "panel closed: chosen " + folders.sample.path());
  PanelWorld cancelled(Json{{"mode", "upload"}});
  cancelled.key(key::escape);
  cancelled.pass(0.1);
  EXPECT_EQ(cancelled.panel().milestones().back().text, "panel closed: cancelled");
}

TEST(AddressBar, HoldsItsTextAndTheKeyboard) {
  const Json window{
      {"title", "Page"}, {"webElements", 4}, {"address", ""}, {"addressFocused", true}};
  const Json processes =
      Json::array({{{"pid", 812}, {"name", "Google Chrome"}, {"windows", {window}}}});
  PanelWorld world(Json::object(), {{"processes", processes}, {"frontmost", 812}});
  const Element& bar = world.one("AXDescription", "Address and search bar");
  EXPECT_EQ(world.text(bar), "");
  EXPECT_EQ(*bar.get("AXFocused"), Value(true));
}

}  // namespace
}  // namespace simulator::panel_measured
