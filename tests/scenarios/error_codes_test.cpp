// Whole runs of the program on desktops where one platform function fails, in each way that its
// documentation names.
#include "platform/error_codes.h"

#include <gmock/gmock.h>

#include "scenarios/folder_routes.h"
#include "simulator/frameworks/faults.h"
#include "support/transcript.h"

namespace tessarine::test::error_codes {
namespace {

using ::testing::IsEmpty;
using Json = nlohmann::ordered_json;
using simulator::FaultyFrameworks;

constexpr const char* service = "english-service-window";

Outcome printed(const Json& result) {
  return {0, result.dump(2) + "\n", ""};
}

Json resultOf(const std::string& command, const std::string& key, const Json& value) {
  return {{"ok", true}, {"command", command}, {"primaryPid", browserPid}, {key, value}};
}

// --- AXUIElementCopyAttributeValue: what can be seen. ---

TEST(CopyErrors, NothingIsSeenWhereNothingCanBeRead) {
  const Json apps{
      {{"pid", browserPid}, {"label", "primary-browser"}, {"windows", Json::array()}},
      {{"pid", servicePid}, {"label", "open-save-panel-service"}, {"windows", Json::array()}}};
  for (const std::int32_t code : copyErrors) {
    SCOPED_TRACE(code);
    World world(service);
    refuse(world.desktop(), Verb::copy, code);
    EXPECT_EQ(world.run({"list-windows", "--pid", "812"}),
              printed(resultOf("list-windows", "apps", apps)));
    EXPECT_EQ(world.run({"inspect-open-dialog", "--pid", "812"}),
              printed(resultOf("inspect-open-dialog", "dialogs", Json::array())));
    EXPECT_EQ(world.panelOutcomes(), "open");
  }
}

Outcome inspected(World& world) {
  return world.run({"inspect-open-dialog", "--pid", "812"});
}

Outcome shown(const Json& dialogs) {
  return printed(resultOf("inspect-open-dialog", "dialogs", dialogs));
}

// The dialogs with a value in the place of that of every element.
Json replaced(Json dialogs, const std::string& key, const Json& value) {
  for (Json& dialog : dialogs) {
    if (dialog["root"].contains(key)) dialog["root"][key] = value;
    for (Json& node : dialog["nodes"]) node[key] = value;
  }
  return dialogs;
}

Json withoutControls(Json dialogs) {
  dialogs.at(0).at("chooserControlsAvailable") = false;
  return dialogs;
}

Outcome inspectedWithout(Verb verb, const std::string& name, std::int32_t code) {
  World world(service);
  simulator::RefusedRequests refused{verb, code};
  if (verb == Verb::copy) refused.name = name;
  world.desktop().faults().refused_requests = {refused};
  return inspected(world);
}

const Json noFrame{{"x", 0.0}, {"y", 0.0}, {"width", 0.0}, {"height", 0.0}};

// The panel is a window, known by its title. Its controls are known by their titles and the search
// field by its width and its action.
TEST(CopyErrors, WhatCannotBeReadIsShownAsEmpty) {
  World healthy(service);
  const Json dialogs = Json::parse(inspected(healthy).output).at("dialogs");
  ASSERT_EQ(dialogs.size(), 1U);
  ASSERT_EQ(dialogs[0].at("chooserControlsAvailable"), true);
  ASSERT_GT(dialogs[0].at("nodes").size(), 30U);
  Json rootAlone = withoutControls(dialogs);
  rootAlone[0]["nodes"].erase(rootAlone[0]["nodes"].begin() + 1, rootAlone[0]["nodes"].end());
  const Json withoutFrames = withoutControls(replaced(dialogs, "frame", noFrame));
  const std::vector<std::pair<std::string, Outcome>> expected{
      {"AXDescription", shown(replaced(dialogs, "description", ""))},
      {"AXValue", shown(replaced(dialogs, "value", ""))},
      {"AXPosition", shown(withoutFrames)},
      {"AXSize", shown(withoutFrames)},
      {"AXChildren", shown(rootAlone)},
      {"AXWindows", shown(dialogs)},
      {"AXTitle", shown(Json::array())},
      {"AXRole", shown(Json::array())}};
  for (const auto& [attribute, outcome] : expected) {
    for (const std::int32_t code : copyErrors) {
      EXPECT_EQ(inspectedWithout(Verb::copy, attribute, code), outcome) << attribute << " " << code;
    }
  }
  const Outcome withoutActions =
      shown(withoutControls(replaced(dialogs, "actions", Json::array())));
  for (const std::int32_t code : actionNamesErrors) {
    EXPECT_EQ(inspectedWithout(Verb::actionNames, "", code), withoutActions) << code;
  }
}

// What no tree shows is chosen in by events, and closed by them.
TEST(CopyErrors, ThePanelIsDrivenByEvents) {
  for (const std::int32_t code : copyErrors) {
    SCOPED_TRACE(code);
    FolderWorld world(service);
    refuse(world.world.desktop(), Verb::copy, code);
    EXPECT_EQ(
        choose(world, {"--timeout", "2"}),
        (FolderRun{closedByEvents(world.target, servicePid, servicesWindow, "timed out after 2.0s",
                                  {{"choosePoint", {{"x", 1052.0}, {"y", 587.0}}}}),
                   "chosen " + world.target, "mouse 4, session 0, foreground 0"}));

    World closing(service);
    refuse(closing.desktop(), Verb::copy, code);
    EXPECT_EQ(closing.run({"close", "--pid", "812", "--strict-background"}),
              printed({{"ok", true}, {"command", "close"}, {"closed", 1}}));
    EXPECT_EQ(closing.panelOutcomes(), "cancelled");
  }
}

// --- Strict choices. ---

constexpr const char* sheetsField = "AXTextField";

// The deeds of a strict choice until the path is confirmed.
Deeds written(const std::string& path) {
  return {"0.000 key 5+120000 down -> 900", "0.020 key 5+120000 up -> 900",
          "0.400 set AXFocused of AXTextField in 900",
          "0.000 set AXValue of AXTextField in 900: " + path};
}

struct StrictRun {
  Outcome outcome;
  std::string panels;
  Deeds deeds;
  bool operator==(const StrictRun&) const = default;
};

void PrintTo(const StrictRun& run, std::ostream* stream) {
  PrintTo(run.outcome, stream);
  *stream << "panels: " << run.panels << "\ndeeds: " << testing::PrintToString(run.deeds);
}

// `/usr/share` is what the sheet's field holds before anything is written to it.
struct StrictChoice : FolderWorld {
  StrictChoice() : FolderWorld(service, {{"/lastGoToPath", "/usr/share"}}) {}
  StrictRun run() {
    Outcome outcome = chooseStrictly();
    return {std::move(outcome), world.panelOutcomes(), transcript(world.record())};
  }
  StrictRun runRefusing(Verb verb, std::int32_t code, std::optional<std::string> name = {},
                        std::optional<std::string> role = {}) {
    refuse(world.desktop(), verb, code, std::move(name), std::move(role));
    return run();
  }
  StrictRun chosen(const Deeds& deeds) const {
    return {{0, strictResultText(target, servicePid), ""}, "chosen " + target, deeds};
  }
};

StrictRun failedStrictly(const std::string& cause, const Deeds& deeds) {
  return {failed(strictFailure(cause)), "open", deeds};
}

const Deeds confirmedAndReturn{"0.120 AXConfirm of AXTextField in 900", "0.200 key 36 down -> 900",
                               "0.020 key 36 up -> 900"};
// The first look at the folder comes before the panel shows it.
const Deeds pressed{"0.350 AXPress of AXButton in 900"};

TEST(StrictChoiceErrors, WithoutAny) {
  StrictChoice choice;
  EXPECT_EQ(choice.run(),
            choice.chosen(joined({written(choice.target), confirmedAndReturn, pressed})));
}

// The field is not focused, which nobody looks at.
TEST(StrictChoiceErrors, ARefusedFocusIsIgnored) {
  for (const std::int32_t code : setErrors) {
    StrictChoice choice;
    EXPECT_EQ(choice.runRefusing(Verb::set, code, "AXFocused"),
              choice.chosen(joined({written(choice.target), confirmedAndReturn, pressed})))
        << code;
  }
}

TEST(StrictChoiceErrors, ARefusedPathIsWrittenTwiceAndTheFieldsTextTold) {
  for (const std::int32_t code : setErrors) {
    StrictChoice choice;
    const std::string write = "set AXValue of AXTextField in 900: " + choice.target;
    EXPECT_EQ(choice.runRefusing(Verb::set, code, "AXValue", sheetsField),
              failedStrictly("failed to set go-to-folder value via AX (got: /usr/share)",
                             joined({written(choice.target), {"0.120 " + write}})))
        << code;
  }
}

// What claims success and writes nothing is told by reading it back.
TEST(StrictChoiceErrors, APathThatIsNotTakenIsWrittenTwiceToo) {
  StrictChoice choice;
  const std::string write = "set AXValue of AXTextField in 900: " + choice.target;
  EXPECT_EQ(choice.runRefusing(Verb::set, simulator::ax::success, "AXValue", sheetsField),
            failedStrictly("failed to set go-to-folder value via AX (got: /usr/share)",
                           joined({written(choice.target), {"0.120 " + write}})));
}

TEST(StrictChoiceErrors, APathThatCannotBeReadBackIsNotTaken) {
  for (const std::int32_t code : copyErrors) {
    StrictChoice choice;
    choice.world.desktop().faults().refused_requests = {
        {Verb::copy, code, "AXValue", "AXTextField"}};
    const Outcome outcome = choice.chooseStrictly();
    EXPECT_EQ(outcome, failed(strictFailure("failed to set go-to-folder value via AX (got: )")))
        << code;
    EXPECT_EQ(choice.world.panelOutcomes(), "open");
  }
}

TEST(StrictChoiceErrors, ARefusedConfirmationIsTheFailure) {
  for (const auto& [code, text] : std::vector<std::pair<std::int32_t, std::string>>{
           {simulator::ax::actionUnsupported, "AX action AXConfirm failed: -25206"},
           {simulator::ax::illegalArgument, "AX action AXConfirm failed: -25201"},
           {simulator::ax::invalidElement, "AX action AXConfirm failed: -25202"},
           {simulator::ax::cannotComplete, "AX action AXConfirm failed: -25204"},
           {simulator::ax::notImplemented, "AX action AXConfirm failed: -25208"},
           {simulator::ax::apiDisabled, "AX action AXConfirm failed: -25211"}}) {
    StrictChoice choice;
    EXPECT_EQ(choice.runRefusing(Verb::perform, code, "AXConfirm"),
              failedStrictly(text, joined({written(choice.target), {confirmedAndReturn[0]}})));
  }
}

TEST(StrictChoiceErrors, ARefusedPressIsTheFailure) {
  for (const std::int32_t code : performErrors) {
    StrictChoice choice;
    EXPECT_EQ(choice.runRefusing(Verb::perform, code, "AXPress"),
              failedStrictly("AX action AXPress failed: " + std::to_string(code),
                             joined({written(choice.target), confirmedAndReturn, pressed})));
  }
}

// Without AXConfirm the field is confirmed by Return, which sends the sheet off; 0.4 s later it is
// gone, and the Return that follows confirms the panel.
TEST(StrictChoiceErrors, AFieldWhoseActionsAreUnknownIsConfirmedByReturn) {
  for (const std::int32_t code : actionNamesErrors) {
    StrictChoice choice;
    EXPECT_EQ(choice.runRefusing(Verb::actionNames, code),
              choice.chosen(joined({written(choice.target),
                                    {"0.120 key 36 down -> 900", "0.020 key 36 up -> 900",
                                     "0.400 key 36 down -> 900", "0.020 key 36 up -> 900"}})))
        << code;
  }
}

// --- Choices through the controls. ---

// The list does not show the selection, so the sheet is used after the 1.5 s for it.
TEST(ControlErrors, ARefusedSelectionLeadsToTheSheet) {
  for (const std::int32_t code : setErrors) {
    FolderWorld world("chinese-service-window", {startIsAPlace});
    refuse(world.world.desktop(), Verb::set, code, "AXSelectedRows");
    const FolderRun run = choose(world, {"--timeout", "6"});
    EXPECT_EQ(run.outcome, controlled(world.target, "go-to-folder-ax")) << code;
    EXPECT_EQ(run.panels, "chosen " + world.target);
  }
}

TEST(ControlErrors, ARefusedPressIsMadeUpForByReturn) {
  for (const std::int32_t code : performErrors) {
    FolderWorld world("chinese-service-window", {startIsAPlace, {"/panels/0/folder", "~/target"}});
    refuse(world.world.desktop(), Verb::perform, code, "AXPress");
    EXPECT_EQ(choose(world).outcome, controlled(world.target, "hierarchy")) << code;
    EXPECT_EQ(world.world.panelOutcomes(), "chosen " + world.target);
    EXPECT_EQ(transcript(world.world.record()).back(), "0.020 key 36 up -> 900");
  }
}

TEST(ControlErrors, ARefusedCancelIsTheFailureOfClosing) {
  for (const std::int32_t code : performErrors) {
    for (const bool strict : {false, true}) {
      World world(service, {{"/panels/0/listed", "none"}});
      refuse(world.desktop(), Verb::perform, code, "AXPress");
      std::vector<std::string> arguments{"close", "--pid", "812"};
      if (strict) arguments.push_back("--strict-background");
      EXPECT_EQ(world.run(arguments), failed("AX action AXPress failed: " + std::to_string(code)));
      EXPECT_EQ(world.panelOutcomes(), "open");
      EXPECT_THAT(postedEventKinds(world.record()), IsEmpty());
    }
  }
}

// --- CFURL: a place in the sidebar whose location cannot be read is no place to start from. ---

TEST(LocationErrors, APlaceWithoutAReadableLocationIsPassedOver) {
  FolderWorld healthy("chinese-service-window",
                      {startIsAPlace, {"/panels/0/folder", "~/target"}, noMenu});
  EXPECT_EQ(choose(healthy).outcome, controlled(healthy.target, "hierarchy"));

  FolderWorld world("chinese-service-window",
                    {startIsAPlace, {"/panels/0/folder", "~/target"}, noMenu});
  const FaultyFrameworks faulty({.answers_null = [](const std::string& function) {
    return function == "CFURLCopyFileSystemPath";
  }});
  EXPECT_EQ(choose(world).outcome, controlled(world.target, "go-to-folder-ax"));
  EXPECT_EQ(world.world.panelOutcomes(), "chosen " + world.target);
}

// --- CGEventCreate...: events that are not created are not missed. ---

simulator::FrameworkFaults noEvents() {
  return {.answers_null = [](const std::string& function) {
    return function == "CGEventCreateKeyboardEvent" || function == "CGEventCreateMouseEvent";
  }};
}

TEST(EventErrors, DirectInputReportsSuccess) {
  const std::vector<std::pair<std::vector<std::string>, Json>> runs{
      {{"click-point", "--pid", "812", "--x", "10", "--y", "20.5"},
       {{"ok", true}, {"command", "click-point"}, {"point", {{"x", 10.0}, {"y", 20.5}}}}},
      {{"type-text", "--pid", "812", "--text", "a打"},
       {{"ok", true}, {"command", "type-text"}, {"textLength", 2}}},
      {{"press-key", "--pid", "812", "--key", "escape"},
       {{"ok", true}, {"command", "press-key"}, {"key", "escape"}}}};
  for (const auto& [arguments, result] : runs) {
    World world(service);
    const FaultyFrameworks faulty(noEvents());
    EXPECT_EQ(world.run(arguments), printed(result));
    EXPECT_THAT(postedEventKinds(world.record()), IsEmpty());
    EXPECT_EQ(world.panelOutcomes(), "open");
  }
}

TEST(EventErrors, ASheetThatNobodyOpensIsWaitedForInVain) {
  StrictChoice choice;
  const FaultyFrameworks faulty(noEvents());
  EXPECT_EQ(choice.run(), failedStrictly("timed out after 1.5s", {}));
}

TEST(EventErrors, APanelThatOnlyEventsReachStays) {
  World world("unseen-folders");
  const FaultyFrameworks faulty(noEvents());
  EXPECT_EQ(world.run({"close", "--pid", "812"}),
            printed({{"ok", true}, {"command", "close"}, {"closed", 0}}));
  EXPECT_EQ(world.panelOutcomes(), "open");
}

}  // namespace
}  // namespace tessarine::test::error_codes
