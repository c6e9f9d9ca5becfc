#include "simulator/scenario/json_text.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <nlohmann/json.hpp>
#include <set>
#include <vector>

#include "simulator/scenario/scenario.h"

namespace simulator {
namespace {

using Json = nlohmann::ordered_json;

constexpr std::size_t most_levels = 100;

// `byte` counts from 1.
std::string lineAndColumn(const std::string& text, std::size_t byte) {
  const std::string before = text.substr(0, byte == 0 ? 0 : byte - 1);
  const auto line = 1 + std::count(before.begin(), before.end(), '\n');
  const std::size_t lineStart = before.rfind('\n') + 1;  // 0 without a line end
  return "line " + std::to_string(line) + ", column " +
         std::to_string(before.size() - lineStart + 1);
}

// Follows the parser, which by itself takes any depth and the last of equal keys.
class Follower {
 public:
  explicit Follower(std::string file) : file_(std::move(file)) {}

  void follow(Json::parse_event_t event, const Json& parsed) {
    switch (event) {
      case Json::parse_event_t::object_start:
      case Json::parse_event_t::array_start:
        if (levels_.size() == most_levels) refuse("expected no more than 100 levels");
        levels_.push_back({event == Json::parse_event_t::array_start, 0, "", {}});
        break;
      case Json::parse_event_t::key:
        levels_.back().key = parsed.get<std::string>();
        if (!levels_.back().keys.insert(levels_.back().key).second) {
          refuse("expected each key once");
        }
        break;
      case Json::parse_event_t::object_end:
      case Json::parse_event_t::array_end:
        levels_.pop_back();
        [[fallthrough]];
      case Json::parse_event_t::value:
        if (!levels_.empty()) ++levels_.back().index;
        break;
    }
  }

 private:
  struct Level {
    bool list;
    std::size_t index;
    std::string key;
    std::set<std::string> keys;
  };

  [[noreturn]] void refuse(const std::string& expectation) const {
    std::string pointer;
    for (const Level& level : levels_) {
      pointer = pointerTo(pointer, level.list ? std::to_string(level.index) : level.key);
    }
    throw ScenarioError(file_ + ": " + pointer + ": " + expectation);
  }

  std::string file_;
  std::vector<Level> levels_;
};

}  // namespace

Json parseJson(const std::string& text, const std::string& file) {
  const auto refuseAt = [&](std::size_t byte) {
    throw ScenarioError(file + ": " + lineAndColumn(text, byte) + ": expected JSON");
  };
  // The parser would take it for the end of the text.
  if (const auto null = text.find('\0'); null != std::string::npos) refuseAt(null + 1);
  Follower follower(file);
  const auto follow = [&](int, Json::parse_event_t event, const Json& parsed) {
    follower.follow(event, parsed);
    return true;
  };
  try {
    return Json::parse(text, follow);
  } catch (const Json::parse_error& error) {
    refuseAt(error.byte);
    throw;
  } catch (const Json::out_of_range&) {
    throw ScenarioError(file + ": /: expected JSON whose numbers are within the range of a double");
  }
}

std::string pointerTo(const std::string& object, const std::string& key) {
  std::string token;
  for (const char c : key) {
    std::array<char, 8> escape{};
    std::snprintf(escape.data(), escape.size(), "\\u%04x", static_cast<unsigned char>(c));
    const bool control = static_cast<unsigned char>(c) < ' ' || c == '\x7f';
    token += c == '~' ? "~0" : c == '/' ? "~1" : control ? escape.data() : std::string(1, c);
  }
  return object + "/" + token;
}

}  // namespace simulator
