#include "works/facts.h"

namespace tessarine::test {
namespace {

using Json = nlohmann::ordered_json;

Json merged(Json base, const Json& more) {
  base.update(more);
  return base;
}

const Json english = Json::object();
const Json chinese{{"language", "zh-Hans"}};
const Json withKeys{{"language", "zh-Hans"}, {"keysReach", "host"}};
const Json inService{{"shape", "service-window"}, {"language", "zh-Hans"}};
const Json inWindow{{"shape", "host-window"}, {"language", "zh-Hans"}};
const Json englishWindow{{"shape", "service-window"}};
// Where a route looks for windows by their titles, it finds them.
const Json titled{{"hostTitle", "打开"}, {"serviceTitle", "打开"}};
// It has its windows, which are listed as 打开.
const Json unseen{{"shape", "unseen"}, {"language", "zh-Hans"}, {"serviceTitle", "打开"}};

Json process(int pid, const std::string& name, const Json& windows) {
  return {{"pid", pid},
          {"name", name},
          {"command", "/Applications/" + name + ".app/Contents/MacOS/" + name},
          {"windows", windows}};
}

Json processes(const Json& browser) {
  return Json::array({process(250, "Finder", Json::array()),
                      process(300, "Terminal", {{{"title", "Terminal"}}}), browser});
}

Json browserWith(const Json& window) {
  Json shown{{"title", "Extensions"}, {"webElements", 40}};
  shown.update(window);
  return process(812, "Google Chrome", Json::array({shown}));
}

Json onOtherSpace() {
  Json browser = browserWith(Json::object());
  browser["onOtherSpace"] = true;
  return {{"processes", processes(browser)}};
}

Json addressBar(const std::string& text) {
  return {{"processes", processes(browserWith({{"address", text}, {"addressFocused", true}}))}};
}

// The second browser's panel shows another folder than the first one's.
Json twoBrowsers() {
  Json running = processes(browserWith(Json::object()));
  running.push_back(
      process(secondBrowserPid, "Google Chrome", {{{"title", "Mail"}, {"webElements", 40}}}));
  return {{"processes", running}};
}

Json faults(const Json& given) {
  return {{"faults", given}};
}

Json busyUntil(double seconds) {
  const Json busy{{"pid", 812}, {"fromSeconds", 0.3}, {"toSeconds", seconds}};
  return faults({{"busy", Json::array({busy})}});
}

std::vector<Fact> asMeasured() {
  return {
      {"Chromium's sheet, English", english},
      {"Chromium's sheet, Simplified Chinese", chinese},
      {"Chromium's sheet, German", {{"language", "de"}}},
      {"a panel of its own among the browser's windows, English", {{"shape", "host-window"}}},
      {"a panel of its own among the browser's windows, Chinese", inWindow},
      {"a window that the service alone exposes, English", englishWindow},
      {"a window that the service alone exposes, Chinese", inService},
      {"a chooser inside the browser's window, Chinese",
       {{"shape", "embedded"}, {"language", "zh-Hans"}}},
      {"a panel that stands in both trees, Chinese", merged(chinese, {{"inBothTrees", true}})},
      {"a panel of an old system, English",
       {{"shape", "host-window"}, {"identifiers", false}, {"goTo", {{"generation", "old"}}}}},
      {"a panel that no tree shows", unseen},
      {"the sheet's contents are the browser's elements, Chinese",
       merged(chinese, {{"elementsBelongTo", "host"}})},
      {"a folder upload, Chinese; the window that the service alone exposes",
       merged(inService, {{"mode", "upload"}})},
  };
}

std::vector<Fact> whoTakesKeys() {
  const std::pair<const char*, Json> shapes[] = {{"the sheet", chinese},
                                                 {"the browser's window", inWindow},
                                                 {"the service's window", inService}};
  const std::pair<const char*, const char*> reaches[] = {
      {"the browser", "host"},
      {"either process", "both"},
      {"the service, while the browser is in front", "service-while-host-frontmost"},
      {"nobody", "nobody"}};
  std::vector<Fact> facts;
  for (const auto& [where, shape] : shapes) {
    for (const auto& [who, reach] : reaches) {
      facts.push_back(
          {std::string(where) + "; keys reach " + who, merged(shape, {{"keysReach", reach}})});
    }
  }
  return facts;
}

std::vector<Fact> whereClicksGo() {
  std::vector<Fact> facts;
  for (const char* reach : {"service", "host", "both", "window-corner"}) {
    facts.push_back({std::string("a panel that no tree shows; clicks: ") + reach,
                     merged(unseen, {{"clicksReach", reach}})});
  }
  // Its first row lies where the tool clicks.
  const Json overTmp{
      {"folder", "/tmp"},
      {"sort", "date"},
      {"layout", {{"list", {{"x", 160}, {"y", 92}, {"width", 640}, {"height", 250}}}}}};
  facts.push_back(
      {"the same over /tmp, newest first, its first row where it is expected; clicks: none",
       merged(unseen, overTmp)});
  facts.push_back(
      {"the same; clicks: both", merged(merged(unseen, overTmp), {{"clicksReach", "both"}})});
  facts.push_back(
      {"the service's window; clicks: both", merged(inService, {{"clicksReach", "both"}})});
  facts.push_back({"the sheet; clicks: both", merged(chinese, {{"clicksReach", "both"}})});
  return facts;
}

std::vector<Fact> whatTheWindowListNames() {
  return {
      {"the sheet; its windows are listed as 打开", merged(chinese, titled)},
      {"the same; keys reach either process",
       merged(merged(chinese, titled), {{"keysReach", "both"}})},
      {"the sheet; only the service's window is listed, as 打开",
       merged(merged(chinese, titled), {{"listed", "service"}})},
      {"the service's window; only the browser's is listed",
       merged(inService, {{"listed", "host"}})},
      {"the service's window; neither is listed", merged(inService, {{"listed", "none"}})},
      {"the service's window; ps names the service by its display name",
       merged(inService, {{"serviceCommand", "Open and Save Panel Service (Google Chrome)"}})},
      {"the same; neither is listed",
       merged(inService, {{"listed", "none"},
                          {"serviceCommand", "Open and Save Panel Service (Google Chrome)"}})},
  };
}

std::vector<Fact> whatThePanelShows() {
  return {
      {"columns", merged(inService, {{"view", "columns"}})},
      {"icons", merged(inService, {{"view", "icons"}})},
      {"one cell a row", merged(inService, {{"listColumns", 1}})},
      {"eight cells a row", merged(inService, {{"listColumns", 8}})},
      {"a folder of 3,000 entries", inService, Json::object(), "large", "large/target",
       "large/report.txt"},
      {"an empty folder", inService, Json::object(), "start", "start/empty"},
      {"a link", inService, Json::object(), "start", "start/link", "start/link.txt"},
      {"a decomposed name", inService, Json::object(), "start", "start/cafe\u0301",
       "start/cafe\u0301.txt"},
      {"a folder of the same name shown already", inService, Json::object(), "other/target"},
      {"the folder itself shown already", inService, Json::object(), "start/target"},
      {"the go-to sheet suggests another folder, which wins",
       merged(inService, {{"goTo", {{"suggestion", "/usr/share"}}}})},
      {"the go-to sheet's Return confirms the panel, too",
       merged(inService, {{"faults", {{"goToReturnConfirms", true}}}})},
      {"the search field offers AXConfirm, English prompt Choose",
       merged(englishWindow, {{"searchConfirms", true}, {"prompt", "Choose"}})},
  };
}

std::vector<Fact> whatStandsAround() {
  return {
      {"requests of 2 ms", inService, {{"prices", {{"request", 0.002}}}}},
      {"requests of 2 ms, a folder of 3,000 entries",
       inService,
       {{"prices", {{"request", 0.002}}}},
       "large",
       "large/target",
       "large/report.txt"},
      {"a browser that is busy from 0.3 s to 4 s", inService, busyUntil(4)},
      {"a browser that is busy from 0.3 s to 30 s", inService, busyUntil(30)},
      {"the sheet, keys reach the browser, which is busy from 0.3 s to 4 s", withKeys,
       busyUntil(4)},
      {"a panel under load, six times as slow", merged(inService, {{"slow", 6}})},
      {"the sheet, keys reach the browser; another space", withKeys, onOtherSpace()},
      {"two browsers of one name", inService, twoBrowsers()},
      {"the sheet, keys reach the browser; two browsers of one name", withKeys, twoBrowsers()},
      {"the sheet, keys reach the browser; an empty address bar that has the keyboard", withKeys,
       addressBar("")},
      {"the sheet, keys reach the browser; an address bar with text that has the keyboard",
       withKeys, addressBar("example.com")},
      {"the sheet, keys reach the browser; a French keyboard layout",
       withKeys,
       {{"keyboardLayout", "azerty"}}},
      {"the sheet, keys reach the browser; activation is refused", withKeys,
       faults({{"activationRefused", true}})},
  };
}

std::vector<Fact> whatIsNotPermitted() {
  return {
      {"without Accessibility", inService, faults({{"untrusted", true}})},
      {"without Screen Recording", inService, faults({{"screenRecordingDenied", true}})},
      {"a panel that no tree shows; without Screen Recording", unseen,
       faults({{"screenRecordingDenied", true}})},
      {"the sheet; without Automation of System Events", chinese,
       faults({{"automationDenied", {"System Events"}}})},
      {"the sheet; without Automation of System Events, and activation is refused", chinese,
       faults({{"automationDenied", {"System Events"}}, {"activationRefused", true}})},
      {"without Automation of the Finder", inService, faults({{"automationDenied", {"Finder"}}})},
      {"without the capture helper", inService,
       faults({{"missingPrograms", {"background-window-capture"}}})},
  };
}

}  // namespace

const std::vector<FactGroup>& factGroups() {
  static const std::vector<FactGroup> groups{
      {"Where the panel stands", asMeasured()},
      {"Who takes the keys (Chinese)", whoTakesKeys()},
      {"Where clicks go (Chinese)", whereClicksGo()},
      {"What the window list and `ps` name (Chinese)", whatTheWindowListNames()},
      {"What the panel shows (the service's window, Chinese unless it says otherwise)",
       whatThePanelShows()},
      {"What stands around it (the same, or Chromium's Chinese sheet)", whatStandsAround()},
      {"What is not permitted or missing (the same)", whatIsNotPermitted()},
  };
  return groups;
}

}  // namespace tessarine::test
