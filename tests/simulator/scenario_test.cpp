// Scenario files: what they may say, how a mistake is reported, and the scenarios that are built
// in.
#include "simulator/scenario/scenario.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "simulator/desktop/text.h"
#include "simulator/scenario/scene.h"

namespace simulator::scenario {
namespace {

std::string mistake(const std::string& text) {
  try {
    scenarioFromText(text, "folder/wrong.json");
  } catch (const ScenarioError& error) {
    return error.what();
  }
  return "none";
}

std::string panelMistake(const std::string& members) {
  return mistake(R"({"panels": [{"shape": "host-window")" + members + "}]}");
}

TEST(ScenarioMistake, TextThatIsNotJsonNamesLineAndColumn) {
  EXPECT_EQ(mistake("{\n  \"panels\": [,]\n}"),
            "folder/wrong.json: line 2, column 14: expected JSON");
  EXPECT_EQ(mistake("{"), "folder/wrong.json: line 1, column 2: expected JSON");
  EXPECT_EQ(mistake(R"({"frontmost": 1e999})"),
            "folder/wrong.json: /: expected JSON whose numbers are within the range of a double");
}

TEST(ScenarioMistake, UnknownKey) {
  EXPECT_EQ(
      mistake(R"({"screens": [{"x": 0, "y": 0, "width": 9, "height": 9, "depth": 1}]})"),
      "folder/wrong.json: /screens/0/depth: no such key; expected one of x, y, width, height");
  EXPECT_EQ(mistake(R"({"pa/nels": []})"),
            "folder/wrong.json: /pa~1nels: no such key; expected one of description, language, "
            "home, volume, volumes, places, lastGoToPath, showsSystemFolders, listsOnly, "
            "keyboardLayout, requestTimeoutSeconds, prices, screens, processes, frontmost, panels, "
            "person, faults");
}

TEST(ScenarioMistake, WrongType) {
  EXPECT_EQ(mistake("[]"), "folder/wrong.json: /: expected an object");
  EXPECT_EQ(mistake(R"({"volume": 1})"), "folder/wrong.json: /volume: expected a text");
  EXPECT_EQ(mistake(R"({"showsSystemFolders": 1})"),
            "folder/wrong.json: /showsSystemFolders: expected true or false");
  EXPECT_EQ(mistake(R"({"listsOnly": "/tmp"})"), "folder/wrong.json: /listsOnly: expected a list");
  EXPECT_EQ(mistake(R"({"listsOnly": ["/", "tmp"]})"),
            "folder/wrong.json: /listsOnly/1: expected a path from / on");
  EXPECT_EQ(mistake(R"({"panels": {}})"), "folder/wrong.json: /panels: expected a list");
  EXPECT_EQ(mistake(R"({"panels": [7]})"), "folder/wrong.json: /panels/0: expected an object");
  EXPECT_EQ(panelMistake(R"(, "goTo": {"comboBox": 1})"),
            "folder/wrong.json: /panels/0/goTo/comboBox: expected true or false");
  EXPECT_EQ(panelMistake(R"(, "service": 1.5)"),
            "folder/wrong.json: /panels/0/service: expected a whole number from 1 to 99999");
}

TEST(ScenarioMistake, OutOfRange) {
  EXPECT_EQ(panelMistake(R"(, "slow": 0)"),
            "folder/wrong.json: /panels/0/slow: expected a number from 0.01 to 100");
  EXPECT_EQ(panelMistake(R"(, "opensAtSeconds": -1)"),
            "folder/wrong.json: /panels/0/opensAtSeconds: expected a number from 0 to 3600");
  EXPECT_EQ(panelMistake(R"(, "faults": {"pressRefused": 1})"),
            "folder/wrong.json: /panels/0/faults/pressRefused: expected a whole number from "
            "-25214 to 0");
  for (const char* count : {"0", "9"}) {
    EXPECT_EQ(panelMistake(std::string(R"(, "listColumns": )") + count),
              "folder/wrong.json: /panels/0/listColumns: expected a whole number from 1 to 8");
  }
  EXPECT_EQ(mistake(R"({"screens": []})"),
            "folder/wrong.json: /screens: expected at least one screen");
}

TEST(ScenarioMistake, MissingKey) {
  EXPECT_EQ(mistake(R"({"processes": [{"pid": 1}]})"),
            "folder/wrong.json: /processes/0: expected the key \"name\", which is required");
}

TEST(ScenarioMistake, FaultsAndPricesThatCannotBe) {
  EXPECT_EQ(mistake(R"({"faults": {"busy": [{"pid": 812}]}})"),
            "folder/wrong.json: /faults/busy/0: expected the key \"toSeconds\", which is required");
  EXPECT_EQ(mistake(R"({"faults": {"busy": [{"pid": 812, "fromSeconds": 2, "toSeconds": 2}]}})"),
            "folder/wrong.json: /faults/busy/0/toSeconds: expected a later time than fromSeconds");
  EXPECT_EQ(mistake(R"({"faults": {"automationDenied": ["Mail"]}})"),
            "folder/wrong.json: /faults/automationDenied/0: expected one of \"System Events\", "
            "\"Finder\"");
  EXPECT_EQ(mistake(R"({"faults": {"automationUnasked": ["Finder", 1]}})"),
            "folder/wrong.json: /faults/automationUnasked/1: expected one of \"System Events\", "
            "\"Finder\"");
  EXPECT_EQ(mistake(R"({"prices": {"request": -1}})"),
            "folder/wrong.json: /prices/request: expected a number from 0 to 3600");
  EXPECT_EQ(mistake(R"({"prices": {"click": 1}})"),
            "folder/wrong.json: /prices/click: no such key; expected one of request, press, "
            "windowList, event, activation, comingForward, processList, script, scriptKey, finder, "
            "snapshot");
  EXPECT_EQ(mistake(R"({"requestTimeoutSeconds": 0})"),
            "folder/wrong.json: /requestTimeoutSeconds: expected a number from 0.01 to 3600");
}

TEST(Scenario, TellsTheDesktopItsPricesItsLayoutAndItsTimeout) {
  const auto scene = makeScene(scenarioFromText(
      R"({"prices": {"request": 0.5, "press": 7}, "keyboardLayout": "azerty",
          "requestTimeoutSeconds": 3,
          "faults": {"busy": [{"pid": 812, "toSeconds": 2}], "activationRefused": true,
                     "automationDenied": ["Finder"], "automationUnasked": ["System Events"]}})",
      "told"));
  const Desktop& desktop = scene->desktop;
  EXPECT_EQ(desktop.price(CopyAttribute{{300, 0}, "AXRole"}), 0.5);
  EXPECT_EQ(desktop.price(CopyAttribute{{812, 0}, "AXRole"}), 2.5);
  EXPECT_EQ(desktop.prices().press, 7);
  EXPECT_EQ(desktop.keyboardLayout(), KeyboardLayout::azerty);
  EXPECT_TRUE(desktop.faults().activation_refused);
  EXPECT_EQ(desktop.faults().automation_denied, std::set<std::string>{"Finder"});
  EXPECT_EQ(desktop.faults().automation_unasked, std::set<std::string>{"System Events"});
}

TEST(ScenarioMistake, UnknownChoice) {
  EXPECT_EQ(panelMistake(R"(, "mode": "both")"),
            "folder/wrong.json: /panels/0/mode: expected one of \"folders\", \"files\", "
            "\"upload\"");
  EXPECT_EQ(mistake(R"({"language": 1})"),
            "folder/wrong.json: /language: expected one of \"en\", \"zh-Hans\", \"de\"");
  EXPECT_EQ(panelMistake(R"(, "view": "gallery")"),
            "folder/wrong.json: /panels/0/view: expected one of \"list\", \"columns\", \"icons\"");
}

TEST(ScenarioMistake, PlacesVolumesLayoutsAndWindowLists) {
  EXPECT_EQ(mistake(R"({"volumes": [{"name": "Backup", "path": "/no/such"}]})"),
            "folder/wrong.json: /volumes/0/path: expected a folder of this machine at /no/such");
  EXPECT_EQ(mistake(R"({"volumes": [{"name": "no such disk"}]})"),
            "folder/wrong.json: /volumes/0/name: expected a folder of this machine at "
            "/Volumes/no such disk");
  EXPECT_EQ(
      mistake(R"({"volumes": [{"name": "A", "path": "/usr"}, {"name": "B", "path": "/usr/"}]})"),
      "folder/wrong.json: /volumes/1/path: expected a folder that is no other volume");
  EXPECT_EQ(mistake(R"({"volumes": [{"name": "A", "path": "/"}]})"),
            "folder/wrong.json: /volumes/0/path: expected a folder that is no other volume");
  EXPECT_EQ(mistake(R"({"places": [{"label": "A", "path": "usr"}]})"),
            "folder/wrong.json: /places/0/path: expected the absolute path of a folder of this "
            "machine");
  EXPECT_EQ(mistake(R"({"places": [{"path": "/usr"}]})"),
            "folder/wrong.json: /places/0: expected the key \"label\", which is required");
  EXPECT_EQ(panelMistake(R"(, "layout": {"list": {"x": 700, "y": 0, "width": 101, "height": 9}})"),
            "folder/wrong.json: /panels/0/layout/list: expected a rectangle within the panel, from "
            "its top left corner");
  EXPECT_EQ(panelMistake(R"(, "windowList": {"leaves": 1})"),
            "folder/wrong.json: /panels/0/windowList/leaves: no such key; expected one of "
            "leavesAfterSeconds, changesNumberAfterSeconds, hostListedAfterSeconds, listedTwice, "
            "staysAfterClosingSeconds, staysUncapturable");
  EXPECT_EQ(panelMistake(R"(, "sort": "size")"),
            "folder/wrong.json: /panels/0/sort: expected one of \"name\", \"date\"");
  EXPECT_EQ(mistake(R"({"person": [{"atSeconds": 1, "quits": 830}]})"),
            "folder/wrong.json: /person/0/quits: expected the pid of an application among the "
            "processes");
}

TEST(ScenarioMistake, ReferenceToWhatIsNotThere) {
  EXPECT_EQ(panelMistake(R"(, "host": 5)"),
            "folder/wrong.json: /panels/0/host: expected the pid of an application among the "
            "processes");
  EXPECT_EQ(panelMistake(R"(, "service": 812)"),
            "folder/wrong.json: /panels/0/service: expected a pid that no other process has");
  EXPECT_EQ(panelMistake(R"(, "folder": "/no/such/folder")"),
            "folder/wrong.json: /panels/0/folder: expected the absolute path of a folder of this "
            "machine");
  EXPECT_EQ(
      mistake(R"({"frontmost": 830})"),
      "folder/wrong.json: /frontmost: expected the pid of an application among the processes");
  EXPECT_EQ(
      mistake(R"({"panels": [{"shape": "host-sheet", "host": 250}]})"),
      "folder/wrong.json: /panels/0/shape: expected a shape that needs no window of the host, "
      "which has none");
  EXPECT_EQ(mistake(R"({"frontmost": null, "processes": [{"pid": 7, "name": "A"},
                        {"pid": 7, "name": "B"}]})"),
            "folder/wrong.json: /processes/1/pid: expected a pid that no other process has");
  EXPECT_EQ(mistake(R"({"processes": [{"pid": 7, "name": "A"}]})"),
            "folder/wrong.json: /: expected the key \"frontmost\", as no process has the pid 300");
  EXPECT_EQ(
      mistake(R"({"frontmost": null, "processes": [], "panels": [{"shape": "embedded"}]})"),
      "folder/wrong.json: /panels/0: expected the key \"host\", as no process has the pid 812");
}

TEST(ScenarioMistake, ActThatIsTwoThingsOrNone) {
  const std::string expected =
      "folder/wrong.json: /person/0: expected one of the keys \"activates\", \"clicks\" and "
      "\"quits\"";
  EXPECT_EQ(mistake(R"({"person": [{"atSeconds": 1}]})"), expected);
  EXPECT_EQ(mistake(R"({"person": [{"atSeconds": 1, "activates": 812,
                                    "clicks": {"x": 1, "y": 1}}]})"),
            expected);
}

TEST(ScenarioMistake, FileThatCannotBeRead) {
  try {
    readScenarioFile("no/such.json");
    ADD_FAILURE() << "it was read";
  } catch (const ScenarioError& error) {
    EXPECT_STREQ(error.what(), "no/such.json: /: expected a file that can be read");
  }
}

TEST(Scenario, OptionsReachThePanel) {
  const Scenario scenario = scenarioFromText(R"({
    "language": "de",
    "panels": [{"shape": "embedded", "mode": "files", "slow": 2, "prompt": "Los",
                "frame": {"x": 1, "y": 2, "width": 300, "height": 400},
                "view": "icons", "listColumns": 2,
                "faults": {"closesLateBySeconds": 1.5}}]})",
                                             "some/name.json");
  EXPECT_EQ(scenario.name, "name");
  const PanelOptions& panel = scenario.panels.at(0);
  EXPECT_EQ(panel.language, Language::german);
  EXPECT_EQ(panel.listed, ListedWindows::none);
  EXPECT_EQ(panel.keysReach, KeysReach::service);
  EXPECT_EQ(panel.service, 900);
  EXPECT_EQ(panel.serviceName, "Open and Save Panel Service (Google Chrome)");
  EXPECT_EQ(panel.frame, (Rect{1, 2, 300, 400}));
  EXPECT_EQ(panel.prompt, "Los");
  EXPECT_EQ(panel.view, PanelView::icons);
  EXPECT_EQ(panel.listColumns, 2);
  EXPECT_EQ(panel.faults.closesLateBySeconds, 1.5);
}

TEST(Scenario, PatchWritesOneFaultAndIsCheckedAgain) {
  const Scenario healthy = bundledScenario("english-service-window");
  const Scenario faulty = patched(healthy, "/panels/0/faults/ignoresKeys", true);
  EXPECT_FALSE(healthy.panels[0].faults.ignoresKeys);
  EXPECT_TRUE(faulty.panels[0].faults.ignoresKeys);
  try {
    patched(healthy, "/panels/0/slow", "very");
    ADD_FAILURE() << "it was accepted";
  } catch (const ScenarioError& error) {
    EXPECT_STREQ(error.what(),
                 "english-service-window: /panels/0/slow: expected a number from 0.01 to 100");
  }
}

TEST(Scenario, PersonActivatesAndClicks) {
  const auto scene = makeScene(scenarioFromText(R"({
    "panels": [{"shape": "service-window"}],
    "person": [{"atSeconds": 1, "activates": 812},
               {"atSeconds": 2, "clicks": {"x": 1058, "y": 598}}]})",
                                                "person"));
  scene->desktop.advanceTo(1.1);
  EXPECT_EQ(scene->desktop.frontmost(), 812);
  scene->desktop.advanceTo(3);
  EXPECT_EQ(scene->outcomes(), (std::vector<PanelOutcome>{{PanelOutcome::End::chosen, "/usr", 2}}));
  EXPECT_EQ(scene->desktop.record().mouseEvents(), 0U) << "the tool posted none";
  EXPECT_EQ(scene->desktop.answer(AskPresses{pressed::left_button}).value, Value(1.0));
  EXPECT_EQ(scene->desktop.answer(AskPresses{pressed::key}).value, Value(0.0));
}

TEST(Scenario, PersonQuitsAnApplicationThatIsRememberedOrNot) {
  for (const bool remembered : {true, false}) {
    nlohmann::ordered_json document;
    document["frontmost"] = 812;
    document["panels"] = {{{"shape", "service-window"}}, {{"shape", "host-sheet"}}};
    document["person"] = {{{"atSeconds", 1}, {"quits", 812}, {"remembered", remembered}},
                          {{"atSeconds", 2}, {"quits", 812}},
                          {{"atSeconds", 3}, {"activates", 812}}};
    const auto scene = makeScene(scenarioFromJson(document, "quitting"));
    Desktop& desktop = scene->desktop;
    desktop.advanceTo(0.9);
    EXPECT_EQ(desktop.answer(AskRunning{812}).value, Value(true));
    EXPECT_TRUE(scene->panels[0]->alive());
    desktop.advanceTo(5);
    EXPECT_EQ(desktop.answer(AskRunning{812}).value, remembered ? Value(false) : Value());
    EXPECT_EQ(desktop.frontmost(), 300);
    EXPECT_TRUE(desktop.findProcess(900)->terminated) << "the service ends with it";
    EXPECT_EQ(desktop.windows().size(), 1U) << "the terminal's";
    for (const auto& panel : scene->panels) EXPECT_FALSE(panel->alive());
    EXPECT_EQ(scene->outcomes(), std::vector<PanelOutcome>(2));
  }
}

TEST(Scenario, PanelWhoseApplicationQuitBeforeNeverOpens) {
  const auto scene = makeScene(scenarioFromText(R"({
    "panels": [{"shape": "service-window", "opensAtSeconds": 2}],
    "person": [{"atSeconds": 1, "quits": 812}]})",
                                                "quitting"));
  scene->desktop.advanceTo(5);
  EXPECT_FALSE(scene->panels[0]->hasOpened());
  EXPECT_EQ(scene->desktop.findProcess(900), nullptr);
}

// Of a window that a service alone shows there is no such service then.
TEST(Scenario, PanelThatHasNotOpenedIsAskedWhetherItLives) {
  const auto scene = makeScene(scenarioFromText(R"({
    "panels": [{"shape": "service-window", "opensAtSeconds": 5}],
    "person": [{"atSeconds": 1, "quits": 812, "remembered": false}]})",
                                                "quitting"));
  EXPECT_FALSE(scene->panels[0]->alive());
  scene->desktop.advanceTo(10);
  EXPECT_FALSE(scene->panels[0]->alive());
}

TEST(Scenario, PanelsOfOneServiceThatEndsEndItTogether) {
  Scenario scenario = bundledScenario("two-panels");
  for (const char* panel : {"/panels/0/serviceEnds", "/panels/1/serviceEnds"}) {
    scenario = patched(scenario, panel, true);
  }
  const auto scene = makeScene(scenario);
  Desktop& desktop = scene->desktop;
  const auto pressReturn = [&] {
    desktop.answer(PostEvent{KeyEvent{36, true, 0, {}}, 900});
    desktop.advanceTo(desktop.now() + 1);
  };
  pressReturn();
  EXPECT_EQ(scene->outcomes()[1].path, "/usr/share") << "the one in front";
  EXPECT_EQ(scene->outcomes()[0], PanelOutcome{});
  EXPECT_FALSE(desktop.findProcess(900)->terminated);
  pressReturn();
  EXPECT_EQ(scene->outcomes()[0].path, "/usr");
  EXPECT_TRUE(desktop.findProcess(900)->terminated);
}

const std::vector<std::string> bundled{"address-bar",
                                       "browser-frontmost",
                                       "busy-browser",
                                       "chinese-embedded",
                                       "chinese-host-sheet",
                                       "chinese-host-window",
                                       "chinese-old-generation",
                                       "chinese-service-window",
                                       "chrome-dev",
                                       "chrome-dev-frontmost",
                                       "chromium-chinese",
                                       "chromium-english",
                                       "clicks-at-the-corner",
                                       "clicks-lost",
                                       "columns",
                                       "edge",
                                       "edge-chinese",
                                       "english-host-sheet",
                                       "english-host-window",
                                       "english-old-generation",
                                       "english-service-window",
                                       "file-panel-chinese",
                                       "file-panel-english",
                                       "folder-upload",
                                       "french-keyboard",
                                       "german-service-window",
                                       "goto-sheet-open",
                                       "half-off-screen-panel",
                                       "icons",
                                       "keys-lost",
                                       "keys-lost-window",
                                       "keys-only-in-front",
                                       "keys-reach-host",
                                       "late-panel",
                                       "no-panel",
                                       "off-screen-panel",
                                       "other-space",
                                       "places-and-volumes-chinese",
                                       "places-and-volumes-english",
                                       "slow-panel",
                                       "slow-requests",
                                       "tmp-files-chinese",
                                       "two-browsers",
                                       "two-panels",
                                       "two-screens",
                                       "unseen-folders",
                                       "unseen-tmp-host-chinese",
                                       "unseen-tmp-service-chinese"};

TEST(BundledScenarios, AreTheseAndEachStartsAsDescribed) {
  EXPECT_EQ(bundledScenarioNames(), bundled);
  for (const auto& name : bundledScenarioNames()) {
    const auto scene = makeScene(bundledScenario(name));
    scene->desktop.advanceTo(10);
    EXPECT_EQ(bundledScenario(name).name, name);
    EXPECT_FALSE(bundledScenario(name).description.empty()) << name;
    const bool inFront = name == "browser-frontmost" || name == "chrome-dev-frontmost";
    EXPECT_EQ(scene->desktop.frontmost(), inFront ? 812 : 300) << name;
    EXPECT_NE(scene->desktop.findProcess(250), nullptr) << name;
    EXPECT_TRUE(scene->desktop.findProcess(812)->application) << name;
    const bool two = name == "two-panels" || name == "two-browsers";
    const std::size_t panels = name == "no-panel" ? 0 : two ? 2 : 1;
    ASSERT_EQ(scene->panels.size(), panels) << name;
    for (const auto& panel : scene->panels) {
      const bool second = panel != scene->panels.front();
      const bool overTmp = panel->options().sort == SortOrder::date;
      const std::string shown = overTmp ? std::filesystem::canonical("/tmp").string() : "/usr";
      EXPECT_EQ(panel->folderShown(), second ? "/usr/share" : shown) << name;
    }
  }
  EXPECT_THROW(bundledScenario("no-such"), ScenarioError);
}

// The option that each of these is about.
TEST(BundledScenarios, HoldTheFactThatTheyAreNamedFor) {
  const auto panel = [](const std::string& name) { return bundledScenario(name).panels.front(); };
  EXPECT_EQ(panel("chromium-english").prompt, "Select");
  EXPECT_EQ(panel("chromium-chinese").prompt, "选择");
  EXPECT_EQ(panel("columns").view, PanelView::columns);
  EXPECT_EQ(panel("icons").view, PanelView::icons);
  EXPECT_EQ(panel("keys-lost").keysReach, KeysReach::nobody);
  EXPECT_EQ(panel("keys-lost-window").keysReach, KeysReach::nobody);
  EXPECT_EQ(panel("keys-only-in-front").keysReach, KeysReach::serviceWhileHostFrontmost);
  EXPECT_EQ(panel("clicks-lost").clicksReach, ClicksReach::none);
  EXPECT_EQ(panel("clicks-at-the-corner").clicksReach, ClicksReach::windowCorner);
  EXPECT_EQ(panel("folder-upload").mode, PanelMode::upload);
  EXPECT_TRUE(panel("folder-upload").asksAfterUpload);
  EXPECT_EQ(bundledScenario("slow-requests").prices.request, 0.002);
  EXPECT_EQ(bundledScenario("busy-browser").faults.busy.at(0).to, 8);
  EXPECT_EQ(bundledScenario("french-keyboard").keyboardLayout, KeyboardLayout::azerty);
  EXPECT_EQ(bundledScenario("two-browsers").panels.at(1).host, 813);
  const auto browser = [](const std::string& name) {
    return bundledScenario(name).processes.back();
  };
  EXPECT_TRUE(browser("other-space").onOtherSpace);
  EXPECT_TRUE(browser("address-bar").windows.at(0).addressFocused);
  EXPECT_EQ(browser("address-bar").windows.at(0).address, "");
}

// Opens the go-to sheet, goes to /usr/bin and confirms; gives the record's bytes.
std::string playedThrough(const std::string& name) {
  const auto scene = makeScene(bundledScenario(name));
  Desktop& desktop = scene->desktop;
  const auto post = [&](const KeyEvent& event, Seconds wait) {
    desktop.answer(PostEvent{event, 900});
    desktop.advanceTo(desktop.now() + wait);
  };
  desktop.advanceTo(5);
  post({5, true, 0x120000, {}}, 3);
  post({0, true, 0, utf16FromUtf8("/usr/share")}, 1);
  post({36, true, 0, {}}, 5);
  post({36, true, 0, {}}, 1);
  return desktop.record().toJson().dump();
}

TEST(BundledScenarios, PlayedTwiceGiveTheSameRecord) {
  for (const auto& name : bundledScenarioNames()) {
    EXPECT_EQ(playedThrough(name), playedThrough(name)) << name;
  }
  EXPECT_NE(playedThrough("slow-panel").find("panel closed: chosen /usr/share"), std::string::npos);
}

}  // namespace
}  // namespace simulator::scenario
