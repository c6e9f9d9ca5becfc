#include "limits/limit_cases.h"

namespace tessarine::test {
namespace {

using Json = nlohmann::ordered_json;
using Words = std::vector<std::string>;

// --- Panels. ---

Json merged(Json base, const Json& more) {
  base.update(more);
  return base;
}

Json one(const Json& panel) {
  return Json::array({panel});
}

const Json chinese{{"language", "zh-Hans"}};
const Json inService{{"shape", "service-window"}, {"language", "zh-Hans"}};
const Json inWindow{{"shape", "host-window"}, {"language", "zh-Hans"}, {"keysReach", "host"}};
// `ps` shows the service's display name.
const Json named{{"serviceCommand", "Open and Save Panel Service (Google Chrome)"}};
// It has its windows, which are listed as 打开.
const Json unseen{{"shape", "unseen"},
                  {"language", "zh-Hans"},
                  {"serviceTitle", "打开"},
                  {"clicksReach", "both"},
                  {"mode", "files"}};
const Json aside{{"folder", "other/target"},
                 {"frame", {{"x", 480}, {"y", 300}, {"width", 800}, {"height", 450}}}};
const Json offTheScreens{{"frame", {{"x", 3000}, {"y", 180}, {"width", 800}, {"height", 450}}}};
// A list over the staged copies whose first row lies where the tool clicks.
const Json newestFirst{
    {"folder", "/tmp"},
    {"sort", "date"},
    {"layout", {{"list", {{"x", 160}, {"y", 92}, {"width", 640}, {"height", 250}}}}}};

Json service(const Json& more = Json::object()) {
  return one(merged(inService, more));
}

// --- What stands around them. ---

const Json nothing = Json::object();

Json process(int pid, const std::string& name, const Json& windows) {
  return {{"pid", pid},
          {"name", name},
          {"command", "/Applications/" + name + ".app/Contents/MacOS/" + name},
          {"windows", windows}};
}

Json browser(int pid, const std::string& title) {
  const Json window{{"title", title}, {"webElements", 40}};
  return process(pid, "Google Chrome", Json::array({window}));
}

Json processes(const std::vector<Json>& browsers) {
  const Json window{{"title", "Terminal"}};
  Json all = Json::array(
      {process(250, "Finder", Json::array()), process(300, "Terminal", Json::array({window}))});
  for (const Json& each : browsers) all.push_back(each);
  return {{"processes", all}};
}

Json onAnotherSpace() {
  Json away = browser(812, "Extensions");
  away["onOtherSpace"] = true;
  return processes({away});
}

Json faults(const Json& given) {
  return {{"faults", given}};
}

const Json twoBrowsers = processes({browser(812, "Extensions"), browser(813, "Mail")});
const Json panelsOfBoth =
    Json::array({inService, merged(merged(inService, aside), {{"host", 813}})});
const Json twoPanels = Json::array({inService, merged(inService, aside)});

Json person(const std::vector<Json>& acts) {
  return {{"person", Json(acts)}};
}

Json pressesCancelAt(double seconds) {
  return person({{{"atSeconds", seconds - 0.4}, {"activates", 812}},
                 {{"atSeconds", seconds}, {"clicks", {{"x", 962}, {"y", 598}}}}});
}

// --- Command lines. ---

Words strict(const std::string& path = "start/target") {
  return {"choose-folder", "--strict-background", "--path", path};
}

Words chooseFolder(const std::string& path = "start/target") {
  return {"choose-folder", "--path", path};
}

Words choosePath(const std::string& path) {
  return {"choose-path", "--path", path};
}

// --- The cases. ---

const std::vector<LimitCase> wrongChoices{
    {"Another folder of the same name",
     service({{"folder", "other/target"}}),
     nothing,
     strict(),
     {"ok", "false success: panel 1 chose other/target", "chosen other/target"},
     {"ok", "true", "chosen start/target"}},
    {"Keys that land nowhere",
     service({{"keysReach", "nobody"}}),
     nothing,
     choosePath("start/target"),
     {"ok", "false success: panel 1 chose start", "chosen start"},
     {"ok, keys", "true", "chosen start/target"}},
    {"Clicks that land somewhere",
     one(merged(chinese, {{"clicksReach", "both"}})),
     nothing,
     chooseFolder(),
     {"ok, keys, mouse", "false success: panel 1 chose /", "chosen /"},
     {"ok", "true", "chosen start/target"}},
    {"A list of another layout",
     one(unseen),
     nothing,
     choosePath("start/report.txt"),
     {"ok, with a stagedPath, mouse", "false success: panel 1 chose start/beta.txt",
      "chosen start/beta.txt"},
     {"not verified: no open panel of Google Chrome 812 was found within 10.0s", "true", "open"}},
    {"A suggestion of the go-to sheet",
     service({{"goTo", {{"suggestion", "/usr/share"}}}}),
     nothing,
     chooseFolder(),
     {"ok, mouse", "false success: panel 1 chose /usr/share", "chosen /usr/share"},
     {"ok", "true", "chosen start/target"}},
    {"Typing without a go-to sheet",
     one({{"shape", "host-window"}, {"language", "zh-Hans"}, {"goTo", {{"neverOpens", true}}}}),
     nothing,
     {"choose-folder", "--temporary-foreground", "--path", "start/target"},
     {"ok, keys, session, front: Terminal", "false success: panel 1 chose /", "chosen /"},
     {"ok, keys", "true", "chosen start/target"}},
    {"A file for a folder panel",
     service(),
     nothing,
     choosePath("start/report.txt"),
     {"ok", "false success: panel 1 chose start", "chosen start"},
     {"not verified: a file for a folder panel: start/report.txt", "true", "open"}},
    {"A person who cancels",
     service({{"keysReach", "nobody"}}),
     pressesCancelAt(12),
     chooseFolder(),
     {"ok, mouse, front: Google Chrome", "false success: panel 1 was cancelled", "cancelled"},
     {"ok, keys, front: Google Chrome", "true", "chosen start/target"}},
    {"The only panel service, of another application",
     service({{"host", 400}, {"listed", "none"}}),
     processes({browser(812, "Extensions"), process(400, "TextEdit", Json::array())}),
     chooseFolder(),
     {"timed out after 18.0s (global watchdog)", "true", "open"},
     {"ok", "true", "chosen start/target"}},
    {"A copy in place of the file",
     one(merged(unseen, newestFirst)),
     nothing,
     choosePath("start/report.txt"),
     {"ok, with a stagedPath, mouse", "true", "chosen /tmp/zorvilet-upload-UUID.txt"},
     {"not verified: no open panel of Google Chrome 812 was found within 10.0s", "true", "open"}},
    {"An empty path",
     service(),
     nothing,
     strict(""),
     {"ok", "true", "chosen start/target"},
     {"not verified: the path is empty", "true", "open"},
     "start/target"},
    {"Two dots behind a link",
     service(),
     nothing,
     strict("start/link/../target"),
     {"ok", "true", "chosen start/target"},
     {"ok", "true", "chosen start/target"}},
    {"A pid that does not exist",
     service(),
     nothing,
     {"choose-folder", "--strict-background", "--path", "start/target", "--pid", "4711"},
     {"ok", "true", "chosen start/target"},
     {"not verified: no process has the pid 4711", "true", "open"}},
    {"A question after an upload",
     service({{"mode", "upload"}}),
     nothing,
     choosePath("start/target"),
     {"ok", "true", "chosen start/target"},
     {"ok", "true", "chosen start/target"}},
};

const std::vector<LimitCase> openStill{
    {"A panel that no window list names",
     service(merged(named, {{"listed", "none"}})),
     nothing,
     strict(),
     {"ok", "false success: panel 1 is still open", "open"},
     {"ok", "true", "chosen start/target"}},
    {"No capture helper",
     one(inWindow),
     faults({{"missingPrograms", {"background-window-capture"}}}),
     strict(),
     {"ok, keys", "false success: panel 1 is still open", "open"},
     {"ok, keys", "true", "chosen start/target"}},
    {"A panel off the screens",
     service(merged(named, offTheScreens)),
     nothing,
     strict(),
     {"ok", "false success: panel 1 is still open", "open"},
     {"ok", "true", "chosen start/target"}},
    {"A panel that close takes for closed",
     service({{"listed", "service"}, {"faults", {{"cancelDoesNothing", true}}}}),
     nothing,
     {"close", "--strict-background"},
     {"ok, closed 1", "false success: panel 1 is still open", "open"},
     {"ok, closed 1", "false success: panel 1 is still open", "open"}},
    {"close that closes nothing",
     one(Json::object()),
     nothing,
     {"close"},
     {"ok, closed 0, keys, mouse", "true", "open"},
     {"ok, closed 0, keys, mouse", "true", "open"}},
    {"Keys, texts and clicks on request",
     service(),
     nothing,
     {"press-key", "--key", "return"},
     {"ok, keys", "true", "open"},
     {"ok, keys", "true", "open"}},
};

const std::vector<LimitCase> moreThanAsked{
    {"Two panels",
     twoPanels,
     nothing,
     chooseFolder(),
     {"ok", "more than asked: panel 1 chose start", "chosen start, chosen start/target"},
     {"not verified: 2 panels are open (panel service 900: 2)", "true", "open, open"}},
    {"Two browsers of one name",
     panelsOfBoth,
     twoBrowsers,
     {"close"},
     {"ok, closed 1, keys", "more than asked: panel 2 was cancelled", "cancelled, cancelled"},
     {"ok, closed 1, keys", "more than asked: panel 2 was cancelled", "cancelled, cancelled"}},
};

const std::vector<LimitCase> errorsThatHide{
    {"A Return that confirms at once",
     service({{"faults", {{"goToReturnConfirms", true}}}}),
     nothing,
     strict(),
     {"background-only native folder panel key+AX selection failed: timed out after 2.0s; mouse "
      "CGEvent fallback is disabled in …",
      "unreported: panel 1 chose start/target", "chosen start/target"},
     {"not verified: the panel was gone before its confirm button was pressed: what it chose is "
      "unknown",
      "unreported: panel 1 chose start/target", "chosen start/target"}},
    {"A slow panel",
     service({{"slow", 6.5}}),
     nothing,
     chooseFolder(),
     {"timed out after 18.0s (global watchdog), mouse", "unreported: panel 1 chose start/target",
      "chosen start/target"},
     {"ok", "true", "chosen start/target"}},
    {"A panel that closes late",
     service({{"faults", {{"closesLateBySeconds", 10}}}}),
     nothing,
     strict(),
     {"background-only native folder panel key+AX selection failed: timed out after 2.0s; mouse "
      "CGEvent fallback is disabled in …",
      "unreported: panel 1 chose start/target", "chosen start/target"},
     {"not verified: the panel did not close within 6.0s after its button was pressed: what it "
      "will "
      "choose is unknown",
      "unreported: panel 1 chose start/target", "chosen start/target"}},
    {"A person at work in the browser",
     service(),
     pressesCancelAt(1.38),
     strict(),
     {"ok, front: Terminal", "true", "chosen start/target"},
     {"not verified: somebody pressed a key or a button in 812 while it was confirmed: what it "
      "chose is unknown, front: Terminal",
      "unreported: panel 1 chose start/target", "chosen start/target"}},
    {"The panel of another browser",
     panelsOfBoth,
     twoBrowsers,
     strict(),
     {"background-only native folder panel key+AX selection failed: timed out after 2.0s; mouse "
      "CGEvent fallback is disabled in …",
      "unreported: panel 1 chose start/target", "chosen start/target, open"},
     {"ok", "true", "chosen start/target, open"}},
    {"The second of two panels",
     twoPanels,
     nothing,
     strict(),
     {"background-only native folder panel key+AX selection failed: timed out after 2.0s; mouse "
      "CGEvent fallback is disabled in …",
      "unreported: panel 2 chose other/target", "open, chosen other/target"},
     {"not verified: 2 panels are open (panel service 900: 2)", "true", "open, open"}},
    {"Keys that open folders",
     service({{"keysReach", "both"}}),
     {{"showsSystemFolders", true}},
     chooseFolder(),
     {"timed out after 10.0s, mouse", "unreported: panel 1 chose /tmp", "chosen /tmp"},
     {"ok", "true", "chosen start/target"}},
};

const std::vector<LimitCase> disturbances{
    {"Options that a command ignores",
     one(chinese),
     nothing,
     {"choose-path", "--strict-background", "--path", "start/target"},
     {"tmp staging mouse fallback failed: tmp staging mouse fallback only supports files: "
      "start/target; keyboard fallback did …, keys, mouse",
      "true", "open"},
     {"ok", "true", "chosen start/target"}},
    {"close --strict-background clicks",
     service({{"keysReach", "nobody"}, {"faults", {{"noCancelButton", true}}}}),
     nothing,
     {"close", "--strict-background"},
     {"background-only native folder panel exposes no verified AX close control and targeted "
      "process events did not close it, keys, mouse",
      "true", "open"},
     {"background-only native folder panel exposes no verified AX close control and targeted "
      "process events did not close it, keys, mouse",
      "true", "open"}},
    {"A browser that stays in front",
     one({{"shape", "host-window"}}),
     nothing,
     {"choose-folder", "--temporary-foreground", "--path", "start/target"},
     {"timed out after 18.0s (global watchdog), keys, session, front: Google Chrome", "true",
      "open"},
     {"ok", "true", "chosen start/target"}},
    {"A person who turns to something else",
     service(),
     person({{{"atSeconds", 1}, {"activates", 250}}}),
     strict(),
     {"ok, front: Terminal", "true", "chosen start/target"},
     {"ok, front: Finder", "true", "chosen start/target"}},
    {"A page that is called Open",
     Json::array(),
     processes({browser(812, "Open")}),
     choosePath("start/target"),
     {"timed out after 4.0s, keys", "true", ""},
     {"not verified: no open panel of Google Chrome 812 was found within 10.0s", "true", ""}},
};

const std::vector<LimitCase> needlessErrors{
    {"Button texts and languages",
     one({{"keysReach", "host"}}),
     nothing,
     strict(),
     {"timed out after 1.0…s, keys", "true", "open"},
     {"ok, keys", "true", "chosen start/target"}},
    {"A link as the target",
     service(),
     nothing,
     strict("start/link"),
     {"background-only native folder panel key+AX selection failed: timed out after 2.0s; mouse "
      "CGEvent fallback is disabled in …",
      "true", "open"},
     {"ok", "true", "chosen other/target"}},
    {"Composed and decomposed names",
     service(),
     nothing,
     strict("start/caf\u00e9"),
     {"background-only native folder panel key+AX selection failed: timed out after 2.0s; mouse "
      "CGEvent fallback is disabled in …",
      "true", "open"},
     {"ok", "true", "chosen start/café"}},
    {"A name that begins with a tilde",
     service({{"folder", "tilde"}}),
     nothing,
     strict("tilde/target"),
     {"background-only native folder panel key+AX selection failed: failed to set go-to-folder "
      "value via AX (got: ~notes); …",
      "true", "open"},
     {"ok", "true", "chosen tilde/target"}},
    {"A combo box in the go-to sheet",
     service({{"goTo", {{"generation", "old"}, {"comboBox", true}}}}),
     nothing,
     strict(),
     {"background-only native folder panel key+AX selection failed: timed out after 1.5s; mouse "
      "CGEvent fallback is disabled in …",
      "true", "open"},
     {"ok", "true", "chosen start/target"}},
    {"The strict search ends after 4 s",
     service(merged(named, {{"opensAtSeconds", 6}})),
     nothing,
     {"choose-folder", "--strict-background", "--timeout", "20", "--path", "start/target"},
     {"timed out after 0.9…s, keys", "true", "open"},
     {"ok", "true", "chosen start/target"}},
};

const std::vector<LimitCase> errorsOfVerify{
    {"A panel that accessibility does not show",
     one(merged(unseen, {{"mode", "folders"}})),
     nothing,
     chooseFolder(),
     {"ok, mouse", "true", "chosen start/target"},
     {"not verified: no open panel of Google Chrome 812 was found within 10.0s", "true", "open"}},
    {"An old panel whose texts are unknown",
     one({{"shape", "host-window"}, {"identifiers", false}, {"goTo", {{"generation", "old"}}}}),
     nothing,
     {"choose-folder", "--temporary-foreground", "--path", "start/target"},
     {"timed out after 18.0s (global watchdog), keys, session, front: Google Chrome", "true",
      "open"},
     {"not verified: the panel (Google Chrome 812) has no confirm button", "true", "open"}},
    {"A hidden folder, where no keys arrive",
     one({{"shape", "host-window"}, {"language", "zh-Hans"}, {"keysReach", "nobody"}}),
     nothing,
     {"choose-folder", "--temporary-foreground", "--path", "start/.hidden"},
     {"ok, keys, session, front: Terminal", "true", "chosen start/.hidden"},
     {"not verified: the panel shows start, not start/.hidden (no go-to sheet opened; "
      "start/.hidden is not listed in start: …, keys",
      "true", "open"}},
    {"Columns, where no keys arrive",
     one({{"shape", "host-window"},
          {"language", "zh-Hans"},
          {"keysReach", "nobody"},
          {"view", "columns"}}),
     nothing,
     {"choose-folder", "--temporary-foreground", "--path", "start/target"},
     {"ok, keys, session, front: Terminal", "true", "chosen start/target"},
     {"not verified: the panel shows start, not start/target (no go-to sheet opened; start/target "
      "cannot be selected), keys",
      "true", "open"}},
    {"All windows on another space",
     one(merged(chinese, {{"keysReach", "host"}})),
     onAnotherSpace(),
     {"choose-folder", "--temporary-foreground", "--path", "start/target"},
     {"ok, keys, front: Terminal", "true", "chosen start/target"},
     {"not verified: no open panel of Google Chrome 812 was found within 10.0s", "true", "open"}},
};

}  // namespace

const std::vector<LimitCase>& limitCases() {
  static const std::vector<LimitCase> cases = [] {
    std::vector<LimitCase> all;
    for (const auto& group : {wrongChoices, openStill, moreThanAsked, errorsThatHide, disturbances,
                              needlessErrors, errorsOfVerify}) {
      all.insert(all.end(), group.begin(), group.end());
    }
    return all;
  }();
  return cases;
}

}  // namespace tessarine::test
