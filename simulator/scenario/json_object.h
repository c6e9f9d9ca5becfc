// Reads the members of a JSON object, strictly: whatever is not expected throws a ScenarioError
// that names its place.
#pragma once

#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "simulator/desktop/value.h"

namespace simulator {

// A value and where it stands.
struct JsonPlace {
  const nlohmann::ordered_json& value;
  std::string file;
  std::string pointer;

  [[noreturn]] void refuse(const std::string& expectation) const;
  JsonPlace at(const std::string& key) const;
  JsonPlace at(std::size_t index) const;

  std::string text() const;
  bool flag() const;
  double number(double least, double most) const;
  std::int32_t integer(std::int32_t least, std::int32_t most) const;
  std::vector<JsonPlace> items() const;
};

class JsonObject {
 public:
  explicit JsonObject(const JsonPlace& place);

  // The member, or nothing. Every key that is asked for here counts as known.
  std::optional<JsonPlace> find(const std::string& key);
  JsonPlace require(const std::string& key);
  const JsonPlace& place() const { return place_; }

  // These leave `target` as it is when the key is absent.
  void read(const std::string& key, std::string& target);
  void read(const std::string& key, std::optional<std::string>& target);
  void read(const std::string& key, bool& target);
  void read(const std::string& key, double& target, double least, double most);
  void read(const std::string& key, std::optional<double>& target, double least, double most);
  void read(const std::string& key, std::int32_t& target, std::int32_t least, std::int32_t most);
  void read(const std::string& key, Rect& target);

  template <typename Choice>
  using Choices = std::vector<std::pair<const char*, Choice>>;
  template <typename Choice>
  void read(const std::string& key, Choice& target, const Choices<Choice>& choices) {
    const auto member = find(key);
    if (!member) return;
    std::string expected;
    for (const auto& [name, choice] : choices) {
      if (member->value == name) {
        target = choice;
        return;
      }
      expected += std::string(expected.empty() ? "" : ", ") + '"' + name + '"';
    }
    member->refuse("expected one of " + expected);
  }

  // Refuses every key that nobody asked for. Called last.
  void refuseOthers() const;

 private:
  JsonPlace place_;
  std::vector<std::string> known_;
};

// {"x", "y"}, both required.
Point readPoint(const JsonPlace& place);

// {"x", "y", "width", "height"}, all required.
Rect readRect(const JsonPlace& place);

}  // namespace simulator
