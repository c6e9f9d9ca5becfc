// Which elements are Open panels, and whose: by identity, in the browser's tree and in those of
// services.
#include "dialog/panel_search.h"

#include <gmock/gmock.h>

#include "core/tables.h"
#include "dialog/panel_parts.h"
#include "dialog/tree.h"
#include "panels/panel_owners.h"
#include "support/temporary_folder.h"

namespace tessarine::test::panel_search {
namespace {

using Node = simulator::Element;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
namespace ax = simulator::ax;

std::vector<std::string> namesIn(const BareDesktop& world) {
  std::vector<std::string> names;
  for (const PanelRoot& root : panelRootsIn({world.appHandle(), browserPid, primaryBrowserLabel})) {
    const auto called = axString(root.element, "called");
    names.push_back(called.value_or(nameOf(root.element)));
    EXPECT_EQ(root.owner.pid, browserPid);
    EXPECT_EQ(root.owner.label, primaryBrowserLabel);
  }
  return names;
}

// A panel's root, told from others by `called`.
Node& addPanel(Node& parent, const std::string& called = "panel",
               const std::string& role = "AXSheet") {
  return add(parent, "open-panel", role, {{"called", called}});
}

// The controls of a panel of an old system, without identifiers.
void addControls(Node& parent) {
  Node& split = parent.addChild("AXSplitGroup");
  Node& list = split.addChild("AXScrollArea").addChild("AXOutline");
  list.set("AXDescription", std::string("list view"));
  list.setFrame({300, 100, 400, 300});
  split.addChild("AXButton").set("AXTitle", std::string("Cancel"));
  split.addChild("AXButton").set("AXTitle", std::string("Open"));
}

// --- By the identifier. ---

TEST(PanelRootsIn, AreWindowsSheetsAndGroupsOfAnyTitle) {
  for (const char* role : {"AXSheet", "AXWindow", "AXGroup", "AXDialog"}) {
    for (const char* title : {"", "打开", "Datei auswählen", "Extensions"}) {
      BareDesktop world;
      Node& panel = addPanel(world.addWindow("Extensions"), "panel", role);
      panel.set("AXTitle", std::string(title));
      EXPECT_THAT(namesIn(world), ElementsAre("panel")) << role << " " << title;
    }
  }
}

TEST(PanelRootsIn, AreTheWindowsThemselves) {
  BareDesktop world;
  Node& window = world.addWindow("Öffnen");
  window.set("AXIdentifier", std::string("open-panel"));
  EXPECT_THAT(namesIn(world), ElementsAre("open-panel"));
}

TEST(PanelRootsIn, MustBeCalledExactlySo) {
  for (const char* identifier : {"Open-Panel", "open-panel-2", "save-panel", ""}) {
    BareDesktop world;
    Node& sheet = addPanel(world.addWindow("Extensions"));
    sheet.set("AXIdentifier", std::string(identifier));
    EXPECT_THAT(namesIn(world), IsEmpty()) << identifier;
  }
}

// The focused and the main window are among the windows.
TEST(PanelRootsIn, AreCountedOnce) {
  BareDesktop world;
  Node& window = world.addWindow("Open");
  window.set("AXIdentifier", std::string("open-panel"));
  world.process().focused_window = world.desktop.windows().front()->number;
  EXPECT_EQ(namesIn(world).size(), 1U);
}

TEST(PanelRootsIn, AreLookedForOnceInEachWindow) {
  BareDesktop world;
  world.addWindow("Extensions");
  world.process().focused_window = world.desktop.windows().front()->number;
  namesIn(world);
  EXPECT_EQ(requestsFor(world.desktop.record(), "AXIdentifier"), 1);
}

// One that also is a window of its own in the list, as focused sheets are.
TEST(PanelRootsIn, ATitledSheetIsOne) {
  BareDesktop world;
  Node& sheet = world.addWindow("Extensions").addChild("AXSheet");
  sheet.set("AXTitle", std::string("Open"));
  sheet.set("called", std::string("old"));
  addControls(sheet);
  simulator::Window of;
  of.owner = browserPid;
  of.element = &sheet;
  world.process().focused_window = world.desktop.addWindow(of).number;
  EXPECT_THAT(namesIn(world), ElementsAre("old"));
}

TEST(PanelRootsIn, AreNotLookedForInAPanel) {
  BareDesktop world;
  Node& panel = addPanel(world.addWindow("Extensions"), "panel");
  addPanel(panel, "part");
  EXPECT_THAT(namesIn(world), ElementsAre("panel"));
}

TEST(PanelRootsIn, MayStandInTheFocusedWindowAlone) {
  BareDesktop world;
  Node& window = world.addWindow("Extensions");
  Node& group = add(window, "group");
  Node& sheet = addPanel(add(add(add(group, "1"), "2"), "3"), "far below");
  simulator::Window of;
  of.owner = browserPid;
  of.frame = {100, 100, 400, 300};
  of.element = &sheet;
  world.process().focused_window = world.desktop.addWindow(of).number;
  EXPECT_THAT(namesIn(world), ElementsAre("far below"));
}

TEST(PanelRootsIn, StandUpToThreeLevelsBelowAWindow) {
  const auto found = [](int level) {
    BareDesktop world;
    addPanel(addChain(world.addWindow("Extensions"), level - 1));
    return !namesIn(world).empty();
  };
  EXPECT_TRUE(found(1));
  EXPECT_TRUE(found(3));
  EXPECT_FALSE(found(4));
}

TEST(PanelRootsIn, AreLookedForAmongAHundredAndFiftyElementsOfEachWindow) {
  const auto found = [](int siblings) {
    BareDesktop world;
    Node& window = world.addWindow("Extensions");
    addSiblings(window, siblings);
    addPanel(window);
    return !namesIn(world).empty();
  };
  EXPECT_TRUE(found(148));
  EXPECT_FALSE(found(149));
  BareDesktop world;
  addPanel(world.addWindow("back"), "of the second window");
  addSiblings(world.addWindow("front"), 200);
  EXPECT_THAT(namesIn(world), ElementsAre("of the second window"));
}

TEST(PanelRootsIn, AreNotLookedForInPagesToolBarsAndListings) {
  for (const char* role :
       {"AXWebArea", "AXToolbar", "AXOutline", "AXTable", "AXList", "AXBrowser"}) {
    BareDesktop world;
    addPanel(add(world.addWindow("Extensions"), "page", role));
    EXPECT_THAT(namesIn(world), IsEmpty()) << role;
  }
}

TEST(PanelRootsIn, AreAllThatAreOpen) {
  BareDesktop world;
  addPanel(world.addWindow("back"), "first");
  addPanel(world.addWindow("front"), "second");
  EXPECT_EQ(namesIn(world).size(), 2U);
}

TEST(PanelRootsIn, AreTwoInOneWindow) {
  BareDesktop world;
  Node& window = world.addWindow("Extensions");
  addPanel(window, "first");
  addPanel(window, "second");
  EXPECT_THAT(namesIn(world), ElementsAre("first", "second"));
}

// --- By what old systems show. ---

TEST(PanelRootsIn, ATitleDoesNotCountBesideAnIdentifier) {
  BareDesktop world;
  addControls(world.addWindow("Open"));
  addPanel(world.addWindow("Extensions"), "identified");
  EXPECT_THAT(namesIn(world), ElementsAre("identified"));
}

TEST(PanelRootsIn, AnOldPanelIsKnownByItsTitleAndControls) {
  for (const char* title : {"Open", "打开"}) {
    BareDesktop world;
    Node& window = world.addWindow(title);
    window.set("called", std::string("old"));
    addControls(window);
    EXPECT_THAT(namesIn(world), ElementsAre("old")) << title;
  }
}

TEST(PanelRootsIn, AnOldPanelIsAWindowASheetOrADialog) {
  for (const char* role : {"AXWindow", "AXSheet", "AXDialog"}) {
    BareDesktop world;
    Node& old = world.addWindow("Extensions").addChild(role);
    old.set("AXTitle", std::string("Open"));
    old.set("called", std::string("old"));
    addControls(old);
    EXPECT_THAT(namesIn(world), ElementsAre("old")) << role;
  }
}

TEST(PanelRootsIn, AnOldPanelIsKnownByItsDescriptionToo) {
  BareDesktop world;
  Node& window = world.addWindow("");
  window.set("AXDescription", std::string("打开"));
  window.set("called", std::string("old"));
  addControls(window);
  EXPECT_THAT(namesIn(world), ElementsAre("old"));
}

TEST(PanelRootsIn, OneButtonBesideAListIsEnoughForAnOldPanel) {
  for (const char* title : {"Cancel", "Choose"}) {
    BareDesktop world;
    Node& window = world.addWindow("Open");
    window.addChild("AXOutline").set("AXDescription", std::string("list view"));
    window.addChild("AXButton").set("AXTitle", std::string(title));
    EXPECT_EQ(namesIn(world).size(), 1U) << title;
  }
}

TEST(PanelRootsIn, APageThatIsTitledOpenIsNoPanel) {
  BareDesktop world;
  Node& window = world.addWindow("Open");
  Node& page = add(window, "page", "AXWebArea");
  addControls(page);
  EXPECT_THAT(namesIn(world), IsEmpty());
}

TEST(PanelRootsIn, AWindowThatIsTitledOpenNeedsBothAListAndAButton) {
  BareDesktop buttons;
  Node& question = buttons.addWindow("Open");
  question.addChild("AXButton").set("AXTitle", std::string("Cancel"));
  question.addChild("AXButton").set("AXTitle", std::string("Open"));
  EXPECT_THAT(namesIn(buttons), IsEmpty());
  BareDesktop list;
  list.addWindow("Open").addChild("AXOutline").set("AXDescription", std::string("list view"));
  EXPECT_THAT(namesIn(list), IsEmpty());
}

TEST(PanelRootsIn, AnEmbeddedChooserWithoutIdentifiersIsTheBrowsersAlone) {
  World world("chinese-embedded", {{"/panels/0/identifiers", false}});
  const Element app = Element::application(browserPid);
  EXPECT_EQ(panelRootsIn({app, browserPid, primaryBrowserLabel}).size(), 1U);
  EXPECT_THAT(panelRootsIn({app, browserPid, panelServiceLabel}), IsEmpty());
}

// A chooser with its list, its text and a bar of buttons.
Node& addChooser(Node& parent, const std::string& called) {
  Node& chooser = add(parent, called, "AXGroup", {{"called", called}});
  Node& list = chooser.addChild("AXScrollArea").addChild("AXOutline");
  list.set("AXDescription", std::string("列表视图"));
  Node& bar = chooser.addChild("AXGroup");
  bar.addChild("AXButton").set("AXTitle", std::string("Cancel"));
  bar.addChild("AXButton").set("AXTitle", std::string("Open"));
  return chooser;
}

TEST(PanelRootsIn, AnEmbeddedChooserIsTheInnermostElementAroundItsListAndItsButtons) {
  BareDesktop world;
  Node& window = world.addWindow("Extensions");
  addChooser(window.addChild("AXGroup"), "chooser");
  EXPECT_THAT(namesIn(world), ElementsAre("chooser"));
}

TEST(PanelRootsIn, EmbeddedChoosersAreAllFound) {
  BareDesktop world;
  addChooser(world.addWindow("Extensions").addChild("AXGroup"), "one");
  addChooser(world.addWindow("Downloads").addChild("AXGroup"), "two");
  EXPECT_EQ(namesIn(world).size(), 2U);
}

// It would still be there when the chooser has closed.
TEST(PanelRootsIn, ABrowsersWindowIsNoEmbeddedChooser) {
  BareDesktop world;
  Node& window = world.addWindow("Extensions");
  window.addChild("AXOutline").set("AXDescription", std::string("列表视图"));
  window.addChild("AXButton").set("AXTitle", std::string("Cancel"));
  window.addChild("AXButton").set("AXTitle", std::string("Open"));
  EXPECT_THAT(namesIn(world), IsEmpty());
}

TEST(PanelRootsIn, ADialogOfTheBrowserMayBeAChooserItself) {
  BareDesktop world;
  Node& window = world.addWindow("Some title");
  window.set("AXSubrole", std::string("AXDialog"));
  window.addChild("AXOutline").set("AXDescription", std::string("列表视图"));
  window.addChild("AXButton").set("AXTitle", std::string("Cancel"));
  window.addChild("AXButton").set("AXTitle", std::string("Open"));
  EXPECT_EQ(namesIn(world).size(), 1U);
}

TEST(PanelRootsIn, NoPageIsSearchedForAnEmbeddedChooser) {
  BareDesktop world;
  addChooser(world.addWindow("Extensions").addChild("AXWebArea"), "page");
  EXPECT_THAT(namesIn(world), IsEmpty());
}

// A page of the browser that is a chooser, below as many groups, beside so many other elements.
std::size_t choosersFound(int groups, int others) {
  BareDesktop world;
  Node* at = &world.addWindow("Extensions");
  Node& page = at->addChild("AXWebArea");
  for (int i = 0; i < others; ++i) page.addChild("AXStaticText");
  for (int i = 0; i < groups; ++i) at = &at->addChild("AXGroup");
  addControls(*at);
  at->children().back()->addChild("AXPopUpButton").set("AXTitle", std::string(locationMarker));
  return namesIn(world).size();
}

TEST(PanelRootsIn, AnEmbeddedChooserMayStandDeepAndBesideAPage) {
  EXPECT_EQ(choosersFound(0, 0), 1U);
  EXPECT_EQ(choosersFound(4, 0), 1U);
  EXPECT_EQ(choosersFound(0, 330), 1U);
}

TEST(PanelRootsIn, AnEmbeddedChoosersCancelButtonStandsEightLevelsDownAtMost) {
  EXPECT_EQ(choosersFound(6, 0), 1U);
  EXPECT_EQ(choosersFound(7, 0), 0U);
}

// The window, the group, its scroll area and the button itself are four of them.
TEST(PanelRootsIn, AnEmbeddedChoosersCancelButtonIsOneOfThreeHundredAndSixtyElements) {
  const auto found = [](int others) {
    BareDesktop world;
    Node& window = world.addWindow("Extensions");
    for (int i = 0; i < others; ++i) window.addChild("AXStaticText");
    addControls(window);
    window.children().back()->addChild("AXPopUpButton").set("AXTitle", std::string(locationMarker));
    return namesIn(world).size();
  };
  EXPECT_EQ(found(356), 1U);
  EXPECT_EQ(found(357), 0U);
}

TEST(PanelRootsIn, AnEmbeddedChooserWithTwoCancelButtonsIsOne) {
  BareDesktop world;
  Node& chooser = addChooser(world.addWindow("Extensions").addChild("AXGroup"), "chooser");
  chooser.addChild("AXButton").set("AXTitle", std::string("Cancel"));
  EXPECT_THAT(namesIn(world), ElementsAre("chooser"));
}

// What is told from its Cancel button would be the group around both.
TEST(PanelRootsIn, ATextBesideAnEmbeddedChooserIsNoButtonOfIt) {
  BareDesktop world;
  Node& group = world.addWindow("Extensions").addChild("AXGroup");
  Node& chooser = group.addChild("AXGroup");
  addControls(chooser);
  chooser.addChild("AXPopUpButton").set("AXTitle", std::string(locationMarker));
  chooser.set("called", std::string("chooser"));
  group.addChild("AXStaticText").set("AXTitle", std::string("Cancel"));
  EXPECT_THAT(namesIn(world), ElementsAre("chooser"));
}

TEST(PanelRootsIn, AnEmbeddedChooserWithoutAListIsNone) {
  BareDesktop world;
  Node& window = world.addWindow("Extensions").addChild("AXGroup");
  window.addChild("AXButton").set("AXTitle", std::string("Cancel"));
  window.addChild("AXButton").set("AXTitle", std::string("Choose"));
  window.addChild("AXPopUpButton").set("AXTitle", std::string(locationMarker));
  EXPECT_THAT(namesIn(world), IsEmpty());
}

TEST(PanelRootsIn, AnOldPanelOfAnotherTitleIsNone) {
  BareDesktop world;
  Node& window = world.addWindow("Page Setup");
  window.addChild("AXButton").set("AXTitle", std::string("Cancel"));
  EXPECT_THAT(namesIn(world), IsEmpty());
}

// --- What does not answer. ---

std::string failureOf(const BareDesktop& world) {
  try {
    panelRootsIn({world.appHandle(), browserPid, primaryBrowserLabel});
  } catch (const Unanswered& unanswered) {
    return unanswered.gone() ? "gone" : "silent";
  }
  return "none";
}

TEST(PanelRootsIn, ThrowsWhenTheApplicationDoesNotAnswer) {
  BareDesktop world;
  EXPECT_EQ(failureOf(world), "none");
  world.desktop.faults().silent_processes.insert(browserPid);
  EXPECT_EQ(failureOf(world), "silent");
}

// Who asks the application element of nobody is told that nobody answers.
TEST(PanelRootsIn, ThrowsWhenTheApplicationHasEnded) {
  BareDesktop world;
  world.desktop.terminateProcess(browserPid, false);
  EXPECT_EQ(failureOf(world), "silent");
}

TEST(PanelRootsIn, ThrowsWhenAWindowDoesNotSayWhatItHolds) {
  BareDesktop world;
  addPanel(world.addWindow("Extensions"));
  world.desktop.faults().refused_requests.push_back(
      {.error = ax::cannotComplete, .name = "AXChildren", .role = "AXWindow"});
  EXPECT_EQ(failureOf(world), "silent");
}

// --- The browser's and its services'. ---

std::vector<PanelRoot> panelsOf(std::int32_t pid = browserPid) {
  const ProcessSurvey survey = surveyProcesses();
  return openPanels(survey, pid, panelServicesOf(survey, pid));
}

// "812 primary-browser" for each panel.
std::vector<std::string> ownersIn(const std::vector<PanelRoot>& panels) {
  std::vector<std::string> owners;
  for (const PanelRoot& panel : panels) {
    owners.push_back(std::to_string(panel.owner.pid) + " " + panel.owner.label);
  }
  return owners;
}

TEST(OpenPanels, AreTheBrowsersOwn) {
  World world("chromium-english");
  EXPECT_THAT(ownersIn(panelsOf()), ElementsAre("812 primary-browser"));
}

TEST(OpenPanels, AreThoseThatAServiceAloneShows) {
  World world("english-service-window");
  EXPECT_THAT(ownersIn(panelsOf()), ElementsAre("900 open-save-panel-service"));
}

TEST(OpenPanels, AreNoneWithoutOne) {
  World world("no-panel");
  EXPECT_THAT(panelsOf(), IsEmpty());
}

TEST(OpenPanels, APanelInBothTreesIsTheBrowsersAlone) {
  for (const char* shape : {"host-sheet", "host-window"}) {
    World world("chromium-chinese", {{"/panels/0/shape", shape}, {"/panels/0/inBothTrees", true}});
    EXPECT_THAT(ownersIn(panelsOf()), ElementsAre("812 primary-browser")) << shape;
  }
}

TEST(OpenPanels, OfTwoAreBothFound) {
  World world("two-panels");
  EXPECT_EQ(panelsOf().size(), 2U);
}

// What tells them apart is the place, whosever elements stand in them, or the elements.
TEST(OpenPanels, OneOfTheBrowserAndOneOfTheServiceAreTwo) {
  World apart("two-panels",
              {{"/panels/0/shape", "host-sheet"}, {"/panels/0/elementsBelongTo", "host"}});
  EXPECT_EQ(panelsOf().size(), 2U);
}

TEST(OpenPanels, OneOfTheBrowserAndOneOfTheServiceAtOnePlaceAreTwo) {
  World stacked("two-panels",
                {{"/panels/0/shape", "host-sheet"},
                 {"/panels/1/frame", {{"x", 320}, {"y", 180}, {"width", 800}, {"height", 450}}}});
  EXPECT_EQ(panelsOf().size(), 2U);
}

// Their elements cannot be compared; that the service has two windows there tells.
TEST(OpenPanels, TwoAtOnePlaceAreToldByTheirWindows) {
  const std::string frame = "/panels/1/frame";
  const nlohmann::ordered_json place{{"x", 320}, {"y", 180}, {"width", 800}, {"height", 450}};
  World::Patches patches{{"/panels/0/shape", "host-sheet"},
                         {"/panels/0/elementsBelongTo", "host"},
                         {"/panels/0/listed", "host-and-service"},
                         {"/panels/1/listed", "host-and-service"},
                         {frame, place}};
  World listed("two-panels", patches);
  EXPECT_EQ(panelsOf().size(), 2U);
  patches[3].second = "host";
  World unlisted("two-panels", patches);
  EXPECT_EQ(panelsOf().size(), 1U);
}

TEST(OpenPanels, ATitleInOneTreeDoesNotCountBesideAnIdentifierInAnother) {
  World world("two-panels", {{"/panels/0/shape", "host-window"},
                             {"/panels/0/identifiers", false},
                             {"/panels/0/prompt", "Choose"}});
  EXPECT_THAT(ownersIn(panelsOf()), ElementsAre("900 open-save-panel-service"));
}

TEST(OpenPanels, AreNotThoseOfASecondBrowser) {
  World world("two-browsers");
  const auto panels = panelsOf();
  for (const PanelRoot& panel : panels) EXPECT_NE(panel.owner.pid, 813);
  EXPECT_LE(panels.size(), 1U);
}

TEST(OpenPanels, AreNoneOfAServiceThatDoesNotAnswer) {
  World world("english-service-window");
  const ProcessSurvey survey = surveyProcesses();
  world.desktop().faults().silent_processes.insert(servicePid);
  EXPECT_THAT(openPanels(survey, browserPid, {servicePid}), IsEmpty());
}

TEST(OpenPanels, ThrowWhenTheBrowserDoesNotAnswer) {
  World world("english-service-window");
  const ProcessSurvey survey = surveyProcesses();
  world.desktop().faults().silent_processes.insert(browserPid);
  EXPECT_THROW(openPanels(survey, browserPid, {servicePid}), Unanswered);
}

TEST(OpenPanels, AreNoneOfAServiceThatIsNotTheBrowsers) {
  World world("english-service-window");
  EXPECT_THAT(openPanels(surveyProcesses(), browserPid, {}), IsEmpty());
}

// A panel of the service that stands where another application has a window is that one's.
TEST(OpenPanels, AreNoneThatStandWithAnotherApplication) {
  World world("english-service-window", {{"/panels/0/listed", "service"}});
  ProcessSurvey survey = surveyProcesses();
  EXPECT_EQ(openPanels(survey, browserPid, {servicePid}).size(), 1U);
  ASSERT_TRUE(survey.windows);
  survey.windows->push_back({77, 250, "Finder", "", {320, 180, 800, 450}});
  EXPECT_THAT(openPanels(survey, browserPid, {servicePid}), IsEmpty());
  survey.windows->back().frame = {321, 180, 800, 450};
  EXPECT_EQ(openPanels(survey, browserPid, {servicePid}).size(), 1U);
}

TEST(OpenPanels, AreFoundWithoutIdentifiers) {
  for (const char* scenario : {"english-host-window", "chinese-service-window"}) {
    World world(scenario, {{"/panels/0/identifiers", false}});
    EXPECT_EQ(panelsOf().size(), 1U) << scenario;
  }
}

TEST(OpenPanels, AnEmbeddedChooserWithoutIdentifiersIsNarrowedToItself) {
  World world("chinese-embedded", {{"/panels/0/identifiers", false}});
  const auto panels = panelsOf();
  ASSERT_EQ(panels.size(), 1U);
  // Neither the window nor the page in it.
  EXPECT_EQ(axRole(panels.front().element), "AXSplitGroup");
  EXPECT_TRUE(panelParts(panels.front().element).complete());
}

// --- Services that only the place of their panel tells of. ---

TEST(PanelServicesByPlace, HoldTheOneWhosePanelStandsWhereTheBrowserHasAWindow) {
  World world("english-service-window", {{"/panels/0/listed", "host"}});
  const ProcessSurvey survey = surveyProcesses();
  EXPECT_THAT(panelServicesByPlace(survey, browserPid), ElementsAre(servicePid));
  EXPECT_THAT(panelServicesByPlace(survey, terminalPid), IsEmpty());
}

TEST(PanelServicesByPlace, AreKnownByAPanelWithoutAnIdentifierToo) {
  World world("english-service-window",
              {{"/panels/0/listed", "host"}, {"/panels/0/identifiers", false}});
  EXPECT_THAT(panelServicesByPlace(surveyProcesses(), browserPid), ElementsAre(servicePid));
}

TEST(PanelServicesByPlace, AreNoneWhereTheBrowserHasNoWindow) {
  World world("english-service-window", {{"/panels/0/listed", "none"}});
  EXPECT_THAT(panelServicesByPlace(surveyProcesses(), browserPid), IsEmpty());
}

TEST(PanelServicesByPlace, AreNoneWhereAThirdProcessHasAWindowToo) {
  World world("english-service-window", {{"/panels/0/listed", "host"}});
  ProcessSurvey survey = surveyProcesses();
  ASSERT_TRUE(survey.windows);
  survey.windows->push_back({77, 250, "Finder", "", {320, 180, 800, 450}});
  EXPECT_THAT(panelServicesByPlace(survey, browserPid), IsEmpty());
}

TEST(PanelServicesByPlace, AreNotNamedForAnother) {
  World world("english-service-window",
              {{"/panels/0/listed", "host"},
               {"/panels/0/serviceCommand", "Open and Save Panel Service (TextEdit)"}});
  EXPECT_THAT(panelServicesByPlace(surveyProcesses(), browserPid), IsEmpty());
}

TEST(PanelServicesByPlace, AreNoneWhenSeveralStandThere) {
  World world("two-browsers",
              {{"/panels/0/shape", "service-window"},
               {"/panels/0/listed", "host"},
               {"/panels/1/shape", "service-window"},
               {"/panels/1/listed", "none"},
               {"/panels/1/frame", {{"x", 320}, {"y", 180}, {"width", 800}, {"height", 450}}}});
  EXPECT_THAT(panelServicesByPlace(surveyProcesses(), browserPid), IsEmpty());
}

// A sheet in the browser's tree and one in the service's, each at the same place.
struct TwoTrees : BareDesktop {
  simulator::Process& service = desktop.addProcess({.pid = servicePid,
                                                    .name = "Service",
                                                    .command = "service",
                                                    .application = true,
                                                    .host = {}});
  Node& own = addPanel(addWindow("Extensions"));
  Node& other = addPanel(serviceWindow());

  TwoTrees() {
    for (Node* sheet : {&own, &other}) sheet->setFrame({100, 100, 400, 300});
  }
  Node& serviceWindow() {
    Node& window = service.root.addChild("AXWindow");
    simulator::Window of;
    of.owner = servicePid;
    of.element = &window;
    desktop.addWindow(of);
    return window;
  }
  std::size_t panels() const { return openPanels({}, browserPid, {servicePid}).size(); }
};

TEST(OpenPanels, AtOnePlaceWithElementsThatCannotBeComparedAreOne) {
  TwoTrees world;
  world.own.addChild("AXGroup");
  world.other.addChild("AXGroup");
  EXPECT_EQ(world.panels(), 1U);
}

TEST(OpenPanels, AtOnePlaceWithOtherElementsOfTheSameProcessesAreTwo) {
  TwoTrees world;
  simulator::ElementTable& table = world.process().elements;
  world.own.addChild("AXGroup");
  world.own.addChild("AXGroup", world.service.elements);
  world.other.addChild("AXGroup");
  world.other.addChild("AXGroup", table);
  EXPECT_EQ(world.panels(), 2U);
}

TEST(OpenPanels, AtOnePlaceOfWhichOneShowsNothingAreOne) {
  for (const bool own : {true, false}) {
    TwoTrees world;
    (own ? world.own : world.other).addChild("AXGroup");
    EXPECT_EQ(world.panels(), 1U);
  }
  TwoTrees empty;
  EXPECT_EQ(empty.panels(), 1U);
}

TEST(OpenPanels, AtPlacesThatNobodyTellsAreTwo) {
  BareDesktop world;
  simulator::Process& service = world.desktop.addProcess({.pid = servicePid,
                                                          .name = "Service",
                                                          .command = "service",
                                                          .application = true,
                                                          .host = {}});
  addPanel(world.addWindow("Extensions"));
  Node& window = service.root.addChild("AXWindow");
  simulator::Window of;
  of.owner = servicePid;
  of.element = &window;
  world.desktop.addWindow(of);
  addPanel(window);
  EXPECT_EQ(openPanels({}, browserPid, {servicePid}).size(), 2U);
}

// The focused window of the service is the browser's own sheet.
TEST(OpenPanels, OfTheVerySameElementAreOne) {
  BareDesktop world;
  simulator::Process& service = world.desktop.addProcess({.pid = servicePid,
                                                          .name = "Service",
                                                          .command = "service",
                                                          .application = true,
                                                          .host = {}});
  Node& sheet = addPanel(world.addWindow("Extensions"));
  simulator::Window of;
  of.owner = servicePid;
  of.element = &sheet;
  service.focused_window = world.desktop.addWindow(of).number;
  EXPECT_EQ(panelRootsIn({Element::application(servicePid), servicePid, panelServiceLabel}).size(),
            1U);
  EXPECT_EQ(openPanels({}, browserPid, {servicePid}).size(), 1U);
}

// --- Where they are. ---

TEST(PanelCounts, NameBrowserAndServices) {
  World world("two-panels");
  ProcessSurvey survey = surveyProcesses();
  const auto panel = [&](std::int32_t pid, const char* label) {
    return PanelRoot{Element::application(pid), {Element::application(pid), pid, label}};
  };
  const PanelRoot own = panel(812, primaryBrowserLabel);
  const PanelRoot services = panel(900, panelServiceLabel);
  EXPECT_EQ(panelCounts(survey, {own, own}), "Google Chrome 812: 2");
  EXPECT_EQ(panelCounts(survey, {own, own, services}),
            "Google Chrome 812: 2, panel service 900: 1");
  EXPECT_EQ(panelCounts(survey, {services}), "panel service 900: 1");
  EXPECT_EQ(panelCounts({}, {own}), "process 812: 1");
}

}  // namespace
}  // namespace tessarine::test::panel_search
