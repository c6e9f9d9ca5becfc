#include "simulator/service/wire.h"

#include <cstdint>
#include <map>
#include <nlohmann/json.hpp>
#include <type_traits>
#include <utility>

namespace simulator {
namespace {

using nlohmann::json;

constexpr std::size_t length_bytes = 4;
constexpr std::size_t largest_message = std::size_t{64} << 20;

// Every record travels as an array: its name, then its members in order.

json encodeValue(const Value& value) {
  struct Encoder {
    json operator()(std::monostate) const { return nullptr; }
    json operator()(const std::string& text) const { return text; }
    json operator()(bool truth) const { return truth; }
    json operator()(double number) const { return number; }
    json operator()(const Point& point) const { return {"point", point.x, point.y}; }
    json operator()(const Size& size) const { return {"size", size.width, size.height}; }
    json operator()(const ElementId& id) const { return {"element", id.pid, id.number}; }
    json operator()(const Url& url) const { return json::array({"url", url.text}); }
    json operator()(const AttributeError& error) const { return {"error", error.code}; }
    json operator()(const List& list) const {
      json members = json::array({"list"});
      for (const Value& member : list) members.push_back(encodeValue(member));
      return members;
    }
  };
  return std::visit(Encoder{}, static_cast<const Value::variant&>(value));
}

json encodeTarget(const std::optional<Pid>& target) {
  return target ? json(*target) : json();
}

struct RequestEncoder {
  json operator()(const CopyAttribute& r) const {
    const json patience = r.patience ? json(*r.patience) : json();
    return {"copy", r.element.pid, r.element.number, r.name, patience};
  }
  json operator()(const CopyAttributes& r) const {
    const json patience = r.patience ? json(*r.patience) : json();
    json record{"copy several", r.element.pid, r.element.number, patience};
    for (const std::string& name : r.names) record.push_back(name);
    return record;
  }
  json operator()(const SetAttribute& r) const {
    return {"set", r.element.pid, r.element.number, r.name, encodeValue(r.value)};
  }
  json operator()(const CopyActionNames& r) const {
    return {"actions", r.element.pid, r.element.number};
  }
  json operator()(const PerformAction& r) const {
    return {"perform", r.element.pid, r.element.number, r.name};
  }
  json operator()(const PostEvent& r) const {
    if (const auto* mouse = std::get_if<MouseEvent>(&r.event)) {
      return {"mouse",     encodeTarget(r.target), mouse->type, mouse->at.x,
              mouse->at.y, mouse->clickState};
    }
    const auto& key = std::get<KeyEvent>(r.event);
    json text;
    if (key.text) text = std::vector<std::uint16_t>(key.text->begin(), key.text->end());
    return {"key", encodeTarget(r.target), key.keyCode, key.down, key.flags, text};
  }
  json operator()(const AskPresses& r) const { return json::array({"presses", r.type}); }
  json operator()(const AskTrust&) const { return json::array({"trust"}); }
  json operator()(const AskScreenCapture&) const { return json::array({"screen capture"}); }
  json operator()(const AskAutomation& r) const { return json::array({"automation", r.bundle}); }
  json operator()(const AskFrontmost&) const { return json::array({"frontmost"}); }
  json operator()(const AskRunning& r) const { return json::array({"running", r.pid}); }
  json operator()(const Activate& r) const { return json::array({"activate", r.pid}); }
  json operator()(const AskScreens&) const { return json::array({"screens"}); }
  json operator()(const AskWindows&) const { return json::array({"windows"}); }
  json operator()(const AskDisplayName& r) const { return json::array({"display name", r.path}); }
};

// The texts of a record follow its name and its first text.
json encodeTexts(const char* name, const std::string& first, const std::vector<std::string>& rest) {
  json record = json::array({name, first});
  for (const std::string& text : rest) record.push_back(text);
  return record;
}

struct MessageEncoder {
  json operator()(const Request& request) const { return std::visit(RequestEncoder{}, request); }
  json operator()(const StartProgram& m) const { return encodeTexts("start", m.path, m.arguments); }
  json operator()(const AskState&) const { return json::array({"state"}); }
  json operator()(const BeginCall& m) const {
    return encodeTexts("begin call", m.folder, m.arguments);
  }
  json operator()(const EndCall& m) const { return {"end call", m.status, m.output}; }
};

// Reads the members of a record one after the other.
class Members {
 public:
  explicit Members(const json& record) : record_(record) {
    if (!record.is_array()) throw WireError("not a record: " + shown());
  }

  template <class T>
  T take() {
    return read<T>(next());
  }
  Value takeValue();
  const json& next() {
    if (at_ == record_.size()) throw WireError("a member is missing: " + shown());
    return record_[at_++];
  }
  bool atEnd() const { return at_ == record_.size(); }
  void end() const {
    if (!atEnd()) throw WireError("a member too many: " + shown());
  }

 private:
  template <class T>
  T read(const json& member) const {
    if constexpr (std::is_same_v<T, bool>) {
      if (member.is_boolean()) return member.get<bool>();
    } else if constexpr (std::is_integral_v<T>) {
      if (member.is_number_unsigned() && std::in_range<T>(member.get<std::uint64_t>())) {
        return member.get<T>();
      }
      if (member.is_number_integer() && !member.is_number_unsigned() &&
          std::in_range<T>(member.get<std::int64_t>())) {
        return member.get<T>();
      }
    } else if constexpr (std::is_same_v<T, double>) {
      if (member.is_number()) return member.get<double>();
    } else {
      if (member.is_string()) return member.get<std::string>();
    }
    throw WireError("a member has the wrong type: " + shown());
  }
  std::string shown() const { return record_.dump(-1, ' ', false, json::error_handler_t::replace); }

  const json& record_;
  std::size_t at_ = 0;
};

// The order of the calls is the order of the members.
Point takePoint(Members& members) {
  const auto x = members.take<double>();
  return {x, members.take<double>()};
}

ElementId takeElement(Members& members) {
  const auto pid = members.take<Pid>();
  return {pid, members.take<std::uint64_t>()};
}

// Null for what is absent.
template <class T>
std::optional<T> takeOptional(Members& members) {
  const json& member = members.next();
  if (member.is_null()) return {};
  const json wrapped = json::array({member});
  return Members(wrapped).take<T>();
}

Value decodeRecordValue(const json& record) {
  Members members(record);
  const auto kind = members.take<std::string>();
  Value value;
  if (kind == "point") {
    value = takePoint(members);
  } else if (kind == "size") {
    const Point size = takePoint(members);
    value = Size{size.x, size.y};
  } else if (kind == "element") {
    value = takeElement(members);
  } else if (kind == "url") {
    value = Url{members.take<std::string>()};
  } else if (kind == "error") {
    value = AttributeError{members.take<std::int32_t>()};
  } else if (kind == "list") {
    List list;
    while (!members.atEnd()) list.push_back(members.takeValue());
    value = std::move(list);
  } else {
    throw WireError("unknown kind of value: " + kind);
  }
  members.end();
  return value;
}

Value Members::takeValue() {
  const json& member = next();
  if (member.is_null()) return {};
  if (member.is_string()) return member.get<std::string>();
  if (member.is_boolean()) return member.get<bool>();
  if (member.is_number()) return member.get<double>();
  return decodeRecordValue(member);
}

std::optional<std::u16string> takeUnits(Members& members) {
  const json& units = members.next();
  if (units.is_null()) return {};
  Members reader(units);
  std::u16string text;
  while (!reader.atEnd()) text += static_cast<char16_t>(reader.take<std::uint16_t>());
  return text;
}

Message takeKey(Members& members) {
  const auto target = takeOptional<Pid>(members);
  KeyEvent key;
  key.keyCode = members.take<std::uint16_t>();
  key.down = members.take<bool>();
  key.flags = members.take<std::uint64_t>();
  key.text = takeUnits(members);
  return Request(PostEvent{key, target});
}

Message takeMouse(Members& members) {
  const auto target = takeOptional<Pid>(members);
  MouseEvent mouse;
  mouse.type = members.take<std::uint32_t>();
  mouse.at = takePoint(members);
  mouse.clickState = members.take<std::int64_t>();
  return Request(PostEvent{mouse, target});
}

Message takeSet(Members& members) {
  SetAttribute set;
  set.element = takeElement(members);
  set.name = members.take<std::string>();
  set.value = members.takeValue();
  return Request(std::move(set));
}

// A program or a call: a path, then the arguments.
template <class T>
Message takeTexts(Members& members) {
  T message{members.take<std::string>(), {}};
  while (!members.atEnd()) message.arguments.push_back(members.take<std::string>());
  return message;
}

Message takeEndCall(Members& members) {
  const auto status = members.take<int>();
  return EndCall{status, members.take<std::string>()};
}

Message takeCopy(Members& members) {
  CopyAttribute copy;
  copy.element = takeElement(members);
  copy.name = members.take<std::string>();
  copy.patience = takeOptional<Seconds>(members);
  return Request(std::move(copy));
}

Message takeCopySeveral(Members& members) {
  CopyAttributes copy;
  copy.element = takeElement(members);
  copy.patience = takeOptional<Seconds>(members);
  while (!members.atEnd()) copy.names.push_back(members.take<std::string>());
  return Request(std::move(copy));
}

Message takePerform(Members& members) {
  const ElementId element = takeElement(members);
  return Request(PerformAction{element, members.take<std::string>()});
}

using Taker = Message (*)(Members&);
const std::map<std::string, Taker>& takers() {
  static const std::map<std::string, Taker> table = {
      {"copy", takeCopy},
      {"copy several", takeCopySeveral},
      {"set", takeSet},
      {"actions", [](Members& m) -> Message { return Request(CopyActionNames{takeElement(m)}); }},
      {"perform", takePerform},
      {"key", takeKey},
      {"mouse", takeMouse},
      {"presses",
       [](Members& m) -> Message { return Request(AskPresses{m.take<std::uint32_t>()}); }},
      {"trust", [](Members&) -> Message { return Request(AskTrust{}); }},
      {"screen capture", [](Members&) -> Message { return Request(AskScreenCapture{}); }},
      {"automation",
       [](Members& m) -> Message { return Request(AskAutomation{m.take<std::string>()}); }},
      {"frontmost", [](Members&) -> Message { return Request(AskFrontmost{}); }},
      {"running", [](Members& m) -> Message { return Request(AskRunning{m.take<Pid>()}); }},
      {"activate", [](Members& m) -> Message { return Request(Activate{m.take<Pid>()}); }},
      {"screens", [](Members&) -> Message { return Request(AskScreens{}); }},
      {"windows", [](Members&) -> Message { return Request(AskWindows{}); }},
      {"display name",
       [](Members& m) -> Message { return Request(AskDisplayName{m.take<std::string>()}); }},
      {"start", takeTexts<StartProgram>},
      {"begin call", takeTexts<BeginCall>},
      {"end call", takeEndCall},
      {"state", [](Members&) -> Message { return AskState{}; }},
  };
  return table;
}

}  // namespace

json encode(const Message& message) {
  return std::visit(MessageEncoder{}, message);
}

json encode(const Reply& reply) {
  return json::array({reply.error, encodeValue(reply.value)});
}

json encode(const ProgramResult& result) {
  return json::array({result.exitStatus, result.standardOutput, result.standardError});
}

Message decodeMessage(const json& record) {
  Members members(record);
  const auto name = members.take<std::string>();
  const auto found = takers().find(name);
  if (found == takers().end()) throw WireError("unknown message: " + name);
  Message message = found->second(members);
  members.end();
  return message;
}

Reply decodeReply(const json& record) {
  Members members(record);
  Reply reply;
  reply.error = members.take<std::int32_t>();
  reply.value = members.takeValue();
  members.end();
  return reply;
}

ProgramResult decodeProgramResult(const json& record) {
  Members members(record);
  ProgramResult result;
  result.exitStatus = members.take<int>();
  result.standardOutput = members.take<std::string>();
  result.standardError = members.take<std::string>();
  members.end();
  return result;
}

std::string pack(const json& record) {
  std::string bytes(length_bytes, '\0');
  json::to_cbor(record, bytes);
  const std::size_t length = bytes.size() - length_bytes;
  for (std::size_t i = 0; i < length_bytes; ++i) {
    bytes[i] = static_cast<char>((length >> (8 * (length_bytes - 1 - i))) & 0xFF);
  }
  return bytes;
}

std::optional<json> unpack(std::string& received) {
  if (received.size() < length_bytes) return {};
  std::size_t length = 0;
  for (std::size_t i = 0; i < length_bytes; ++i) {
    length = length << 8 | static_cast<unsigned char>(received[i]);
  }
  if (length > largest_message) throw WireError("a message is too long");
  if (received.size() - length_bytes < length) return {};
  const std::string body = received.substr(length_bytes, length);
  received.erase(0, length_bytes + length);
  json record = json::from_cbor(body, true, false);
  if (record.is_discarded()) throw WireError("a message is not CBOR");
  return record;
}

}  // namespace simulator
