#include "simulator/desktop/record.h"

#include <algorithm>
#include <cmath>
#include <nlohmann/json.hpp>

#include "simulator/desktop/text.h"

namespace simulator {
namespace {

using Json = nlohmann::ordered_json;

Json describe(const Value& value);

struct ValueDescriber {
  Json operator()(std::monostate) const { return nullptr; }
  Json operator()(const std::string& text) const { return text; }
  Json operator()(bool truth) const { return truth; }
  Json operator()(double number) const { return number; }
  Json operator()(const Point& point) const { return {{"x", point.x}, {"y", point.y}}; }
  Json operator()(const Size& size) const {
    return {{"width", size.width}, {"height", size.height}};
  }
  Json operator()(const ElementId& id) const { return {{"pid", id.pid}, {"element", id.number}}; }
  Json operator()(const Url& url) const { return {{"url", url.text}}; }
  Json operator()(const AttributeError& error) const { return {{"error", error.code}}; }
  Json operator()(const List& list) const {
    Json array = Json::array();
    for (const Value& value : list) array.push_back(describe(value));
    return array;
  }
};

Json describe(const Value& value) {
  return std::visit(ValueDescriber{}, static_cast<const Value::variant&>(value));
}

const char* nameOf(AccessibilityRequest::Verb verb) {
  switch (verb) {
    case AccessibilityRequest::Verb::copy:
      return "copy";
    case AccessibilityRequest::Verb::copySeveral:
      return "copy several";
    case AccessibilityRequest::Verb::set:
      return "set";
    case AccessibilityRequest::Verb::actionNames:
      return "action names";
    case AccessibilityRequest::Verb::perform:
      return "perform";
  }
  return "";
}

const char* nameOf(Origin origin) {
  switch (origin) {
    case Origin::tool:
      return "tool";
    case Origin::script:
      return "script";
    case Origin::person:
      return "person";
  }
  return "";
}

Json targetOf(const std::optional<Pid>& target) {
  return target ? Json(*target) : Json("session");
}

Json pidOrNull(const std::optional<Pid>& pid) {
  return pid ? Json(*pid) : Json(nullptr);
}

Json frameOf(const Rect& frame) {
  return {{"x", frame.x}, {"y", frame.y}, {"width", frame.width}, {"height", frame.height}};
}

Json describe(const ShownWindow& window) {
  return {{"number", window.number},
          {"pid", window.owner},
          {"title", window.title},
          {"frame", frameOf(window.frame)},
          {"listed", window.listed}};
}

// What is as usual is left out.
Json describe(const ShownElement& element) {
  Json json{{"role", element.role}, {"frame", frameOf(element.frame)}};
  if (!element.text.empty()) json["text"] = element.text;
  if (!element.placeholder.empty()) json["placeholder"] = element.placeholder;
  if (!element.identifier.empty()) json["identifier"] = element.identifier;
  if (element.selected) json["selected"] = true;
  if (element.focused) json["focused"] = true;
  if (element.disabled) json["disabled"] = true;
  if (element.folder) json["folder"] = *element.folder;
  return json;
}

// Writes the members of one kind of entry after its time.
struct EntryWriter {
  Json& line;

  void operator()(const AccessibilityRequest& request) const {
    line["what"] = "accessibility";
    line["verb"] = nameOf(request.verb);
    line["pid"] = request.element.pid;
    line["element"] = request.element.number;
    line["role"] = request.role;
    if (!request.name.empty()) line["name"] = request.name;
    if (!request.names.empty()) line["names"] = request.names;
    if (request.verb == AccessibilityRequest::Verb::set) line["value"] = describe(request.value);
    if (!request.text.empty()) line["text"] = request.text;
    if (request.frame) line["frame"] = frameOf(*request.frame);
    line["error"] = request.error;
  }
  void operator()(const WorkspaceRequest& request) const {
    line["what"] = "workspace";
    line["question"] = request.question;
  }
  void operator()(const PostedKey& posted) const {
    line["what"] = "key";
    line["to"] = targetOf(posted.target);
    line["keyCode"] = posted.event.keyCode;
    line["down"] = posted.event.down;
    line["flags"] = posted.event.flags;
    if (posted.event.text) line["text"] = utf8FromUtf16(*posted.event.text);
    line["by"] = nameOf(posted.origin);
  }
  void operator()(const PostedMouse& posted) const {
    line["what"] = "mouse";
    line["to"] = targetOf(posted.target);
    line["type"] = posted.event.type;
    line["x"] = posted.event.at.x;
    line["y"] = posted.event.at.y;
    line["clickState"] = posted.event.clickState;
    line["by"] = nameOf(posted.origin);
  }
  void operator()(const ProgramStarted& started) const {
    line["what"] = "program started";
    line["program"] = started.program;
    line["path"] = started.path;
    line["arguments"] = started.arguments;
  }
  void operator()(const ProgramEnded& ended) const {
    line["what"] = "program ended";
    line["program"] = ended.program;
    line["path"] = ended.path;
    line["status"] = ended.status;
  }
  void operator()(const ActivationAsked& asked) const {
    line["what"] = "activation";
    line["pid"] = asked.pid;
    line["by"] = nameOf(asked.origin);
  }
  void operator()(const FrontmostChanged& changed) const {
    line["what"] = "frontmost";
    line["from"] = pidOrNull(changed.from);
    line["to"] = pidOrNull(changed.to);
  }
  void operator()(const WindowOpened& opened) const {
    writeWindow("window opened", opened.number, opened.owner, opened.title);
  }
  void operator()(const WindowClosed& closed) const {
    writeWindow("window closed", closed.number, closed.owner, closed.title);
  }
  void operator()(const Milestone& milestone) const {
    line["what"] = "milestone";
    if (milestone.panel) line["panel"] = *milestone.panel;
    line["text"] = milestone.text;
  }
  void operator()(const ScreenShown& shown) const {
    line["what"] = "screen";
    line["windows"] = Json::array();
    for (const ShownWindow& window : shown.windows) line["windows"].push_back(describe(window));
  }
  void operator()(const PanelShown& shown) const {
    line["what"] = "panel";
    line["panel"] = shown.panel;
    line["part"] = shown.part;
    line["elements"] = Json::array();
    for (const ShownElement& each : shown.elements) line["elements"].push_back(describe(each));
    line["leftOut"] = shown.leftOut;
  }

  void writeWindow(const char* what, std::uint32_t number, Pid owner,
                   const std::string& title) const {
    line["what"] = what;
    line["number"] = number;
    line["pid"] = owner;
    line["title"] = title;
  }
};

Json describe(const RecordLine& recorded) {
  Json line;
  line["at"] = std::round(recorded.time * 1e6) / 1e6;
  std::visit(EntryWriter{line}, recorded.entry);
  return line;
}

template <typename Entry, typename Condition>
std::size_t countEntries(const std::vector<RecordLine>& lines, Condition condition) {
  return static_cast<std::size_t>(
      std::count_if(lines.begin(), lines.end(), [&](const RecordLine& line) {
        const auto* entry = std::get_if<Entry>(&line.entry);
        return entry != nullptr && condition(*entry);
      }));
}

constexpr auto any = [](const auto&) { return true; };
constexpr auto by_tool = [](const auto& posted) { return posted.origin == Origin::tool; };
constexpr auto by_tool_to_session = [](const auto& posted) {
  return posted.origin == Origin::tool && !posted.target;
};

}  // namespace

bool isQuestion(const RecordEntry& entry) {
  using Verb = AccessibilityRequest::Verb;
  if (std::holds_alternative<WorkspaceRequest>(entry)) return true;
  const auto* request = std::get_if<AccessibilityRequest>(&entry);
  return request != nullptr && request->verb != Verb::set && request->verb != Verb::perform;
}

std::size_t Record::addRequest(Seconds time, AccessibilityRequest request) {
  lines_.push_back({time, std::move(request)});
  return lines_.size() - 1;
}

void Record::settle(std::size_t line, std::int32_t error) {
  std::get<AccessibilityRequest>(lines_[line].entry).error = error;
}

nlohmann::ordered_json Record::toJson(bool withQuestions) const {
  Json array = Json::array();
  for (const RecordLine& line : lines_) {
    if (withQuestions || !isQuestion(line.entry)) array.push_back(describe(line));
  }
  return array;
}

std::string Record::toText() const {
  std::string text;
  for (const RecordLine& line : lines_) {
    text += describe(line).dump(-1, ' ', false, Json::error_handler_t::replace);
    text += '\n';
  }
  return text;
}

std::vector<std::string> Record::milestones() const {
  std::vector<std::string> texts;
  for (const RecordLine& line : lines_) {
    if (const auto* milestone = std::get_if<Milestone>(&line.entry)) {
      texts.push_back(milestone->text);
    }
  }
  return texts;
}

std::size_t Record::accessibilityRequests() const {
  return countEntries<AccessibilityRequest>(lines_, any);
}

std::size_t Record::keyEvents() const {
  return countEntries<PostedKey>(lines_, by_tool);
}

std::size_t Record::mouseEvents() const {
  return countEntries<PostedMouse>(lines_, by_tool);
}

std::size_t Record::sessionEvents() const {
  return countEntries<PostedKey>(lines_, by_tool_to_session) +
         countEntries<PostedMouse>(lines_, by_tool_to_session);
}

std::size_t Record::foregroundChanges() const {
  return countEntries<FrontmostChanged>(
      lines_, [](const FrontmostChanged& change) { return change.from.has_value(); });
}

}  // namespace simulator
