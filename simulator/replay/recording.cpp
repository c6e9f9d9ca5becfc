#include "simulator/replay/recording.h"

#include <fstream>
#include <functional>
#include <limits>
#include <nlohmann/json.hpp>
#include <sstream>

#include "simulator/desktop/text.h"
#include "simulator/scenario/json_object.h"
#include "simulator/scenario/json_text.h"
#include "simulator/scenario/scenario.h"

namespace simulator {
namespace {

constexpr double latest_time = 1e9;      // seconds
constexpr double outermost_point = 1e7;  // points
constexpr auto largest_integer = std::numeric_limits<std::int32_t>::max();

Seconds timeIn(JsonObject& object, const char* key) {
  return object.require(key).number(0, latest_time);
}

Pid pidIn(JsonObject& object, const char* key) {
  return object.require(key).integer(-largest_integer, largest_integer);
}

std::optional<Pid> optionalPid(const JsonPlace& place) {
  if (place.value.is_null() || place.value == "session") return std::nullopt;
  return place.integer(-largest_integer, largest_integer);
}

bool flagIn(JsonObject& object, const char* key) {
  bool flag = false;
  object.read(key, flag);
  return flag;
}

std::string optionalText(JsonObject& object, const char* key) {
  std::string text;
  object.read(key, text);
  return text;
}

std::vector<std::string> textsIn(JsonObject& object, const char* key) {
  std::vector<std::string> texts;
  for (const JsonPlace& each : object.require(key).items()) texts.push_back(each.text());
  return texts;
}

Rect frameAt(const JsonPlace& place) {
  JsonObject object(place);
  const auto number = [&](const char* key, double least) {
    return object.require(key).number(least, outermost_point);
  };
  Rect frame;
  frame.x = number("x", -outermost_point);
  frame.y = number("y", -outermost_point);
  frame.width = number("width", 0);
  frame.height = number("height", 0);
  return frame;
}

Origin originIn(JsonObject& object) {
  Origin origin = Origin::tool;
  object.read("by", origin,
              JsonObject::Choices<Origin>{
                  {"tool", Origin::tool}, {"script", Origin::script}, {"person", Origin::person}});
  return origin;
}

// --- The kinds of entries. ---

// What was written, as far as it can be told in words.
Value valueAt(const JsonPlace& place) {
  if (place.value.is_string()) return place.text();
  if (place.value.is_boolean()) return place.flag();
  if (place.value.is_number()) return place.value.get<double>();
  if (place.value.is_array()) return List(place.value.size());
  return {};
}

std::optional<RecordEntry> accessibilityEntry(JsonObject& object) {
  using Verb = AccessibilityRequest::Verb;
  const std::string verb = object.require("verb").text();
  if (verb != "set" && verb != "perform") return std::nullopt;
  AccessibilityRequest request;
  request.verb = verb == "set" ? Verb::set : Verb::perform;
  request.element.pid = pidIn(object, "pid");
  request.role = optionalText(object, "role");
  request.name = object.require("name").text();
  if (const auto value = object.find("value")) request.value = valueAt(*value);
  request.text = optionalText(object, "text");
  if (const auto frame = object.find("frame")) request.frame = frameAt(*frame);
  request.error = pidIn(object, "error");
  return request;
}

std::optional<RecordEntry> keyEntry(JsonObject& object) {
  PostedKey key;
  key.target = optionalPid(object.require("to"));
  key.event.keyCode = static_cast<std::uint16_t>(object.require("keyCode").integer(0, 0xFFFF));
  key.event.down = object.require("down").flag();
  key.event.flags = static_cast<std::uint64_t>(object.require("flags").number(0, 1e15));
  if (const auto text = object.find("text")) key.event.text = utf16FromUtf8(text->text());
  key.origin = originIn(object);
  return key;
}

std::optional<RecordEntry> mouseEntry(JsonObject& object) {
  PostedMouse mouse;
  mouse.target = optionalPid(object.require("to"));
  mouse.event.type = static_cast<std::uint32_t>(object.require("type").integer(0, 100));
  mouse.event.at.x = object.require("x").number(-outermost_point, outermost_point);
  mouse.event.at.y = object.require("y").number(-outermost_point, outermost_point);
  mouse.event.clickState = object.require("clickState").integer(0, largest_integer);
  mouse.origin = originIn(object);
  return mouse;
}

std::optional<RecordEntry> startedEntry(JsonObject& object) {
  const auto program =
      static_cast<std::uint64_t>(object.require("program").integer(1, largest_integer));
  return ProgramStarted{program, object.require("path").text(), textsIn(object, "arguments")};
}

std::optional<RecordEntry> endedEntry(JsonObject& object) {
  const auto program =
      static_cast<std::uint64_t>(object.require("program").integer(1, largest_integer));
  return ProgramEnded{program, object.require("path").text(),
                      object.require("status").integer(-largest_integer, largest_integer)};
}

std::optional<RecordEntry> activationEntry(JsonObject& object) {
  return ActivationAsked{pidIn(object, "pid"), originIn(object)};
}

std::optional<RecordEntry> frontmostEntry(JsonObject& object) {
  return FrontmostChanged{optionalPid(object.require("from")), optionalPid(object.require("to"))};
}

std::optional<RecordEntry> milestoneEntry(JsonObject& object) {
  Milestone milestone{object.require("text").text()};
  if (const auto panel = object.find("panel")) milestone.panel = panel->integer(1, largest_integer);
  return milestone;
}

std::optional<RecordEntry> screenEntry(JsonObject& object) {
  ScreenShown screen;
  for (const JsonPlace& place : object.require("windows").items()) {
    JsonObject window(place);
    screen.windows.push_back(
        {static_cast<std::uint32_t>(window.require("number").integer(0, largest_integer)),
         pidIn(window, "pid"), window.require("title").text(), frameAt(window.require("frame")),
         window.require("listed").flag()});
  }
  return screen;
}

ShownElement elementAt(const JsonPlace& place) {
  JsonObject object(place);
  ShownElement element;
  element.role = object.require("role").text();
  element.frame = frameAt(object.require("frame"));
  element.text = optionalText(object, "text");
  element.placeholder = optionalText(object, "placeholder");
  element.identifier = optionalText(object, "identifier");
  element.selected = flagIn(object, "selected");
  element.focused = flagIn(object, "focused");
  element.disabled = flagIn(object, "disabled");
  if (const auto folder = object.find("folder")) element.folder = folder->flag();
  return element;
}

std::optional<RecordEntry> panelEntry(JsonObject& object) {
  PanelShown shown;
  shown.panel = object.require("panel").integer(1, largest_integer);
  shown.part = object.require("part").text();
  for (const JsonPlace& place : object.require("elements").items()) {
    shown.elements.push_back(elementAt(place));
  }
  shown.leftOut = object.require("leftOut").integer(0, largest_integer);
  return shown;
}

using EntryReader = std::optional<RecordEntry> (*)(JsonObject&);
const std::map<std::string, EntryReader>& entryReaders() {
  static const std::map<std::string, EntryReader> readers{{"accessibility", accessibilityEntry},
                                                          {"key", keyEntry},
                                                          {"mouse", mouseEntry},
                                                          {"program started", startedEntry},
                                                          {"program ended", endedEntry},
                                                          {"activation", activationEntry},
                                                          {"frontmost", frontmostEntry},
                                                          {"milestone", milestoneEntry},
                                                          {"screen", screenEntry},
                                                          {"panel", panelEntry}};
  return readers;
}

// --- What stands around them. ---

std::string fateAt(const JsonPlace& place) {
  JsonObject object(place);
  const std::string outcome = object.require("outcome").text();
  if (outcome == "chosen") return "chosen " + object.require("path").text();
  return outcome == "none" ? "neither chosen nor cancelled" : outcome;
}

RecordedCall callAt(const JsonPlace& place) {
  JsonObject object(place);
  RecordedCall call;
  call.arguments = textsIn(object, "arguments");
  call.startedAt = timeIn(object, "startedAt");
  const auto present = [&](const char* key) {
    const JsonPlace member = object.require(key);
    return member.value.is_null() ? std::nullopt : std::optional(member);
  };
  if (const auto ended = present("endedAt")) call.endedAt = ended->number(0, latest_time);
  if (const auto status = present("status")) {
    call.status = status->integer(-largest_integer, largest_integer);
  }
  if (const auto verdict = present("verdict")) call.verdict = verdict->text();
  return call;
}

std::string wholeFile(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  std::ostringstream text;
  text << file.rdbuf();
  if (!file) throw ScenarioError(path.string() + ": /: expected a file that can be read");
  return text.str();
}

void readEntries(const JsonPlace& entries, std::vector<RecordLine>& lines) {
  Seconds before = 0;
  for (const JsonPlace& place : entries.items()) {
    JsonObject object(place);
    const JsonPlace at = object.require("at");
    const Seconds time = at.number(0, latest_time);
    if (time < before) at.refuse("expected a time that is not before the last");
    before = time;
    const auto reader = entryReaders().find(object.require("what").text());
    if (reader == entryReaders().end()) continue;
    if (auto entry = reader->second(object)) lines.push_back({time, std::move(*entry)});
  }
}

}  // namespace

Recording readRecording(const std::filesystem::path& path) {
  const nlohmann::ordered_json document = parseJson(wholeFile(path), path.string());
  JsonObject object({document, path.string(), ""});
  const JsonPlace version = object.require("version");
  if (version.value != record_version) {
    version.refuse("expected " + std::to_string(record_version));
  }
  Recording recording;
  recording.scenario = object.require("scenario").text();
  recording.verdict = object.require("verdict").text();
  for (const JsonPlace& place : object.require("screens").items()) {
    recording.screens.push_back(frameAt(place));
  }
  if (recording.screens.empty()) object.require("screens").refuse("expected at least one screen");
  for (const JsonPlace& place : object.require("processes").items()) {
    JsonObject process(place);
    recording.processes[pidIn(process, "pid")] = process.require("name").text();
  }
  for (const JsonPlace& place : object.require("panels").items()) {
    recording.panels.push_back(fateAt(place));
  }
  for (const JsonPlace& place : object.require("calls").items()) {
    recording.calls.push_back(callAt(place));
  }
  readEntries(object.require("entries"), recording.lines);
  return recording;
}

}  // namespace simulator
